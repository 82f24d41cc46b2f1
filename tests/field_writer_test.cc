// The field writer and the typed writers: exact bytes, the scratch-buffer
// effect, short writes, and the round trip through the reader.

#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <csignal>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "platform/file.h"
#include "platform/write_faults.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::ReadFileBytes;

class FieldWriterTest : public ::testing::Test {
 protected:
  // Runs write on a fresh file and returns the bytes that ended up in it.
  std::string Written(const std::function<void(QvFile)>& write) {
    std::string path = dir_.Join("out" + std::to_string(files_++) + ".txt");
    qv::File* file = qv::File::Open(path, qv::OpenMode::kCreateAlways);
    EXPECT_NE(file, nullptr);
    write(file->handle());
    delete file;
    return ReadFileBytes(path);
  }

  std::string Field(std::string text, uint32_t options) {
    return Written([&](QvFile f) { EXPECT_EQ(WriteField(text.data(), f, options), 1); });
  }

  qvtest::ScriptedHost host_;
  qvtest::TempDir dir_;
  int files_ = 0;
};

TEST_F(FieldWriterTest, EscapesEmbeddedQuotesWithCaret) {
  EXPECT_EQ(Field("say \"hi\"", 0), "\"say ^\"hi^\"\",");
}

TEST_F(FieldWriterTest, TextBufferKeepsOnlyWhatFollowedTheLastQuote) {
  char text[] = "say \"hi\" there";
  std::string bytes = Written([&](QvFile f) { EXPECT_EQ(WriteField(text, f, 0), 1); });
  EXPECT_EQ(bytes, "\"say ^\"hi^\" there\",");
  EXPECT_STREQ(text, " there");

  char ends_with_quote[] = "a\"";
  Written([&](QvFile f) { WriteField(ends_with_quote, f, 0); });
  EXPECT_STREQ(ends_with_quote, "");

  char no_quote[] = "plain";
  Written([&](QvFile f) { WriteField(no_quote, f, 0); });
  EXPECT_STREQ(no_quote, "plain");
}

TEST_F(FieldWriterTest, VerbatimWritesTheTextAsItStands) {
  char text[] = "a^\"b\"c";
  std::string bytes = Written([&](QvFile f) { EXPECT_EQ(WriteField(text, f, FO_VERBATIM), 1); });
  EXPECT_EQ(bytes, "\"a^\"b\"c\",");
  EXPECT_STREQ(text, "a^\"b\"c");
}

TEST_F(FieldWriterTest, EmptyOptionalTextWritesOnlyTheSeparator) {
  EXPECT_EQ(Field("", FO_OPTIONAL), ",");
  EXPECT_EQ(Field("", FO_OPTIONAL | FO_END_RECORD), "\r\n");
  EXPECT_EQ(Field("x", FO_OPTIONAL), "\"x\",");
}

TEST_F(FieldWriterTest, EmptyTextWithoutOptionalIsQuoted) {
  EXPECT_EQ(Field("", 0), "\"\",");
  EXPECT_EQ(Field("", FO_END_RECORD), "\"\"\r\n");
}

TEST_F(FieldWriterTest, UnquotedAndEndRecord) {
  EXPECT_EQ(Field("abc", FO_UNQUOTED), "abc,");
  EXPECT_EQ(Field("abc", FO_UNQUOTED | FO_END_RECORD), "abc\r\n");
  EXPECT_EQ(Field("a\"b", FO_UNQUOTED), "a^\"b,");
}

TEST_F(FieldWriterTest, IaoMarkerComesBeforeTheField) {
  EXPECT_EQ(Field("x", FO_IAO), ";IAO;\"x\",");
  EXPECT_EQ(Field("", FO_IAO | FO_OPTIONAL), ";IAO;,");
}

TEST_F(FieldWriterTest, LowBitsOfTheOptionsAreIgnored) {
  EXPECT_EQ(Field("x", 0x0000FFFFu), "\"x\",");
}

