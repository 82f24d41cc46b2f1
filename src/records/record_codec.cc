#include "records/record_codec.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/field_text.h"
#include "platform/file.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"

namespace qv {
namespace {

char* At(void* record, size_t offset) {
  return static_cast<char*>(record) + offset;
}
const char* At(const void* record, size_t offset) {
  return static_cast<const char*>(record) + offset;
}

}  // namespace

namespace {

// Inlined into the line's loop: a put decodes every field of its section.
[[gnu::always_inline]] inline bool ParseField(const LineField& field, char** cursor, void* record) {
  switch (field.syntax) {
    case LineSyntax::kInteger: {
      int32_t value = 0;
      ParseLong(cursor, &value, field.options);
      SetUnsigned(record, field.offset, field.type, static_cast<uint32_t>(value));
      return true;
    }
    case LineSyntax::kText:
      return ParseQuotedString(cursor, At(record, field.offset), field.options, field.width + 1) ==
             1;
    case LineSyntax::kFlag: {
      uint32_t value = 0;
      if (!ParseFlag(cursor, &value, field.options)) return false;
      uint32_t word = GetUnsigned(record, field.offset, field.type);
      word = value ? word | field.bit : word & ~field.bit;
      SetUnsigned(record, field.offset, field.type, word);
      return true;
    }
    case LineSyntax::kFlagString32: {
      uint32_t word = 0;
      if (!ParseFlagString32(cursor, &word, field.options)) return false;
      SetUnsigned(record, field.offset, field.type, word);
      return true;
    }
    case LineSyntax::kVersionQuad:
      return ParseVersionQuad(cursor, reinterpret_cast<uint32_t*>(At(record, field.offset)),
                              field.options) == 1;
    case LineSyntax::kOsType: {
      // Only the first byte needs clearing: every record line has such a
      // field, and zeroing the whole buffer cost more than parsing it.
      char name[QV_LINE_SIZE];
      name[0] = '\0';
      if (!ParseQuotedString(cursor, name, field.options, field.width + 1)) return false;
      SetUnsigned(record, field.offset, field.type, static_cast<uint32_t>(ParseOsType(name)));
      return true;
    }
    case LineSyntax::kDateTime: {
      char text[QV_LINE_SIZE];
      text[0] = '\0';
      if (!ParseQuotedString(cursor, text, field.options, field.width + 1)) return false;
      uint32_t value = 0;
      if (!ParseDateTime(&value, text)) return false;
      SetUnsigned(record, field.offset, field.type, value);
      return true;
    }
  }
  return false;
}

}  // namespace

bool ParseLineField(const LineField& field, char** cursor, void* record) {
  return ParseField(field, cursor, record);
}

namespace {

// The length of a text field's member; 0 for a typed field, whose room is
// the most its text can be.
size_t TextLength(const LineField& field, const void* record) {
  return field.syntax == LineSyntax::kText ? strlen(At(record, field.offset)) : 0;
}

size_t LineFieldRoom(const LineField& field, size_t text_length) {
  switch (field.syntax) {
    case LineSyntax::kText:
      return FieldBytesRoom(text_length);
    case LineSyntax::kInteger:
      return 5 + 11 + 2;  // the marker, a sign and ten digits, the line's end
    case LineSyntax::kFlag:
      return 5 + 1 + 2;
    default:
      return FieldBytesRoom(sizeof(FieldText::text));
  }
}

// Writes the field's bytes at `at` (with LineFieldRoom there) and returns
// their end; *named is false, reported, for a value the field cannot name,
// which writes nothing.
// text_length: the member's, for a text field.
[[gnu::always_inline]] inline char* PutLineField(const LineField& field, const void* record,
                                                 uint32_t options, size_t text_length, char* at,
                                                 bool* named) {
  *named = true;
  options |= field.options;
  FieldText text;  // each typed case below sets it whole
  switch (field.syntax) {
    case LineSyntax::kText:
      return PutFieldBytes(at, At(record, field.offset), text_length, options);
    case LineSyntax::kInteger: {
      uint32_t value = GetUnsigned(record, field.offset, field.type);
      return field.type == ValueType::kI32
                 ? PutNumberField(at, static_cast<int32_t>(value), options)
                 : PutNumberField(at, value, options);
    }
    case LineSyntax::kFlag:
      return PutFlagField(at, GetUnsigned(record, field.offset, field.type) & field.bit, options);
    case LineSyntax::kFlagString32:
      text = FlagString32FieldText(GetUnsigned(record, field.offset, field.type), options);
      break;
    case LineSyntax::kVersionQuad: {
      const uint32_t* pair = reinterpret_cast<const uint32_t*>(At(record, field.offset));
      text = VersionQuadFieldText(pair[0], pair[1], options);
      break;
    }
    case LineSyntax::kOsType:
      if (!OsTypeFieldText(static_cast<int>(GetUnsigned(record, field.offset, field.type)), options,
                           &text)) {
        *named = false;
        return at;
      }
      break;
    case LineSyntax::kDateTime:
      text = DateTimeFieldText(GetUnsigned(record, field.offset, field.type), options);
      break;
    default:
      *named = false;
      return at;
  }
  return PutFieldBytes(at, text.text, text.length, text.options);
}

}  // namespace

bool AppendLineField(const LineField& field, const void* record, uint32_t options,
                     std::string* out) {
  const size_t start = out->size();
  const size_t length = TextLength(field, record);
  out->resize(start + LineFieldRoom(field, length));
  bool named = true;
  char* end = PutLineField(field, record, options, length, out->data() + start, &named);
  out->resize(static_cast<size_t>(end - out->data()));
  return named;
}

bool WriteLineField(const LineField& field, const void* record, QvFile file, uint32_t options) {
  File* out = File::FromHandle(file);
  if (out == nullptr) return false;
  std::string bytes;
  bool named = AppendLineField(field, record, options, &bytes);
  return out->Write(bytes.data(), bytes.size()) == bytes.size() && named;
}

void* NewRecord(const KindSchema& schema) {
  void* record = calloc(1, schema.record_size);
  if (record != nullptr) PointAtOwnRow(schema, record);
  return record;
}

void PointAtOwnRow(const KindSchema& schema, void* record) {
  if (schema.row_pointer_offset == SIZE_MAX) return;
  void* row = At(record, schema.row_offset);
  memcpy(At(record, schema.row_pointer_offset), &row, sizeof row);
}

void ClearRecord(const KindSchema& schema, void* record) {
  memset(record, 0, schema.record_size);
  PointAtOwnRow(schema, record);
}

void FreeRecord(void* record) {
  free(record);
}

uint32_t& RecordFlagsOf(const KindSchema& schema, void* record) {
  return *reinterpret_cast<uint32_t*>(At(record, schema.record_flags_offset));
}

uint32_t RecordFlagsOf(const KindSchema& schema, const void* record) {
  uint32_t flags;
  memcpy(&flags, At(record, schema.record_flags_offset), sizeof flags);
  return flags;
}

void SetLineNumber(const KindSchema& schema, void* record, uint32_t line) {
  if (schema.line_number_offset != SIZE_MAX) {
    memcpy(At(record, schema.line_number_offset), &line, sizeof line);
  }
}

void* RowOf(const KindSchema& schema, void* record) {
  return At(record, schema.row_offset);
}

uint32_t GetUnsigned(const void* record, size_t offset, ValueType type) {
  const char* p = At(record, offset);
  switch (type) {
    case ValueType::kU8:
      return static_cast<uint8_t>(*p);
    case ValueType::kU16: {
      uint16_t v;
      memcpy(&v, p, sizeof v);
      return v;
    }
    default: {
      uint32_t v;
      memcpy(&v, p, sizeof v);
      return v;
    }
  }
}

void SetUnsigned(void* record, size_t offset, ValueType type, uint32_t value) {
  char* p = At(record, offset);
  switch (type) {
    case ValueType::kU8: {
      uint8_t v = static_cast<uint8_t>(value);
      memcpy(p, &v, sizeof v);
      return;
    }
    case ValueType::kU16: {
      uint16_t v = static_cast<uint16_t>(value);
      memcpy(p, &v, sizeof v);
      return;
    }
    default:
      memcpy(p, &value, sizeof value);
      return;
  }
}

namespace {

// The bytes of the record that reading a field may change: a flag's word,
// an integer's member, a text's characters and terminator.
size_t BytesRead(const LineField& field) {
  if (field.syntax == LineSyntax::kText) return static_cast<size_t>(field.width) + 1;
  switch (field.type) {
    case ValueType::kU8:
      return 1;
    case ValueType::kU16:
      return 2;
    default:
      return 4;
  }
}

bool Overlap(size_t a, size_t a_size, size_t b, size_t b_size) {
  return a < b + b_size && b < a + a_size;
}

// Whether field `later` of the line may change what field `earlier` reads
// into, or the other way round: flags may share a word, not a bit.
bool FieldsShareBytes(const LineField& earlier, const LineField& later) {
  if (!Overlap(earlier.offset, BytesRead(earlier), later.offset, BytesRead(later))) return false;
  bool flags = earlier.syntax == LineSyntax::kFlag && later.syntax == LineSyntax::kFlag;
  return !flags || earlier.offset != later.offset || earlier.type != later.type ||
         (earlier.bit & later.bit) != 0;
}

// Whether the n characters are all Y or N, as the writer puts them.
bool AreFlagLetters(const char* letters, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (letters[i] != 'Y' && letters[i] != 'N') return false;
  }
  return true;
}

// The options a field may carry for its line to be copied: those whose
// effect on the written text the check below knows.
uint32_t CopyableOptions(LineSyntax syntax) {
  return syntax == LineSyntax::kText ? FO_OPTIONAL | FO_VERBATIM : FO_OPTIONAL;
}

// Whether the field's text in the line, from `start` to `end` (behind the
// comma the parser took), is what the writer gives for what it read.
// `last`: the field ends the line, with no comma of its own.
bool FieldAsWritten(const LineField& field, const char* start, const char* end, bool last,
                    const void* record) {
  size_t length = static_cast<size_t>(end - start);
  if (last) {
    // Fields beyond the line's own are dropped by the writer.
    if (*end != '\0' || (length > 0 && end[-1] == ',')) return false;
  } else {
    if (length == 0 || end[-1] != ',') return false;
    --length;
  }
  const bool optional = (field.options & FO_OPTIONAL) != 0;
  switch (field.syntax) {
    case LineSyntax::kInteger: {
      // An optional field writes 0 as nothing; other numbers are their
      // digits without a leading zero. Nine digits cannot saturate.
      if (length == 0) return optional;
      if (length > 9 || (start[0] == '0' && (length > 1 || optional))) return false;
      uint32_t value = 0;
      for (size_t i = 0; i < length; ++i) {
        if (start[i] < '0' || start[i] > '9') return false;
        value = value * 10 + static_cast<uint32_t>(start[i] - '0');
      }
      return GetUnsigned(record, field.offset, field.type) == value;  // not cut to the member
    }
    case LineSyntax::kFlag:
      return length == 1 && (start[0] == 'Y' || start[0] == 'N');
    case LineSyntax::kFlagString32:
      // Always 32 letters between quotes, also for an optional field.
      return length == 34 && start[0] == '"' && start[33] == '"' && AreFlagLetters(start + 1, 32);
    case LineSyntax::kText: {
      // An optional field writes the empty text as nothing. Otherwise the
      // text stands between quotes, every double quote in it behind the
      // caret that the reader takes away and the writer puts back; a
      // verbatim field writes no carets, so a text with a quote is not as
      // written. A text longer than the field was cut on its way in.
      if (length == 0) return optional;
      if (length < 2 || start[0] != '"' || start[length - 1] != '"') return false;
      const size_t inner = length - 2;
      if (inner == 0) return !optional;
      if (inner > static_cast<size_t>(field.width)) return false;
      return (field.options & FO_VERBATIM) == 0 || memchr(start + 1, '"', inner) == nullptr;
    }
    default:
      return false;
  }
}

// Reads the line fields in order into the record; with kTracks, also
// whether every field stands as the writer gives it (*as_written). One loop
// for both reads, compiled apart so that the plain read pays nothing.
template <bool kTracks>
bool ParseFields(const KindSchema& schema, char* line, void* record, bool* as_written) {
  char* cursor = line;
  bool all_parsed = true;
  bool same = true;
  const LineField* const last = schema.line.empty() ? nullptr : &schema.line.back();
  for (const LineField& field : schema.line) {
    [[maybe_unused]] const char* start = cursor;
    if (ParseField(field, &cursor, record)) {
      if constexpr (kTracks) {
        same = same && FieldAsWritten(field, start, cursor, &field == last, record);
      }
      continue;
    }
    all_parsed = false;
    if (schema.failed_line == KindSchema::FailedLine::kFailRead) break;
  }
  if constexpr (kTracks) *as_written = same && all_parsed;
  return all_parsed;
}

}  // namespace

