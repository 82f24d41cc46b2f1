// Running the version-control client: command-line splitting, program
// lookup, exit codes, working folder, environment and captured output.

#include "platform/process.h"

#include <gtest/gtest.h>
#include <limits.h>
#include <stdlib.h>
#ifdef _WIN32
#include "platform/terminal.h"
#include "platform/win32.h"
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/command_line.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "support/child_mode.h"
#include "support/scoped_env.h"
#include "support/ss_guard.h"
#include "support/temp_dir.h"

namespace {

using qv::File;
using qv::OpenMode;
using qv::RunProcess;
using qv::SplitCommandLine;
using qvtest::TempDir;
using Words = std::vector<std::string>;

using qvtest::ScopedEnv;

#ifdef _WIN32
// Windows runs no shell scripts: the clients are this program, started in
// a child mode that does what the script does. Its streams pass bytes
// unchanged, as a script's do.
int ExitWith(const std::vector<std::string>& args) {
  return args.empty() ? 2 : atoi(args[0].c_str());
}
int KillSelf(const std::vector<std::string>&) {
  qvtest::EndAsIfKilled();
}
int Print(const std::vector<std::string>& args) {
  qv::UseBinaryStandardStreams();
  for (const std::string& a : args) fputs(a.c_str(), stdout);
  return 0;
}
int PrintFolder(const std::vector<std::string>&) {
  qv::UseBinaryStandardStreams();
  printf("%s\n", std::filesystem::current_path().string().c_str());
  return 0;
}
int PrintVariable(const std::vector<std::string>& args) {
  qv::UseBinaryStandardStreams();
  const char* value = args.empty() ? nullptr : getenv(args[0].c_str());
  fputs(value != nullptr ? value : "", stdout);
  return 0;
}
// How many times the environment block names the variable.
int CountVariable(const std::vector<std::string>& args) {
  qv::UseBinaryStandardStreams();
  if (args.empty()) return 2;
  std::string prefix = args[0] + "=";
  int count = 0;
  char* env = GetEnvironmentStringsA();
  for (const char* e = env; e != nullptr && *e != '\0'; e += strlen(e) + 1) {
    if (_strnicmp(e, prefix.c_str(), prefix.size()) == 0) ++count;
  }
  if (env != nullptr) FreeEnvironmentStringsA(env);
  printf("%d\n", count);
  return 0;
}
// CODE ARG...: each argument in brackets on a line, then exit with CODE.
int PrintArgumentsAndExit(const std::vector<std::string>& args) {
  qv::UseBinaryStandardStreams();
  for (size_t i = 1; i < args.size(); ++i) printf("[%s]\n", args[i].c_str());
  return args.empty() ? 2 : atoi(args[0].c_str());
}

const qvtest::ChildMode kExitWith("exit-with", ExitWith);
const qvtest::ChildMode kKillSelf("kill-self", KillSelf);
const qvtest::ChildMode kPrint("print", Print);
const qvtest::ChildMode kPrintFolder("print-folder", PrintFolder);
const qvtest::ChildMode kPrintVariable("print-variable", PrintVariable);
const qvtest::ChildMode kCountVariable("count-variable", CountVariable);
const qvtest::ChildMode kPrintArgumentsAndExit("print-arguments-and-exit", PrintArgumentsAndExit);

// The command line that starts this program in a child mode: "MODE ARGS".
std::string Self(const std::string& mode_and_args) {
  return "\"" + qv::HostProgramPath() + "\" --qvtest-child " + mode_and_args;
}

// A copy of this program at relative (".exe" added) that, started while
// Started is in scope, runs the child mode given there with its own
// arguments after the mode's words.
std::string WriteClient(const TempDir& dir, const std::string& relative) {
  std::string path = dir.Join(relative + ".exe");
  qvtest::MakeDirs(std::filesystem::path(path).parent_path().string());
  EXPECT_TRUE(CopyFileA(qv::HostProgramPath().c_str(), path.c_str(), TRUE)) << GetLastError();
  return path;
}

class Started : public ScopedEnv {
 public:
  explicit Started(const char* mode_and_words)
      : ScopedEnv(qvtest::kChildModeVariable, mode_and_words) {}
};
#endif

#ifndef _WIN32
std::string WriteScript(const TempDir& dir, const std::string& name, const std::string& body) {
  std::string path = dir.Write(name, "#!/bin/sh\n" + body);
  EXPECT_EQ(chmod(path.c_str(), 0755), 0);
  return path;
}

#endif

std::string ReadAll(File* file) {
  std::string out;
  char block[256];
  long n;
  while ((n = file->Read(block, sizeof(block))) > 0) out.append(block, static_cast<size_t>(n));
  return out;
}

// Runs command_line with its output captured; returns the exit code.
int Capture(const std::string& command_line, const std::string& directory, std::string* output) {
  TempDir dir;
  File* file = File::Open(dir.Join("out.txt"), OpenMode::kCreateNew);
  EXPECT_NE(file, nullptr);
  int code = RunProcess(command_line, directory, file);
  file->Seek(0, SEEK_SET);
  *output = ReadAll(file);
  delete file;
  return code;
}

#ifndef _WIN32
std::string RealPath(const std::string& path) {
  char buffer[PATH_MAX];
  return realpath(path.c_str(), buffer) != nullptr ? buffer : path;
}
#endif

TEST(SplitCommandLine, BlanksSeparateWords) {
  EXPECT_EQ(SplitCommandLine("ss checkout adlist.ad"), (Words{"ss", "checkout", "adlist.ad"}));
  EXPECT_EQ(SplitCommandLine("  ss \t Dir   $/  "), (Words{"ss", "Dir", "$/"}));
  EXPECT_EQ(SplitCommandLine(""), Words{});
  EXPECT_EQ(SplitCommandLine("   "), Words{});
}

TEST(SplitCommandLine, QuotesGroupAndAreRemoved) {
  EXPECT_EQ(SplitCommandLine("ss checkin a.mo -c\"some comment\""),
            (Words{"ss", "checkin", "a.mo", "-csome comment"}));
  EXPECT_EQ(SplitCommandLine("ss add x -c\"\""), (Words{"ss", "add", "x", "-c"}));
  EXPECT_EQ(SplitCommandLine("prog \"a b\"c \"\" d"), (Words{"prog", "a bc", "", "d"}));
  EXPECT_EQ(SplitCommandLine("prog \"unterminated arg"), (Words{"prog", "unterminated arg"}));
}

TEST(SplitCommandLine, BackslashesAreLiteralUnlessBeforeQuote) {
  EXPECT_EQ(SplitCommandLine("ss cp \\$/Proj\\Sub"), (Words{"ss", "cp", "\\$/Proj\\Sub"}));
  EXPECT_EQ(SplitCommandLine("p a\\\\b"), (Words{"p", "a\\\\b"}));
  EXPECT_EQ(SplitCommandLine("p a\\\"b"), (Words{"p", "a\"b"}));
  EXPECT_EQ(SplitCommandLine("p \"a\\\\\" b"), (Words{"p", "a\\", "b"}));
  EXPECT_EQ(SplitCommandLine("p \"a\"\"b\""), (Words{"p", "a\"b"}));
  EXPECT_EQ(SplitCommandLine("p trailing\\"), (Words{"p", "trailing\\"}));
}

TEST(SplitCommandLine, ProgramTakesQuotesOnly) {
  EXPECT_EQ(SplitCommandLine("\"C:\\Program Files\\ss.exe\" x"),
            (Words{"C:\\Program Files\\ss.exe", "x"}));
  EXPECT_EQ(SplitCommandLine("C:\\tools\\ss\\ -y"), (Words{"C:\\tools\\ss\\", "-y"}));
}

TEST(RunProcess, ReturnsExitCode) {
#ifdef _WIN32
  EXPECT_EQ(RunProcess(Self("exit-with 0"), "", nullptr), 0);
  EXPECT_EQ(RunProcess(Self("exit-with 3"), "", nullptr), 3);
  EXPECT_EQ(RunProcess(Self("exit-with 100"), "", nullptr), 100);
#else
  EXPECT_EQ(RunProcess("sh -c \"exit 0\"", "", nullptr), 0);
  EXPECT_EQ(RunProcess("sh -c \"exit 3\"", "", nullptr), 3);
  EXPECT_EQ(RunProcess("sh -c \"exit 100\"", "", nullptr), 100);
#endif
}

TEST(RunProcess, KilledBySignalGives128PlusSignal) {
#ifdef _WIN32
  // Windows has no signals: a process ended from outside gets the exit code
  // its killer names, 137 (128 + SIGKILL) for the tests' kills.
  EXPECT_EQ(RunProcess(Self("kill-self"), "", nullptr), 128 + 9);
#else
  EXPECT_EQ(RunProcess("sh -c \"kill -9 $$\"", "", nullptr), 128 + 9);
#endif
}

TEST(RunProcess, MissingProgramGivesEnoent) {
  TempDir dir;
  {
    ScopedEnv path("PATH", dir.path().c_str());
    EXPECT_EQ(RunProcess("no-such-program-qv arg", "", nullptr), ENOENT);
  }
  EXPECT_EQ(RunProcess(dir.Join("missing") + " arg", "", nullptr), ENOENT);
  EXPECT_EQ(RunProcess("", "", nullptr), ENOENT);
}

TEST(RunProcess, NonExecutableGivesEacces) {
  TempDir dir;
#ifdef _WIN32
  // A folder cannot be run; a file that is no program fails as one of a
  // foreign format.
  std::string path = dir.Write("plain", "#!/bin/sh\nexit 0\n");
  EXPECT_EQ(RunProcess(path, "", nullptr), ENOEXEC);
  EXPECT_EQ(RunProcess(dir.path(), "", nullptr), EACCES);
#else
  std::string path = dir.Write("plain", "#!/bin/sh\nexit 0\n");
  ASSERT_EQ(chmod(path.c_str(), 0644), 0);
  EXPECT_EQ(RunProcess(path, "", nullptr), EACCES);
  EXPECT_EQ(RunProcess(dir.path(), "", nullptr), EACCES);
#endif
}

TEST(RunProcess, SearchesPath) {
  TempDir dir;
#ifdef _WIN32
  WriteClient(dir, "bin/mytool");
  std::string search = dir.Join("empty") + ";" + dir.Join("bin");
  ScopedEnv path("PATH", search.c_str());
  Started client("exit-with 42");
#else
  WriteScript(dir, "bin/mytool", "exit 42\n");
  std::string search = dir.Join("empty") + ":" + dir.Join("bin");
  ScopedEnv path("PATH", search.c_str());
#endif
  EXPECT_EQ(RunProcess("mytool a b", "", nullptr), 42);
}

TEST(RunProcess, OutputGoesToFileAndPositionFollows) {
  TempDir dir;
  File* file = File::Open(dir.Join("out.txt"), OpenMode::kCreateNew);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->Write("abc", 3), 3u);
#ifdef _WIN32
  EXPECT_EQ(RunProcess(Self("print hello"), "", file), 0);
#else
  EXPECT_EQ(RunProcess("sh -c \"printf hello\"", "", file), 0);
#endif
  EXPECT_EQ(file->Tell(), 8);
  ASSERT_TRUE(file->Seek(0, SEEK_SET));
  EXPECT_EQ(ReadAll(file), "abchello");
  delete file;
  EXPECT_EQ(dir.Read("out.txt"), "abchello");
}

