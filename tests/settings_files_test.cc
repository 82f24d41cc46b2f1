// Settings files: the file a module's first settings write makes, the
// associations to the module and its shipped files, created entries and
// their names, the created-settings object, the development-key index, and
// the associations that follow a shipped file renamed or deleted.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "core/state.h"
#include "quorvex/quorvex.h"
#include "records/location_family.h"
#include "records/orvik_rows.h"
#include "support/fake_ss.h"
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

const std::string kNo32 = "\"" + FlagLetters("") + "\"";
const std::string kModuleHead = "\n[SourceSafe]\n$Header$\n\n[Module]\n\"Text Editor\",\"8.0\"\n\n";
const std::string kMissing =
    "Settings Record (.SSR ) file associated with module Text Editor,8.0 cannot be found or "
    "opened!";

std::string Settings(const std::string& file, const std::string& module, const std::string& records,
                     const std::string& shipped_created, const std::string& module_created,
                     const std::string& created) {
  return kModuleHead + "[File System-Settings]\n" + file + "[Module System-Settings]\n" + module +
         "[System-Settings Records]\n" + records + "[Shipped File Created SSRs]\n" +
         shipped_created + "[Module Created SSRs]\n" + module_created +
         "[Created System-Settings]\n" + created;
}

std::string CreatedReg(const std::string& name) {
  return "\"" + name + "\",\"REG\",,,,\"" + FlagLetters("") +
         "\",\"HKEY_LOCAL_MACHINE\",\"Software\\Vardo\",,," + kNo32 + "," + kNo32 + "," + kNo32 +
         "\r\n";
}
std::string CreatedIni(const std::string& name) {
  return "\"" + name + "\",\"INI\",,,,\"" + FlagLetters("") + "\",\"win.ini\",\"Vardo\",,,,\n";
}
std::string CreatedPs(const std::string& name) {
  return "\"" + name + "\",\"PS\",,,,\"" + FlagLetters("Y") +
         "\",\"HKEY_CURRENT_USER\",\"Prefs\",,,,,\n";
}

class SettingsFilesTest : public ::testing::Test {
 protected:
  SettingsFilesTest() : dir_(host_.scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(dir_.c_str()), 1);
  }
  std::string SettingsFile() const { return dir_ + "/SSR/textedit.ssr"; }
  void Open(const std::string& content) {
    if (!content.empty()) WriteFileBytes(SettingsFile(), content);
    ASSERT_EQ(qvtest::OpenProfileAt(dir_, kLockedOpen), 1);
    host_.Clear();
  }
  static CSSRRecord* NewCreatedReg(const char* name) {
    CSSRRecord* r = nullptr;
    MPNewCRE(&r);
    snprintf(r->row.ModuleName, sizeof r->row.ModuleName, "Text Editor");
    snprintf(r->row.ModuleKey2, sizeof r->row.ModuleKey2, "8.0");
    snprintf(r->row.Name, sizeof r->row.Name, "%s", name);
    r->row.Root = 0x80000002u;
    snprintf(r->row.KeyPath, sizeof r->row.KeyPath, "\\Software\\Vardo");
    return r;
  }

  qvtest::ScriptedHost host_;
  std::string dir_;
};

TEST_F(SettingsFilesTest, AssociationsOfAModuleWithoutASettingsFileAreAnError) {
  Open("");
  MOSRList* list = nullptr;
  EXPECT_EQ(MPGetMOSRCompleteList("Text Editor", "8.0", &list, MODE_READ), 0);
  MPFreeMOSRList(list);
  SFCRList* files = nullptr;
  EXPECT_EQ(MPGetSFCRCompleteList("Text Editor", "8.0", &files, MODE_READ), 0);
  MPFreeSFCRList(files);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{kMissing, kMissing}));
}