bool LinesCanBeCopied(const KindSchema& schema) {
  // A line of its own format: the kind tells line by line.
  if (schema.written_as_read != nullptr) return schema.after_read == nullptr;
  if (schema.parse_line != nullptr || schema.append_line != nullptr ||
      schema.after_read != nullptr || schema.line.empty()) {
    return false;
  }
  for (size_t i = 0; i < schema.line.size(); ++i) {
    const LineField& field = schema.line[i];
    switch (field.syntax) {
      case LineSyntax::kInteger:
      case LineSyntax::kText:
      case LineSyntax::kFlag:
        break;
      case LineSyntax::kFlagString32:
        // Every letter stands for a bit the member keeps.
        if (field.type != ValueType::kU32 && field.type != ValueType::kI32) return false;
        break;
      default:
        return false;
    }
    if ((field.options & ~CopyableOptions(field.syntax)) != 0) return false;
    if (i > 0 && field.takes_record_flags) return false;
    if (field.syntax == LineSyntax::kFlag && field.bit == 0) return false;
    // The record flags and line number are set before the line is read.
    for (size_t offset : {schema.record_flags_offset, schema.line_number_offset}) {
      if (offset != SIZE_MAX && Overlap(offset, 4, field.offset, BytesRead(field))) return false;
    }
    for (size_t j = 0; j < i; ++j) {
      if (FieldsShareBytes(schema.line[j], field)) return false;
    }
  }
  return true;
}

