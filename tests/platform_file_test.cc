// qv::File: opening, positioned reads and writes, the read cache.

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include "platform/file.h"
#include "quorvex/base.h"
#include "support/temp_dir.h"

namespace {

using qv::File;
using qv::OpenMode;
using qvtest::TempDir;

std::string ReadAll(File* file) {
  std::string out;
  char block[1000];
  for (;;) {
    long n = file->Read(block, sizeof(block));
    EXPECT_GE(n, 0);
    if (n <= 0) break;
    out.append(block, static_cast<size_t>(n));
  }
  return out;
}

// The line reader's pattern: read a block, cut at the line feed and move
// back to just after it (one byte beyond the block when it held none).
bool ReadLine(File* file, std::string* line) {
  char buffer[QV_LINE_SIZE];
  long n = file->Read(buffer, sizeof(buffer) - 1);
  if (n <= 0) return false;
  buffer[n] = '\0';
  char* lf = strchr(buffer, '\n');
  if (lf != nullptr) *lf = '\0';
  long cut = static_cast<long>(strlen(buffer));
  file->Seek(cut - n + 1, SEEK_CUR);
  line->assign(buffer, static_cast<size_t>(cut));
  return true;
}

// The same pattern on the file's bytes read whole, as the reference.
std::vector<std::string> ReferenceLines(const std::string& path) {
  std::vector<std::string> lines;
  const std::string bytes = qvtest::ReadFileBytes(path);
  size_t pos = 0;
  while (pos < bytes.size()) {
    char buffer[QV_LINE_SIZE];
    size_t n = std::min(sizeof(buffer) - 1, bytes.size() - pos);
    memcpy(buffer, bytes.data() + pos, n);
    buffer[n] = '\0';
    char* lf = strchr(buffer, '\n');
    if (lf != nullptr) *lf = '\0';
    size_t cut = strlen(buffer);
    pos += cut + 1;
    lines.emplace_back(buffer, cut);
  }
  return lines;
}

TEST(PlatformFile, OpenMissingForReadFailsWithEnoent) {
  TempDir dir;
  int error = 0;
  EXPECT_EQ(File::Open(dir.Join("missing.txt"), OpenMode::kReadExisting, &error), nullptr);
  EXPECT_EQ(error, ENOENT);
  EXPECT_EQ(File::Open(dir.Join("missing.txt"), OpenMode::kUpdateExisting, &error), nullptr);
  EXPECT_EQ(error, ENOENT);
  EXPECT_FALSE(qvtest::PathExists(dir.Join("missing.txt")));
}

TEST(PlatformFile, OpenDirectoryForReadFails) {
  TempDir dir;
  qvtest::MakeDirs(dir.Join("folder"));
  int error = 0;
  EXPECT_EQ(File::Open(dir.Join("folder"), OpenMode::kReadExisting, &error), nullptr);
  EXPECT_EQ(error, EISDIR);
  EXPECT_EQ(File::Open(dir.Join("folder"), OpenMode::kUpdateExisting, &error), nullptr);
  EXPECT_NE(error, 0);
}

TEST(PlatformFile, CreateNewFailsWhenFileExists) {
  TempDir dir;
  int error = -1;
  File* file = File::Open(dir.Join("new.txt"), OpenMode::kCreateNew, &error);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(file->Write("abc", 3), 3u);
  delete file;
  EXPECT_EQ(File::Open(dir.Join("new.txt"), OpenMode::kCreateNew, &error), nullptr);
  EXPECT_EQ(error, EEXIST);
  // Another spelling of the same name is the same file.
  EXPECT_EQ(File::Open(dir.Join("NEW.TXT"), OpenMode::kCreateNew, &error), nullptr);
  EXPECT_EQ(error, EEXIST);
  EXPECT_EQ(dir.Read("new.txt"), "abc");
}

TEST(PlatformFile, CreateAlwaysTruncates) {
  TempDir dir;
  dir.Write("a.txt", "old content");
  File* file = File::Open(dir.Join("a.txt"), OpenMode::kCreateAlways);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->Write("new", 3), 3u);
  delete file;
  EXPECT_EQ(dir.Read("a.txt"), "new");
}

