// Keeps the tests from starting an `ss` found on PATH.
//
// On Linux that is usually iproute2's network tool, and a test that means to
// run version-control commands must provide its client (FakeSs) or switch
// version control off. Every suite runs under tests/support/test_main.cc,
// which puts a folder holding a recording `ss` first on PATH; a test during
// which that `ss` was started, by the engine or by a tool it ran, fails.
#ifndef QUORVEX_TESTS_SUPPORT_SS_GUARD_H_
#define QUORVEX_TESTS_SUPPORT_SS_GUARD_H_

#include <string>
#include <vector>

namespace qvtest {

// Makes the guard's folder, puts it first on PATH and registers the
// listener that checks each test. Called once, by the test main.
void InstallSsGuard();
// Removes the guard's folder at the end of the run.
void RemoveSsGuard();

// The guard's `ss` program.
std::string GuardedSsPath();

// Called first in main: where the guard's `ss` is a copy of the test
// program (on Windows, where it must be a program), that copy notes its
// start and ends here with exit code 1, never returning.
void RunSsGuardIfThisIsIt(int argc, char** argv);

// The command lines the guard's `ss` was started with since the last call
// (or since the test began), forgotten by this call: a test that starts it
// on purpose takes them, so that it does not fail.
std::vector<std::string> TakeGuardedSsStarts();

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_SS_GUARD_H_
