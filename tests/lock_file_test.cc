// The profile lock file: exclusion between processes, stale files, release.
// The other processes are this program in a child mode.

#include "platform/lock_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "support/child_mode.h"
#include "support/temp_dir.h"

namespace {

using qv::LockFile;
using qvtest::TempDir;

// Child PATH: takes the lock and lets it go; 0 when it got it.
int TryLock(const std::vector<std::string>& args) {
  LockFile* lock = LockFile::Acquire(args.at(0));
  if (lock == nullptr) return 1;
  lock->Release();
  return 0;
}
const qvtest::ChildMode kTryLock("try-lock", TryLock);

// Child PATH ANSWER: takes the lock, writes "y" (or "n" when it did not
// get it) to ANSWER and holds the lock until it is killed, which it does
// itself when ANSWER.kill appears.
int HoldLock(const std::vector<std::string>& args) {
  LockFile* lock = LockFile::Acquire(args.at(0));
  qvtest::WriteFileBytes(args.at(1) + ".part", lock != nullptr ? "y" : "n");
  std::rename((args.at(1) + ".part").c_str(), args.at(1).c_str());
  for (;;) {
    if (qvtest::PathExists(args.at(1) + ".kill")) qvtest::EndAsIfKilled();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}
const qvtest::ChildMode kHoldLock("hold-lock", HoldLock);

// Child PATH MARKER: takes the lock in 50 rounds and holds it briefly each
// time it gets it, with MARKER made as a folder meanwhile; 3 when the
// marker was there already (another holder at the same time), else 0 when
// it got the lock at least once.
int RaceForLock(const std::vector<std::string>& args) {
  int wins = 0;
  for (int round = 0; round < 50; ++round) {
    LockFile* lock = LockFile::Acquire(args.at(0));
    if (lock == nullptr) continue;
    ++wins;
    std::error_code ec;
    if (!std::filesystem::create_directory(args.at(1), ec)) return 3;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
    std::filesystem::remove(args.at(1), ec);
    lock->Release();
  }
  return wins > 0 ? 0 : 1;
}
const qvtest::ChildMode kRaceForLock("race-for-lock", RaceForLock);

// Runs Acquire in a child process; true when the child got the lock.
bool ChildCanAcquire(const std::string& path) {
  int status = qvtest::RunChild("try-lock", {path});
  EXPECT_TRUE(status == 0 || status == 1) << status;
  return status == 0;
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
  std::string answer = dir.Join("answer");
  qvtest::Child child("hold-lock", {path, answer});
  for (int i = 0; i < 12000 && !qvtest::PathExists(answer); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  ASSERT_TRUE(qvtest::PathExists(answer)) << "the child did not answer";
  EXPECT_EQ(qvtest::ReadFileBytes(answer), "y");
  EXPECT_EQ(LockFile::Acquire(path), nullptr);  // the child holds it
  qvtest::WriteFileBytes(answer + ".kill", "");
  EXPECT_EQ(child.Wait(), 137);  // killed
#ifdef _WIN32
  // The system closes a killed process's handles, and the lock file goes
  // with the one that deletes it on close.
  EXPECT_FALSE(qvtest::PathExists(path));
#else
  EXPECT_TRUE(qvtest::PathExists(path));  // left behind by the crash
#endif
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
  qvtest::MakeReadOnly(path);
  ASSERT_TRUE(qvtest::IsReadOnly(path));
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
  // two hold it at once, which the marker folder checks.
  std::string marker = dir.Join("holder");
  const int kChildren = 6;
  std::vector<std::unique_ptr<qvtest::Child>> children;
  for (int i = 0; i < kChildren; ++i) {
    children.push_back(
        std::make_unique<qvtest::Child>("race-for-lock", std::vector<std::string>{path, marker}));
  }
  int exited_ok = 0;
  for (auto& child : children) {
    int status = child->Wait();
    EXPECT_TRUE(status == 0 || status == 1) << status;  // 3: two held it at once
    if (status == 0) ++exited_ok;
  }
  EXPECT_GE(exited_ok, 1);
  EXPECT_FALSE(qvtest::PathExists(path));
}

}  // namespace
