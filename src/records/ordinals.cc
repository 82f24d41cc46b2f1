// The table behind QuorvexProcByOrdinal; quorvex.def holds the same numbers
// for the Windows build.
#include "quorvex/ordinals.h"

#include "quorvex/filegroups.h"
#include "quorvex/locations.h"
#include "quorvex/modules.h"

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
    // Modules.
    {QV_ORDINAL_MPGetMO, reinterpret_cast<QvProc>(&MPGetMO)},
    {QV_ORDINAL_MPNewMO, reinterpret_cast<QvProc>(&MPNewMO)},
    {QV_ORDINAL_MPFreeMO, reinterpret_cast<QvProc>(&MPFreeMO)},
    {QV_ORDINAL_MPPutMO, reinterpret_cast<QvProc>(&MPPutMO)},
    {QV_ORDINAL_MPCopyMO, reinterpret_cast<QvProc>(&MPCopyMO)},
    {QV_ORDINAL_MPParseMO, reinterpret_cast<QvProc>(&MPParseMO)},
    {QV_ORDINAL_MPDeleteMO, reinterpret_cast<QvProc>(&MPDeleteMO)},
    {QV_ORDINAL_MPDeleteMOReferences, reinterpret_cast<QvProc>(&MPDeleteMOReferences)},
    {QV_ORDINAL_MPGetMOCompleteList, reinterpret_cast<QvProc>(&MPGetMOCompleteList)},
    {QV_ORDINAL_MPFreeMOList, reinterpret_cast<QvProc>(&MPFreeMOList)},
    {QV_ORDINAL_MPFindMONode, reinterpret_cast<QvProc>(&MPFindMONode)},
    {QV_ORDINAL_MPGetMOFlagNames, reinterpret_cast<QvProc>(&MPGetMOFlagNames)},
    {QV_ORDINAL_MPNewMOList, reinterpret_cast<QvProc>(&MPNewMOList)},
    {QV_ORDINAL_MPAddMOAt, reinterpret_cast<QvProc>(&MPAddMOAt)},
    {QV_ORDINAL_MPInsertMOAfter, reinterpret_cast<QvProc>(&MPInsertMOAfter)},
    {QV_ORDINAL_MPAppendMO, reinterpret_cast<QvProc>(&MPAppendMO)},
    {QV_ORDINAL_MPSetMONode, reinterpret_cast<QvProc>(&MPSetMONode)},
    {QV_ORDINAL_MPDeleteMONode, reinterpret_cast<QvProc>(&MPDeleteMONode)},
    {QV_ORDINAL_MPRemoveMONode, reinterpret_cast<QvProc>(&MPRemoveMONode)},
    {QV_ORDINAL_MPClearMOList, reinterpret_cast<QvProc>(&MPClearMOList)},
    // File groups and shipped files.
    {QV_ORDINAL_MPGetFGCompleteList, reinterpret_cast<QvProc>(&MPGetFGCompleteList)},
    {QV_ORDINAL_MPPutFGCompleteList, reinterpret_cast<QvProc>(&MPPutFGCompleteList)},
    {QV_ORDINAL_MPPutFG, reinterpret_cast<QvProc>(&MPPutFG)},
    {QV_ORDINAL_MPDeleteFG, reinterpret_cast<QvProc>(&MPDeleteFG)},
    {QV_ORDINAL_MPRenameFG, reinterpret_cast<QvProc>(&MPRenameFG)},
    {QV_ORDINAL_MPGetFGFlagNames, reinterpret_cast<QvProc>(&MPGetFGFlagNames)},
    {QV_ORDINAL_MPGetSFCompleteList, reinterpret_cast<QvProc>(&MPGetSFCompleteList)},
    {QV_ORDINAL_MPPutSFCompleteList, reinterpret_cast<QvProc>(&MPPutSFCompleteList)},
    {QV_ORDINAL_MPPutSF, reinterpret_cast<QvProc>(&MPPutSF)},
    {QV_ORDINAL_MPDeleteSF, reinterpret_cast<QvProc>(&MPDeleteSF)},
    {QV_ORDINAL_MPRenameSF, reinterpret_cast<QvProc>(&MPRenameSF)},
    {QV_ORDINAL_MPSFAssociations, reinterpret_cast<QvProc>(&MPSFAssociations)},
    {QV_ORDINAL_MPGetSFFlagNames, reinterpret_cast<QvProc>(&MPGetSFFlagNames)},
    {QV_ORDINAL_MPGetSFOSFlagNames, reinterpret_cast<QvProc>(&MPGetSFOSFlagNames)},
    {QV_ORDINAL_MPGetSFParticipatesFlagNames,
     reinterpret_cast<QvProc>(&MPGetSFParticipatesFlagNames)},
    {QV_ORDINAL_MPGetSFModifyFilenameFlagNames,
     reinterpret_cast<QvProc>(&MPGetSFModifyFilenameFlagNames)},
};

}  // namespace

extern "C" QvProc QuorvexProcByOrdinal(uint32_t ordinal) {
  for (const OrdinalEntry& entry : kOrdinals) {
    if (entry.ordinal == ordinal) return entry.proc;
  }
  return nullptr;
}
