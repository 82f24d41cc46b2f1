// Who holds a profile's lock file, for messages that explain a refused open.
#ifndef QUORVEX_PLATFORM_LOCK_HOLDER_H_
#define QUORVEX_PLATFORM_LOCK_HOLDER_H_

#include <optional>
#include <string>

namespace qv {

// nullopt when no process holds the lock file at lock_path; else the
// holder as "pid N, name" when it can be found, or "" when it cannot.
std::optional<std::string> LockFileHolder(const std::string& lock_path);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_LOCK_HOLDER_H_
