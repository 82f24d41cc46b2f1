// The quorvex tool: global options, exit statuses, info and init.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/profiles.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"

namespace {

using qvtest::RunTool;

class ToolTest : public ::testing::Test {
 protected:
  ToolTest() { profile_ = host_.scratch().Join("MP"); }
  qvtest::ScriptedHost host_;  // gives the tool a private registry file
  std::string profile_;
};

TEST_F(ToolTest, InitMakesAProfileThatInfoOpens) {
  auto init = RunTool({"init", profile_});
  ASSERT_EQ(init.status, 0) << init.err;
  EXPECT_TRUE(qvtest::PathExists(profile_ + "/ADS/adlist.ad"));
  EXPECT_TRUE(qvtest::PathExists(profile_ + "/locs/vardo.lo"));
  EXPECT_EQ(qvtest::ReadFileBytes(profile_ + "/ADS/adlist.ad"),
            "\n[SourceSafe]\n$Header$\n\n[Ads]\n");
  auto info = RunTool({"-p", profile_, "info"});
  ASSERT_EQ(info.status, 0) << info.err;
  EXPECT_NE(info.out.find("Master Profile"), std::string::npos);
  EXPECT_NE(info.out.find(profile_), std::string::npos);
  EXPECT_NE(info.out.find("OPEN_MASTER OPEN_NO_VCS"), std::string::npos) << info.out;
  EXPECT_NE(info.out.find("Locked:      no"), std::string::npos);
}

TEST_F(ToolTest, InfoAsJsonWithLock) {
  ASSERT_EQ(RunTool({"init", profile_}).status, 0);
  auto info = RunTool({"-p", profile_, "--lock", "--json", "info"});
  ASSERT_EQ(info.status, 0) << info.err;
  auto j = nlohmann::json::parse(info.out);
  EXPECT_EQ(j["path"], profile_);
  EXPECT_EQ(j["locked"], true);
  EXPECT_EQ(j["flags"], 0xA4000000u);
  EXPECT_EQ(j["prefix"].get<std::string>().size(), 5u);
  EXPECT_FALSE(qvtest::PathExists(profile_ + "/QUORVEX.LOK"));  // released on exit
}

TEST_F(ToolTest, WithoutPathTheLastProfileOpens) {
  ASSERT_EQ(RunTool({"init", profile_}).status, 0);
  ASSERT_EQ(RunTool({"-p", profile_, "info"}).status, 0);
  auto info = RunTool({"--json", "info"});
  ASSERT_EQ(info.status, 0) << info.err;
  EXPECT_EQ(nlohmann::json::parse(info.out)["path"], profile_);
}

TEST_F(ToolTest, MissingProfileFailsWithStatusOne) {
  auto info = RunTool({"-p", host_.scratch().Join("nowhere"), "info"});
  EXPECT_EQ(info.status, 1);
  EXPECT_NE(info.err.find("quorvex: cannot open " + host_.scratch().Join("nowhere") +
                          ": no such folder\n"),
            std::string::npos)
      << info.err;
}

TEST_F(ToolTest, UsageErrorsExitWithTwo) {
  EXPECT_EQ(RunTool({}).status, 2);
  EXPECT_EQ(RunTool({"no-such-command"}).status, 2);
  EXPECT_EQ(RunTool({"--yes", "--no", "info"}).status, 2);
  EXPECT_EQ(RunTool({"init"}).status, 2);
}

TEST_F(ToolTest, VersionControlProjectIsUsed) {
  ASSERT_EQ(RunTool({"init", profile_}).status, 0);
  auto info = RunTool({"-p", profile_, "--vcs-project", "Proj", "--json", "info"});
  ASSERT_EQ(info.status, 0) << info.err;
  auto j = nlohmann::json::parse(info.out);
  EXPECT_EQ(j["vcsProject"], "Proj");
  EXPECT_EQ(j["flags"].get<uint32_t>() & 0x04000000u, 0u);
}

TEST_F(ToolTest, SecondLockedToolFailsWhileTheLockIsHeld) {
  ASSERT_EQ(RunTool({"init", profile_}).status, 0);
  ASSERT_EQ(qvtest::OpenProfileAt(profile_, OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK), 1);
  auto info = RunTool({"-p", profile_, "--lock", "info"});
  EXPECT_EQ(info.status, 1);
  EXPECT_NE(info.err.find("Cannot open Lockfile " + profile_ + "\\QUORVEX.LOK."), std::string::npos)
      << info.err;
  CloseMasterProfile();
  EXPECT_EQ(RunTool({"-p", profile_, "--lock", "info"}).status, 0);
}

TEST_F(ToolTest, ExampleProfileOpens) {
  auto info = RunTool({"-p", std::string(QUORVEX_SOURCE_DIR) + "/examples/profile", "info"});
  EXPECT_EQ(info.status, 0) << info.err;
}

}  // namespace
