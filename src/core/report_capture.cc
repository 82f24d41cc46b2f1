#include "core/report_capture.h"

#include <algorithm>

#include "core/report_internal.h"
#include "core/state.h"
#include "quorvex/report.h"

namespace qv {
namespace {

std::vector<ReportCapture*>& Captures() {
  static std::vector<ReportCapture*> captures;
  return captures;
}

uint64_t parse_problems = 0;
uint64_t cut_lines = 0;
bool next_from_parser = false;

}  // namespace

ReportCapture::ReportCapture(bool quiet) : quiet_(quiet) {
  Captures().push_back(this);
}

ReportCapture::~ReportCapture() {
  auto& captures = Captures();
  captures.erase(std::remove(captures.begin(), captures.end(), this), captures.end());
}

void ReportParseProblem(const char* message) {
  ++parse_problems;
  next_from_parser = true;
  ReportError(message, 1);
  next_from_parser = false;
}

uint64_t ParseProblemCount() {
  return parse_problems;
}

uint64_t CutLineCount() {
  return cut_lines;
}

void NoteCutLine() {
  ++cut_lines;
}

bool HandToCaptures(const char* message, int with_line) {
  auto& captures = Captures();
  if (captures.empty()) return false;
  ReportedProblem problem;
  if (with_line == 1) {
    problem.file = State().parse_file;
    problem.line = State().parse_line;
  }
  problem.message = message != nullptr ? message : "";
  problem.from_parser = next_from_parser;
  for (ReportCapture* capture : captures) capture->Record(problem);
  return captures.back()->quiet();
}

}  // namespace qv
