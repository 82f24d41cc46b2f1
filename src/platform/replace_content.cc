// Replacing a file with another file's content or with bytes in memory, on
// every system through its ReplaceWith.

#include <cerrno>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/file.h"
#include "platform/fs.h"
#include "platform/replace_with.h"

namespace qv {

bool ReplaceFileContent(const std::string& source, const std::string& target) {
  int error = 0;
  std::unique_ptr<File> in(File::Open(source, OpenMode::kReadExisting, &error));
  if (in == nullptr) {
    errno = error != 0 ? error : ENOENT;
    return false;
  }
  return ReplaceWith(ResolvePath(target), [&in](const WriteBytes& write) {
    // Larger than the file's cached block, so that the reads go straight
    // into this buffer.
    std::vector<char> block(256 * 1024);
    for (;;) {
      long got = in->Read(block.data(), block.size());
      if (got < 0) return false;
      if (got == 0) return true;
      if (!write(block.data(), static_cast<size_t>(got))) return false;
    }
  });
}

bool ReplaceFileWithBytes(const ByteRuns& content, const std::string& target) {
  return ReplaceWith(ResolvePath(target), [&content](const WriteBytes& write) {
    for (std::string_view run : content) {
      if (!write(run.data(), run.size())) return false;
    }
    return true;
  });
}

}  // namespace qv
