// Finding the file a program word names, as the process runner starts it.
#ifndef QUORVEX_PLATFORM_PROGRAM_PATH_H_
#define QUORVEX_PLATFORM_PROGRAM_PATH_H_

#include <string>

namespace qv {

// The absolute path of the program a word names, in *path; returns 0, or
// the errno of the failure (ENOENT: none, EACCES: found but not runnable).
// A word with a separator is a path, a relative one counting from the
// caller's folder as CreateProcess counts it; a plain word is searched on
// PATH.
int FindProgram(const std::string& word, std::string* path);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_PROGRAM_PATH_H_
