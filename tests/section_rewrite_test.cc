// Rewriting one section of a profile file and putting the result in place
// of the profile file; a temporary file keeps the new content when that
// fails.

#include "core/section_rewrite.h"

#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/environment.h"
#include "platform/fs.h"
#include "quorvex/quorvex.h"
#include "support/child_mode.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::PathExists;
using qvtest::ReadFileBytes;

const char kWriteOverMessage[] =
    "File %s cannot be written over, you may not have it checked out, and/or the attributes of "
    "the file may be set to Read-Only.";

const char kModule[] =
    "\n"
    "[SourceSafe]\r\n"
    "$Header: /Profile/modules/TETE80.MO 3 $\r\n"
    "\r\n"
    "[Module]\r\n"
    "\"Text Editor\",\"8.0\"\n"
    "[Languages]\r\n"
    "\"US\",Y\r\n"
    "; kept only as a record\r\n"
    ";IAO;\"DE\",N\r\n"
    "\"FR\",Y\n"
    "\r\n"
    "[File Groups]\n"
    "\"Core\"\r\n"
    "[Module Locations]\r\n"
    "\"Lodestar\",\"\"";

// Points the engine's temporary folder elsewhere for the rest of the test
// (the scripted host puts the old one back): TMPDIR on POSIX, TMP on
// Windows, where the system's temporary folder comes from.
void PointTempFolderAt(const std::string& folder) {
  qv::SetEnvironmentValue("TMPDIR", folder.c_str());
#ifdef _WIN32
  qv::SetEnvironmentValue("TMP", folder.c_str());
#endif
}

#ifdef _WIN32
// The process that crashes in the middle of a rewrite: PATH. It ends as a
// failed assertion ends a program, by abort, whose exit code is 3 there.
int CrashInARewrite(const std::vector<std::string>& args) {
  if (args.size() != 1) return 2;
  const std::string& path = args[0];
  qv::SectionRewrite rewrite;
  QvFile in = QvOpenFileForRead(path.c_str());
  if (!rewrite.Begin(in, path.c_str(), "Languages")) return 3;
  std::string code = "NL";
  WriteField(code.data(), rewrite.output(), 0);
  WriteFlagField(1, rewrite.output(), FO_END_RECORD);
  CopyTailAfterSection(in, rewrite.output(), "Languages");
  abort();
}

const qvtest::ChildMode kCrashInARewrite("crash-in-a-rewrite", CrashInARewrite);
#endif

class SectionRewriteTest : public ::testing::Test {
 protected:
  std::string TempFolder() { return host_.scratch().Join("tmp"); }

  // The engine's temporary files (the test's own folders live there too).
  std::vector<std::string> TempFiles() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TempFolder())) {
      std::string name = entry.path().filename().string();
      if (name.starts_with("QUORVEX.")) names.push_back(name);
    }
    return names;
  }

  static std::vector<std::string> FolderEntries(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  std::string Message(const std::string& path) const {
    char text[QV_LINE_SIZE];
    snprintf(text, sizeof text, kWriteOverMessage, path.c_str());
    return text;
  }

  // The Languages records as a family writes them: each line's flags word
  // as the first field's options, the last field ending the record.
  static void WriteLanguage(QvFile out, const char* code, uint32_t flag, uint32_t flags) {
    std::string text = code;
    WriteField(text.data(), out, flags);
    WriteFlagField(flag, out, FO_END_RECORD);
  }

  qvtest::ScriptedHost host_;
  qvtest::TempDir dir_;
};

TEST_F(SectionRewriteTest, RewritesOneSectionAndKeepsEveryOtherByte) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
  SetParseFile(path.c_str());
  {
    qv::SectionRewrite rewrite;
    ASSERT_TRUE(rewrite.Begin(QvOpenFileForRead(path.c_str()), path.c_str(), "Languages"));
    WriteLanguage(rewrite.output(), "NL", 1, 0);
    WriteLanguage(rewrite.output(), "DE", 0, RECORD_IAO);
    EXPECT_TRUE(rewrite.Finish());
  }
  EXPECT_EQ(ReadFileBytes(path),
            "\n"
            "[SourceSafe]\r\n"
            "$Header: /Profile/modules/TETE80.MO 3 $\r\n"
            "\r\n"
            "[Module]\r\n"
            "\"Text Editor\",\"8.0\"\n"
            "[Languages]\r\n"
            "\"NL\",Y\r\n"
            ";IAO;\"DE\",N\r\n"
            "[File Groups]\n"
            "\"Core\"\r\n"
            "[Module Locations]\r\n"
            "\"Lodestar\",\"\"\n");
  EXPECT_TRUE(TempFiles().empty());
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SectionRewriteTest, RecordsReadAndWrittenBackLoseOnlyComments) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
  SetParseFile(path.c_str());
  QvFile in = QvOpenFileForRead(path.c_str());
  ASSERT_EQ(FindSection(in, "Languages"), 1);
  struct Language {
    std::string code;
    uint32_t flag;
    uint32_t flags;
  };
  std::vector<Language> languages;
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  while (ReadRecordLine(in, record, &flags, COMMENT_MODE_RECORDS) == 1) {
    char* cursor = record;
    char code[3];
    uint32_t flag = 0;
    ASSERT_EQ(ParseQuotedString(&cursor, code, 0, sizeof code), 1);
    ASSERT_EQ(ParseFlag(&cursor, &flag, 0), 1);
    languages.push_back({code, flag, flags});
  }
  ASSERT_EQ(languages.size(), 3u);

  qv::SectionRewrite rewrite;
  ASSERT_TRUE(rewrite.Begin(in, path.c_str(), "LANGUAGES"));
  for (const Language& l : languages) {
    WriteLanguage(rewrite.output(), l.code.c_str(), l.flag, l.flags);
  }
  ASSERT_TRUE(rewrite.Finish());
  std::string expected = kModule;
  expected.replace(expected.find("; kept"), 25, "");
  expected.replace(expected.find("\"FR\",Y\n\r\n"), 9, "\"FR\",Y\r\n");
  EXPECT_EQ(ReadFileBytes(path), expected + "\n");
}

