#include "orvik/transaction.h"

#include <sqlite3.h>

#include "orvik/database.h"

namespace qv {
namespace {

int g_depth = 0;
bool g_refused = false;

bool Exec(const char* sql) {
  sqlite3* db = OrvikConnection();
  return db != nullptr && sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace

OrvikTransaction::OrvikTransaction() {
  if (OrvikConnection() == nullptr) return;
  joined_ = true;
  if (g_depth++ > 0) return;
  outermost_ = true;
  // IMMEDIATE takes the write lock now, so two writers never both read a
  // state that only one of them can then change.
  g_refused = !Exec("BEGIN IMMEDIATE");
}

OrvikTransaction::~OrvikTransaction() {
  if (!finished_) Finish(0);
}

int OrvikTransaction::Finish(int result) {
  if (finished_) return result;
  finished_ = true;
  if (!joined_) return result;  // no database was current
  --g_depth;
  if (!outermost_) return result;
  bool refused = g_refused;
  g_refused = false;
  if (refused) return 0;
  if (result == 1 && Exec("COMMIT")) return 1;
  Exec("ROLLBACK");
  return result == 1 ? 0 : result;
}

bool OrvikWritesAllowed() {
  return !g_refused;
}

}  // namespace qv
