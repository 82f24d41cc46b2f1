// Running a child process on POSIX.

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/command_line.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "platform/process.h"
#include "platform/program_path.h"

extern char** environ;

namespace qv {

namespace {

constexpr char kCommandLineVariable[] = "QUORVEX_COMMAND_LINE";

#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 29))
#define QUORVEX_HAVE_SPAWN_CHDIR 1
#endif

bool EqualNoCase(const std::string& a, const char* b) {
  size_t n = strlen(b);
  if (a.size() != n) return false;
  for (size_t i = 0; i < n; ++i) {
    char c = a[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != b[i]) return false;
  }
  return true;
}

std::vector<std::string> ChildEnvironment(const std::string& command_line) {
  std::vector<std::string> env;
  size_t prefix = strlen(kCommandLineVariable);
  for (char** e = environ; e != nullptr && *e != nullptr; ++e) {
    if (strncmp(*e, kCommandLineVariable, prefix) == 0 && (*e)[prefix] == '=') continue;
    env.push_back(*e);
  }
  env.push_back(std::string(kCommandLineVariable) + "=" + command_line);
  return env;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

#ifdef QUORVEX_HAVE_SPAWN_CHDIR

int Start(const std::string& program, char** argv, char** envp, const std::string& directory,
          int stdout_fd, pid_t* pid) {
  posix_spawn_file_actions_t actions;
  int code = posix_spawn_file_actions_init(&actions);
  if (code != 0) return code;
  if (!directory.empty()) code = posix_spawn_file_actions_addchdir_np(&actions, directory.c_str());
  if (code == 0 && stdout_fd >= 0) code = posix_spawn_file_actions_adddup2(&actions, stdout_fd, 1);
  if (code == 0) code = posix_spawn(pid, program.c_str(), &actions, nullptr, argv, envp);
  posix_spawn_file_actions_destroy(&actions);
  return code;
}

#else

// Without a spawn action for the folder: fork, and let the child report a
// failed chdir or exec through a pipe that closes on a successful exec.
int Start(const std::string& program, char** argv, char** envp, const std::string& directory,
          int stdout_fd, pid_t* pid) {
  int report[2];
  if (pipe2(report, O_CLOEXEC) != 0) return errno;
  pid_t child = fork();
  if (child < 0) {
    int code = errno;
    close(report[0]);
    close(report[1]);
    return code;
  }
  if (child == 0) {
    close(report[0]);
    if ((directory.empty() || chdir(directory.c_str()) == 0) &&
        (stdout_fd < 0 || dup2(stdout_fd, 1) >= 0)) {
      execve(program.c_str(), argv, envp);
    }
    int code = errno;
    ssize_t ignored = write(report[1], &code, sizeof(code));
    (void)ignored;
    _exit(127);
  }
  close(report[1]);
  int code = 0;
  ssize_t r;
  do {
    r = read(report[0], &code, sizeof(code));
  } while (r < 0 && errno == EINTR);
  close(report[0]);
  if (r == static_cast<ssize_t>(sizeof(code))) {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return code;
  }
  *pid = child;
  return 0;
}

#endif

}  // namespace

int RunProcess(const std::string& command_line, const std::string& working_directory,
               File* stdout_file) {
  std::vector<std::string> args = SplitCommandLine(command_line);
  if (args.empty()) return ENOENT;
  if (EqualNoCase(args[0], "ss")) {
    // Never a program that merely shares the client's name.
    args[0] = VersionControlClient();
    if (args[0].empty()) return ENOENT;
  }
  std::string program;
  int code = FindProgram(args[0], &program);
  if (code != 0) return code;
  args[0] = program;

  std::string directory;
  if (!working_directory.empty()) {
    directory = ResolvePath(working_directory);
    struct stat st;
    if (stat(directory.c_str(), &st) != 0) return errno;
    if (!S_ISDIR(st.st_mode)) return ENOTDIR;
  }

  int stdout_fd = -1;
  if (stdout_file != nullptr) {
    // The child writes through the shared descriptor offset, which File
    // itself never moves: start it at the file's position.
    stdout_fd = stdout_file->fd_;
    if (lseek(stdout_fd, stdout_file->position_, SEEK_SET) < 0) return errno;
  }

  std::vector<std::string> env = ChildEnvironment(command_line);
  std::vector<char*> argv = Pointers(args);
  std::vector<char*> envp = Pointers(env);
  fflush(nullptr);  // our own buffered output comes before the child's

  pid_t pid = -1;
  code = Start(program, argv.data(), envp.data(), directory, stdout_fd, &pid);
  if (code != 0) return code;

  int status = 0;
  while (waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return errno;
  }

  if (stdout_file != nullptr) {
    // Leave the file at the end of what the child wrote; the bytes cached
    // before may be stale now.
    off_t end = lseek(stdout_fd, 0, SEEK_CUR);
    if (end >= 0) stdout_file->position_ = end;
    stdout_file->DropBuffer();
  }

  if (WIFEXITED(status)) return WEXITSTATUS(status);
  if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
  return status;
}

}  // namespace qv
