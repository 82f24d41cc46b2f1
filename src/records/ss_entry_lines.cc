#include "records/ss_entry_lines.h"

#include <strings.h>

#include <cstdio>
#include <cstring>

#include "core/copy_text.h"
#include "core/field_text.h"
#include "core/report_capture.h"
#include "core/symbol_table.h"
#include "quorvex/report.h"
#include "quorvex/symbols.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"

namespace qv {
namespace {

constexpr uint32_t kOpt = FO_OPTIONAL;
constexpr uint32_t kRegBinary = 3;
constexpr uint32_t kRegDword = 4;
constexpr uint32_t kRegDwordBigEndian = 5;

constexpr char kRecords[] = "System-Settings Records";
constexpr char kCreated[] = "Created System-Settings";
constexpr char kRegMismatch[] = "Requested type is REG.  Type of record is not an REG.";
constexpr char kPsMismatch[] = "Requested type is PS.  Type of record is not an PS.";
constexpr char kIniMismatch[] = "Requested type is INI.  Type of record is not an INI.";

// Parses the fields of a line in order; the first failure sticks.
class FieldReader {
 public:
  explicit FieldReader(char* line) : cursor_(line) {}
  bool ok() const { return ok_; }
  void Text(char* to, int size, uint32_t options) {
    if (ok_) ok_ = ParseQuotedString(&cursor_, to, options, size) == 1;
  }
  template <size_t N>
  void Text(char (&to)[N], uint32_t options) {
    Text(to, static_cast<int>(N), options);
  }
  void Flags(uint32_t* word, uint32_t options) {
    if (ok_) ok_ = ParseFlagString32(&cursor_, word, options) == 1;
  }

 private:
  char* cursor_;
  bool ok_ = true;
};

// Puts the fields of a line together in order, as the field writers would
// write them one after another.
class FieldWriter {
 public:
  explicit FieldWriter(std::string* out) : out_(out) {}
  bool named() const { return named_; }
  void Text(const char* text, uint32_t options) {
    AppendFieldBytes(out_, text, strlen(text), options);
  }
  void Text(const std::string& text, uint32_t options) {
    AppendFieldBytes(out_, text.data(), text.size(), options);
  }
  void Flags(uint32_t word, uint32_t options) {
    const FieldText field = FlagString32FieldText(word, options);
    AppendFieldBytes(out_, field.text, field.length, field.options);
  }
  // False when the table has no name for the value: its field is empty.
  bool Symbols(const SymbolTable& table, uint32_t value, uint32_t options) {
    return AppendSymbolFields(table, value, options, out_);
  }
  void Unnamed() { named_ = false; }

