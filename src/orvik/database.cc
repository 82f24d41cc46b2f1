#include "orvik/database.h"

#include <sqlite3.h>

#include <string>

#include "platform/fs.h"

namespace qv {
namespace {
sqlite3* g_connection = nullptr;
}

sqlite3* OrvikOpenDatabase(const char* path) {
  std::string resolved = ResolvePath(path);
  if (!FileExists(resolved)) return nullptr;
  sqlite3* connection = nullptr;
  if (sqlite3_open_v2(resolved.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    sqlite3_close(connection);
    return nullptr;
  }
  // A file that is no SQLite database opens lazily; ask it something now so
  // that it is refused here rather than at the first query.
  if (sqlite3_exec(connection, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr) !=
      SQLITE_OK) {
    sqlite3_close(connection);
    return nullptr;
  }
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
