// The status words of the global list of files, as version control reads
// and sets them.
#include <cstdio>

#include "core/state.h"
#include "profile/global_file_list.h"
#include "quorvex/catalogue.h"
#include "quorvex/report.h"

namespace qv {
namespace {

// The entry of path, or nullptr after reporting that it is not listed.
ProfileFileEntry* ListedEntry(const char* path) {
  ProfileFileEntry* entry = FindGlobalFileEntry(path);
  if (entry == nullptr) {
    char message[QV_LINE_SIZE];
    snprintf(message, sizeof message, "Can't find %s file in global list of files.",
             path != nullptr ? path : "");
    ReportError(message, 0);
  }
  return entry;
}

}  // namespace
}  // namespace qv

extern "C" {

RecordList* QvGlobalFileList(void) {
  return qv::State().global_file_list;
}

uint32_t GetFileStatus(const char* path) {
  ProfileFileEntry* entry = qv::ListedEntry(path);
  return entry != nullptr ? entry->status : 0;
}

int SetFileStatusBits(const char* path, uint32_t bits) {
  ProfileFileEntry* entry = qv::ListedEntry(path);
  if (entry == nullptr) return 0;
  entry->status |= bits;
  return 1;
}

int ClearFileStatusBits(const char* path, uint32_t bits) {
  ProfileFileEntry* entry = qv::ListedEntry(path);
  if (entry == nullptr) return 0;
  entry->status &= ~bits;
  return 1;
}

}  // extern "C"
