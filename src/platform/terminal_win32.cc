// The terminal defaults of the host hooks on Windows: the console, when
// the program has one.

#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "platform/terminal.h"

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

bool TerminalIsInteractive() {
  return _isatty(_fileno(stdin)) != 0 && _isatty(_fileno(stderr)) != 0;
}

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

void UseBinaryStandardStreams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

void TerminalPrint(const std::string& text) {
  fflush(stdout);
  fwrite(text.data(), 1, text.size(), stderr);
  fflush(stderr);
}

}  // namespace qv
