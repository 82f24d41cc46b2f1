// Error reporting: the log, the two box switches, the message limit, and
// the temporary-file names, including those that crashed processes left.
#include <gtest/gtest.h>
#ifdef _WIN32
#include "platform/win32.h"
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "core/state.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "platform/held_file.h"
#include "quorvex/quorvex.h"
#include "support/child_mode.h"
#include "support/scripted_host.h"

namespace {

// The separator of the paths the engine gives back.
#ifdef _WIN32
const std::string kSeparator = "\\";
#else
const std::string kSeparator = "/";
#endif

const std::string kQuestion = "\nDo you want to see a Message Box for the Next Error?";
const std::string kBanner = std::string(86, '*') + "\n";

class ReportTest : public ::testing::Test {
 protected:
  void OpenLog() {
    log_path_ = host_.scratch().Join("engine.log");
    qv::State().log_file = qv::File::Open(log_path_, qv::OpenMode::kCreateAlways);
    ASSERT_NE(qv::State().log_file, nullptr);
  }
  std::string LogText() { return qvtest::ReadFileBytes(log_path_); }

  static std::string TempRelative(int n) {
    char name[32];
    snprintf(name, sizeof name, "tmp/QUORVEX.%03d", n);
    return name;
  }
  std::string TempName(int n) { return host_.scratch().Join(TempRelative(n)); }
  // Takes QUORVEX.nnn as a live process does; the name stays held after the
  // file is closed, until the fixture deletes it.
  void HoldName(int n, const std::string& content) {
    qv::File* file = qv::CreateHeldFile(TempName(n));
    ASSERT_NE(file, nullptr) << n;
    file->Write(content.data(), content.size());
    delete file;
    held_.push_back(TempName(n));
  }
  std::vector<std::string> TempFolderEntries() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(host_.scratch().Join("tmp"))) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  ~ReportTest() override {
    for (const std::string& path : held_) qv::DeleteFile(path);
  }

  qvtest::ScriptedHost host_;
  std::string log_path_;
  std::vector<std::string> held_;
};

#ifdef _WIN32
// What tells one file from another on Windows: its volume and index.
std::string FileIdentity(const std::string& path) {
  HANDLE h = CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  EXPECT_NE(h, INVALID_HANDLE_VALUE) << path;
  BY_HANDLE_FILE_INFORMATION info = {};
  EXPECT_TRUE(GetFileInformationByHandle(h, &info)) << path;
  CloseHandle(h);
  return std::to_string(info.dwVolumeSerialNumber) + ":" + std::to_string(info.nFileIndexHigh) +
         ":" + std::to_string(info.nFileIndexLow);
}

// The live process: FOLDER. It makes a temporary file, writes to it and
// closes it without deleting it, says so in FOLDER/ready, then waits to be
// killed.
int MakeTempFile(const std::vector<std::string>& args) {
  if (args.size() != 1) return 2;
  const std::string folder = args[0];
  char path[QV_PATH_SIZE];
  QvFile handle = QV_NO_FILE;
  bool made = CreateTempFile(path, &handle) == 1;
  if (made) {
    qv::File::FromHandle(handle)->Write("child", 5);
    QvCloseFile(handle);  // closed, not deleted: the name stays the child's
  }
  // The answer appears whole: it is written under another name first.
  qvtest::WriteFileBytes(folder + "\\ready.part", made ? "1" : "0");
  std::rename((folder + "\\ready.part").c_str(), (folder + "\\ready").c_str());
  for (;;) {
    if (qvtest::PathExists(folder + "\\kill")) qvtest::EndAsIfKilled();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

const qvtest::ChildMode kMakeTempFile("make-temp-file", MakeTempFile);
#endif

TEST_F(ReportTest, ShowsTheMessageWithTheQuestionInTheErrorBox) {
  EXPECT_EQ(ReportError("Something broke.", 0), 1);
  ASSERT_EQ(host_.boxes().size(), 1u);
  EXPECT_EQ(host_.boxes()[0].text, "Something broke." + kQuestion);
  EXPECT_EQ(host_.boxes()[0].caption, "Error from QUORVEX!");
  EXPECT_EQ(host_.boxes()[0].kind, QV_BOX_ERROR);
}

TEST_F(ReportTest, LinePrefixNamesTheParseFileAndLine) {
  snprintf(qv::State().parse_file, QV_PATH_SIZE, "%s", "C:\\MP\\ADS\\adlist.ad");
  qv::State().parse_line = 17;
  ReportError("Bad flag constant: must be a Y or an N character", 1);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0],
            "C:\\MP\\ADS\\adlist.ad : Line #17\nBad flag constant: must be a Y or an N character");
}

TEST_F(ReportTest, LogGetsBannerTextWithQuestionAndNewlineEvenWithBoxesOff) {
  OpenLog();
  qv::State().message_box_switch = false;
  ReportError("First.", 0);
  ReportError("Second.", 0);
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_EQ(LogText(),
            kBanner + "First." + kQuestion + "\n" + kBanner + "Second." + kQuestion + "\n");
}

