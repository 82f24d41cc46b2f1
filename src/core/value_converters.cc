// Converters from the text of a typed field (already read as a quoted
// string) to its value: binary constants and the symbolic OS and registry
// data types.
#include "core/report_capture.h"
#include "core/symbol_table.h"
#include "core/text_chars.h"
#include "quorvex/report.h"
#include "quorvex/text.h"

namespace qv {
namespace {

struct NamedCode {
  const char* name;
  int code;
};

constexpr NamedCode kOsTypes[] = {
    {"WIN32_S", 0},
    {"WIN32_WINDOWS", 1},
    {"WIN32_NT", 2},
    {"WIN16", 3},
};

// An unknown name reads as code 0, which the caller cannot tell from the
// first name of the table; the report is the only sign.
template <size_t N>
int LookUp(const NamedCode (&table)[N], const char* name, const char* error) {
  for (const NamedCode& entry : table) {
    if (name != nullptr && EqualsIgnoreCase(entry.name, name)) return entry.code;
  }
  qv::ReportParseProblem(error);
  return 0;
}

}  // namespace
}  // namespace qv

extern "C" {

int ParseHexBytes(uint8_t* destination, char* text, uint16_t* count, int mode) {
  RemoveChar(text, ',');
  char* p = text;
  SkipBlanks(&p);
  *count = 0;
  if (*p == '\0') return 1;
  // A double word is stored from its fourth byte backwards, so that the
  // text reads most significant byte first.
  bool double_word = mode == 1;
  for (;;) {
    if (!IsHexDigit(p[0]) || !IsHexDigit(p[1])) {
      qv::ReportParseProblem("Bad binary constant: use a format like \"00 A5 4E 01\"");
      return 0;
    }
    size_t at = double_word ? 3 - *count : *count;
    destination[at] = static_cast<uint8_t>(HexDigitValue(p[0]) * 16 + HexDigitValue(p[1]));
    ++*count;
    p += 2;
    if (double_word && *count == 4) return 1;
    SkipBlanks(&p);
    if (*p == '\0') return 1;
  }
}

int ParseOsType(const char* name) {
  return qv::LookUp(qv::kOsTypes, name, "Unsupported OS Type");
}

// The same table as the writer's, so that both always agree on the names.
int ParseRegDataType(const char* name) {
  uint32_t code = 0;
  qv::ReadSymbols(qv::kRegDataTypeTable, name, &code);
  return static_cast<int>(code);
}

}  // extern "C"