TEST_F(FieldWriterTest, IaoRecordIsReadBackWithItsFlag) {
  std::string path = dir_.Join("ads.ad");
  qv::File* file = qv::File::Open(path, qv::OpenMode::kCreateAlways);
  ASSERT_NE(file, nullptr);
  file->Write("[Ads]\n", 6);
  WriteUnsignedField(7, file->handle(), RECORD_IAO);
  char name[] = "An \"Ad\"";
  WriteField(name, file->handle(), FO_END_RECORD);
  WriteUnsignedField(8, file->handle(), 0);
  char other[] = "Plain";
  WriteField(other, file->handle(), FO_END_RECORD);
  delete file;
  EXPECT_EQ(ReadFileBytes(path), "[Ads]\n;IAO;7,\"An ^\"Ad^\"\"\r\n8,\"Plain\"\r\n");

  QvFile in = QvOpenFileForRead(path.c_str());
  SetParseFile(path.c_str());
  ASSERT_EQ(FindSection(in, "Ads"), 1);
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  ASSERT_EQ(ReadRecordLine(in, record, &flags, COMMENT_MODE_RECORDS), 1);
  EXPECT_EQ(flags, RECORD_IAO);
  char* cursor = record;
  int32_t id = 0;
  char text[41];
  ParseLong(&cursor, &id, 0);
  ASSERT_EQ(ParseQuotedString(&cursor, text, 0, sizeof text), 1);
  EXPECT_EQ(id, 7);
  EXPECT_STREQ(text, "An \"Ad\"");
  ASSERT_EQ(ReadRecordLine(in, record, &flags, COMMENT_MODE_RECORDS), 1);
  EXPECT_EQ(flags, 0u);
  EXPECT_STREQ(record, "8,\"Plain\"");

  // Profiles opened with marked records ignored never see it.
  ASSERT_EQ(FindSection(in, "Ads"), 1);
  ASSERT_EQ(ReadRecordLine(in, record, &flags, COMMENT_MODE_ACTIVE_ONLY), 1);
  EXPECT_STREQ(record, "8,\"Plain\"");
  QvCloseFile(in);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(FieldWriterTest, WriteFailureReturnsZeroButTypedWritersReturnOne) {
  std::string path = dir_.Write("readonly.txt", "");
  qv::File* file = qv::File::Open(path, qv::OpenMode::kReadExisting);
  ASSERT_NE(file, nullptr);
  char text[] = "abc";
  EXPECT_EQ(WriteField(text, file->handle(), 0), 0);
  EXPECT_EQ(WriteUnsignedField(5, file->handle(), 0), 1);
  EXPECT_EQ(WriteIntegerField(5, file->handle(), 0), 1);
  EXPECT_EQ(WriteFlagField(1, file->handle(), 0), 1);
  EXPECT_EQ(WriteFlagString32Field(1, file->handle(), 0), 1);
  EXPECT_EQ(WriteVersionQuadField(1, 1, file->handle(), 0), 1);
  EXPECT_EQ(WriteDateTimeField(946684799u, file->handle(), 0), 1);
  EXPECT_EQ(WriteOsTypeField(2, file->handle(), 0), 1);
  delete file;
  EXPECT_EQ(ReadFileBytes(path), "");
  EXPECT_EQ(WriteField(text, QV_NO_FILE, 0), 0);
}

#ifdef _WIN32
// Windows has no file size limit for a process: the engine's own write
// budget makes the writes short at the same byte, the way a full disk does.
// The result is WriteField's, as the child's exit code is on POSIX.
int WriteFieldUnderSizeLimit(const std::string& path, int64_t limit, uint32_t options) {
  qv::File* file = qv::File::Open(path, qv::OpenMode::kCreateAlways);
  if (file == nullptr) return 100;
  qv::SetWriteBudget(limit);
  char text[] = "abc";
  int result = WriteField(text, file->handle(), options);
  qv::SetWriteBudget(-1);
  delete file;
  return result;
}
#else
// A file size limit makes the writes short at an exact byte; the child
// reports WriteField's result as its exit code.
int WriteFieldUnderSizeLimit(const std::string& path, rlim_t limit, uint32_t options) {
  pid_t child = fork();
  if (child == 0) {
    signal(SIGXFSZ, SIG_IGN);
    qv::File* file = qv::File::Open(path, qv::OpenMode::kCreateAlways);
    if (file == nullptr) _exit(100);
    struct rlimit rl = {limit, limit};
    setrlimit(RLIMIT_FSIZE, &rl);
    char text[] = "abc";
    int result = WriteField(text, file->handle(), options);
    delete file;
    _exit(result);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
#endif

TEST_F(FieldWriterTest, ShortWriteStopsTheLineAtOnce) {
  std::string path = dir_.Join("short.txt");
  // Room for the marker and the opening quote only: the text fails and
  // nothing after it is attempted.
  EXPECT_EQ(WriteFieldUnderSizeLimit(path, 6, FO_IAO), 0);
  EXPECT_EQ(ReadFileBytes(path), ";IAO;\"");
  // A piece written in part counts as short too.
  EXPECT_EQ(WriteFieldUnderSizeLimit(path, 3, FO_IAO), 0);
  EXPECT_EQ(ReadFileBytes(path), ";IA");
  // The closing separator is checked as well.
  EXPECT_EQ(WriteFieldUnderSizeLimit(path, 5, 0), 0);
  EXPECT_EQ(ReadFileBytes(path), "\"abc\"");
  EXPECT_EQ(WriteFieldUnderSizeLimit(path, 6, 0), 1);
  EXPECT_EQ(ReadFileBytes(path), "\"abc\",");
}

TEST_F(FieldWriterTest, UnsignedField) {
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteUnsignedField(0, f, 0), 1); }), "0,");
  EXPECT_EQ(Written([](QvFile f) { WriteUnsignedField(0, f, FO_OPTIONAL); }), ",");
  EXPECT_EQ(Written([](QvFile f) { WriteUnsignedField(12, f, FO_OPTIONAL); }), "12,");
  EXPECT_EQ(Written([](QvFile f) { WriteUnsignedField(4294967295u, f, FO_END_RECORD); }),
            "4294967295\r\n");
  // Never quoted, whatever the caller asks.
  EXPECT_EQ(Written([](QvFile f) { WriteUnsignedField(3, f, 0); }), "3,");
  EXPECT_EQ(Written([](QvFile f) { WriteUnsignedField(3, f, FO_IAO); }), ";IAO;3,");
}

