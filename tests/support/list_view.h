// Test helpers for record lists: the records of a list in order, and
// owning pointers that free lists and records with their kind's operation.
#ifndef QUORVEX_TESTS_SUPPORT_LIST_VIEW_H_
#define QUORVEX_TESTS_SUPPORT_LIST_VIEW_H_

#include <memory>
#include <vector>

#include "quorvex/list.h"

namespace qvtest {

// The records from head to tail (walking the links, not the cursor).
template <class Record>
std::vector<Record*> RecordsOf(const RecordList* list) {
  std::vector<Record*> records;
  if (list == nullptr || list->head == nullptr) return records;
  const RecordNode* node = list->head;
  do {
    records.push_back(static_cast<Record*>(node->record));
    node = node->next;
  } while (node != list->head);
  return records;
}

template <auto Free>
struct FreeWith {
  template <class T>
  void operator()(T* pointer) const {
    Free(pointer);
  }
};

// Owned<ADList, MPFreeADList>, Owned<ADRecord, MPFreeAD>, ...
template <class T, auto Free>
using Owned = std::unique_ptr<T, FreeWith<Free>>;

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_LIST_VIEW_H_
