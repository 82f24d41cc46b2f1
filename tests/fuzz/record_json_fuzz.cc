// Feeds arbitrary bytes to the tool's JSON input: the first byte picks a
// record kind, the rest is the text `quorvex put` would read. Every object
// that fills a record is shown as JSON and as a table row, and read back
// from its own JSON: the second record must show as the first.
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "record_json.h"
#include "records/kind_api.h"
#include "records/record_codec.h"

namespace {

int SilentBox(void*, const char*, const char*, int) {
  return 1;
}

void OneObject(const qv::KindSchema& schema, const nlohmann::ordered_json& object) {
  void* record = qv::NewRecord(schema);
  if (record == nullptr) return;
  std::string error;
  if (qvtool::RecordFromJson(schema, object, record, &error)) {
    nlohmann::ordered_json shown = qvtool::RecordToJson(schema, record);
    void* again = qv::NewRecord(schema);
    std::string second_error;
    if (!qvtool::RecordFromJson(schema, shown, again, &second_error)) abort();
    if (qvtool::RecordToJson(schema, again) != shown) abort();
    std::ostringstream table;
    qvtool::PrintRecordTable(schema, {record, again}, table, true);
    qv::FreeRecord(again);
  } else if (error.empty()) {
    abort();  // a refusal always says why
  }
  qv::FreeRecord(record);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool initialised = [] {
    QuorvexHost host = {nullptr, SilentBox, nullptr, nullptr};
    QuorvexSetHost(&host);
    return true;
  }();
  (void)initialised;
  const std::vector<const qv::KindApi*>& kinds = qv::AllKindApis();
  if (size == 0 || kinds.empty()) return 0;
  const qv::KindSchema& schema = *kinds[data[0] % kinds.size()]->schema;
  nlohmann::ordered_json input = nlohmann::ordered_json::parse(
      reinterpret_cast<const char*>(data + 1), reinterpret_cast<const char*>(data + size), nullptr,
      /*allow_exceptions=*/false);
  if (input.is_discarded()) return 0;
  if (input.is_array()) {
    for (const auto& object : input) OneObject(schema, object);
  } else {
    OneObject(schema, input);
  }
  return 0;
}
