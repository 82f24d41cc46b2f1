// The lines of settings entries (INI, REG and PS) and of created entries:
// three kinds share each section, told apart by the tag in their second
// field, and their values are spelled as registry names and hex pairs.
#ifndef QUORVEX_RECORDS_SS_ENTRY_LINES_H_
#define QUORVEX_RECORDS_SS_ENTRY_LINES_H_

#include <cstdint>
#include <string>
#include <vector>

#include "quorvex/base.h"
#include "quorvex/settings.h"

namespace qv {

enum class EntryShape { kReg, kPs, kIni };

struct EntryKind {
  const char* code;  // "RE", "CRE", ...
  const char* tag;   // "REG", "PS", "INI"
  uint8_t type;      // SSR_TYPE_*
  EntryShape shape;
  bool created;          // a created entry (CSSRRecord), else SSRRecord
  const char* section;   // "System-Settings Records" or "Created System-Settings"
  const char* mismatch;  // "Requested type is REG.  Type of record is not an REG."
};

const EntryKind& ReEntry();
const EntryKind& PeEntry();
const EntryKind& IeEntry();
const EntryKind& CreEntry();
const EntryKind& CpeEntry();
const EntryKind& CieEntry();

// The name and tag of a line; false when they do not read (quietly).
bool ReadNameAndTag(const char* line, std::string* name, std::string* tag);

// One line into a record of the kind (SSRRecord or CSSRRecord, zeroed):
// false when the tag is not the kind's or a field does not read (reported).
// A DWORD of the wrong length and a bad hex pair are reported and kept.
bool ParseEntryLine(const EntryKind& kind, char* line, void* record);
// The record as one line, appended; false when its type has no name (the
// field is left empty).
bool AppendEntryLine(const EntryKind& kind, const void* record, std::string* out);

// Whether a type keeps its value as bytes, and whether as a double word.
bool HoldsBytes(const EntryKind& kind, uint32_t data_type);
bool HoldsDoubleWord(const EntryKind& kind, uint32_t data_type);

// The value as the line spells it: hex pairs for bytes, else the text.
std::string DataAsWritten(const EntryKind& kind, const SSRData& data);
// The value's bytes: the stored bytes (four for a double word), or the
// text's characters.
std::vector<uint8_t> DataBytes(const EntryKind& kind, const SSRData& data);
// The value as the registry would hold it: "dword:00a54e01", "hex:01,02",
// or the text.
std::string DataAsRegistryValue(const EntryKind& kind, const SSRData& data);
// Why the value could not be written so that it reads back, or "": text
// with a control character or a closing caret, or longer than the field.
std::string DataLineProblem(const EntryKind& kind, const SSRData& data);
// Sets Data and DataLength from the text a line would hold, as a read does;
// false (reported) for hex pairs that do not read. The text is scratch: the
// reading of hex pairs takes its commas out.
bool SetDataFromText(const EntryKind& kind, SSRData* data, char* text);
// The same for a text that may hold a NUL: its whole length counts.
bool SetDataFromText(const EntryKind& kind, SSRData* data, const std::string& text);

}  // namespace qv

#endif  // QUORVEX_RECORDS_SS_ENTRY_LINES_H_
