// Watching what the error reporter says while a piece of work runs.
//
// Readers need to know whether a line they read was reported as malformed
// (a record derived from it must never be written back), and the profile
// check lists every report with its file and line instead of showing boxes.
#ifndef QUORVEX_CORE_REPORT_CAPTURE_H_
#define QUORVEX_CORE_REPORT_CAPTURE_H_

#include <cstdint>
#include <string>
#include <vector>

namespace qv {

// One report: where the reader stood (when the report named a line) and
// what it said.
struct ReportedProblem {
  std::string file;  // empty for a report without the line prefix
  int line = 0;
  std::string message;
  bool from_parser = false;  // a field parser or the line reader reported it
};

// While alive, every ReportError is also recorded here. Captures nest: each
// one alive records every report. A quiet capture keeps the reports from the
// log and the message boxes while it is the innermost one.
class ReportCapture {
 public:
  explicit ReportCapture(bool quiet = false);
  ~ReportCapture();
  ReportCapture(const ReportCapture&) = delete;
  ReportCapture& operator=(const ReportCapture&) = delete;

  const std::vector<ReportedProblem>& problems() const { return problems_; }
  bool quiet() const { return quiet_; }
  void Record(ReportedProblem problem) { problems_.push_back(std::move(problem)); }

 private:
  bool quiet_;
  std::vector<ReportedProblem> problems_;
};

// ReportError(message, 1) from a field parser or the line reader: the line
// at the parse position does not read as written.
void ReportParseProblem(const char* message);

// How many parser reports the process has made so far; a reader compares
// the count before and after a line to learn whether the line was reported.
uint64_t ParseProblemCount();

// How many physical lines the reader could not take whole so far (longer
// than its buffer, or holding a NUL byte): such a line comes out in pieces,
// and a byte is lost between them.
uint64_t CutLineCount();
void NoteCutLine();

}  // namespace qv

#endif  // QUORVEX_CORE_REPORT_CAPTURE_H_
