// The checks a location's folder goes through when it is read: folder-name
// normalisation, replaceable parameters and the short (8.3) name test.
//
// Folders are paths on the target Windows machine, so they keep "\" and
// follow the Windows short-name rules, whatever the host is.
#ifndef QUORVEX_RECORDS_LOCATION_CHECKS_H_
#define QUORVEX_RECORDS_LOCATION_CHECKS_H_

#include <string>

namespace qv {

// Brings a folder to one spelling: "/" becomes "\", runs of "\" collapse to
// one (a leading "\\" of a network path stays), and a trailing "\" is
// dropped unless it is all there is or follows a drive ("C:\").
std::string NormaliseFolderName(const std::string& folder);

// The folder without its replaceable parameters (each "[" up to the next
// "]", both included). False when a "[" has no "]"; *stripped then holds
// what was stripped before it.
bool StripReplaceableParameters(const std::string& folder, std::string* stripped);

// Whether every component of the path is a valid short name: a base of 1 to
// 8 characters and an optional extension of 1 to 3, of letters, digits and
// $ % ' - _ @ ~ ` ! ( ) { } ^ # & (and characters above 127), no blanks. An
// optional drive ("C:") leads; empty components (a leading "\"), "." and
// ".." pass.
bool IsShortPath(const std::string& path);

}  // namespace qv

#endif  // QUORVEX_RECORDS_LOCATION_CHECKS_H_
