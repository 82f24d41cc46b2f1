// The main of every test suite: GoogleTest's, with the guard that keeps the
// tests from starting an `ss` found on PATH. A suite's program started again
// in a child mode for a test does only that.
#include <gtest/gtest.h>

#include "support/child_mode.h"
#include "support/ss_guard.h"

int main(int argc, char** argv) {
  qvtest::RunSsGuardIfThisIsIt(argc, argv);
  qvtest::RunChildModeIfAsked(argc, argv);
  ::testing::InitGoogleTest(&argc, argv);
  qvtest::InstallSsGuard();
  int result = RUN_ALL_TESTS();
  qvtest::RemoveSsGuard();
  return result;
}
