// Why a profile did not open, found out by the tool after the engine's
// refusal: the engine reports what it tried, the tool adds the cause a
// person can act on (a missing folder, a missing file, a lock, rights).
#ifndef QUORVEX_TOOLS_OPEN_DIAGNOSIS_H_
#define QUORVEX_TOOLS_OPEN_DIAGNOSIS_H_

#include <string>
#include <vector>

namespace qvtool {

// The lines to print: the first is "cannot open PATH: REASON", hints follow.
// locking: the open asked for the profile's lock.
std::vector<std::string> WhyOpenFailed(const std::string& path, bool orvik, bool locking);

// Who holds the lock file, as far as the system tells ("pid 123, quorvex");
// empty when nobody does; "another process" when it is held by someone
// unknown.
std::string LockHolder(const std::string& lock_path);

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_OPEN_DIAGNOSIS_H_
