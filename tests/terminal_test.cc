// The terminal defaults: questions and lines read from standard input,
// texts printed on standard error. Each case runs in a child process whose
// standard input and error are pipes: a fork on POSIX, this program started
// again in the case's child mode on Windows, which has no fork.

#include "platform/terminal.h"

#include <gtest/gtest.h>
#ifdef _WIN32
#include "platform/fs.h"
#include "platform/win32.h"
#else
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "support/child_mode.h"

namespace {

struct Outcome {
  int exit_code = -1;
  std::string error_output;
};

// What each case's child does; its result is the child's exit code. Each is
// a child mode of its own, for the systems where the child is this program
// started again.
std::map<std::string, std::function<int()>>& Bodies() {
  static auto* bodies = new std::map<std::string, std::function<int()>>;
  return *bodies;
}

int RunBody(const std::string& name) {
#ifdef _WIN32
  // A host program chooses how its streams pass bytes; the tool, like this
  // child, passes them unchanged, so that the texts are compared as written.
  qv::UseBinaryStandardStreams();
#endif
  return Bodies().at(name)();
}

struct Body {
  Body(const char* name, std::function<int()> body) : mode(name, RunMode) {
    Bodies()[name] = std::move(body);
  }
  static int RunMode(const std::vector<std::string>& args) {
    return args.size() == 1 ? RunBody(args[0]) : 2;
  }
  qvtest::ChildMode mode;
};

#ifdef _WIN32
// Starts this program in the body's child mode with both streams on pipes,
// gives it the input, and reads its standard error until it ends.
Outcome RunWithInput(const std::string& input, const std::string& body) {
  Outcome outcome;
  SECURITY_ATTRIBUTES inherit = {sizeof(inherit), nullptr, TRUE};
  HANDLE in_read, in_write, err_read, err_write;
  if (!CreatePipe(&in_read, &in_write, &inherit, 0)) {
    ADD_FAILURE() << "CreatePipe: " << GetLastError();
    return outcome;
  }
  if (!CreatePipe(&err_read, &err_write, &inherit, 0)) {
    ADD_FAILURE() << "CreatePipe: " << GetLastError();
    CloseHandle(in_read);
    CloseHandle(in_write);
    return outcome;
  }
  // The child gets only its own ends: with ours open in it too, neither
  // pipe would ever end.
  SetHandleInformation(in_write, HANDLE_FLAG_INHERIT, 0);
  SetHandleInformation(err_read, HANDLE_FLAG_INHERIT, 0);
  std::string program = qv::HostProgramPath();
  std::string line = "\"" + program + "\" --qvtest-child " + body + " " + body;
  std::vector<char> writable(line.begin(), line.end());
  writable.push_back('\0');
  STARTUPINFOA startup = {};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = in_read;
  startup.hStdOutput = GetStdHandle(STD_OUTPUT_HANDLE);
  startup.hStdError = err_write;
  PROCESS_INFORMATION info = {};
  fflush(nullptr);
  BOOL started = CreateProcessA(program.c_str(), writable.data(), nullptr, nullptr, TRUE, 0,
                                nullptr, nullptr, &startup, &info);
  DWORD start_error = started ? 0 : GetLastError();
  CloseHandle(in_read);
  CloseHandle(err_write);
  if (!started) {
    ADD_FAILURE() << "CreateProcess: " << start_error;
    CloseHandle(in_write);
    CloseHandle(err_read);
    return outcome;
  }
  CloseHandle(info.hThread);
  DWORD written = 0;
  EXPECT_TRUE(input.empty() || WriteFile(in_write, input.data(), static_cast<DWORD>(input.size()),
                                         &written, nullptr));
  EXPECT_EQ(written, input.size());
  CloseHandle(in_write);
  char block[512];
  DWORD n = 0;
  while (ReadFile(err_read, block, sizeof(block), &n, nullptr) && n > 0) {
    outcome.error_output.append(block, n);
  }
  CloseHandle(err_read);
  EXPECT_EQ(WaitForSingleObject(info.hProcess, INFINITE), WAIT_OBJECT_0);
  DWORD code = 0;
  if (GetExitCodeProcess(info.hProcess, &code)) outcome.exit_code = static_cast<int>(code);
  CloseHandle(info.hProcess);
  return outcome;
}
#else
// Runs the body in a child with input on standard input.
Outcome RunWithInput(const std::string& input, const std::string& body) {
  int in[2];
  int err[2];
  EXPECT_EQ(pipe(in), 0);
  EXPECT_EQ(pipe(err), 0);
  pid_t pid = fork();
  if (pid == 0) {
    dup2(in[0], 0);
    dup2(err[1], 2);
    close(in[0]);
    close(in[1]);
    close(err[0]);
    close(err[1]);
    fflush(stdout);
    _exit(RunBody(body));
  }
  close(in[0]);
  close(err[1]);
  EXPECT_EQ(write(in[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
  close(in[1]);
  Outcome outcome;
  char block[512];
  ssize_t n;
  while ((n = read(err[0], block, sizeof(block))) > 0) {
    outcome.error_output.append(block, static_cast<size_t>(n));
  }
  close(err[0]);
  int status = 0;
  EXPECT_EQ(waitpid(pid, &status, 0), pid);
  if (WIFEXITED(status)) outcome.exit_code = WEXITSTATUS(status);
  return outcome;
}
#endif

const Body kIsInteractive("terminal-is-interactive",
                          [] { return qv::TerminalIsInteractive() ? 1 : 0; });
const Body kAskProceed("terminal-ask-proceed", [] {
  return qv::TerminalAskYesNo("Error from QUORVEX!", "Proceed?", false) ? 1 : 0;
});
const Body kAskYesDefault("terminal-ask-yes-default",
                          [] { return qv::TerminalAskYesNo("C", "T", true) ? 1 : 0; });
const Body kAskNoDefault("terminal-ask-no-default",
                         [] { return qv::TerminalAskYesNo("C", "T", false) ? 1 : 0; });
const Body kReadTwoLines("terminal-read-two-lines", [] {
  std::string line;
  if (!qv::TerminalReadLine("Path: ", &line) || line != "C:\\Profile") return 1;
  if (!qv::TerminalReadLine("Next: ", &line) || line != "second") return 2;
  if (qv::TerminalReadLine("More: ", &line)) return 3;
  return 0;
});
const Body kReadLastLine("terminal-read-last-line", [] {
  std::string line;
  return qv::TerminalReadLine("", &line) && line == "last" ? 0 : 1;
});
const Body kPrint("terminal-print", [] {
  qv::TerminalPrint("some text\n");
  return 0;
});

TEST(Terminal, PipesAreNotInteractive) {
  Outcome outcome = RunWithInput("", "terminal-is-interactive");
  EXPECT_EQ(outcome.exit_code, 0);
}

TEST(Terminal, AskYesNoReadsAnswer) {
  Outcome yes = RunWithInput("y\n", "terminal-ask-proceed");
  EXPECT_EQ(yes.exit_code, 1);
  EXPECT_NE(yes.error_output.find("Error from QUORVEX!\nProceed?\n"), std::string::npos);
  Outcome no = RunWithInput("  No\n", "terminal-ask-yes-default");
  EXPECT_EQ(no.exit_code, 0);
}

TEST(Terminal, AskYesNoRepeatsUntilAnswered) {
  Outcome outcome = RunWithInput("maybe\nY\n", "terminal-ask-no-default");
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.error_output, "C\nT\n[y/N] [y/N] ");
}

TEST(Terminal, AskYesNoGivesDefaultAtEndOfInput) {
  EXPECT_EQ(RunWithInput("", "terminal-ask-yes-default").exit_code, 1);
  EXPECT_EQ(RunWithInput("", "terminal-ask-no-default").exit_code, 0);
  // An empty answer takes the default too.
  EXPECT_EQ(RunWithInput("\n", "terminal-ask-yes-default").exit_code, 1);
}

TEST(Terminal, ReadLineStripsLineEnd) {
  Outcome outcome = RunWithInput("C:\\Profile\r\nsecond\n", "terminal-read-two-lines");
  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_EQ(outcome.error_output, "Path: Next: More: ");
}

TEST(Terminal, ReadLineTakesLastLineWithoutFeed) {
  Outcome outcome = RunWithInput("last", "terminal-read-last-line");
  EXPECT_EQ(outcome.exit_code, 0);
}

TEST(Terminal, PrintGoesToStandardError) {
  Outcome outcome = RunWithInput("", "terminal-print");
  EXPECT_EQ(outcome.error_output, "some text\n");
}

}  // namespace
