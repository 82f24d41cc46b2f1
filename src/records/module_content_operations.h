// The C operations every kind of a module's file has, stamped out for a
// family F (an OwnedKindFamily): New, Free, the list operations, the
// module's complete list read and written, Put and the flag table. Delete
// takes each kind's own key parts and is written beside the kind.
#ifndef QUORVEX_RECORDS_MODULE_CONTENT_OPERATIONS_H_
#define QUORVEX_RECORDS_MODULE_CONTENT_OPERATIONS_H_

#include "records/owned_kind_family.h"
#include "records/record_list.h"

#define QV_DEFINE_MODULE_CONTENT_OPERATIONS(code, F)                               \
  QV_DEFINE_LIST_OPERATIONS(code, code##Record, MPFree##code)                      \
  extern "C" {                                                                     \
  int MPNew##code(code##Record** recordOut) {                                      \
    *recordOut = F::New();                                                         \
    return *recordOut != nullptr ? 1 : 0;                                          \
  }                                                                                \
  int MPFree##code(code##Record* record) {                                         \
    ::qv::FreeRecord(record);                                                      \
    return 1;                                                                      \
  }                                                                                \
  int MPGet##code##CompleteList(const char* moduleName, const char* moduleVersion, \
                                code##List** listOut, uint32_t mode) {             \
    return F::ReadAll(moduleName, moduleVersion, listOut, mode);                   \
  }                                                                                \
  int MPPut##code##CompleteList(const char* moduleName, const char* moduleVersion, \
                                code##List* list) {                                \
    return F::PutCompleteList(moduleName, moduleVersion, list);                    \
  }                                                                                \
  int MPPut##code(code##Record* record) {                                          \
    return F::Put(record);                                                         \
  }                                                                                \
  int MPGet##code##FlagNames(code##FlagNames** tableOut) {                         \
    *tableOut = ::qv::NewFlagNames(F::Schema());                                   \
    return 1;                                                                      \
  }                                                                                \
  }

#endif  // QUORVEX_RECORDS_MODULE_CONTENT_OPERATIONS_H_