TEST_F(FieldWriterTest, IntegerField) {
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteIntegerField(-5, f, 0), 1); }), "-5,");
  EXPECT_EQ(Written([](QvFile f) { WriteIntegerField(0, f, 0); }), "0,");
  EXPECT_EQ(Written([](QvFile f) { WriteIntegerField(0, f, FO_OPTIONAL | FO_END_RECORD); }),
            "\r\n");
  EXPECT_EQ(Written([](QvFile f) { WriteIntegerField(2147483647, f, 0); }), "2147483647,");
  EXPECT_EQ(Written([](QvFile f) { WriteIntegerField(-2147483647 - 1, f, 0); }), "-2147483648,");
}

TEST_F(FieldWriterTest, DateTimeField) {
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteDateTimeField(946684799u, f, 0), 1); }),
            "\"12/31/99 23:59:59\",");
  EXPECT_EQ(Written([](QvFile f) { WriteDateTimeField(946684800u, f, FO_UNQUOTED); }),
            "\"01/01/00 00:00:00\",");
  EXPECT_EQ(Written([](QvFile f) { WriteDateTimeField(0, f, 0); }), "\"\",");
  EXPECT_EQ(Written([](QvFile f) { WriteDateTimeField(0, f, FO_OPTIONAL); }), ",");
}

