// The kinds an install's file holds besides the install itself: its
// products (DP), shipping languages (DSLA), interface languages (ILA),
// alias module languages (AML), ads (DA), shipping media (SM), archives
// (AR), archive module languages (AMLA), module groups (DMG) and OS
// document languages (DODL); and its modules (DM), which only the database
// holds. Each row starts with the install's name, its one key part.
#ifndef QUORVEX_RECORDS_INSTALL_FAMILIES_H_
#define QUORVEX_RECORDS_INSTALL_FAMILIES_H_

#include <array>

#include "quorvex/installs.h"
#include "records/owner_kinds.h"

namespace qv {

struct InstallOwned {
  static constexpr std::array<const char*, 1> kOwnerMembers = {"InstallName"};
  static constexpr std::array<const char*, 1> kOwnerLabels = {"install"};
};

// One description per kind: its record, key members and schema.
#define QV_INSTALL_DESC(Name, code, ...)                                               \
  struct Name : InstallOwned {                                                         \
    using Record = code##Record;                                                       \
    static constexpr auto kFree = &MPFree##code;                                       \
    static constexpr auto kKeyMembers = std::to_array<const char*>(__VA_ARGS__);       \
    QV_OWNED_KIND_TEXTS(#code)                                                         \
    static const KindSchema& Schema();                                                 \
    static bool DeleteReferences(const OwnedKey<kKeyMembers.size()>&) { return true; } \
    static int Put(Record* record, bool* written);                                     \
  };

QV_INSTALL_DESC(DpDesc, DP, {"ProductName", "ProductVersion"})
QV_INSTALL_DESC(DslaDesc, DSLA, {"LanguageCode"})
QV_INSTALL_DESC(IlaDesc, ILA, {"LanguageCode"})
QV_INSTALL_DESC(AmlDesc, AML, {"LanguageCode", "ModuleName", "ModuleVersion", "AliasLanguageCode"})
QV_INSTALL_DESC(DaDesc, DA, {"AdId"})
QV_INSTALL_DESC(SmDesc, SM, {"MediaNumber"})
QV_INSTALL_DESC(ArDesc, AR, {"ArchiveName"})
QV_INSTALL_DESC(AmlaDesc, AMLA, {"ArchiveName", "ModuleName", "ModuleVersion", "LanguageCode"})
QV_INSTALL_DESC(DmgDesc, DMG, {"GroupName", "GroupVersion"})
QV_INSTALL_DESC(DodlDesc, DODL, {"OSLanguageCode", "DocLanguageCode"})
QV_INSTALL_DESC(DmDesc, DM, {"ModuleName", "ModuleVersion"})

#undef QV_INSTALL_DESC

using DpFamily = OwnedKindFamily<DpDesc>;
using DslaFamily = OwnedKindFamily<DslaDesc>;
using IlaFamily = OwnedKindFamily<IlaDesc>;
using AmlFamily = OwnedKindFamily<AmlDesc>;
using DaFamily = OwnedKindFamily<DaDesc>;
using SmFamily = OwnedKindFamily<SmDesc>;
using ArFamily = OwnedKindFamily<ArDesc>;
using AmlaFamily = OwnedKindFamily<AmlaDesc>;
using DmgFamily = OwnedKindFamily<DmgDesc>;
using DodlFamily = OwnedKindFamily<DodlDesc>;
using DmFamily = OwnedKindFamily<DmDesc>;

// The key of an install's records from the install's name (NULL: every
// install) and the kind's key parts.
template <class Family, class... Parts>
typename Family::Key InstallKey(const char* install, Parts... parts) {
  return typename Family::Key{install, "", {KeyPart(parts)...}};
}

// Deletes what the key names in its install, or in every install when the
// key names none.
template <class Family>
int DeleteInInstalls(const typename Family::Key& key) {
  if (key.module_name != nullptr) return Family::Delete(key);
  return DeleteInEveryOwner<Family>(key, "IN", "Install") ? 1 : 0;
}

}  // namespace qv

#endif  // QUORVEX_RECORDS_INSTALL_FAMILIES_H_
