// Where a location's files sit in a tree laid out like the Lodestar
// location: a location inside the Lodestar location is named by the part
// below it.
#ifndef QUORVEX_PROFILE_LODESTAR_RELATIVE_H_
#define QUORVEX_PROFILE_LODESTAR_RELATIVE_H_

#include <string>

namespace qv {

// The part of directory below lodestar (its leading separators dropped)
// when directory lies inside lodestar, compared without regard to case;
// otherwise directory unchanged. An empty lodestar contains nothing.
std::string RelativeToLodestar(const std::string& directory, const std::string& lodestar);

}  // namespace qv

#endif  // QUORVEX_PROFILE_LODESTAR_RELATIVE_H_
