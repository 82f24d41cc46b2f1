// Members of a record looked up by the names hosts use for them: the key
// and owner names of a kind's operations ("id", "name", "language") and the
// member texts that checks compare.
#ifndef QUORVEX_RECORDS_RECORD_MEMBERS_H_
#define QUORVEX_RECORDS_RECORD_MEMBERS_H_

#include <string>
#include <vector>

#include "records/kind_api.h"
#include "records/kind_schema.h"

namespace qv {

// The member a key or owner name stands for: the member of that name, else
// the first whose name begins or ends with it, without regard to case
// ("name" is ResourceName, "key" MessageKey, "language" LanguageCode);
// nullptr when none does.
const MemberSpec* MemberForName(const KindSchema& schema, const char* name);

// The members that tell the records of a kind in one file apart: its key
// names without its owner names (the owner is the file).
std::vector<const MemberSpec*> KeyMembers(const KindApi& api);

// A member's value as text: texts as they are, numbers in decimal, version
// quads as "a.b.c.d".
std::string MemberText(const MemberSpec& member, const void* record);

// The text in ASCII lower case, for comparisons without regard to case.
std::string Folded(std::string text);

}  // namespace qv

#endif  // QUORVEX_RECORDS_RECORD_MEMBERS_H_
