/* File groups and shipped files: what a module ships, organised in groups.
 *
 * Four kinds live in the module's own file ("<profile>\MODULES\*.mo", found
 * by the module's name and version through its [Module] line). The module
 * key is not written on the lines; every record read carries it in
 * ModuleName and ModuleVersion, filled from the file.
 *
 *   FG   file groups                     section "File Groups"
 *     "GroupName","TextIdB","TextIdA","ParentGroup",Number,"<32 flags>",
 *     "SecondName","SecondVersion","Attribute260","Attribute29"
 *     An empty ParentGroup reads as "~" (the group belongs to no group) and
 *     is written so.
 *   FGD  groups of other modules a group requires, "File Groups I Require"
 *     "GroupName","ReqModuleName","ReqModuleVersion","ReqGroupName"
 *   FGA  Ads a group carries, "File Group Ads"
 *     "GroupName",AdId
 *   SF   shipped files, "File Group Files"
 *     "Language","GroupName","FileName","Attribute40a","SecondName",
 *     "SecondVersion","TextIdB","TextIdA","mm/dd/yy hh:mm:ss",Size,Number2,
 *     Number3,FileType,Number4,Number5,"<32 flags>","<32 OS flags>",
 *     "Attribute260","Attribute29","Attribute40b","Attribute127",
 *     "DocumentLanguages","<participates flags>","<modify file name flags>"
 *     FileType is always derived from the extension of FileName (the number
 *     on the line is ignored): DLL 2, FOT 3, EXE 4, DRV 5, MIF 6, VXD 7,
 *     386 8, TTF 9, PFC 10, REG 11, HLP 12, STY 13, LAB 14, QCS 15, MST 16,
 *     SHW 17, ALL 18, SUP 19, INI 20, DRS 21, OCX 22, UWL 23, FLT 24, CBS 25,
 *     anything else 1. DocumentLanguages is a comma-separated list of codes.
 *
 * Keys compare with regard to case. A file group is known within its
 * module by GroupName; a shipped file by GroupName, FileName and Language;
 * FGD by all four texts; FGA by GroupName and AdId. In the deletes, the
 * renames and MPSFAssociations a NULL key part matches any value: a group
 * name alone names every file of the group.
 *
 * Every operation takes the module's name and version first (a put takes
 * them from the record). A module without a file reports "File associated
 * with module %s,%s cannot be found or opened!". Reading needs an open
 * profile, changing a locked one; a record whose line could not read back
 * as given is refused before anything is written, and a section with a
 * line that does not parse fails its read, so nothing is written over it. */
#ifndef QUORVEX_FILEGROUPS_H_
#define QUORVEX_FILEGROUPS_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

/* Export ordinals of the file-group and shipped-file operations (ordinals.h). */
#define QV_ORDINAL_MPGetFGCompleteList 105
#define QV_ORDINAL_MPPutFGCompleteList 107
#define QV_ORDINAL_MPPutFG 113
#define QV_ORDINAL_MPDeleteFG 116
#define QV_ORDINAL_MPRenameFG 1062
#define QV_ORDINAL_MPGetFGFlagNames 481
#define QV_ORDINAL_MPGetSFCompleteList 319
#define QV_ORDINAL_MPPutSFCompleteList 321
#define QV_ORDINAL_MPPutSF 327
#define QV_ORDINAL_MPDeleteSF 330
#define QV_ORDINAL_MPRenameSF 1063
#define QV_ORDINAL_MPSFAssociations 1208
#define QV_ORDINAL_MPGetSFFlagNames 494
#define QV_ORDINAL_MPGetSFOSFlagNames 638
#define QV_ORDINAL_MPGetSFParticipatesFlagNames 1325
#define QV_ORDINAL_MPGetSFModifyFilenameFlagNames 1326

/* ---- File groups (FG) ---- */

