// Setup messages: the sections "Strings" and "Remove Strings" of
// "<profile>\LANGUAGE\setup<code>.msg", one unquoted key=value line a
// message.
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "core/copy_text.h"
#include "core/field_text.h"
#include "quorvex/report.h"
#include "quorvex/resources.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"
#include "records/family_io.h"
#include "records/line_capacity.h"
#include "records/record_codec.h"
#include "records/resource_family.h"

namespace qv {
namespace {

// Both kinds read and write lines through StringRecord.
static_assert(sizeof(StringRecord) == sizeof(RemoveStringRecord));
static_assert(offsetof(StringRecord, MessageKey) == offsetof(RemoveStringRecord, MessageKey));
static_assert(offsetof(StringRecord, MessageText) == offsetof(RemoveStringRecord, MessageText));
static_assert(offsetof(StringRecord, recordFlags) == offsetof(RemoveStringRecord, recordFlags));
static_assert(offsetof(StringRecord, lineNumber) == offsetof(RemoveStringRecord, lineNumber));

constexpr char kNotInOrvik[] = "Setup Messages are not part of Orvik.";

// Copies at most size - 1 characters; a longer text is reported (with the
// line) and cut.
void CopyPart(char* destination, size_t size, const char* text, const char* what) {
  size_t length = strlen(text);
  if (length >= size) {
    char message[QV_LINE_SIZE];
    snprintf(message, sizeof message, "Message %s is too long: should not exceed %zu characters",
             what, size - 1);
    ReportError(message, 1);
    length = size - 1;
  }
  memcpy(destination, text, length);
  destination[length] = '\0';
}

bool ParseMessageLine(char* line, void* record) {
  auto* message = static_cast<StringRecord*>(record);
  TrimTrailingBlanks(line);
  char* equals = strchr(line, '=');
  // A line without "=" is kept, with neither key nor text.
  if (equals == nullptr) return true;
  *equals = '\0';
  CopyPart(message->MessageKey, sizeof message->MessageKey, line, "key");
  CopyPart(message->MessageText, sizeof message->MessageText, equals + 1, "text");
  return true;
}

bool AppendMessageLine(const void* record, std::string* out) {
  const auto* message = static_cast<const StringRecord*>(record);
  char line[QV_LINE_SIZE];
  snprintf(line, sizeof line, "%s=%s", message->MessageKey, message->MessageText);
  uint32_t options = (message->recordFlags & FO_IAO) | FO_UNQUOTED | FO_VERBATIM | FO_END_RECORD;
  AppendFieldBytes(out, line, strlen(line), options);
  return true;
}

// The writer puts out the key, "=" and the text: a line that was split at
// its first "=" into parts taken whole, nothing cut or trimmed, is that.
bool MessageWrittenAsRead(const char* line, const void* record) {
  const auto* message = static_cast<const StringRecord*>(record);
  const char* equals = strchr(line, '=');
  if (equals == nullptr) return false;
  const size_t key = static_cast<size_t>(equals - line);
  if (key >= sizeof message->MessageKey) return false;
  // The writer's line buffer would cut a longer one.
  if (key + 1 + strlen(equals + 1) >= QV_LINE_SIZE) return false;
  return strncmp(message->MessageKey, line, key) == 0 && message->MessageKey[key] == '\0' &&
         strcmp(message->MessageText, equals + 1) == 0;
}

void SetLanguage(void* record, const char* name, const char*) {
  CopyCut(static_cast<StringRecord*>(record)->LanguageCode, name);
}

template <class Record>
KindSchema MakeMessageSchema(const char* code, const char* label) {
  KindSchema schema = {
      FindKindInfo(code),
      sizeof(Record),
      offsetof(Record, LanguageCode),
      offsetof(Record, recordFlags),
      SIZE_MAX,
      offsetof(Record, recordFlags),
      offsetof(Record, lineNumber),
      {
          QV_MEMBER(Record, LanguageCode, "LanguageCode", false),
          QV_MEMBER(Record, MessageKey, "MessageKey", false),
          QV_MEMBER(Record, MessageText, "MessageText", false),
          QV_MEMBER(Record, recordFlags, "recordFlags", false),
          QV_MEMBER(Record, lineNumber, "lineNumber", false),
      },
      {},
      label,
      {},
      0,
      "%s cannot be found or opened!",
  };
  schema.parse_line = &ParseMessageLine;
  schema.append_line = &AppendMessageLine;
  schema.written_as_read = &MessageWrittenAsRead;
  schema.set_owner = &SetLanguage;
  schema.custom_line_members = {"MessageKey", "MessageText"};
  return schema;
}

template <class Record>
void FreeMessage(Record* record) {
  FreeRecord(record);
}

template <class Record>
using Messages = ListOps<Record, &FreeMessage<Record>>;

const char* OrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

bool LanguageGiven(const char* language) {
  if (language[0] != '\0') return true;
  ReportError("A language code is needed to find a setup message file.", 0);
  return false;
}

// The next record of the cursor walk whose key is exactly key.
template <class Record>
Record* NextKeyed(RecordList* list, const char* key) {
  while (Record* record = Messages<Record>::Next(list)) {
    if (strcmp(record->MessageKey, key) == 0) return record;
  }
  return nullptr;
}

template <class Record>
Record* CopyOf(const Record* source) {
  auto* copy = static_cast<Record*>(calloc(1, sizeof(Record)));
  if (copy != nullptr) *copy = *source;
  return copy;
}

// Each given message replaces the stored one with its key (messages with
// one key pair up in order, searching on from the last match and then once
// more from the top) or joins the end.
template <class Record>
void MergeMessages(RecordList* stored, const char* language,
                   const std::vector<const Record*>& given) {
  stored->current = nullptr;
  for (const Record* source : given) {
    Record* found = NextKeyed<Record>(stored, source->MessageKey);
    if (found == nullptr) found = NextKeyed<Record>(stored, source->MessageKey);
    Record* copy = CopyOf(source);
    if (copy == nullptr) continue;
    snprintf(copy->LanguageCode, sizeof copy->LanguageCode, "%s", language);
    if (found != nullptr) {
      copy->lineNumber = found->lineNumber;
      Messages<Record>::ReplaceRecord(stored, found, copy);
    } else {
      Messages<Record>::Append(stored, copy);
    }
  }
  stored->current = nullptr;
}

// Reads the language's file for change (offering to create it), lets
// change work on its records and writes them back.
template <class Record, class Change>
bool RewriteMessages(const LanguageFileKind& kind, const char* language, bool offer_creation,
                     Change&& change) {
  char path[QV_PATH_SIZE] = "";
  QvFile file = OpenLanguageFileForChange(kind, language, offer_creation, path);
  if (!QvFileIsOpen(file)) return false;
  RecordList* stored = nullptr;
  Messages<Record>::New(&stored);
  if (stored == nullptr || !ReadLanguageSection(*kind.schema, file, language, stored)) {
    QvCloseFile(file);
    Messages<Record>::Free(stored);
    return false;
  }
  change(stored);
  bool written = WriteLanguageSection(kind, file, path, stored);
  Messages<Record>::Free(stored);
  return written;
}

// A put of one message, as MergeMessages would leave the file, without a
// list of the section: a language's file may hold many thousand messages.
template <class Record>
bool PutOneMessage(const LanguageFileKind& kind, const char* language, const Record* given) {
  char path[QV_PATH_SIZE] = "";
  QvFile file = OpenLanguageFileForChange(kind, language, true, path);
  if (!QvFileIsOpen(file)) return false;
  return PutLanguageRecord(
      kind, file, path, language, given,
      [&](const void* stored) {
        return strcmp(static_cast<const Record*>(stored)->MessageKey, given->MessageKey) == 0;
      },
      [&](void* copy, const void* stored) {
        auto* replacing = static_cast<Record*>(copy);
        replacing->lineNumber = static_cast<const Record*>(stored)->lineNumber;
        CopyCut(replacing->LanguageCode, language);
      });
}

template <class Record>
int GetCompleteList(const LanguageFileKind& kind, const char* language, RecordList** listOut) {
  *listOut = nullptr;
  if (!RequireOpenProfile()) return 0;
  if (IsOrvikProfile()) {
    ReportError(kNotInOrvik, 0);
    return 0;
  }
  return ReadLanguageList(kind, OrEmpty(language), MODE_READ, listOut) ? 1 : 0;
}

template <class Record>
int GetOne(const LanguageFileKind& kind, const char* language, const char* key,
           Record** recordOut) {
  *recordOut = nullptr;
  if (!RequireOpenProfile()) return 0;
  if (IsOrvikProfile()) {
    // The text of another kind, as it has always been shown here.
    ReportError("Alias Module Language is not a part of Orvik", 0);
    return 0;
  }
  RecordList* list = nullptr;
  if (!ReadLanguageList(kind, OrEmpty(language), MODE_READ, &list)) return 0;
  list->current = nullptr;
  Record* found = NextKeyed<Record>(list, OrEmpty(key));
  if (found != nullptr) *recordOut = CopyOf(found);
  Messages<Record>::Free(list);
  return *recordOut != nullptr ? 1 : 0;
}

template <class Record>
int PutMessages(const LanguageFileKind& kind, const std::vector<const Record*>& given) {
  if (!RequireLockedProfile()) return 0;
  if (IsOrvikProfile()) {
    ReportError(kNotInOrvik, 0);
    return 0;
  }
  if (given.empty()) return 1;
  for (const Record* record : given) {
    if (!RecordFitsLine(*kind.schema, record)) return 0;
  }
  char language[sizeof(Record::LanguageCode)];
  snprintf(language, sizeof language, "%s", given.front()->LanguageCode);
  if (!LanguageGiven(language)) return 0;
  if (given.size() == 1) return PutOneMessage(kind, language, given.front()) ? 1 : 0;
  return RewriteMessages<Record>(
             kind, language, true,
             [&](RecordList* stored) { MergeMessages<Record>(stored, language, given); })
             ? 1
             : 0;
}

template <class Record>
int PutCompleteList(const LanguageFileKind& kind, RecordList* list) {
  std::vector<const Record*> given;
  Messages<Record>::ForEach(list, [&](Record* record) { given.push_back(record); });
  return PutMessages<Record>(kind, given);
}

template <class Record>
int DeleteMessages(const LanguageFileKind& kind, const char* language, const char* key) {
  if (!RequireLockedProfile()) return 0;
  if (IsOrvikProfile()) {
    ReportError(kNotInOrvik, 0);
    return 0;
  }
  language = OrEmpty(language);
  key = OrEmpty(key);
  // Nothing is checked out for a key that is not there.
  RecordList* list = nullptr;
  if (!ReadLanguageList(kind, language, MODE_READ, &list)) return 0;
  list->current = nullptr;
  bool present = NextKeyed<Record>(list, key) != nullptr;
  Messages<Record>::Free(list);
  if (!present) return 0;
  return RewriteMessages<Record>(kind, language, false,
                                 [&](RecordList* stored) {
                                   stored->current = nullptr;
                                   while (Record* found = NextKeyed<Record>(stored, key)) {
                                     UnlinkRecord(stored, found);
                                     FreeRecord(found);
                                   }
                                   stored->current = nullptr;
                                 })
             ? 1
             : 0;
}

template <class Record>
int FindNode(const char* key, RecordList* list, Record** recordOut) {
  for (;;) {
    Record* record = Messages<Record>::Next(list);
    *recordOut = record;
    if (record == nullptr) return 0;
    if (key == nullptr || strcmp(record->MessageKey, key) == 0) return 1;
  }
}

template <class Record>
int NewMessage(const KindSchema& schema, Record** recordOut) {
  *recordOut = static_cast<Record*>(NewRecord(schema));
  return *recordOut != nullptr ? 1 : 0;
}

template <class Record>
int CopyMessage(Record** recordOut, const Record* source) {
  *recordOut = CopyOf(source);
  return *recordOut != nullptr ? 1 : 0;
}

bool SplitKey(const Texts& key, const char** language, const char** message_key) {
  if (key.size() != 2) return false;
  *language = key[0].c_str();
  *message_key = key[1].c_str();
  return true;
}

template <class Record>
void FillMessageApi(KindApi& api, const KindSchema& schema, const LanguageFileKind& kind,
                    int (*flag_names)(QvFlagNames**)) {
  const LanguageFileKind* file_kind = &kind;
  api.schema = &schema;
  api.owner_names = {"language"};
  api.key_names = {"language", "key"};
  api.list = [file_kind](const Texts& owner, RecordList** list) {
    return !owner.empty() && GetCompleteList<Record>(*file_kind, owner[0].c_str(), list) == 1;
  };
  api.get = [file_kind](const Texts& key, void** record) {
    const char* language;
    const char* message_key;
    if (!SplitKey(key, &language, &message_key)) return false;
    Record* found = nullptr;
    bool ok = GetOne<Record>(*file_kind, language, message_key, &found) == 1;
    *record = found;
    return ok;
  };
  api.put = [file_kind](void* record) {
    return PutMessages<Record>(*file_kind, {static_cast<const Record*>(record)}) == 1;
  };
  api.remove = [file_kind](const Texts& key) {
    const char* language;
    const char* message_key;
    return SplitKey(key, &language, &message_key) &&
           DeleteMessages<Record>(*file_kind, language, message_key) == 1;
  };
  api.flag_names = [flag_names](QvFlagNames** table) { return flag_names(table) == 1; };
  api.stored = [file_kind](const void* record) -> void* {
    const auto* message = static_cast<const Record*>(record);
    Record* found = nullptr;
    GetOne<Record>(*file_kind, message->LanguageCode, message->MessageKey, &found);
    return found;
  };
}

const KindApi& MakeStringApi() {
  static KindApi api;
  FillMessageApi<StringRecord>(api, StringSchema(), StringFileKind(), &MPGetStringFlagNames);
  return api;
}

const KindApi& MakeRemoveStringApi() {
  static KindApi api;
  FillMessageApi<RemoveStringRecord>(api, RemoveStringSchema(), RemoveStringFileKind(),
                                     &MPGetRemoveStringFlagNames);
  return api;
}

}  // namespace

const KindSchema& StringSchema() {
  static const KindSchema schema = MakeMessageSchema<StringRecord>("Strings", "String");
  return schema;
}

const KindSchema& RemoveStringSchema() {
  static const KindSchema schema =
      MakeMessageSchema<RemoveStringRecord>("Remove Strings", "Remove String");
  return schema;
}

const LanguageFileKind& StringFileKind() {
  static const LanguageFileKind kind = {
      &StringSchema(), "MSG", "MSG", "MSG", "MSG", "Do you want to Create this File?",
  };
  return kind;
}

const LanguageFileKind& RemoveStringFileKind() {
  static const LanguageFileKind kind = {
      &RemoveStringSchema(), "MSG", "MSG", "MSG", "MSG", "Do you want to Create this File?",
  };
  return kind;
}

const KindApi& StringKindApi() {
  static const KindApi& api = MakeStringApi();
  return api;
}

const KindApi& RemoveStringKindApi() {
  static const KindApi& api = MakeRemoveStringApi();
  return api;
}

}  // namespace qv

