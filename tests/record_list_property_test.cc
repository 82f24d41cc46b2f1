// Random sequences of list operations checked step by step against a plain
// vector model: order, ring links, head, tail, count, cursor, the records
// freed, and the message of every refused operation.
//
// QUORVEX_PROPERTY_SEED=<n> replays from another base seed; a failure
// prints the seed of the failing sequence.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/record_list.h"
#include "support/scripted_host.h"
#include "support/test_records.h"

QV_DEFINE_LIST_OPERATIONS(TST, qvtest::TstRecord, qvtest::FreeTstRecord)

namespace qvtest {
namespace {

constexpr int kSequences = 20000;
constexpr int kMaxSteps = 40;

class Sequence {
 public:
  Sequence(ScriptedHost* host, uint32_t seed) : host_(host), rng_(seed) {}
  ~Sequence() { MPFreeTSTList(list_); }

  ::testing::AssertionResult Run() {
    if (MPNewTSTList(&list_) != 1 || list_ == nullptr) {
      return ::testing::AssertionFailure() << "no list";
    }
    int steps = Pick(1, kMaxSteps);
    for (int step = 0; step < steps; ++step) {
      host_->Clear();
      expected_errors_.clear();
      log_.str("");
      ::testing::AssertionResult done = Step();
      if (!done) return done << " at step " << step << " (" << log_.str() << ")";
      ::testing::AssertionResult checked = Check();
      if (!checked) return checked << " after step " << step << " (" << log_.str() << ")";
    }
    MPFreeTSTList(list_);
    list_ = nullptr;
    for (TstRecord* r : model_) ++expected_frees_[r->id];
    model_.clear();
    return CheckFrees();
  }

 private:
  int Pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(rng_); }
  int Size() const { return static_cast<int>(model_.size()); }

  TstRecord* Make() {
    int id = static_cast<int>(arena_.size());
    arena_.push_back(TstRecord{id, 0});
    expected_frees_.push_back(0);
    return &arena_.back();
  }

  void Expect(const char* message) { expected_errors_.push_back(message); }

  // The model's side of an insertion at 0-based index i.
  void ModelInsert(int i, TstRecord* r) {
    model_.insert(model_.begin() + i, r);
    if (cursor_ >= i) ++cursor_;
  }

  // The model's side of unlinking the node at 0-based index d.
  void ModelUnlink(int d) {
    if (Size() == 1) {
      cursor_ = -1;
    } else if (cursor_ == d) {
      cursor_ = d == 0 ? -1 : d - 1;
    } else if (cursor_ > d) {
      --cursor_;
    }
    model_.erase(model_.begin() + d);
  }

  // The model's side of MPAdd<code>At.
  void ModelAddAt(uint32_t position, TstRecord* r) {
    if (position == 0) {
      Expect("To use MPAddAt, mpindex must be greater than zero.");
    } else if (model_.empty() && position != 1) {
      Expect("This list is empty.  You must add this item as the 1st item.");
    } else if (position > model_.size() + 1) {
      Expect("Index exceeds possible itemcount.");
    } else {
      ModelInsert(static_cast<int>(position) - 1, r);
    }
  }

  int Result() const { return expected_errors_.empty() ? 1 : 0; }

  ::testing::AssertionResult Returned(int got) {
    if (got != Result()) return ::testing::AssertionFailure() << "returned " << got;
    return ::testing::AssertionSuccess();
  }

  ::testing::AssertionResult Step() {
    switch (Pick(0, 9)) {
      case 0: {
        uint32_t position = static_cast<uint32_t>(Pick(0, Size() + 2));
        log_ << "add at " << position;
        TstRecord* r = Make();
        ModelAddAt(position, r);
        return Returned(MPAddTSTAt(list_, position, r));
      }
      case 1: {
        uint32_t position = static_cast<uint32_t>(Pick(0, Size() + 1));
        log_ << "insert after " << position;
        TstRecord* r = Make();
        ModelAddAt(position + 1, r);
        return Returned(MPInsertTSTAfter(list_, position, r));
      }
      case 2: {
        log_ << "append";
        TstRecord* r = Make();
        ModelAddAt(static_cast<uint32_t>(Size() + 1), r);
        return Returned(MPAppendTST(list_, r));
      }
      case 3: {
        uint32_t position = static_cast<uint32_t>(Pick(0, Size() + 1));
        log_ << "set " << position;
        TstRecord* r = Make();
        if (position >= 1 && position <= model_.size()) {
          ++expected_frees_[model_[position - 1]->id];
          model_[position - 1] = r;
        } else {
          Expect("Cannot Find Node, exceeded node count");
        }
        return Returned(MPSetTSTNode(list_, position, r));
      }
      case 4: {
        uint32_t position = static_cast<uint32_t>(Pick(0, Size() + 1));
        log_ << "delete " << position;
        if (position >= 1 && position <= model_.size()) {
          ModelUnlink(static_cast<int>(position) - 1);
        } else {
          Expect("Cannot Find Node, exceeded node count");
        }
        return Returned(MPDeleteTSTNode(list_, position));
      }
      case 5: {
        bool listed = !model_.empty() && Pick(0, 3) != 0;
        int index = listed ? Pick(0, Size() - 1) : -1;
        TstRecord* r = listed ? model_[index] : Make();
        log_ << "remove " << (listed ? "listed" : "stranger") << " " << index;
        if (listed) {
          ModelUnlink(index);
        } else {
          Expect("Cannot delete a node not listed in list");
        }
        return Returned(MPRemoveTSTNode(list_, r));
      }
      case 6: {
        if (Pick(0, 3) != 0) return StepCursor();  // clears are rarer than steps
        log_ << "clear";
        for (TstRecord* r : model_) ++expected_frees_[r->id];
        model_.clear();
        cursor_ = -1;
        return Returned(MPClearTSTList(list_));
      }
      case 7:
      case 8:
        return StepCursor();
      default:
        return WalkDeleting();
    }
  }

