// The language kinds: the four lists of the language file (SLA, DLA, OSLA,
// AILA), OS document languages (OSDL) and user information data (UNFO):
// reading, the bytes the changing operations leave, the texts each kind
// shows in each store and direction, and files with a broken line.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "records/location_family.h"
#include "records/orvik_rows.h"
#include "records/record_codec.h"
#include "support/list_view.h"
#include "support/location_profile.h"
#include "support/profiles.h"
#include "support/scripted_host.h"

namespace {

using qvtest::FlagLetters;
using qvtest::kLockedOpen;
using qvtest::kReadOnlyOpen;
using qvtest::ReadFileBytes;
using qvtest::RecordsOf;
using qvtest::WriteFileBytes;

const std::string kHead = "\n[SourceSafe]\n$Header$\n\n";

std::string Section(const std::string& name, const std::string& lines = "") {
  return "[" + name + "]\n" + lines;
}

std::string Line(const std::string& code, const std::string& name) {
  return "\"" + code + "\",\"" + name + "\"\r\n";
}

std::string OsdlLine(const std::string& os, const std::string& doc, const std::string& flags) {
  return "\"" + os + "\",\"" + doc + "\",\"" + FlagLetters(flags) + "\"\r\n";
}

// The four lists in the order a new profile has them, with records.
const std::string kShipping =
    Section("Shipping Languages", Line("US", "English") + Line("DE", "German"));
const std::string kDocument =
    Section("Document Languages", Line("US", "English") + ";IAO;" + Line("FR", "French"));
const std::string kOs = Section("OS Languages", Line("US", "English"));
const std::string kAvailable = Section("Available Interface Languages", Line("US", "English"));
const std::string kInterface = Section("Interface Languages", "\"US\"\r\n; kept by nothing\r\n");
const std::string kLanguages = kHead + kShipping + kDocument + kOs + kAvailable + kInterface;

const std::string kOsdl =
    kHead + Section("OS Document Language", OsdlLine("US", "US", "Y") + OsdlLine("JP", "US", ""));

std::vector<std::string> Codes(RecordList* list) {
  std::vector<std::string> codes;
  for (LanguageRecord* r : RecordsOf<LanguageRecord>(list)) codes.push_back(r->row.LanguageCode);
  return codes;
}

LanguageRecord* NewLanguage(const char* code, const char* name) {
  LanguageRecord* record = nullptr;
  MPNewDLA(&record);
  snprintf(record->row.LanguageCode, sizeof record->row.LanguageCode, "%s", code);
  snprintf(record->row.LanguageName, sizeof record->row.LanguageName, "%s", name);
  return record;
}

class LanguageFamilyTest : public ::testing::Test {
 protected:
  LanguageFamilyTest() : dir_(host_.scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(dir_.c_str()), 1);
  }

  std::string LanguageFile() const { return dir_ + "/LANGUAGE/pelham.la"; }
  std::string OsdlFile() const { return dir_ + "/LANGUAGE/OsDoC.LA"; }
  std::string Languages() const { return ReadFileBytes(LanguageFile()); }
  std::string Osdl() const { return ReadFileBytes(OsdlFile()); }

  // Writes the files, opens the profile and forgets what opening showed.
  void OpenWith(const std::string& languages, const std::string& osdl = kOsdl,
                uint32_t flags = kLockedOpen) {
    WriteFileBytes(LanguageFile(), languages);
    WriteFileBytes(OsdlFile(), osdl);
    ASSERT_EQ(qvtest::OpenProfileAt(dir_, flags), 1);
    host_.Clear();
  }

  qvtest::ScriptedHost host_;
  std::string dir_;
};

// ---------------------------------------------------------------- reading

