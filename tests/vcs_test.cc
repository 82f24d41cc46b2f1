// The version-control command runner and the check-out protocol, against
// the fake client of tests/support/fake_ss.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "core/state.h"
#include "platform/fs.h"
#include "profile/global_file_list.h"
#include "quorvex/quorvex.h"
#include "support/fake_ss.h"
#include "support/scoped_env.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::FakeSs;
using qvtest::RealDirectory;
using qvtest::SsCall;

const char kCaption[] = "Error from QUORVEX!";

std::vector<SsCall> OnlyCall(const SsCall& call) {
  return {call};
}
std::vector<SsCall> OnlyCall(const std::string& cwd, const std::string& command_line) {
  return {{cwd, command_line}};
}

std::string CurrentDirectory() {
  return RealDirectory(std::filesystem::current_path().string());
}

class VcsTest : public ::testing::Test {
 protected:
  void SetUp() override {
    qv::EngineState& s = qv::State();
    s.profile_flags = OPEN_MASTER | OPEN_LOCK;
    snprintf(s.vcs_project, sizeof s.vcs_project, "%s", "Proj");
    s.global_file_list = qv::NewGlobalFileList();
    profile_ = host_.scratch().Join("profile");
    qvtest::MakeDirs(profile_ + "/modules");
    modules_ = RealDirectory(profile_ + "/modules");
  }

  void TearDown() override {
    qv::FreeGlobalFileList(qv::State().global_file_list);
    qv::State().global_file_list = nullptr;
  }

  // A module file named the way the catalogue names it ("<profile>\modules\..."),
  // listed in the global list of files.
  std::string AddModuleFile(const std::string& name, bool read_only, bool on_disk = true) {
    std::string path = profile_ + "\\modules\\" + name;
    if (on_disk) {
      host_.scratch().Write("profile/modules/" + name, "[Module]\n\"Base\",\"1\"\n");
      qv::SetReadOnly(path, read_only);
    }
    qv::AddGlobalFileEntry("Base", "1", "MO", path.c_str());
    return path;
  }

  // The QUORVEX.nnn files left in the engine's temporary folder.
  int EngineTempFiles() {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(host_.scratch().Join("tmp"))) {
      if (entry.path().filename().string().rfind("QUORVEX.", 0) == 0) ++count;
    }
    return count;
  }

  void TurnVersionControlOff() { qv::State().profile_flags |= OPEN_NO_VCS; }

  SsCall ProjectChange() const { return {CurrentDirectory(), "ss cp \\Proj\\modules"}; }
  SsCall InModules(const std::string& command) const { return {modules_, command}; }

  qvtest::ScriptedHost host_;
  FakeSs ss_;
  std::string profile_;
  std::string modules_;
};

// --- Version control switched off ---------------------------------------

TEST_F(VcsTest, CheckOutWithVersionControlOffMakesFileWritableAndRunsNothing) {
  TurnVersionControlOff();
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);
  ASSERT_TRUE(qv::IsReadOnly(path));

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  EXPECT_FALSE(qv::IsReadOnly(path));
  EXPECT_TRUE(ss_.Calls().empty());
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_EQ(GetFileStatus(path.c_str()), 0u);
}

TEST_F(VcsTest, OtherOperationsWithVersionControlOffSucceedAndRunNothing) {
  TurnVersionControlOff();
  ss_.AnswerOtherwise(100);
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);

  EXPECT_EQ(VcsSetCurrentProject((profile_ + "\\modules").c_str()), 1);
  EXPECT_EQ(VcsRemove(path.c_str()), 1);
  EXPECT_EQ(VcsCheckIn(path.c_str(), "comment"), 1);
  EXPECT_EQ(VcsAdd(path.c_str(), "comment"), 1);

  EXPECT_TRUE(ss_.Calls().empty());
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_TRUE(qv::IsReadOnly(path));
}

// --- Check-out ----------------------------------------------------------------