  ::testing::AssertionResult StepCursor() {
    log_ << "step cursor from " << cursor_;
    TstRecord* expected = nullptr;
    if (cursor_ == Size() - 1) {
      cursor_ = -1;
    } else {
      ++cursor_;
      expected = model_[cursor_];
    }
    RecordNode* node = qv::StepCursor(list_);
    TstRecord* got = node == nullptr ? nullptr : static_cast<TstRecord*>(node->record);
    if (got != expected) return ::testing::AssertionFailure() << "stepped to the wrong record";
    return ::testing::AssertionSuccess();
  }

  // A whole walk that unlinks some records under the cursor, three ways.
  ::testing::AssertionResult WalkDeleting() {
    log_ << "walk deleting";
    std::vector<TstRecord*> before = model_;
    std::vector<TstRecord*> seen;
    bool ok = true;
    qv::ForEachRecord<TstRecord>(list_, [&](TstRecord* r) {
      seen.push_back(r);
      if (Pick(0, 2) != 0) return;
      int index = static_cast<int>(std::find(model_.begin(), model_.end(), r) - model_.begin());
      if (index == Size() || CursorIndex(list_) != index) {
        ok = false;
        return;
      }
      cursor_ = index;
      ModelUnlink(index);
      switch (Pick(0, 2)) {
        case 0:
          ok = ok && MPRemoveTSTNode(list_, r) == 1;
          break;
        case 1:
          ok = ok && qv::UnlinkRecord(list_, r);
          break;
        default:
          ok = ok && MPDeleteTSTNode(list_, static_cast<uint32_t>(index) + 1) == 1;
          break;
      }
    });
    cursor_ = -1;
    if (!ok) return ::testing::AssertionFailure() << "cursor or unlink went wrong during the walk";
    if (seen != before) return ::testing::AssertionFailure() << "the walk missed or repeated";
    return ::testing::AssertionSuccess();
  }

  ::testing::AssertionResult Check() {
    ::testing::AssertionResult shape = ListIs(list_, model_);
    if (!shape) return shape;
    if (CursorIndex(list_) != cursor_) {
      return ::testing::AssertionFailure()
             << "cursor at " << CursorIndex(list_) << ", expected " << cursor_;
    }
    if (host_->errors() != expected_errors_) {
      ::testing::AssertionResult wrong = ::testing::AssertionFailure();
      wrong << "messages [";
      for (const std::string& e : host_->errors()) wrong << e << "|";
      wrong << "] expected [";
      for (const std::string& e : expected_errors_) wrong << e << "|";
      return wrong << "]";
    }
    return CheckFrees();
  }

  ::testing::AssertionResult CheckFrees() {
    for (const TstRecord& r : arena_) {
      if (r.frees != expected_frees_[r.id]) {
        return ::testing::AssertionFailure() << "record " << r.id << " freed " << r.frees
                                             << " times, expected " << expected_frees_[r.id];
      }
    }
    return ::testing::AssertionSuccess();
  }

  ScriptedHost* host_;
  std::mt19937 rng_;
  RecordList* list_ = nullptr;
  std::deque<TstRecord> arena_;
  std::vector<int> expected_frees_;
  std::vector<TstRecord*> model_;
  int cursor_ = -1;  // index into model_, -1 for a null cursor
  std::vector<std::string> expected_errors_;
  std::ostringstream log_;
};

uint32_t BaseSeed() {
  const char* text = getenv("QUORVEX_PROPERTY_SEED");
  return text != nullptr ? static_cast<uint32_t>(strtoul(text, nullptr, 10)) : 20240601u;
}

TEST(RecordListPropertyTest, RandomSequencesMatchTheModel) {
  ScriptedHost host;
  uint32_t base = BaseSeed();
  for (int i = 0; i < kSequences; ++i) {
    uint32_t seed = base + static_cast<uint32_t>(i);
    Sequence sequence(&host, seed);
    ::testing::AssertionResult result = sequence.Run();
    if (!result) {
      FAIL() << "seed " << seed << " (replay with QUORVEX_PROPERTY_SEED=" << seed
             << "): " << result.message();
    }
  }
}

}  // namespace
}  // namespace qvtest
