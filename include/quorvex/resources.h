/* Resource texts and setup messages: the per-language text files.
 *
 * Resources (family "Resources"): the installer's named texts of one
 * language, in "<profile>\RES_US\pelham<code>.re", section "Resources", one
 * line a text:
 *   "ResourceName","Text",ResourceNumber,"Note"
 * (the number and the note may be empty). Records of other kinds hold
 * resource names as the ids of their texts. A text put with an empty name
 * gets a generated one, "MP_GEN_" + the open profile's prefix + an eleven
 * digit counter (23 characters), unique within the open profile.
 *
 * Setup messages (family "Strings") and remove strings (family "Remove
 * Strings"): the setup program's messages of one language, in
 * "<profile>\LANGUAGE\setup<code>.msg", sections "Strings" and "Remove
 * Strings", one unquoted key=value line a message. The key is everything
 * before the first "=", the text everything behind it.
 *
 * Reading needs an open profile, changing a locked one. A language without
 * a file reads as an empty list. Writing to a language without a file
 * reports the missing path and, unless the profile was opened with
 * OPEN_SILENT, offers to create the file; declining changes nothing and
 * gives 0.
 *
 * MPPutResource and MPDeleteResource change a copy of the language's texts
 * that the engine holds while the profile is open; the file is written when
 * the profile is closed (still locked), or at once by a
 * MPPutResourceCompleteList of the same language. Reads of a language held
 * this way see its changes. Every setup-message operation works on the file
 * at once. An Orvik profile serves resources read only and holds no setup
 * messages. */
#ifndef QUORVEX_RESOURCES_H_
#define QUORVEX_RESOURCES_H_

#include "quorvex/base.h"
#include "quorvex/list.h"
#include "quorvex/records.h"

QV_EXTERN_C_BEGIN

/* Prefix of generated resource names. */
#define RESOURCE_GENERATED_PREFIX "MP_GEN_"

typedef struct ResourceRecord {
  char LanguageCode[11]; /* the language of the file the text belongs to */
  char ResourceName[41]; /* the id; empty: generated when put */
  char Text[385];
  int32_t ResourceNumber; /* optional; 0 is written as an empty field */
  char Note[700];         /* optional */
  uint32_t recordFlags;   /* RECORD_IAO for a record read behind ";IAO;" */
  uint32_t lineNumber;    /* where the record was read */
} ResourceRecord;

typedef struct StringRecord {
  char LanguageCode[11];
  char MessageKey[261];
  char MessageText[2049];
  uint32_t recordFlags;
  uint32_t lineNumber;
} StringRecord;

/* The same layout as StringRecord, for the section "Remove Strings". */
typedef struct RemoveStringRecord {
  char LanguageCode[11];
  char MessageKey[261];
  char MessageText[2049];
  uint32_t recordFlags;
  uint32_t lineNumber;
} RemoveStringRecord;

typedef QvFlagNames ResourceFlagNames;
typedef QvFlagNames StringFlagNames;
typedef QvFlagNames RemoveStringFlagNames;

QV_DECLARE_LIST_OPERATIONS(Resource, ResourceRecord)
QV_DECLARE_LIST_OPERATIONS(RemoveString, RemoveStringRecord)

/* The list operations of setup messages. MPNewStringList and
 * MPFreeStringList (list.h) make and free these lists too: a StringRecord
 * is freed as a string is. */
typedef RecordList StringList;
QV_API int MPAddStringAt(StringList* list, uint32_t position, StringRecord* record);
QV_API int MPInsertStringAfter(StringList* list, uint32_t position, StringRecord* record);
QV_API int MPAppendString(StringList* list, StringRecord* record);
QV_API int MPSetStringNode(StringList* list, uint32_t position, StringRecord* record);
QV_API int MPDeleteStringNode(StringList* list, uint32_t position);
QV_API int MPRemoveStringNode(StringList* list, StringRecord* record);
QV_API int MPClearStringList(StringList* list);

/* ---- Resources ---- */

/* Every text of the language, in file order; a language without a file or
 * section gives an empty list. Reading raises the generated-name counter
 * above every generated name met. On 0 *listOut is NULL. */
QV_API int MPGetResourceCompleteList(const char* languageCode, ResourceList** listOut);
/* Merges the list into the file of its first record's language: a record
 * replaces the stored one with the same name, any other is added; stored
 * texts the list does not name stay. Records with an empty name get a
 * generated name, written into the caller's record. An empty list writes
 * nothing and gives 1. */
