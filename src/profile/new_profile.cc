// A new, empty Master Profile: every folder the catalogue searches and every
// fixed file with the sections its records live in, so that it opens.
#include <string>
#include <vector>

#include "platform/file.h"
#include "platform/fs.h"
#include "quorvex/profile.h"

namespace qv {
namespace {

struct FixedFile {
  const char* path;  // relative to the profile folder
  std::vector<const char*> sections;
};

const char* const kFolders[] = {"modules", "SSR",      "installs", "products", "UIGroups",
                                "RES_US",  "LANGUAGE", "REGADMIN", "ADS",      "locs"};

const FixedFile kFixedFiles[] = {
    {"ADS\\adlist.ad", {"Ads"}},
    {"locs\\vardo.lo", {"Locations"}},
    {"locs\\icons.lo", {"Icon Locations"}},
    {"LANGUAGE\\pelham.la",
     {"Shipping Languages", "Document Languages", "OS Languages", "Available Interface Languages",
      "Interface Languages"}},
    {"LANGUAGE\\OsDoC.LA", {"OS Document Language"}},
    {"SSR\\DRKSSR.DSI", {"DRKSSRs"}},
    {"REGADMIN\\REGADMIN.RAM",
     {"Development Reg Keys", "Development Reg Key Products", "Development Products"}},
};

bool WriteNewFile(const std::string& path, const std::string& content) {
  File* file = File::Open(path, OpenMode::kCreateNew);
  if (file == nullptr) return FileExists(ResolvePath(path));  // kept as it is
  bool ok = file->Write(content.data(), content.size()) == content.size();
  delete file;
  return ok;
}

}  // namespace
}  // namespace qv

extern "C" int QvInitMasterProfile(const char* directory) {
  std::string root = directory;
  qv::RemoveTrailingSeparator(&root);
  if (!qv::MakeDirectories(root)) return 0;
  for (const char* folder : qv::kFolders) {
    if (!qv::MakeDirectories(qv::ResolvePath(root + "\\" + folder))) return 0;
  }
  for (const qv::FixedFile& fixed : qv::kFixedFiles) {
    // The same head as every file the engine creates: a version-control
    // keyword section, then the record sections.
    std::string content = "\n[SourceSafe]\n$Header$\n";
    for (const char* section : fixed.sections) content += std::string("\n[") + section + "]\n";
    if (!qv::WriteNewFile(root + "\\" + fixed.path, content)) return 0;
  }
  return 1;
}
