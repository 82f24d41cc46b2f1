// The Orvik store itself: a new database from QvInitOrvikProfile, what
// opening refuses, WAL mode, the lock beside the file, and every write that
// changes several rows landing whole or not at all.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "orvik/database.h"
#include "quorvex/quorvex.h"
#include "records/kind_api.h"
#include "support/child_mode.h"
#include "support/profile_holder.h"
#include "support/profiles.h"
#include "support/scripted_host.h"

namespace {

constexpr int kKilledListRows = 400;
constexpr int kKillRounds = 100;

// Child DB MICROSECONDS: opens the database locked and puts complete lists
// of kKilledListRows products over and over, until it is killed at the
// given time after its start (counted from before the open, so that some
// kills land in it). 3: the open failed; 4: a put failed.
int WriteUntilKilled(const std::vector<std::string>& args) {
  std::chrono::microseconds delay(std::stol(args.at(1)));
  std::thread([delay] {
    std::this_thread::sleep_for(delay);
    qvtest::EndAsIfKilled();
  }).detach();
  if (qvtest::OpenProfileAt(args.at(0), OPEN_ORVIK | OPEN_NO_VCS | OPEN_LOCK | OPEN_SILENT) != 1) {
    return 3;
  }
  for (;;) {
    DVPRList* list = nullptr;
    MPNewDVPRList(&list);
    for (int i = 0; i < kKilledListRows; ++i) {
      DVPRRecord* record = nullptr;
      MPNewDVPR(&record);
      snprintf(record->row.ProductCode, sizeof record->row.ProductCode, "P%d", i);
      MPAppendDVPR(list, record);
    }
    if (MPPutDVPRCompleteList(list) != 1) return 4;
    MPFreeDVPRList(list);
  }
}
const qvtest::ChildMode kWriteUntilKilled("orvik-writer", WriteUntilKilled);

class OrvikStoreTest : public ::testing::Test {
 protected:
  OrvikStoreTest() : db_(host_.scratch().Join("shipping.orv")) {}

  int Open(uint32_t extra = OPEN_LOCK) {
    return qvtest::OpenProfileAt(db_, OPEN_ORVIK | OPEN_NO_VCS | extra);
  }
  // One number from the database file, read beside the engine.
  int64_t Number(const std::string& sql) { return qvtest::DatabaseNumber(db_, sql); }
  static DVPRList* Products(std::initializer_list<const char*> codes) {
    DVPRList* list = nullptr;
    EXPECT_EQ(MPNewDVPRList(&list), 1);
    for (const char* code : codes) {
      DVPRRecord* record = nullptr;
      EXPECT_EQ(MPNewDVPR(&record), 1);
      snprintf(record->row.ProductCode, sizeof record->row.ProductCode, "%s", code);
      snprintf(record->row.ProductName, sizeof record->row.ProductName, "Product %s", code);
      EXPECT_EQ(MPAppendDVPR(list, record), 1);
    }
    return list;
  }

