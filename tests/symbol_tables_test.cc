// The symbolic tables: each table's names and values, the readers' and
// writers' messages, the writers' exact field bytes, the round trip of
// every name of every table and of every hot-key byte; the hex formatter
// and the comma-separated name lists.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "core/state.h"
#include "core/symbol_table.h"
#include "platform/file.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

constexpr char kPrefix[] = "C:\\PROFILE\\SSR\\base.ssr : Line #7\n";

class SymbolTablesTest : public ::testing::Test {
 protected:
  SymbolTablesTest() {
    SetParseFile("C:\\PROFILE\\SSR\\base.ssr");
    qv::State().parse_line = 7;
  }

  static std::vector<std::string> One(const std::string& message) { return {kPrefix + message}; }

  // Runs write on a fresh file and returns the bytes that ended up in it.
  std::string Written(const std::function<void(QvFile)>& write) {
    std::string path = dir_.Join("out" + std::to_string(files_++) + ".txt");
    qv::File* file = qv::File::Open(path, qv::OpenMode::kCreateAlways);
    EXPECT_NE(file, nullptr);
    write(file->handle());
    delete file;
    return qvtest::ReadFileBytes(path);
  }

  // The fields of a written line, read back with the field parser.
  static std::vector<std::string> Fields(std::string line) {
    std::vector<std::string> fields;
    char* cursor = line.data();
    while (*cursor != '\0') {
      char field[QV_LINE_SIZE] = "";
      EXPECT_EQ(ParseQuotedString(&cursor, field, FO_OPTIONAL, sizeof field), 1) << line;
      fields.push_back(field);
    }
    return fields;
  }

  qvtest::ScriptedHost host_;
  qvtest::TempDir dir_;
  int files_ = 0;
};

// ---- root keys --------------------------------------------------------------------

TEST_F(SymbolTablesTest, RootKeyNamesReadWithoutRegardToCase) {
  EXPECT_EQ(ParseRegRootKey("hkey_local_machine"), 0x80000002u);
  EXPECT_EQ(ParseRegRootKey("HKEY_CLASSES_ROOT"), 0x80000000u);
  EXPECT_EQ(ParseRegRootKey("Hkey_Performance_NlsText"), 0x80000060u);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, UnknownRootKeyNameReadsZeroWithTheLine) {
  EXPECT_EQ(ParseRegRootKey("HKEY_DYN_DATA"), 0u);
  EXPECT_EQ(ParseRegRootKey(""), 0u);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{One("Unsupported REG Root Key")[0],
                                                      One("Unsupported REG Root Key")[0]}));
}

// A settings section reads the same texts on every line: a text read a
// second time names the same value, ORed into what the value held for a
// table of several names; a text with an unknown name reports each time and
// leaves the names before it in the value.
TEST_F(SymbolTablesTest, AReadTextNamesTheSameValueEveryTime) {
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(round);
    EXPECT_EQ(ParseRegRootKey("HKEY_USERS"), 0x80000003u);
    EXPECT_EQ(ParseRegRootKey("hkey_users"), 0x80000003u);
    uint32_t access = 0x40000000u;
    EXPECT_EQ(ParseRegAccess("KEY_NOTIFY, KEY_SET_VALUE", &access), 1);
    EXPECT_EQ(access, 0x40000012u);
    access = 0;
    EXPECT_EQ(ParseRegAccess("KEY_NOTIFY KEY_NOPE KEY_SET_VALUE", &access), 0);
    EXPECT_EQ(access, 0x10u);
    EXPECT_EQ(ParseRegRootKey("HKEY_NOPE"), 0u);
  }
  ASSERT_EQ(host_.errors().size(), 4u);
  EXPECT_EQ(host_.errors()[1], One("Unsupported REG Root Key")[0]);
  EXPECT_NE(host_.errors()[0].find("KEY_NOPE"), std::string::npos) << host_.errors()[0];
  EXPECT_EQ(host_.errors()[2], host_.errors()[0]);
  EXPECT_EQ(host_.errors()[3], host_.errors()[1]);
}

