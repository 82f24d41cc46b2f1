// The profile text reader: physical lines, sections, logical record lines
// and the parse position used in error prefixes.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "core/plain_lines.h"
#include "core/state.h"
#include "platform/file.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"

namespace {

using Records = std::vector<std::pair<std::string, uint32_t>>;

constexpr char kParseFile[] = "C:\\PROFILE\\ADS\\adlist.ad";

class ReaderTest : public ::testing::Test {
 protected:
  ~ReaderTest() override { delete file_; }

  // Writes the content to a fresh file, opens it and makes it the parse file.
  QvFile Open(const std::string& content) {
    delete file_;
    std::string path = host_.scratch().Write("profile.txt", content);
    file_ = qv::File::Open(path, qv::OpenMode::kReadExisting);
    EXPECT_NE(file_, nullptr);
    SetParseFile(kParseFile);
    return file_->handle();
  }

  std::string Line(int size = QV_LINE_SIZE) {
    std::vector<char> buffer(size > 0 ? size : 1, '#');
    EXPECT_EQ(ReadProfileLine(file_->handle(), buffer.data(), size), 1);
    return std::string(buffer.data());
  }

  // Every logical record up to the end of the section.
  Records ReadSection(int mode) {
    Records out;
    char record[QV_LINE_SIZE];
    uint32_t flags = 123;
    while (ReadRecordLine(file_->handle(), record, &flags, mode)) out.emplace_back(record, flags);
    EXPECT_EQ(flags, 0u);
    EXPECT_STREQ(record, "");
    return out;
  }

  std::string Prefixed(int line, const std::string& message) {
    return std::string(kParseFile) + " : Line #" + std::to_string(line) + "\n" + message;
  }

