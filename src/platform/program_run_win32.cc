// Running a program with CreateProcess, each argument quoted so that the
// C runtime of the child splits the command line back into exactly the
// arguments given.

#include <cerrno>
#include <cstdio>

#include "platform/fs.h"
#include "platform/program_path.h"
#include "platform/program_run.h"
#include "platform/win32.h"

namespace qv {

namespace {

// One argument as the Microsoft C runtime reads it back: quoted when it has
// blanks or quotes, backslashes doubled only before a quote.
std::string Quote(const std::string& arg) {
  if (!arg.empty() && arg.find_first_of(" \t\n\v\"") == std::string::npos) return arg;
  std::string out = "\"";
  size_t backslashes = 0;
  for (char c : arg) {
    if (c == '\\') {
      ++backslashes;
      continue;
    }
    if (c == '"') {
      out.append(backslashes * 2 + 1, '\\');
    } else {
      out.append(backslashes, '\\');
    }
    backslashes = 0;
    out += c;
  }
  out.append(backslashes * 2, '\\');
  out += '"';
  return out;
}

HANDLE OpenInherited(const std::string& path, bool write) {
  SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
  return CreateFileA(ResolvePath(path).c_str(), write ? GENERIC_WRITE : GENERIC_READ,
                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherit,
                     write ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

int RunProgramWithFiles(const std::vector<std::string>& args, const std::string& directory,
                        const std::string& input_path, const std::string& output_path,
                        const std::string& error_path) {
  if (args.empty()) return 127;
  std::string program;
  if (FindProgram(args[0], &program) != 0) return 127;
  std::string line = Quote(program);
  for (size_t i = 1; i < args.size(); ++i) line += " " + Quote(args[i]);
  HANDLE in = OpenInherited(input_path, false);
  HANDLE out = OpenInherited(output_path, true);
  HANDLE err = OpenInherited(error_path, true);
  int result = 127;
  if (in != INVALID_HANDLE_VALUE && out != INVALID_HANDLE_VALUE && err != INVALID_HANDLE_VALUE) {
    STARTUPINFOA startup = {};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = in;
    startup.hStdOutput = out;
    startup.hStdError = err;
    std::vector<char> writable(line.begin(), line.end());
    writable.push_back('\0');
    std::string folder = directory.empty() ? std::string() : ResolvePath(directory);
    PROCESS_INFORMATION info = {};
    fflush(nullptr);
    if (CreateProcessA(program.c_str(), writable.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       folder.empty() ? nullptr : folder.c_str(), &startup, &info)) {
      CloseHandle(info.hThread);
      WaitForSingleObject(info.hProcess, INFINITE);
      DWORD code = 127;
      GetExitCodeProcess(info.hProcess, &code);
      CloseHandle(info.hProcess);
      result = static_cast<int>(code);
    }
  }
  for (HANDLE h : {in, out, err}) {
    if (h != INVALID_HANDLE_VALUE) CloseHandle(h);
  }
  return result;
}

}  // namespace qv
