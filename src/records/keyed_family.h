// The operations of a family whose records are known by text keys (a name,
// or a name and a version) rather than by an id: locations and icon
// locations. The protocol is the one every family follows (read the whole
// section, change the list, rewrite the section); Traits says what the key
// is, which texts the family shows and what follows a change.
//
// Traits provides:
//   using Record;                       the record, with row, recordFlags, lineNumber
//   struct Key;                         the key as texts
//   static constexpr auto kFree;        the family's record free
//   static const KindSchema& Schema();
//   static Key KeyOf(const Record&);
//   static bool IsEmpty(const Key&);    an empty key finds the next record
//   static Key ForList(RecordList*, const Key&);  the key as it applies to a list
//   static bool Matches(const Record&, const Key&);
//   static void KeepIdentity(Record* copy, const Record& stored);
//   static void FillKey(Record* record, const Key&);
//   static std::vector<std::vector<const char*>> OrvikKeyTries(const Key&);
//                                      key members to delete by, tried in turn
//   static void AfterTextWrite(RecordList* written);
//   static void AfterOrvikChange();
//   static bool DeleteReferences(const Key&);  the records naming it go first
//   static constexpr const char* kInsertIn, kInsertInto, kDeleteFailed, kNotForOrvik,
//                                kReferencesRemain;
// and, for kinds that live in an owner's file (a module's, ...):
//   static Owner OwnerOfKey(const Key&);        the file a key's records are in
//   static Owner OwnerOfRecord(const Record&);  the file a record belongs to
// Kinds of the fixed catalogue files leave these out.
#ifndef QUORVEX_RECORDS_KEYED_FAMILY_H_
#define QUORVEX_RECORDS_KEYED_FAMILY_H_

#include <array>
#include <concepts>
#include <cstdint>
#include <vector>

#include "orvik/transaction.h"
#include "quorvex/report.h"
#include "records/family_io.h"
#include "records/line_capacity.h"
#include "records/orvik_rows.h"
#include "records/record_codec.h"
#include "records/record_list.h"

namespace qv {

template <class Traits>
concept OwnedKind = requires(const typename Traits::Key& key, const typename Traits::Record& r) {
  { Traits::OwnerOfKey(key) } -> std::same_as<Owner>;
  { Traits::OwnerOfRecord(r) } -> std::same_as<Owner>;
};

template <class Traits>
class KeyedFamily {
 public:
  using Record = typename Traits::Record;
  using Key = typename Traits::Key;
  using List = ListOps<Record, Traits::kFree>;

  static Record* New() { return static_cast<Record*>(NewRecord(Traits::Schema())); }

  static Owner OwnerOf(const Key& key) {
    if constexpr (OwnedKind<Traits>) return Traits::OwnerOfKey(key);
    return Owner{};
  }
  static Owner OwnerOf(const Record& record) {
    if constexpr (OwnedKind<Traits>) return Traits::OwnerOfRecord(record);
    return Owner{};
  }

  static int ReadAll(const Owner& owner, RecordList** list_out, uint32_t mode) {
    if (!RequireOpenProfile()) return 0;
    return ReadKindList(Traits::Schema(), owner, mode, list_out) ? 1 : 0;
  }
  static int ReadAll(RecordList** list_out, uint32_t mode) {
    return ReadAll(Owner{}, list_out, mode);
  }

  // The cursor search: from the list's cursor to the next record with the
  // key (any record when the key is empty); 0 and a null record at the end.
  static int Find(const Key& key, RecordList* list, Record** record_out) {
    *record_out = nullptr;
    if (list == nullptr) return 0;
    const Key applied = Traits::ForList(list, key);
    for (;;) {
      Record* record = List::Next(list);
      *record_out = record;
      if (record == nullptr) return 0;
      if (Traits::IsEmpty(applied) || Traits::Matches(*record, applied)) return 1;
    }
  }

  static int Copy(Record** record_in_out, const Record* source, int mode, RecordList* list) {
    Record* stored = *record_in_out;
    Record* copy = New();
    if (copy == nullptr) return 0;
    *copy = *source;
    if (mode == 1 && stored != nullptr) {
      // The stored record keeps its identity: its key and where it was read.
      Traits::KeepIdentity(copy, *stored);
      copy->lineNumber = stored->lineNumber;
    }
    *record_in_out = copy;
    if (stored != nullptr && list != nullptr) List::ReplaceRecord(list, stored, copy);
    return 1;
  }

  // MPWrite<code>List: the list comes from the caller, so its records are
  // checked against their lines first.
  static int Write(const Owner& owner, RecordList* list) {
    if (!RequireLockedProfile()) return 0;
    if (!IsOrvikProfile() && !ListFitsLines(Traits::Schema(), list)) return 0;
    return WriteChecked(owner, list);
  }
  static int Write(RecordList* list) { return Write(Owner{}, list); }

