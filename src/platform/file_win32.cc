// File on Windows: positioned reads and writes on one handle, with the
// last block read kept in memory.
//
// The handle is opened with CreateFile and kept as a C runtime descriptor
// (the File interface is the same on every system). Every transfer names
// its offset in an OVERLAPPED structure, so the cache can serve any read
// that falls inside the block. Files are shared for reading, writing and
// deleting, as the engine renames and deletes files that a reader of its
// own may still hold.

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/file.h"
#include "platform/fs.h"
#include "platform/read_redirects.h"
#include "platform/win32.h"
#include "platform/write_faults.h"

namespace qv {

namespace {

constexpr size_t kBlockSize = 64 * 1024;

HANDLE HandleOf(int fd) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(fd));
}

OVERLAPPED At(int64_t offset) {
  OVERLAPPED o = {};
  o.Offset = static_cast<DWORD>(static_cast<uint64_t>(offset) & 0xffffffffu);
  o.OffsetHigh = static_cast<DWORD>(static_cast<uint64_t>(offset) >> 32);
  return o;
}

// One positioned read; the count, 0 at the end, or -1.
long ReadAt(int fd, void* buffer, size_t n, int64_t offset) {
  OVERLAPPED o = At(offset);
  DWORD got = 0;
  DWORD ask = static_cast<DWORD>(std::min<size_t>(n, 1u << 30));
  if (!ReadFile(HandleOf(fd), buffer, ask, &got, &o)) {
    if (GetLastError() == ERROR_HANDLE_EOF) return 0;
    SetErrnoFromLastError();
    return -1;
  }
  return static_cast<long>(got);
}

}  // namespace

File::File(int fd, std::string path) : fd_(fd), path_(std::move(path)), buffer_(nullptr) {}

File::~File() {
  if (fd_ >= 0) _close(fd_);
  delete[] buffer_;
}

File* File::Open(const std::string& path, OpenMode mode, int* error) {
  std::string host = ResolvePath(path);
  if (mode == OpenMode::kReadExisting || mode == OpenMode::kUpdateExisting) {
    host = ReadPathOf(host);
  }
  DWORD access = GENERIC_READ | GENERIC_WRITE;
  DWORD disposition = OPEN_EXISTING;
  switch (mode) {
    case OpenMode::kReadExisting:
      access = GENERIC_READ;
      break;
    case OpenMode::kUpdateExisting:
      break;
    case OpenMode::kCreateNew:
      disposition = CREATE_NEW;
      break;
    case OpenMode::kCreateAlways:
      disposition = OPEN_ALWAYS;  // truncated below, which keeps the attributes
      break;
  }
  int code = 0;
  DWORD attributes = GetFileAttributesA(host.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES) {
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      code = mode == OpenMode::kCreateNew ? EEXIST : EISDIR;
    } else if ((attributes & FILE_ATTRIBUTE_READONLY) != 0 && mode != OpenMode::kReadExisting) {
      code = mode == OpenMode::kCreateNew ? EEXIST : EACCES;
    }
  }
  HANDLE h = INVALID_HANDLE_VALUE;
  if (code == 0) {
    h = CreateFileA(host.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) code = ErrnoFromWin32(GetLastError());
  }
  if (h != INVALID_HANDLE_VALUE && mode == OpenMode::kCreateAlways && !SetEndOfFile(h)) {
    code = ErrnoFromWin32(GetLastError());
    CloseHandle(h);
    h = INVALID_HANDLE_VALUE;
  }
  int fd = -1;
  if (h != INVALID_HANDLE_VALUE) {
    fd = _open_osfhandle(reinterpret_cast<intptr_t>(h),
                         _O_BINARY | (access == GENERIC_READ ? _O_RDONLY : _O_RDWR));
    if (fd < 0) {
      code = EMFILE;
      CloseHandle(h);
    }
  }
  if (fd < 0) {
    if (error != nullptr) *error = code;
    return nullptr;
  }
  if (error != nullptr) *error = 0;
  return new File(fd, std::move(host));
}

File* File::OpenInMemory() {
  return new File(-1, "");
}