TEST(RunProcess, CachedBytesAreDroppedAfterChild) {
  TempDir dir;
  File* file = File::Open(dir.Join("out.txt"), OpenMode::kCreateNew);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->Write("xxxxxx", 6), 6u);
  ASSERT_TRUE(file->Seek(0, SEEK_SET));
  EXPECT_EQ(ReadAll(file), "xxxxxx");  // cached
  ASSERT_TRUE(file->Seek(0, SEEK_SET));
#ifdef _WIN32
  EXPECT_EQ(RunProcess(Self("print hello"), "", file), 0);
#else
  EXPECT_EQ(RunProcess("sh -c \"printf hello\"", "", file), 0);
#endif
  EXPECT_EQ(file->Tell(), 5);
  ASSERT_TRUE(file->Seek(0, SEEK_SET));
  EXPECT_EQ(ReadAll(file), "hellox");
  delete file;
}

TEST(RunProcess, RunsInWorkingDirectory) {
  TempDir dir;
  qvtest::MakeDirs(dir.Join("Work/Sub"));
  std::string output;
#ifdef _WIN32
  EXPECT_EQ(Capture(Self("print-folder"), dir.path() + "\\WORK\\sub", &output), 0);
  EXPECT_EQ(output, dir.Join("Work/Sub") + "\n");
  // Empty: the caller's own folder.
  EXPECT_EQ(Capture(Self("print-folder"), "", &output), 0);
  EXPECT_EQ(output, std::filesystem::current_path().string() + "\n");
#else
  EXPECT_EQ(Capture("sh -c pwd", dir.path() + "\\WORK\\sub", &output), 0);
  EXPECT_EQ(output, RealPath(dir.Join("Work/Sub")) + "\n");
  // Empty: the caller's own folder.
  char cwd[PATH_MAX];
  ASSERT_NE(getcwd(cwd, sizeof(cwd)), nullptr);
  EXPECT_EQ(Capture("sh -c pwd", "", &output), 0);
  EXPECT_EQ(output, RealPath(cwd) + "\n");
#endif
}

