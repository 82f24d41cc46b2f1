// The profile lock file: exclusion between processes, stale files, release.

#include "platform/lock_file.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

#include "support/temp_dir.h"

namespace {

using qv::LockFile;
using qvtest::TempDir;

// Runs Acquire in a child process; true when the child got the lock.
bool ChildCanAcquire(const std::string& path) {
  pid_t pid = fork();
  if (pid == 0) {
    LockFile* lock = LockFile::Acquire(path);
    if (lock == nullptr) _exit(1);
    lock->Release();
    _exit(0);
  }
  int status = 0;
  EXPECT_EQ(waitpid(pid, &status, 0), pid);
  EXPECT_TRUE(WIFEXITED(status));
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(LockFile, AcquireCreatesAndReleaseRemoves) {
  TempDir dir;
  std::string path = dir.Join("QUORVEX.LOK");
  LockFile* lock = LockFile::Acquire(path);
  ASSERT_NE(lock, nullptr);
  EXPECT_EQ(lock->path(), path);
  EXPECT_TRUE(qvtest::PathExists(path));
  EXPECT_EQ(qvtest::ReadFileBytes(path), "");  // nothing is written into it
  lock->Release();
  EXPECT_FALSE(qvtest::PathExists(path));
}

TEST(LockFile, SecondProcessIsKeptOutWhileHeld) {
  TempDir dir;
  std::string path = dir.Join("QUORVEX.LOK");
  LockFile* lock = LockFile::Acquire(path);
  ASSERT_NE(lock, nullptr);
  EXPECT_FALSE(ChildCanAcquire(path));
  EXPECT_FALSE(ChildCanAcquire(dir.path() + "\\quorvex.lok"));  // any spelling
  EXPECT_TRUE(qvtest::PathExists(path));                        // the child's attempt left it alone
  lock->Release();
  EXPECT_TRUE(ChildCanAcquire(path));
}

TEST(LockFile, SecondAcquireInSameProcessFails) {
  TempDir dir;
  std::string path = dir.Join("QUORVEX.LOK");
  LockFile* lock = LockFile::Acquire(path);
  ASSERT_NE(lock, nullptr);
  EXPECT_EQ(LockFile::Acquire(path), nullptr);
  lock->Release();
  LockFile* again = LockFile::Acquire(path);
  ASSERT_NE(again, nullptr);
  again->Release();
}

TEST(LockFile, KilledHolderDoesNotBlock) {
  TempDir dir;
  std::string path = dir.Join("QUORVEX.LOK");
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  pid_t pid = fork();
  if (pid == 0) {
    close(ready[0]);
    LockFile* lock = LockFile::Acquire(path);
    char c = lock != nullptr ? 'y' : 'n';
    if (write(ready[1], &c, 1) != 1) _exit(2);
    for (;;) pause();
  }
  close(ready[1]);
  char c = 0;
  ASSERT_EQ(read(ready[0], &c, 1), 1);
  close(ready[0]);
  EXPECT_EQ(c, 'y');
  EXPECT_EQ(LockFile::Acquire(path), nullptr);  // the child holds it
  ASSERT_EQ(kill(pid, SIGKILL), 0);
  int status = 0;
  ASSERT_EQ(waitpid(pid, &status, 0), pid);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_TRUE(qvtest::PathExists(path));  // left behind by the crash
  LockFile* lock = LockFile::Acquire(path);
  ASSERT_NE(lock, nullptr);
  lock->Release();
  EXPECT_FALSE(qvtest::PathExists(path));
}

TEST(LockFile, StaleFileDoesNotBlock) {
  TempDir dir;
  std::string path = dir.Write("QUORVEX.LOK", "left over");
  LockFile* lock = LockFile::Acquire(path);
  ASSERT_NE(lock, nullptr);
  EXPECT_FALSE(ChildCanAcquire(path));
  lock->Release();
  EXPECT_FALSE(qvtest::PathExists(path));
}

TEST(LockFile, ReadOnlyStaleFileDoesNotBlock) {
  TempDir dir;
  std::string path = dir.Write("QUORVEX.LOK", "");
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);
  LockFile* lock = LockFile::Acquire(path);
  ASSERT_NE(lock, nullptr);
  lock->Release();
  EXPECT_FALSE(qvtest::PathExists(path));
}

TEST(LockFile, MissingFolderFails) {
  TempDir dir;
  EXPECT_EQ(LockFile::Acquire(dir.Join("none/QUORVEX.LOK")), nullptr);
  EXPECT_FALSE(qvtest::PathExists(dir.Join("none")));
}

TEST(LockFile, ManyProcessesOnlyOneWins) {
  TempDir dir;
  std::string path = dir.Join("QUORVEX.LOK");
  // Each child tries to take the lock and hold it briefly; at no time may
  // two hold it at once, which the marker file checks.
  std::string marker = dir.Join("holder");
  const int kChildren = 6;
  pid_t pids[kChildren];
  for (int i = 0; i < kChildren; ++i) {
    pids[i] = fork();
    if (pids[i] == 0) {
      int wins = 0;
      for (int round = 0; round < 50; ++round) {
        LockFile* lock = LockFile::Acquire(path);
        if (lock == nullptr) continue;
        ++wins;
        if (mkdir(marker.c_str(), 0700) != 0) _exit(3);  // someone else holds it too
        usleep(200);
        rmdir(marker.c_str());
        lock->Release();
      }
      _exit(wins > 0 ? 0 : 1);
    }
  }
  int exited_ok = 0;
  for (int i = 0; i < kChildren; ++i) {
    int status = 0;
    ASSERT_EQ(waitpid(pids[i], &status, 0), pids[i]);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_NE(WEXITSTATUS(status), 3);
    if (WEXITSTATUS(status) == 0) ++exited_ok;
  }
  EXPECT_GE(exited_ok, 1);
  EXPECT_FALSE(qvtest::PathExists(path));
}

}  // namespace
