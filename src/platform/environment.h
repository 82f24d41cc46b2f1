// The process's environment variables and private scratch folders, for the
// host program and the tests that set up a run.
#ifndef QUORVEX_PLATFORM_ENVIRONMENT_H_
#define QUORVEX_PLATFORM_ENVIRONMENT_H_

#include <string>

namespace qv {

// Sets the variable for this process and the processes it starts; value
// nullptr removes it. False when the system refuses.
bool SetEnvironmentValue(const std::string& name, const char* value);

// Makes a new folder "<base><separator><prefix>XXXXXX" that no other
// process can have made, and returns its path; "" on failure.
std::string MakeUniqueDirectory(const std::string& base, const std::string& prefix);

// The separator of the PATH variable.
char PathListSeparator();

}  // namespace qv

#endif  // QUORVEX_PLATFORM_ENVIRONMENT_H_
