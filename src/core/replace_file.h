// Putting new content in place of a profile file.
#ifndef QUORVEX_CORE_REPLACE_FILE_H_
#define QUORVEX_CORE_REPLACE_FILE_H_

#include "platform/fs.h"

namespace qv {

// What QvReplaceProfileFile does with a temporary file's content, for
// content held in memory: a read-only profile file (one not checked out)
// stays as it is, and inside a replace batch the content is staged.
bool ReplaceProfileFileWith(const ByteRuns& content, const char* profile_path);

}  // namespace qv

#endif  // QUORVEX_CORE_REPLACE_FILE_H_
