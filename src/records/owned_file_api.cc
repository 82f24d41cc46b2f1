#include "records/owned_file_api.h"

#include <cstring>

#include "records/record_codec.h"

namespace qv {
namespace {

const char* MemberName(const KindSchema& schema, size_t offset) {
  for (const MemberSpec& m : schema.members) {
    if (m.offset == offset) return m.name;
  }
  return "";
}

const char* VersionKey(const OwnedFileKind& kind, const Texts& key) {
  return kind.version_size != 0 && key.size() > 1 ? key[1].c_str() : "";
}

// The tool keeps its record: the put works on a copy, and the file it was
// given comes back.
bool PutCopy(const OwnedFileKind& kind, void* record, const void* parent) {
  void* copy = nullptr;
  if (!CopyOwned(kind, &copy, record, 0, nullptr)) return false;
  bool ok = PutOwned(kind, &copy, parent);
  memcpy(static_cast<char*>(record) + kind.file_name_offset,
         static_cast<const char*>(copy) + kind.file_name_offset, kind.file_name_size);
  FreeRecord(copy);
  return ok;
}

}  // namespace

KindApi MakeOwnedFileApi(const OwnedFileKind& kind) {
  const OwnedFileKind* k = &kind;
  KindApi api;
  api.schema = kind.schema;
  api.key_names = {MemberName(*kind.schema, kind.name_offset)};
  if (kind.version_size != 0)
    api.key_names.push_back(MemberName(*kind.schema, kind.version_offset));
  api.list = [k](const Texts&, RecordList** list) { return ReadOwnedList(*k, list); };
  api.get = [k](const Texts& key, void** record) {
    return GetOwned(*k, key.at(0).c_str(), VersionKey(*k, key), record);
  };
  api.put = [k](void* record) { return PutCopy(*k, record, nullptr); };
  api.put_child = [k](void* record, const void* parent) { return PutCopy(*k, record, parent); };
  api.make_named_file = [k](const void* record) { return MakeNamedOwnedFile(*k, record); };
  api.remove = [k](const Texts& key) {
    return DeleteOwned(*k, key.at(0).c_str(), VersionKey(*k, key));
  };
  api.flag_names = [k](QvFlagNames** table) {
    *table = NewFlagNames(*k->schema);
    return true;
  };
  api.stored = [k](const void* record) -> void* {
    const char* at = static_cast<const char*>(record);
    const char* version = k->version_size != 0 ? at + k->version_offset : "";
    void* found = nullptr;
    GetOwned(*k, at + k->name_offset, version, &found);
    return found;
  };
  return api;
}

}  // namespace qv
