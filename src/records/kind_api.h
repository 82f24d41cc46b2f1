// Every kind's operations behind one shape, for hosts that work on kinds
// they learn at run time (the quorvex tool): keys and owners as texts,
// records as untyped pointers described by the kind's schema.
#ifndef QUORVEX_RECORDS_KIND_API_H_
#define QUORVEX_RECORDS_KIND_API_H_

#include <functional>
#include <string>
#include <vector>

#include "quorvex/list.h"
#include "quorvex/records.h"
#include "records/kind_schema.h"

namespace qv {

using Texts = std::vector<std::string>;

struct KindApi {
  const KindSchema* schema;
  std::vector<const char*> owner_names;  // what `list` needs first ("language", ...)
  std::vector<const char*> key_names;    // what `get` and `delete` take ("id", ...)
  std::function<bool(const Texts& owner, RecordList** list)> list;
  // A copy of one record, or false.
  std::function<bool(const Texts& key, void** record)> get;
  // Puts a record (it may receive its id); the record stays the caller's.
  std::function<bool(void* record)> put;
  // Puts a record born from a parent record of the kind (a copy of the
  // parent's file with texts of its own); unset for kinds without births.
  std::function<bool(void* record, const void* parent)> put_child;
  // For tools that rebuild a profile: makes the file that a record of a
  // file-owning kind names (as the kind's header template) when the profile
  // has no file of that name, so that the put keeps the name. Unset for
  // other kinds.
  std::function<bool(const void* record)> make_named_file;
  std::function<bool(const Texts& key)> remove;
  std::function<bool(QvFlagNames** table)> flag_names;
  // After a put, the stored record that the put wrote (found by the
  // record's keys), as a copy, or nullptr.
  std::function<void*(const void* record)> stored;
  // After a refused put: what the host may add in plain words to the
  // engine's message ("" or unset: nothing).
  std::function<std::string(const void* record)> put_refusal;
};

const std::vector<const KindApi*>& AllKindApis();
// The operations of the kind with that code (without regard to case).
const KindApi* FindKindApi(const std::string& code);

// The flag table of a kind, filled from its schema; nullptr when memory is
// short.
QvFlagNames* NewFlagNames(const KindSchema& schema);

// Each family's entry.
const KindApi& AdKindApi();
const KindApi& ModuleKindApi();
const KindApi& MdepKindApi();
const KindApi& MlKindApi();
const KindApi& MdlKindApi();
const KindApi& MlaKindApi();
const KindApi& CfKindApi();
const KindApi& IiKindApi();
const KindApi& IilKindApi();
// Settings files: entries, created entries, associations, the index.
const KindApi& IeKindApi();
const KindApi& ReKindApi();
const KindApi& PeKindApi();
const KindApi& CieKindApi();
const KindApi& CreKindApi();
const KindApi& CpeKindApi();
const KindApi& MosrKindApi();
const KindApi& SfsrKindApi();
const KindApi& MocrKindApi();
const KindApi& SfcrKindApi();
const KindApi& DrkssrKindApi();
const KindApi& DrkcssrKindApi();

}  // namespace qv

#endif  // QUORVEX_RECORDS_KIND_API_H_