TEST_F(LanguageFamilyTest, EachListIsReadFromItsOwnSection) {
  OpenWith(kLanguages);
  SLAList* sla = nullptr;
  ASSERT_EQ(MPGetSLACompleteList(&sla, MODE_READ), 1);
  EXPECT_EQ(Codes(sla), (std::vector<std::string>{"US", "DE"}));
  EXPECT_STREQ(static_cast<LanguageRecord*>(sla->tail->record)->row.LanguageName, "German");
  EXPECT_EQ(static_cast<LanguageRecord*>(sla->tail->record)->lineNumber, 7u);
  MPFreeSLAList(sla);
  DLAList* dla = nullptr;
  ASSERT_EQ(MPGetDLACompleteList(&dla, MODE_READ), 1);
  EXPECT_EQ(Codes(dla), (std::vector<std::string>{"US", "FR"}));
  EXPECT_EQ(static_cast<LanguageRecord*>(dla->tail->record)->recordFlags, RECORD_IAO);
  MPFreeDLAList(dla);
  OSLAList* osla = nullptr;
  ASSERT_EQ(MPGetOSLACompleteList(&osla, MODE_READ), 1);
  EXPECT_EQ(Codes(osla), std::vector<std::string>{"US"});
  MPFreeOSLAList(osla);
  AILAList* aila = nullptr;
  ASSERT_EQ(MPGetAILACompleteList(&aila, MODE_READ), 1);
  EXPECT_EQ(Codes(aila), std::vector<std::string>{"US"});
  MPFreeAILAList(aila);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LanguageFamilyTest, MissingSectionReadsAsEmptyList) {
  OpenWith(kHead + kShipping);
  OSLAList* list = nullptr;
  ASSERT_EQ(MPGetOSLACompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(list->count, 0u);
  MPFreeOSLAList(list);
}

TEST_F(LanguageFamilyTest, LongLanguageCodesAreReadAndWrittenBackUnchanged) {
  const std::string lines = Line("PT-BR-1996", "Portuguese (Brazil)") + Line("GSW", "Swiss German");
  OpenWith(kHead + Section("Shipping Languages", lines));
  SLARecord* record = nullptr;
  ASSERT_EQ(MPGetSLA("PT-BR-1996", &record), 1);
  EXPECT_STREQ(record->row.LanguageName, "Portuguese (Brazil)");
  MPFreeSLA(record);
  LanguageRecord* added = NewLanguage("SR-LATN-RS", "Serbian (Latin)");
  ASSERT_EQ(MPPutSLA(added), 1);
  EXPECT_EQ(Languages(),
            kHead + Section("Shipping Languages", lines + Line("SR-LATN-RS", "Serbian (Latin)")));
  EXPECT_TRUE(host_.errors().empty());
  MPFreeSLA(added);
}

TEST_F(LanguageFamilyTest, ChangesNeedALockedProfile) {
  OpenWith(kLanguages, kOsdl, kReadOnlyOpen);
  LanguageRecord* record = NewLanguage("IT", "Italian");
  EXPECT_EQ(MPPutDLA(record), 0);
  EXPECT_EQ(MPDeleteSLA("US"), 0);
  EXPECT_EQ(MPWriteAILAList(nullptr), 0);
  const std::string text = "It appears that you have not locked the Master Profile successfully!";
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{text, text, text}));
  EXPECT_EQ(Languages(), kLanguages);
  MPFreeDLA(record);
}

// ---------------------------------------------------------------- writing

TEST_F(LanguageFamilyTest, PutReplacesTheRecordWithTheSameCodeAndKeepsEveryOtherByte) {
  OpenWith(kLanguages);
  LanguageRecord* record = NewLanguage("DE", "Deutsch");
  ASSERT_EQ(MPPutSLA(record), 1);
  snprintf(record->row.LanguageCode, sizeof record->row.LanguageCode, "IT");
  snprintf(record->row.LanguageName, sizeof record->row.LanguageName, "Italian");
  ASSERT_EQ(MPPutSLA(record), 1);
  EXPECT_EQ(Languages(),
            kHead +
                Section("Shipping Languages",
                        Line("US", "English") + Line("DE", "Deutsch") + Line("IT", "Italian")) +
                kDocument + kOs + kAvailable + kInterface);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeSLA(record);
}

TEST_F(LanguageFamilyTest, CodesCompareWithRegardToCase) {
  OpenWith(kLanguages);
  OSLARecord* found = nullptr;
  EXPECT_EQ(MPGetOSLA("us", &found), 0);
  EXPECT_EQ(found, nullptr);
  LanguageRecord* record = NewLanguage("us", "lower case");
  ASSERT_EQ(MPPutOSLA(record), 1);
  EXPECT_EQ(Languages(),
            kHead + kShipping + kDocument +
                Section("OS Languages", Line("US", "English") + Line("us", "lower case")) +
                kAvailable + kInterface);
  MPFreeOSLA(record);
}

