#include "records/line_capacity.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "core/report_capture.h"
#include "core/state.h"
#include "platform/file.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"
#include "records/family_io.h"
#include "records/record_codec.h"

namespace qv {
namespace {

const char* At(const void* record, size_t offset) {
  return static_cast<const char*>(record) + offset;
}

const MemberSpec* MemberAt(const KindSchema& schema, size_t offset) {
  for (const MemberSpec& m : schema.members) {
    if (m.offset == offset) return &m;
  }
  return nullptr;
}

const MemberSpec* MemberNamed(const KindSchema& schema, const char* name) {
  for (const MemberSpec& m : schema.members) {
    if (strcmp(m.name, name) == 0) return &m;
  }
  return nullptr;
}

// The members the kind's lines carry, in line order, each once.
std::vector<const MemberSpec*> LineMembers(const KindSchema& schema) {
  std::vector<const MemberSpec*> members;
  auto add = [&](const MemberSpec* m) {
    if (m == nullptr) return;
    for (const MemberSpec* known : members) {
      if (known == m) return;
    }
    members.push_back(m);
  };
  if (schema.parse_line != nullptr) {
    for (const char* name : schema.custom_line_members) add(MemberNamed(schema, name));
  } else {
    for (const LineField& field : schema.line) add(MemberAt(schema, field.offset));
  }
  return members;
}

// The value as the problem text shows it.
std::string Shown(const MemberSpec& m, const void* record) {
  if (m.type == ValueType::kText) {
    return "\"" + std::string(At(record, m.offset), strnlen(At(record, m.offset), m.size)) + "\"";
  }
  if (m.type == ValueType::kVersionQuad) {
    uint32_t pair[2];
    memcpy(pair, At(record, m.offset), sizeof pair);
    char text[64];
    snprintf(text, sizeof text, "%u.%u", pair[0], pair[1]);
    return text;
  }
  uint32_t value = GetUnsigned(record, m.offset, m.type);
  return m.type == ValueType::kI32 ? std::to_string(static_cast<int32_t>(value))
                                   : std::to_string(value);
}

bool SameValue(const MemberSpec& m, const void* a, const void* b) {
  switch (m.type) {
    case ValueType::kText:
      return strncmp(At(a, m.offset), At(b, m.offset), m.size) == 0;
    case ValueType::kVersionQuad:
      return memcmp(At(a, m.offset), At(b, m.offset), m.size) == 0;
    default:
      return GetUnsigned(a, m.offset, m.type) == GetUnsigned(b, m.offset, m.type);
  }
}

// A control character would end the line or hide in it; a tab is text.
bool HoldsControlCharacter(const MemberSpec& m, const void* record) {
  const char* text = At(record, m.offset);
  for (size_t i = 0; i < m.size && text[i] != '\0'; ++i) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    if ((c < 0x20 && c != '\t') || c == 0x7F) return true;
  }
  return false;
}

std::string ControlCharacterProblem(const MemberSpec& m) {
  return std::string(m.name) +
         " holds a line break or another control character, which a profile line cannot carry";
}

std::string NotAsGiven(const MemberSpec& m, const void* read_back) {
  if (read_back == nullptr) return std::string(m.name) + " cannot be written so that it reads back";
  return std::string(m.name) + " would read back as " + Shown(m, read_back);
}

// Keeps the reader's position and counters as they were, and every report
// out of sight, while a line is tried in memory.
class QuietTrial {
 public:
  QuietTrial() : capture_(true), line_(State().parse_line) {
    snprintf(file_, sizeof file_, "%s", State().parse_file);
  }
  ~QuietTrial() {
    snprintf(State().parse_file, sizeof State().parse_file, "%s", file_);
    State().parse_line = line_;
  }
  QuietTrial(const QuietTrial&) = delete;
  QuietTrial& operator=(const QuietTrial&) = delete;

 private:
  ReportCapture capture_;
  char file_[QV_PATH_SIZE];
  int32_t line_;
};

}  // namespace

std::string LineCapacityProblem(const KindSchema& schema, const void* record) {
  std::vector<const MemberSpec*> members = LineMembers(schema);
  for (const MemberSpec* m : members) {
    if (m->type == ValueType::kText && HoldsControlCharacter(*m, record)) {
      return ControlCharacterProblem(*m);
    }
  }
  QuietTrial trial;
  std::unique_ptr<File> memory(File::OpenInMemory());
  QvFile file = memory->handle();
  const bool custom = schema.parse_line != nullptr;
  const uint32_t flags = RecordFlagsOf(schema, record) & RECORD_IAO;

  // Write the line as the rewrite would. A line of the kind's own format
  // comes whole; schema fields go a field at a time, so that a value the
  // writer cannot name is pinned to its member.
  if (custom) {
    if (!WriteRecordLine(schema, record, file) && !members.empty())
      return NotAsGiven(*members[0], nullptr);
  } else {
    // The same options as the rewrite itself, so that what it would write
    // is what is tried.
    for (size_t i = 0; i < schema.line.size(); ++i) {
      if (!WriteLineField(schema.line[i], record, file, LineFieldOptions(schema, record, i))) {
        return NotAsGiven(*MemberAt(schema, schema.line[i].offset), nullptr);
      }
    }
  }

  // Read it back as a family reads its section: one record, nothing more.
  memory->Seek(0, SEEK_SET);
  const MemberSpec* first = members.empty() ? nullptr : members[0];
  char line[QV_LINE_SIZE];
  uint32_t read_flags = 0;
  uint64_t cuts = CutLineCount();
  bool got = ReadRecordLine(file, line, &read_flags, 2) == 1;
  if (CutLineCount() != cuts) return "the record's line would be longer than 5023 characters";
  if (!got || read_flags != flags) return first ? NotAsGiven(*first, nullptr) : "no line";
  char rest[QV_LINE_SIZE];
  uint32_t rest_flags = 0;
  if (ReadRecordLine(file, rest, &rest_flags, 2) == 1) {
    return first ? NotAsGiven(*first, nullptr) : "two lines";
  }

  void* back = NewRecord(schema);
  if (back == nullptr) return "memory is short";
  std::string problem;
  if (custom) {
    if (!schema.parse_line(line, back) && first != nullptr) problem = NotAsGiven(*first, nullptr);
  } else {
    char* cursor = line;
    for (const LineField& field : schema.line) {
      uint64_t reports = ParseProblemCount();
      bool parsed = ParseLineField(field, &cursor, back);
      if (!parsed || ParseProblemCount() != reports) {
        const MemberSpec* m = MemberAt(schema, field.offset);
        problem = NotAsGiven(*m, parsed ? back : nullptr);
        break;
      }
    }
  }
  if (problem.empty()) {
    for (const MemberSpec* m : members) {
      if (!SameValue(*m, record, back)) {
        problem = NotAsGiven(*m, back);
        break;
      }
    }
  }
  FreeRecord(back);
  return problem;
}

bool RecordFitsLine(const KindSchema& schema, const void* record) {
  std::string problem = LineCapacityProblem(schema, record);
  if (problem.empty()) return true;
  char text[QV_LINE_SIZE];
  snprintf(text, sizeof text, "%s record refused: %s; nothing was written.", schema.kind->code,
           problem.c_str());
  ReportError(text, 0);
  return false;
}

bool ListFitsLines(const KindSchema& schema, RecordList* list) {
  bool fits = true;
  GenericList::ForEach(list, [&](void* record) {
    fits = RecordFitsLine(schema, record);
    return fits;
  });
  return fits;
}

}  // namespace qv
