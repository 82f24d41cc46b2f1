// Families whose records are known by one or more text members of their
// row, compared with regard to case (language lists, OS document
// languages, user information data, development registry keys), and
// whose kinds one of the two stores may not keep at all.
//
// A kind is described by a Desc:
//   using Record;
//   static constexpr auto kFree;                      the family's record free
//   static const KindSchema& Schema();
//   static constexpr std::array<const char*, N> kKeyMembers;   in key order
//   static constexpr const char* kInsertIn, kInsertInto, kDeleteFailed,
//                                kNotForOrvik, kReferencesRemain;
//   static constexpr StoreRefusal kRefusal;           {} when both stores keep it
// and TextKeyFamily<Desc> is its family: KeyedFamily with those keys, behind
// the refusals of the store that does not keep the kind.
#ifndef QUORVEX_RECORDS_TEXT_KEY_FAMILY_H_
#define QUORVEX_RECORDS_TEXT_KEY_FAMILY_H_

#include <array>
#include <cstdio>
#include <cstring>
#include <vector>

#include "quorvex/profile.h"
#include "quorvex/report.h"
#include "records/family_io.h"
#include "records/keyed_family.h"
#include "records/kind_api.h"

namespace qv {

// What a store that does not keep a kind says instead, per operation
// (nullptr: the operation goes on).
struct StoreRefusal {
  bool by_orvik = false;  // the Orvik store refuses; otherwise the text store
  const char* read = nullptr;
  const char* get = nullptr;
  const char* put = nullptr;  // put, complete-list put and list rewrite
  const char* remove = nullptr;
};

// The member of the schema with that name; the kinds name only their own.
inline const MemberSpec& SchemaMember(const KindSchema& schema, const char* name) {
  for (const MemberSpec& m : schema.members) {
    if (strcmp(m.name, name) == 0) return m;
  }
  return schema.members.front();
}

// The member named kNames[i] in Desc's schema, looked up by name once: a
// put compares its key with every stored record.
template <class Desc, const auto& kNames>
const MemberSpec& NamedMember(size_t i) {
  static const auto members = [] {
    std::array<const MemberSpec*, std::size(kNames)> found{};
    for (size_t j = 0; j < found.size(); ++j) found[j] = &SchemaMember(Desc::Schema(), kNames[j]);
    return found;
  }();
  return *members[i];
}

// The start of the schema of a record that holds its row, then its record
// flags and line number, as all these kinds' records do.
template <class Record>
KindSchema RowRecordSchema(const char* code) {
  KindSchema schema{};
  schema.kind = FindKindInfo(code);
  schema.record_size = sizeof(Record);
  schema.row_offset = offsetof(Record, row);
  schema.row_size = sizeof(Record::row);
  schema.row_pointer_offset = SIZE_MAX;
  schema.record_flags_offset = offsetof(Record, recordFlags);
  schema.line_number_offset = offsetof(Record, lineNumber);
  return schema;
}

template <class Desc>
struct TextKeyTraits {
  using Record = typename Desc::Record;
  static constexpr size_t kParts = Desc::kKeyMembers.size();
  struct Key {
    std::array<const char*, kParts> parts;
  };
  static constexpr auto kFree = Desc::kFree;
  static constexpr const char* kInsertIn = Desc::kInsertIn;
  static constexpr const char* kInsertInto = Desc::kInsertInto;
  static constexpr const char* kDeleteFailed = Desc::kDeleteFailed;
  static constexpr const char* kNotForOrvik = Desc::kNotForOrvik;
  static constexpr const char* kReferencesRemain = Desc::kReferencesRemain;

  static const KindSchema& Schema() { return Desc::Schema(); }
  static const MemberSpec& Part(size_t i) { return NamedMember<Desc, Desc::kKeyMembers>(i); }
  static const char* TextOf(const Record& r, size_t i) {
    return reinterpret_cast<const char*>(&r) + Part(i).offset;
  }
  static const char* OrEmpty(const char* text) { return text != nullptr ? text : ""; }