TEST_F(ReportTest, AnsweringNoSilencesLaterBoxesButNotTheLog) {
  OpenLog();
  host_.AnswerBoxes({false});
  EXPECT_EQ(ReportError("One.", 0), 0);
  EXPECT_EQ(ReportError("Two.", 0), 1);
  EXPECT_EQ(host_.boxes().size(), 1u);
  EXPECT_FALSE(qv::State().message_box_switch);
  EXPECT_NE(LogText().find("Two." + kQuestion), std::string::npos);
}

TEST_F(ReportTest, HostErrorsKeepTheirOwnSwitch) {
  host_.AnswerBoxes({false});
  ReportError("Engine.", 0);  // switches engine boxes off
  ReportHostError("Host one.");
  ASSERT_EQ(host_.boxes().size(), 2u);
  EXPECT_EQ(host_.boxes()[1].text, "Host one.\n" + kQuestion);
  host_.AnswerBoxes({false});
  ReportHostError("Host two.");
  ReportHostError("Host three.");
  EXPECT_EQ(host_.boxes().size(), 3u);
  // An open of a profile re-arms the engine's switch only.
  EXPECT_FALSE(qv::State().host_message_box_switch);
}

TEST_F(ReportTest, HostErrorIsLoggedWithoutQuestion) {
  OpenLog();
  ReportHostError("Host failure.");
  EXPECT_EQ(LogText(), kBanner + "Host failure.\n");
}

TEST_F(ReportTest, OverlongMessageIsLeftOutLeavingPrefixAndQuestion) {
  std::string longText(5024, 'x');
  ReportError(longText.c_str(), 0);
  EXPECT_EQ(host_.boxes()[0].text, kQuestion);

  snprintf(qv::State().parse_file, QV_PATH_SIZE, "%s", "f.mo");
  qv::State().parse_line = 3;
  ReportError(longText.c_str(), 1);
  EXPECT_EQ(host_.boxes()[1].text, "f.mo : Line #3\n" + kQuestion);
}

TEST_F(ReportTest, MessageJustUnderTheLimitStays) {
  std::string text(5024 - kQuestion.size() - 1, 'y');
  ReportError(text.c_str(), 0);
  EXPECT_EQ(host_.boxes()[0].text, text + kQuestion);
  std::string one_more(5024 - kQuestion.size(), 'y');
  ReportError(one_more.c_str(), 0);
  // The message fits, the question no longer does.
  EXPECT_EQ(host_.boxes()[1].text, one_more);
}

TEST_F(ReportTest, OverlongHostMessageIsShownCutWithoutQuestion) {
  std::string longText(6000, 'h');
  ReportHostError(longText.c_str());
  EXPECT_EQ(host_.boxes()[0].text, std::string(5023, 'h'));
}

TEST_F(ReportTest, TempFilesAreNumberedFromZero) {
  char path[QV_PATH_SIZE];
  QvFile handle;
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), host_.scratch().Join("tmp") + kSeparator + "QUORVEX.000");
  QvCloseFile(handle);
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), host_.scratch().Join("tmp") + kSeparator + "QUORVEX.001");
  QvCloseFile(handle);
}

TEST_F(ReportTest, TempFileTakesTheNextFreeNumber) {
  HoldName(0, "taken");
  HoldName(2, "taken");
  char path[QV_PATH_SIZE];
  QvFile handle;
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), TempName(1));
  QvCloseFile(handle);
  EXPECT_EQ(host_.scratch().Read("tmp/QUORVEX.000"), "taken");
}

TEST_F(ReportTest, TempFileFailsSilentlyWhenAllNamesAreTaken) {
  for (int n = 0; n < 1000; ++n) HoldName(n, "");
  char path[QV_PATH_SIZE];
  QvFile handle = QV_NO_FILE;
  EXPECT_EQ(CreateTempFile(path, &handle), 0);
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(ReportTest, ClosedTempFileKeepsItsNameUntilDeleted) {
  char path[QV_PATH_SIZE];
  QvFile handle;
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  QvCloseFile(handle);
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), TempName(1));
  QvCloseFile(handle);
  ASSERT_TRUE(qv::DeleteFile(TempName(0)));
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), TempName(0));
  QvCloseFile(handle);
}

// --- Names left by processes that died -------------------------------------

TEST_F(ReportTest, TempFileReusesTheNamesOfDeadProcesses) {
  // Plain files that nobody holds: what a thousand crashes leave behind.
  for (int n = 0; n < 1000; ++n) host_.scratch().Write(TempRelative(n), "left");
  char path[QV_PATH_SIZE];
  QvFile handle = QV_NO_FILE;
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), TempName(0));
  QvCloseFile(handle);
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_EQ(host_.scratch().Read(TempRelative(0)), "");
  EXPECT_EQ(host_.scratch().Read(TempRelative(1)), "left");  // only the name needed is taken
}