TEST_F(FieldWriterTest, FormatVersionQuad) {
  char text[64] = "junk";
  const uint32_t pair[2] = {0x00050002u, 0x00010007u};
  EXPECT_EQ(FormatVersionQuad(text, pair), 1);
  EXPECT_STREQ(text, "5 2 1 7");
  const uint32_t zero[2] = {0, 0};
  EXPECT_EQ(FormatVersionQuad(text, zero), 1);
  EXPECT_STREQ(text, "");
  const uint32_t full[2] = {0xFFFFFFFFu, 0xFFFFFFFFu};
  FormatVersionQuad(text, full);
  EXPECT_STREQ(text, "65535 65535 65535 65535");
  const uint32_t low_only[2] = {0, 1};
  FormatVersionQuad(text, low_only);
  EXPECT_STREQ(text, "0 0 0 1");
}

TEST_F(FieldWriterTest, VersionQuadField) {
  EXPECT_EQ(Written([](QvFile f) {
              EXPECT_EQ(WriteVersionQuadField(0x00050002u, 0x00010007u, f, 0), 1);
            }),
            "5 2 1 7,");
  EXPECT_EQ(Written([](QvFile f) { WriteVersionQuadField(0, 0, f, 0); }), ",");
  EXPECT_EQ(Written([](QvFile f) { WriteVersionQuadField(0, 0, f, FO_OPTIONAL | FO_END_RECORD); }),
            "\r\n");
}

TEST_F(FieldWriterTest, FlagString32Field) {
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteFlagString32Field(0xF0F0F0F0u, f, 0), 1); }),
            "\"YYYYNNNNYYYYNNNNYYYYNNNNYYYYNNNN\",");
  EXPECT_EQ(Written([](QvFile f) { WriteFlagString32Field(0x80000001u, f, FO_UNQUOTED); }),
            "\"YNNNNNNNNNNNNNNNNNNNNNNNNNNNNNNY\",");
  EXPECT_EQ(Written([](QvFile f) { WriteFlagString32Field(0, f, FO_OPTIONAL | FO_END_RECORD); }),
            "\"NNNNNNNNNNNNNNNNNNNNNNNNNNNNNNNN\"\r\n");
}

TEST_F(FieldWriterTest, AFullDiskStopsAFieldAfterTheBytesThatFit) {
  const std::string whole = ";IAO;\"say ^\"hi^\"\"\r\n";
  for (size_t room = 0; room < whole.size(); ++room) {
    std::string scratch = "say \"hi\"";
    std::string written = Written([&](QvFile f) {
      qv::SetWriteBudget(static_cast<int64_t>(room));
      EXPECT_EQ(WriteField(scratch.data(), f, FO_IAO | FO_END_RECORD), 0);
      qv::SetWriteBudget(-1);
    });
    EXPECT_EQ(written, whole.substr(0, room));
  }
  std::string scratch = "say \"hi\"";
  EXPECT_EQ(Written([&](QvFile f) { EXPECT_EQ(WriteField(scratch.data(), f, FO_IAO), 1); }),
            ";IAO;\"say ^\"hi^\"\",");
  EXPECT_STREQ(scratch.c_str(), "");  // only what followed the last quote
}

TEST_F(FieldWriterTest, FlagField) {
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteFlagField(5, f, 0), 1); }), "Y,");
  EXPECT_EQ(Written([](QvFile f) { WriteFlagField(0, f, 0); }), "N,");
  EXPECT_EQ(Written([](QvFile f) { WriteFlagField(0x80000000u, f, FO_END_RECORD); }), "Y\r\n");
  EXPECT_EQ(Written([](QvFile f) { WriteFlagField(0, f, FO_OPTIONAL); }), "N,");
}

