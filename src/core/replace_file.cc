// Putting a rewritten profile file in place of the old one.

#include "core/replace_file.h"

#include "core/replace_batch.h"
#include "platform/fs.h"
#include "quorvex/writer.h"

namespace qv {

bool ReplaceProfileFileWith(const ByteRuns& content, const char* profile_path) {
  if (profile_path == nullptr || IsReadOnly(profile_path)) return false;
  if (ReplaceBatchOpen()) return StageContent(content, profile_path);
  return ReplaceFileWithBytes(content, profile_path);
}

}  // namespace qv

extern "C" {

int QvReplaceProfileFile(const char* temporaryPath, const char* profilePath) {
  if (temporaryPath == nullptr || profilePath == nullptr) return 0;
  // A read-only file is one that is not checked out: it must not change,
  // even where the folder would allow the new content to be renamed over it.
  if (qv::IsReadOnly(profilePath)) return 0;
  if (qv::ReplaceBatchOpen()) return qv::StageReplacement(temporaryPath, profilePath) ? 1 : 0;
  if (!qv::ReplaceFileContent(temporaryPath, profilePath)) return 0;
  qv::DeleteFile(temporaryPath);
  return 1;
}

}  // extern "C"
