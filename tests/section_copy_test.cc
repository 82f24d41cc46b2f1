// Copying a profile file around one section: the head through the section's
// header, the tail after the old section.

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "platform/file.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::ReadFileBytes;

class SectionCopyTest : public ::testing::Test {
 protected:
  // Copies the input file with copy(input, output) and returns the output.
  std::string Copied(const std::string& content, const std::function<int(QvFile, QvFile)>& copy) {
    std::string in_path = dir_.Write("in" + std::to_string(files_) + ".mo", content);
    std::string out_path = dir_.Join("out" + std::to_string(files_++) + ".txt");
    QvFile in = QvOpenFileForRead(in_path.c_str());
    EXPECT_TRUE(QvFileIsOpen(in));
    qv::File* out = qv::File::Open(out_path, qv::OpenMode::kCreateAlways);
    EXPECT_NE(out, nullptr);
    SetParseFile(in_path.c_str());
    EXPECT_EQ(copy(in, out->handle()), 1);
    QvCloseFile(in);
    delete out;
    EXPECT_EQ(ReadFileBytes(in_path), content);  // the input is only read
    return ReadFileBytes(out_path);
  }

  std::string Head(const std::string& content, const char* section) {
    return Copied(content,
                  [&](QvFile in, QvFile out) { return CopyHeadThroughSection(in, out, section); });
  }
  std::string Tail(const std::string& content, const char* section) {
    return Copied(content,
                  [&](QvFile in, QvFile out) { return CopyTailAfterSection(in, out, section); });
  }
  // Head, the given new section content, tail: what a family's rewrite makes.
  std::string Rewritten(const std::string& content, const char* section,
                        const std::string& records) {
    return Copied(content, [&](QvFile in, QvFile out) {
      CopyHeadThroughSection(in, out, section);
      qv::File::FromHandle(out)->Write(records.data(), records.size());
      return CopyTailAfterSection(in, out, section);
    });
  }

  qvtest::ScriptedHost host_;
  qvtest::TempDir dir_;
  int files_ = 0;
};

const char kMixed[] =
    "\r\n"
    "[SourceSafe]\r\n"
    "$Header$\n"
    "\n"
    "[Module]\r\n"
    "\"Text Editor\",\"8.0\"\r\n"
    "[Languages]\n"
    "\"US\"\n"
    "; a comment\n"
    ";IAO;\"DE\"\r\n"
    "\n"
    "\"FR\",\\\n"
    "  \"continued\"\n"
    "  [File Groups]   trailing words\r\n"
    "\"Core\",1\r\n"
    "[Created Files]\n"
    "\"last\"";

TEST_F(SectionCopyTest, HeadEndsWithTheSectionHeaderAndKeepsLineEnds) {
  EXPECT_EQ(Head(kMixed, "Module"), "\r\n[SourceSafe]\r\n$Header$\n\n[Module]\r\n");
  EXPECT_EQ(Head(kMixed, "languages"),
            "\r\n[SourceSafe]\r\n$Header$\n\n[Module]\r\n\"Text Editor\",\"8.0\"\r\n[Languages]\n");
}

TEST_F(SectionCopyTest, HeaderMayStandAfterBlanksAndBeFollowedByText) {
  std::string head = Head(kMixed, "FILE GROUPS");
  EXPECT_TRUE(head.ends_with("\"continued\"\n  [File Groups]   trailing words\r\n"));
  EXPECT_EQ(head, std::string(kMixed).substr(0, head.size()));
}

TEST_F(SectionCopyTest, MissingSectionIsAppendedAfterTheLastLine) {
  // The last line had no line feed: it gains one before the new header.
  EXPECT_EQ(Head(kMixed, "Module Locations"), std::string(kMixed) + "\n[Module Locations]\n");
  EXPECT_EQ(Head("[A]\r\nx\r\n", "B"), "[A]\r\nx\r\n[B]\n");
  EXPECT_EQ(Head("", "Ads"), "[Ads]\n");
}

TEST_F(SectionCopyTest, TailOfAMissingSectionAddsNothing) {
  EXPECT_EQ(Tail(kMixed, "Module Locations"), "");
  EXPECT_EQ(Tail("", "Ads"), "");
}

TEST_F(SectionCopyTest, TailStartsAtTheNextHeader) {
  EXPECT_EQ(Tail(kMixed, "Languages"),
            "  [File Groups]   trailing words\r\n\"Core\",1\r\n[Created Files]\n\"last\"\n");
  std::string all = kMixed;
  EXPECT_EQ(Tail(kMixed, "module"), all.substr(all.find("[Languages]")) + "\n");
}

TEST_F(SectionCopyTest, TailOfTheLastSectionIsEmpty) {
  EXPECT_EQ(Tail(kMixed, "Created Files"), "");
}

TEST_F(SectionCopyTest, TailWithoutSectionNameSkipsThePreamble) {
  EXPECT_EQ(Tail("\"loose\"\n;note\n[First]\r\nx\n", ""), "[First]\r\nx\n");
}

TEST_F(SectionCopyTest, RewriteReplacesOnlyTheSectionBody) {
  std::string out = Rewritten(kMixed, "Languages", "\"NL\"\r\n;IAO;\"DE\"\r\n");
  EXPECT_EQ(out,
            "\r\n[SourceSafe]\r\n$Header$\n\n[Module]\r\n\"Text Editor\",\"8.0\"\r\n[Languages]\n"
            "\"NL\"\r\n;IAO;\"DE\"\r\n"
            "  [File Groups]   trailing words\r\n\"Core\",1\r\n[Created Files]\n\"last\"\n");
}

TEST_F(SectionCopyTest, RewriteOfAMissingSectionAppendsIt) {
  EXPECT_EQ(Rewritten("[A]\r\nx\r\n", "Ads", "1,\"one\"\r\n"), "[A]\r\nx\r\n[Ads]\n1,\"one\"\r\n");
}

TEST_F(SectionCopyTest, RewriteOfAnEmptySectionKeepsEverythingElse) {
  std::string content = "[A]\r\n[B]\r\n\"b\"\r\n";
  EXPECT_EQ(Rewritten(content, "A", ""), content);
}

TEST_F(SectionCopyTest, RewriteOfTheLastSectionDropsItsOldRecords) {
  EXPECT_EQ(Rewritten("[A]\nkeep\n[B]\nold1\nold2", "b", "new\r\n"), "[A]\nkeep\n[B]\nnew\r\n");
}

TEST_F(SectionCopyTest, LongLineLosesOneByteAsTheReaderDoes) {
  std::string line(6000, 'a');
  line[5023] = 'X';  // the byte after a full buffer
  std::string head = Head("[A]\n" + line + "\n", "Z");
  EXPECT_EQ(head, "[A]\n" + std::string(5023, 'a') + "\n" + std::string(976, 'a') + "\n[Z]\n");
}

TEST_F(SectionCopyTest, CopiersNeverFail) {
  std::string path = dir_.Write("x.mo", "[A]\n");
  QvFile in = QvOpenFileForRead(path.c_str());
  EXPECT_EQ(CopyHeadThroughSection(in, QV_NO_FILE, "A"), 1);
  EXPECT_EQ(CopyTailAfterSection(in, QV_NO_FILE, "A"), 1);
  EXPECT_EQ(CopyHeadThroughSection(QV_NO_FILE, QV_NO_FILE, "A"), 1);
  EXPECT_EQ(CopyTailAfterSection(QV_NO_FILE, QV_NO_FILE, "A"), 1);
  QvCloseFile(in);
  EXPECT_TRUE(host_.errors().empty());
}

}  // namespace