TEST(RunProcess, MissingWorkingDirectoryFails) {
  TempDir dir;
#ifdef _WIN32
  EXPECT_EQ(RunProcess(Self("exit-with 0"), dir.Join("none"), nullptr), ENOENT);
#else
  EXPECT_EQ(RunProcess("sh -c \"exit 0\"", dir.Join("none"), nullptr), ENOENT);
#endif
}

TEST(RunProcess, RelativeProgramCountsFromCallersFolder) {
  TempDir dir;
#ifdef _WIN32
  WriteClient(dir, "tools/run");
  qvtest::MakeDirs(dir.Join("elsewhere"));
  std::filesystem::path old = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  int code = 0;
  {
    Started client("exit-with 7");
    code = RunProcess("TOOLS\\run.exe", dir.Join("elsewhere"), nullptr);
  }
  std::filesystem::current_path(old);
  EXPECT_EQ(code, 7);
#else
  WriteScript(dir, "tools/run.sh", "exit 7\n");
  qvtest::MakeDirs(dir.Join("elsewhere"));
  char old[PATH_MAX];
  ASSERT_NE(getcwd(old, sizeof(old)), nullptr);
  ASSERT_EQ(chdir(dir.path().c_str()), 0);
  int code = RunProcess("TOOLS\\run.sh", dir.Join("elsewhere"), nullptr);
  ASSERT_EQ(chdir(old), 0);
  EXPECT_EQ(code, 7);
#endif
}

