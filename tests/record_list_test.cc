// The record list operations, exercised on a kind of the tests' own (TST)
// and on the string list.
#include "records/record_list.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "core/state.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"
#include "support/test_records.h"

QV_DEFINE_LIST_OPERATIONS(TST, qvtest::TstRecord, qvtest::FreeTstRecord)

namespace qvtest {
namespace {

// An allocator that fails once its budget of successful calls is spent.
int g_allocations_left = 0;
void* FlakyAllocate(size_t size) {
  if (g_allocations_left == 0) return nullptr;
  --g_allocations_left;
  return calloc(1, size);
}
using FlakyOps = qv::ListOps<TstRecord, &FreeTstRecord, &FlakyAllocate>;

using Errors = std::vector<std::string>;

class RecordListTest : public ::testing::Test {
 protected:
  void SetUp() override {
    TstFreeCount() = 0;
    ASSERT_EQ(MPNewTSTList(&list_), 1);
    ASSERT_NE(list_, nullptr);
  }
  void TearDown() override { MPFreeTSTList(list_); }

  TstRecord* Make(int id) {
    records_.push_back(TstRecord{id, 0});
    return &records_.back();
  }

  // A list of `n` records with ids 1..n, built by appending.
  std::vector<TstRecord*> Fill(int n) {
    std::vector<TstRecord*> made;
    for (int i = 1; i <= n; ++i) {
      made.push_back(Make(i));
      EXPECT_EQ(MPAppendTST(list_, made.back()), 1);
    }
    return made;
  }

  // Walks the list with the cursor protocol, as callers do.
  std::vector<int> WalkIds() {
    std::vector<int> ids;
    list_->current = nullptr;
    while (list_->current != list_->tail) {
      list_->current = list_->current == nullptr ? list_->head : list_->current->next;
      ids.push_back(static_cast<TstRecord*>(list_->current->record)->id);
    }
    list_->current = nullptr;
    return ids;
  }

