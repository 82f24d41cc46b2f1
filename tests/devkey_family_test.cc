// The kinds of the registry-administration file: development registry keys
// (DRK), their products (DRKPR) and development products (DVPR): keys,
// the bytes a rewrite leaves in the other sections, inactive DRK records
// that cannot be written back, broken lines and the Orvik texts.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "records/line_capacity.h"
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
using qvtest::ReadFileBytes;
using qvtest::RecordsOf;
using qvtest::WriteFileBytes;

const std::string kHead = "\n[SourceSafe]\n$Header$\n\n";

std::string Quoted(const std::vector<std::string>& texts, const std::string& flags = "") {
  std::string line;
  for (const std::string& text : texts) line += "\"" + text + "\",";
  return line + "\"" + FlagLetters(flags) + "\"\r\n";
}

const std::string kCore40 = Quoted(
    {"Core", "4.0", "HKLM", "SOFTWARE\\Vardo", "Dir", "C:\\Vardo", "String", "", "Install folder"});
const std::string kCore41 = Quoted({"Core", "4.1", "HKLM", "SOFTWARE\\Vardo\\41", "Dir",
                                    "C:\\Vardo 4.1", "String", "", "Install folder"},
                                   "Y");
const std::string kKeys = "[Development Reg Keys]\n" + kCore40 + kCore41 + "\n";
const std::string kKeyProducts = "[Development Reg Key Products]\n" +
                                 Quoted({"Core", "4.0", "SUITE"}) + ";IAO;" +
                                 Quoted({"Core", "4.1", "SUITE"}) + "\n";
const std::string kProducts =
    "[Development Products]\n" + Quoted({"SUITE", "Lodestar Suite"}) + Quoted({"TOOLS", "Tools"});
const std::string kFile = kHead + kKeys + kKeyProducts + kProducts;

DVPRRecord* NewProduct(const char* code, const char* name) {
  DVPRRecord* record = nullptr;
  MPNewDVPR(&record);
  snprintf(record->row.ProductCode, sizeof record->row.ProductCode, "%s", code);
  snprintf(record->row.ProductName, sizeof record->row.ProductName, "%s", name);
  return record;
}

DRKRecord* NewKey(const char* name, const char* key2) {
  DRKRecord* record = nullptr;
  MPNewDRK(&record);
  snprintf(record->row.DRKName, sizeof record->row.DRKName, "%s", name);
  snprintf(record->row.DRKKey2, sizeof record->row.DRKKey2, "%s", key2);
  return record;
}

class DevKeyFamilyTest : public ::testing::Test {
 protected:
  DevKeyFamilyTest() : dir_(host_.scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(dir_.c_str()), 1);
  }

  std::string RamFile() const { return dir_ + "/REGADMIN/REGADMIN.RAM"; }
  std::string Ram() const { return ReadFileBytes(RamFile()); }

  void OpenWith(const std::string& content, uint32_t flags = kLockedOpen) {
    WriteFileBytes(RamFile(), content);
    ASSERT_EQ(qvtest::OpenProfileAt(dir_, flags), 1);
    host_.Clear();
  }

  qvtest::ScriptedHost host_;
  std::string dir_;
};

// ---------------------------------------------------------------- reading and keys

