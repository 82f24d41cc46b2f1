#include "records/orvik_rows.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstring>

#include "orvik/database.h"
#include "orvik/transaction.h"
#include "quorvex/report.h"
#include "records/family_io.h"
#include "records/record_codec.h"

namespace qv {
namespace {

std::string Quoted(const char* identifier) {
  std::string out = "\"";
  for (const char* p = identifier; *p; ++p) {
    if (*p == '"') out += '"';
    out += *p;
  }
  return out + "\"";
}

std::vector<const MemberSpec*> RowMembers(const KindSchema& schema) {
  std::vector<const MemberSpec*> members;
  for (const MemberSpec& m : schema.members) {
    if (m.in_row) members.push_back(&m);
  }
  return members;
}

char* At(void* record, size_t offset) {
  return static_cast<char*>(record) + offset;
}
const char* At(const void* record, size_t offset) {
  return static_cast<const char*>(record) + offset;
}

bool HoldsBytes(const KindSchema& schema, const MemberSpec& m) {
  return schema.bytes_member != nullptr && strcmp(schema.bytes_member, m.name) == 0;
}

size_t ByteCount(const MemberSpec& m, const void* record) {
  const char* at = At(record, m.offset);
  size_t count = m.size;
  while (count > 0 && at[count - 1] == '\0') --count;
  return count;
}

void ReadColumn(sqlite3_stmt* statement, int column, const MemberSpec& m, bool bytes,
                void* record) {
  if (bytes) {
    const void* blob = sqlite3_column_blob(statement, column);
    size_t count = static_cast<size_t>(sqlite3_column_bytes(statement, column));
    memset(At(record, m.offset), 0, m.size);
    if (blob != nullptr) memcpy(At(record, m.offset), blob, count < m.size ? count : m.size - 1);
    return;
  }
  switch (m.type) {
    case ValueType::kText: {
      const unsigned char* text = sqlite3_column_text(statement, column);
      snprintf(At(record, m.offset), m.size, "%s", text != nullptr ? (const char*)text : "");
      return;
    }
    case ValueType::kVersionQuad: {
      uint64_t v = static_cast<uint64_t>(sqlite3_column_int64(statement, column));
      uint32_t pair[2] = {static_cast<uint32_t>(v >> 32), static_cast<uint32_t>(v)};
      memcpy(At(record, m.offset), pair, sizeof pair);
      return;
    }
    default:
      SetUnsigned(record, m.offset, m.type,
                  static_cast<uint32_t>(sqlite3_column_int64(statement, column)));
      return;
  }
}

void BindColumn(sqlite3_stmt* statement, int index, const MemberSpec& m, bool bytes,
                const void* record) {
  if (bytes) {
    sqlite3_bind_blob(statement, index, At(record, m.offset),
                      static_cast<int>(ByteCount(m, record)), SQLITE_TRANSIENT);
    return;
  }
  switch (m.type) {
    case ValueType::kText:
      sqlite3_bind_text(statement, index, At(record, m.offset), -1, SQLITE_TRANSIENT);
      return;
    case ValueType::kVersionQuad: {
      uint32_t pair[2];
      memcpy(pair, At(record, m.offset), sizeof pair);
      sqlite3_bind_int64(statement, index,
                         static_cast<int64_t>((static_cast<uint64_t>(pair[0]) << 32) | pair[1]));
      return;
    }
    case ValueType::kI32:
      sqlite3_bind_int64(statement, index,
                         static_cast<int32_t>(GetUnsigned(record, m.offset, m.type)));
      return;
    default:
      sqlite3_bind_int64(statement, index, GetUnsigned(record, m.offset, m.type));
      return;
  }
}

const MemberSpec* FindMember(const KindSchema& schema, const char* name) {
  for (const MemberSpec& m : schema.members) {
    if (strcmp(m.name, name) == 0) return &m;
  }
  return nullptr;
}

}  // namespace

bool OrvikRefusesKind(const KindSchema& schema) {
  const KindInfo& kind = *schema.kind;
  if (kind.orvik_read || kind.orvik_insert || kind.orvik_delete || kind.orvik_refusal == nullptr) {
    return false;
  }
  ReportError(kind.orvik_refusal, 0);
  return true;
}

bool ReadOrvikRows(const KindSchema& schema, RecordList** list_out) {
  GenericList::New(list_out);
  if (OrvikRefusesKind(schema)) return false;
  std::vector<const MemberSpec*> members = RowMembers(schema);
  std::string sql = "SELECT ";
  for (size_t i = 0; i < members.size(); ++i) sql += (i ? ", " : "") + Quoted(members[i]->name);
  sql += " FROM " + Quoted(schema.kind->code) + " ORDER BY rowid";
  sqlite3_stmt* statement = nullptr;
  sqlite3* db = OrvikConnection();
  if (db == nullptr || sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    sqlite3_finalize(statement);
    char text[QV_LINE_SIZE];
    snprintf(text, sizeof text, "Cannot begin to Query Orvik Database for %s",
             schema.kind->query_label);
    ReportError(text, 0);
    return false;
  }
  int step;
  while ((step = sqlite3_step(statement)) == SQLITE_ROW) {
    void* record = NewRecord(schema);
    for (size_t i = 0; i < members.size(); ++i) {
      ReadColumn(statement, static_cast<int>(i), *members[i], HoldsBytes(schema, *members[i]),
                 record);
    }
    GenericList::Append(*list_out, record);
  }
  sqlite3_finalize(statement);
  if (step == SQLITE_DONE) return true;
  // A row that cannot be fetched ends the read as a failure, never as a
  // short list that a later write would take for the whole table.
  char text[QV_LINE_SIZE];
  snprintf(text, sizeof text, "Cannot get %s out of Orvik profile.",
           schema.orvik_fetch_label != nullptr ? schema.orvik_fetch_label : schema.flag_label);
  ReportError(text, 0);
  return false;
}

bool InsertOrvikRow(const KindSchema& schema, const void* record) {
  if (!OrvikWritesAllowed()) return false;
  std::vector<const MemberSpec*> members = RowMembers(schema);
  std::string columns;
  std::string values;
  for (size_t i = 0; i < members.size(); ++i) {
    columns += (i ? ", " : "") + Quoted(members[i]->name);
    values += i ? ", ?" : "?";
  }
  std::string sql =
      "INSERT INTO " + Quoted(schema.kind->code) + " (" + columns + ") VALUES (" + values + ")";
  sqlite3_stmt* statement = nullptr;
  sqlite3* db = OrvikConnection();
  if (db == nullptr || sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    sqlite3_finalize(statement);
    return false;
  }
  for (size_t i = 0; i < members.size(); ++i) {
    BindColumn(statement, static_cast<int>(i + 1), *members[i], HoldsBytes(schema, *members[i]),
               record);
  }
  bool done = sqlite3_step(statement) == SQLITE_DONE;
  sqlite3_finalize(statement);
  return done;
}

bool DeleteOrvikRows(const KindSchema& schema, const void* record,
                     const std::vector<const char*>& key_members) {
  if (!OrvikWritesAllowed()) return false;
  std::string sql = "DELETE FROM " + Quoted(schema.kind->code) + " WHERE ";
  std::vector<const MemberSpec*> keys;
  for (const char* name : key_members) {
    const MemberSpec* m = FindMember(schema, name);
    if (m == nullptr) return false;
    sql += (keys.empty() ? "" : " AND ") + Quoted(m->name) + " = ?";
    keys.push_back(m);
  }
  sqlite3_stmt* statement = nullptr;
  sqlite3* db = OrvikConnection();
  if (db == nullptr || sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    sqlite3_finalize(statement);
    return false;
  }
  for (size_t i = 0; i < keys.size(); ++i) {
    BindColumn(statement, static_cast<int>(i + 1), *keys[i], HoldsBytes(schema, *keys[i]), record);
  }
  bool done = sqlite3_step(statement) == SQLITE_DONE && sqlite3_changes(db) > 0;
  sqlite3_finalize(statement);
  return done;
}

std::string OrvikTableDefinition(const KindSchema& schema) {
  std::string sql = "CREATE TABLE " + Quoted(schema.kind->code) + " (";
  std::vector<const MemberSpec*> members = RowMembers(schema);
  for (size_t i = 0; i < members.size(); ++i) {
    sql += (i ? ", " : "") + Quoted(members[i]->name) +
           (HoldsBytes(schema, *members[i])        ? " BLOB"
            : members[i]->type == ValueType::kText ? " TEXT"
                                                   : " INTEGER");
  }
  return sql + ")";
}

}  // namespace qv