TEST(RunProcess, ChildSeesWholeCommandLine) {
#ifdef _WIN32
  std::string command = Self("print-variable QUORVEX_COMMAND_LINE") + " extra";
#else
  std::string command = "sh -c \"printf %s \\\"$QUORVEX_COMMAND_LINE\\\"\" extra";
#endif
  std::string output;
  EXPECT_EQ(Capture(command, "", &output), 0);
  EXPECT_EQ(output, command);
}

TEST(RunProcess, OldCommandLineVariableIsReplaced) {
  ScopedEnv old("QUORVEX_COMMAND_LINE", "stale");
#ifdef _WIN32
  std::string command = Self("count-variable QUORVEX_COMMAND_LINE");
#else
  std::string command = "sh -c \"env | grep -c ^QUORVEX_COMMAND_LINE=\"";
#endif
  std::string output;
  EXPECT_EQ(Capture(command, "", &output), 0);
  EXPECT_EQ(output, "1\n");
}

TEST(RunProcess, SsIsReplacedByConfiguredClient) {
  TempDir dir;
#ifdef _WIN32
  std::string client = WriteClient(dir, "fake ss");
  ScopedEnv env("QUORVEX_SS_CLIENT", client.c_str());
  std::string output;
  {
    Started started("print-arguments-and-exit 5");
    EXPECT_EQ(Capture("ss checkin adlist.ad -c\"some comment\"", "", &output), 5);
  }
  EXPECT_EQ(output, "[checkin]\n[adlist.ad]\n[-csome comment]\n");
  // Only the program word "ss" is replaced.
  EXPECT_EQ(Capture(Self("print ss"), "", &output), 0);
  EXPECT_EQ(output, "ss");
#else
  std::string client =
      WriteScript(dir, "fake ss", "for a in \"$@\"; do printf '[%s]\\n' \"$a\"; done\nexit 5\n");
  ScopedEnv env("QUORVEX_SS_CLIENT", client.c_str());
  std::string output;
  EXPECT_EQ(Capture("ss checkin adlist.ad -c\"some comment\"", "", &output), 5);
  EXPECT_EQ(output, "[checkin]\n[adlist.ad]\n[-csome comment]\n");
  // Only the program word "ss" is replaced.
  EXPECT_EQ(Capture("sh -c \"printf ss\"", "", &output), 0);
  EXPECT_EQ(output, "ss");
#endif
}