TEST_F(SymbolTablesTest, UnknownRootKeyValueFormatsAsEmptyText) {
  char text[32];
  memset(text, '#', sizeof text);
  EXPECT_EQ(FormatRegRootKey(0x80000006, text), 0);
  EXPECT_STREQ(text, "");
  EXPECT_EQ(host_.errors(), One("Unsupported REG Root Key"));
  host_.Clear();
  EXPECT_EQ(FormatRegRootKey(0x80000050, text), 1);
  EXPECT_STREQ(text, "HKEY_PERFORMANCE_TEXT");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, RootKeyWriterForcesQuotesAndAlwaysSucceeds) {
  EXPECT_EQ(
      Written([](QvFile f) { EXPECT_EQ(WriteRegRootKeyField(0x80000001, f, FO_UNQUOTED), 1); }),
      "\"HKEY_CURRENT_USER\",");
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteRegRootKeyField(7, f, 0), 1); }), "\"\",");
  EXPECT_EQ(host_.errors(), One("Unsupported REG Root Key"));
}

// A rewrite spells the same values on every line: the second spelling of a
// value, with the same options, gives the first's bytes; different options
// give their own; a value without a name reports each time it is spelled.
TEST_F(SymbolTablesTest, ASpelledValueGivesTheSameBytesEveryTime) {
  for (int round = 0; round < 2; ++round) {
    std::string bytes;
    EXPECT_TRUE(qv::AppendSymbolFields(qv::kRegRootKeyTable, 0x80000001, 0, &bytes));
    EXPECT_TRUE(qv::AppendSymbolFields(qv::kRegRootKeyTable, 0x80000001, FO_IAO, &bytes));
    EXPECT_TRUE(qv::AppendSymbolFields(qv::kRegRootKeyTable, 0x80000001, FO_END_RECORD, &bytes));
    EXPECT_EQ(bytes, "\"HKEY_CURRENT_USER\",;IAO;\"HKEY_CURRENT_USER\",\"HKEY_CURRENT_USER\"\r\n");
    std::string empty;
    EXPECT_FALSE(qv::AppendSymbolFields(qv::kRegRootKeyTable, 7, FO_OPTIONAL, &empty));
    EXPECT_EQ(empty, ",");
  }
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{One("Unsupported REG Root Key")[0],
                                                      One("Unsupported REG Root Key")[0]}));
}

// ---- registry data types ----------------------------------------------------------

TEST_F(SymbolTablesTest, RegDataTypeWriterWritesTheFirstNameQuoted) {
  const char* const names[] = {"REG_NONE",   "REG_SZ",       "REG_EXPAND_SZ",
                               "REG_BINARY", "REG_DWORD",    "REG_DWORD_BIG_ENDIAN",
                               "REG_LINK",   "REG_MULTI_SZ", "REG_RESOURCE_LIST"};
  for (int code = 0; code <= 8; ++code) {
    EXPECT_EQ(Written([&](QvFile f) { EXPECT_EQ(WriteRegDataTypeField(code, f, FO_UNQUOTED), 1); }),
              "\"" + std::string(names[code]) + "\",");
  }
  EXPECT_EQ(ParseRegDataType("REG_DWORD_LITTLE_ENDIAN"), 4);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, RegDataTypeReaderAndWriterWordTheirMessagesDifferently) {
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteRegDataTypeField(9, f, 0), 0); }), "\"\",");
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteRegDataTypeField(-1, f, FO_OPTIONAL), 0); }),
            ",");
  EXPECT_EQ(ParseRegDataType("REG_QWORD"), 0);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{One("Unsupported REG DataType Key")[0],
                                                      One("Unsupported REG DataType Key")[0],
                                                      One("Unsupported REG Data Type")[0]}));
}

// ---- preference-setting types -----------------------------------------------------

