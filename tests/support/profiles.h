// Opening profiles and making Orvik databases in tests.
#ifndef QUORVEX_TESTS_SUPPORT_PROFILES_H_
#define QUORVEX_TESTS_SUPPORT_PROFILES_H_

#include <cstdint>
#include <string>

namespace qvtest {

// OpenMasterProfile on a copy of path and flags; the engine's result.
int OpenProfileAt(const std::string& path, uint32_t flags, const std::string& log = "");

// A new SQLite file at path holding what sql makes; adds a test failure
// (naming the statement) when anything does not run.
void MakeDatabase(const std::string& path, const std::string& sql);
// The first column of the first row the query gives on the database file at
// path, read beside the engine; -1 when the query gives none.
int64_t DatabaseNumber(const std::string& path, const std::string& sql);

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_PROFILES_H_
