// The Orvik shipping-profile database: a SQLite file with one table per
// record kind, opened read-write and never created by opening.
#ifndef QUORVEX_ORVIK_DATABASE_H_
#define QUORVEX_ORVIK_DATABASE_H_

#include <cstdint>

struct sqlite3;

namespace qv {

// What `PRAGMA user_version` holds in a database made for this engine. Any
// other value (0 in every SQLite file nobody marked) is not ours, so a
// stray database is refused at open instead of failing query by query.
constexpr int32_t kOrvikUserVersion = 0x51560001;

// Opens the database file at path; nullptr when it does not exist, is no
// database or is not ours. The database runs in WAL mode, so readers in
// other processes see the last committed state while a write is under way.
// Opening does not make it current: the open profile it replaces is
// closed first (OrvikCloseDatabase), then OrvikMakeCurrent.
sqlite3* OrvikOpenDatabase(const char* path);
void OrvikMakeCurrent(sqlite3* connection);
// Closes the current database, if any.
void OrvikCloseDatabase();
// The current connection, or nullptr.
sqlite3* OrvikConnection();

}  // namespace qv

#endif  // QUORVEX_ORVIK_DATABASE_H_
