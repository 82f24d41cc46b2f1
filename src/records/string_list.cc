// Lists of strings (project names, file names, ...): the record list
// operations bound to strings taken from malloc.
#include <cstdlib>

#include "quorvex/list.h"
#include "records/record_list.h"

namespace qv {
namespace {

void FreeString(char* text) {
  free(text);
}

using StringListOps = ListOps<char, &FreeString>;

}  // namespace
}  // namespace qv

extern "C" {

int MPAddAt(RecordList* list, uint32_t position, char* string) {
  return qv::StringListOps::AddAt(list, position, string);
}

int MPNewStringList(RecordList** listOut) {
  return qv::StringListOps::New(listOut);
}

int MPFreeStringList(RecordList* list) {
  return qv::StringListOps::Free(list);
}

}  // extern "C"