TEST_F(VcsTest, CheckOutChangesProjectThenChecksOutInTheFilesFolder) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  std::vector<SsCall> expected = {ProjectChange(), InModules("ss checkout abc.mo")};
  EXPECT_EQ(ss_.Calls(), expected);
  EXPECT_EQ(GetFileStatus(path.c_str()), FS_CHECKED_OUT);
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(VcsTest, SecondCheckOutOfSameFileRunsNothingAndSucceeds) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);
  ASSERT_EQ(VcsCheckOut(path.c_str()), 1);
  ss_.ClearCalls();
  ss_.AnswerOtherwise(100);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);
  // The path is looked up without regard to case.
  EXPECT_EQ(VcsCheckOut((profile_ + "\\MODULES\\ABC.MO").c_str()), 1);

  EXPECT_TRUE(ss_.Calls().empty());
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(VcsTest, FileMarkedCheckedOutInGlobalListRunsNothing) {
  std::string path = profile_ + "\\modules\\abc.mo";
  host_.scratch().Write("profile/modules/abc.mo", "x\n");
  qv::AddGlobalFileEntry("Base", "1", "MO", path.c_str(), FS_CHECKED_OUT);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  EXPECT_TRUE(ss_.Calls().empty());
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(VcsTest, RefusedCheckOutOfFileCheckedOutToThisUserSucceedsWithNotice) {
  std::string user = qv::CurrentUserName();
  if (user.empty()) GTEST_SKIP() << "no user name on this machine";
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);
  ss_.Answer("checkout", 100);
  ss_.Answer("status", 1);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  std::vector<SsCall> expected = {ProjectChange(), InModules("ss checkout abc.mo"),
                                  InModules("ss status abc.mo -u" + user)};
  EXPECT_EQ(ss_.Calls(), expected);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{user +
                                     ", I have noticed you already have file abc.mo checked out."});
  EXPECT_EQ(GetFileStatus(path.c_str()), FS_CHECKED_OUT);
  EXPECT_FALSE(qv::IsReadOnly(path));
}

TEST_F(VcsTest, RefusedCheckOutWhoseStatusQueryEndsWithZeroFails) {
  std::string user = qv::CurrentUserName();
  if (user.empty()) GTEST_SKIP() << "no user name on this machine";
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);
  ss_.Answer("checkout", 100);
  ss_.Answer("status", 0);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 0);

  std::vector<SsCall> expected = {ProjectChange(), InModules("ss checkout abc.mo"),
                                  InModules("ss status abc.mo -u" + user)};
  EXPECT_EQ(ss_.Calls(), expected);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Source Safe command \"ss checkout abc.mo\" failed."});
  EXPECT_EQ(GetFileStatus(path.c_str()), 0u);
  EXPECT_TRUE(qv::IsReadOnly(path));
}

TEST_F(VcsTest, EveryCheckOutExitCodeButHundredCountsAsSuccess) {
  for (int code : {0, 1, 2, 99, 101, 255}) {
    SCOPED_TRACE(code);
    std::string path = AddModuleFile("m" + std::to_string(code) + ".mo", /*read_only=*/true);
    ss_.Answer("checkout", code);
    EXPECT_EQ(VcsCheckOut(path.c_str()), 1);
    EXPECT_EQ(GetFileStatus(path.c_str()), FS_CHECKED_OUT);
  }
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(VcsTest, ProjectChangeFailureIsReportedButCheckOutGoesOn) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);
  ss_.Answer("cp", 1);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  std::vector<SsCall> expected = {ProjectChange(), InModules("ss checkout abc.mo")};
  EXPECT_EQ(ss_.Calls(), expected);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Source Safe command \"ss cp \\Proj\\modules\" failed."});
}

// --- The writable-copy question ------------------------------------------

