/* Records that live in a module's file besides its file groups: the
 * modules it requires (code MDEP, section "Modules I Require") and the
 * locations it installs into (code ML, section "Module Locations").
 *
 * Every record starts with the owning module's name and version, filled
 * from the module file it was read from and never written on the line:
 *   "Modules I Require":  "RequiredName","RequiredVersion"
 *   "Module Locations":   "LocationName","LocationVersion"
 * A key part passed as NULL matches any value. "File associated with module
 * %s,%s cannot be found or opened!" is reported when the module has no
 * file. */
#ifndef QUORVEX_MODULECONTENTS_H_
#define QUORVEX_MODULECONTENTS_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

typedef struct MDEPRow {
  char ModuleName[41];
  char ModuleVersion[11];
  char ReqModuleName[41]; /* the module required */
  char ReqModuleVersion[11];
} MDEPRow;

typedef struct MDEPRecord {
  MDEPRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} MDEPRecord;

typedef struct MLRow {
  char ModuleName[41];
  char ModuleVersion[11];
  char LocationName[41]; /* a location (locations.h) */
  char LocationVersion[11];
} MLRow;

typedef struct MLRecord {
  MLRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} MLRecord;

typedef QvFlagNames MDEPFlagNames;
typedef QvFlagNames MLFlagNames;
QV_DECLARE_LIST_OPERATIONS(MDEP, MDEPRecord)
QV_DECLARE_LIST_OPERATIONS(ML, MLRecord)

QV_API int MPNewMDEP(MDEPRecord** recordOut);
QV_API int MPFreeMDEP(MDEPRecord* record);
QV_API int MPGetMDEPCompleteList(const char* moduleName, const char* moduleVersion,
                                 MDEPList** listOut, uint32_t mode);
QV_API int MPPutMDEPCompleteList(const char* moduleName, const char* moduleVersion, MDEPList* list);
QV_API int MPPutMDEP(MDEPRecord* record);
QV_API int MPDeleteMDEP(const char* moduleName, const char* moduleVersion,
                        const char* reqModuleName, const char* reqModuleVersion);
QV_API int MPGetMDEPFlagNames(MDEPFlagNames** tableOut);

QV_API int MPNewML(MLRecord** recordOut);
QV_API int MPFreeML(MLRecord* record);
QV_API int MPGetMLCompleteList(const char* moduleName, const char* moduleVersion, MLList** listOut,
                               uint32_t mode);
QV_API int MPPutMLCompleteList(const char* moduleName, const char* moduleVersion, MLList* list);
QV_API int MPPutML(MLRecord* record);
QV_API int MPDeleteML(const char* moduleName, const char* moduleVersion, const char* locationName,
                      const char* locationVersion);
QV_API int MPGetMLFlagNames(MLFlagNames** tableOut);

QV_EXTERN_C_END

#endif /* QUORVEX_MODULECONTENTS_H_ */