using qv::RemoveStringFileKind;
using qv::StringFileKind;

QV_DEFINE_LIST_OPERATIONS(RemoveString, RemoveStringRecord, MPFreeRemoveString)

// MPNewStringList and MPFreeStringList are the string lists' own: a
// StringRecord is freed as a string is.
extern "C" {

int MPAddStringAt(StringList* list, uint32_t position, StringRecord* record) {
  return qv::Messages<StringRecord>::AddAt(list, position, record);
}
int MPInsertStringAfter(StringList* list, uint32_t position, StringRecord* record) {
  return qv::Messages<StringRecord>::InsertAfter(list, position, record);
}
int MPAppendString(StringList* list, StringRecord* record) {
  return qv::Messages<StringRecord>::Append(list, record);
}
int MPSetStringNode(StringList* list, uint32_t position, StringRecord* record) {
  return qv::Messages<StringRecord>::Set(list, position, record);
}
int MPDeleteStringNode(StringList* list, uint32_t position) {
  return qv::Messages<StringRecord>::Delete(list, position);
}
int MPRemoveStringNode(StringList* list, StringRecord* record) {
  return qv::Messages<StringRecord>::Remove(list, record);
}
int MPClearStringList(StringList* list) {
  return qv::Messages<StringRecord>::Clear(list);
}

int MPNewString(StringRecord** recordOut) {
  return qv::NewMessage(qv::StringSchema(), recordOut);
}
int MPFreeString(StringRecord* record) {
  qv::FreeRecord(record);
  return 1;
}
int MPReleaseString(StringRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}
int MPCopyString(StringRecord** recordOut, const StringRecord* source) {
  return qv::CopyMessage(recordOut, source);
}
int MPFindStringNode(const char* messageKey, StringList* list, StringRecord** recordOut) {
  return qv::FindNode(messageKey, list, recordOut);
}
int MPGetStringFlagNames(StringFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::StringSchema());
  return 1;
}
int MPGetStringCompleteList(const char* languageCode, StringList** listOut) {
  return qv::GetCompleteList<StringRecord>(StringFileKind(), languageCode, listOut);
}
int MPGetString(const char* languageCode, const char* messageKey, StringRecord** recordOut) {
  return qv::GetOne(StringFileKind(), languageCode, messageKey, recordOut);
}
int MPPutStringCompleteList(StringList* list) {
  return qv::PutCompleteList<StringRecord>(StringFileKind(), list);
}
int MPPutString(StringRecord* record) {
  return qv::PutMessages<StringRecord>(StringFileKind(), {record});
}
int MPDeleteString(const char* languageCode, const char* messageKey) {
  return qv::DeleteMessages<StringRecord>(StringFileKind(), languageCode, messageKey);
}