TEST_F(VcsTest, WritableCopyAnsweredNoFailsSilently) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/false);
  host_.AnswerBoxes({false});

  EXPECT_EQ(VcsCheckOut(path.c_str()), 0);

  ASSERT_EQ(host_.boxes().size(), 1u);
  EXPECT_EQ(host_.boxes()[0].text,
            "There is a writeable copy of file abc.mo locally.  Would you like to proceed with "
            "it's checkout?\nHint:  If you have it checked out, simply answer Yes.");
  EXPECT_EQ(host_.boxes()[0].caption, kCaption);
  EXPECT_EQ(host_.boxes()[0].kind, QV_BOX_QUESTION);
  // The project is made current before the question; nothing is checked out.
  EXPECT_EQ(ss_.Calls(), OnlyCall(ProjectChange()));
  EXPECT_FALSE(qv::IsReadOnly(path));
  EXPECT_EQ(GetFileStatus(path.c_str()), 0u);
}

TEST_F(VcsTest, WritableCopyAnsweredYesIsMadeReadOnlyAndCheckedOut) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/false);
  host_.AnswerBoxes({true});
  // This client leaves the attribute as it finds it.
  ss_.Answer("checkout", 0);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  ASSERT_EQ(host_.boxes().size(), 1u);
  EXPECT_EQ(host_.boxes()[0].kind, QV_BOX_QUESTION);
  std::vector<SsCall> expected = {ProjectChange(), InModules("ss checkout abc.mo")};
  EXPECT_EQ(ss_.Calls(), expected);
  EXPECT_TRUE(qv::IsReadOnly(path));
  EXPECT_EQ(GetFileStatus(path.c_str()), FS_CHECKED_OUT);
}

TEST_F(VcsTest, WritableCopyAnsweredYesEndsWritableWhenClientChecksItOut) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/false);
  host_.AnswerBoxes({true});
  ss_.AnswerSettingReadOnly("checkout", 0, modules_ + "/abc.mo", /*read_only=*/false);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  EXPECT_FALSE(qv::IsReadOnly(path));
  EXPECT_EQ(GetFileStatus(path.c_str()), FS_CHECKED_OUT);
}

TEST_F(VcsTest, MissingLocalFileIsTreatedAsReadOnlyWithoutQuestion) {
  std::string path = AddModuleFile("new.mo", /*read_only=*/false, /*on_disk=*/false);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  EXPECT_TRUE(host_.boxes().empty());
  std::vector<SsCall> expected = {ProjectChange(), InModules("ss checkout new.mo")};
  EXPECT_EQ(ss_.Calls(), expected);
}

TEST_F(VcsTest, FileMissingFromGlobalListIsReportedAndStillCheckedOut) {
  std::string path = profile_ + "\\modules\\loose.mo";
  host_.scratch().Write("profile/modules/loose.mo", "x\n");
  qv::SetReadOnly(path, true);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  std::vector<SsCall> expected = {ProjectChange(), InModules("ss checkout loose.mo")};
  EXPECT_EQ(ss_.Calls(), expected);
  std::vector<std::string> errors = host_.errors();
  ASSERT_FALSE(errors.empty());
  EXPECT_EQ(errors[0], "Can't find " + path + " file in global list of files.");
}

TEST_F(VcsTest, DirectoryWithoutBackslashSkipsProjectChangeSilently) {
  qvtest::TempDir work;
  qvtest::WriteFileBytes(work.Join("abc.mo"), "x\n");
  qv::SetReadOnly(work.Join("abc.mo"), true);
  qv::AddGlobalFileEntry("Base", "1", "MO", "abc.mo");
  std::filesystem::path old_cwd = std::filesystem::current_path();
  std::filesystem::current_path(work.path());

  int result = VcsCheckOut("abc.mo");
  int project_result = VcsSetCurrentProject("modules\\");

  std::filesystem::current_path(old_cwd);
  EXPECT_EQ(result, 1);
  EXPECT_EQ(project_result, 0);
  EXPECT_EQ(ss_.Calls(), OnlyCall(RealDirectory(work.path()), "ss checkout abc.mo"));
  EXPECT_TRUE(host_.boxes().empty());
}

// --- Client that cannot be started ---------------------------------------

