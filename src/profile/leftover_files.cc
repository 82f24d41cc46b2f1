#include "profile/leftover_files.h"

#include <string>
#include <vector>

#include "platform/fs.h"
#include "profile/profile_files.h"

namespace qv {
namespace {

constexpr char kStagedSuffix[] = ".staged";
constexpr size_t kStagedLength = sizeof kStagedSuffix - 1;
constexpr size_t kTemporaryLetters = 6;  // what mkstemp puts in place of "XXXXXX"

bool IsLetterOrDigit(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

// X for ".X.staged", the name a batch keeps a file's next version under;
// "" for any other name. The wildcard search that found the name ignored
// case, so the suffix is checked here as the engine writes it.
std::string StagedTarget(const std::string& name) {
  if (name.size() <= kStagedLength + 1 || name[0] != '.') return "";
  if (name.compare(name.size() - kStagedLength, kStagedLength, kStagedSuffix) != 0) return "";
  return name.substr(1, name.size() - kStagedLength - 1);
}

// X for ".X.abc123", the name a replacement writes X's new content under
// before the rename; "" for any other name.
std::string TemporaryTarget(const std::string& name) {
  if (name.size() <= kTemporaryLetters + 2 || name[0] != '.') return "";
  size_t dot = name.size() - kTemporaryLetters - 1;
  if (name[dot] != '.') return "";
  for (size_t i = dot + 1; i < name.size(); ++i) {
    if (!IsLetterOrDigit(name[i])) return "";
  }
  return name.substr(1, dot - 1);
}

// The profile file a leftover belongs to: its staged version, its
// replacement's temporary file, or the temporary file of a replacement of
// its staged version (which sits beside the staged file as
// "..X.staged.abc123"). "" when name is none of these.
std::string LeftoverOf(const std::string& name) {
  std::string target = TemporaryTarget(name);
  if (!target.empty()) {
    std::string staged = StagedTarget(target);
    if (!staged.empty()) target = staged;
  } else {
    target = StagedTarget(name);
  }
  // A generated profile file name never starts with a dot: a name like
  // "..x.mo.abc123" beside no staged file is somebody's hidden file.
  if (target.empty() || target[0] == '.') return "";
  return target;
}

void RemoveLeftovers(const std::string& pattern) {
  std::string drive, folder, files;
  SplitPath(pattern, &drive, &folder, &files);
  folder = drive + folder;
  // Each search finds the names of one shape whose file part has the name
  // of the kind's files; LeftoverOf then holds each name to the shape.
  const std::string any_letters(kTemporaryLetters, '?');
  const std::string searches[] = {
      folder + "." + files + kStagedSuffix,
      folder + "." + files + "." + any_letters,
      folder + ".." + files + kStagedSuffix + "." + any_letters,
  };
  for (const std::string& search : searches) {
    for (const DirEntry& entry : FindFiles(search)) {
      if (entry.is_directory || LeftoverOf(entry.name).empty()) continue;
      DeleteFile(folder + entry.name);
    }
  }
}

}  // namespace

void RemoveLeftoverFiles(const char* directory) {
  for (const std::string& pattern : ProfileFilePatterns(directory)) RemoveLeftovers(pattern);
}

}  // namespace qv
