// The one reader and the one writer of every symbolic table.
#include "core/symbol_table.h"

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/field_text.h"
#include "core/report_capture.h"
#include "core/text_chars.h"
#include "quorvex/report.h"
#include "quorvex/writer.h"

namespace qv {
namespace {

const Symbol* FindName(const SymbolTable& table, const std::string& name) {
  for (const Symbol& symbol : table.symbols) {
    if (EqualsIgnoreCase(symbol.name, name.c_str())) return &symbol;
  }
  return nullptr;
}

// An unknown name spoils the line it stood on, so it is reported as the
// field parsers report theirs: with the file and line being read.
void ReportUnknownName(const SymbolTable& table, const std::string& name) {
  std::string text = table.read_message;
  size_t at = text.find("%s");
  if (at != std::string::npos) text.replace(at, 2, name);
  ReportParseProblem(text.c_str());
}

// Names in one text are separated the way settings records separate them.
bool IsNameSeparator(char c) {
  return IsBlank(c) || c == ',';
}

bool HoldsAll(uint32_t value, uint32_t bits) {
  return bits != 0 && (value & bits) == bits;
}

// Calls write(rule) for every containment rule that the value satisfies,
// in order.
template <typename Write>
void ForEachHeldRule(const SymbolTable& table, uint32_t value, Write write) {
  auto consider = [&](const SymbolWriteRule& rule) {
    if (HoldsAll(value, rule.bits) && !HoldsAll(value, rule.unless)) write(rule);
  };
  if (!table.write_rules.empty()) {
    for (const SymbolWriteRule& rule : table.write_rules) consider(rule);
    return;
  }
  for (const Symbol& symbol : table.symbols) consider(SymbolWriteRule{symbol.name, symbol.value});
}

// ReadSymbols without the texts kept.
bool ReadNames(const SymbolTable& table, const char* text, uint32_t* value) {
  if (table.reading == SymbolReading::kOneName) {
    const Symbol* symbol = FindName(table, text);
    *value = symbol != nullptr ? symbol->value : 0;
    if (symbol == nullptr) ReportUnknownName(table, text);
    return symbol != nullptr;
  }
  const char* p = text;
  for (;;) {
    while (*p != '\0' && IsNameSeparator(*p)) ++p;
    if (*p == '\0') return true;
    const char* start = p;
    while (*p != '\0' && !IsNameSeparator(*p)) ++p;
    std::string name(start, static_cast<size_t>(p - start));
    const Symbol* symbol = FindName(table, name);
    if (symbol == nullptr) {
      ReportUnknownName(table, name);
      return false;
    }
    *value |= symbol->value;
  }
}

}  // namespace

bool ReadSymbols(const SymbolTable& table, const char* text, uint32_t* value) {
  if (text == nullptr) text = "";
  // Every line of a settings section names its root, type, access and
  // options, mostly with the same few texts: a text that read without a
  // report is kept with the value it names.
  constexpr size_t kMostKept = 4096;
  constexpr size_t kLongestKept = 256;
  static thread_local std::unordered_map<const SymbolTable*,
                                         std::unordered_map<std::string, uint32_t>>
      kept;
  static thread_local std::string key;
  std::unordered_map<std::string, uint32_t>& texts = kept[&table];
  key.assign(text);
  uint32_t named = 0;
  bool read = true;
  if (auto found = texts.find(key); found != texts.end()) {
    named = found->second;
  } else {
    // An unknown name leaves what came before it in the value.
    read = ReadNames(table, text, &named);
    if (read && texts.size() < kMostKept && key.size() <= kLongestKept) texts.emplace(key, named);
  }
  if (table.reading == SymbolReading::kOneName) {
    *value = named;
  } else {
    *value |= named;
  }
  return read;
}

bool WriteSymbols(const SymbolTable& table, uint32_t value, std::vector<std::string>* fields) {
  fields->clear();
  switch (table.writing) {
    case SymbolWriting::kFirstName:
      for (const Symbol& symbol : table.symbols) {
        if (symbol.value == value) {
          fields->push_back(symbol.name);
          return true;
        }
      }
      fields->push_back("");
      // Writing happens while a section is rewritten, so the message names
      // the place the way the reader's does.
      if (table.write_message != nullptr) ReportError(table.write_message, 1);
      return false;
    case SymbolWriting::kContainedNames: {
      std::string text;
      ForEachHeldRule(table, value, [&](const SymbolWriteRule& rule) {
        if (rule.replaces) text.clear();
        text += rule.name;
        text += ' ';
      });
      fields->push_back(text);
      return true;
    }
    case SymbolWriting::kContainedFields:
      ForEachHeldRule(table, value, [&](const SymbolWriteRule& rule) {
        if (rule.replaces) fields->clear();
        fields->push_back(rule.name);
      });
      // The group always closes with an empty field, whatever it held.
      fields->push_back("");
      return true;
  }
  return false;
}

namespace {

// The bytes of a value's fields, as WriteField writes them one after
// another.
void AppendFields(const SymbolTable& table, const std::vector<std::string>& fields,
                  uint32_t options, std::string* out) {
  if (table.force_quotes) options &= ~FO_UNQUOTED;
  for (size_t i = 0; i < fields.size(); ++i) {
    uint32_t field_options = options;
    if (i > 0) field_options &= ~FO_IAO;
    if (i + 1 < fields.size()) field_options &= ~FO_END_RECORD;
    AppendFieldBytes(out, fields[i].data(), fields[i].size(), field_options);
  }
}

struct WrittenKey {
  const SymbolTable* table;
  uint32_t value;
  uint32_t options;
  bool operator==(const WrittenKey&) const = default;
};

struct WrittenKeyHash {
  size_t operator()(const WrittenKey& key) const {
    const uint64_t mixed = (uint64_t{key.value} << 32 | key.options) * 0x9E3779B97F4A7C15u;
    return std::hash<const void*>()(key.table) ^ static_cast<size_t>(mixed ^ (mixed >> 29));
  }
};

}  // namespace

bool AppendSymbolFields(const SymbolTable& table, uint32_t value, uint32_t options,
                        std::string* out) {
  // A rewrite spells the same few values on every line of a section: the
  // bytes of a named value are kept. A value without a name is spelled
  // each time, since spelling it reports.
  constexpr size_t kMostKept = 4096;
  static thread_local std::unordered_map<WrittenKey, std::string, WrittenKeyHash> kept;
  const WrittenKey key{&table, value, options};
  if (auto found = kept.find(key); found != kept.end()) {
    out->append(found->second);
    return true;
  }
  static thread_local std::vector<std::string> fields;
  const bool named = WriteSymbols(table, value, &fields);
  const size_t start = out->size();
  AppendFields(table, fields, options, out);
  if (named && kept.size() < kMostKept) kept.emplace(key, out->substr(start));
  return named;
}

}  // namespace qv
