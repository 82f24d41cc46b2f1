/* QUORVEX engine: basic types and constants shared by every part of the C API.
 *
 * Results: every operation returns 1 for success and 0 for failure unless its
 * comment says otherwise. A failure has already been shown through the error
 * reporter (see report.h) by the time 0 comes back. */
#ifndef QUORVEX_BASE_H_
#define QUORVEX_BASE_H_

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define QV_EXTERN_C_BEGIN extern "C" {
#define QV_EXTERN_C_END }
#else
#define QV_EXTERN_C_BEGIN
#define QV_EXTERN_C_END
#endif

#if defined(_WIN32)
#define QV_API
#else
#define QV_API __attribute__((visibility("default")))
#endif

QV_EXTERN_C_BEGIN

/* Sizes of the fixed text buffers: n characters take n + 1 bytes. */
#define QV_PATH_SIZE 261  /* a file path: 260 characters */
#define QV_LINE_SIZE 5024 /* a physical line, a joined record, a message */

/* An open file. QV_NO_FILE means "no file"; QV_FAILED_FILE is the value an
 * open that failed hands back where the engine deliberately returns the
 * failed handle rather than none (see OpenProfileFile). Neither may be read. */
typedef struct QvFileHandle_* QvFile;
#define QV_NO_FILE ((QvFile)0)
#define QV_FAILED_FILE ((QvFile)(intptr_t)-1)

/* Opens an existing file for reading; QV_NO_FILE when it cannot be opened. */
QV_API QvFile QvOpenFileForRead(const char* path);
/* Closes a file; QV_NO_FILE and QV_FAILED_FILE are accepted and ignored. */
QV_API void QvCloseFile(QvFile file);
/* 1 when the handle can be read or written. */
QV_API int QvFileIsOpen(QvFile file);

/* ProfileFlags: how a profile is (to be) opened. */
#define OPEN_MASTER 0x80000000u
#define OPEN_ORVIK 0x40000000u
#define OPEN_LOCK 0x20000000u
#define OPEN_INSTALLATION 0x08000000u
#define OPEN_NO_VCS 0x04000000u
#define OPEN_PROMPT 0x02000000u
#define OPEN_TYPE_FROM_REGISTRY 0x01000000u
#define OPEN_SILENT 0x00000010u
#define OPEN_READ_ACTIVE_ONLY 0x00000004u

/* Open modes of the record reads and of OpenProfileFile. */
#define MODE_READ 0u
#define MODE_UPDATE 0x20000000u

/* Record flags returned with each logical record line. */
#define RECORD_IAO 0x80000000u

/* Field options of the field parsers and writers. */
#define FO_IAO 0x80000000u
#define FO_UNQUOTED 0x40000000u
#define FO_OPTIONAL 0x20000000u
#define FO_END_RECORD 0x10000000u
#define FO_VERBATIM 0x08000000u

/* File status bits of the global list of files. */
#define FS_CHECKED_OUT 0x80000000u

QV_EXTERN_C_END

#endif /* QUORVEX_BASE_H_ */
