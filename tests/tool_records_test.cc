// The quorvex tool's record commands on Ads: list, get, put, delete and
// flags, their usage errors, and a put that version control leaves unable
// to write the file.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/fake_ss.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using nlohmann::json;
using qvtest::ReadFileBytes;
using qvtest::RunTool;

constexpr char kHead[] = "\n[SourceSafe]\n$Header$\n\n; kept\n[Ads]\n";
constexpr char kLine3[] = "3,1,20,\"Banner\",\"Top\",Y,N,Y,\"Spring Sale\"\r\n";
constexpr char kLine7[] = ";IAO;7,2,300,\"Side\",\"\",N,Y,N,\"Old Offer\"\r\n";
constexpr char kTail[] = "[Notes]\n\"free text\"\n";

std::string Ads(const std::string& lines) {
  return kHead + lines + kTail;
}

std::vector<uint32_t> Ids(const json& array) {
  std::vector<uint32_t> ids;
  for (const json& r : array) ids.push_back(r.at("id").get<uint32_t>());
  return ids;
}

class ToolRecordsTest : public ::testing::Test {
 protected:
  ToolRecordsTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    ads_ = profile_ + "/ADS/adlist.ad";
    qvtest::WriteFileBytes(ads_, Ads(std::string(kLine3) + kLine7));
  }

  std::string File() const { return ReadFileBytes(ads_); }

  // Runs the tool on the profile with the given arguments after "-p P".
  qvtest::ToolResult Run(std::vector<std::string> args, const std::string& input = "") {
    args.insert(args.begin(), {"-p", profile_});
    return RunTool(args, input);
  }

  qvtest::ScriptedHost host_;  // a private registry and temporary folder for the tool
  std::string profile_;
  std::string ads_;
};

TEST_F(ToolRecordsTest, PutOfANewRecordPrintsItWithItsNewId) {
  auto put = Run({"--json", "put", "AD"},
                 R"({"id": 0, "name": "Summer", "text1": "Wide", "number2": 9, "flags": 6})");
  ASSERT_EQ(put.status, 0) << put.err;
  json record = json::parse(put.out);
  EXPECT_EQ(record.at("id"), 8);
  EXPECT_EQ(record.at("name"), "Summer");
  EXPECT_EQ(record.at("text1"), "Wide");
  EXPECT_EQ(record.at("number2"), 9);
  EXPECT_EQ(record.at("flags"), 6);
  EXPECT_EQ(record.at("recordFlags"), 0);
  EXPECT_EQ(File(), Ads(std::string(kLine3) + kLine7 + "8,0,9,\"Wide\",\"\",Y,Y,N,\"Summer\"\r\n"));

  auto list = Run({"--json", "list", "AD"});
  ASSERT_EQ(list.status, 0) << list.err;
  json all = json::parse(list.out);
  EXPECT_EQ(Ids(all), (std::vector<uint32_t>{3, 7, 8}));
  EXPECT_EQ(all.at(2).at("name"), "Summer");
  EXPECT_EQ(all.at(1).at("recordFlags"), 2147483648u);
}

TEST_F(ToolRecordsTest, PutReplacesByNameAndKeepsTheStoredIdAndName) {
  auto put = Run({"--json", "put", "AD", "-"}, R"({"name": "SPRING sale", "number1": 5})");
  ASSERT_EQ(put.status, 0) << put.err;
  json record = json::parse(put.out);
  EXPECT_EQ(record.at("id"), 3);
  EXPECT_EQ(record.at("name"), "Spring Sale");
  EXPECT_EQ(record.at("number1"), 5);
  EXPECT_EQ(File(), Ads(std::string("3,5,0,\"\",\"\",N,N,N,\"Spring Sale\"\r\n") + kLine7));
}

TEST_F(ToolRecordsTest, PutOfAnArrayPutsEveryRecordFromAFile) {
  std::string input = host_.scratch().Write(
      "ads.json", R"([{"name": "A"}, {"name": "B", "recordFlags": 2147483648}])");
  auto put = Run({"--json", "put", "ad", input});
  ASSERT_EQ(put.status, 0) << put.err;
  json records = json::parse(put.out);
  ASSERT_TRUE(records.is_array());
  EXPECT_EQ(Ids(records), (std::vector<uint32_t>{8, 9}));
  EXPECT_EQ(File(), Ads(std::string(kLine3) + kLine7 +
                        "8,0,0,\"\",\"\",N,N,N,\"A\"\r\n"
                        ";IAO;9,0,0,\"\",\"\",N,N,N,\"B\"\r\n"));
}

