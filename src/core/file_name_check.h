// Record data that becomes part of a file name (a module's file name, a
// language code in "pelham<code>.re") must name a file inside its folder
// and nothing else: a separator, ".." or a drive prefix would let a record
// reach any file the user can write.
#ifndef QUORVEX_CORE_FILE_NAME_CHECK_H_
#define QUORVEX_CORE_FILE_NAME_CHECK_H_

namespace qv {

// True when text holds no "/" or "\", no "..", no ":" (a drive or a
// stream) and no wildcard, so that it stays one name inside the folder it
// is joined to.
bool IsPlainFileName(const char* text);

// Reports "<text> cannot name a profile file: ...".
void ReportUnsafeFileName(const char* text);

// IsPlainFileName, reporting the text when it is not.
bool CheckPlainFileName(const char* text);

}  // namespace qv

#endif  // QUORVEX_CORE_FILE_NAME_CHECK_H_
