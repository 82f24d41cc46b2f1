// Records of any kind, handled through their schema: allocation, copying,
// one record line parsed into a record and a record written as a line.
#ifndef QUORVEX_RECORDS_RECORD_CODEC_H_
#define QUORVEX_RECORDS_RECORD_CODEC_H_

#include <cstdint>
#include <string>

#include "quorvex/base.h"
#include "records/kind_schema.h"

namespace qv {

// A new zeroed record whose row pointer (if the kind has one) points at its
// row; nullptr when memory is short.
void* NewRecord(const KindSchema& schema);
void FreeRecord(void* record);
// Sets a record's row pointer (for kinds that have one) to its own row, as
// after a copy of another record's bytes.
void PointAtOwnRow(const KindSchema& schema, void* record);
// Makes a record what NewRecord gives: zeros, its row pointer on its row.
void ClearRecord(const KindSchema& schema, void* record);

uint32_t& RecordFlagsOf(const KindSchema& schema, void* record);
uint32_t RecordFlagsOf(const KindSchema& schema, const void* record);
void SetLineNumber(const KindSchema& schema, void* record, uint32_t line);
// The row of a record, reached as the kind reaches it.
void* RowOf(const KindSchema& schema, void* record);

// Reads the line fields in order into the record. Returns false when a
// field parser failed (it has reported why); the fields after it are left
// as they were.
bool ParseRecordLine(const KindSchema& schema, char* line, void* record);

// Whether a line of the kind that reads in the form its writer gives can be
// copied instead of written again from its record: the kind reads and
// writes its lines field by field, with numbers, texts, flags and flag
// strings (of a 32-bit member) only, and
// no two fields share a byte (or a flag bit) of the record; or its lines
// have a format of their own, and the kind tells which read as written.
bool LinesCanBeCopied(const KindSchema& schema);

// ParseRecordLine for a kind whose lines can be copied, telling in
// *as_written whether AppendRecordLine would write the record back as the
// line stands (behind the marker its record flags ask for, before the line
// end). A rewrite then copies the line; most lines were written by the
// writer and read back so.
bool ParseRecordLine(const KindSchema& schema, char* line, void* record, bool* as_written);

// The read of a line for a kind whose lines can be copied, whatever their
// format: *as_written is the text the record writes back as (the line, or
// a copy of it kept in *kept before a reader of the kind's own cut it up),
// or nullptr when the record writes back otherwise.
bool ParseLineForCopy(const KindSchema& schema, char* line, void* record, std::string* kept,
                      const char** as_written);

// The line of a record read from `text` with *as_written true, as
// AppendRecordLine writes it: the marker for RECORD_IAO, the text, the
// line end. Other record flags leave the line to AppendRecordLine.
bool AppendLineAsWritten(uint32_t record_flags, const char* text, std::string* out);

// Reads a line the way the kind reads its lines: its own parse_line, or
// the line fields in order; then the kind's after-read checks.
bool DecodeRecordLine(const KindSchema& schema, char* line, void* record);

// Writes the record as one line: the first field (and any field that takes
// them) with the record flags as options (so a record read behind ";IAO;"
// goes back behind it), the last with FO_END_RECORD. False on a short write.
bool WriteRecordLine(const KindSchema& schema, const void* record, QvFile file);
// The bytes WriteRecordLine writes, appended to *out; false where it would
// fail (a value the writer cannot name ends the line there).
bool AppendRecordLine(const KindSchema& schema, const void* record, std::string* out);
// The options WriteRecordLine hands the writer with the field at index.
uint32_t LineFieldOptions(const KindSchema& schema, const void* record, size_t index);
// Whether a field after the first takes the record flags: such a kind's
// inactive records cannot be written as lines that read back.
bool InnerFieldsTakeRecordFlags(const KindSchema& schema);

// One field: parsed at the cursor into the record (false, reported, when
// malformed), or written with the given options (false on a short write or
// a value the field cannot name).
bool ParseLineField(const LineField& field, char** cursor, void* record);
bool WriteLineField(const LineField& field, const void* record, QvFile file, uint32_t options);
// The bytes WriteLineField writes, appended to *out; false (reported) for a
// value the field cannot name, with nothing appended for it.
bool AppendLineField(const LineField& field, const void* record, uint32_t options,
                     std::string* out);

// Integer members of any width, read and written as 32-bit values.
uint32_t GetUnsigned(const void* record, size_t offset, ValueType type);
void SetUnsigned(void* record, size_t offset, ValueType type, uint32_t value);

}  // namespace qv

#endif  // QUORVEX_RECORDS_RECORD_CODEC_H_