TEST_F(ReportTest, StaleTempFileIsRemovedNotReused) {
  host_.scratch().Write(TempRelative(0), "left by a crash");
#ifdef _WIN32
  // Windows keeps the name of a deleted file that is still open, so the
  // stale file is kept alive by a second name instead of an open handle:
  // a new file cannot get its number then either.
  std::string other_name = host_.scratch().Join("kept-alive");
  ASSERT_TRUE(CreateHardLinkA(other_name.c_str(), TempName(0).c_str(), nullptr));
  std::string before = FileIdentity(other_name);
  char path[QV_PATH_SIZE];
  QvFile handle = QV_NO_FILE;
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_NE(FileIdentity(path), before);
  EXPECT_EQ(qvtest::ReadFileBytes(path), "");
  EXPECT_EQ(qvtest::ReadFileBytes(other_name), "left by a crash");
  QvCloseFile(handle);
#else
  struct stat before;
  ASSERT_EQ(stat(TempName(0).c_str(), &before), 0);
  // Keep the stale file's inode alive, so that a new file cannot get its number.
  int old = open(TempName(0).c_str(), O_RDONLY);
  ASSERT_GE(old, 0);
  char path[QV_PATH_SIZE];
  QvFile handle = QV_NO_FILE;
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  struct stat after;
  ASSERT_EQ(stat(path, &after), 0);
  EXPECT_NE(after.st_ino, before.st_ino);
  EXPECT_EQ(qvtest::ReadFileBytes(path), "");
  close(old);
  QvCloseFile(handle);
#endif
  // The private name the file was made under is gone as well.
  EXPECT_EQ(TempFolderEntries(), std::vector<std::string>{"QUORVEX.000"});
}

TEST_F(ReportTest, TempFileOfALiveProcessIsNeverRemoved) {
#ifdef _WIN32
  // Windows has no fork: the live process is this program in a child mode,
  // told through files in a folder of its own.
  qvtest::TempDir talk;
  qvtest::Child child("make-temp-file", {talk.path()});
  // Told to end whatever happens, so that a failed assertion does not wait
  // on it for ever.
  struct EndAtLast {
    std::string file;
    ~EndAtLast() { qvtest::WriteFileBytes(file, ""); }
  } end_at_last{talk.Join("kill")};
  const std::string ready = talk.Join("ready");
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!qvtest::PathExists(ready) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  ASSERT_EQ(qvtest::ReadFileBytes(ready), "1") << "the child did not make its file";
#else
  int ready[2];
  int go[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(go), 0);
  pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    char path[QV_PATH_SIZE];
    QvFile handle = QV_NO_FILE;
    char done = CreateTempFile(path, &handle) == 1 ? '1' : '0';
    qv::File::FromHandle(handle)->Write("child", 5);
    QvCloseFile(handle);  // closed, not deleted: the name stays the child's
    (void)!write(ready[1], &done, 1);
    (void)!read(go[0], &done, 1);
    _exit(0);
  }
  char done = '0';
  ASSERT_EQ(read(ready[0], &done, 1), 1);
  ASSERT_EQ(done, '1');
#endif

  char path[QV_PATH_SIZE];
  QvFile handle = QV_NO_FILE;
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), TempName(1));
  QvCloseFile(handle);
  EXPECT_EQ(host_.scratch().Read(TempRelative(0)), "child");

  // Killed without a word, the child leaves its file to whoever comes next.
#ifdef _WIN32
  qvtest::WriteFileBytes(talk.Join("kill"), "");
  EXPECT_EQ(child.Wait(), 137);
#else
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
#endif
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), TempName(0));
  QvCloseFile(handle);
  EXPECT_EQ(host_.scratch().Read(TempRelative(0)), "");
#ifndef _WIN32
  for (int fd : {ready[0], ready[1], go[0], go[1]}) close(fd);
#endif
}

TEST(CharacterHelpers, HexDigits) {
  EXPECT_EQ(IsHexDigit('0'), 1);
  EXPECT_EQ(IsHexDigit('f'), 1);
  EXPECT_EQ(IsHexDigit('F'), 1);
  EXPECT_EQ(IsHexDigit('g'), 0);
  EXPECT_EQ(IsHexDigit(' '), 0);
  EXPECT_EQ(HexDigitValue('0'), 0);
  EXPECT_EQ(HexDigitValue('9'), 9);
  EXPECT_EQ(HexDigitValue('a'), 10);
  EXPECT_EQ(HexDigitValue('F'), 15);
  EXPECT_EQ(HexDigitValue('z'), HexDigitValue('0'));
  EXPECT_EQ(HexDigitValue('-'), 0);
}

TEST(CharacterHelpers, SkipLeadingBackslashes) {
  char text[] = "\\\\\\server\\share";
  char* cursor = text;
  SkipLeadingBackslashes(&cursor);
  EXPECT_STREQ(cursor, "server\\share");
  char none[] = "plain";
  cursor = none;
  SkipLeadingBackslashes(&cursor);
  EXPECT_EQ(cursor, none);
}

}  // namespace