TEST_F(SymbolTablesTest, PSDataTypesReadAndWrite) {
  EXPECT_EQ(ParsePSDataType("zqfkey_binary"), 0x80000001u);
  EXPECT_EQ(ParsePSDataType("ZQFKEY_LOGICAL"), 0x80000008u);
  EXPECT_EQ(
      Written([](QvFile f) { EXPECT_EQ(WritePSDataTypeField(0x80000007, f, FO_UNQUOTED), 1); }),
      "\"ZQFKEY_ZQWORDSTRING\",");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, UnknownPSDataTypeReportsTheSameMessageBothWays) {
  EXPECT_EQ(ParsePSDataType("ZQFKEY_QWORD"), 0u);
  EXPECT_EQ(host_.errors(), One("Unsupported PS Data Type"));
  host_.Clear();
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WritePSDataTypeField(0x80000009, f, 0), 0); }),
            "\"\",");
  EXPECT_EQ(host_.errors(), One("Unsupported PS Data Type"));
}

// ---- key options ------------------------------------------------------------------

TEST_F(SymbolTablesTest, KeyOptionNamesSetTheVolatileBitOnly) {
  uint8_t options = 0;
  EXPECT_EQ(ParseRegOption("REG_OPTION_NON_VOLATILE", &options), 1);
  EXPECT_EQ(options, 0);
  EXPECT_EQ(ParseRegOption("reg_option_volatile", &options), 1);
  EXPECT_EQ(options, QV_REG_OPTION_VOLATILE);
  options = 0;
  EXPECT_EQ(ParseRegOption("", &options), 1);
  EXPECT_EQ(options, 0);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, UnknownKeyOptionIsNamedInTheMessage) {
  uint8_t options = 0;
  EXPECT_EQ(ParseRegOption("REG_OPTION_BACKUP_RESTORE", &options), 0);
  EXPECT_EQ(host_.errors(), One("Unsupported REG Option Type: REG_OPTION_BACKUP_RESTORE"));
}

TEST_F(SymbolTablesTest, VolatileKeyWritesTwoFieldsNonVolatileOneEmptyField) {
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteRegOptionField(0x02, f, 0), 1); }),
            "\"REG_OPTION_VOLATILE\",\"\",");
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteRegOptionField(0x00, f, 0), 1); }), "\"\",");
  EXPECT_EQ(Written([](QvFile f) { WriteRegOptionField(0x02, f, FO_OPTIONAL); }),
            "\"REG_OPTION_VOLATILE\",,");
  EXPECT_EQ(Written([](QvFile f) { WriteRegOptionField(0x00, f, FO_OPTIONAL); }), ",");
  // Other bits of the byte have no name and are not written.
  EXPECT_EQ(Written([](QvFile f) { WriteRegOptionField(0xFD, f, FO_OPTIONAL); }), ",");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, KeyOptionFieldsTakeTheMarkerFirstAndTheRecordEndLast) {
  EXPECT_EQ(Written([](QvFile f) { WriteRegOptionField(0x02, f, FO_IAO | FO_END_RECORD); }),
            ";IAO;\"REG_OPTION_VOLATILE\",\"\"\r\n");
  EXPECT_EQ(Written([](QvFile f) { WriteRegOptionField(0x00, f, FO_IAO | FO_END_RECORD); }),
            ";IAO;\"\"\r\n");
}

// ---- access masks -----------------------------------------------------------------

