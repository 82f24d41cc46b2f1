#include "platform/read_redirects.h"

#include <map>

namespace qv {
namespace {

std::map<std::string, std::string>& Redirects() {
  static std::map<std::string, std::string> redirects;
  return redirects;
}

}  // namespace

void RedirectReads(const std::string& host_path, const std::string& staged_host_path) {
  Redirects()[host_path] = staged_host_path;
}

void ClearReadRedirects() {
  Redirects().clear();
}

std::string ReadPathOf(const std::string& host_path) {
  auto found = Redirects().find(host_path);
  return found == Redirects().end() ? host_path : found->second;
}

}  // namespace qv