 private:
  std::string* out_;
  bool named_ = true;
};

// The members a settings entry and a created entry share, by name.
template <class Record>
void ReadHead(FieldReader& in, const EntryKind& kind, Record* r) {
  if (kind.shape == EntryShape::kIni && !kind.created) {
    // An INI entry's created-file name reads up to 2048 characters; it is
    // still kept as a 40-character key part.
    char wide[2049];
    wide[0] = '\0';
    in.Text(wide, kOpt);
    CopyCut(r->row.CFKey1, wide);
  } else {
    in.Text(r->row.CFKey1, kOpt);
  }
  in.Text(r->row.CFKey2, kOpt);
  in.Text(r->row.CFKey3, kOpt);
  in.Flags(&r->row.EntryFlags, 0);
}

template <class Record>
void ReadTail(FieldReader& in, Record* r) {
  in.Text(r->Description, kOpt);
  in.Flags(&r->ModifySubkeyFlags, kOpt);
  in.Flags(&r->ModifyValueNameFlags, kOpt);
  in.Flags(&r->ModifyValueFlags, kOpt);
}

template <class Record>
void WriteHead(FieldWriter& out, const EntryKind& kind, const Record* r) {
  out.Text(r->row.Name, r->recordFlags);
  out.Text(kind.tag, 0);
  out.Text(r->row.CFKey1, kOpt);
  out.Text(r->row.CFKey2, kOpt);
  out.Text(r->row.CFKey3, kOpt);
  out.Flags(r->row.EntryFlags, 0);
}

template <class Record>
void WriteTail(FieldWriter& out, const Record* r) {
  out.Text(r->Description, kOpt);
  out.Flags(r->ModifySubkeyFlags, kOpt);
  out.Flags(r->ModifyValueNameFlags, kOpt);
  out.Flags(r->ModifyValueFlags, kOpt | FO_END_RECORD);
}

// A key path is kept without the backslashes it may start with.
template <size_t N>
void ReadKeyPath(FieldReader& in, char (&to)[N]) {
  char text[N] = "";
  in.Text(text, 0);
  char* start = text;
  SkipLeadingBackslashes(&start);
  CopyCut(to, start);
}

// A root name that names no root makes a line that cannot be written back.
bool ReadRoot(const char* name, uint32_t* root) {
  *root = ParseRegRootKey(name);
  return *root != 0;
}

bool ParseSettingsEntry(const EntryKind& kind, FieldReader& in, SSRRecord* r) {
  SSRData& d = r->row;
  ReadHead(in, kind, r);
  if (kind.shape == EntryShape::kReg) {
    d.EntryFlags &= ~1u;
    d.DataLength = 0;
  }
  // Only the first byte is cleared: a line of every entry passes through.
  char data[3000];
  data[0] = '\0';
  in.Text(data, kind.shape == EntryShape::kIni ? 2049 : 3000, 0);
  if (kind.shape == EntryShape::kIni) {
    in.Text(d.Section, 0);
    in.Text(d.Key, 0);
    ReadTail(in, r);
    CopyCut(d.Data, data);
    return in.ok();
  }
  char root[31] = "";
  char type[31] = "";
  char access[62] = "";
  char options[31] = "";
  in.Text(root, 0);
  ReadKeyPath(in, d.KeyPath);
  in.Text(d.ValueName, 0);
  in.Text(type, 0);
  in.Text(d.AuxText, kOpt);
  in.Text(access, kOpt);
  in.Text(options, kOpt);
  ReadTail(in, r);
  if (!in.ok()) return false;
  if (kind.shape == EntryShape::kReg) {
    d.DataType = static_cast<uint32_t>(ParseRegDataType(type));
  } else {
    d.SecondType = ZQFKEY_NONE;
    d.DataType = ParsePSDataType(type);
  }
  if (!SetDataFromText(kind, &d, data)) {
    // A bad pair ends the bytes; the entry is kept with those read.
  }
  d.Access = 0;
  if (!ParseRegAccess(access, &d.Access)) return false;
  if (d.Access == 0) d.Access = SSR_DEFAULT_ACCESS;
  uint8_t option_bits = 0;
  if (!ParseRegOption(options, &option_bits)) return false;
  d.Options = option_bits;
  return ReadRoot(root, &d.Root);
}

bool ParseCreatedEntry(const EntryKind& kind, FieldReader& in, CSSRRecord* r) {
  CSSRData& d = r->row;
  ReadHead(in, kind, r);
  if (kind.shape == EntryShape::kIni) {
    in.Text(d.Section, 0);
    in.Text(d.Key, 0);
    ReadTail(in, r);
    return in.ok();
  }
  char root[31] = "";
  in.Text(root, 0);
  ReadKeyPath(in, d.KeyPath);
  in.Text(d.AuxText, kOpt);
  ReadTail(in, r);
  return in.ok() && ReadRoot(root, &d.Root);
}

void AppendDataAsWritten(const EntryKind& kind, const SSRData& data, std::string* text) {
  if (!HoldsBytes(kind, data.DataType)) {
    text->append(data.Data, strnlen(data.Data, sizeof data.Data));
    return;
  }
  const bool dword = HoldsDoubleWord(kind, data.DataType);
  uint16_t count = dword ? 4 : data.DataLength;
  if (count > sizeof data.Data) count = sizeof data.Data;
  const size_t start = text->size();
  text->resize(start + 2u * count + 1);
  FormatHexBytes(reinterpret_cast<const uint8_t*>(data.Data), count, text->data() + start,
                 dword ? 1 : 0);
  text->resize(start + strlen(text->c_str() + start));
}

void WriteData(FieldWriter& out, const EntryKind& kind, const SSRData& data) {
  static thread_local std::string text;
  text.clear();
  AppendDataAsWritten(kind, data, &text);
  out.Text(text, 0);
}

void WriteSettingsEntry(const EntryKind& kind, FieldWriter& out, const SSRRecord* r) {
  const SSRData& d = r->row;
  WriteHead(out, kind, r);
  WriteData(out, kind, d);
  if (kind.shape == EntryShape::kIni) {
    out.Text(d.Section, 0);
    out.Text(d.Key, 0);
    WriteTail(out, r);
    return;
  }
  out.Symbols(kRegRootKeyTable, d.Root, 0);
  out.Text(d.KeyPath, 0);
  out.Text(d.ValueName, 0);
  // A type without a name leaves its field empty: the line does not count
  // as written.
  if (!out.Symbols(kind.shape == EntryShape::kReg ? kRegDataTypeTable : kPSDataTypeTable,
                   d.DataType, 0)) {
    out.Unnamed();
  }
  out.Text(d.AuxText, kOpt);
  out.Symbols(kRegAccessTable, d.Access, kOpt);
  out.Symbols(kRegOptionTable, static_cast<uint8_t>(d.Options), kOpt);
  WriteTail(out, r);
}

void WriteCreatedEntry(const EntryKind& kind, FieldWriter& out, const CSSRRecord* r) {
  const CSSRData& d = r->row;
  WriteHead(out, kind, r);
  if (kind.shape == EntryShape::kIni) {
    out.Text(d.Section, 0);
    out.Text(d.Key, 0);
  } else {
    out.Symbols(kRegRootKeyTable, d.Root, 0);
    out.Text(d.KeyPath, 0);
    out.Text(d.AuxText, kOpt);
  }
  WriteTail(out, r);
}

std::string Hex(const uint8_t* bytes, size_t count, const char* separator) {
  std::string text;
  char pair[3];
  for (size_t i = 0; i < count; ++i) {
    snprintf(pair, sizeof pair, "%02x", bytes[i]);
    if (i != 0) text += separator;
    text += pair;
  }
  return text;
}

}  // namespace

const EntryKind& ReEntry() {
  static const EntryKind kind{"RE",  "REG",    SSR_TYPE_REG, EntryShape::kReg,
                              false, kRecords, kRegMismatch};
  return kind;
}
const EntryKind& PeEntry() {
  static const EntryKind kind{"PE",  "PS",     SSR_TYPE_PS, EntryShape::kPs,
                              false, kRecords, kPsMismatch};
  return kind;
}
const EntryKind& IeEntry() {
  static const EntryKind kind{"IE",  "INI",    SSR_TYPE_INI, EntryShape::kIni,
                              false, kRecords, kIniMismatch};
  return kind;
}
const EntryKind& CreEntry() {
  static const EntryKind kind{"CRE", "REG",    SSR_TYPE_REG, EntryShape::kReg,
                              true,  kCreated, kRegMismatch};
  return kind;
}
const EntryKind& CpeEntry() {
  static const EntryKind kind{"CPE", "PS",     SSR_TYPE_PS, EntryShape::kPs,
                              true,  kCreated, kPsMismatch};
  return kind;
}
const EntryKind& CieEntry() {
  static const EntryKind kind{"CIE", "INI",    SSR_TYPE_INI, EntryShape::kIni,
                              true,  kCreated, kIniMismatch};
  return kind;
}

bool ReadNameAndTag(const char* line, std::string* name, std::string* tag) {
  ReportCapture quiet(/*quiet=*/true);
  // Called for every line of a section: only the first byte of each
  // buffer is cleared, which is all a report of a text too long reads.
  static thread_local std::string copy;
  copy.assign(line);
  char* cursor = copy.data();
  char name_text[QV_LINE_SIZE];
  char tag_text[QV_LINE_SIZE];
  name_text[0] = '\0';
  tag_text[0] = '\0';
  if (!ParseQuotedString(&cursor, name_text, 0, sizeof name_text)) return false;
  if (!ParseQuotedString(&cursor, tag_text, 0, sizeof tag_text)) return false;
  *name = name_text;
  *tag = tag_text;
  return true;
}

bool ParseEntryLine(const EntryKind& kind, char* line, void* record) {
  FieldReader in(line);
  char tag[20] = "";
  auto* name = kind.created ? static_cast<CSSRRecord*>(record)->row.Name
                            : static_cast<SSRRecord*>(record)->row.Name;
  in.Text(name, 21, 0);
  in.Text(tag, 0);
  if (!in.ok()) return false;
  if (strcasecmp(tag, kind.tag) != 0) {
    ReportParseProblem(kind.mismatch);
    return false;
  }
  if (kind.created) {
    auto* r = static_cast<CSSRRecord*>(record);
    r->row.Type = kind.type;
    return ParseCreatedEntry(kind, in, r);
  }
  auto* r = static_cast<SSRRecord*>(record);
  r->row.Type = kind.type;
  return ParseSettingsEntry(kind, in, r);
}

bool AppendEntryLine(const EntryKind& kind, const void* record, std::string* out) {
  FieldWriter line(out);
  if (kind.created) {
    WriteCreatedEntry(kind, line, static_cast<const CSSRRecord*>(record));
  } else {
    WriteSettingsEntry(kind, line, static_cast<const SSRRecord*>(record));
  }
  return line.named();
}

bool HoldsDoubleWord(const EntryKind& kind, uint32_t data_type) {
  if (kind.shape == EntryShape::kReg) {
    // The big-endian double word is read as the number it spells, like
    // any other: both are stored least significant byte first.
    return data_type == kRegDword || data_type == kRegDwordBigEndian;
  }
  return kind.shape == EntryShape::kPs && data_type == ZQFKEY_DWORD;
}

bool HoldsBytes(const EntryKind& kind, uint32_t data_type) {
  if (HoldsDoubleWord(kind, data_type)) return true;
  if (kind.shape == EntryShape::kReg) return data_type == kRegBinary;
  return kind.shape == EntryShape::kPs && data_type == ZQFKEY_BINARY;
}

std::string DataAsWritten(const EntryKind& kind, const SSRData& data) {
  std::string text;
  AppendDataAsWritten(kind, data, &text);
  return text;
}

std::vector<uint8_t> DataBytes(const EntryKind& kind, const SSRData& data) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(data.Data);
  if (!HoldsBytes(kind, data.DataType)) {
    return std::vector<uint8_t>(bytes, bytes + strnlen(data.Data, sizeof data.Data));
  }
  size_t count = HoldsDoubleWord(kind, data.DataType) ? 4 : data.DataLength;
  if (count > sizeof data.Data) count = sizeof data.Data;
  return std::vector<uint8_t>(bytes, bytes + count);
}

