// The four language lists of "<profile>\LANGUAGE\pelham.la": shipping,
// document, operating-system and available interface languages. One record
// shape and one family; the lists differ only in the table below.
#include "records/language_lists.h"

#include "quorvex/languages.h"
#include "records/text_key_family.h"

namespace qv {
namespace {

struct LanguageList {
  const char* code;
  const char* title;         // the section's name, also the flag table's title
  const char* missing_file;  // the capital of "File" differs by kind, as it always has
  const char* insert_in;
  const char* insert_into;
  const char* delete_failed;  // with or without the final full stop, as shown
  const char* not_for_orvik;
  const char* references_remain;
  const char* tail_section;
  StoreRefusal refusal;
};

constexpr LanguageList kLists[] = {
    {"SLA",
     "Shipping Languages",
     "Language file cannot be found or opened!",
     "Cannot insert SLA record in Orvik shipping profile",
     "Cannot insert SLA record into Orvik shipping profile",
     "Cannot delete SLA record from Orvik shipping profile",
     "SLAs not implemented in QUORVEX for Orvik",
     "Cannot delete all references to this SLA, therefore cannot delete it.",
     nullptr,
     // Shipping languages are not kept in the database; getting one shows
     // another kind's text, which is kept.
     {true, "Shipping Language is not a part of Orvik",
      "Alias Module Language is not a part of Orvik",
      "There is no such thing as a SLA object in Orvik, so there!",
      "Shipping Language is not a part of Orvik"}},
    {"DLA",
     "Document Languages",
     "Language File cannot be found or opened!",
     "Cannot insert DLA record in Orvik shipping profile",
     "Cannot insert DLA record into Orvik shipping profile",
     "Cannot delete DLA record from Orvik shipping profile.",
     "DLAs not implemented in QUORVEX for Orvik",
     "Cannot delete all references to this DLA, therefore cannot delete it.",
     nullptr,
     {}},
    {"OSLA",
     "OS Languages",
     "Language File cannot be found or opened!",
     "Cannot insert OSLA record in Orvik shipping profile",
     "Cannot insert OSLA record into Orvik shipping profile",
     "Cannot delete OSLA record from Orvik shipping profile.",
     "OSLAs not implemented in QUORVEX for Orvik",
     "Cannot delete all references to this OSLA, therefore cannot delete it.",
     nullptr,
     {}},
    // Writing the available interface languages resumes copying only behind
    // the interface-language section: that section and everything between
    // are left out. This is how the list has always been written.
    {"AILA",
     "Available Interface Languages",
     "Language file cannot be found or opened!",
     "Cannot insert AILA record in Orvik shipping profile",
     "Cannot insert AILA record into Orvik shipping profile",
     "Cannot delete AILA record from Orvik shipping profile",
     "AILAs not implemented in QUORVEX for Orvik",
     "Cannot delete all references to this AILA, therefore cannot delete it.",
     "Interface Languages",
     {}},
};

KindSchema MakeLanguageSchema(const LanguageList& list) {
  KindSchema schema = RowRecordSchema<LanguageRecord>(list.code);
  schema.members = {
      QV_MEMBER(LanguageRecord, row.LanguageCode, "LanguageCode", true),
      QV_MEMBER(LanguageRecord, row.LanguageName, "LanguageName", true),
      QV_MEMBER(LanguageRecord, recordFlags, "recordFlags", false),
      QV_MEMBER(LanguageRecord, lineNumber, "lineNumber", false),
  };
  schema.line = {
      QV_LINE_FIELD(LanguageRecord, row.LanguageCode, LineSyntax::kText, 10, 0, 0),
      QV_LINE_FIELD(LanguageRecord, row.LanguageName, LineSyntax::kText, 40, 0, 0),
  };
  schema.flag_label = list.title;
  schema.flag_mask = 0;
  schema.missing_file_message = list.missing_file;
  schema.tail_section = list.tail_section;
  schema.orvik_fetch_label = list.code;
  return schema;
}

constexpr int (*kFrees[])(LanguageRecord*) = {&MPFreeSLA, &MPFreeDLA, &MPFreeOSLA, &MPFreeAILA};

template <int N>
struct LanguageDesc {
  static constexpr const LanguageList& kList = kLists[N];
  using Record = LanguageRecord;
  static constexpr auto kFree = kFrees[N];
  static constexpr std::array<const char*, 1> kKeyMembers = {"LanguageCode"};
  static constexpr const char* kInsertIn = kList.insert_in;
  static constexpr const char* kInsertInto = kList.insert_into;
  static constexpr const char* kDeleteFailed = kList.delete_failed;
  static constexpr const char* kNotForOrvik = kList.not_for_orvik;
  static constexpr const char* kReferencesRemain = kList.references_remain;
  static constexpr StoreRefusal kRefusal = kList.refusal;
  static const KindSchema& Schema() {
    static const KindSchema schema = MakeLanguageSchema(kList);
    return schema;
  }
};

}  // namespace

using SlaFamily = TextKeyFamily<LanguageDesc<0>>;
using DlaFamily = TextKeyFamily<LanguageDesc<1>>;
using OslaFamily = TextKeyFamily<LanguageDesc<2>>;
using AilaFamily = TextKeyFamily<LanguageDesc<3>>;

const KindApi& SlaKindApi() {
  return SlaFamily::Api();
}
const KindApi& DlaKindApi() {
  return DlaFamily::Api();
}
const KindApi& OslaKindApi() {
  return OslaFamily::Api();
}
const KindApi& AilaKindApi() {
  return AilaFamily::Api();
}

}  // namespace qv

QV_DEFINE_ONE_TEXT_KEY_OPERATIONS(SLA, qv::SlaFamily)
QV_DEFINE_WRITE_LIST_OPERATION(SLA, qv::SlaFamily)
QV_DEFINE_ONE_TEXT_KEY_OPERATIONS(DLA, qv::DlaFamily)
QV_DEFINE_WRITE_LIST_OPERATION(DLA, qv::DlaFamily)
QV_DEFINE_ONE_TEXT_KEY_OPERATIONS(OSLA, qv::OslaFamily)
QV_DEFINE_WRITE_LIST_OPERATION(OSLA, qv::OslaFamily)
QV_DEFINE_ONE_TEXT_KEY_OPERATIONS(AILA, qv::AilaFamily)
QV_DEFINE_WRITE_LIST_OPERATION(AILA, qv::AilaFamily)