bool File::Fill(int64_t at) {
  if (buffer_ == nullptr) buffer_ = new char[kBlockSize];
  buffer_size_ = 0;
  if (fd_ < 0) {
    size_t from =
        static_cast<size_t>(at) < memory_.size() ? static_cast<size_t>(at) : memory_.size();
    size_t r = std::min(kBlockSize, memory_.size() - from);
    memcpy(buffer_, memory_.data() + from, r);
    buffer_start_ = at;
    buffer_size_ = r;
    return true;
  }
  // Windows may return fewer bytes than asked before the end; the cache
  // relies on a short block meaning the end, so read until full or 0.
  size_t got = 0;
  while (got < kBlockSize) {
    ++read_calls_;
    long r = ReadAt(fd_, buffer_ + got, kBlockSize - got, at + static_cast<int64_t>(got));
    if (r < 0) return false;
    if (r == 0) break;
    got += static_cast<size_t>(r);
  }
  buffer_start_ = at;
  buffer_size_ = got;
  return true;
}

long File::Read(void* buffer, size_t n) {
  char* out = static_cast<char*>(buffer);
  if (n == 0) return 0;
  if (n > kBlockSize && fd_ >= 0) {
    // Too large to gain from the cache: read straight into the caller's
    // buffer. The cache stays valid, since nothing was written.
    size_t got = 0;
    while (got < n) {
      ++read_calls_;
      long r = ReadAt(fd_, out + got, n - got, position_ + static_cast<int64_t>(got));
      if (r < 0) return -1;
      if (r == 0) break;
      got += static_cast<size_t>(r);
    }
    position_ += static_cast<int64_t>(got);
    return static_cast<long>(got);
  }
  int64_t end = buffer_start_ + static_cast<int64_t>(buffer_size_);
  bool inside = buffer_size_ > 0 && position_ >= buffer_start_ && position_ <= end;
  // A block shorter than kBlockSize ended at the end of the file, so it
  // answers every read that starts inside it.
  bool complete =
      inside && (position_ + static_cast<int64_t>(n) <= end || buffer_size_ < kBlockSize);
  if (!complete) {
    if (!Fill(position_)) return -1;
    end = buffer_start_ + static_cast<int64_t>(buffer_size_);
  }
  int64_t available = end - position_;
  if (available <= 0) return 0;
  size_t count = n < static_cast<size_t>(available) ? n : static_cast<size_t>(available);
  memcpy(out, buffer_ + (position_ - buffer_start_), count);
  position_ += static_cast<int64_t>(count);
  return static_cast<long>(count);
}

size_t File::Write(const void* data, size_t n) {
  // The cached bytes (and what they say about the end of the file) may no
  // longer hold; the next read fetches a fresh block.
  DropBuffer();
  const char* in = static_cast<const char*>(data);
  if (fd_ < 0) {
    size_t at = static_cast<size_t>(position_);
    if (at == memory_.size()) {
      memory_.append(in, n);  // the usual case: lines written one after another
    } else {
      if (memory_.size() < at + n) memory_.resize(at + n);
      memcpy(memory_.data() + at, in, n);
    }
    position_ += static_cast<int64_t>(n);
    return n;
  }
  size_t done = 0;
  while (done < n) {
    size_t allowed = std::min<size_t>(AllowedWrite(n - done), 1u << 30);
    if (allowed == 0) break;
    OVERLAPPED o = At(position_ + static_cast<int64_t>(done));
    DWORD w = 0;
    if (!WriteFile(HandleOf(fd_), in + done, static_cast<DWORD>(allowed), &w, &o)) {
      SetErrnoFromLastError();
      break;
    }
    if (w == 0) break;
    done += w;
  }
  position_ += static_cast<int64_t>(done);
  return done;
}

bool File::Seek(int64_t offset, int whence) {
  int64_t base = 0;
  switch (whence) {
    case SEEK_SET:
      base = 0;
      break;
    case SEEK_CUR:
      base = position_;
      break;
    case SEEK_END: {
      if (fd_ < 0) {
        base = static_cast<int64_t>(memory_.size());
        break;
      }
      LARGE_INTEGER size;
      if (!GetFileSizeEx(HandleOf(fd_), &size)) return false;
      base = size.QuadPart;
      break;
    }
    default:
      return false;
  }
  int64_t target = base + offset;
  if (target < 0) return false;
  position_ = target;
  return true;
}

bool File::Flush() {
  return fd_ < 0 || FlushFileBuffers(HandleOf(fd_)) != 0;
}

}  // namespace qv
