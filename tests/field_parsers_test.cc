// The field parsers: one field at the cursor, the cursor moved past it and
// its comma, every error reported with the parse file and line.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/state.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"

namespace {

constexpr char kNoOpeningQuote[] = "Bad string constant: must begin with double quote";
constexpr char kNoClosingQuote[] = "Bad string constant: must end with double quote";
constexpr char kStringNoComma[] = "Bad string constant: missing comma after end double quote";
constexpr char kFlagNotYN[] = "Bad flag constant: must be a Y or an N character";
constexpr char kFlagNoComma[] = "Bad flag constant: missing comma following flag";
constexpr char kFlagString[] = "Bad flag string: must contain 32 Y or N characters";
constexpr char kNoDigit[] = "Bad integer constant: first character must be a digit";
constexpr char kIntegerNoComma[] = "Bad integer constant: missing comma following integer";

class FieldParsersTest : public ::testing::Test {
 protected:
  FieldParsersTest() {
    SetParseFile("C:\\PROFILE\\MODULES\\base.mo");
    qv::State().parse_line = 17;
  }

  // Sets the cursor at the start of a copy of the text.
  char* Cursor(const std::string& text) {
    line_.assign(text.begin(), text.end());
    line_.push_back('\0');
    cursor_ = line_.data();
    return cursor_;
  }
  std::string Rest() const { return std::string(cursor_); }
  size_t Consumed() const { return static_cast<size_t>(cursor_ - line_.data()); }

  std::vector<std::string> Errors() const { return host_.errors(); }
  static std::vector<std::string> One(const std::string& message) {
    return {"C:\\PROFILE\\MODULES\\base.mo : Line #17\n" + message};
  }

  qvtest::ScriptedHost host_;
  std::vector<char> line_;
  char* cursor_ = nullptr;
};

// ---- a whole record ----------------------------------------------------------

TEST_F(FieldParsersTest, ParsesARecordOfEveryKindOfField) {
  Cursor("  \"a^\"b\" , Y,12,\"YYYYNNNNYYYYNNNNYYYYNNNNYYYYNNNN\"");
  char text[41] = "";
  uint32_t flag = 7;
  int32_t number = 0;
  uint32_t word = 0;
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 1);
  EXPECT_EQ(ParseFlag(&cursor_, &flag, 0), 1);
  EXPECT_EQ(ParseInteger(&cursor_, &number, 0), 1);
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 1);
  EXPECT_STREQ(text, "a\"b");
  EXPECT_EQ(flag, 1u);
  EXPECT_EQ(number, 12);
  EXPECT_EQ(word, 0xF0F0F0F0u);
  EXPECT_EQ(Rest(), "");
  EXPECT_TRUE(Errors().empty());
}

// ---- quoted strings ------------------------------------------------------------

TEST_F(FieldParsersTest, StringMovesPastItsComma) {
  Cursor(" \"abc\"  , \"d\"");
  char text[16];
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 1);
  EXPECT_STREQ(text, "abc");
  EXPECT_EQ(Rest(), " \"d\"");
}

TEST_F(FieldParsersTest, StringAcceptsOneTrailingComma) {
  Cursor("\"abc\",");
  char text[16];
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 1);
  EXPECT_EQ(Rest(), "");
}

TEST_F(FieldParsersTest, EmptyStringGivesAnEmptyValue) {
  Cursor("\"\",1");
  char text[16] = "old";
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 1);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(Rest(), "1");
}

TEST_F(FieldParsersTest, StringOfExactlyTheRoomFits) {
  Cursor("\"abcd\"");
  char text[5] = "";
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 1);
  EXPECT_STREQ(text, "abcd");
  EXPECT_TRUE(Errors().empty());
}

TEST_F(FieldParsersTest, TooLongStringIsCutAndReportedWithThePreviousContents) {
  Cursor("\"abcde\",Y");
  char text[5] = "OLD";
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 1);
  EXPECT_STREQ(text, "abcd");
  EXPECT_EQ(Rest(), "Y");
  EXPECT_EQ(Errors(), One("String \"OLD\" is too long: should not exceed 4 characters (within "
                          "quotes)"));
}

TEST_F(FieldParsersTest, TooLongStringCountsEscapesAsTwoCharacters) {
  Cursor("\"a^\"b\"");
  char text[4] = "";
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 1);
  EXPECT_STREQ(text, "a\"");  // "a^\"" cut to three, then unescaped
  EXPECT_EQ(Errors(),
            One("String \"\" is too long: should not exceed 3 characters (within quotes)"));
}

TEST_F(FieldParsersTest, StringMustBeginWithADoubleQuote) {
  Cursor("  abc\"");
  char text[16] = "keep";
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 0);
  EXPECT_EQ(Errors(), One(kNoOpeningQuote));
  EXPECT_EQ(Rest(), "abc\"");
}

