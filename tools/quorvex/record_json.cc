#include "record_json.h"

#include <cstring>
#include <iomanip>
#include <sstream>

#include "flag_labels.h"
#include "settings_data.h"
#include "records/record_codec.h"

namespace qvtool {
namespace {

const char* At(const void* record, size_t offset) {
  return static_cast<const char*>(record) + offset;
}

nlohmann::ordered_json MemberValue(const qv::MemberSpec& m, const void* record) {
  switch (m.type) {
    case qv::ValueType::kText:
      return std::string(At(record, m.offset), strnlen(At(record, m.offset), m.size));
    case qv::ValueType::kI32:
      return static_cast<int32_t>(qv::GetUnsigned(record, m.offset, m.type));
    case qv::ValueType::kVersionQuad: {
      uint32_t pair[2];
      memcpy(pair, At(record, m.offset), sizeof pair);
      return nlohmann::ordered_json::array(
          {pair[0] >> 16, pair[0] & 0xFFFF, pair[1] >> 16, pair[1] & 0xFFFF});
    }
    default:
      return qv::GetUnsigned(record, m.offset, m.type);
  }
}

uint64_t MaxOf(qv::ValueType type) {
  switch (type) {
    case qv::ValueType::kU8:
      return 0xFF;
    case qv::ValueType::kU16:
      return 0xFFFF;
    default:
      return 0xFFFFFFFF;
  }
}

bool SetMember(const qv::MemberSpec& m, const nlohmann::ordered_json& value, void* record,
               std::string* error) {
  char* at = static_cast<char*>(record) + m.offset;
  switch (m.type) {
    case qv::ValueType::kText: {
      if (!value.is_string()) break;
      std::string text = value.get<std::string>();
      if (text.find('\0') != std::string::npos) {
        // The record's text would end at the NUL, losing the rest unseen.
        *error = std::string(m.name) + " holds a NUL character";
        return false;
      }
      if (text.size() >= m.size) {
        *error =
            std::string(m.name) + " is longer than " + std::to_string(m.size - 1) + " characters";
        return false;
      }
      memcpy(at, text.c_str(), text.size() + 1);
      return true;
    }
    case qv::ValueType::kI32:
      if (!value.is_number_integer()) break;
      qv::SetUnsigned(record, m.offset, m.type, static_cast<uint32_t>(value.get<int32_t>()));
      return true;
    case qv::ValueType::kVersionQuad: {
      if (!value.is_array() || value.size() != 4) break;
      uint32_t g[4];
      for (int i = 0; i < 4; ++i) {
        if (!value[i].is_number_unsigned() || value[i].get<uint64_t>() > 0xFFFF) {
          *error = std::string(m.name) + " takes four numbers from 0 to 65535";
          return false;
        }
        g[i] = value[i].get<uint32_t>();
      }
      uint32_t pair[2] = {(g[0] << 16) | g[1], (g[2] << 16) | g[3]};
      memcpy(at, pair, sizeof pair);
      return true;
    }
    default:
      if (!value.is_number_unsigned() || value.get<uint64_t>() > MaxOf(m.type)) {
        *error = std::string(m.name) + " takes a number from 0 to " + std::to_string(MaxOf(m.type));
        return false;
      }
      qv::SetUnsigned(record, m.offset, m.type, value.get<uint32_t>());
      return true;
  }
  *error = std::string(m.name) + " has a value of the wrong type";
  return false;
}

// Members that say how the record sits in its file or row rather than what
// it holds: people see them only when they ask (-v).
bool IsInternal(const qv::KindSchema& schema, const qv::MemberSpec& m) {
  if (!m.in_row && m.offset == schema.record_flags_offset) return true;
  if (!m.in_row && m.offset == schema.line_number_offset) return true;
  return std::string(m.name) == "rowReference";
}

constexpr char kFlagNamesMember[] = "flagNames";

// "flagNames" as the labels of the flag table; the number stays the word
// to use when both are given, so they must agree.
bool FlagsFromNames(const qv::KindSchema& schema, const nlohmann::ordered_json& object,
                    void* record, std::string* error) {
  auto names = object.find(kFlagNamesMember);
  if (names == object.end()) return true;
  const qv::MemberSpec* flags = FlagMember(schema);
  if (flags == nullptr) {
    *error = std::string("kind ") + schema.kind->code + " has no flag labels: leave out flagNames";
    return false;
  }
  if (!names->is_array()) {
    *error = "flagNames takes an array of labels";
    return false;
  }
  uint32_t word = 0;
  for (const nlohmann::ordered_json& name : *names) {
    uint32_t bits = 0;
    if (!name.is_string() || !FlagBitForLabel(schema, name.get<std::string>(), &bits)) {
      *error = "flagNames: unknown label " + name.dump() + " (known: " + KnownLabels(schema) + ")";
      return false;
    }
    word |= bits;
  }
  uint32_t given = qv::GetUnsigned(record, flags->offset, flags->type);
  if (object.contains(flags->name) && given != word) {
    *error = std::string(flags->name) + " (" + std::to_string(given) + ") and flagNames (" +
             std::to_string(word) + ") disagree: give one of them";
    return false;
  }
  qv::SetUnsigned(record, flags->offset, flags->type, word);
  return true;
}

}  // namespace

nlohmann::ordered_json RecordToJson(const qv::KindSchema& schema, const void* record) {
  nlohmann::ordered_json object = nlohmann::ordered_json::object();
  const qv::MemberSpec* flags = FlagMember(schema);
  const qv::EntryKind* entry = SettingsEntryKind(schema);
  for (const qv::MemberSpec& m : schema.members) {
    object[m.name] = MemberValue(m, record);
    // A settings value is text or bytes by its type: both are given.
    if (entry != nullptr && IsDataMember(m)) {
      object[m.name] = DataJson(*entry, record);
      object["DataBytes"] = DataBytesJson(*entry, record);
    }
    if (&m == flags) {
      object[kFlagNamesMember] = FlagLabels(schema, qv::GetUnsigned(record, m.offset, m.type));
    }
  }
  return object;
}

bool RecordFromJson(const qv::KindSchema& schema, const nlohmann::ordered_json& object,
                    void* record, std::string* error) {
  if (!object.is_object()) {
    *error = "a record must be a JSON object";
    return false;
  }
  const qv::EntryKind* entry = SettingsEntryKind(schema);
  for (auto it = object.begin(); it != object.end(); ++it) {
    if (it.key() == kFlagNamesMember) continue;
    // A settings value is read once its type is known, below.
    if (entry != nullptr && (it.key() == "Data" || it.key() == "DataBytes")) continue;
    const qv::MemberSpec* member = nullptr;
    for (const qv::MemberSpec& m : schema.members) {
      if (it.key() == m.name) member = &m;
    }
    if (member == nullptr) {
      *error = "unknown member \"" + it.key() + "\" for kind " + schema.kind->code;
      return false;
    }
    if (!SetMember(*member, it.value(), record, error)) return false;
    // The record flags become the options of the line's first field: any bit
    // but the inactive marker would break the line.
    if (!member->in_row && member->offset == schema.record_flags_offset &&
        (qv::RecordFlagsOf(schema, static_cast<const void*>(record)) & ~RECORD_IAO) != 0) {
      *error =
          std::string(member->name) + " takes 0 or " + std::to_string(RECORD_IAO) + " (inactive)";
      return false;
    }
  }
  if (entry != nullptr && !DataFromJson(*entry, object, record, error)) return false;
  return FlagsFromNames(schema, object, record, error);
}

std::string MemberCell(const qv::KindSchema& schema, const qv::MemberSpec& m, const void* record) {
  if (&m == FlagMember(schema)) return FlagCell(schema, qv::GetUnsigned(record, m.offset, m.type));
  const qv::EntryKind* entry = SettingsEntryKind(schema);
  if (entry != nullptr && IsDataMember(m)) return DataCell(*entry, record);
  nlohmann::ordered_json v = MemberValue(m, record);
  if (v.is_array()) {
    // A version quad reads as people write versions.
    std::string text;
    for (const auto& part : v) text += (text.empty() ? "" : ".") + part.dump();
    return text;
  }
  return v.is_string() ? v.get<std::string>() : v.dump();
}

bool IsInactive(const qv::KindSchema& schema, const void* record) {
  return (qv::RecordFlagsOf(schema, record) & RECORD_IAO) != 0;
}

void PrintRecordTable(const qv::KindSchema& schema, const std::vector<const void*>& records,
                      std::ostream& out, bool verbose) {
  std::vector<const qv::MemberSpec*> shown;
  for (const qv::MemberSpec& m : schema.members) {
    if (verbose || !IsInternal(schema, m)) shown.push_back(&m);
  }
  bool any_inactive = false;
  for (const void* record : records) any_inactive = any_inactive || IsInactive(schema, record);
  std::vector<std::vector<std::string>> rows;
  std::vector<std::string> header;
  for (const qv::MemberSpec* m : shown) header.push_back(m->name);
  // Inactive records (";IAO;" lines) are read but skipped by installs.
  if (any_inactive) header.push_back("State");
  rows.push_back(header);
  for (const void* record : records) {
    std::vector<std::string> row;
    for (const qv::MemberSpec* m : shown) row.push_back(MemberCell(schema, *m, record));
    if (any_inactive) row.push_back(IsInactive(schema, record) ? "inactive" : "");
    rows.push_back(row);
  }
  std::vector<size_t> widths(header.size(), 0);
  for (const auto& row : rows) {
    for (size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  for (const auto& row : rows) {
    std::ostringstream line;
    for (size_t i = 0; i < row.size(); ++i) {
      line << (i ? "  " : "") << std::left << std::setw(i + 1 < row.size() ? widths[i] : 0)
           << row[i];
    }
    std::string text = line.str();
    text.erase(text.find_last_not_of(' ') + 1);
    out << text << "\n";
  }
}

}  // namespace qvtool
