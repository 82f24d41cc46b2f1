// The commands that work on records of any kind the engine knows:
// list, get, put, delete and flags.
#include <algorithm>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>

#include "command.h"
#include "kind_support.h"
#include "progress.h"
#include "quorvex/quorvex.h"
#include "record_json.h"
#include "records/kind_api.h"
#include "records/record_codec.h"
#include "records/record_list.h"

namespace qvtool {
namespace {

using Generic = qv::ListOps<void, &qv::FreeRecord>;

// Which kinds take an owner key, for the help of list: one line per kind
// of key, as more kinds keep their records per module or per install.
std::string OwnerKindsFooter() {
  std::vector<std::pair<std::string, std::string>> groups;  // placeholders, kinds
  for (const qv::KindApi* api : qv::AllKindApis()) {
    if (api->owner_names.empty()) continue;
    std::string usage;
    for (const char* name : api->owner_names) usage += " " + Placeholder(name);
    auto at = std::find_if(groups.begin(), groups.end(),
                           [&](const auto& group) { return group.first == usage; });
    if (at == groups.end()) at = groups.insert(groups.end(), {usage, ""});
    at->second += (at->second.empty() ? "" : ", ") + std::string(api->schema->kind->code);
  }
  std::string lines;
  for (const auto& [usage, kinds] : groups) {
    std::string call = "  list KIND" + usage;
    lines += call + std::string(call.size() < 30 ? 30 - call.size() : 1, ' ') + kinds + "\n";
  }
  return "Kinds kept per owner take the owner as KEY (LANGUAGE: a language code\n"
         "of the profile, e.g. US):\n" +
         lines +
         "Plain output shows flags by label and hides recordFlags, lineNumber and\n"
         "rowReference; -v shows them. --json prints every member as a number and\n"
         "adds \"flagNames\".";
}

class KindCommand : public Command {
 protected:
  CLI::App* AddKind(CLI::App* sub) {
    sub->add_option("KIND", kind_, "record code (AD, LO, Resources, ...), in any case")->required();
    return sub;
  }
  std::string kind_;
};

class ListCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = AddKind(app.add_subcommand("list", "the records of a kind"));
    sub->add_option("KEY", owner_, "the owner key where the kind has one (LANGUAGE, e.g. US)");
    sub->add_flag("-v,--verbose", verbose_, "also show recordFlags, lineNumber and rowReference");
    sub->footer(OwnerKindsFooter());
    return sub;
  }
  int Run(const GlobalOptions& options) override {
    const qv::KindApi* api = KindOrUsage(kind_);
    if (api == nullptr) return kExitUsage;
    if (!OwnersFit("list", *api, owner_)) return kExitUsage;
    if (!OpenProfile(options, false)) return kExitFailed;
    RecordList* list = nullptr;
    bool ok;
    {
      Progress progress(std::string("reading ") + api->schema->kind->code + " records");
      ok = api->list(owner_, &list);
    }
    std::vector<const void*> records;
    if (ok) Generic::ForEach(list, [&](void* r) { records.push_back(r); });
    if (ok && records.empty() && !owner_.empty() && !OwnerExists(options, *api, owner_[0]))
      ok = false;
    else if (ok)
      PrintRecords(options, *api->schema, records, true, verbose_);
    Generic::Free(list);
    return ok ? kExitOk : kExitFailed;
  }

 private:
  std::vector<std::string> owner_;
  bool verbose_ = false;
};

class GetCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = AddKind(app.add_subcommand("get", "one record"));
    sub->add_option("KEY", key_, "the record's key (see the kind's usage)")->required();
    sub->add_flag("-v,--verbose", verbose_, "also show recordFlags, lineNumber and rowReference");
    return sub;
  }
  int Run(const GlobalOptions& options) override {
    const qv::KindApi* api = KindOrUsage(kind_);
    if (api == nullptr) return kExitUsage;
    if (!KeysFit("get", *api, key_)) return kExitUsage;
    if (!OpenProfile(options, false)) return kExitFailed;
    void* record = nullptr;
    bool found;
    {
      Progress progress(std::string("reading ") + api->schema->kind->code + " records");
      found = api->get(key_, &record) && record != nullptr;
    }
    if (!found) {
      if (!api->owner_names.empty() && !OwnerExists(options, *api, key_[0])) return kExitFailed;
      PrintError(std::string("no ") + api->schema->kind->code + " record with that key");
      return kExitFailed;
    }
    PrintRecords(options, *api->schema, {record}, false, verbose_);
    qv::FreeRecord(record);
    return kExitOk;
  }

 private:
  std::vector<std::string> key_;
  bool verbose_ = false;
};

constexpr char kPutFooter[] =
    "Each record given replaces the whole stored record with the same key:\n"
    "members left out become empty (0 or \"\"). To change some members of a\n"
    "stored record, use `quorvex set KIND KEY... MEMBER=VALUE...`.\n"
    "Flags may be given as the number or as \"flagNames\": [labels]. The\n"
    "stored records are printed afterwards. An AD record that replaces a\n"
    "stored one with the same id or name keeps the stored id and name; the\n"
    "tool says so.\n"
    "With --parent KEY... (MO, PR, DR and MG), a new record is born from the\n"
    "stored record with that key: its file is a copy of the parent's, and the\n"
    "texts it names are fresh copies of the parent's.";

class PutCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = AddKind(app.add_subcommand("put", "add or replace records given as JSON"));
    sub->add_option("FILE", file_, "JSON file (one object or an array); - or none: standard input");
    sub->add_option("--parent", parent_, "the key of the record the new ones are born from")
        ->expected(1, 2);
    sub->footer(kPutFooter);
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
    if (!parent_.empty()) {
      if (!api->put_child) {
        PrintError(std::string("kind ") + api->schema->kind->code +
                   " has no births: --parent is for MO, PR, DR and MG");
        return kExitUsage;
      }
      if (!KeysFit("put --parent", *api, parent_)) return kExitUsage;
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
    void* parent = nullptr;
    if (!parent_.empty() && !(api->get(parent_, &parent) && parent != nullptr)) {
      PrintError(std::string("no ") + api->schema->kind->code +
                 " record with the parent's key: nothing was written");
      free_all();
      return kExitFailed;
    }
    int status = PutRecords(options, *api, records, as_array, parent) ? kExitOk : kExitFailed;
    if (parent != nullptr) qv::FreeRecord(parent);
    free_all();
    return status;
  }

 private:
  std::string file_;
  std::vector<std::string> parent_;
};

class DeleteCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = AddKind(app.add_subcommand("delete", "delete a record, with its references"));
    sub->add_option("KEY", key_, "the record's key (see the kind's usage)")->required();
    return sub;
  }
  int Run(const GlobalOptions& options) override {
    const qv::KindApi* api = KindOrUsage(kind_);
    if (api == nullptr) return kExitUsage;
    if (!KeysFit("delete", *api, key_)) return kExitUsage;
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

// Where a bit sits on a record line: its letter in a 32-letter flag string,
// or the Y/N field that stands for it.
std::string BitPlace(const qv::KindSchema& schema, int bit) {
  uint32_t mask = 1u << bit;
  for (size_t i = 0; i < schema.line.size(); ++i) {
    const qv::LineField& field = schema.line[i];
    if (field.syntax == qv::LineSyntax::kFlagString32) return "letter " + std::to_string(32 - bit);
    if (field.syntax == qv::LineSyntax::kFlag && field.bit == mask)
      return "field " + std::to_string(i + 1);
  }
  return "";
}

class FlagsCommand : public KindCommand {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = AddKind(app.add_subcommand("flags", "the kind's flag-description table"));
    sub->footer(
        "One line per bit: its number, where it sits on a record line (the letter\n"
        "of the 32 Y/N letters, or the Y/N field) and its label. The short form\n"
        "of a label (\"Local\" for \"Participates in Local install\") is what\n"
        "list shows and what set and flagNames take as well as the label.");
    return sub;
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
        if (table->bitNames[i][0] == '\0') continue;
        int bit = 31 - i;
        std::string place = BitPlace(*api->schema, bit);
        place.resize(std::max<size_t>(place.size(), 9), ' ');
        std::cout << "bit " << (bit < 10 ? " " : "") << bit << "  " << place << "  "
                  << table->bitNames[i] << "\n";
      }
    }
    MPFreeFlagNames(table);
    return kExitOk;
  }
};

}  // namespace

// Some refusals need more words than the engine's message.
void SayWhyRefused(const qv::KindApi& api, const void* record) {
  std::string why = api.put_refusal ? api.put_refusal(record) : "";
  if (!why.empty()) PrintError(why);
}

bool PutRecords(const GlobalOptions& options, const qv::KindApi& api,
                const std::vector<void*>& records, bool as_array, const void* parent) {
  // Every file the records go to is looked at before any is changed.
  std::vector<std::string> owners;
  for (void* record : records) {
    std::string owner = OwnerOf(api, record);
    if (std::find(owners.begin(), owners.end(), owner) != owners.end()) continue;
    owners.push_back(owner);
    if (!MayRewrite(options, api, owner)) return false;
  }
  bool ok = true;
  std::vector<void*> stored;
  for (void* record : records) {
    // The put may give the record its id: keep what was asked for.
    void* given = qv::NewRecord(*api.schema);
    memcpy(given, record, api.schema->record_size);
    if (!(parent != nullptr ? api.put_child(record, parent) : api.put(record))) {
      ok = false;
      SayWhyRefused(api, record);
    } else if (void* copy = api.stored(record)) {
      NoteKeptIdentity(*api.schema, given, copy);
      stored.push_back(copy);
    } else {
      ok = false;
    }
    qv::FreeRecord(given);
  }
  std::vector<const void*> shown;
  for (void* s : stored) shown.push_back(s);
  if (!shown.empty()) PrintRecords(options, *api.schema, shown, as_array, false);
  for (void* s : stored) qv::FreeRecord(s);
  return ok;
}

QVTOOL_REGISTER_COMMAND(ListCommand);
QVTOOL_REGISTER_COMMAND(GetCommand);
QVTOOL_REGISTER_COMMAND(PutCommand);
QVTOOL_REGISTER_COMMAND(DeleteCommand);
QVTOOL_REGISTER_COMMAND(FlagsCommand);

}  // namespace qvtool