TEST_F(ToolRecordsTest, GetPrintsOneRecord) {
  auto get = Run({"--json", "get", "AD", "7"});
  ASSERT_EQ(get.status, 0) << get.err;
  json record = json::parse(get.out);
  EXPECT_EQ(record.at("id"), 7);
  EXPECT_EQ(record.at("number2"), 300);
  EXPECT_EQ(record.at("name"), "Old Offer");
  EXPECT_EQ(record.at("recordFlags"), 2147483648u);

  auto table = Run({"get", "AD", "3"});
  ASSERT_EQ(table.status, 0) << table.err;
  EXPECT_NE(table.out.find("name"), std::string::npos) << table.out;
  EXPECT_NE(table.out.find("Spring Sale"), std::string::npos) << table.out;

  auto absent = Run({"get", "AD", "42"});
  EXPECT_EQ(absent.status, 1);
  EXPECT_EQ(absent.out, "");
  EXPECT_EQ(Run({"get", "AD", "0"}).status, 2);
  EXPECT_EQ(Run({"get", "AD", "seven"}).status, 2);
}

TEST_F(ToolRecordsTest, ListPrintsATableByDefault) {
  auto list = Run({"list", "AD"});
  ASSERT_EQ(list.status, 0) << list.err;
  EXPECT_EQ(list.out.rfind("id", 0), 0u) << list.out;
  EXPECT_NE(list.out.find("Spring Sale"), std::string::npos);
  EXPECT_NE(list.out.find("Old Offer"), std::string::npos);
  EXPECT_EQ(File(), Ads(std::string(kLine3) + kLine7));  // reading changes nothing
}

TEST_F(ToolRecordsTest, DeleteRemovesTheRecord) {
  auto put = Run({"--json", "put", "AD"}, R"({"id": 0, "name": "Brief"})");
  ASSERT_EQ(put.status, 0) << put.err;
  uint32_t id = json::parse(put.out).at("id").get<uint32_t>();
  auto del = Run({"delete", "AD", std::to_string(id)});
  ASSERT_EQ(del.status, 0) << del.err;
  EXPECT_EQ(File(), Ads(std::string(kLine3) + kLine7));
  auto list = Run({"--json", "list", "AD"});
  ASSERT_EQ(list.status, 0) << list.err;
  EXPECT_EQ(Ids(json::parse(list.out)), (std::vector<uint32_t>{3, 7}));
}

TEST_F(ToolRecordsTest, DeleteOfAnAbsentIdFailsAndChangesNothing) {
  auto del = Run({"delete", "AD", "42"});
  EXPECT_EQ(del.status, 1);
  EXPECT_NE(del.err.find("nothing deleted"), std::string::npos) << del.err;
  EXPECT_EQ(File(), Ads(std::string(kLine3) + kLine7));
  EXPECT_EQ(Run({"delete", "AD"}).status, 2);
  EXPECT_EQ(Run({"delete", "AD", "0"}).status, 2);
}

TEST_F(ToolRecordsTest, FlagsShowTheKindsTable) {
  auto flags = Run({"--json", "flags", "AD"});
  ASSERT_EQ(flags.status, 0) << flags.err;
  json table = json::parse(flags.out);
  EXPECT_EQ(table.at("kindLabel"), "Ad");
  EXPECT_EQ(table.at("flagMask"), 14);
  ASSERT_EQ(table.at("bitNames").size(), 32u);
  EXPECT_EQ(table["bitNames"][28], "Participates in Local install");
  EXPECT_EQ(table["bitNames"][29], "Participates in Network install");
  EXPECT_EQ(table["bitNames"][30], "Participates in Workstation install");
  EXPECT_EQ(table["bitNames"][0], "");

  auto text = Run({"flags", "ad"});
  ASSERT_EQ(text.status, 0) << text.err;
  EXPECT_EQ(text.out,
            "Ad (mask 0xe)\n"
            "bit  3  field 8    Participates in Local install\n"
            "bit  2  field 7    Participates in Network install\n"
            "bit  1  field 6    Participates in Workstation install\n");
}