TEST_F(LanguageFamilyTest, InactiveRecordsAreWrittenBackBehindTheMarker) {
  OpenWith(kLanguages);
  LanguageRecord* record = NewLanguage("ES", "Spanish");
  ASSERT_EQ(MPPutDLA(record), 1);
  EXPECT_EQ(Languages(),
            kHead + kShipping +
                Section("Document Languages", Line("US", "English") + ";IAO;" +
                                                  Line("FR", "French") + Line("ES", "Spanish")) +
                kOs + kAvailable + kInterface);
  MPFreeDLA(record);
}

TEST_F(LanguageFamilyTest, PutCompleteListMergesAndDeleteRemoves) {
  OpenWith(kLanguages);
  DLAList* list = nullptr;
  MPNewDLAList(&list);
  MPAppendDLA(list, NewLanguage("US", "American English"));
  MPAppendDLA(list, NewLanguage("NL", "Dutch"));
  ASSERT_EQ(MPPutDLACompleteList(list), 1);
  MPFreeDLAList(list);
  EXPECT_EQ(Languages(),
            kHead + kShipping +
                Section("Document Languages", Line("US", "American English") + ";IAO;" +
                                                  Line("FR", "French") + Line("NL", "Dutch")) +
                kOs + kAvailable + kInterface);
  ASSERT_EQ(MPDeleteDLA("FR"), 1);
  EXPECT_EQ(MPDeleteDLA("FR"), 0);  // nothing left to delete: no message
  EXPECT_EQ(Languages(), kHead + kShipping +
                             Section("Document Languages",
                                     Line("US", "American English") + Line("NL", "Dutch")) +
                             kOs + kAvailable + kInterface);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LanguageFamilyTest, FindCopyAndListOperations) {
  OpenWith(kLanguages);
  SLAList* list = nullptr;
  ASSERT_EQ(MPGetSLACompleteList(&list, MODE_READ), 1);
  SLARecord* found = nullptr;
  list->current = nullptr;
  ASSERT_EQ(MPFindSLANode("DE", list, &found), 1);
  EXPECT_STREQ(found->row.LanguageName, "German");
  EXPECT_EQ(MPFindSLANode("", list, &found), 0);  // DE was the last
  EXPECT_EQ(found, nullptr);
  // A replacing copy keeps the stored code and line.
  SLARecord* stored = static_cast<SLARecord*>(list->head->record);
  LanguageRecord* source = NewLanguage("XX", "Other");
  SLARecord* copy = stored;
  ASSERT_EQ(MPCopySLA(&copy, source, 1, list), 1);
  EXPECT_STREQ(copy->row.LanguageCode, "US");
  EXPECT_STREQ(copy->row.LanguageName, "Other");
  EXPECT_EQ(copy->lineNumber, 6u);
  EXPECT_EQ(list->head->record, copy);
  EXPECT_EQ(MPDeleteSLANode(list, 1), 1);
  EXPECT_EQ(Codes(list), std::vector<std::string>{"DE"});
  MPFreeSLA(copy);  // the node went, its record stays the caller's
  MPFreeSLA(source);
  MPFreeSLAList(list);
}

// The language file of a new profile has its sections in this order; the
// interface-language section lies between the AILA section and the next.
TEST_F(LanguageFamilyTest, WritingTheAilaListLeavesOutTheInterfaceLanguageSection) {
  const std::string before = kHead + kShipping + kAvailable + kInterface + kDocument;
  OpenWith(before);
  LanguageRecord* record = NewLanguage("DE", "German");
  ASSERT_EQ(MPPutAILA(record), 1);
  EXPECT_EQ(Languages(), kHead + kShipping +
                             Section("Available Interface Languages",
                                     Line("US", "English") + Line("DE", "German")) +
                             kDocument);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeAILA(record);
}

