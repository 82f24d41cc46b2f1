// Other processes for the tests of what happens between processes: the test
// program started again in a mode a test names, so that the same code
// serves every system (there is no fork on Windows).
#ifndef QUORVEX_TESTS_SUPPORT_CHILD_MODE_H_
#define QUORVEX_TESTS_SUPPORT_CHILD_MODE_H_

#include <string>
#include <thread>
#include <vector>

namespace qvtest {

// What a child does; its result is the process's exit code.
using ChildMain = int (*)(const std::vector<std::string>& args);

// Registers a mode, at namespace scope in the file whose tests use it:
//   const qvtest::ChildMode kHold("hold-lock", HoldLock);
class ChildMode {
 public:
  ChildMode(const char* name, ChildMain main);
};

// Called first in main: a program started in a child mode runs it and ends
// with its result, never returning.
void RunChildModeIfAsked(int argc, char** argv);

// A program whose arguments are not its own to choose (a copy of the test
// program put where a client program is looked for) is told its mode by
// this variable instead: "MODE [WORD...]", the words going before its
// arguments. Set it only around the start of such a program.
inline constexpr char kChildModeVariable[] = "QVTEST_CHILD_MODE";

// This program started in a child mode, waited for on a thread of its own.
class Child {
 public:
  Child(const std::string& mode, const std::vector<std::string>& args);
  // Waits for the child if Wait was not called.
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  // Waits for the child's end: its exit code, 137 when it was killed.
  int Wait();
  // What the child wrote to its standard error, once it has ended.
  const std::string& err() const { return err_; }

 private:
  std::thread thread_;
  int status_ = -1;
  std::string err_;
};

// Runs this program in a child mode and waits: its exit code.
int RunChild(const std::string& mode, const std::vector<std::string>& args);

// Ends this process the way another process's kill would: no destructors,
// nothing closed by the program; the system lets go of what it held. The
// exit code is 137 on every system, as for SIGKILL.
[[noreturn]] void EndAsIfKilled();

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_CHILD_MODE_H_
