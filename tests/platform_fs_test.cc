// File-system services: path resolution, searches, attributes, replacement.

#include <dirent.h>
#include <gtest/gtest.h>
#ifdef _WIN32
#include "platform/win32.h"
#else
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/fs.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

namespace {

using qvtest::ScopedEnv;
using qvtest::TempDir;

#ifdef _WIN32
// The read-only and hidden attributes of a file (the system may add others,
// such as the archive attribute, as it pleases).
DWORD AttributesOf(const std::string& path) {
  DWORD a = GetFileAttributesA(path.c_str());
  EXPECT_NE(a, INVALID_FILE_ATTRIBUTES) << path;
  return a & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
}
#else
mode_t ModeOf(const std::string& path) {
  struct stat st;
  EXPECT_EQ(stat(path.c_str(), &st), 0) << path;
  return st.st_mode & 07777;
}
#endif

std::vector<std::string> Names(const std::vector<qv::DirEntry>& entries) {
  std::vector<std::string> names;
  for (const qv::DirEntry& e : entries) names.push_back(e.name);
  return names;
}

std::vector<std::string> Listing(const std::string& folder) {
  std::vector<std::string> names;
  DIR* d = opendir(folder.c_str());
  EXPECT_NE(d, nullptr);
  while (struct dirent* e = readdir(d)) {
    std::string name = e->d_name;
    if (name != "." && name != "..") names.push_back(name);
  }
  closedir(d);
  std::sort(names.begin(), names.end());
  return names;
}

TEST(ResolvePath, ExactPathIsUnchanged) {
  TempDir dir;
  dir.Write("Profile/ADS/adlist.ad", "x");
  EXPECT_EQ(qv::ResolvePath(dir.Join("Profile/ADS/adlist.ad")), dir.Join("Profile/ADS/adlist.ad"));
}

TEST(ResolvePath, ComponentsResolveWithoutRegardToCase) {
  TempDir dir;
  dir.Write("Profile/ADS/adlist.ad", "x");
  EXPECT_EQ(qv::ResolvePath(dir.path() + "\\profile\\ads\\ADLIST.AD"),
            dir.Join("Profile/ADS/adlist.ad"));
  EXPECT_EQ(qv::ResolvePath(dir.path() + "/PROFILE\\Ads/AdList.Ad"),
            dir.Join("Profile/ADS/adlist.ad"));
}

TEST(ResolvePath, MissingComponentsKeepTheirCase) {
  TempDir dir;
  qvtest::MakeDirs(dir.Join("Modules"));
  EXPECT_EQ(qv::ResolvePath(dir.path() + "\\MODULES\\New\\File.MO"),
            dir.Join("Modules/New/File.MO"));
}

TEST(ResolvePath, ExactMatchWinsOverCaseVariants) {
  TempDir dir;
#ifdef _WIN32
  // A Windows folder holds one spelling of a name only: every spelling
  // resolves to it.
  dir.Write("data/File.txt", "1");
  EXPECT_EQ(qv::ResolvePath(dir.Join("data/file.txt")), dir.Join("data/File.txt"));
  EXPECT_EQ(qv::ResolvePath(dir.Join("data/File.txt")), dir.Join("data/File.txt"));
  EXPECT_EQ(qv::ResolvePath(dir.Join("data/fILE.TXT")), dir.Join("data/File.txt"));
  return;
#endif
  dir.Write("data/File.txt", "1");
  dir.Write("data/file.txt", "2");
  dir.Write("data/FILE.txt", "3");
  EXPECT_EQ(qv::ResolvePath(dir.Join("data/file.txt")), dir.Join("data/file.txt"));
  EXPECT_EQ(qv::ResolvePath(dir.Join("data/File.txt")), dir.Join("data/File.txt"));
  // No exact match: the first variant in byte order.
  EXPECT_EQ(qv::ResolvePath(dir.Join("data/fILE.TXT")), dir.Join("data/FILE.txt"));
}

TEST(ResolvePath, SeparatorsAreNormalised) {
#ifdef _WIN32
  EXPECT_EQ(qv::ResolvePath("/nonexistent-qv/a//b/"), "\\nonexistent-qv\\a\\b\\");
  EXPECT_EQ(qv::ResolvePath(""), "");
  EXPECT_EQ(qv::ResolvePath("/"), "\\");
  return;
#endif
  EXPECT_EQ(qv::ResolvePath("\\nonexistent-qv\\a\\\\b\\"), "/nonexistent-qv/a/b/");
  EXPECT_EQ(qv::ResolvePath(""), "");
  EXPECT_EQ(qv::ResolvePath("/"), "/");
}

TEST(ResolvePath, AnExistingPathWrittenWithBackslashesAndDoubledSeparators) {
  TempDir dir;
  dir.Write("Profile/ADS/adlist.ad", "x");
  EXPECT_EQ(qv::ResolvePath(dir.path() + "\\Profile\\\\ADS//adlist.ad"),
            dir.Join("Profile/ADS/adlist.ad"));
#ifdef _WIN32
  EXPECT_EQ(qv::ResolvePath(dir.path() + "/Profile//ADS/"), dir.Join("Profile/ADS") + "\\");
  // Back out again, as the system takes ".." (by the name, there).
  qvtest::MakeDirs(dir.Join("Profile/Other"));
  EXPECT_EQ(qv::ResolvePath(dir.path() + "\\profile\\ads\\..\\other"),
            dir.path() + "\\Profile\\ADS\\..\\Other");
#else
  EXPECT_EQ(qv::ResolvePath(dir.path() + "\\Profile\\ADS\\"), dir.Join("Profile/ADS") + "/");
  // Through a link and back out again, as the system walks it.
  qvtest::MakeDirs(dir.Join("Profile/Other"));
  ASSERT_EQ(symlink(dir.Join("Profile/ADS").c_str(), dir.Join("Link").c_str()), 0);
  EXPECT_EQ(qv::ResolvePath(dir.path() + "\\Link\\..\\Profile\\Other"),
            dir.path() + "/Link/../Profile/Other");
#endif
}

TEST(ResolvePath, RelativePathsResolveAgainstCurrentFolder) {
  TempDir dir;
  dir.Write("Sub/Name.txt", "x");
#ifdef _WIN32
  std::filesystem::path old = std::filesystem::current_path();
  std::filesystem::current_path(dir.path());
  std::string resolved = qv::ResolvePath("sub/name.TXT");
  std::filesystem::current_path(old);
  EXPECT_EQ(resolved, "Sub\\Name.txt");
#else
  char old[4096];
  ASSERT_NE(getcwd(old, sizeof(old)), nullptr);
  ASSERT_EQ(chdir(dir.path().c_str()), 0);
  std::string resolved = qv::ResolvePath("sub\\name.TXT");
  ASSERT_EQ(chdir(old), 0);
  EXPECT_EQ(resolved, "Sub/Name.txt");
#endif
}

TEST(FileSystem, FileAndDirectoryExist) {
  TempDir dir;
  dir.Write("Folder/File.txt", "x");
  EXPECT_TRUE(qv::FileExists(dir.path() + "\\folder\\file.TXT"));
  EXPECT_FALSE(qv::FileExists(dir.path() + "\\folder"));
  EXPECT_TRUE(qv::DirectoryExists(dir.path() + "\\FOLDER"));
  EXPECT_FALSE(qv::DirectoryExists(dir.path() + "\\folder\\file.txt"));
  EXPECT_FALSE(qv::FileExists(dir.Join("none")));
  EXPECT_FALSE(qv::DirectoryExists(dir.Join("none")));
  EXPECT_FALSE(qv::FileExists(""));
}

TEST(FileSystem, DeleteFile) {
  TempDir dir;
  dir.Write("Gone.txt", "x");
  EXPECT_TRUE(qv::DeleteFile(dir.Join("GONE.TXT")));
  EXPECT_FALSE(qvtest::PathExists(dir.Join("Gone.txt")));
  EXPECT_FALSE(qv::DeleteFile(dir.Join("Gone.txt")));
  qvtest::MakeDirs(dir.Join("folder"));
  EXPECT_FALSE(qv::DeleteFile(dir.Join("folder")));
  EXPECT_TRUE(qvtest::PathExists(dir.Join("folder")));
}

TEST(FileSystem, DeleteRefusesReadOnlyFile) {
  TempDir dir;
  std::string path = dir.Write("ro.txt", "x");
  ASSERT_TRUE(qv::SetReadOnly(path, true));
  EXPECT_FALSE(qv::DeleteFile(path));
  EXPECT_TRUE(qvtest::PathExists(path));
  ASSERT_TRUE(qv::SetReadOnly(path, false));
  EXPECT_TRUE(qv::DeleteFile(path));
}

TEST(FileSystem, MakeDirectoriesCreatesParentsAndReusesExistingCase) {
  TempDir dir;
  qvtest::MakeDirs(dir.Join("Existing"));
  EXPECT_TRUE(qv::MakeDirectories(dir.path() + "\\EXISTING\\a\\B\\c"));
  EXPECT_TRUE(qvtest::PathExists(dir.Join("Existing/a/B/c")));
  EXPECT_EQ(Listing(dir.path()), std::vector<std::string>{"Existing"});
  EXPECT_TRUE(qv::MakeDirectories(dir.path() + "\\existing\\A\\b\\C\\"));
  EXPECT_EQ(Listing(dir.Join("Existing/a/B")), std::vector<std::string>{"c"});
  dir.Write("file", "x");
  EXPECT_FALSE(qv::MakeDirectories(dir.Join("file/sub")));
  EXPECT_FALSE(qv::MakeDirectories(dir.Join("file")));
}

TEST(FindFiles, WildcardsIgnoreCaseAndResultsAreSorted) {
  TempDir dir;
  dir.Write("Mods/zeta.mo", "");
  dir.Write("Mods/Alpha.MO", "");
  dir.Write("Mods/beta.mo", "");
  dir.Write("Mods/gamma.mox", "");
  dir.Write("Mods/readme.txt", "");
  qvtest::MakeDirs(dir.Join("Mods/Dir.mo"));
  std::vector<qv::DirEntry> found = qv::FindFiles(dir.path() + "\\MODS\\*.mo");
  EXPECT_EQ(Names(found), (std::vector<std::string>{"Alpha.MO", "beta.mo", "Dir.mo", "zeta.mo"}));
  ASSERT_EQ(found.size(), 4u);
  EXPECT_FALSE(found[0].is_directory);
  EXPECT_TRUE(found[2].is_directory);
}

TEST(FindFiles, QuestionMarkMatchesOneCharacter) {
  TempDir dir;
  dir.Write("a1.txt", "");
  dir.Write("A22.txt", "");
  dir.Write("b3.TXT", "");
  EXPECT_EQ(Names(qv::FindFiles(dir.Join("?1.txt"))), std::vector<std::string>{"a1.txt"});
  EXPECT_EQ(Names(qv::FindFiles(dir.Join("??.txt"))),
            (std::vector<std::string>{"a1.txt", "b3.TXT"}));
  EXPECT_EQ(Names(qv::FindFiles(dir.Join("a*"))), (std::vector<std::string>{"a1.txt", "A22.txt"}));
}

TEST(FindFiles, StarDotStarMatchesEverythingButDotEntries) {
  TempDir dir;
  dir.Write("noext", "");
  dir.Write("with.ext", "");
  qvtest::MakeDirs(dir.Join("sub"));
  std::vector<qv::DirEntry> found = qv::FindFiles(dir.Join("*.*"));
  EXPECT_EQ(Names(found), (std::vector<std::string>{"noext", "sub", "with.ext"}));
  EXPECT_EQ(Names(qv::FindFiles(dir.Join("*"))), Names(found));
  EXPECT_EQ(Names(qv::FindFiles(dir.Join("noext.*"))), std::vector<std::string>{"noext"});
}

TEST(FindFiles, ExactNameMatchesAnyCase) {
  TempDir dir;
  dir.Write("AdList.AD", "");
  EXPECT_EQ(Names(qv::FindFiles(dir.Join("adlist.ad"))), std::vector<std::string>{"AdList.AD"});
}

TEST(FindFiles, CaseTiesOrderByBytes) {
  TempDir dir;
#ifdef _WIN32
  // Names that differ only in case cannot both be in a Windows folder, so
  // there are no ties: the order ignores case, letters before "_".
  dir.Write("b", "");
  dir.Write("a", "");
  dir.Write("C", "");
  dir.Write("_x", "");
  EXPECT_EQ(Names(qv::FindFiles(dir.Join("*"))), (std::vector<std::string>{"a", "b", "C", "_x"}));
  return;
#endif
  dir.Write("b", "");
  dir.Write("a", "");
  dir.Write("A", "");
  dir.Write("_x", "");
  EXPECT_EQ(Names(qv::FindFiles(dir.Join("*"))), (std::vector<std::string>{"A", "a", "b", "_x"}));
}

TEST(FindFiles, MissingFolderGivesNothing) {
  TempDir dir;
  EXPECT_TRUE(qv::FindFiles(dir.Join("none/*.*")).empty());
  EXPECT_TRUE(qv::FindFiles(dir.Join("*.none")).empty());
}

#ifdef _WIN32
// On Windows "read-only" is the file's attribute of that name, and setting
// or clearing it keeps the file's other attributes.
TEST(ReadOnly, DecidedByTheAttributeAlone) {
  TempDir dir;
  std::string path = dir.Write("f.txt", "x");
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL));
  EXPECT_FALSE(qv::IsReadOnly(path));
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY));
  EXPECT_TRUE(qv::IsReadOnly(dir.Join("F.TXT")));
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN));
  EXPECT_FALSE(qv::IsReadOnly(path));  // another attribute is not read-only
  EXPECT_FALSE(qv::IsReadOnly(dir.Join("missing")));
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(ReadOnly, SetAndClearTouchOnlyTheReadOnlyAttribute) {
  TempDir dir;
  std::string path = dir.Write("f.txt", "x");
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL));
  EXPECT_TRUE(qv::SetReadOnly(dir.Join("F.txt"), true));
  EXPECT_EQ(AttributesOf(path), static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
  EXPECT_TRUE(qv::SetReadOnly(path, false));
  EXPECT_EQ(AttributesOf(path) & FILE_ATTRIBUTE_READONLY, 0u);
  ASSERT_TRUE(SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_HIDDEN));
  EXPECT_TRUE(qv::SetReadOnly(path, true));
  EXPECT_EQ(AttributesOf(path),
            static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY));
  EXPECT_TRUE(qv::SetReadOnly(path, true));
  EXPECT_EQ(AttributesOf(path),
            static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY));
  EXPECT_TRUE(qv::SetReadOnly(path, false));
  EXPECT_EQ(AttributesOf(path), static_cast<DWORD>(FILE_ATTRIBUTE_HIDDEN));
  EXPECT_FALSE(qv::SetReadOnly(dir.Join("missing"), true));
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
}
#else
TEST(ReadOnly, DecidedByModeBitsAlone) {
  TempDir dir;
  std::string path = dir.Write("f.txt", "x");
  ASSERT_EQ(chmod(path.c_str(), 0644), 0);
  EXPECT_FALSE(qv::IsReadOnly(path));
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);
  EXPECT_TRUE(qv::IsReadOnly(dir.Join("F.TXT")));  // even for root, who could write it
  ASSERT_EQ(chmod(path.c_str(), 0464), 0);
  EXPECT_FALSE(qv::IsReadOnly(path));  // a group write bit is a write bit
  EXPECT_FALSE(qv::IsReadOnly(dir.Join("missing")));
}

