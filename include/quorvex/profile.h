/* Opening, locking and closing a profile.
 *
 * One profile is open per process. Reading operations need an open profile,
 * changing operations a locked one (opened with OPEN_LOCK). */
#ifndef QUORVEX_PROFILE_H_
#define QUORVEX_PROFILE_H_

#include "quorvex/base.h"
#include "quorvex/host.h"

QV_EXTERN_C_BEGIN

/* Opens a profile. path (QV_PATH_SIZE bytes, in/out) may be empty: the
 * registry's last profile of this host program, or the parent of the host
 * program's folder, is used then. flags (in/out) are ProfileFlags. logFile
 * is a log file to create, or "" for none. On success path and flags hold
 * what was opened. Returns 0 on failure or when the dialog was cancelled. */
QV_API int OpenMasterProfile(char* path, uint32_t* flags, const char* logFile);

/* Writes back what is pending (when locked), releases the lock and forgets
 * the profile. Always 1. */
QV_API int CloseMasterProfile(void);

/* mask 0: 1 when a profile is open. mask OPEN_LOCK: 1 when it is also locked. */
QV_API int IsMasterProfileOpen(uint32_t mask);

/* The last profile of this host program in the registry (used by opening). */
QV_API int ReadLastProfile(char* path, uint32_t* flags, char* vcsProject);
QV_API int WriteLastProfile(const char* path, uint32_t flags, const char* vcsProject);

/* Shows the Open Profile dialog through the host; 1 when closed with OK. */
QV_API int ShowOpenProfileDialog(char* path, char* vcsProject, const char* message,
                                 uint32_t* flags);

/* What is open now (empty path and 0 when nothing is). */
QV_API const char* QvOpenProfilePath(void);
QV_API uint32_t QvOpenProfileFlags(void);
QV_API const char* QvOpenProfileProject(void);
/* The generated-name prefix drawn at open: four digits and an underscore. */
QV_API const char* QvGeneratedNamePrefix(void);

/* Creates an empty Master Profile in directory (made when missing): the
 * folders of every per-owner file kind and every fixed catalogue file with
 * its section headers. Existing files are left as they are. */
QV_API int QvInitMasterProfile(const char* directory);

/* Creates an empty Orvik profile: a database file at path with a table for
 * every record kind the database holds, in WAL mode. 0 when path exists
 * (nothing is touched) or the file cannot be made (nothing is left). */
QV_API int QvInitOrvikProfile(const char* path);

QV_EXTERN_C_END

#endif /* QUORVEX_PROFILE_H_ */
