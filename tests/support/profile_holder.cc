#include "support/profile_holder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "quorvex/quorvex.h"

namespace qvtest {

namespace {

constexpr auto kPoll = std::chrono::milliseconds(5);

// A file of the folder the two processes talk through.
std::string In(const std::string& folder, const char* name) {
#ifdef _WIN32
  return folder + "\\" + name;
#else
  return folder + "/" + name;
#endif
}

// The child: PROFILE FLAGS FOLDER.
int HoldProfile(const std::vector<std::string>& args) {
  if (args.size() != 3) return 2;
  const std::string& folder = args[2];
  char path[QV_PATH_SIZE];
  snprintf(path, sizeof path, "%s", args[0].c_str());
  uint32_t flags = static_cast<uint32_t>(strtoul(args[1].c_str(), nullptr, 0)) | OPEN_SILENT;
  bool opened = OpenMasterProfile(path, &flags, "") != 0;
  // The answer appears whole: it is written under another name first.
  WriteFileBytes(In(folder, "opened.part"), opened ? "1" : "0");
  std::rename(In(folder, "opened.part").c_str(), In(folder, "opened").c_str());
  if (!opened) return 1;
  for (;;) {
    if (PathExists(In(folder, "kill"))) EndAsIfKilled();
    if (PathExists(In(folder, "release"))) {
      CloseMasterProfile();
      return 0;
    }
    std::this_thread::sleep_for(kPoll);
  }
}

const ChildMode kHoldProfile("hold-profile", HoldProfile);

}  // namespace

ProfileHolder::ProfileHolder(const std::string& profile, uint32_t flags) {
  child_ = std::make_unique<Child>(
      "hold-profile", std::vector<std::string>{profile, std::to_string(flags), talk_.path()});
  const std::string answer = talk_.Join("opened");
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!PathExists(answer) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(kPoll);
  }
  EXPECT_TRUE(PathExists(answer)) << "the holding process did not answer";
  opened_ = PathExists(answer) && ReadFileBytes(answer) == "1";
  if (!opened_) {
    // A child that could not open has ended; what it said tells why.
    child_->Wait();
    err_ = child_->err();
    child_.reset();
  }
}

ProfileHolder::~ProfileHolder() {
  if (child_ != nullptr) Kill();
}

void ProfileHolder::Tell(const char* what) {
  WriteFileBytes(talk_.Join(what), "");
  if (child_ != nullptr) child_->Wait();
  child_.reset();
}

void ProfileHolder::Release() {
  Tell("release");
}

void ProfileHolder::Kill() {
  Tell("kill");
}

}  // namespace qvtest
