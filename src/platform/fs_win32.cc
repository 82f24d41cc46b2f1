// File-system services on Windows.
//
// The file system ignores case by itself, but a path is still resolved to
// the spelling its files are stored under: the engine keeps files it has
// staged or holds by their host path, and two spellings of one file must
// name it alike. Attributes are the real read-only attribute, and replacing
// a file is a rename over it with MoveFileEx.

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <string_view>
#include <vector>

#include "platform/fs.h"
#include "platform/held_file.h"
#include "platform/names.h"
#include "platform/path_components.h"
#include "platform/replace_with.h"
#include "platform/win32.h"
#include "platform/write_faults.h"

namespace qv {

namespace {

constexpr DWORD kNoAttributes = INVALID_FILE_ATTRIBUTES;

DWORD Attributes(const std::string& host) {
  return GetFileAttributesA(host.empty() ? "." : host.c_str());
}

// A name beside target that no other file has, made empty; "" on failure.
std::string MakeTempBeside(const std::string& target) {
  std::string drive, directory, name;
  SplitPath(target, &drive, &directory, &name);
  for (unsigned attempt = 0; attempt < 100; ++attempt) {
    char suffix[32];
    snprintf(suffix, sizeof(suffix), ".%lx.%u", GetCurrentProcessId(),
             static_cast<unsigned>(GetTickCount()) + attempt);
    std::string temp = drive + directory + "." + name + suffix;
    HANDLE h = CreateFileA(temp.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h != INVALID_HANDLE_VALUE) {
      CloseHandle(h);
      return temp;
    }
    if (GetLastError() != ERROR_FILE_EXISTS) break;
  }
  return std::string();
}

// The name a folder entry is stored under, for the entry of dir (which
// ends in a separator, or is empty for the current folder) whose name is
// component without regard to case; "" when there is none.
std::string StoredName(const std::string& dir, const std::string& component) {
  if (component.find_first_of("*?") != std::string::npos) return std::string();
  WIN32_FIND_DATAA data;
  HANDLE h = FindFirstFileA((dir + component).c_str(), &data);
  if (h == INVALID_HANDLE_VALUE) return std::string();
  FindClose(h);
  return data.cFileName;
}

}  // namespace

bool IsSeparator(char c) {
  return c == '/' || c == '\\';
}

std::string ResolvePath(const std::string& path) {
  // The name of a server and share, or a drive, is kept as given.
  if (path.size() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1])) {
    return ResolveComponents("\\\\", path, 2, '\\', 2, StoredName);
  }
  if (path.size() >= 2 && path[1] == ':') {
    return ResolveComponents(path.substr(0, 2), path, 2, '\\', 0, StoredName);
  }
  return ResolveComponents("", path, 0, '\\', 0, StoredName);
}

