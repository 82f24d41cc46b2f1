#include "support/profile_holder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/fs.h"
#include "quorvex/quorvex.h"
#include "support/run_tool.h"
#ifdef _WIN32
#include "platform/win32.h"
#endif

namespace qvtest {

namespace {

constexpr char kChildMode[] = "--qvtest-hold-profile";
constexpr auto kPoll = std::chrono::milliseconds(5);

// A file of the folder the two processes talk through.
std::string In(const std::string& folder, const char* name) {
#ifdef _WIN32
  return folder + "\\" + name;
#else
  return folder + "/" + name;
#endif
}

// Ends the process the way another process's kill would: no destructors,
// no closing of the profile; the system lets go of what it held.
[[noreturn]] void EndAsIfKilled() {
#ifdef _WIN32
  TerminateProcess(GetCurrentProcess(), 137);
#else
  raise(SIGKILL);
#endif
  std::_Exit(137);
}

}  // namespace

void RunProfileHolderIfAsked(int argc, char** argv) {
  if (argc != 5 || strcmp(argv[1], kChildMode) != 0) return;
  const std::string folder = argv[4];
  char path[QV_PATH_SIZE];
  snprintf(path, sizeof path, "%s", argv[2]);
  uint32_t flags = static_cast<uint32_t>(strtoul(argv[3], nullptr, 0)) | OPEN_SILENT;
  bool opened = OpenMasterProfile(path, &flags, "") != 0;
  // The answer appears whole: it is written under another name first.
  WriteFileBytes(In(folder, "opened.part"), opened ? "1" : "0");
  std::rename(In(folder, "opened.part").c_str(), In(folder, "opened").c_str());
  for (;;) {
    if (PathExists(In(folder, "kill"))) EndAsIfKilled();
    if (PathExists(In(folder, "release"))) {
      CloseMasterProfile();
      std::exit(0);
    }
    std::this_thread::sleep_for(kPoll);
  }
}

ProfileHolder::ProfileHolder(const std::string& profile, uint32_t flags) {
  std::vector<std::string> argv = {qv::HostProgramPath(), kChildMode, profile,
                                   std::to_string(flags), talk_.path()};
  // The child is waited for on a thread of its own, which ends with it.
  child_ = std::thread([argv] { RunProgram(argv); });
  const std::string answer = talk_.Join("opened");
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!PathExists(answer) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(kPoll);
  }
  EXPECT_TRUE(PathExists(answer)) << "the holding process did not answer";
  opened_ = PathExists(answer) && ReadFileBytes(answer) == "1";
}

ProfileHolder::~ProfileHolder() {
  if (child_.joinable()) Kill();
}

void ProfileHolder::Tell(const char* what) {
  WriteFileBytes(talk_.Join(what), "");
  if (child_.joinable()) child_.join();
}

void ProfileHolder::Release() {
  Tell("release");
}

void ProfileHolder::Kill() {
  Tell("kill");
}

}  // namespace qvtest
