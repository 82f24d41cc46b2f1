// What the quorvex tool prints for people and for scripts: flags by label,
// inactive records marked, internal members only with -v, "flagNames" in
// JSON (and taken back by put), the flag table one bit a line, owner keys
// in the usage, each engine report once, and the progress line.
#include <gtest/gtest.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/run_tool.h"
#include "support/scoped_env.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using nlohmann::json;
using qvtest::RunTool;

constexpr char kLocations[] =
    "\n[SourceSafe]\n$Header$\n\n[Locations]\n"
    "\"Root\",\"1\",\"$DR$\",\"\",\"Root\",\"\",\"\",\"YNNNNNNYNNNNNNNNNNNNNNNNNNNNNNNN\"\r\n"
    ";IAO;\"Old\",\"1\",\"Root\",\"1\",\"Old\",\"\",\"\",\"NNNNNNNNNNNNNNNNNNNNNNNNNNNNNNNN\"\r\n";
constexpr char kLongFolder[] =
    "\"Long\",\"1\",\"Root\",\"1\",\"Very Long Folder Name\",\"\",\"\","
    "\"NNNNNNNNNNNNNNNNNNNNNNNNNNNNNNNN\"\r\n";

size_t Count(const std::string& text, const std::string& part) {
  size_t n = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
  return n;
}

class ToolOutputTest : public ::testing::Test {
 protected:
  ToolOutputTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    qvtest::WriteFileBytes(profile_ + "/locs/vardo.lo", kLocations);
  }
  qvtest::ToolResult Run(std::vector<std::string> args, const std::string& input = "") {
    args.insert(args.begin(), {"-p", profile_});
    return RunTool(args, input);
  }
  qvtest::ScriptedHost host_;  // a private registry for the tool
  std::string profile_;
};

TEST_F(ToolOutputTest, PlainListShowsLabelsAndHidesInternalMembers) {
  auto list = Run({"list", "LO"});
  ASSERT_EQ(list.status, 0) << list.err;
  EXPECT_EQ(list.out,
            "Name  Version  ParentName  ParentVersion  Folder  ShortFolder  Attribute40  Flags"
            "              State\n"
            "Root  1        $DR$                       Root                              "
            "Modifiable, Local\n"
            "Old   1        Root        1              Old"
            "                                                  inactive\n");
  EXPECT_EQ(list.out.find("recordFlags"), std::string::npos);
  EXPECT_EQ(list.out.find("lineNumber"), std::string::npos);

  auto verbose = Run({"list", "-v", "LO"});
  ASSERT_EQ(verbose.status, 0) << verbose.err;
  EXPECT_NE(verbose.out.find("recordFlags  lineNumber"), std::string::npos) << verbose.out;
  EXPECT_NE(verbose.out.find("2147483648"), std::string::npos) << verbose.out;

  auto get = Run({"get", "LO", "Root", "1"});
  ASSERT_EQ(get.status, 0) << get.err;
  EXPECT_NE(get.out.find("Modifiable, Local"), std::string::npos) << get.out;
  EXPECT_EQ(get.out.find("State"), std::string::npos) << get.out;
}

TEST_F(ToolOutputTest, AdsHideTheRowReference) {
  auto list = Run({"list", "AD"});
  ASSERT_EQ(list.status, 0) << list.err;
  EXPECT_EQ(list.out, "id  number1  number2  text1  text2  flags  name\n");
  auto verbose = Run({"list", "-v", "AD"});
  EXPECT_NE(verbose.out.find("rowReference"), std::string::npos) << verbose.out;
}

TEST_F(ToolOutputTest, JsonKeepsNumbersAndAddsFlagNames) {
  auto get = Run({"--json", "get", "LO", "Root", "1"});
  ASSERT_EQ(get.status, 0) << get.err;
  json record = json::parse(get.out);
  EXPECT_EQ(record.at("Flags"), 0x81000000u);
  EXPECT_EQ(record.at("flagNames"), json::array({"Modifiable", "Participates in Local install"}));
  EXPECT_EQ(record.at("recordFlags"), 0);
  EXPECT_EQ(record.at("lineNumber"), 6);
}