TEST_F(DevKeyFamilyTest, ReadsEveryFieldOfEachKind) {
  OpenWith(kFile);
  DRKList* keys = nullptr;
  ASSERT_EQ(MPGetDRKCompleteList(&keys, MODE_READ), 1);
  std::vector<DRKRecord*> drk = RecordsOf<DRKRecord>(keys);
  ASSERT_EQ(drk.size(), 2u);
  EXPECT_STREQ(drk[1]->row.DRKName, "Core");
  EXPECT_STREQ(drk[1]->row.DRKKey2, "4.1");
  EXPECT_STREQ(drk[1]->row.text1, "HKLM");
  EXPECT_STREQ(drk[1]->row.text2, "SOFTWARE\\Vardo\\41");
  EXPECT_STREQ(drk[1]->row.text3, "Dir");
  EXPECT_STREQ(drk[1]->row.text4, "C:\\Vardo 4.1");
  EXPECT_STREQ(drk[1]->row.text5, "String");
  EXPECT_STREQ(drk[1]->row.text6, "");
  EXPECT_STREQ(drk[1]->row.text7, "Install folder");
  EXPECT_EQ(drk[1]->row.Flags, 0x80000000u);
  EXPECT_EQ(drk[1]->lineNumber, 7u);
  MPFreeDRKList(keys);
  DRKPRList* links = nullptr;
  ASSERT_EQ(MPGetDRKPRCompleteList(&links, MODE_READ), 1);
  std::vector<DRKPRRecord*> drkpr = RecordsOf<DRKPRRecord>(links);
  ASSERT_EQ(drkpr.size(), 2u);
  EXPECT_STREQ(drkpr[1]->row.text1, "4.1");
  EXPECT_STREQ(drkpr[1]->row.text2, "SUITE");
  EXPECT_EQ(drkpr[1]->recordFlags, RECORD_IAO);
  MPFreeDRKPRList(links);
  DVPRRecord* product = nullptr;
  ASSERT_EQ(MPGetDVPR("TOOLS", &product), 1);
  EXPECT_STREQ(product->row.ProductName, "Tools");
  MPFreeDVPR(product);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(DevKeyFamilyTest, TwoKeysWithOneNameAndDifferentSecondKeysAreTwoRecords) {
  OpenWith(kFile);
  DRKRecord* record = nullptr;
  ASSERT_EQ(MPGetDRK("Core", "4.0", &record), 1);
  EXPECT_STREQ(record->row.text2, "SOFTWARE\\Vardo");
  MPReleaseDRK(&record);
  ASSERT_EQ(MPGetDRK("Core", "4.1", &record), 1);
  EXPECT_STREQ(record->row.text2, "SOFTWARE\\Vardo\\41");
  // A put with a third second key adds a record; one with a known pair
  // replaces just that one.
  snprintf(record->row.DRKKey2, sizeof record->row.DRKKey2, "5.0");
  ASSERT_EQ(MPPutDRK(record), 1);
  snprintf(record->row.DRKKey2, sizeof record->row.DRKKey2, "4.0");
  snprintf(record->row.text7, sizeof record->row.text7, "Old folder");
  record->row.Flags = 0;
  ASSERT_EQ(MPPutDRK(record), 1);
  const std::string core40 = Quoted({"Core", "4.0", "HKLM", "SOFTWARE\\Vardo\\41", "Dir",
                                     "C:\\Vardo 4.1", "String", "", "Old folder"});
  const std::string core50 = Quoted({"Core", "5.0", "HKLM", "SOFTWARE\\Vardo\\41", "Dir",
                                     "C:\\Vardo 4.1", "String", "", "Install folder"},
                                    "Y");
  EXPECT_EQ(Ram(), kHead + "[Development Reg Keys]\n" + core40 + kCore41 + core50 + kKeyProducts +
                       kProducts);
  ASSERT_EQ(MPDeleteDRK("Core", "4.1"), 1);
  EXPECT_EQ(Ram(), kHead + "[Development Reg Keys]\n" + core40 + core50 + kKeyProducts + kProducts);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeDRK(record);
}

TEST_F(DevKeyFamilyTest, KeyLookupsCompareWithRegardToCase) {
  OpenWith(kFile);
  DRKRecord* drk = nullptr;
  EXPECT_EQ(MPGetDRK("core", "4.0", &drk), 0);
  EXPECT_EQ(drk, nullptr);
  DRKPRRecord* drkpr = nullptr;
  EXPECT_EQ(MPGetDRKPR("Core", "4.0", "suite", &drkpr), 0);
  ASSERT_EQ(MPGetDRKPR("Core", "4.0", "SUITE", &drkpr), 1);
  MPFreeDRKPR(drkpr);
  DVPRRecord* dvpr = nullptr;
  EXPECT_EQ(MPGetDVPR("Suite", &dvpr), 0);
  EXPECT_EQ(MPDeleteDRK("CORE", "4.0"), 0);
  EXPECT_EQ(Ram(), kFile);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(DevKeyFamilyTest, DrkprIsKeyedByAllThreeTexts) {
  OpenWith(kFile);
  DRKPRRecord* record = nullptr;
  MPNewDRKPR(&record);
  snprintf(record->row.DRKName, sizeof record->row.DRKName, "Core");
  snprintf(record->row.text1, sizeof record->row.text1, "4.0");
  snprintf(record->row.text2, sizeof record->row.text2, "TOOLS");
  ASSERT_EQ(MPPutDRKPR(record), 1);
  snprintf(record->row.text2, sizeof record->row.text2, "SUITE");
  record->row.Flags = 0x40000000u;
  ASSERT_EQ(MPPutDRKPR(record), 1);
  EXPECT_EQ(Ram(), kHead + kKeys + "[Development Reg Key Products]\n" +
                       Quoted({"Core", "4.0", "SUITE"}, "NY") + ";IAO;" +
                       Quoted({"Core", "4.1", "SUITE"}) + Quoted({"Core", "4.0", "TOOLS"}) +
                       kProducts);
  ASSERT_EQ(MPDeleteDRKPR("Core", "4.0", "TOOLS"), 1);
  EXPECT_EQ(Ram(), kHead + kKeys + "[Development Reg Key Products]\n" +
                       Quoted({"Core", "4.0", "SUITE"}, "NY") + ";IAO;" +
                       Quoted({"Core", "4.1", "SUITE"}) + kProducts);
  MPFreeDRKPR(record);
}

// ---------------------------------------------------------------- one section, the rest kept

TEST_F(DevKeyFamilyTest, WritingTheProductsLeavesTheOtherTwoSectionsByteForByte) {
  OpenWith(kFile + "[Notes]\nkept\n");
  DVPRList* list = nullptr;
  MPNewDVPRList(&list);
  MPAppendDVPR(list, NewProduct("TOOLS", "Lodestar Tools"));
  MPAppendDVPR(list, NewProduct("DEV", "Developer Kit"));
  ASSERT_EQ(MPPutDVPRCompleteList(list), 1);
  MPFreeDVPRList(list);
  const std::string after = Ram();
  const std::string head = kHead + kKeys + kKeyProducts;
  ASSERT_GE(after.size(), head.size());
  EXPECT_EQ(after.substr(0, head.size()), head);
  EXPECT_EQ(after, head + "[Development Products]\n" + Quoted({"SUITE", "Lodestar Suite"}) +
                       Quoted({"TOOLS", "Lodestar Tools"}) + Quoted({"DEV", "Developer Kit"}) +
                       "[Notes]\nkept\n");
  ASSERT_EQ(MPDeleteDVPR("SUITE"), 1);
  EXPECT_EQ(Ram().substr(0, head.size()), head);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(DevKeyFamilyTest, FlagTablesHaveTitlesOnly) {
  const std::vector<std::pair<int (*)(QvFlagNames**), std::string>> tables = {
      {&MPGetDRKFlagNames, "Development Reg Keys"},
      {&MPGetDRKPRFlagNames, "Development Reg Key Products"},
      {&MPGetDVPRFlagNames, "Development Products"}};
  for (const auto& [get, title] : tables) {
    QvFlagNames* table = nullptr;
    ASSERT_EQ(get(&table), 1);
    EXPECT_EQ(table->kindLabel, title);
    for (const auto& name : table->bitNames) EXPECT_STREQ(name, "");
    EXPECT_EQ(table->flagMask, 0u);
    MPFreeFlagNames(table);
  }
}

// ---------------------------------------------------------------- inactive DRK records

// A DRK line hands its record flags to the third, fifth, seventh and ninth
// fields too: an inactive record would be written with ";IAO;" inside its
// line. The put check writes with the same options and sees it.
TEST_F(DevKeyFamilyTest, TheLineCheckSeesTheMarkerInsideAnInactiveDrkLine) {
  const qv::KindSchema& drk = *qv::FindKindApi("DRK")->schema;
  DRKRecord* record = NewKey("Core", "4.0");
  EXPECT_EQ(qv::LineCapacityProblem(drk, record), "");
  record->recordFlags = RECORD_IAO;
  EXPECT_EQ(qv::LineCapacityProblem(drk, record), "text1 cannot be written so that it reads back");
  MPFreeDRK(record);
  // The other kinds of the file hand the flags to their first field only.
  DVPRRecord* product = NewProduct("SUITE", "Suite");
  product->recordFlags = RECORD_IAO;
  EXPECT_EQ(qv::LineCapacityProblem(*qv::FindKindApi("DVPR")->schema, product), "");
  MPFreeDVPR(product);
}

TEST_F(DevKeyFamilyTest, AnInactiveDrkRecordIsRefusedBeforeTheFileIsTouched) {
  OpenWith(kFile);
  DRKRecord* record = NewKey("Tools", "1.0");
  record->recordFlags = RECORD_IAO;
  EXPECT_EQ(MPPutDRK(record), 0);
  DRKList* list = nullptr;
  MPNewDRKList(&list);
  MPAppendDRK(list, record);
  EXPECT_EQ(MPPutDRKCompleteList(list), 0);
  EXPECT_EQ(MPWriteDRKList(list), 0);
  MPFreeDRKList(list);
  const std::string text =
      "DRK record refused: text1 cannot be written so that it reads back; nothing was written.";
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{text, text, text}));
  EXPECT_EQ(Ram(), kFile);
}

TEST_F(DevKeyFamilyTest, AFileWithAnInactiveDrkLineIsReadButNotRewrittenByDrkChanges) {
  const std::string file =
      kHead + "[Development Reg Keys]\n" + kCore40 + ";IAO;" + kCore41 + kKeyProducts + kProducts;
  OpenWith(file);
  DRKList* list = nullptr;
  ASSERT_EQ(MPGetDRKCompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(static_cast<DRKRecord*>(list->tail->record)->recordFlags, RECORD_IAO);
  // Rewriting the list it was read as would break the next read.
  EXPECT_EQ(MPWriteDRKList(list), 0);
  MPFreeDRKList(list);
  DRKRecord* record = NewKey("Tools", "1.0");
  EXPECT_EQ(MPPutDRK(record), 0);
  EXPECT_EQ(MPDeleteDRK("Core", "4.0"), 0);
  const std::string text =
      "DRK record refused: text1 cannot be written so that it reads back; nothing was written.";
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{text, text, text}));
  EXPECT_EQ(Ram(), file);
  host_.Clear();
  // The other kinds of the file copy the inactive line as it stands.
  DVPRRecord* product = NewProduct("DEV", "Developer Kit");
  ASSERT_EQ(MPPutDVPR(product), 1);
  EXPECT_EQ(Ram(), file + Quoted({"DEV", "Developer Kit"}));
  // Replacing or deleting the inactive record itself is allowed.
  ASSERT_EQ(MPDeleteDRK("Core", "4.1"), 1);
  EXPECT_EQ(Ram(), kHead + "[Development Reg Keys]\n" + kCore40 + kKeyProducts + kProducts +
                       Quoted({"DEV", "Developer Kit"}));
  EXPECT_TRUE(host_.errors().empty());
  MPFreeDRK(record);
  MPFreeDVPR(product);
}

