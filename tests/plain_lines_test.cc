// Passing over an old section's plain lines in the file's cached block must
// leave the reader exactly where reading every line would: the same
// position, the same line count, the same cut lines and reports.

#include "core/plain_lines.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "core/report_capture.h"
#include "core/state.h"
#include "platform/file.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"

namespace {

// Where the reader stands after passing over a section as a rewrite does.
struct Outcome {
  int64_t position = 0;
  int lines = 0;
  uint64_t cuts = 0;
  std::vector<std::string> comments;  // the lines the reader returned
  std::vector<std::string> errors;
  bool operator==(const Outcome&) const = default;
};

class PlainLinesTest : public ::testing::Test {
 protected:
  Outcome Pass(const std::string& content, bool fast) {
    std::string path = host_.scratch().Write("section.txt", content);
    qv::File* file = qv::File::Open(path, qv::OpenMode::kReadExisting);
    EXPECT_NE(file, nullptr);
    SetParseFile("section.txt");
    host_.Clear();
    const int lines_before = qv::State().parse_line;
    const uint64_t cuts_before = qv::CutLineCount();
    Outcome outcome;
    char record[QV_LINE_SIZE];
    uint32_t flags = 0;
    for (;;) {
      if (fast) qv::SkipPlainLines(file->handle());
      if (ReadRecordLine(file->handle(), record, &flags, COMMENT_MODE_SKIP) == 0) break;
      outcome.comments.push_back(record);
    }
    outcome.position = file->Tell();
    outcome.lines = qv::State().parse_line - lines_before;
    outcome.cuts = qv::CutLineCount() - cuts_before;
    outcome.errors = host_.errors();
    delete file;
    return outcome;
  }

  void ExpectAlike(const std::string& content) {
    Outcome slow = Pass(content, false);
    Outcome fast = Pass(content, true);
    EXPECT_EQ(fast.position, slow.position);
    EXPECT_EQ(fast.lines, slow.lines);
    EXPECT_EQ(fast.cuts, slow.cuts);
    EXPECT_EQ(fast.comments, slow.comments);
    EXPECT_EQ(fast.errors, slow.errors);
  }

  qvtest::ScriptedHost host_;
};

TEST_F(PlainLinesTest, StopsAtTheNextHeaderAsTheReaderDoes) {
  ExpectAlike("1,\"a\"\r\n2,\"b\"\r\n  [Next]\r\n3,\"c\"\r\n");
  Outcome fast = Pass("1,\"a\"\r\n2,\"b\"\r\n  [Next]\r\n3,\"c\"\r\n", true);
  EXPECT_EQ(fast.position, 14);  // at the header, which the tail copy keeps
  EXPECT_EQ(fast.lines, 3);
}

TEST_F(PlainLinesTest, CommentsBlankLinesAndTheEndOfTheFile) {
  ExpectAlike("1\r\n\r\n   \t\r\n;IAO;2\r\n; note\\\r\n; more\r\n3\r\n");
  ExpectAlike("1\r\n;broken\\\r\nnot a comment\r\n4\r\n[Next]\r\n");
  ExpectAlike("1\r\n2");  // no line feed at the end
  ExpectAlike("");
  ExpectAlike("\n\n\n");
  ExpectAlike("a\\\r\n[Next]\r\n");  // a plain line's backslash joins nothing here
}

TEST_F(PlainLinesTest, CutLinesAndNulBytesAreLeftToTheReader) {
  ExpectAlike("1\r\n" + std::string(6000, 'x') + "\r\n[Next]\r\n");
  ExpectAlike(std::string(QV_LINE_SIZE - 2, 'y') + "\n" + std::string(QV_LINE_SIZE - 1, 'z') +
              "\n[Next]\n");
  ExpectAlike("1\r\nab" + std::string(1, '\0') + "[x]\r\n2\r\n[Next]\r\n");
  ExpectAlike(std::string(5000, 'q') + std::string(1, '\0') + "\n;c\n");
}

TEST_F(PlainLinesTest, LinesAcrossTheFileBlocks) {
  // Lines of every length around the 64 KB block size, and a header that
  // starts a block.
  std::string content;
  for (int i = 0; content.size() < 200 * 1024; ++i) {
    content += std::string(static_cast<size_t>(i % 97), 'r') + "\r\n";
  }
  ExpectAlike(content + "[Next]\r\n");
  std::string aligned(64 * 1024 - 1, 's');
  ExpectAlike(aligned + "\n[Next]\n");
  ExpectAlike(aligned + "\n;comment\n2\n");
}

TEST_F(PlainLinesTest, RandomSections) {
  std::mt19937 random(20261123);
  const std::vector<std::string> pieces = {"1,\"a\"",
                                           "",
                                           " ",
                                           "\t",
                                           "[H]",
                                           " [H]",
                                           ";c",
                                           ";IAO;1",
                                           "\\",
                                           "x",
                                           "\r",
                                           std::string(1, '\0'),
                                           std::string(700, 'w')};
  for (int round = 0; round < 300; ++round) {
    std::string content;
    const int lines = static_cast<int>(random() % 40);
    for (int i = 0; i < lines; ++i) {
      const int parts = 1 + static_cast<int>(random() % 3);
      for (int p = 0; p < parts; ++p) content += pieces[random() % pieces.size()];
      content += random() % 4 == 0 ? "\n" : "\r\n";
    }
    SCOPED_TRACE(round);
    ExpectAlike(content);
  }
}

}  // namespace
