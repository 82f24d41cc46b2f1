// No profile data is lost: a read that meets a broken line fails instead of
// handing out records that a write would put over the line, a rewrite never
// copies a line it cannot carry whole, and a put refuses a record whose line
// would not read back as given, before any byte is written.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "core/report_capture.h"
#include "core/state.h"
#include "quorvex/quorvex.h"
#include "support/location_profile.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::FlagLetters;
using qvtest::kLockedOpen;
using qvtest::ReadFileBytes;
using qvtest::WriteFileBytes;

const std::string kLodestar =
    "\"Lodestar\",\"1\",\"$DR$\",,\"Lodestar\",,\"\",\"" + FlagLetters("YYYN") + "\"\r\n";
const std::string kBrokenLocation =
    "\"Bad\",1,\"$DR$\",,\"Bad\",,\"\",\"" + FlagLetters("") + "\"\r\n";
const std::string kPrograms =
    "\"Programs\",\"WIN32_NT\",\"Programs\",\"" + FlagLetters("") + "\"\r\n";
const std::string kAdsHead = "\n[SourceSafe]\n$Header$\n\n[Ads]\n";
const std::string kAd = "1,0,0,\"Spring\",\"\",Y,N,N,\"Spring offer\"\r\n";
const std::string kResourcesHead = "\n[SourceSafe]\n$Header$\n\n[Resources]\n";
const std::string kResource = "\"IDS_A\",\"Text\",1,\r\n";
const std::string kMessagesHead = "\n[SourceSafe]\n$Header$\n\n[Strings]\nTitle=Setup\r\n";

class DataSafetyTest : public ::testing::Test {
 protected:
  DataSafetyTest() : profile_(&host_) {}

  std::string File(const std::string& relative) const { return profile_.dir() + "/" + relative; }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

// ---------------------------------------------------------------- capture

TEST_F(DataSafetyTest, ACaptureRecordsReportsWithTheirLineAndAQuietOneShowsNoBox) {
  SetParseFile("some.file");
  qv::State().parse_line = 7;
  {
    qv::ReportCapture outer;
    {
      qv::ReportCapture quiet(true);
      qv::ReportParseProblem("Bad flag constant: must be a Y or an N character");
      ReportError("plain", 0);
      ASSERT_EQ(quiet.problems().size(), 2u);
      EXPECT_EQ(quiet.problems()[0].file, "some.file");
      EXPECT_EQ(quiet.problems()[0].line, 7);
      EXPECT_TRUE(quiet.problems()[0].from_parser);
      EXPECT_EQ(quiet.problems()[1].file, "");
      EXPECT_FALSE(quiet.problems()[1].from_parser);
    }
    EXPECT_TRUE(host_.boxes().empty());
    ReportError("seen", 0);
    EXPECT_EQ(outer.problems().size(), 3u);
  }
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"seen"});
}

TEST_F(DataSafetyTest, TheReaderCountsLinesItCannotTakeWhole) {
  std::string path = File("lines.txt");
  WriteFileBytes(
      path, "short\n" + std::string(6000, 'x') + "\nnul" + std::string(1, '\0') + "after\nend");
  QvFile file = QvOpenFileForRead(path.c_str());
  char line[QV_LINE_SIZE];
  uint64_t before = qv::CutLineCount();
  ASSERT_EQ(ReadProfileLine(file, line, sizeof line), 1);
  EXPECT_EQ(qv::CutLineCount(), before);
  ASSERT_EQ(ReadProfileLine(file, line, sizeof line), 1);  // the first 5023 bytes
  EXPECT_EQ(qv::CutLineCount(), before + 1);
  ASSERT_EQ(ReadProfileLine(file, line, sizeof line), 1);  // the rest of it
  ASSERT_EQ(ReadProfileLine(file, line, sizeof line), 1);  // "nul", cut at the NUL
  EXPECT_STREQ(line, "nul");
  EXPECT_EQ(qv::CutLineCount(), before + 2);
  ASSERT_EQ(ReadProfileLine(file, line, sizeof line), 1);
  EXPECT_STREQ(line, "after");
  ASSERT_EQ(ReadProfileLine(file, line, sizeof line), 1);  // a last line without a feed
  EXPECT_STREQ(line, "end");
  EXPECT_EQ(qv::CutLineCount(), before + 2);
  QvCloseFile(file);
}

// ---------------------------------------------------------------- failed reads