std::string DataAsRegistryValue(const EntryKind& kind, const SSRData& data) {
  if (!HoldsBytes(kind, data.DataType)) return DataAsWritten(kind, data);
  std::vector<uint8_t> bytes = DataBytes(kind, data);
  if (HoldsDoubleWord(kind, data.DataType)) {
    // Little-endian in storage: the number reads from the fourth byte down.
    const uint8_t reversed[4] = {bytes[3], bytes[2], bytes[1], bytes[0]};
    return "dword:" + Hex(reversed, 4, "");
  }
  return "hex:" + Hex(bytes.data(), bytes.size(), ",");
}

std::string DataLineProblem(const EntryKind& kind, const SSRData& data) {
  if (HoldsBytes(kind, data.DataType)) {
    // The count is checked as it reads back; only the width is left.
    size_t pairs = HoldsDoubleWord(kind, data.DataType) ? 4 : data.DataLength;
    return pairs * 2 > 2999 ? "Data holds more bytes than its line can carry" : "";
  }
  const std::string text = DataAsWritten(kind, data);
  for (unsigned char c : text) {
    if ((c < 0x20 && c != '\t') || c == 0x7F) {
      return "Data holds a line break or another control character, which a profile line "
             "cannot carry";
    }
  }
  const size_t width = kind.shape == EntryShape::kIni ? 2048 : 2999;
  if (text.size() > width) return "Data is longer than " + std::to_string(width) + " characters";
  if (!text.empty() && text.back() == '^')
    return "Data ends in a caret, which would swallow its quote";
  return "";
}

