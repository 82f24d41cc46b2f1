#include "support/ss_guard.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "platform/environment.h"
#include "support/temp_dir.h"

namespace qvtest {

namespace {

std::string g_folder;  // empty until installed

std::string StartsPath() {
  return g_folder + "/started";
}

// The script passes the engine's check for a real client on purpose: it
// does not carry iproute2's marker. A test that forgets to provide a client
// then really starts it and fails here, instead of getting a "no client"
// message that it may never look at. The guard's folder comes first on
// PATH, so the iproute2 `ss` further on is never reached either way.
std::string Script() {
  return "#!/bin/sh\n"
         "# Stands in for the ss on PATH while the tests run: notes the start\n"
         "# and fails.\n"
         "printf '%s\\n' \"${QUORVEX_COMMAND_LINE:-ss $*}\" >>'" +
         StartsPath() +
         "'\n"
         "exit 1\n";
}

class SsGuardListener : public ::testing::EmptyTestEventListener {
 public:
  void OnTestStart(const ::testing::TestInfo&) override { TakeGuardedSsStarts(); }
  void OnTestEnd(const ::testing::TestInfo&) override {
    for (const std::string& line : TakeGuardedSsStarts()) {
      ADD_FAILURE() << "The test started the ss found on PATH (\"" << line
                    << "\"): give it a client with qvtest::FakeSs or switch version control off.";
    }
  }
};

}  // namespace

void InstallSsGuard() {
  g_folder = qv::MakeUniqueDirectory(TestTempBase(), "qvtest-ss-guard.");
  if (g_folder.empty()) {
    perror("cannot make the folder of the ss guard");
    std::abort();
  }
  WriteFileBytes(GuardedSsPath(), Script());
  chmod(GuardedSsPath().c_str(), 0755);
  const char* path = getenv("PATH");
  std::string search = g_folder + qv::PathListSeparator() +
                       (path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin");
  qv::SetEnvironmentValue("PATH", search.c_str());
  ::testing::UnitTest::GetInstance()->listeners().Append(new SsGuardListener);
}

void RemoveSsGuard() {
  if (g_folder.empty()) return;
  std::error_code ec;
  std::filesystem::remove_all(g_folder, ec);
  g_folder.clear();
}

std::string GuardedSsPath() {
  return g_folder + "/ss";
}

std::vector<std::string> TakeGuardedSsStarts() {
  std::vector<std::string> lines;
  if (g_folder.empty() || !PathExists(StartsPath())) return lines;
  std::istringstream starts(ReadFileBytes(StartsPath()));
  std::remove(StartsPath().c_str());
  std::string line;
  while (std::getline(starts, line)) lines.push_back(line);
  return lines;
}

}  // namespace qvtest
