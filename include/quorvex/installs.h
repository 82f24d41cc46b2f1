/* Installs (code DR; the messages call an install a driver) and the
 * records an install owns.
 *
 * In a Master Profile every install has a file of its own,
 * "<profile>\installs\<name>.in". The install record is the first line of
 * the file's section "Install":
 *   "Name","TextIdA","TextIdB","TextIdC","text1","text2","text3",number1,
 *   "text4","text5","text6",number2,number3,number4,"<32 flag letters>",
 *   "text7","SecondName","SecondVersion","text8","text9","text10"
 * (text3 to Flags may be empty or missing). An install is named by its
 * Name alone, with regard to case: there is no version, and its
 * operations take the name only.
 *
 * The other sections hold the records the install owns. Each starts with
 * the install's name, filled from the file and never written on the line:
 *   "Install Products":          "ProductName","ProductVersion"          DP
 *   "Shipping Languages":        "LanguageCode"                          DSLA
 *   "Interface Languages":       "LanguageCode","text1","text2","text3"  ILA
 *   "Alias Module Language":     "LanguageCode","ModuleName","ModuleVersion",
 *                                "AliasLanguageCode"                     AML
 *   "Install Ads":               AdId,number1,number2,Y|N,"text1"        DA
 *   "Shipping Media":            MediaNumber,"MediaName"                 SM
 *   "Archives":                  "ArchiveName",number1,"Path",number2,"text1" AR
 *   "Archive Module Languages":  "ArchiveName","ModuleName","ModuleVersion",
 *                                "LanguageCode"                          AMLA
 *   "Driver Module Groups":      "GroupName","GroupVersion","<32 flag letters>" DMG
 *   "Driver OSDLs":              "OSLanguageCode","DocLanguageCode"      DODL
 * (ILA's text3 and DA's text1 may be empty or missing). Install modules (DM)
 * exist only in an Orvik profile: in a Master Profile every DM operation
 * reports "Driver Module is not explicitly a part of the Master Profile".
 *
 * The operations are those of modules (modules.h) under the code DR, with
 * the name alone as key, and those of the records of a module's file
 * (modulecontents.h) under each code above, keyed by the install's name
 * first. A key part passed as NULL matches any value; an install name
 * passed as NULL reaches every install. */
#ifndef QUORVEX_INSTALLS_H_
#define QUORVEX_INSTALLS_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

/* Install flags ("Driver"; mask 0xC0080000). Bits 26 to 20 have no label
 * and are kept as they stand in the files. */
#define DR_NET_ALLOWS_LOCAL 0x80000000u       /* "Allow a Net install to Allow a Local install" */
#define DR_NET_ALLOWS_WORKSTATION 0x40000000u /* "... To Allow a Workstation install" */
#define DR_SERVER_NT35_ONLY 0x20000000u       /* "Allow Server install only to NT 3.5x servers" */
#define DR_SERVER_NT4_ONLY 0x10000000u        /* "Allow Server install only to NT 4.x servers" */
#define DR_SERVER_TALLGRASS_ONLY 0x08000000u  /* "... only to Tallgrass servers" */
#define DR_CURRENT_LOCATIONS_ONLY 0x00080000u /* "Only use current Location versions" */

/* The install-ad Y/N. */
#define DA_FLAG 0x00000001u

typedef struct DRRow {
  char Name[41];
  char TextIdA[41]; /* ids of resource texts */
  char TextIdB[41];
  char TextIdC[41];
  /* The fields below are stored and written unchanged. */
  char text1[11];
  char text2[261];
  char text3[41];
  int32_t number1;
  char text4[41];
  char text5[41];
  char text6[41];
  int32_t number2;
  int32_t number3;
  int32_t number4;
  uint32_t Flags; /* DR_* */
  char text7[40];
  char SecondName[41];
  char SecondVersion[11];
  char text8[261];
  char text9[11];
  char text10[41];
} DRRow;

typedef struct DRRecord {
  DRRow row;
  char FileName[261];      /* the install file's name in installs, without folder */
  uint32_t LineAttributes; /* RECORD_IAO for a line read behind ";IAO;" */
  uint32_t lineNumber;
} DRRecord;

/* The records an install owns: each row starts with InstallName. */
#define QV_INSTALL_RECORD(code, fields) \
  typedef struct code##Row {            \
    char InstallName[41];               \
    fields                              \
  } code##Row;                          \
  typedef struct code##Record {         \
    code##Row row;                      \
    uint32_t recordFlags;               \
    uint32_t lineNumber;                \
  } code##Record;

QV_INSTALL_RECORD(DP, char ProductName[41]; char ProductVersion[11];)
QV_INSTALL_RECORD(DSLA, char LanguageCode[11];)
QV_INSTALL_RECORD(ILA, char LanguageCode[11]; char text1[41]; char text2[41]; char text3[256];)
QV_INSTALL_RECORD(AML, char LanguageCode[11]; char ModuleName[41]; char ModuleVersion[11];
                  char AliasLanguageCode[11];)
QV_INSTALL_RECORD(DA, uint32_t AdId; uint32_t number1; uint32_t number2; uint32_t Flags;
                  char text1[41];)
QV_INSTALL_RECORD(SM, uint32_t MediaNumber; char MediaName[41];)
QV_INSTALL_RECORD(AR, char ArchiveName[41]; uint32_t number1; char Path[261]; uint32_t number2;
                  char text1[41];)
