#include "profile_convert.h"

#include <sqlite3.h>
#include <strings.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>

#include "core/report_capture.h"
#include "orvik/database.h"
#include "orvik/transaction.h"
#include "platform/names.h"
#include "profile/profile_files.h"
#include "quorvex/quorvex.h"
#include "record_json.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "records/orvik_rows.h"
#include "records/record_codec.h"
#include "records/record_members.h"

namespace qvtool {
namespace {

using Json = nlohmann::ordered_json;

// The records of one kind that one owner (a module, a language, ...) holds,
// in their order.
struct OwnerRecords {
  const qv::KindApi* api;
  qv::Texts owner;
  std::vector<void*> records;
};

struct Profile {
  std::vector<OwnerRecords> lists;
  ~Profile() {
    for (OwnerRecords& list : lists) {
      for (void* record : list.records) qv::FreeRecord(record);
    }
  }
};

// Version control stays off: a conversion makes files, it does not check
// them in.
bool OpenAt(const std::string& path, uint32_t flags) {
  char in_out[QV_PATH_SIZE];
  snprintf(in_out, sizeof in_out, "%s", path.c_str());
  uint32_t all = flags | OPEN_NO_VCS;
  return OpenMasterProfile(in_out, &all, "") == 1;
}

// Takes the records out of a list the engine made and frees the list.
std::vector<void*> TakeRecords(RecordList* list) {
  std::vector<void*> records;
  if (list == nullptr) return records;
  for (RecordNode* node = list->head; node != nullptr;
       node = node == list->tail ? nullptr : node->next) {
    records.push_back(node->record);
    node->record = nullptr;
  }
  qv::GenericList::Free(list);
  return records;
}

bool IsLineNumber(const qv::KindSchema& schema, const qv::MemberSpec& m) {
  return (!m.in_row && m.offset == schema.line_number_offset) ||
         strcmp(m.name, "rowReference") == 0;
}

// What a record holds, without where it sat in its file.
Json Content(const qv::KindSchema& schema, const void* record) {
  Json object = RecordToJson(schema, record);
  for (const qv::MemberSpec& m : schema.members) {
    if (IsLineNumber(schema, m)) object.erase(m.name);
  }
  // The flag word says it all; its labels cover only the bits with names.
  object.erase("flagNames");
  return object;
}

// The database row of a record as one text, to find a row's text-store
// members again.
std::string RowText(const qv::KindSchema& schema, const void* record) {
  std::string text;
  for (const qv::MemberSpec& m : schema.members) {
    if (m.in_row) text += qv::MemberText(m, record) + '\x1f';
  }
  return text;
}

// The record as the database gives it back: its row alone.
void* RowOnly(const qv::KindSchema& schema, const void* record) {
  void* row = qv::NewRecord(schema);
  if (row == nullptr) return nullptr;
  for (const qv::MemberSpec& m : schema.members) {
    if (m.in_row) {
      memcpy(static_cast<char*>(row) + m.offset, static_cast<const char*>(record) + m.offset,
             m.size);
    }
  }
  return row;
}

// The owner a row names. The owner's members lead the row, so an owner
// name that names no member ("version" of a settings entry, whose member is
// ModuleKey2) stands for the member at its place.
qv::Texts OwnerTexts(const qv::KindApi& api, const void* record) {
  qv::Texts owner;
  for (size_t i = 0; i < api.owner_names.size(); ++i) {
    const qv::MemberSpec* m = qv::MemberForName(*api.schema, api.owner_names[i]);
    if (m == nullptr && i < api.schema->members.size()) m = &api.schema->members[i];
    owner.push_back(m != nullptr ? qv::MemberText(*m, record) : "");
  }
  return owner;
}

std::string OwnerJson(const qv::Texts& owner) {
  return Json(owner).dump();
}

// ---- Reading a Master Profile ---------------------------------------------

// The language of a per-language file: what its name has where the
// catalogue's pattern has "*".
std::vector<qv::Texts> LanguagesWithFiles(const char* file_kind) {
  const char* dir = QvOpenProfilePath();
  std::vector<std::string> patterns;
  for (const std::string& p : qv::ProfileFilePatterns(dir)) {
    std::string base = p.substr(p.find_last_of("/\\") + 1);
    if (base.find('*') != std::string::npos) patterns.push_back(base);
  }
  std::vector<qv::Texts> languages;
  for (const qv::ProfileFileFound& file : qv::ListProfileFiles(dir)) {
    if (strcasecmp(file.kind, file_kind) != 0) continue;
    std::string base = file.path.substr(file.path.find_last_of("/\\") + 1);
    for (const std::string& p : patterns) {
      // The name holds at least the pattern's fixed characters.
      if (base.size() + 1 < p.size() || !qv::PatternMatches(p, base)) continue;
      size_t star = p.find('*');
      size_t tail = p.size() - star - 1;
      languages.push_back({base.substr(star, base.size() - star - tail)});
      break;
    }
  }
  return languages;
}

const char* OwnerKindOf(const std::string& owner_name) {
  if (owner_name == "module") return "MO";
  if (owner_name == "product") return "PR";
  if (owner_name == "group") return "MG";
  if (owner_name == "install") return "DR";
  return nullptr;
}

bool MasterOwners(const qv::KindApi& api, std::vector<qv::Texts>* owners, std::string* error) {
  owners->clear();
  if (api.owner_names.empty()) {
    owners->push_back({});
    return true;
  }
  std::string first = api.owner_names[0];
  if (first == "language") {
    *owners = LanguagesWithFiles(api.schema->kind->file_kind);
    return true;
  }
  const char* code = OwnerKindOf(first);
  const qv::KindApi* owner_api = code != nullptr ? qv::FindKindApi(code) : nullptr;
  if (owner_api == nullptr) {
    *error = std::string("no owner kind for ") + api.schema->kind->code;
    return false;
  }
  RecordList* list = nullptr;
  if (!owner_api->list({}, &list)) {
    qv::GenericList::Free(list);
    *error = std::string("cannot list ") + code + " records";
    return false;
  }
  for (void* record : TakeRecords(list)) {
    qv::Texts owner;
    for (size_t i = 0; i < api.owner_names.size() && i < owner_api->key_names.size(); ++i) {
      const qv::MemberSpec* m = qv::MemberForName(*owner_api->schema, owner_api->key_names[i]);
      owner.push_back(m != nullptr ? qv::MemberText(*m, record) : "");
    }
    while (owner.size() < api.owner_names.size()) owner.push_back("");
    owners->push_back(owner);
    qv::FreeRecord(record);
  }
  return true;
}

// Whether the file that holds the owner's records of the kind is there.
bool OwnerFileExists(const qv::KindApi& api, const qv::Texts& owner) {
  if (owner.empty()) return true;
  char path[QV_PATH_SIZE] = "";
  QvFile file;
  {
    qv::ReportCapture quiet(/*quiet=*/true);
    file = OpenProfileFile(QvOpenProfilePath(), owner[0].c_str(),
                           owner.size() > 1 ? owner[1].c_str() : "", api.schema->kind->file_kind,
                           path, MODE_READ);
  }
  if (!QvFileIsOpen(file)) return false;
  QvCloseFile(file);
  return true;
}

// Kinds whose records are rows of the database only have nothing in a
// Master Profile to read or to write.
bool InMasterProfile(const qv::KindApi& api) {
  return api.schema->kind->section[0] != '\0';
}

bool ReadMaster(Profile* profile, ConvertResult* result) {
  for (const qv::KindApi* api : qv::AllKindApis()) {
    if (!InMasterProfile(*api)) continue;
    std::vector<qv::Texts> owners;
    std::string error;
    if (!MasterOwners(*api, &owners, &error)) {
      result->failures.push_back(error);
      return false;
    }
    for (const qv::Texts& owner : owners) {
      RecordList* list = nullptr;
      bool listed;
      std::vector<qv::ReportedProblem> problems;
      {
        qv::ReportCapture quiet(/*quiet=*/true);
        listed = api->list(owner, &list);
        problems = quiet.problems();
      }
      if (!listed && !OwnerFileExists(*api, owner)) {
        // A module without a settings file has no such records.
        qv::GenericList::Free(list);
        continue;
      }
      // A line the reader reported would come out changed or not at all.
      if (!listed || !problems.empty()) {
        qv::GenericList::Free(list);
        for (const qv::ReportedProblem& p : problems) {
          result->failures.push_back(p.file.empty() ? p.message
                                                    : p.file + ":" + std::to_string(p.line) + ": " +
                                                          p.message);
        }
        result->failures.push_back(std::string("cannot read the ") + api->schema->kind->code +
                                   " records of " + OwnerJson(owner) + ": nothing was written");
        return false;
      }
      OwnerRecords records{api, owner, TakeRecords(list)};
      result->records += records.records.size();
      if (!records.records.empty()) profile->lists.push_back(std::move(records));
    }
  }
  return true;
}

// ---- Writing an Orvik profile ---------------------------------------------

bool ExecBound(sqlite3* db, const char* sql, const std::vector<std::string>& texts,
               int64_t number) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) != SQLITE_OK) return false;
  int index = 1;
  for (const std::string& text : texts) {
    sqlite3_bind_text(statement, index++, text.c_str(), -1, SQLITE_TRANSIENT);
  }
  sqlite3_bind_int64(statement, index, number);
  bool done = sqlite3_step(statement) == SQLITE_DONE;
  sqlite3_finalize(statement);
  return done;
}

