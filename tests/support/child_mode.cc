#include "support/child_mode.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <map>

#include "platform/environment.h"
#include "platform/fs.h"
#include "support/run_tool.h"
#ifdef _WIN32
#include "platform/win32.h"
#endif

namespace qvtest {

namespace {

constexpr char kChildFlag[] = "--qvtest-child";

std::map<std::string, ChildMain>& Modes() {
  static auto* modes = new std::map<std::string, ChildMain>;
  return *modes;
}

std::vector<std::string> ChildCommand(const std::string& mode,
                                      const std::vector<std::string>& args) {
  std::vector<std::string> argv = {qv::HostProgramPath(), kChildFlag, mode};
  argv.insert(argv.end(), args.begin(), args.end());
  return argv;
}

}  // namespace

ChildMode::ChildMode(const char* name, ChildMain main) {
  Modes()[name] = main;
}

void RunChildModeIfAsked(int argc, char** argv) {
  if (argc >= 3 && strcmp(argv[1], kChildFlag) == 0) {
    auto found = Modes().find(argv[2]);
    if (found == Modes().end()) std::_Exit(126);
    std::exit(found->second(std::vector<std::string>(argv + 3, argv + argc)));
  }
  const char* from_environment = getenv(kChildModeVariable);
  if (from_environment == nullptr || *from_environment == '\0') return;
  // MODE [WORD...]: the words come before the program's own arguments. The
  // variable goes, so that what this child starts is itself again.
  std::vector<std::string> words;
  std::string word;
  for (const char* c = from_environment;; ++c) {
    if (*c == ' ' || *c == '\0') {
      if (!word.empty()) words.push_back(word);
      word.clear();
      if (*c == '\0') break;
    } else {
      word += *c;
    }
  }
  qv::SetEnvironmentValue(kChildModeVariable, nullptr);
  auto found = words.empty() ? Modes().end() : Modes().find(words[0]);
  if (found == Modes().end()) std::_Exit(126);
  std::vector<std::string> args(words.begin() + 1, words.end());
  args.insert(args.end(), argv + 1, argv + argc);
  std::exit(found->second(args));
}

Child::Child(const std::string& mode, const std::vector<std::string>& args) {
  std::vector<std::string> argv = ChildCommand(mode, args);
  thread_ = std::thread([this, argv] {
    ToolResult result = RunProgram(argv);
    status_ = result.status;
    err_ = result.err;
  });
}

Child::~Child() {
  if (thread_.joinable()) thread_.join();
}

int Child::Wait() {
  if (thread_.joinable()) thread_.join();
  return status_;
}

int RunChild(const std::string& mode, const std::vector<std::string>& args) {
  return RunProgram(ChildCommand(mode, args)).status;
}

void EndAsIfKilled() {
#ifdef _WIN32
  TerminateProcess(GetCurrentProcess(), 137);
#else
  raise(SIGKILL);
#endif
  std::_Exit(137);
}

}  // namespace qvtest
