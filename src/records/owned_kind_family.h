// Families whose records live in an owner's file (a module's file groups,
// shipped files, their requirements and Ads; a product's modules, an
// install's products, ...): every record carries its owner's key first in
// its row, filled from the file it was read from, and is known within the
// owner by some of its members.
//
// A key part left out (nullopt) matches any value, so that a group name
// alone names every file of the group; a key without module (nullptr)
// reaches every module, which only the database can do in one step.
//
// A kind is described by a Desc:
//   using Record;                 its row starts with the owner's key
//   static constexpr auto kFree;
//   static const KindSchema& Schema();
//   static constexpr std::array<const char*, N> kKeyMembers;
//   static constexpr const char* kInsertIn, kInsertInto, kDeleteFailed,
//                                kNotForOrvik, kReferencesRemain;
//   static bool DeleteReferences(const OwnedKey<N>&);
// and, for owners other than modules (whose key is ModuleName and
// ModuleVersion, "module" and "version" to the tool):
//   static constexpr std::array<const char*, 1 or 2> kOwnerMembers, kOwnerLabels;
// An owner named by one member (an install's name) has the key's
// module_version unused. The file kind is that of the kind table's row.
#ifndef QUORVEX_RECORDS_OWNED_KIND_FAMILY_H_
#define QUORVEX_RECORDS_OWNED_KIND_FAMILY_H_

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "core/copy_text.h"
#include "quorvex/report.h"
#include "records/family_io.h"
#include "records/keyed_family.h"
#include "records/kind_api.h"
#include "records/text_key_family.h"

namespace qv {

template <size_t N>
struct OwnedKey {
  const char* module_name = nullptr;
  const char* module_version = nullptr;
  std::array<std::optional<std::string>, N> parts;
};

// A key part from a C argument: NULL matches any value.
inline std::optional<std::string> KeyPart(const char* text) {
  if (text == nullptr) return std::nullopt;
  return std::string(text);
}

// set_owner of every such kind: the module key sits first in the row.
template <class Record>
void SetModuleOwner(void* record, const char* name, const char* key) {
  auto* r = static_cast<Record*>(record);
  // Every record of a section read gets its owner: a plain copy, cut to
  // the member, costs far less than formatting it.
  CopyCut(r->row.ModuleName, sizeof r->row.ModuleName, name);
  CopyCut(r->row.ModuleVersion, sizeof r->row.ModuleVersion, key);
}

template <class Desc>
constexpr auto OwnerMembersOf() {
  if constexpr (requires { Desc::kOwnerMembers; }) {
    return Desc::kOwnerMembers;
  } else {
    return std::array<const char*, 2>{"ModuleName", "ModuleVersion"};
  }
}
template <class Desc>
constexpr auto OwnerLabelsOf() {
  if constexpr (requires { Desc::kOwnerLabels; }) {
    return Desc::kOwnerLabels;
  } else {
    return std::array<const char*, 2>{"module", "version"};
  }
}

template <class Desc>
struct OwnedKindTraits {
  using Record = typename Desc::Record;
  static constexpr size_t kParts = Desc::kKeyMembers.size();
  using Key = OwnedKey<kParts>;
  static constexpr auto kFree = Desc::kFree;
  static constexpr const char* kInsertIn = Desc::kInsertIn;
  static constexpr const char* kInsertInto = Desc::kInsertInto;
  static constexpr const char* kDeleteFailed = Desc::kDeleteFailed;
  static constexpr const char* kNotForOrvik = Desc::kNotForOrvik;
  static constexpr const char* kReferencesRemain = Desc::kReferencesRemain;

  static constexpr auto kOwnerMembers = OwnerMembersOf<Desc>();
  static constexpr size_t kOwnerParts = kOwnerMembers.size();

  static const KindSchema& Schema() { return Desc::Schema(); }
  static const MemberSpec& Part(size_t i) { return NamedMember<Desc, Desc::kKeyMembers>(i); }
  static const MemberSpec& OwnerMember(size_t i) { return NamedMember<Desc, kOwnerMembers>(i); }
  static char* At(Record* r, const MemberSpec& m) { return reinterpret_cast<char*>(r) + m.offset; }
  static const char* At(const Record& r, const MemberSpec& m) {
    return reinterpret_cast<const char*>(&r) + m.offset;
  }
  // Text members as they are, numbers in decimal.
  static std::string PartText(const Record& r, size_t i) {
    const MemberSpec& m = Part(i);
    if (m.type == ValueType::kText) return std::string(At(r, m), strnlen(At(r, m), m.size));
    return std::to_string(GetUnsigned(&r, m.offset, m.type));
  }
  // PartText(r, i) == text, without making the part's text.
  static bool PartIs(const Record& r, size_t i, const std::string& text) {
    const MemberSpec& m = Part(i);
    if (m.type != ValueType::kText) {
      // A put compares every record of a section: the decimal goes into a
      // buffer on the stack, not a string of its own.
      char decimal[24];
      const auto end =
          std::to_chars(decimal, decimal + sizeof decimal, GetUnsigned(&r, m.offset, m.type)).ptr;
      return text.compare(0, std::string::npos, decimal, end - decimal) == 0;
    }
    const size_t length = strnlen(At(r, m), m.size);
    return length == text.size() && memcmp(At(r, m), text.data(), length) == 0;
  }

