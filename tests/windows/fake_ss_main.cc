// The stand-in for the SourceSafe command-line client where tests cannot
// run support/fake_ss, a shell script: the same protocol as a program.
//
// Every call appends "<working directory>|<command line>" to
// $QUORVEX_FAKE_SS_LOG. The answer comes from $QUORVEX_FAKE_SS_SCRIPT, lines
//     <word> <exit code> [<output file> | ro=<path> | rw=<path> | -]...
// The first unused line whose word equals the command's first argument
// (ignoring case) is used once and kept as a comment; a line "* <code>"
// answers every call that no line matches; without either the exit code
// is 0. An output file is copied to standard output; ro= and rw= set and
// clear the read-only attribute.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "platform/fs.h"
#include "platform/names.h"
#include "platform/terminal.h"

namespace {

std::vector<std::string> Words(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> words;
  std::string word;
  while (in >> word) words.push_back(word);
  return words;
}

}  // namespace

int main(int argc, char** argv) {
  // The output is handed on byte for byte, as the script's cat does.
  qv::UseBinaryStandardStreams();
  const char* log = getenv("QUORVEX_FAKE_SS_LOG");
  if (log != nullptr && *log != '\0') {
    const char* command = getenv("QUORVEX_COMMAND_LINE");
    std::error_code ec;
    std::ofstream(log, std::ios::app | std::ios::binary)
        << std::filesystem::current_path(ec).string() << "|" << (command ? command : "") << "\n";
  }
  const char* script = getenv("QUORVEX_FAKE_SS_SCRIPT");
  if (script == nullptr || *script == '\0') return 0;
  std::ifstream in(script, std::ios::binary);
  if (!in) return 0;
  std::string word = argc > 1 ? argv[1] : "";
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(in, line)) lines.push_back(line);
  in.close();

  std::string chosen;
  std::string fallback;
  for (std::string& l : lines) {
    std::vector<std::string> words = Words(l);
    if (words.empty()) continue;
    if (chosen.empty() && words[0] != "*" && qv::EqualNoCase(words[0], word)) {
      chosen = l;
      l = "#" + l;  // used once
      continue;
    }
    if (fallback.empty() && words[0] == "*") fallback = l;
  }
  if (!chosen.empty()) {
    std::ofstream out(script, std::ios::binary | std::ios::trunc);
    for (const std::string& l : lines) out << l << "\n";
  } else {
    chosen = fallback;
  }
  std::vector<std::string> parts = Words(chosen);
  if (parts.size() < 2) return 0;
  int code = atoi(parts[1].c_str());
  for (size_t i = 2; i < parts.size(); ++i) {
    const std::string& part = parts[i];
    if (part.rfind("ro=", 0) == 0) {
      qv::SetReadOnly(part.substr(3), true);
    } else if (part.rfind("rw=", 0) == 0) {
      qv::SetReadOnly(part.substr(3), false);
    } else if (part != "-") {
      std::ifstream file(part, std::ios::binary);
      std::ostringstream bytes;
      bytes << file.rdbuf();
      std::string text = bytes.str();
      fwrite(text.data(), 1, text.size(), stdout);
    }
  }
  fflush(stdout);
  return code;
}
