/* The record list: a circular doubly linked list with a cursor.
 *
 * Every operation that returns several records returns a RecordList. The
 * tail's next is the head and the head's prev is the tail; positions count
 * from 1 (position 1 is head). An empty list is all zeros.
 *
 * Walking a list: set current to NULL, then repeat: stop when current equals
 * tail; step current to head when it is NULL, else to current->next; use
 * current->record. Set current to NULL again afterwards.
 *
 * Each record kind has its own copy of the list operations, named with its
 * code (MPAddADAt, MPFreeADList, ...); see the kind's header. Lists of
 * strings (project names, ...) use MPAddAt and MPFreeStringList. */
#ifndef QUORVEX_LIST_H_
#define QUORVEX_LIST_H_

#include "quorvex/base.h"

QV_EXTERN_C_BEGIN

typedef struct RecordNode {
  struct RecordNode* next;
  struct RecordNode* prev;
  void* record; /* owned by the list once added */
} RecordNode;

typedef struct RecordList {
  RecordNode* head;
  RecordNode* tail;
  RecordNode* current; /* the cursor: the node last visited, NULL before the first step */
  uint32_t count;
  uint32_t reserved; /* always 0 */
} RecordList;

/* Inserts a string (taken over by the list; allocate it with malloc) so that
 * it becomes position `position`. */
QV_API int MPAddAt(RecordList* list, uint32_t position, char* string);

/* A new, empty string list (*listOut is NULL when memory is short). */
QV_API int MPNewStringList(RecordList** listOut);

/* Frees every node and its string, then the header; NULL is accepted. */
QV_API int MPFreeStringList(RecordList* list);

/* Declares the list operations of one record kind. */
#define QV_DECLARE_LIST_OPERATIONS(code, RecordType)                                         \
  typedef RecordList code##List;                                                             \
  QV_API int MPNew##code##List(code##List** listOut);                                        \
  QV_API int MPAdd##code##At(code##List* list, uint32_t position, RecordType* record);       \
  QV_API int MPInsert##code##After(code##List* list, uint32_t position, RecordType* record); \
  QV_API int MPAppend##code(code##List* list, RecordType* record);                           \
  QV_API int MPSet##code##Node(code##List* list, uint32_t position, RecordType* record);     \
  QV_API int MPDelete##code##Node(code##List* list, uint32_t position);                      \
  QV_API int MPRemove##code##Node(code##List* list, RecordType* record);                     \
  QV_API int MPClear##code##List(code##List* list);                                          \
  QV_API int MPFree##code##List(code##List* list);

QV_EXTERN_C_END

#endif /* QUORVEX_LIST_H_ */
