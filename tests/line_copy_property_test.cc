// A put copies a stored line instead of writing it again from its record
// when the line reads in the form the writer gives. That shortcut must never
// change a byte: for every kind whose lines may be copied, random lines
// built from the pieces that trouble the reader (leading zeros, blanks,
// carets, bare quotes, texts at the field's width, missing and extra
// fields) either are not taken as written, or are exactly what the writer
// gives for the record they read into.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "core/report_capture.h"
#include "quorvex/base.h"
#include "records/kind_api.h"
#include "records/kind_schema.h"
#include "records/record_codec.h"
#include "records/written_line.h"

namespace {

constexpr int kLinesPerKind = 5000;

using Record = std::unique_ptr<void, void (*)(void*)>;

Record MakeRecord(const qv::KindSchema& schema) {
  return Record(qv::NewRecord(schema), &qv::FreeRecord);
}

// The kinds whose lines are fields, or (own_format) lines of a format of
// their own, that may be copied.
std::vector<const qv::KindSchema*> CopyableSchemas(bool own_format = false) {
  std::vector<const qv::KindSchema*> schemas;
  for (const qv::KindApi* api : qv::AllKindApis()) {
    const bool own = api->schema->written_as_read != nullptr;
    if (qv::LinesCanBeCopied(*api->schema) && own == own_format) schemas.push_back(api->schema);
  }
  return schemas;
}

// The records' bytes, but for the pointer each keeps to its own row.
bool SameContent(const qv::KindSchema& schema, const void* a, const void* b) {
  const char* x = static_cast<const char*>(a);
  const char* y = static_cast<const char*>(b);
  for (size_t i = 0; i < schema.record_size; ++i) {
    bool row_pointer = schema.row_pointer_offset != SIZE_MAX && i >= schema.row_pointer_offset &&
                       i < schema.row_pointer_offset + sizeof(void*);
    if (!row_pointer && x[i] != y[i]) return false;
  }
  return true;
}

class RandomLines {
 public:
  explicit RandomLines(uint32_t seed) : rng_(seed) {}

  size_t Pick(size_t n) { return static_cast<size_t>(rng_() % n); }

  // A whole line: most fields in the form the writer gives, a few in one
  // the reader takes but the writer never gives; sometimes a field short
  // or one too many, or a comma behind the last.
  std::string Line(const qv::KindSchema& schema) {
    std::string line;
    size_t fields = schema.line.size();
    if (Pick(10) == 0 && fields > 1) fields -= 1 + Pick(2);
    const size_t hostile = Pick(3);
    for (size_t i = 0; i < fields; ++i) {
      if (i > 0) line += ',';
      const qv::LineField& field = schema.line[i];
      line += Pick(fields) < hostile ? Hostile(field) : Written(field);
    }
    if (Pick(10) == 0) line += Pick(2) == 0 ? "," : ",\"extra\"";
    return line;
  }

 private:
  std::string Written(const qv::LineField& field) {
    const bool optional = (field.options & FO_OPTIONAL) != 0;
    switch (field.syntax) {
      case qv::LineSyntax::kInteger: {
        uint32_t most = field.type == qv::ValueType::kU8    ? 255
                        : field.type == qv::ValueType::kU16 ? 65535
                                                            : 999999999;
        uint32_t value = Pick(3) == 0 ? 0 : static_cast<uint32_t>(Pick(most) + 1);
        return value == 0 && optional ? "" : std::to_string(value);
      }
      case qv::LineSyntax::kFlag:
        return Pick(2) == 0 ? "Y" : "N";
      case qv::LineSyntax::kFlagString32: {
        std::string letters;
        for (int i = 0; i < 32; ++i) letters += Pick(2) == 0 ? 'Y' : 'N';
        return "\"" + letters + "\"";
      }
      default: {
        // Carets before quotes count towards the width as they stand.
        static const std::string kPieces[] = {"a", "b", "^\"", "^^\"", "^",  ",",
                                              " ", "=", ";",   "[",    "\t", "\x80"};
        const size_t width = static_cast<size_t>(field.width);
        size_t target = Pick(3) == 0 ? width : Pick(std::min<size_t>(width, 12) + 1);
        if (target == 0) return optional ? "" : "\"\"";
        const bool verbatim = (field.options & FO_VERBATIM) != 0;
        std::string inner;
        while (inner.size() < target) {
          const std::string& piece = kPieces[Pick(std::size(kPieces))];
          if (inner.size() + piece.size() > target) continue;
          if (verbatim && piece.find('"') != std::string::npos) continue;
          inner += piece;
        }
        // A caret before the closing quote would take it into the text.
        if (inner.back() == '^') inner.back() = 'z';
        return "\"" + inner + "\"";
      }
    }
  }