TEST(PlatformFile, UpdateExistingKeepsContent) {
  TempDir dir;
  dir.Write("a.txt", "0123456789");
  File* file = File::Open(dir.Join("a.txt"), OpenMode::kUpdateExisting);
  ASSERT_NE(file, nullptr);
  ASSERT_TRUE(file->Seek(4, SEEK_SET));
  EXPECT_EQ(file->Write("xy", 2), 2u);
  EXPECT_EQ(file->Tell(), 6);
  delete file;
  EXPECT_EQ(dir.Read("a.txt"), "0123xy6789");
}

TEST(PlatformFile, ReadOnlyFileRefusesWriters) {
  TempDir dir;
  std::string path = dir.Write("ro.txt", "keep");
  qvtest::MakeReadOnly(path);
  ASSERT_TRUE(qvtest::IsReadOnly(path));
  int error = 0;
  EXPECT_EQ(File::Open(path, OpenMode::kUpdateExisting, &error), nullptr);
  EXPECT_EQ(error, EACCES);
  EXPECT_EQ(File::Open(path, OpenMode::kCreateAlways, &error), nullptr);
  EXPECT_EQ(error, EACCES);
  File* reader = File::Open(path, OpenMode::kReadExisting);
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(ReadAll(reader), "keep");
  delete reader;
  EXPECT_EQ(qvtest::ReadFileBytes(path), "keep");
}

TEST(PlatformFile, PathResolvesWithoutRegardToCaseAndBackslashes) {
  TempDir dir;
  dir.Write("Modules/Core.MO", "module");
  File* file = File::Open(dir.path() + "\\MODULES\\core.mo", OpenMode::kReadExisting);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->path(), dir.Join("Modules/Core.MO"));
  EXPECT_EQ(ReadAll(file), "module");
  delete file;
}

TEST(PlatformFile, NewFileKeepsGivenCaseInsideExistingFolder) {
  TempDir dir;
  qvtest::MakeDirs(dir.Join("Modules"));
  File* file = File::Open(dir.path() + "\\MODULES\\NewFile.Mo", OpenMode::kCreateNew);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->path(), dir.Join("Modules/NewFile.Mo"));
  delete file;
  EXPECT_TRUE(qvtest::PathExists(dir.Join("Modules/NewFile.Mo")));
}

TEST(PlatformFile, ReadSeekTellLikeUnbufferedIo) {
  TempDir dir;
  std::string content;
  for (int i = 0; i < 100000; ++i) content += static_cast<char>('a' + i % 26);
  std::string path = dir.Write("data.bin", content);
  File* file = File::Open(path, OpenMode::kReadExisting);
  ASSERT_NE(file, nullptr);
  char buffer[300];
  EXPECT_EQ(file->Read(buffer, 10), 10);
  EXPECT_EQ(std::string(buffer, 10), content.substr(0, 10));
  EXPECT_EQ(file->Tell(), 10);
  ASSERT_TRUE(file->Seek(-5, SEEK_CUR));
  EXPECT_EQ(file->Tell(), 5);
  EXPECT_EQ(file->Read(buffer, 20), 20);
  EXPECT_EQ(std::string(buffer, 20), content.substr(5, 20));
  // Across the end of the first cached block.
  ASSERT_TRUE(file->Seek(65530, SEEK_SET));
  EXPECT_EQ(file->Read(buffer, 300), 300);
  EXPECT_EQ(std::string(buffer, 300), content.substr(65530, 300));
  // Near the end: a short count, then 0.
  ASSERT_TRUE(file->Seek(-7, SEEK_END));
  EXPECT_EQ(file->Tell(), 99993);
  EXPECT_EQ(file->Read(buffer, 300), 7);
  EXPECT_EQ(std::string(buffer, 7), content.substr(99993));
  EXPECT_EQ(file->Read(buffer, 300), 0);
  EXPECT_EQ(file->Tell(), 100000);
  delete file;
}

