#include "support/profiles.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdio>
#include <string>

#include "orvik/database.h"
#include "quorvex/profile.h"

namespace qvtest {

int OpenProfileAt(const std::string& path, uint32_t flags, const std::string& log) {
  char in_out[QV_PATH_SIZE];
  snprintf(in_out, sizeof in_out, "%s", path.c_str());
  return OpenMasterProfile(in_out, &flags, log.c_str());
}

void MakeDatabase(const std::string& path, const std::string& sql) {
  sqlite3* db = nullptr;
  EXPECT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK) << path;
  EXPECT_EQ(sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sql;
  // Marked as the engine marks its own databases, which it alone opens.
  std::string mark = "PRAGMA user_version = " + std::to_string(qv::kOrvikUserVersion);
  EXPECT_EQ(sqlite3_exec(db, mark.c_str(), nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(db);
}

int64_t DatabaseNumber(const std::string& path, const std::string& sql) {
  sqlite3* db = nullptr;
  EXPECT_EQ(sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK) << path;
  sqlite3_stmt* statement = nullptr;
  int64_t value = -1;
  if (sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) == SQLITE_OK &&
      sqlite3_step(statement) == SQLITE_ROW) {
    value = sqlite3_column_int64(statement, 0);
  }
  sqlite3_finalize(statement);
  sqlite3_close(db);
  return value;
}

}  // namespace qvtest
