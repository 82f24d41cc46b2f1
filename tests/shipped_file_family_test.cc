// Shipped files (SF) in a module's file: the file type derived from the
// name, dates, document languages, deletes and renames by partial keys,
// the installed icons that follow a renamed file, and the flag tables.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quorvex/quorvex.h"
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

const std::string kHead =
    "\n[SourceSafe]\n$Header$\n\n[Module]\n\"Core\",\"1.0\",\"TB\",\"TA\",\"\",\"\",\"\",\"" +
    FlagLetters("") + "\",\"Attr\"\n\n";

std::string File(const std::string& language, const std::string& group, const std::string& name,
                 const std::string& middle = ",,,,,,") {
  return "\"" + language + "\",\"" + group + "\",\"" + name + "\",\"\",\"\",\"\",\"\",\"\"," +
         middle + ",\"" + FlagLetters("Y") + "\",\"" + FlagLetters("") + "\"\n";
}

class ShippedFileTest : public ::testing::Test {
 protected:
  ShippedFileTest() : dir_(host_.scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(dir_.c_str()), 1);
  }
  std::string ModuleFile() const { return dir_ + "/modules/core.mo"; }
  std::string Module() const { return ReadFileBytes(ModuleFile()); }
  void Open(const std::string& sections) {
    WriteFileBytes(ModuleFile(), kHead + sections);
    ASSERT_EQ(qvtest::OpenProfileAt(dir_, kLockedOpen), 1);
    host_.Clear();
  }
  std::vector<SFRecord*> Read(SFList** list) {
    EXPECT_EQ(MPGetSFCompleteList("Core", "1.0", list, MODE_READ), 1);
    return RecordsOf<SFRecord>(*list);
  }
  std::vector<std::string> Names() {
    SFList* list = nullptr;
    std::vector<std::string> names;
    for (SFRecord* r : Read(&list)) {
      names.push_back(std::string(r->row.GroupName) + "/" + r->row.FileName + "/" +
                      r->row.Language);
    }
    MPFreeSFList(list);
    return names;
  }

  qvtest::ScriptedHost host_;
  std::string dir_;
};

TEST_F(ShippedFileTest, TheFileTypeComesFromTheNameNotFromTheLine) {
  Open("[File Group Files]\n" + File("US", "Main", "setup.exe", ",,,,12,,") +
       File("US", "Main", "SETUP.EXE") + File("US", "Main", "README", ",,,,4,,") +
       File("US", "Main", "fonts.cbs") + File("US", "Main", "x.dll"));
  SFList* list = nullptr;
  auto files = Read(&list);
  ASSERT_EQ(files.size(), 5u);
  EXPECT_EQ(files[0]->row.FileType, 4);
  EXPECT_EQ(files[1]->row.FileType, 4);
  EXPECT_EQ(files[2]->row.FileType, 1);
  EXPECT_EQ(files[3]->row.FileType, 25);
  EXPECT_EQ(files[4]->row.FileType, 2);
  EXPECT_STREQ(files[0]->row.ModuleName, "Core");
  EXPECT_EQ(files[0]->row.Flags, 0x80000000u);
  MPFreeSFList(list);
  EXPECT_EQ(MPSFFileTypeOf("a.b.Hlp"), 12);
  EXPECT_EQ(MPSFFileTypeOf("noext."), 1);
}

