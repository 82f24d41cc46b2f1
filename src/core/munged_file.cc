// Short generated names for new profile files (modules, installs, products,
// settings, resource and message files), and their creation.
//
// Names stay within the 8.3 habits of the tree: a few letters of the owner's
// name and key; when the name is taken, five letters and a three-digit
// counter.

#include <cstdio>
#include <string>

#include "core/state.h"
#include "core/text_chars.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "quorvex/report.h"
#include "quorvex/writer.h"

namespace qv {
namespace {

constexpr int kNumberedTries = 999;

std::string WithoutChar(const char* text, char c) {
  std::string out;
  for (; text != nullptr && *text != '\0'; ++text) {
    if (*text != c) out.push_back(*text);
  }
  return out;
}

std::string Formatted(const char* format, const std::string& a, const std::string& b,
                      const std::string& c) {
  char text[QV_LINE_SIZE];
  snprintf(text, sizeof text, format, a.c_str(), b.c_str(), c.c_str());
  return text;
}

// A module, product or settings file: initials twice when there are exactly
// two of them (deliberately so), else five letters of the name.
std::string ShortName(const std::string& name, const std::string& initials,
                      const std::string& key) {
  if (initials.size() == 2) return Formatted("%.2s%.2s%.3s", initials, initials, key);
  char text[16];
  snprintf(text, sizeof text, "%.5s%.3s", name.c_str(), key.c_str());
  return text;
}

// Creates the file as new; nullptr when it exists or cannot be made. A path
// longer than the engine's path buffers is never created.
File* CreateNew(const std::string& path) {
  if (path.size() >= QV_PATH_SIZE) return nullptr;
  return File::Open(path, OpenMode::kCreateNew);
}

QvFile Hand(File* file, const std::string& path, char* path_out) {
  snprintf(path_out, QV_PATH_SIZE, "%s", path.c_str());
  return file->handle();
}

}  // namespace
}  // namespace qv

extern "C" {

int UppercaseInitials(const char* text, char* destination) {
  char* out = destination;
  for (; text != nullptr && *text != '\0'; ++text) {
    if (*text >= 'A' && *text <= 'Z') *out++ = *text;
  }
  *out = '\0';
  return 1;
}

QvFile CreateMungedFile(const char* name, const char* secondKey, const char* kind, char* pathOut) {
  char unused[QV_PATH_SIZE];
  if (pathOut == nullptr) pathOut = unused;
  pathOut[0] = '\0';
  if (name == nullptr) name = "";
  if (kind == nullptr) kind = "";
  const std::string key = qv::WithoutChar(secondKey, '.');
  const std::string compact = qv::WithoutChar(name, ' ');
  std::string initials(compact.size() + 1, '\0');
  UppercaseInitials(compact.c_str(), initials.data());
  initials.resize(initials.find('\0'));

  const char* folder;
  std::string base;
  if (qv::EqualsIgnoreCase(kind, "MO")) {
    folder = "MODULES";
    base = qv::ShortName(compact, initials, key);
  } else if (qv::EqualsIgnoreCase(kind, "IN")) {
    folder = "Installs";
    base = compact.substr(0, 8);
  } else if (qv::EqualsIgnoreCase(kind, "PR")) {
    folder = "Products";
    base = qv::ShortName(compact, initials, key);
  } else if (qv::EqualsIgnoreCase(kind, "RE")) {
    folder = "RES_US";
    base = std::string("PELHAM") + name;
  } else if (qv::EqualsIgnoreCase(kind, "MSG")) {
    folder = "Language";
    base = std::string("SETUP") + name;
  } else if (qv::EqualsIgnoreCase(kind, "SSR")) {
    folder = "SSR";
    base = qv::ShortName(compact, initials, key);
  } else {
    // Module groups too: a new module-group file is never made here.
    ReportError("Unsupported File Type given to CreateMungedFile.", 0);
    return QV_NO_FILE;
  }
  if (qv::State().profile_path[0] == '\0') {
    // Without a profile the folder would hang off the root of the disk.
    ReportError("It appears that you have not run OpenMasterProfile successfully!", 0);
    return QV_NO_FILE;
  }

  // The folder is prepared for a file name and made when it is missing.
  std::string directory = std::string(qv::State().profile_path) + "\\" + folder + "\\";
  qv::AddTrailingSeparator(&directory);
  if (!qv::DirectoryExists(directory)) qv::MakeDirectories(directory);

  std::string path = qv::Formatted("%s%s.%s", directory, base, kind);
  if (qv::File* file = qv::CreateNew(path)) return qv::Hand(file, path, pathOut);

  if (qv::EqualsIgnoreCase(kind, "RE")) {
    ReportError("You have requested to create a resource file that you cannot, contact vendor.", 0);
    return QV_NO_FILE;
  }
  for (int n = 1; n <= qv::kNumberedTries; ++n) {
    char numbered[QV_LINE_SIZE];
    snprintf(numbered, sizeof numbered, "%s%.5s%03d.%s", directory.c_str(), base.c_str(), n, kind);
    if (qv::File* file = qv::CreateNew(numbered)) return qv::Hand(file, numbered, pathOut);
  }
  return QV_NO_FILE;
}

}  // extern "C"
