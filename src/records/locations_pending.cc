// Stand-in for the location family until location records are read: every
// profile has an empty location list, so nothing is written back and no
// location can be resolved.
#include <cstdlib>

#include "records/locations.h"

namespace qv {

bool LoadLocations(const char*, RecordList** list) {
  *list = static_cast<RecordList*>(calloc(1, sizeof(RecordList)));
  return *list != nullptr;
}

void WriteBackLocations() {}

void FreeLocations(RecordList* list) {
  if (list == nullptr) return;
  RecordNode* node = list->head;
  for (uint32_t i = 0; node != nullptr && i < list->count; ++i) {
    RecordNode* next = node->next;
    free(node->record);
    free(node);
    node = next;
  }
  free(list);
}

bool ResolveLocationDirectory(const char*, const char*, const char*, const char*, std::string*) {
  return false;
}

}  // namespace qv
