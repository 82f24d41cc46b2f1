// The association records that refer to records of another kind, reached
// from the kind that is deleted or changed. The association families fill
// these in; until a family exists there are no such records to follow.
#ifndef QUORVEX_RECORDS_REFERENCE_HOOKS_H_
#define QUORVEX_RECORDS_REFERENCE_HOOKS_H_

#include <cstdint>

namespace qv {

// The modes of MPUpdate<code>References: delete the records that refer, or
// make them refer to the new key.
constexpr uint32_t kDeleteReferences = 0x80000000u;
constexpr uint32_t kUpdateReferences = 0x20000000u;

// Driver Ads (install file, "Install Ads") and File Group Ads (module file,
// "File Group Ads") that name an Ad.
bool DeleteDriverAdsOfAd(uint32_t ad_id);
bool DeleteFileGroupAdsOfAd(uint32_t ad_id);
bool UpdateDriverAdsOfAd(uint32_t ad_id, uint32_t mode, uint32_t new_value);
bool UpdateFileGroupAdsOfAd(uint32_t ad_id, uint32_t mode, uint32_t new_value);

// Module Locations (module file, "Module Locations") that name a location,
// and Installed Icon Locations (module file, "Installed Icon Locations")
// that name an icon location. mode 0x80000000 deletes them, 0x20000000 makes
// them name (new_name, new_version) instead.
bool UpdateModuleLocationsOfLocation(const char* name, const char* version, uint32_t mode,
                                     const char* new_name, const char* new_version);
bool UpdateInstalledIconLocationsOfIconLocation(const char* name, uint32_t mode,
                                                const char* new_name);

// A module born from a parent: its file groups and shipped files get fresh
// copies of the texts they name, so that the child shares none with the
// parent.
bool RenewBornModuleTexts(const char* module_name, const char* module_version);

// The records of other kinds that name a module, deleted with it: file
// groups of other modules that require its groups (FGD), install and
// product records (AMLA, AML, PM) and other modules' required modules
// (MDEP) name it by name and version.
bool DeleteFileGroupRequirementsOfModule(const char* module_name, const char* module_version);
bool DeleteInstallReferencesToModule(const char* module_name, const char* module_version);
bool DeleteProductModulesOfModule(const char* module_name, const char* module_version);
bool DeleteRequiredModuleReferences(const char* module_name, const char* module_version);

// Settings records that name a shipped file by its module, group, file
// name and language (NULL parts match any value): the shipped-file
// settings and created-settings records. Deleted with the file, renamed
// with it; the query says whether any refers to it.
bool DeleteSettingsOfShippedFile(const char* module_name, const char* module_version,
                                 const char* group, const char* file_name, const char* language);
bool RenameSettingsOfShippedFile(const char* module_name, const char* module_version,
                                 const char* group, const char* file_name, const char* language,
                                 const char* new_group, const char* new_file_name,
                                 const char* new_language);
// The module's own settings records (module settings), which a database
// profile holds apart from the module; deleted with the module.
bool DeleteSettingsOfModule(const char* module_name, const char* module_version);
bool SettingsReferToShippedFile(const char* module_name, const char* module_version,
                                const char* group, const char* file_name, const char* language);

}  // namespace qv

#endif  // QUORVEX_RECORDS_REFERENCE_HOOKS_H_