bool ParseRecordLine(const KindSchema& schema, char* line, void* record) {
  return ParseFields<false>(schema, line, record, nullptr);
}

bool ParseRecordLine(const KindSchema& schema, char* line, void* record, bool* as_written) {
  return ParseFields<true>(schema, line, record, as_written);
}

bool ParseLineForCopy(const KindSchema& schema, char* line, void* record, std::string* kept,
                      const char** as_written) {
  if (schema.written_as_read != nullptr) {
    kept->assign(line);
    const bool parsed = schema.parse_line(line, record);
    *as_written = schema.written_as_read(kept->c_str(), record) ? kept->c_str() : nullptr;
    return parsed;
  }
  // Reading the fields leaves the line as it was.
  bool same = false;
  const bool parsed = ParseRecordLine(schema, line, record, &same);
  *as_written = same ? line : nullptr;
  return parsed;
}

bool AppendLineAsWritten(uint32_t record_flags, const char* text, std::string* out) {
  static_assert(RECORD_IAO == FO_IAO, "the record flag is the writer's marker option");
  if ((record_flags & ~RECORD_IAO) != 0) return false;
  if (record_flags != 0) out->append(";IAO;");
  out->append(text);
  out->append("\r\n");
  return true;
}

bool DecodeRecordLine(const KindSchema& schema, char* line, void* record) {
  bool parsed = schema.parse_line != nullptr ? schema.parse_line(line, record)
                                             : ParseRecordLine(schema, line, record);
  if (schema.after_read != nullptr) schema.after_read(record);
  return parsed;
}