  qvtest::ScriptedHost host_;
  std::string db_;
};

TEST_F(OrvikStoreTest, ANewProfileHasATableForEveryKindTheDatabaseHoldsAndOpens) {
  ASSERT_EQ(QvInitOrvikProfile(db_.c_str()), 1);
  EXPECT_EQ(Number("PRAGMA user_version"), qv::kOrvikUserVersion);
  for (const qv::KindApi* api : qv::AllKindApis()) {
    std::string sql = std::string(
                          "SELECT COUNT(*) FROM sqlite_master WHERE type = 'table' AND "
                          "name = '") +
                      api->schema->kind->code + "'";
    const qv::KindInfo& kind = *api->schema->kind;
    EXPECT_EQ(Number(sql), kind.orvik_read || kind.orvik_insert || kind.orvik_delete ? 1 : 0)
        << kind.code;
  }
  ASSERT_EQ(Open(), 1) << host_.errors().size();
  DVPRList* list = nullptr;
  ASSERT_EQ(MPGetDVPRCompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(list->count, 0u);
  MPFreeDVPRList(list);
  EXPECT_EQ(CloseMasterProfile(), 1);
}

TEST_F(OrvikStoreTest, ANewProfileIsNeverMadeOverAnExistingFile) {
  host_.scratch().Write("shipping.orv", "someone's data");
  EXPECT_EQ(QvInitOrvikProfile(db_.c_str()), 0);
  EXPECT_EQ(host_.scratch().Read("shipping.orv"), "someone's data");
}

TEST_F(OrvikStoreTest, OpeningRefusesADatabaseThatIsNotOurs) {
  sqlite3* db = nullptr;
  ASSERT_EQ(sqlite3_open(db_.c_str(), &db), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(db, "CREATE TABLE LO (Name TEXT)", nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(db);
  EXPECT_EQ(Open(OPEN_SILENT), 0);
  EXPECT_STREQ(QvOpenProfilePath(), "");
}

TEST_F(OrvikStoreTest, OpeningRefusesAFileThatIsNoDatabase) {
  host_.scratch().Write("shipping.orv", "not a database at all\n");
  EXPECT_EQ(Open(OPEN_SILENT), 0);
  EXPECT_EQ(host_.scratch().Read("shipping.orv"), "not a database at all\n");
}

TEST_F(OrvikStoreTest, TheDatabaseRunsInWalMode) {
  ASSERT_EQ(QvInitOrvikProfile(db_.c_str()), 1);
  ASSERT_EQ(Open(), 1);
  sqlite3_stmt* statement = nullptr;
  ASSERT_EQ(
      sqlite3_prepare_v2(qv::OrvikConnection(), "PRAGMA journal_mode", -1, &statement, nullptr),
      SQLITE_OK);
  ASSERT_EQ(sqlite3_step(statement), SQLITE_ROW);
  EXPECT_STREQ(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)), "wal");
  sqlite3_finalize(statement);
  CloseMasterProfile();
}

TEST_F(OrvikStoreTest, ASecondProcessCannotLockTheProfileWhileOneHoldsIt) {
  ASSERT_EQ(QvInitOrvikProfile(db_.c_str()), 1);
  qvtest::ProfileHolder holder(db_, OPEN_ORVIK | OPEN_NO_VCS | OPEN_LOCK);
  ASSERT_TRUE(holder.opened()) << holder.err();
  EXPECT_EQ(Open(), 0);
  ASSERT_FALSE(host_.errors().empty());
  EXPECT_EQ(host_.errors().back(), "Cannot open Lockfile " + db_ + ".LOK.");
  // Reading without the lock goes on beside the holder.
  EXPECT_EQ(Open(0), 1);
  CloseMasterProfile();
  holder.Kill();
  // The holder is gone without closing anything: its lock went with it.
  EXPECT_EQ(Open(), 1);
  CloseMasterProfile();
}

TEST_F(OrvikStoreTest, ACompleteListPutThatFailsPartWayLeavesNoneOfItsRows) {
  ASSERT_EQ(QvInitOrvikProfile(db_.c_str()), 1);
  qvtest::MakeDatabase(db_, "CREATE UNIQUE INDEX one_code ON DVPR (ProductCode)");
  ASSERT_EQ(Open(), 1);
  DVPRList* list = Products({"A", "B", "A"});
  EXPECT_EQ(MPPutDVPRCompleteList(list), 0);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM DVPR"), 0);
  MPFreeDVPRList(list);
  list = Products({"A", "B", "C"});
  EXPECT_EQ(MPPutDVPRCompleteList(list), 1);
  EXPECT_EQ(Number("SELECT COUNT(*) FROM DVPR"), 3);
  MPFreeDVPRList(list);
  CloseMasterProfile();
}

TEST_F(OrvikStoreTest, ACompleteListPutKilledAtRandomLeavesAllOrNoneOfItsRows) {
  ASSERT_EQ(QvInitOrvikProfile(db_.c_str()), 1);
  srand(20261123);
  int killed_during = 0;
  for (int round = 0; round < kKillRounds; ++round) {
    std::string delay = std::to_string(2000 + rand() % 30000);
    int status = qvtest::RunChild("orvik-writer", {db_, delay});
    ASSERT_EQ(status, 137) << "round " << round << ": the writer stopped by itself";
    int64_t rows = Number("SELECT COUNT(*) FROM DVPR");
    ASSERT_EQ(rows % kKilledListRows, 0) << "round " << round << ": " << rows << " rows";
    // The next locked open succeeds after every kill.
    ASSERT_EQ(Open(), 1) << "round " << round;
    CloseMasterProfile();
    ++killed_during;
  }
  EXPECT_EQ(killed_during, kKillRounds);
}

}  // namespace
