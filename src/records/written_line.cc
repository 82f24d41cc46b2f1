#include "records/written_line.h"

#include <cstring>
#include <memory>

#include "core/text_chars.h"
#include "quorvex/base.h"
#include "records/record_codec.h"

namespace qv {
namespace {

// The largest number a member keeps as read; nine digits fit the others.
uint32_t MostOf(ValueType type) {
  switch (type) {
    case ValueType::kU8:
      return 0xFF;
    case ValueType::kU16:
      return 0xFFFF;
    default:
      return UINT32_MAX;
  }
}

// The end of the field's text that begins at `p` when it is in written
// form, or nullptr. The text reader's rules are followed to the letter: a
// text ends at the first double quote without a caret before it.
const char* WrittenFieldEnd(const LineField& field, const char* p) {
  const bool optional = (field.options & FO_OPTIONAL) != 0;
  switch (field.syntax) {
    case LineSyntax::kInteger: {
      // An optional field writes 0 as nothing, others their digits.
      const char* end = p;
      uint32_t value = 0;
      while (IsDigit(*end) && end - p < 10)
        value = value * 10 + static_cast<uint32_t>(*end++ - '0');
      const size_t length = static_cast<size_t>(end - p);
      if (length == 0) return optional ? end : nullptr;
      if (length > 9 || (p[0] == '0' && (length > 1 || optional))) return nullptr;
      return value <= MostOf(field.type) ? end : nullptr;
    }
    case LineSyntax::kFlag:
      return *p == 'Y' || *p == 'N' ? p + 1 : nullptr;
    case LineSyntax::kFlagString32: {
      // Always 32 letters between quotes, also for an optional field; a
      // narrower member would not keep every letter's bit.
      if (field.type != ValueType::kU32 && field.type != ValueType::kI32) return nullptr;
      if (*p != '"') return nullptr;
      for (int i = 1; i <= 32; ++i) {
        if (p[i] != 'Y' && p[i] != 'N') return nullptr;
      }
      return p[33] == '"' ? p + 34 : nullptr;
    }
    case LineSyntax::kText: {
      // An optional field writes the empty text as nothing, others "".
      if (*p != '"') return optional ? p : nullptr;
      // The closing quote stands within the width, or the text was cut.
      const char* const text = p + 1;
      const char* const last = text + field.width;
      const char* close = text;
      for (; *close != '"' || close[-1] == '^'; ++close) {
        if (*close == '\0' || close == last) return nullptr;
      }
      const size_t inner = static_cast<size_t>(close - text);
      if (inner == 0 && optional) return nullptr;
      // A verbatim field writes no caret before a quote.
      if ((field.options & FO_VERBATIM) != 0 && memchr(text, '"', inner) != nullptr) {
        return nullptr;
      }
      return close + 1;
    }
    default:
      return nullptr;
  }
}

}  // namespace

bool SplitWrittenLine(const KindSchema& schema, const char* line, std::string_view* fields) {
  const char* p = line;
  const size_t count = schema.line.size();
  for (size_t i = 0; i < count; ++i) {
    const char* end = WrittenFieldEnd(schema.line[i], p);
    if (end == nullptr) return false;
    fields[i] = std::string_view(p, static_cast<size_t>(end - p));
    // A comma between fields and none behind the last.
    if (i + 1 == count) return *end == '\0';
    if (*end != ',') return false;
    p = end + 1;
  }
  return false;
}

OtherKeyLines::OtherKeyLines(const KindSchema& schema, std::span<const size_t> key_offsets,
                             const void* record)
    : schema_(schema), fields_(schema.line.size()) {
  if (!LinesCanBeCopied(schema) || schema.written_as_read != nullptr || key_offsets.empty()) {
    return;
  }
  // Copyable lines have no two fields that read into the same bytes.
  for (size_t offset : key_offsets) {
    size_t found = 0;
    while (found < schema.line.size() && schema.line[found].offset != offset) ++found;
    if (found == schema.line.size()) return;
    const LineSyntax syntax = schema.line[found].syntax;
    if (syntax != LineSyntax::kInteger && syntax != LineSyntax::kText) return;
    key_fields_.push_back(found);
  }
  // The record's own line, without its marker, gives its key's texts; a
  // record whose line would not stand as written is left to the full read.
  std::unique_ptr<void, void (*)(void*)> plain(NewRecord(schema), &FreeRecord);
  if (plain == nullptr) return;
  memcpy(plain.get(), record, schema.record_size);
  PointAtOwnRow(schema, plain.get());
  RecordFlagsOf(schema, plain.get()) = 0;
  std::string text;
  if (!AppendRecordLine(schema, plain.get(), &text)) return;
  if (text.size() < 2 || text.compare(text.size() - 2, 2, "\r\n") != 0) return;
  text.resize(text.size() - 2);
  if (!SplitWrittenLine(schema, text.c_str(), fields_.data())) return;
  for (size_t i : key_fields_) key_.emplace_back(fields_[i]);
  usable_ = true;
}

bool OtherKeyLines::Passes(const char* line) const {
  if (!usable_ || !SplitWrittenLine(schema_, line, fields_.data())) return false;
  for (size_t k = 0; k < key_fields_.size(); ++k) {
    if (fields_[key_fields_[k]] != key_[k]) return true;
  }
  return false;
}

}  // namespace qv