TEST_F(DataSafetyTest, ABrokenLocationLineFailsTheOpenAndNothingIsWrittenBack) {
  const std::string bytes = qvtest::kLocationsHead + kLodestar + kBrokenLocation;
  profile_.WriteLocations(kLodestar + kBrokenLocation);
  EXPECT_EQ(profile_.Open(kLockedOpen | OPEN_SILENT), 0);
  EXPECT_EQ(IsMasterProfileOpen(0), 0);
  EXPECT_EQ(profile_.Locations(), bytes);
  // Opened while the file was sound, then broken by hand: the locked close
  // writes back the list it holds, which was read whole.
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  WriteFileBytes(profile_.LocationFile(), bytes);
  LOList* list = nullptr;
  EXPECT_EQ(MPGetLOCompleteList(&list, MODE_READ), 0);
  MPFreeLOList(list);
  LORecord* record = qvtest::NewLocation("New", "1", "Lodestar", "1", "New");
  EXPECT_EQ(MPPutLO(record), 0);
  MPFreeLO(record);
  EXPECT_EQ(MPDeleteLO("Lodestar", "1"), 0);
  EXPECT_EQ(profile_.Locations(), bytes);
}

TEST_F(DataSafetyTest, AnAdsLineKeepsItsGoodFieldsButACutLineFailsTheRead) {
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  WriteFileBytes(File("ADS/adlist.ad"), kAdsHead + "2,0,0,\"A\",\"B\",Q,N,N,\"Broken\"\r\n");
  ADList* list = nullptr;
  ASSERT_EQ(MPGetADCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(list->count, 1u);
  // The parsers go on from where the bad flag stopped them.
  EXPECT_STREQ(static_cast<ADRecord*>(list->head->record)->row.text1, "A");
  EXPECT_STREQ(static_cast<ADRecord*>(list->head->record)->name, "");
  MPFreeADList(list);
  host_.Clear();
  const std::string cut = kAdsHead + kAd + "3,0,0,\"" + std::string(6000, 'a') + "\"\r\n";
  WriteFileBytes(File("ADS/adlist.ad"), cut);
  EXPECT_EQ(MPGetADCompleteList(&list, MODE_READ), 0);
  MPFreeADList(list);
  ASSERT_FALSE(host_.errors().empty());
  EXPECT_NE(host_.errors()[0].find("cannot be read whole"), std::string::npos);
  EXPECT_EQ(ReadFileBytes(File("ADS/adlist.ad")), cut);
}

TEST_F(DataSafetyTest, ABrokenCommentContinuationFailsTheRead) {
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  const std::string bytes = std::string(qvtest::kIconLocationsHead) + ";IAO;" +
                            kPrograms.substr(0, 20) + "\\\r\n\"rest\"\r\n" + kPrograms;
  WriteFileBytes(profile_.IconFile(), bytes);
  ILList* list = nullptr;
  EXPECT_EQ(MPGetILCompleteList(&list, MODE_READ), 0);
  MPFreeILList(list);
  ILRecord* record = nullptr;
  MPNewIL(&record);
  snprintf(record->row.Name, sizeof record->row.Name, "Desktop");
  EXPECT_EQ(MPPutIL(record), 0);
  MPFreeIL(record);
  EXPECT_EQ(profile_.Icons(), bytes);
}

TEST_F(DataSafetyTest, ARewriteLeavesAFileWithALineItCannotCopyWhole) {
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  // The long line stands outside the Ads section: the family reads fine,
  // but the copy around the section would cut it.
  const std::string bytes = kAdsHead + kAd + "[Notes]\n" + std::string(6000, 'n') + "\n";
  WriteFileBytes(File("ADS/adlist.ad"), bytes);
  ADRecord* record = nullptr;
  MPNewAD(&record);
  snprintf(record->name, sizeof record->name, "Summer");
  host_.Clear();
  ADList* list = nullptr;
  MPNewADList(&list);
  MPAppendAD(list, record);
  EXPECT_EQ(MPWriteADList(list), 0);
  MPFreeADList(list);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_NE(host_.errors()[0].find("which a rewrite cannot copy; the file was left unchanged."),
            std::string::npos);
  EXPECT_EQ(ReadFileBytes(File("ADS/adlist.ad")), bytes);
}

// ---------------------------------------------------------------- a broken line survives

// One malformed line in a kind's file: no operation of the engine may change
// the file, from the open to the locked close.
struct SurvivalCase {
  const char* name;
  const char* file;
  std::string bytes;
  std::function<void()> every_change;
};

class BrokenLineSurvivesTest : public DataSafetyTest, public ::testing::WithParamInterface<int> {};

std::vector<SurvivalCase> SurvivalCases() {
  auto ad_changes = [] {
    ADRecord* ad = nullptr;
    MPNewAD(&ad);
    snprintf(ad->name, sizeof ad->name, "New");
    MPPutAD(ad);
    ADList* list = nullptr;
    MPNewADList(&list);
    MPAppendAD(list, ad);
    MPPutADCompleteList(list);
    MPDeleteAD(1);
    MPFreeADList(list);
    ADList* read = nullptr;
    MPGetADCompleteList(&read, MODE_UPDATE);
    MPFreeADList(read);
  };
  auto il_changes = [] {
    ILRecord* il = nullptr;
    MPNewIL(&il);
    snprintf(il->row.Name, sizeof il->row.Name, "Desktop");
    MPPutIL(il);
    ILList* list = nullptr;
    MPNewILList(&list);
    MPAppendIL(list, il);
    MPPutILCompleteList(list);
    MPDeleteIL("Programs");
    MPFreeILList(list);
  };
  auto resource_changes = [] {
    ResourceRecord* text = nullptr;
    MPNewResource(&text);
    snprintf(text->LanguageCode, sizeof text->LanguageCode, "US");
    snprintf(text->ResourceName, sizeof text->ResourceName, "IDS_B");
    MPPutResource(text);
    MPDeleteResource("US", "IDS_A");
    ResourceList* list = nullptr;
    MPNewResourceList(&list);
    MPAppendResource(list, text);
    MPPutResourceCompleteList(list);
    MPFreeResourceList(list);
  };
  auto message_changes = [] {
    StringRecord* message = nullptr;
    MPNewString(&message);
    snprintf(message->LanguageCode, sizeof message->LanguageCode, "US");
    snprintf(message->MessageKey, sizeof message->MessageKey, "Key");
    MPPutString(message);
    MPDeleteString("US", "Title");
    StringList* list = nullptr;
    MPNewStringList(&list);
    MPAppendString(list, message);
    MPPutStringCompleteList(list);
    MPFreeStringList(list);
  };
  const std::string long_line = std::string(6000, 'z') + "\r\n";
  const std::string nul_line = std::string("Bad") + '\0' + "=x\r\n";
  return {
      {"AdsCutLine", "ADS/adlist.ad", kAdsHead + kAd + long_line, ad_changes},
      {"AdsNulLine", "ADS/adlist.ad", kAdsHead + kAd + nul_line, ad_changes},
      {"IconBadField", "locs/icons.lo",
       qvtest::kIconLocationsHead + kPrograms + "\"Desk\",\"WIN32_NT\",\"D\",\"YN\"\r\n",
       il_changes},
      {"IconCutLine", "locs/icons.lo", qvtest::kIconLocationsHead + kPrograms + long_line,
       il_changes},
      {"ResourceBadField", "RES_US/pelhamUS.re",
       kResourcesHead + kResource + "\"IDS_C\",Text,1\r\n", resource_changes},
      {"ResourceNulLine", "RES_US/pelhamUS.re", kResourcesHead + kResource + nul_line,
       resource_changes},
      {"MessageNulLine", "LANGUAGE/setupUS.msg", kMessagesHead + nul_line, message_changes},
      {"MessageCutLine", "LANGUAGE/setupUS.msg", kMessagesHead + "K=" + long_line, message_changes},
  };
}

TEST_P(BrokenLineSurvivesTest, EveryPutAndDeletePathAndTheCloseLeaveTheFileByteForByte) {
  const SurvivalCase c = SurvivalCases()[static_cast<size_t>(GetParam())];
  profile_.WriteLocations(kLodestar);
  WriteFileBytes(File(c.file), c.bytes);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1) << c.name;
  c.every_change();
  EXPECT_EQ(ReadFileBytes(File(c.file)), c.bytes) << c.name;
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(ReadFileBytes(File(c.file)), c.bytes) << c.name;
  EXPECT_FALSE(host_.errors().empty()) << c.name;
}

