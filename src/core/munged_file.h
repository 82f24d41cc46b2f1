// Generated names for new profile files, without making the file.
#ifndef QUORVEX_CORE_MUNGED_FILE_H_
#define QUORVEX_CORE_MUNGED_FILE_H_

#include <string>

namespace qv {

// The path CreateMungedFile would create, with its folder made, but no
// file: the first free name, or "" (reported as CreateMungedFile reports)
// when there is none. A caller that holds the profile lock keeps the name
// free until it puts the whole file there by rename, so that no half-made
// file is ever seen, even after a crash.
std::string FreeMungedPath(const char* name, const char* second_key, const char* kind);

}  // namespace qv

#endif  // QUORVEX_CORE_MUNGED_FILE_H_
