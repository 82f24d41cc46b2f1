// Changing records with the quorvex tool: put replaces whole records and
// says when a stored Ads record kept its id and name, set changes only the
// members it names (flags by label), init leaves existing folders alone,
// and questions without a terminal are answered No with the way out said
// once.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using nlohmann::json;
using qvtest::ReadFileBytes;
using qvtest::RunTool;

constexpr char kAds[] =
    "\n[SourceSafe]\n$Header$\n\n[Ads]\n"
    "3,1,20,\"Banner\",\"Top\",Y,N,Y,\"Spring Sale\"\r\n";
constexpr char kLocations[] =
    "\n[SourceSafe]\n$Header$\n\n[Locations]\n"
    "\"Root\",\"1\",\"$DR$\",\"\",\"Root\",\"\",\"\",\"YNNNNNNYNNNNNNNNNNNNNNNNNNNNNNNN\"\r\n";

class ToolSetTest : public ::testing::Test {
 protected:
  ToolSetTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    qvtest::WriteFileBytes(profile_ + "/ADS/adlist.ad", kAds);
    qvtest::WriteFileBytes(profile_ + "/locs/vardo.lo", kLocations);
  }
  qvtest::ToolResult Run(std::vector<std::string> args, const std::string& input = "") {
    args.insert(args.begin(), {"-p", profile_});
    return RunTool(args, input);
  }
  qvtest::ScriptedHost host_;  // a private registry for the tool
  std::string profile_;
};

TEST_F(ToolSetTest, SetChangesOnlyTheNamedMembers) {
  auto set = Run({"--json", "set", "AD", "3", "text2=Bottom", "number2=7"});
  ASSERT_EQ(set.status, 0) << set.err;
  json record = json::parse(set.out);
  EXPECT_EQ(record.at("text2"), "Bottom");
  EXPECT_EQ(record.at("number2"), 7);
  EXPECT_EQ(record.at("text1"), "Banner");
  EXPECT_EQ(record.at("name"), "Spring Sale");
  EXPECT_EQ(record.at("flags"), 10);
}

TEST_F(ToolSetTest, SetTakesFlagsByLabel) {
  auto add = Run({"--json", "set", "LO", "Root", "1", "Flags+=Network,Visible in custom dialog",
                  "Flags-=modifiable"});
  ASSERT_EQ(add.status, 0) << add.err;
  EXPECT_EQ(json::parse(add.out).at("flagNames"),
            json::array({"Visible in custom dialog", "Participates in Local install",
                         "Participates in Network install"}));
  auto replace = Run({"set", "LO", "Root", "1", "Flags=Modifiable", "Folder=Top"});
  ASSERT_EQ(replace.status, 0) << replace.err;
  EXPECT_NE(ReadFileBytes(profile_ + "/locs/vardo.lo")
                .find("\"Root\",\"1\",\"$DR$\",,\"Top\",,\"\",\"YNNNNNNNNNNNNNNN"),
            std::string::npos);
}

TEST_F(ToolSetTest, SetRefusesWhatItCannotDo) {
  const std::string before = ReadFileBytes(profile_ + "/ADS/adlist.ad");
  struct Case {
    std::vector<std::string> args;
    int status;
    std::string first_line;
  };
  const Case cases[] = {
      {{"set", "AD", "3"}, 2, "quorvex: usage: quorvex set AD ID MEMBER=VALUE..."},
      {{"set", "AD", "3", "color=red"}, 2, "quorvex: unknown member color for kind AD"},
      {{"set", "AD", "3", "id=4"}, 2, "quorvex: id is part of the key and cannot be set"},
      {{"set", "AD", "3", "number1=x"}, 2, "quorvex: number1 takes a number"},
      {{"set", "AD", "3", "flags+=Shiny"}, 2, "quorvex: unknown flag \"Shiny\" for kind AD"},
      {{"set", "AD", "3", "text1"}, 2, "quorvex: expected MEMBER=VALUE, got \"text1\""},
      {{"set", "AD", "9", "text1=x"}, 1, "quorvex: no AD record with that key"},
  };
  for (const Case& c : cases) {
    auto run = Run(c.args);
    EXPECT_EQ(run.status, c.status) << c.args.back();
    EXPECT_EQ(run.err.substr(0, c.first_line.size()), c.first_line) << run.err;
  }
  EXPECT_EQ(ReadFileBytes(profile_ + "/ADS/adlist.ad"), before);
}

