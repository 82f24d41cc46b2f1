/* Writing profile text: fields, section rewrites, file headers and names.
 *
 * Rewriting one section of a file: open it for update (it is checked out
 * first), create a temporary file, CopyHeadThroughSection, write each record
 * (the first field with the record's flags as options, the last with
 * FO_END_RECORD), CopyTailAfterSection, then replace the profile file with
 * the temporary file (QvReplaceProfileFile). */
#ifndef QUORVEX_WRITER_H_
#define QUORVEX_WRITER_H_

#include "quorvex/base.h"

QV_EXTERN_C_BEGIN

/* Writes one field. The text is used as scratch: after a text holding double
 * quotes was written it holds only what followed the last one. */
QV_API int WriteField(char* text, QvFile file, uint32_t options);
QV_API int WriteUnsignedField(uint32_t value, QvFile file, uint32_t options);
QV_API int WriteIntegerField(int32_t value, QvFile file, uint32_t options);
QV_API int WriteDateTimeField(uint32_t value, QvFile file, uint32_t options);
QV_API int FormatVersionQuad(char* destination, const uint32_t* pair);
QV_API int WriteVersionQuadField(uint32_t high, uint32_t low, QvFile file, uint32_t options);
QV_API int WriteFlagString32Field(uint32_t word, QvFile file, uint32_t options);
QV_API int WriteFlagField(uint32_t value, QvFile file, uint32_t options);
QV_API int WriteOsTypeField(int osType, QvFile file, uint32_t options);

QV_API int CopyHeadThroughSection(QvFile input, QvFile output, const char* section);
QV_API int CopyTailAfterSection(QvFile input, QvFile output, const char* section);

/* Writes the header template of a new file of the kind ("MO", "IN", "PR",
 * "MG", "SSR", "RES", "MSG"). Returns 1 for every known kind, whatever the
 * handle and whatever was written; 0, reported, for any other kind. */
QV_API int AddSections(QvFile file, const char* kind, const char* firstKey, const char* secondKey);
QV_API int UppercaseInitials(const char* text, char* destination);

/* Invents a short unique name for a new profile file of the kind and creates
 * it; returns the open file (path in pathOut) or QV_NO_FILE. */
QV_API QvFile CreateMungedFile(const char* name, const char* secondKey, const char* kind,
                               char* pathOut);

/* Closes nothing: replaces the profile file with the content of the
 * temporary file, never leaving it half written. Fails (0, no report) when
 * the profile file is read-only or cannot be replaced; on success the
 * temporary file is deleted. */
QV_API int QvReplaceProfileFile(const char* temporaryPath, const char* profilePath);

QV_EXTERN_C_END

#endif /* QUORVEX_WRITER_H_ */