TEST(RunProcess, ConfiguredClientIsSearchedOnPath) {
  TempDir dir;
#ifdef _WIN32
  WriteClient(dir, "bin/fakess");
  const char* old_path = getenv("PATH");
  std::string search = dir.Join("bin") + ";" + (old_path != nullptr ? old_path : "");
  ScopedEnv path("PATH", search.c_str());
  ScopedEnv env("QUORVEX_SS_CLIENT", "fakess");
  std::string output;
  {
    Started started("print-arguments-and-exit 0");
    EXPECT_EQ(Capture("ss Dir $/", "", &output), 0);
  }
  EXPECT_EQ(output, "[Dir]\n[$/]\n");
#else
  WriteScript(dir, "bin/fakess", "printf '%s' \"$1\"\n");
  std::string search = dir.Join("bin") + ":/usr/bin:/bin";
  ScopedEnv path("PATH", search.c_str());
  ScopedEnv env("QUORVEX_SS_CLIENT", "fakess");
  std::string output;
  EXPECT_EQ(Capture("ss Dir $/", "", &output), 0);
  EXPECT_EQ(output, "Dir");
#endif
}

// The suite's guard puts its own `ss` first on PATH. That `ss` does not
// carry the iproute2 marker, so the engine takes it for a client: a test
// that runs "ss" without one really starts it, and is failed for it.
TEST(SsGuard, GuardsSsComesFirstOnPathAndPassesTheClientCheck) {
#ifdef _WIN32
  // There the guard's ss.exe is a copy of this program.
  ScopedEnv env("QUORVEX_SS_CLIENT", nullptr);
  EXPECT_EQ(qv::VersionControlClient(), qvtest::GuardedSsPath());
#else
  ScopedEnv env("QUORVEX_SS_CLIENT", nullptr);
  char real[PATH_MAX];
  ASSERT_NE(realpath(qvtest::GuardedSsPath().c_str(), real), nullptr);
  EXPECT_EQ(qv::VersionControlClient(), real);
#endif
}

TEST(SsGuard, StartOfSsFromPathIsNoted) {
  ScopedEnv env("QUORVEX_SS_CLIENT", nullptr);
  EXPECT_EQ(RunProcess("ss checkout abc.mo", "", nullptr), 1);
  // Taken here, so that this test, which means it, is not failed.
  EXPECT_EQ(qvtest::TakeGuardedSsStarts(), Words{"ss checkout abc.mo"});
  EXPECT_TRUE(qvtest::TakeGuardedSsStarts().empty());
}