TEST_F(LanguageFamilyTest, DeletingFromTheAilaListAlsoLeavesOutTheInterfaceLanguageSection) {
  OpenWith(kLanguages + "[Notes]\nkept\n");
  ASSERT_EQ(MPDeleteAILA("US"), 1);
  // OS Languages came before; nothing lay between the two headers but the
  // AILA lines, and what follows the interface languages stays.
  EXPECT_EQ(Languages(), kHead + kShipping + kDocument + kOs +
                             Section("Available Interface Languages") + "[Notes]\nkept\n");
}

TEST_F(LanguageFamilyTest, WithoutAnInterfaceLanguageSectionNothingBehindTheAilaLinesIsKept) {
  OpenWith(kHead + kAvailable + kDocument);
  LanguageRecord* record = NewLanguage("FR", "French");
  ASSERT_EQ(MPPutAILA(record), 1);
  EXPECT_EQ(Languages(), kHead + Section("Available Interface Languages",
                                         Line("US", "English") + Line("FR", "French")));
  MPFreeAILA(record);
}

TEST_F(LanguageFamilyTest, TheOtherListsKeepTheInterfaceLanguageSection) {
  OpenWith(kLanguages);
  LanguageRecord* record = NewLanguage("JP", "Japanese");
  ASSERT_EQ(MPPutOSLA(record), 1);
  EXPECT_EQ(Languages(),
            kHead + kShipping + kDocument +
                Section("OS Languages", Line("US", "English") + Line("JP", "Japanese")) +
                kAvailable + kInterface);
  MPFreeOSLA(record);
}

// ---------------------------------------------------------------- missing files

TEST_F(LanguageFamilyTest, MissingLanguageFileTextsDifferByKind) {
  OpenWith(kLanguages);
  std::remove(LanguageFile().c_str());
  const std::string lower = "Language file cannot be found or opened!";
  const std::string upper = "Language File cannot be found or opened!";
  RecordList* list = nullptr;
  EXPECT_EQ(MPGetSLACompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(MPGetDLACompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(MPGetOSLACompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(MPGetAILACompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{lower, upper, upper, lower}));
  host_.Clear();
  // The rewrite of a list shows the same texts.
  MPNewSLAList(&list);
  EXPECT_EQ(MPWriteSLAList(list), 0);
  EXPECT_EQ(MPWriteDLAList(list), 0);
  EXPECT_EQ(MPWriteOSLAList(list), 0);
  EXPECT_EQ(MPWriteAILAList(list), 0);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{lower, upper, upper, lower}));
  MPFreeSLAList(list);
  EXPECT_FALSE(qvtest::PathExists(LanguageFile()));
}

TEST_F(LanguageFamilyTest, MissingOsdlFileTextDiffersByDirection) {
  OpenWith(kLanguages);
  std::remove(OsdlFile().c_str());
  OSDLList* list = nullptr;
  EXPECT_EQ(MPGetOSDLCompleteList(&list, MODE_READ), 0);
  MPNewOSDLList(&list);
  EXPECT_EQ(MPWriteOSDLList(list), 0);
  MPFreeOSDLList(list);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"OS Document Language File cannot be found or opened!",
                                      "Language File cannot be found or opened!"}));
}

// ---------------------------------------------------------------- OS document languages

TEST_F(LanguageFamilyTest, OsdlFirstFlagLetterMarksTheDefaultDocumentLanguage) {
  OpenWith(kLanguages);
  OSDLList* list = nullptr;
  ASSERT_EQ(MPGetOSDLCompleteList(&list, MODE_READ), 1);
  std::vector<OSDLRecord*> records = RecordsOf<OSDLRecord>(list);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_STREQ(records[0]->row.OSLanguageCode, "US");
  EXPECT_STREQ(records[0]->row.DocLanguageCode, "US");
  EXPECT_EQ(records[0]->row.Flags, OSDL_DEFAULT_DOC_LANGUAGE);
  EXPECT_STREQ(records[1]->row.OSLanguageCode, "JP");
  EXPECT_EQ(records[1]->row.Flags, 0u);
  MPFreeOSDLList(list);
  OSDLFlagNames* table = nullptr;
  ASSERT_EQ(MPGetOSDLFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "OS Document Language");
  EXPECT_STREQ(table->bitNames[0], "Default Application Document Language");
  for (int i = 1; i < 32; ++i) EXPECT_STREQ(table->bitNames[i], "");
  EXPECT_EQ(table->flagMask, 0x80000000u);
  MPFreeFlagNames(table);
}

