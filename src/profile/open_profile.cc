// Opening and closing the one profile of the process.
//
// A new profile replaces the open one only after it proved valid (a
// directory, its locations readable, its lock taken), so a failed open
// leaves the old profile open.
#include <sqlite3.h>
#include <strings.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "core/host.h"
#include "core/state.h"
#include "orvik/database.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "platform/lock_file.h"
#include "platform/registry.h"
#include "profile/global_file_list.h"
#include "profile/last_profile.h"
#include "profile/leftover_files.h"
#include "quorvex/profile.h"
#include "quorvex/report.h"
#include "records/locations.h"
#include "records/resource_files.h"

namespace qv {
namespace {

constexpr char kSelectMessage[] = "Please Select a Profile...";
constexpr char kNeedProjectMessage[] =
    "In order to use Version Control, you must select a Version Control Project.\n"
    "If you change Master Profiles you must re-select your Version Control Project";
constexpr char kLocationsMessage[] =
    "Problem retrieving locations.  Please Try another Master Profile.";
constexpr uint32_t kOrvikPreset[4] = {2, 0, 2, 2};

// The parent of the folder that holds the host program: where a profile
// installed beside the tools would be.
std::string DefaultProfilePath() {
  std::string path = HostProgramPath();
  for (int i = 0; i < 2; ++i) {
    size_t cut = path.find_last_of("/\\");
    if (cut == std::string::npos) return "";
    path.resize(cut);
  }
  return path.empty() ? "/" : path;
}

bool HasStoredPath() {
  return !RegistryGetString(LastProfileKey(), "Path").value_or("").empty();
}

void SetText(char* destination, const std::string& text) {
  snprintf(destination, QV_PATH_SIZE, "%s", text.c_str());
}

// Working values of one open; the dialog may change all of them.
struct OpenAttempt {
  char path[QV_PATH_SIZE];
  uint32_t flags;
  char project[QV_PATH_SIZE];
  std::string message = kSelectMessage;
};

bool IsOpenAs(const OpenAttempt& attempt) {
  EngineState& s = State();
  return s.profile_path[0] != '\0' && strcasecmp(attempt.path, s.profile_path) == 0 &&
         attempt.flags == s.profile_flags && (attempt.flags & OPEN_PROMPT) == 0;
}

// Takes the lock that a locked open asks for (nullptr when none is asked
// for). Reopening the locked profile with other flags keeps its lock
// rather than letting the close of the old profile drop it. False, after
// the report, when another process holds it.
bool TakeLock(OpenAttempt* attempt, const std::string& lock_path, LockFile** lock) {
  EngineState& s = State();
  *lock = nullptr;
  if (!(attempt->flags & OPEN_LOCK)) return true;
  if (strcasecmp(attempt->path, s.profile_path) == 0 && s.locked && s.lock_file != nullptr) {
    *lock = s.lock_file;
    s.lock_file = nullptr;
    return true;
  }
  *lock = LockFile::Acquire(ResolvePath(lock_path));
  if (*lock != nullptr) return true;
  char text[QV_LINE_SIZE];
  snprintf(text, sizeof text, "Cannot open Lockfile %s.", lock_path.c_str());
  ReportError(text, 0);
  attempt->message = text;
  return false;
}

bool TryMasterProfile(OpenAttempt* attempt) {
  EngineState& s = State();
  // " " is refused by name as well: it passed the directory test on the
  // original file system and opened nothing useful.
  if (strcmp(attempt->path, " ") == 0 || !DirectoryExists(ResolvePath(attempt->path))) {
    return false;
  }
  RecordList* locations = nullptr;
  if (!LoadLocations(attempt->path, &locations)) {
    if (!(attempt->flags & OPEN_SILENT)) ReportError(kLocationsMessage, 0);
    return false;
  }
  LockFile* lock = nullptr;
  if (!TakeLock(attempt, std::string(attempt->path) + "\\QUORVEX.LOK", &lock)) {
    FreeLocations(locations);
    return false;
  }
  if (s.profile_path[0] != '\0') CloseMasterProfile();
  SetText(s.profile_path, attempt->path);
  s.profile_flags = attempt->flags;
  if (attempt->flags & OPEN_READ_ACTIVE_ONLY) s.comment_mode = 1;
  FreeGlobalFileList(s.global_file_list);
  s.global_file_list = NewGlobalFileList();
  // Counted apart from the state, which tests reset.
  static uint64_t opens = 0;
  s.open_number = ++opens;
  s.location_list = locations;
  s.lock_file = lock;
  if (lock != nullptr) RemoveLeftoverFiles(s.profile_path);
  return true;
}

bool TryOrvikProfile(OpenAttempt* attempt) {
  EngineState& s = State();
  if (!(attempt->flags & OPEN_ORVIK) || (attempt->flags & OPEN_PROMPT)) return false;
  sqlite3* connection = OrvikOpenDatabase(attempt->path);
  if (connection == nullptr) {
    char text[QV_LINE_SIZE];
    snprintf(text, sizeof text, "Error opening Orvik profile database file %s.", attempt->path);
    attempt->message = text;  // shown in the dialog only
    return false;
  }
  // A database has no folder for the lock file; it lies beside the file,
  // and it keeps a second writer out exactly as in a Master Profile.
  LockFile* lock = nullptr;
  if (!TakeLock(attempt, std::string(attempt->path) + ".LOK", &lock)) {
    sqlite3_close(connection);
    return false;
  }
  if (s.profile_path[0] != '\0') CloseMasterProfile();
  OrvikMakeCurrent(connection);
  s.lock_file = lock;
  for (int i = 0; i < 4; ++i) s.orvik_handles[i] = kOrvikPreset[i];
  SetText(s.profile_path, attempt->path);
  s.profile_flags = attempt->flags;
  RecordList* locations = nullptr;
  if (!LoadLocations(nullptr, &locations)) {
    // Reported even when silent, and the database stays current: callers
    // have always seen this branch behave so.
    ReportError(kLocationsMessage, 0);
    return false;
  }
  s.location_list = locations;
  return true;
}

enum class Attempt { kFailed, kOpened, kAlreadyOpen };

Attempt TryOpen(OpenAttempt* attempt) {
  if (!(attempt->flags & OPEN_NO_VCS) && attempt->project[0] == '\0') {
    ReportError(kNeedProjectMessage, 0);
    return Attempt::kFailed;
  }
  if (IsOpenAs(*attempt)) return Attempt::kAlreadyOpen;
  bool opened = (attempt->flags & OPEN_MASTER) && !(attempt->flags & OPEN_PROMPT)
                    ? TryMasterProfile(attempt)
                    : TryOrvikProfile(attempt);
  return opened ? Attempt::kOpened : Attempt::kFailed;
}

void OpenLog(const char* log_file) {
  EngineState& s = State();
  if (s.log_file != nullptr) {
    delete s.log_file;
    s.log_file = nullptr;
  }
  if (log_file == nullptr || log_file[0] == '\0') return;
  s.log_file = File::Open(log_file, OpenMode::kCreateAlways);
  if (s.log_file == nullptr) {
    char text[QV_LINE_SIZE];
    snprintf(text, sizeof text, "Cannot open Logfile %s.", log_file);
    ReportError(text, 0);
  }
}

void DrawNamePrefix() {
  srand(static_cast<unsigned>(time(nullptr)));
  snprintf(State().name_prefix, sizeof State().name_prefix, "%4.4d_", rand() % 10000);
}

}  // namespace
}  // namespace qv

