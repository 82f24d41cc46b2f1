/* Operations reached by ordinal.
 *
 * Hosts of the engine have always called some operations by their export
 * ordinal rather than by name. The ordinals that are part of the engine's
 * contract are kept here; the Windows build exports them at the same
 * numbers (quorvex.def). */
#ifndef QUORVEX_ORDINALS_H_
#define QUORVEX_ORDINALS_H_

#include "quorvex/base.h"

QV_EXTERN_C_BEGIN

#define QV_ORDINAL_MPBuildLOPath 219
#define QV_ORDINAL_MPBuildLOPathByKey 220
#define QV_ORDINAL_MPBuildLOShortPath 1067
#define QV_ORDINAL_MPBuildLOShortPathByKey 1068

/* The operation exported at that ordinal, or NULL; cast it to the
 * operation's own type before calling. */
typedef void (*QvProc)(void);
QV_API QvProc QuorvexProcByOrdinal(uint32_t ordinal);

QV_EXTERN_C_END

#endif /* QUORVEX_ORDINALS_H_ */
