#include "records/record_members.h"

#include <strings.h>

#include <cctype>
#include <cstring>

#include "core/text_chars.h"
#include "records/record_codec.h"

namespace qv {
namespace {

bool BeginsWith(const char* text, const char* start) {
  return strncasecmp(text, start, strlen(start)) == 0;
}

bool EndsWith(const char* text, const char* end) {
  size_t length = strlen(text);
  size_t tail = strlen(end);
  return length >= tail && strcasecmp(text + length - tail, end) == 0;
}

}  // namespace

const MemberSpec* MemberForName(const KindSchema& schema, const char* name) {
  for (const MemberSpec& member : schema.members) {
    if (strcasecmp(member.name, name) == 0) return &member;
  }
  for (const MemberSpec& member : schema.members) {
    if (BeginsWith(member.name, name) || EndsWith(member.name, name)) return &member;
  }
  return nullptr;
}

std::vector<const MemberSpec*> KeyMembers(const KindApi& api) {
  std::vector<const MemberSpec*> members;
  for (const char* key : api.key_names) {
    bool owner = false;
    for (const char* name : api.owner_names) owner = owner || strcasecmp(name, key) == 0;
    if (owner) continue;
    if (const MemberSpec* member = MemberForName(*api.schema, key)) members.push_back(member);
  }
  return members;
}

std::string MemberText(const MemberSpec& member, const void* record) {
  const char* at = static_cast<const char*>(record) + member.offset;
  switch (member.type) {
    case ValueType::kText:
      return std::string(at, strnlen(at, member.size));
    case ValueType::kI32:
      return std::to_string(static_cast<int32_t>(GetUnsigned(record, member.offset, member.type)));
    case ValueType::kVersionQuad: {
      uint32_t pair[2];
      memcpy(pair, at, sizeof pair);
      return std::to_string(pair[0] >> 16) + "." + std::to_string(pair[0] & 0xFFFF) + "." +
             std::to_string(pair[1] >> 16) + "." + std::to_string(pair[1] & 0xFFFF);
    }
    default:
      return std::to_string(GetUnsigned(record, member.offset, member.type));
  }
}

std::string Folded(std::string text) {
  for (char& c : text) c = AsciiLower(c);
  return text;
}

}  // namespace qv
