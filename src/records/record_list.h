// The record list operations, written once and bound to each record kind.
//
// Every kind exports the same nine list operations; they differ only in the
// record type and in how a record is freed. ListOps holds the one
// implementation and QV_DEFINE_LIST_OPERATIONS stamps out the exported C
// functions of a kind:
//
//   QV_DEFINE_LIST_OPERATIONS(AD, ADRecord, MPFreeAD)
//
// The free-standing helpers below (StepCursor, ForEachRecord,
// FindNodeByRecord, UnlinkNode, UnlinkRecord) serve the family code that
// walks, searches and deletes with the cursor.
#ifndef QUORVEX_RECORDS_RECORD_LIST_H_
#define QUORVEX_RECORDS_RECORD_LIST_H_

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <type_traits>
#include <utility>

#include "quorvex/list.h"
#include "quorvex/report.h"

namespace qv {

// The texts of the list operations. Every kind shows the same ones, the
// name "MPAddAt" included.
inline constexpr char kListPositionZero[] = "To use MPAddAt, mpindex must be greater than zero.";
inline constexpr char kListIndexTooLarge[] = "Index exceeds possible itemcount.";
inline constexpr char kListNodeMemory[] = "Cannot create memory for node.";
inline constexpr char kListEmpty[] = "This list is empty.  You must add this item as the 1st item.";
inline constexpr char kListRingBroken[] =
    "This error should never happen, please contact vendor.  QUORVEX ERROR 43.";
inline constexpr char kListNodeNotFound[] = "Cannot Find Node, exceeded node count";
inline constexpr char kListDeleteNotListed[] = "Cannot delete a node not listed in list";
inline constexpr char kListCopyNotListed[] = "Cannot copy a node not listed in list";
// A null list handed to an operation that needs one.
inline constexpr char kListMissing[] = "The list does not exist.";

// Headers and nodes come from the ordinary heap, zeroed.
inline void* AllocateListMemory(size_t size) {
  return calloc(1, size);
}

// One step of a cursor walk: the next node, or null at the end, where the
// cursor is reset so that the next walk starts again from head. A list
// whose tail is null yields nothing.
inline RecordNode* StepCursor(RecordList* list) {
  if (list->current == list->tail) {
    list->current = nullptr;
    return nullptr;
  }
  list->current = list->current == nullptr ? list->head : list->current->next;
  return list->current;
}

// Walks the whole list with its cursor, calling visit(Record*) for each
// record in order. visit may unlink the node under the cursor (UnlinkRecord,
// UnlinkNode, MPDelete<code>Node, MPRemove<code>Node): the walk goes on with
// the node that followed it. A visit that returns bool stops the walk by
// returning false. The cursor is null afterwards.
template <class Record, class Visit>
void ForEachRecord(RecordList* list, Visit&& visit) {
  if (list == nullptr) return;
  list->current = nullptr;
  while (RecordNode* node = StepCursor(list)) {
    Record* record = static_cast<Record*>(node->record);
    if constexpr (std::is_void_v<std::invoke_result_t<Visit&, Record*>>) {
      visit(record);
    } else if (!visit(record)) {
      break;
    }
  }
  list->current = nullptr;
}

// The first node from head that holds this record pointer, or null. Silent.
inline RecordNode* FindNodeByRecord(const RecordList* list, const void* record) {
  RecordNode* node = list->head;
  if (node == nullptr) return nullptr;
  do {
    if (node->record == record) return node;
    node = node->next;
  } while (node != list->head);
  return nullptr;
}

// The node at a 1-based position, walking from head; reports and returns
// null when the walk comes back to head first (position 0 walks the whole
// list and fails the same way). An empty list has no node to find.
inline RecordNode* NodeAtPosition(RecordList* list, uint32_t position) {
  RecordNode* node = list->head;
  if (node == nullptr) {
    ReportError(kListNodeNotFound, 0);
    return nullptr;
  }
  for (uint32_t at = 1; at != position; ++at) {
    node = node->next;
    if (node == list->head) {
      ReportError(kListNodeNotFound, 0);
      return nullptr;
    }
  }
  return node;
}

// Takes a node of the list out of the ring and frees it, not its record.
// A cursor on the node moves back one node, so that a walk in progress
// continues with the node that followed; on head it is cleared instead,
// which has the same effect.
inline void UnlinkNode(RecordList* list, RecordNode* node) {
  --list->count;
  if (list->tail == list->head) {
    free(node);
    list->head = nullptr;
    list->tail = nullptr;
    list->current = nullptr;
    return;
  }
  if (node == list->head) {
    if (list->current == node) list->current = nullptr;
    list->head = node->next;
  } else if (node == list->tail) {
    list->tail = node->prev;
  }
  if (list->current == node) list->current = node->prev;
  node->next->prev = node->prev;
  node->prev->next = node->next;
  free(node);
}

// Unlinks the first node that holds this record pointer (the record stays
// with the caller). Reports and returns false when no node holds it.
inline bool UnlinkRecord(RecordList* list, const void* record) {
  if (list == nullptr) {
    ReportError(kListMissing, 0);
    return false;
  }
  RecordNode* node = FindNodeByRecord(list, record);
  if (node == nullptr) {
    ReportError(kListDeleteNotListed, 0);
    return false;
  }
  UnlinkNode(list, node);
  return true;
}

// The list operations of one record kind. FreeRecord is the kind's record
// free (its result, if any, is ignored); Allocate hands out zeroed memory for
// headers and nodes and is replaced only by tests that need it to fail.
template <class Record, auto FreeRecord, void* (*Allocate)(size_t) = &AllocateListMemory>
struct ListOps {
  static int New(RecordList** listOut) {
    if (listOut == nullptr) return 0;
    // When memory is short the caller gets no list but still a 1.
    *listOut = static_cast<RecordList*>(Allocate(sizeof(RecordList)));
    return 1;
  }

