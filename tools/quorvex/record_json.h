// Records of any kind as JSON objects, named as the C structures name their
// members, and as rows of a table for people.
#ifndef QUORVEX_TOOLS_RECORD_JSON_H_
#define QUORVEX_TOOLS_RECORD_JSON_H_

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "records/kind_schema.h"

namespace qvtool {

nlohmann::ordered_json RecordToJson(const qv::KindSchema& schema, const void* record);
// Each object carries "flagNames", the labels of the bits of its flag word.
// Fills a new record from an object; members not given stay empty; flags
// may be given by "flagNames" instead of the number. False,
// with a reason, for unknown members or values of the wrong type or size.
bool RecordFromJson(const qv::KindSchema& schema, const nlohmann::ordered_json& object,
                    void* record, std::string* error);
// One cell of a table: flags by their short labels, versions as a.b.c.d.
std::string MemberCell(const qv::KindSchema& schema, const qv::MemberSpec& m, const void* record);
bool IsInactive(const qv::KindSchema& schema, const void* record);
// verbose shows the members that place a record in its file (recordFlags,
// lineNumber, rowReference).
void PrintRecordTable(const qv::KindSchema& schema, const std::vector<const void*>& records,
                      std::ostream& out, bool verbose = false);

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_RECORD_JSON_H_
