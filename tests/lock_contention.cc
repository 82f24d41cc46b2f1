// Two processes open the same profile locked, as fast as they can, and
// must never hold it both at once; then holders are killed at random and
// the next locked open must succeed at once.
//
//   lock_contention [--rounds N] [--kills K] [--seed S]
//
// N locked opens are held in all, half by each process.
// Each holder, once its open succeeds, creates a marker file that must not
// exist yet and removes it before it closes: a marker already there means
// the other process holds the profile too.

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "quorvex/quorvex.h"

namespace {

namespace fs = std::filesystem;

int SilentBox(void*, const char*, const char*, int) {
  return 1;
}

// A refused open offers the dialog; nobody is there to answer it.
int NoDialog(void*, QuorvexOpenProfileRequest*) {
  return 0;
}

void SetSilentHost() {
  static QuorvexHost host = {nullptr, SilentBox, NoDialog, nullptr};
  QuorvexSetHost(&host);
}

bool OpenLocked(const std::string& dir) {
  char path[QV_PATH_SIZE];
  snprintf(path, sizeof path, "%s", dir.c_str());
  uint32_t flags = OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK;
  return OpenMasterProfile(path, &flags, "") == 1;
}

// The child: holds the profile `rounds` times. Prints "holds refused" on
// success; exits 1 when it found the other holder inside.
int Holder(const std::string& dir, const std::string& marker, long rounds) {
  SetSilentHost();
  long refused = 0;
  for (long i = 0; i < rounds || rounds < 0; ++i) {
    while (!OpenLocked(dir)) ++refused;
    int fd = open(marker.c_str(), O_CREAT | O_EXCL | O_WRONLY, 0644);
    if (fd < 0) {
      fprintf(stderr, "lock_contention: both processes hold the profile (%s)\n", strerror(errno));
      return 1;
    }
    close(fd);
    unlink(marker.c_str());
    CloseMasterProfile();
  }
  printf("%ld %ld\n", rounds, refused);
  return 0;
}

pid_t Start(const std::string& self, const std::string& dir, const std::string& marker, long rounds,
            int* out_fd) {
  int fds[2];
  if (pipe(fds) != 0) exit(2);
  pid_t pid = fork();
  if (pid == 0) {
    dup2(fds[1], STDOUT_FILENO);
    int null = open("/dev/null", O_WRONLY);
    if (null >= 0) dup2(null, STDERR_FILENO);
    close(fds[0]);
    close(fds[1]);
    std::string count = std::to_string(rounds);
    execl(self.c_str(), self.c_str(), "holder", dir.c_str(), marker.c_str(), count.c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  close(fds[1]);
  *out_fd = fds[0];
  return pid;
}

std::string ReadAll(int fd) {
  std::string text;
  char buffer[256];
  ssize_t n;
  while ((n = read(fd, buffer, sizeof buffer)) > 0) text.append(buffer, n);
  close(fd);
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 5 && strcmp(argv[1], "holder") == 0) {
    return Holder(argv[2], argv[3], atol(argv[4]));
  }
  long rounds = 2000;
  int kills = 100;
  unsigned seed = static_cast<unsigned>(time(nullptr));
  for (int i = 1; i + 1 < argc; i += 2) {
    std::string flag = argv[i];
    if (flag == "--rounds") {
      rounds = atol(argv[i + 1]);
    } else if (flag == "--kills") {
      kills = atoi(argv[i + 1]);
    } else if (flag == "--seed") {
      seed = static_cast<unsigned>(strtoul(argv[i + 1], nullptr, 10));
    } else {
      fprintf(stderr, "lock_contention: unknown argument %s\n", flag.c_str());
      return 2;
    }
  }
  std::string self = fs::read_symlink("/proc/self/exe").string();
  std::string pattern = (fs::temp_directory_path() / "qvlock.XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) return 2;
  fs::path root = pattern;
  setenv("QUORVEX_REGISTRY", (root / "registry.reg").c_str(), 1);
  fs::create_directories(root / "tmp");
  setenv("TMPDIR", (root / "tmp").c_str(), 1);
  std::string dir = (root / "MP").string();
  std::string marker = (root / "holder").string();
  if (QvInitMasterProfile(dir.c_str()) != 1) return 2;
  SetSilentHost();

  // Contention: both loop until each has held the profile `rounds` times.
  auto start = std::chrono::steady_clock::now();
  int out[2];
  pid_t holders[2] = {Start(self, dir, marker, rounds / 2, &out[0]),
                      Start(self, dir, marker, rounds - rounds / 2, &out[1])};
  bool overlap = false;
  long held = 0;
  long refused = 0;
  for (int i = 0; i < 2; ++i) {
    std::string said = ReadAll(out[i]);
    int status = 0;
    waitpid(holders[i], &status, 0);
    long h = 0;
    long r = 0;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 ||
        sscanf(said.c_str(), "%ld %ld", &h, &r) != 2) {
      overlap = true;
    }
    held += h;
    refused += r;
  }
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  printf(
      "lock_contention: 2 processes, %ld locked opens held, %ld refused while the other held "
      "it, both holders at once: %s (%.1f s)\n",
      held, refused, overlap ? "YES" : "never", seconds);

  // Kills: a holder killed at any moment never blocks the next open.
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> moment(0, 20000);
  int blocked = 0;
  for (int k = 0; k < kills; ++k) {
    int fd = -1;
    pid_t pid = Start(self, dir, marker, -1, &fd);
    std::this_thread::sleep_for(std::chrono::microseconds(moment(random)));
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    close(fd);
    unlink(marker.c_str());  // the killed holder may have left it
    if (OpenLocked(dir)) {
      CloseMasterProfile();
    } else {
      ++blocked;
    }
  }
  printf(
      "lock_contention: %d holders killed at random, next locked open failed %d times "
      "(seed %u)\n",
      kills, blocked, seed);
  bool ok = !overlap && blocked == 0 && held == rounds;
  if (ok) fs::remove_all(root);
  return ok ? 0 : 1;
}