using qv::State;

extern "C" {

int OpenMasterProfile(char* path, uint32_t* flags, const char* logFile) {
  const uint32_t caller_flags = *flags;
  qv::OpenAttempt attempt;
  qv::SetText(attempt.path, path);
  attempt.flags = *flags;
  attempt.project[0] = '\0';
  // An empty path means the last profile of this host program; only when
  // there is none does the folder above the program's own stand in.
  if (attempt.path[0] == '\0' && !qv::HasStoredPath()) {
    qv::SetText(attempt.path, qv::DefaultProfilePath());
  }
  if (!ReadLastProfile(attempt.path, &attempt.flags, attempt.project)) return 0;

  std::string trimmed = attempt.path;
  qv::RemoveTrailingSeparator(&trimmed);
  qv::SetText(attempt.path, trimmed);
  for (;;) {
    qv::Attempt result = qv::TryOpen(&attempt);
    if (result == qv::Attempt::kAlreadyOpen) {
      // Nothing is reopened and nothing recorded; the caller still learns
      // what is open (the prompt bit is gone).
      qv::SetText(path, attempt.path);
      *flags = attempt.flags;
      return 1;
    }
    if (result == qv::Attempt::kOpened) break;
    attempt.flags &= ~OPEN_PROMPT;
    if (caller_flags & OPEN_SILENT) return 0;
    if (!ShowOpenProfileDialog(attempt.path, attempt.project, attempt.message.c_str(),
                               &attempt.flags)) {
      return 0;
    }
  }

  qv::EngineState& s = State();
  qv::SetText(s.vcs_project, attempt.project);
  s.locked = (attempt.flags & OPEN_LOCK) != 0;
  qv::OpenLog(logFile);
  s.message_box_switch = (caller_flags & OPEN_SILENT) == 0;
  qv::DrawNamePrefix();
  // Generated resource names count per open profile; the files of this one
  // raise the counter again as they are read.
  s.resource_counter = 0;
  qv::SetText(path, s.profile_path);
  *flags = s.profile_flags;
  WriteLastProfile(path, *flags, s.vcs_project);
  return 1;
}

int CloseMasterProfile(void) {
  qv::EngineState& s = State();
  if (s.profile_path[0] != '\0') {
    if (s.profile_flags & OPEN_ORVIK) {
      qv::OrvikCloseDatabase();
    } else if (s.profile_flags & OPEN_MASTER) {
      if (s.locked) {
        static const char kTitle[] = "Closing Master Profile...";
        static const char kText[] =
            "Closing the Master Profile...\nPlease wait to do any Checkins\nuntil this message is "
            "gone..";
        qv::HostClosingNotice(kTitle, kText, false);
        qv::WriteBackResourceFiles();
        qv::WriteBackLocations();
        qv::HostClosingNotice(kTitle, kText, true);
      }
    }
    qv::FreeLocations(s.location_list);
    s.location_list = nullptr;
    qv::FreeGlobalFileList(s.global_file_list);
    s.global_file_list = nullptr;
    if (s.lock_file != nullptr) s.lock_file->Release();
    s.lock_file = nullptr;
  }
  if (s.log_file != nullptr) delete s.log_file;
  s.log_file = nullptr;
  s.locked = false;
  s.profile_path[0] = '\0';
  return 1;
}

int IsMasterProfileOpen(uint32_t mask) {
  const qv::EngineState& s = State();
  if (s.profile_path[0] == '\0') return 0;
  if ((mask & OPEN_LOCK) && !s.locked) return 0;
  return 1;
}

const char* QvOpenProfilePath(void) {
  return State().profile_path;
}
uint32_t QvOpenProfileFlags(void) {
  return State().profile_path[0] ? State().profile_flags : 0;
}
const char* QvOpenProfileProject(void) {
  return State().vcs_project;
}
const char* QvGeneratedNamePrefix(void) {
  return State().name_prefix;
}

}  // extern "C"
