// The rows of a kind in the Orvik database: one table per kind, named by its
// code, one column per member of the kind's database row.
#ifndef QUORVEX_RECORDS_ORVIK_ROWS_H_
#define QUORVEX_RECORDS_ORVIK_ROWS_H_

#include <string>

#include "quorvex/list.h"
#include "records/kind_schema.h"

namespace qv {

// For a kind that the database does not hold at all (the kind table gives
// it no read, insert or delete): reports the kind's refusal and returns
// true, so that no query or row operation is tried.
bool OrvikRefusesKind(const KindSchema& schema);

// Reads every row into a new list handed out at once; reports "Cannot begin
// to Query Orvik Database for <label>" when the query cannot start.
bool ReadOrvikRows(const KindSchema& schema, RecordList** list_out);
// Inserts the record's row; false (unreported) when the database refuses.
bool InsertOrvikRow(const KindSchema& schema, const void* record);
// Deletes the rows whose key members equal the record's; false (unreported)
// when nothing was deleted or the database refuses.
bool DeleteOrvikRows(const KindSchema& schema, const void* record,
                     const std::vector<const char*>& key_members);

// The statement that makes the kind's table (for tools that make profiles).
std::string OrvikTableDefinition(const KindSchema& schema);

// What a conversion from a Master Profile keeps beside the kinds' tables,
// so that converting back loses nothing: records of kinds the database has
// no table for, inactive records, and the text-store members of the rows
// it holds (as JSON; `row` names the row a record belongs to, empty for
// records held here alone; `position` is the record's place in its list).
// The engine itself never reads it.
constexpr char kOrvikAsideTable[] = "quorvex_aside";
constexpr char kOrvikAsideDefinition[] =
    "CREATE TABLE quorvex_aside (kind TEXT NOT NULL, owner TEXT NOT NULL, "
    "position INTEGER NOT NULL, row TEXT NOT NULL, record TEXT NOT NULL)";

}  // namespace qv

#endif  // QUORVEX_RECORDS_ORVIK_ROWS_H_
