#include "platform/path_components.h"

#include <utility>

#include "platform/fs.h"

namespace qv {

std::string ResolveComponents(std::string prefix, const std::string& path, size_t from,
                              char separator, int kept, StoredNameFinder stored_name) {
  std::string result = std::move(prefix);
  size_t i = from;
  auto skip_separators = [&] {
    while (i < path.size() && IsSeparator(path[i])) ++i;
  };
  if (i < path.size() && IsSeparator(path[i])) {
    result.push_back(separator);
    skip_separators();
  }
  bool exists = true;  // false once a component is missing: nothing below it exists
  while (i < path.size()) {
    size_t j = i;
    while (j < path.size() && !IsSeparator(path[j])) ++j;
    std::string component = path.substr(i, j - i);
    if (kept > 0) {
      --kept;
    } else if (exists && component != "." && component != "..") {
      std::string found = stored_name(result, component);
      if (found.empty()) {
        exists = false;
      } else {
        component = found;
      }
    }
    result += component;
    i = j;
    if (i < path.size()) {
      result.push_back(separator);
      skip_separators();
    }
  }
  return result;
}

}  // namespace qv
