// The quorvex tool on file groups and shipped files: lists by module, a
// put, get and delete through the generic commands, and the rename command.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/location_profile.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"

namespace {

using json = nlohmann::json;
using qvtest::FlagLetters;
using qvtest::ReadFileBytes;
using qvtest::RunTool;

std::vector<std::string> Column(const std::string& out, const char* member) {
  std::vector<std::string> values;
  for (const json& record : json::parse(out)) values.push_back(record.at(member));
  return values;
}

class ToolFileGroupTest : public ::testing::Test {
 protected:
  ToolFileGroupTest() : profile_(host_.scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    const std::string flags = "\"" + FlagLetters("") + "\"";
    qvtest::WriteFileBytes(
        ModuleFile(),
        "\n[SourceSafe]\n$Header$\n\n[Module]\n\"Core\",\"1.0\",\"\",\"\",\"\",\"\",\"\"," + flags +
            ",\"\"\n\n[File Groups]\n\"Main\",\"\",\"\",\"\",0," + flags +
            ",\"\",\"\"\n\"Sub\",\"\",\"\",\"Main\",0," + flags +
            ",\"\",\"\"\n\n[File Group Files]\n\"US\",\"Main\",\"a.exe\",,\"\",\"\",,,,,,,,,," +
            flags + "," + flags + "\n");
  }

  std::string ModuleFile() const { return profile_ + "/modules/core.mo"; }

  qvtest::ToolResult Run(std::vector<std::string> args, const std::string& input = "") {
    args.insert(args.begin(), {"-p", profile_});
    return RunTool(args, input);
  }

  qvtest::ScriptedHost host_;
  std::string profile_;
};

TEST_F(ToolFileGroupTest, ListsAreByModule) {
  auto groups = Run({"--json", "list", "FG", "Core", "1.0"});
  ASSERT_EQ(groups.status, 0) << groups.err;
  EXPECT_EQ(Column(groups.out, "GroupName"), (std::vector<std::string>{"Main", "Sub"}));
  EXPECT_EQ(Column(groups.out, "ParentGroup"), (std::vector<std::string>{"~", "Main"}));
  auto files = Run({"--json", "list", "sf", "Core", "1.0"});
  ASSERT_EQ(files.status, 0) << files.err;
  EXPECT_EQ(Column(files.out, "FileName"), std::vector<std::string>{"a.exe"});
  EXPECT_EQ(json::parse(files.out)[0].at("FileType"), 4);
  EXPECT_EQ(Run({"list", "FG", "Core"}).status, 2);
  auto missing = Run({"list", "FG", "None", "1"});
  EXPECT_EQ(missing.status, 1);
  EXPECT_NE(missing.err.find("File associated with module None,1 cannot be found or opened!"),
            std::string::npos)
      << missing.err;
}

TEST_F(ToolFileGroupTest, PutGetAndDeleteAShippedFile) {
  auto put = Run({"--json", "put", "SF"},
                 R"({"ModuleName": "Core", "ModuleVersion": "1.0", "Language": "DE",
                     "GroupName": "Sub", "FileName": "b.hlp"})");
  ASSERT_EQ(put.status, 0) << put.err;
  EXPECT_EQ(json::parse(put.out).at("FileType"), 12);
  auto get = Run({"--json", "get", "SF", "Core", "1.0", "Sub", "b.hlp", "DE"});
  ASSERT_EQ(get.status, 0) << get.err;
  EXPECT_EQ(json::parse(get.out).at("GroupName"), "Sub");
  ASSERT_EQ(Run({"delete", "SF", "Core", "1.0", "Sub", "b.hlp", "DE"}).status, 0);
  EXPECT_EQ(Run({"get", "SF", "Core", "1.0", "Sub", "b.hlp", "DE"}).status, 1);
}

TEST_F(ToolFileGroupTest, RenameAGroupAndAFile) {
  auto renamed = Run({"rename", "FG", "Core", "1.0", "Main", "Base"});
  ASSERT_EQ(renamed.status, 0) << renamed.err;
  EXPECT_EQ(ReadFileBytes(ModuleFile()).find("\"Main\""), std::string::npos);
  auto file = Run({"rename", "SF", "Core", "1.0", "Base", "US", "a.exe", "Sub", "US", "c.dll"});
  ASSERT_EQ(file.status, 0) << file.err;
  auto files = Run({"--json", "list", "SF", "Core", "1.0"});
  EXPECT_EQ(Column(files.out, "GroupName"), std::vector<std::string>{"Sub"});
  EXPECT_EQ(Column(files.out, "FileName"), std::vector<std::string>{"c.dll"});
  auto used = Run({"rename", "FG", "Core", "1.0", "Sub", "Base"});
  EXPECT_EQ(used.status, 1);
  EXPECT_NE(
      used.err.find("File Group cannot be renamed since there is already a File Group named Base"),
      std::string::npos);
  EXPECT_EQ(Run({"rename", "FG", "Core", "1.0", "Sub"}).status, 2);
  EXPECT_EQ(Run({"rename", "AD", "1", "2"}).status, 2);
}

}  // namespace

class ToolModuleBirthTest : public ToolFileGroupTest {};

TEST_F(ToolModuleBirthTest, AModuleBornFromAParentGetsACopyOfItsFile) {
  auto put = Run({"--json", "put", "MO", "--parent", "Core", "1.0"},
                 R"({"Name": "Child", "Version": "2.0"})");
  ASSERT_EQ(put.status, 0) << put.err;
  const std::string file = json::parse(put.out).at("FileName");
  EXPECT_FALSE(file.empty());
  auto groups = Run({"--json", "list", "FG", "Child", "2.0"});
  ASSERT_EQ(groups.status, 0) << groups.err;
  EXPECT_EQ(Column(groups.out, "GroupName"), (std::vector<std::string>{"Main", "Sub"}));
  auto files = Run({"--json", "list", "SF", "Child", "2.0"});
  ASSERT_EQ(files.status, 0) << files.err;
  EXPECT_EQ(Column(files.out, "FileName"), std::vector<std::string>{"a.exe"});
  // The parent is untouched.
  auto parent = Run({"--json", "list", "FG", "Core", "1.0"});
  EXPECT_EQ(Column(parent.out, "GroupName"), (std::vector<std::string>{"Main", "Sub"}));
}

TEST_F(ToolModuleBirthTest, AParentThatIsNotThereWritesNothing) {
  const std::string before = ReadFileBytes(ModuleFile());
  auto put = Run({"put", "MO", "--parent", "None", "1.0"}, R"({"Name": "Child", "Version": "2.0"})");
  EXPECT_EQ(put.status, 1);
  EXPECT_NE(put.err.find("no MO record with the parent's key"), std::string::npos) << put.err;
  EXPECT_EQ(Run({"get", "MO", "Child", "2.0"}).status, 1);
  EXPECT_EQ(ReadFileBytes(ModuleFile()), before);
}

TEST_F(ToolModuleBirthTest, OnlyKindsWithBirthsTakeAParent) {
  auto put = Run({"put", "FG", "--parent", "Core", "1.0"}, R"({"GroupName": "X"})");
  EXPECT_EQ(put.status, 2);
  EXPECT_NE(put.err.find("--parent is for MO, PR, DR and MG"), std::string::npos) << put.err;
  auto shape = Run({"put", "MO", "--parent", "Core"}, R"({"Name": "Child", "Version": "2.0"})");
  EXPECT_EQ(shape.status, 2) << shape.err;
}
