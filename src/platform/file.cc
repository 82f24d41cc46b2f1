// File on every system: the cached block, files in memory and the write
// budget. Only the positioned transfers underneath (file_io.h) differ from
// one system to the other.
//
// The descriptor's own offset is never used; every transfer names its
// position, so the cache can serve any read that falls inside the block
// without the system noticing.

#include "platform/file.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/file_io.h"
#include "platform/write_faults.h"

namespace qv {

namespace {

constexpr size_t kBlockSize = 64 * 1024;

}  // namespace

File::File(int fd, std::string path) : fd_(fd), path_(std::move(path)), buffer_(nullptr) {}

File::~File() {
  if (fd_ >= 0) CloseDescriptor(fd_);
  delete[] buffer_;
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
  ++read_calls_;
  long r = ReadAt(fd_, buffer_, kBlockSize, at);
  if (r < 0) return false;
  // A short block ends at the end of the file; Read relies on it.
  buffer_start_ = at;
  buffer_size_ = static_cast<size_t>(r);
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
  // answers every read that starts inside it. Nobody else is expected to
  // grow the file meanwhile; RunProcess drops the block after its child.
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

size_t File::Peek(const char** bytes) {
  int64_t end = buffer_start_ + static_cast<int64_t>(buffer_size_);
  bool inside = buffer_size_ > 0 && position_ >= buffer_start_ && position_ <= end;
  // A block shorter than kBlockSize ended at the end of the file.
  if (inside && position_ == end && buffer_size_ < kBlockSize) return 0;
  if (!inside || position_ == end) {
    if (!Fill(position_)) return 0;
    end = buffer_start_ + static_cast<int64_t>(buffer_size_);
  }
  if (position_ >= end) return 0;
  *bytes = buffer_ + (position_ - buffer_start_);
  return static_cast<size_t>(end - position_);
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
    size_t allowed = AllowedWrite(n - done);
    if (allowed == 0) break;
    long w = WriteAt(fd_, in + done, allowed, position_ + static_cast<int64_t>(done));
    if (w <= 0) break;
    done += static_cast<size_t>(w);
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
    case SEEK_END:
      if (fd_ < 0) {
        base = static_cast<int64_t>(memory_.size());
      } else if (!SizeOf(fd_, &base)) {
        return false;
      }
      break;
    default:
      return false;
  }
  int64_t target = base + offset;
  if (target < 0) return false;
  position_ = target;
  return true;
}

bool File::Flush() {
  return fd_ < 0 || FlushToDisk(fd_);
}

}  // namespace qv
