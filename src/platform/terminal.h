// The host's defaults when no host program installed callbacks: questions on
// an interactive terminal, else standard error and a fixed answer.
#ifndef QUORVEX_PLATFORM_TERMINAL_H_
#define QUORVEX_PLATFORM_TERMINAL_H_

#include <string>

namespace qv {

// True when standard input and standard error are both terminals.
bool TerminalIsInteractive();
// Prints caption and text to standard error and reads a y/n answer from
// standard input; returns default_answer on end of input.
bool TerminalAskYesNo(const std::string& caption, const std::string& text, bool default_answer);
// Prints a prompt and reads one line; false on end of input.
bool TerminalReadLine(const std::string& prompt, std::string* line);
void TerminalPrint(const std::string& text);  // to standard error
// A Yes/No box of the system's own, with no owner window, for a program
// that has no console to ask at: on Windows, one built for the graphical
// subsystem. False when there is no such box here; otherwise *yes holds the
// answer. error marks a report (rather than a question) for the box's icon.
bool SystemMessageBox(const std::string& caption, const std::string& text, bool error, bool* yes);
// Makes standard input, output and error pass bytes unchanged (no line-end
// translation), so that a program's output is the same on every system.
void UseBinaryStandardStreams();

}  // namespace qv

#endif  // QUORVEX_PLATFORM_TERMINAL_H_
