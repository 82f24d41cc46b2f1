#include "support/ss_guard.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/environment.h"
#include "platform/fs.h"
#include "support/temp_dir.h"

namespace qvtest {

namespace {

constexpr char kFolderPrefix[] = "qvtest-ss-guard.";

std::string g_folder;  // empty until installed

std::string StartsPath() {
  return g_folder + "/started";
}

#ifdef _WIN32
// On Windows the `ss` looked for is ss.exe, and a script is no program: the
// guard is a copy of the test program, which knows itself by its name and
// its folder (RunSsGuardIfThisIsIt).
constexpr char kGuardName[] = "ss.exe";
#endif

#ifndef _WIN32
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
#endif

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
  g_folder = qv::MakeUniqueDirectory(TestTempBase(), kFolderPrefix);
  if (g_folder.empty()) {
    perror("cannot make the folder of the ss guard");
    std::abort();
  }
#ifdef _WIN32
  std::error_code copied;
  std::filesystem::copy_file(qv::HostProgramPath(), GuardedSsPath(), copied);
  if (copied) {
    fprintf(stderr, "cannot copy the test program as the ss guard: %s\n", copied.message().c_str());
    std::abort();
  }
#else
  WriteFileBytes(GuardedSsPath(), Script());
  chmod(GuardedSsPath().c_str(), 0755);
#endif
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
#ifdef _WIN32
  return g_folder + "\\" + kGuardName;
#else
  return g_folder + "/ss";
#endif
}

void RunSsGuardIfThisIsIt(int argc, char** argv) {
#ifdef _WIN32
  std::string program = qv::HostProgramPath();
  std::string folder = std::filesystem::path(program).parent_path().string();
  if (_stricmp(qv::LastPathComponent(program).c_str(), kGuardName) != 0 ||
      qv::LastPathComponent(folder).rfind(kFolderPrefix, 0) != 0) {
    return;
  }
  // What the script does: note the start and fail.
  const char* line = getenv("QUORVEX_COMMAND_LINE");
  std::string start = line != nullptr && *line != '\0' ? line : "ss";
  if (line == nullptr || *line == '\0') {
    for (int i = 1; i < argc; ++i) start += std::string(" ") + argv[i];
  }
  std::ofstream(folder + "/started", std::ios::app | std::ios::binary) << start << "\n";
  std::exit(1);
#else
  (void)argc;
  (void)argv;
#endif
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
