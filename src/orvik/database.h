// The Orvik shipping-profile database: a SQLite file with one table per
// record kind, opened read-write and never created by opening.
#ifndef QUORVEX_ORVIK_DATABASE_H_
#define QUORVEX_ORVIK_DATABASE_H_

#include <cstdint>

struct sqlite3;

namespace qv {

// Opens the database file at path; nullptr when it does not exist or is no
// database. Opening does not make it current: the open profile it replaces
// is closed first (OrvikCloseDatabase), then OrvikMakeCurrent.
sqlite3* OrvikOpenDatabase(const char* path);
void OrvikMakeCurrent(sqlite3* connection);
// Closes the current database, if any.
void OrvikCloseDatabase();
// The current connection, or nullptr.
sqlite3* OrvikConnection();

}  // namespace qv

#endif  // QUORVEX_ORVIK_DATABASE_H_