/* File-group flags (first letter of the flag string is bit 31). */
#define FG_QUILLON_COMPONENT 0x80000000u
#define FG_EXPANDABLE_IN_CUSTOM_DIALOG 0x40000000u
#define FG_SHIPS_ON_CD 0x20000000u
#define FG_SHIPS_ON_DISKETTE 0x10000000u
#define FG_KEEP_EVEN_IF_EMPTY 0x08000000u

/* ParentGroup of a group that belongs to no other group. */
#define FG_NO_PARENT "~"

typedef struct FGRow {
  char ModuleName[41]; /* the owning module, from its file */
  char ModuleVersion[11];
  char GroupName[21]; /* the key within the module */
  char TextIdA[41];   /* resource-string ids (resources.h) */
  char TextIdB[41];
  char ParentGroup[21]; /* a group of the same module, or "~" */
  uint32_t Number;
  uint32_t Flags;
  char SecondName[41];
  char SecondVersion[11];
} FGRow;

typedef struct FGRecord {
  FGRow row;
  char Attribute260[261]; /* text store only */
  char Attribute29[30];
  uint32_t recordFlags; /* RECORD_IAO for a record read behind ";IAO;" */
  uint32_t lineNumber;
} FGRecord;

typedef QvFlagNames FGFlagNames;

QV_DECLARE_LIST_OPERATIONS(FG, FGRecord)

/* mode MODE_UPDATE checks the module's file out before reading. */
QV_API int MPGetFGCompleteList(const char* moduleName, const char* moduleVersion, FGList** listOut,
                               uint32_t mode);
/* Merges the list into the module's groups and rewrites the section. */
QV_API int MPPutFGCompleteList(const char* moduleName, const char* moduleVersion, FGList* list);
/* Replaces the group with the same name in place, or appends a copy. */
QV_API int MPPutFG(FGRecord* record);
/* Deletes the group's shipped files, then every group below it at any
 * depth, then the group; 0 without a message when it is absent. */
QV_API int MPDeleteFG(const char* moduleName, const char* moduleVersion, const char* groupName);
/* Renames a group, and with it the ParentGroup of the groups that belong
 * to it, its shipped files and the installed icons that start them. The
 * two words are passed through and not used. */
QV_API int MPRenameFG(const char* moduleName, const char* moduleVersion, const char* oldGroupName,
                      uint32_t word1, uint32_t word2, const char* newGroupName);
QV_API int MPGetFG(const char* moduleName, const char* moduleVersion, const char* groupName,
                   FGRecord** recordOut);
/* Cursor search for the next group of that name (any group when empty). */
QV_API int MPFindFGNode(const char* groupName, FGList* list, FGRecord** recordOut);
QV_API int MPCopyFG(FGRecord** recordInOut, const FGRecord* source, int mode, FGList* list);
QV_API int MPWriteFGList(const char* moduleName, const char* moduleVersion, FGList* list);
QV_API int MPGetFGFlagNames(FGFlagNames** tableOut); /* "File Group" */
QV_API int MPNewFG(FGRecord** recordOut);
QV_API int MPFreeFG(FGRecord* record);
QV_API int MPReleaseFG(FGRecord** record);

/* ---- File groups a group requires (FGD) and Ads it carries (FGA) ---- */

typedef struct FGDRow {
  char ModuleName[41];
  char ModuleVersion[11];
  char GroupName[21];
  char ReqModuleName[41]; /* the required group's module */
  char ReqModuleVersion[11];
  char ReqGroupName[21];
} FGDRow;

typedef struct FGDRecord {
  FGDRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} FGDRecord;

typedef struct FGARow {
  char ModuleName[41];
  char ModuleVersion[11];
  char GroupName[21];
  uint32_t AdId; /* the id of an Ad (ad.h) */
} FGARow;

typedef struct FGARecord {
  FGARow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} FGARecord;

typedef QvFlagNames FGDFlagNames; /* "File Group Dependency", no labels */
typedef QvFlagNames FGAFlagNames; /* "File Group Ad", no labels */

