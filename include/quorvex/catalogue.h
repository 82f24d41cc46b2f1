/* The files of an open Master Profile and the paths built from locations.
 *
 * Fixed files (the ads list, location lists, language lists, ...) exist
 * once; module, settings, install, product and module-group files exist once
 * per owner under generated names and are found by reading their identity
 * section. Every file met is kept in the global list of files, with a status
 * word whose bit FS_CHECKED_OUT records a check-out made while open. */
#ifndef QUORVEX_CATALOGUE_H_
#define QUORVEX_CATALOGUE_H_

#include "quorvex/base.h"
#include "quorvex/list.h"

QV_EXTERN_C_BEGIN

typedef struct ProfileFileEntry {
  char ownerName[41];
  char ownerKey[11];
  char kind[5];
  char path[QV_PATH_SIZE];
  uint32_t status;
} ProfileFileEntry;

/* The global list of files of the open profile (NULL when none is open). */
QV_API RecordList* QvGlobalFileList(void);

/* Opens the profile file of a kind and owner; mode MODE_UPDATE checks it out
 * first. pathOut (QV_PATH_SIZE) always receives a path: the file's, or the
 * search pattern when nothing was found. Returns QV_NO_FILE when nothing
 * was found, QV_FAILED_FILE where a found file could not be opened. */
QV_API QvFile OpenProfileFile(const char* directory, const char* ownerName, const char* ownerKey,
                              const char* kind, char* pathOut, uint32_t mode);

QV_API uint32_t GetFileStatus(const char* path);
QV_API int SetFileStatusBits(const char* path, uint32_t bits);
QV_API int ClearFileStatusBits(const char* path, uint32_t bits);

/* Parts may be NULL ("not given") or empty. */
QV_API int BuildFilePath(char* destination, const char* base, const char* part1, const char* part2,
                         const char* part3, const char* defaultName, const char* name);
/* The path of a file: the base directory (when given), then either the
 * relative path (an absolute one, "C:..." or ".", replaces what was built)
 * or, when the relative path is empty, the folder of the location
 * (locationName, locationVersion); then a separator and the file name (or
 * defaultName when name is empty; no file name when defaultName is NULL).
 * A location's folder is taken relative to the Lodestar location's folder
 * when it lies below it, and joins the base behind exactly one separator:
 * base "/out" and location folder "Bin" give "/out/Bin". A location that
 * does not exist is reported and gives 0. rootName and rootVersion name the
 * location that stands for the install root, or are empty. */
QV_API int BuildFilePathNameEx(char* destination, const char* locationName,
                               const char* locationVersion, const char* relativePath,
                               const char* defaultName, const char* rootName,
                               const char* rootVersion, const char* base, const char* name);
QV_API int GetLodestarLocationPath(char* destination, const char* rootName,
                                   const char* rootVersion);
QV_API int CopyRecordsExcept(QvFile input, QvFile output, const char* name, uint32_t* nextNumber);

QV_EXTERN_C_END

#endif /* QUORVEX_CATALOGUE_H_ */