TEST_F(ShippedFileTest, AReadDateAndTheOptionalTailReadBack) {
  Open(
      "[File Group Files]\n\"US\",\"Main\",\"a.exe\",\"x\",\"S\",\"1\",\"TB\",\"TA\","
      "\"12/31/99 23:59:59\",1024,2,3,9,300,5,\"" +
      FlagLetters("Y") + "\",\"" + FlagLetters("NY") +
      "\",\"long\",\"a29\",\"b40\",\"c127\",\"DE, FR,,US\",\"" + FlagLetters("Y") + "\",\"" +
      FlagLetters("NY") + "\"\n");
  SFList* list = nullptr;
  auto files = Read(&list);
  ASSERT_EQ(files.size(), 1u);
  const SFRecord& f = *files[0];
  EXPECT_EQ(f.row.FileDate, 946684799u);
  EXPECT_EQ(f.row.Size, 1024u);
  EXPECT_EQ(f.row.FileType, 4);
  EXPECT_EQ(f.row.Number4, 300 % 256);
  EXPECT_EQ(f.row.OSFlags, 0x40000000u);
  EXPECT_STREQ(f.row.TextIdB, "TB");
  EXPECT_STREQ(f.row.TextIdA, "TA");
  EXPECT_STREQ(f.Attribute127, "c127");
  EXPECT_EQ(f.row.ParticipatesFlags, 0x80000000u);
  EXPECT_EQ(f.row.ModifyFilenameFlags, 0x40000000u);
  SFDLList* languages = nullptr;
  ASSERT_EQ(MPGetSFDocumentLanguages(&f, &languages), 1);
  std::vector<std::string> codes;
  for (SFDLRecord* l : RecordsOf<SFDLRecord>(languages)) codes.push_back(l->DocumentLanguage);
  EXPECT_EQ(codes, (std::vector<std::string>{"DE", "FR", "US"}));
  MPFreeSFDLList(languages);
  MPFreeSFList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ShippedFileTest, APutReplacesByGroupFileAndLanguageAndDerivesTheType) {
  Open("[File Group Files]\n" + File("US", "Main", "a.exe") + File("DE", "Main", "a.exe"));
  SFRecord* record = nullptr;
  ASSERT_EQ(MPGetSF("Core", "1.0", "Main", "a.exe", "DE", &record), 1);
  record->row.Size = 77;
  record->row.FileType = 9;
  ASSERT_EQ(MPPutSF(record), 1);
  EXPECT_EQ(record->row.FileType, 4);
  snprintf(record->row.FileName, sizeof record->row.FileName, "b.ini");
  ASSERT_EQ(MPPutSF(record), 1);
  MPFreeSF(record);
  EXPECT_EQ(Names(), (std::vector<std::string>{"Main/a.exe/US", "Main/a.exe/DE", "Main/b.ini/DE"}));
  ASSERT_EQ(MPGetSF("Core", "1.0", "Main", "a.exe", "DE", &record), 1);
  EXPECT_EQ(record->row.Size, 77u);
  MPFreeSF(record);
}

TEST_F(ShippedFileTest, DeletingAnAbsentFileReturnsZeroAndShowsNothing) {
  const std::string sections = "[File Group Files]\n" + File("US", "Main", "a.exe");
  Open(sections);
  EXPECT_EQ(MPDeleteSF("Core", "1.0", "Main", "b.exe", "US"), 0);
  EXPECT_EQ(MPDeleteSF("Core", "1.0", "Main", "a.exe", "DE"), 0);
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_EQ(Module(), kHead + sections);
}

TEST_F(ShippedFileTest, NullKeyPartsMatchAnyValue) {
  Open("[File Group Files]\n" + File("US", "Main", "a.exe") + File("DE", "Main", "b.exe") +
       File("US", "Help", "a.exe") + File("US", "Main", "c.exe"));
  ASSERT_EQ(MPDeleteSF("Core", "1.0", nullptr, "a.exe", nullptr), 1);
  EXPECT_EQ(Names(), (std::vector<std::string>{"Main/b.exe/DE", "Main/c.exe/US"}));
  ASSERT_EQ(MPDeleteSF("Core", "1.0", "Main", nullptr, nullptr), 1);
  EXPECT_TRUE(Names().empty());
}

