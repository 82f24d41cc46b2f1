#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/environment.h"
#include "platform/fs.h"

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
  std::error_code ec;
  // Tests make files read-only; give write access back so removal works.
  for (auto it = fs::recursive_directory_iterator(path_, ec); !ec && it != fs::end(it);
       it.increment(ec)) {
    fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ec);
  }
  fs::remove_all(path_, ec);
}

std::string TempDir::Join(const std::string& relative) const {
  std::string r = relative;
  for (char& c : r) {
    if (c == '\\') c = '/';
  }
  return path_ + "/" + r;
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

}  // namespace qvtest
