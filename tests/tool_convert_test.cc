// quorvex init --orvik and quorvex convert: the example profile goes into a
// database and back with every record of every kind as it was.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <map>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "records/record_members.h"
#include "support/profiles.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"

namespace {

using qvtest::RunTool;
using Records = std::vector<std::string>;

class ToolConvertTest : public ::testing::Test {
 protected:
  std::string Scratch(const std::string& name) { return host_.scratch().Join(name); }
  qvtest::ScriptedHost host_;
};

// A record as text: every member but the line it was read from.
std::string Text(const qv::KindSchema& schema, const void* record) {
  std::string text;
  for (const qv::MemberSpec& m : schema.members) {
    if (!m.in_row && m.offset == schema.line_number_offset) continue;
    if (std::string(m.name) == "rowReference") continue;
    text += std::string(m.name) + "=" + qv::MemberText(m, record) + ";";
  }
  return text;
}

Records ListOf(const qv::KindApi& api, const qv::Texts& owner, bool* listed) {
  RecordList* list = nullptr;
  Records records;
  *listed = api.list(owner, &list);
  if (*listed) {
    qv::GenericList::ForEach(list, [&](void* r) { records.push_back(Text(*api.schema, r)); });
  }
  qv::GenericList::Free(list);
  return records;
}

// The owners to ask each kind about: every module, product, install and
// group of the profile, and the languages of the example.
std::map<std::string, std::vector<qv::Texts>> Owners() {
  std::map<std::string, std::vector<qv::Texts>> owners;
  for (const auto& entry : std::map<std::string, std::string>{
           {"module", "MO"}, {"product", "PR"}, {"install", "DR"}, {"group", "MG"}}) {
    const std::string& owner = entry.first;
    const std::string& code = entry.second;
    const qv::KindApi* api = qv::FindKindApi(code);
    RecordList* list = nullptr;
    EXPECT_TRUE(api->list({}, &list)) << code;
    qv::GenericList::ForEach(list, [&](void* r) {
      qv::Texts key;
      for (const char* name : api->key_names) {
        key.push_back(qv::MemberText(*qv::MemberForName(*api->schema, name), r));
      }
      owners[owner].push_back(key);
    });
    qv::GenericList::Free(list);
  }
  owners["language"] = {{"EN"}, {"DE"}, {"US"}, {"FR"}};
  return owners;
}

// Every record the profile at path holds, kind by kind and owner by owner
// ("" for an owner whose file is missing).
std::map<std::string, Records> AllRecords(const std::string& path) {
  std::map<std::string, Records> all;
  EXPECT_EQ(qvtest::OpenProfileAt(path, OPEN_MASTER | OPEN_NO_VCS | OPEN_SILENT), 1) << path;
  auto owners = Owners();
  for (const qv::KindApi* api : qv::AllKindApis()) {
    if (api->schema->kind->section[0] == '\0') continue;  // rows of the database only
    std::vector<qv::Texts> asked = {{}};
    if (!api->owner_names.empty()) asked = owners[api->owner_names[0]];
    for (qv::Texts owner : asked) {
      owner.resize(api->owner_names.size());
      bool listed = false;
      Records records = ListOf(*api, owner, &listed);
      std::string key = std::string(api->schema->kind->code) + " of";
      for (const std::string& part : owner) key += " " + part;
      if (listed) all[key] = records;
    }
  }
  CloseMasterProfile();
  return all;
}

TEST_F(ToolConvertTest, InitOrvikMakesAnEmptyDatabaseThatOpens) {
  std::string db = Scratch("new.orv");
  auto made = RunTool({"init", "--orvik", db});
  ASSERT_EQ(made.status, 0) << made.err;
  EXPECT_EQ(made.out, "Created an empty Orvik profile in " + db + "\n");
  auto listed = RunTool({"--orvik", "-p", db, "list", "AD"});
  EXPECT_EQ(listed.status, 0) << listed.err;
  auto again = RunTool({"init", "--orvik", db});
  EXPECT_EQ(again.status, 1);
  EXPECT_EQ(again.err, "quorvex: " + db + " already exists: nothing was changed\n");
}

TEST_F(ToolConvertTest, AnSqliteFileThatIsNotAnOrvikProfileIsExplained) {
  std::string db = Scratch("other.db");
  qvtest::MakeDatabase(db, "CREATE TABLE t (x)");
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(db.c_str(), &handle), SQLITE_OK);
  sqlite3_exec(handle, "PRAGMA user_version = 0", nullptr, nullptr, nullptr);
  sqlite3_close(handle);
  auto listed = RunTool({"--orvik", "-p", db, "list", "AD"});
  EXPECT_EQ(listed.status, 1);
  EXPECT_NE(listed.err.find("cannot open " + db + ": an SQLite database, but not an Orvik profile"),
            std::string::npos)
      << listed.err;
}

