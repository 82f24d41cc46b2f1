// The terminal defaults of the host hooks, the same on every system: a
// question and its answer through the standard streams. Whether there is a
// person at a terminal, and how the streams pass bytes, is the system's
// (terminal_posix.cc, terminal_win32.cc).

#include "platform/terminal.h"

#include <cstdio>

namespace qv {

namespace {

// One line of standard input without its line end; false at the end of input.
bool ReadInputLine(std::string* line) {
  line->clear();
  bool any = false;
  for (;;) {
    int c = fgetc(stdin);
    if (c == EOF) return any;
    any = true;
    if (c == '\n') break;
    *line += static_cast<char>(c);
  }
  if (!line->empty() && line->back() == '\r') line->pop_back();
  return true;
}

}  // namespace

bool TerminalAskYesNo(const std::string& caption, const std::string& text, bool default_answer) {
  TerminalPrint(caption + "\n" + text + "\n");
  for (;;) {
    TerminalPrint(default_answer ? "[Y/n] " : "[y/N] ");
    std::string answer;
    if (!ReadInputLine(&answer)) {
      TerminalPrint("\n");
      return default_answer;
    }
    size_t i = answer.find_first_not_of(" \t");
    if (i == std::string::npos) return default_answer;
    char c = answer[i];
    if (c == 'y' || c == 'Y') return true;
    if (c == 'n' || c == 'N') return false;
  }
}

bool TerminalReadLine(const std::string& prompt, std::string* line) {
  TerminalPrint(prompt);
  return ReadInputLine(line);
}

void TerminalPrint(const std::string& text) {
  fflush(stdout);
  fwrite(text.data(), 1, text.size(), stderr);
  fflush(stderr);
}

}  // namespace qv
