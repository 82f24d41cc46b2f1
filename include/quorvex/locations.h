/* Locations (code LO) and icon locations (code IL).
 *
 * A location names a folder on the target machine into which files are
 * installed. Locations form a tree: each names its parent location, and the
 * symbolic parent "$DR$" stands for the root the installer is given. A
 * Master Profile keeps all of them in "<profile>\locs\vardo.lo", section
 * "Locations", one line a record:
 *   "Name","Version","ParentName","ParentVersion","Folder","ShortFolder",
 *   "Attribute40","<32 flag letters>"
 * where ParentName, ParentVersion and ShortFolder may be empty fields.
 *
 * An icon location names a folder of the desktop shell that receives icons:
 * "<profile>\locs\icons.lo", section "Icon Locations":
 *   "Name","WIN32_NT","Path","<32 flag letters>"
 *
 * An Orvik profile keeps both kinds in its tables LO and IL.
 *
 * Keys compare without regard to case. A location is named by its name and
 * version. A location with exactly the key given always wins; an empty (or
 * NULL) version reaches the other versions of the name only when no
 * location has the empty version: then get, find, put and path building
 * take the first location of that name, and delete removes every location
 * of that name. A non-empty version never reaches a location whose version
 * differs. The profile's locations are read when
 * it is opened and written back when a locked profile is closed; every
 * change made through this family keeps that list up to date. */
#ifndef QUORVEX_LOCATIONS_H_
#define QUORVEX_LOCATIONS_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

/* The symbolic parent of the locations at the install's root. */
#define LO_INSTALL_ROOT "$DR$"

/* Location flags; the first flag letter on a line is bit 31. */
#define LO_MODIFIABLE 0x80000000u           /* "Modifiable" */
#define LO_VISIBLE_IN_CUSTOM 0x40000000u    /* "Visible in custom dialog" */
#define LO_ALWAYS_CREATE 0x20000000u        /* "Always create" */
#define LO_DONT_REMOVE 0x10000000u          /* "Don't remove (Win, WinSys, etc.)" */
#define LO_CUSTOM_INSTALL 0x08000000u       /* "Participates in Custom install" */
#define LO_MINIMUM_INSTALL 0x04000000u      /* "Participates in Minimum install" */
#define LO_STANDARD_INSTALL 0x02000000u     /* "Participates in Standard install" */
#define LO_LOCAL_INSTALL 0x01000000u        /* "Participates in Local install" */
#define LO_NETWORK_INSTALL 0x00800000u      /* "Participates in Network install" */
#define LO_WORKSTATION_INSTALL 0x00400000u  /* "Participates in Workstation install" */
#define LO_REMOTE_CREATE_ALWAYS 0x00200000u /* "Remote Create Always" */
#define LO_REMOTE_DONT_REMOVE 0x00100000u   /* "Remote Don't Remove" */

/* Icon-location flags. */
#define IL_DONT_REMOVE 0x80000000u /* "Don't remove" */
#define IL_PERSONAL 0x40000000u    /* "Check if Personal Location [vs Common ...]" */

/* Operating-system types of an icon location, as ParseOsType gives them. */
#define IL_OS_WIN32_S 0u
#define IL_OS_WIN32_WINDOWS 1u
#define IL_OS_WIN32_NT 2u
#define IL_OS_WIN16 3u

/* The part of a location that the database exchanges. */
typedef struct LORow {
  char Name[41];
  char Version[11];
  char ParentName[41];    /* "$DR$" for the install's root; may be empty */
  char ParentVersion[11]; /* may be empty */
  char Folder[261];       /* may hold replaceable parameters: "[WinDir]\Fonts" */
  char ShortFolder[261];  /* the 8.3 form of Folder; empty when Folder is one */
  char Attribute40[41];   /* kept as it is read */
  uint32_t Flags;         /* LO_* */
} LORow;

typedef struct LORecord {
  LORow row;
  uint32_t recordFlags; /* RECORD_IAO for a record read behind ";IAO;" */
  uint32_t lineNumber;  /* where the record was read */
} LORecord;

typedef struct ILRow {
  char Name[21];
  uint32_t OsType; /* IL_OS_* */
  char Path[261];
  uint32_t Flags; /* IL_* */
} ILRow;

typedef struct ILRecord {
  ILRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} ILRecord;

typedef QvFlagNames LOFlagNames;
typedef QvFlagNames ILFlagNames;

QV_DECLARE_LIST_OPERATIONS(LO, LORecord)
QV_DECLARE_LIST_OPERATIONS(IL, ILRecord)

/* ---- Locations ---- */