  qvtest::ScriptedHost host_;
  qv::File* file_ = nullptr;
};

// ---- parse position -------------------------------------------------------

TEST_F(ReaderTest, SetParseFileNamesTheFileAndResetsTheCounter) {
  Open("a\nb\n");
  Line();
  Line();
  EXPECT_EQ(QvParseLineNumber(), 2);
  EXPECT_EQ(SetParseFile("other.txt"), 1);
  EXPECT_STREQ(QvParseFileName(), "other.txt");
  EXPECT_EQ(QvParseLineNumber(), 0);
}

TEST_F(ReaderTest, SetParseFileKeepsAtMostAPathOfText) {
  std::string name(400, 'n');
  EXPECT_EQ(SetParseFile(name.c_str()), 1);
  EXPECT_EQ(std::string(QvParseFileName()), std::string(QV_PATH_SIZE - 1, 'n'));
}

TEST_F(ReaderTest, CommentModeDefaultsToRecords) {
  EXPECT_EQ(QvCommentMode(), COMMENT_MODE_RECORDS);
  qv::State().comment_mode = COMMENT_MODE_ACTIVE_ONLY;
  EXPECT_EQ(QvCommentMode(), 1);
}

// ---- physical lines --------------------------------------------------------

TEST_F(ReaderTest, ReadsLinesWithoutTheirLineFeedAndCountsThem) {
  QvFile f = Open("first\n\nthird\r\nlast");
  EXPECT_EQ(Line(), "first");
  EXPECT_EQ(file_->Tell(), 6);
  EXPECT_EQ(Line(), "");
  EXPECT_EQ(Line(), "third\r");  // the carriage return is left for trimming
  EXPECT_EQ(Line(), "last");
  EXPECT_EQ(QvParseLineNumber(), 4);
  char buffer[16] = "junk";
  EXPECT_EQ(ReadProfileLine(f, buffer, sizeof buffer), 0);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(QvParseLineNumber(), 4);  // the end of the file is no line
}

TEST_F(ReaderTest, EmptyFileHasNoLine) {
  QvFile f = Open("");
  char buffer[8];
  EXPECT_EQ(ReadProfileLine(f, buffer, sizeof buffer), 0);
  EXPECT_EQ(QvParseLineNumber(), 0);
}

TEST_F(ReaderTest, NoFileAndNoRoomReadNothing) {
  char buffer[8] = "x";
  EXPECT_EQ(ReadProfileLine(QV_NO_FILE, buffer, sizeof buffer), 0);
  EXPECT_EQ(ReadProfileLine(QV_FAILED_FILE, buffer, sizeof buffer), 0);
  QvFile f = Open("abc\n");
  EXPECT_EQ(ReadProfileLine(f, buffer, 1), 0);  // room for the terminator only
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(QvParseLineNumber(), 0);
}

TEST_F(ReaderTest, LongLineIsSplitAndOneByteIsLost) {
  const int kTaken = QV_LINE_SIZE - 1;  // 5023
  std::string head(kTaken, 'x');
  Open(head + "YZ\nnext\n");
  EXPECT_EQ(Line(), head);
  EXPECT_EQ(QvParseLineNumber(), 1);
  // The position stands one byte beyond what was read: "Y" is never seen.
  EXPECT_EQ(file_->Tell(), kTaken + 1);
  EXPECT_EQ(Line(), "Z");
  EXPECT_EQ(file_->Tell(), kTaken + 3);
  EXPECT_EQ(QvParseLineNumber(), 2);
  EXPECT_EQ(Line(), "next");
  EXPECT_EQ(QvParseLineNumber(), 3);
}

TEST_F(ReaderTest, LineOfExactlyTheBufferLosesItsLineFeed) {
  std::string head(QV_LINE_SIZE - 1, 'x');
  Open(head + "\nnext\n");
  EXPECT_EQ(Line(), head);
  EXPECT_EQ(file_->Tell(), QV_LINE_SIZE);
  EXPECT_EQ(Line(), "next");  // no empty line in between
  EXPECT_EQ(QvParseLineNumber(), 2);
}

TEST_F(ReaderTest, LineOneShorterThanTheBufferIsWhole) {
  std::string head(QV_LINE_SIZE - 2, 'x');
  Open(head + "\nnext\n");
  EXPECT_EQ(Line(), head);
  EXPECT_EQ(file_->Tell(), QV_LINE_SIZE - 1);
  EXPECT_EQ(Line(), "next");
}

TEST_F(ReaderTest, SmallBufferSplitsTheSameWay) {
  Open("abcdefg\nh\n");
  EXPECT_EQ(Line(4), "abc");
  EXPECT_EQ(file_->Tell(), 4);  // "d" is lost
  EXPECT_EQ(Line(4), "efg");
  EXPECT_EQ(file_->Tell(), 8);  // the line feed is lost instead
  EXPECT_EQ(Line(4), "h");
}

TEST_F(ReaderTest, ZeroByteEndsTheLineLikeALineFeed) {
  Open(std::string("a\0b\nc\n", 6));
  EXPECT_EQ(Line(), "a");
  EXPECT_EQ(file_->Tell(), 2);
  EXPECT_EQ(Line(), "b");
  EXPECT_EQ(Line(), "c");
}

TEST_F(ReaderTest, ManyLinesCostFewReads) {
  std::string content;
  for (int i = 0; i < 2000; ++i) content += "\"line\"," + std::to_string(i) + "\n";
  QvFile f = Open(content);
  char buffer[QV_LINE_SIZE];
  int lines = 0;
  while (ReadProfileLine(f, buffer, sizeof buffer)) ++lines;
  EXPECT_EQ(lines, 2000);
  EXPECT_LT(file_->read_calls(), 10u);
}

// ---- blanks ------------------------------------------------------------------

TEST(BlanksTest, SkipBlanksSkipsSpaceTabLineFeedReturnAndFormFeed) {
  char text[] = " \t\n\r\fx y";
  char* cursor = text;
  SkipBlanks(&cursor);
  EXPECT_EQ(cursor, text + 5);
  char vertical[] = "\vx";
  cursor = vertical;
  SkipBlanks(&cursor);
  EXPECT_EQ(cursor, vertical);  // vertical tab is no blank
  char empty[] = "";
  cursor = empty;
  SkipBlanks(&cursor);
  EXPECT_EQ(cursor, empty);
}

TEST(BlanksTest, TrimTrailingBlanksRemovesBlanksFromTheEnd) {
  char text[] = "a b \t\r\n\f";
  TrimTrailingBlanks(text);
  EXPECT_STREQ(text, "a b");
  char vertical[] = "a\v";
  TrimTrailingBlanks(vertical);
  EXPECT_STREQ(vertical, "a\v");
  char empty[] = "";
  TrimTrailingBlanks(empty);
  EXPECT_STREQ(empty, "");
}

TEST(BlanksTest, TrimTrailingBlanksNeverRemovesTheFirstCharacter) {
  char blanks[] = "  \t ";
  TrimTrailingBlanks(blanks);
  EXPECT_STREQ(blanks, " ");
  char one[] = "\r";
  TrimTrailingBlanks(one);
  EXPECT_STREQ(one, "\r");
}

// ---- sections ----------------------------------------------------------------

TEST_F(ReaderTest, FindSectionIgnoresCaseAndStandsAfterTheHeader) {
  const std::string content = "; head\n[Other]\nx\n  [ads]  tail\r\n\"rec\"\n";
  QvFile f = Open(content);
  EXPECT_EQ(FindSection(f, "ADS"), 1);
  EXPECT_EQ(file_->Tell(), static_cast<int64_t>(content.find("\"rec\"")));
  EXPECT_EQ(QvParseLineNumber(), 4);
  EXPECT_EQ(Line(), "\"rec\"");
}

TEST_F(ReaderTest, FindSectionNameRunsToTheBracketOrTheEnd) {
  QvFile f = Open("[Ads \n[Ads ]\n[Mods\n[Ads]x]\n");
  EXPECT_EQ(FindSection(f, "Mods"), 1);  // no closing bracket: the rest of the line
  EXPECT_EQ(QvParseLineNumber(), 3);
  EXPECT_EQ(FindSection(f, "Ads "), 1);  // blanks belong to the name
  EXPECT_EQ(QvParseLineNumber(), 3 + 1);
  EXPECT_EQ(FindSection(f, "Ads"), 1);
  EXPECT_EQ(QvParseLineNumber(), 4 + 4);
  char rest[8];
  EXPECT_EQ(ReadProfileLine(f, rest, sizeof rest), 0);  // that was the last line
}

TEST_F(ReaderTest, FindSectionFailsWithoutTheSection) {
  QvFile f = Open("[A]\nx\n[B]\n");
  EXPECT_EQ(FindSection(f, "C"), 0);
  EXPECT_EQ(QvParseLineNumber(), 3);
  EXPECT_EQ(FindSection(f, "A "), 0);
  EXPECT_EQ(FindSection(QV_NO_FILE, "A"), 0);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ReaderTest, FindSectionRewindsButTheCounterRunsOn) {
  QvFile f = Open("[A]\na1\na2\n[B]\nb1\n");
  EXPECT_EQ(FindSection(f, "B"), 1);
  EXPECT_EQ(QvParseLineNumber(), 4);
  EXPECT_EQ(FindSection(f, "A"), 1);
  EXPECT_EQ(QvParseLineNumber(), 5);
  EXPECT_EQ(Line(), "a1");
  // A report now names the count of lines read, not the place in the file.
  char cursor_text[] = "x";
  char* cursor = cursor_text;
  uint32_t flag = 0;
  EXPECT_EQ(ParseFlag(&cursor, &flag, 0), 0);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0], Prefixed(6, "Bad flag constant: must be a Y or an N character"));
}