  static const char* OwnerName(const Record& r) { return At(r, OwnerMember(0)); }
  static const char* OwnerVersion(const Record& r) {
    if constexpr (kOwnerParts > 1) return At(r, OwnerMember(1));
    return "";
  }
  // Every record of a section read gets its owner: a plain copy, cut to
  // the member, costs far less than formatting it.
  static void SetOwner(Record* r, const char* name, const char* version) {
    CopyCut(At(r, OwnerMember(0)), OwnerMember(0).size, name);
    if constexpr (kOwnerParts > 1) CopyCut(At(r, OwnerMember(1)), OwnerMember(1).size, version);
  }
  // set_owner of the kind's schema.
  static void SetOwnerOf(void* record, const char* name, const char* version) {
    SetOwner(static_cast<Record*>(record), name, version);
  }
  // The file an owner's records are in; an owner named by one member has
  // no second key.
  static Owner OwnerFile(const char* name, const char* version) {
    return Owner{name != nullptr ? name : "", kOwnerParts > 1 && version != nullptr ? version : ""};
  }

  static Owner OwnerOfKey(const Key& key) { return OwnerFile(key.module_name, key.module_version); }
  static Owner OwnerOfRecord(const Record& r) { return Owner{OwnerName(r), OwnerVersion(r)}; }

  static Key KeyOf(const Record& r) {
    Key key;
    key.module_name = OwnerName(r);
    key.module_version = OwnerVersion(r);
    for (size_t i = 0; i < kParts; ++i) key.parts[i] = PartText(r, i);
    return key;
  }
  // No part given: the next record, whatever it is.
  static bool IsEmpty(const Key& key) {
    for (const auto& part : key.parts) {
      if (part.has_value()) return false;
    }
    return true;
  }
  static Key ForList(RecordList*, const Key& key) { return key; }
  static bool InModule(const Record& r, const Key& key) {
    if (key.module_name != nullptr && strcmp(key.module_name, OwnerName(r)) != 0) return false;
    if (kOwnerParts < 2) return true;
    return key.module_version == nullptr || strcmp(key.module_version, OwnerVersion(r)) == 0;
  }
  static bool Matches(const Record& r, const Key& key) {
    if (!InModule(r, key)) return false;
    for (size_t i = 0; i < kParts; ++i) {
      if (key.parts[i].has_value() && !PartIs(r, i, *key.parts[i])) return false;
    }
    return true;
  }
  static void KeepIdentity(Record* copy, const Record& stored) {
    for (size_t i = 0; i < kOwnerParts; ++i) {
      memcpy(At(copy, OwnerMember(i)), At(stored, OwnerMember(i)), OwnerMember(i).size);
    }
    for (size_t i = 0; i < kParts; ++i) {
      memcpy(At(copy, Part(i)), At(stored, Part(i)), Part(i).size);
    }
  }
  static void FillKey(Record* record, const Key& key) {
    SetOwner(record, key.module_name, key.module_version);
    for (size_t i = 0; i < kParts; ++i) {
      if (!key.parts[i].has_value()) continue;
      const MemberSpec& m = Part(i);
      if (m.type == ValueType::kText) {
        snprintf(At(record, m), m.size, "%s", key.parts[i]->c_str());
      } else {
        SetUnsigned(record, m.offset, m.type,
                    static_cast<uint32_t>(strtoul(key.parts[i]->c_str(), nullptr, 10)));
      }
    }
  }
  static std::vector<std::vector<const char*>> OrvikKeyTries(const Key& key) {
    std::vector<const char*> members;
    if (key.module_name != nullptr) members.push_back(kOwnerMembers[0]);
    if (kOwnerParts > 1 && key.module_version != nullptr) members.push_back(kOwnerMembers.back());
    for (size_t i = 0; i < kParts; ++i) {
      if (key.parts[i].has_value()) members.push_back(Desc::kKeyMembers[i]);
    }
    return {members};
  }
  static void AfterTextWrite(RecordList*) {}
  static void AfterOrvikChange() {}
  static bool DeleteReferences(const Key& key) { return Desc::DeleteReferences(key); }
  // A key names the same records whatever else the section holds, and a
  // write touches nothing beyond the section: a put may stream it.
  static constexpr bool kPutStreams = true;
};

template <class DescT>
class OwnedKindFamily : public KeyedFamily<OwnedKindTraits<DescT>> {
  using Base = KeyedFamily<OwnedKindTraits<DescT>>;
  using Traits = OwnedKindTraits<DescT>;

