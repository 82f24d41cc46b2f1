// What the commands on records of a kind share: finding the kind, checking
// keys and owners, printing records, and refusing to rewrite broken files.
#ifndef QUORVEX_TOOLS_KIND_SUPPORT_H_
#define QUORVEX_TOOLS_KIND_SUPPORT_H_

#include <string>
#include <vector>

#include "command.h"
#include "records/kind_api.h"

namespace qvtool {

// The kind with that code, or nullptr after naming the known ones.
const qv::KindApi* KindOrUsage(const std::string& code);

// How a key or owner is written in a usage line: LANGUAGE, ID, NAME.
std::string Placeholder(const char* name);
// "LANGUAGE NAME (LANGUAGE: a language code such as US)" for the command.
std::string KeyUsage(const std::vector<const char*>& names);

// False, after saying what the command takes, when the keys do not fit.
bool KeysFit(const std::string& command, const qv::KindApi& api,
             const std::vector<std::string>& keys);
bool OwnersFit(const std::string& command, const qv::KindApi& api,
               const std::vector<std::string>& owner);

// For kinds kept in one file per owner: false, after saying so, when the
// open profile has no file for that owner (an unknown language).
bool OwnerExists(const GlobalOptions& options, const qv::KindApi& api, const std::string& owner);

// The owner (the language) that picks the file of a record; empty for kinds
// without one.
std::string OwnerOf(const qv::KindApi& api, const void* record);

// A file that does not read as written is not rewritten unless --force.
bool MayRewrite(const GlobalOptions& options, const qv::KindApi& api, const std::string& owner);

// Records as a table (verbose: with the members that place them in their
// file) or, with --json, as objects.
void PrintRecords(const GlobalOptions& options, const qv::KindSchema& schema,
                  const std::vector<const void*>& records, bool as_array, bool verbose);

// After a put: says so when the stored record kept an id or name other
// than the one given (a put that replaces a record keeps its identity).
void NoteKeptIdentity(const qv::KindSchema& schema, const void* given, const void* stored);

// Puts the records (after MayRewrite for each file they go to), each born
// from parent when one is given, and prints what was stored. False when any
// put failed.
bool PutRecords(const GlobalOptions& options, const qv::KindApi& api,
                const std::vector<void*>& records, bool as_array, const void* parent = nullptr);

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_KIND_SUPPORT_H_
