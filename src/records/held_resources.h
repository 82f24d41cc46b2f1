// The texts of one language while they are held for change.
//
// A held language is written whole each time it is written, and it may
// hold tens of thousands of texts of which a put changes one. So the texts
// keep, beside their records, the bytes each wrote last: a write puts
// together the lines of the texts changed since and copies the others, and
// never reads the record of a text no put touched. A name finds its texts
// without a walk.
//
// The order and the choices are those of a list of the texts in file order:
// a put takes the place of the first text with its name or goes at the end,
// a delete takes every text with the name, and a write gives each text
// without a name a generated one, in order.
#ifndef QUORVEX_RECORDS_HELD_RESOURCES_H_
#define QUORVEX_RECORDS_HELD_RESOURCES_H_

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "quorvex/list.h"
#include "quorvex/resources.h"

namespace qv {

class HeldResources {
 public:
  // Takes over the records of read (the texts of the file, in order) and
  // frees the list.
  explicit HeldResources(RecordList* read);
  ~HeldResources();
  HeldResources(const HeldResources&) = delete;
  HeldResources& operator=(const HeldResources&) = delete;

  // The first text named exactly name (case counts), or nullptr.
  const ResourceRecord* Find(const char* name) const;

  // Takes over record, which has a name: it replaces the first text with
  // that name, keeping that text's line number, or goes at the end.
  void Put(ResourceRecord* record);

  // Deletes every text named exactly name; false when there was none.
  bool Remove(const char* name);

  // A copy of every text, in order; nullptr when memory runs short.
  RecordList* CopyList() const;

  // The section's lines, every text in order, after giving each text
  // without a name a generated one. Valid until the next change.
  const std::string& SectionLines();

 private:
  static constexpr size_t kNone = static_cast<size_t>(-1);

  struct Slot {
    ResourceRecord* record;  // nullptr once deleted
    size_t next_same;        // the next live slot with the same name
    size_t at;               // where its line starts in lines_
    size_t length;           // kNone until its line is in lines_
  };
  struct Chain {
    size_t first;
    size_t last;
  };

  // Enters a named slot in the chain of its name, in slot order.
  void Link(size_t slot);

  std::vector<Slot> slots_;
  std::unordered_map<std::string, Chain> names_;
  // The lines last put together, which clean slots point into.
  std::string lines_;
};

}  // namespace qv

#endif  // QUORVEX_RECORDS_HELD_RESOURCES_H_
