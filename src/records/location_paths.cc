// The path of a location on the target machine, long or short.
//
// A location continues its parent's path; the locations under "$DR$" start
// at the install root, which is either the location that stands for it or
// the literal "$DR$" that the installer replaces. A folder beginning with
// "\" stands on its own. Every level ends its part with a backslash.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "core/state.h"
#include "core/text_chars.h"
#include "quorvex/locations.h"
#include "records/family_io.h"
#include "records/location_family.h"

namespace qv {
namespace {

void AppendFolder(std::string* path, const char* folder) {
  path->append(folder);
  if (!path->empty() && path->back() != '\\') path->push_back('\\');
}

class PathBuilder {
 public:
  PathBuilder(RecordList* all, LocationPathForm form) : all_(all), form_(form) {}

  std::string Build(const LORecord& location, const LORecord* root) {
    const LORow& row = location.row;
    std::string path;
    visiting_.push_back(&location);
    if (row.Folder[0] == '\\') {
      // Absolute: nothing above it counts.
    } else if (!EqualsIgnoreCase(row.ParentName, LO_INSTALL_ROOT)) {
      // A parent that cannot be found, or that is already being built (a
      // cycle in the tree), contributes nothing.
      const LORecord* parent = FindLocation(all_, row.ParentName, row.ParentVersion);
      if (parent != nullptr && !IsVisiting(parent)) path = Build(*parent, root);
    } else if (root == nullptr || IsSameLocation(location, *root)) {
      path = LO_INSTALL_ROOT "\\";
    } else {
      // The root's own path is built without a root: it is the root.
      path = Build(*root, nullptr);
    }
    AppendFolder(&path, FolderOf(row));
    visiting_.pop_back();
    return path;
  }

 private:
  const char* FolderOf(const LORow& row) const {
    if (form_ == LocationPathForm::kShort && row.ShortFolder[0] != '\0') return row.ShortFolder;
    return row.Folder;
  }

  // A location counts as being built when it or a copy of it (the record
  // a caller handed in) is on the way down.
  bool IsVisiting(const LORecord* location) const {
    return std::any_of(visiting_.begin(), visiting_.end(), [&](const LORecord* on_the_way) {
      return IsSameLocation(*on_the_way, *location);
    });
  }

  static bool IsSameLocation(const LORecord& a, const LORecord& b) {
    return &a == &b || (EqualsIgnoreCase(a.row.Name, b.row.Name) &&
                        EqualsIgnoreCase(a.row.Version, b.row.Version));
  }

  RecordList* all_;
  LocationPathForm form_;
  std::vector<const LORecord*> visiting_;
};

void Store(char* destination, const std::string& path) {
  snprintf(destination, QV_PATH_SIZE, "%s", path.c_str());
}

int BuildFromRecord(const LORecord* location, const char* root_name, const char* root_version,
                    char* path_out, LocationPathForm form) {
  if (path_out == nullptr) return 0;
  path_out[0] = '\0';
  if (location == nullptr) return 0;
  Store(path_out,
        BuildLocationPath(*location, State().location_list, root_name, root_version, form));
  return 1;
}

int BuildFromKey(const char* name, const char* version, const char* root_name,
                 const char* root_version, char* path_out, LocationPathForm form) {
  if (path_out == nullptr) return 0;
  path_out[0] = '\0';
  if (!RequireOpenProfile()) return 0;
  const LORecord* location = FindLocation(State().location_list, name, version);
  if (location == nullptr) return 0;
  Store(path_out,
        BuildLocationPath(*location, State().location_list, root_name, root_version, form));
  return 1;
}

}  // namespace

std::string BuildLocationPath(const LORecord& location, RecordList* all, const char* root_name,
                              const char* root_version, LocationPathForm form) {
  // A root that names no location is no root: the path keeps "$DR$".
  const LORecord* root = FindLocation(all, root_name, root_version);
  return PathBuilder(all, form).Build(location, root);
}

}  // namespace qv

using qv::LocationPathForm;

extern "C" {

int MPBuildLOPath(const LORecord* location, const char* rootName, const char* rootVersion,
                  char* pathOut) {
  return qv::BuildFromRecord(location, rootName, rootVersion, pathOut, LocationPathForm::kLong);
}

int MPBuildLOPathByKey(const char* name, const char* version, const char* rootName,
                       const char* rootVersion, char* pathOut) {
  return qv::BuildFromKey(name, version, rootName, rootVersion, pathOut, LocationPathForm::kLong);
}

int MPBuildLOShortPath(const LORecord* location, const char* rootName, const char* rootVersion,
                       char* pathOut) {
  return qv::BuildFromRecord(location, rootName, rootVersion, pathOut, LocationPathForm::kShort);
}

int MPBuildLOShortPathByKey(const char* name, const char* version, const char* rootName,
                            const char* rootVersion, char* pathOut) {
  return qv::BuildFromKey(name, version, rootName, rootVersion, pathOut, LocationPathForm::kShort);
}

}  // extern "C"