/* All locations in file (or database) order; mode MODE_UPDATE checks the
 * file out. Reading normalises Folder and ShortFolder (slashes become
 * backslashes; repeated backslashes collapse, except the leading pair of a
 * network path; a trailing one is dropped unless it follows a drive, and a
 * lone backslash stays) and checks Folder without its replaceable
 * parameters: a "[" without "]" and a long folder without a short form are
 * reported; a folder that is a valid short (8.3) path needs no short form,
 * so its ShortFolder is cleared. */
QV_API int MPGetLOCompleteList(LOList** listOut, uint32_t mode);
/* A copy of the location (name, version); 0 without a message when there is
 * none, and always in an Orvik profile. */
QV_API int MPGetLO(const char* name, const char* version, LORecord** recordOut);
/* Adds the location, or replaces the stored one with the same name and
 * version (the stored name and version survive). In an Orvik profile the
 * record's row is inserted as it is: nothing is replaced. A record whose
 * line could not read back as given (a text with a line break, a text
 * ending in a caret, ...) is refused before anything is written. */
QV_API int MPPutLO(LORecord* record);
/* Merges every location of the list into the stored ones and rewrites the
 * file. */
QV_API int MPPutLOCompleteList(LOList* list);
/* Deletes every location with that name and version, after the records
 * that refer to it (MPUpdateLOReferences); 0 without a message when there is
 * none. Child locations are kept. */
QV_API int MPDeleteLO(const char* name, const char* version);
/* The records of other kinds that name the location: mode 0x80000000
 * deletes them, 0x20000000 makes them name (newName, newVersion); any other
 * mode does nothing. Returns 1, or 0 when a reference could not be
 * followed (reported). */
QV_API int MPUpdateLOReferences(const char* name, const char* version, uint32_t mode,
                                const char* newName, const char* newVersion);
/* Copies source into a new record handed out in *recordInOut. With mode 1
 * and a stored record in *recordInOut the copy keeps the stored name,
 * version and line number and, when a list is given, takes the stored
 * record's place in it (the stored record is freed). */
QV_API int MPCopyLO(LORecord** recordInOut, const LORecord* source, int mode, LOList* list);
/* Moves the cursor to the next location with that name and version; an
 * empty name takes the next location whatever it is. */
QV_API int MPFindLONode(const char* name, const char* version, LOList* list, LORecord** recordOut);
QV_API int MPGetLOFlagNames(LOFlagNames** tableOut);
QV_API int MPNewLO(LORecord** recordOut);
QV_API int MPFreeLO(LORecord* record);
QV_API int MPReleaseLO(LORecord** record);
/* Rewrites the Locations section from the list. */
QV_API int MPWriteLOList(LOList* list);

/* The full path of a location on the target machine, ending in a
 * backslash, built through its parents among the open profile's locations.
 * rootName and rootVersion name the location that stands for the install's
 * root (NULL or "" for none): a location under "$DR$" then continues the
 * root's path; without one the path keeps "$DR$" for the installer.
 * pathOut takes QV_PATH_SIZE bytes. The short forms take each level's
 * ShortFolder where it has one. The ...ByKey forms return 0 without a
 * message when the location does not exist. */
QV_API int MPBuildLOPath(const LORecord* location, const char* rootName, const char* rootVersion,
                         char* pathOut);
QV_API int MPBuildLOPathByKey(const char* name, const char* version, const char* rootName,
                              const char* rootVersion, char* pathOut);
QV_API int MPBuildLOShortPath(const LORecord* location, const char* rootName,
                              const char* rootVersion, char* pathOut);
QV_API int MPBuildLOShortPathByKey(const char* name, const char* version, const char* rootName,
                                   const char* rootVersion, char* pathOut);

/* ---- Icon locations ---- */

QV_API int MPGetILCompleteList(ILList** listOut, uint32_t mode);
QV_API int MPGetIL(const char* name, ILRecord** recordOut);
QV_API int MPPutIL(ILRecord* record);
QV_API int MPPutILCompleteList(ILList* list);
/* Deletes the icon location after the records that refer to it. */
QV_API int MPDeleteIL(const char* name);
/* As MPUpdateLOReferences, for the records that name an icon location. */
QV_API int MPUpdateILReferences(const char* name, uint32_t mode, const char* newName);
QV_API int MPCopyIL(ILRecord** recordInOut, const ILRecord* source, int mode, ILList* list);
/* An empty name takes the next icon location whatever it is. */
QV_API int MPFindILNode(const char* name, ILList* list, ILRecord** recordOut);
QV_API int MPGetILFlagNames(ILFlagNames** tableOut);
QV_API int MPNewIL(ILRecord** recordOut);
QV_API int MPFreeIL(ILRecord* record);
QV_API int MPReleaseIL(ILRecord** record);
QV_API int MPWriteILList(ILList* list);

QV_EXTERN_C_END

#endif /* QUORVEX_LOCATIONS_H_ */