TEST(ReadOnly, SetClearsAllWriteBitsClearSetsOwnerWriteBit) {
  TempDir dir;
  std::string path = dir.Write("f.txt", "x");
  ASSERT_EQ(chmod(path.c_str(), 0666), 0);
  EXPECT_TRUE(qv::SetReadOnly(dir.Join("F.txt"), true));
  EXPECT_EQ(ModeOf(path), 0444u);
  EXPECT_TRUE(qv::SetReadOnly(path, false));
  EXPECT_EQ(ModeOf(path), 0644u);
  ASSERT_EQ(chmod(path.c_str(), 0750), 0);
  EXPECT_TRUE(qv::SetReadOnly(path, true));
  EXPECT_EQ(ModeOf(path), 0550u);
  EXPECT_TRUE(qv::SetReadOnly(path, true));
  EXPECT_EQ(ModeOf(path), 0550u);
  EXPECT_TRUE(qv::SetReadOnly(path, false));
  EXPECT_EQ(ModeOf(path), 0750u);
  EXPECT_FALSE(qv::SetReadOnly(dir.Join("missing"), true));
}

#endif

TEST(ReplaceFileContent, ReplacesAndKeepsSourceAndMode) {
  TempDir dir;
  std::string source = dir.Write("QUORVEX.000", "new content\n");
  std::string target = dir.Write("Profile/AdList.ad", "old content which is longer\n");
#ifndef _WIN32
  ASSERT_EQ(chmod(target.c_str(), 0640), 0);
#endif
  EXPECT_TRUE(qv::ReplaceFileContent(source, dir.path() + "\\PROFILE\\adlist.AD"));
  EXPECT_EQ(qvtest::ReadFileBytes(target), "new content\n");
  EXPECT_EQ(qvtest::ReadFileBytes(source), "new content\n");
#ifdef _WIN32
  EXPECT_FALSE(qv::IsReadOnly(target));
#else
  EXPECT_EQ(ModeOf(target), 0640u);
#endif
  // Nothing else is left beside the target.
  EXPECT_EQ(Listing(dir.Join("Profile")), std::vector<std::string>{"AdList.ad"});
}

