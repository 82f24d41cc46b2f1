// A new, empty Orvik profile: a SQLite database with a table for every kind
// the database holds, marked as ours so that opening accepts it.
#include <sqlite3.h>

#include <string>

#include "orvik/database.h"
#include "platform/fs.h"
#include "quorvex/profile.h"
#include "records/kind_api.h"
#include "records/orvik_rows.h"

namespace qv {
namespace {

bool Exec(sqlite3* db, const std::string& sql) {
  return sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool MakeTables(sqlite3* db) {
  std::string sql = "BEGIN;";
  for (const KindApi* api : AllKindApis()) {
    const KindInfo& kind = *api->schema->kind;
    if (kind.orvik_read || kind.orvik_insert || kind.orvik_delete) {
      sql += OrvikTableDefinition(*api->schema) + ";";
    }
  }
  sql += std::string(kOrvikAsideDefinition) + ";";
  sql += "PRAGMA user_version = " + std::to_string(kOrvikUserVersion) + ";COMMIT;";
  return Exec(db, sql) && Exec(db, "PRAGMA journal_mode=WAL");
}

}  // namespace
}  // namespace qv

extern "C" int QvInitOrvikProfile(const char* path) {
  std::string resolved = qv::ResolvePath(path);
  // Never over an existing file: it may be someone's database.
  if (qv::FileExists(resolved)) return 0;
  sqlite3* db = nullptr;
  bool made = sqlite3_open_v2(resolved.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                              nullptr) == SQLITE_OK &&
              qv::MakeTables(db);
  sqlite3_close(db);
  if (!made) {
    // Half a database would be refused at open anyway; leave nothing.
    qv::DeleteFile(resolved);
    for (const char* suffix : {"-wal", "-shm", "-journal"}) qv::DeleteFile(resolved + suffix);
  }
  return made ? 1 : 0;
}
