// Error reporting: the log, the two box switches, the message limit, and
// the temporary-file names, including those that crashed processes left.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "core/state.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "platform/held_file.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"

namespace {

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
  EXPECT_EQ(std::string(path), host_.scratch().Join("tmp") + "/QUORVEX.000");
  QvCloseFile(handle);
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), host_.scratch().Join("tmp") + "/QUORVEX.001");
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
  // The private name the file was made under is gone as well.
  EXPECT_EQ(TempFolderEntries(), std::vector<std::string>{"QUORVEX.000"});
}

TEST_F(ReportTest, TempFileOfALiveProcessIsNeverRemoved) {
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

  char path[QV_PATH_SIZE];
  QvFile handle = QV_NO_FILE;
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), TempName(1));
  QvCloseFile(handle);
  EXPECT_EQ(host_.scratch().Read(TempRelative(0)), "child");

  // Killed without a word, the child leaves its file to whoever comes next.
  kill(child, SIGKILL);
  int status = 0;
  waitpid(child, &status, 0);
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), TempName(0));
  QvCloseFile(handle);
  EXPECT_EQ(host_.scratch().Read(TempRelative(0)), "");
  for (int fd : {ready[0], ready[1], go[0], go[1]}) close(fd);
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