TEST(ReplaceFileContent, FailsOnReadOnlyTarget) {
  TempDir dir;
  std::string source = dir.Write("src.txt", "new");
  std::string target = dir.Write("Folder/target.txt", "old");
#ifdef _WIN32
  ASSERT_TRUE(SetFileAttributesA(target.c_str(), FILE_ATTRIBUTE_READONLY));
#else
  ASSERT_EQ(chmod(target.c_str(), 0444), 0);
#endif
  EXPECT_FALSE(qv::ReplaceFileContent(source, target));
  EXPECT_EQ(qvtest::ReadFileBytes(target), "old");
  EXPECT_EQ(Listing(dir.Join("Folder")), std::vector<std::string>{"target.txt"});
#ifdef _WIN32
  SetFileAttributesA(target.c_str(), FILE_ATTRIBUTE_NORMAL);
#endif
}

TEST(ReplaceFileContent, CreatesMissingTarget) {
  TempDir dir;
  std::string source = dir.Write("src.txt", "content");
  EXPECT_TRUE(qv::ReplaceFileContent(source, dir.Join("made.txt")));
  EXPECT_EQ(dir.Read("made.txt"), "content");
}

TEST(ReplaceFileContent, FailsWithoutSource) {
  TempDir dir;
  std::string target = dir.Write("target.txt", "old");
  EXPECT_FALSE(qv::ReplaceFileContent(dir.Join("none"), target));
  EXPECT_EQ(qvtest::ReadFileBytes(target), "old");
  EXPECT_EQ(Listing(dir.path()), std::vector<std::string>{"target.txt"});
}