TEST_F(ToolSetTest, PutReplacesTheWholeRecord) {
  auto put = Run({"--json", "put", "AD"}, R"({"id":3,"name":"Spring Sale","text1":"New"})");
  ASSERT_EQ(put.status, 0) << put.err;
  json record = json::parse(put.out);
  EXPECT_EQ(record.at("text1"), "New");
  EXPECT_EQ(record.at("text2"), "");
  EXPECT_EQ(record.at("number1"), 0);
  EXPECT_EQ(put.err, "");  // the id and name were the stored ones
  auto help = RunTool({"help", "put"});
  EXPECT_NE(help.out.find("replaces the whole stored record"), std::string::npos) << help.out;
}

TEST_F(ToolSetTest, PutSaysWhenTheStoredIdAndNameWereKept) {
  auto put = Run({"--json", "put", "AD"}, R"({"id":3,"name":"Autumn","text1":"New"})");
  ASSERT_EQ(put.status, 0) << put.err;
  EXPECT_EQ(json::parse(put.out).at("name"), "Spring Sale");
  EXPECT_EQ(put.err,
            "quorvex: the AD record was replaced and keeps its stored name \"Spring Sale\" "
            "(given: name \"Autumn\")\n");
}

TEST_F(ToolSetTest, InitRefusesAProfileAndAFolderWithFiles) {
  const std::string before = ReadFileBytes(profile_ + "/ADS/adlist.ad");
  auto again = RunTool({"init", profile_});
  EXPECT_EQ(again.status, 1);
  EXPECT_EQ(again.err,
            "quorvex: " + profile_ +
                " already holds a Master Profile (locs/vardo.lo): nothing was changed\n");
  auto forced = RunTool({"--force", "init", profile_});
  EXPECT_EQ(forced.status, 1);
  EXPECT_EQ(ReadFileBytes(profile_ + "/ADS/adlist.ad"), before);

  std::string other = host_.scratch().Join("other");
  qvtest::MakeDirs(other);
  qvtest::WriteFileBytes(other + "/notes.txt", "mine\n");
  auto busy = RunTool({"init", other});
  EXPECT_EQ(busy.status, 1);
  EXPECT_EQ(busy.err.substr(0, busy.err.find('\n')),
            "quorvex: " + other + " is not empty: nothing was changed");
  EXPECT_FALSE(qvtest::PathExists(other + "/locs"));
  auto force = RunTool({"--force", "init", other});
  EXPECT_EQ(force.status, 0) << force.err;
  EXPECT_TRUE(qvtest::PathExists(other + "/locs/vardo.lo"));
  EXPECT_EQ(ReadFileBytes(other + "/notes.txt"), "mine\n");

  std::string empty = host_.scratch().Join("empty");
  qvtest::MakeDirs(empty);
  EXPECT_EQ(RunTool({"init", empty}).status, 0);
}

TEST_F(ToolSetTest, WithoutATerminalQuestionsAreAnsweredNoAndTheFlagSaidOnce) {
  // Two resource files that do not exist: each put asks to create one.
  auto put = Run({"put", "Resources"}, R"([{"LanguageCode":"FR","ResourceName":"A","Text":"x"},)"
                                       R"({"LanguageCode":"IT","ResourceName":"A","Text":"x"}])");
  EXPECT_EQ(put.status, 1);
  EXPECT_EQ(std::count(put.err.begin(), put.err.end(), '?') >= 2, true) << put.err;
  const std::string said = "(no terminal to ask: answered No; use --yes to agree)\n";
  size_t hint = put.err.find(said);
  ASSERT_NE(hint, std::string::npos) << put.err;
  EXPECT_EQ(put.err.find("use --yes", hint + said.size()), std::string::npos) << put.err;
  EXPECT_NE(put.err.find("(answered No)\n", hint), std::string::npos) << put.err;

  auto no = Run({"--no", "put", "Resources"}, R"({"LanguageCode":"FR","ResourceName":"A"})");
  EXPECT_EQ(no.status, 1);
  EXPECT_NE(no.err.find("(answered No)\n"), std::string::npos) << no.err;
  auto yes = Run({"--yes", "put", "Resources"}, R"({"LanguageCode":"FR","ResourceName":"A"})");
  EXPECT_EQ(yes.status, 0) << yes.err;
  EXPECT_NE(yes.err.find("(answered Yes)\n"), std::string::npos) << yes.err;
}

}  // namespace
