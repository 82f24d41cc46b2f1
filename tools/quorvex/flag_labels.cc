#include "flag_labels.h"

#include <strings.h>

#include <cstdio>
#include <cstdlib>

#include "records/record_codec.h"

namespace qvtool {
namespace {

std::string Trimmed(std::string text) {
  size_t begin = text.find_first_not_of(" \t");
  size_t end = text.find_last_not_of(" \t");
  return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

}  // namespace

const qv::MemberSpec* FlagMember(const qv::KindSchema& schema) {
  bool any_label = false;
  for (const char* name : schema.bit_names) any_label = any_label || name != nullptr;
  if (!any_label) return nullptr;
  for (const qv::LineField& field : schema.line) {
    if (field.syntax != qv::LineSyntax::kFlag && field.syntax != qv::LineSyntax::kFlagString32)
      continue;
    for (const qv::MemberSpec& m : schema.members) {
      if (m.offset == field.offset && m.type == qv::ValueType::kU32) return &m;
    }
  }
  // A kind that reads its lines its own way names its members: the flag
  // word is the first that ends in "Flags" (the record flags aside).
  for (const char* name : schema.custom_line_members) {
    for (const qv::MemberSpec& m : schema.members) {
      const std::string member = m.name;
      if (member != name || m.type != qv::ValueType::kU32) continue;
      if (m.offset == schema.record_flags_offset) continue;
      if (member.size() >= 5 && member.compare(member.size() - 5, 5, "Flags") == 0) return &m;
    }
  }
  return nullptr;
}

std::string ShortLabel(const std::string& label) {
  std::string text = label;
  size_t open = text.find(" (");
  if (open != std::string::npos && text.back() == ')') text.erase(open);
  constexpr char kPrefix[] = "Participates in ";
  constexpr char kSuffix[] = " install";
  if (text.rfind(kPrefix, 0) == 0) text.erase(0, sizeof kPrefix - 1);
  size_t suffix = sizeof kSuffix - 1;
  if (text.size() > suffix && text.compare(text.size() - suffix, suffix, kSuffix) == 0)
    text.erase(text.size() - suffix);
  return Trimmed(text);
}

std::vector<std::string> FlagLabels(const qv::KindSchema& schema, uint32_t word) {
  std::vector<std::string> labels;
  uint32_t rest = word;
  for (int i = 0; i < 32; ++i) {
    uint32_t bit = 0x80000000u >> i;
    if ((word & bit) && schema.bit_names[i] != nullptr) {
      labels.push_back(schema.bit_names[i]);
      rest &= ~bit;
    }
  }
  if (rest != 0) {
    char hex[16];
    snprintf(hex, sizeof hex, "0x%X", static_cast<unsigned>(rest));
    labels.push_back(hex);
  }
  return labels;
}

std::string FlagCell(const qv::KindSchema& schema, uint32_t word) {
  std::string cell;
  for (const std::string& label : FlagLabels(schema, word))
    cell += (cell.empty() ? "" : ", ") + ShortLabel(label);
  return cell;
}

bool FlagBitForLabel(const qv::KindSchema& schema, const std::string& given, uint32_t* bits) {
  std::string label = Trimmed(given);
  if (label.empty()) return false;
  for (int i = 0; i < 32; ++i) {
    const char* name = schema.bit_names[i];
    if (name == nullptr) continue;
    if (strcasecmp(name, label.c_str()) == 0 ||
        strcasecmp(ShortLabel(name).c_str(), label.c_str()) == 0) {
      *bits = 0x80000000u >> i;
      return true;
    }
  }
  char* end = nullptr;
  unsigned long value = strtoul(label.c_str(), &end, 0);
  if (label[0] != '-' && *end == '\0' && value <= 0xFFFFFFFFul) {
    *bits = static_cast<uint32_t>(value);
    return true;
  }
  return false;
}

std::string KnownLabels(const qv::KindSchema& schema) {
  std::string known;
  for (const char* name : schema.bit_names) {
    if (name != nullptr) known += (known.empty() ? "" : ", ") + ShortLabel(name);
  }
  return known;
}

}  // namespace qvtool