TEST_F(FieldWriterTest, OsTypeField) {
  const char* names[] = {"WIN32_S", "WIN32_WINDOWS", "WIN32_NT", "WIN16"};
  for (int code = 0; code < 4; ++code) {
    EXPECT_EQ(Written([&](QvFile f) { EXPECT_EQ(WriteOsTypeField(code, f, FO_UNQUOTED), 1); }),
              std::string("\"") + names[code] + "\",");
  }
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(FieldWriterTest, UnsupportedOsTypeIsReportedWithTheLinePrefix) {
  SetParseFile("C:\\profile\\modules\\TETE80.MO");
  char line[QV_LINE_SIZE];
  std::string path = dir_.Write("three.txt", "a\nb\nc\n");
  QvFile in = QvOpenFileForRead(path.c_str());
  for (int i = 0; i < 3; ++i) ReadProfileLine(in, line, sizeof line);
  QvCloseFile(in);
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteOsTypeField(4, f, 0), 0); }), "");
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteOsTypeField(-1, f, 0), 0); }), "");
  ASSERT_EQ(host_.errors().size(), 2u);
  EXPECT_EQ(host_.errors()[0], "C:\\profile\\modules\\TETE80.MO : Line #3\nUnsupported OS Type");
}

// ---------------------------------------------------------------------------
// Round trip: what the writer writes the reader reads back to the same
// value, and what the reader accepts in the writer's form is written back
// byte for byte.

enum class Kind { kString, kUnsigned, kInteger, kDate, kVersion, kFlagWord, kFlag, kOsType };

struct Value {
  Kind kind;
  std::string text;  // kString
  uint32_t a = 0;    // the number, date, flag word, flag, OS type or high word
  uint32_t b = 0;    // the low word of a version
  uint32_t options = 0;
  int size = QV_LINE_SIZE;  // the string's destination size
};

Value Str(std::string text, int size = QV_LINE_SIZE, uint32_t options = 0) {
  return Value{Kind::kString, std::move(text), 0, 0, options, size};
}
Value Num(Kind kind, uint32_t a, uint32_t b = 0, uint32_t options = 0) {
  return Value{kind, "", a, b, options, QV_LINE_SIZE};
}

std::string Describe(const Value& v) {
  return "kind " + std::to_string(static_cast<int>(v.kind)) + " text [" + v.text.substr(0, 40) +
         "] a " + std::to_string(v.a) + " b " + std::to_string(v.b) + " options " +
         std::to_string(v.options);
}

void WriteValue(const Value& v, QvFile f, uint32_t options) {
  switch (v.kind) {
    case Kind::kString: {
      std::string copy = v.text;  // the writer uses it as scratch
      EXPECT_EQ(WriteField(copy.data(), f, options), 1);
      break;
    }
    case Kind::kUnsigned:
      WriteUnsignedField(v.a, f, options);
      break;
    case Kind::kInteger:
      WriteIntegerField(static_cast<int32_t>(v.a), f, options);
      break;
    case Kind::kDate:
      WriteDateTimeField(v.a, f, options);
      break;
    case Kind::kVersion:
      WriteVersionQuadField(v.a, v.b, f, options);
      break;
    case Kind::kFlagWord:
      WriteFlagString32Field(v.a, f, options);
      break;
    case Kind::kFlag:
      WriteFlagField(v.a, f, options);
      break;
    case Kind::kOsType:
      EXPECT_EQ(WriteOsTypeField(static_cast<int>(v.a), f, options), 1);
      break;
  }
}

// Parses one field of the value's kind; the result carries the kind and
// options of the model so that it can be written again.
bool ReadValue(char** cursor, const Value& model, Value* out) {
  *out = model;
  out->text.clear();
  out->a = out->b = 0;
  uint32_t options = model.options & FO_OPTIONAL;
  std::vector<char> buffer(QV_LINE_SIZE, '\0');
  switch (model.kind) {
    case Kind::kString:
      if (ParseQuotedString(cursor, buffer.data(), options, model.size) == 0) return false;
      out->text = buffer.data();
      return true;
    case Kind::kUnsigned:
    case Kind::kInteger: {
      int32_t value = 0;
      ParseLong(cursor, &value, options);
      out->a = static_cast<uint32_t>(value);
      return true;
    }
    case Kind::kDate:
      if (ParseQuotedString(cursor, buffer.data(), options, 32) == 0) return false;
      return ParseDateTime(&out->a, buffer.data()) == 1;
    case Kind::kVersion: {
      uint32_t pair[2] = {0, 0};
      if (ParseVersionQuad(cursor, pair, options) == 0) return false;
      out->a = pair[0];
      out->b = pair[1];
      return true;
    }
    case Kind::kFlagWord:
      return ParseFlagString32(cursor, &out->a, options) == 1;
    case Kind::kFlag:
      return ParseFlag(cursor, &out->a, options) == 1;
    case Kind::kOsType:
      if (ParseQuotedString(cursor, buffer.data(), options, 32) == 0) return false;
      out->a = static_cast<uint32_t>(ParseOsType(buffer.data()));
      return true;
  }
  return false;
}