  std::string Hostile(const qv::LineField& field) {
    switch (field.syntax) {
      case qv::LineSyntax::kInteger: {
        static const char* const kForms[] = {"",      "0",          "00",         "007", "256",
                                             "65536", "4294967295", "1234567890", " 5",  "5 ",
                                             "-1",    "+1",         "x",          "12a", "0x10"};
        return kForms[Pick(std::size(kForms))];
      }
      case qv::LineSyntax::kFlag: {
        static const char* const kForms[] = {"y", "n", "", " Y", "Y ", "YY", "1"};
        return kForms[Pick(std::size(kForms))];
      }
      case qv::LineSyntax::kFlagString32: {
        // Letters the reader takes but the writer never gives, too few or
        // too many, blanks around or among them, no quotes.
        std::string letters(32, 'N');
        switch (Pick(8)) {
          case 0:
            letters[Pick(32)] = 'y';
            break;
          case 1:
            letters.pop_back();
            break;
          case 2:
            letters += 'Y';
            break;
          case 3:
            letters[Pick(32)] = ' ';
            break;
          case 4:
            return " \"" + letters + "\"";
          case 5:
            return "\"" + letters + "\" ";
          case 6:
            return letters;
          default:
            return "";
        }
        return "\"" + letters + "\"";
      }
      default: {
        static const char* const kForms[] = {"",       "\"\"", " \"a\"",  "\"a\" ", "\"a\"b\"",
                                             "\"a^\"", "a",    "\"^\"\"", "\"\"\""};
        if (Pick(2) == 0) return kForms[Pick(std::size(kForms))];
        // Longer than the field by a little, counted with or without carets.
        std::string inner(static_cast<size_t>(field.width) + 1, 'w');
        if (Pick(2) == 0) inner.replace(0, 2, "^\"");
        return "\"" + inner + "\"";
      }
    }
  }

