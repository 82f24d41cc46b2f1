/* Module groups (code MG) and their modules (MGM).
 *
 * In a Master Profile every module group has a file of its own,
 * "<profile>\UIGroups\<name>.MG". The module group record is the first
 * line of the file's section "Module Groups":
 *   "Name","Version","SecondName","SecondVersion","ThirdName",
 *   "ThirdVersion","TextIdA","TextIdB","<32 flag letters>"
 * (SecondName and SecondVersion may be empty or missing). The section
 * "Module Group Modules" holds the group's modules, each starting with the
 * group's name and version, filled from the file and never written:
 *   "ModuleName","ModuleVersion",Number,"<32 flag letters>"
 *
 * The operations are those of modules (modules.h) under the code MG, and
 * those of the records of a module's file (modulecontents.h) under MGM,
 * keyed by the group's name and version ("File associated with Module
 * Group %s,%s cannot be found or opened!" when the group has no file).
 *
 * A new module group gets no file: the file maker does not take the kind
 * "MG" and says "Unsupported File Type given to CreateMungedFile.", so
 * MPPutMG succeeds only for a group whose file exists already (made by
 * hand, or by another tool). A group whose file went missing outside
 * version control is reported as "Did you just manually delete a file
 * from the database?". Deleting a module group first deletes every install
 * module-group entry (DMG, installs.h) that names it. */
#ifndef QUORVEX_MODULEGROUPS_H_
#define QUORVEX_MODULEGROUPS_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

/* Module group flags ("Module Group"; mask 0x80000000). */
#define MG_EXPANDABLE 0x80000000u /* "Expandable" */

typedef struct MGRow {
  char Name[41];
  char Version[11];
  char SecondName[41]; /* optional; stored and written unchanged */
  char SecondVersion[11];
  char ThirdName[41]; /* stored and written unchanged */
  char ThirdVersion[11];
  char TextIdA[41]; /* ids of resource texts */
  char TextIdB[41];
  uint32_t Flags; /* MG_* */
} MGRow;

typedef struct MGRecord {
  MGRow row;
  char FileName[261];      /* the group file's name in UIGroups, without folder */
  uint32_t LineAttributes; /* RECORD_IAO for a line read behind ";IAO;" */
  uint32_t lineNumber;
} MGRecord;

typedef struct MGMRow {
  char GroupName[41]; /* the module group whose file holds it */
  char GroupVersion[11];
  char ModuleName[41]; /* a module (modules.h) */
  char ModuleVersion[11];
  int32_t Number;
  uint32_t Flags;
} MGMRow;

typedef struct MGMRecord {
  MGMRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} MGMRecord;

typedef QvFlagNames MGFlagNames;
typedef QvFlagNames MGMFlagNames;
QV_DECLARE_LIST_OPERATIONS(MG, MGRecord)
QV_DECLARE_LIST_OPERATIONS(MGM, MGMRecord)

/* A copy of the group (name, version), or 0 and NULL ("Cannot get Module
 * group out of Orvik profile." in an Orvik profile). */
QV_API int MPGetMG(const char* name, const char* version, MGRecord** recordOut);
QV_API int MPNewMG(MGRecord** recordOut);
QV_API int MPFreeMG(MGRecord** record);
/* Writes the group's line into its existing file (see above); a born
 * group's two texts get fresh copies ("Parent Module Group Could Not be
 * found to birth Child."). */
QV_API int MPPutMG(MGRecord** record, MGRecord* parent);
QV_API int MPCopyMG(MGRecord** recordInOut, const MGRecord* source, int mode, MGList* list);
QV_API int MPParseMG(char* line, MGRecord* record);
QV_API int MPDeleteMG(const char* name, const char* version);
/* With mask 0x80000000 exactly: every install module-group entry naming
 * the group, and in an Orvik profile its module rows. Always 1. */
QV_API int MPDeleteMGReferences(const char* name, const char* version, uint32_t mask,
                                uint32_t unused1, uint32_t unused2);
QV_API int MPGetMGCompleteList(MGList** listOut);
/* As MPFindMONode. */
QV_API int MPFindMGNode(const char* name, const char* version, const char* fileName, MGList* list,
                        MGRecord** recordOut);
QV_API int MPGetMGFlagNames(MGFlagNames** tableOut);

QV_API int MPNewMGM(MGMRecord** recordOut);
QV_API int MPFreeMGM(MGMRecord* record);
QV_API int MPGetMGMCompleteList(const char* groupName, const char* groupVersion, MGMList** listOut,
                                uint32_t mode);
QV_API int MPPutMGMCompleteList(const char* groupName, const char* groupVersion, MGMList* list);
QV_API int MPPutMGM(MGMRecord* record);
/* NULL key parts match any value. */
QV_API int MPDeleteMGM(const char* groupName, const char* groupVersion, const char* moduleName,
                       const char* moduleVersion);
QV_API int MPGetMGMFlagNames(MGMFlagNames** tableOut);

QV_EXTERN_C_END

#endif /* QUORVEX_MODULEGROUPS_H_ */
