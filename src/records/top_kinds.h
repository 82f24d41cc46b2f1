// Products, installs and module groups: the kinds whose records own a
// file, the kinds kept in those files, and what their deletes reach.
#ifndef QUORVEX_RECORDS_TOP_KINDS_H_
#define QUORVEX_RECORDS_TOP_KINDS_H_

#include <string>

#include "records/kind_api.h"

namespace qv {

// The file-owning kinds' entries for the tool.
const KindApi& ProductKindApi();
const KindApi& InstallKindApi();
const KindApi& ModuleGroupKindApi();
// The kinds kept in their files.
const KindApi& MpKindApi();
const KindApi& PmKindApi();
const KindApi& MgmKindApi();
const KindApi& DpKindApi();
const KindApi& DslaKindApi();
const KindApi& IlaKindApi();
const KindApi& AmlKindApi();
const KindApi& DaKindApi();
const KindApi& SmKindApi();
const KindApi& ArKindApi();
const KindApi& AmlaKindApi();
const KindApi& DmgKindApi();
const KindApi& DodlKindApi();
const KindApi& DmKindApi();

// The references a delete reaches. A product's module and sub-product
// rows and an install's or a module group's owned rows are the database's
// only: in a Master Profile they go with the owner's file.
bool DeleteProductRows(const char* name, const char* version);
bool DeleteInstallProductsOfProduct(const char* name, const char* version);
bool DeleteInstallRows(const char* name);
bool DeleteModuleGroupRows(const char* name, const char* version);
bool DeleteInstallModuleGroupsOfGroup(const char* name, const char* version);

}  // namespace qv

#endif  // QUORVEX_RECORDS_TOP_KINDS_H_
