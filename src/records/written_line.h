// Lines judged on their bytes alone.
//
// A put into a large section needs to know, of nearly every line, only
// that it writes back as it stands and that it does not name the record
// put. Both can be told from the line's bytes, without reading its fields
// into a record and writing them again, for a kind whose lines are plain
// fields (LinesCanBeCopied, without a format of its own).
#ifndef QUORVEX_RECORDS_WRITTEN_LINE_H_
#define QUORVEX_RECORDS_WRITTEN_LINE_H_

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "records/kind_schema.h"

namespace qv {

// Splits a record's text (the reader's, behind any marker) into the text of
// each line field, quotes included and commas left out, when the line is
// exactly what the writer gives for the record it reads as, and reads
// without a problem reported: digits without a leading zero that fit their
// member, Y or N, 32 of them between quotes, texts between quotes within
// their width, no blank anywhere between fields, no field missing or
// extra. `fields` has room for schema.line.size() entries. False for any
// other line, which the full read then judges (and reports on).
bool SplitWrittenLine(const KindSchema& schema, const char* line, std::string_view* fields);

// The lines of a section that stand as written and carry, in the fields of
// the given key members, other values than one record does. Equal values
// are written alike and different ones differently, so the comparison is
// of the fields' texts.
class OtherKeyLines {
 public:
  // `key_offsets`: the members (by offset) that make the key. Usable only
  // when each is read whole from one line field, a number or a text.
  OtherKeyLines(const KindSchema& schema, std::span<const size_t> key_offsets, const void* record);

  bool usable() const { return usable_; }
  // Whether the record text `line` stands as written with a key that is
  // not the record's. False also where that cannot be told on the bytes.
  bool Passes(const char* line) const;

 private:
  const KindSchema& schema_;
  bool usable_ = false;
  std::vector<size_t> key_fields_;  // indexes into schema_.line
  std::vector<std::string> key_;    // the record's texts of those fields
  mutable std::vector<std::string_view> fields_;
};

}  // namespace qv

#endif  // QUORVEX_RECORDS_WRITTEN_LINE_H_