  static Key KeyOf(const Record& r) {
    Key key;
    for (size_t i = 0; i < kParts; ++i) key.parts[i] = TextOf(r, i);
    return key;
  }
  // An empty first part finds the next record, whatever it is.
  static bool IsEmpty(const Key& key) { return OrEmpty(key.parts[0])[0] == '\0'; }
  static Key ForList(RecordList*, const Key& key) { return key; }
  static bool Matches(const Record& r, const Key& key) {
    for (size_t i = 0; i < kParts; ++i) {
      if (strcmp(OrEmpty(key.parts[i]), TextOf(r, i)) != 0) return false;
    }
    return true;
  }
  static void KeepIdentity(Record* copy, const Record& stored) {
    for (size_t i = 0; i < kParts; ++i) {
      memcpy(reinterpret_cast<char*>(copy) + Part(i).offset, TextOf(stored, i), Part(i).size);
    }
  }
  static void FillKey(Record* record, const Key& key) {
    for (size_t i = 0; i < kParts; ++i) {
      snprintf(reinterpret_cast<char*>(record) + Part(i).offset, Part(i).size, "%s",
               OrEmpty(key.parts[i]));
    }
  }
  static std::vector<std::vector<const char*>> OrvikKeyTries(const Key&) {
    return {std::vector<const char*>(Desc::kKeyMembers.begin(), Desc::kKeyMembers.end())};
  }
  // Nothing is kept in memory between operations, and no kind refers to
  // these records by a reference the engine follows.
  static void AfterTextWrite(RecordList*) {}
  static void AfterOrvikChange() {}
  static bool DeleteReferences(const Key&) { return true; }
};

template <class Desc>
class TextKeyFamily : public KeyedFamily<TextKeyTraits<Desc>> {
  using Base = KeyedFamily<TextKeyTraits<Desc>>;

 public:
  using Record = typename Desc::Record;
  using Key = typename TextKeyTraits<Desc>::Key;

  static const KindSchema& Schema() { return Desc::Schema(); }

  static int ReadAll(RecordList** list_out, uint32_t mode) {
    *list_out = nullptr;
    if (!RequireOpenProfile()) return 0;
    if (Refused(Desc::kRefusal.read)) return 0;
    return Base::ReadAll(list_out, mode);
  }
  static int Get(const Key& key, Record** record_out) {
    *record_out = nullptr;
    if (Refused(Desc::kRefusal.get)) return 0;
    return Base::Get(key, record_out);
  }
  static int Put(Record* record, bool* written = nullptr) {
    if (written != nullptr) *written = false;
    if (!RequireLockedProfile()) return 0;
    if (Refused(Desc::kRefusal.put)) return 0;
    if (!KeptRecordsFit(TextKeyTraits<Desc>::KeyOf(*record), false)) return 0;
    return Base::Put(record, written);
  }
  static int PutCompleteList(RecordList* list) {
    if (Refused(Desc::kRefusal.put)) return 0;
    return Base::PutCompleteList(list);
  }
  static int Delete(const Key& key) {
    if (!RequireLockedProfile()) return 0;
    if (Refused(Desc::kRefusal.remove)) return 0;
    if (!KeptRecordsFit(key, true)) return 0;
    return Base::Delete(key);
  }
  static int Write(RecordList* list) {
    if (!RequireLockedProfile()) return 0;
    if (Refused(Desc::kRefusal.put)) return 0;
    return Base::Write(list);
  }

  // The kind's entry for the tool: keys are the key members, in order.
  static const KindApi& Api() {
    static const KindApi api = [] {
      KindApi a;
      a.schema = &Desc::Schema();
      a.key_names.assign(Desc::kKeyMembers.begin(), Desc::kKeyMembers.end());
      a.list = [](const Texts&, RecordList** list) { return ReadAll(list, MODE_READ) == 1; };
      a.get = [](const Texts& key, void** record) {
        Record* found = nullptr;
        bool ok = Get(KeyFrom(key), &found) == 1;
        *record = found;
        return ok;
      };
      a.put = [](void* record) {
        bool written = false;
        return Put(static_cast<Record*>(record), &written) == 1 && written;
      };
      a.remove = [](const Texts& key) { return Delete(KeyFrom(key)) == 1; };
      a.flag_names = [](QvFlagNames** table) {
        *table = NewFlagNames(Desc::Schema());
        return true;
      };
      a.stored = [](const void* record) -> void* {
        return Base::StoredCopy(*static_cast<const Record*>(record));
      };
      return a;
    }();
    return api;
  }