  // The rewrite itself, for lists read from the file or checked on the way in.
  static int WriteChecked(const Owner& owner, RecordList* list) {
    if (!RequireLockedProfile()) return 0;
    if (IsOrvikProfile()) {
      ReportError(Traits::kNotForOrvik, 0);
      return 0;
    }
    if (!WriteKindSection(Traits::Schema(), owner, list)) return 0;
    Traits::AfterTextWrite(list);
    return 1;
  }

  static int Get(const Key& key, Record** record_out) {
    *record_out = nullptr;
    // Single records are served from the text store only.
    if (IsOrvikProfile()) return 0;
    RecordList* list = nullptr;
    if (!ReadAll(OwnerOf(key), &list, MODE_READ)) {
      List::Free(list);
      return 0;
    }
    Record* found = nullptr;
    int result = 0;
    list->current = nullptr;
    if (!Traits::IsEmpty(key) && Find(key, list, &found)) {
      result = Copy(record_out, found, 0, nullptr);
    }
    List::Free(list);
    return result;
  }

  // *written (when given) tells whether the file was rewritten, which the
  // result does not.
  // Each write below is one transaction in an Orvik profile: a delete with
  // its references, or a list of rows, lands whole or not at all.
  static int Put(Record* record, bool* written = nullptr) {
    return Transacted([&] { return PutAlone(record, written); });
  }
  static int PutCompleteList(RecordList* list) { return PutCompleteList(Owner{}, list); }
  static int PutCompleteList(const Owner& owner, RecordList* list) {
    return Transacted([&] { return PutCompleteListAlone(owner, list); });
  }
  static int Delete(const Key& key) {
    return Transacted([&] { return DeleteAlone(key); });
  }

  // The same without a transaction of their own.
  static int PutAlone(Record* record, bool* written) {
    if (written != nullptr) *written = false;
    if (!RequireLockedProfile()) return 0;
    if (!RecordFitsLine(Traits::Schema(), record)) return 0;
    if (IsOrvikProfile()) {
      if (OrvikRefusesKind(Traits::Schema())) return 0;
      if (!InsertRow(*record)) {
        ReportError(Traits::kInsertInto, 0);
        return 0;
      }
      Traits::AfterOrvikChange();
      if (written != nullptr) *written = true;
      return 1;
    }
    const Owner owner = OwnerOf(*record);
    if constexpr (requires { Traits::kPutStreams; }) {
      if (CanPutIntoSection(Traits::Schema())) return PutStreamed(owner, record, written);
    }
    RecordList* list = nullptr;
    if (!ReadAll(owner, &list, MODE_UPDATE)) {
      List::Free(list);
      return 0;
    }
    list->current = nullptr;
    Record* found = FindStored(Traits::KeyOf(*record), list, false);
    if (found != nullptr) {
      ReplaceStored(list, found, record);
    } else {
      AppendCopy(list, record);
    }
    list->current = nullptr;
    // The put has happened in memory; a failed rewrite was reported, and
    // the caller is told 1 as every family's put does.
    bool rewritten = WriteChecked(owner, list) == 1;
    if (written != nullptr) *written = rewritten;
    List::Free(list);
    return 1;
  }

  static int PutCompleteListAlone(const Owner& owner, RecordList* list) {
    // Deliberately no early return in the text store: the rewrite below
    // reports the missing lock again.
    bool locked = RequireLockedProfile();
    if (!ListFitsLines(Traits::Schema(), list)) return 0;
    if (IsOrvikProfile())
      return locked && !OrvikRefusesKind(Traits::Schema()) ? InsertAll(list) : 0;
    RecordList* stored = nullptr;
    if (!ReadAll(owner, &stored, MODE_UPDATE)) {
      List::Free(stored);
      return 0;
    }
    stored->current = nullptr;
    List::ForEach(list, [&](Record* record) {
      // The search goes on from the previous match, then once from the start.
      Record* found = FindStored(Traits::KeyOf(*record), stored, true);
      if (found != nullptr) {
        ReplaceStored(stored, found, record);
      } else {
        AppendCopy(stored, record);
      }
    });
    stored->current = nullptr;
    WriteChecked(owner, stored);
    List::Free(stored);
    return 1;
  }

