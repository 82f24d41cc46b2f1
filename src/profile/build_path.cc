// Building file paths from a base directory, relative parts and locations.
#include <cstdio>
#include <string>

#include "platform/fs.h"
#include "profile/lodestar_relative.h"
#include "quorvex/catalogue.h"
#include "quorvex/report.h"
#include "records/locations.h"

namespace qv {
namespace {

constexpr char kLodestarLocation[] = "Lodestar";

bool IsEmpty(const char* text) {
  return text == nullptr || *text == '\0';
}

// A drive ("C:...") or a path relative to the current folder ("./", "..")
// stands on its own; anything else continues the path built so far.
bool IsAbsolutePart(const char* part) {
  return part[0] == '.' || (part[0] != '\0' && part[1] == ':');
}

void AddPart(std::string* path, const char* part) {
  if (IsEmpty(part)) return;
  if (IsAbsolutePart(part)) {
    *path = part;
  } else {
    path->append(part);
  }
}

// Leaves a directory text to which a file name can be appended directly.
// An empty text stays empty, so that a bare file name stays relative; the
// separator added follows the one the text already uses.
void PrepareForFileName(std::string* path) {
  if (path->empty() || IsSeparator(path->back())) return;
  size_t last = path->find_last_of("\\/");
  path->push_back(last != std::string::npos ? (*path)[last] : '/');
}

void AppendFileName(std::string* path, const char* default_name, const char* name) {
  path->append(IsEmpty(name) ? default_name : name);
}

void Store(char* destination, const std::string& path) {
  snprintf(destination, QV_PATH_SIZE, "%s", path.c_str());
}

}  // namespace
}  // namespace qv

extern "C" {

int BuildFilePath(char* destination, const char* base, const char* part1, const char* part2,
                  const char* part3, const char* defaultName, const char* name) {
  const std::string base_path = base != nullptr ? base : "";
  std::string path = base_path;
  qv::AddPart(&path, part1);
  // A part that is not given (NULL) ends the building; an empty one is
  // passed over.
  if (part2 != nullptr) {
    qv::AddPart(&path, part2);
    if (part3 != nullptr) {
      if (*part3 != '\0') {
        // Deliberately on top of the base, not of what part1 and part2 built.
        path = qv::IsAbsolutePart(part3) ? std::string(part3) : base_path + part3;
      }
      if (defaultName != nullptr) {
        qv::PrepareForFileName(&path);
        qv::AppendFileName(&path, defaultName, name);
      }
    }
  }
  qv::Store(destination, path);
  return 1;
}

int GetLodestarLocationPath(char* destination, const char* rootName, const char* rootVersion) {
  destination[0] = '\0';
  std::string directory;
  // The Lodestar location is known by its name alone.
  if (!qv::ResolveLocationDirectory(qv::kLodestarLocation, nullptr,
                                    rootName != nullptr ? rootName : "",
                                    rootVersion != nullptr ? rootVersion : "", &directory)) {
    ReportError("Lodestar Location cannot be found in Master Profile!", 0);
    return 0;
  }
  qv::Store(destination, directory);
  return 1;
}

int BuildFilePathNameEx(char* destination, const char* locationName, const char* locationVersion,
                        const char* relativePath, const char* defaultName, const char* rootName,
                        const char* rootVersion, const char* base, const char* name) {
  std::string path = base != nullptr ? base : "";
  qv::Store(destination, path);
  if (qv::IsEmpty(relativePath)) {
    const char* location_name = locationName != nullptr ? locationName : "";
    const char* location_version = locationVersion != nullptr ? locationVersion : "";
    std::string directory;
    if (!qv::ResolveLocationDirectory(location_name, location_version,
                                      rootName != nullptr ? rootName : "",
                                      rootVersion != nullptr ? rootVersion : "", &directory)) {
      char message[QV_LINE_SIZE];
      snprintf(message, sizeof message,
               "BuildFilePathNameEx has been asked to find location \"%s\",\"%s\" that does not "
               "exist.",
               location_name, location_version);
      ReportError(message, 0);
      return 0;
    }
    char lodestar[QV_PATH_SIZE];
    GetLodestarLocationPath(lodestar, rootName, rootVersion);
    std::string below = qv::RelativeToLodestar(directory, lodestar);
    // The base is a folder of its own: the location's folder goes below it,
    // behind exactly one separator.
    if (!below.empty() && !qv::IsSeparator(below.front())) qv::PrepareForFileName(&path);
    qv::AddPart(&path, below.c_str());
  } else {
    qv::AddPart(&path, relativePath);
  }
  qv::PrepareForFileName(&path);
  if (defaultName != nullptr) qv::AppendFileName(&path, defaultName, name);
  qv::Store(destination, path);
  return 1;
}

}  // extern "C"
