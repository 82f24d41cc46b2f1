// What the kinds kept in a product's, an install's or a module group's
// file share: their schema's start (the owner's key first in the row),
// their Orvik texts by code, the C operations stamped out per kind, and
// the owners that have a file in the open profile.
#ifndef QUORVEX_RECORDS_OWNER_KINDS_H_
#define QUORVEX_RECORDS_OWNER_KINDS_H_

#include <string>
#include <utility>
#include <vector>

#include "records/kind_api.h"
#include "records/owned_kind_family.h"
#include "records/record_list.h"
#include "records/text_key_family.h"

namespace qv {

// The start of a contained kind's schema: its row, whose first members are
// the owner's key (Desc::kOwnerMembers), filled from the file.
template <class Desc>
KindSchema OwnerRecordSchema(const char* code, std::vector<MemberSpec> owner_members,
                             const char* missing_file_message) {
  KindSchema schema = RowRecordSchema<typename Desc::Record>(code);
  schema.members = std::move(owner_members);
  schema.set_owner = &OwnedKindTraits<Desc>::SetOwnerOf;
  schema.missing_file_message = missing_file_message;
  return schema;
}

// The name (and version, "" for installs) of every owner that has a file
// of that catalogue kind in the open profile, read from the first line of
// its identity section; none in an Orvik profile.
std::vector<std::pair<std::string, std::string>> ProfileFileOwners(const char* file_kind,
                                                                   const char* section,
                                                                   bool with_version);

// Deletes the database rows the key names straight from the table: a
// database without the table, or without such rows, has nothing that
// refers, which is no failure.
template <class Family>
bool DeleteRowsQuietly(const typename Family::Key& key) {
  using Traits = OwnedKindTraits<typename Family::Desc>;
  auto* scratch = Family::New();
  if (scratch == nullptr) return false;
  Traits::FillKey(scratch, key);
  DeleteOrvikRows(Family::Schema(), scratch, Traits::OrvikKeyTries(key).front());
  Traits::kFree(scratch);
  return true;
}

// Deletes the records that the key names (its owner left out) in every
// owner's file: the database in one step, the text store owner by owner.
template <class Family>
bool DeleteInEveryOwner(typename Family::Key key, const char* file_kind, const char* section) {
  constexpr bool kTwoParts = OwnedKindTraits<typename Family::Desc>::kOwnerParts > 1;
  if (IsOrvikProfile()) {
    key.module_name = nullptr;
    key.module_version = nullptr;
    return DeleteRowsQuietly<Family>(key);
  }
  bool ok = true;
  for (const auto& [name, version] : ProfileFileOwners(file_kind, section, kTwoParts)) {
    key.module_name = name.c_str();
    key.module_version = version.c_str();
    bool read = false;
    if (Family::AnyMatch(key, &read)) {
      ok = Family::Delete(key) == 1 && ok;
    } else {
      ok = read && ok;
    }
  }
  return ok;
}

}  // namespace qv

// The Orvik texts of a contained kind, by its code.
#define QV_OWNED_KIND_TEXTS(code)                                                            \
  static constexpr const char* kInsertIn =                                                   \
      "Cannot insert " code " record in Orvik shipping profile";                             \
  static constexpr const char* kInsertInto =                                                 \
      "Cannot insert " code " record into Orvik shipping profile";                           \
  static constexpr const char* kDeleteFailed =                                               \
      "Cannot delete " code " record from Orvik shipping profile";                           \
  static constexpr const char* kNotForOrvik = code "s not implemented in QUORVEX for Orvik"; \
  static constexpr const char* kReferencesRemain =                                           \
      "Cannot delete all references to this " code ", therefore cannot delete it.";

// New, Free, the list operations, the owner's complete list read and
// written, Put and the flag table of a kind F kept in a product's or a
// module group's file (owner: name and version).
#define QV_DEFINE_OWNER_CONTENT_OPERATIONS(code, F)                              \
  QV_DEFINE_LIST_OPERATIONS(code, code##Record, MPFree##code)                    \
  extern "C" {                                                                   \
  int MPNew##code(code##Record** recordOut) {                                    \
    *recordOut = F::New();                                                       \
    return *recordOut != nullptr ? 1 : 0;                                        \
  }                                                                              \
  int MPFree##code(code##Record* record) {                                       \
    ::qv::FreeRecord(record);                                                    \
    return 1;                                                                    \
  }                                                                              \
  int MPGet##code##CompleteList(const char* ownerName, const char* ownerVersion, \
                                code##List** listOut, uint32_t mode) {           \
    return F::ReadAll(ownerName, ownerVersion, listOut, mode);                   \
  }                                                                              \
  int MPPut##code##CompleteList(const char* ownerName, const char* ownerVersion, \
                                code##List* list) {                              \
    return F::PutCompleteList(ownerName, ownerVersion, list);                    \
  }                                                                              \
  int MPPut##code(code##Record* record) {                                        \
    return F::Put(record);                                                       \
  }                                                                              \
  int MPGet##code##FlagNames(code##FlagNames** tableOut) {                       \
    *tableOut = ::qv::NewFlagNames(F::Schema());                                 \
    return 1;                                                                    \
  }                                                                              \
  }

// The same for a kind kept in an install's file (owner: the name alone).
#define QV_DEFINE_INSTALL_CONTENT_OPERATIONS(code, F)                                           \
  QV_DEFINE_LIST_OPERATIONS(code, code##Record, MPFree##code)                                   \
  extern "C" {                                                                                  \
  int MPNew##code(code##Record** recordOut) {                                                   \
    *recordOut = F::New();                                                                      \
    return *recordOut != nullptr ? 1 : 0;                                                       \
  }                                                                                             \
  int MPFree##code(code##Record* record) {                                                      \
    ::qv::FreeRecord(record);                                                                   \
    return 1;                                                                                   \
  }                                                                                             \
  int MPGet##code##CompleteList(const char* installName, code##List** listOut, uint32_t mode) { \
    return F::ReadAll(installName, "", listOut, mode);                                          \
  }                                                                                             \
  int MPPut##code##CompleteList(const char* installName, code##List* list) {                    \
    return F::PutCompleteList(installName, "", list);                                           \
  }                                                                                             \
  int MPPut##code(code##Record* record) {                                                       \
    return F::Put(record);                                                                      \
  }                                                                                             \
  int MPGet##code##FlagNames(code##FlagNames** tableOut) {                                      \
    *tableOut = ::qv::NewFlagNames(F::Schema());                                                \
    return 1;                                                                                   \
  }                                                                                             \
  }

#endif  // QUORVEX_RECORDS_OWNER_KINDS_H_
