#include "kind_support.h"

#include <algorithm>
#include <iostream>

#include "core/report_capture.h"
#include "quorvex/quorvex.h"
#include "record_json.h"
#include "records/record_members.h"
#include "records/rewrite_check.h"

namespace qvtool {

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

std::string Placeholder(const char* name) {
  std::string text = name;
  for (char& c : text) c = static_cast<char>(toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string KeyUsage(const std::vector<const char*>& names) {
  std::string usage;
  bool language = false;
  for (const char* n : names) {
    usage += (usage.empty() ? "" : " ") + Placeholder(n);
    language = language || qv::Folded(n) == "language";
  }
  if (language) usage += " (LANGUAGE: a language code of the profile, e.g. US)";
  return usage;
}

bool KeysFit(const std::string& command, const qv::KindApi& api,
             const std::vector<std::string>& keys) {
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
  PrintError(std::string("kind ") + api.schema->kind->code + " takes the key" + names +
             ": quorvex " + command + " " + api.schema->kind->code + " " +
             KeyUsage(api.key_names));
  return false;
}

bool OwnersFit(const std::string& command, const qv::KindApi& api,
               const std::vector<std::string>& owner) {
  if (owner.size() == api.owner_names.size()) return true;
  if (api.owner_names.empty()) {
    PrintError(std::string("kind ") + api.schema->kind->code + " takes no key: quorvex " + command +
               " " + api.schema->kind->code);
  } else {
    PrintError("usage: quorvex " + command + " " + api.schema->kind->code + " " +
               KeyUsage(api.owner_names));
  }
  return false;
}

bool OwnerExists(const GlobalOptions& options, const qv::KindApi& api, const std::string& owner) {
  if (options.orvik || api.schema->kind->file != qv::KindFile::kLanguage) return true;
  char path[QV_PATH_SIZE] = "";
  QvFile file;
  {
    qv::ReportCapture quiet(/*quiet=*/true);
    file = OpenProfileFile(QvOpenProfilePath(), owner.c_str(), "", api.schema->kind->file_kind,
                           path, MODE_READ);
  }
  if (QvFileIsOpen(file)) {
    QvCloseFile(file);
    return true;
  }
  PrintError("no language " + owner + " in this profile (it has no " + api.schema->kind->code +
             " file for " + owner + ")");
  return false;
}

std::string OwnerOf(const qv::KindApi& api, const void* record) {
  if (api.owner_names.empty()) return "";
  const qv::MemberSpec* member = qv::MemberForName(*api.schema, api.owner_names[0]);
  return member != nullptr ? qv::MemberText(*member, record) : "";
}

// The rewrite would lose the broken lines or carry them on.
bool MayRewrite(const GlobalOptions& options, const qv::KindApi& api, const std::string& owner) {
  if (options.force) return true;
  std::optional<qv::ProfileProblem> problem = qv::RewriteProblem(*api.schema, owner);
  if (!problem) return true;
  PrintError(problem->file + ":" + std::to_string(problem->line) + ": " + problem->text);
  PrintError(problem->file + " was left unchanged: mend it first, or --force writes anyway");
  return false;
}

void PrintRecords(const GlobalOptions& options, const qv::KindSchema& schema,
                  const std::vector<const void*>& records, bool as_array, bool verbose) {
  if (options.json) {
    nlohmann::ordered_json out = nlohmann::ordered_json::array();
    for (const void* r : records) out.push_back(RecordToJson(schema, r));
    std::cout << (as_array ? out : out.at(0)).dump(2) << "\n";
  } else {
    PrintRecordTable(schema, records, std::cout, verbose);
  }
}

void NoteKeptIdentity(const qv::KindSchema& schema, const void* given, const void* stored) {
  std::string kept;
  std::string asked;
  for (const char* name : {"id", "name"}) {
    const qv::MemberSpec* m = nullptr;
    for (const qv::MemberSpec& each : schema.members) {
      if (std::string(each.name) == name) m = &each;
    }
    if (m == nullptr) continue;
    std::string want = MemberCell(schema, *m, given);
    std::string have = MemberCell(schema, *m, stored);
    // An id of 0 or an empty name asks for nothing in particular.
    if (want == have || want.empty() || want == "0") continue;
    // Quoted as JSON strings, so that quotes inside names stay readable.
    kept += (kept.empty() ? "" : ", ") + std::string(name) + " " + nlohmann::json(have).dump();
    asked += (asked.empty() ? "" : ", ") + std::string(name) + " " + nlohmann::json(want).dump();
  }
  if (kept.empty()) return;
  PrintError(std::string("the ") + schema.kind->code +
             " record was replaced and keeps its stored " + kept + " (given: " + asked + ")");
}

}  // namespace qvtool
