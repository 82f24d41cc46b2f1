// Copying a text into a fixed member of a record.
#ifndef QUORVEX_CORE_COPY_TEXT_H_
#define QUORVEX_CORE_COPY_TEXT_H_

#include <cstddef>
#include <cstring>

namespace qv {

// Copies text (nullptr reads as "") into a member of `size` bytes, cut to
// fit and always terminated, as snprintf "%s" would, without formatting:
// readers fill members for every record they read.
inline void CopyCut(char* member, size_t size, const char* text) {
  if (size == 0) return;
  const size_t length = text != nullptr ? strnlen(text, size - 1) : 0;
  if (length != 0) memmove(member, text, length);
  member[length] = '\0';
}

template <size_t N>
void CopyCut(char (&member)[N], const char* text) {
  CopyCut(member, N, text);
}

}  // namespace qv

#endif  // QUORVEX_CORE_COPY_TEXT_H_