TEST(ReplaceFileContent, CopiesLargeContentExactly) {
  TempDir dir;
  std::string content;
  for (int i = 0; i < 200000; ++i) content += static_cast<char>(i % 251);
  std::string source = dir.Write("src.bin", content);
  std::string target = dir.Write("dst.bin", "x");
  EXPECT_TRUE(qv::ReplaceFileContent(source, target));
  EXPECT_EQ(qvtest::ReadFileBytes(target), content);
}

TEST(PathText, Separators) {
  EXPECT_TRUE(qv::IsSeparator('/'));
  EXPECT_TRUE(qv::IsSeparator('\\'));
  EXPECT_FALSE(qv::IsSeparator(':'));
  EXPECT_FALSE(qv::IsSeparator('a'));
}

TEST(PathText, LastPathComponent) {
  EXPECT_EQ(qv::LastPathComponent("C:\\Tools\\host.exe"), "host.exe");
  EXPECT_EQ(qv::LastPathComponent("/usr/bin/quorvex"), "quorvex");
  EXPECT_EQ(qv::LastPathComponent("a\\b/c"), "c");
  EXPECT_EQ(qv::LastPathComponent("name"), "name");
  EXPECT_EQ(qv::LastPathComponent("dir/"), "");
  EXPECT_EQ(qv::LastPathComponent(""), "");
}

