/* Error reporting, the log, temporary files and three character helpers.
 *
 * Every failure in the engine is reported where it is found: the text goes to
 * the log file of the open profile (when one was given) and to a Yes/No
 * message box, titled "Error from QUORVEX!", that asks whether further boxes
 * are wanted. Answering No silences the boxes until the next open. */
#ifndef QUORVEX_REPORT_H_
#define QUORVEX_REPORT_H_

#include "quorvex/base.h"

QV_EXTERN_C_BEGIN

/* Reports a message. With withLine = 1 the text starts with
 * "<parse file> : Line #<n>\n". Returns the box's answer (1 Yes, 0 No) when a
 * box was shown, else 1. */
QV_API int ReportError(const char* message, int withLine);

/* The same service for the host program, with a switch of its own that is
 * never re-armed, and without the line prefix. */
QV_API int ReportHostError(const char* message);

/* Writes a banner of 86 asterisks, the text and a newline to the log. */
QV_API void WriteLogEntry(const char* text);

/* Creates a new temporary file QUORVEX.000 ... QUORVEX.999 in the temporary
 * directory; returns 1 with its path (QV_PATH_SIZE bytes) and an open
 * handle, or 0 when all thousand names are taken. The caller closes and
 * deletes it. */
QV_API int CreateTempFile(char* pathOut, QvFile* handleOut);

/* Advances *text past leading backslashes. */
QV_API void SkipLeadingBackslashes(char** text);

/* 1 for 0-9, a-f, A-F. */
QV_API int IsHexDigit(int c);

/* 0..15 for a hexadecimal digit of either case, 0 for anything else. */
QV_API int HexDigitValue(int c);

QV_EXTERN_C_END

#endif /* QUORVEX_REPORT_H_ */
