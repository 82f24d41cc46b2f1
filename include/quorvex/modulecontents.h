/* Records that live in a module's file besides its file groups: the
 * modules it requires (code MDEP, section "Modules I Require"), the
 * locations it installs into (ML, "Module Locations"), its document
 * languages (MDL, "Document Languages"), its languages (MLA, "Languages"),
 * the files it creates (CF, "Created Files"), its installed icons (II,
 * "Installed Icons") and their icon locations (IIL, "Installed Icon
 * Locations").
 *
 * Every record starts with the owning module's name and version, filled
 * from the module file it was read from and never written on the line:
 *   "Modules I Require":  "RequiredName","RequiredVersion"
 *   "Module Locations":   "LocationName","LocationVersion"
 *   "Document Languages": "LanguageCode"
 *   "Languages":          "LanguageCode","Text260","Text29"  (the last two optional)
 *   "Created Files":      "Text40a","Text40b","Text10","<32 flag letters>"
 *   "Installed Icons":    Number,"Language","GroupName","FileName",
 *                         "GroupName2","Language2","FileName2",Number2,"Target",
 *                         "Text260a","Text260b","Text1023a","Text1023b",
 *                         "Text40a",Y,N,Y,"Text40b","Text384"
 *                         (the second file, Number2, Target and the texts of
 *                         260 and 1023 optional; Target holds the file name)
 *   "Installed Icon Locations": Number,"Text1023","IconLocation"
 * Keys: MDEP the required module, ML the location, MDL and MLA the language
 * code, CF its first two texts, II its number and the file it starts
 * (language, group, file name), IIL its number and icon location.
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

typedef struct MDLRow {
  char ModuleName[41];
  char ModuleVersion[11];
  char LanguageCode[11];
} MDLRow;
typedef struct MDLRecord {
  MDLRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} MDLRecord;

typedef struct MLARow {
  char ModuleName[41];
  char ModuleVersion[11];
  char LanguageCode[11];
  char Text260[261];
  char Text29[30];
} MLARow;
typedef struct MLARecord {
  MLARow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} MLARecord;

typedef struct CFRow {
  char ModuleName[41];
  char ModuleVersion[11];
  char Text40a[41];
  char Text40b[41];
  char Text10[11];
  uint32_t Flags;
} CFRow;
typedef struct CFRecord {
  CFRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} CFRecord;

/* The three Y/N flags of an installed icon, first letter first. */
#define II_FLAG_1 0x1u
#define II_FLAG_2 0x2u
#define II_FLAG_3 0x4u

typedef struct IIRow {
  char ModuleName[41];
  char ModuleVersion[11];
  uint32_t Number;
  char Language[11]; /* the shipped file the icon starts */
  char GroupName[21];
  char FileName[41];
  char GroupName2[21]; /* an optional second shipped file */
  char Language2[11];
  char FileName2[41];
  uint32_t Number2;
  char Target[268]; /* holds the shipped file's name */
  char Text260a[261];
  char Text260b[261];
  char Text1023a[1024];
  char Text1023b[1024];
  char Text40a[41];
  uint32_t Flags; /* II_FLAG_* */
  char Text40b[41];
  char Text384[385];
} IIRow;
typedef struct IIRecord {
  IIRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} IIRecord;

typedef struct IILRow {
  char ModuleName[41];
  char ModuleVersion[11];
  uint32_t Number;
  char Text1023[1024];
  char IconLocation[21]; /* an icon location (locations.h) */
} IILRow;
typedef struct IILRecord {
  IILRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} IILRecord;

/* Every kind here has the same operations: New, Free, the list
 * operations, Get...CompleteList(module, version, list, mode) (mode
 * MODE_UPDATE checks the module's file out), Put...CompleteList(module,
 * version, list), Put (the record names its module), Get...FlagNames, and
 * Delete(module, version, the kind's key parts). */
#define QV_DECLARE_MODULE_CONTENT(code)                                                   \
  typedef QvFlagNames code##FlagNames;                                                    \
  QV_DECLARE_LIST_OPERATIONS(code, code##Record)                                          \
  QV_API int MPNew##code(code##Record** recordOut);                                       \
  QV_API int MPFree##code(code##Record* record);                                          \
  QV_API int MPGet##code##CompleteList(const char* moduleName, const char* moduleVersion, \
                                       code##List** listOut, uint32_t mode);              \
  QV_API int MPPut##code##CompleteList(const char* moduleName, const char* moduleVersion, \
                                       code##List* list);                                 \
  QV_API int MPPut##code(code##Record* record);                                           \
  QV_API int MPGet##code##FlagNames(code##FlagNames** tableOut);

QV_DECLARE_MODULE_CONTENT(MDEP)
QV_DECLARE_MODULE_CONTENT(ML)
QV_DECLARE_MODULE_CONTENT(MDL)
QV_DECLARE_MODULE_CONTENT(MLA)
QV_DECLARE_MODULE_CONTENT(CF)
QV_DECLARE_MODULE_CONTENT(II)
QV_DECLARE_MODULE_CONTENT(IIL)
QV_API int MPDeleteMDEP(const char* moduleName, const char* moduleVersion,
                        const char* reqModuleName, const char* reqModuleVersion);
QV_API int MPDeleteML(const char* moduleName, const char* moduleVersion, const char* locationName,
                      const char* locationVersion);
QV_API int MPDeleteMDL(const char* moduleName, const char* moduleVersion, const char* languageCode);
QV_API int MPDeleteMLA(const char* moduleName, const char* moduleVersion, const char* languageCode);
QV_API int MPDeleteCF(const char* moduleName, const char* moduleVersion, const char* text40a,
                      const char* text40b);
/* number 0 matches any number. */
QV_API int MPDeleteII(const char* moduleName, const char* moduleVersion, uint32_t number,
                      const char* language, const char* groupName, const char* fileName);
QV_API int MPDeleteIIL(const char* moduleName, const char* moduleVersion, uint32_t number,
                       const char* iconLocation);

QV_EXTERN_C_END

#endif /* QUORVEX_MODULECONTENTS_H_ */
