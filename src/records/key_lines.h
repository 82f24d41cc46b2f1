// The line each key of a section was first met on, for telling the lines
// that repeat a key.
//
// A check meets every record of a profile here. The keys are kept end to
// end in one buffer and found through an open-addressing table, both
// keeping their room from one section to the next: a map node and a string
// of their own for each key cost more than reading most lines.
#ifndef QUORVEX_RECORDS_KEY_LINES_H_
#define QUORVEX_RECORDS_KEY_LINES_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

class KeyLines {
 public:
  // Forgets every key, for a section of about `expected` records.
  void Clear(size_t expected);
  // The line `key` was first met on; 0 when it is new, and it is kept as
  // met on `line` (lines count from 1).
  int FirstLine(std::string_view key, int line);

 private:
  struct Slot {
    uint64_t hash = 0;
    size_t offset = 0;         // of the key's text in texts_
    size_t length = SIZE_MAX;  // SIZE_MAX: an empty slot
    int line = 0;
  };
  void Resize(size_t slots);

  std::string texts_;
  std::vector<Slot> slots_;
  size_t used_ = 0;
};

}  // namespace qv

#endif  // QUORVEX_RECORDS_KEY_LINES_H_
