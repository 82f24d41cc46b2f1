// Module groups: listing the group files, a new group refused because the
// file maker takes no module-group kind, a group whose file went missing,
// the group's modules, and deleting a group from every install.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/fake_ss.h"
#include "support/location_profile.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::FlagLetters;
using qvtest::ReadFileBytes;
using qvtest::WriteFileBytes;

std::string GroupLine(const std::string& name, const std::string& version,
                      const std::string& a = "IDS_A", const std::string& b = "IDS_B") {
  return "\"" + name + "\",\"" + version + "\",,,\"Third\",\"3\",\"" + a + "\",\"" + b + "\",\"" +
         FlagLetters("Y") + "\"\r\n";
}

std::string InstallHead(const std::string& name) {
  return "\n[Install]\n\"" + name +
         "\",\"\",\"\",\"\",\"t1\",\"t2\",,,,,,,,,,\"t7\",\"\",\"\",\"t8\",\"t9\",\"t10\"\r\n";
}

std::vector<std::string> Entries(const std::string& dir) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

class ModuleGroupFamilyTest : public ::testing::Test {
 protected:
  ModuleGroupFamilyTest() : profile_(&host_) {}

  std::string GroupFile(const std::string& name) const {
    return profile_.dir() + "/UIGroups/" + name;
  }
  std::string InstallFile(const std::string& name) const {
    return profile_.dir() + "/installs/" + name;
  }
  void OpenLocked() { ASSERT_EQ(profile_.Open(qvtest::kLockedOpen), 1); }