TEST_F(LanguageFamilyTest, OsdlIsKeyedByTheOperatingSystemLanguage) {
  OpenWith(kLanguages);
  OSDLRecord* record = nullptr;
  ASSERT_EQ(MPGetOSDL("JP", &record), 1);
  EXPECT_STREQ(record->row.DocLanguageCode, "US");
  snprintf(record->row.DocLanguageCode, sizeof record->row.DocLanguageCode, "JP");
  record->row.Flags = OSDL_DEFAULT_DOC_LANGUAGE;
  ASSERT_EQ(MPPutOSDL(record), 1);
  EXPECT_EQ(Osdl(), kHead + Section("OS Document Language",
                                    OsdlLine("US", "US", "Y") + OsdlLine("JP", "JP", "Y")));
  ASSERT_EQ(MPDeleteOSDL("US"), 1);
  EXPECT_EQ(Osdl(), kHead + Section("OS Document Language", OsdlLine("JP", "JP", "Y")));
  EXPECT_TRUE(host_.errors().empty());
  MPFreeOSDL(record);
}

TEST_F(LanguageFamilyTest, FlagTablesOfTheListsHaveTitlesOnly) {
  const std::vector<std::pair<int (*)(QvFlagNames**), std::string>> tables = {
      {&MPGetSLAFlagNames, "Shipping Languages"},
      {&MPGetDLAFlagNames, "Document Languages"},
      {&MPGetOSLAFlagNames, "OS Languages"},
      {&MPGetAILAFlagNames, "Available Interface Languages"},
      {&MPGetUNFOFlagNames, "UserInfo Data"}};
  for (const auto& [get, title] : tables) {
    QvFlagNames* table = nullptr;
    ASSERT_EQ(get(&table), 1);
    EXPECT_EQ(table->kindLabel, title);
    for (const auto& name : table->bitNames) EXPECT_STREQ(name, "");
    EXPECT_EQ(table->flagMask, 0u);
    MPFreeFlagNames(table);
  }
}

// ---------------------------------------------------------------- broken lines

struct BrokenCase {
  const char* code;
  bool osdl_file;
  std::string file;
};

// A line without its opening quote in the kind's section: the read fails,
// and a put or delete leaves the file byte for byte.
TEST_F(LanguageFamilyTest, ALineThatDoesNotParseFailsTheReadAndLeavesTheFileAlone) {
  const std::vector<BrokenCase> cases = {
      {"SLA", false,
       kHead + Section("Shipping Languages", Line("US", "English") + "DE,\"German\"\r\n") +
           kDocument},
      {"DLA", false, kHead + kShipping + Section("Document Languages", "\"US\",English\r\n")},
      {"OSLA", false, kHead + Section("OS Languages", "\"US\"\"English\"\r\n") + kAvailable},
      {"AILA", false,
       kHead + Section("Available Interface Languages", Line("US", "English") + "US\r\n") +
           kInterface + kDocument},
      {"OSDL", true,
       kHead + Section("OS Document Language",
                       OsdlLine("US", "US", "Y") + "\"DE\",\"DE\",\"YES\"\r\n")},
  };
  for (const BrokenCase& c : cases) {
    SCOPED_TRACE(c.code);
    OpenWith(c.osdl_file ? kLanguages : c.file, c.osdl_file ? c.file : kOsdl);
    const std::string path = c.osdl_file ? OsdlFile() : LanguageFile();
    const qv::KindApi* api = qv::FindKindApi(c.code);
    ASSERT_NE(api, nullptr);
    RecordList* list = nullptr;
    EXPECT_FALSE(api->list({}, &list));
    qv::GenericList::Free(list);
    EXPECT_FALSE(host_.errors().empty());
    void* record = qv::NewRecord(*api->schema);
    snprintf(static_cast<char*>(record), 11, "IT");  // the key is the row's first member
    EXPECT_FALSE(api->put(record));
    EXPECT_FALSE(api->remove({"US"}));
    qv::FreeRecord(record);
    EXPECT_EQ(ReadFileBytes(path), c.file);
    CloseMasterProfile();
  }
}

