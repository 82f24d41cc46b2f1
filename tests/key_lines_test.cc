// The table of keys a check has met in a section: the first line of each
// key, whatever the keys hold and however many there are, and nothing of a
// section before once it is cleared.
#include "records/key_lines.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

namespace {

TEST(KeyLinesTest, AKeyMetAgainGivesTheLineItWasFirstMetOn) {
  qv::KeyLines keys;
  keys.Clear(4);
  EXPECT_EQ(keys.FirstLine("SF\x1f"
                           "a.exe\x1f",
                           3),
            0);
  EXPECT_EQ(keys.FirstLine("SF\x1f"
                           "b.exe\x1f",
                           4),
            0);
  EXPECT_EQ(keys.FirstLine("SF\x1f"
                           "a.exe\x1f",
                           9),
            3);
  EXPECT_EQ(keys.FirstLine("SF\x1f"
                           "a.exe\x1f",
                           12),
            3);
  EXPECT_EQ(keys.FirstLine("SF\x1f"
                           "b.exe\x1f",
                           13),
            4);
}

TEST(KeyLinesTest, KeysDifferInEveryByte) {
  qv::KeyLines keys;
  keys.Clear(0);
  EXPECT_EQ(keys.FirstLine("", 1), 0);
  EXPECT_EQ(keys.FirstLine(std::string("a\0b", 3), 2), 0);
  EXPECT_EQ(keys.FirstLine(std::string("a\0c", 3), 3), 0);
  EXPECT_EQ(keys.FirstLine("a", 4), 0);
  EXPECT_EQ(keys.FirstLine("ab", 5), 0);
  EXPECT_EQ(keys.FirstLine("", 6), 1);
  EXPECT_EQ(keys.FirstLine(std::string("a\0c", 3), 7), 3);
  EXPECT_EQ(keys.FirstLine("a", 8), 4);
}

TEST(KeyLinesTest, ClearingForgetsASectionOfAnySize) {
  qv::KeyLines keys;
  keys.Clear(10);
  for (int i = 1; i <= 5000; ++i) EXPECT_EQ(keys.FirstLine(std::to_string(i), i), 0);
  // A small section after a large one: none of the large one's keys stays.
  keys.Clear(2);
  for (int i = 1; i <= 5000; ++i) ASSERT_EQ(keys.FirstLine(std::to_string(i), i + 1), 0) << i;
  keys.Clear(0);
  EXPECT_EQ(keys.FirstLine("1", 7), 0);
  EXPECT_EQ(keys.FirstLine("1", 8), 7);
}

TEST(KeyLinesTest, AgreesWithAMapOverManyKeysBeyondWhatWasExpected) {
  std::mt19937 rng(20261124u);
  qv::KeyLines keys;
  for (int section = 0; section < 20; ++section) {
    keys.Clear(rng() % 50);
    std::map<std::string, int> model;
    const int lines = 1 + static_cast<int>(rng() % 3000);
    for (int line = 1; line <= lines; ++line) {
      std::string key(rng() % 6, 'x');
      for (char& c : key) c = static_cast<char>('a' + rng() % 4);
      auto [at, fresh] = model.emplace(key, line);
      ASSERT_EQ(keys.FirstLine(key, line), fresh ? 0 : at->second) << key;
    }
  }
}

}  // namespace