std::vector<Value> RoundTripValues() {
  std::vector<Value> values = {
      Str("plain"),
      Str(""),
      Str("", QV_LINE_SIZE, FO_OPTIONAL),
      Str("x", QV_LINE_SIZE, FO_OPTIONAL),
      Str("a\"b"),
      Str("\""),
      Str("\"\""),
      Str("\"quoted\""),
      Str("say \"hi\" there"),
      Str("caret ^ alone"),
      Str("^\"x"),
      Str("a^\"b"),
      Str("comma, inside"),
      Str("semi;colon [bracket] back\\slash mid"),
      Str("  blanks around  "),
      Str(std::string(40, 'n'), 41),
      Str(std::string(260, 'p'), QV_PATH_SIZE),
      Str(std::string(10, '"'), 21),
      Str(std::string(4000, 'L')),
      Num(Kind::kUnsigned, 0),
      Num(Kind::kUnsigned, 0, 0, FO_OPTIONAL),
      Num(Kind::kUnsigned, 1),
      Num(Kind::kUnsigned, 12, 0, FO_OPTIONAL),
      Num(Kind::kUnsigned, 2147483647u),
      Num(Kind::kInteger, 0),
      Num(Kind::kInteger, 0, 0, FO_OPTIONAL),
      Num(Kind::kInteger, 99),
      Num(Kind::kInteger, 2147483647u),
      Num(Kind::kDate, 0),
      Num(Kind::kDate, 0, 0, FO_OPTIONAL),
      Num(Kind::kDate, 1),
      Num(Kind::kDate, 946684799u),   // 12/31/99 23:59:59
      Num(Kind::kDate, 946684800u),   // 01/01/00 00:00:00
      Num(Kind::kDate, 951782400u),   // 02/29/00 00:00:00
      Num(Kind::kDate, 3155759999u),  // 12/31/69 23:59:59, the last two-digit year
      Num(Kind::kDate, 1700000000u),
      Num(Kind::kVersion, 0, 0, FO_OPTIONAL),
      Num(Kind::kVersion, 0x00050002u, 0x00010007u),
      Num(Kind::kVersion, 0xFFFFFFFFu, 0xFFFFFFFFu),
      Num(Kind::kVersion, 0, 1),
      Num(Kind::kVersion, 0x00010000u, 0),
      Num(Kind::kFlagWord, 0),
      Num(Kind::kFlagWord, 0xFFFFFFFFu),
      Num(Kind::kFlagWord, 0xF0F0F0F0u),
      Num(Kind::kFlagWord, 0x80000001u),
      Num(Kind::kFlagWord, 0x12345678u, 0, FO_OPTIONAL),
      Num(Kind::kFlag, 0),
      Num(Kind::kFlag, 1),
      Num(Kind::kFlag, 0, 0, FO_OPTIONAL),
      Num(Kind::kOsType, 0),
      Num(Kind::kOsType, 1),
      Num(Kind::kOsType, 2),
      Num(Kind::kOsType, 3),
  };
  return values;
}

bool SameValue(const Value& a, const Value& b) {
  return a.kind == b.kind && a.text == b.text && a.a == b.a && a.b == b.b;
}

