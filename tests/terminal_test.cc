// The terminal defaults: questions and lines read from standard input,
// texts printed on standard error. Each case runs in a child process whose
// standard input and error are pipes.

#include "platform/terminal.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <string>

namespace {

struct Outcome {
  int exit_code = -1;
  std::string error_output;
};

// Runs body in a child with input on standard input; body's result is the
// child's exit code.
Outcome RunWithInput(const std::string& input, const std::function<int()>& body) {
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
    _exit(body());
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

TEST(Terminal, PipesAreNotInteractive) {
  Outcome outcome = RunWithInput("", [] { return qv::TerminalIsInteractive() ? 1 : 0; });
  EXPECT_EQ(outcome.exit_code, 0);
}

TEST(Terminal, AskYesNoReadsAnswer) {
  Outcome yes = RunWithInput(
      "y\n", [] { return qv::TerminalAskYesNo("Error from QUORVEX!", "Proceed?", false) ? 1 : 0; });
  EXPECT_EQ(yes.exit_code, 1);
  EXPECT_NE(yes.error_output.find("Error from QUORVEX!\nProceed?\n"), std::string::npos);
  Outcome no = RunWithInput("  No\n", [] { return qv::TerminalAskYesNo("C", "T", true) ? 1 : 0; });
  EXPECT_EQ(no.exit_code, 0);
}

TEST(Terminal, AskYesNoRepeatsUntilAnswered) {
  Outcome outcome =
      RunWithInput("maybe\nY\n", [] { return qv::TerminalAskYesNo("C", "T", false) ? 1 : 0; });
  EXPECT_EQ(outcome.exit_code, 1);
  EXPECT_EQ(outcome.error_output, "C\nT\n[y/N] [y/N] ");
}

TEST(Terminal, AskYesNoGivesDefaultAtEndOfInput) {
  EXPECT_EQ(RunWithInput("", [] { return qv::TerminalAskYesNo("C", "T", true) ? 1 : 0; }).exit_code,
            1);
  EXPECT_EQ(
      RunWithInput("", [] { return qv::TerminalAskYesNo("C", "T", false) ? 1 : 0; }).exit_code, 0);
  // An empty answer takes the default too.
  EXPECT_EQ(
      RunWithInput("\n", [] { return qv::TerminalAskYesNo("C", "T", true) ? 1 : 0; }).exit_code, 1);
}

TEST(Terminal, ReadLineStripsLineEnd) {
  Outcome outcome = RunWithInput("C:\\Profile\r\nsecond\n", [] {
    std::string line;
    if (!qv::TerminalReadLine("Path: ", &line) || line != "C:\\Profile") return 1;
    if (!qv::TerminalReadLine("Next: ", &line) || line != "second") return 2;
    if (qv::TerminalReadLine("More: ", &line)) return 3;
    return 0;
  });
  EXPECT_EQ(outcome.exit_code, 0);
  EXPECT_EQ(outcome.error_output, "Path: Next: More: ");
}

TEST(Terminal, ReadLineTakesLastLineWithoutFeed) {
  Outcome outcome = RunWithInput("last", [] {
    std::string line;
    return qv::TerminalReadLine("", &line) && line == "last" ? 0 : 1;
  });
  EXPECT_EQ(outcome.exit_code, 0);
}

TEST(Terminal, PrintGoesToStandardError) {
  Outcome outcome = RunWithInput("", [] {
    qv::TerminalPrint("some text\n");
    return 0;
  });
  EXPECT_EQ(outcome.error_output, "some text\n");
}

}  // namespace