// ---------------------------------------------------------------- UNFO in a Master Profile

TEST_F(LanguageFamilyTest, UserInfoDataIsRefusedByAMasterProfile) {
  OpenWith(kLanguages);
  const std::string text = "UserInfo Data is not explicitly a part of the Master Profile";
  UNFOList* list = nullptr;
  EXPECT_EQ(MPGetUNFOCompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(list, nullptr);
  UNFORecord* record = nullptr;
  EXPECT_EQ(MPGetUNFO("UserName", &record), 0);
  ASSERT_EQ(MPNewUNFO(&record), 1);
  EXPECT_EQ(MPPutUNFO(record), 0);
  MPNewUNFOList(&list);
  EXPECT_EQ(MPPutUNFOCompleteList(list), 0);
  MPFreeUNFOList(list);
  EXPECT_EQ(MPDeleteUNFO("UserName"), 0);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>(5, text)));
  MPFreeUNFO(record);
}

TEST_F(LanguageFamilyTest, WithoutAnOpenProfileTheOpenTextComesFirst) {
  UNFOList* unfo = nullptr;
  EXPECT_EQ(MPGetUNFOCompleteList(&unfo, MODE_READ), 0);
  SLAList* sla = nullptr;
  EXPECT_EQ(MPGetSLACompleteList(&sla, MODE_READ), 0);
  const std::string text = "It appears that you have not run OpenMasterProfile successfully!";
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{text, text}));
}

// ---------------------------------------------------------------- the Orvik store

class LanguageOrvikTest : public LanguageFamilyTest {
 protected:
  static std::string Table(const char* code) {
    return qv::OrvikTableDefinition(*qv::FindKindApi(code)->schema) + ";";
  }
  // A database with the location table (opening needs it) and the tables
  // of the given kinds, then extra statements.
  void OpenOrvik(std::vector<const char*> codes, const std::string& extra_sql = "") {
    std::string db = host_.scratch().Join("shipping.orv");
    std::string sql = qv::OrvikTableDefinition(qv::LoSchema()) + ";";
    for (const char* code : codes) sql += Table(code);
    qvtest::MakeDatabase(db, sql + extra_sql);
    ASSERT_EQ(qvtest::OpenProfileAt(db, OPEN_ORVIK | OPEN_NO_VCS | OPEN_LOCK), 1);
    host_.Clear();
  }
};

TEST_F(LanguageOrvikTest, ShippingLanguagesAreNotKeptInTheDatabase) {
  OpenOrvik({"DLA"});
  SLAList* list = nullptr;
  EXPECT_EQ(MPGetSLACompleteList(&list, MODE_READ), 0);
  SLARecord* record = nullptr;
  EXPECT_EQ(MPGetSLA("US", &record), 0);
  record = NewLanguage("US", "English");
  EXPECT_EQ(MPPutSLA(record), 0);
  MPNewSLAList(&list);
  EXPECT_EQ(MPPutSLACompleteList(list), 0);
  MPFreeSLAList(list);
  EXPECT_EQ(MPDeleteSLA("US"), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Shipping Language is not a part of Orvik",
                                      "Alias Module Language is not a part of Orvik",
                                      "There is no such thing as a SLA object in Orvik, so there!",
                                      "There is no such thing as a SLA object in Orvik, so there!",
                                      "Shipping Language is not a part of Orvik"}));
  MPFreeSLA(record);
}