TEST_F(SettingsFilesTest, TheFirstSettingsWriteMakesTheFileWithItsSixSections) {
  Open("");
  MOSRRecord* association = nullptr;
  MPNewMOSR(&association);
  snprintf(association->row.ModuleName, sizeof association->row.ModuleName, "Text Editor");
  snprintf(association->row.ModuleKey2, sizeof association->row.ModuleKey2, "8.0");
  snprintf(association->row.SSRName, sizeof association->row.SSRName, "R1");
  // Associations need the file; the entries make it.
  EXPECT_EQ(MPPutMOSR(association), 0);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{kMissing}));
  host_.Clear();
  CSSRRecord* created = NewCreatedReg("C1");
  ASSERT_EQ(MPPutCRE(created), 1);
  MPFreeCRE(created);
  const std::string file = dir_ + "/SSR/TETE80.SSR";
  EXPECT_EQ(ReadFileBytes(file), Settings("", "", "", "", "", CreatedReg("C1")));
  ASSERT_EQ(MPPutMOSR(association), 1);
  MPFreeMOSR(association);
  EXPECT_EQ(ReadFileBytes(file), Settings("", "\"R1\"\r\n", "", "", "", CreatedReg("C1")));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsFilesTest, ANewSettingsFileIsAddedToVersionControlOnce) {
  qvtest::FakeSs ss;
  WriteLastProfile(dir_.c_str(), OPEN_MASTER | OPEN_LOCK, "Proj");
  ASSERT_EQ(qvtest::OpenProfileAt(dir_, OPEN_MASTER | OPEN_LOCK), 1);
  ss.ClearCalls();
  CSSRRecord* created = NewCreatedReg("C1");
  ASSERT_EQ(MPPutCRE(created), 1);
  std::vector<std::string> lines = ss.CommandLines();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "ss add TETE80.SSR -c\"Initial Revision.\"");
  // Once added, the file is no longer new: a second write adds nothing.
  ss.ClearCalls();
  snprintf(created->row.Name, sizeof created->row.Name, "C2");
  ASSERT_EQ(MPPutCRE(created), 1);
  MPFreeCRE(created);
  for (const std::string& line : ss.CommandLines()) {
    EXPECT_EQ(line.find("ss add"), std::string::npos) << line;
  }
  ASSERT_EQ(CloseMasterProfile(), 1);
}