INSTANTIATE_TEST_SUITE_P(Kinds, BrokenLineSurvivesTest,
                         ::testing::Range(0, static_cast<int>(SurvivalCases().size())),
                         [](const ::testing::TestParamInfo<int>& info) {
                           return std::string(
                               SurvivalCases()[static_cast<size_t>(info.param)].name);
                         });

TEST_F(DataSafetyTest, ABrokenLocationLineSurvivesEveryPathToo) {
  const std::string bytes = qvtest::kLocationsHead + kLodestar + kBrokenLocation;
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  WriteFileBytes(profile_.LocationFile(), bytes);
  LORecord* record = qvtest::NewLocation("New", "1", "Lodestar", "1", "New");
  EXPECT_EQ(MPPutLO(record), 0);
  LOList* list = nullptr;
  MPNewLOList(&list);
  MPAppendLO(list, record);
  EXPECT_EQ(MPPutLOCompleteList(list), 0);
  EXPECT_EQ(MPDeleteLO("Lodestar", "1"), 0);
  MPFreeLOList(list);
  EXPECT_EQ(profile_.Locations(), bytes);
}

// ---------------------------------------------------------------- refused puts

TEST_F(DataSafetyTest, AMessageTextWithALineBreakIsRefusedNamingTheMember) {
  WriteFileBytes(File("LANGUAGE/setupUS.msg"), kMessagesHead);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  StringRecord* message = nullptr;
  MPNewString(&message);
  snprintf(message->LanguageCode, sizeof message->LanguageCode, "US");
  snprintf(message->MessageKey, sizeof message->MessageKey, "A");
  snprintf(message->MessageText, sizeof message->MessageText, "line1\n[Remove Strings]\nEvil=1");
  EXPECT_EQ(MPPutString(message), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Strings record refused: MessageText holds a line break or "
                                     "another control character, which a profile line cannot "
                                     "carry; nothing was written."});
  host_.Clear();
  snprintf(message->MessageKey, sizeof message->MessageKey, "A=B");
  snprintf(message->MessageText, sizeof message->MessageText, "v");
  EXPECT_EQ(MPPutString(message), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Strings record refused: MessageKey would "
                                                     "read back as \"A\"; nothing was written."});
  MPFreeString(message);
  EXPECT_EQ(ReadFileBytes(File("LANGUAGE/setupUS.msg")), kMessagesHead);
}

