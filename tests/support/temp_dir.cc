#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/environment.h"
#include "platform/fs.h"
#include "platform/held_file.h"
#ifdef _WIN32
#include "platform/win32.h"
#endif

namespace qvtest {

namespace fs = std::filesystem;

std::string TestTempBase() {
  const char* base = getenv("TMPDIR");
  return base != nullptr && *base ? std::string(base) : qv::TempDirectory();
}

TempDir::TempDir() {
  path_ = qv::MakeUniqueDirectory(TestTempBase(), "qvtest.");
  EXPECT_FALSE(path_.empty());
}

TempDir::~TempDir() {
  RemoveTree(path_);
}

namespace {

// The engine reports every path with the host's own separator, so the
// paths tests build must use it too to compare equal.
#ifdef _WIN32
constexpr char kSeparator = '\\';
#else
constexpr char kSeparator = '/';
#endif

}  // namespace

std::string TempDir::Join(const std::string& relative) const {
  std::string r = relative;
  for (char& c : r) {
    if (c == '\\' || c == '/') c = kSeparator;
  }
  return path_ + kSeparator + r;
}

std::string TempDir::Write(const std::string& relative, const std::string& content) const {
  std::string path = Join(relative);
  MakeDirs(fs::path(path).parent_path().string());
  WriteFileBytes(path, content);
  return path;
}

std::string TempDir::Read(const std::string& relative) const {
  return ReadFileBytes(Join(relative));
}

std::string ReadFileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

void WriteFileBytes(const std::string& path, const std::string& content) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << content;
}

void MakeDirs(const std::string& path) {
  std::error_code ec;
  fs::create_directories(path, ec);
}

#ifdef _WIN32
namespace {

// Removal with the system's own calls, one pass over the tree: an entry
// that cannot go is passed over (and with it its folder). The standard
// library's removal under mingw-w64 went over a folder again and again when
// it held a file that was deleted but still open, until the process ran out
// of descriptors.
void RemoveTreeOnWindows(const std::string& path) {
  WIN32_FIND_DATAA found;
  HANDLE search = FindFirstFileA((path + "\\*").c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      std::string name = found.cFileName;
      if (name == "." || name == "..") continue;
      std::string child = path + "\\" + name;
      // Windows refuses to delete what is read-only.
      SetFileAttributesA(child.c_str(), found.dwFileAttributes & ~FILE_ATTRIBUTE_READONLY);
      if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
        DeleteFileA(child.c_str());
      } else if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
        RemoveDirectoryA(child.c_str());  // a link to a folder, not its content
      } else {
        RemoveTreeOnWindows(child);
      }
    } while (FindNextFileA(search, &found));
    FindClose(search);
  }
  RemoveDirectoryA(path.c_str());
}

}  // namespace
#endif

void RemoveTree(const std::string& path) {
  // The engine holds its temporary files' names until it deletes them or
  // the process ends; a test's folder going away lets go of them, as the
  // end of a test's process would.
  qv::ReleaseHeldNamesBelow(qv::ResolvePath(path));
#ifdef _WIN32
  RemoveTreeOnWindows(path);
#else
  std::error_code ec;
  // Tests make files read-only; give write access back so removal works
  // (Windows refuses to delete a read-only file).
  for (auto it = fs::recursive_directory_iterator(path, ec); !ec && it != fs::end(it);
       it.increment(ec)) {
    fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ec);
  }
  fs::remove_all(path, ec);
#endif
}

bool PathExists(const std::string& path) {
  std::error_code ec;
  return fs::exists(path, ec);
}

bool IsReadOnly(const std::string& path) {
  std::error_code ec;
  fs::perms perms = fs::status(path, ec).permissions();
  const fs::perms write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  return !ec && fs::exists(path, ec) && (perms & write) == fs::perms::none;
}

void MakeReadOnly(const std::string& path) {
  std::error_code ec;
  fs::permissions(path, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove, ec);
}

#ifdef _WIN32
UnopenableFile::UnopenableFile(const std::string& path) {
  HANDLE h = CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  EXPECT_NE(h, INVALID_HANDLE_VALUE) << path;
  if (h != INVALID_HANDLE_VALUE) handle_ = h;
}

UnopenableFile::~UnopenableFile() {
  if (handle_ != nullptr) CloseHandle(static_cast<HANDLE>(handle_));
}
#else
UnopenableFile::UnopenableFile(const std::string& path) {
  std::error_code ec;
  fs::create_symlink(path + ".gone", path, ec);
  EXPECT_FALSE(ec) << path << ": " << ec.message();
}

UnopenableFile::~UnopenableFile() = default;
#endif

}  // namespace qvtest
