// Short generated names for new profile files (modules, installs, products,
// settings, resource and message files), and their creation.
//
// Names stay within the 8.3 habits of the tree: a few letters of the owner's
// name and key; when the name is taken, five letters and a three-digit
// counter.

#include "core/munged_file.h"

#include <cstdio>
#include <string>

#include "core/file_name_check.h"
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

// Finds the file's name and, when a file is given, creates it as new; with
// none, takes the first name no file or folder holds.
bool MungedFile(const char* name, const char* secondKey, const char* kind, std::string* path_out,
                File** file_out) {
  if (name == nullptr) name = "";
  if (kind == nullptr) kind = "";
  const std::string key = WithoutChar(secondKey, '.');
  const std::string compact = WithoutChar(name, ' ');
  std::string initials(compact.size() + 1, '\0');
  ::UppercaseInitials(compact.c_str(), initials.data());
  initials.resize(initials.find('\0'));

  const char* folder;
  std::string base;
  if (EqualsIgnoreCase(kind, "MO")) {
    folder = "MODULES";
    base = ShortName(compact, initials, key);
  } else if (EqualsIgnoreCase(kind, "IN")) {
    folder = "Installs";
    base = compact.substr(0, 8);
  } else if (EqualsIgnoreCase(kind, "PR")) {
    folder = "Products";
    base = ShortName(compact, initials, key);
  } else if (EqualsIgnoreCase(kind, "RE")) {
    folder = "RES_US";
    base = std::string("PELHAM") + name;
  } else if (EqualsIgnoreCase(kind, "MSG")) {
    folder = "Language";
    base = std::string("SETUP") + name;
  } else if (EqualsIgnoreCase(kind, "SSR")) {
    folder = "SSR";
    base = ShortName(compact, initials, key);
  } else {
    // Module groups too: a new module-group file is never made here.
    ReportError("Unsupported File Type given to CreateMungedFile.", 0);
    return false;
  }
  if (!IsPlainFileName(base.c_str())) {
    // Nothing is made, not even the folder: name the part that is at fault.
    ReportUnsafeFileName(IsPlainFileName(compact.c_str()) ? secondKey : name);
    return false;
  }
  if (State().profile_path[0] == '\0') {
    // Without a profile the folder would hang off the root of the disk.
    ReportError("It appears that you have not run OpenMasterProfile successfully!", 0);
    return false;
  }

  // The folder is prepared for a file name and made when it is missing.
  std::string directory = std::string(State().profile_path) + "\\" + folder + "\\";
  AddTrailingSeparator(&directory);
  if (!DirectoryExists(directory)) MakeDirectories(directory);

  // A path longer than the engine's path buffers is never taken.
  auto take = [&](const std::string& path) {
    if (path.size() >= QV_PATH_SIZE) return false;
    if (file_out != nullptr) {
      *file_out = File::Open(path, OpenMode::kCreateNew);
      if (*file_out == nullptr) return false;
    } else if (FileExists(path) || DirectoryExists(path)) {
      return false;
    }
    *path_out = path;
    return true;
  };
  if (take(Formatted("%s%s.%s", directory, base, kind))) return true;

  if (EqualsIgnoreCase(kind, "RE")) {
    ReportError("You have requested to create a resource file that you cannot, contact vendor.", 0);
    return false;
  }
  for (int n = 1; n <= kNumberedTries; ++n) {
    char numbered[QV_LINE_SIZE];
    snprintf(numbered, sizeof numbered, "%s%.5s%03d.%s", directory.c_str(), base.c_str(), n, kind);
    if (take(numbered)) return true;
  }
  return false;
}

}  // namespace

std::string FreeMungedPath(const char* name, const char* second_key, const char* kind) {
  std::string path;
  return MungedFile(name, second_key, kind, &path, nullptr) ? path : std::string();
}

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
  std::string path;
  qv::File* file = nullptr;
  if (!qv::MungedFile(name, secondKey, kind, &path, &file)) return QV_NO_FILE;
  snprintf(pathOut, QV_PATH_SIZE, "%s", path.c_str());
  return file->handle();
}

}  // extern "C"
