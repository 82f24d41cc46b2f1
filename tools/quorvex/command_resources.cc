// quorvex resources match PRIMARY UPDATE: which texts of the update language
// have a partner (same name and number) in the primary language, and which
// stand alone on either side.
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "command.h"
#include "quorvex/quorvex.h"
#include "record_json.h"
#include "records/resource_family.h"

namespace qvtool {
namespace {

std::vector<const void*> RecordsOf(ResourceList* list) {
  std::vector<const void*> records;
  if (list == nullptr || list->head == nullptr) return records;
  RecordNode* node = list->head;
  do {
    records.push_back(node->record);
    node = node->next;
  } while (node != list->head);
  return records;
}

class ResourcesCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* resources = app.add_subcommand("resources", "resource texts of the languages");
    resources->require_subcommand(1);
    match_ =
        resources->add_subcommand("match", "pair the texts of two languages by name and number");
    match_->add_option("PRIMARY", primary_, "language code of the primary texts")->required();
    match_->add_option("UPDATE", update_, "language code of the update texts")->required();
    return resources;
  }

  int Run(const GlobalOptions& options) override {
    if (!match_->parsed()) return kExitUsage;
    if (!OpenProfile(options, false)) return kExitFailed;
    ResourceList* primary = nullptr;
    ResourceList* update = nullptr;
    ResourceList* matched = nullptr;
    int ok = MPMatchResources(primary_.c_str(), update_.c_str(), &primary, &update, &matched);
    if (ok) Print(options, RecordsOf(matched), RecordsOf(primary), RecordsOf(update));
    MPFreeResourceList(primary);
    MPFreeResourceList(update);
    MPFreeResourceList(matched);
    return ok ? kExitOk : kExitFailed;
  }

 private:
  void Print(const GlobalOptions& options, const std::vector<const void*>& matched,
             const std::vector<const void*>& primary_only,
             const std::vector<const void*>& update_only) const {
    const qv::KindSchema& schema = qv::ResourceSchema();
    if (options.json) {
      auto array = [&](const std::vector<const void*>& records) {
        nlohmann::ordered_json out = nlohmann::ordered_json::array();
        for (const void* r : records) out.push_back(RecordToJson(schema, r));
        return out;
      };
      nlohmann::ordered_json j;
      j["matched"] = array(matched);
      j["primaryOnly"] = array(primary_only);
      j["updateOnly"] = array(update_only);
      std::cout << j.dump(2) << "\n";
      return;
    }
    std::cout << "Matched (" << update_ << " texts with a partner in " << primary_
              << "): " << matched.size() << "\n";
    PrintRecordTable(schema, matched, std::cout);
    std::cout << "\nOnly in " << primary_ << ": " << primary_only.size() << "\n";
    PrintRecordTable(schema, primary_only, std::cout);
    std::cout << "\nOnly in " << update_ << ": " << update_only.size() << "\n";
    PrintRecordTable(schema, update_only, std::cout);
  }

  CLI::App* match_ = nullptr;
  std::string primary_;
  std::string update_;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(ResourcesCommand);

}  // namespace qvtool