 public:
  using Desc = DescT;
  using Record = typename Desc::Record;
  using Key = typename Traits::Key;
  using List = typename Base::List;

  static const KindSchema& Schema() { return Desc::Schema(); }
  static Owner ModuleOwner(const char* name, const char* version) {
    return Traits::OwnerFile(name, version);
  }

  // The database holds the rows of every module in one table: only the
  // module's own are handed out (all of them when no module is named).
  static int ReadAll(const char* name, const char* version, RecordList** list_out, uint32_t mode) {
    *list_out = nullptr;
    int result = Base::ReadAll(ModuleOwner(name, version), list_out, mode);
    if (result == 1 && IsOrvikProfile() && name != nullptr) {
      Key module;
      module.module_name = name != nullptr ? name : "";
      module.module_version = version != nullptr ? version : "";
      std::vector<Record*> others;
      List::ForEach(*list_out, [&](Record* r) {
        if (!Traits::InModule(*r, module)) others.push_back(r);
      });
      for (Record* r : others) {
        UnlinkRecord(*list_out, r);
        Traits::kFree(r);
      }
    }
    return result;
  }

  // The records of a list handed in belong to the module it is put to.
  static int PutCompleteList(const char* name, const char* version, RecordList* list) {
    List::ForEach(list, [&](Record* r) { Traits::SetOwner(r, name, version); });
    return Base::PutCompleteList(ModuleOwner(name, version), list);
  }
  static int Write(const char* name, const char* version, RecordList* list) {
    return Base::Write(ModuleOwner(name, version), list);
  }

  // The module's records that the key names, as copies (none when the
  // module's list cannot be read: *read says so).
  static bool AnyMatch(const Key& key, bool* read = nullptr) {
    RecordList* list = nullptr;
    bool ok = ReadAll(key.module_name, key.module_version, &list, MODE_READ) == 1;
    if (read != nullptr) *read = ok;
    bool any = false;
    if (ok) {
      List::ForEach(list, [&](Record* r) {
        any = Traits::Matches(*r, key);
        return !any;
      });
    }
    List::Free(list);
    return any;
  }

  // The kind's entry for the tool: the owner's key, then the key members.
  static const KindApi& Api() {
    static const KindApi api = [] {
      KindApi a;
      a.schema = &Desc::Schema();
      const auto labels = OwnerLabelsOf<Desc>();
      a.owner_names.assign(labels.begin(), labels.end());
      a.key_names = a.owner_names;
      a.key_names.insert(a.key_names.end(), Desc::kKeyMembers.begin(), Desc::kKeyMembers.end());
      a.list = [](const Texts& owner, RecordList** list) {
        if (owner.size() < Traits::kOwnerParts) return false;
        const char* version = Traits::kOwnerParts > 1 ? owner.back().c_str() : "";
        return ReadAll(owner[0].c_str(), version, list, MODE_READ) == 1;
      };
      a.get = [](const Texts& texts, void** record) {
        Record* found = nullptr;
        bool ok = Base::Get(KeyFrom(texts), &found) == 1;
        *record = found;
        return ok;
      };
      a.put = [](void* record) {
        bool written = false;
        return Desc::Put(static_cast<Record*>(record), &written) == 1 && written;
      };
      a.remove = [](const Texts& texts) { return Base::Delete(KeyFrom(texts)) == 1; };
      a.flag_names = [](QvFlagNames** table) {
        *table = NewFlagNames(Desc::Schema());
        return true;
      };
      a.stored = [](const void* record) -> void* {
        return Base::StoredCopy(*static_cast<const Record*>(record));
      };
      return a;
    }();
    return api;
  }

 private:
  // Texts from the tool name every part: the owner, then each key member.
  static Key KeyFrom(const Texts& texts) {
    constexpr size_t kOwner = Traits::kOwnerParts;
    Key key;
    key.module_name = texts.size() > 0 ? texts[0].c_str() : "";
    key.module_version = kOwner > 1 && texts.size() > 1 ? texts[1].c_str() : "";
    for (size_t i = 0; i < Traits::kParts; ++i) {
      key.parts[i] = i + kOwner < texts.size() ? texts[i + kOwner] : std::string();
    }
    return key;
  }
};

}  // namespace qv

#endif  // QUORVEX_RECORDS_OWNED_KIND_FAMILY_H_
