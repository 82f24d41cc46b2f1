// The durable replacement of a file, which each system gives in its own way.
#ifndef QUORVEX_PLATFORM_REPLACE_WITH_H_
#define QUORVEX_PLATFORM_REPLACE_WITH_H_

#include <cstddef>
#include <functional>
#include <string>

namespace qv {

// Puts n bytes after what the new file holds so far (within the write
// budget); false when they cannot all be written.
using WriteBytes = std::function<bool(const char* bytes, size_t n)>;

// Replaces the file at the host path `to` with what fill writes: into a new
// file beside it, made durable and renamed over it (the rename made durable
// too where the system allows), so that a crash leaves the old file or the
// new one and never half of either. The new file keeps the old one's
// permissions. Fails, with errno set, when `to` is a folder or read-only,
// or when fill returns false; the new file is then removed.
bool ReplaceWith(const std::string& to, const std::function<bool(const WriteBytes& write)>& fill);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_REPLACE_WITH_H_
