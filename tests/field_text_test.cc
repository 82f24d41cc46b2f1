// The record encoder writes numbers and flags directly; those bytes must be
// the ones the C writers produce through the typed field texts.

#include "core/field_text.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"

namespace {

std::string ThroughFieldText(const qv::FieldText& text) {
  char bytes[256];
  char* end = qv::PutFieldBytes(bytes, text.text, text.length, text.options);
  return std::string(bytes, end);
}

template <class Put>
std::string Direct(Put put) {
  char bytes[256];
  return std::string(bytes, put(bytes));
}

// Every combination of the options that change a field's bytes.
std::vector<uint32_t> AllOptions() {
  const uint32_t bits[] = {FO_OPTIONAL, FO_IAO, FO_END_RECORD, FO_UNQUOTED, FO_VERBATIM};
  std::vector<uint32_t> all;
  for (uint32_t mask = 0; mask < (1u << 5); ++mask) {
    uint32_t options = 0;
    for (int i = 0; i < 5; ++i) {
      if ((mask & (1u << i)) != 0) options |= bits[i];
    }
    all.push_back(options);
  }
  return all;
}

template <class Number>
void ExpectNumbersMatch(const std::vector<Number>& values,
                        qv::FieldText (*field_text)(Number, uint32_t)) {
  for (uint32_t options : AllOptions()) {
    for (Number value : values) {
      EXPECT_EQ(Direct([&](char* at) { return qv::PutNumberField(at, value, options); }),
                ThroughFieldText(field_text(value, options)))
          << value << " with options " << std::hex << options;
    }
  }
}

TEST(FieldTextTest, NumbersWrittenDirectlyMatchTheirFieldText) {
  ExpectNumbersMatch<uint32_t>(
      {0, 1, 9, 10, 4096, 2147483647u, 2147483648u, std::numeric_limits<uint32_t>::max()},
      qv::UnsignedFieldText);
  ExpectNumbersMatch<int32_t>(
      {0, 1, -1, 42, -42, std::numeric_limits<int32_t>::max(), std::numeric_limits<int32_t>::min()},
      qv::IntegerFieldText);
}

TEST(FieldTextTest, FlagsWrittenDirectlyMatchTheirFieldText) {
  for (uint32_t options : AllOptions()) {
    for (uint32_t value : {0u, 1u, 0x80000000u}) {
      EXPECT_EQ(Direct([&](char* at) { return qv::PutFlagField(at, value, options); }),
                ThroughFieldText(qv::FlagFieldText(value, options)))
          << value << " with options " << std::hex << options;
    }
  }
}

TEST(FieldTextTest, ShortAndLongTextsEscapeQuotesAlike) {
  // Texts up to a few bytes take a loop of their own; both ways must agree.
  for (const std::string text : {"", "\"", "a\"b", "\"\"\"\"\"\"\"\"", "12345678", "123456789",
                                 "a \"quoted\" word", "ends with a quote\""}) {
    std::string expected = "\"";
    for (char c : text) {
      if (c == '"') expected += '^';
      expected += c;
    }
    expected += "\",";
    EXPECT_EQ(Direct([&](char* at) { return qv::PutFieldBytes(at, text.data(), text.size(), 0); }),
              expected);
  }
}

}  // namespace
