// A profile held open by another process, for the tests of what one
// process sees while another has the profile. The other process is this
// test program in a child mode (support/child_mode.h). It talks to the test
// through files in a folder of its own: it says whether the open succeeded,
// then waits to be told to close the profile and end, or to end at once
// without closing anything, as a killed process does.
#ifndef QUORVEX_TESTS_SUPPORT_PROFILE_HOLDER_H_
#define QUORVEX_TESTS_SUPPORT_PROFILE_HOLDER_H_

#include <cstdint>
#include <memory>
#include <string>

#include "support/child_mode.h"
#include "support/temp_dir.h"

namespace qvtest {

class ProfileHolder {
 public:
  // Starts the child, which opens profile with flags (OPEN_SILENT added),
  // and waits until it has tried.
  ProfileHolder(const std::string& profile, uint32_t flags);
  // Kills the child if it still runs.
  ~ProfileHolder();
  ProfileHolder(const ProfileHolder&) = delete;
  ProfileHolder& operator=(const ProfileHolder&) = delete;

  // Whether the child's open succeeded; when not, the child has ended and
  // err() is what it wrote to its standard error.
  bool opened() const { return opened_; }
  const std::string& err() const { return err_; }
  // The child closes the profile and ends; returns when it has ended.
  void Release();
  // The child ends at once, closing nothing; returns when it has ended.
  void Kill();

 private:
  void Tell(const char* what);

  TempDir talk_;
  std::unique_ptr<Child> child_;
  bool opened_ = false;
  std::string err_;
};

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_PROFILE_HOLDER_H_
