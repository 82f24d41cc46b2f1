/* Reading profile text: sections, record lines and fields.
 *
 * A profile file is a sequence of sections, each a "[Name]" header followed
 * by record lines of comma-separated fields. ";" starts a comment; ";IAO;"
 * marks a record that is carried but inactive; a trailing backslash
 * continues a line. Every parse error is reported with the prefix
 * "<parse file> : Line #<n>\n".
 *
 * Reading one section: SetParseFile once per file, FindSection, then
 * ReadRecordLine until it returns 0; for each record set a cursor at the
 * start of the buffer and call the field parsers in field order. */
#ifndef QUORVEX_TEXT_H_
#define QUORVEX_TEXT_H_

#include "quorvex/base.h"

QV_EXTERN_C_BEGIN

/* Comment modes of ReadRecordLine. */
#define COMMENT_MODE_ACTIVE_ONLY 1 /* ";IAO;" records skipped */
#define COMMENT_MODE_RECORDS 2     /* the default: ";IAO;" records returned */
#define COMMENT_MODE_LISTING 3     /* comments returned too */
#define COMMENT_MODE_SKIP 4        /* only comments returned: skips a section */

/* Sets the file named in error prefixes and resets the line counter. */
QV_API int SetParseFile(const char* name);
/* The parse position (file name and the count of lines read since SetParseFile). */
QV_API const char* QvParseFileName(void);
QV_API int32_t QvParseLineNumber(void);
/* The comment mode of the open profile (2, or 1 after OPEN_READ_ACTIVE_ONLY). */
QV_API int QvCommentMode(void);

/* Reads one physical line (without its line feed) of at most size - 1 bytes;
 * 0 at end of file. */
QV_API int ReadProfileLine(QvFile file, char* buffer, int size);

QV_API void SkipBlanks(char** cursor);
QV_API void TrimTrailingBlanks(char* text);

/* Rewinds and finds "[section]"; the file then stands on the next line. */
QV_API int FindSection(QvFile file, const char* section);

/* Reads one logical record into record (QV_LINE_SIZE bytes); 0 at the end of
 * the section or file, or on a bad comment continuation. */
QV_API int ReadRecordLine(QvFile file, char* record, uint32_t* recordFlags, int commentMode);

QV_API int ParseQuotedString(char** cursor, char* destination, uint32_t options, int size);
QV_API int ParseFlag(char** cursor, uint32_t* value, uint32_t options);
QV_API int ParseFlagString32(char** cursor, uint32_t* word, uint32_t options);
QV_API int ParseInteger(char** cursor, int32_t* value, uint32_t options);
QV_API int ParseLong(char** cursor, int32_t* value, uint32_t options);
/* pair[0] is the high word, pair[1] the low word. */
QV_API int ParseVersionQuad(char** cursor, uint32_t* pair, uint32_t options);
QV_API int ParseDateTime(uint32_t* value, const char* text);
QV_API int ParseHexBytes(uint8_t* destination, char* text, uint16_t* count, int mode);
QV_API int ParseOsType(const char* name);
QV_API int ParseRegDataType(const char* name);

/* "%02d/%02d/%02d %02d:%02d:%02d" (and the date and time halves) of a time
 * value; 0 and an empty text for the value 0. */
QV_API int FormatDateTime(uint32_t value, char* destination);
QV_API int FormatDate(uint32_t value, char* destination);
QV_API int FormatTime(uint32_t value, char* destination);

QV_API void RemoveChar(char* text, int c);
QV_API void UnescapeQuotes(char* text);

QV_EXTERN_C_END

#endif /* QUORVEX_TEXT_H_ */
