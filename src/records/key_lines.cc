#include "records/key_lines.h"

#include <functional>

namespace qv {

void KeyLines::Clear(size_t expected) {
  texts_.clear();
  // At most half full, so that a probe ends soon.
  size_t slots = 16;
  while (slots < 2 * expected) slots *= 2;
  slots_.assign(slots, Slot{});
  used_ = 0;
}

void KeyLines::Resize(size_t slots) {
  std::vector<Slot> old;
  old.swap(slots_);
  slots_.assign(slots, Slot{});
  used_ = 0;
  const size_t mask = slots - 1;
  for (const Slot& slot : old) {
    if (slot.length == SIZE_MAX) continue;
    size_t at = slot.hash & mask;
    while (slots_[at].length != SIZE_MAX) at = (at + 1) & mask;
    slots_[at] = slot;
    ++used_;
  }
}

int KeyLines::FirstLine(std::string_view key, int line) {
  if (slots_.empty()) Resize(16);
  const uint64_t hash = std::hash<std::string_view>()(key);
  const size_t mask = slots_.size() - 1;
  size_t at = hash & mask;
  for (; slots_[at].length != SIZE_MAX; at = (at + 1) & mask) {
    const Slot& slot = slots_[at];
    if (slot.hash == hash && std::string_view(texts_).substr(slot.offset, slot.length) == key) {
      return slot.line;
    }
  }
  slots_[at] = Slot{hash, texts_.size(), key.size(), line};
  texts_.append(key);
  if (++used_ * 2 > slots_.size()) Resize(slots_.size() * 2);
  return 0;
}

}  // namespace qv