bool KeepAside(const OwnerRecords& list, size_t position, const std::string& row,
               const void* record) {
  static const std::string sql = std::string("INSERT INTO ") + qv::kOrvikAsideTable +
                                 " (kind, owner, row, record, position) VALUES (?, ?, ?, ?, ?)";
  return ExecBound(qv::OrvikConnection(), sql.c_str(),
                   {list.api->schema->kind->code, OwnerJson(list.owner), row,
                    Content(*list.api->schema, record).dump()},
                   static_cast<int64_t>(position));
}

bool SameContent(const qv::KindSchema& schema, const void* a, const void* b) {
  return Content(schema, a) == Content(schema, b);
}

int WriteOrvikRecords(const Profile& profile, ConvertResult* result) {
  std::map<std::string, size_t> aside_by_kind;
  for (const OwnerRecords& list : profile.lists) {
    const qv::KindSchema& schema = *list.api->schema;
    const bool readable = schema.kind->orvik_read;
    for (size_t i = 0; i < list.records.size(); ++i) {
      const void* record = list.records[i];
      bool inactive = (qv::RecordFlagsOf(schema, record) & RECORD_IAO) != 0;
      if (!readable || inactive) {
        if (!KeepAside(list, i, "", record)) return 0;
        ++aside_by_kind[schema.kind->code];
        ++result->aside;
        continue;
      }
      if (!qv::InsertOrvikRow(schema, record)) {
        result->failures.push_back(std::string("cannot insert a ") + schema.kind->code + " row");
        return 0;
      }
      ++result->written;
      // What the text store alone keeps of this record waits beside its row.
      void* row = RowOnly(schema, record);
      bool same = row != nullptr && SameContent(schema, row, record);
      qv::FreeRecord(row);
      if (!same && !KeepAside(list, i, RowText(schema, record), record)) return 0;
    }
  }
  for (const auto& [code, count] : aside_by_kind) {
    const qv::KindInfo* kind = qv::FindKindInfo(code.c_str());
    result->notes.push_back(code + ": " + std::to_string(count) + " records kept aside (" +
                            (kind != nullptr && !kind->orvik_read ? "the database does not read "
                                                                    "this kind back"
                                                                  : "inactive records") +
                            ")");
  }
  return 1;
}

