#include "records/ss_flag_tables.h"

#include <string>

#include "quorvex/settings.h"
#include "records/kind_api.h"

namespace qv {
namespace {

// Entry i of a table names bit 31 - i.
constexpr int Entry(int bit) {
  return 31 - bit;
}

// The language words' order: BR is bit 31, CT bit 4.
constexpr const char* kLanguages[28] = {"BR", "CF", "CZ", "DE", "DK", "ES", "FR", "GR", "HR", "IT",
                                        "MA", "NL", "NO", "OZ", "PL", "PO", "RU", "SL", "SO", "SU",
                                        "SV", "TR", "UK", "US", "YK", "JP", "CS", "CT"};

struct LanguageTable {
  std::string labels[28];
  KindSchema table{};
  LanguageTable(const char* title, const char* suffix) {
    table.flag_label = title;
    for (int i = 0; i < 28; ++i) {
      labels[i] = std::string(kLanguages[i]) + suffix;
      table.bit_names[i] = labels[i].c_str();
    }
  }
};

void SetLocationBits(KindSchema* s) {
  s->bit_names[Entry(29)] = "Local";
  s->bit_names[Entry(28)] = "Network";
  s->bit_names[Entry(27)] = "Workstation";
  s->flag_mask = 0x28000000u;
}

}  // namespace

void SetSettingsFlagTable(KindSchema* s) {
  s->flag_label = "System Settings Record";
  SetLocationBits(s);
  s->bit_names[Entry(26)] = "Migrate across minor versions of the module";
  s->bit_names[Entry(25)] = "Contains Replaceable Parameters";
  s->bit_names[Entry(24)] = "Set At Deinstall";
  s->bit_names[Entry(23)] = "Don't Replace";
}

void SetCreatedFlagTable(KindSchema* s) {
  s->flag_label = "Created System Settings Record";
  SetLocationBits(s);
  s->bit_names[Entry(26)] = "Remove all subkeys and values, or an INI section";
}

const KindSchema& ModifySubkeyTable() {
  static const LanguageTable table("System Settings Modify Subkey Flags", "_MODIFYSUBKEY");
  return table.table;
}
const KindSchema& ModifyValueNameTable() {
  static const LanguageTable table("System Settings Modify ValueName Flags", "_MODIFYVALUENAME");
  return table.table;
}
const KindSchema& ModifyValueTable() {
  static const LanguageTable table("System Settings Modify Value Flags", "_MODIFYVALUE");
  return table.table;
}

}  // namespace qv

namespace {

const qv::KindSchema& SettingsTable() {
  static const qv::KindSchema table = [] {
    qv::KindSchema s{};
    qv::SetSettingsFlagTable(&s);
    return s;
  }();
  return table;
}
const qv::KindSchema& CreatedTable() {
  static const qv::KindSchema table = [] {
    qv::KindSchema s{};
    qv::SetCreatedFlagTable(&s);
    return s;
  }();
  return table;
}

int Hand(const qv::KindSchema& table, QvFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(table);
  return 1;
}

}  // namespace

extern "C" {

int MPGetSSRFlagNames(QvFlagNames** tableOut) {
  return Hand(SettingsTable(), tableOut);
}
int MPGetSSRModifySubkeyFlagNames(QvFlagNames** tableOut) {
  return Hand(qv::ModifySubkeyTable(), tableOut);
}
int MPGetSSRModifyValueNameFlagNames(QvFlagNames** tableOut) {
  return Hand(qv::ModifyValueNameTable(), tableOut);
}
int MPGetSSRModifyValueFlagNames(QvFlagNames** tableOut) {
  return Hand(qv::ModifyValueTable(), tableOut);
}
int MPGetCSSRFlagNames(QvFlagNames** tableOut) {
  return Hand(CreatedTable(), tableOut);
}

}  // extern "C"
