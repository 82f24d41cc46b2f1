// The engine's process-wide state.
//
// The engine serves one caller thread and one open profile per process; all
// that lives between calls is kept here, in one place, so that it is plain
// which operation reads or changes what. Nothing here is guarded: the engine
// is used from one thread at a time.
#ifndef QUORVEX_CORE_STATE_H_
#define QUORVEX_CORE_STATE_H_

#include <cstdint>

#include "quorvex/base.h"
#include "quorvex/list.h"

namespace qv {

class File;
class LockFile;
struct ResourceFileTable;  // the open resource files, owned by the resource family

struct EngineState {
  // The open profile. An empty path means that none is open.
  char profile_path[QV_PATH_SIZE] = "";
  uint32_t profile_flags = 0;
  bool locked = false;
  char vcs_project[QV_PATH_SIZE] = "";
  LockFile* lock_file = nullptr;
  File* log_file = nullptr;
  RecordList* location_list = nullptr;
  RecordList* global_file_list = nullptr;
  char name_prefix[6] = "";  // "%4.4d_"
  uint64_t open_number = 0;  // which open of this process it is: never the same twice
  ResourceFileTable* resource_files = nullptr;
  uint32_t resource_counter = 0;  // shared by all languages, never lowered

  // The Orvik database handle set; the database itself is held by the adapter.
  uint32_t orvik_handles[5] = {0, 0, 0, 0, 0};

  // Error reporting.
  bool message_box_switch = true;            // re-armed at each open
  bool host_message_box_switch = true;       // never re-armed
  bool vcs_client_missing_reported = false;  // said once per process

  // Reading profile text.
  char parse_file[QV_PATH_SIZE] = "";
  int32_t parse_line = 0;
  int comment_mode = 2;  // 1 after an open with OPEN_READ_ACTIVE_ONLY, for good
};

EngineState& State();

// Back to the state of a freshly loaded library (tests only; frees nothing).
void ResetStateForTesting();

}  // namespace qv

#endif  // QUORVEX_CORE_STATE_H_
