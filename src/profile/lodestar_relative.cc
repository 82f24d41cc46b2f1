#include "profile/lodestar_relative.h"

#include "core/text_chars.h"
#include "platform/fs.h"

namespace qv {

std::string RelativeToLodestar(const std::string& directory, const std::string& lodestar) {
  if (lodestar.empty() || directory.size() < lodestar.size()) return directory;
  for (size_t i = 0; i < lodestar.size(); ++i) {
    if (AsciiLower(directory[i]) != AsciiLower(lodestar[i])) return directory;
  }
  size_t rest = lodestar.size();
  if (!IsSeparator(lodestar.back()) && rest < directory.size() && !IsSeparator(directory[rest])) {
    return directory;  // "Lodestar2" does not lie below "Lodestar"
  }
  while (rest < directory.size() && IsSeparator(directory[rest])) ++rest;
  return directory.substr(rest);
}

}  // namespace qv
