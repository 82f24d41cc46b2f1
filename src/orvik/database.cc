#include "orvik/database.h"

#include <sqlite3.h>

#include <string>

#include "platform/fs.h"

namespace qv {
namespace {

sqlite3* g_connection = nullptr;

// How long a statement waits for another process's write to end before it
// gives up; writers hold the database only for one operation.
constexpr int kBusyMilliseconds = 5000;

bool IsOurs(sqlite3* connection) {
  sqlite3_stmt* statement = nullptr;
  bool ours = false;
  // A file that is no SQLite database opens lazily; this first question is
  // where it is refused.
  if (sqlite3_prepare_v2(connection, "PRAGMA user_version", -1, &statement, nullptr) == SQLITE_OK &&
      sqlite3_step(statement) == SQLITE_ROW) {
    ours = sqlite3_column_int(statement, 0) == kOrvikUserVersion;
  }
  sqlite3_finalize(statement);
  return ours;
}

}  // namespace

sqlite3* OrvikOpenDatabase(const char* path) {
  std::string resolved = ResolvePath(path);
  if (!FileExists(resolved)) return nullptr;
  sqlite3* connection = nullptr;
  if (sqlite3_open_v2(resolved.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK ||
      !IsOurs(connection)) {
    sqlite3_close(connection);
    return nullptr;
  }
  sqlite3_busy_timeout(connection, kBusyMilliseconds);
  // WAL keeps a killed writer's half-done transaction out of the database
  // file itself; the next open rolls it away.
  sqlite3_exec(connection, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
  return connection;
}

void OrvikMakeCurrent(sqlite3* connection) {
  OrvikCloseDatabase();
  g_connection = connection;
}

void OrvikCloseDatabase() {
  if (g_connection != nullptr) sqlite3_close(g_connection);
  g_connection = nullptr;
}

sqlite3* OrvikConnection() {
  return g_connection;
}

}  // namespace qv
