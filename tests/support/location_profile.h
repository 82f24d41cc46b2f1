// A Master Profile for the location tests: made by QvInitMasterProfile in
// the scripted host's scratch folder, with location and icon-location files
// written as a test needs them.
#ifndef QUORVEX_TESTS_SUPPORT_LOCATION_PROFILE_H_
#define QUORVEX_TESTS_SUPPORT_LOCATION_PROFILE_H_

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/profiles.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace qvtest {

// The head every new location file starts with.
inline constexpr char kLocationsHead[] = "\n[SourceSafe]\n$Header$\n\n[Locations]\n";
inline constexpr char kIconLocationsHead[] = "\n[SourceSafe]\n$Header$\n\n[Icon Locations]\n";

inline constexpr uint32_t kReadOnlyOpen = OPEN_MASTER | OPEN_NO_VCS;
inline constexpr uint32_t kLockedOpen = OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK;

// 32 flag letters: the given ones, then N.
inline std::string FlagLetters(const std::string& first) {
  return first + std::string(32 - first.size(), 'N');
}

class LocationProfile {
 public:
  explicit LocationProfile(ScriptedHost* host) : dir_(host->scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(dir_.c_str()), 1);
  }

  const std::string& dir() const { return dir_; }
  std::string LocationFile() const { return dir_ + "/locs/vardo.lo"; }
  std::string IconFile() const { return dir_ + "/locs/icons.lo"; }
  // The file's path as the engine names it in messages.
  std::string LocationFileAsNamed() const { return dir_ + "\\locs\\vardo.lo"; }
  std::string IconFileAsNamed() const { return dir_ + "\\locs\\icons.lo"; }

  void WriteLocations(const std::string& records) const {
    WriteFileBytes(LocationFile(), kLocationsHead + records);
  }
  void WriteIcons(const std::string& records) const {
    WriteFileBytes(IconFile(), kIconLocationsHead + records);
  }
  std::string Locations() const { return ReadFileBytes(LocationFile()); }
  std::string Icons() const { return ReadFileBytes(IconFile()); }

  int Open(uint32_t flags) const { return OpenProfileAt(dir_, flags); }

 private:
  std::string dir_;
};

// The names of a list's locations, in order.
inline std::vector<std::string> LocationNames(LOList* list) {
  std::vector<std::string> names;
  if (list == nullptr || list->head == nullptr) return names;
  RecordNode* node = list->head;
  for (uint32_t i = 0; i < list->count; ++i, node = node->next) {
    names.push_back(static_cast<LORecord*>(node->record)->row.Name);
  }
  return names;
}

inline LORecord* NewLocation(const char* name, const char* version, const char* parent_name,
                             const char* parent_version, const char* folder,
                             const char* short_folder = "") {
  LORecord* record = nullptr;
  MPNewLO(&record);
  snprintf(record->row.Name, sizeof record->row.Name, "%s", name);
  snprintf(record->row.Version, sizeof record->row.Version, "%s", version);
  snprintf(record->row.ParentName, sizeof record->row.ParentName, "%s", parent_name);
  snprintf(record->row.ParentVersion, sizeof record->row.ParentVersion, "%s", parent_version);
  snprintf(record->row.Folder, sizeof record->row.Folder, "%s", folder);
  snprintf(record->row.ShortFolder, sizeof record->row.ShortFolder, "%s", short_folder);
  return record;
}

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_LOCATION_PROFILE_H_