int MPNewRemoveString(RemoveStringRecord** recordOut) {
  return qv::NewMessage(qv::RemoveStringSchema(), recordOut);
}
int MPFreeRemoveString(RemoveStringRecord* record) {
  qv::FreeRecord(record);
  return 1;
}
int MPReleaseRemoveString(RemoveStringRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}
int MPCopyRemoveString(RemoveStringRecord** recordOut, const RemoveStringRecord* source) {
  return qv::CopyMessage(recordOut, source);
}
int MPFindRemoveStringNode(const char* messageKey, RemoveStringList* list,
                           RemoveStringRecord** recordOut) {
  return qv::FindNode(messageKey, list, recordOut);
}
int MPGetRemoveStringFlagNames(RemoveStringFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::RemoveStringSchema());
  return 1;
}
int MPGetRemoveStringCompleteList(const char* languageCode, RemoveStringList** listOut) {
  return qv::GetCompleteList<RemoveStringRecord>(RemoveStringFileKind(), languageCode, listOut);
}
int MPGetRemoveString(const char* languageCode, const char* messageKey,
                      RemoveStringRecord** recordOut) {
  return qv::GetOne(RemoveStringFileKind(), languageCode, messageKey, recordOut);
}
int MPPutRemoveStringCompleteList(RemoveStringList* list) {
  return qv::PutCompleteList<RemoveStringRecord>(RemoveStringFileKind(), list);
}
int MPPutRemoveString(RemoveStringRecord* record) {
  return qv::PutMessages<RemoveStringRecord>(RemoveStringFileKind(), {record});
}
int MPDeleteRemoveString(const char* languageCode, const char* messageKey) {
  return qv::DeleteMessages<RemoveStringRecord>(RemoveStringFileKind(), languageCode, messageKey);
}

}  // extern "C"