TEST_F(DevKeyFamilyTest, InactiveProductRecordsAreWrittenBackBehindTheMarker) {
  OpenWith(kFile);
  DRKPRRecord* record = nullptr;
  MPNewDRKPR(&record);
  snprintf(record->row.DRKName, sizeof record->row.DRKName, "Tools");
  ASSERT_EQ(MPPutDRKPR(record), 1);
  EXPECT_EQ(Ram(), kHead + kKeys + "[Development Reg Key Products]\n" +
                       Quoted({"Core", "4.0", "SUITE"}) + ";IAO;" +
                       Quoted({"Core", "4.1", "SUITE"}) + Quoted({"Tools", "", ""}) + kProducts);
  MPFreeDRKPR(record);
}

// ---------------------------------------------------------------- missing file, broken lines

TEST_F(DevKeyFamilyTest, MissingFileIsReportedForEveryKindAndDirection) {
  OpenWith(kFile);
  std::remove(RamFile().c_str());
  const std::string text = "File regadmin.RAM cannot be found or opened!";
  RecordList* list = nullptr;
  EXPECT_EQ(MPGetDRKCompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(MPGetDRKPRCompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(MPGetDVPRCompleteList(&list, MODE_READ), 0);
  MPNewDRKList(&list);
  EXPECT_EQ(MPWriteDRKList(list), 0);
  EXPECT_EQ(MPWriteDRKPRList(list), 0);
  EXPECT_EQ(MPWriteDVPRList(list), 0);
  MPFreeDRKList(list);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>(6, text)));
}

