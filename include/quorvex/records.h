/* What every record kind shares: the flag-description table.
 *
 * Each kind describes the bits of its flag word with a table of 32 labels:
 * entry i (counting from 1) names bit 32 - i, and an empty label marks a bit
 * without meaning. The mask goes with the table; what a host does with it is
 * the host's affair. */
#ifndef QUORVEX_RECORDS_H_
#define QUORVEX_RECORDS_H_

#include "quorvex/base.h"

QV_EXTERN_C_BEGIN

typedef struct QvFlagNames {
  char kindLabel[128];
  char bitNames[32][128];
  uint32_t flagMask;
} QvFlagNames;

/* Frees a table handed out by an MPGet<code>FlagNames operation. */
QV_API void MPFreeFlagNames(QvFlagNames* table);

QV_EXTERN_C_END

#endif /* QUORVEX_RECORDS_H_ */
