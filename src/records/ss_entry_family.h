// The operations of a settings-entry kind (IE, RE, PE) or a created-entry
// kind (CIE, CRE, CPE): records known within their module by Name, kept in
// a section their kind shares with two others.
#ifndef QUORVEX_RECORDS_SS_ENTRY_FAMILY_H_
#define QUORVEX_RECORDS_SS_ENTRY_FAMILY_H_

#include <cstdint>

#include "quorvex/list.h"
#include "records/kind_schema.h"
#include "records/ss_entry_lines.h"

namespace qv {

class EntryFamily {
 public:
  EntryFamily(const EntryKind& kind, const KindSchema& schema) : kind_(kind), schema_(schema) {}

  const EntryKind& kind() const { return kind_; }
  const KindSchema& schema() const { return schema_; }

  void* New() const;
  int ReadAll(const char* module, const char* key2, RecordList** list_out, uint32_t mode) const;
  int Get(const char* module, const char* key2, const char* name, void** record_out) const;
  // Puts a copy in the module the record names; a name generated for it
  // is copied back into the record.
  int Put(void* record) const;
  // As Put, with the module's section read into a list and written back
  // from it: the form a put takes where the section cannot stream.
  int PutThroughList(void* record) const;
  int PutCompleteList(const char* module, const char* key2, RecordList* list) const;
  int Delete(const char* module, const char* key2, const char* name) const;
  // From the list's cursor to the next record of the module with the name
  // (any record when the name is empty or NULL).
  int Find(const char* module, const char* key2, const char* name, RecordList* list,
           void** record_out) const;
  int Copy(void** record_in_out, const void* source, int mode, RecordList* list) const;

 private:
  // What a read gives back for what the record holds (the default access,
  // no leading backslashes, ...), so that a put is checked as it is stored.
  void Normalise(void* record) const;
  int PutAs(void* record, bool streams) const;
  // A copy that takes a stored record's place keeps its module, name and
  // line.
  void KeepIdentity(void* copy, const void* stored) const;
  bool Matches(const void* record, const char* module, const char* key2, const char* name) const;

  const EntryKind& kind_;
  const KindSchema& schema_;
};

const EntryFamily& ReFamily();
const EntryFamily& PeFamily();
const EntryFamily& IeFamily();
const EntryFamily& CreFamily();
const EntryFamily& CpeFamily();
const EntryFamily& CieFamily();

// The body every settings entry is inserted with on a database profile
// (the kind "SSR"), and that of created entries ("CSSR").
const KindSchema& SsrBodySchema();
const KindSchema& CssrBodySchema();

}  // namespace qv

#endif  // QUORVEX_RECORDS_SS_ENTRY_FAMILY_H_