  std::mt19937 rng_;
};

TEST(LineCopyPropertyTest, SomeKindsCopyTheirLines) {
  // Ads are the kind the shortcut was made for.
  std::vector<const qv::KindSchema*> schemas = CopyableSchemas();
  bool ads = false;
  for (const qv::KindSchema* schema : schemas) ads = ads || strcmp(schema->kind->code, "AD") == 0;
  EXPECT_TRUE(ads);
}

TEST(LineCopyPropertyTest, ALineTakenAsWrittenIsWhatTheWriterGives) {
  qv::ReportCapture quiet(true);
  RandomLines random(20261123u);
  for (const qv::KindSchema* schema : CopyableSchemas()) {
    SCOPED_TRACE(schema->kind->code);
    Record tracked = MakeRecord(*schema);
    Record plain = MakeRecord(*schema);
    int taken = 0;
    int refused = 0;
    for (int n = 0; n < kLinesPerKind; ++n) {
      const std::string text = random.Line(*schema);
      const uint32_t flags = random.Pick(4) == 0 ? RECORD_IAO : 0;
      qv::ClearRecord(*schema, tracked.get());
      qv::ClearRecord(*schema, plain.get());
      qv::RecordFlagsOf(*schema, tracked.get()) = flags;
      qv::RecordFlagsOf(*schema, plain.get()) = flags;
      std::vector<char> line(text.begin(), text.end());
      line.push_back('\0');
      std::vector<char> plain_line = line;

      bool as_written = true;
      const bool parsed = qv::ParseRecordLine(*schema, line.data(), tracked.get(), &as_written);
      // Telling whether the line is as written changes nothing of the read.
      ASSERT_EQ(parsed, qv::ParseRecordLine(*schema, plain_line.data(), plain.get())) << text;
      ASSERT_TRUE(SameContent(*schema, tracked.get(), plain.get())) << text;
      ASSERT_STREQ(line.data(), text.c_str()) << "the read changed the line";
      if (!as_written) {
        ++refused;
        continue;
      }
      ++taken;
      ASSERT_TRUE(parsed) << text;
      std::string copied;
      ASSERT_TRUE(qv::AppendLineAsWritten(flags, line.data(), &copied));
      std::string written;
      ASSERT_TRUE(qv::AppendRecordLine(*schema, tracked.get(), &written));
      ASSERT_EQ(copied, written) << text;
    }
    // Both sides of the question came up often enough to mean something.
    EXPECT_GT(taken, kLinesPerKind / 50);
    EXPECT_GT(refused, kLinesPerKind / 50);
  }
}

TEST(LineCopyPropertyTest, WhatTheWriterGivesIsTakenAsWritten) {
  // Lines written from records of plain values (letters within the width,
  // numbers that fit their member) are the common case, and every one of
  // them is copied.
  qv::ReportCapture quiet(true);
  std::mt19937 rng(7u);
  for (const qv::KindSchema* schema : CopyableSchemas()) {
    SCOPED_TRACE(schema->kind->code);
    Record record = MakeRecord(*schema);
    Record read = MakeRecord(*schema);
    for (int n = 0; n < 2000; ++n) {
      qv::ClearRecord(*schema, record.get());
      for (const qv::LineField& field : schema->line) {
        char* at = static_cast<char*>(record.get()) + field.offset;
        if (field.syntax == qv::LineSyntax::kText) {
          size_t length = rng() % (static_cast<size_t>(field.width) + 1);
          for (size_t i = 0; i < length; ++i) at[i] = static_cast<char>('a' + rng() % 26);
          at[length] = '\0';
        } else if (field.syntax == qv::LineSyntax::kFlag) {
          uint32_t word = qv::GetUnsigned(record.get(), field.offset, field.type);
          word = rng() % 2 ? word | field.bit : word & ~field.bit;
          qv::SetUnsigned(record.get(), field.offset, field.type, word);
        } else {
          qv::SetUnsigned(record.get(), field.offset, field.type, rng() % 300);
        }
      }
      const uint32_t flags = rng() % 2 ? RECORD_IAO : 0;
      qv::RecordFlagsOf(*schema, record.get()) = flags;
      std::string written;
      ASSERT_TRUE(qv::AppendRecordLine(*schema, record.get(), &written));
      std::string text = written.substr(0, written.size() - 2);
      if (flags != 0) text = text.substr(strlen(";IAO;"));
      std::vector<char> line(text.begin(), text.end());
      line.push_back('\0');
      qv::ClearRecord(*schema, read.get());
      qv::RecordFlagsOf(*schema, read.get()) = flags;
      bool as_written = false;
      ASSERT_TRUE(qv::ParseRecordLine(*schema, line.data(), read.get(), &as_written)) << text;
      EXPECT_TRUE(as_written) << text;
    }
  }
}

// A put passes most lines on their bytes alone: a line split so must be
// one the full read takes as written without a problem, and every such
// line is split, with its fields' texts as they stand.
TEST(LineCopyPropertyTest, ALineIsSplitOnItsBytesExactlyWhenTheReadTakesItAsWritten) {
  qv::ReportCapture quiet(true);
  RandomLines random(20261125u);
  for (const qv::KindSchema* schema : CopyableSchemas()) {
    SCOPED_TRACE(schema->kind->code);
    Record record = MakeRecord(*schema);
    std::vector<std::string_view> fields(schema->line.size());
    int split = 0;
    for (int n = 0; n < kLinesPerKind; ++n) {
      const std::string text = random.Line(*schema);
      qv::ClearRecord(*schema, record.get());
      std::vector<char> line(text.begin(), text.end());
      line.push_back('\0');
      const uint64_t problems = qv::ParseProblemCount();
      bool as_written = false;
      const bool parsed = qv::ParseRecordLine(*schema, line.data(), record.get(), &as_written);
      const bool clean = parsed && as_written && qv::ParseProblemCount() == problems;
      ASSERT_EQ(qv::SplitWrittenLine(*schema, text.c_str(), fields.data()), clean) << text;
      if (!clean) continue;
      ++split;
      std::string joined;
      for (size_t i = 0; i < fields.size(); ++i) {
        if (i > 0) joined += ',';
        joined.append(fields[i]);
        ASSERT_GE(fields[i].data(), text.c_str());
        ASSERT_LE(fields[i].data() + fields[i].size(), text.c_str() + text.size());
      }
      ASSERT_EQ(joined, text);
    }
    EXPECT_GT(split, kLinesPerKind / 50);
  }
}

// Two lines that stand as written carry the same value in a number or text
// field exactly when the field's texts are the same.
TEST(LineCopyPropertyTest, WrittenFieldTextsAreEqualExactlyWhenTheirValuesAre) {
  qv::ReportCapture quiet(true);
  RandomLines random(20261126u);
  for (const qv::KindSchema* schema : CopyableSchemas()) {
    SCOPED_TRACE(schema->kind->code);
    struct Split {
      std::string text;
      Record record;
      std::vector<std::string_view> fields;
    };
    // The fields point into each line's text, which stays where it is: the
    // vector never grows past what it holds room for.
    std::vector<Split> lines;
    lines.reserve(300);
    while (lines.size() < 300) {
      Split& line = lines.emplace_back(Split{random.Line(*schema), MakeRecord(*schema), {}});
      line.fields.resize(schema->line.size());
      if (!qv::SplitWrittenLine(*schema, line.text.c_str(), line.fields.data())) {
        lines.pop_back();
        continue;
      }
      std::vector<char> bytes(line.text.begin(), line.text.end());
      bytes.push_back('\0');
      ASSERT_TRUE(qv::ParseRecordLine(*schema, bytes.data(), line.record.get()));
    }
    int equal = 0;
    for (size_t a = 0; a < lines.size(); ++a) {
      for (size_t b = a + 1; b < lines.size(); ++b) {
        for (size_t i = 0; i < schema->line.size(); ++i) {
          const qv::LineField& field = schema->line[i];
          bool same_value;
          if (field.syntax == qv::LineSyntax::kText) {
            same_value =
                strcmp(static_cast<const char*>(lines[a].record.get()) + field.offset,
                       static_cast<const char*>(lines[b].record.get()) + field.offset) == 0;
          } else if (field.syntax == qv::LineSyntax::kInteger) {
            same_value = qv::GetUnsigned(lines[a].record.get(), field.offset, field.type) ==
                         qv::GetUnsigned(lines[b].record.get(), field.offset, field.type);
          } else {
            continue;
          }
          ASSERT_EQ(lines[a].fields[i] == lines[b].fields[i], same_value)
              << testing::PrintToString(lines[a].text) << " / "
              << testing::PrintToString(lines[b].text) << " field " << i;
          if (same_value) ++equal;
        }
      }
    }
    EXPECT_GT(equal, 0);
  }
}

// Lines of a format of their own (key=value messages): random lines of the
// pieces that trouble that reader (no "=", several, blanks at either end,
// parts at and beyond their width, the marker's text) are either not taken
// as written, or exactly what the writer gives for the record they read
// into; and what the writer gives for plain records is taken.
TEST(LineCopyPropertyTest, OwnFormatLinesTakenAsWrittenAreWhatTheWriterGives) {
  qv::ReportCapture quiet(true);
  std::mt19937 rng(20261124u);
  const std::vector<const qv::KindSchema*> schemas = CopyableSchemas(true);
  ASSERT_FALSE(schemas.empty());
  auto pick = [&](size_t n) { return static_cast<size_t>(rng() % n); };
  static const std::string kPieces[] = {"a", "=", " ", "\t",   ";",  "\"",
                                        "^", ",", "[", "\x80", "IAO"};
  auto part = [&](size_t most) {
    std::string text;
    const size_t target = pick(4) == 0 ? most + pick(3) : pick(12);
    while (text.size() < target) text += kPieces[pick(std::size(kPieces))];
    return text;
  };
  for (const qv::KindSchema* schema : schemas) {
    SCOPED_TRACE(schema->kind->code);
    Record record = MakeRecord(*schema);
    int taken = 0;
    int refused = 0;
    for (int n = 0; n < kLinesPerKind; ++n) {
      std::string text = part(260);
      if (pick(5) != 0) text += "=" + part(pick(20) == 0 ? 5000 : 40);
      // The reader gives no blanks at the end.
      while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.pop_back();
      const uint32_t flags = pick(4) == 0 ? RECORD_IAO : 0;
      qv::ClearRecord(*schema, record.get());
      qv::RecordFlagsOf(*schema, record.get()) = flags;
      std::vector<char> line(text.begin(), text.end());
      line.push_back('\0');
      std::string kept;
      const char* as_written = nullptr;
      qv::ParseLineForCopy(*schema, line.data(), record.get(), &kept, &as_written);
      if (as_written == nullptr) {
        ++refused;
        continue;
      }
      ++taken;
      ASSERT_EQ(std::string(as_written), text);
      std::string copied;
      ASSERT_TRUE(qv::AppendLineAsWritten(flags, as_written, &copied));
      std::string written;
      ASSERT_TRUE(qv::AppendRecordLine(*schema, record.get(), &written));
      ASSERT_EQ(copied, written) << text;

      // The writer's own line of the record reads as written again.
      std::string again = written.substr(0, written.size() - 2);
      if (flags != 0) again = again.substr(strlen(";IAO;"));
      std::vector<char> again_line(again.begin(), again.end());
      again_line.push_back('\0');
      Record reread = MakeRecord(*schema);
      qv::RecordFlagsOf(*schema, reread.get()) = flags;
      qv::ParseLineForCopy(*schema, again_line.data(), reread.get(), &kept, &as_written);
      EXPECT_NE(as_written, nullptr) << again;
    }
    EXPECT_GT(taken, kLinesPerKind / 50);
    EXPECT_GT(refused, kLinesPerKind / 50);
  }
}

// A schema made by hand, to pin which layouts may be copied.
struct Layout {
  uint32_t flags;
  uint16_t count;
  uint8_t small;
  uint8_t pad;
  uint32_t bits;
  char name[8];
  uint32_t record_flags;
  uint32_t line_number;
};

qv::KindSchema LayoutSchema(std::vector<qv::LineField> line) {
  qv::KindSchema schema{};
  schema.record_size = sizeof(Layout);
  schema.record_flags_offset = offsetof(Layout, record_flags);
  schema.line_number_offset = offsetof(Layout, line_number);
  schema.line = std::move(line);
  return schema;
}

qv::LineField Integer(size_t offset, qv::ValueType type, uint32_t options = 0) {
  return {qv::LineSyntax::kInteger, offset, type, 0, options, 0};
}
qv::LineField Flag(size_t offset, uint32_t bit) {
  return {qv::LineSyntax::kFlag, offset, qv::ValueType::kU32, 0, FO_OPTIONAL, bit};
}
qv::LineField Text(size_t offset, int width, uint32_t options = 0) {
  return {qv::LineSyntax::kText, offset, qv::ValueType::kText, width, options, 0};
}

TEST(LineCopyPropertyTest, FieldsOfTheirOwnMayBeCopied) {
  EXPECT_TRUE(qv::LinesCanBeCopied(LayoutSchema({
      Integer(offsetof(Layout, count), qv::ValueType::kU16),
      Integer(offsetof(Layout, small), qv::ValueType::kU8, FO_OPTIONAL),
      Flag(offsetof(Layout, bits), 1),
      Flag(offsetof(Layout, bits), 2),  // the same word, another bit
      Text(offsetof(Layout, name), 7, FO_OPTIONAL | FO_VERBATIM),
  })));
}

TEST(LineCopyPropertyTest, FieldsThatShareBytesAreNotCopied) {
  // Two flags for one bit: the later one decides what the record holds.
  EXPECT_FALSE(qv::LinesCanBeCopied(
      LayoutSchema({Flag(offsetof(Layout, bits), 1), Flag(offsetof(Layout, bits), 1)})));
  // A number over part of another number.
  EXPECT_FALSE(qv::LinesCanBeCopied(
      LayoutSchema({Integer(offsetof(Layout, flags), qv::ValueType::kU32),
                    Integer(offsetof(Layout, flags) + 2, qv::ValueType::kU16)})));
  // A flag whose word is a number of the line.
  EXPECT_FALSE(qv::LinesCanBeCopied(LayoutSchema(
      {Integer(offsetof(Layout, bits), qv::ValueType::kU32), Flag(offsetof(Layout, bits), 4)})));
  // A text whose terminator lands on the next member.
  EXPECT_FALSE(qv::LinesCanBeCopied(
      LayoutSchema({Text(offsetof(Layout, name), 8),
                    Integer(offsetof(Layout, record_flags), qv::ValueType::kU32)})));
  // A field over the record flags or the line number, which are set before
  // the line is read.
  EXPECT_FALSE(qv::LinesCanBeCopied(
      LayoutSchema({Integer(offsetof(Layout, record_flags), qv::ValueType::kU32)})));
  EXPECT_FALSE(qv::LinesCanBeCopied(
      LayoutSchema({Integer(offsetof(Layout, line_number), qv::ValueType::kU32)})));
  // A flag that stands for no bit.
  EXPECT_FALSE(qv::LinesCanBeCopied(LayoutSchema({Flag(offsetof(Layout, bits), 0)})));
}

TEST(LineCopyPropertyTest, FieldsTheCheckDoesNotKnowAreNotCopied) {
  EXPECT_FALSE(qv::LinesCanBeCopied(LayoutSchema({})));
  EXPECT_FALSE(qv::LinesCanBeCopied(
      LayoutSchema({Integer(offsetof(Layout, count), qv::ValueType::kU16, FO_UNQUOTED)})));
  EXPECT_FALSE(qv::LinesCanBeCopied(LayoutSchema({Text(offsetof(Layout, name), 7, FO_UNQUOTED)})));
  qv::LineField later_marker = Integer(offsetof(Layout, count), qv::ValueType::kU16);
  later_marker.takes_record_flags = true;
  EXPECT_FALSE(qv::LinesCanBeCopied(
      LayoutSchema({Integer(offsetof(Layout, flags), qv::ValueType::kU32), later_marker})));
  qv::LineField os = {
      qv::LineSyntax::kOsType, offsetof(Layout, flags), qv::ValueType::kU32, 15, 0, 0};
  EXPECT_FALSE(qv::LinesCanBeCopied(LayoutSchema({os})));
  qv::KindSchema own_reader = LayoutSchema({Integer(offsetof(Layout, count), qv::ValueType::kU16)});
  own_reader.parse_line = [](char*, void*) { return true; };
  EXPECT_FALSE(qv::LinesCanBeCopied(own_reader));
}

TEST(LineCopyPropertyTest, OnlyTheMarkerFlagIsCopied) {
  std::string out;
  EXPECT_TRUE(qv::AppendLineAsWritten(0, "1,\"a\"", &out));
  EXPECT_TRUE(qv::AppendLineAsWritten(RECORD_IAO, "2,\"b\"", &out));
  EXPECT_FALSE(qv::AppendLineAsWritten(RECORD_IAO | 1, "3,\"c\"", &out));
  EXPECT_EQ(out, "1,\"a\"\r\n;IAO;2,\"b\"\r\n");
}

}  // namespace