TEST_F(VcsTest, ClientThatCannotBeStartedYieldsErrnoAndCheckOutSucceeds) {
  ss_.UseMissingClient();
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);

  EXPECT_EQ(RunCommand("ss checkout abc.mo", modules_.c_str(), 0, "ss checkout abc.mo", QV_NO_FILE),
            ENOENT);
  host_.Clear();

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);
  EXPECT_EQ(GetFileStatus(path.c_str()), FS_CHECKED_OUT);
  // The project change failed like any command; it is reported and ignored.
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Source Safe command \"ss cp \\Proj\\modules\" failed."});
  host_.Clear();

  EXPECT_EQ(VcsAdd(path.c_str(), "new"), 1);
  EXPECT_EQ(VcsCheckIn(path.c_str(), "done"), 0);
  EXPECT_EQ(VcsRemove(path.c_str()), 0);
  std::vector<std::string> errors = host_.errors();
  ASSERT_EQ(errors.size(), 5u);
  EXPECT_EQ(errors[2], "Source Safe command \"ss checkin abc.mo -c\"done\"\" failed.");
  EXPECT_EQ(errors[4], "Source Safe command \"ss remove abc.mo\" failed.");
  EXPECT_TRUE(ss_.Calls().empty());
}

// --- No client configured ----------------------------------------------------

const char kNoClient[] =
    "No version-control client is configured: set QUORVEX_SS_CLIENT to the SourceSafe "
    "command-line client.";

// Without QUORVEX_SS_CLIENT, PATH names a folder of the test alone holding an
// `ss` that notes each start in a file beside it.
class UnconfiguredVcsTest : public VcsTest {
 protected:
  void UseSsOnPath(const std::string& text) {
#ifdef _WIN32
    // No other Windows program is named ss: the fake client itself goes on
    // PATH as ss.exe, and its log notes each start.
    (void)text;
    std::filesystem::copy_file(std::filesystem::absolute(QUORVEX_FAKE_SS), bin_.Join("ss.exe"));
#else
    std::string body = "#!/bin/sh\n# " + text + "\nprintf '%s\\n' \"$QUORVEX_COMMAND_LINE\" >>'" +
                       bin_.Join("started") + "'\n";
    std::string ss = bin_.Write("ss", body);
    ASSERT_EQ(chmod(ss.c_str(), 0755), 0);
#endif
  }
  std::string Starts() const {
#ifdef _WIN32
    std::string starts;
    for (const std::string& line : ss_.CommandLines()) starts += line + "\n";
    return starts;
#else
    return qvtest::ReadFileBytes(bin_.Join("started"));
#endif
  }

  qvtest::TempDir bin_;
  qvtest::ScopedEnv client_{"QUORVEX_SS_CLIENT", nullptr};
  qvtest::ScopedEnv path_{"PATH", bin_.path().c_str()};
};

TEST_F(UnconfiguredVcsTest, NetworkToolOnPathIsNeverStartedAndEveryOperationFails) {
#ifdef _WIN32
  GTEST_SKIP() << "the ss that must not be started is the Linux network tool; on Windows every "
                  "ss.exe on PATH is the client";
#endif
  UseSsOnPath("ss utility, iproute2-6.1.0");
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{kNoClient});
  EXPECT_EQ(VcsCheckOut(path.c_str()), 0);
  EXPECT_EQ(VcsAdd(path.c_str(), "new"), 0);
  EXPECT_EQ(VcsCheckIn(path.c_str(), "done"), 0);
  EXPECT_EQ(VcsRemove(path.c_str()), 0);
  EXPECT_EQ(VcsSetCurrentProject((profile_ + "\\modules").c_str()), 0);
  RecordList* list = nullptr;
  EXPECT_EQ(VcsListProjects(&list), 0);
  EXPECT_EQ(list, nullptr);

  EXPECT_EQ(host_.errors().size(), 1u);  // said once
  EXPECT_EQ(Starts(), "");
  EXPECT_TRUE(qv::IsReadOnly(path));
  EXPECT_EQ(GetFileStatus(path.c_str()), 0u);
  EXPECT_EQ(EngineTempFiles(), 0);
  // The runner refuses too, whoever asks it.
  EXPECT_EQ(RunCommand("ss checkout abc.mo", modules_.c_str(), 0, "", QV_NO_FILE), ENOENT);
  EXPECT_EQ(Starts(), "");
}

