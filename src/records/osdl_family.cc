// Operating-system document languages: for each operating-system language,
// the document languages that go with it, in "<profile>\LANGUAGE\OsDoC.LA".
#include "quorvex/languages.h"
#include "records/language_lists.h"
#include "records/text_key_family.h"

namespace qv {
namespace {

struct OsdlDesc {
  using Record = OSDLRecord;
  static constexpr auto kFree = &MPFreeOSDL;
  static constexpr std::array<const char*, 1> kKeyMembers = {"OSLanguageCode"};
  static constexpr const char* kInsertIn = "Cannot insert OSDL record in Orvik shipping profile";
  static constexpr const char* kInsertInto =
      "Cannot insert OSDL record into Orvik shipping profile";
  static constexpr const char* kDeleteFailed =
      "Cannot delete OSDL record from Orvik shipping profile.";
  static constexpr const char* kNotForOrvik = "OSDLs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete all references to this OSDL, therefore cannot delete it.";
  static constexpr StoreRefusal kRefusal = {};

  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = RowRecordSchema<OSDLRecord>("OSDL");
      s.members = {
          QV_MEMBER(OSDLRecord, row.OSLanguageCode, "OSLanguageCode", true),
          QV_MEMBER(OSDLRecord, row.DocLanguageCode, "DocLanguageCode", true),
          QV_MEMBER(OSDLRecord, row.Flags, "Flags", true),
          QV_MEMBER(OSDLRecord, recordFlags, "recordFlags", false),
          QV_MEMBER(OSDLRecord, lineNumber, "lineNumber", false),
      };
      s.line = {
          QV_LINE_FIELD(OSDLRecord, row.OSLanguageCode, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(OSDLRecord, row.DocLanguageCode, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(OSDLRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      };
      s.flag_label = "OS Document Language";
      s.bit_names[0] = "Default Application Document Language";
      s.flag_mask = OSDL_DEFAULT_DOC_LANGUAGE;
      // The file is named one way when it is read and another when it is
      // written; both texts are the system's own.
      s.missing_file_message = "OS Document Language File cannot be found or opened!";
      s.missing_file_message_on_write = "Language File cannot be found or opened!";
      s.orvik_fetch_label = "OSDL";
      return s;
    }();
    return schema;
  }
};

}  // namespace

using OsdlFamily = TextKeyFamily<OsdlDesc>;

const KindApi& OsdlKindApi() {
  return OsdlFamily::Api();
}

}  // namespace qv

QV_DEFINE_ONE_TEXT_KEY_OPERATIONS(OSDL, qv::OsdlFamily)
QV_DEFINE_WRITE_LIST_OPERATION(OSDL, qv::OsdlFamily)
