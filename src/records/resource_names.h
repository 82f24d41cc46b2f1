// Generated resource names: "MP_GEN_" + the open profile's prefix + an
// eleven-digit counter. The counter belongs to the whole open profile,
// shared by every language, and is only ever raised.
#ifndef QUORVEX_RECORDS_RESOURCE_NAMES_H_
#define QUORVEX_RECORDS_RESOURCE_NAMES_H_

#include <cstddef>

namespace qv {

// Length of a generated resource name: seven, five and eleven characters.
constexpr size_t kGeneratedResourceNameLength = 23;

// A name read from a file (or about to be written) that contains "MP_GEN_"
// raises the counter above the number standing at position 12 of the name,
// whatever prefix it carries.
void NoteResourceName(const char* name);

// Writes the next generated name into name (at least 24 bytes) and raises
// the counter.
void NextResourceName(char* name, size_t size);

}  // namespace qv

#endif  // QUORVEX_RECORDS_RESOURCE_NAMES_H_
