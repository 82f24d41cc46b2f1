#include "open_diagnosis.h"

#include <dirent.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "orvik/database.h"
#include "platform/fs.h"
#include "platform/lock_holder.h"

namespace qvtool {
namespace {

// The file opening reads first: a folder without it is no Master Profile.
constexpr char kLocationsFile[] = "locs/vardo.lo";
constexpr char kLockFile[] = "QUORVEX.LOK";
constexpr char kSqliteHeader[] = "SQLite format 3";

std::string Join(const std::string& folder, const char* name) {
  return qv::ResolvePath(folder + "/" + name);
}

bool StartsWithSqliteHeader(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  char head[sizeof kSqliteHeader] = {};
  in.read(head, sizeof head);
  return in.gcount() == sizeof head && memcmp(head, kSqliteHeader, sizeof head) == 0;
}

bool FolderIsEmpty(const std::string& path) {
  DIR* dir = opendir(path.c_str());
  if (dir == nullptr) return false;
  bool empty = true;
  while (dirent* entry = readdir(dir)) {
    if (strcmp(entry->d_name, ".") != 0 && strcmp(entry->d_name, "..") != 0) empty = false;
  }
  closedir(dir);
  return empty;
}

std::string Reason(int error) {
  return error == ENOENT ? "no such folder" : std::string(strerror(error));
}

// The mark every database made by `quorvex init --orvik` or `convert`
// carries; -1 when the file does not answer.
int64_t UserVersion(const std::string& path) {
  sqlite3* db = nullptr;
  int64_t version = -1;
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK &&
      sqlite3_prepare_v2(db, "PRAGMA user_version", -1, &statement, nullptr) == SQLITE_OK &&
      sqlite3_step(statement) == SQLITE_ROW) {
    version = sqlite3_column_int64(statement, 0);
  }
  sqlite3_finalize(statement);
  sqlite3_close(db);
  return version;
}

std::vector<std::string> WhyOrvik(const std::string& path, bool locking) {
  std::string head = "cannot open " + path + ": ";
  struct stat st;
  if (stat(path.c_str(), &st) != 0) {
    if (errno == ENOENT) return {head + "no such file"};
    return {head + strerror(errno)};
  }
  if (S_ISDIR(st.st_mode)) {
    return {head + "a folder, not an Orvik database file",
            "a Master Profile folder opens without --orvik"};
  }
  if (access(path.c_str(), R_OK) != 0)
    return {head + "cannot read the file (" + strerror(errno) + ")"};
  if (!StartsWithSqliteHeader(path))
    return {head + "not an Orvik profile (not an SQLite database)"};
  if (UserVersion(path) != qv::kOrvikUserVersion) {
    return {head + "an SQLite database, but not an Orvik profile",
            "`quorvex init --orvik FILE` makes an empty one; `quorvex convert DIR FILE` makes "
            "one from a Master Profile"};
  }
  if (locking) {
    std::string lock_path = path + ".LOK";
    std::string holder = LockHolder(lock_path);
    if (!holder.empty()) {
      return {head + "locked by " +
                  (holder == "another process" ? holder : "another process (" + holder + ")"),
              "the lock is " + lock_path + "; it goes when that process closes the profile"};
    }
  }
  if (access(path.c_str(), W_OK) != 0) {
    return {head + "cannot write the database file (" + std::string(strerror(errno)) + ")",
            "an Orvik profile is opened for reading and writing"};
  }
  return {head + "the engine refused the database (see its messages above)"};
}

}  // namespace

std::string LockHolder(const std::string& lock_path) {
  std::optional<std::string> held = qv::LockFileHolder(lock_path);
  if (!held) return "";
  std::string holder = *held;
  if (holder.empty()) {
    std::ifstream in(lock_path);
    std::string says;
    std::getline(in, says);
    if (!says.empty()) holder = "the lock file says: " + says;
  }
  return holder.empty() ? "another process" : holder;
}

std::vector<std::string> WhyOpenFailed(const std::string& path, bool orvik, bool locking) {
  if (orvik) return WhyOrvik(path, locking);
  std::string head = "cannot open " + path + ": ";
  std::string folder = qv::ResolvePath(path);
  struct stat st;
  if (stat(folder.c_str(), &st) != 0) return {head + Reason(errno)};
  if (!S_ISDIR(st.st_mode)) {
    if (StartsWithSqliteHeader(folder))
      return {head + "not a folder (an SQLite file: give --orvik to open it as an Orvik profile)"};
    return {head + "not a folder"};
  }
  std::string locations = Join(folder, kLocationsFile);
  struct stat lo;
  if (stat(locations.c_str(), &lo) != 0) {
    std::vector<std::string> lines = {head + "not a Master Profile (" + kLocationsFile +
                                      " is missing)"};
    if (FolderIsEmpty(folder)) lines.push_back("`quorvex init " + path + "` makes an empty one");
    return lines;
  }
  if (access(locations.c_str(), R_OK) != 0) {
    return {head + "cannot read " + kLocationsFile + " (" + strerror(errno) + ")"};
  }
  if (locking) {
    std::string lock_path = Join(folder, kLockFile);
    std::string holder = LockHolder(lock_path);
    if (!holder.empty()) {
      return {head + "locked by " +
                  (holder == "another process" ? holder : "another process (" + holder + ")"),
              "the lock is " + lock_path + "; it goes when that process closes the profile"};
    }
    struct stat lock;
    if (stat(lock_path.c_str(), &lock) == 0 && !S_ISREG(lock.st_mode)) {
      return {head + "the lock file " + kLockFile + " is not a file",
              "remove " + lock_path + " to lock the profile"};
    }
    if (access(folder.c_str(), W_OK) != 0 || (st.st_mode & 0222) == 0) {
      return {head + "cannot write in the folder (the lock file " + std::string(kLockFile) +
                  " cannot be created)",
              "changing commands and --lock need write access to " + path};
    }
  }
  // Opening reads every location: a line it cannot take fails the open.
  return {head + kLocationsFile + " does not read (see the messages above)",
          "`quorvex check` lists every problem of the profile"};
}

}  // namespace qvtool