TEST_F(DevKeyFamilyTest, ALineThatDoesNotParseFailsTheReadAndLeavesTheFileAlone) {
  const std::vector<std::pair<const char*, std::string>> cases = {
      {"DRK", kHead + "[Development Reg Keys]\n" + kCore40 +
                  "\"Core\",\"4.1\",HKLM,\"\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("") +
                  "\"\r\n" + kKeyProducts + kProducts},
      {"DRKPR", kHead + kKeys + "[Development Reg Key Products]\n\"Core\",\"4.0\",\"SUITE\"," +
                    "\"" + FlagLetters("") + "\"\r\n\"Core\",\"4.0\",\"SUITE\",\"maybe\"\r\n" +
                    kProducts},
      {"DVPR", kHead + kKeys + kKeyProducts + "[Development Products]\nSUITE,\"Suite\",\"" +
                   FlagLetters("") + "\"\r\n"},
  };
  for (const auto& [code, file] : cases) {
    SCOPED_TRACE(code);
    OpenWith(file);
    const qv::KindApi* api = qv::FindKindApi(code);
    RecordList* list = nullptr;
    EXPECT_FALSE(api->list({}, &list));
    qv::GenericList::Free(list);
    EXPECT_FALSE(host_.errors().empty());
    void* record = qv::NewRecord(*api->schema);
    snprintf(static_cast<char*>(record), 11, "New");  // the first key member leads the row
    EXPECT_FALSE(api->put(record));
    qv::FreeRecord(record);
    std::vector<std::string> key = {"Core", "4.0", "SUITE"};
    key.resize(api->key_names.size());
    EXPECT_FALSE(api->remove(key));
    EXPECT_EQ(Ram(), file);
    CloseMasterProfile();
  }
}