TEST_F(LanguageOrvikTest, ListsAreRowsInsertedAsGivenAndDeletedByCode) {
  OpenOrvik({"DLA", "OSLA", "AILA", "OSDL"},
            "INSERT INTO DLA VALUES ('US', 'English');"
            "INSERT INTO OSDL VALUES ('US', 'US', 2147483648);");
  LanguageRecord* record = NewLanguage("DE", "German");
  ASSERT_EQ(MPPutDLA(record), 1);
  ASSERT_EQ(MPPutDLA(record), 1);  // a plain insert: the row is there twice
  ASSERT_EQ(MPPutAILA(record), 1);
  DLAList* list = nullptr;
  ASSERT_EQ(MPGetDLACompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(Codes(list), (std::vector<std::string>{"US", "DE", "DE"}));
  MPFreeDLAList(list);
  // Single records come from the text store only.
  DLARecord* found = nullptr;
  EXPECT_EQ(MPGetDLA("US", &found), 0);
  ASSERT_EQ(MPDeleteDLA("DE"), 1);
  ASSERT_EQ(MPGetDLACompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(Codes(list), std::vector<std::string>{"US"});
  MPFreeDLAList(list);
  OSDLList* osdl = nullptr;
  ASSERT_EQ(MPGetOSDLCompleteList(&osdl, MODE_READ), 1);
  ASSERT_EQ(osdl->count, 1u);
  EXPECT_EQ(static_cast<OSDLRecord*>(osdl->head->record)->row.Flags, OSDL_DEFAULT_DOC_LANGUAGE);
  MPFreeOSDLList(osdl);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeDLA(record);
}

TEST_F(LanguageOrvikTest, QueriesThatCannotBeginNameTheirKinds) {
  OpenOrvik({});
  RecordList* list = nullptr;
  EXPECT_EQ(MPGetDLACompleteList(&list, MODE_READ), 0);
  MPFreeDLAList(list);
  EXPECT_EQ(MPGetOSLACompleteList(&list, MODE_READ), 0);
  MPFreeOSLAList(list);
  EXPECT_EQ(MPGetAILACompleteList(&list, MODE_READ), 0);
  MPFreeAILAList(list);
  EXPECT_EQ(MPGetOSDLCompleteList(&list, MODE_READ), 0);
  MPFreeOSDLList(list);
  EXPECT_EQ(MPGetUNFOCompleteList(&list, MODE_READ), 0);
  MPFreeUNFOList(list);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Cannot begin to Query Orvik Database for DLAs",
                                      "Cannot begin to Query Orvik Database for OSLAs",
                                      "Cannot begin to Query Orvik Database for AILAs",
                                      "Cannot begin to Query Orvik Database for OSDLs",
                                      "Cannot begin to Query Orvik Database for Modules"}));
}

// The kind's table as a view over two rows whose second cannot be
// computed: the query starts, the first row comes, the second fails.
std::string FailingView(const qv::KindSchema& schema) {
  std::string code = schema.kind->code;
  std::string columns;
  std::string selected;
  std::string values;
  for (const qv::MemberSpec& m : schema.members) {
    if (!m.in_row) continue;
    std::string name = m.name;
    selected += selected.empty() ? "CASE WHEN rowid = 2 THEN abs(-9223372036854775807 - 1) ELSE " +
                                       name + " END AS " + name
                                 : ", " + name;
    columns += (columns.empty() ? "" : ", ") + name;
    values += values.empty() ? "1" : ", 1";
  }
  return "CREATE TABLE rows_" + code + " (" + columns + ");" + "INSERT INTO rows_" + code +
         " VALUES (" + values + "), (" + values + ");" + "CREATE VIEW \"" + code +
         "\" AS SELECT rowid AS rowid, " + selected + " FROM rows_" + code + ";";
}

TEST_F(LanguageOrvikTest, ARowThatCannotBeFetchedFailsTheReadWithTheKindsText) {
  const std::vector<std::pair<const char*, std::string>> kinds = {
      {"DLA", "Cannot get DLA out of Orvik profile."},
      {"OSLA", "Cannot get OSLA out of Orvik profile."},
      {"AILA", "Cannot get AILA out of Orvik profile."},
      {"OSDL", "Cannot get OSDL out of Orvik profile."},
      {"UNFO", "Cannot get UNFO out of Orvik profile."}};
  std::string sql;
  for (const auto& kind : kinds) sql += FailingView(*qv::FindKindApi(kind.first)->schema);
  OpenOrvik({}, sql);
  std::vector<std::string> expected;
  for (const auto& [code, text] : kinds) {
    RecordList* list = nullptr;
    EXPECT_FALSE(qv::FindKindApi(code)->list({}, &list)) << code;
    qv::GenericList::Free(list);
    expected.push_back(text);
  }
  EXPECT_EQ(host_.errors(), expected);
}

