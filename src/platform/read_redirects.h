// Reads of a file whose new content waits elsewhere: while a batch of
// rewrites holds a profile file's next version in a staging file, opening
// the profile file opens the staged one, so that the batch's later steps
// build on its earlier ones before anything is put in place.
#ifndef QUORVEX_PLATFORM_READ_REDIRECTS_H_
#define QUORVEX_PLATFORM_READ_REDIRECTS_H_

#include <string>

namespace qv {

// Host paths, as ResolvePath gives them.
void RedirectReads(const std::string& host_path, const std::string& staged_host_path);
void ClearReadRedirects();
// The staged path for host_path, or host_path itself.
std::string ReadPathOf(const std::string& host_path);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_READ_REDIRECTS_H_
