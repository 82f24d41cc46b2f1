#include <stdlib.h>

#include "platform/environment.h"

namespace qv {

bool SetEnvironmentValue(const std::string& name, const char* value) {
  return value != nullptr ? setenv(name.c_str(), value, 1) == 0 : unsetenv(name.c_str()) == 0;
}

std::string MakeUniqueDirectory(const std::string& base, const std::string& prefix) {
  std::string pattern = base + "/" + prefix + "XXXXXX";
  return mkdtemp(pattern.data()) != nullptr ? pattern : std::string();
}

char PathListSeparator() {
  return ':';
}

}  // namespace qv
