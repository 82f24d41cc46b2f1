// The location list that the open profile holds: read when the profile is
// opened, kept as the store holds it while the profile is open, written back
// when a locked Master Profile is closed, and asked for directories by the
// path building of the catalogue.
#include "records/locations.h"

#include "core/state.h"
#include "quorvex/catalogue.h"
#include "quorvex/locations.h"
#include "records/family_io.h"
#include "records/location_family.h"
#include "records/record_list.h"

namespace qv {
namespace {

using LocationList = ListOps<LORecord, &MPFreeLO>;

// Reading the files of a profile that is about to be opened must neither
// use nor fill the catalogue of the profile that is open now: its entries
// name that profile's files, and the catalogue looks them up by kind and
// owner before it searches the folder it is given.
class ForeignProfileRead {
 public:
  ForeignProfileRead() : files_(State().global_file_list) { State().global_file_list = nullptr; }
  ~ForeignProfileRead() { State().global_file_list = files_; }
  ForeignProfileRead(const ForeignProfileRead&) = delete;
  ForeignProfileRead& operator=(const ForeignProfileRead&) = delete;

 private:
  RecordList* files_;
};

// Whether the profile in directory has a location file that can be read.
// Asked quietly: opening says "Problem retrieving locations." itself, and
// only when it is not silent.
bool LocationFileOpens(const char* directory) {
  char path[QV_PATH_SIZE] = "";
  QvFile file = OpenProfileFile(directory, "", "", "LO", path, MODE_READ);
  bool opens = QvFileIsOpen(file) != 0;
  QvCloseFile(file);
  return opens;
}

RecordList* CopyOf(RecordList* list) {
  RecordList* copy = nullptr;
  LocationList::New(&copy);
  if (copy == nullptr) return nullptr;
  LocationList::ForEach(list, [&](LORecord* location) {
    LORecord* record = nullptr;
    if (MPCopyLO(&record, location, 0, nullptr)) LocationList::Append(copy, record);
  });
  return copy;
}

}  // namespace

bool LoadLocations(const char* directory, RecordList** list) {
  *list = nullptr;
  bool read;
  if (directory != nullptr) {
    ForeignProfileRead foreign;
    read = LocationFileOpens(directory) &&
           ReadKindList(LoSchema(), Owner{"", "", directory}, MODE_READ, list);
  } else {
    read = ReadKindList(LoSchema(), Owner{}, MODE_READ, list);
  }
  if (read && *list != nullptr) return true;
  FreeLocations(*list);
  *list = nullptr;
  return false;
}

void WriteBackLocations() {
  const EngineState& s = State();
  if (s.location_list == nullptr || !s.locked) return;
  if ((s.profile_flags & OPEN_ORVIK) || !(s.profile_flags & OPEN_MASTER)) return;
  MPWriteLOList(s.location_list);
}

void FreeLocations(RecordList* list) {
  LocationList::Free(list);
}

bool ResolveLocationDirectory(const char* name, const char* version, const char* root_name,
                              const char* root_version, std::string* directory) {
  RecordList* all = State().location_list;
  const LORecord* location = FindLocation(all, name, version);
  if (location == nullptr) return false;
  *directory = BuildLocationPath(*location, all, root_name, root_version, LocationPathForm::kLong);
  return true;
}

void ReplaceOpenLocations(RecordList* written) {
  EngineState& s = State();
  if (s.profile_path[0] == '\0' || written == s.location_list) return;
  RecordList* copy = CopyOf(written);
  if (copy == nullptr) return;  // memory is short: the old list stays
  FreeLocations(s.location_list);
  s.location_list = copy;
}

void ReloadOpenLocations() {
  EngineState& s = State();
  if (s.profile_path[0] == '\0') return;
  RecordList* fresh = nullptr;
  if (!ReadKindList(LoSchema(), Owner{}, MODE_READ, &fresh)) {
    FreeLocations(fresh);
    return;
  }
  FreeLocations(s.location_list);
  s.location_list = fresh;
}

}  // namespace qv
