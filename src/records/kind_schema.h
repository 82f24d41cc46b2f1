// A record kind described as data.
//
// About fifty kinds share one protocol: read a section into a list, write a
// list back through the section rewrite, copy, find, bind database rows and
// show records as JSON. Each kind states once what it is (code, file,
// section, store support, flag table) and what its record holds (members)
// and its lines carry (line fields, in order); the generic code in
// family_io, record_line and orvik_rows does the rest.
#ifndef QUORVEX_RECORDS_KIND_SCHEMA_H_
#define QUORVEX_RECORDS_KIND_SCHEMA_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "quorvex/base.h"
#include "quorvex/records.h"
#include "records/kind_table.h"

namespace qv {

// How a member of a record is stored in memory.
enum class ValueType { kU8, kU16, kU32, kI32, kText, kVersionQuad };

// A member of the record structure, as hosts and the database see it.
struct MemberSpec {
  const char* name;  // the C member name; also the JSON name and database column
  ValueType type;
  size_t offset;
  size_t size;  // bytes; for kText the array size (characters + 1)
  bool in_row;  // part of the database row
};

template <class T>
constexpr ValueType ValueTypeOf() {
  using U = std::remove_cv_t<T>;
  if constexpr (std::is_array_v<U> && std::is_same_v<std::remove_extent_t<U>, char>) {
    return ValueType::kText;
  } else if constexpr (std::is_array_v<U>) {
    static_assert(std::extent_v<U> == 2 && sizeof(std::remove_extent_t<U>) == 4);
    return ValueType::kVersionQuad;  // high and low words
  } else if constexpr (std::is_same_v<U, uint8_t>) {
    return ValueType::kU8;
  } else if constexpr (std::is_same_v<U, uint16_t>) {
    return ValueType::kU16;
  } else if constexpr (std::is_same_v<U, int32_t>) {
    return ValueType::kI32;
  } else {
    static_assert(std::is_same_v<U, uint32_t>, "unsupported member type");
    return ValueType::kU32;
  }
}

// QV_MEMBER(ADRecord, row.id, "id", true): a member with its offset and type.
#define QV_MEMBER(Record, path, name, in_row)                                  \
  ::qv::MemberSpec {                                                           \
    name, ::qv::ValueTypeOf<decltype(Record::path)>(), offsetof(Record, path), \
        sizeof(Record::path), in_row                                           \
  }

// How a field is written on a record line.
enum class LineSyntax {
  kInteger,       // digits; kU8/kU16/kU32 written unsigned, kI32 signed
  kText,          // a quoted string of at most `width` characters
  kFlag,          // Y/N standing for `bit` of the kU32 member
  kFlagString32,  // 32 Y/N letters of a kU32 member
  kVersionQuad,   // four digit groups
  kOsType,        // "WIN32_S" ... held as the OS type number
  kDateTime,      // "mm/dd/yy hh:mm:ss" held as seconds since 1970
};

struct LineField {
  LineSyntax syntax;
  size_t offset;
  ValueType type;
  int width;         // kText: the longest text read
  uint32_t options;  // FO_OPTIONAL and the like, for reading and writing
  uint32_t bit;      // kFlag: the bit it stands for
  // The record flags go to the writer with this field as well as with the
  // first (a DRK line does so with several fields). A record behind
  // ";IAO;" then gets the marker inside its line, which no reader reads.
  bool takes_record_flags = false;
};

#define QV_LINE_FIELD(Record, path, syntax, width, options, bit)                                 \
  ::qv::LineField {                                                                              \
    syntax, offsetof(Record, path), ::qv::ValueTypeOf<decltype(Record::path)>(), width, options, \
        bit                                                                                      \
  }

struct KindSchema {
  const KindInfo* kind;  // code, file, section and store support

  size_t record_size;
  size_t row_offset;  // where the database row starts
  size_t row_size;
  size_t row_pointer_offset;  // SIZE_MAX when the row is reached directly
  size_t record_flags_offset;
  size_t line_number_offset;  // SIZE_MAX when the kind keeps none

  std::vector<MemberSpec> members;
  std::vector<LineField> line;

  // The flag-description table.
  const char* flag_label;
  const char* bit_names[32];  // entry i names bit 31 - i; nullptr for none
  uint32_t flag_mask;

  // "Ad File %s cannot be found or opened!": the text when the file is missing.
  const char* missing_file_message;

  // What a line that fails to parse does to the read of its section. The
  // default stops the read and fails it, so that no record derived from a
  // broken line can be written back over it. Ads keep the line with the
  // fields that did parse and read on, as that family always has; hosts that
  // rewrite Ads check the file first. Integers that read as 0 and texts cut
  // to their width are reported but fail no line. A failing line is parsed
  // no further than its first bad field, except under kKeepLine, where the
  // fields after it are still read.
  enum class FailedLine { kFailRead, kKeepLine };
  FailedLine failed_line = FailedLine::kFailRead;

  // What a kind does differently, where it does (nullptr: the generic way).
  // A line that is not comma-separated fields (key=value lines, ...).
  bool (*parse_line)(char* line, void* record) = nullptr;
  // The record's line, appended to `out`: false when a value has no name
  // to write (its field is left empty). The rewrite sends it in one write.
  bool (*append_line)(const void* record, std::string* out) = nullptr;
  // Checks and normalisation after a line was read (the parse position is
  // still that of the line, for warnings with file and line).
  void (*after_read)(void* record) = nullptr;
  // For a kind with a line of its own format: whether the record read
  // from `line` (the reader's text, before parse_line) writes back as that
  // text, so that a put may copy the line (nullptr: never).
  bool (*written_as_read)(const char* line, const void* record) = nullptr;
  // Fills the record's owner members from the file's owner (module key,
  // language code, ...) after it was read.
  void (*set_owner)(void* record, const char* name, const char* key) = nullptr;
  // The members a line of the kind's own format carries (with parse_line),
  // which a put checks read back as given.
  std::vector<const char*> custom_line_members = {};
  // A section that several kinds share: whether a line is this kind's
  // (nullptr: every line is). Lines of other kinds are passed over.
  bool (*takes_line)(const char* line) = nullptr;

  // The text when the file is missing on the way to a rewrite, where it
  // differs from missing_file_message.
  const char* missing_file_message_on_write = nullptr;
  // A rewrite resumes copying behind this section rather than behind the
  // kind's own, leaving out everything between (nullptr: the kind's own).
  const char* tail_section = nullptr;
  // The name in "Cannot get %s out of Orvik profile." (nullptr: flag_label).
  const char* orvik_fetch_label = nullptr;
  // Whether the database deletes the kind's rows; where it does not, every
  // delete on a database profile fails with the kind's delete failure.
  bool orvik_deletes = true;
  // A text member that holds bytes, NULs among them (a binary settings
  // value): the database keeps it as a blob of every byte up to the last
  // that is not NUL, where a text column would end at the first NUL.
  const char* bytes_member = nullptr;
};

}  // namespace qv

#endif  // QUORVEX_RECORDS_KIND_SCHEMA_H_
