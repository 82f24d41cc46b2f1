/* Language records: the languages of the whole profile.
 *
 * Four lists share one record shape, a language code of up to 10
 * characters and a name of up to 40:
 *   SLA   shipping languages            section "Shipping Languages"
 *   DLA   document languages            section "Document Languages"
 *   OSLA  operating-system languages    section "OS Languages"
 *   AILA  available interface languages section "Available Interface Languages"
 * all in the language file "<profile>\LANGUAGE\pelham.la", one line a
 * record:
 *   "LanguageCode","LanguageName"
 *
 * OSDL (operating-system document language) says, for an operating-system
 * language, which document languages go with it, in
 * "<profile>\LANGUAGE\OsDoC.LA", section "OS Document Language":
 *   "OSLanguageCode","DocLanguageCode","<32 flag letters>"
 * A Y in the first flag letter (OSDL_DEFAULT_DOC_LANGUAGE) marks the
 * document language applications use by default for that operating-system
 * language; the engine does not check that only one line of a language
 * carries it.
 *
 * UNFO (user information data) lives only in an Orvik profile.
 *
 * Codes are not limited to the 28 two-letter codes of the per-language
 * flag words: any text of up to 10 characters is read and written back
 * unchanged. Keys compare with regard to case: a language list is keyed by
 * LanguageCode, OSDL by OSLanguageCode (so a put replaces, and a delete
 * removes, the lines of that operating-system language), UNFO by
 * FieldName. A put replaces the stored record with the same key, keeping
 * the stored key, or appends the record; a record whose line could not
 * read back as given is refused before anything is written.
 *
 * What differs by kind and store, kept as the system has always shown it:
 * - Writing the AILA list copies the file through the header of
 *   "Available Interface Languages", writes the list, and resumes copying
 *   only behind the section "Interface Languages": everything between, that
 *   section included, is left out of the rewritten file, and without an
 *   "Interface Languages" section nothing behind the AILA lines is kept.
 * - A missing file reports "Language file cannot be found or opened!"
 *   (SLA, AILA), "Language File cannot be found or opened!" (DLA, OSLA, and
 *   OSDL when writing) or "OS Document Language File cannot be found or
 *   opened!" (OSDL when reading).
 * - SLA is not kept in an Orvik profile: reading and deleting report
 *   "Shipping Language is not a part of Orvik", putting "There is no such
 *   thing as a SLA object in Orvik, so there!", getting one "Alias Module
 *   Language is not a part of Orvik".
 * - DLA, OSLA, AILA and OSDL are tables of an Orvik profile named by their
 *   codes; a put there is a plain insert of the row.
 * - UNFO in a Master Profile: every operation reports "UserInfo Data is
 *   not explicitly a part of the Master Profile" and fails. */
#ifndef QUORVEX_LANGUAGES_H_
#define QUORVEX_LANGUAGES_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

/* ---- The four language lists ---- */

/* The part of a language record that the database exchanges. */
typedef struct LanguageRow {
  char LanguageCode[11]; /* "US", "DE", or any code of up to 10 characters */
  char LanguageName[41];
} LanguageRow;

typedef struct LanguageRecord {
  LanguageRow row;
  uint32_t recordFlags; /* RECORD_IAO for a record read behind ";IAO;" */
  uint32_t lineNumber;  /* where the record was read */
} LanguageRecord;

typedef LanguageRecord SLARecord;
typedef LanguageRecord DLARecord;
typedef LanguageRecord OSLARecord;
typedef LanguageRecord AILARecord;
typedef QvFlagNames SLAFlagNames; /* no labels, mask 0, as for all four */
typedef QvFlagNames DLAFlagNames;
typedef QvFlagNames OSLAFlagNames;
typedef QvFlagNames AILAFlagNames;

/* The operations of one language list, named with its code:
 *   MPGet<code>CompleteList(listOut, mode)  all records in file (or table)
 *                                  order; MODE_UPDATE checks the file out
 *   MPGet<code>(languageCode, recordOut)  a copy of the record; 0 without a
 *                                  message when there is none, and always
 *                                  in an Orvik profile
 *   MPPut<code>(record)            adds or replaces by language code
 *   MPPut<code>CompleteList(list)  merges the list into the stored records
 *   MPDelete<code>(languageCode)   removes the records with that code; 0
 *                                  without a message when there is none
 *   MPCopy<code>, MPFind<code>Node (an empty code takes the next record),
 *   MPGet<code>FlagNames, MPNew<code>, MPFree<code>, MPRelease<code>,
 *   MPWrite<code>List (rewrites the section from the list) and the list
 *   operations of list.h. */
