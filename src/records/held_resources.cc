#include "records/held_resources.h"

#include "records/family_io.h"
#include "records/record_codec.h"
#include "records/resource_family.h"
#include "records/resource_names.h"

namespace qv {
namespace {

using ResourceListOps = ListOps<ResourceRecord, &MPFreeResource>;

}  // namespace

HeldResources::HeldResources(RecordList* read) {
  ResourceListOps::ForEach(read, [&](ResourceRecord* record) {
    UnlinkRecord(read, record);
    slots_.push_back({record, kNone, 0, kNone});
    if (record->ResourceName[0] != '\0') Link(slots_.size() - 1);
  });
  ResourceListOps::Free(read);
}

HeldResources::~HeldResources() {
  for (Slot& slot : slots_) {
    if (slot.record != nullptr) MPFreeResource(slot.record);
  }
}

void HeldResources::Link(size_t slot) {
  slots_[slot].next_same = kNone;
  auto [found, added] = names_.try_emplace(slots_[slot].record->ResourceName, Chain{slot, slot});
  if (added) return;
  Chain& chain = found->second;
  if (slot > chain.last) {
    slots_[chain.last].next_same = slot;
    chain.last = slot;
  } else if (slot < chain.first) {
    slots_[slot].next_same = chain.first;
    chain.first = slot;
  } else {
    // A name given at a write to a text that stands between others with
    // that name (only a name put by hand can collide with a generated one).
    size_t before = chain.first;
    while (slots_[before].next_same < slot) before = slots_[before].next_same;
    slots_[slot].next_same = slots_[before].next_same;
    slots_[before].next_same = slot;
  }
}

const ResourceRecord* HeldResources::Find(const char* name) const {
  auto found = names_.find(name);
  return found != names_.end() ? slots_[found->second.first].record : nullptr;
}

void HeldResources::Put(ResourceRecord* record) {
  auto found = names_.find(record->ResourceName);
  if (found != names_.end()) {
    Slot& slot = slots_[found->second.first];
    record->lineNumber = slot.record->lineNumber;
    MPFreeResource(slot.record);
    slot.record = record;
    slot.length = kNone;
    return;
  }
  slots_.push_back({record, kNone, 0, kNone});
  Link(slots_.size() - 1);
}

bool HeldResources::Remove(const char* name) {
  auto found = names_.find(name);
  if (found == names_.end()) return false;
  for (size_t slot = found->second.first; slot != kNone; slot = slots_[slot].next_same) {
    MPFreeResource(slots_[slot].record);
    slots_[slot].record = nullptr;
  }
  names_.erase(found);
  return true;
}

RecordList* HeldResources::CopyList() const {
  RecordList* copy = nullptr;
  ResourceListOps::New(&copy);
  if (copy == nullptr) return nullptr;
  for (const Slot& slot : slots_) {
    ResourceRecord* twin = nullptr;
    if (slot.record != nullptr && MPCopyResource(&twin, slot.record)) {
      ResourceListOps::Append(copy, twin);
    }
  }
  return copy;
}

const std::string& HeldResources::SectionLines() {
  std::string lines;
  lines.reserve(lines_.size() + lines_.size() / 8 + 1024);
  for (size_t index = 0; index < slots_.size(); ++index) {
    Slot& slot = slots_[index];
    if (slot.record == nullptr) continue;
    if (slot.record->ResourceName[0] == '\0') {
      NextResourceName(slot.record->ResourceName, sizeof slot.record->ResourceName);
      Link(index);
      slot.length = kNone;
    }
    const size_t at = lines.size();
    if (slot.length != kNone) {
      lines.append(lines_, slot.at, slot.length);
    } else {
      AppendRecordLine(ResourceSchema(), slot.record, &lines);
    }
    slot.at = at;
    slot.length = lines.size() - at;
  }
  lines_.swap(lines);
  return lines_;
}

}  // namespace qv
