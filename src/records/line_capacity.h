// Whether a record can be written as a line that reads back as the record.
//
// A profile line cannot carry everything a record can hold: a text with a
// line break would split its line (or start a section), a message key with
// "=" would move text into the key, a text ending in a caret would swallow
// its closing quote, a number beyond what the integer reader gives back
// would come back changed. Every put asks this before it touches a file,
// and refuses the record, naming the member, when the answer is no.
#ifndef QUORVEX_RECORDS_LINE_CAPACITY_H_
#define QUORVEX_RECORDS_LINE_CAPACITY_H_

#include <string>

#include "quorvex/list.h"
#include "records/kind_schema.h"

namespace qv {

// Empty when the record's line reads back equal in every member the line
// carries; otherwise why not, naming the member. The record is written to
// memory and read back with the profile reader itself; nothing is reported.
std::string LineCapacityProblem(const KindSchema& schema, const void* record);

// Reports the first record of the list (or the record) that its line cannot
// hold, with "<code> record refused: ...", and says whether all fit.
bool RecordFitsLine(const KindSchema& schema, const void* record);
bool ListFitsLines(const KindSchema& schema, RecordList* list);

}  // namespace qv

#endif  // QUORVEX_RECORDS_LINE_CAPACITY_H_