// ---------------------------------------------------------------- the Orvik store

class DevKeyOrvikTest : public DevKeyFamilyTest {
 protected:
  void OpenOrvik(const std::string& extra_sql, bool with_tables = true) {
    std::string db = host_.scratch().Join("shipping.orv");
    std::string sql = qv::OrvikTableDefinition(qv::LoSchema()) + ";";
    if (with_tables) {
      for (const char* code : {"DRK", "DRKPR", "DVPR"}) {
        sql += qv::OrvikTableDefinition(*qv::FindKindApi(code)->schema) + ";";
      }
    }
    qvtest::MakeDatabase(db, sql + extra_sql);
    ASSERT_EQ(qvtest::OpenProfileAt(db, OPEN_ORVIK | OPEN_NO_VCS | OPEN_LOCK), 1);
    host_.Clear();
  }
};

TEST_F(DevKeyOrvikTest, RowsAreInsertedAsGivenAndDeletedByKey) {
  OpenOrvik("");
  DRKRecord* key = NewKey("Core", "4.0");
  ASSERT_EQ(MPPutDRK(key), 1);
  snprintf(key->row.DRKKey2, sizeof key->row.DRKKey2, "4.1");
  ASSERT_EQ(MPPutDRK(key), 1);
  DVPRRecord* product = NewProduct("SUITE", "Suite");
  ASSERT_EQ(MPPutDVPR(product), 1);
  DRKList* list = nullptr;
  ASSERT_EQ(MPGetDRKCompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(list->count, 2u);
  MPFreeDRKList(list);
  ASSERT_EQ(MPDeleteDRK("Core", "4.0"), 1);
  ASSERT_EQ(MPGetDRKCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(list->count, 1u);
  EXPECT_STREQ(static_cast<DRKRecord*>(list->head->record)->row.DRKKey2, "4.1");
  MPFreeDRKList(list);
  DRKRecord* single = nullptr;
  EXPECT_EQ(MPGetDRK("Core", "4.1", &single), 0);  // single records: text store only
  EXPECT_TRUE(host_.errors().empty());
  MPFreeDRK(key);
  MPFreeDVPR(product);
}

TEST_F(DevKeyOrvikTest, QueriesThatCannotBeginNameTheirKinds) {
  OpenOrvik("", false);
  RecordList* list = nullptr;
  EXPECT_EQ(MPGetDRKCompleteList(&list, MODE_READ), 0);
  MPFreeDRKList(list);
  EXPECT_EQ(MPGetDRKPRCompleteList(&list, MODE_READ), 0);
  MPFreeDRKPRList(list);
  EXPECT_EQ(MPGetDVPRCompleteList(&list, MODE_READ), 0);
  MPFreeDVPRList(list);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Cannot begin to Query Orvik Database for DRKs",
                                      "Cannot begin to Query Orvik Database for DRKPRs",
                                      "Cannot begin to Query Orvik Database for DVPRs"}));
}

