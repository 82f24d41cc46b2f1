#include "platform/names.h"

#include <algorithm>

namespace qv {

namespace {

bool WildcardMatch(const char* pattern, const char* name) {
  const char* star = nullptr;
  const char* resume = nullptr;
  while (*name != '\0') {
    if (*pattern == '*') {
      star = pattern++;
      resume = name;
    } else if (*pattern == '?' || (*pattern != '\0' && LowerAscii(*pattern) == LowerAscii(*name))) {
      ++pattern;
      ++name;
    } else if (star != nullptr) {
      pattern = star + 1;
      name = ++resume;
    } else {
      return false;
    }
  }
  while (*pattern == '*') ++pattern;
  return *pattern == '\0';
}

}  // namespace

char LowerAscii(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

char UpperAscii(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool EqualNoCase(const std::string& a, const std::string& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (LowerAscii(a[i]) != LowerAscii(b[i])) return false;
  }
  return true;
}

bool NameLess(const std::string& a, const std::string& b) {
  size_t n = std::min(a.size(), b.size());
  for (size_t i = 0; i < n; ++i) {
    unsigned char x = static_cast<unsigned char>(UpperAscii(a[i]));
    unsigned char y = static_cast<unsigned char>(UpperAscii(b[i]));
    if (x != y) return x < y;
  }
  if (a.size() != b.size()) return a.size() < b.size();
  return a < b;
}

bool PatternMatches(const std::string& pattern, const std::string& name) {
  if (WildcardMatch(pattern.c_str(), name.c_str())) return true;
  if (pattern.size() >= 2 && pattern.compare(pattern.size() - 2, 2, ".*") == 0 &&
      name.find('.') == std::string::npos) {
    std::string stem = pattern.substr(0, pattern.size() - 2);
    return WildcardMatch(stem.c_str(), name.c_str());
  }
  return false;
}

}  // namespace qv