bool WriteOrvik(const Profile& profile, const std::string& target, ConvertResult* result) {
  if (!QvInitOrvikProfile(target.c_str())) {
    result->failures.push_back("cannot create an Orvik profile at " + target);
    return false;
  }
  if (!OpenAt(target, OPEN_ORVIK | OPEN_LOCK)) {
    result->failures.push_back("cannot open the new Orvik profile " + target);
    return false;
  }
  // One transaction: a stopped conversion leaves an empty database.
  bool ok = qv::Transacted([&] { return WriteOrvikRecords(profile, result); }) == 1;
  CloseMasterProfile();
  return ok;
}

// ---- Reading an Orvik profile ---------------------------------------------

struct AsideRecord {
  size_t position;
  std::string row;
  Json record;
  bool used = false;
};

using AsideMap = std::map<std::pair<std::string, std::string>, std::vector<AsideRecord>>;

bool ReadAside(AsideMap* aside) {
  std::string sql = std::string("SELECT kind, owner, position, row, record FROM ") +
                    qv::kOrvikAsideTable + " ORDER BY rowid";
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(qv::OrvikConnection(), sql.c_str(), -1, &statement, nullptr) !=
      SQLITE_OK) {
    // A database made elsewhere has nothing aside.
    sqlite3_finalize(statement);
    return true;
  }
  auto text = [&](int column) {
    const unsigned char* t = sqlite3_column_text(statement, column);
    return std::string(t != nullptr ? reinterpret_cast<const char*>(t) : "");
  };
  int step;
  while ((step = sqlite3_step(statement)) == SQLITE_ROW) {
    Json record = Json::parse(text(4), nullptr, false);
    if (record.is_discarded()) continue;
    (*aside)[{text(0), text(1)}].push_back(
        {static_cast<size_t>(sqlite3_column_int64(statement, 2)), text(3), record});
  }
  sqlite3_finalize(statement);
  return step == SQLITE_DONE;
}

void* FromJson(const qv::KindSchema& schema, const Json& object, ConvertResult* result) {
  void* record = qv::NewRecord(schema);
  std::string error;
  if (record != nullptr && !RecordFromJson(schema, object, record, &error)) {
    result->failures.push_back(std::string("a ") + schema.kind->code +
                               " record kept aside does not read: " + error);
    qv::FreeRecord(record);
    return nullptr;
  }
  return record;
}