namespace {

// LineFieldOptions with the record's flags already read: a line's writer
// asks for every field's options.
uint32_t FieldOptions(const KindSchema& schema, size_t index, uint32_t record_flags) {
  const bool flags = index == 0 || schema.line[index].takes_record_flags;
  uint32_t options = flags ? record_flags : 0;
  if (index + 1 == schema.line.size()) options |= FO_END_RECORD;
  return options;
}

}  // namespace

uint32_t LineFieldOptions(const KindSchema& schema, const void* record, size_t index) {
  return FieldOptions(schema, index, RecordFlagsOf(schema, record));
}

bool InnerFieldsTakeRecordFlags(const KindSchema& schema) {
  for (size_t i = 1; i < schema.line.size(); ++i) {
    if (schema.line[i].takes_record_flags) return true;
  }
  return false;
}

bool AppendRecordLine(const KindSchema& schema, const void* record, std::string* out) {
  if (schema.append_line != nullptr) return schema.append_line(record, out);
  // Room for every field at once, each written in place; a text's length
  // is counted once, for its room and its writing.
  const size_t fields = schema.line.size();
  static thread_local std::vector<size_t> lengths;
  if (lengths.size() < fields) lengths.resize(fields);
  size_t room = 0;
  for (size_t i = 0; i < fields; ++i) {
    lengths[i] = TextLength(schema.line[i], record);
    room += LineFieldRoom(schema.line[i], lengths[i]);
  }
  const size_t start = out->size();
  out->resize(start + room);
  char* at = out->data() + start;
  bool named = true;
  const uint32_t record_flags = RecordFlagsOf(schema, record);
  for (size_t i = 0; i < fields && named; ++i) {
    at = PutLineField(schema.line[i], record, FieldOptions(schema, i, record_flags), lengths[i], at,
                      &named);
  }
  out->resize(static_cast<size_t>(at - out->data()));
  return named;
}

bool WriteRecordLine(const KindSchema& schema, const void* record, QvFile file) {
  File* out = File::FromHandle(file);
  if (out == nullptr) return false;
  // The line is put together first and goes out in one write: a rewrite
  // writes every line of its section, and a write per field cost more than
  // the fields. A field the writer cannot name ends the line there, as a
  // field-by-field write would have.
  static thread_local std::string line;
  line.clear();
  bool named = AppendRecordLine(schema, record, &line);
  return out->Write(line.data(), line.size()) == line.size() && named;
}

}  // namespace qv