TEST_F(FieldParsersTest, StringMustEndWithADoubleQuote) {
  Cursor("\"abc");
  char text[16];
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 0);
  EXPECT_EQ(Errors(), One(kNoClosingQuote));
}

TEST_F(FieldParsersTest, EscapedQuoteDoesNotCloseTheString) {
  Cursor("\"abc^\"");
  char text[16];
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 0);
  EXPECT_EQ(Errors(), One(kNoClosingQuote));
}

TEST_F(FieldParsersTest, StringNeedsACommaAfterItsClosingQuote) {
  Cursor("\"ab\"cd\",1");
  char text[16];
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 0);
  EXPECT_EQ(Errors(), One(kStringNoComma));
  EXPECT_EQ(Rest(), "cd\",1");
}

TEST_F(FieldParsersTest, CaretsElsewhereStay) {
  Cursor("\"^a^^\"b^ x\"");
  char text[16];
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 1);
  EXPECT_STREQ(text, "^a^\"b^ x");
}

TEST_F(FieldParsersTest, OptionalStringMayBeEmpty) {
  Cursor("  , \"b\"");
  char text[16] = "old";
  EXPECT_EQ(ParseQuotedString(&cursor_, text, FO_OPTIONAL, sizeof text), 1);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(Rest(), " \"b\"");
  strcpy(text, "old");
  Cursor("   ");
  EXPECT_EQ(ParseQuotedString(&cursor_, text, FO_OPTIONAL, sizeof text), 1);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(Rest(), "");
  Cursor("\"x\"");
  EXPECT_EQ(ParseQuotedString(&cursor_, text, FO_OPTIONAL, sizeof text), 1);
  EXPECT_STREQ(text, "x");
  EXPECT_TRUE(Errors().empty());
}

TEST_F(FieldParsersTest, RequiredStringMayNotBeEmpty) {
  Cursor(",\"b\"");
  char text[16];
  EXPECT_EQ(ParseQuotedString(&cursor_, text, 0, sizeof text), 0);
  EXPECT_EQ(Errors(), One(kNoOpeningQuote));
}

// ---- flags ---------------------------------------------------------------------

TEST_F(FieldParsersTest, FlagLettersInEitherCase) {
  Cursor("Y,y , N,\tn");
  uint32_t values[4] = {9, 9, 9, 9};
  for (uint32_t& v : values) EXPECT_EQ(ParseFlag(&cursor_, &v, 0), 1);
  EXPECT_EQ(values[0], 1u);
  EXPECT_EQ(values[1], 1u);
  EXPECT_EQ(values[2], 0u);
  EXPECT_EQ(values[3], 0u);
  EXPECT_EQ(Rest(), "");
}

TEST_F(FieldParsersTest, FlagMustBeYOrN) {
  Cursor(" X,Y");
  uint32_t value = 0;
  EXPECT_EQ(ParseFlag(&cursor_, &value, 0), 0);
  EXPECT_EQ(Errors(), One(kFlagNotYN));
  Cursor("");
  host_.Clear();
  EXPECT_EQ(ParseFlag(&cursor_, &value, 0), 0);
  EXPECT_EQ(Errors(), One(kFlagNotYN));
}

TEST_F(FieldParsersTest, FlagIsOneLetter) {
  Cursor("YES,N");
  uint32_t value = 0;
  EXPECT_EQ(ParseFlag(&cursor_, &value, 0), 0);
  EXPECT_EQ(Errors(), One(kFlagNoComma));
  EXPECT_EQ(Rest(), "ES,N");
}

TEST_F(FieldParsersTest, OptionalFlagMayBeEmpty) {
  Cursor(" ,Y");
  uint32_t value = 5;
  EXPECT_EQ(ParseFlag(&cursor_, &value, FO_OPTIONAL), 1);
  EXPECT_EQ(value, 0u);
  EXPECT_EQ(ParseFlag(&cursor_, &value, FO_OPTIONAL), 1);
  EXPECT_EQ(value, 1u);
  value = 5;
  EXPECT_EQ(ParseFlag(&cursor_, &value, FO_OPTIONAL), 1);  // at the end
  EXPECT_EQ(value, 0u);
  EXPECT_TRUE(Errors().empty());
}

// ---- 32-flag strings ---------------------------------------------------------

TEST_F(FieldParsersTest, FirstFlagLetterIsTheMostSignificantBit) {
  Cursor("\"Y" + std::string(30, 'N') + "y\", 1");
  uint32_t word = 0;
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 1);
  EXPECT_EQ(word, 0x80000001u);
  EXPECT_EQ(Rest(), " 1");
}