  static int DeleteAlone(const Key& key) {
    if (!RequireLockedProfile()) return 0;
    if (!Traits::DeleteReferences(key)) {
      ReportError(Traits::kReferencesRemain, 0);
      return 0;
    }
    if (IsOrvikProfile()) {
      if (OrvikRefusesKind(Traits::Schema())) return 0;
      if (!Traits::Schema().orvik_deletes) {
        ReportError(Traits::kDeleteFailed, 0);
        return 0;
      }
      Record* scratch = New();
      if (scratch == nullptr) return 0;
      Traits::FillKey(scratch, key);
      bool deleted = false;
      for (const auto& members : Traits::OrvikKeyTries(key)) {
        deleted = DeleteOrvikRows(Traits::Schema(), scratch, members);
        if (deleted) break;
      }
      Traits::kFree(scratch);
      if (!deleted) {
        ReportError(Traits::kDeleteFailed, 0);
        return 0;
      }
      Traits::AfterOrvikChange();
      return 1;
    }
    if (Traits::IsEmpty(key)) return 0;
    const Owner owner = OwnerOf(key);
    RecordList* list = nullptr;
    if (!ReadAll(owner, &list, MODE_READ)) {
      List::Free(list);
      return 0;
    }
    Record* found = nullptr;
    list->current = nullptr;
    bool present = Find(key, list, &found) == 1;
    List::Free(list);
    if (!present) return 0;
    list = nullptr;
    if (!ReadAll(owner, &list, MODE_UPDATE)) {
      List::Free(list);
      return 0;
    }
    list->current = nullptr;
    // Which records the key names is settled once, before any goes.
    const Key applied = Traits::ForList(list, key);
    while (Find(applied, list, &found)) {
      UnlinkRecord(list, found);
      Traits::kFree(found);
    }
    WriteChecked(owner, list);
    List::Free(list);
    return 1;
  }

  // A copy of the stored record with the record's key, or nullptr.
  static Record* StoredCopy(const Record& record) {
    RecordList* list = nullptr;
    Record* copy = nullptr;
    if (ReadAll(OwnerOf(record), &list, MODE_READ)) {
      list->current = nullptr;
      Record* found = FindStored(Traits::KeyOf(record), list, false);
      if (found != nullptr) Copy(&copy, found, 0, nullptr);
    }
    List::Free(list);
    return copy;
  }

 private:
  // The stored record a put replaces. A record without a key replaces
  // nothing: it is added.
  // Put's work without a list of the section, for the kinds whose key
  // means the same whatever else the section holds: the same record is
  // replaced, or the record appended, as the list would have it.
  static int PutStreamed(const Owner& owner, const Record* record, bool* written) {
    const Key key = Traits::KeyOf(*record);
    // `replaces` compares the key's members alone.
    std::array<size_t, Traits::kParts> key_offsets;
    for (size_t i = 0; i < Traits::kParts; ++i) key_offsets[i] = Traits::Part(i).offset;
    bool rewritten = false;
    bool read = PutIntoSection(
        Traits::Schema(), owner, record,
        [&](const void* stored) {
          return !Traits::IsEmpty(key) && Traits::Matches(*static_cast<const Record*>(stored), key);
        },
        [](void* copy, const void* stored) {
          auto* replacing = static_cast<Record*>(copy);
          const auto& old = *static_cast<const Record*>(stored);
          Traits::KeepIdentity(replacing, old);
          replacing->lineNumber = old.lineNumber;
        },
        &rewritten, key_offsets);
    if (written != nullptr) *written = rewritten;
    return read ? 1 : 0;
  }

  static Record* FindStored(const Key& key, RecordList* list, bool retry_from_start) {
    if (Traits::IsEmpty(key)) return nullptr;
    Record* found = nullptr;
    if (Find(key, list, &found)) return found;
    if (!retry_from_start) return nullptr;
    list->current = nullptr;
    Find(key, list, &found);
    return found;
  }

  static void ReplaceStored(RecordList* list, Record* stored, const Record* source) {
    Record* record = stored;
    Copy(&record, source, 1, list);
  }

  static void AppendCopy(RecordList* list, const Record* source) {
    Record* record = nullptr;
    if (Copy(&record, source, 0, nullptr)) List::Append(list, record);
  }

  // A put in the database is a plain insert of the row as given: no key is
  // assigned and no row with the same key is removed first.
  // A kind the database reads and deletes but does not take rows of fails
  // as an insert would.
  static bool InsertRow(const Record& record) {
    if (Traits::Schema().kind->orvik_insert && InsertOrvikRow(Traits::Schema(), &record)) {
      return true;
    }
    ReportError(Traits::kInsertIn, 0);
    return false;
  }

  static int InsertAll(RecordList* list) {
    bool all = true;
    List::ForEach(list, [&](Record* record) {
      if (InsertRow(*record)) return true;
      ReportError(Traits::kInsertInto, 0);
      all = false;
      return false;
    });
    Traits::AfterOrvikChange();
    return all ? 1 : 0;
  }
};

}  // namespace qv

#endif  // QUORVEX_RECORDS_KEYED_FAMILY_H_
