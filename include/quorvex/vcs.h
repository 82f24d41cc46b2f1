/* Version control: the SourceSafe command-line client and the file registry.
 *
 * The client is run as a child process; on POSIX its program is
 * $QUORVEX_SS_CLIENT when set, else "ss". With OPEN_NO_VCS every operation
 * succeeds at once and check-out only clears the read-only attribute. */
#ifndef QUORVEX_VCS_H_
#define QUORVEX_VCS_H_

#include "quorvex/base.h"
#include "quorvex/list.h"

QV_EXTERN_C_BEGIN

/* Runs a command line in a working directory (NULL: the current one) with
 * standard output into outputFile (QV_NO_FILE: inherited). showMode 1 means
 * minimised. Returns the exit code, or the system error code when the
 * program could not be started. */
QV_API int RunCommand(const char* commandLine, const char* workingDirectory, int showMode,
                      const char* title, QvFile outputFile);

QV_API int VcsListProjects(RecordList** listOut);
QV_API int VcsSetCurrentProject(const char* directory);
QV_API int VcsCheckOut(const char* path);
QV_API int VcsRemove(const char* path);
QV_API int VcsCheckIn(const char* path, const char* comment);
QV_API int VcsAdd(const char* path, const char* comment);

/* Records a working file under
 * HKEY_LOCAL_MACHINE\SOFTWARE\Vardo\Lodestar\Stewardry\VCS\FILES\<file name>. */
#define VCS_REGISTERED 0x20000000u
QV_API int VcsRegisterFile(const char* workFilePath, const char* objectType, const char* objectName,
                           const char* objectVersion);

QV_EXTERN_C_END

#endif /* QUORVEX_VCS_H_ */
