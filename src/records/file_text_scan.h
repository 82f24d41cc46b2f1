// The bytes of a profile file looked at line by line, before any record is
// read: where the sections start, lines that stand outside every section,
// bytes that are not text and lines too long for the reader.
#ifndef QUORVEX_RECORDS_FILE_TEXT_SCAN_H_
#define QUORVEX_RECORDS_FILE_TEXT_SCAN_H_

#include <string>
#include <vector>

#include "records/profile_problem.h"

namespace qv {

struct SectionHeader {
  std::string name;  // as the reader takes it: after "[" up to "]" or the end
  int line = 0;
  int record_lines = 0;  // lines up to the next header that are neither blank nor comments
};

struct FileTextScan {
  std::vector<SectionHeader> headers;  // in file order
  std::vector<ProfileProblem> problems;
  // For each line the reader counts (its pieces: a NUL byte or a full
  // buffer cuts a physical line in two), the physical line it starts on.
  std::vector<int> reader_lines;
};

FileTextScan ScanFileText(const std::string& path, const std::string& bytes);

// The physical line of the reader's n-th line (from 1); n itself when the
// scan does not know it.
int PhysicalLine(const FileTextScan& scan, int reader_line);

}  // namespace qv

#endif  // QUORVEX_RECORDS_FILE_TEXT_SCAN_H_