TEST_F(SymbolTablesTest, AccessMasksAreWrittenInTheirOwnOrder) {
  auto text = [&](uint32_t mask) {
    return Written([&](QvFile f) { EXPECT_EQ(WriteRegAccessField(mask, f, FO_UNQUOTED), 1); });
  };
  EXPECT_EQ(text(0x20019), "KEY_READ KEY_EXECUTE ,");
  EXPECT_EQ(text(0xF003F), "KEY_ALL_ACCESS KEY_EXECUTE ,");
  EXPECT_EQ(text(0x3), "KEY_QUERY_VALUE KEY_SET_VALUE ,");
  EXPECT_EQ(text(0x20006), "KEY_WRITE ,");
  EXPECT_EQ(text(0x2001F), "KEY_READ KEY_WRITE KEY_EXECUTE ,");
  EXPECT_EQ(text(0x20), "KEY_CREATE_LINK ,");
  EXPECT_EQ(text(0x3F),
            "KEY_QUERY_VALUE KEY_SET_VALUE KEY_CREATE_SUB_KEY KEY_ENUMERATE_SUB_KEYS "
            "KEY_NOTIFY KEY_CREATE_LINK ,");
  EXPECT_EQ(text(0x2003F), "KEY_CREATE_LINK KEY_READ KEY_WRITE KEY_EXECUTE ,");
  EXPECT_EQ(Written([](QvFile f) { WriteRegAccessField(0x20019, f, 0); }),
            "\"KEY_READ KEY_EXECUTE \",");
  EXPECT_EQ(Written([](QvFile f) { WriteRegAccessField(0, f, FO_OPTIONAL); }), ",");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, AccessNamesAreOredOneAtATime) {
  uint32_t access = 0;
  EXPECT_EQ(ParseRegAccess("KEY_QUERY_VALUE", &access), 1);
  EXPECT_EQ(ParseRegAccess("key_set_value", &access), 1);
  EXPECT_EQ(access, 0x3u);
  access = 0;
  EXPECT_EQ(ParseRegAccess("KEY_READ KEY_EXECUTE ", &access), 1);
  EXPECT_EQ(access, 0x20019u);
  access = 0;
  EXPECT_EQ(ParseRegAccess(" KEY_CREATE_LINK,KEY_WRITE\tKEY_NOTIFY\n", &access), 1);
  EXPECT_EQ(access, 0x20036u);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, UnknownAccessNameStopsTheReadAndIsNamed) {
  uint32_t access = 0;
  EXPECT_EQ(ParseRegAccess("KEY_NOTIFY KEY_WOW64_64KEY KEY_WRITE", &access), 0);
  EXPECT_EQ(access, 0x10u);
  EXPECT_EQ(host_.errors(), One("Unsupported REG Access Type: KEY_WOW64_64KEY"));
}

// ---- show commands ----------------------------------------------------------------

TEST_F(SymbolTablesTest, ShowCommandIsWrittenByTheFirstNameOfItsValue) {
  int command = ParseShowCommand("SW_MAXIMIZE");
  EXPECT_EQ(command, 3);
  EXPECT_EQ(Written([&](QvFile f) { EXPECT_EQ(WriteShowCommandField(command, f, 0), 1); }),
            "\"SW_SHOWMAXIMIZED\",");
  EXPECT_EQ(ParseShowCommand("sw_max"), 10);
  EXPECT_EQ(Written([](QvFile f) { WriteShowCommandField(10, f, FO_UNQUOTED); }),
            "SW_SHOWDEFAULT,");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, ShowCommandWithoutANameIsAnEmptyFieldWithoutAMessage) {
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteShowCommandField(11, f, 0), 1); }), "\"\",");
  EXPECT_EQ(Written([](QvFile f) { EXPECT_EQ(WriteShowCommandField(-1, f, FO_OPTIONAL), 1); }),
            ",");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, UnknownShowCommandReadsZero) {
  EXPECT_EQ(ParseShowCommand("SW_FORCEMINIMIZE"), 0);
  EXPECT_EQ(host_.errors(), One("Unsupported Show Command value"));
}

// ---- hot keys ---------------------------------------------------------------------

TEST_F(SymbolTablesTest, LetterKeysHaveNoHotKeyName) {
  uint8_t key = 0;
  EXPECT_EQ(ParseHotKey("VK_A", &key), 0);
  EXPECT_EQ(key, 0);
  EXPECT_EQ(host_.errors(), One("Unsupported Hot Key Value: VK_A"));
}

