#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/program_run.h"

namespace qv {

int RunProgramWithFiles(const std::vector<std::string>& args, const std::string& directory,
                        const std::string& input_path, const std::string& output_path,
                        const std::string& error_path) {
  if (args.empty()) return 127;
  // The child reopens its streams and changes folder itself before exec.
  fflush(nullptr);
  pid_t pid = fork();
  if (pid < 0) return 127;
  if (pid == 0) {
    if (!freopen(input_path.c_str(), "r", stdin) || !freopen(output_path.c_str(), "w", stdout) ||
        !freopen(error_path.c_str(), "w", stderr)) {
      _exit(127);
    }
    if (!directory.empty() && chdir(directory.c_str()) != 0) _exit(127);
    std::vector<std::string> copies = args;
    std::vector<char*> argv;
    for (std::string& a : copies) argv.push_back(a.data());
    argv.push_back(nullptr);
    execvp(argv[0], argv.data());
    _exit(127);
  }
  int status = 0;
  while (waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return 127;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace qv
