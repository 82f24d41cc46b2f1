// A kind's flag word shown and read by the labels of its flag table, so that
// people see "Modifiable" rather than 2147483648.
#ifndef QUORVEX_TOOLS_FLAG_LABELS_H_
#define QUORVEX_TOOLS_FLAG_LABELS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "records/kind_schema.h"

namespace qvtool {

// The member the kind's flag table describes, or nullptr when the table
// names no bit.
const qv::MemberSpec* FlagMember(const qv::KindSchema& schema);

// The label of a bit as people read it in a table: long labels lose the
// words every label of their group shares ("Participates in Local install"
// is "Local") and their parenthesised remarks.
std::string ShortLabel(const std::string& label);

// The full labels of the bits set in the word; bits without a label come
// last as one hex number.
std::vector<std::string> FlagLabels(const qv::KindSchema& schema, uint32_t word);
// The short labels joined by ", " for a table cell.
std::string FlagCell(const qv::KindSchema& schema, uint32_t word);

// The bit a label stands for, full or short, without regard to case; also
// takes a number (decimal or 0x...). False when nothing matches.
bool FlagBitForLabel(const qv::KindSchema& schema, const std::string& label, uint32_t* bits);

// The labels a kind knows, for messages.
std::string KnownLabels(const qv::KindSchema& schema);

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_FLAG_LABELS_H_
