// Before a host rewrites a kind's file: does the file read as written?
//
// A rewrite copies every line it does not own byte for byte and writes the
// kind's records from what the reader made of their lines, so a line the
// reader does not take as written would be lost or carried on. Hosts ask
// here first and leave such a file to be mended by hand.
#ifndef QUORVEX_RECORDS_REWRITE_CHECK_H_
#define QUORVEX_RECORDS_REWRITE_CHECK_H_

#include <optional>
#include <string>

#include "records/kind_schema.h"
#include "records/profile_problem.h"

namespace qv {

// The first problem a rewrite of the kind's file in the open Master Profile
// would lose or carry on; owner names the file of per-language kinds (the
// language code). Nothing when the file reads cleanly, is missing (the
// family decides what a missing file means), or is not one of a fixed or
// per-language kind.
std::optional<ProfileProblem> RewriteProblem(const KindSchema& schema, const std::string& owner);

}  // namespace qv

#endif  // QUORVEX_RECORDS_REWRITE_CHECK_H_