TEST_F(UnconfiguredVcsTest, NoSsOnPathFailsWithTheSameMessage) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);
  EXPECT_EQ(VcsCheckOut(path.c_str()), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{kNoClient});
}

TEST_F(UnconfiguredVcsTest, WithVersionControlOffNothingChanges) {
  UseSsOnPath("iproute2");
  TurnVersionControlOff();
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);
  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);
  EXPECT_EQ(VcsAdd(path.c_str(), "new"), 1);
  EXPECT_EQ(VcsCheckIn(path.c_str(), "done"), 1);
  EXPECT_EQ(VcsRemove(path.c_str()), 1);
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_EQ(Starts(), "");
}

TEST_F(UnconfiguredVcsTest, SsOnPathWithoutTheMarkerIsTheClient) {
  UseSsOnPath("a SourceSafe client");
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);

  EXPECT_EQ(VcsCheckOut(path.c_str()), 1);

  EXPECT_EQ(Starts(), "ss cp \\Proj\\modules\nss checkout abc.mo\n");
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_EQ(GetFileStatus(path.c_str()), FS_CHECKED_OUT);
}

// --- Remove, check-in, add ---------------------------------------------

TEST_F(VcsTest, AddWhoseClientEndsWithOneSucceeds) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/false);
  ss_.Answer("add", 1);

  EXPECT_EQ(VcsAdd(path.c_str(), "New module"), 1);

  std::vector<SsCall> expected = {ProjectChange(), InModules("ss add abc.mo -c\"New module\"")};
  EXPECT_EQ(ss_.Calls(), expected);
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(VcsTest, AddWhoseClientEndsWithHundredFails) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/false);
  ss_.Answer("add", 100);

  EXPECT_EQ(VcsAdd(path.c_str(), "New module"), 0);

  EXPECT_EQ(host_.errors(), std::vector<std::string>{
                                "Source Safe command \"ss add abc.mo -c\"New module\"\" failed."});
}

TEST_F(VcsTest, CheckInWhoseClientEndsWithOneFails) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/false);
  ss_.Answer("checkin", 1);

  EXPECT_EQ(VcsCheckIn(path.c_str(), "Fixed"), 0);

  std::vector<SsCall> expected = {ProjectChange(), InModules("ss checkin abc.mo -c\"Fixed\"")};
  EXPECT_EQ(ss_.Calls(), expected);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{
                                "Source Safe command \"ss checkin abc.mo -c\"Fixed\"\" failed."});
}

TEST_F(VcsTest, CheckInWhoseClientEndsWithZeroSucceeds) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/false);

  EXPECT_EQ(VcsCheckIn(path.c_str(), ""), 1);

  std::vector<SsCall> expected = {ProjectChange(), InModules("ss checkin abc.mo -c\"\"")};
  EXPECT_EQ(ss_.Calls(), expected);
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(VcsTest, RemoveIsJudgedByExitCodeZero) {
  std::string path = AddModuleFile("abc.mo", /*read_only=*/true);
  ss_.Answer("remove", 0);
  ss_.Answer("remove", 1);

  EXPECT_EQ(VcsRemove(path.c_str()), 1);
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_EQ(VcsRemove(path.c_str()), 0);

  std::vector<SsCall> expected = {ProjectChange(), InModules("ss remove abc.mo"), ProjectChange(),
                                  InModules("ss remove abc.mo")};
  EXPECT_EQ(ss_.Calls(), expected);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Source Safe command \"ss remove abc.mo\" failed."});
}

// --- Project change --------------------------------------------------------

