// Held files on Windows: a byte-range lock far beyond the file's end.
//
// The hold is a handle of its own with an exclusive lock on one byte at an
// offset no file reaches, so the lock never gets in the way of reading or
// writing the file, and Windows drops it when the process ends. A rival
// that can take the same lock knows the maker is gone and deletes the file
// while it holds the lock.
//
// The file is made and locked under a private name first and then renamed
// to its real name (a rename that fails when the name exists), so the name
// never shows an unlocked file. The hold is kept until DeleteFile removes
// the name, not just until the File closes.

#include <cerrno>
#include <cstdio>
#include <map>
#include <mutex>

#include "platform/file.h"
#include "platform/fs.h"
#include "platform/held_file.h"
#include "platform/win32.h"

namespace qv {

namespace {

constexpr int kAttempts = 16;
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

std::mutex g_holds_mutex;
std::map<std::string, HANDLE>& Holds() {
  static auto* holds = new std::map<std::string, HANDLE>;
  return *holds;
}

bool LockHold(HANDLE h) {
  OVERLAPPED o = {};
  o.Offset = 0;
  o.OffsetHigh = 0x7fffffff;
  return LockFileEx(h, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &o) != 0;
}

void KeepHeld(const std::string& host, HANDLE h) {
  std::lock_guard<std::mutex> guard(g_holds_mutex);
  auto [it, added] = Holds().emplace(host, h);
  if (!added) {
    // The former file of that name went without DeleteFile.
    CloseHandle(it->second);
    it->second = h;
  }
}

enum class Stale { kRemoved, kGone, kHeld };

Stale RemoveIfStale(const std::string& host) {
  HANDLE h = CreateFileA(host.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING,
                         FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) {
    DWORD code = GetLastError();
    return code == ERROR_FILE_NOT_FOUND ? Stale::kGone : Stale::kHeld;
  }
  Stale result = Stale::kHeld;
  if (LockHold(h)) {
    // Read-only leftovers go too: the name belongs to nobody.
    DWORD a = GetFileAttributesA(host.c_str());
    if (a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_READONLY) != 0) {
      SetFileAttributesA(host.c_str(), a & ~FILE_ATTRIBUTE_READONLY);
    }
    result = DeleteFileA(host.c_str()) ? Stale::kRemoved : Stale::kHeld;
  }
  CloseHandle(h);
  return result;
}

// A new, locked file under a private name beside host.
HANDLE MakeLockedPrivateFile(const std::string& host, std::string* private_path) {
  std::string drive, directory, name;
  SplitPath(host, &drive, &directory, &name);
  for (unsigned attempt = 0; attempt < 100; ++attempt) {
    char suffix[40];
    snprintf(suffix, sizeof(suffix), ".%lx.%lx", GetCurrentProcessId(),
             static_cast<unsigned long>(GetTickCount() + attempt));
    *private_path = drive + directory + "." + name + suffix;
    HANDLE h = CreateFileA(private_path->c_str(), GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr,
                           CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) {
      if (GetLastError() == ERROR_FILE_EXISTS) continue;
      SetErrnoFromLastError();
      return INVALID_HANDLE_VALUE;
    }
    if (!LockHold(h)) {
      SetErrnoFromLastError();
      CloseHandle(h);
      DeleteFileA(private_path->c_str());
      return INVALID_HANDLE_VALUE;
    }
    return h;
  }
  errno = EEXIST;
  return INVALID_HANDLE_VALUE;
}

}  // namespace

File* CreateHeldFile(const std::string& path, int* error) {
  int code = EEXIST;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    std::string host = ResolvePath(path);
    std::string private_path;
    HANDLE h = MakeLockedPrivateFile(host, &private_path);
    if (h == INVALID_HANDLE_VALUE) {
      code = errno;
      break;
    }
    if (MoveFileExA(private_path.c_str(), host.c_str(), 0)) {
      File* file = File::Open(host, OpenMode::kUpdateExisting, &code);
      if (file == nullptr) {
        CloseHandle(h);
        DeleteFileA(host.c_str());
        break;
      }
      KeepHeld(host, h);
      if (error != nullptr) *error = 0;
      return file;
    }
    DWORD move_error = GetLastError();
    CloseHandle(h);
    DeleteFileA(private_path.c_str());
    code = ErrnoFromWin32(move_error);
    if (code != EEXIST || RemoveIfStale(host) == Stale::kHeld) break;
  }
  if (error != nullptr) *error = code;
  return nullptr;
}

void ReleaseHeldName(const std::string& host_path) {
  std::lock_guard<std::mutex> guard(g_holds_mutex);
  auto it = Holds().find(host_path);
  if (it == Holds().end()) return;
  CloseHandle(it->second);
  Holds().erase(it);
}

void ReleaseHeldNamesBelow(const std::string& host_folder) {
  std::string prefix = host_folder;
  if (prefix.empty() || prefix.back() != '\\') prefix += '\\';
  std::lock_guard<std::mutex> guard(g_holds_mutex);
  for (auto it = Holds().lower_bound(prefix);
       it != Holds().end() && it->first.compare(0, prefix.size(), prefix) == 0;) {
    CloseHandle(it->second);
    it = Holds().erase(it);
  }
}

}  // namespace qv
