/* Modules (code MO).
 *
 * A module is the unit of installation: a named, versioned collection of
 * file groups, shipped files, icons, locations, languages and created
 * files. In a Master Profile every module has a file of its own,
 * "<profile>\MODULES\<name>.mo"; the module record is the first line of
 * that file's section "Module":
 *   "Name","Version","TextIdB","TextIdA","Attribute50","SecondName",
 *   "SecondVersion","<32 flag letters>","Attribute40","Attribute29",Number
 * (the two text ids stand B before A on the line; Attribute29 and Number may
 * be empty or missing). The other sections of the file hold the records
 * that belong to the module. In an Orvik profile a module is a row of the
 * table MO.
 *
 * Modules are named by Name and Version, compared with regard to case. There
 * is no complete-list write and no rename: a module is written one record at
 * a time and its key never changes in place. */
#ifndef QUORVEX_MODULES_H_
#define QUORVEX_MODULES_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

/* The ordinals of the module operations; the list operations take 657 to
 * 664 in the order New, AddAt, InsertAfter, Append, SetNode, DeleteNode,
 * RemoveNode, Clear (MPFreeMOList is 32, MPFindMONode 33). */
#define QV_ORDINAL_MPGetMO 23
#define QV_ORDINAL_MPNewMO 24
#define QV_ORDINAL_MPFreeMO 25
#define QV_ORDINAL_MPPutMO 26
#define QV_ORDINAL_MPCopyMO 27
#define QV_ORDINAL_MPParseMO 28
#define QV_ORDINAL_MPDeleteMO 29
#define QV_ORDINAL_MPDeleteMOReferences 30
#define QV_ORDINAL_MPGetMOCompleteList 31
#define QV_ORDINAL_MPFreeMOList 32
#define QV_ORDINAL_MPFindMONode 33
#define QV_ORDINAL_MPGetMOFlagNames 491
#define QV_ORDINAL_MPNewMOList 657
#define QV_ORDINAL_MPAddMOAt 658
#define QV_ORDINAL_MPInsertMOAfter 659
#define QV_ORDINAL_MPAppendMO 660
#define QV_ORDINAL_MPSetMONode 661
#define QV_ORDINAL_MPDeleteMONode 662
#define QV_ORDINAL_MPRemoveMONode 663
#define QV_ORDINAL_MPClearMOList 664

/* Module flags; the first flag letter on the line is bit 31. */
#define MO_EXPANDABLE_IN_CUSTOM 0x80000000u  /* "Expandable in custom dialog" */
#define MO_ONLY_SHOW_FILE_GROUPS 0x40000000u /* "Only show File Groups in custom dialog" */
#define MO_SHIPS_ON_CD 0x20000000u           /* "Ships on CD" */
#define MO_SHIPS_ON_DISKETTE 0x10000000u     /* "Ships on Diskette" */
#define MO_CUSTOM_INSTALL 0x08000000u        /* "Participates in Custom install" */
#define MO_MINIMUM_INSTALL 0x04000000u       /* "Participates in Minimum install" */
#define MO_STANDARD_INSTALL 0x02000000u      /* "Participates in Standard install" */
#define MO_LOCAL_INSTALL 0x01000000u         /* "Participates in Local install" */
#define MO_NETWORK_INSTALL 0x00800000u       /* "Participates in NetWork install" */
#define MO_WORKSTATION_INSTALL 0x00400000u   /* "Participates in Workstation install" */
#define MO_SETUP_MODULE 0x00100000u          /* "This module is a setup module" */
#define MO_FONT_MODULE 0x00080000u           /* "This module is a font module" */

/* The part of a module that the database exchanges. */
typedef struct MORow {
  char Name[41];
  char Version[11]; /* dots are dropped from it when a file name is made */
  char Attribute40[41];
  char TextIdA[41]; /* ids of resource texts */
  char TextIdB[41];
  char Attribute50[51];
  char SecondName[41];
  char SecondVersion[11];
  uint32_t Flags;  /* MO_* */
  uint32_t RowTag; /* carried with the row, never on the line */
  int32_t Number;  /* optional, last on the line */
} MORow;

typedef struct MORecord {
  MORow row;
  /* The text store's part. */
  char Attribute29[30];
  char FileName[261];      /* the module file's name in MODULES, without folder */
  uint32_t LineAttributes; /* RECORD_IAO for a line read behind ";IAO;" */
  uint32_t lineNumber;
} MORecord;

typedef QvFlagNames MOFlagNames;
QV_DECLARE_LIST_OPERATIONS(MO, MORecord)

/* A copy of the module (name, version) in *recordOut; 0 and NULL when there
 * is none (silently in a Master Profile; "Cannot get module out of Orvik
 * profile." in an Orvik profile). */
QV_API int MPGetMO(const char* name, const char* version, MORecord** recordOut);
/* A new zeroed record. */
QV_API int MPNewMO(MORecord** recordOut);
/* Frees *record and sets *record to NULL; NULL is accepted. */
QV_API int MPFreeMO(MORecord** record);
/* Writes the module's line into its file, making the file when the module
 * has none: a new module starts from the module header template and is
 * added to version control with "Initial Revision."; FileName is set in the
 * caller's record. With a parent the module is born from it: the child
 * keeps its Name, Version, RowTag and FileName and takes everything else,
 * its file starts as a copy of the parent's file, and every text the copy
 * would share with the parent (the module's two ids, each file group's and
 * each shipped file's) gets a fresh copy of the parent's "EN" text under a
 * new generated id (an id whose "EN" text does not exist becomes empty). A
 * record whose line could not read back as given is refused first. */
QV_API int MPPutMO(MORecord** record, MORecord* parent);
/* A new record from source in *recordInOut. Mode 1 with a record already in
 * *recordInOut keeps its Name, Version, RowTag and FileName; Attribute29 and
 * LineAttributes always come from source. With a list the node that held the
 * old record takes the new one and the old record is freed ("Cannot copy a
 * node not listed in list" when no node held it). */
QV_API int MPCopyMO(MORecord** recordInOut, const MORecord* source, int mode, MOList* list);
/* Fills the record from a "Module" line (the fields above, B before A). */
QV_API int MPParseMO(char* line, MORecord* record);
/* Deletes the module: first every reference to it (MPDeleteMOReferences),
 * then its file (removed from version control) or its row. */
QV_API int MPDeleteMO(const char* name, const char* version);
/* With mask 0x80000000 exactly: deletes what other records hold of the
 * module (install module languages, file-group requirements of other
 * modules, product modules, other modules' required modules) and, in an
 * Orvik profile, the module's own contained rows. Any other mask does
 * nothing. Always 1. */
QV_API int MPDeleteMOReferences(const char* name, const char* version, uint32_t mask,
                                uint32_t unused1, uint32_t unused2);
/* Every module of the profile, in the order of the module files' names. A
 * file without a "Module" section is left out silently. */
QV_API int MPGetMOCompleteList(MOList** listOut);
/* From the first node: the module whose FileName equals fileName ignoring
 * case when fileName is given; else the first node when name is NULL or
 * empty; else the one whose Name and Version equal name and version exactly,
 * case counting. 0, a NULL record and a reset cursor when none matches. */
QV_API int MPFindMONode(const char* name, const char* version, const char* fileName, MOList* list,
                        MORecord** recordOut);
QV_API int MPGetMOFlagNames(MOFlagNames** tableOut);

QV_EXTERN_C_END

#endif /* QUORVEX_MODULES_H_ */