TEST_F(ToolConvertTest, TheExampleGoesIntoADatabaseAndBackWithEveryRecord) {
  std::string example = std::string(QUORVEX_SOURCE_DIR) + "/examples/profile";
  std::string db = Scratch("example.orv");
  std::string back = Scratch("back");
  auto there = RunTool({"convert", example, db});
  ASSERT_EQ(there.status, 0) << there.out << there.err;
  // What the database cannot hold is named, kind by kind.
  EXPECT_NE(there.out.find("SLA: 3 records kept aside (the database does not read this kind back)"),
            std::string::npos)
      << there.out;
  EXPECT_NE(there.out.find("AD: 1 records kept aside (inactive records)"), std::string::npos)
      << there.out;
  // The database is a profile of its own: its rows list through the engine.
  auto ads = RunTool({"--orvik", "-p", db, "--json", "list", "AD"});
  ASSERT_EQ(ads.status, 0) << ads.err;
  EXPECT_NE(ads.out.find("ADSUITE.BMP"), std::string::npos);
  EXPECT_EQ(ads.out.find("ADUPGR.BMP"), std::string::npos) << "inactive records stay aside";

  auto home = RunTool({"convert", db, back});
  ASSERT_EQ(home.status, 0) << home.out << home.err;
  auto check = RunTool({"-p", back, "check"});
  EXPECT_EQ(check.status, 0) << check.out << check.err;
  EXPECT_EQ(check.out, "");

  std::map<std::string, Records> original = AllRecords(example);
  std::map<std::string, Records> returned = AllRecords(back);
  ASSERT_GT(original.size(), 30u);
  for (const auto& [kind, records] : original) {
    auto found = returned.find(kind);
    ASSERT_NE(found, returned.end()) << kind;
    EXPECT_EQ(found->second, records) << kind;
  }
  EXPECT_EQ(returned.size(), original.size());
}

TEST_F(ToolConvertTest, ConvertNeverWritesOverAnExistingTarget) {
  std::string example = std::string(QUORVEX_SOURCE_DIR) + "/examples/profile";
  host_.scratch().Write("taken.orv", "mine");
  auto result = RunTool({"convert", example, Scratch("taken.orv")});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(host_.scratch().Read("taken.orv"), "mine");
}

TEST_F(ToolConvertTest, ASourceThatDoesNotReadWholeMakesNoTarget) {
  std::string source = Scratch("MP");
  ASSERT_EQ(QvInitMasterProfile(source.c_str()), 1);
  host_.scratch().Write("MP/ADS/adlist.ad",
                        "\n[SourceSafe]\n$Header$\n\n[Ads]\n1,0,0,\"a\",\"b\",Y,N,N,broken\n");
  auto result = RunTool({"convert", source, Scratch("out.orv")});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("nothing was written"), std::string::npos) << result.err;
  EXPECT_FALSE(qvtest::PathExists(Scratch("out.orv")));
}

}  // namespace
