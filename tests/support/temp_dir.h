// A temporary folder that removes itself, and small file helpers for tests.
#ifndef QUORVEX_TESTS_SUPPORT_TEMP_DIR_H_
#define QUORVEX_TESTS_SUPPORT_TEMP_DIR_H_

#include <string>

namespace qvtest {

// Where test folders are made: $TMPDIR when set (the scripted host points
// it at a folder of its own), else the system's temporary folder.
std::string TestTempBase();

class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return path_; }
  // path() + separator + relative, every separator in relative made the
  // host's own ("/" on POSIX, "\" on Windows).
  std::string Join(const std::string& relative) const;
  // Writes a file (creating its folders) below the folder; returns its path.
  std::string Write(const std::string& relative, const std::string& content) const;
  std::string Read(const std::string& relative) const;

 private:
  std::string path_;
};

std::string ReadFileBytes(const std::string& path);
void WriteFileBytes(const std::string& path, const std::string& content);
void MakeDirs(const std::string& path);
// Removes a folder and everything below it, read-only files included.
void RemoveTree(const std::string& path);
bool PathExists(const std::string& path);
// The read-only attribute as the engine sees it: no write bit in the mode.
bool IsReadOnly(const std::string& path);
// Clears every write bit, as a checked-in working file has them.
void MakeReadOnly(const std::string& path);

// A file that a folder search finds but that cannot be opened, for as long
// as the object lives: a dangling symbolic link on POSIX; on Windows, where
// making a link takes a privilege, a file held open with no sharing allowed.
class UnopenableFile {
 public:
  explicit UnopenableFile(const std::string& path);
  ~UnopenableFile();
  UnopenableFile(const UnopenableFile&) = delete;
  UnopenableFile& operator=(const UnopenableFile&) = delete;

 private:
  void* handle_ = nullptr;  // the holding handle on Windows
};

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_TEMP_DIR_H_
