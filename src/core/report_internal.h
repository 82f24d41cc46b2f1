// The reporter's side of ReportCapture.
#ifndef QUORVEX_CORE_REPORT_INTERNAL_H_
#define QUORVEX_CORE_REPORT_INTERNAL_H_

namespace qv {

// Records a report in every live capture; true when the innermost capture
// is quiet, so the report goes no further.
bool HandToCaptures(const char* message, int with_line);

}  // namespace qv

#endif  // QUORVEX_CORE_REPORT_INTERNAL_H_