TEST(PlatformFile, SeekBeyondEndAllowedNegativeRefused) {
  TempDir dir;
  std::string path = dir.Write("short.txt", "abc");
  File* file = File::Open(path, OpenMode::kUpdateExisting);
  ASSERT_NE(file, nullptr);
  ASSERT_TRUE(file->Seek(10, SEEK_SET));
  EXPECT_EQ(file->Tell(), 10);
  char buffer[4];
  EXPECT_EQ(file->Read(buffer, sizeof(buffer)), 0);
  EXPECT_EQ(file->Tell(), 10);
  EXPECT_FALSE(file->Seek(-11, SEEK_CUR));
  EXPECT_EQ(file->Tell(), 10);
  EXPECT_FALSE(file->Seek(-4, SEEK_END));
  EXPECT_FALSE(file->Seek(-1, SEEK_SET));
  EXPECT_EQ(file->Tell(), 10);
  // Writing there fills the gap with zero bytes.
  EXPECT_EQ(file->Write("Z", 1), 1u);
  delete file;
  EXPECT_EQ(qvtest::ReadFileBytes(path), std::string("abc\0\0\0\0\0\0\0Z", 11));
}

TEST(PlatformFile, LineReadingPatternMatchesUnbufferedReference) {
  TempDir dir;
  std::string content;
  for (int i = 0; i < 4000; ++i) {
    content += "line " + std::to_string(i) + std::string(static_cast<size_t>(i % 97), 'x') + "\n";
  }
  content += std::string(6000, 'L') + "\n";  // longer than one buffer
  content += "last line without feed";
  std::string path = dir.Write("profile.txt", content);
  std::vector<std::string> expected = ReferenceLines(path);
  File* file = File::Open(path, OpenMode::kReadExisting);
  ASSERT_NE(file, nullptr);
  std::vector<std::string> lines;
  std::string line;
  while (ReadLine(file, &line)) lines.push_back(line);
  EXPECT_EQ(lines, expected);
  EXPECT_EQ(lines.size(), 4003u);
  // One system call per cached block, not per line.
  uint64_t blocks = content.size() / (64 * 1024) + 1;
  EXPECT_LE(file->read_calls(), 2 * blocks + 2);
  delete file;
}

TEST(PlatformFile, FullLineLosesTheFollowingByte) {
  TempDir dir;
  std::string content = std::string(5023, 'a') + "Xrest\nnext\n";
  std::string path = dir.Write("long.txt", content);
  File* file = File::Open(path, OpenMode::kReadExisting);
  ASSERT_NE(file, nullptr);
  std::string line;
  ASSERT_TRUE(ReadLine(file, &line));
  EXPECT_EQ(line, std::string(5023, 'a'));
  EXPECT_EQ(file->Tell(), 5024);
  ASSERT_TRUE(ReadLine(file, &line));
  EXPECT_EQ(line, "rest");
  ASSERT_TRUE(ReadLine(file, &line));
  EXPECT_EQ(line, "next");
  EXPECT_FALSE(ReadLine(file, &line));
  delete file;
}

TEST(PlatformFile, SmallFileIsReadWithOneCall) {
  TempDir dir;
  std::string content;
  for (int i = 0; i < 500; ++i) content += "record " + std::to_string(i) + "\n";
  std::string path = dir.Write("small.txt", content);
  File* file = File::Open(path, OpenMode::kReadExisting);
  ASSERT_NE(file, nullptr);
  std::string line;
  int count = 0;
  while (ReadLine(file, &line)) ++count;
  EXPECT_EQ(count, 500);
  EXPECT_EQ(file->read_calls(), 1u);
  // A rewind and a second pass cost nothing either.
  ASSERT_TRUE(file->Seek(0, SEEK_SET));
  while (ReadLine(file, &line)) ++count;
  EXPECT_EQ(count, 1000);
  EXPECT_EQ(file->read_calls(), 1u);
  delete file;
}

