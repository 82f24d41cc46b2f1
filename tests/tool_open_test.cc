// The quorvex tool when a profile does not open: the engine's own messages
// stay, and the tool's first line says why (missing folder, plain file,
// folder without the locations file, a lock held elsewhere, a folder it
// cannot write, no profile at all), plus the absolute path it remembers.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <string>

#include "platform/fs.h"
#include "platform/registry.h"
#include "profile/last_profile.h"
#include "quorvex/quorvex.h"
#include "support/profiles.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::RunTool;

// The first line the tool itself printed after the engine's messages.
std::string FirstToolLine(const std::string& err, const std::string& start) {
  size_t at = err.find(start);
  if (at == std::string::npos) return "";
  return err.substr(at, err.find('\n', at) - at);
}

class ToolOpenTest : public ::testing::Test {
 protected:
  ToolOpenTest() { profile_ = host_.scratch().Join("MP"); }
  qvtest::ScriptedHost host_;  // a private registry for the tool
  std::string profile_;
};

TEST_F(ToolOpenTest, MissingFolder) {
  std::string path = host_.scratch().Join("nowhere");
  auto info = RunTool({"-p", path, "info"});
  EXPECT_EQ(info.status, 1);
  EXPECT_EQ(FirstToolLine(info.err, "quorvex: cannot open"),
            "quorvex: cannot open " + path + ": no such folder")
      << info.err;
  // The engine's own text is kept.
  EXPECT_NE(info.err.find("Please Select a Profile..."), std::string::npos);
}

TEST_F(ToolOpenTest, PlainFile) {
  std::string path = host_.scratch().Write("file.txt", "not a profile\n");
  auto info = RunTool({"-p", path, "info"});
  EXPECT_EQ(info.status, 1);
  EXPECT_EQ(FirstToolLine(info.err, "quorvex: cannot open"),
            "quorvex: cannot open " + path + ": not a folder")
      << info.err;
}

TEST_F(ToolOpenTest, EmptyFolderIsNoMasterProfile) {
  qvtest::MakeDirs(profile_);
  auto info = RunTool({"-p", profile_, "info"});
  EXPECT_EQ(info.status, 1);
  EXPECT_EQ(
      FirstToolLine(info.err, "quorvex: cannot open"),
      "quorvex: cannot open " + profile_ + ": not a Master Profile (locs/vardo.lo is missing)")
      << info.err;
  EXPECT_NE(info.err.find("quorvex init " + profile_), std::string::npos) << info.err;
  EXPECT_NE(info.err.find("Problem retrieving locations."), std::string::npos);
}

TEST_F(ToolOpenTest, BrokenLocationsFile) {
  ASSERT_EQ(RunTool({"init", profile_}).status, 0);
  qvtest::WriteFileBytes(profile_ + "/locs/vardo.lo", "\n[Locations]\nbroken\n");
  auto info = RunTool({"-p", profile_, "info"});
  EXPECT_EQ(info.status, 1);
  EXPECT_EQ(FirstToolLine(info.err, "quorvex: cannot open"),
            "quorvex: cannot open " + profile_ +
                ": locs/vardo.lo does not read (see the messages "
                "above)")
      << info.err;
}

TEST_F(ToolOpenTest, LockedByAnotherProcessNamesIt) {
  ASSERT_EQ(RunTool({"init", profile_}).status, 0);
  ASSERT_EQ(qvtest::OpenProfileAt(profile_, OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK), 1);
  auto put = RunTool({"-p", profile_, "put", "AD"}, R"({"id":0,"name":"x"})");
  CloseMasterProfile();
  EXPECT_EQ(put.status, 1);
  std::string line = FirstToolLine(put.err, "quorvex: cannot open");
  // This test holds the lock: the tool finds it among its open files.
  EXPECT_EQ(line.substr(0, line.find(" (pid")),
            "quorvex: cannot open " + profile_ + ": locked by another process")
      << put.err;
#ifdef _WIN32
  // Windows does not tell who holds a file open without sharing: the line
  // names no process.
  EXPECT_EQ(line, "quorvex: cannot open " + profile_ + ": locked by another process") << put.err;
#else
  EXPECT_NE(line.find("(pid " + std::to_string(getpid())), std::string::npos) << put.err;
#endif
  EXPECT_NE(put.err.find("Cannot open Lockfile"), std::string::npos);
}