TEST_F(FieldWriterTest, EveryWrittenValueIsReadBackUnchanged) {
  const std::vector<Value> values = RoundTripValues();
  std::string path = dir_.Join("round.txt");
  qv::File* file = qv::File::Open(path, qv::OpenMode::kCreateAlways);
  ASSERT_NE(file, nullptr);
  const std::string head = "[Other]\r\n\"x\"\r\n[Values]\r\n";
  file->Write(head.data(), head.size());
  // Each value as the last field of a record, then once more behind the
  // marker between two other fields.
  for (const Value& v : values) {
    WriteFlagField(0, file->handle(), 0);
    WriteValue(v, file->handle(), v.options | FO_END_RECORD);
  }
  for (const Value& v : values) {
    WriteFlagField(1, file->handle(), FO_IAO);
    WriteValue(v, file->handle(), v.options);
    WriteUnsignedField(42, file->handle(), FO_END_RECORD);
  }
  const std::string after = "[After]\r\n";
  file->Write(after.data(), after.size());
  delete file;

  QvFile in = QvOpenFileForRead(path.c_str());
  ASSERT_TRUE(QvFileIsOpen(in));
  SetParseFile(path.c_str());
  ASSERT_EQ(FindSection(in, "Values"), 1);
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  for (int pass = 0; pass < 2; ++pass) {
    for (const Value& v : values) {
      SCOPED_TRACE(Describe(v) + " pass " + std::to_string(pass));
      ASSERT_EQ(ReadRecordLine(in, record, &flags, COMMENT_MODE_RECORDS), 1);
      char* cursor = record;
      EXPECT_EQ(flags, pass == 1 ? RECORD_IAO : 0u);
      uint32_t flag = 9;
      ASSERT_EQ(ParseFlag(&cursor, &flag, 0), 1);
      EXPECT_EQ(flag, pass == 1 ? 1u : 0u);
      Value read;
      ASSERT_TRUE(ReadValue(&cursor, v, &read));
      Value expected = v;
      if (v.kind == Kind::kFlag) expected.a = v.a != 0 ? 1 : 0;
      EXPECT_TRUE(SameValue(read, expected)) << "read " << Describe(read);
      if (pass == 1) {
        int32_t tail = 0;
        ParseLong(&cursor, &tail, 0);
        EXPECT_EQ(tail, 42);
      }
      EXPECT_EQ(*cursor, '\0');
    }
  }
  EXPECT_EQ(ReadRecordLine(in, record, &flags, COMMENT_MODE_RECORDS), 0);
  QvCloseFile(in);
  EXPECT_TRUE(host_.errors().empty()) << host_.errors()[0];
}

// Canonical field texts, in the form the writer gives them.
struct Canonical {
  Value model;
  std::string text;
};

