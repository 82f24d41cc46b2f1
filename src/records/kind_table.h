// The table of all record kinds: what each kind is called, where its
// records live, and what the Orvik store does with it.
#ifndef QUORVEX_RECORDS_KIND_TABLE_H_
#define QUORVEX_RECORDS_KIND_TABLE_H_

#include <vector>

namespace qv {

// Where the records of a kind live in a Master Profile.
enum class KindFile {
  kFixed,        // one catalogue file for the whole profile (file_kind names it)
  kModule,       // the module's own file
  kProduct,      // the product's own file
  kInstall,      // the install's own file
  kModuleGroup,  // the module group's own file
  kSettings,     // the module's settings file
  kLanguage,     // one file per language
  kUnsettled,    // left to the family
};

struct KindInfo {
  const char* code;
  // The label in "Cannot begin to Query Orvik Database for %s"; several
  // kinds borrow another kind's label, and that is kept.
  const char* query_label;
  const char* section;
  KindFile file;
  const char* file_kind;  // the catalogue kind ("AD", "MO", "LO", ...), "" when unsettled
  bool orvik_read;
  bool orvik_insert;
  bool orvik_delete;
  // Why the Orvik store refuses the kind, or nullptr.
  const char* orvik_refusal;
  // Why the Orvik store refuses a complete-list put, or nullptr.
  const char* orvik_no_complete_list;
  // Why the Orvik store refuses a delete, or nullptr.
  const char* orvik_no_delete;
};

const std::vector<KindInfo>& AllKindInfo();
// The kind with this code (without regard to case), or nullptr.
const KindInfo* FindKindInfo(const char* code);

}  // namespace qv

#endif  // QUORVEX_RECORDS_KIND_TABLE_H_
