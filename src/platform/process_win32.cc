// Running a child process on Windows with CreateProcess.
//
// The command line goes to the child as written, only its first word
// replaced by the program found for it, since Windows programs split their
// own command lines.

#include <io.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "platform/command_line.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "platform/process.h"
#include "platform/program_path.h"
#include "platform/win32.h"

namespace qv {

namespace {

constexpr char kCommandLineVariable[] = "QUORVEX_COMMAND_LINE";

bool IsSs(const std::string& word) {
  return word.size() == 2 && (word[0] == 's' || word[0] == 'S') &&
         (word[1] == 's' || word[1] == 'S');
}

// Where the first word of a command line ends (quotes group, as the C
// runtime reads a program word).
size_t FirstWordEnd(const std::string& line) {
  size_t i = line.find_first_not_of(" \t");
  if (i == std::string::npos) return line.size();
  bool quoted = false;
  for (; i < line.size(); ++i) {
    if (line[i] == '"') {
      quoted = !quoted;
    } else if (!quoted && (line[i] == ' ' || line[i] == '\t')) {
      break;
    }
  }
  return i;
}

// This process's environment with QUORVEX_COMMAND_LINE set to the command
// line, as the block CreateProcess takes.
std::vector<char> ChildEnvironment(const std::string& command_line) {
  std::vector<char> block;
  size_t prefix = strlen(kCommandLineVariable);
  char* env = GetEnvironmentStringsA();
  for (const char* e = env; e != nullptr && *e != '\0'; e += strlen(e) + 1) {
    if (_strnicmp(e, kCommandLineVariable, prefix) == 0 && e[prefix] == '=') continue;
    block.insert(block.end(), e, e + strlen(e) + 1);
  }
  if (env != nullptr) FreeEnvironmentStringsA(env);
  std::string own = std::string(kCommandLineVariable) + "=" + command_line;
  block.insert(block.end(), own.begin(), own.end());
  block.push_back('\0');
  block.push_back('\0');
  return block;
}

}  // namespace

int RunProcess(const std::string& command_line, const std::string& working_directory,
               File* stdout_file) {
  std::vector<std::string> args = SplitCommandLine(command_line);
  if (args.empty()) return ENOENT;
  if (IsSs(args[0])) {
    args[0] = VersionControlClient();
    if (args[0].empty()) return ENOENT;
  }
  std::string program;
  int code = FindProgram(args[0], &program);
  if (code != 0) return code;
  std::string line = "\"" + program + "\"" + command_line.substr(FirstWordEnd(command_line));

  std::string directory;
  if (!working_directory.empty()) {
    directory = ResolvePath(working_directory);
    DWORD a = GetFileAttributesA(directory.c_str());
    if (a == INVALID_FILE_ATTRIBUTES) return ErrnoFromWin32(GetLastError());
    if ((a & FILE_ATTRIBUTE_DIRECTORY) == 0) return ENOTDIR;
  }

  // The child writes through its own copy of the file's handle, which
  // shares the file pointer: start it at the file's position.
  HANDLE child_stdout = INVALID_HANDLE_VALUE;
  HANDLE file_handle = INVALID_HANDLE_VALUE;
  if (stdout_file != nullptr && stdout_file->fd_ >= 0) {
    file_handle = reinterpret_cast<HANDLE>(_get_osfhandle(stdout_file->fd_));
    LARGE_INTEGER at;
    at.QuadPart = stdout_file->position_;
    if (!SetFilePointerEx(file_handle, at, nullptr, FILE_BEGIN) ||
        !DuplicateHandle(GetCurrentProcess(), file_handle, GetCurrentProcess(), &child_stdout, 0,
                         TRUE, DUPLICATE_SAME_ACCESS)) {
      return ErrnoFromWin32(GetLastError());
    }
  }

  STARTUPINFOA startup = {};
  startup.cb = sizeof(startup);
  if (child_stdout != INVALID_HANDLE_VALUE) {
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = child_stdout;
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  }
  std::vector<char> env = ChildEnvironment(command_line);
  std::vector<char> writable_line(line.begin(), line.end());
  writable_line.push_back('\0');
  fflush(nullptr);  // our own buffered output comes before the child's

  PROCESS_INFORMATION info = {};
  BOOL started =
      CreateProcessA(program.c_str(), writable_line.data(), nullptr, nullptr, TRUE, 0, env.data(),
                     directory.empty() ? nullptr : directory.c_str(), &startup, &info);
  DWORD start_error = started ? 0 : GetLastError();
  if (child_stdout != INVALID_HANDLE_VALUE) CloseHandle(child_stdout);
  if (!started) return ErrnoFromWin32(start_error);
  CloseHandle(info.hThread);
  WaitForSingleObject(info.hProcess, INFINITE);
  DWORD exit_code = 0;
  GetExitCodeProcess(info.hProcess, &exit_code);
  CloseHandle(info.hProcess);

  if (file_handle != INVALID_HANDLE_VALUE) {
    // Leave the file at the end of what the child wrote; the bytes cached
    // before may be stale now.
    LARGE_INTEGER zero = {};
    LARGE_INTEGER end;
    if (SetFilePointerEx(file_handle, zero, &end, FILE_CURRENT)) {
      stdout_file->position_ = end.QuadPart;
    }
    stdout_file->DropBuffer();
  }
  return static_cast<int>(exit_code);
}

}  // namespace qv
