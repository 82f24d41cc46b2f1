// What the terminal defaults ask of POSIX: whether a person is at a
// terminal. The streams never translate line ends here.

#include <unistd.h>

#include "platform/terminal.h"

namespace qv {

bool TerminalIsInteractive() {
  return isatty(STDIN_FILENO) == 1 && isatty(STDERR_FILENO) == 1;
}

void UseBinaryStandardStreams() {}

bool SystemMessageBox(const std::string&, const std::string&, bool, bool*) {
  return false;  // a POSIX program asks at its terminal or not at all
}

}  // namespace qv
