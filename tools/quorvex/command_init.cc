// quorvex init DIR: a new, empty Master Profile that opens; with --orvik,
// init FILE makes an empty Orvik profile instead.
#include <dirent.h>
#include <sys/stat.h>

#include <cstring>
#include <iostream>

#include "command.h"
#include "platform/fs.h"
#include "quorvex/quorvex.h"

namespace qvtool {
namespace {

constexpr char kFooter[] =
    "DIR may be missing or an empty folder. A folder that already holds a\n"
    "Master Profile is never touched (exit 1); a folder that holds other\n"
    "files is refused unless --force is given (the profile's files are then\n"
    "written among them).\n"
    "With --orvik, FILE is a new Orvik profile: an SQLite database with a\n"
    "table for every record kind the database holds. An existing file is\n"
    "never touched (exit 1).";

bool IsFile(const std::string& path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

// The files every Master Profile has (any case, as on the system it came from).
std::string ProfileFileIn(const std::string& folder) {
  for (const char* name : {"locs/vardo.lo", "ADS/adlist.ad"}) {
    if (IsFile(qv::ResolvePath(folder + "/" + name))) return name;
  }
  return "";
}

bool HoldsAnything(const std::string& folder) {
  DIR* dir = opendir(folder.c_str());
  if (dir == nullptr) return false;
  bool any = false;
  while (dirent* entry = readdir(dir)) {
    if (strcmp(entry->d_name, ".") != 0 && strcmp(entry->d_name, "..") != 0) any = true;
  }
  closedir(dir);
  return any;
}

class InitCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub =
        app.add_subcommand("init", "make a new, empty Master Profile (or Orvik profile)");
    sub->add_option("DIR", directory_, "folder of the new profile (--orvik: its database file)")
        ->required();
    sub->add_flag("--orvik", orvik_, "make an Orvik profile: a database file");
    sub->footer(kFooter);
    return sub;
  }

  int Run(const GlobalOptions& options) override {
    if (orvik_ || options.orvik) return MakeOrvikProfile();
    struct stat st;
    if (stat(directory_.c_str(), &st) == 0) {
      if (!S_ISDIR(st.st_mode)) {
        PrintError("cannot create a Master Profile in " + directory_ + ": not a folder");
        return kExitFailed;
      }
      std::string found = ProfileFileIn(directory_);
      if (!found.empty()) {
        PrintError(directory_ + " already holds a Master Profile (" + found +
                   "): nothing was changed");
        return kExitFailed;
      }
      if (!options.force && HoldsAnything(directory_)) {
        PrintError(directory_ + " is not empty: nothing was changed");
        PrintError("--force makes the profile among the files there");
        return kExitFailed;
      }
    }
    if (!QvInitMasterProfile(directory_.c_str())) {
      PrintError("cannot create a Master Profile in " + directory_);
      return kExitFailed;
    }
    std::cout << "Created an empty Master Profile in " << directory_ << "\n";
    return kExitOk;
  }

 private:
  int MakeOrvikProfile() {
    struct stat st;
    if (stat(directory_.c_str(), &st) == 0) {
      PrintError(directory_ + " already exists: nothing was changed");
      return kExitFailed;
    }
    if (!QvInitOrvikProfile(directory_.c_str())) {
      PrintError("cannot create an Orvik profile at " + directory_);
      return kExitFailed;
    }
    std::cout << "Created an empty Orvik profile in " << directory_ << "\n";
    return kExitOk;
  }

  std::string directory_;
  bool orvik_ = false;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(InitCommand);

}  // namespace qvtool