TEST_F(SectionRewriteTest, MissingSectionIsAppended) {
  std::string path = dir_.Write("ADS/adlist.ad", "\n[SourceSafe]\n$Header$\n");
  qv::SectionRewrite rewrite;
  ASSERT_TRUE(rewrite.Begin(QvOpenFileForRead(path.c_str()), path.c_str(), "Ads"));
  WriteUnsignedField(1, rewrite.output(), 0);
  char name[] = "First";
  WriteField(name, rewrite.output(), FO_END_RECORD);
  ASSERT_TRUE(rewrite.Finish());
  EXPECT_EQ(ReadFileBytes(path), "\n[SourceSafe]\n$Header$\n[Ads]\n1,\"First\"\r\n");
}

TEST_F(SectionRewriteTest, ReadOnlyFileIsNotReplaced) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
  ASSERT_TRUE(qv::SetReadOnly(path, true));
  qv::SectionRewrite rewrite;
  ASSERT_TRUE(rewrite.Begin(QvOpenFileForRead(path.c_str()), path.c_str(), "Languages"));
  WriteLanguage(rewrite.output(), "NL", 1, 0);
  SetParseFile("elsewhere.mo");
  EXPECT_FALSE(rewrite.Finish());
  EXPECT_EQ(ReadFileBytes(path), kModule);
  EXPECT_TRUE(qv::IsReadOnly(path));
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0], Message(path));
  // The temporary file is left in place, holding the new content.
  ASSERT_TRUE(PathExists(rewrite.temporary_path()));
  EXPECT_NE(ReadFileBytes(rewrite.temporary_path()).find("\"NL\",Y\r\n[File Groups]"),
            std::string::npos);
  EXPECT_EQ(TempFiles(), std::vector<std::string>{"QUORVEX.000"});
}

TEST_F(SectionRewriteTest, CrashBeforeTheReplacementLeavesTheOldFile) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
#ifdef _WIN32
  // Windows has no fork: the crashing process is this program in a child
  // mode, and its end by abort is its exit code (3) rather than a signal.
  qvtest::Child child("crash-in-a-rewrite", {path});
  ASSERT_EQ(child.Wait(), 3) << child.err();
#else
  pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    struct rlimit no_core = {0, 0};
    setrlimit(RLIMIT_CORE, &no_core);
    qv::SectionRewrite rewrite;
    QvFile in = QvOpenFileForRead(path.c_str());
    if (!rewrite.Begin(in, path.c_str(), "Languages")) _exit(3);
    WriteLanguage(rewrite.output(), "NL", 1, 0);
    CopyTailAfterSection(in, rewrite.output(), "Languages");
    abort();
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), SIGABRT);
#endif
  EXPECT_EQ(ReadFileBytes(path), kModule);
  // The new content was still being put together in memory: nothing
  // reached the disk, neither beside the profile file nor in the
  // temporary folder.
  EXPECT_TRUE(TempFiles().empty());
  EXPECT_EQ(FolderEntries(dir_.Join("modules")), std::vector<std::string>{"TETE80.MO"});
}

TEST_F(SectionRewriteTest, AbandonedRewriteLeavesNoFile) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
  {
    qv::SectionRewrite rewrite;
    ASSERT_TRUE(rewrite.Begin(QvOpenFileForRead(path.c_str()), path.c_str(), "Languages"));
    WriteLanguage(rewrite.output(), "NL", 1, 0);
  }
  EXPECT_TRUE(TempFiles().empty());
  EXPECT_EQ(FolderEntries(dir_.Join("modules")), std::vector<std::string>{"TETE80.MO"});
  EXPECT_EQ(ReadFileBytes(path), kModule);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SectionRewriteTest, BeginWithoutAnOpenFileFails) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
  qv::SectionRewrite rewrite;
  EXPECT_FALSE(rewrite.Begin(QV_NO_FILE, path.c_str(), "Languages"));
  EXPECT_FALSE(rewrite.Finish());
  EXPECT_EQ(ReadFileBytes(path), kModule);
  EXPECT_TRUE(TempFiles().empty());
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0], "Cannot open input file " + path + ".");
}