TEST_F(ToolOpenTest, FolderThatCannotBeWritten) {
#ifdef _WIN32
  GTEST_SKIP() << "only an access list keeps a folder's owner from making files in it on "
                  "Windows (the read-only attribute of a folder does not), and Wine keeps none";
#else
  if (geteuid() == 0) GTEST_SKIP() << "root writes in any folder";
  ASSERT_EQ(RunTool({"init", profile_}).status, 0);
  ASSERT_EQ(chmod(profile_.c_str(), 0555), 0);
  auto put = RunTool({"-p", profile_, "put", "AD"}, R"({"id":0,"name":"x"})");
  chmod(profile_.c_str(), 0755);
  EXPECT_EQ(put.status, 1);
  EXPECT_EQ(FirstToolLine(put.err, "quorvex: cannot open"),
            "quorvex: cannot open " + profile_ +
                ": cannot write in the folder (the lock file QUORVEX.LOK cannot be created)")
      << put.err;
#endif
}

TEST_F(ToolOpenTest, NoProfileGivenAndNoneOpenedBefore) {
  auto info = RunTool({"info"});
  EXPECT_EQ(info.status, 1);
  EXPECT_EQ(FirstToolLine(info.err, "quorvex: no profile"),
            "quorvex: no profile given, and none was opened before")
      << info.err;
  EXPECT_NE(info.err.find("give one with -p PATH"), std::string::npos) << info.err;
  EXPECT_EQ(info.err.find("cannot open the profile \n"), std::string::npos) << info.err;
}

TEST_F(ToolOpenTest, OrvikFileThatIsNoDatabase) {
  std::string missing = host_.scratch().Join("none.db");
  auto none = RunTool({"--orvik", "-p", missing, "info"});
  EXPECT_EQ(none.status, 1);
  EXPECT_EQ(FirstToolLine(none.err, "quorvex: cannot open"),
            "quorvex: cannot open " + missing + ": no such file")
      << none.err;
  std::string text = host_.scratch().Write("text.db", "plain text\n");
  auto plain = RunTool({"--orvik", "-p", text, "info"});
  EXPECT_EQ(FirstToolLine(plain.err, "quorvex: cannot open"),
            "quorvex: cannot open " + text + ": not an Orvik profile (not an SQLite database)")
      << plain.err;
  auto folder = RunTool({"--orvik", "-p", host_.scratch().path(), "info"});
  EXPECT_EQ(
      FirstToolLine(folder.err, "quorvex: cannot open"),
      "quorvex: cannot open " + host_.scratch().path() + ": a folder, not an Orvik database file")
      << folder.err;
}

TEST_F(ToolOpenTest, RelativePathIsRememberedAbsolute) {
  ASSERT_EQ(RunTool({"init", profile_}).status, 0);
  auto first = qvtest::RunToolIn(host_.scratch().path(), {"-p", "MP", "info"});
  ASSERT_EQ(first.status, 0) << first.err;
  // From another folder, without -p, the same profile opens.
  qvtest::TempDir elsewhere;
  auto again = qvtest::RunToolIn(elsewhere.path(), {"--json", "info"});
  ASSERT_EQ(again.status, 0) << again.err;
  EXPECT_EQ(nlohmann::json::parse(again.out)["path"], profile_);
  // The tool keeps it under the key named after its own program.
  std::string key =
      std::string(qv::kStewardryKey) + "\\" + qv::LastPathComponent(qvtest::ToolPath());
  EXPECT_EQ(qv::RegistryGetString(key, "Path").value_or("<missing>"), profile_);
}

}  // namespace
