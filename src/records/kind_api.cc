#include "records/kind_api.h"

#include <strings.h>

#include <cstdio>
#include <cstdlib>

#include "records/devkey_family.h"
#include "records/filegroup_families.h"
#include "records/language_lists.h"
#include "records/location_family.h"
#include "records/resource_family.h"
#include "records/top_kinds.h"

namespace qv {

const std::vector<const KindApi*>& AllKindApis() {
  static const std::vector<const KindApi*> apis = {
      &AdKindApi(), &LoKindApi(), &IlKindApi(), &ResourceKindApi(), &StringKindApi(),
      &RemoveStringKindApi(), &SlaKindApi(), &DlaKindApi(), &OslaKindApi(), &AilaKindApi(),
      &OsdlKindApi(), &UnfoKindApi(), &DrkKindApi(), &DrkprKindApi(), &DvprKindApi(),
      &ModuleKindApi(), &MdepKindApi(), &MlKindApi(), &MdlKindApi(), &MlaKindApi(), &CfKindApi(),
      &IiKindApi(), &IilKindApi(), &FgKindApi(), &SfKindApi(), &FgdKindApi(), &FgaKindApi(),
      // Products, installs and module groups, and what their files hold.
      &ProductKindApi(), &MpKindApi(), &PmKindApi(), &InstallKindApi(), &DpKindApi(),
      &DslaKindApi(), &IlaKindApi(), &AmlKindApi(), &DaKindApi(), &SmKindApi(), &ArKindApi(),
      &AmlaKindApi(), &DmgKindApi(), &DodlKindApi(), &DmKindApi(), &ModuleGroupKindApi(),
      &MgmKindApi(),
      // Settings files and the development-key index.
      &IeKindApi(), &ReKindApi(), &PeKindApi(), &CieKindApi(), &CreKindApi(), &CpeKindApi(),
      &MosrKindApi(), &SfsrKindApi(), &MocrKindApi(), &SfcrKindApi(), &DrkssrKindApi(),
      &DrkcssrKindApi()};
  return apis;
}

const KindApi* FindKindApi(const std::string& code) {
  for (const KindApi* api : AllKindApis()) {
    if (strcasecmp(api->schema->kind->code, code.c_str()) == 0) return api;
  }
  return nullptr;
}

QvFlagNames* NewFlagNames(const KindSchema& schema) {
  auto* table = static_cast<QvFlagNames*>(calloc(1, sizeof(QvFlagNames)));
  if (table == nullptr) return nullptr;
  snprintf(table->kindLabel, sizeof table->kindLabel, "%s", schema.flag_label);
  for (int i = 0; i < 32; ++i) {
    if (schema.bit_names[i] != nullptr) {
      snprintf(table->bitNames[i], sizeof table->bitNames[i], "%s", schema.bit_names[i]);
    }
  }
  table->flagMask = schema.flag_mask;
  return table;
}

}  // namespace qv

extern "C" void MPFreeFlagNames(QvFlagNames* table) {
  free(table);
}