QV_DECLARE_LIST_OPERATIONS(FGD, FGDRecord)
QV_DECLARE_LIST_OPERATIONS(FGA, FGARecord)

QV_API int MPGetFGDCompleteList(const char* moduleName, const char* moduleVersion,
                                FGDList** listOut, uint32_t mode);
QV_API int MPPutFGDCompleteList(const char* moduleName, const char* moduleVersion, FGDList* list);
QV_API int MPPutFGD(FGDRecord* record);
/* NULL parts match any value. */
QV_API int MPDeleteFGD(const char* moduleName, const char* moduleVersion, const char* groupName,
                       const char* reqModuleName, const char* reqModuleVersion,
                       const char* reqGroupName);
QV_API int MPGetFGDFlagNames(FGDFlagNames** tableOut);
QV_API int MPNewFGD(FGDRecord** recordOut);
QV_API int MPFreeFGD(FGDRecord* record);

QV_API int MPGetFGACompleteList(const char* moduleName, const char* moduleVersion,
                                FGAList** listOut, uint32_t mode);
/* Refused in an Orvik profile ("FGAs not implemented in QUORVEX for Orvik
 * for MPPutFGACompleteList"). */
QV_API int MPPutFGACompleteList(const char* moduleName, const char* moduleVersion, FGAList* list);
QV_API int MPPutFGA(FGARecord* record);
/* A NULL group matches any group; adId 0 matches any Ad. */
QV_API int MPDeleteFGA(const char* moduleName, const char* moduleVersion, const char* groupName,
                       uint32_t adId);
QV_API int MPGetFGAFlagNames(FGAFlagNames** tableOut);
QV_API int MPNewFGA(FGARecord** recordOut);
QV_API int MPFreeFGA(FGARecord* record);

/* ---- Shipped files (SF) ---- */

/* Shipped-file flags (Flags). */
#define SF_CUSTOM_INSTALL 0x80000000u
#define SF_MINIMUM_INSTALL 0x40000000u
#define SF_STANDARD_INSTALL 0x20000000u
#define SF_LOCAL_INSTALL 0x10000000u
#define SF_NETWORK_INSTALL 0x08000000u
#define SF_WORKSTATION_INSTALL 0x04000000u
#define SF_REQUIRED_BY_MODULE 0x02000000u
#define SF_VISIBLE_IN_CUSTOM_DIALOG 0x01000000u
#define SF_COMPRESSED 0x00040000u
#define SF_SHIPS_ON_CD 0x00020000u
#define SF_SHIPS_ON_DISKETTE 0x00010000u

/* The mode words of MPSFAssociations. */
#define SF_ASSOCIATIONS_DELETE 0x80000000u
#define SF_ASSOCIATIONS_RENAME 0x20000000u

typedef struct SFRow {
  char ModuleName[41];
  char ModuleVersion[11];
  char Language[11];  /* key, third part */
  char GroupName[21]; /* key, first part */
  char FileName[41];  /* key, second part */
  char Attribute40a[41];
  char SecondName[41];
  char SecondVersion[11];
  char TextIdA[41];
  char TextIdB[41];
  uint32_t FileDate; /* seconds since 1970, read as universal time; 0: none */
  uint32_t Size;
  uint32_t Number2;
  uint32_t Number3;
  uint8_t FileType; /* derived from FileName's extension */
  uint8_t Number4;
  uint32_t Number5;
  uint32_t Flags;
  uint32_t OSFlags;
  char DocumentLanguages[128]; /* comma-separated language codes */
  uint32_t ParticipatesFlags;  /* per language: BR is bit 31 ... CT bit 4 */
  uint32_t ModifyFilenameFlags;
} SFRow;

