#include "support/run_tool.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "support/temp_dir.h"

namespace qvtest {

ToolResult RunProgram(const std::vector<std::string>& args, const std::string& input,
                      const std::string& dir) {
  TempDir capture;
  std::string out_path = capture.Join("out");
  std::string err_path = capture.Join("err");
  std::string in_path = capture.Write("in", input);
  ToolResult result;
  pid_t pid = fork();
  if (pid == 0) {
    if (!freopen(in_path.c_str(), "r", stdin) || !freopen(out_path.c_str(), "w", stdout) ||
        !freopen(err_path.c_str(), "w", stderr)) {
      _exit(127);
    }
    if (!dir.empty() && chdir(dir.c_str()) != 0) _exit(127);
    std::vector<std::string> copies = args;
    std::vector<char*> argv;
    for (std::string& a : copies) argv.push_back(a.data());
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  waitpid(pid, &status, 0);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  result.out = ReadFileBytes(out_path);
  result.err = ReadFileBytes(err_path);
  return result;
}

std::string ToolPath() {
  return QUORVEX_TOOL;
}

ToolResult RunToolIn(const std::string& dir, const std::vector<std::string>& args,
                     const std::string& input) {
  std::vector<std::string> argv = {ToolPath()};
  argv.insert(argv.end(), args.begin(), args.end());
  return RunProgram(argv, input, dir);
}

ToolResult RunTool(const std::vector<std::string>& args, const std::string& input) {
  return RunToolIn("", args, input);
}

}  // namespace qvtest
