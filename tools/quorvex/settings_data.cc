#include "settings_data.h"

#include <cstring>
#include <vector>

#include "core/report_capture.h"
#include "quorvex/settings.h"

namespace qvtool {
namespace {

const SSRData& Body(const void* record) {
  return *static_cast<const SSRData*>(record);
}

}  // namespace

const qv::EntryKind* SettingsEntryKind(const qv::KindSchema& schema) {
  for (const qv::EntryKind* kind : {&qv::ReEntry(), &qv::PeEntry(), &qv::IeEntry()}) {
    if (schema.kind != nullptr && strcmp(schema.kind->code, kind->code) == 0) return kind;
  }
  return nullptr;
}

bool IsDataMember(const qv::MemberSpec& m) {
  return strcmp(m.name, "Data") == 0;
}

nlohmann::ordered_json DataJson(const qv::EntryKind& kind, const void* record) {
  return qv::DataAsWritten(kind, Body(record));
}

nlohmann::ordered_json DataBytesJson(const qv::EntryKind& kind, const void* record) {
  return qv::DataBytes(kind, Body(record));
}

std::string DataCell(const qv::EntryKind& kind, const void* record) {
  return qv::DataAsRegistryValue(kind, Body(record));
}

bool DataFromJson(const qv::EntryKind& kind, const nlohmann::ordered_json& object, void* record,
                  std::string* error) {
  auto* body = static_cast<SSRData*>(record);
  auto text = object.find("Data");
  if (text != object.end()) {
    if (!text->is_string()) {
      *error = "Data takes the text its line carries (hex pairs for binary and DWORD types)";
      return false;
    }
    qv::ReportCapture quiet(/*quiet=*/true);
    if (!qv::SetDataFromText(kind, body, text->get<std::string>()) || !quiet.problems().empty()) {
      *error = "Data: " + (quiet.problems().empty() ? std::string("does not read")
                                                    : quiet.problems().front().message);
      return false;
    }
    return true;
  }
  auto bytes = object.find("DataBytes");
  if (bytes == object.end()) return true;
  std::vector<uint8_t> values;
  if (!bytes->is_array()) {
    *error = "DataBytes takes an array of numbers from 0 to 255";
    return false;
  }
  for (const auto& b : *bytes) {
    if (!b.is_number_unsigned() || b.get<uint64_t>() > 255) {
      *error = "DataBytes takes an array of numbers from 0 to 255";
      return false;
    }
    values.push_back(b.get<uint8_t>());
  }
  if (values.size() >= sizeof body->Data) {
    *error = "DataBytes holds more bytes than Data can";
    return false;
  }
  memset(body->Data, 0, sizeof body->Data);
  memcpy(body->Data, values.data(), values.size());
  body->DataLength =
      qv::HoldsBytes(kind, body->DataType) ? static_cast<uint16_t>(values.size()) : 0;
  return true;
}

}  // namespace qvtool
