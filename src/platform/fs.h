// File-system services: paths, directory searches, attributes, replacement.
//
// Profile files were written on a case-insensitive file system and the
// engine names the same folder as "modules" and "MODULES". Every function
// here accepts "\" as well as "/" as a separator and resolves each path
// component ASCII-case-insensitively against what exists (an exact match
// first); a component that does not exist keeps the case given.
#ifndef QUORVEX_PLATFORM_FS_H_
#define QUORVEX_PLATFORM_FS_H_

#include <string>
#include <string_view>
#include <vector>

namespace qv {

// The host path that a profile path names: separators made native and each
// existing component replaced by its real spelling.
std::string ResolvePath(const std::string& path);

bool FileExists(const std::string& path);  // a file, not a folder
bool DirectoryExists(const std::string& path);
bool DeleteFile(const std::string& path);
// Creates the folder and any missing parents; true when it exists afterwards.
bool MakeDirectories(const std::string& path);

struct DirEntry {
  std::string name;  // the name as stored on disk
  bool is_directory;
};
// The entries of the pattern's folder whose names match its last component
// ("*" and "?" wildcards, without regard to case), sorted by name without
// regard to case. "." and ".." are never returned.
std::vector<DirEntry> FindFiles(const std::string& pattern);

// The read-only attribute: no write bit set in the file's mode.
bool IsReadOnly(const std::string& path);
// Setting clears every write bit; clearing sets the owner's write bit.
bool SetReadOnly(const std::string& path, bool read_only);

// Replaces target with the content of source so that a crash never leaves
// target half written: the content is written beside target, flushed and
// renamed over it. Fails when target is read-only. source is kept.
bool ReplaceFileContent(const std::string& source, const std::string& target);
// Runs of bytes that make one content, in order.
using ByteRuns = std::vector<std::string_view>;
// As ReplaceFileContent, with content as the new content.
bool ReplaceFileWithBytes(const ByteRuns& content, const std::string& target);

// Path text helpers ("\" and "/" both count as separators).
bool IsSeparator(char c);
std::string LastPathComponent(const std::string& path);
void RemoveTrailingSeparator(std::string* path);
// Ensures a trailing separator (the native one when one must be added).
void AddTrailingSeparator(std::string* path);
// Splits into directory (with its trailing separator) and file name; the
// drive is always empty on POSIX.
void SplitPath(const std::string& path, std::string* drive, std::string* directory,
               std::string* file_name);

// System facts.
std::string TempDirectory();    // $TMPDIR, else /tmp
std::string HostProgramPath();  // /proc/self/exe
std::string CurrentUserName();  // the login name of the effective user; "" on failure

}  // namespace qv

#endif  // QUORVEX_PLATFORM_FS_H_
