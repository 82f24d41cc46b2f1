// The location (LO) and icon-location (IL) families inside the engine: their
// schemas, their entries for the tool, the lookup among the open profile's
// locations and the building of a location's path.
#ifndef QUORVEX_RECORDS_LOCATION_FAMILY_H_
#define QUORVEX_RECORDS_LOCATION_FAMILY_H_

#include <string>

#include "quorvex/list.h"
#include "quorvex/locations.h"
#include "records/kind_api.h"
#include "records/kind_schema.h"

namespace qv {

const KindSchema& LoSchema();
const KindSchema& IlSchema();

const KindApi& LoKindApi();
const KindApi& IlKindApi();

// Whether the location has exactly that key, names and versions compared
// without regard to case; an empty (or null) version is the empty version.
bool LocationHasKey(const LORecord& location, const char* name, const char* version);
// The first location of the list with exactly that key, walking from head
// without touching the cursor; nullptr for an empty name or none.
LORecord* FindExactLocation(RecordList* list, const char* name, const char* version);
// The location a key names: the one with exactly that key wins; when there
// is none and the version is empty, the first location of that name.
LORecord* FindLocation(RecordList* list, const char* name, const char* version);

enum class LocationPathForm { kLong, kShort };

// The path of the location on the target machine, ending in a backslash,
// built through its parents in `all`. The root location (root_name,
// root_version; empty name for none) continues a location under "$DR$".
std::string BuildLocationPath(const LORecord& location, RecordList* all, const char* root_name,
                              const char* root_version, LocationPathForm form);

// Keep the open profile's location list as the store now holds it: after
// the list was written to the file (a copy of it becomes the open list),
// and after rows changed in the database (the rows are read again).
void ReplaceOpenLocations(RecordList* written);
void ReloadOpenLocations();

}  // namespace qv

#endif  // QUORVEX_RECORDS_LOCATION_FAMILY_H_
