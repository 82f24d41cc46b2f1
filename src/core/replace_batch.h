// One replacement per file for an operation that rewrites a file several
// times (a rename's groups, files and icons; a delete's sections in each
// install).
//
// While a batch is open, a finished rewrite does not replace its profile
// file: the new content waits in a staging file beside it (".<name>.staged")
// and later reads of the profile file read the staged content. When the
// outermost batch ends, every staged file is put in place, each in one
// atomic replacement, so a crash leaves each file its old or its new
// version; an operation that spans files may still stop between them.
#ifndef QUORVEX_CORE_REPLACE_BATCH_H_
#define QUORVEX_CORE_REPLACE_BATCH_H_

#include <string>

#include "platform/fs.h"

namespace qv {

class ReplaceBatch {
 public:
  ReplaceBatch();   // a batch opened inside another joins it
  ~ReplaceBatch();  // the outermost puts every staged file in place
  ReplaceBatch(const ReplaceBatch&) = delete;
  ReplaceBatch& operator=(const ReplaceBatch&) = delete;
};

bool ReplaceBatchOpen();

// Keeps the content of temporary as profile's next version (temporary is
// deleted); false when it cannot be written.
bool StageReplacement(const std::string& temporary, const std::string& profile);
// The same for content given in memory.
bool StageContent(const ByteRuns& content, const std::string& profile);

}  // namespace qv

#endif  // QUORVEX_CORE_REPLACE_BATCH_H_