TEST_F(SymbolTablesTest, HotKeyWriterNamesEveryContainedCode) {
  std::string bytes = Written([](QvFile f) { EXPECT_EQ(WriteHotKeyField(0x0D, f, 0), 1); });
  EXPECT_EQ(bytes,
            "\"HOTKEYF_SHIFT HOTKEYF_ALT HOTKEYF_EXT VK_LBUTTON VK_MBUTTON VK_BACK VK_TAB "
            "VK_CLEAR VK_RETURN \",");
  uint8_t key = 0;
  EXPECT_EQ(ParseHotKey(Fields(bytes)[0].c_str(), &key), 1);
  EXPECT_EQ(key, 0x0D);
  key = 0;
  EXPECT_EQ(ParseHotKey("hotkeyf_control VK_F12", &key), 1);
  EXPECT_EQ(key, 0x7B);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SymbolTablesTest, HotKeyTableHoldsTheModifiersAndEightyOneKeys) {
  const auto& symbols = qv::kHotKeyTable.symbols;
  ASSERT_EQ(symbols.size(), 4u + 81u);
  EXPECT_STREQ(symbols[4].name, "VK_LBUTTON");
  EXPECT_EQ(symbols[4].value, 0x01u);
  EXPECT_STREQ(symbols.back().name, "VK_RMENU");
  EXPECT_EQ(symbols.back().value, 0xA5u);
}

// Every byte goes out through the writer and back through the reader. The
// writer names whole codes only, so a byte comes back whole unless it holds
// 0x40 without a code that covers it (any code with 0x40 also needs 0x20,
// or the low bits of VK_LWIN 0x5B or VK_RWIN 0x5C).
TEST_F(SymbolTablesTest, EveryHotKeyByteReadsBackAsTheCodesItHolds) {
  int lost = 0;
  for (int byte = 0; byte <= 255; ++byte) {
    std::string bytes = Written(
        [&](QvFile f) { EXPECT_EQ(WriteHotKeyField(static_cast<uint8_t>(byte), f, 0), 1); });
    std::vector<std::string> fields = Fields(bytes);
    ASSERT_EQ(fields.size(), 1u) << byte;
    uint8_t key = 0;
    EXPECT_EQ(ParseHotKey(fields[0].c_str(), &key), 1) << fields[0];
    bool uncovered =
        (byte & 0x40) != 0 && (byte & 0x20) == 0 && (byte & 0x1C) != 0x1C && (byte & 0x1B) != 0x1B;
    EXPECT_EQ(key, uncovered ? (byte & ~0x40) : byte) << byte << " " << fields[0];
    if (uncovered) ++lost;
  }
  EXPECT_EQ(lost, 54);
  EXPECT_TRUE(host_.errors().empty());
}

// ---- every table ------------------------------------------------------------------

// Every name of every table goes out through the writer and back through the
// reader to its value; a writer that refuses must say so in its own words.
TEST_F(SymbolTablesTest, EveryNameOfEveryTableRoundTrips) {
  ASSERT_EQ(qv::SymbolTables().size(), 7u);
  for (const qv::SymbolTable* table : qv::SymbolTables()) {
    for (const qv::Symbol& symbol : table->symbols) {
      SCOPED_TRACE(std::string(table->name) + " " + symbol.name);
      host_.Clear();
      uint32_t read = 0;
      ASSERT_TRUE(qv::ReadSymbols(*table, symbol.name, &read));
      EXPECT_EQ(read, symbol.value);
      std::string bytes;
      const bool named = qv::AppendSymbolFields(*table, symbol.value, 0, &bytes);
      if (!named) {
        EXPECT_EQ(host_.errors(), One(table->write_message));
        continue;
      }
      uint32_t back = 0;
      for (const std::string& field : Fields(bytes)) {
        EXPECT_TRUE(qv::ReadSymbols(*table, field.c_str(), &back)) << field;
      }
      EXPECT_EQ(back, symbol.value) << bytes;
      EXPECT_TRUE(host_.errors().empty());
    }
  }
}