  ScriptedHost host_;
  RecordList* list_ = nullptr;
  std::deque<TstRecord> records_;
};

TEST_F(RecordListTest, NewListIsAllZeros) {
  EXPECT_EQ(list_->head, nullptr);
  EXPECT_EQ(list_->tail, nullptr);
  EXPECT_EQ(list_->current, nullptr);
  EXPECT_EQ(list_->count, 0u);
  EXPECT_EQ(list_->reserved, 0u);
}

TEST_F(RecordListTest, NewListWhenMemoryIsShortHandsOutNullAndReturnsOne) {
  RecordList* other = list_;  // overwritten
  g_allocations_left = 0;
  EXPECT_EQ(FlakyOps::New(&other), 1);
  EXPECT_EQ(other, nullptr);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(RecordListTest, NewListWithoutOutPointerFails) {
  EXPECT_EQ(MPNewTSTList(nullptr), 0);
}

TEST_F(RecordListTest, PositionOneOnEmptyListMakesOneNodeRing) {
  TstRecord* a = Make(1);
  ASSERT_EQ(MPAddTSTAt(list_, 1, a), 1);
  EXPECT_TRUE(ListIs(list_, std::vector{a}));
  EXPECT_EQ(list_->head, list_->tail);
  EXPECT_EQ(list_->head->next, list_->head);
  EXPECT_EQ(list_->head->prev, list_->head);
  EXPECT_EQ(list_->current, nullptr);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(RecordListTest, PositionZeroIsRefused) {
  TstRecord* a = Make(1);
  EXPECT_EQ(MPAddTSTAt(list_, 0, a), 0);
  EXPECT_EQ(host_.errors(), Errors{"To use MPAddAt, mpindex must be greater than zero."});
  EXPECT_TRUE(ListIs(list_, std::vector<TstRecord*>{}));

  auto made = Fill(2);
  host_.Clear();
  EXPECT_EQ(MPAddTSTAt(list_, 0, a), 0);
  EXPECT_EQ(host_.errors(), Errors{"To use MPAddAt, mpindex must be greater than zero."});
  EXPECT_TRUE(ListIs(list_, made));
  EXPECT_EQ(a->frees, 0);
}

TEST_F(RecordListTest, CountPlusOneAppendsAndMovesTail) {
  auto made = Fill(3);
  TstRecord* d = Make(4);
  RecordNode* old_tail = list_->tail;
  ASSERT_EQ(MPAddTSTAt(list_, 4, d), 1);
  made.push_back(d);
  EXPECT_TRUE(ListIs(list_, made));
  EXPECT_NE(list_->tail, old_tail);
  EXPECT_EQ(list_->tail->record, d);
  EXPECT_EQ(list_->tail->next, list_->head);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(RecordListTest, CountPlusTwoFailsAndLeavesCountUnchanged) {
  auto made = Fill(3);
  TstRecord* e = Make(5);
  EXPECT_EQ(MPAddTSTAt(list_, 5, e), 0);
  EXPECT_EQ(host_.errors(), Errors{"Index exceeds possible itemcount."});
  EXPECT_EQ(list_->count, 3u);
  EXPECT_TRUE(ListIs(list_, made));
  EXPECT_EQ(e->frees, 0);
}

TEST_F(RecordListTest, PositionTwoOnEmptyListAsksForTheFirstItem) {
  TstRecord* a = Make(1);
  EXPECT_EQ(MPAddTSTAt(list_, 2, a), 0);
  EXPECT_EQ(host_.errors(), Errors{"This list is empty.  You must add this item as the 1st item."});
  EXPECT_TRUE(ListIs(list_, std::vector<TstRecord*>{}));
  EXPECT_EQ(a->frees, 0);
}

TEST_F(RecordListTest, PositionOneOnFilledListBecomesHead) {
  auto made = Fill(2);
  TstRecord* z = Make(0);
  RecordNode* old_tail = list_->tail;
  ASSERT_EQ(MPAddTSTAt(list_, 1, z), 1);
  made.insert(made.begin(), z);
  EXPECT_TRUE(ListIs(list_, made));
  EXPECT_EQ(list_->tail, old_tail);
}

TEST_F(RecordListTest, MiddlePositionInsertsBeforeTheNodeThere) {
  auto made = Fill(3);
  TstRecord* m = Make(9);
  ASSERT_EQ(MPAddTSTAt(list_, 2, m), 1);
  made.insert(made.begin() + 1, m);
  EXPECT_TRUE(ListIs(list_, made));
  EXPECT_EQ(WalkIds(), (std::vector<int>{1, 9, 2, 3}));
}

TEST_F(RecordListTest, AddingLeavesTheCursorOnItsNode) {
  Fill(3);
  list_->current = list_->head->next;
  ASSERT_EQ(MPAddTSTAt(list_, 1, Make(0)), 1);
  EXPECT_EQ(CursorIndex(list_), 2);
  EXPECT_EQ(static_cast<TstRecord*>(list_->current->record)->id, 2);
}

TEST_F(RecordListTest, InsertAfterAddsAtTheNextPosition) {
  auto made = Fill(2);
  TstRecord* front = Make(10);
  TstRecord* middle = Make(11);
  TstRecord* back = Make(12);
  ASSERT_EQ(MPInsertTSTAfter(list_, 0, front), 1);
  ASSERT_EQ(MPInsertTSTAfter(list_, 1, middle), 1);
  ASSERT_EQ(MPInsertTSTAfter(list_, 4, back), 1);
  EXPECT_TRUE(ListIs(list_, std::vector{front, middle, made[0], made[1], back}));
  EXPECT_EQ(MPInsertTSTAfter(list_, 6, Make(13)), 0);
  EXPECT_EQ(host_.errors(), Errors{"Index exceeds possible itemcount."});
  EXPECT_EQ(list_->count, 5u);
}

TEST_F(RecordListTest, AppendBuildsTheListInOrder) {
  auto made = Fill(5);
  EXPECT_TRUE(ListIs(list_, made));
  EXPECT_EQ(WalkIds(), (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST_F(RecordListTest, NodeMemoryFailureLeavesTheListAsItWas) {
  auto made = Fill(2);
  TstRecord* c = Make(3);
  g_allocations_left = 0;
  EXPECT_EQ(FlakyOps::AddAt(list_, 3, c), 0);
  EXPECT_EQ(host_.errors(), Errors{"Cannot create memory for node."});
  EXPECT_TRUE(ListIs(list_, made));
  EXPECT_EQ(c->frees, 0);

  host_.Clear();
  RecordList* empty = nullptr;
  g_allocations_left = 1;
  ASSERT_EQ(FlakyOps::New(&empty), 1);
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(FlakyOps::AddAt(empty, 1, c), 0);
  EXPECT_EQ(host_.errors(), Errors{"Cannot create memory for node."});
  EXPECT_TRUE(ListIs(empty, std::vector<TstRecord*>{}));
  EXPECT_EQ(FlakyOps::Free(empty), 1);
}

TEST_F(RecordListTest, WalkComingBackToHeadEarlyIsErrorFortyThree) {
  // A header whose count is larger than its ring: the walk reaches head
  // before the position.
  auto made = Fill(2);
  list_->count = 3;
  TstRecord* c = Make(3);
  EXPECT_EQ(MPAddTSTAt(list_, 3, c), 0);
  EXPECT_EQ(host_.errors(),
            Errors{"This error should never happen, please contact vendor.  QUORVEX ERROR 43."});
  EXPECT_EQ(list_->count, 3u);
  list_->count = 2;
  EXPECT_TRUE(ListIs(list_, made));
  EXPECT_EQ(c->frees, 0);
}

TEST_F(RecordListTest, WalkComingBackToHeadAtTheNewCountAppends) {
  auto made = Fill(2);
  list_->count = 3;
  TstRecord* d = Make(4);
  ASSERT_EQ(MPAddTSTAt(list_, 4, d), 1);
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_EQ(list_->count, 4u);
  EXPECT_EQ(list_->tail->record, d);
  list_->count = 3;
  made.push_back(d);
  EXPECT_TRUE(ListIs(list_, made));
}

TEST_F(RecordListTest, SetFreesTheOldRecordAndKeepsTheNode) {
  auto made = Fill(3);
  RecordNode* node = list_->head->next;
  list_->current = node;
  TstRecord* n = Make(20);
  ASSERT_EQ(MPSetTSTNode(list_, 2, n), 1);
  EXPECT_EQ(made[1]->frees, 1);
  EXPECT_EQ(TstFreeCount(), 1);
  EXPECT_EQ(list_->head->next, node);
  EXPECT_EQ(node->record, n);
  EXPECT_EQ(list_->current, node);
  made[1] = n;
  EXPECT_TRUE(ListIs(list_, made));
}

TEST_F(RecordListTest, SetTheSameRecordKeepsIt) {
  auto made = Fill(2);
  ASSERT_EQ(MPSetTSTNode(list_, 2, made[1]), 1);
  EXPECT_EQ(made[1]->frees, 0);
  EXPECT_TRUE(ListIs(list_, made));
}

TEST_F(RecordListTest, SetAndDeleteOnEmptyListAreRefused) {
  TstRecord* a = Make(1);
  EXPECT_EQ(MPSetTSTNode(list_, 1, a), 0);
  EXPECT_EQ(MPDeleteTSTNode(list_, 1), 0);
  EXPECT_EQ(host_.errors(), (Errors{"Cannot Find Node, exceeded node count",
                                    "Cannot Find Node, exceeded node count"}));
  EXPECT_TRUE(ListIs(list_, std::vector<TstRecord*>{}));
  EXPECT_EQ(a->frees, 0);
}

TEST_F(RecordListTest, SetBeyondTheCountOrAtZeroIsRefused) {
  auto made = Fill(3);
  TstRecord* n = Make(20);
  EXPECT_EQ(MPSetTSTNode(list_, 4, n), 0);
  EXPECT_EQ(MPSetTSTNode(list_, 0, n), 0);
  EXPECT_EQ(host_.errors(), (Errors{"Cannot Find Node, exceeded node count",
                                    "Cannot Find Node, exceeded node count"}));
  EXPECT_TRUE(ListIs(list_, made));
  EXPECT_EQ(TstFreeCount(), 0);
}

TEST_F(RecordListTest, DeleteUnlinksTheNodeButNotTheRecord) {
  auto made = Fill(3);
  ASSERT_EQ(MPDeleteTSTNode(list_, 2), 1);
  EXPECT_EQ(made[1]->frees, 0);
  EXPECT_EQ(TstFreeCount(), 0);
  EXPECT_TRUE(ListIs(list_, std::vector{made[0], made[2]}));
}

TEST_F(RecordListTest, DeleteBeyondTheCountOrAtZeroIsRefused) {
  auto made = Fill(2);
  EXPECT_EQ(MPDeleteTSTNode(list_, 3), 0);
  EXPECT_EQ(MPDeleteTSTNode(list_, 0), 0);
  EXPECT_EQ(host_.errors(), (Errors{"Cannot Find Node, exceeded node count",
                                    "Cannot Find Node, exceeded node count"}));
  EXPECT_TRUE(ListIs(list_, made));
}

TEST_F(RecordListTest, DeleteByPositionUnlinksTheFirstNodeHoldingThatRecord) {
  auto made = Fill(2);
  ASSERT_EQ(MPAppendTST(list_, made[0]), 1);  // record 1 listed twice: [1, 2, 1]
  RecordNode* last = list_->tail;
  ASSERT_EQ(MPDeleteTSTNode(list_, 3), 1);
  // The second pass finds record 1 at head first, so head goes.
  EXPECT_TRUE(ListIs(list_, std::vector{made[1], made[0]}));
  EXPECT_EQ(list_->tail, last);
  MPClearTSTList(list_);  // would free record 1 twice otherwise
  EXPECT_EQ(made[0]->frees, 1);
}

TEST_F(RecordListTest, DeletingTheOnlyNodeEmptiesTheList) {
  TstRecord* a = Make(1);
  ASSERT_EQ(MPAppendTST(list_, a), 1);
  list_->current = list_->head;
  ASSERT_EQ(MPDeleteTSTNode(list_, 1), 1);
  EXPECT_EQ(list_->head, nullptr);
  EXPECT_EQ(list_->tail, nullptr);
  EXPECT_EQ(list_->current, nullptr);
  EXPECT_EQ(list_->count, 0u);
  EXPECT_EQ(a->frees, 0);
  // The empty list takes a record again at position 1.
  ASSERT_EQ(MPAppendTST(list_, a), 1);
  EXPECT_TRUE(ListIs(list_, std::vector{a}));
}

TEST_F(RecordListTest, DeletingHeadMovesHead) {
  auto made = Fill(3);
  ASSERT_EQ(MPDeleteTSTNode(list_, 1), 1);
  EXPECT_TRUE(ListIs(list_, std::vector{made[1], made[2]}));
}

TEST_F(RecordListTest, DeletingTailMovesTail) {
  auto made = Fill(3);
  ASSERT_EQ(MPDeleteTSTNode(list_, 3), 1);
  EXPECT_TRUE(ListIs(list_, std::vector{made[0], made[1]}));
}

TEST_F(RecordListTest, DeletingHeadUnderTheCursorClearsTheCursor) {
  Fill(3);
  list_->current = list_->head;
  ASSERT_EQ(MPDeleteTSTNode(list_, 1), 1);
  EXPECT_EQ(list_->current, nullptr);
}

TEST_F(RecordListTest, DeletingAMiddleNodeUnderTheCursorMovesItBack) {
  Fill(3);
  RecordNode* first = list_->head;
  list_->current = first->next;
  ASSERT_EQ(MPDeleteTSTNode(list_, 2), 1);
  EXPECT_EQ(list_->current, first);
}

TEST_F(RecordListTest, DeletingTailUnderTheCursorEndsTheWalk) {
  Fill(3);
  list_->current = list_->tail;
  ASSERT_EQ(MPDeleteTSTNode(list_, 3), 1);
  EXPECT_EQ(list_->current, list_->tail);
  EXPECT_EQ(qv::StepCursor(list_), nullptr);
}

TEST_F(RecordListTest, DeletingOtherNodesLeavesTheCursorOnItsNode) {
  Fill(5);
  RecordNode* third = list_->head->next->next;
  list_->current = third;
  ASSERT_EQ(MPDeleteTSTNode(list_, 1), 1);
  ASSERT_EQ(MPDeleteTSTNode(list_, 3), 1);  // record 4
  EXPECT_EQ(list_->current, third);
  EXPECT_EQ(WalkIds(), (std::vector<int>{2, 3, 5}));
}

// Every position under the cursor: the walk goes on with the node that
// followed the deleted one, and visits every other record once.
TEST_F(RecordListTest, DeletingTheNodeUnderTheCursorLetsTheWalkContinue) {
  for (int victim = 1; victim <= 4; ++victim) {
    SCOPED_TRACE(victim);
    MPClearTSTList(list_);
    Fill(4);
    std::vector<int> seen;
    list_->current = nullptr;
    while (list_->current != list_->tail) {
      list_->current = list_->current == nullptr ? list_->head : list_->current->next;
      int id = static_cast<TstRecord*>(list_->current->record)->id;
      seen.push_back(id);
      if (id == victim) {
        ASSERT_EQ(MPDeleteTSTNode(list_, victim), 1);
      }
    }
    list_->current = nullptr;
    EXPECT_EQ(seen, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(list_->count, 3u);
  }
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(RecordListTest, RemovingEveryRecordDuringAWalkVisitsEachOnce) {
  auto made = Fill(4);
  std::vector<int> seen;
  qv::ForEachRecord<TstRecord>(list_, [&](TstRecord* record) {
    seen.push_back(record->id);
    EXPECT_EQ(MPRemoveTSTNode(list_, record), 1);
  });
  EXPECT_EQ(seen, (std::vector<int>{1, 2, 3, 4}));
  EXPECT_TRUE(ListIs(list_, std::vector<TstRecord*>{}));
  EXPECT_EQ(TstFreeCount(), 0);
}

TEST_F(RecordListTest, RemoveUnlinksTheNodeHoldingTheRecord) {
  auto made = Fill(3);
  ASSERT_EQ(MPRemoveTSTNode(list_, made[2]), 1);
  EXPECT_TRUE(ListIs(list_, std::vector{made[0], made[1]}));
  EXPECT_EQ(made[2]->frees, 0);
}

TEST_F(RecordListTest, RemovingARecordNotListedIsReported) {
  auto made = Fill(2);
  TstRecord* stranger = Make(7);
  EXPECT_EQ(MPRemoveTSTNode(list_, stranger), 0);
  EXPECT_EQ(host_.errors(), Errors{"Cannot delete a node not listed in list"});
  EXPECT_TRUE(ListIs(list_, made));

  host_.Clear();
  MPClearTSTList(list_);
  EXPECT_EQ(MPRemoveTSTNode(list_, stranger), 0);
  EXPECT_EQ(host_.errors(), Errors{"Cannot delete a node not listed in list"});
}

TEST_F(RecordListTest, ClearFreesEveryRecordAndKeepsTheHeader) {
  auto made = Fill(3);
  list_->current = list_->head;
  ASSERT_EQ(MPClearTSTList(list_), 1);
  for (TstRecord* r : made) EXPECT_EQ(r->frees, 1);
  EXPECT_EQ(TstFreeCount(), 3);
  EXPECT_TRUE(ListIs(list_, std::vector<TstRecord*>{}));
  EXPECT_EQ(MPClearTSTList(list_), 1);
  EXPECT_EQ(TstFreeCount(), 3);
  TstRecord* again = Make(9);
  ASSERT_EQ(MPAddTSTAt(list_, 1, again), 1);
  EXPECT_TRUE(ListIs(list_, std::vector{again}));
}

TEST_F(RecordListTest, FreeFreesEveryRecord) {
  RecordList* other = nullptr;
  ASSERT_EQ(MPNewTSTList(&other), 1);
  TstRecord* a = Make(1);
  TstRecord* b = Make(2);
  ASSERT_EQ(MPAppendTST(other, a), 1);
  ASSERT_EQ(MPAppendTST(other, b), 1);
  EXPECT_EQ(MPFreeTSTList(other), 1);
  EXPECT_EQ(a->frees, 1);
  EXPECT_EQ(b->frees, 1);
}

TEST_F(RecordListTest, FreeOfNullListReturnsOne) {
  EXPECT_EQ(MPFreeTSTList(nullptr), 1);
  EXPECT_EQ(MPClearTSTList(nullptr), 1);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(RecordListTest, NullRecordsAreKeptAndNotFreed) {
  ASSERT_EQ(MPAppendTST(list_, nullptr), 1);
  EXPECT_EQ(list_->head->record, nullptr);
  EXPECT_EQ(MPClearTSTList(list_), 1);
  EXPECT_EQ(TstFreeCount(), 0);
}

TEST_F(RecordListTest, OperationsOnANullListAreReported) {
  TstRecord* a = Make(1);
  EXPECT_EQ(MPAddTSTAt(nullptr, 1, a), 0);
  EXPECT_EQ(MPInsertTSTAfter(nullptr, 0, a), 0);
  EXPECT_EQ(MPAppendTST(nullptr, a), 0);
  EXPECT_EQ(MPSetTSTNode(nullptr, 1, a), 0);
  EXPECT_EQ(MPDeleteTSTNode(nullptr, 1), 0);
  EXPECT_EQ(MPRemoveTSTNode(nullptr, a), 0);
  EXPECT_EQ(host_.errors(), Errors(6, "The list does not exist."));
  EXPECT_EQ(a->frees, 0);
}

TEST_F(RecordListTest, MessagesCarryNoLinePrefix) {
  qv::State().parse_line = 12;
  strcpy(qv::State().parse_file, "somewhere.mo");
  EXPECT_EQ(MPAddTSTAt(list_, 0, Make(1)), 0);
  ASSERT_EQ(host_.boxes().size(), 1u);
  EXPECT_EQ(host_.errors()[0], "To use MPAddAt, mpindex must be greater than zero.");
}

TEST_F(RecordListTest, WalkOfAnEmptyListYieldsNothing) {
  int visits = 0;
  qv::ForEachRecord<TstRecord>(list_, [&](TstRecord*) { ++visits; });
  EXPECT_EQ(visits, 0);
  EXPECT_EQ(qv::StepCursor(list_), nullptr);
  EXPECT_EQ(list_->current, nullptr);
  qv::ForEachRecord<TstRecord>(nullptr, [&](TstRecord*) { ++visits; });
  EXPECT_EQ(visits, 0);
}

TEST_F(RecordListTest, WalkStopsWhenTheVisitSaysSoAndResetsTheCursor) {
  Fill(4);
  std::vector<int> seen;
  qv::ForEachRecord<TstRecord>(list_, [&](TstRecord* record) {
    seen.push_back(record->id);
    return record->id < 2;
  });
  EXPECT_EQ(seen, (std::vector<int>{1, 2}));
  EXPECT_EQ(list_->current, nullptr);
}

TEST_F(RecordListTest, StepCursorGoesRoundOnceThenStartsAgain) {
  Fill(2);
  using Ops = qv::ListOps<TstRecord, &FreeTstRecord>;
  std::vector<int> seen;
  while (TstRecord* r = Ops::Next(list_)) seen.push_back(r->id);
  EXPECT_EQ(list_->current, nullptr);
  while (TstRecord* r = Ops::Next(list_)) seen.push_back(r->id);
  EXPECT_EQ(seen, (std::vector<int>{1, 2, 1, 2}));
}

TEST_F(RecordListTest, ForEachOfTheOperationsWalksInOrder) {
  Fill(3);
  std::vector<int> seen;
  qv::ListOps<TstRecord, &FreeTstRecord>::ForEach(
      list_, [&](TstRecord* record) { seen.push_back(record->id); });
  EXPECT_EQ(seen, (std::vector<int>{1, 2, 3}));
}

TEST_F(RecordListTest, FindNodeByRecordFindsTheFirstNodeOrNone) {
  auto made = Fill(3);
  EXPECT_EQ(qv::FindNodeByRecord(list_, made[2]), list_->tail);
  EXPECT_EQ(qv::FindNodeByRecord(list_, made[0]), list_->head);
  EXPECT_EQ(qv::FindNodeByRecord(list_, Make(8)), nullptr);
  MPClearTSTList(list_);
  EXPECT_EQ(qv::FindNodeByRecord(list_, made[0]), nullptr);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(RecordListTest, UnlinkRecordDuringAWalkContinuesWithTheNextRecord) {
  auto made = Fill(5);
  std::vector<int> seen;
  qv::ForEachRecord<TstRecord>(list_, [&](TstRecord* record) {
    seen.push_back(record->id);
    if (record->id % 2 == 1) {
      EXPECT_TRUE(qv::UnlinkRecord(list_, record));
    }
  });
  EXPECT_EQ(seen, (std::vector<int>{1, 2, 3, 4, 5}));
  EXPECT_TRUE(ListIs(list_, std::vector{made[1], made[3]}));
  EXPECT_EQ(TstFreeCount(), 0);
  EXPECT_FALSE(qv::UnlinkRecord(list_, made[0]));
  EXPECT_FALSE(qv::UnlinkRecord(nullptr, made[0]));
  EXPECT_EQ(host_.errors(),
            (Errors{"Cannot delete a node not listed in list", "The list does not exist."}));
}

TEST_F(RecordListTest, ReplaceRecordPutsTheCopyInPlaceAndFreesTheStoredOne) {
  using Ops = qv::ListOps<TstRecord, &FreeTstRecord>;
  auto made = Fill(3);
  TstRecord* copy = Make(22);
  ASSERT_TRUE(Ops::ReplaceRecord(list_, made[1], copy));
  EXPECT_EQ(made[1]->frees, 1);
  EXPECT_TRUE(ListIs(list_, std::vector{made[0], copy, made[2]}));

  TstRecord* stranger = Make(30);
  EXPECT_FALSE(Ops::ReplaceRecord(list_, stranger, Make(31)));
  EXPECT_EQ(host_.errors(), Errors{"Cannot copy a node not listed in list"});
  EXPECT_EQ(stranger->frees, 0);
  EXPECT_EQ(TstFreeCount(), 1);
}

// The string list: the same operations, strings freed with free().
class StringListTest : public ::testing::Test {
 protected:
  ScriptedHost host_;
};

std::vector<std::string> Strings(RecordList* list) {
  std::vector<std::string> out;
  qv::ForEachRecord<char>(list, [&](char* text) { out.emplace_back(text); });
  return out;
}

TEST_F(StringListTest, AddAtBuildsTheListAndFreeReleasesIt) {
  RecordList* list = nullptr;
  ASSERT_EQ(MPNewStringList(&list), 1);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count, 0u);
  ASSERT_EQ(MPAddAt(list, 1, strdup("$/Second")), 1);
  ASSERT_EQ(MPAddAt(list, list->count + 1, strdup("$/Third")), 1);
  ASSERT_EQ(MPAddAt(list, 1, strdup("$/First")), 1);
  EXPECT_EQ(Strings(list), (std::vector<std::string>{"$/First", "$/Second", "$/Third"}));
  EXPECT_TRUE(ListIs(list, std::vector<char*>{static_cast<char*>(list->head->record),
                                              static_cast<char*>(list->head->next->record),
                                              static_cast<char*>(list->tail->record)}));
  EXPECT_EQ(MPFreeStringList(list), 1);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(StringListTest, AddAtReportsLikeEveryKind) {
  RecordList* list = nullptr;
  ASSERT_EQ(MPNewStringList(&list), 1);
  char* text = strdup("kept");
  EXPECT_EQ(MPAddAt(list, 0, text), 0);
  EXPECT_EQ(MPAddAt(list, 2, text), 0);
  ASSERT_EQ(MPAddAt(list, 1, text), 1);
  EXPECT_EQ(MPAddAt(list, 3, text), 0);
  EXPECT_EQ(host_.errors(), (Errors{"To use MPAddAt, mpindex must be greater than zero.",
                                    "This list is empty.  You must add this item as the 1st item.",
                                    "Index exceeds possible itemcount."}));
  EXPECT_EQ(Strings(list), std::vector<std::string>{"kept"});
  EXPECT_EQ(MPFreeStringList(list), 1);
}

TEST_F(StringListTest, FreeOfNullStringListReturnsOne) {
  EXPECT_EQ(MPFreeStringList(nullptr), 1);
  EXPECT_TRUE(host_.errors().empty());
}

}  // namespace
}  // namespace qvtest
