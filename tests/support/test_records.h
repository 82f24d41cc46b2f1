// A record kind of the tests' own ("TST") for exercising the record list
// operations, and a checker of a list's ring, ends, count and cursor.
//
// Declaring the kind here gives the prototypes; a suite that uses them
// defines them once with
//   QV_DEFINE_LIST_OPERATIONS(TST, qvtest::TstRecord, qvtest::FreeTstRecord)
#ifndef QUORVEX_TESTS_SUPPORT_TEST_RECORDS_H_
#define QUORVEX_TESTS_SUPPORT_TEST_RECORDS_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "quorvex/list.h"

namespace qvtest {

// Records live in the test's own storage; the list's record free only
// counts, so that a test can tell which records were freed and how often.
struct TstRecord {
  int id = 0;
  int frees = 0;
};

inline int& TstFreeCount() {
  static int count = 0;
  return count;
}

inline void FreeTstRecord(TstRecord* record) {
  ++record->frees;
  ++TstFreeCount();
}

// Index of the cursor's node counted from head (0-based), -1 when the cursor
// is null, -2 when it points at no node of the list.
inline int CursorIndex(const RecordList* list) {
  if (list->current == nullptr) return -1;
  const RecordNode* node = list->head;
  for (uint32_t i = 0; node != nullptr && i < list->count; ++i, node = node->next) {
    if (node == list->current) return static_cast<int>(i);
  }
  return -2;
}

// The list holds exactly these records in this order: count, head, tail,
// both link directions of every node, the ring closing after the last
// record, a zero reserved word, and a cursor that is null or on a node.
template <class Record>
::testing::AssertionResult ListIs(const RecordList* list, const std::vector<Record*>& records) {
  if (list == nullptr) return ::testing::AssertionFailure() << "null list";
  if (list->reserved != 0) return ::testing::AssertionFailure() << "reserved " << list->reserved;
  if (list->count != records.size()) {
    return ::testing::AssertionFailure()
           << "count " << list->count << ", expected " << records.size();
  }
  if (records.empty()) {
    if (list->head != nullptr || list->tail != nullptr || list->current != nullptr) {
      return ::testing::AssertionFailure() << "empty list with a head, tail or cursor";
    }
    return ::testing::AssertionSuccess();
  }
  if (list->head == nullptr || list->tail == nullptr) {
    return ::testing::AssertionFailure() << "non-empty list without head or tail";
  }
  const RecordNode* node = list->head;
  for (size_t i = 0; i < records.size(); ++i) {
    if (node->record != records[i]) {
      return ::testing::AssertionFailure() << "wrong record at position " << i + 1;
    }
    if (node->next == nullptr || node->prev == nullptr || node->next->prev != node ||
        node->prev->next != node) {
      return ::testing::AssertionFailure() << "broken links at position " << i + 1;
    }
    if ((i + 1 == records.size()) != (node == list->tail)) {
      return ::testing::AssertionFailure()
             << "tail is not the last node (position " << i + 1 << ")";
    }
    node = node->next;
  }
  if (node != list->head) return ::testing::AssertionFailure() << "ring does not close at head";
  if (list->head->prev != list->tail || list->tail->next != list->head) {
    return ::testing::AssertionFailure() << "head and tail are not joined";
  }
  if (CursorIndex(list) == -2) return ::testing::AssertionFailure() << "cursor off the list";
  return ::testing::AssertionSuccess();
}

}  // namespace qvtest

QV_EXTERN_C_BEGIN
QV_DECLARE_LIST_OPERATIONS(TST, qvtest::TstRecord)
QV_EXTERN_C_END

#endif  // QUORVEX_TESTS_SUPPORT_TEST_RECORDS_H_