QV_API int MPPutResourceCompleteList(ResourceList* list);
/* A copy of the language's text with that name (compared with regard to
 * case); 0 without a message when there is none. */
QV_API int MPGetResource(const char* languageCode, const char* resourceName,
                         ResourceRecord** recordOut);
/* Adds the text to its language (record->LanguageCode), or replaces the one
 * with the same name. An empty name is first replaced by a generated one,
 * in the caller's record. */
QV_API int MPPutResource(ResourceRecord* record);
/* Removes every text of the language with that name; 0 without a message
 * when there is none. */
QV_API int MPDeleteResource(const char* languageCode, const char* resourceName);
/* Pairs the texts of two languages by name and number. On return
 * *primaryOut holds the primary texts without a partner, *updateOut the
 * update texts without one and *resultOut the update texts that have one,
 * each in its old order. The three lists are the caller's (also on 0). */
QV_API int MPMatchResources(const char* primaryCode, const char* updateCode,
                            ResourceList** primaryOut, ResourceList** updateOut,
                            ResourceList** resultOut);
/* Makes a copy of source in a new record handed out in *recordOut. */
QV_API int MPCopyResource(ResourceRecord** recordOut, const ResourceRecord* source);
/* Moves the cursor to the next text with that name (any text when the name
 * is empty); 0 at the end of the list. */
QV_API int MPFindResourceNode(const char* resourceName, ResourceList* list,
                              ResourceRecord** recordOut);
QV_API int MPGetResourceFlagNames(ResourceFlagNames** tableOut);
QV_API int MPNewResource(ResourceRecord** recordOut);
QV_API int MPFreeResource(ResourceRecord* record);
QV_API int MPReleaseResource(ResourceRecord** record);

/* ---- Setup messages, section "Strings" ---- */

/* Every message of the language in file order; a language without a file
 * or section gives an empty list. On 0 *listOut is NULL. */
QV_API int MPGetStringCompleteList(const char* languageCode, StringList** listOut);
/* Merges the list into the file of its first record's language: a message
 * replaces the stored one with the same key (stored messages with one key
 * are paired in order), any other is added. An empty list gives 1. */
QV_API int MPPutStringCompleteList(StringList* list);
/* A copy of the language's message with that key; 0 without a message
 * when there is none. */
QV_API int MPGetString(const char* languageCode, const char* messageKey, StringRecord** recordOut);
/* Adds the message to its language, or replaces the one with its key. */
QV_API int MPPutString(StringRecord* record);
/* Removes every message of the language with that key; 0 without a
 * message when there is none. */
QV_API int MPDeleteString(const char* languageCode, const char* messageKey);
QV_API int MPCopyString(StringRecord** recordOut, const StringRecord* source);
/* Moves the cursor to the next message with that key (any message when
 * the key is NULL); 0 at the end of the list. */
QV_API int MPFindStringNode(const char* messageKey, StringList* list, StringRecord** recordOut);
QV_API int MPGetStringFlagNames(StringFlagNames** tableOut);
QV_API int MPNewString(StringRecord** recordOut);
QV_API int MPFreeString(StringRecord* record);
QV_API int MPReleaseString(StringRecord** record);

/* ---- Setup messages, section "Remove Strings" (the same operations) ---- */

QV_API int MPGetRemoveStringCompleteList(const char* languageCode, RemoveStringList** listOut);
QV_API int MPPutRemoveStringCompleteList(RemoveStringList* list);
QV_API int MPGetRemoveString(const char* languageCode, const char* messageKey,
                             RemoveStringRecord** recordOut);
QV_API int MPPutRemoveString(RemoveStringRecord* record);
QV_API int MPDeleteRemoveString(const char* languageCode, const char* messageKey);
QV_API int MPCopyRemoveString(RemoveStringRecord** recordOut, const RemoveStringRecord* source);
QV_API int MPFindRemoveStringNode(const char* messageKey, RemoveStringList* list,
                                  RemoveStringRecord** recordOut);
QV_API int MPGetRemoveStringFlagNames(RemoveStringFlagNames** tableOut);
QV_API int MPNewRemoveString(RemoveStringRecord** recordOut);
QV_API int MPFreeRemoveString(RemoveStringRecord* record);
QV_API int MPReleaseRemoveString(RemoveStringRecord** record);

QV_EXTERN_C_END

#endif /* QUORVEX_RESOURCES_H_ */