TEST_F(VcsTest, SetCurrentProjectUsesLastComponentWithoutTrailingSeparator) {
  EXPECT_EQ(VcsSetCurrentProject((profile_ + "\\modules\\").c_str()), 1);
  EXPECT_EQ(VcsSetCurrentProject((profile_ + "/SSR/").c_str()), 1);
  EXPECT_EQ(VcsSetCurrentProject("C:\\Profiles\\Main\\installs"), 1);

  std::vector<std::string> expected = {"ss cp \\Proj\\modules", "ss cp \\Proj\\SSR",
                                       "ss cp \\Proj\\installs"};
  EXPECT_EQ(ss_.CommandLines(), expected);
  for (const SsCall& call : ss_.Calls()) EXPECT_EQ(call.cwd, CurrentDirectory());
}

TEST_F(VcsTest, SetCurrentProjectFailureIsReported) {
  ss_.Answer("cp", 3);

  EXPECT_EQ(VcsSetCurrentProject((profile_ + "\\modules").c_str()), 0);

  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Source Safe command \"ss cp \\Proj\\modules\" failed."});
}

// --- Project listing ---------------------------------------------------------

TEST_F(VcsTest, ListingOfRootAndOneProjectYieldsThatProject) {
  ss_.AnswerWithOutput("Dir", 0, "$/:\n$Sub\n");
  RecordList* list = nullptr;

  ASSERT_EQ(VcsListProjects(&list), 1);

  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->count, 1u);
  EXPECT_STREQ(static_cast<char*>(list->head->record), "Sub");
  EXPECT_EQ(ss_.Calls(), OnlyCall(CurrentDirectory(), "ss Dir $/"));
  MPFreeStringList(list);
  // The captured output is deleted.
  EXPECT_EQ(EngineTempFiles(), 0);
}

TEST_F(VcsTest, ListingKeepsProjectsInOrderAndSkipsOtherLines) {
  ss_.AnswerWithOutput("Dir", 0,
                       "$/:\r\n$Alpha\r\n$Beta Two\r\n$/Nested\r\nfile.txt\r\n\r\n3 item(s)\r\n");
  RecordList* list = nullptr;

  ASSERT_EQ(VcsListProjects(&list), 1);

  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->count, 2u);
  EXPECT_STREQ(static_cast<char*>(list->head->record), "Alpha");
  EXPECT_STREQ(static_cast<char*>(list->head->next->record), "Beta Two");
  MPFreeStringList(list);
}

TEST_F(VcsTest, EmptyListingYieldsEmptyList) {
  RecordList* list = nullptr;

  ASSERT_EQ(VcsListProjects(&list), 1);

  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count, 0u);
  MPFreeStringList(list);
}

TEST_F(VcsTest, FailedListingIsReported) {
  ss_.AnswerWithOutput("Dir", 1, "$Sub\n");
  RecordList* list = nullptr;

  EXPECT_EQ(VcsListProjects(&list), 0);

  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Source Safe command \"ss Dir $/\" failed."});
  EXPECT_EQ(EngineTempFiles(), 0);
}

// --- RunCommand ---------------------------------------------------------------

TEST_F(VcsTest, RunCommandCapturesOutputInFolderAndReturnsExitCode) {
  ss_.AnswerWithOutput("anything", 7, "hello\n");
  char temp_path[QV_PATH_SIZE];
  QvFile output = QV_NO_FILE;
  ASSERT_EQ(CreateTempFile(temp_path, &output), 1);

  EXPECT_EQ(
      RunCommand("ss anything \"two words\"", (profile_ + "\\MODULES").c_str(), 1, "title", output),
      7);

  QvCloseFile(output);
  EXPECT_EQ(qvtest::ReadFileBytes(temp_path), "hello\n");
  EXPECT_EQ(ss_.Calls(), OnlyCall(modules_, "ss anything \"two words\""));
}

TEST_F(VcsTest, RunCommandWithoutFolderRunsInCurrentFolder) {
  ss_.Answer("x", 3);

  EXPECT_EQ(RunCommand("ss x", nullptr, 0, "", QV_NO_FILE), 3);

  EXPECT_EQ(ss_.Calls(), OnlyCall(CurrentDirectory(), "ss x"));
}

}  // namespace