TEST(PlatformFile, WriteIsSeenByLaterReads) {
  TempDir dir;
  std::string path = dir.Write("rw.txt", "0123456789");
  File* file = File::Open(path, OpenMode::kUpdateExisting);
  ASSERT_NE(file, nullptr);
  char buffer[32];
  EXPECT_EQ(file->Read(buffer, 10), 10);  // the whole file is cached now
  ASSERT_TRUE(file->Seek(2, SEEK_SET));
  EXPECT_EQ(file->Write("AB", 2), 2u);
  EXPECT_EQ(file->Tell(), 4);
  ASSERT_TRUE(file->Seek(10, SEEK_SET));
  EXPECT_EQ(file->Write("tail", 4), 4u);  // past the cached end of the file
  ASSERT_TRUE(file->Seek(0, SEEK_SET));
  EXPECT_EQ(file->Read(buffer, sizeof(buffer)), 14);
  EXPECT_EQ(std::string(buffer, 14), "01AB456789tail");
  delete file;
  EXPECT_EQ(qvtest::ReadFileBytes(path), "01AB456789tail");
}

TEST(PlatformFile, LargeReadBypassesCache) {
  TempDir dir;
  std::string content(300000, '\0');
  for (size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 7);
  std::string path = dir.Write("big.bin", content);
  File* file = File::Open(path, OpenMode::kReadExisting);
  ASSERT_NE(file, nullptr);
  ASSERT_TRUE(file->Seek(3, SEEK_SET));
  std::vector<char> buffer(400000);
  EXPECT_EQ(file->Read(buffer.data(), buffer.size()), 299997);
  EXPECT_EQ(std::string(buffer.data(), 299997), content.substr(3));
  EXPECT_EQ(file->Tell(), 300000);
  delete file;
}

TEST(PlatformFile, FlushSucceeds) {
  TempDir dir;
  File* file = File::Open(dir.Join("f.txt"), OpenMode::kCreateAlways);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(file->Write("x", 1), 1u);
  EXPECT_TRUE(file->Flush());
  delete file;
  EXPECT_EQ(dir.Read("f.txt"), "x");
}

TEST(PlatformFile, HandleRoundTrip) {
  TempDir dir;
  File* file = File::Open(dir.Join("h.txt"), OpenMode::kCreateAlways);
  ASSERT_NE(file, nullptr);
  EXPECT_EQ(File::FromHandle(file->handle()), file);
  EXPECT_EQ(File::FromHandle(QV_NO_FILE), nullptr);
  EXPECT_EQ(File::FromHandle(QV_FAILED_FILE), nullptr);
  delete file;
}

TEST(FileApi, OpenForReadAndClose) {
  TempDir dir;
  std::string path = dir.Write("Api.txt", "text");
  EXPECT_EQ(QvOpenFileForRead(dir.Join("missing").c_str()), QV_NO_FILE);
  EXPECT_EQ(QvOpenFileForRead(nullptr), QV_NO_FILE);
  QvFile file = QvOpenFileForRead((dir.path() + "\\api.TXT").c_str());
  ASSERT_NE(file, QV_NO_FILE);
  EXPECT_EQ(QvFileIsOpen(file), 1);
  char buffer[8];
  EXPECT_EQ(File::FromHandle(file)->Read(buffer, sizeof(buffer)), 4);
  QvCloseFile(file);
  EXPECT_EQ(QvFileIsOpen(QV_NO_FILE), 0);
  EXPECT_EQ(QvFileIsOpen(QV_FAILED_FILE), 0);
  QvCloseFile(QV_NO_FILE);
  QvCloseFile(QV_FAILED_FILE);
}

}  // namespace