// ---- record lines: comment modes -------------------------------------------

const char kModeSection[] =
    "[Ads]\n"
    "\"plain\",1\n"
    ";IAO;\"marked\",2\n"
    "; a comment  \n"
    "\n"
    "   \t\r\n"
    "  \"indented\" ,3  \r\n"
    "  ;IAO;\"late\"  \n"
    "[Next]\n"
    "\"other\"\n";

TEST_F(ReaderTest, ModeOneSkipsMarkedRecordsAndComments) {
  QvFile f = Open(kModeSection);
  ASSERT_EQ(FindSection(f, "Ads"), 1);
  EXPECT_EQ(ReadSection(1), (Records{{"\"plain\",1", 0}, {"\"indented\" ,3", 0}}));
}

TEST_F(ReaderTest, ModeTwoReturnsMarkedRecordsWithoutTheMarker) {
  QvFile f = Open(kModeSection);
  ASSERT_EQ(FindSection(f, "Ads"), 1);
  EXPECT_EQ(ReadSection(2), (Records{{"\"plain\",1", 0},
                                     {"\"marked\",2", RECORD_IAO},
                                     {"\"indented\" ,3", 0},
                                     {"\"late\"", RECORD_IAO}}));
}

TEST_F(ReaderTest, ModeThreeReturnsCommentsUntrimmed) {
  QvFile f = Open(kModeSection);
  ASSERT_EQ(FindSection(f, "Ads"), 1);
  EXPECT_EQ(ReadSection(3), (Records{{"\"plain\",1", 0},
                                     {"\"marked\",2", RECORD_IAO},
                                     {"; a comment  ", RECORD_IAO},
                                     {"\"indented\" ,3", 0},
                                     {"\"late\"", RECORD_IAO}}));
}

