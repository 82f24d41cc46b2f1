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
// Fills a new record from an object; members not given stay empty. False,
// with a reason, for unknown members or values of the wrong type or size.
bool RecordFromJson(const qv::KindSchema& schema, const nlohmann::ordered_json& object,
                    void* record, std::string* error);
void PrintRecordTable(const qv::KindSchema& schema, const std::vector<const void*>& records,
                      std::ostream& out);

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_RECORD_JSON_H_
