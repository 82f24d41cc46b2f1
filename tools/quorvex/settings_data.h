// The value of a settings entry (REG, PS, INI): stored as text or as bytes
// by its type, shown as the registry would hold it, and given in JSON as
// the text its line carries ("Data") and its bytes ("DataBytes").
#ifndef QUORVEX_TOOLS_SETTINGS_DATA_H_
#define QUORVEX_TOOLS_SETTINGS_DATA_H_

#include <nlohmann/json.hpp>
#include <string>

#include "records/kind_schema.h"
#include "records/ss_entry_lines.h"

namespace qvtool {

// The entry kind behind a schema, or nullptr for other kinds.
const qv::EntryKind* SettingsEntryKind(const qv::KindSchema& schema);
bool IsDataMember(const qv::MemberSpec& m);

// "Data" as its line spells it, and "DataBytes".
nlohmann::ordered_json DataJson(const qv::EntryKind& kind, const void* record);
nlohmann::ordered_json DataBytesJson(const qv::EntryKind& kind, const void* record);
// The cell of a table: "dword:00a54e01", "hex:01,02", or the text.
std::string DataCell(const qv::EntryKind& kind, const void* record);
// Sets the value from "Data" (or, without it, "DataBytes") once the type is
// known. False, with a reason, for a value that does not fit.
bool DataFromJson(const qv::EntryKind& kind, const nlohmann::ordered_json& object, void* record,
                  std::string* error);

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_SETTINGS_DATA_H_