TEST_F(ReaderTest, ModeFourReturnsOnlyCommentsWholeLine) {
  QvFile f = Open(kModeSection);
  ASSERT_EQ(FindSection(f, "Ads"), 1);
  EXPECT_EQ(ReadSection(4), (Records{{";IAO;\"marked\",2", RECORD_IAO},
                                     {"; a comment  ", RECORD_IAO},
                                     {";IAO;\"late\"  ", RECORD_IAO}}));
}

TEST_F(ReaderTest, OtherModeValuesReturnRecordsAndEveryCommentAsComment) {
  QvFile f = Open(kModeSection);
  ASSERT_EQ(FindSection(f, "Ads"), 1);
  EXPECT_EQ(ReadSection(0), (Records{{"\"plain\",1", 0},
                                     {";IAO;\"marked\",2", RECORD_IAO},
                                     {"; a comment  ", RECORD_IAO},
                                     {"\"indented\" ,3", 0},
                                     {";IAO;\"late\"  ", RECORD_IAO}}));
}

TEST_F(ReaderTest, MarkerIsCaseSensitiveAndNeedsBothSemicolons) {
  Open(";iao;\"a\"\n;IAO\"b\"\n;IAO;\n");
  EXPECT_EQ(ReadSection(2), (Records{{"", RECORD_IAO}}));
}

// ---- record lines: sections and the end of the file ------------------------

TEST_F(ReaderTest, EndOfSectionLeavesTheNextHeaderToBeReadAgain) {
  const std::string content = "[A]\nrec\n  [B] \r\nb1\n";
  QvFile f = Open(content);
  ASSERT_EQ(FindSection(f, "A"), 1);
  EXPECT_EQ(ReadSection(2), (Records{{"rec", 0}}));
  EXPECT_EQ(file_->Tell(), static_cast<int64_t>(content.find("  [B]")));
  EXPECT_EQ(QvParseLineNumber(), 3);
  EXPECT_EQ(Line(), "  [B] \r");  // the header comes again, and counts again
  EXPECT_EQ(QvParseLineNumber(), 4);
  EXPECT_EQ(ReadSection(2), (Records{{"b1", 0}}));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ReaderTest, EndOfSectionThenFindSectionSeesTheHeader) {
  QvFile f = Open("[A]\na1\n[B]\nb1\n[C]\n");
  ASSERT_EQ(FindSection(f, "A"), 1);
  EXPECT_EQ(ReadSection(2), (Records{{"a1", 0}}));
  EXPECT_EQ(ReadSection(2), Records{});  // still at the header: nothing more
  EXPECT_EQ(ReadSection(4), Records{});  // the same in every mode
  EXPECT_EQ(Line(), "[B]");
  EXPECT_EQ(ReadSection(2), (Records{{"b1", 0}}));
}

TEST_F(ReaderTest, HeaderWithoutLineFeedAtTheEndIsReadAgain) {
  const std::string content = "[A]\nrec\n[B]";
  QvFile f = Open(content);
  ASSERT_EQ(FindSection(f, "A"), 1);
  EXPECT_EQ(ReadSection(2), (Records{{"rec", 0}}));
  EXPECT_EQ(file_->Tell(), static_cast<int64_t>(content.size() - 3));
  EXPECT_EQ(FindSection(f, "B"), 1);
}

TEST_F(ReaderTest, HeaderThatFilledTheBufferIsReadAgainFromItsStart) {
  std::string header = "[" + std::string(QV_LINE_SIZE + 10, 'h') + "]\n";
  const std::string content = "[A]\nrec\n" + header + "tail\n";
  QvFile f = Open(content);
  ASSERT_EQ(FindSection(f, "A"), 1);
  EXPECT_EQ(ReadSection(2), (Records{{"rec", 0}}));
  EXPECT_EQ(file_->Tell(), 8);
}

TEST_F(ReaderTest, EndOfFileEndsTheSectionWithoutError) {
  QvFile f = Open("[A]\nrec\n\n");
  ASSERT_EQ(FindSection(f, "A"), 1);
  EXPECT_EQ(ReadSection(3), (Records{{"rec", 0}}));
  EXPECT_EQ(ReadSection(3), Records{});
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ReaderTest, RecordLinesAreTrimmedOnBothSides) {
  Open(" \t \"a\" , \"b\"  \t\r\f\n");
  EXPECT_EQ(ReadSection(2), (Records{{"\"a\" , \"b\"", 0}}));
}