TEST(PathText, TrailingSeparators) {
  std::string path = "a\\b\\";
  qv::RemoveTrailingSeparator(&path);
  EXPECT_EQ(path, "a\\b");
  qv::RemoveTrailingSeparator(&path);
  EXPECT_EQ(path, "a\\b");
  path = "a/b//";
  qv::RemoveTrailingSeparator(&path);
  EXPECT_EQ(path, "a/b");
  path = "/";
  qv::RemoveTrailingSeparator(&path);
  EXPECT_EQ(path, "/");

#ifdef _WIN32
  // A separator is added in the system's own spelling.
  path = "C:\\tmp";
  qv::AddTrailingSeparator(&path);
  EXPECT_EQ(path, "C:\\tmp\\");
  qv::AddTrailingSeparator(&path);
  EXPECT_EQ(path, "C:\\tmp\\");
  path = "C:/tmp/";
  qv::AddTrailingSeparator(&path);
  EXPECT_EQ(path, "C:/tmp/");
#else
  path = "/tmp";
  qv::AddTrailingSeparator(&path);
  EXPECT_EQ(path, "/tmp/");
  qv::AddTrailingSeparator(&path);
  EXPECT_EQ(path, "/tmp/");
#endif
  path = "C:\\TEMP\\";
  qv::AddTrailingSeparator(&path);
  EXPECT_EQ(path, "C:\\TEMP\\");
}

