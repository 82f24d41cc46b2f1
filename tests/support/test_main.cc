// The main of every test suite: GoogleTest's, with the guard that keeps the
// tests from starting an `ss` found on PATH.
#include <gtest/gtest.h>

#include "support/ss_guard.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  qvtest::InstallSsGuard();
  int result = RUN_ALL_TESTS();
  qvtest::RemoveSsGuard();
  return result;
}
