// User information data: what the installer asks of the person installing.
// Only an Orvik profile keeps it, in its table UNFO; a Master Profile has
// no file for it and refuses every operation.
#include "quorvex/languages.h"
#include "records/language_lists.h"
#include "records/text_key_family.h"

namespace qv {
namespace {

constexpr char kNotInMasterProfile[] =
    "UserInfo Data is not explicitly a part of the Master Profile";

struct UnfoDesc {
  using Record = UNFORecord;
  static constexpr auto kFree = &MPFreeUNFO;
  static constexpr std::array<const char*, 1> kKeyMembers = {"FieldName"};
  // The query shows the Modules label and a refused put the ML code; both
  // are the system's own texts and kept.
  static constexpr const char* kInsertIn = "Cannot insert UNFO record in Orvik shipping profile";
  static constexpr const char* kInsertInto = "Cannot insert ML record into Orvik shipping profile";
  static constexpr const char* kDeleteFailed =
      "Cannot delete UNFO record from Orvik shipping profile";
  static constexpr const char* kNotForOrvik = "UNFOs not implemented in QUORVEX for Orvik";
  static constexpr const char* kReferencesRemain =
      "Cannot delete all references to this UNFO, therefore cannot delete it.";
  static constexpr StoreRefusal kRefusal = {false, kNotInMasterProfile, kNotInMasterProfile,
                                            kNotInMasterProfile, kNotInMasterProfile};

  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = RowRecordSchema<UNFORecord>("UNFO");
      s.members = {
          QV_MEMBER(UNFORecord, row.FieldName, "FieldName", true),
          QV_MEMBER(UNFORecord, row.Prompt, "Prompt", true),
          QV_MEMBER(UNFORecord, row.DefaultValue, "DefaultValue", true),
          QV_MEMBER(UNFORecord, row.Flags, "Flags", true),
          QV_MEMBER(UNFORecord, recordFlags, "recordFlags", false),
          QV_MEMBER(UNFORecord, lineNumber, "lineNumber", false),
      };
      // No file holds these lines. They say what a record must be to be
      // carried in profile text at all, which every put checks, so that
      // what the database is given could also be exported as text.
      s.line = {
          QV_LINE_FIELD(UNFORecord, row.FieldName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(UNFORecord, row.Prompt, LineSyntax::kText, 260, 0, 0),
          QV_LINE_FIELD(UNFORecord, row.DefaultValue, LineSyntax::kText, 260, 0, 0),
          QV_LINE_FIELD(UNFORecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      };
      s.flag_label = "UserInfo Data";
      s.flag_mask = 0;
      s.missing_file_message = kNotInMasterProfile;
      s.orvik_fetch_label = "UNFO";
      return s;
    }();
    return schema;
  }
};

}  // namespace

using UnfoFamily = TextKeyFamily<UnfoDesc>;

const KindApi& UnfoKindApi() {
  return UnfoFamily::Api();
}

}  // namespace qv

QV_DEFINE_ONE_TEXT_KEY_OPERATIONS(UNFO, qv::UnfoFamily)
