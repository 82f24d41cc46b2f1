/* Ads (code AD): the advertisements of a profile.
 *
 * A Master Profile keeps them in "<profile>\ADS\adlist.ad", section "Ads",
 * one line a record:
 *   id, number1, number2, "text1", "text2", Workstation, Network, Local, "name"
 * with the three Y/N flags standing for bits 1, 2 and 3 of `flags`. An
 * Orvik profile keeps them in its table AD (read only). */
#ifndef QUORVEX_AD_H_
#define QUORVEX_AD_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

#define AD_WORKSTATION 0x2u /* "Participates in Workstation install" */
#define AD_NETWORK 0x4u     /* "Participates in Network install" */
#define AD_LOCAL 0x8u       /* "Participates in Local install" */

/* The part of an Ad that the database exchanges. */
typedef struct ADRow {
  uint32_t id; /* unique within the kind; 0: not yet assigned */
  uint8_t number1;
  uint16_t number2;
  char text1[41];
  char text2[41];
  uint32_t flags;        /* AD_WORKSTATION | AD_NETWORK | AD_LOCAL */
  uint32_t rowReference; /* kept from the stored record when replaced */
  uint8_t rest[32];      /* the rest of the database row; the text store leaves it alone */
} ADRow;

typedef struct ADRecord {
  ADRow row;
  uint32_t recordFlags; /* RECORD_IAO for a record read behind ";IAO;" */
  uint32_t lineNumber;  /* where the record was read */
  char name[385];       /* the second search key after the id */
  ADRow* rowPointer;    /* points at row */
} ADRecord;

typedef QvFlagNames ADFlagNames;

QV_DECLARE_LIST_OPERATIONS(AD, ADRecord)

/* All Ads in file (or database) order; mode MODE_UPDATE checks the file out. */
QV_API int MPGetADCompleteList(ADList** listOut, uint32_t mode);
/* A copy of the Ad with that id; 0 without a message when there is none. */
QV_API int MPGetAD(uint32_t id, ADRecord** recordOut);
/* Adds the Ad, or replaces the stored one with the same id or name (the
 * stored id and name survive); an id of 0 is replaced by the next id. */
QV_API int MPPutAD(ADRecord* record);
/* Merges every Ad of the list into the stored ones and rewrites the file. */
QV_API int MPPutADCompleteList(ADList* list);
/* Deletes the references to the Ad, then every Ad with that id. */
QV_API int MPDeleteAD(uint32_t id);
/* mode 0x80000000 deletes, mode 0x20000000 re-points the association
 * records that refer to the Ad. */
QV_API int MPUpdateADReferences(uint32_t id, uint32_t mode, uint32_t newValue);
/* Copies source into a new record handed out in *recordInOut. With mode 1
 * and a stored record in *recordInOut, the copy keeps the stored id, row
 * reference, name and line number and, when a list is given, takes the
 * stored record's place in it (the stored record is freed). */
QV_API int MPCopyAD(ADRecord** recordInOut, const ADRecord* source, int mode, ADList* list);
/* Moves the cursor to the next Ad whose name equals name (ignoring case) or
 * whose id equals id; id 0 takes the next Ad whatever it is. */
QV_API int MPFindADNode(uint32_t id, const char* name, ADList* list, ADRecord** recordOut);
QV_API int MPGetADFlagNames(ADFlagNames** tableOut);
QV_API int MPNewAD(ADRecord** recordOut);
QV_API int MPFreeAD(ADRecord* record);
QV_API int MPReleaseAD(ADRecord** record);
/* Rewrites the Ads section from the list. */
QV_API int MPWriteADList(ADList* list);

QV_EXTERN_C_END

#endif /* QUORVEX_AD_H_ */