TEST_F(FieldParsersTest, FlagStringMayHoldBlanksAndExtraLetters) {
  Cursor("\" YYYY NNNN\tyyyy nnnn YYYY NNNN YYYY NNNN YYYY \"");
  uint32_t word = 0;
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 1);
  EXPECT_EQ(word, 0xF0F0F0F0u);
}

TEST_F(FieldParsersTest, EveryLetterOfAPlainFlagStringIsItsOwnBit) {
  for (int bit = 31; bit >= 0; --bit) {
    std::string letters(32, 'N');
    letters[31 - bit] = 'Y';
    Cursor("\"" + letters + "\",x");
    uint32_t word = 0;
    EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 1);
    EXPECT_EQ(word, uint32_t{1} << bit) << letters;
    EXPECT_EQ(Rest(), "x");
  }
  // Letters after the 32nd are ignored, whatever they are.
  Cursor("\"" + std::string(16, 'Y') + std::string(16, 'N') + "YQ\"");
  uint32_t word = 0;
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 1);
  EXPECT_EQ(word, 0xFFFF0000u);
  // A lower-case or wrong letter anywhere among the 32 is read letter by letter.
  for (int at : {0, 7, 8, 31}) {
    std::string letters(32, 'Y');
    letters[at] = 'n';
    Cursor("\"" + letters + "\"");
    EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 1);
    EXPECT_EQ(word, ~(uint32_t{1} << (31 - at)));
    letters[at] = 'X';
    Cursor("\"" + letters + "\"");
    EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 0);
  }
  EXPECT_EQ(Errors().size(), 4u);
}

TEST_F(FieldParsersTest, FlagStringNeedsThirtyTwoLetters) {
  Cursor("\"" + std::string(31, 'Y') + "\"");
  uint32_t word = 1;
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 0);
  EXPECT_EQ(Errors(), One(kFlagString));
  Cursor("\"YYYYXNNN" + std::string(24, 'N') + "\"");
  host_.Clear();
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 0);
  EXPECT_EQ(Errors(), One(kFlagString));
}

TEST_F(FieldParsersTest, FlagStringIsQuoted) {
  uint32_t word = 3;
  Cursor(std::string(32, 'Y'));
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 0);
  EXPECT_EQ(word, 0u);  // cleared before anything else
  Cursor("\"" + std::string(32, 'Y'));
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 0);
  Cursor("\"" + std::string(32, 'Y') + "\" x");
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, 0), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{One(kNoOpeningQuote)[0], One(kNoClosingQuote)[0],
                                                One(kStringNoComma)[0]}));
}

TEST_F(FieldParsersTest, OptionalFlagStringMayBeEmpty) {
  Cursor(",\"" + std::string(32, 'Y') + "\"");
  uint32_t word = 3;
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, FO_OPTIONAL), 1);
  EXPECT_EQ(word, 0u);
  EXPECT_EQ(ParseFlagString32(&cursor_, &word, FO_OPTIONAL), 1);
  EXPECT_EQ(word, 0xFFFFFFFFu);
  EXPECT_TRUE(Errors().empty());
}

// ---- integers ------------------------------------------------------------------

TEST_F(FieldParsersTest, IntegersReadDigitRuns) {
  Cursor(" 7 ,0012,  2147483647");
  int32_t a = -1, b = -1, c = -1;
  EXPECT_EQ(ParseInteger(&cursor_, &a, 0), 1);
  EXPECT_EQ(ParseLong(&cursor_, &b, 0), 1);
  EXPECT_EQ(ParseInteger(&cursor_, &c, 0), 1);
  EXPECT_EQ(a, 7);
  EXPECT_EQ(b, 12);
  EXPECT_EQ(c, 2147483647);
  EXPECT_EQ(Rest(), "");
  EXPECT_TRUE(Errors().empty());
}

TEST_F(FieldParsersTest, NegativeIntegerReadsZeroButDoesNotFail) {
  Cursor("-5,6");
  int32_t value = 99;
  EXPECT_EQ(ParseInteger(&cursor_, &value, 0), 1);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(Errors(), One(kNoDigit));
  EXPECT_EQ(Rest(), "-5,6");  // the cursor does not move
}

TEST_F(FieldParsersTest, IntegerNeedsACommaAfterItsDigits) {
  Cursor("12 x,3");
  int32_t value = 99;
  EXPECT_EQ(ParseLong(&cursor_, &value, 0), 1);
  EXPECT_EQ(value, 0);
  EXPECT_EQ(Errors(), One(kIntegerNoComma));
  EXPECT_EQ(Rest(), "x,3");
}