TEST_F(DevKeyOrvikTest, RefusedInsertsAndDeletesOfNothingShowEachKindsTexts) {
  std::string triggers;
  for (const char* code : {"DRK", "DRKPR", "DVPR"}) {
    triggers += std::string("CREATE TRIGGER refuse_") + code + " BEFORE INSERT ON " + code +
                " BEGIN SELECT RAISE(ABORT, 'no'); END;";
  }
  OpenOrvik(triggers);
  DRKRecord* key = NewKey("Core", "4.0");
  EXPECT_EQ(MPPutDRK(key), 0);
  DRKPRRecord* link = nullptr;
  MPNewDRKPR(&link);
  EXPECT_EQ(MPPutDRKPR(link), 0);
  DVPRRecord* product = NewProduct("SUITE", "Suite");
  EXPECT_EQ(MPPutDVPR(product), 0);
  EXPECT_EQ(MPDeleteDRK("Core", "4.0"), 0);
  EXPECT_EQ(MPDeleteDRKPR("Core", "4.0", "SUITE"), 0);
  EXPECT_EQ(MPDeleteDVPR("SUITE"), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Cannot insert DRK record in Orvik shipping profile",
                                      "Cannot insert DRK record into Orvik shipping profile",
                                      "Cannot insert DRKPR record in Orvik shipping profile",
                                      "Cannot insert DRKPR record into Orvik shipping profile",
                                      "Cannot insert DVPR record in Orvik shipping profile",
                                      "Cannot insert DVPR record into Orvik shipping profile",
                                      "Cannot delete DRK record from Orvik shipping profile",
                                      "Cannot delete DRKPR record from Orvik shipping profile",
                                      "Cannot delete DVPR record from Orvik shipping profile"}));
  MPFreeDRK(key);
  MPFreeDRKPR(link);
  MPFreeDVPR(product);
}

TEST_F(DevKeyOrvikTest, ARowThatCannotBeFetchedFailsTheReadWithTheKindsText) {
  // DVPR as a view over two rows whose second cannot be computed.
  std::string db = host_.scratch().Join("failing.orv");
  qvtest::MakeDatabase(
      db, qv::OrvikTableDefinition(qv::LoSchema()) +
              ";CREATE TABLE rows (ProductCode, ProductName, Flags);"
              "INSERT INTO rows VALUES ('A', 'a', 0), ('B', 'b', 0);"
              "CREATE VIEW DVPR AS SELECT rowid AS rowid, CASE WHEN rowid = 2 THEN "
              "abs(-9223372036854775807 - 1) ELSE ProductCode END AS ProductCode, ProductName, "
              "Flags FROM rows;");
  ASSERT_EQ(qvtest::OpenProfileAt(db, OPEN_ORVIK | OPEN_NO_VCS), 1);
  host_.Clear();
  DVPRList* list = nullptr;
  EXPECT_EQ(MPGetDVPRCompleteList(&list, MODE_READ), 0);
  MPFreeDVPRList(list);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Cannot get DVPR out of Orvik profile."});
}

}  // namespace
