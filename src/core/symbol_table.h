// Tables of symbolic values: Win32 constants and the profile's own type codes
// that settings records spell by name.
//
// Each kind of value is one table of {name, value} rows plus a descriptor
// that says how a text is read and how a value is written. Every public
// Parse.../Write...Field operation is a thin call on the one generic pair
// below, so a table is changed by changing its data only.
#ifndef QUORVEX_CORE_SYMBOL_TABLE_H_
#define QUORVEX_CORE_SYMBOL_TABLE_H_

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "quorvex/base.h"

namespace qv {

struct Symbol {
  const char* name;
  uint32_t value;
};

// How a text becomes a value.
enum class SymbolReading {
  kOneName,    // the whole text is one name; unknown: value 0 and failure
  kNamesOred,  // names separated by blanks or commas, each ORed into the value
};

// How a value becomes field text.
enum class SymbolWriting {
  kFirstName,        // the first row holding exactly the value; one field
  kContainedNames,   // every rule whose bits the value holds, "NAME " each; one field
  kContainedFields,  // every rule whose bits the value holds, a field each, then an empty field
};

// One step of a containment writer. A rule writes its name when the value
// holds every bit of `bits` (never for 0) and does not hold every bit of
// `unless` (when that is non-zero). A replacing rule throws away the text
// written before it.
struct SymbolWriteRule {
  const char* name;
  uint32_t bits;
  uint32_t unless = 0;
  bool replaces = false;
};

struct SymbolTable {
  const char* name;         // how the tool names the table
  const char* description;  // one line for the tool's listing
  std::span<const Symbol> symbols;
  SymbolReading reading;
  SymbolWriting writing;
  // The containment writer's steps in order; empty: each row of `symbols`.
  std::span<const SymbolWriteRule> write_rules;
  // Reported with the parse position when a name is unknown; "%s" stands
  // for the name.
  const char* read_message;
  // Reported with the parse position when a value has no name; nullptr: the
  // value is written as an empty field without a word.
  const char* write_message;
  bool force_quotes;  // the field is quoted whatever the caller's options
  bool shown_in_hex;  // a handle, mask or bit set rather than a count
};

extern const SymbolTable kRegRootKeyTable;
extern const SymbolTable kRegDataTypeTable;
extern const SymbolTable kPSDataTypeTable;
extern const SymbolTable kRegOptionTable;
extern const SymbolTable kRegAccessTable;
extern const SymbolTable kShowCommandTable;
extern const SymbolTable kHotKeyTable;

// Every table, in the order the tool lists them.
std::span<const SymbolTable* const> SymbolTables();
// The table of that tool name (ASCII case ignored), or nullptr.
const SymbolTable* FindSymbolTable(const char* name);

// Reads the name (or names) of `text` into *value. kOneName sets *value
// (0 for an unknown name); kNamesOred ORs into it and stops at the first
// unknown name. False, reported, for an unknown name.
bool ReadSymbols(const SymbolTable& table, const char* text, uint32_t* value);

// Spells the value as the texts of the fields that the table writes for it.
// False, reported when the table has a message, when the value has no name;
// the fields then hold one empty text.
bool WriteSymbols(const SymbolTable& table, uint32_t value, std::vector<std::string>* fields);

// Appends the bytes WriteField writes for the fields of WriteSymbols; true
// when the value had a name. The caller's options belong to the group as if
// it were one field: the ";IAO;" marker goes before the first field and the
// record end after the last.
bool AppendSymbolFields(const SymbolTable& table, uint32_t value, uint32_t options,
                        std::string* out);

}  // namespace qv

#endif  // QUORVEX_CORE_SYMBOL_TABLE_H_