TEST_F(FieldParsersTest, EmptyIntegerFieldReadsZero) {
  Cursor(",5");
  int32_t value = 99;
  EXPECT_EQ(ParseInteger(&cursor_, &value, 0), 1);  // required: reported
  EXPECT_EQ(value, 0);
  EXPECT_EQ(Errors(), One(kNoDigit));
  host_.Clear();
  value = 99;
  EXPECT_EQ(ParseInteger(&cursor_, &value, FO_OPTIONAL), 1);  // optional: silent
  EXPECT_EQ(value, 0);
  EXPECT_EQ(Rest(), "5");
  EXPECT_EQ(ParseInteger(&cursor_, &value, FO_OPTIONAL), 1);
  EXPECT_EQ(value, 5);
  EXPECT_EQ(ParseInteger(&cursor_, &value, FO_OPTIONAL), 1);
  EXPECT_EQ(value, 0);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(FieldParsersTest, HugeIntegerStopsAtTheLargestValue) {
  Cursor("99999999999999999999");
  int32_t value = 0;
  EXPECT_EQ(ParseInteger(&cursor_, &value, 0), 1);
  EXPECT_EQ(value, 2147483647);
}

// ---- version quads -------------------------------------------------------------

TEST_F(FieldParsersTest, VersionQuadOfFourGroups) {
  Cursor(" 1 2 3 4 ,x");
  uint32_t pair[2] = {9, 9};
  EXPECT_EQ(ParseVersionQuad(&cursor_, pair, 0), 1);
  EXPECT_EQ(pair[0], 0x00010002u);
  EXPECT_EQ(pair[1], 0x00030004u);
  EXPECT_EQ(Rest(), "x");
}

TEST_F(FieldParsersTest, VersionQuadMissingGroupsReadZero) {
  Cursor("1 2");
  uint32_t pair[2] = {9, 9};
  EXPECT_EQ(ParseVersionQuad(&cursor_, pair, 0), 1);
  EXPECT_EQ(pair[0], 0x00010002u);
  EXPECT_EQ(pair[1], 0u);
  EXPECT_EQ(Rest(), "");
}

TEST_F(FieldParsersTest, VersionQuadHasNoRangeCheck) {
  Cursor("65537 65535 1 70000");
  uint32_t pair[2];
  EXPECT_EQ(ParseVersionQuad(&cursor_, pair, 0), 1);
  EXPECT_EQ(pair[0], 0x0001FFFFu);  // 65537 << 16 loses its top bit
  EXPECT_EQ(pair[1], 0x00010000u + 70000u);
}

TEST_F(FieldParsersTest, VersionQuadMustBeginWithADigit) {
  Cursor("v1 2 3 4");
  uint32_t pair[2] = {9, 9};
  EXPECT_EQ(ParseVersionQuad(&cursor_, pair, 0), 0);
  EXPECT_EQ(Errors(), One(kNoDigit));
  Cursor(",1");
  host_.Clear();
  EXPECT_EQ(ParseVersionQuad(&cursor_, pair, 0), 0);
  EXPECT_EQ(Errors(), One(kNoDigit));
}

TEST_F(FieldParsersTest, VersionQuadGroupsAreSeparatedByBlanksNotDots) {
  Cursor("1.2.3.4");
  uint32_t pair[2];
  EXPECT_EQ(ParseVersionQuad(&cursor_, pair, 0), 0);
  EXPECT_EQ(Errors(), One(kIntegerNoComma));
  Cursor("1 2 3 4 5");
  host_.Clear();
  EXPECT_EQ(ParseVersionQuad(&cursor_, pair, 0), 0);
  EXPECT_EQ(Errors(), One(kIntegerNoComma));
  EXPECT_EQ(Rest(), "5");
}

TEST_F(FieldParsersTest, OptionalVersionQuadMayBeEmpty) {
  Cursor(" ,2");
  uint32_t pair[2] = {9, 9};
  EXPECT_EQ(ParseVersionQuad(&cursor_, pair, FO_OPTIONAL), 1);
  EXPECT_EQ(pair[0], 0u);
  EXPECT_EQ(pair[1], 0u);
  EXPECT_EQ(Rest(), "2");
  EXPECT_TRUE(Errors().empty());
}

// ---- character helpers -----------------------------------------------------------

TEST(TextHelpersTest, RemoveCharRemovesEveryOccurrence) {
  char text[] = ",00,A5, 4E,,01,";
  RemoveChar(text, ',');
  EXPECT_STREQ(text, "00A5 4E01");
  char none[] = "abc";
  RemoveChar(none, 'x');
  EXPECT_STREQ(none, "abc");
  char all[] = "xxx";
  RemoveChar(all, 'x');
  EXPECT_STREQ(all, "");
}

TEST(TextHelpersTest, UnescapeQuotesDropsOnlyCaretsBeforeQuotes) {
  char text[] = "^\"a^b^^\"^";
  UnescapeQuotes(text);
  EXPECT_STREQ(text, "\"a^b^\"^");
  char plain[] = "plain";
  UnescapeQuotes(plain);
  EXPECT_STREQ(plain, "plain");
}

}  // namespace