TEST_F(ReaderTest, CrlfFileReadsLikeAnLfFile) {
  QvFile f = Open("[A]\r\n\"a\",1\r\n;IAO;\"b\",2\r\n\r\n[B]\r\n");
  ASSERT_EQ(FindSection(f, "a"), 1);
  EXPECT_EQ(ReadSection(2), (Records{{"\"a\",1", 0}, {"\"b\",2", RECORD_IAO}}));
  EXPECT_EQ(Line(), "[B]\r");
}

// ---- record lines: continuations -------------------------------------------

TEST_F(ReaderTest, RecordContinuesWhateverTheNextLineBeginsWith) {
  Open("\"a\",\\\n  ;not a comment,\\\n [not a header] \\ \r\n  plain  \nnext\n");
  EXPECT_EQ(ReadSection(2),
            (Records{{"\"a\",;not a comment,[not a header] plain", 0}, {"next", 0}}));
  EXPECT_EQ(QvParseLineNumber(), 5);
}

TEST_F(ReaderTest, RecordJoinedWithACommentLine) {
  Open("a\\\n;IAO;b\n");
  EXPECT_EQ(ReadSection(1), (Records{{"a;IAO;b", 0}}));
}

TEST_F(ReaderTest, RecordJoinedWithAHeaderLine) {
  QvFile f = Open("[A]\na\\\n[B]\nb\n");
  ASSERT_EQ(FindSection(f, "A"), 1);
  EXPECT_EQ(ReadSection(2), (Records{{"a[B]", 0}, {"b", 0}}));
}

TEST_F(ReaderTest, RecordContinuedByABlankLineEndsThere) {
  Open("a\\\n   \nb\n");
  EXPECT_EQ(ReadSection(2), (Records{{"a", 0}, {"b", 0}}));
}

TEST_F(ReaderTest, OnlyTheFinalBackslashIsRemoved) {
  Open("a\\\\\nb\nc\n");  // two backslashes: one is removed, one stays inside
  EXPECT_EQ(ReadSection(2), (Records{{"a\\b", 0}, {"c", 0}}));
}

TEST_F(ReaderTest, EndOfFileDuringAContinuationIsNoError) {
  Open("\"a\",\\\n");
  EXPECT_EQ(ReadSection(2), (Records{{"\"a\",", 0}}));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ReaderTest, MarkedRecordContinuesOverCommentLines) {
  Open(";IAO;\"a\",\\\n  ;IAO;\"b\",\\  \n;xxxx3\n");
  EXPECT_EQ(ReadSection(2), (Records{{"\"a\",\"b\",3", RECORD_IAO}}));
}

TEST_F(ReaderTest, MarkedContinuationShorterThanTheMarkerAddsNothing) {
  Open(";IAO;a\\\n;b\\\n;\nc\n");
  EXPECT_EQ(ReadSection(2), (Records{{"a", RECORD_IAO}, {"c", 0}}));
}

TEST_F(ReaderTest, MarkedContinuationMustBeAComment) {
  QvFile f = Open("[A]\n;IAO;\"a\",\\\n\"b\"\n\"c\"\n");
  ASSERT_EQ(FindSection(f, "A"), 1);
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  EXPECT_EQ(ReadRecordLine(f, record, &flags, 2), 0);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0], Prefixed(3, "Continued Comment line is not commented out."));
}

TEST_F(ReaderTest, MarkedContinuationAtTheEndOfTheFileIsMalformed) {
  QvFile f = Open(";IAO;\"a\",\\\n");
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  EXPECT_EQ(ReadRecordLine(f, record, &flags, 2), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{Prefixed(1, "Continued Comment line is not commented out.")});
}

TEST_F(ReaderTest, CommentContinuationAppendsTheTextAfterTheSemicolon) {
  Open("; one\\\n   ; two  \\  \n;three  \n; four\n");
  EXPECT_EQ(ReadSection(3), (Records{{"; one two  three", RECORD_IAO}, {"; four", RECORD_IAO}}));
}

TEST_F(ReaderTest, CommentEndingInBackslashAndReturnIsNotContinued) {
  Open("; one\\\r\n; two\r\n");
  EXPECT_EQ(ReadSection(4), (Records{{"; one\\\r", RECORD_IAO}, {"; two\r", RECORD_IAO}}));
}

