#include "records/location_checks.h"

#include <cstring>

namespace qv {
namespace {

bool IsDriveAt(const std::string& path, size_t at) {
  char c = at < path.size() ? path[at] : '\0';
  bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  return letter && at + 1 < path.size() && path[at + 1] == ':';
}

// The characters a short name may hold besides letters and digits.
bool IsShortNameChar(char c) {
  unsigned char u = static_cast<unsigned char>(c);
  if (u >= 128) return true;
  if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) return true;
  return c != '\0' && strchr("$%'-_@~`!(){}^#&", c) != nullptr;
}

bool IsShortComponent(const std::string& name) {
  if (name.empty() || name == "." || name == "..") return true;
  size_t dot = name.find('.');
  std::string base = name.substr(0, dot);
  std::string extension = dot == std::string::npos ? "" : name.substr(dot + 1);
  if (base.empty() || base.size() > 8) return false;
  if (dot != std::string::npos && (extension.empty() || extension.size() > 3)) return false;
  for (char c : base) {
    if (!IsShortNameChar(c)) return false;
  }
  for (char c : extension) {
    if (!IsShortNameChar(c)) return false;  // a second dot lands here too
  }
  return true;
}

}  // namespace

std::string NormaliseFolderName(const std::string& folder) {
  std::string out;
  out.reserve(folder.size());
  for (size_t i = 0; i < folder.size(); ++i) {
    char c = folder[i] == '/' ? '\\' : folder[i];
    // A network path keeps the two backslashes it starts with.
    bool keep_network_start = i == 1 && out == "\\";
    if (c == '\\' && !out.empty() && out.back() == '\\' && !keep_network_start) continue;
    out.push_back(c);
  }
  bool drive_root = out.size() == 3 && IsDriveAt(out, 0);
  if (out.size() > 1 && out.back() == '\\' && !drive_root && out != "\\\\") out.pop_back();
  return out;
}

bool StripReplaceableParameters(const std::string& folder, std::string* stripped) {
  stripped->clear();
  size_t at = 0;
  while (at < folder.size()) {
    size_t open = folder.find('[', at);
    if (open == std::string::npos) {
      stripped->append(folder, at, std::string::npos);
      return true;
    }
    stripped->append(folder, at, open - at);
    size_t close = folder.find(']', open + 1);
    if (close == std::string::npos) return false;
    at = close + 1;
  }
  return true;
}

bool IsShortPath(const std::string& path) {
  size_t start = IsDriveAt(path, 0) ? 2 : 0;
  while (start <= path.size()) {
    size_t end = path.find('\\', start);
    if (end == std::string::npos) end = path.size();
    if (!IsShortComponent(path.substr(start, end - start))) return false;
    start = end + 1;
  }
  return true;
}

}  // namespace qv
