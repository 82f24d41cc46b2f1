// An open file with a read buffer.
//
// The engine reads profile text as "read a block, cut at the line feed, seek
// back over the rest". File keeps the bytes of the last block in memory, so
// that such a seek back and the next read cost no system call, while every
// observable position stays exactly where unbuffered reads would put it.
#ifndef QUORVEX_PLATFORM_FILE_H_
#define QUORVEX_PLATFORM_FILE_H_

#include <cstddef>
#include <cstdint>
#include <string>

#include "quorvex/base.h"

namespace qv {

enum class OpenMode {
  kReadExisting,    // read only; the file must exist
  kUpdateExisting,  // read and write; the file must exist
  kCreateNew,       // read and write; fails when the file exists
  kCreateAlways,    // read and write; created or truncated
};

class File {
 public:
  // Opens (or creates) a file; path components resolve without regard to
  // case and "\" counts as a separator. nullptr on failure, with errno-style
  // code in *error when given.
  static File* Open(const std::string& path, OpenMode mode, int* error = nullptr);
  // A file whose bytes live in memory only, empty at first: the engine
  // writes a record line into it and reads it back with the same reader, to
  // learn before touching a profile file whether the line will hold.
  static File* OpenInMemory();

  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  // Reads up to n bytes at the current position; returns the count (0 at the
  // end) or -1 on error.
  long Read(void* buffer, size_t n);
  // The bytes that follow the current position in the file's cached block
  // (fetching the block when needed), without moving: *bytes points at
  // them until the next call on this file. Returns their count, 0 at the
  // end of the file or on a read error. A reader that looks for a line's
  // end scans them in place, then moves past what it took with Seek.
  size_t Peek(const char** bytes);
  // Writes n bytes at the current position; returns the count written.
  size_t Write(const void* data, size_t n);
  // Moves the position; positions beyond the end are allowed (reads there
  // return 0). Returns false for a negative result position.
  bool Seek(int64_t offset, int whence);  // SEEK_SET, SEEK_CUR, SEEK_END
  int64_t Tell() const { return position_; }
  bool Flush();                                          // writes the OS buffers through (fsync)
  const std::string& path() const { return path_; }      // the resolved host path
  const std::string& memory() const { return memory_; }  // the bytes of a file in memory
  // Room for n bytes in a file in memory, so that writing that many moves
  // nothing.
  void Reserve(size_t n) { memory_.reserve(n); }
  // Empties a file in memory (keeping its room) and goes back to its start.
  void ClearMemory() {
    memory_.clear();
    position_ = 0;
    DropBuffer();
  }

  // The C API handle of this file and back.
  QvFile handle() { return reinterpret_cast<QvFile>(this); }
  static File* FromHandle(QvFile handle) {
    return handle == QV_NO_FILE || handle == QV_FAILED_FILE ? nullptr
                                                            : reinterpret_cast<File*>(handle);
  }

  // Counters for benchmarks: system calls made by this file.
  uint64_t read_calls() const { return read_calls_; }

 private:
  // A child process writes through the descriptor itself.
  friend int RunProcess(const std::string& command_line, const std::string& working_directory,
                        File* stdout_file);

  File(int fd, std::string path);
  bool Fill(int64_t at);
  void DropBuffer() { buffer_size_ = 0; }

  int fd_;  // -1 for a file in memory
  std::string path_;
  std::string memory_;  // the bytes of a file in memory
  int64_t position_ = 0;
  // The cached block: bytes [buffer_start_, buffer_start_ + buffer_size_).
  char* buffer_;
  int64_t buffer_start_ = 0;
  size_t buffer_size_ = 0;
  uint64_t read_calls_ = 0;
};

}  // namespace qv

#endif  // QUORVEX_PLATFORM_FILE_H_