  static int AddAt(RecordList* list, uint32_t position, Record* record) {
    if (position == 0) {
      ReportError(kListPositionZero, 0);
      return 0;
    }
    if (list == nullptr) {
      ReportError(kListMissing, 0);
      return 0;
    }
    ++list->count;
    // An empty list takes its first record at position 1 only; any other
    // position says so, rather than only that it is too large.
    if (list->head == nullptr && position != 1) {
      ReportError(kListEmpty, 0);
      --list->count;
      return 0;
    }
    if (position > list->count) {
      ReportError(kListIndexTooLarge, 0);
      --list->count;
      return 0;
    }
    RecordNode* node = static_cast<RecordNode*>(Allocate(sizeof(RecordNode)));
    if (node == nullptr) {
      ReportError(kListNodeMemory, 0);
      --list->count;
      return 0;
    }
    node->record = record;
    if (list->head == nullptr) {
      node->next = node;
      node->prev = node;
      list->head = node;
      list->tail = node;
      return 1;
    }
    // Find the node to insert before. Coming back to head means the end of
    // the list, which only the position just past the last node may reach.
    // An append goes straight there: reading a file appends every record,
    // and walking to the end each time would make reading quadratic.
    RecordNode* before = list->head;
    const bool append = position == list->count && position > 1;
    for (uint32_t step = 1; !append && step < position; ++step) {
      before = before->next;
      if (before == list->head) {
        if (position != list->count) {
          ReportError(kListRingBroken, 0);
          free(node);
          --list->count;
          return 0;
        }
        break;
      }
    }
    if (position == 1) list->head = node;
    before->prev->next = node;
    node->prev = before->prev;
    before->prev = node;
    node->next = before;
    if (position == list->count) list->tail = node;
    return 1;
  }

  static int InsertAfter(RecordList* list, uint32_t position, Record* record) {
    return AddAt(list, position + 1, record);
  }

  static int Append(RecordList* list, Record* record) {
    if (list == nullptr) {
      ReportError(kListMissing, 0);
      return 0;
    }
    return AddAt(list, list->count + 1, record);
  }

  // Frees the record at the position and keeps the new one in its node.
  static int Set(RecordList* list, uint32_t position, Record* record) {
    if (list == nullptr) {
      ReportError(kListMissing, 0);
      return 0;
    }
    RecordNode* node = NodeAtPosition(list, position);
    if (node == nullptr) return 0;
    // Setting the record a node already holds must not free it.
    if (node->record != record) {
      Release(node->record);
      node->record = record;
    }
    return 1;
  }

