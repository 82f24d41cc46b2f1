// Feeds arbitrary bytes to the profile text reader: the input becomes a
// profile file whose sections are read in every comment mode, and every
// record goes through every field parser and value converter. Then the
// first byte picks a record kind and the rest are its lines: each is read
// as the kind reads it, written as the kind writes it and read again, and
// the second read must give what the first gave, unless the engine's own
// line check says the record cannot be written (a put refuses those).
//
// Errors are expected and answered by a silent host; what must not happen is
// a crash, a sanitizer report or a reader that stops making progress.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "fuzz_input.h"
#include "platform/file.h"
#include "quorvex/quorvex.h"
#include "records/kind_api.h"
#include "records/line_capacity.h"
#include "records/record_codec.h"

namespace {

int SilentBox(void*, const char*, const char*, int) {
  return 1;
}

// One field parser applied again and again from the start of the record,
// with or without the optional bit, until it fails or stops moving.
void ParseAll(const char* record, int parser, uint32_t options) {
  std::string copy(record);
  char* cursor = copy.data();
  char small[6] = "";
  char path[QV_PATH_SIZE] = "";
  for (int i = 0; i < 64 && *cursor != '\0'; ++i) {
    char* before = cursor;
    uint32_t u = 0;
    int32_t n = 0;
    uint32_t pair[2] = {0, 0};
    int ok = 1;
    switch (parser) {
      case 0:
        ok = ParseQuotedString(&cursor, small, options, sizeof small);
        break;
      case 1:
        ok = ParseQuotedString(&cursor, path, options, sizeof path);
        if (ok) {
          // Typed text fields are quoted strings first, then converted.
          uint32_t when = 0;
          if (ParseDateTime(&when, path)) {
            char text[32];
            FormatDateTime(when, text);
            FormatDate(when, text);
            FormatTime(when, text);
          }
          std::string hex(path);
          std::vector<uint8_t> bytes(hex.size() / 2 + 4);
          uint16_t count = 0;
          ParseHexBytes(bytes.data(), hex.data(), &count, 0);
          hex = path;
          ParseHexBytes(bytes.data(), hex.data(), &count, 1);
          ParseOsType(path);
          ParseRegDataType(path);
        }
        break;
      case 2:
        ok = ParseFlag(&cursor, &u, options);
        break;
      case 3:
        ok = ParseFlagString32(&cursor, &u, options);
        break;
      case 4:
        ok = ParseInteger(&cursor, &n, options);
        break;
      case 5:
        ok = ParseLong(&cursor, &n, options);
        break;
      case 6:
        ok = ParseVersionQuad(&cursor, pair, options);
        break;
    }
    if (!ok || cursor == before) break;
  }
}

// The fields of a record in the order a record family might ask for them.
void ParseMixed(const char* record) {
  std::string copy(record);
  char* cursor = copy.data();
  char text[41] = "";
  uint32_t u = 0;
  int32_t n = 0;
  uint32_t pair[2];
  if (!ParseQuotedString(&cursor, text, 0, sizeof text)) return;
  if (!ParseFlag(&cursor, &u, FO_OPTIONAL)) return;
  ParseInteger(&cursor, &n, 0);
  if (!ParseFlagString32(&cursor, &u, FO_OPTIONAL)) return;
  if (!ParseVersionQuad(&cursor, pair, FO_OPTIONAL)) return;
  ParseQuotedString(&cursor, text, FO_OPTIONAL, sizeof text);
}

void ParseRecord(const char* record) {
  for (int parser = 0; parser <= 6; ++parser) {
    ParseAll(record, parser, 0);
    ParseAll(record, parser, FO_OPTIONAL);
  }
  ParseMixed(record);
  std::string copy(record);
  TrimTrailingBlanks(copy.data());
  UnescapeQuotes(copy.data());
  RemoveChar(copy.data(), ',');
}

// Reads the whole file in one mode: the records of each section, stepping
// over the header where a section ends. Every header takes at least one
// byte, so a file of n bytes cannot end more than n + 1 sections.
void ReadEverySection(QvFile file, int mode, size_t size) {
  char record[QV_LINE_SIZE];
  char line[QV_LINE_SIZE];
  uint32_t flags = 0;
  for (size_t sections = 0; sections <= size + 1; ++sections) {
    // Mode 3 returns every kind of line, so its records are the ones parsed.
    while (ReadRecordLine(file, record, &flags, mode)) {
      if (mode == COMMENT_MODE_LISTING) ParseRecord(record);
    }
    if (!ReadProfileLine(file, line, sizeof line)) return;
  }
  abort();  // the reader stopped making progress
}

// Every header's section is searched for by name, with another case; the
// file is fresh, so the first headers are the ones collected.
void FindEverySection(QvFile file) {
  std::vector<std::string> names;
  char line[QV_LINE_SIZE];
  while (ReadProfileLine(file, line, sizeof line) && names.size() < 8) {
    char* p = line;
    SkipBlanks(&p);
    if (*p != '[') continue;
    std::string name(p + 1);
    name = name.substr(0, name.find(']'));
    for (char& c : name) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    names.push_back(name);
  }
  for (const std::string& name : names) {
    if (!FindSection(file, name.c_str())) abort();  // a header just seen must be found
    char record[QV_LINE_SIZE];
    uint32_t flags = 0;
    while (ReadRecordLine(file, record, &flags, COMMENT_MODE_RECORDS)) {
    }
  }
  FindSection(file, "no such section");
}

// The members a kind's line carries.
std::vector<const qv::MemberSpec*> CarriedMembers(const qv::KindSchema& schema) {
  std::vector<const qv::MemberSpec*> carried;
  for (const qv::MemberSpec& m : schema.members) {
    bool on_line = false;
    if (schema.parse_line != nullptr) {
      for (const char* name : schema.custom_line_members) {
        on_line = on_line || strcmp(name, m.name) == 0;
      }
    } else {
      for (const qv::LineField& f : schema.line) on_line = on_line || f.offset == m.offset;
    }
    if (on_line) carried.push_back(&m);
  }
  return carried;
}

bool SameMember(const qv::MemberSpec& m, const void* a, const void* b) {
  const char* x = static_cast<const char*>(a) + m.offset;
  const char* y = static_cast<const char*>(b) + m.offset;
  if (m.type == qv::ValueType::kText) return strncmp(x, y, m.size) == 0;
  return memcmp(x, y, m.size) == 0;
}

// Reads the next record line of the kind from file into a new record;
// nullptr at the end, or for a line the kind does not read.
void* ReadKindRecord(const qv::KindSchema& schema, QvFile file, bool* more) {
  char line[QV_LINE_SIZE];
  uint32_t flags = 0;
  *more = ReadRecordLine(file, line, &flags, COMMENT_MODE_RECORDS) != 0;
  if (!*more) return nullptr;
  if (schema.takes_line != nullptr && !schema.takes_line(line)) return nullptr;
  void* record = qv::NewRecord(schema);
  if (record == nullptr) return nullptr;
  qv::RecordFlagsOf(schema, record) = flags;
  if (!qv::DecodeRecordLine(schema, line, record)) {
    qv::FreeRecord(record);
    return nullptr;
  }
  return record;
}

void RoundTrip(const qv::KindSchema& schema, const void* first) {
  // A record the line cannot hold is refused by every put before it is
  // written; the check must not fail on any record.
  if (!qv::LineCapacityProblem(schema, first).empty()) return;
  qv::File* written = qv::File::OpenInMemory();
  if (!qv::WriteRecordLine(schema, first, written->handle())) abort();
  written->Seek(0, SEEK_SET);
  bool more = false;
  void* second = ReadKindRecord(schema, written->handle(), &more);
  if (second == nullptr) abort();  // the written line does not read back
  if (qv::RecordFlagsOf(schema, second) != qv::RecordFlagsOf(schema, first)) abort();
  for (const qv::MemberSpec* m : CarriedMembers(schema)) {
    if (!SameMember(*m, first, second)) abort();  // the second read differs
  }
  qv::FreeRecord(second);
  QvCloseFile(written->handle());
}

void KindRoundTrips(const uint8_t* data, size_t size) {
  const std::vector<const qv::KindApi*>& kinds = qv::AllKindApis();
  if (size == 0 || kinds.empty()) return;
  const qv::KindSchema& schema = *kinds[data[0] % kinds.size()]->schema;
  qv::File* input = qv::File::OpenInMemory();
  input->Write(data + 1, size - 1);
  input->Seek(0, SEEK_SET);
  // Every record line takes at least one byte.
  for (size_t lines = 0; lines < size; ++lines) {
    bool more = false;
    void* record = ReadKindRecord(schema, input->handle(), &more);
    if (record != nullptr) {
      RoundTrip(schema, record);
      qv::FreeRecord(record);
    }
    if (!more) break;
  }
  QvCloseFile(input->handle());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool initialised = (qvfuzz::Initialise(SilentBox), true);
  (void)initialised;
  if (!qvfuzz::WriteInput(data, size)) return 0;
  SetParseFile(qvfuzz::InputPath().c_str());
  // Modes 0 and 5 stand for the values no family passes.
  for (int mode = 0; mode <= 5; ++mode) {
    QvFile file = QvOpenFileForRead(qvfuzz::InputPath().c_str());
    if (file == QV_NO_FILE) return 0;
    ReadEverySection(file, mode, size);
    QvCloseFile(file);
  }
  QvFile file = QvOpenFileForRead(qvfuzz::InputPath().c_str());
  if (file == QV_NO_FILE) return 0;
  FindEverySection(file);
  QvCloseFile(file);
  KindRoundTrips(data, size);
  return 0;
}