  MGRecord* NewGroup(const char* name, const char* version) {
    MGRecord* group = nullptr;
    MPNewMG(&group);
    snprintf(group->row.Name, sizeof group->row.Name, "%s", name);
    snprintf(group->row.Version, sizeof group->row.Version, "%s", version);
    return group;
  }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

TEST_F(ModuleGroupFamilyTest, EveryGroupFileGivesItsFirstLine) {
  WriteFileBytes(GroupFile("tools.MG"),
                 "\n[Module Groups]\n" + GroupLine("Tools", "1") + "[Module Group Modules]\n");
  WriteFileBytes(GroupFile("plain.mg"), "\n[Module Group Modules]\n");
  OpenLocked();
  MGList* list = nullptr;
  ASSERT_EQ(MPGetMGCompleteList(&list), 1);
  ASSERT_EQ(list->count, 1u);
  auto* tools = static_cast<MGRecord*>(list->head->record);
  EXPECT_STREQ(tools->row.Name, "Tools");
  EXPECT_STREQ(tools->row.SecondName, "");
  EXPECT_STREQ(tools->row.ThirdVersion, "3");
  EXPECT_STREQ(tools->row.TextIdB, "IDS_B");
  EXPECT_EQ(tools->row.Flags, MG_EXPANDABLE);
  EXPECT_STREQ(tools->FileName, "tools.MG");
  MPFreeMGList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ModuleGroupFamilyTest, ANewModuleGroupIsRefusedAndLeavesNothingBehind) {
  qvtest::FakeSs ss;
  WriteLastProfile(profile_.dir().c_str(), OPEN_MASTER | OPEN_LOCK, "Proj");
  ASSERT_EQ(profile_.Open(OPEN_MASTER | OPEN_LOCK), 1);
  ss.ClearCalls();
  MGRecord* group = NewGroup("Tools", "1");
  EXPECT_EQ(MPPutMG(&group, nullptr), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Unsupported File Type given to CreateMungedFile."});
  EXPECT_STREQ(group->FileName, "");
  EXPECT_EQ(Entries(profile_.dir() + "/UIGroups"), std::vector<std::string>{});
  EXPECT_EQ(ss.CommandLines(), std::vector<std::string>{});
  MGList* list = nullptr;
  ASSERT_EQ(MPGetMGCompleteList(&list), 1);
  EXPECT_EQ(list->count, 0u);
  MPFreeMGList(list);
  MPFreeMG(&group);
  ASSERT_EQ(CloseMasterProfile(), 1);
}

TEST_F(ModuleGroupFamilyTest, AGroupWhoseFileWasDeletedByHandIsReported) {
  OpenLocked();
  MGRecord* group = NewGroup("Tools", "1");
  snprintf(group->FileName, sizeof group->FileName, "tools.MG");
  EXPECT_EQ(MPPutMG(&group, nullptr), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Did you just manually delete a file from the database?"});
  EXPECT_EQ(Entries(profile_.dir() + "/UIGroups"), std::vector<std::string>{});
  MPFreeMG(&group);
}

TEST_F(ModuleGroupFamilyTest, AGroupWithAFileIsRewrittenInPlace) {
  const std::string rest =
      "[Module Group Modules]\n\"Editor\",\"1\",2,\"" + FlagLetters("") + "\"\r\n";
  WriteFileBytes(GroupFile("tools.MG"), "\n[Module Groups]\n" + GroupLine("Tools", "1") + rest);
  OpenLocked();
  MGRecord* group = nullptr;
  ASSERT_EQ(MPGetMG("Tools", "1", &group), 1);
  snprintf(group->row.TextIdA, sizeof group->row.TextIdA, "IDS_C");
  ASSERT_EQ(MPPutMG(&group, nullptr), 1);
  EXPECT_EQ(ReadFileBytes(GroupFile("tools.MG")),
            "\n[Module Groups]\n\"Tools\",\"1\",,,\"Third\",\"3\",\"IDS_C\",\"IDS_B\",\"" +
                FlagLetters("Y") + "\"\r\n" + rest);
  MPFreeMG(&group);
  // A child needs a file of its own before its parent is looked for, so
  // the file maker's refusal comes first.
  MGRecord* child = NewGroup("Tools Pro", "2");
  MGRecord* ghost = NewGroup("Ghost", "1");
  EXPECT_EQ(MPPutMG(&child, ghost), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Unsupported File Type given to CreateMungedFile."});
  MPFreeMG(&child);
  MPFreeMG(&ghost);
}

TEST_F(ModuleGroupFamilyTest, TheGroupsModulesReadAndWriteTheirSection) {
  const std::string head = "\n[Module Groups]\n" + GroupLine("Tools", "1");
  WriteFileBytes(GroupFile("tools.MG"), head + "[Module Group Modules]\n\"Editor\",\"1\",2,\"" +
                                            FlagLetters("") + "\"\r\n");
  OpenLocked();
  MGMList* list = nullptr;
  ASSERT_EQ(MPGetMGMCompleteList("Tools", "1", &list, 0), 1);
  ASSERT_EQ(list->count, 1u);
  auto* module = static_cast<MGMRecord*>(list->head->record);
  EXPECT_STREQ(module->row.GroupName, "Tools");
  EXPECT_EQ(module->row.Number, 2);
  MPFreeMGMList(list);
  MGMRecord* added = nullptr;
  MPNewMGM(&added);
  snprintf(added->row.GroupName, sizeof added->row.GroupName, "Tools");
  snprintf(added->row.GroupVersion, sizeof added->row.GroupVersion, "1");
  snprintf(added->row.ModuleName, sizeof added->row.ModuleName, "Viewer");
  snprintf(added->row.ModuleVersion, sizeof added->row.ModuleVersion, "1");
  added->row.Number = 5;
  ASSERT_EQ(MPPutMGM(added), 1);
  MPFreeMGM(added);
  ASSERT_EQ(MPDeleteMGM("Tools", "1", "Editor", nullptr), 1);
  EXPECT_EQ(ReadFileBytes(GroupFile("tools.MG")),
            head + "[Module Group Modules]\n\"Viewer\",\"1\",5,\"" + FlagLetters("") + "\"\r\n");
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_EQ(MPGetMGMCompleteList("Tools", "2", &list, 0), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{
                "File associated with Module Group Tools,2 cannot be found or opened!"});
  MPFreeMGMList(list);
}

TEST_F(ModuleGroupFamilyTest, ABrokenLineFailsTheReadAndLeavesTheFile) {
  const std::string bytes = "\n[Module Groups]\n" + GroupLine("Tools", "1") +
                            "[Module Group Modules]\n\"Editor\",\"1\",2,\"" + FlagLetters("") +
                            "\"\r\n\"Viewer\",\"1\",x,\r\n";
  WriteFileBytes(GroupFile("tools.MG"), bytes);
  OpenLocked();
  MGMList* list = nullptr;
  EXPECT_EQ(MPGetMGMCompleteList("Tools", "1", &list, 0), 0);
  MPFreeMGMList(list);
  MPDeleteMGM("Tools", "1", "Editor", "1");
  MGMRecord* added = nullptr;
  MPNewMGM(&added);
  snprintf(added->row.GroupName, sizeof added->row.GroupName, "Tools");
  snprintf(added->row.GroupVersion, sizeof added->row.GroupVersion, "1");
  MPPutMGM(added);
  MPFreeMGM(added);
  EXPECT_EQ(ReadFileBytes(GroupFile("tools.MG")), bytes);
  EXPECT_FALSE(host_.errors().empty());
}

TEST_F(ModuleGroupFamilyTest, DeletingAGroupRemovesItFromEveryInstall) {
  WriteFileBytes(GroupFile("tools.MG"), "\n[Module Groups]\n" + GroupLine("Tools", "1"));
  const std::string dmg = "[Driver Module Groups]\n";
  const std::string tools = "\"Tools\",\"1\",\"" + FlagLetters("Y") + "\"\r\n";
  const std::string other = "\"Tools\",\"2\",\"" + FlagLetters("") + "\"\r\n";
  WriteFileBytes(InstallFile("net.in"), InstallHead("Net") + dmg + tools + other);
  WriteFileBytes(InstallFile("local.in"), InstallHead("Local") + dmg + tools);
  OpenLocked();
  ASSERT_EQ(MPDeleteMG("Tools", "1"), 1);
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_EQ(Entries(profile_.dir() + "/UIGroups"), std::vector<std::string>{});
  EXPECT_EQ(ReadFileBytes(InstallFile("net.in")), InstallHead("Net") + dmg + other);
  EXPECT_EQ(ReadFileBytes(InstallFile("local.in")), InstallHead("Local") + dmg);
  EXPECT_EQ(MPDeleteMGReferences("Tools", "2", 0, 0, 0), 1);
  EXPECT_EQ(ReadFileBytes(InstallFile("net.in")), InstallHead("Net") + dmg + other);
}

TEST_F(ModuleGroupFamilyTest, TheFlagTableHasOneLabel) {
  OpenLocked();
  MGFlagNames* table = nullptr;
  ASSERT_EQ(MPGetMGFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "Module Group");
  EXPECT_EQ(table->flagMask, 0x80000000u);
  EXPECT_STREQ(table->bitNames[0], "Expandable");
  for (int i = 1; i < 32; ++i) EXPECT_STREQ(table->bitNames[i], "") << i;
  MPFreeFlagNames(table);
}

}  // namespace
