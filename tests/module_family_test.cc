// Modules: listing the module files, finding, creating a module file, birth
// from a parent with texts of its own, and deleting a module's file.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
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

constexpr char kModuleTemplate[] =
    "\n[SourceSafe]\n$Header$\n\n[Module]\n[Document Languages]\n[Languages]\n[File Groups]\n"
    "[File Groups I Require]\n[File Group Ads]\n[File Group Files]\n[Modules I Require]\n"
    "[Created Files]\n[Installed Icons]\n[Installed Icon Locations]\n[Module Locations]";

std::string ModuleLine(const std::string& name, const std::string& version,
                       const std::string& id_b = "", const std::string& id_a = "") {
  return "\"" + name + "\",\"" + version + "\",\"" + id_b + "\",\"" + id_a +
         "\",\"a50\",\"\",\"\",\"" + FlagLetters("YNY") + "\",\"a40\",,\r\n";
}

class ModuleFamilyTest : public ::testing::Test {
 protected:
  ModuleFamilyTest() : profile_(&host_) {}

  std::string ModuleFile(const std::string& name) const {
    return profile_.dir() + "/modules/" + name;
  }
  void WriteModule(const std::string& file, const std::string& content) const {
    WriteFileBytes(ModuleFile(file), content);
  }
  void OpenLocked() { ASSERT_EQ(profile_.Open(qvtest::kLockedOpen), 1); }