TEST_F(DataSafetyTest, AnAdsIdBeyondWhatTheReaderGivesBackIsRefused) {
  WriteFileBytes(File("ADS/adlist.ad"), kAdsHead + kAd);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  ADRecord* ad = nullptr;
  MPNewAD(&ad);
  ad->row.id = 0x80000000u;
  snprintf(ad->name, sizeof ad->name, "Big");
  EXPECT_EQ(MPPutAD(ad), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"AD record refused: id would read back as "
                                                     "2147483647; nothing was written."});
  host_.Clear();
  ad->row.id = 0;
  snprintf(ad->name, sizeof ad->name, "x\ny,z");
  EXPECT_EQ(MPPutAD(ad), 0);
  EXPECT_NE(host_.errors().at(0).find("AD record refused: name holds a line break"),
            std::string::npos);
  MPFreeAD(ad);
  EXPECT_EQ(ReadFileBytes(File("ADS/adlist.ad")), kAdsHead + kAd);
}

TEST_F(DataSafetyTest, AnIconLocationWithAnUnknownOsTypeIsRefusedBeforeAnyByteIsWritten) {
  profile_.WriteIcons(kPrograms);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  ILRecord* il = nullptr;
  MPNewIL(&il);
  snprintf(il->row.Name, sizeof il->row.Name, "Bad");
  il->row.OsType = 7;
  EXPECT_EQ(MPPutIL(il), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"IL record refused: OsType cannot be written "
                                     "so that it reads back; nothing was written."});
  MPFreeIL(il);
  EXPECT_EQ(profile_.Icons(), qvtest::kIconLocationsHead + kPrograms);
}

TEST_F(DataSafetyTest, AResourceTextEndingInACaretIsRefused) {
  WriteFileBytes(File("RES_US/pelhamUS.re"), kResourcesHead + kResource);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  ResourceRecord* text = nullptr;
  MPNewResource(&text);
  snprintf(text->LanguageCode, sizeof text->LanguageCode, "US");
  snprintf(text->ResourceName, sizeof text->ResourceName, "IDS_B");
  snprintf(text->Text, sizeof text->Text, "ends in ^");
  EXPECT_EQ(MPPutResource(text), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Resources record refused: Text cannot be "
                                                     "written so that it reads back; nothing was "
                                                     "written."});
  MPFreeResource(text);
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(ReadFileBytes(File("RES_US/pelhamUS.re")), kResourcesHead + kResource);
}

}  // namespace