TEST_F(SectionRewriteTest, ASuccessfulRewriteNeedsNoTemporaryFolder) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
  PointTempFolderAt(dir_.Join("no/such/folder"));
  qv::SectionRewrite rewrite;
  ASSERT_TRUE(rewrite.Begin(QvOpenFileForRead(path.c_str()), path.c_str(), "Languages"));
  WriteLanguage(rewrite.output(), "NL", 1, 0);
  EXPECT_TRUE(rewrite.Finish());
  EXPECT_NE(ReadFileBytes(path).find("[Languages]\r\n\"NL\",Y\r\n[File Groups]"),
            std::string::npos);
  EXPECT_EQ(rewrite.temporary_path(), "");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SectionRewriteTest, AFailedRewriteWithoutATemporaryFileSaysBoth) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
  ASSERT_TRUE(qv::SetReadOnly(path, true));
  PointTempFolderAt(dir_.Join("no/such/folder"));
  qv::SectionRewrite rewrite;
  ASSERT_TRUE(rewrite.Begin(QvOpenFileForRead(path.c_str()), path.c_str(), "Languages"));
  WriteLanguage(rewrite.output(), "NL", 1, 0);
  EXPECT_FALSE(rewrite.Finish());
  EXPECT_EQ(ReadFileBytes(path), kModule);
  EXPECT_EQ(rewrite.temporary_path(), "");
  ASSERT_EQ(host_.errors().size(), 2u);
  EXPECT_EQ(host_.errors()[0], "Cannot create a temporary file to rewrite " + path + ".");
  EXPECT_EQ(host_.errors()[1], Message(path));
}

TEST_F(SectionRewriteTest, ABlockGoesWhereItWasWritten) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
  qv::SectionRewrite rewrite;
  QvFile in = QvOpenFileForRead(path.c_str());
  ASSERT_TRUE(rewrite.Begin(in, path.c_str(), "Languages"));
  WriteLanguage(rewrite.output(), "NL", 1, 0);
  const std::string block = "\"SV\",N\r\n";
  rewrite.WriteBlock(block);
  WriteLanguage(rewrite.output(), "IT", 1, 0);
  ASSERT_TRUE(rewrite.Finish());
  EXPECT_NE(
      ReadFileBytes(path).find("[Languages]\r\n\"NL\",Y\r\n\"SV\",N\r\n\"IT\",Y\r\n[File Groups]"),
      std::string::npos);
}

TEST_F(SectionRewriteTest, FinishOnlyOnce) {
  std::string path = dir_.Write("modules/TETE80.MO", kModule);
  qv::SectionRewrite rewrite;
  ASSERT_TRUE(rewrite.Begin(QvOpenFileForRead(path.c_str()), path.c_str(), "Languages"));
  EXPECT_TRUE(rewrite.Finish());
  std::string after = ReadFileBytes(path);
  EXPECT_FALSE(rewrite.Finish());
  EXPECT_EQ(ReadFileBytes(path), after);
}

TEST_F(SectionRewriteTest, ReplaceProfileFileDeletesTheTemporaryFile) {
  std::string target = dir_.Write("ADS/adlist.ad", "old");
  std::string temp = dir_.Write("QUORVEX.000", "new content\r\n");
  EXPECT_EQ(QvReplaceProfileFile(temp.c_str(), target.c_str()), 1);
  EXPECT_EQ(ReadFileBytes(target), "new content\r\n");
  EXPECT_FALSE(PathExists(temp));
}

TEST_F(SectionRewriteTest, ReplaceProfileFileRefusesAReadOnlyFile) {
  std::string target = dir_.Write("ADS/adlist.ad", "old");
  std::string temp = dir_.Write("QUORVEX.000", "new");
  ASSERT_TRUE(qv::SetReadOnly(target, true));
  EXPECT_EQ(QvReplaceProfileFile(temp.c_str(), target.c_str()), 0);
  EXPECT_EQ(ReadFileBytes(target), "old");
  EXPECT_EQ(ReadFileBytes(temp), "new");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SectionRewriteTest, ReplaceProfileFileAcceptsBackslashPaths) {
  std::string target = dir_.Write("ADS/adlist.ad", "old");
  std::string temp = dir_.Write("QUORVEX.001", "new");
  std::string profile_style = dir_.path() + "\\ads\\ADLIST.AD";
  EXPECT_EQ(QvReplaceProfileFile(temp.c_str(), profile_style.c_str()), 1);
  EXPECT_EQ(ReadFileBytes(target), "new");
}

}  // namespace
