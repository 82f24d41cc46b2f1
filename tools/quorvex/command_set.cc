// quorvex set KIND KEY... MEMBER=VALUE...: changes some members of a stored
// record and keeps the others, where put would empty what it is not given.
#include <iostream>

#include "command.h"
#include "flag_labels.h"
#include "kind_support.h"
#include "quorvex/quorvex.h"
#include "record_json.h"
#include "records/record_codec.h"
#include "records/record_members.h"

namespace qvtool {
namespace {

constexpr char kFooter[] =
    "The first arguments are the record's key (as for get), the rest\n"
    "MEMBER=VALUE with the member names of --json output. Texts are taken as\n"
    "written, numbers in decimal or 0x..., versions as a.b.c.d. The flag\n"
    "member takes labels (full or short, any case, comma-separated) or a\n"
    "number: Flags=Modifiable,Local sets the word, Flags+=Modifiable sets a\n"
    "bit, Flags-=Modifiable clears it. Members not named keep their values;\n"
    "key members cannot be changed (put a new record and delete the old).\n"
    "Example: quorvex set LO Help 1 Folder=Docs Flags-=Modifiable";

struct Assignment {
  std::string member;
  char op = '=';  // '=', '+' or '-'
  std::string value;
};

bool ParseAssignment(const std::string& text, Assignment* out) {
  size_t eq = text.find('=');
  if (eq == std::string::npos || eq == 0) return false;
  out->member = text.substr(0, eq);
  out->value = text.substr(eq + 1);
  char last = out->member.back();
  if (last == '+' || last == '-') {
    out->op = last;
    out->member.pop_back();
  }
  return !out->member.empty();
}

std::string MemberList(const qv::KindSchema& schema) {
  std::string names;
  for (const qv::MemberSpec& m : schema.members)
    names += (names.empty() ? "" : ", ") + std::string(m.name);
  return names;
}

// The JSON value a text stands for, as the member's type wants it.
nlohmann::ordered_json ValueFor(const qv::MemberSpec& m, const std::string& text, bool* ok) {
  *ok = true;
  if (m.type == qv::ValueType::kText) return text;
  if (m.type == qv::ValueType::kVersionQuad) {
    nlohmann::ordered_json parts = nlohmann::ordered_json::array();
    size_t at = 0;
    while (true) {
      size_t dot = text.find('.', at);
      std::string part = text.substr(at, dot == std::string::npos ? std::string::npos : dot - at);
      if (part.empty() || part.find_first_not_of("0123456789") != std::string::npos) *ok = false;
      if (*ok) parts.push_back(std::stoull(part.substr(0, 9)));
      if (dot == std::string::npos) break;
      at = dot + 1;
    }
    return parts;
  }
  char* end = nullptr;
  long long value = strtoll(text.c_str(), &end, 0);
  if (text.empty() || *end != '\0') *ok = false;
  if (m.type == qv::ValueType::kI32) return static_cast<int64_t>(value);
  if (value < 0) *ok = false;
  return static_cast<uint64_t>(value);
}

class SetCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub =
        app.add_subcommand("set", "change some members of a stored record, keep the rest");
    sub->add_option("KIND", kind_, "record code (AD, LO, ...), in any case")->required();
    sub->add_option("ARGS", args_, "KEY... then MEMBER=VALUE...")->required();
    sub->footer(kFooter);
    return sub;
  }

  int Run(const GlobalOptions& options) override {
    const qv::KindApi* api = KindOrUsage(kind_);
    if (api == nullptr) return kExitUsage;
    const qv::KindSchema& schema = *api->schema;
    size_t key_count = api->key_names.size();
    std::vector<std::string> key(args_.begin(), args_.begin() + std::min(key_count, args_.size()));
    if (args_.size() <= key_count) {
      PrintError("usage: quorvex set " + std::string(schema.kind->code) + " " +
                 KeyUsage(api->key_names) + " MEMBER=VALUE...");
      return kExitUsage;
    }
    if (!KeysFit("set", *api, key)) return kExitUsage;
    std::vector<Assignment> assignments;
    for (size_t i = key_count; i < args_.size(); ++i) {
      Assignment a;
      if (!ParseAssignment(args_[i], &a)) {
        PrintError("expected MEMBER=VALUE, got \"" + args_[i] + "\"");
        return kExitUsage;
      }
      assignments.push_back(a);
    }
    if (!OpenProfile(options, true)) return kExitFailed;
    void* record = nullptr;
    if (!api->get(key, &record) || record == nullptr) {
      if (!api->owner_names.empty() && !OwnerExists(options, *api, key[0])) return kExitFailed;
      PrintError(std::string("no ") + schema.kind->code + " record with that key");
      return kExitFailed;
    }
    int status = Apply(schema, *api, assignments, record);
    if (status == kExitOk)
      status = PutRecords(options, *api, {record}, false) ? kExitOk : kExitFailed;
    qv::FreeRecord(record);
    return status;
  }

 private:
  int Apply(const qv::KindSchema& schema, const qv::KindApi& api,
            const std::vector<Assignment>& assignments, void* record) {
    const qv::MemberSpec* flags = FlagMember(schema);
    for (const Assignment& a : assignments) {
      const qv::MemberSpec* m = nullptr;
      for (const qv::MemberSpec& each : schema.members) {
        if (qv::Folded(each.name) == qv::Folded(a.member)) m = &each;
      }
      if (m == nullptr) {
        PrintError("unknown member " + a.member + " for kind " + schema.kind->code +
                   " (members: " + MemberList(schema) + ")");
        return kExitUsage;
      }
      std::vector<const qv::MemberSpec*> fixed = qv::KeyMembers(api);
      for (const char* owner : api.owner_names) fixed.push_back(qv::MemberForName(schema, owner));
      for (const qv::MemberSpec* k : fixed) {
        if (k == m) {
          PrintError(std::string(m->name) + " is part of the key and cannot be set");
          return kExitUsage;
        }
      }
      nlohmann::ordered_json value;
      if (m == flags) {
        uint32_t word = 0;
        size_t at = 0;
        while (at <= a.value.size() && !a.value.empty()) {
          size_t comma = a.value.find(',', at);
          std::string label = a.value.substr(at, comma == std::string::npos ? comma : comma - at);
          uint32_t bits = 0;
          if (!FlagBitForLabel(schema, label, &bits)) {
            PrintError("unknown flag \"" + label + "\" for kind " + schema.kind->code +
                       " (known: " + KnownLabels(schema) + ")");
            return kExitUsage;
          }
          word |= bits;
          if (comma == std::string::npos) break;
          at = comma + 1;
        }
        uint32_t old = qv::GetUnsigned(record, m->offset, m->type);
        value = a.op == '+' ? (old | word) : a.op == '-' ? (old & ~word) : word;
      } else {
        if (a.op != '=') {
          PrintError(std::string("+= and -= work on the flag member") +
                     (flags != nullptr ? std::string(" (") + flags->name + ")" : ""));
          return kExitUsage;
        }
        bool ok = false;
        value = ValueFor(*m, a.value, &ok);
        if (!ok) {
          PrintError(std::string(m->name) + " takes " +
                     (m->type == qv::ValueType::kVersionQuad ? "a version a.b.c.d" : "a number"));
          return kExitUsage;
        }
      }
      std::string error;
      nlohmann::ordered_json object = nlohmann::ordered_json::object();
      object[m->name] = value;
      if (!RecordFromJson(schema, object, record, &error)) {
        PrintError(error);
        return kExitUsage;
      }
    }
    return kExitOk;
  }

  std::string kind_;
  std::vector<std::string> args_;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(SetCommand);

}  // namespace qvtool