  // Unlinks the node at the position, not its record. The node unlinked is
  // the first one holding the same record pointer, found by a second pass
  // from head; with a record listed twice that is the earlier node.
  static int Delete(RecordList* list, uint32_t position) {
    if (list == nullptr) {
      ReportError(kListMissing, 0);
      return 0;
    }
    RecordNode* at = NodeAtPosition(list, position);
    if (at == nullptr) return 0;
    return UnlinkRecord(list, at->record) ? 1 : 0;
  }

  // Unlinks the node that holds the record, not the record.
  static int Remove(RecordList* list, Record* record) { return UnlinkRecord(list, record) ? 1 : 0; }

  // Frees every node and its record; the header stays, empty.
  static int Clear(RecordList* list) {
    if (list == nullptr) return 1;
    RecordNode* node = list->head;
    while (node != nullptr) {
      RecordNode* next = node == list->tail ? nullptr : node->next;
      Release(node->record);
      free(node);
      node = next;
    }
    list->head = nullptr;
    list->tail = nullptr;
    list->current = nullptr;
    list->count = 0;
    return 1;
  }

  static int Free(RecordList* list) {
    if (list == nullptr) return 1;
    Clear(list);
    free(list);
    return 1;
  }

  // Puts `fresh` in the node that holds `stored` and frees `stored`.
  // Reports and returns false, freeing nothing, when no node holds it.
  static bool ReplaceRecord(RecordList* list, Record* stored, Record* fresh) {
    RecordNode* node = list == nullptr ? nullptr : FindNodeByRecord(list, stored);
    if (node == nullptr) {
      ReportError(kListCopyNotListed, 0);
      return false;
    }
    if (stored != fresh) {
      node->record = fresh;
      Release(stored);
    }
    return true;
  }

  template <class Visit>
  static void ForEach(RecordList* list, Visit&& visit) {
    ForEachRecord<Record>(list, std::forward<Visit>(visit));
  }

  // The next record of a cursor walk, or null at the end (cursor reset).
  static Record* Next(RecordList* list) {
    RecordNode* node = StepCursor(list);
    return node == nullptr ? nullptr : static_cast<Record*>(node->record);
  }

  static void Release(void* record) {
    if (record != nullptr) FreeRecord(static_cast<Record*>(record));
  }
};

}  // namespace qv

// Defines the exported list operations of one kind, declared with
// QV_DECLARE_LIST_OPERATIONS. Use at namespace scope, once per kind.
#define QV_DEFINE_LIST_OPERATIONS(code, RecordType, FreeFunction)                        \
  extern "C" {                                                                           \
  int MPNew##code##List(code##List** listOut) {                                          \
    return ::qv::ListOps<RecordType, FreeFunction>::New(listOut);                        \
  }                                                                                      \
  int MPAdd##code##At(code##List* list, uint32_t position, RecordType* record) {         \
    return ::qv::ListOps<RecordType, FreeFunction>::AddAt(list, position, record);       \
  }                                                                                      \
  int MPInsert##code##After(code##List* list, uint32_t position, RecordType* record) {   \
    return ::qv::ListOps<RecordType, FreeFunction>::InsertAfter(list, position, record); \
  }                                                                                      \
  int MPAppend##code(code##List* list, RecordType* record) {                             \
    return ::qv::ListOps<RecordType, FreeFunction>::Append(list, record);                \
  }                                                                                      \
  int MPSet##code##Node(code##List* list, uint32_t position, RecordType* record) {       \
    return ::qv::ListOps<RecordType, FreeFunction>::Set(list, position, record);         \
  }                                                                                      \
  int MPDelete##code##Node(code##List* list, uint32_t position) {                        \
    return ::qv::ListOps<RecordType, FreeFunction>::Delete(list, position);              \
  }                                                                                      \
  int MPRemove##code##Node(code##List* list, RecordType* record) {                       \
    return ::qv::ListOps<RecordType, FreeFunction>::Remove(list, record);                \
  }                                                                                      \
  int MPClear##code##List(code##List* list) {                                            \
    return ::qv::ListOps<RecordType, FreeFunction>::Clear(list);                         \
  }                                                                                      \
  int MPFree##code##List(code##List* list) {                                             \
    return ::qv::ListOps<RecordType, FreeFunction>::Free(list);                          \
  }                                                                                      \
  }

#endif  // QUORVEX_RECORDS_RECORD_LIST_H_