namespace {

// A Layout record with the given values.
Layout LayoutOf(uint16_t count, const char* name) {
  Layout layout{};
  layout.count = count;
  snprintf(layout.name, sizeof layout.name, "%s", name);
  return layout;
}

qv::KindSchema KeyedLayout(std::vector<qv::LineField> line) {
  qv::KindSchema schema = LayoutSchema(std::move(line));
  schema.row_pointer_offset = SIZE_MAX;
  return schema;
}

TEST(LineCopyPropertyTest, OtherKeyLinesPassOnlyLinesAsWrittenWithAnotherKey) {
  const qv::KindSchema schema = KeyedLayout(
      {Integer(offsetof(Layout, count), qv::ValueType::kU16), Text(offsetof(Layout, name), 7)});
  const Layout record = LayoutOf(12, "Disk");
  const size_t count[] = {offsetof(Layout, count)};
  const qv::OtherKeyLines by_count(schema, count, &record);
  ASSERT_TRUE(by_count.usable());
  EXPECT_TRUE(by_count.Passes("3,\"Disk\""));
  EXPECT_FALSE(by_count.Passes("12,\"Other\""));  // the key: the put's own
  EXPECT_FALSE(by_count.Passes("012,\"Disk\""));  // not as written
  EXPECT_FALSE(by_count.Passes("3, \"Disk\""));
  EXPECT_FALSE(by_count.Passes("70000,\"Disk\""));  // beyond the member
  EXPECT_FALSE(by_count.Passes("3,\"Disk\",\"x\""));
  EXPECT_FALSE(by_count.Passes("3"));
  const size_t both[] = {offsetof(Layout, count), offsetof(Layout, name)};
  const qv::OtherKeyLines by_both(schema, both, &record);
  ASSERT_TRUE(by_both.usable());
  EXPECT_TRUE(by_both.Passes("12,\"disk\""));  // texts compare by case
  EXPECT_TRUE(by_both.Passes("12,\"Dis^\"k\""));
  EXPECT_FALSE(by_both.Passes("12,\"Disk\""));
  // The record's flags do not change its key.
  Layout marked = record;
  marked.record_flags = RECORD_IAO;
  EXPECT_FALSE(qv::OtherKeyLines(schema, both, &marked).Passes("12,\"Disk\""));
}

TEST(LineCopyPropertyTest, AKeyTheLineCannotTellIsLeftToTheFullRead) {
  const Layout record = LayoutOf(12, "Disk");
  const qv::KindSchema schema =
      KeyedLayout({Integer(offsetof(Layout, count), qv::ValueType::kU16),
                   Text(offsetof(Layout, name), 7), Flag(offsetof(Layout, bits), 1)});
  const size_t off_the_line[] = {offsetof(Layout, small)};
  EXPECT_FALSE(qv::OtherKeyLines(schema, off_the_line, &record).usable());
  const size_t flag[] = {offsetof(Layout, bits)};
  EXPECT_FALSE(qv::OtherKeyLines(schema, flag, &record).usable());
  EXPECT_FALSE(qv::OtherKeyLines(schema, {}, &record).usable());
  // A record whose text is wider than its field writes no line to compare.
  const qv::KindSchema narrow = KeyedLayout(
      {Integer(offsetof(Layout, count), qv::ValueType::kU16), Text(offsetof(Layout, name), 3)});
  const size_t count[] = {offsetof(Layout, count)};
  const Layout fits = LayoutOf(12, "Dsk");
  EXPECT_TRUE(qv::OtherKeyLines(narrow, count, &fits).usable());
  const Layout wide = LayoutOf(12, "Disk");
  EXPECT_FALSE(qv::OtherKeyLines(narrow, count, &wide).usable());
  // Flag strings of a member narrower than their 32 letters.
  qv::LineField narrow_flags = {
      qv::LineSyntax::kFlagString32, offsetof(Layout, count), qv::ValueType::kU16, 0, 0, 0};
  const std::string letters = "\"" + std::string(32, 'N') + "\"";
  std::string_view field;
  EXPECT_FALSE(qv::SplitWrittenLine(KeyedLayout({narrow_flags}), letters.c_str(), &field));
  qv::LineField word_flags = narrow_flags;
  word_flags.type = qv::ValueType::kU32;
  word_flags.offset = offsetof(Layout, bits);
  EXPECT_TRUE(qv::SplitWrittenLine(KeyedLayout({word_flags}), letters.c_str(), &field));
  EXPECT_EQ(field, letters);
  // Lines the check cannot judge on their bytes.
  const qv::KindSchema unquoted =
      KeyedLayout({Integer(offsetof(Layout, count), qv::ValueType::kU16),
                   Text(offsetof(Layout, name), 7, FO_UNQUOTED)});
  EXPECT_FALSE(qv::OtherKeyLines(unquoted, count, &record).usable());
}

}  // namespace