TEST_F(SettingsFilesTest, WritingTheModuleAssociationsLeavesEveryOtherSectionAsItWas) {
  const std::string file = "\"US\",\"Main\",\"edit.exe\",\"R1\"\n; a note\n";
  const std::string records = "\"I1\",\"INI\",,,,\"" + FlagLetters("") + "\",\"on\",\"S\",\"K\"\n";
  const std::string tail_created = "\"US\",\"Main\",\"edit.exe\",\"C1\"\n\n";
  Open(Settings(file, "\"R1\"\n\"R2\"\n", records, tail_created, "\"C1\"\n", CreatedReg("C1")));
  MOSRList* list = nullptr;
  ASSERT_EQ(MPGetMOSRCompleteList("Text Editor", "8.0", &list, MODE_UPDATE), 1);
  auto associations = RecordsOf<MOSRRecord>(list);
  ASSERT_EQ(associations.size(), 2u);
  EXPECT_STREQ(associations[1]->row.SSRName, "R2");
  EXPECT_STREQ(associations[1]->row.ModuleKey2, "8.0");
  MPDeleteMOSRNode(list, 1);
  MPFreeMOSR(associations[0]);
  ASSERT_EQ(MPPutMOSRCompleteList("Text Editor", "8.0", list), 1);
  MPFreeMOSRList(list);
  EXPECT_EQ(ReadFileBytes(SettingsFile()),
            Settings(file, "\"R2\"\r\n", records, tail_created, "\"C1\"\n", CreatedReg("C1")));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsFilesTest, WritingCreatedRegEntriesKeepsTheIniAndPsOnesBeforeThem) {
  Open(Settings("", "", "", "", "",
                CreatedReg("C1") + CreatedIni("I1") + CreatedPs("P1") + CreatedReg("C2")));
  CRERecord* added = NewCreatedReg("C3");
  ASSERT_EQ(MPPutCRE(added), 1);
  MPFreeCRE(added);
  EXPECT_EQ(ReadFileBytes(SettingsFile()),
            Settings("", "", "", "", "",
                     CreatedIni("I1") + CreatedPs("P1") + CreatedReg("C1") + CreatedReg("C2") +
                         CreatedReg("C3")));
  CPEList* ps = nullptr;
  ASSERT_EQ(MPGetCPECompleteList("Text Editor", "8.0", &ps, MODE_READ), 1);
  auto records = RecordsOf<CSSRRecord>(ps);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0]->row.EntryFlags, 0x80000000u);
  EXPECT_EQ(records[0]->row.Root, 0x80000001u);
  EXPECT_EQ(records[0]->row.Type, SSR_TYPE_PS);
  MPFreeCPEList(ps);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsFilesTest, CreatedEntriesCountTheirNamesApartFromSettingsRecords) {
  Open(Settings(
      "", "",
      "\"MP_GEN_1111_00000007\",\"INI\",,,,\"" + FlagLetters("") + "\",\"on\",\"S\",\"K\"\n", "",
      "", CreatedIni("MP_GEN_1111_00000001")));
  std::set<std::string> names;
  for (int i = 0; i < 3; ++i) {
    CSSRRecord* r = NewCreatedReg("");
    ASSERT_EQ(MPPutCRE(r), 1);
    names.insert(r->row.Name);
    MPFreeCRE(r);
  }
  const std::string tag = qv::State().name_prefix;
  EXPECT_EQ(names,
            (std::set<std::string>{"MP_GEN_" + tag + "00000002", "MP_GEN_" + tag + "00000003",
                                   "MP_GEN_" + tag + "00000004"}));
}

TEST_F(SettingsFilesTest, TheCreatedSettingsObjectTriesRegThenPs) {
  Open(Settings("", "", "", "", "", CreatedIni("I1") + CreatedPs("P1")));
  CSSRObject* object = nullptr;
  EXPECT_EQ(MPGetCSSR("Text Editor", "8.0", "I1", &object), 0);
  EXPECT_EQ(MPCreateCSSR(&object, SSR_TYPE_INI), 0);
  ASSERT_EQ(MPGetCSSR("Text Editor", "8.0", "P1", &object), 1);
  EXPECT_NE(object->ps, nullptr);
  EXPECT_STREQ(object->data->KeyPath, "Prefs");
  MPFreeCSSR(&object);
  ASSERT_EQ(MPCreateCSSR(&object, SSR_TYPE_REG), 1);
  EXPECT_EQ(object->data->Type, SSR_TYPE_REG);
  snprintf(object->data->ModuleName, sizeof object->data->ModuleName, "Text Editor");
  snprintf(object->data->ModuleKey2, sizeof object->data->ModuleKey2, "8.0");
  snprintf(object->data->Name, sizeof object->data->Name, "C9");
  object->data->Root = 0x80000000u;
  ASSERT_EQ(MPPutCSSR(object), 1);
  MPFreeCSSR(&object);
  object = static_cast<CSSRObject*>(calloc(1, sizeof(CSSRObject)));
  EXPECT_EQ(MPPutCSSR(object), 0);
  MPFreeCSSR(&object);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"MPGetCSSR could not retrieve the CSSR requested.",
                                      "Unsupported CSSR Type, cannot create CSSR Object.",
                                      "MPPutCSSR does not support this CSSRType!",
                                      "MEMORY ERROR:\r\nDeleting CSSR with unknown origin."}));
  QvFlagNames* table = nullptr;
  ASSERT_EQ(MPGetCSSRFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "Created System Settings Record");
  EXPECT_STREQ(table->bitNames[5], "Remove all subkeys and values, or an INI section");
  EXPECT_EQ(table->flagMask, 0x28000000u);
  MPFreeFlagNames(table);
  ASSERT_EQ(MPGetSFSRFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "Shipped File Settings Record");
  EXPECT_EQ(table->flagMask, 0u);
  MPFreeFlagNames(table);
}

