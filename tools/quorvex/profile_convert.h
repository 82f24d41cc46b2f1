// A whole profile copied from one store to the other: a Master Profile
// folder into a new Orvik database, or an Orvik database into a new Master
// Profile folder.
//
// What the database cannot hold (kinds without a table, inactive records,
// members the text store alone keeps) goes into the database's aside table
// and comes back from it, so that folder -> database -> folder gives the
// same records, kind by kind.
#ifndef QUORVEX_TOOLS_PROFILE_CONVERT_H_
#define QUORVEX_TOOLS_PROFILE_CONVERT_H_

#include <string>
#include <vector>

namespace qvtool {

struct ConvertResult {
  bool ok = false;
  size_t records = 0;                 // records read from the source
  size_t written = 0;                 // records now in the target's own store
  size_t aside = 0;                   // records (or their text members) kept aside
  std::vector<std::string> notes;     // one line per kind kept aside
  std::vector<std::string> failures;  // what could not be read or written
};

// Reads every record of the profile at source (a folder, or a database
// file when source_is_orvik) and writes them into a new profile of the
// other store at target, which must not exist yet. Nothing is written when
// the source does not read whole.
ConvertResult ConvertProfile(const std::string& source, bool source_is_orvik,
                             const std::string& target);

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_PROFILE_CONVERT_H_