// The rows of a kind with the text-store members kept aside put back, and
// the records kept aside alone put in at their places.
void Restore(OwnerRecords* list, std::vector<AsideRecord>* aside, ConvertResult* result) {
  const qv::KindSchema& schema = *list->api->schema;
  for (void*& record : list->records) {
    std::string row = RowText(schema, record);
    for (AsideRecord& kept : *aside) {
      if (kept.used || kept.row != row) continue;
      if (void* full = FromJson(schema, kept.record, result)) {
        qv::FreeRecord(record);
        record = full;
        kept.used = true;
        break;
      }
    }
  }
  for (AsideRecord& kept : *aside) {
    if (kept.used || !kept.row.empty()) continue;
    void* record = FromJson(schema, kept.record, result);
    if (record == nullptr) continue;
    size_t at = std::min(kept.position, list->records.size());
    list->records.insert(list->records.begin() + static_cast<std::ptrdiff_t>(at), record);
    kept.used = true;
  }
}

bool ReadOrvik(Profile* profile, ConvertResult* result) {
  AsideMap aside;
  if (!ReadAside(&aside)) {
    result->failures.push_back("cannot read the records kept aside");
    return false;
  }
  for (const qv::KindApi* api : qv::AllKindApis()) {
    const qv::KindSchema& schema = *api->schema;
    std::vector<OwnerRecords> lists;
    std::map<qv::Texts, size_t> index;
    if (schema.kind->orvik_read) {
      RecordList* rows = nullptr;
      if (!qv::ReadOrvikRows(schema, &rows)) {
        qv::GenericList::Free(rows);
        result->failures.push_back(std::string("cannot read the ") + schema.kind->code + " rows");
        return false;
      }
      for (void* record : TakeRecords(rows)) {
        qv::Texts owner = OwnerTexts(*api, record);
        auto [it, fresh] = index.emplace(owner, lists.size());
        if (fresh) lists.push_back({api, owner, {}});
        lists[it->second].records.push_back(record);
      }
    }
    // Owners whose records were all kept aside have no rows.
    for (auto& [key, kept] : aside) {
      if (key.first != schema.kind->code) continue;
      Json owner = Json::parse(key.second, nullptr, false);
      if (!owner.is_array()) continue;
      qv::Texts texts = owner.get<qv::Texts>();
      auto [it, fresh] = index.emplace(texts, lists.size());
      if (fresh) lists.push_back({api, texts, {}});
      Restore(&lists[it->second], &kept, result);
    }
    for (OwnerRecords& list : lists) {
      result->records += list.records.size();
      profile->lists.push_back(std::move(list));
    }
  }
  return true;
}

// ---- Writing a Master Profile -----------------------------------------------

bool WriteMaster(const Profile& profile, const std::string& target, ConvertResult* result) {
  if (!QvInitMasterProfile(target.c_str())) {
    result->failures.push_back("cannot create a Master Profile in " + target);
    return false;
  }
  if (!OpenAt(target, OPEN_MASTER | OPEN_LOCK)) {
    result->failures.push_back("cannot open the new Master Profile " + target);
    return false;
  }
  // Kinds go in the engine's order, owners (modules, products, installs)
  // before what their files hold.
  for (const OwnerRecords& list : profile.lists) {
    if (!InMasterProfile(*list.api)) {
      result->aside += list.records.size();
      continue;
    }
    for (void* record : list.records) {
      qv::ReportCapture quiet(/*quiet=*/true);
      // A module, product, install or group keeps the file name it had.
      if (list.api->make_named_file && !list.api->make_named_file(record)) {
        result->failures.push_back(std::string("cannot make the file of a ") +
                                   list.api->schema->kind->code + " record");
        continue;
      }
      if (list.api->put(record)) {
        ++result->written;
        continue;
      }
      std::string why;
      for (const qv::ReportedProblem& p : quiet.problems()) why += ": " + p.message;
      result->failures.push_back(std::string("cannot put a ") + list.api->schema->kind->code +
                                 " record of " + OwnerJson(list.owner) + why);
    }
  }
  CloseMasterProfile();
  return result->failures.empty();
}

}  // namespace

ConvertResult ConvertProfile(const std::string& source, bool source_is_orvik,
                             const std::string& target) {
  ConvertResult result;
  Profile profile;
  if (!OpenAt(source, source_is_orvik ? OPEN_ORVIK : OPEN_MASTER)) {
    result.failures.push_back("cannot open " + source);
    return result;
  }
  bool read = source_is_orvik ? ReadOrvik(&profile, &result) : ReadMaster(&profile, &result);
  CloseMasterProfile();
  if (!read) return result;
  result.ok = source_is_orvik ? WriteMaster(profile, target, &result)
                              : WriteOrvik(profile, target, &result);
  return result;
}

}  // namespace qvtool