TEST_F(FieldWriterTest, AcceptedTextIsWrittenBackByteForByte) {
  const std::vector<Canonical> texts = {
      {Str(""), "\"\""},
      {Str("", QV_LINE_SIZE, FO_OPTIONAL), ""},
      {Str(""), "\"plain text\""},
      {Str(""), "\"a^\"b\""},
      {Str(""), "\"^\"^\"^\"\""},
      {Str(""), "\"^^\"x\""},
      {Str(""), "\"caret ^ alone\""},
      {Str(""), "\"comma, inside\""},
      {Str("", 41), "\"" + std::string(40, 'w') + "\""},
      {Str("", QV_PATH_SIZE), "\"C:\\Program Files\\Vardo\\" + std::string(200, 'q') + "\""},
      {Num(Kind::kUnsigned, 0), "0"},
      {Num(Kind::kUnsigned, 0, 0, FO_OPTIONAL), ""},
      {Num(Kind::kUnsigned, 0), "2147483647"},
      {Num(Kind::kInteger, 0), "12"},
      {Num(Kind::kInteger, 0, 0, FO_OPTIONAL), ""},
      {Num(Kind::kDate, 0), "\"12/31/99 23:59:59\""},
      {Num(Kind::kDate, 0), "\"01/01/00 00:00:00\""},
      {Num(Kind::kDate, 0), "\"02/29/00 12:34:56\""},
      {Num(Kind::kDate, 0), "\"01/01/70 00:00:01\""},
      {Num(Kind::kDate, 0), "\"\""},
      {Num(Kind::kDate, 0, 0, FO_OPTIONAL), ""},
      {Num(Kind::kVersion, 0), "5 2 1 7"},
      {Num(Kind::kVersion, 0), "65535 65535 65535 65535"},
      {Num(Kind::kVersion, 0), "0 0 0 1"},
      {Num(Kind::kVersion, 0, 0, FO_OPTIONAL), ""},
      {Num(Kind::kFlagWord, 0), "\"YYYYNNNNYYYYNNNNYYYYNNNNYYYYNNNN\""},
      {Num(Kind::kFlagWord, 0), "\"NNNNNNNNNNNNNNNNNNNNNNNNNNNNNNNN\""},
      {Num(Kind::kFlagWord, 0), "\"YYYYYYYYYYYYYYYYYYYYYYYYYYYYYYYY\""},
      {Num(Kind::kFlag, 0), "Y"},
      {Num(Kind::kFlag, 0), "N"},
      {Num(Kind::kOsType, 0), "\"WIN32_S\""},
      {Num(Kind::kOsType, 0), "\"WIN32_WINDOWS\""},
      {Num(Kind::kOsType, 0), "\"WIN32_NT\""},
      {Num(Kind::kOsType, 0), "\"WIN16\""},
  };
  for (const Canonical& c : texts) {
    SCOPED_TRACE(c.text.substr(0, 60));
    for (uint32_t end : {0u, FO_END_RECORD}) {
      std::string line = c.text;
      char* cursor = line.data();
      Value read;
      ASSERT_TRUE(ReadValue(&cursor, c.model, &read));
      std::string bytes = Written([&](QvFile f) { WriteValue(read, f, c.model.options | end); });
      EXPECT_EQ(bytes, c.text + (end != 0 ? "\r\n" : ","));
    }
  }
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(FieldWriterTest, WholeRecordsAreWrittenBackByteForByte) {
  const std::string content =
      "[Ads]\r\n"
      "1,,12,\"a^\"b\",,Y,N,Y,\"Name\"\r\n"
      ";IAO;2,3,0,\"x\",\"y\",N,N,N,\"Inactive ^\"one^\"\"\r\n";
  std::string path = dir_.Write("in.ad", content);
  QvFile in = QvOpenFileForRead(path.c_str());
  SetParseFile(path.c_str());
  ASSERT_EQ(FindSection(in, "Ads"), 1);
  std::string out = "[Ads]\r\n";
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  while (ReadRecordLine(in, record, &flags, COMMENT_MODE_RECORDS) == 1) {
    char* cursor = record;
    int32_t id = 0, number1 = 0, number2 = 0;
    char text1[41], text2[41], name[41];
    uint32_t f1 = 0, f2 = 0, f3 = 0;
    ParseLong(&cursor, &id, 0);
    ParseLong(&cursor, &number1, FO_OPTIONAL);
    ParseLong(&cursor, &number2, 0);
    ASSERT_EQ(ParseQuotedString(&cursor, text1, 0, sizeof text1), 1);
    ASSERT_EQ(ParseQuotedString(&cursor, text2, FO_OPTIONAL, sizeof text2), 1);
    ParseFlag(&cursor, &f1, 0);
    ParseFlag(&cursor, &f2, 0);
    ParseFlag(&cursor, &f3, 0);
    ASSERT_EQ(ParseQuotedString(&cursor, name, 0, sizeof name), 1);
    out += Written([&](QvFile f) {
      WriteUnsignedField(static_cast<uint32_t>(id), f, flags);
      WriteUnsignedField(static_cast<uint32_t>(number1), f, FO_OPTIONAL);
      WriteUnsignedField(static_cast<uint32_t>(number2), f, 0);
      WriteField(text1, f, 0);
      WriteField(text2, f, FO_OPTIONAL);
      WriteFlagField(f1, f, 0);
      WriteFlagField(f2, f, 0);
      WriteFlagField(f3, f, 0);
      WriteField(name, f, FO_END_RECORD);
    });
  }
  QvCloseFile(in);
  EXPECT_EQ(out, content);
  EXPECT_TRUE(host_.errors().empty());
}

}  // namespace
