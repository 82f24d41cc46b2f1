// Where the engine remembers the last profile of each host program.
#ifndef QUORVEX_PROFILE_LAST_PROFILE_H_
#define QUORVEX_PROFILE_LAST_PROFILE_H_

#include <string>

namespace qv {

// "SOFTWARE\Vardo\Lodestar\Stewardry", the engine's registry key.
extern const char kStewardryKey[];

// The key of this host program: kStewardryKey, a backslash and the file name
// of the running executable.
std::string LastProfileKey();

}  // namespace qv

#endif  // QUORVEX_PROFILE_LAST_PROFILE_H_