TEST_F(SettingsFilesTest, TheIndexGivesOneKeysLinesAndIsWrittenWhole) {
  const std::string index = dir_ + "/SSR/DRKSSR.DSI";
  const std::string line_a = "\"Core\",\"R1\",\"Text Editor\",\"8.0\",\"x\"\n";
  const std::string line_b = "\"Tools\",\"R2\",\"Text Editor\",\"8.0\",\"\"\n";
  const std::string line_c = "\"core\",\"R3\",\"Viewer\",\"1.0\",\"\"\n";
  WriteFileBytes(index, "\n[DRKSSRs]\n" + line_a + line_b + line_c + "[DRKCSSRs]\n" + line_b);
  Open("");
  DRKSSRList* list = nullptr;
  ASSERT_EQ(MPGetDRKSSRCompleteList("Core", &list), 1);
  auto lines = RecordsOf<DRKSSRRecord>(list);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_STREQ(lines[0]->row.SSRName, "R1");
  EXPECT_STREQ(lines[0]->row.Text40, "x");
  MPFreeDRKSSRList(list);
  ASSERT_EQ(MPGetDRKSSRCompleteList(nullptr, &list), 1);
  EXPECT_EQ(list->count, 3u);
  DRKSSRRecord* tools = RecordsOf<DRKSSRRecord>(list)[1];
  MPDeleteDRKSSRNode(list, 2);
  MPFreeDRKSSR(tools);
  ASSERT_EQ(MPPutDRKSSRCompleteList(list), 1);
  MPFreeDRKSSRList(list);
  EXPECT_EQ(ReadFileBytes(index),
            "\n[DRKSSRs]\n\"Core\",\"R1\",\"Text Editor\",\"8.0\",\"x\"\r\n"
            "\"core\",\"R3\",\"Viewer\",\"1.0\",\"\"\r\n[DRKCSSRs]\n" +
                line_b);
  DRKCSSRList* created = nullptr;
  ASSERT_EQ(MPGetDRKCSSRCompleteList("Tools", &created), 1);
  EXPECT_STREQ(RecordsOf<DRKCSSRRecord>(created)[0]->row.CSSRName, "R2");
  MPFreeDRKCSSRList(created);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsFilesTest, AShippedFileTakesItsSettingsAlongWhenRenamedAndDeleted) {
  const std::string module_file = dir_ + "/modules/editor.mo";
  auto shipped = [](const std::string& language, const std::string& group,
                    const std::string& name) {
    return "\"" + language + "\",\"" + group + "\",\"" + name +
           "\",\"\",\"\",\"\",\"\",\"\",,,,,,,,\"" + FlagLetters("Y") + "\",\"" + FlagLetters("") +
           "\"\n";
  };
  const std::string module_head =
      "\n[SourceSafe]\n$Header$\n\n[Module]\n\"Text Editor\",\"8.0\",\"\",\"\",\"\",\"\",\"\",\"" +
      FlagLetters("") + "\",\"\"\n\n[File Group Files]\n";
  WriteFileBytes(module_file, module_head + shipped("US", "Main", "edit.exe") +
                                  shipped("US", "Main", "help.hlp"));
  const std::string other_records =
      "\"R9\",\"INI\",,,,\"" + FlagLetters("") + "\",\"on\",\"S\",\"K\"\n";
  Open(Settings("\"US\",\"Main\",\"edit.exe\",\"R1\"\n\"US\",\"Main\",\"help.hlp\",\"R2\"\n",
                "\"R1\"\n", other_records, "\"US\",\"Main\",\"edit.exe\",\"C1\"\n", "", ""));
  EXPECT_EQ(MPSFAssociations("Text Editor", "8.0", "Main", "edit.exe", "US", 0, 0, 0, nullptr,
                             nullptr, nullptr),
            1);
  ASSERT_EQ(MPRenameSF("Text Editor", "8.0", "Main", "US", "edit.exe", 0, 0, "Bin", nullptr,
                       "editor.exe"),
            1);
  EXPECT_EQ(
      ReadFileBytes(SettingsFile()),
      Settings("\"US\",\"Bin\",\"editor.exe\",\"R1\"\r\n\"US\",\"Main\",\"help.hlp\",\"R2\"\r\n",
               "\"R1\"\n", other_records, "\"US\",\"Bin\",\"editor.exe\",\"C1\"\r\n", "", ""));
  EXPECT_NE(ReadFileBytes(module_file).find("\"US\",\"Bin\",\"editor.exe\""), std::string::npos);
  EXPECT_EQ(MPSFAssociations("Text Editor", "8.0", "Main", "edit.exe", "US", 0, 0, 0, nullptr,
                             nullptr, nullptr),
            0);
  ASSERT_EQ(MPDeleteSF("Text Editor", "8.0", "Bin", "editor.exe", "US"), 1);
  EXPECT_EQ(ReadFileBytes(SettingsFile()), Settings("\"US\",\"Main\",\"help.hlp\",\"R2\"\r\n",
                                                    "\"R1\"\n", other_records, "", "", ""));
  const std::string module = ReadFileBytes(module_file);
  EXPECT_NE(module.find("\"US\",\"Main\",\"help.hlp\""), std::string::npos);
  EXPECT_EQ(module.find("edit"), std::string::npos);
  EXPECT_TRUE(host_.errors().empty()) << ::testing::PrintToString(host_.errors());
  // A module without a settings file has nothing to carry along.
  CloseMasterProfile();
  std::remove(SettingsFile().c_str());
  ASSERT_EQ(qvtest::OpenProfileAt(dir_, kLockedOpen), 1);
  ASSERT_EQ(
      MPRenameSF("Text Editor", "8.0", "Main", "US", "help.hlp", 0, 0, "Doc", nullptr, nullptr), 1);
  EXPECT_TRUE(host_.errors().empty()) << ::testing::PrintToString(host_.errors());
}