TEST(SsGuard, ConfiguredClientIsNotTheGuard) {
  TempDir dir;
#ifdef _WIN32
  std::string client = WriteClient(dir, "client");
  Started started("exit-with 4");
#else
  std::string client = WriteScript(dir, "client", "exit 4\n");
#endif
  ScopedEnv env("QUORVEX_SS_CLIENT", client.c_str());
  EXPECT_EQ(RunProcess("ss x", "", nullptr), 4);
  EXPECT_TRUE(qvtest::TakeGuardedSsStarts().empty());
}

TEST(VersionControlClient, NetworkToolOnPathIsRejectedWithoutBeingRun) {
  TempDir dir;
#ifdef _WIN32
  // There is no network tool of that name on Windows, and every ss.exe
  // found is the client (SsOnPathIsTheClient). What is never run is a file
  // named ss that is no program, as the Linux tool is not one there: only
  // ss.exe is looked for.
  dir.Write("bin/ss", "#!/bin/sh\necho run >'" + dir.Join("ran") + "'\n# iproute2\n");
  ScopedEnv path("PATH", dir.Join("bin").c_str());
  ScopedEnv env("QUORVEX_SS_CLIENT", nullptr);
  EXPECT_EQ(qv::VersionControlClient(), "");
  EXPECT_EQ(RunProcess("ss -tln", "", nullptr), ENOENT);
  EXPECT_FALSE(qvtest::PathExists(dir.Join("ran")));
#else
  // The marker straddles two of the blocks the file is read in.
  std::string head = "#!/bin/sh\necho run >'" + dir.Join("ran") + "'\n# ";
  std::string padding(64 * 1024 - head.size() - 4, 'x');
  WriteScript(dir, "bin/ss", head.substr(10) + padding + "iproute2\n");
  ScopedEnv path("PATH", dir.Join("bin").c_str());
  ScopedEnv env("QUORVEX_SS_CLIENT", nullptr);
  EXPECT_EQ(qv::VersionControlClient(), "");
  EXPECT_EQ(RunProcess("ss -tln", "", nullptr), ENOENT);
  EXPECT_FALSE(qvtest::PathExists(dir.Join("ran")));
#endif
}

#ifdef _WIN32
// On Windows every ss.exe found on PATH is the client.
TEST(VersionControlClient, SsOnPathIsTheClient) {
  TempDir dir;
  std::string client = WriteClient(dir, "bin/ss");
  ScopedEnv path("PATH", dir.Join("bin").c_str());
  ScopedEnv env("QUORVEX_SS_CLIENT", nullptr);
  EXPECT_EQ(qv::VersionControlClient(), client);
  Started started("exit-with 6");
  EXPECT_EQ(RunProcess("ss x", "", nullptr), 6);
}
#else
TEST(VersionControlClient, SsOnPathIsFollowedThroughLinks) {
  TempDir dir;
  std::string target = WriteScript(dir, "real/client", "exit 6\n");
  qvtest::MakeDirs(dir.Join("bin"));
  ASSERT_EQ(symlink(target.c_str(), dir.Join("bin/ss").c_str()), 0);
  ScopedEnv path("PATH", dir.Join("bin").c_str());
  ScopedEnv env("QUORVEX_SS_CLIENT", nullptr);
  char real[PATH_MAX];
  ASSERT_NE(realpath(target.c_str(), real), nullptr);
  EXPECT_EQ(qv::VersionControlClient(), real);
  EXPECT_EQ(RunProcess("ss x", "", nullptr), 6);
}
#endif

TEST(VersionControlClient, ConfiguredClientIsTakenAsGiven) {
  ScopedEnv env("QUORVEX_SS_CLIENT", "fakess");
  EXPECT_EQ(qv::VersionControlClient(), "fakess");
}

TEST(RunProcess, InheritedOutputWhenNoFile) {
  // Nothing to capture; the call still runs and waits.
#ifdef _WIN32
  EXPECT_EQ(RunProcess(Self("exit-with 9") + " ignored", "", nullptr), 9);
#else
  EXPECT_EQ(RunProcess("sh -c \"exit 9\" ignored", "", nullptr), 9);
#endif
}

}  // namespace
