// The development-key index "<profile>\SSR\DRKSSR.DSI": which development
// registry key each settings record (DRKSSR) and created settings record
// (DRKCSSR) belongs to. The database keeps no index.
#include "quorvex/settings.h"
#include "records/text_key_family.h"

namespace qv {
namespace {

#define QV_INDEX_TEXTS(code)                                                        \
  static constexpr const char* kInsertIn =                                          \
      "Cannot insert " code " record in Orvik shipping profile";                    \
  static constexpr const char* kInsertInto =                                        \
      "Cannot insert " code " record into Orvik shipping profile";                  \
  static constexpr const char* kDeleteFailed = code " is not a part of Orvik";      \
  static constexpr const char* kNotForOrvik = code " is not a part of Orvik";       \
  static constexpr const char* kReferencesRemain =                                  \
      "Cannot delete all references to this " code ", therefore cannot delete it."; \
  static constexpr StoreRefusal kRefusal = {                                        \
      true, code "s not found in Orvik", code "s not found in Orvik",               \
      code " is not a part of Orvik", code " is not a part of Orvik"};

// Both sections' lines: the key, the record, its module and a text carried
// along. The record flags go with the first field.
template <class Record, size_t kNameOffset>
KindSchema IndexSchema(const char* code, const char* missing, const char* name_member) {
  KindSchema s = RowRecordSchema<Record>(code);
  s.members = {
      QV_MEMBER(Record, row.DRKName, "DRKName", true),
      MemberSpec{name_member, ValueType::kText, kNameOffset, 21, true},
      QV_MEMBER(Record, row.ModuleName, "ModuleName", true),
      QV_MEMBER(Record, row.ModuleKey2, "ModuleKey2", true),
      QV_MEMBER(Record, row.Text40, "Text40", true),
      QV_MEMBER(Record, recordFlags, "recordFlags", false),
      QV_MEMBER(Record, lineNumber, "lineNumber", false),
  };
  s.line = {
      QV_LINE_FIELD(Record, row.DRKName, LineSyntax::kText, 20, 0, 0),
      LineField{LineSyntax::kText, kNameOffset, ValueType::kText, 20, 0, 0},
      QV_LINE_FIELD(Record, row.ModuleName, LineSyntax::kText, 40, 0, 0),
      QV_LINE_FIELD(Record, row.ModuleKey2, LineSyntax::kText, 10, 0, 0),
      QV_LINE_FIELD(Record, row.Text40, LineSyntax::kText, 40, 0, 0),
  };
  s.flag_label = s.kind->section;
  s.missing_file_message = missing;
  return s;
}

struct DrkssrDesc {
  using Record = DRKSSRRecord;
  static constexpr auto kFree = &MPFreeDRKSSR;
  static constexpr std::array<const char*, 4> kKeyMembers = {"DRKName", "SSRName", "ModuleName",
                                                             "ModuleKey2"};
  QV_INDEX_TEXTS("DRKSSR")
  static const KindSchema& Schema() {
    static const KindSchema schema = IndexSchema<DRKSSRRecord, offsetof(DRKSSRRecord, row.SSRName)>(
        "DRKSSR", "DRK SSR Index cannot be found or opened!", "SSRName");
    return schema;
  }
};

struct DrkcssrDesc {
  using Record = DRKCSSRRecord;
  static constexpr auto kFree = &MPFreeDRKCSSR;
  static constexpr std::array<const char*, 4> kKeyMembers = {"DRKName", "CSSRName", "ModuleName",
                                                             "ModuleKey2"};
  QV_INDEX_TEXTS("DRKCSSR")
  static const KindSchema& Schema() {
    static const KindSchema schema =
        IndexSchema<DRKCSSRRecord, offsetof(DRKCSSRRecord, row.CSSRName)>(
            "DRKCSSR", "DRK CSSR Index cannot be found or opened!", "CSSRName");
    return schema;
  }
};

#undef QV_INDEX_TEXTS

// The lines of one development key, or all of them.
template <class Family>
int ReadIndex(const char* drk_name, RecordList** list_out) {
  int result = Family::ReadAll(list_out, MODE_READ);
  if (result != 1 || drk_name == nullptr) return result;
  std::vector<typename Family::Record*> others;
  GenericList::ForEach(*list_out, [&](void* r) {
    auto* record = static_cast<typename Family::Record*>(r);
    if (strcmp(record->row.DRKName, drk_name) != 0) others.push_back(record);
  });
  for (auto* r : others) {
    UnlinkRecord(*list_out, r);
    FreeRecord(r);
  }
  return 1;
}

}  // namespace

using DrkssrFamily = TextKeyFamily<DrkssrDesc>;
using DrkcssrFamily = TextKeyFamily<DrkcssrDesc>;

const KindApi& DrkssrKindApi() {
  return DrkssrFamily::Api();
}
const KindApi& DrkcssrKindApi() {
  return DrkcssrFamily::Api();
}

}  // namespace qv

#define QV_DEFINE_INDEX_OPERATIONS(code, F)                                               \
  QV_DEFINE_LIST_OPERATIONS(code, code##Record, MPFree##code)                             \
  extern "C" {                                                                            \
  int MPNew##code(code##Record** recordOut) {                                             \
    *recordOut = F::New();                                                                \
    return *recordOut != nullptr ? 1 : 0;                                                 \
  }                                                                                       \
  int MPFree##code(code##Record* record) {                                                \
    ::qv::FreeRecord(record);                                                             \
    return 1;                                                                             \
  }                                                                                       \
  int MPGet##code##CompleteList(const char* drkName, code##List** listOut) {              \
    return ::qv::ReadIndex<F>(drkName, listOut);                                          \
  }                                                                                       \
  int MPPut##code##CompleteList(code##List* list) {                                       \
    return F::Write(list);                                                                \
  }                                                                                       \
  int MPPut##code(code##Record* record) {                                                 \
    return F::Put(record);                                                                \
  }                                                                                       \
  int MPDelete##code(const char* drkName, const char* recordName, const char* moduleName, \
                     const char* moduleKey2) {                                            \
    return F::Delete({{drkName, recordName, moduleName, moduleKey2}});                    \
  }                                                                                       \
  }

QV_DEFINE_INDEX_OPERATIONS(DRKSSR, qv::DrkssrFamily)
QV_DEFINE_INDEX_OPERATIONS(DRKCSSR, qv::DrkcssrFamily)
