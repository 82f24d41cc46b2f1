// Converters of typed field texts: dates, binary constants, OS and registry
// data types; and the date formatters.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/state.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"

namespace {

constexpr char kBadDate[] = "Bad date/time: must be of the form 00/00/00 00:00:00";
constexpr char kBadBinary[] = "Bad binary constant: use a format like \"00 A5 4E 01\"";

class ValueConvertersTest : public ::testing::Test {
 protected:
  ValueConvertersTest() {
    SetParseFile("C:\\PROFILE\\MODULES\\base.ssr");
    qv::State().parse_line = 3;
  }
  static std::vector<std::string> One(const std::string& message) {
    return {"C:\\PROFILE\\MODULES\\base.ssr : Line #3\n" + message};
  }

  qvtest::ScriptedHost host_;
};

// Seconds since 1970 counted the slow way, day by day of each year.
uint64_t SlowSeconds(int year, int month, int day, int hour, int minute, int second) {
  auto leap = [](int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; };
  static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  uint64_t days = 0;
  for (int y = 1970; y < year; ++y) days += leap(y) ? 366 : 365;
  for (int m = 1; m < month; ++m) days += kDays[m - 1] + (m == 2 && leap(year) ? 1 : 0);
  days += day - 1;
  return days * 86400 + hour * 3600 + minute * 60 + second;
}

std::string Formatted(int (*format)(uint32_t, char*), uint32_t value, int expected_result = 1) {
  char text[32];
  memset(text, '#', sizeof text);
  EXPECT_EQ(format(value, text), expected_result);
  return text;
}

// ---- dates -------------------------------------------------------------------

TEST_F(ValueConvertersTest, TwoDigitYearBelowSeventyIsInThisCentury) {
  uint32_t value = 0;
  EXPECT_EQ(ParseDateTime(&value, "12/31/99 23:59:59"), 1);
  EXPECT_EQ(value, 946684799u);
  EXPECT_EQ(value, SlowSeconds(1999, 12, 31, 23, 59, 59));
  EXPECT_EQ(ParseDateTime(&value, "01/01/00 00:00:00"), 1);
  EXPECT_EQ(value, 946684800u);
  EXPECT_EQ(value, SlowSeconds(2000, 1, 1, 0, 0, 0));
  EXPECT_EQ(ParseDateTime(&value, "12/31/69 23:59:59"), 1);
  EXPECT_EQ(value, SlowSeconds(2069, 12, 31, 23, 59, 59));
  EXPECT_EQ(ParseDateTime(&value, "01/01/70 00:00:01"), 1);
  EXPECT_EQ(value, 1u);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ValueConvertersTest, LeapDaysCount) {
  uint32_t value = 0;
  EXPECT_EQ(ParseDateTime(&value, "02/29/00 12:00:00"), 1);
  EXPECT_EQ(value, SlowSeconds(2000, 2, 29, 12, 0, 0));
  EXPECT_EQ(ParseDateTime(&value, "03/01/96 00:00:00"), 1);
  EXPECT_EQ(value, SlowSeconds(1996, 3, 1, 0, 0, 0));
}

TEST_F(ValueConvertersTest, DateNeedsExactlySixFields) {
  uint32_t value = 5;
  EXPECT_EQ(ParseDateTime(&value, "12/31/99"), 0);
  EXPECT_EQ(value, 0u);
  EXPECT_EQ(host_.errors(), One(kBadDate));
  host_.Clear();
  value = 5;
  EXPECT_EQ(ParseDateTime(&value, "1/2/3 4:5:6:7"), 0);
  EXPECT_EQ(value, 0u);
  EXPECT_EQ(host_.errors(), One(kBadDate));
}

TEST_F(ValueConvertersTest, EmptyDateIsNoDate) {
  uint32_t value = 5;
  EXPECT_EQ(ParseDateTime(&value, ""), 1);
  EXPECT_EQ(value, 0u);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ValueConvertersTest, DateDelimitersMayRepeatAndMix) {
  uint32_t value = 0;
  EXPECT_EQ(ParseDateTime(&value, "12\t31/99\n23 :59:59"), 1);
  EXPECT_EQ(value, 946684799u);
}

TEST_F(ValueConvertersTest, OnlyTheFirstEighteenCharactersAreLookedAt) {
  uint32_t value = 0;
  // The seventh field begins at the nineteenth character and is never seen.
  EXPECT_EQ(ParseDateTime(&value, "12/31/99 23:59:59 7"), 1);
  EXPECT_EQ(value, 946684799u);
  // The last field is cut: "59" becomes "5".
  EXPECT_EQ(ParseDateTime(&value, "12/31/99   23:59:59"), 1);
  EXPECT_EQ(value, SlowSeconds(1999, 12, 31, 23, 59, 5));
}

TEST_F(ValueConvertersTest, FourDigitYearIsAddedToNineteenHundred) {
  uint32_t value = 0;
  // "01/01/2000 00:00:00" is seen as "01/01/2000 00:00:0": year 3900,
  // beyond a 32-bit count, which keeps its low 32 bits.
  EXPECT_EQ(ParseDateTime(&value, "01/01/2000 00:00:00"), 1);
  EXPECT_EQ(value, static_cast<uint32_t>(SlowSeconds(3900, 1, 1, 0, 0, 0)));
}

TEST_F(ValueConvertersTest, FieldsWithoutDigitsReadZeroAndCarryOver) {
  uint32_t value = 0;
  // Month 13 is January of the next year; day 0 the last day before.
  EXPECT_EQ(ParseDateTime(&value, "13/0/98 24:00:00"), 1);
  EXPECT_EQ(value, SlowSeconds(1999, 1, 1, 0, 0, 0));
  EXPECT_EQ(ParseDateTime(&value, "xx/1/99 0:0:0"), 1);  // month 0: December before
  EXPECT_EQ(value, SlowSeconds(1998, 12, 1, 0, 0, 0));
}

TEST_F(ValueConvertersTest, FormatPrintsTheFieldsTheValueHolds) {
  EXPECT_EQ(Formatted(FormatDateTime, 946684799u), "12/31/99 23:59:59");
  EXPECT_EQ(Formatted(FormatDate, 946684799u), "12/31/99");
  EXPECT_EQ(Formatted(FormatTime, 946684799u), "23:59:59");
  EXPECT_EQ(Formatted(FormatDateTime, 946684800u), "01/01/00 00:00:00");
  EXPECT_EQ(Formatted(FormatDateTime, 1u), "01/01/70 00:00:01");
  EXPECT_EQ(Formatted(FormatDateTime, 0x80000000u), "01/19/38 03:14:08");
}

TEST_F(ValueConvertersTest, FormatLosesOnlyOneCentury) {
  EXPECT_EQ(Formatted(FormatDateTime, 0xFFFFFFFFu), "02/07/106 06:28:15");
}

TEST_F(ValueConvertersTest, FormatOfZeroIsEmpty) {
  EXPECT_EQ(Formatted(FormatDateTime, 0, 0), "");
  EXPECT_EQ(Formatted(FormatDate, 0, 0), "");
  EXPECT_EQ(Formatted(FormatTime, 0, 0), "");
}

TEST_F(ValueConvertersTest, ParsedDatesPrintAsWritten) {
  const char* dates[] = {"01/01/00 00:00:00", "02/29/04 13:14:15", "07/04/76 08:09:10",
                         "12/31/69 23:59:59", "10/10/10 10:10:10"};
  for (const char* text : dates) {
    uint32_t value = 0;
    ASSERT_EQ(ParseDateTime(&value, text), 1);
    EXPECT_EQ(Formatted(FormatDateTime, value), text);
  }
}

// ---- binary constants ------------------------------------------------------------

TEST_F(ValueConvertersTest, DoubleWordReadsMostSignificantByteFirst) {
  uint8_t bytes[4] = {0xEE, 0xEE, 0xEE, 0xEE};
  char text[] = "00 a5 4e 01";
  uint16_t count = 9;
  EXPECT_EQ(ParseHexBytes(bytes, text, &count, 1), 1);
  EXPECT_EQ(count, 4);
  const uint8_t expected[4] = {0x01, 0x4E, 0xA5, 0x00};
  EXPECT_EQ(memcmp(bytes, expected, 4), 0);
  uint32_t word = 0;
  memcpy(&word, bytes, 4);
  if (bytes[0] == static_cast<uint8_t>(word)) {  // a little-endian host
    EXPECT_EQ(word, 0x00A54E01u);
  }
}

TEST_F(ValueConvertersTest, ShortDoubleWordFillsTheHighBytes) {
  uint8_t bytes[4] = {0, 0, 0, 0};
  char text[] = "01";
  uint16_t count = 0;
  EXPECT_EQ(ParseHexBytes(bytes, text, &count, 1), 1);
  EXPECT_EQ(count, 1);
  const uint8_t expected[4] = {0, 0, 0, 0x01};  // 0x01000000
  EXPECT_EQ(memcmp(bytes, expected, 4), 0);
}

TEST_F(ValueConvertersTest, DoubleWordIgnoresTextBeyondFourBytes) {
  uint8_t bytes[8] = {0};
  char text[] = "11 22 33 44 55 zz";
  uint16_t count = 0;
  EXPECT_EQ(ParseHexBytes(bytes, text, &count, 1), 1);
  EXPECT_EQ(count, 4);
  const uint8_t expected[8] = {0x44, 0x33, 0x22, 0x11, 0, 0, 0, 0};
  EXPECT_EQ(memcmp(bytes, expected, 8), 0);
}

TEST_F(ValueConvertersTest, BytesReadForwardsWithCommasRemoved) {
  uint8_t bytes[8] = {0};
  char text[] = "  00,A5, 4e01,,ff ";
  uint16_t count = 0;
  EXPECT_EQ(ParseHexBytes(bytes, text, &count, 0), 1);
  EXPECT_EQ(count, 5);
  const uint8_t expected[8] = {0x00, 0xA5, 0x4E, 0x01, 0xFF, 0, 0, 0};
  EXPECT_EQ(memcmp(bytes, expected, 8), 0);
  EXPECT_STREQ(text, "  00A5 4e01ff ");  // the text is changed in place
}

TEST_F(ValueConvertersTest, EmptyBinaryTextHasNoBytes) {
  uint8_t bytes[4] = {7, 7, 7, 7};
  char text[] = " , \t";
  uint16_t count = 9;
  EXPECT_EQ(ParseHexBytes(bytes, text, &count, 0), 1);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(bytes[0], 7);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ValueConvertersTest, BinaryBytesAreTwoDigits) {
  uint8_t bytes[4] = {0, 0, 0, 0};
  char text[] = "0 A5";
  uint16_t count = 9;
  EXPECT_EQ(ParseHexBytes(bytes, text, &count, 1), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(host_.errors(), One(kBadBinary));
}

TEST_F(ValueConvertersTest, BadBinaryKeepsTheBytesBeforeIt) {
  uint8_t bytes[4] = {0, 0, 0, 0};
  char text[] = "12 34 G5 67";
  uint16_t count = 0;
  EXPECT_EQ(ParseHexBytes(bytes, text, &count, 0), 0);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(bytes[0], 0x12);
  EXPECT_EQ(bytes[1], 0x34);
  EXPECT_EQ(bytes[2], 0);
  EXPECT_EQ(host_.errors(), One(kBadBinary));
}

TEST_F(ValueConvertersTest, OddDigitAtTheEndIsBad) {
  uint8_t bytes[4] = {0, 0, 0, 0};
  char text[] = "123";
  uint16_t count = 0;
  EXPECT_EQ(ParseHexBytes(bytes, text, &count, 0), 0);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(host_.errors(), One(kBadBinary));
}

// ---- symbolic types ----------------------------------------------------------------

TEST_F(ValueConvertersTest, OsTypesIgnoreCase) {
  EXPECT_EQ(ParseOsType("win32_nt"), 2);
  EXPECT_EQ(ParseOsType("WIN32_S"), 0);
  EXPECT_EQ(ParseOsType("Win32_Windows"), 1);
  EXPECT_EQ(ParseOsType("WIN16"), 3);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ValueConvertersTest, UnknownOsTypeReadsAsTheFirst) {
  EXPECT_EQ(ParseOsType("WIN32"), 0);
  EXPECT_EQ(ParseOsType("WIN32_NT "), 0);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{One("Unsupported OS Type")[0],
                                                      One("Unsupported OS Type")[0]}));
}

TEST_F(ValueConvertersTest, RegDataTypesIgnoreCase) {
  const std::pair<const char*, int> names[] = {{"REG_NONE", 0},
                                               {"reg_sz", 1},
                                               {"REG_EXPAND_SZ", 2},
                                               {"REG_BINARY", 3},
                                               {"REG_DWORD", 4},
                                               {"REG_DWORD_LITTLE_ENDIAN", 4},
                                               {"Reg_Dword_Big_Endian", 5},
                                               {"REG_LINK", 6},
                                               {"REG_MULTI_SZ", 7},
                                               {"REG_RESOURCE_LIST", 8}};
  for (const auto& [name, code] : names) EXPECT_EQ(ParseRegDataType(name), code) << name;
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ValueConvertersTest, UnknownRegDataTypeReadsAsNone) {
  EXPECT_EQ(ParseRegDataType("REG_QWORD"), 0);
  EXPECT_EQ(host_.errors(), One("Unsupported REG Data Type"));
}

}  // namespace
