// The header every new profile file starts with: the version-control keyword
// block and the empty sections of its kind, in the order the families expect.

#include <cstring>
#include <string>

#include "core/text_chars.h"
#include "platform/file.h"
#include "quorvex/report.h"
#include "quorvex/writer.h"

namespace qv {
namespace {

constexpr char kModuleTemplate[] =
    "\n[SourceSafe]\n$Header$\n\n[Module]\n[Document Languages]\n[Languages]\n[File Groups]\n"
    "[File Groups I Require]\n[File Group Ads]\n[File Group Files]\n[Modules I Require]\n"
    "[Created Files]\n[Installed Icons]\n[Installed Icon Locations]\n[Module Locations]";

constexpr char kInstallTemplate[] =
    "\n[SourceSafe]\n$Header$\n\n[Install]\n[Install Products]\n[Shipping Languages]\n"
    "[Interface Languages]\n[Alias Module Language]\n[Install Ads]\n[Shipping Media]\n"
    "[Archives]\n[Archive Module Languages]\n[Driver Module Groups]\n[Driver OSDLs]";

constexpr char kProductTemplate[] =
    "\n[SourceSafe]\n$Header$\n\n[Product]\n[Sub-Products]\n[Modules]";

constexpr char kModuleGroupTemplate[] = "\n[SourceSafe]\n$Header$\n\n[Module Group Modules]";

constexpr char kResourceTemplate[] = "\n[SourceSafe]\n$Header$\n\n[Resources]\n";

constexpr char kMessageTemplate[] = "\n[SourceSafe]\n$Header$\n\n[Strings]\n";

// The settings file names its owning module in its "[Module]" section.
std::string SettingsTemplate(const char* first_key, const char* second_key) {
  std::string text = "\n[SourceSafe]\n$Header$\n\n[Module]\n\"";
  text += first_key != nullptr ? first_key : "";
  text += "\",\"";
  text += second_key != nullptr ? second_key : "";
  text +=
      "\"\n\n[File System-Settings]\n[Module System-Settings]\n[System-Settings Records]\n"
      "[Shipped File Created SSRs]\n[Module Created SSRs]\n[Created System-Settings]\n";
  return text;
}

}  // namespace
}  // namespace qv

extern "C" {

int AddSections(QvFile handle, const char* kind, const char* firstKey, const char* secondKey) {
  if (kind == nullptr) kind = "";
  std::string text;
  if (qv::EqualsIgnoreCase(kind, "MO")) {
    text = qv::kModuleTemplate;
  } else if (qv::EqualsIgnoreCase(kind, "IN")) {
    text = qv::kInstallTemplate;
  } else if (qv::EqualsIgnoreCase(kind, "PR")) {
    text = qv::kProductTemplate;
  } else if (qv::EqualsIgnoreCase(kind, "MG")) {
    text = qv::kModuleGroupTemplate;
  } else if (qv::EqualsIgnoreCase(kind, "SSR")) {
    text = qv::SettingsTemplate(firstKey, secondKey);
  } else if (qv::EqualsIgnoreCase(kind, "RES")) {
    text = qv::kResourceTemplate;
  } else if (qv::EqualsIgnoreCase(kind, "MSG")) {
    text = qv::kMessageTemplate;
  } else {
    ReportError("Unsupported File Type given to AddSections.", 0);
    return 0;
  }
  // Neither the handle nor the bytes written are checked: a known kind
  // always succeeds here, and whatever went wrong with the new file shows
  // when it is replaced or checked in.
  if (qv::File* file = qv::File::FromHandle(handle)) file->Write(text.data(), text.size());
  return 1;
}

}  // extern "C"