TEST_F(ReaderTest, ContinuedCommentLineMustBeCommentedOut) {
  QvFile f = Open("[A]\nrec\n; one\\\ntwo\n");
  ASSERT_EQ(FindSection(f, "A"), 1);
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  ASSERT_EQ(ReadRecordLine(f, record, &flags, 3), 1);
  EXPECT_EQ(ReadRecordLine(f, record, &flags, 3), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{Prefixed(4, "Continued Comment line is not commented out.")});
}

TEST_F(ReaderTest, ContinuedCommentBeforeAHeaderIsMalformedInModeFour) {
  QvFile f = Open("[A]\n; one\\\n[B]\n");
  ASSERT_EQ(FindSection(f, "A"), 1);
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  EXPECT_EQ(ReadRecordLine(f, record, &flags, 4), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{Prefixed(3, "Continued Comment line is not commented out.")});
}

TEST_F(ReaderTest, ContinuedCommentSkippedInModeTwoTakesItsCommentLinesAlong) {
  Open("; one\\\n; two\nrec\n");
  EXPECT_EQ(ReadSection(2), (Records{{"rec", 0}}));
}

TEST_F(ReaderTest, JoinedRecordLongerThanTheBufferIsReported) {
  std::string half(3000, 'a');
  QvFile f = Open(half + "\\\n" + half + "\nnext\n");
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  EXPECT_EQ(ReadRecordLine(f, record, &flags, 2), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{Prefixed(
                2, "Continued record line is too long: should not exceed 5023 characters")});
}

TEST_F(ReaderTest, JoinedRecordOfExactlyTheBufferFits) {
  std::string first(3000, 'a');
  std::string second(QV_LINE_SIZE - 1 - 3000, 'b');
  Open(first + "\\\n" + second + "\n");
  EXPECT_EQ(ReadSection(2), (Records{{first + second, 0}}));
  EXPECT_TRUE(host_.errors().empty());
}

// ---- record lines: where the file's blocks end --------------------------

// Most lines are read straight from the file's cached block; a line that
// the block does not hold whole is read the general way. Wherever a block
// ends among the lines, they read the same: the text, the marker, the
// joined continuation, the line count, and the lines that may continue.
TEST_F(ReaderTest, RecordLinesReadTheSameWhereverABlockEnds) {
  const std::string tail =
      " a1 \r\n"
      "b\\\r\n  c\r\n"
      "; skipped\r\n"
      ";IAO;d\r\n"
      "\r\n"
      "\te,\"f\"\t\n"
      "g\\ \r\n"
      "h\n"
      "x\\y\r\n"
      "[Next]\n";
  const Records tail_records = {{"a1", 0},      {"bc", 0}, {"d", RECORD_IAO},
                                {"e,\"f\"", 0}, {"gh", 0}, {"x\\y", 0}};
  const std::string pad_line = std::string(999, 'p') + "\n";
  constexpr size_t kBlock = 64 * 1024;
  constexpr int kPadLines = 64;  // 64,000 bytes: the first block ends in the tail
  for (size_t shift = 0; shift < tail.size() + 4; ++shift) {
    SCOPED_TRACE(shift);
    // The last padding line puts the block's end `shift` bytes before the
    // tail's end.
    std::string content = "[A]\n";
    for (int i = 0; i < kPadLines; ++i) content += pad_line;
    const size_t last_pad = kBlock - content.size() - tail.size() + shift - 1;
    content += std::string(last_pad, 'q') + "\n" + tail;
    QvFile f = Open(content);
    ASSERT_EQ(FindSection(f, "A"), 1);
    const uint64_t continuable = qv::ContinuableLineCount();
    Records expected(kPadLines, {std::string(999, 'p'), 0});
    expected.emplace_back(std::string(last_pad, 'q'), 0);
    expected.insert(expected.end(), tail_records.begin(), tail_records.end());
    ASSERT_EQ(ReadSection(2), expected);
    // Every line up to the header, and the header read once more.
    EXPECT_EQ(QvParseLineNumber(), 1 + kPadLines + 1 + 11);
    EXPECT_EQ(qv::ContinuableLineCount() - continuable, 2u);
    EXPECT_EQ(Line(), "[Next]");
    EXPECT_TRUE(host_.errors().empty());
  }
}

}  // namespace