namespace {

// `length` counts a NUL inside the text: a longer text is refused whole.
bool SetData(const EntryKind& kind, SSRData* data, char* text, size_t length) {
  memset(data->Data, 0, sizeof data->Data);
  data->DataLength = 0;
  if (!HoldsBytes(kind, data->DataType)) {
    CopyCut(data->Data, text);
    return true;
  }
  // Two digits a byte: a text a line can hold fits Data.
  if (length >= sizeof data->Data) {
    ReportError("Data is longer than 2999 characters.", 0);
    return false;
  }
  const bool dword = HoldsDoubleWord(kind, data->DataType);
  bool read = ParseHexBytes(reinterpret_cast<uint8_t*>(data->Data), text, &data->DataLength,
                            dword ? 1 : 0) == 1;
  if (dword && data->DataLength != 4) {
    ReportParseProblem(kind.shape == EntryShape::kReg
                           ? "REG DWORD entry must consist of exactly four pairs of hex digits"
                           : "PS DWORD entry must consist of exactly four pairs of hex digits");
  }
  return read;
}

}  // namespace

bool SetDataFromText(const EntryKind& kind, SSRData* data, char* text) {
  return SetData(kind, data, text, strlen(text));
}

bool SetDataFromText(const EntryKind& kind, SSRData* data, const std::string& text) {
  std::string scratch = text;
  return SetData(kind, data, scratch.data(), text.size());
}

}  // namespace qv
