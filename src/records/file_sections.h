// Which sections a profile file of a catalogue kind holds.
//
// The answer is derived, never listed by hand: the version-control keyword
// section every file starts with, the sections of every record kind whose
// records live in files of that kind, and whatever the header of a new file
// of the kind brings (sections of kinds not yet described as data).
#ifndef QUORVEX_RECORDS_FILE_SECTIONS_H_
#define QUORVEX_RECORDS_FILE_SECTIONS_H_

#include <string>
#include <vector>

namespace qv {

// The sections a file of the catalogue kind ("MO", "AD", "RES", ...) holds,
// in no particular order; empty for a kind nothing is known about.
const std::vector<std::string>& HeldSections(const char* file_kind);

// Whether a file of the kind holds the section (names compare without
// regard to case, as the reader compares them).
bool HoldsSection(const char* file_kind, const std::string& section);

}  // namespace qv

#endif  // QUORVEX_RECORDS_FILE_SECTIONS_H_
