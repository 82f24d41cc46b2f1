#include "core/file_name_check.h"

#include <cstdio>
#include <cstring>

#include "quorvex/report.h"
#include "quorvex/text.h"

namespace qv {

bool IsPlainFileName(const char* text) {
  if (text == nullptr) return true;
  // ":" covers "C:" and "\\?\" prefixes, and the wildcards would turn a
  // language file's search pattern into one that matches other files:
  // none of them has a place in a name of the tree on either host.
  return strpbrk(text, "/\\:*?") == nullptr && strstr(text, "..") == nullptr;
}

void ReportUnsafeFileName(const char* text) {
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message,
           "%s cannot name a profile file: it holds a separator, \"..\", a drive or a wildcard, "
           "which could reach files outside the profile's folders; nothing was opened or written.",
           text != nullptr ? text : "");
  ReportError(message, 0);
}

bool CheckPlainFileName(const char* text) {
  if (IsPlainFileName(text)) return true;
  ReportUnsafeFileName(text);
  return false;
}

}  // namespace qv
