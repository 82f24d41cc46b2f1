// Every file of a profile that the catalogue knows, for readers of the
// whole profile (the consistency check).
#ifndef QUORVEX_PROFILE_PROFILE_FILES_H_
#define QUORVEX_PROFILE_PROFILE_FILES_H_

#include <string>
#include <vector>

namespace qv {

struct ProfileFileFound {
  const char* kind;  // the catalogue kind ("MO", "AD", ...)
  std::string path;
};

// The search pattern of each catalogue kind's files below directory, in the
// catalogue's order; a kind with a file per language has "*" for the
// language.
std::vector<std::string> ProfileFilePatterns(const char* directory);

// The files of every catalogue kind below directory, kind by kind in the
// catalogue's order, each kind's files in directory order.
std::vector<ProfileFileFound> ListProfileFiles(const char* directory);

}  // namespace qv

#endif  // QUORVEX_PROFILE_PROFILE_FILES_H_
