// Running a program with CreateProcess, each argument quoted so that the
// C runtime of the child splits the command line back into exactly the
// arguments given.

#include <cerrno>
#include <cstdio>
#include <cstring>

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

// The system's text for an error code, without its line end.
std::string ErrorText(DWORD code) {
  char text[256] = "";
  DWORD n = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                           code, 0, text, sizeof(text), nullptr);
  std::string out(text, n);
  while (!out.empty() && (out.back() == '\n' || out.back() == '\r' || out.back() == ' ')) {
    out.pop_back();
  }
  return out;
}

// A program that cannot be started ends the call with 127 and nothing
// else, which alone does not say which step failed (a run under load once
// gave just that). The step and the system's error go where the program's
// own standard error would have gone, as a shell says why a command did not
// run, or to ours when that file could not be opened either.
void SayWhyNotStarted(HANDLE err, const std::string& program, const std::string& step, DWORD code) {
  char number[16];
  snprintf(number, sizeof(number), "%lu", static_cast<unsigned long>(code));
  std::string line = "cannot start " + program + ": " + step + " failed with error " + number;
  std::string text = ErrorText(code);
  if (!text.empty()) line += " (" + text + ")";
  line += "\n";
  DWORD written = 0;
  if (err == INVALID_HANDLE_VALUE ||
      !WriteFile(err, line.data(), static_cast<DWORD>(line.size()), &written, nullptr)) {
    fputs(line.c_str(), stderr);
    fflush(stderr);
  }
}

}  // namespace

int RunProgramWithFiles(const std::vector<std::string>& args, const std::string& directory,
                        const std::string& input_path, const std::string& output_path,
                        const std::string& error_path) {
  if (args.empty()) return 127;
  HANDLE err = OpenInherited(error_path, true);
  DWORD err_error = err == INVALID_HANDLE_VALUE ? GetLastError() : 0;
  std::string program;
  int found = FindProgram(args[0], &program);
  if (found != 0) {
    SayWhyNotStarted(err, args[0], std::string("finding the program (") + strerror(found) + ")",
                     GetLastError());
    if (err != INVALID_HANDLE_VALUE) CloseHandle(err);
    return 127;
  }
  std::string line = Quote(program);
  for (size_t i = 1; i < args.size(); ++i) line += " " + Quote(args[i]);
  HANDLE in = OpenInherited(input_path, false);
  DWORD in_error = in == INVALID_HANDLE_VALUE ? GetLastError() : 0;
  HANDLE out = OpenInherited(output_path, true);
  DWORD out_error = out == INVALID_HANDLE_VALUE ? GetLastError() : 0;
  int result = 127;
  if (err == INVALID_HANDLE_VALUE) {
    SayWhyNotStarted(err, program, "opening " + error_path + " for its standard error", err_error);
  } else if (in == INVALID_HANDLE_VALUE) {
    SayWhyNotStarted(err, program, "opening " + input_path + " for its standard input", in_error);
  } else if (out == INVALID_HANDLE_VALUE) {
    SayWhyNotStarted(err, program, "opening " + output_path + " for its standard output",
                     out_error);
  } else {
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
      if (!GetExitCodeProcess(info.hProcess, &code)) {
        SayWhyNotStarted(err, program, "reading its exit code", GetLastError());
        code = 127;
      }
      CloseHandle(info.hProcess);
      result = static_cast<int>(code);
    } else {
      SayWhyNotStarted(err, program, "CreateProcess", GetLastError());
    }
  }
  for (HANDLE h : {in, out, err}) {
    if (h != INVALID_HANDLE_VALUE) CloseHandle(h);
  }
  return result;
}

}  // namespace qv
