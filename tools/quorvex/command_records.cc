// The commands that work on records of any kind the engine knows:
// list, get, put, delete and flags.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>

#include "command.h"
#include "quorvex/quorvex.h"
#include "record_json.h"
#include "records/kind_api.h"
#include "records/record_codec.h"
#include "records/record_list.h"
#include "records/record_members.h"
#include "records/rewrite_check.h"

namespace qvtool {
namespace {

using Generic = qv::ListOps<void, &qv::FreeRecord>;

const qv::KindApi* KindOrUsage(const std::string& code) {
  const qv::KindApi* api = qv::FindKindApi(code);
  if (api == nullptr) {
    std::string known;
    for (const qv::KindApi* k : qv::AllKindApis())
      known += (known.empty() ? "" : ", ") + std::string(k->schema->kind->code);
    PrintError("unknown kind " + code + " (known: " + known + ")");
  }
  return api;
}

bool KeysFit(const qv::KindApi& api, const std::vector<std::string>& keys) {
  if (keys.size() == api.key_names.size()) {
    for (size_t i = 0; i < keys.size(); ++i) {
      if (std::string(api.key_names[i]) == "id" &&
          (keys[i] == "0" || keys[i].empty() ||
           keys[i].find_first_not_of("0123456789") != std::string::npos)) {
        PrintError("an id is a number above 0");
        return false;
      }
    }
    return true;
  }
  std::string names;
  for (const char* n : api.key_names) names += std::string(" ") + n;
  PrintError(std::string("kind ") + api.schema->kind->code + " takes the key" + names);
  return false;
}

void PrintRecords(const GlobalOptions& options, const qv::KindSchema& schema,
                  const std::vector<const void*>& records, bool as_array) {
  if (options.json) {
    nlohmann::ordered_json out = nlohmann::ordered_json::array();
    for (const void* r : records) out.push_back(RecordToJson(schema, r));
    std::cout << (as_array ? out : out.at(0)).dump(2) << "\n";
  } else {
    PrintRecordTable(schema, records, std::cout);
  }
}

// The owner (the language) that picks the file of a record, for kinds kept
// in one file per owner; empty for the others.
std::string OwnerOf(const qv::KindApi& api, const void* record) {
  if (api.owner_names.empty()) return "";
  const qv::MemberSpec* member = qv::MemberForName(*api.schema, api.owner_names[0]);
  return member != nullptr ? qv::MemberText(*member, record) : "";
}

// A file that does not read as written is not rewritten (the rewrite would
// lose its broken lines or carry them on) unless --force says so.
bool MayRewrite(const GlobalOptions& options, const qv::KindApi& api, const std::string& owner) {
  if (options.force) return true;
  std::optional<qv::ProfileProblem> problem = qv::RewriteProblem(*api.schema, owner);
  if (!problem) return true;
  PrintError(problem->file + ":" + std::to_string(problem->line) + ": " + problem->text);
  PrintError(problem->file + " was left unchanged: mend it first, or --force writes anyway");
  return false;
}

class KindCommand : public Command {
 protected:
  CLI::App* AddKind(CLI::App* sub) {
    sub->add_option("KIND", kind_, "record code (AD, ...), in any case")->required();
    return sub;
  }
  std::string kind_;
};

class ListCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = AddKind(app.add_subcommand("list", "the records of a kind"));
    sub->add_option("KEY", owner_, "owner key where the kind has one");
    return sub;
  }
  int Run(const GlobalOptions& options) override {
    const qv::KindApi* api = KindOrUsage(kind_);
    if (api == nullptr) return kExitUsage;
    if (owner_.size() != api->owner_names.size()) {
      PrintError(std::string("kind ") + api->schema->kind->code + " takes " +
                 std::to_string(api->owner_names.size()) + " owner key(s)");
      return kExitUsage;
    }
    if (!OpenProfile(options, false)) return kExitFailed;
    RecordList* list = nullptr;
    bool ok = api->list(owner_, &list);
    std::vector<const void*> records;
    if (ok) Generic::ForEach(list, [&](void* r) { records.push_back(r); });
    if (ok) PrintRecords(options, *api->schema, records, true);
    Generic::Free(list);
    return ok ? kExitOk : kExitFailed;
  }

 private:
  std::vector<std::string> owner_;
};

class GetCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = AddKind(app.add_subcommand("get", "one record"));
    sub->add_option("KEY", key_, "the record's key")->required();
    return sub;
  }
  int Run(const GlobalOptions& options) override {
    const qv::KindApi* api = KindOrUsage(kind_);
    if (api == nullptr) return kExitUsage;
    if (!KeysFit(*api, key_)) return kExitUsage;
    if (!OpenProfile(options, false)) return kExitFailed;
    void* record = nullptr;
    if (!api->get(key_, &record) || record == nullptr) {
      PrintError(std::string("no ") + api->schema->kind->code + " record with that key");
      return kExitFailed;
    }
    PrintRecords(options, *api->schema, {record}, false);
    qv::FreeRecord(record);
    return kExitOk;
  }

 private:
  std::vector<std::string> key_;
};

class PutCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = AddKind(app.add_subcommand("put", "add or replace records given as JSON"));
    sub->add_option("FILE", file_, "JSON file (one object or an array); - or none: standard input");
    return sub;
  }
  int Run(const GlobalOptions& options) override {
    const qv::KindApi* api = KindOrUsage(kind_);
    if (api == nullptr) return kExitUsage;
    std::stringstream text;
    if (file_.empty() || file_ == "-") {
      text << std::cin.rdbuf();
    } else {
      std::ifstream in(file_);
      if (!in) {
        PrintError("cannot read " + file_);
        return kExitUsage;
      }
      text << in.rdbuf();
    }
    nlohmann::ordered_json input = nlohmann::ordered_json::parse(text.str(), nullptr, false);
    if (input.is_discarded()) {
      PrintError("the input is not JSON");
      return kExitUsage;
    }
    bool as_array = input.is_array();
    if (!as_array) input = nlohmann::ordered_json::array({input});
    // Every record is checked before the profile is touched.
    std::vector<void*> records;
    auto free_all = [&] {
      for (void* r : records) qv::FreeRecord(r);
    };
    for (const nlohmann::ordered_json& object : input) {
      void* record = qv::NewRecord(*api->schema);
      records.push_back(record);
      std::string error;
      if (!RecordFromJson(*api->schema, object, record, &error)) {
        PrintError(error);
        free_all();
        return kExitUsage;
      }
    }
    if (!OpenProfile(options, true)) {
      free_all();
      return kExitFailed;
    }
    // Every file the records go to is looked at before any is changed.
    std::vector<std::string> owners;
    for (void* record : records) {
      std::string owner = OwnerOf(*api, record);
      if (std::find(owners.begin(), owners.end(), owner) != owners.end()) continue;
      owners.push_back(owner);
      if (!MayRewrite(options, *api, owner)) {
        free_all();
        return kExitFailed;
      }
    }
    int status = kExitOk;
    std::vector<void*> stored;
    for (void* record : records) {
      if (!api->put(record)) {
        status = kExitFailed;
        continue;
      }
      void* copy = api->stored(record);
      stored.push_back(copy != nullptr ? copy : nullptr);
      if (copy == nullptr) status = kExitFailed;
    }
    std::vector<const void*> shown;
    for (void* s : stored) {
      if (s != nullptr) shown.push_back(s);
    }
    if (!shown.empty()) PrintRecords(options, *api->schema, shown, as_array);
    for (void* s : stored) qv::FreeRecord(s);
    free_all();
    return status;
  }

 private:
  std::string file_;
};

class DeleteCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = AddKind(app.add_subcommand("delete", "delete a record, with its references"));
    sub->add_option("KEY", key_, "the record's key")->required();
    return sub;
  }
  int Run(const GlobalOptions& options) override {
    const qv::KindApi* api = KindOrUsage(kind_);
    if (api == nullptr) return kExitUsage;
    if (!KeysFit(*api, key_)) return kExitUsage;
    if (!OpenProfile(options, true)) return kExitFailed;
    if (!MayRewrite(options, *api, api->owner_names.empty() ? "" : key_[0])) return kExitFailed;
    if (!api->remove(key_)) {
      PrintError(std::string("nothing deleted: no ") + api->schema->kind->code +
                 " record with that key, or the engine refused");
      return kExitFailed;
    }
    return kExitOk;
  }

 private:
  std::vector<std::string> key_;
};

class FlagsCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    return AddKind(app.add_subcommand("flags", "the kind's flag-description table"));
  }
  int Run(const GlobalOptions& options) override {
    const qv::KindApi* api = KindOrUsage(kind_);
    if (api == nullptr) return kExitUsage;
    QvFlagNames* table = nullptr;
    if (!api->flag_names(&table) || table == nullptr) return kExitFailed;
    if (options.json) {
      nlohmann::ordered_json j;
      j["kindLabel"] = table->kindLabel;
      j["flagMask"] = table->flagMask;
      j["bitNames"] = nlohmann::ordered_json::array();
      for (auto& name : table->bitNames) j["bitNames"].push_back(name);
      std::cout << j.dump(2) << "\n";
    } else {
      std::cout << table->kindLabel << " (mask 0x" << std::hex << table->flagMask << std::dec
                << ")\n";
      for (int i = 0; i < 32; ++i) {
        if (table->bitNames[i][0] != '\0') {
          std::cout << "  bit " << (31 - i) << "  " << table->bitNames[i] << "\n";
        }
      }
    }
    MPFreeFlagNames(table);
    return kExitOk;
  }
};

}  // namespace

QVTOOL_REGISTER_COMMAND(ListCommand);
QVTOOL_REGISTER_COMMAND(GetCommand);
QVTOOL_REGISTER_COMMAND(PutCommand);
QVTOOL_REGISTER_COMMAND(DeleteCommand);
QVTOOL_REGISTER_COMMAND(FlagsCommand);

}  // namespace qvtool