  std::vector<std::string> Names(MOList* list) const {
    std::vector<std::string> names;
    RecordNode* node = list->head;
    for (uint32_t i = 0; node != nullptr && i < list->count; ++i, node = node->next) {
      auto* module = static_cast<MORecord*>(node->record);
      names.push_back(std::string(module->row.Name) + "," + module->row.Version + "@" +
                      module->FileName);
    }
    return names;
  }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

TEST_F(ModuleFamilyTest, AProfileWithoutModuleFilesGivesAnEmptyList) {
  OpenLocked();
  MOList* list = nullptr;
  ASSERT_EQ(MPGetMOCompleteList(&list), 1);
  EXPECT_EQ(list->count, 0u);
  MPFreeMOList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ModuleFamilyTest, EveryModuleFileGivesItsFirstLineAndOneWithoutTheSectionIsLeftOut) {
  WriteModule("editor.mo", "\n[Module]\n" + ModuleLine("Text Editor", "8.0", "B1", "A1") +
                               ModuleLine("Ignored", "1") + "[Languages]\n\"US\"\n");
  WriteModule("plain.mo", "\n[Languages]\n\"US\"\n");
  WriteModule("Address.MO", "\n[Module]\n" + ModuleLine("Address Book", "1.0"));
  OpenLocked();
  MOList* list = nullptr;
  ASSERT_EQ(MPGetMOCompleteList(&list), 1);
  EXPECT_EQ(Names(list),
            (std::vector<std::string>{"Address Book,1.0@Address.MO", "Text Editor,8.0@editor.mo"}));
  auto* editor = static_cast<MORecord*>(list->tail->record);
  // The ids stand B before A on the line.
  EXPECT_STREQ(editor->row.TextIdB, "B1");
  EXPECT_STREQ(editor->row.TextIdA, "A1");
  EXPECT_EQ(editor->row.Flags, 0xA0000000u);
  EXPECT_STREQ(editor->row.Attribute40, "a40");
  MPFreeMOList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ModuleFamilyTest, FindMatchesFileNamesIgnoringCaseButKeysExactly) {
  WriteModule("editor.mo", "\n[Module]\n" + ModuleLine("Text Editor", "8.0"));
  WriteModule("viewer.mo", "\n[Module]\n" + ModuleLine("Viewer", "1.0"));
  OpenLocked();
  MOList* list = nullptr;
  ASSERT_EQ(MPGetMOCompleteList(&list), 1);
  MORecord* found = nullptr;
  ASSERT_EQ(MPFindMONode(nullptr, nullptr, nullptr, list, &found), 1);
  EXPECT_STREQ(found->row.Name, "Text Editor");
  ASSERT_EQ(MPFindMONode(nullptr, nullptr, "VIEWER.MO", list, &found), 1);
  EXPECT_STREQ(found->row.Name, "Viewer");
  EXPECT_EQ(MPFindMONode("viewer", "1.0", nullptr, list, &found), 0);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(list->current, nullptr);
  ASSERT_EQ(MPFindMONode("Viewer", "1.0", nullptr, list, &found), 1);
  MPFreeMOList(list);
}

TEST_F(ModuleFamilyTest, ANewModuleGetsAFileWithTheTemplateAndIsAddedToVersionControl) {
  qvtest::FakeSs ss;
  WriteLastProfile(profile_.dir().c_str(), OPEN_MASTER | OPEN_LOCK, "Proj");
  ASSERT_EQ(profile_.Open(OPEN_MASTER | OPEN_LOCK), 1);
  ss.ClearCalls();
  MORecord* module = nullptr;
  MPNewMO(&module);
  snprintf(module->row.Name, sizeof module->row.Name, "Text Editor");
  snprintf(module->row.Version, sizeof module->row.Version, "8.0");
  module->row.Flags = MO_SHIPS_ON_CD;
  ASSERT_EQ(MPPutMO(&module, nullptr), 1);
  EXPECT_STREQ(module->FileName, "TETE80.MO");
  std::string expected(kModuleTemplate);
  expected.replace(
      expected.find("[Module]\n") + 9, 0,
      "\"Text Editor\",\"8.0\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("NNY") + "\",\"\",,\r\n");
  EXPECT_EQ(ReadFileBytes(ModuleFile("TETE80.MO")), expected + "\n");
  std::vector<std::string> lines = ss.CommandLines();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "ss add TETE80.MO -c\"Initial Revision.\"");
  // A second put rewrites the one line and leaves the rest.
  snprintf(module->row.Attribute40, sizeof module->row.Attribute40, "changed");
  ASSERT_EQ(MPPutMO(&module, nullptr), 1);
  EXPECT_NE(ReadFileBytes(ModuleFile("TETE80.MO")).find("\"changed\""), std::string::npos);
  MORecord* read = nullptr;
  ASSERT_EQ(MPGetMO("Text Editor", "8.0", &read), 1);
  EXPECT_STREQ(read->row.Attribute40, "changed");
  MPFreeMO(&read);
  EXPECT_EQ(read, nullptr);
  MPFreeMO(&module);
  ASSERT_EQ(CloseMasterProfile(), 1);
}