 private:
  // Only an open profile has a store that can refuse.
  static bool Refused(const char* text) {
    if (text == nullptr || !IsMasterProfileOpen(0)) return false;
    if (IsOrvikProfile() != Desc::kRefusal.by_orvik) return false;
    ReportError(text, 0);
    return true;
  }
  // A kind whose inactive records cannot be written back refuses the whole
  // rewrite when a stored record it keeps is one; the stored records are
  // checked first, so that such a refusal is not reported as done. A put
  // keeps all but the record it replaces, a delete all but those it removes.
  static bool KeptRecordsFit(const Key& key, bool removing_every_match) {
    const KindSchema& schema = Desc::Schema();
    if (!InnerFieldsTakeRecordFlags(schema) || IsOrvikProfile()) return true;
    RecordList* list = nullptr;
    if (!Base::ReadAll(&list, MODE_READ)) {
      Base::List::Free(list);
      return false;
    }
    bool fits = true;
    bool replaced = TextKeyTraits<Desc>::IsEmpty(key);
    Base::List::ForEach(list, [&](Record* record) {
      if ((removing_every_match || !replaced) && TextKeyTraits<Desc>::Matches(*record, key)) {
        replaced = true;
        return true;
      }
      fits = RecordFitsLine(schema, record);
      return fits;
    });
    Base::List::Free(list);
    return fits;
  }

  static Key KeyFrom(const Texts& texts) {
    Key key;
    for (size_t i = 0; i < key.parts.size(); ++i) {
      key.parts[i] = i < texts.size() ? texts[i].c_str() : "";
    }
    return key;
  }
};

}  // namespace qv

// The C operations of a kind that take no key, for a family F.
#define QV_DEFINE_TEXT_KEY_COMMON_OPERATIONS(code, F)                                \
  QV_DEFINE_LIST_OPERATIONS(code, code##Record, MPFree##code)                        \
  extern "C" {                                                                       \
  int MPNew##code(code##Record** recordOut) {                                        \
    *recordOut = F::New();                                                           \
    return *recordOut != nullptr ? 1 : 0;                                            \
  }                                                                                  \
  int MPFree##code(code##Record* record) {                                           \
    ::qv::FreeRecord(record);                                                        \
    return 1;                                                                        \
  }                                                                                  \
  int MPRelease##code(code##Record** record) {                                       \
    if (record == nullptr) return 1;                                                 \
    ::qv::FreeRecord(*record);                                                       \
    *record = nullptr;                                                               \
    return 1;                                                                        \
  }                                                                                  \
  int MPGet##code##CompleteList(code##List** listOut, uint32_t mode) {               \
    return F::ReadAll(listOut, mode);                                                \
  }                                                                                  \
  int MPPut##code(code##Record* record) {                                            \
    return F::Put(record);                                                           \
  }                                                                                  \
  int MPPut##code##CompleteList(code##List* list) {                                  \
    return F::PutCompleteList(list);                                                 \
  }                                                                                  \
  int MPCopy##code(code##Record** recordInOut, const code##Record* source, int mode, \
                   code##List* list) {                                               \
    return F::Copy(recordInOut, source, mode, list);                                 \
  }                                                                                  \
  int MPGet##code##FlagNames(code##FlagNames** tableOut) {                           \
    *tableOut = ::qv::NewFlagNames(F::Schema());                                     \
    return 1;                                                                        \
  }                                                                                  \
  }

// ... and those that take one text key.
#define QV_DEFINE_ONE_TEXT_KEY_OPERATIONS(code, F)                                      \
  QV_DEFINE_TEXT_KEY_COMMON_OPERATIONS(code, F)                                         \
  extern "C" {                                                                          \
  int MPGet##code(const char* key, code##Record** recordOut) {                          \
    return F::Get({{key}}, recordOut);                                                  \
  }                                                                                     \
  int MPDelete##code(const char* key) {                                                 \
    return F::Delete({{key}});                                                          \
  }                                                                                     \
  int MPFind##code##Node(const char* key, code##List* list, code##Record** recordOut) { \
    return F::Find({{key}}, list, recordOut);                                           \
  }                                                                                     \
  }

// ... and the rewrite of its section from a list.
#define QV_DEFINE_WRITE_LIST_OPERATION(code, F)          \
  extern "C" int MPWrite##code##List(code##List* list) { \
    return F::Write(list);                               \
  }

#endif  // QUORVEX_RECORDS_TEXT_KEY_FAMILY_H_
