// Error reporting: the log, the two box switches, the message limit, and
// the temporary-file names.
#include <gtest/gtest.h>

#include <string>

#include "core/state.h"
#include "platform/file.h"
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

  qvtest::ScriptedHost host_;
  std::string log_path_;
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
  host_.scratch().Write("tmp/QUORVEX.000", "taken");
  host_.scratch().Write("tmp/QUORVEX.002", "taken");
  char path[QV_PATH_SIZE];
  QvFile handle;
  ASSERT_EQ(CreateTempFile(path, &handle), 1);
  EXPECT_EQ(std::string(path), host_.scratch().Join("tmp") + "/QUORVEX.001");
  QvCloseFile(handle);
  EXPECT_EQ(host_.scratch().Read("tmp/QUORVEX.000"), "taken");
}

TEST_F(ReportTest, TempFileFailsSilentlyWhenAllNamesAreTaken) {
  for (int n = 0; n < 1000; ++n) {
    char name[32];
    snprintf(name, sizeof name, "tmp/QUORVEX.%03d", n);
    host_.scratch().Write(name, "");
  }
  char path[QV_PATH_SIZE];
  QvFile handle = QV_NO_FILE;
  EXPECT_EQ(CreateTempFile(path, &handle), 0);
  EXPECT_TRUE(host_.boxes().empty());
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