#define QV_DECLARE_LANGUAGE_LIST_OPERATIONS(code)                                           \
  QV_DECLARE_LIST_OPERATIONS(code, code##Record)                                            \
  QV_API int MPGet##code##CompleteList(code##List** listOut, uint32_t mode);                \
  QV_API int MPGet##code(const char* languageCode, code##Record** recordOut);               \
  QV_API int MPPut##code(code##Record* record);                                             \
  QV_API int MPPut##code##CompleteList(code##List* list);                                   \
  QV_API int MPDelete##code(const char* languageCode);                                      \
  QV_API int MPCopy##code(code##Record** recordInOut, const code##Record* source, int mode, \
                          code##List* list);                                                \
  QV_API int MPFind##code##Node(const char* languageCode, code##List* list,                 \
                                code##Record** recordOut);                                  \
  QV_API int MPGet##code##FlagNames(code##FlagNames** tableOut);                            \
  QV_API int MPNew##code(code##Record** recordOut);                                         \
  QV_API int MPFree##code(code##Record* record);                                            \
  QV_API int MPRelease##code(code##Record** record);                                        \
  QV_API int MPWrite##code##List(code##List* list);

QV_DECLARE_LANGUAGE_LIST_OPERATIONS(SLA)
QV_DECLARE_LANGUAGE_LIST_OPERATIONS(DLA)
QV_DECLARE_LANGUAGE_LIST_OPERATIONS(OSLA)
QV_DECLARE_LANGUAGE_LIST_OPERATIONS(AILA)

/* ---- Operating-system document languages ---- */

/* "Default Application Document Language": the first flag letter. */
#define OSDL_DEFAULT_DOC_LANGUAGE 0x80000000u

typedef struct OSDLRow {
  char OSLanguageCode[11];
  char DocLanguageCode[11];
  uint32_t Flags; /* OSDL_DEFAULT_DOC_LANGUAGE */
} OSDLRow;

typedef struct OSDLRecord {
  OSDLRow row;
  uint32_t recordFlags;
  uint32_t lineNumber;
} OSDLRecord;

typedef QvFlagNames OSDLFlagNames;

QV_DECLARE_LIST_OPERATIONS(OSDL, OSDLRecord)

/* As the language lists, keyed by the operating-system language code. */
QV_API int MPGetOSDLCompleteList(OSDLList** listOut, uint32_t mode);
QV_API int MPGetOSDL(const char* osLanguageCode, OSDLRecord** recordOut);
QV_API int MPPutOSDL(OSDLRecord* record);
QV_API int MPPutOSDLCompleteList(OSDLList* list);
QV_API int MPDeleteOSDL(const char* osLanguageCode);
QV_API int MPCopyOSDL(OSDLRecord** recordInOut, const OSDLRecord* source, int mode, OSDLList* list);
QV_API int MPFindOSDLNode(const char* osLanguageCode, OSDLList* list, OSDLRecord** recordOut);
QV_API int MPGetOSDLFlagNames(OSDLFlagNames** tableOut);
QV_API int MPNewOSDL(OSDLRecord** recordOut);
QV_API int MPFreeOSDL(OSDLRecord* record);
QV_API int MPReleaseOSDL(OSDLRecord** record);
QV_API int MPWriteOSDLList(OSDLList* list);

/* ---- User information data (Orvik profiles only) ---- */

/* One piece of information the installer asks of the person installing,
 * a row of the Orvik table UNFO. The flag table ("UserInfo Data") has no
 * labels: what the bits mean is the installer's affair. */
typedef struct UNFORow {
  char FieldName[41];     /* "UserName", "Company", "SerialNumber", ...: the key */
  char Prompt[261];       /* what the installer shows when asking */
  char DefaultValue[261]; /* what it offers before the person types */
  uint32_t Flags;
} UNFORow;

typedef struct UNFORecord {
  UNFORow row;
  uint32_t recordFlags; /* always 0: UNFO records are never read from text */
  uint32_t lineNumber;
} UNFORecord;

typedef QvFlagNames UNFOFlagNames;

QV_DECLARE_LIST_OPERATIONS(UNFO, UNFORecord)

/* Rows of the table UNFO; a query that cannot start reports "Cannot begin
 * to Query Orvik Database for Modules", a refused insert "Cannot insert ML
 * record into Orvik shipping profile", a delete of nothing "Cannot delete
 * UNFO record from Orvik shipping profile" (the texts are the system's
 * own, other kinds' names included). */
QV_API int MPGetUNFOCompleteList(UNFOList** listOut, uint32_t mode);
/* Single records are served from the text store only: always 0. */
QV_API int MPGetUNFO(const char* fieldName, UNFORecord** recordOut);
QV_API int MPPutUNFO(UNFORecord* record);
QV_API int MPPutUNFOCompleteList(UNFOList* list);
QV_API int MPDeleteUNFO(const char* fieldName);
QV_API int MPCopyUNFO(UNFORecord** recordInOut, const UNFORecord* source, int mode, UNFOList* list);
QV_API int MPFindUNFONode(const char* fieldName, UNFOList* list, UNFORecord** recordOut);
QV_API int MPGetUNFOFlagNames(UNFOFlagNames** tableOut);
QV_API int MPNewUNFO(UNFORecord** recordOut);
QV_API int MPFreeUNFO(UNFORecord* record);
QV_API int MPReleaseUNFO(UNFORecord** record);

QV_EXTERN_C_END

#endif /* QUORVEX_LANGUAGES_H_ */
