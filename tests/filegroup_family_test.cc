// File groups (FG) and the kinds that name them (FGD, FGA) in a module's
// file: the "~" parent, renames that carry everything along, deletes that
// take a whole subtree, broken lines that stop every rewrite, the hooks the
// module and Ad families call, and the Orvik texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/fs.h"
#include "profile/profile_files.h"
#include "quorvex/quorvex.h"
#include "records/filegroup_families.h"
#include "records/location_family.h"
#include "records/orvik_rows.h"
#include "records/reference_hooks.h"
#include "support/list_view.h"
#include "support/location_profile.h"
#include "support/profiles.h"
#include "support/scripted_host.h"

namespace {

using qvtest::FlagLetters;
using qvtest::kLockedOpen;
using qvtest::ReadFileBytes;
using qvtest::RecordsOf;
using qvtest::WriteFileBytes;

const std::string kHead = "\n[SourceSafe]\n$Header$\n\n";

std::string ModuleSection(const std::string& name, const std::string& version) {
  return "[Module]\n\"" + name + "\",\"" + version + "\",\"TB\",\"TA\",\"\",\"\",\"\",\"" +
         FlagLetters("") + "\",\"Attr\"\n\n";
}

std::string Group(const std::string& name, const std::string& parent) {
  return "\"" + name + "\",\"B_" + name + "\",\"A_" + name + "\",\"" + parent + "\",0,\"" +
         FlagLetters("NNY") + "\",\"\",\"\"\n";
}

std::string File(const std::string& group, const std::string& name) {
  return "\"US\",\"" + group + "\",\"" + name + "\",\"\",\"\",\"\",\"\",\"\",,,,,,,,\"" +
         FlagLetters("Y") + "\",\"" + FlagLetters("") + "\"\n";
}

class FileGroupTest : public ::testing::Test {
 protected:
  FileGroupTest() : dir_(host_.scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(dir_.c_str()), 1);
  }

  std::string ModuleFile(const std::string& file = "core.mo") const {
    return dir_ + "/modules/" + file;
  }
  std::string Module(const std::string& file = "core.mo") const {
    return ReadFileBytes(ModuleFile(file));
  }
  void Open(const std::string& content) {
    WriteFileBytes(ModuleFile(), content);
    ASSERT_EQ(qvtest::OpenProfileAt(dir_, kLockedOpen), 1);
    host_.Clear();
  }
  std::vector<std::string> Groups() {
    FGList* list = nullptr;
    EXPECT_EQ(MPGetFGCompleteList("Core", "1.0", &list, MODE_READ), 1);
    std::vector<std::string> names;
    for (FGRecord* r : RecordsOf<FGRecord>(list)) names.push_back(r->row.GroupName);
    MPFreeFGList(list);
    return names;
  }
  std::vector<std::string> Files() {
    SFList* list = nullptr;
    EXPECT_EQ(MPGetSFCompleteList("Core", "1.0", &list, MODE_READ), 1);
    std::vector<std::string> names;
    for (SFRecord* r : RecordsOf<SFRecord>(list)) names.push_back(r->row.FileName);
    MPFreeSFList(list);
    return names;
  }

  qvtest::ScriptedHost host_;
  std::string dir_;
};