bool FileExists(const std::string& path) {
  if (path.empty()) return false;
  DWORD a = Attributes(ResolvePath(path));
  return a != kNoAttributes && (a & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool DirectoryExists(const std::string& path) {
  if (path.empty()) return false;
  DWORD a = Attributes(ResolvePath(path));
  return a != kNoAttributes && (a & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool DeleteFile(const std::string& path) {
  std::string host = ResolvePath(path);
  if (host.empty()) return false;
  DWORD a = Attributes(host);
  if (a == kNoAttributes) {
    SetErrnoFromLastError();
    return false;
  }
  if ((a & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
  if ((a & FILE_ATTRIBUTE_READONLY) != 0) {
    errno = EACCES;
    return false;
  }
  if (!DeleteFileA(host.c_str())) {
    SetErrnoFromLastError();
    return false;
  }
  ReleaseHeldName(host);  // a temporary file's name is free for others now
  return true;
}

bool MakeDirectories(const std::string& path) {
  std::string host = ResolvePath(path);
  if (host.empty()) return false;
  // Each prefix that ends before a separator, then the whole path; a drive
  // ("C:") or a UNC server and share are never made.
  for (size_t i = 1; i <= host.size(); ++i) {
    if (i < host.size() && host[i] != '\\') continue;
    if (host[i - 1] == '\\' || host[i - 1] == ':') continue;
    std::string prefix = host.substr(0, i);
    if (!CreateDirectoryA(prefix.c_str(), nullptr)) {
      DWORD code = GetLastError();
      if (code != ERROR_ALREADY_EXISTS && code != ERROR_ACCESS_DENIED &&
          code != ERROR_INVALID_NAME && code != ERROR_BAD_NETPATH) {
        return false;
      }
    }
  }
  return DirectoryExists(host);
}

std::vector<DirEntry> FindFiles(const std::string& pattern) {
  std::vector<DirEntry> entries;
  std::string drive, directory, name_pattern;
  SplitPath(pattern, &drive, &directory, &name_pattern);
  std::string folder = ResolvePath(drive + directory);
  if (!folder.empty() && folder.back() != '\\' && folder.back() != ':') folder += '\\';
  // Every entry is listed and matched here: Windows' own matching also
  // tries the 8.3 short names, which would let "*.mo" find "x.mod".
  WIN32_FIND_DATAA data;
  HANDLE h = FindFirstFileA((folder + "*").c_str(), &data);
  if (h == INVALID_HANDLE_VALUE) return entries;
  do {
    std::string name = data.cFileName;
    if (name == "." || name == "..") continue;
    if (!PatternMatches(name_pattern, name)) continue;
    entries.push_back(DirEntry{name, (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
  } while (FindNextFileA(h, &data));
  FindClose(h);
  std::sort(entries.begin(), entries.end(),
            [](const DirEntry& a, const DirEntry& b) { return NameLess(a.name, b.name); });
  return entries;
}

bool IsReadOnly(const std::string& path) {
  DWORD a = Attributes(ResolvePath(path));
  return a != kNoAttributes && (a & FILE_ATTRIBUTE_READONLY) != 0;
}

bool SetReadOnly(const std::string& path, bool read_only) {
  std::string host = ResolvePath(path);
  if (host.empty()) return false;
  DWORD a = Attributes(host);
  if (a == kNoAttributes) return false;
  DWORD wanted = read_only ? (a | FILE_ATTRIBUTE_READONLY) : (a & ~FILE_ATTRIBUTE_READONLY);
  if (wanted == a) return true;
  if (wanted == 0) wanted = FILE_ATTRIBUTE_NORMAL;
  return SetFileAttributesA(host.c_str(), wanted) != 0;
}

namespace {

// Writes all n bytes (within the write budget); false on any failure.
bool WriteAll(HANDLE out, const char* bytes, size_t n) {
  for (size_t done = 0; done < n;) {
    DWORD allowed = static_cast<DWORD>(AllowedWrite(std::min<size_t>(n - done, 1u << 30)));
    DWORD w = 0;
    if (allowed == 0 || !WriteFile(out, bytes + done, allowed, &w, nullptr) || w == 0) {
      return false;
    }
    done += w;
  }
  return true;
}

}  // namespace

bool ReplaceWith(const std::string& to, const std::function<bool(const WriteBytes& write)>& fill) {
  if (to.empty()) return false;
  DWORD target_attributes = Attributes(to);
  if (target_attributes != kNoAttributes &&
      (target_attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0) {
    errno = EACCES;
    return false;
  }
  std::string temp = MakeTempBeside(to);
  if (temp.empty()) {
    SetErrnoFromLastError();
    return false;
  }
  HANDLE out = CreateFileA(temp.c_str(), GENERIC_WRITE, 0, nullptr, TRUNCATE_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
  bool ok = out != INVALID_HANDLE_VALUE &&
            fill([out](const char* bytes, size_t n) { return WriteAll(out, bytes, n); });
  int code = ok ? 0 : (errno != 0 ? errno : EIO);
  if (out != INVALID_HANDLE_VALUE) {
    if (ok && !FlushFileBuffers(out)) code = SetErrnoFromLastError(), ok = false;
    CloseHandle(out);
  }
  if (ok &&
      !MoveFileExA(temp.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    code = SetErrnoFromLastError();
    ok = false;
  }
  if (!ok) {
    DeleteFileA(temp.c_str());
    errno = code;
    return false;
  }
  return true;
}

std::string LastPathComponent(const std::string& path) {
  size_t i = path.size();
  while (i > 0 && !IsSeparator(path[i - 1]) && path[i - 1] != ':') --i;
  return path.substr(i);
}

void RemoveTrailingSeparator(std::string* path) {
  // A root keeps its separator: "\" and "C:\" still name folders.
  while (path->size() > 1 && IsSeparator(path->back())) {
    if (path->size() == 3 && (*path)[1] == ':') break;
    path->pop_back();
  }
}

void AddTrailingSeparator(std::string* path) {
  if (path->empty() || !IsSeparator(path->back())) path->push_back('\\');
}

void SplitPath(const std::string& path, std::string* drive, std::string* directory,
               std::string* file_name) {
  size_t start = 0;
  if (path.size() >= 2 && path[1] == ':' &&
      ((path[0] >= 'A' && path[0] <= 'Z') || (path[0] >= 'a' && path[0] <= 'z'))) {
    start = 2;
  }
  size_t i = path.size();
  while (i > start && !IsSeparator(path[i - 1])) --i;
  if (drive != nullptr) *drive = path.substr(0, start);
  if (directory != nullptr) *directory = path.substr(start, i - start);
  if (file_name != nullptr) *file_name = path.substr(i);
}

std::string TempDirectory() {
  char buffer[MAX_PATH + 1];
  DWORD n = GetTempPathA(sizeof(buffer), buffer);
  if (n == 0 || n > sizeof(buffer)) return std::string(".");
  std::string dir(buffer, n);
  RemoveTrailingSeparator(&dir);
  return dir;
}

std::string HostProgramPath() {
  std::vector<char> buffer(MAX_PATH);
  for (;;) {
    DWORD n = GetModuleFileNameA(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
    if (n == 0) return std::string();
    if (n < buffer.size()) return std::string(buffer.data(), n);
    buffer.resize(buffer.size() * 2);
  }
}

std::string CurrentUserName() {
  char buffer[257];
  DWORD size = sizeof(buffer);
  if (GetUserNameA(buffer, &size) && size > 1) return std::string(buffer, size - 1);
  for (const char* variable : {"USERNAME", "USER"}) {
    const char* value = getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return std::string();
}

}  // namespace qv
