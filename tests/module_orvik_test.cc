// Modules in a database profile: deleting one deletes the rows the module
// owns (held apart from it there) and the rows of other kinds that name it.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/kind_api.h"
#include "records/orvik_rows.h"
#include "support/profiles.h"
#include "support/scripted_host.h"

namespace {

// The kinds whose rows carry the module's name and version, and the members
// that hold them.
struct ModuleColumns {
  const char* code;
  const char* name;
  const char* version;
};
constexpr ModuleColumns kOwnRows[] = {
    {"CF", "ModuleName", "ModuleVersion"},  {"FG", "ModuleName", "ModuleVersion"},
    {"ML", "ModuleName", "ModuleVersion"},  {"SF", "ModuleName", "ModuleVersion"},
    {"MLA", "ModuleName", "ModuleVersion"}, {"II", "ModuleName", "ModuleVersion"},
    {"IIL", "ModuleName", "ModuleVersion"}, {"DM", "ModuleName", "ModuleVersion"},
    {"FGA", "ModuleName", "ModuleVersion"},
};
constexpr ModuleColumns kReferringRows[] = {
    {"AMLA", "ModuleName", "ModuleVersion"},
    {"FGD", "ReqModuleName", "ReqModuleVersion"},
    {"PM", "ModuleName", "ModuleVersion"},
    {"MDEP", "ReqModuleName", "ReqModuleVersion"},
};

class ModuleOrvikTest : public ::testing::Test {
 protected:
  ModuleOrvikTest() : db_(host_.scratch().Join("shipping.orv")) {}

  // A database with the location tables an open reads, a table for the
  // modules and each kind above, every one holding a row of "Core" 1.0 and
  // one of "Other" 1.0.
  int OpenOrvik() {
    std::string sql = Table("LO") + Table("IL") + Table("MO") +
                      "INSERT INTO MO (Name, Version) VALUES ('Core', '1.0');" +
                      "INSERT INTO MO (Name, Version) VALUES ('Other', '1.0');";
    for (const auto& kinds :
         {std::vector<ModuleColumns>(std::begin(kOwnRows), std::end(kOwnRows)),
          std::vector<ModuleColumns>(std::begin(kReferringRows), std::end(kReferringRows))}) {
      for (const ModuleColumns& k : kinds) {
        sql += Table(k.code);
        for (const char* module : {"Core", "Other"}) {
          sql += std::string("INSERT INTO ") + k.code + " (" + k.name + ", " + k.version +
                 ") VALUES ('" + module + "', '1.0');";
        }
      }
    }
    qvtest::MakeDatabase(db_, "BEGIN;" + sql + "COMMIT;");
    int opened = qvtest::OpenProfileAt(db_, OPEN_ORVIK | OPEN_NO_VCS | OPEN_LOCK);
    host_.Clear();
    return opened;
  }
  static std::string Table(const char* code) {
    const qv::KindApi* api = qv::FindKindApi(code);
    EXPECT_NE(api, nullptr) << code;
    return api == nullptr ? "" : qv::OrvikTableDefinition(*api->schema) + ";";
  }
  // The rows of the table whose module columns name the module.
  int Rows(const ModuleColumns& k, const char* module) {
    sqlite3* db = nullptr;
    EXPECT_EQ(sqlite3_open_v2(db_.c_str(), &db, SQLITE_OPEN_READONLY, nullptr), SQLITE_OK);
    std::string sql = std::string("SELECT COUNT(*) FROM ") + k.code + " WHERE " + k.name + " = '" +
                      module + "' AND " + k.version + " = '1.0'";
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr), SQLITE_OK) << sql;
    int count = -1;
    if (statement != nullptr && sqlite3_step(statement) == SQLITE_ROW) {
      count = sqlite3_column_int(statement, 0);
    }
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return count;
  }

  qvtest::ScriptedHost host_;
  std::string db_;
};

TEST_F(ModuleOrvikTest, DeletingAModuleDeletesItsOwnRowsAndTheRowsThatNameIt) {
  ASSERT_EQ(OpenOrvik(), 1);
  EXPECT_EQ(MPDeleteMO("Core", "1.0"), 1);
  for (const ModuleColumns& k : kOwnRows) {
    EXPECT_EQ(Rows(k, "Core"), 0) << k.code;
    EXPECT_EQ(Rows(k, "Other"), 1) << k.code;
  }
  EXPECT_EQ(Rows({"MO", "Name", "Version"}, "Core"), 0);
  EXPECT_EQ(Rows({"MO", "Name", "Version"}, "Other"), 1);
  for (const ModuleColumns& k : kReferringRows) {
    EXPECT_EQ(Rows(k, "Other"), 1) << k.code;
  }
  EXPECT_EQ(Rows(kReferringRows[0], "Core"), 0);  // AMLA
  EXPECT_EQ(Rows(kReferringRows[1], "Core"), 0);  // FGD
  EXPECT_EQ(Rows(kReferringRows[2], "Core"), 0);  // PM
  // The database does not delete required modules: the row stays, and the
  // failure is told though the module's delete goes on.
  EXPECT_EQ(Rows(kReferringRows[3], "Core"), 1);  // MDEP
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"(not tarrowby supported)."});
}

TEST_F(ModuleOrvikTest, RequiredModulesAreNotDeletedFromTheDatabase) {
  ASSERT_EQ(OpenOrvik(), 1);
  EXPECT_EQ(MPDeleteMDEP("Other", "1.0", "Core", "1.0"), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"(not tarrowby supported)."});
  EXPECT_EQ(Rows(kReferringRows[3], "Core"), 1);
}

TEST_F(ModuleOrvikTest, DeleteReferencesWithAnotherMaskLeavesEveryRow) {
  ASSERT_EQ(OpenOrvik(), 1);
  EXPECT_EQ(MPDeleteMOReferences("Core", "1.0", 0x20000000u, 0, 0), 1);
  for (const ModuleColumns& k : kOwnRows) EXPECT_EQ(Rows(k, "Core"), 1) << k.code;
  for (const ModuleColumns& k : kReferringRows) EXPECT_EQ(Rows(k, "Core"), 1) << k.code;
  EXPECT_TRUE(host_.errors().empty());
}

}  // namespace
