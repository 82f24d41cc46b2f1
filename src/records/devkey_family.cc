// The registry-administration file "<profile>\REGADMIN\REGADMIN.RAM":
// development registry keys (DRK), the products each key belongs to
// (DRKPR) and the development products (DVPR), a section each.
#include "records/devkey_family.h"

#include "quorvex/devkeys.h"
#include "records/text_key_family.h"

namespace qv {
namespace {

constexpr char kMissingFile[] = "File regadmin.RAM cannot be found or opened!";

// Texts of a kind of this file, named by its code.
#define QV_DEVKEY_TEXTS(code)                                                                \
  static constexpr const char* kInsertIn =                                                   \
      "Cannot insert " code " record in Orvik shipping profile";                             \
  static constexpr const char* kInsertInto =                                                 \
      "Cannot insert " code " record into Orvik shipping profile";                           \
  static constexpr const char* kDeleteFailed =                                               \
      "Cannot delete " code " record from Orvik shipping profile";                           \
  static constexpr const char* kNotForOrvik = code "s not implemented in QUORVEX for Orvik"; \
  static constexpr const char* kReferencesRemain =                                           \
      "Cannot delete all references to this " code ", therefore cannot delete it.";          \
  static constexpr StoreRefusal kRefusal = {};

template <class Record>
KindSchema DevKeySchema(const char* code, const char* title) {
  KindSchema s = RowRecordSchema<Record>(code);
  s.flag_label = title;
  s.flag_mask = 0;
  s.missing_file_message = kMissingFile;
  s.orvik_fetch_label = code;
  return s;
}

struct DrkDesc {
  using Record = DRKRecord;
  static constexpr auto kFree = &MPFreeDRK;
  static constexpr std::array<const char*, 2> kKeyMembers = {"DRKName", "DRKKey2"};
  QV_DEVKEY_TEXTS("DRK")

  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = DevKeySchema<DRKRecord>("DRK", "Development Reg Keys");
      s.members = {
          QV_MEMBER(DRKRecord, row.DRKName, "DRKName", true),
          QV_MEMBER(DRKRecord, row.DRKKey2, "DRKKey2", true),
          QV_MEMBER(DRKRecord, row.text1, "text1", true),
          QV_MEMBER(DRKRecord, row.text2, "text2", true),
          QV_MEMBER(DRKRecord, row.text3, "text3", true),
          QV_MEMBER(DRKRecord, row.text4, "text4", true),
          QV_MEMBER(DRKRecord, row.text5, "text5", true),
          QV_MEMBER(DRKRecord, row.text6, "text6", true),
          QV_MEMBER(DRKRecord, row.text7, "text7", true),
          QV_MEMBER(DRKRecord, row.Flags, "Flags", true),
          QV_MEMBER(DRKRecord, recordFlags, "recordFlags", false),
          QV_MEMBER(DRKRecord, lineNumber, "lineNumber", false),
      };
      s.line = {
          QV_LINE_FIELD(DRKRecord, row.DRKName, LineSyntax::kText, 20, 0, 0),
          QV_LINE_FIELD(DRKRecord, row.DRKKey2, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(DRKRecord, row.text1, LineSyntax::kText, 20, 0, 0),
          QV_LINE_FIELD(DRKRecord, row.text2, LineSyntax::kText, 128, 0, 0),
          QV_LINE_FIELD(DRKRecord, row.text3, LineSyntax::kText, 128, 0, 0),
          QV_LINE_FIELD(DRKRecord, row.text4, LineSyntax::kText, 260, 0, 0),
          QV_LINE_FIELD(DRKRecord, row.text5, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(DRKRecord, row.text6, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(DRKRecord, row.text7, LineSyntax::kText, 100, 0, 0),
          QV_LINE_FIELD(DRKRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      };
      // A DRK line has always handed its record flags to the writer with the
      // third, fifth, seventh and ninth fields too. An inactive record would
      // get ";IAO;" inside its line, so the put check and the rewrite refuse
      // it rather than write a line the next read cannot take.
      for (size_t field : {2, 4, 6, 8}) s.line[field].takes_record_flags = true;
      return s;
    }();
    return schema;
  }
};

struct DrkprDesc {
  using Record = DRKPRRecord;
  static constexpr auto kFree = &MPFreeDRKPR;
  static constexpr std::array<const char*, 3> kKeyMembers = {"DRKName", "text1", "text2"};
  QV_DEVKEY_TEXTS("DRKPR")

  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = DevKeySchema<DRKPRRecord>("DRKPR", "Development Reg Key Products");
      s.members = {
          QV_MEMBER(DRKPRRecord, row.DRKName, "DRKName", true),
          QV_MEMBER(DRKPRRecord, row.text1, "text1", true),
          QV_MEMBER(DRKPRRecord, row.text2, "text2", true),
          QV_MEMBER(DRKPRRecord, row.Flags, "Flags", true),
          QV_MEMBER(DRKPRRecord, recordFlags, "recordFlags", false),
          QV_MEMBER(DRKPRRecord, lineNumber, "lineNumber", false),
      };
      s.line = {
          QV_LINE_FIELD(DRKPRRecord, row.DRKName, LineSyntax::kText, 20, 0, 0),
          QV_LINE_FIELD(DRKPRRecord, row.text1, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(DRKPRRecord, row.text2, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(DRKPRRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      };
      return s;
    }();
    return schema;
  }
};

struct DvprDesc {
  using Record = DVPRRecord;
  static constexpr auto kFree = &MPFreeDVPR;
  static constexpr std::array<const char*, 1> kKeyMembers = {"ProductCode"};
  QV_DEVKEY_TEXTS("DVPR")

  static const KindSchema& Schema() {
    static const KindSchema schema = [] {
      KindSchema s = DevKeySchema<DVPRRecord>("DVPR", "Development Products");
      s.members = {
          QV_MEMBER(DVPRRecord, row.ProductCode, "ProductCode", true),
          QV_MEMBER(DVPRRecord, row.ProductName, "ProductName", true),
          QV_MEMBER(DVPRRecord, row.Flags, "Flags", true),
          QV_MEMBER(DVPRRecord, recordFlags, "recordFlags", false),
          QV_MEMBER(DVPRRecord, lineNumber, "lineNumber", false),
      };
      s.line = {
          QV_LINE_FIELD(DVPRRecord, row.ProductCode, LineSyntax::kText, 10, 0, 0),
          QV_LINE_FIELD(DVPRRecord, row.ProductName, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(DVPRRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      };
      return s;
    }();
    return schema;
  }
};

#undef QV_DEVKEY_TEXTS

}  // namespace

using DrkFamily = TextKeyFamily<DrkDesc>;
using DrkprFamily = TextKeyFamily<DrkprDesc>;
using DvprFamily = TextKeyFamily<DvprDesc>;

const KindApi& DrkKindApi() {
  return DrkFamily::Api();
}
const KindApi& DrkprKindApi() {
  return DrkprFamily::Api();
}
const KindApi& DvprKindApi() {
  return DvprFamily::Api();
}

}  // namespace qv

using qv::DrkFamily;
using qv::DrkprFamily;

QV_DEFINE_TEXT_KEY_COMMON_OPERATIONS(DRK, qv::DrkFamily)
QV_DEFINE_WRITE_LIST_OPERATION(DRK, qv::DrkFamily)
QV_DEFINE_TEXT_KEY_COMMON_OPERATIONS(DRKPR, qv::DrkprFamily)
QV_DEFINE_WRITE_LIST_OPERATION(DRKPR, qv::DrkprFamily)
QV_DEFINE_ONE_TEXT_KEY_OPERATIONS(DVPR, qv::DvprFamily)
QV_DEFINE_WRITE_LIST_OPERATION(DVPR, qv::DvprFamily)

extern "C" {

int MPGetDRK(const char* drkName, const char* drkKey2, DRKRecord** recordOut) {
  return DrkFamily::Get({{drkName, drkKey2}}, recordOut);
}

int MPDeleteDRK(const char* drkName, const char* drkKey2) {
  return DrkFamily::Delete({{drkName, drkKey2}});
}

int MPFindDRKNode(const char* drkName, const char* drkKey2, DRKList* list, DRKRecord** recordOut) {
  return DrkFamily::Find({{drkName, drkKey2}}, list, recordOut);
}

int MPGetDRKPR(const char* drkName, const char* text1, const char* text2, DRKPRRecord** recordOut) {
  return DrkprFamily::Get({{drkName, text1, text2}}, recordOut);
}

int MPDeleteDRKPR(const char* drkName, const char* text1, const char* text2) {
  return DrkprFamily::Delete({{drkName, text1, text2}});
}

int MPFindDRKPRNode(const char* drkName, const char* text1, const char* text2, DRKPRList* list,
                    DRKPRRecord** recordOut) {
  return DrkprFamily::Find({{drkName, text1, text2}}, list, recordOut);
}

}  // extern "C"
