// What opening, closing and path building need of the location family.
#ifndef QUORVEX_RECORDS_LOCATIONS_H_
#define QUORVEX_RECORDS_LOCATIONS_H_

#include <string>

#include "quorvex/list.h"

namespace qv {

// Reads the locations of the profile in directory (a Master Profile about
// to be opened), or of the open Orvik profile when directory is NULL, into
// a new list; false when they cannot be read.
bool LoadLocations(const char* directory, RecordList** list);
// Writes the open profile's location list back to its file.
void WriteBackLocations();
// Frees a list made by LoadLocations (NULL accepted).
void FreeLocations(RecordList* list);
// The directory of the location (name, version) of the open profile, built
// with the install-root location (root_name, root_version; empty for none).
// False when the location does not exist.
bool ResolveLocationDirectory(const char* name, const char* version, const char* root_name,
                              const char* root_version, std::string* directory);

}  // namespace qv

#endif  // QUORVEX_RECORDS_LOCATIONS_H_