TEST(PathText, SplitPath) {
  std::string drive = "x", directory, name;
  qv::SplitPath("/work/Profile\\ADS\\adlist.ad", &drive, &directory, &name);
  EXPECT_EQ(drive, "");
  EXPECT_EQ(directory, "/work/Profile\\ADS\\");
  EXPECT_EQ(name, "adlist.ad");
  qv::SplitPath("file.txt", &drive, &directory, &name);
  EXPECT_EQ(directory, "");
  EXPECT_EQ(name, "file.txt");
  qv::SplitPath("dir/", nullptr, &directory, &name);
  EXPECT_EQ(directory, "dir/");
  EXPECT_EQ(name, "");
}

#ifdef _WIN32
// The system's temporary folder, from TMP or else TEMP, without the
// separator the system ends it with.
TEST(SystemFacts, TempDirectory) {
  {
    ScopedEnv tmp("TMP", "C:\\some\\where");
    EXPECT_EQ(qv::TempDirectory(), "C:\\some\\where");
  }
  {
    ScopedEnv tmp("TMP", nullptr);
    ScopedEnv temp("TEMP", "C:\\other\\place");
    EXPECT_EQ(qv::TempDirectory(), "C:\\other\\place");
  }
}

TEST(SystemFacts, HostProgramPathNamesThisProgram) {
  std::string path = qv::HostProgramPath();
  ASSERT_GE(path.size(), 3u);
  EXPECT_EQ(path.substr(1, 2), ":\\");
  EXPECT_EQ(qv::LastPathComponent(path), "platform_fs_test.exe");
  EXPECT_TRUE(qv::FileExists(path));
}

// The name the user logged on with, which the system also gives every
// program as USERNAME.
TEST(SystemFacts, CurrentUserNameIsTheEffectiveUser) {
  const char* user = getenv("USERNAME");
  ASSERT_NE(user, nullptr);
  EXPECT_EQ(qv::CurrentUserName(), user);
}
#else
TEST(SystemFacts, TempDirectory) {
  {
    ScopedEnv env("TMPDIR", "/some/where");
    EXPECT_EQ(qv::TempDirectory(), "/some/where");
  }
  {
    ScopedEnv env("TMPDIR", nullptr);
    EXPECT_EQ(qv::TempDirectory(), "/tmp");
  }
  {
    ScopedEnv env("TMPDIR", "");
    EXPECT_EQ(qv::TempDirectory(), "/tmp");
  }
}

TEST(SystemFacts, HostProgramPathNamesThisProgram) {
  std::string path = qv::HostProgramPath();
  ASSERT_FALSE(path.empty());
  EXPECT_EQ(path[0], '/');
  EXPECT_EQ(qv::LastPathComponent(path), "platform_fs_test");
  EXPECT_TRUE(qv::FileExists(path));
}

TEST(SystemFacts, CurrentUserNameIsTheEffectiveUser) {
  struct passwd* pw = getpwuid(geteuid());
  ASSERT_NE(pw, nullptr);
  EXPECT_EQ(qv::CurrentUserName(), pw->pw_name);
}

#endif

}  // namespace
