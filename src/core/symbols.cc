// The named operations of the symbolic tables: each one reads or writes its
// table through the generic pair and turns the outcome into the result its
// callers expect.
#include "quorvex/symbols.h"

#include <cstdio>
#include <string>
#include <vector>

#include "core/symbol_table.h"
#include "platform/file.h"

namespace qv {
namespace {

uint32_t ReadOne(const SymbolTable& table, const char* name) {
  uint32_t value = 0;
  ReadSymbols(table, name, &value);
  return value;
}

// Writes the value's fields in one write; true when the value had a name.
bool WriteValue(const SymbolTable& table, uint32_t value, QvFile file, uint32_t options) {
  static thread_local std::string bytes;
  bytes.clear();
  bool named = AppendSymbolFields(table, value, options, &bytes);
  if (File* out = File::FromHandle(file); out != nullptr) out->Write(bytes.data(), bytes.size());
  return named;
}

}  // namespace
}  // namespace qv

extern "C" {

uint32_t ParseRegRootKey(const char* name) {
  return qv::ReadOne(qv::kRegRootKeyTable, name);
}

int FormatRegRootKey(uint32_t rootKey, char* destination) {
  std::vector<std::string> fields;
  bool named = qv::WriteSymbols(qv::kRegRootKeyTable, rootKey, &fields);
  snprintf(destination, 32, "%s", fields.front().c_str());
  return named ? 1 : 0;
}

int WriteRegRootKeyField(uint32_t rootKey, QvFile file, uint32_t options) {
  qv::WriteValue(qv::kRegRootKeyTable, rootKey, file, options);
  return 1;
}

int WriteRegDataTypeField(int dataType, QvFile file, uint32_t options) {
  return qv::WriteValue(qv::kRegDataTypeTable, static_cast<uint32_t>(dataType), file, options) ? 1
                                                                                               : 0;
}

uint32_t ParsePSDataType(const char* name) {
  return qv::ReadOne(qv::kPSDataTypeTable, name);
}

int WritePSDataTypeField(uint32_t dataType, QvFile file, uint32_t options) {
  return qv::WriteValue(qv::kPSDataTypeTable, dataType, file, options) ? 1 : 0;
}

int ParseRegOption(const char* names, uint8_t* options) {
  uint32_t value = *options;
  bool ok = qv::ReadSymbols(qv::kRegOptionTable, names, &value);
  *options = static_cast<uint8_t>(value);
  return ok ? 1 : 0;
}

int WriteRegOptionField(uint8_t options, QvFile file, uint32_t fieldOptions) {
  qv::WriteValue(qv::kRegOptionTable, options, file, fieldOptions);
  return 1;
}

int ParseRegAccess(const char* names, uint32_t* access) {
  return qv::ReadSymbols(qv::kRegAccessTable, names, access) ? 1 : 0;
}

int WriteRegAccessField(uint32_t access, QvFile file, uint32_t options) {
  qv::WriteValue(qv::kRegAccessTable, access, file, options);
  return 1;
}

int ParseShowCommand(const char* name) {
  return static_cast<int>(qv::ReadOne(qv::kShowCommandTable, name));
}

int WriteShowCommandField(int showCommand, QvFile file, uint32_t options) {
  qv::WriteValue(qv::kShowCommandTable, static_cast<uint32_t>(showCommand), file, options);
  return 1;
}

int ParseHotKey(const char* names, uint8_t* hotKey) {
  uint32_t value = *hotKey;
  bool ok = qv::ReadSymbols(qv::kHotKeyTable, names, &value);
  *hotKey = static_cast<uint8_t>(value);
  return ok ? 1 : 0;
}

int WriteHotKeyField(uint8_t hotKey, QvFile file, uint32_t options) {
  qv::WriteValue(qv::kHotKeyTable, hotKey, file, options);
  return 1;
}

}  // extern "C"