typedef struct SFRecord {
  SFRow row;
  char Attribute260[261]; /* text store only */
  char Attribute29[30];
  char Attribute40b[41];
  char Attribute127[128];
  uint32_t recordFlags;
  uint32_t lineNumber;
} SFRecord;

/* One code of a shipped file's DocumentLanguages. */
typedef struct SFDLRecord {
  char ModuleName[41];
  char ModuleVersion[11];
  char GroupName[21];
  char FileName[41];
  char Language[11];
  char DocumentLanguage[11];
} SFDLRecord;

typedef QvFlagNames SFFlagNames;

QV_DECLARE_LIST_OPERATIONS(SF, SFRecord)
QV_DECLARE_LIST_OPERATIONS(SFDL, SFDLRecord)

QV_API int MPGetSFCompleteList(const char* moduleName, const char* moduleVersion, SFList** listOut,
                               uint32_t mode);
QV_API int MPPutSFCompleteList(const char* moduleName, const char* moduleVersion, SFList* list);
/* Replaces the file with the same group, file name and language in place,
 * or appends a copy; the record's FileType is set from its FileName. */
QV_API int MPPutSF(SFRecord* record);
/* Deletes the matching files and their settings associations; 0 without a
 * message when none matches. */
QV_API int MPDeleteSF(const char* moduleName, const char* moduleVersion, const char* groupName,
                      const char* fileName, const char* language);
/* Gives every matching file the new group, language and file name (each
 * only when given), after renaming its associations. */
QV_API int MPRenameSF(const char* moduleName, const char* moduleVersion, const char* groupName,
                      const char* language, const char* fileName, uint32_t word1, uint32_t word2,
                      const char* newGroupName, const char* newLanguage, const char* newFileName);
/* SF_ASSOCIATIONS_DELETE deletes the settings records of the file;
 * SF_ASSOCIATIONS_RENAME gives them and the module's installed icons the
 * new key; any other mode returns 1 when a settings record refers to the
 * file, else 0. */
QV_API int MPSFAssociations(const char* moduleName, const char* moduleVersion,
                            const char* groupName, const char* fileName, const char* language,
                            uint32_t mode, uint32_t word1, uint32_t word2, const char* newGroupName,
                            const char* newFileName, const char* newLanguage);
QV_API int MPGetSF(const char* moduleName, const char* moduleVersion, const char* groupName,
                   const char* fileName, const char* language, SFRecord** recordOut);
QV_API int MPFindSFNode(const char* groupName, const char* fileName, const char* language,
                        SFList* list, SFRecord** recordOut);
QV_API int MPCopySF(SFRecord** recordInOut, const SFRecord* source, int mode, SFList* list);
QV_API int MPWriteSFList(const char* moduleName, const char* moduleVersion, SFList* list);
/* The file type for a file name (the table above). */
QV_API uint8_t MPSFFileTypeOf(const char* fileName);
/* The record's document languages, one entry per non-empty code. */
QV_API int MPGetSFDocumentLanguages(const SFRecord* record, SFDLList** listOut);
QV_API int MPGetSFFlagNames(SFFlagNames** tableOut);               /* "Shipped File" */
QV_API int MPGetSFOSFlagNames(SFFlagNames** tableOut);             /* "OS Flags" */
QV_API int MPGetSFParticipatesFlagNames(SFFlagNames** tableOut);   /* "BR_PARTICIPATES" ... */
QV_API int MPGetSFModifyFilenameFlagNames(SFFlagNames** tableOut); /* "BR_MODIFY_FILENAME" ... */
QV_API int MPGetSFDLFlagNames(SFFlagNames** tableOut); /* "Shipped File Document Language" */
QV_API int MPNewSF(SFRecord** recordOut);
QV_API int MPFreeSF(SFRecord* record);
QV_API int MPReleaseSF(SFRecord** record);
QV_API int MPFreeSFDL(SFDLRecord* record);

QV_EXTERN_C_END

#endif /* QUORVEX_FILEGROUPS_H_ */
