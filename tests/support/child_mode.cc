#include "support/child_mode.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <map>

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
  if (argc < 3 || strcmp(argv[1], kChildFlag) != 0) return;
  auto found = Modes().find(argv[2]);
  if (found == Modes().end()) std::_Exit(126);
  std::exit(found->second(std::vector<std::string>(argv + 3, argv + argc)));
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