TEST_F(ToolOutputTest, PutTakesFlagNamesOrTheNumber) {
  auto by_name = Run({"--json", "put", "LO"},
                     R"({"Name":"New","Version":"1","Folder":"New","ParentName":"Root",)"
                     R"("ParentVersion":"1","flagNames":["Modifiable","Network"]})");
  ASSERT_EQ(by_name.status, 0) << by_name.err;
  EXPECT_EQ(json::parse(by_name.out).at("Flags"), 0x80800000u);

  auto both = Run({"--json", "put", "LO"},
                  R"({"Name":"New","Version":"1","Folder":"New","Flags":2155872256,)"
                  R"("flagNames":["Modifiable","Participates in Network install"]})");
  EXPECT_EQ(both.status, 0) << both.err;

  auto disagree = Run({"put", "LO"}, R"({"Name":"New","Version":"1","Folder":"New","Flags":1,)"
                                     R"("flagNames":["Modifiable"]})");
  EXPECT_EQ(disagree.status, 2);
  EXPECT_NE(disagree.err.find("Flags (1) and flagNames (2147483648) disagree"), std::string::npos)
      << disagree.err;

  auto unknown = Run({"put", "LO"}, R"({"Name":"New","Version":"1","flagNames":["Shiny"]})");
  EXPECT_EQ(unknown.status, 2);
  EXPECT_NE(unknown.err.find("flagNames: unknown label \"Shiny\""), std::string::npos)
      << unknown.err;
}

TEST_F(ToolOutputTest, FlagsListsBitLetterAndLabel) {
  auto flags = Run({"flags", "LO"});
  ASSERT_EQ(flags.status, 0) << flags.err;
  EXPECT_EQ(flags.out.substr(0, flags.out.find('\n', flags.out.find('\n') + 1) + 1),
            "Location (mask 0x4fc00000)\n"
            "bit 31  letter 1   Modifiable\n");
  EXPECT_NE(flags.out.find("bit 22  letter 10  Participates in Workstation install\n"),
            std::string::npos)
      << flags.out;
  EXPECT_EQ(Count(flags.out, "\n"), 13u);
}

TEST_F(ToolOutputTest, OwnerKeysAreExplainedAndUnknownOwnersReported) {
  auto usage = Run({"list", "Resources"});
  EXPECT_EQ(usage.status, 2);
  EXPECT_EQ(usage.err,
            "quorvex: usage: quorvex list Resources LANGUAGE (LANGUAGE: a language code of the "
            "profile, e.g. US)\n");
  auto help = RunTool({"help", "list"});
  EXPECT_NE(help.out.find("list KIND LANGUAGE"), std::string::npos) << help.out;
  EXPECT_NE(help.out.find("e.g. US"), std::string::npos) << help.out;

  auto unknown = Run({"list", "Resources", "XX"});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.out, "");
  EXPECT_EQ(unknown.err.substr(0, unknown.err.find('\n')),
            "quorvex: no language XX in this profile (it has no Resources file for XX)");
  auto get = Run({"get", "Resources", "XX", "Name"});
  EXPECT_EQ(get.status, 1);
  EXPECT_NE(get.err.find("no language XX in this profile"), std::string::npos) << get.err;
}

TEST_F(ToolOutputTest, EachWarningOncePerCommand) {
  qvtest::WriteFileBytes(profile_ + "/locs/vardo.lo", std::string(kLocations) + kLongFolder);
  const std::string warning = "Location Long,1 has a long folder name";
  auto list = Run({"list", "LO"});
  ASSERT_EQ(list.status, 0) << list.err;
  EXPECT_EQ(Count(list.err, warning), 1u) << list.err;
  auto put = Run({"--force", "put", "LO"}, R"({"Name":"Other","Version":"1","Folder":"Other"})");
  ASSERT_EQ(put.status, 0) << put.err;
  EXPECT_EQ(Count(put.err, warning), 1u) << put.err;
}

TEST_F(ToolOutputTest, NoProgressLineWithoutATerminal) {
  qvtest::ScopedEnv at_once("QUORVEX_PROGRESS_DELAY_MS", "0");
  auto check = Run({"check"});
  EXPECT_EQ(check.status, 0) << check.err;
  EXPECT_EQ(check.err, "");
  auto list = Run({"list", "LO"});
  EXPECT_EQ(list.err, "");
}

TEST_F(ToolOutputTest, ProgressLineOnATerminal) {
#ifdef _WIN32
  GTEST_SKIP() << "the terminal here is a pseudo-terminal made by util-linux script, which a "
                  "Windows program cannot start";
#endif
  if (access("/usr/bin/script", X_OK) != 0 && access("/bin/script", X_OK) != 0)
    GTEST_SKIP() << "util-linux script is not installed";
  qvtest::ScopedEnv at_once("QUORVEX_PROGRESS_DELAY_MS", "0");
  std::string command = qvtest::ToolPath() + " -p " + profile_ + " check";
  auto run = qvtest::RunProgram({"script", "-qec", command, "/dev/null"});
  EXPECT_EQ(run.status, 0) << run.err;
  // One line, redrawn in place, and wiped at the end.
  EXPECT_EQ(run.out.rfind("\rquorvex: checking the profile... ", 0), 0u) << run.out;
  EXPECT_EQ(Count(run.out, "\n"), 0u) << run.out;
  EXPECT_EQ(run.out.substr(run.out.size() - 4), "\r\033[K") << run.out;
}

}  // namespace
