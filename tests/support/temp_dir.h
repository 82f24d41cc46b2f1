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
  // path() + "/" + relative, with "\" turned into "/".
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
bool PathExists(const std::string& path);
// The read-only attribute as the engine sees it: no write bit in the mode.
bool IsReadOnly(const std::string& path);
// Clears every write bit, as a checked-in working file has them.
void MakeReadOnly(const std::string& path);

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_TEMP_DIR_H_