TEST_F(FileGroupTest, GroupsCarryTheirModuleAndAnEmptyParentReadsAsTilde) {
  Open(kHead + ModuleSection("Core", "1.0") + "[File Groups]\n" + Group("Main", "") +
       Group("Help", "Main"));
  FGList* list = nullptr;
  ASSERT_EQ(MPGetFGCompleteList("Core", "1.0", &list, MODE_READ), 1);
  auto groups = RecordsOf<FGRecord>(list);
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_STREQ(groups[0]->row.ModuleName, "Core");
  EXPECT_STREQ(groups[0]->row.ModuleVersion, "1.0");
  EXPECT_STREQ(groups[0]->row.ParentGroup, "~");
  EXPECT_STREQ(groups[0]->row.TextIdB, "B_Main");
  EXPECT_STREQ(groups[0]->row.TextIdA, "A_Main");
  EXPECT_EQ(groups[0]->row.Flags, 0x20000000u);
  EXPECT_STREQ(groups[1]->row.ParentGroup, "Main");
  MPFreeFGList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(FileGroupTest, TheTildeIsWrittenBackAndOtherSectionsStayByteForByte) {
  const std::string tail = "[Module Locations]\n\"Help\",\"1\"\n; a comment\n";
  Open(kHead + ModuleSection("Core", "1.0") + "[File Groups]\n" + Group("Main", "") + "\n" + tail);
  FGRecord* record = nullptr;
  ASSERT_EQ(MPGetFG("Core", "1.0", "Main", &record), 1);
  record->row.Number = 7;
  ASSERT_EQ(MPPutFG(record), 1);
  MPFreeFG(record);
  const std::string module = Module();
  EXPECT_NE(module.find("\"Main\",\"B_Main\",\"A_Main\",\"~\",7,"), std::string::npos) << module;
  EXPECT_EQ(module.substr(0, (kHead + ModuleSection("Core", "1.0")).size()),
            kHead + ModuleSection("Core", "1.0"));
  EXPECT_EQ(module.substr(module.size() - tail.size()), tail);
}

TEST_F(FileGroupTest, AMissingModuleFileIsNamedByTheModule) {
  Open(kHead + ModuleSection("Core", "1.0"));
  FGList* list = nullptr;
  EXPECT_EQ(MPGetFGCompleteList("Other", "2.0", &list, MODE_READ), 0);
  MPFreeFGList(list);
  EXPECT_EQ(
      host_.errors(),
      std::vector<std::string>{"File associated with module Other,2.0 cannot be found or opened!"});
}

TEST_F(FileGroupTest, RenamingToANameInUseFailsWithoutTouchingTheFile) {
  const std::string content = kHead + ModuleSection("Core", "1.0") + "[File Groups]\n" +
                              Group("Main", "") + Group("Help", "") + "[File Group Files]\n" +
                              File("Main", "a.exe");
  Open(content);
  EXPECT_EQ(MPRenameFG("Core", "1.0", "Main", 0, 0, "Help"), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{
                "File Group cannot be renamed since there is already a File Group named Help"});
  EXPECT_EQ(Module(), content);
}

TEST_F(FileGroupTest, RenamingLeavesNoReferenceToTheOldNameInAnyFile) {
  Open(kHead + ModuleSection("Core", "1.0") + "[File Groups]\n" + Group("Oldgrp", "") +
       Group("Inner", "Oldgrp") + Group("Deeper", "Inner") + "[File Group Files]\n" +
       File("Oldgrp", "tool.exe") + File("Inner", "help.hlp") + "[Installed Icons]\n" +
       "1,\"US\",\"Oldgrp\",\"tool.exe\",\"Oldgrp\",\"US\",\"tool.exe\",0,"
       "\"%INSTALL%\\tool.exe\",\"\",\"\",\"\",\"\",\"Tool\",Y,N,N,\"\",\"Tool icon\"\n");
  ASSERT_EQ(MPRenameFG("Core", "1.0", "Oldgrp", 0, 0, "Newgrp"), 1);
  EXPECT_TRUE(host_.errors().empty()) << host_.errors()[0];
  bool new_name_seen = false;  // the files were really read
  for (const qv::ProfileFileFound& found : qv::ListProfileFiles(dir_.c_str())) {
    std::string bytes = ReadFileBytes(qv::ResolvePath(found.path));
    // The name as a field of its own: the groups' text ids only spell it.
    EXPECT_EQ(bytes.find("\"Oldgrp\""), std::string::npos) << found.path;
    new_name_seen = new_name_seen || bytes.find("\"Newgrp\"") != std::string::npos;
  }
  EXPECT_TRUE(new_name_seen);
  EXPECT_EQ(Groups(), (std::vector<std::string>{"Newgrp", "Inner", "Deeper"}));
  FGRecord* inner = nullptr;
  ASSERT_EQ(MPGetFG("Core", "1.0", "Inner", &inner), 1);
  EXPECT_STREQ(inner->row.ParentGroup, "Newgrp");
  MPFreeFG(inner);
  SFRecord* tool = nullptr;
  ASSERT_EQ(MPGetSF("Core", "1.0", "Newgrp", "tool.exe", "US", &tool), 1);
  MPFreeSF(tool);
  EXPECT_NE(Module().find("1,\"US\",\"Newgrp\",\"tool.exe\",\"Newgrp\""), std::string::npos)
      << Module();
}

TEST_F(FileGroupTest, DeletingAGroupTakesItsFilesAndEveryGroupBelowIt) {
  const std::string head = kHead + ModuleSection("Core", "1.0");
  const std::string tail =
      "[Installed Icons]\n1,\"US\",\"Top\",\"t.exe\",,,,,,,,,,\"T\",Y,N,N,\"\",\"T\"\n\n"
      "[Module Locations]\n\"Help\",\"1\"\n";
  Open(head + "[File Groups]\n" + Group("Top", "") + Group("Mid", "Top") + Group("Low", "Mid") +
       Group("Lowest", "Low") + Group("Other", "") + "\n[File Group Files]\n" +
       File("Top", "t.exe") + File("Low", "l.dll") + File("Other", "o.ini") +
       File("Lowest", "z.cbs") + "\n" + tail);
  ASSERT_EQ(MPDeleteFG("Core", "1.0", "Top"), 1);
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_EQ(Groups(), std::vector<std::string>{"Other"});
  EXPECT_EQ(Files(), std::vector<std::string>{"o.ini"});
  const std::string module = Module();
  EXPECT_EQ(module.substr(0, head.size()), head);
  EXPECT_EQ(module.substr(module.size() - tail.size()), tail);
}

TEST_F(FileGroupTest, GroupsNamingEachOtherAsParentsEndTheCascade) {
  Open(kHead + ModuleSection("Core", "1.0") + "[File Groups]\n" + Group("A", "B") +
       Group("B", "A") + Group("C", ""));
  ASSERT_EQ(MPDeleteFG("Core", "1.0", "A"), 1);
  EXPECT_EQ(Groups(), std::vector<std::string>{"C"});
}

TEST_F(FileGroupTest, DeletingAnAbsentGroupReturnsZeroSilently) {
  const std::string content =
      kHead + ModuleSection("Core", "1.0") + "[File Groups]\n" + Group("Main", "");
  Open(content);
  EXPECT_EQ(MPDeleteFG("Core", "1.0", "Nothing"), 0);
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_EQ(Module(), content);
}

TEST_F(FileGroupTest, ABrokenShippedFileLineStopsEveryRewrite) {
  const std::string content = kHead + ModuleSection("Core", "1.0") + "[File Groups]\n" +
                              Group("Main", "") + "[File Group Files]\n" + File("Main", "a.exe") +
                              "\"US\",\"Main\",\"b.exe\",\"\",\"\",\"\",\"\",\"\",,,,,,,,\"YN\"\n";
  Open(content);
  SFList* list = nullptr;
  EXPECT_EQ(MPGetSFCompleteList("Core", "1.0", &list, MODE_READ), 0);
  MPFreeSFList(list);
  SFRecord* record = nullptr;
  MPNewSF(&record);
  snprintf(record->row.ModuleName, sizeof record->row.ModuleName, "Core");
  snprintf(record->row.ModuleVersion, sizeof record->row.ModuleVersion, "1.0");
  snprintf(record->row.GroupName, sizeof record->row.GroupName, "Main");
  snprintf(record->row.FileName, sizeof record->row.FileName, "c.exe");
  snprintf(record->row.Language, sizeof record->row.Language, "US");
  EXPECT_EQ(MPPutSF(record), 0);
  MPFreeSF(record);
  EXPECT_EQ(MPDeleteSF("Core", "1.0", "Main", "a.exe", "US"), 0);
  EXPECT_EQ(MPDeleteFG("Core", "1.0", "Main"), 0);
  EXPECT_EQ(MPRenameFG("Core", "1.0", "Main", 0, 0, "Other"), 0);
  EXPECT_EQ(Module(), content);
  bool named = false;
  for (const std::string& e : host_.errors()) {
    named =
        named || e.find("Bad flag string: must contain 32 Y or N characters") != std::string::npos;
  }
  EXPECT_TRUE(named);
  EXPECT_NE(std::find(host_.errors().begin(), host_.errors().end(),
                      "Cannot delete all references to this FG, therefore cannot delete it."),
            host_.errors().end());
}

// A put of one file streams the section; it must leave exactly what a
// rewrite of the whole list with that one change leaves.
TEST_F(FileGroupTest, APutWritesWhatARewriteOfTheWholeListWrites) {
  const std::string content = kHead + ModuleSection("Core", "1.0") + "[File Groups]\n" +
                              Group("Main", "") + "\n[File Group Files]\n" + File("Main", "a.exe") +
                              "; a comment\n" + File("Main", "b.exe") + File("Main", "c.exe") +
                              "\n[Modules I Require]\n\"Base\",\"1\"\n";
  Open(content);
  SFRecord* record = nullptr;
  ASSERT_EQ(MPGetSF("Core", "1.0", "Main", "b.exe", "US", &record), 1);
  record->row.Size = 4096;
  snprintf(record->row.TextIdA, sizeof record->row.TextIdA, "NEWTEXT");
  SFRecord* added = nullptr;
  MPNewSF(&added);
  *added = *record;
  snprintf(added->row.FileName, sizeof added->row.FileName, "d.exe");

  SFList* list = nullptr;
  ASSERT_EQ(MPGetSFCompleteList("Core", "1.0", &list, MODE_UPDATE), 1);
  SFRecord* stored = nullptr;
  list->current = nullptr;
  ASSERT_EQ(MPFindSFNode("Main", "b.exe", "US", list, &stored), 1);
  stored->row.Size = 4096;
  snprintf(stored->row.TextIdA, sizeof stored->row.TextIdA, "NEWTEXT");
  SFRecord* appended = nullptr;
  MPNewSF(&appended);
  *appended = *added;
  appended->lineNumber = 0;
  ASSERT_EQ(MPAppendSF(list, appended), 1);
  ASSERT_EQ(MPWriteSFList("Core", "1.0", list), 1);
  MPFreeSFList(list);
  const std::string rewritten = Module();

  WriteFileBytes(ModuleFile(), content);
  ASSERT_EQ(MPPutSF(record), 1);
  ASSERT_EQ(MPPutSF(added), 1);
  EXPECT_EQ(Module(), rewritten);
  EXPECT_NE(rewritten.find("NEWTEXT"), std::string::npos);
  EXPECT_LT(rewritten.find("c.exe"), rewritten.find("d.exe"));
  EXPECT_TRUE(host_.errors().empty());
  MPFreeSF(record);
  MPFreeSF(added);
}

TEST_F(FileGroupTest, FlagTableOfFileGroups) {
  FGFlagNames* table = nullptr;
  ASSERT_EQ(MPGetFGFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "File Group");
  EXPECT_STREQ(table->bitNames[0], "Quillon Component");
  EXPECT_STREQ(table->bitNames[1], "Expandable in Custom Dialog");
  EXPECT_STREQ(table->bitNames[2], "Ships on CD");
  EXPECT_STREQ(table->bitNames[3], "Ships on Diskette");
  EXPECT_STREQ(table->bitNames[4], "Keep Even if Empty");
  EXPECT_STREQ(table->bitNames[5], "");
  EXPECT_EQ(table->flagMask, 0x30000000u);
  MPFreeFlagNames(table);
  ASSERT_EQ(MPGetFGDFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "File Group Dependency");
  MPFreeFlagNames(table);
  ASSERT_EQ(MPGetFGAFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "File Group Ad");
  MPFreeFlagNames(table);
}

TEST_F(FileGroupTest, OrdinalsReachTheOperations) {
  EXPECT_EQ(QuorvexProcByOrdinal(105), reinterpret_cast<QvProc>(&MPGetFGCompleteList));
  EXPECT_EQ(QuorvexProcByOrdinal(1062), reinterpret_cast<QvProc>(&MPRenameFG));
  EXPECT_EQ(QuorvexProcByOrdinal(1208), reinterpret_cast<QvProc>(&MPSFAssociations));
  EXPECT_EQ(QuorvexProcByOrdinal(1326), reinterpret_cast<QvProc>(&MPGetSFModifyFilenameFlagNames));
}

// ------------------------------------------------ requirements and Ads

TEST_F(FileGroupTest, RequirementsOfADeletedModuleGoFromEveryModule) {
  const std::string other = kHead + ModuleSection("Other", "2.0") +
                            "[File Groups I Require]\n\"G\",\"Core\",\"1.0\",\"Main\"\n"
                            "\"G\",\"Base\",\"1.0\",\"Main\"\n\n[File Group Ads]\n\"G\",3\n";
  WriteFileBytes(ModuleFile("other.mo"), other);
  Open(kHead + ModuleSection("Core", "1.0") +
       "[File Groups I Require]\n\"Main\",\"Core\",\"1.0\",\"X\"\n");
  ASSERT_TRUE(qv::DeleteFileGroupRequirementsOfModule("Core", "1.0"));
  EXPECT_TRUE(host_.errors().empty());
  FGDList* list = nullptr;
  ASSERT_EQ(MPGetFGDCompleteList("Other", "2.0", &list, MODE_READ), 1);
  auto records = RecordsOf<FGDRecord>(list);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_STREQ(records[0]->row.ReqModuleName, "Base");
  MPFreeFGDList(list);
  ASSERT_EQ(MPGetFGDCompleteList("Core", "1.0", &list, MODE_READ), 1);
  EXPECT_EQ(list->count, 0u);
  MPFreeFGDList(list);
  EXPECT_NE(Module("other.mo").find("[File Group Ads]\n\"G\",3\n"), std::string::npos);
}

TEST_F(FileGroupTest, FileGroupAdsFollowAnAdThatChangesAndGoWithOneDeleted) {
  Open(kHead + ModuleSection("Core", "1.0") + "[File Group Ads]\n\"Main\",3\n\"Help\",4\n");
  ASSERT_TRUE(qv::UpdateFileGroupAdsOfAd(3, qv::kUpdateReferences, 9));
  FGAList* list = nullptr;
  ASSERT_EQ(MPGetFGACompleteList("Core", "1.0", &list, MODE_READ), 1);
  auto ads = RecordsOf<FGARecord>(list);
  ASSERT_EQ(ads.size(), 2u);
  EXPECT_EQ(ads[0]->row.AdId, 9u);
  MPFreeFGAList(list);
  ASSERT_TRUE(qv::DeleteFileGroupAdsOfAd(4));
  ASSERT_EQ(MPGetFGACompleteList("Core", "1.0", &list, MODE_READ), 1);
  EXPECT_EQ(list->count, 1u);
  MPFreeFGAList(list);
  EXPECT_EQ(MPDeleteFGA("Core", "1.0", nullptr, 5), 0);
  EXPECT_EQ(MPDeleteFGA("Core", "1.0", "Main", 0), 1);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(FileGroupTest, ABornModulesGroupsAndFilesGetFreshTexts) {
  WriteFileBytes(dir_ + "/RES_US/pelhamEN.re",
                 kHead + "[Resources]\n\"A_Main\",\"Main files\",,\n\"B_Main\",\"Main\",,\n");
  Open(kHead + ModuleSection("Core", "1.0") + "[File Groups]\n" + Group("Main", "") +
       "[File Group Files]\n" +
       "\"US\",\"Main\",\"a.exe\",\"\",\"\",\"\",\"\",\"A_Main\",,,,,,,,\"" + FlagLetters("") +
       "\",\"" + FlagLetters("") + "\"\n");
  ASSERT_TRUE(qv::RenewBornModuleTexts("Core", "1.0"));
  FGRecord* group = nullptr;
  ASSERT_EQ(MPGetFG("Core", "1.0", "Main", &group), 1);
  EXPECT_EQ(std::string(group->row.TextIdA).rfind("MP_GEN_", 0), 0u) << group->row.TextIdA;
  EXPECT_EQ(std::string(group->row.TextIdB).rfind("MP_GEN_", 0), 0u);
  ResourceRecord* text = nullptr;
  ASSERT_EQ(MPGetResource("EN", group->row.TextIdA, &text), 1);
  EXPECT_STREQ(text->Text, "Main files");
  MPFreeResource(text);
  MPFreeFG(group);
  SFRecord* file = nullptr;
  ASSERT_EQ(MPGetSF("Core", "1.0", "Main", "a.exe", "US", &file), 1);
  EXPECT_EQ(std::string(file->row.TextIdA).rfind("MP_GEN_", 0), 0u);
  EXPECT_STREQ(file->row.TextIdB, "");
  MPFreeSF(file);
}

// ---------------------------------------------------------------- Orvik

class FileGroupOrvikTest : public FileGroupTest {
 protected:
  int OpenOrvik(bool with_fg = true) {
    std::string db = host_.scratch().Join("shipping.orv");
    std::string sql = qv::OrvikTableDefinition(qv::LoSchema()) + ";" +
                      qv::OrvikTableDefinition(qv::IlSchema()) + ";" +
                      qv::OrvikTableDefinition(qv::FgaDesc::Schema()) + ";";
    if (with_fg) sql += qv::OrvikTableDefinition(qv::FgDesc::Schema()) + ";";
    qvtest::MakeDatabase(db, sql);
    int opened = qvtest::OpenProfileAt(db, OPEN_ORVIK | OPEN_NO_VCS | OPEN_LOCK);
    host_.Clear();
    return opened;
  }
};

TEST_F(FileGroupOrvikTest, TheTextsOfTheDatabase) {
  ASSERT_EQ(OpenOrvik(false), 1);
  FGList* list = nullptr;
  EXPECT_EQ(MPGetFGCompleteList("Core", "1.0", &list, MODE_READ), 0);
  MPFreeFGList(list);
  SFList* files = nullptr;
  EXPECT_EQ(MPGetSFCompleteList("Core", "1.0", &files, MODE_READ), 0);
  MPFreeSFList(files);
  FGAList* ads = nullptr;
  MPNewFGAList(&ads);
  EXPECT_EQ(MPPutFGACompleteList("Core", "1.0", ads), 0);
  MPFreeFGAList(ads);
  EXPECT_EQ(MPDeleteFG("Core", "1.0", "Main"), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Cannot begin to Query Orvik Database for File Groups",
                                      "Cannot begin to Query Orvik Database for SFs",
                                      "FGAs not implemented in QUORVEX for Orvik for "
                                      "MPPutFGACompleteList",
                                      "Cannot delete MO record from Orvik shipping profile"}));
}

TEST_F(FileGroupOrvikTest, RowsAreTheModulesOwn) {
  ASSERT_EQ(OpenOrvik(), 1);
  FGRecord* record = nullptr;
  MPNewFG(&record);
  snprintf(record->row.ModuleName, sizeof record->row.ModuleName, "Core");
  snprintf(record->row.ModuleVersion, sizeof record->row.ModuleVersion, "1.0");
  snprintf(record->row.GroupName, sizeof record->row.GroupName, "Main");
  ASSERT_EQ(MPPutFG(record), 1);
  snprintf(record->row.ModuleName, sizeof record->row.ModuleName, "Other");
  ASSERT_EQ(MPPutFG(record), 1);
  MPFreeFG(record);
  FGList* list = nullptr;
  ASSERT_EQ(MPGetFGCompleteList("Core", "1.0", &list, MODE_READ), 1);
  EXPECT_EQ(list->count, 1u);
  MPFreeFGList(list);
  EXPECT_EQ(MPDeleteFG("Core", "1.0", "Main"), 1);
  ASSERT_EQ(MPGetFGCompleteList("Other", "1.0", &list, MODE_READ), 1);
  EXPECT_EQ(list->count, 1u);
  MPFreeFGList(list);
}

}  // namespace