TEST_F(ModuleFamilyTest, AChildOfAParentWithoutAFileFailsAndLeavesNoFile) {
  OpenLocked();
  MORecord* parent = nullptr;
  MPNewMO(&parent);
  snprintf(parent->row.Name, sizeof parent->row.Name, "Ghost");
  snprintf(parent->row.Version, sizeof parent->row.Version, "1");
  MORecord* child = nullptr;
  MPNewMO(&child);
  snprintf(child->row.Name, sizeof child->row.Name, "Child");
  snprintf(child->row.Version, sizeof child->row.Version, "1");
  EXPECT_EQ(MPPutMO(&child, parent), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Parent Module Could Not be found to birth Child."});
  EXPECT_FALSE(qvtest::PathExists(ModuleFile("Child1.MO")));
  MPFreeMO(&child);
  MPFreeMO(&parent);
}

TEST_F(ModuleFamilyTest, ABornChildCopiesTheParentsFileWithTextsOfItsOwn) {
  WriteFileBytes(profile_.dir() + "/RES_US/pelhamEN.re",
                 "\n[SourceSafe]\n$Header$\n\n[Resources]\n\"IDS_A\",\"Editor\",1,\r\n"
                 "\"IDS_B\",\"Edits text\",2,\r\n");
  const std::string rest = "[Languages]\n\"US\",,\r\n[Module Locations]\n\"Bin\",\"1\"\r\n";
  WriteModule("editor.mo", "\n[Module]\n" + ModuleLine("Editor", "1", "IDS_B", "IDS_A") + rest);
  OpenLocked();
  MORecord* parent = nullptr;
  ASSERT_EQ(MPGetMO("Editor", "1", &parent), 1);
  MORecord* child = nullptr;
  MPNewMO(&child);
  snprintf(child->row.Name, sizeof child->row.Name, "Editor Pro");
  snprintf(child->row.Version, sizeof child->row.Version, "2");
  ASSERT_EQ(MPPutMO(&child, parent), 1);
  EXPECT_STREQ(child->row.Name, "Editor Pro");
  EXPECT_STRNE(child->row.TextIdA, "IDS_A");
  EXPECT_STRNE(child->row.TextIdB, "IDS_B");
  EXPECT_STRNE(child->row.TextIdA, "");
  std::string child_file = ModuleFile(child->FileName);
  EXPECT_EQ(ReadFileBytes(child_file),
            "\n[Module]\n" + ModuleLine("Editor Pro", "2", child->row.TextIdB, child->row.TextIdA) +
                rest);
  std::string id_a = child->row.TextIdA;
  MPFreeMO(&child);
  MPFreeMO(&parent);
  ASSERT_EQ(CloseMasterProfile(), 1);
  // The new ids name texts that exist, copies of the parent's.
  std::string texts = ReadFileBytes(profile_.dir() + "/RES_US/pelhamEN.re");
  EXPECT_NE(texts.find("\"" + id_a + "\",\"Editor\""), std::string::npos) << texts;
}

TEST_F(ModuleFamilyTest, DeleteReferencesWithAnyOtherMaskDoesNothing) {
  OpenLocked();
  EXPECT_EQ(MPDeleteMOReferences("Editor", "1", 0x20000000u, 0, 0), 1);
  EXPECT_EQ(MPDeleteMOReferences("Editor", "1", 0, 0, 0), 1);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ModuleFamilyTest, DeleteRemovesTheFileAndRemovesItFromVersionControl) {
  qvtest::FakeSs ss;
  WriteModule("editor.mo", "\n[Module]\n" + ModuleLine("Editor", "1"));
  WriteLastProfile(profile_.dir().c_str(), OPEN_MASTER | OPEN_LOCK, "Proj");
  ASSERT_EQ(profile_.Open(OPEN_MASTER | OPEN_LOCK), 1);
  ss.ClearCalls();
  ASSERT_EQ(MPDeleteMO("Editor", "1"), 1);
  EXPECT_FALSE(qvtest::PathExists(ModuleFile("editor.mo")));
  std::vector<std::string> lines = ss.CommandLines();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "ss remove editor.mo");
  host_.Clear();
  EXPECT_EQ(MPDeleteMO("Editor", "1"), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Cannot find MO file to delete it."});
  ASSERT_EQ(CloseMasterProfile(), 1);
}

TEST_F(ModuleFamilyTest, ABrokenModuleLineFailsTheListAndAPutReplacesOnlyThatLine) {
  const std::string rest = "[Languages]\n\"US\",,\r\n";
  WriteModule("editor.mo", "\n[Module]\n\"Editor\",\"1\",B,\"A\"\r\n" + rest);
  OpenLocked();
  MOList* list = nullptr;
  EXPECT_EQ(MPGetMOCompleteList(&list), 0);
  MPFreeMOList(list);
  EXPECT_FALSE(host_.errors().empty());
  // A put brings the whole record: it takes the broken line's place, and
  // nothing read from that line is written.
  MORecord* module = nullptr;
  MPNewMO(&module);
  snprintf(module->row.Name, sizeof module->row.Name, "Editor");
  snprintf(module->row.Version, sizeof module->row.Version, "1");
  ASSERT_EQ(MPPutMO(&module, nullptr), 1);
  MPFreeMO(&module);
  EXPECT_EQ(ReadFileBytes(ModuleFile("editor.mo")),
            "\n[Module]\n\"Editor\",\"1\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("") +
                "\",\"\",,\r\n" + rest);
}

TEST_F(ModuleFamilyTest, DeletingAModuleRemovesItFromTheModulesThatRequireIt) {
  WriteModule("editor.mo", "\n[Module]\n" + ModuleLine("Editor", "1"));
  const std::string viewer_head =
      "\n[Module]\n" + ModuleLine("Viewer", "1") + "[Modules I Require]\n";
  WriteModule("viewer.mo",
              viewer_head + "\"Editor\",\"1\"\r\n\"Other\",\"2\"\r\n[Module Locations]\n");
  OpenLocked();
  ASSERT_EQ(MPDeleteMO("Editor", "1"), 1);
  EXPECT_EQ(ReadFileBytes(ModuleFile("viewer.mo")),
            viewer_head + "\"Other\",\"2\"\r\n[Module Locations]\n");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ModuleFamilyTest, DeletingALocationRemovesTheModuleLocationsThatNameIt) {
  profile_.WriteLocations("\"Bin\",\"1\",\"$DR$\",,\"Bin\",,\"\",\"" + FlagLetters("") + "\"\r\n");
  const std::string head = "\n[Module]\n" + ModuleLine("Editor", "1") + "[Module Locations]\n";
  WriteModule("editor.mo", head + "\"Bin\",\"1\"\r\n\"Help\",\"1\"\r\n");
  OpenLocked();
  MLList* list = nullptr;
  ASSERT_EQ(MPGetMLCompleteList("Editor", "1", &list, MODE_READ), 1);
  EXPECT_EQ(list->count, 2u);
  MPFreeMLList(list);
  ASSERT_EQ(MPDeleteLO("Bin", "1"), 1);
  EXPECT_EQ(ReadFileBytes(ModuleFile("editor.mo")), head + "\"Help\",\"1\"\r\n");
  EXPECT_TRUE(host_.errors().empty());
}

// A module file with a line of every kind it holds, in the written form.
const std::string kContents =
    "[Document Languages]\r\n\"US\"\r\n\"DE\"\r\n"
    "[Languages]\r\n\"US\",\"English text\",\"t29\"\r\n\"DE\",,\r\n"
    "[Modules I Require]\r\n\"Shared\",\"2.0\"\r\n"
    "[Created Files]\r\n\"log.txt\",\"Logs\",\"v1\",\"" +
    FlagLetters("Y") +
    "\"\r\n"
    "[Installed Icons]\r\n"
    "1,\"US\",\"Program\",\"EDIT.EXE\",,,,,\"EDIT.EXE /n\",,,,,\"Editor\",Y,N,Y,\"\",\"Starts "
    "the editor\"\r\n"
    "2,\"DE\",\"Program\",\"EDIT.EXE\",\"Help\",\"DE\",\"EDIT.HLP\",7,\"EDIT.EXE\",\"a\",\"b\","
    "\"c\",\"d\",\"Editor\",N,N,N,\"x\",\"y\"\r\n"
    "[Installed Icon Locations]\r\n1,\"Programs\\Vardo\",\"Programs\"\r\n"
    "[Module Locations]\r\n\"Bin\",\"1\"\r\n";

template <class List>
uint32_t CountOf(List* list) {
  return list != nullptr ? list->count : 0u;
}

TEST_F(ModuleFamilyTest, EveryKindOfTheModuleFileReadsAndWritesBackItsLines) {
  const std::string file = "\n[Module]\n" + ModuleLine("Editor", "1") + kContents;
  WriteModule("editor.mo", file);
  OpenLocked();
  MDLList* mdl = nullptr;
  ASSERT_EQ(MPGetMDLCompleteList("Editor", "1", &mdl, MODE_READ), 1);
  EXPECT_EQ(CountOf(mdl), 2u);
  MLAList* mla = nullptr;
  ASSERT_EQ(MPGetMLACompleteList("Editor", "1", &mla, MODE_READ), 1);
  EXPECT_EQ(CountOf(mla), 2u);
  CFList* cf = nullptr;
  ASSERT_EQ(MPGetCFCompleteList("Editor", "1", &cf, MODE_READ), 1);
  EXPECT_EQ(static_cast<CFRecord*>(cf->head->record)->row.Flags, 0x80000000u);
  IIList* ii = nullptr;
  ASSERT_EQ(MPGetIICompleteList("Editor", "1", &ii, MODE_READ), 1);
  ASSERT_EQ(CountOf(ii), 2u);
  auto* second = static_cast<IIRecord*>(ii->tail->record);
  EXPECT_STREQ(second->row.FileName2, "EDIT.HLP");
  EXPECT_EQ(second->row.Number2, 7u);
  EXPECT_STREQ(second->row.ModuleName, "Editor");
  IILList* iil = nullptr;
  ASSERT_EQ(MPGetIILCompleteList("Editor", "1", &iil, MODE_READ), 1);
  EXPECT_STREQ(static_cast<IILRecord*>(iil->head->record)->row.Text1023, "Programs\\Vardo");
  // Writing back what was read leaves the file as it was.
  ASSERT_EQ(MPPutMDLCompleteList("Editor", "1", mdl), 1);
  ASSERT_EQ(MPPutMLACompleteList("Editor", "1", mla), 1);
  ASSERT_EQ(MPPutCFCompleteList("Editor", "1", cf), 1);
  ASSERT_EQ(MPPutIICompleteList("Editor", "1", ii), 1);
  ASSERT_EQ(MPPutIILCompleteList("Editor", "1", iil), 1);
  EXPECT_EQ(ReadFileBytes(ModuleFile("editor.mo")), file);
  MPFreeMDLList(mdl);
  MPFreeMLAList(mla);
  MPFreeCFList(cf);
  MPFreeIIList(ii);
  MPFreeIILList(iil);
  // Deleting an icon location takes the installed icon locations naming it.
  profile_.WriteIcons("\"Programs\",\"WIN32_NT\",\"Programs\",\"" + FlagLetters("") + "\"\r\n");
  ASSERT_EQ(MPDeleteIL("Programs"), 1);
  EXPECT_EQ(ReadFileBytes(ModuleFile("editor.mo")).find("1,\"Programs\\Vardo\""),
            std::string::npos);
  ASSERT_EQ(MPDeleteII("Editor", "1", 0, nullptr, "Program", nullptr), 1);
  IIList* left = nullptr;
  ASSERT_EQ(MPGetIICompleteList("Editor", "1", &left, MODE_READ), 1);
  EXPECT_EQ(CountOf(left), 0u);
  MPFreeIIList(left);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ModuleFamilyTest, AContainedKindOfAModuleWithoutAFileNamesTheModule) {
  OpenLocked();
  MDLList* list = nullptr;
  EXPECT_EQ(MPGetMDLCompleteList("Ghost", "9", &list, MODE_READ), 0);
  MPFreeMDLList(list);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{
                                "File associated with module Ghost,9 cannot be found or opened!"});
}

TEST_F(ModuleFamilyTest, FlagTableKeepsItsDeliberateMaskAndLabels) {
  MOFlagNames* table = nullptr;
  ASSERT_EQ(MPGetMOFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "Module");
  EXPECT_STREQ(table->bitNames[1], "Only show File Groups in custom dialog");
  EXPECT_STREQ(table->bitNames[10], "");
  EXPECT_STREQ(table->bitNames[12], "This module is a font module");
  EXPECT_EQ(table->flagMask, 0xBFE00000u);
  MPFreeFlagNames(table);
}

}  // namespace