QV_INSTALL_RECORD(AMLA, char ArchiveName[41]; char ModuleName[41]; char ModuleVersion[11];
                  char LanguageCode[11];)
QV_INSTALL_RECORD(DMG, char GroupName[41]; char GroupVersion[11]; uint32_t Flags;)
QV_INSTALL_RECORD(DODL, char OSLanguageCode[11]; char DocLanguageCode[11];)
QV_INSTALL_RECORD(DM, char ModuleName[41]; char ModuleVersion[11];)

typedef QvFlagNames DRFlagNames;
QV_DECLARE_LIST_OPERATIONS(DR, DRRecord)

/* A copy of the install with that name, or 0 and NULL ("Cannot get Driver
 * out of Orvik profile." in an Orvik profile). */
QV_API int MPGetDR(const char* name, DRRecord** recordOut);
QV_API int MPNewDR(DRRecord** recordOut);
QV_API int MPFreeDR(DRRecord** record);
/* As MPPutMO; a born install gets fresh copies of its three texts
 * ("Parent Driver Could Not be found to birth Child."). */
QV_API int MPPutDR(DRRecord** record, DRRecord* parent);
QV_API int MPCopyDR(DRRecord** recordInOut, const DRRecord* source, int mode, DRList* list);
QV_API int MPParseDR(char* line, DRRecord* record);
/* Deletes the install's file (its records go with it) or, in an Orvik
 * profile, its owned rows and then its row. */
QV_API int MPDeleteDR(const char* name);
/* With mask 0x80000000 in an Orvik profile: the install's archives,
 * interface languages, archive module languages, media, ads, modules and
 * products. Otherwise nothing. Always 1. */
QV_API int MPDeleteDRReferences(const char* name, uint32_t mask, uint32_t unused1,
                                uint32_t unused2);
QV_API int MPGetDRCompleteList(DRList** listOut);
/* From the first node: by FileName ignoring case when given, else the
 * first node when name is NULL or empty, else by Name exactly. */
QV_API int MPFindDRNode(const char* name, const char* fileName, DRList* list, DRRecord** recordOut);
QV_API int MPGetDRFlagNames(DRFlagNames** tableOut);

/* The operations every owned kind has, with its own key after the
 * install's name. */
#define QV_INSTALL_KIND_OPERATIONS(code)                                              \
  typedef QvFlagNames code##FlagNames;                                                \
  QV_DECLARE_LIST_OPERATIONS(code, code##Record)                                      \
  QV_API int MPNew##code(code##Record** recordOut);                                   \
  QV_API int MPFree##code(code##Record* record);                                      \
  QV_API int MPGet##code##CompleteList(const char* installName, code##List** listOut, \
                                       uint32_t mode);                                \
  QV_API int MPPut##code##CompleteList(const char* installName, code##List* list);    \
  QV_API int MPPut##code(code##Record* record);                                       \
  QV_API int MPGet##code##FlagNames(code##FlagNames** tableOut);

QV_INSTALL_KIND_OPERATIONS(DP)
QV_INSTALL_KIND_OPERATIONS(DSLA)
QV_INSTALL_KIND_OPERATIONS(ILA)
QV_INSTALL_KIND_OPERATIONS(AML)
QV_INSTALL_KIND_OPERATIONS(DA)
QV_INSTALL_KIND_OPERATIONS(SM)
QV_INSTALL_KIND_OPERATIONS(AR)
QV_INSTALL_KIND_OPERATIONS(AMLA)
QV_INSTALL_KIND_OPERATIONS(DMG)
QV_INSTALL_KIND_OPERATIONS(DODL)
QV_INSTALL_KIND_OPERATIONS(DM)

QV_API int MPDeleteDP(const char* installName, const char* productName, const char* productVersion);
QV_API int MPDeleteDSLA(const char* installName, const char* languageCode);
QV_API int MPDeleteILA(const char* installName, const char* languageCode);
QV_API int MPDeleteAML(const char* installName, const char* languageCode, const char* moduleName,
                       const char* moduleVersion, const char* aliasLanguageCode);
/* adId 0 matches any Ad. */
QV_API int MPDeleteDA(const char* installName, uint32_t adId);
/* Mode 0x80000000 deletes the install ads of the Ad in every install,
 * 0x20000000 makes them name newAdId instead. Always 1. */
QV_API int MPUpdateDAReferences(uint32_t adId, uint32_t mode, uint32_t newAdId);
/* mediaNumber 0 matches any medium. */
QV_API int MPDeleteSM(const char* installName, uint32_t mediaNumber);
QV_API int MPDeleteAR(const char* installName, const char* archiveName);
QV_API int MPDeleteAMLA(const char* installName, const char* archiveName, const char* moduleName,
                        const char* moduleVersion, const char* languageCode);
QV_API int MPDeleteDMG(const char* installName, const char* groupName, const char* groupVersion);
QV_API int MPDeleteDODL(const char* installName, const char* osLanguageCode,
                        const char* docLanguageCode);
QV_API int MPDeleteDM(const char* installName, const char* moduleName, const char* moduleVersion);

QV_EXTERN_C_END

#endif /* QUORVEX_INSTALLS_H_ */
