// References between records, as a table: which members of a kind name a
// record of which kind by which members. A new kind that names others adds
// a row, not code.
#ifndef QUORVEX_RECORDS_PROFILE_REFERENCES_H_
#define QUORVEX_RECORDS_PROFILE_REFERENCES_H_

#include <set>
#include <string>
#include <vector>

#include "records/kind_schema.h"
#include "records/profile_problem.h"

namespace qv {

struct ReferenceRule {
  const char* kind;                         // the kind whose records refer
  std::vector<const char*> members;         // what they refer by
  const char* target_kind;                  // the kind referred to
  std::vector<const char*> target_members;  // matched in order with `members`
  std::vector<const char*> names_nothing;   // first-member values that refer to no record
};

const std::vector<ReferenceRule>& ReferenceRules();

// Collects the records of a profile as they are read, then tells which
// references name no record. Texts compare without regard to case. A
// reference member after the first that is empty leaves the choice to the
// engine (it takes the first record that matches the others), so any
// record matching the other members answers it.
class ReferenceIndex {
 public:
  void Note(const KindSchema& schema, const void* record, const std::string& file, int line);
  std::vector<ProfileProblem> Unresolved() const;

 private:
  struct Reference {
    const ReferenceRule* rule;
    std::vector<std::string> values;  // as written
    std::string file;
    int line;
  };
  bool Resolves(size_t rule, const std::vector<std::string>& folded) const;

  std::vector<Reference> references_;
  // Per rule, the folded target member texts of every target record.
  std::vector<std::set<std::vector<std::string>>> targets_ =
      std::vector<std::set<std::vector<std::string>>>(ReferenceRules().size());
};

}  // namespace qv

#endif  // QUORVEX_RECORDS_PROFILE_REFERENCES_H_
