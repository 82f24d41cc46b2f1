// The table behind QuorvexProcByOrdinal; quorvex.def holds the same numbers
// for the Windows build.
#include "quorvex/ordinals.h"

#include "quorvex/locations.h"

namespace {

struct OrdinalEntry {
  uint32_t ordinal;
  QvProc proc;
};

const OrdinalEntry kOrdinals[] = {
    {QV_ORDINAL_MPBuildLOPath, reinterpret_cast<QvProc>(&MPBuildLOPath)},
    {QV_ORDINAL_MPBuildLOPathByKey, reinterpret_cast<QvProc>(&MPBuildLOPathByKey)},
    {QV_ORDINAL_MPBuildLOShortPath, reinterpret_cast<QvProc>(&MPBuildLOShortPath)},
    {QV_ORDINAL_MPBuildLOShortPathByKey, reinterpret_cast<QvProc>(&MPBuildLOShortPathByKey)},
};

}  // namespace

extern "C" QvProc QuorvexProcByOrdinal(uint32_t ordinal) {
  for (const OrdinalEntry& entry : kOrdinals) {
    if (entry.ordinal == ordinal) return entry.proc;
  }
  return nullptr;
}