TEST_F(SymbolTablesTest, RegDataTypeNamesAreTheReaderOfTheTextFormat) {
  for (const qv::Symbol& symbol : qv::kRegDataTypeTable.symbols) {
    EXPECT_EQ(ParseRegDataType(symbol.name), static_cast<int>(symbol.value)) << symbol.name;
  }
}

TEST_F(SymbolTablesTest, TablesAreFoundByNameWithoutRegardToCase) {
  EXPECT_EQ(qv::FindSymbolTable("HOT-KEYS"), &qv::kHotKeyTable);
  EXPECT_EQ(qv::FindSymbolTable("root-keys"), &qv::kRegRootKeyTable);
  EXPECT_EQ(qv::FindSymbolTable("hot keys"), nullptr);
  EXPECT_EQ(qv::FindSymbolTable(nullptr), nullptr);
}

// ---- hex bytes --------------------------------------------------------------------

TEST_F(SymbolTablesTest, DoubleWordIsPrintedMostSignificantByteFirst) {
  const uint8_t word[4] = {0x01, 0x4E, 0xA5, 0x00};
  char text[16];
  memset(text, '#', sizeof text);
  EXPECT_EQ(FormatHexBytes(word, 0, text, 1), 1);
  EXPECT_STREQ(text, "00A54E01");
  uint8_t back[4] = {};
  uint16_t count = 0;
  EXPECT_EQ(ParseHexBytes(back, text, &count, 1), 1);
  EXPECT_EQ(count, 4);
  EXPECT_EQ(memcmp(back, word, 4), 0);
}

TEST_F(SymbolTablesTest, BytesArePrintedInStorageOrderWithoutSeparators) {
  const uint8_t bytes[3] = {0xAB, 0x0C, 0xFF};
  char text[16];
  memset(text, '#', sizeof text);
  EXPECT_EQ(FormatHexBytes(bytes, 3, text, 0), 1);
  EXPECT_STREQ(text, "AB0CFF");
  memset(text, '#', sizeof text);
  EXPECT_EQ(FormatHexBytes(bytes, 0, text, 0), 1);
  EXPECT_STREQ(text, "");
}

// ---- name lists -------------------------------------------------------------------

TEST_F(SymbolTablesTest, ListContainsNameOnlyForTheListKey) {
  EXPECT_EQ(ListContainsName("$$", "B", "A,B,C"), 1);
  EXPECT_EQ(ListContainsName("$$", "B", "A, B"), 0);  // items are not trimmed
  EXPECT_EQ(ListContainsName("$$", "b", "A,B,C"), 0);
  EXPECT_EQ(ListContainsName("$$", "C", "A,B,C"), 1);
  EXPECT_EQ(ListContainsName("$$", "", "A,,C"), 1);
  EXPECT_EQ(ListContainsName("$$", "A,B", "A,B"), 0);
  EXPECT_EQ(ListContainsName("$", "B", "A,B,C"), 0);
  EXPECT_EQ(ListContainsName("$$ ", "B", "A,B,C"), 0);
  EXPECT_EQ(ListContainsName("B", "B", "B"), 0);
}

TEST_F(SymbolTablesTest, NextListItemTrimsEachItem) {
  const char* cursor = " A , B\t,,C ";
  char item[16];
  std::vector<std::string> items;
  while (NextListItem(&cursor, item) == 1) items.push_back(item);
  EXPECT_EQ(items, (std::vector<std::string>{"A", "B", "", "C"}));
  EXPECT_EQ(cursor, nullptr);
  EXPECT_EQ(NextListItem(&cursor, item), 0);
  cursor = "";
  EXPECT_EQ(NextListItem(&cursor, item), 1);
  EXPECT_STREQ(item, "");
  EXPECT_EQ(cursor, nullptr);
  EXPECT_EQ(NextListItem(nullptr, item), 0);
}

}  // namespace