TEST_F(ShippedFileTest, RenamingAFileCarriesItsIconsAndTheTargetText) {
  const std::string icons =
      "[Installed Icons]\n"
      "1,\"US\",\"Main\",\"tool.exe\",,,,,\"%APP%\\tool.exe /x\",,,,,\"Tool\",Y,N,N,\"\",\"T\"\n"
      "2,\"DE\",\"Main\",\"tool.exe\",,,,,\"%APP%\\tool.exe\",,,,,\"Tool\",Y,N,N,\"\",\"T\"\n";
  Open("[File Group Files]\n" + File("US", "Main", "tool.exe") + File("DE", "Main", "tool.exe") +
       "\n" + icons);
  ASSERT_EQ(MPRenameSF("Core", "1.0", "Main", "US", "tool.exe", 0, 0, "Bin", nullptr, "run.dll"),
            1);
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_EQ(Names(), (std::vector<std::string>{"Bin/run.dll/US", "Main/tool.exe/DE"}));
  SFRecord* renamed = nullptr;
  ASSERT_EQ(MPGetSF("Core", "1.0", "Bin", "run.dll", "US", &renamed), 1);
  EXPECT_EQ(renamed->row.FileType, 2);
  MPFreeSF(renamed);
  const std::string module = Module();
  EXPECT_NE(module.find("1,\"US\",\"Bin\",\"run.dll\""), std::string::npos) << module;
  EXPECT_NE(module.find("%APP%\\run.dll /x"), std::string::npos) << module;
  EXPECT_NE(module.find("2,\"DE\",\"Main\",\"tool.exe\",,,,,\"%APP%\\tool.exe\""),
            std::string::npos)
      << module;
}

TEST_F(ShippedFileTest, AssociationsOfAFileAreNoneUntilSettingsRecordsExist) {
  Open("[File Group Files]\n" + File("US", "Main", "a.exe"));
  EXPECT_EQ(
      MPSFAssociations("Core", "1.0", "Main", "a.exe", "US", 0, 0, 0, nullptr, nullptr, nullptr),
      0);
  EXPECT_EQ(MPSFAssociations("Core", "1.0", "Main", "a.exe", "US", SF_ASSOCIATIONS_DELETE, 0, 0,
                             nullptr, nullptr, nullptr),
            1);
}

TEST_F(ShippedFileTest, ARecordTheLineCannotHoldIsRefused) {
  const std::string sections = "[File Group Files]\n" + File("US", "Main", "a.exe");
  Open(sections);
  SFRecord* record = nullptr;
  MPNewSF(&record);
  snprintf(record->row.ModuleName, sizeof record->row.ModuleName, "Core");
  snprintf(record->row.ModuleVersion, sizeof record->row.ModuleVersion, "1.0");
  snprintf(record->row.GroupName, sizeof record->row.GroupName, "Main");
  snprintf(record->row.FileName, sizeof record->row.FileName, "two\nlines");
  EXPECT_EQ(MPPutSF(record), 0);
  MPFreeSF(record);
  EXPECT_EQ(Module(), kHead + sections);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0].rfind("SF record refused: FileName", 0), 0u) << host_.errors()[0];
}

TEST_F(ShippedFileTest, FlagTables) {
  SFFlagNames* table = nullptr;
  ASSERT_EQ(MPGetSFFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "Shipped File");
  EXPECT_STREQ(table->bitNames[6], "File is required by it's module");
  EXPECT_STREQ(table->bitNames[16], "File is shared system wide");
  EXPECT_STREQ(table->bitNames[17], "");
  EXPECT_STREQ(table->bitNames[18], "Copy file to Network Windows Fonts directory");
  EXPECT_STREQ(table->bitNames[21],
               "Participate in image binding at config time (used for dll's, exe's)");
  EXPECT_STREQ(table->bitNames[22], "");
  EXPECT_EQ(table->flagMask, 0xFD070400u);
  MPFreeFlagNames(table);
  ASSERT_EQ(MPGetSFOSFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "OS Flags");
  EXPECT_STREQ(table->bitNames[1], "Does not Participate in MS Windows NT 3.51 Install");
  EXPECT_EQ(table->flagMask, 0u);
  MPFreeFlagNames(table);
  ASSERT_EQ(MPGetSFParticipatesFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "File Participates Flags");
  EXPECT_STREQ(table->bitNames[0], "BR_PARTICIPATES");
  EXPECT_STREQ(table->bitNames[28], "");
  MPFreeFlagNames(table);
  ASSERT_EQ(MPGetSFModifyFilenameFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "Filename Modified Flags");
  EXPECT_STREQ(table->bitNames[27], "CT_MODIFY_FILENAME");
  MPFreeFlagNames(table);
  ASSERT_EQ(MPGetSFDLFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "Shipped File Document Language");
  MPFreeFlagNames(table);
}

}  // namespace