TEST_F(LanguageOrvikTest, RefusedInsertsShowBothTexts) {
  std::string triggers;
  for (const char* code : {"DLA", "OSLA", "AILA", "OSDL", "UNFO"}) {
    triggers += std::string("CREATE TRIGGER refuse_") + code + " BEFORE INSERT ON " + code +
                " BEGIN SELECT RAISE(ABORT, 'no'); END;";
  }
  OpenOrvik({"DLA", "OSLA", "AILA", "OSDL", "UNFO"}, triggers);
  LanguageRecord* language = NewLanguage("US", "English");
  EXPECT_EQ(MPPutDLA(language), 0);
  EXPECT_EQ(MPPutOSLA(language), 0);
  AILAList* list = nullptr;
  MPNewAILAList(&list);
  MPAppendAILA(list, language);
  EXPECT_EQ(MPPutAILACompleteList(list), 0);
  MPFreeAILAList(list);
  OSDLRecord* osdl = nullptr;
  MPNewOSDL(&osdl);
  EXPECT_EQ(MPPutOSDL(osdl), 0);
  UNFORecord* unfo = nullptr;
  MPNewUNFO(&unfo);
  snprintf(unfo->row.FieldName, sizeof unfo->row.FieldName, "UserName");
  EXPECT_EQ(MPPutUNFO(unfo), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Cannot insert DLA record in Orvik shipping profile",
                                      "Cannot insert DLA record into Orvik shipping profile",
                                      "Cannot insert OSLA record in Orvik shipping profile",
                                      "Cannot insert OSLA record into Orvik shipping profile",
                                      "Cannot insert AILA record in Orvik shipping profile",
                                      "Cannot insert AILA record into Orvik shipping profile",
                                      "Cannot insert OSDL record in Orvik shipping profile",
                                      "Cannot insert OSDL record into Orvik shipping profile",
                                      "Cannot insert UNFO record in Orvik shipping profile",
                                      "Cannot insert ML record into Orvik shipping profile"}));
  MPFreeOSDL(osdl);
  MPFreeUNFO(unfo);
}

TEST_F(LanguageOrvikTest, DeletesOfNothingShowEachKindsText) {
  OpenOrvik({"DLA", "OSLA", "AILA", "OSDL", "UNFO"});
  EXPECT_EQ(MPDeleteDLA("US"), 0);
  EXPECT_EQ(MPDeleteOSLA("US"), 0);
  EXPECT_EQ(MPDeleteAILA("US"), 0);
  EXPECT_EQ(MPDeleteOSDL("US"), 0);
  EXPECT_EQ(MPDeleteUNFO("UserName"), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Cannot delete DLA record from Orvik shipping profile.",
                                      "Cannot delete OSLA record from Orvik shipping profile.",
                                      "Cannot delete AILA record from Orvik shipping profile",
                                      "Cannot delete OSDL record from Orvik shipping profile.",
                                      "Cannot delete UNFO record from Orvik shipping profile"}));
}

TEST_F(LanguageOrvikTest, UserInfoDataLivesInTheDatabase) {
  OpenOrvik({"UNFO"});
  UNFORecord* record = nullptr;
  MPNewUNFO(&record);
  snprintf(record->row.FieldName, sizeof record->row.FieldName, "Company");
  snprintf(record->row.Prompt, sizeof record->row.Prompt, "Your company:");
  snprintf(record->row.DefaultValue, sizeof record->row.DefaultValue, "Vardo");
  record->row.Flags = 0x80000000u;
  ASSERT_EQ(MPPutUNFO(record), 1);
  UNFOList* list = nullptr;
  ASSERT_EQ(MPGetUNFOCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(list->count, 1u);
  const UNFORecord* read = static_cast<UNFORecord*>(list->head->record);
  EXPECT_STREQ(read->row.Prompt, "Your company:");
  EXPECT_STREQ(read->row.DefaultValue, "Vardo");
  EXPECT_EQ(read->row.Flags, 0x80000000u);
  MPFreeUNFOList(list);
  ASSERT_EQ(MPDeleteUNFO("Company"), 1);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeUNFO(record);
}

}  // namespace