TEST_F(ToolRecordsTest, BadInputIsAUsageErrorAndChangesNothing) {
  const std::string before = File();
  struct Case {
    std::string input;
    std::string message;
  };
  const std::vector<Case> cases = {
      {"{\"name\": \"x\"", "the input is not JSON"},
      {R"({"name": "x", "colour": "red"})", "unknown member \"colour\" for kind AD"},
      {R"({"text1": ")" + std::string(41, 'x') + R"("})", "text1 is longer than 40 characters"},
      {R"({"name": ")" + std::string(385, 'n') + R"("})", "name is longer than 384 characters"},
      {R"({"number1": 256})", "number1 takes a number from 0 to 255"},
      {R"({"id": -1})", "id takes a number from 0 to 4294967295"},
      {R"({"name": 5})", "name has a value of the wrong type"},
      {R"({"recordFlags": 268435456})", "recordFlags takes 0 or 2147483648"},
      {R"([{"name": "fine"}, {"nope": 1}])", "unknown member \"nope\" for kind AD"},
      {"[1]", "a record must be a JSON object"},
  };
  for (const Case& c : cases) {
    auto put = Run({"put", "AD"}, c.input);
    EXPECT_EQ(put.status, 2) << c.input;
    EXPECT_NE(put.err.find(c.message), std::string::npos) << c.input << "\n" << put.err;
    EXPECT_EQ(put.out, "") << c.input;
    EXPECT_EQ(File(), before) << c.input;
  }
  auto missing = Run({"put", "AD", host_.scratch().Join("none.json")});
  EXPECT_EQ(missing.status, 2);
  EXPECT_EQ(File(), before);
}

TEST_F(ToolRecordsTest, UnknownKindIsAUsageError) {
  for (const char* command : {"list", "get", "put", "delete", "flags"}) {
    std::vector<std::string> args = {command, "XX"};
    if (std::string(command) == "get" || std::string(command) == "delete") args.push_back("1");
    auto run = Run(args, "{}");
    EXPECT_EQ(run.status, 2) << command;
    EXPECT_NE(run.err.find("unknown kind XX"), std::string::npos) << run.err;
  }
  EXPECT_EQ(File(), Ads(std::string(kLine3) + kLine7));
}

// With version control on, adlist.ad is read-only as a checked-in file is,
// and the client checks it out but leaves it so.
class ToolRecordsVcsTest : public ToolRecordsTest {
 protected:
  void MakeReadOnly() {
    std::filesystem::permissions(ads_,
                                 std::filesystem::perms::owner_write |
                                     std::filesystem::perms::group_write |
                                     std::filesystem::perms::others_write,
                                 std::filesystem::perm_options::remove);
  }
  qvtest::FakeSs ss_;
};

TEST_F(ToolRecordsVcsTest, PutThatCannotWriteTheFileReportsItAndChangesNothing) {
  MakeReadOnly();
  ss_.AnswerSettingReadOnly("checkout", 0, ads_, true);
  const std::string before = File();
  auto put = Run({"--vcs-project", "Proj", "--json", "put", "AD"}, R"({"name": "Blocked"})");
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message,
           "File %s cannot be written over, you may not have it checked out, and/or the "
           "attributes of the file may be set to Read-Only.",
           (profile_ + "\\ADS\\adlist.ad").c_str());
  EXPECT_NE(put.err.find(message), std::string::npos) << put.err;
  EXPECT_EQ(put.status, 1);
  EXPECT_EQ(put.out, "");
  EXPECT_EQ(File(), before);
  std::vector<std::string> calls = ss_.CommandLines();
  ASSERT_GE(calls.size(), 2u);
  EXPECT_EQ(calls[0], "ss cp \\Proj\\ADS");
  EXPECT_EQ(calls[1], "ss checkout adlist.ad");
}

TEST_F(ToolRecordsVcsTest, WritableCopyIsNotCheckedOutWithoutYes) {
  auto put = Run({"--vcs-project", "Proj", "put", "AD"}, R"({"name": "Asked"})");
  EXPECT_NE(put.err.find("There is a writeable copy of file adlist.ad locally.  Would you like to "
                         "proceed with it's checkout?"),
            std::string::npos)
      << put.err;
  EXPECT_NE(put.err.find("answered No"), std::string::npos) << put.err;
  for (const std::string& call : ss_.CommandLines()) {
    EXPECT_NE(call, "ss checkout adlist.ad");
  }
}

}  // namespace
