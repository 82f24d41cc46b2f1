// Copying a section's records while dropping those of one name, and finding
// the next free generated-name number on the way.
#include <cstring>
#include <string>

#include "core/text_chars.h"
#include "platform/file.h"
#include "quorvex/catalogue.h"
#include "quorvex/report.h"
#include "quorvex/text.h"

namespace qv {
namespace {

constexpr char kGeneratedTag[] = "MP_GEN_";
// "MP_GEN_" and the five-character prefix of the open profile ("%4.4d_").
constexpr size_t kGeneratedNumberAt = 12;
constexpr char kIaoMarker[] = ";IAO;";

// The decimal number of a generated name "MP_GEN_nnnn_dddddddd".
uint32_t GeneratedNumber(const char* name) {
  if (strlen(name) <= kGeneratedNumberAt) return 0;
  uint32_t number = 0;
  for (const char* p = name + kGeneratedNumberAt; IsDigit(*p); ++p) {
    number = number * 10 + static_cast<uint32_t>(*p - '0');
  }
  return number;
}

}  // namespace
}  // namespace qv

extern "C" int CopyRecordsExcept(QvFile input, QvFile output, const char* name,
                                 uint32_t* nextNumber) {
  qv::File* out = qv::File::FromHandle(output);
  char record[QV_LINE_SIZE];
  char generated[21] = "";
  char owner[21] = "";
  uint32_t record_flags = 0;
  // Marked records are read too, so that the copy keeps them marked.
  while (ReadRecordLine(input, record, &record_flags, COMMENT_MODE_RECORDS) != 0) {
    char* cursor = record;
    bool parsed = ParseQuotedString(&cursor, generated, 0, sizeof generated) != 0;
    if (parsed && strstr(generated, qv::kGeneratedTag) != nullptr) {
      uint32_t number = qv::GeneratedNumber(generated);
      if (nextNumber != nullptr && *nextNumber < number) *nextNumber = number + 1;
    }
    if (parsed && ParseQuotedString(&cursor, owner, 0, sizeof owner) != 0 && name != nullptr &&
        strcmp(owner, name) == 0) {
      continue;
    }
    std::string line;
    if ((record_flags & RECORD_IAO) != 0) line = qv::kIaoMarker;
    line += record;
    line += "\r\n";
    if (out == nullptr || out->Write(line.data(), line.size()) != line.size()) {
      ReportError("Write Error #652!", 0);
      return 0;
    }
  }
  return 1;
}
