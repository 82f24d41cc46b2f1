// The system calls under File: what file_posix.cc and file_win32.cc provide
// to file.cc, which keeps the block cache, files in memory and the write
// budget the same on every system. A descriptor is the C runtime's on
// Windows too.
#ifndef QUORVEX_PLATFORM_FILE_IO_H_
#define QUORVEX_PLATFORM_FILE_IO_H_

#include <cstddef>
#include <cstdint>

namespace qv {

// One positioned read of up to n bytes at offset: the count, 0 at the end
// of the file, -1 on error (errno set). A count short of n means the end of
// the file: the reads a cached block is made of rely on it.
long ReadAt(int fd, void* buffer, size_t n, int64_t offset);
// One positioned write of up to n bytes at offset: the count written, -1 on
// error (errno set).
long WriteAt(int fd, const void* data, size_t n, int64_t offset);
// The size of the open file; false on error.
bool SizeOf(int fd, int64_t* size);
// Writes the system's buffers of the file through to the disk.
bool FlushToDisk(int fd);
void CloseDescriptor(int fd);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_FILE_IO_H_
