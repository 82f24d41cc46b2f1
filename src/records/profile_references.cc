#include "records/profile_references.h"

#include <strings.h>

#include "records/record_members.h"

namespace qv {
namespace {

// A location names its parent by name and version; "$DR$" is the install
// root, an empty name no parent at all.
const std::vector<ReferenceRule> kRules = {
    {"LO", {"ParentName", "ParentVersion"}, "LO", {"Name", "Version"}, {"", "$DR$"}},
};

// The texts of the named members, or nothing when the kind lacks one.
bool MemberTexts(const KindSchema& schema, const void* record, const std::vector<const char*>& names,
           std::vector<std::string>* texts) {
  texts->clear();
  for (const char* name : names) {
    const MemberSpec* member = MemberForName(schema, name);
    if (member == nullptr) return false;
    texts->push_back(MemberText(*member, record));
  }
  return true;
}

std::vector<std::string> FoldedAll(std::vector<std::string> texts) {
  for (std::string& text : texts) text = Folded(std::move(text));
  return texts;
}

std::string Pairs(const std::vector<const char*>& names, const std::vector<std::string>& values) {
  std::string text;
  for (size_t i = 0; i < names.size(); ++i) {
    text += std::string(i ? " " : "") + names[i] + "=\"" + values[i] + "\"";
  }
  return text;
}

}  // namespace

const std::vector<ReferenceRule>& ReferenceRules() {
  return kRules;
}

void ReferenceIndex::Note(const KindSchema& schema, const void* record, const std::string& file,
                          int line) {
  const char* code = schema.kind->code;
  std::vector<std::string> texts;
  for (size_t i = 0; i < kRules.size(); ++i) {
    const ReferenceRule& rule = kRules[i];
    if (strcasecmp(rule.target_kind, code) == 0 &&
        MemberTexts(schema, record, rule.target_members, &texts)) {
      targets_[i].insert(FoldedAll(texts));
    }
    if (strcasecmp(rule.kind, code) != 0 || !MemberTexts(schema, record, rule.members, &texts)) {
      continue;
    }
    bool refers = true;
    for (const char* nothing : rule.names_nothing) {
      refers = refers && strcasecmp(texts[0].c_str(), nothing) != 0;
    }
    if (refers) references_.push_back({&rule, texts, file, line});
  }
}

bool ReferenceIndex::Resolves(size_t rule, const std::vector<std::string>& folded) const {
  const std::set<std::vector<std::string>>& targets = targets_[rule];
  if (targets.count(folded) != 0) return true;
  bool open = false;
  for (size_t i = 1; i < folded.size(); ++i) open = open || folded[i].empty();
  if (!open) return false;
  for (const std::vector<std::string>& target : targets) {
    bool matches = true;
    for (size_t i = 0; i < folded.size() && matches; ++i) {
      matches = (i > 0 && folded[i].empty()) || folded[i] == target[i];
    }
    if (matches) return true;
  }
  return false;
}

std::vector<ProfileProblem> ReferenceIndex::Unresolved() const {
  std::vector<ProfileProblem> problems;
  for (const Reference& reference : references_) {
    size_t rule = static_cast<size_t>(reference.rule - kRules.data());
    if (Resolves(rule, FoldedAll(reference.values))) continue;
    problems.push_back({reference.file, reference.line, kReferenceProblem,
                        Pairs(reference.rule->members, reference.values) + " names no " +
                            reference.rule->target_kind + " record"});
  }
  return problems;
}

}  // namespace qv