TEST_F(SettingsFilesTest, DatabaseProfilesKeepNoIndexAndNameMoInAssociationDeletes) {
  const std::string db = host_.scratch().Join("shipping.orv");
  qvtest::MakeDatabase(db, qv::OrvikTableDefinition(qv::LoSchema()) + ";");
  ASSERT_EQ(qvtest::OpenProfileAt(db, OPEN_ORVIK | OPEN_LOCK | OPEN_NO_VCS), 1);
  host_.Clear();
  DRKSSRList* list = nullptr;
  EXPECT_EQ(MPGetDRKSSRCompleteList(nullptr, &list), 0);
  MPFreeDRKSSRList(list);
  DRKCSSRList* created = nullptr;
  EXPECT_EQ(MPGetDRKCSSRCompleteList(nullptr, &created), 0);
  MPFreeDRKCSSRList(created);
  DRKSSRRecord* line = nullptr;
  MPNewDRKSSR(&line);
  EXPECT_EQ(MPPutDRKSSR(line), 0);
  MPFreeDRKSSR(line);
  EXPECT_EQ(MPDeleteDRKCSSR("Core", "R1", "Text Editor", "8.0"), 0);
  EXPECT_EQ(MPDeleteMOSR("Text Editor", "8.0", "R1"), 0);
  EXPECT_EQ(MPDeleteSFCR("Text Editor", "8.0", nullptr, nullptr, nullptr, "C1"), 0);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{
                                "DRKSSRs not found in Orvik", "DRKCSSRs not found in Orvik",
                                "DRKSSR is not a part of Orvik", "DRKCSSR is not a part of Orvik",
                                "Cannot delete MO record from Orvik shipping profile",
                                "Cannot delete MO record from Orvik shipping profile"}));
}

}  // namespace
