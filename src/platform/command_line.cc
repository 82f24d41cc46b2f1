// Windows command-line splitting.

#include "platform/command_line.h"

namespace qv {

namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

}  // namespace

std::vector<std::string> SplitCommandLine(const std::string& command_line) {
  std::vector<std::string> words;
  const size_t n = command_line.size();
  size_t i = 0;
  while (i < n && IsBlank(command_line[i])) ++i;
  if (i == n) return words;

  // The program: quotes group, backslashes are path separators.
  std::string program;
  bool quoted = false;
  for (; i < n; ++i) {
    char c = command_line[i];
    if (c == '"') {
      quoted = !quoted;
    } else if (!quoted && IsBlank(c)) {
      break;
    } else {
      program += c;
    }
  }
  words.push_back(program);

  for (;;) {
    while (i < n && IsBlank(command_line[i])) ++i;
    if (i == n) break;
    std::string word;
    quoted = false;
    while (i < n) {
      size_t backslashes = 0;
      while (i < n && command_line[i] == '\\') {
        ++backslashes;
        ++i;
      }
      if (i < n && command_line[i] == '"') {
        word.append(backslashes / 2, '\\');
        if (backslashes % 2 == 1) {
          word += '"';
          ++i;
        } else if (quoted && i + 1 < n && command_line[i + 1] == '"') {
          word += '"';
          i += 2;
        } else {
          quoted = !quoted;
          ++i;
        }
        continue;
      }
      word.append(backslashes, '\\');
      if (i == n || (!quoted && IsBlank(command_line[i]))) break;
      word += command_line[i++];
    }
    words.push_back(word);
  }
  return words;
}

}  // namespace qv
