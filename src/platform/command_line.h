// Splitting a Windows command line into program and arguments.
#ifndef QUORVEX_PLATFORM_COMMAND_LINE_H_
#define QUORVEX_PLATFORM_COMMAND_LINE_H_

#include <string>
#include <vector>

namespace qv {

// The words of a command line by the Microsoft C runtime's rules: blanks
// separate words; a double quote toggles quoting and is removed; a run of
// backslashes is literal unless a double quote follows it, in which case
// each pair gives one backslash and an odd one makes the quote literal;
// "" inside quotes is a literal quote. The first word (the program) takes
// quotes only, never backslash escapes. Empty for a blank line.
std::vector<std::string> SplitCommandLine(const std::string& command_line);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_COMMAND_LINE_H_
