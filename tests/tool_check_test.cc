// quorvex check and quorvex vcs.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "platform/registry.h"
#include "support/fake_ss.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"

namespace {

using qvtest::RunTool;

class ToolCheckTest : public ::testing::Test {
 protected:
  ToolCheckTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
  }
  qvtest::ScriptedHost host_;
  std::string profile_;
};

TEST_F(ToolCheckTest, CleanProfileChecksWithoutProblems) {
  auto result = RunTool({"-p", profile_, "--json", "check"});
  ASSERT_EQ(result.status, 0) << result.err;
  auto j = nlohmann::json::parse(result.out);
  EXPECT_EQ(j["errors"], 0);
  EXPECT_EQ(j["files"].size(), 7u);
}

TEST_F(ToolCheckTest, ProblemsAreReportedWithFileAndLine) {
  host_.scratch().Write("MP/ADS/adlist.ad",
                        "\n[Ads]\n1,0,0,\"a\",\"b\",Y,N,N,\"fine\"\n"
                        "2,0,0,\"a\",\"b\",Y,N,X,\"bad flag\"\n");
  host_.scratch().Write("MP/LANGUAGE/OsDoC.LA",
                        "[OS Document Language]\n;a continued comment \\\nnot a comment\n");
  auto result = RunTool({"-p", profile_, "check"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find(profile_ + "\\ADS\\adlist.ad : Line #4\n"
                                       "Bad flag constant: must be a Y or an N character"),
            std::string::npos)
      << result.err;
  EXPECT_NE(result.out.find("2 problems reported"), std::string::npos) << result.out;
}

TEST_F(ToolCheckTest, ContinuationOfAMarkedRecordMustBeCommentedOut) {
  host_.scratch().Write("MP/ADS/adlist.ad", "[Ads]\n;IAO;1,0,0,\"a\",\"b\",Y,N,N,\\\n\"name\"\n");
  auto result = RunTool({"-p", profile_, "check"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(
      result.err.find(profile_ +
                      "\\ADS\\adlist.ad : Line #3\nContinued Comment line is not commented out."),
      std::string::npos)
      << result.err;
}

TEST_F(ToolCheckTest, VcsProjectsListsTheClientsProjects) {
  qvtest::FakeSs ss;
  ss.AnswerWithOutput("Dir", 0, "$/:\n$Alpha\n$Beta\n");
  auto result = RunTool({"--json", "vcs", "projects"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(nlohmann::json::parse(result.out), nlohmann::json::array({"Alpha", "Beta"}));
  ASSERT_EQ(ss.CommandLines().size(), 1u);
  EXPECT_EQ(ss.CommandLines()[0], "ss Dir $/");
}

TEST_F(ToolCheckTest, VcsProjectsFailureIsStatusOne) {
  qvtest::FakeSs ss;
  ss.Answer("Dir", 3);
  auto result = RunTool({"vcs", "projects"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("Source Safe command \"ss Dir $/\" failed."), std::string::npos)
      << result.err;
}

TEST_F(ToolCheckTest, VcsRegisterRecordsTheFile) {
  auto result =
      RunTool({"vcs", "register", "/work/copy/adlist.ad", "File", "$/MP/ADS/adlist.ad", "7"});
  ASSERT_EQ(result.status, 0) << result.err;
  std::string key = "SOFTWARE\\Vardo\\Lodestar\\Stewardry\\VCS\\FILES\\adlist.ad";
  EXPECT_EQ(qv::RegistryGetString(key, "WorkFilePath").value_or(""), "/work/copy/adlist.ad");
  EXPECT_EQ(qv::RegistryGetString(key, "ObjectType").value_or(""), "File");
  EXPECT_EQ(qv::RegistryGetString(key, "ObjectName").value_or(""), "$/MP/ADS/adlist.ad");
  EXPECT_EQ(qv::RegistryGetString(key, "ObjectVersion").value_or(""), "7");
  EXPECT_EQ(qv::RegistryGetDword(key, "VCS Status").value_or(0), 0x20000000u);
  EXPECT_EQ(RunTool({"vcs", "register", "x"}).status, 2);
}

}  // namespace
