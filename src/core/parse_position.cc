// Where the reader stands: the file named in error prefixes, the count of
// physical lines read from it, and the comment mode of the open profile.
#include <cstdio>

#include "core/state.h"
#include "quorvex/text.h"

using qv::State;

extern "C" {

int SetParseFile(const char* name) {
  snprintf(State().parse_file, sizeof State().parse_file, "%s", name != nullptr ? name : "");
  State().parse_line = 0;
  return 1;
}

const char* QvParseFileName(void) {
  return State().parse_file;
}

int32_t QvParseLineNumber(void) {
  return State().parse_line;
}

int QvCommentMode(void) {
  return State().comment_mode;
}

}  // extern "C"
