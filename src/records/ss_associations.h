// What ties settings records to a module and to its shipped files: four
// kinds of one-line associations, each in its section of the module's
// settings file, known within the module by the record name (and the
// shipped file's key).
#ifndef QUORVEX_RECORDS_SS_ASSOCIATIONS_H_
#define QUORVEX_RECORDS_SS_ASSOCIATIONS_H_

#include <array>

#include "quorvex/settings.h"
#include "records/owned_kind_family.h"

namespace qv {

// A Desc of owned_kind_family.h for an association kind.
template <class RecordT, size_t N>
struct AssociationDesc {
  using Record = RecordT;
  static constexpr std::array<const char*, 2> kOwnerMembers = {"ModuleName", "ModuleKey2"};
  static constexpr std::array<const char*, 2> kOwnerLabels = {"module", "version"};
  static bool DeleteReferences(const OwnedKey<N>&) { return true; }
};

// An association kind's operations. A complete list replaces its section
// as given (the database takes each row as an insert), rather than being
// merged into the stored records.
template <class Desc>
struct AssociationFamily : OwnedKindFamily<Desc> {
  using Base = OwnedKindFamily<Desc>;
  static int PutCompleteList(const char* module, const char* key2, RecordList* list) {
    if (IsOrvikProfile()) return Base::PutCompleteList(module, key2, list);
    Base::List::ForEach(
        list, [&](typename Desc::Record* r) { OwnedKindTraits<Desc>::SetOwner(r, module, key2); });
    return Base::Write(module, key2, list);
  }
};

#define QV_ASSOCIATION_DESC(code, N, ...)                                                       \
  struct code##Desc : AssociationDesc<code##Record, N> {                                        \
    static constexpr auto kFree = &MPFree##code;                                                \
    static constexpr std::array<const char*, N> kKeyMembers = {__VA_ARGS__};                    \
    static constexpr const char* kInsertIn =                                                    \
        "Cannot insert " #code " record in Orvik shipping profile";                             \
    static constexpr const char* kInsertInto =                                                  \
        "Cannot insert " #code " record into Orvik shipping profile";                           \
    /* Every association's delete names MO, as it always has. */                                \
    static constexpr const char* kDeleteFailed =                                                \
        "Cannot delete MO record from Orvik shipping profile";                                  \
    static constexpr const char* kNotForOrvik = #code "s not implemented in QUORVEX for Orvik"; \
    static constexpr const char* kReferencesRemain =                                            \
        "Cannot delete all references to this " #code ", therefore cannot delete it.";          \
    static const KindSchema& Schema();                                                          \
    static int Put(code##Record* record, bool* written);                                        \
  };                                                                                            \
  using code##Family = AssociationFamily<code##Desc>;

QV_ASSOCIATION_DESC(MOSR, 1, "SSRName")
QV_ASSOCIATION_DESC(SFSR, 4, "Language", "GroupName", "FileName", "SSRName")
QV_ASSOCIATION_DESC(MOCR, 1, "CSSRName")
QV_ASSOCIATION_DESC(SFCR, 4, "Language", "GroupName", "FileName", "CSSRName")

#undef QV_ASSOCIATION_DESC

}  // namespace qv

#endif  // QUORVEX_RECORDS_SS_ASSOCIATIONS_H_
