// Settings entries (IE, RE, PE) of a module's settings file: the lines of
// three kinds in one section, the value encodings, access and options,
// key paths, generated names, the settings-record object, the flag tables
// and the database texts.
#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "core/state.h"
#include "platform/file.h"
#include "platform/write_faults.h"
#include "quorvex/quorvex.h"
#include "records/location_family.h"
#include "records/orvik_rows.h"
#include "records/ss_entry_family.h"
#include "records/ss_entry_lines.h"
#include "records/ss_entry_section.h"
#include "support/list_view.h"
#include "support/location_profile.h"
#include "support/profiles.h"
#include "support/scripted_host.h"

namespace {

using qvtest::FlagLetters;
using qvtest::kLockedOpen;
using qvtest::ReadFileBytes;
using qvtest::RecordsOf;
using qvtest::WriteFileBytes;

const std::string kNo32 = "\"" + FlagLetters("") + "\"";

std::string Head(const std::string& module = "Text Editor", const std::string& key = "8.0") {
  return "\n[SourceSafe]\n$Header$\n\n[Module]\n\"" + module + "\",\"" + key +
         "\"\n\n[File System-Settings]\n[Module System-Settings]\n[System-Settings Records]\n";
}
const std::string kTail =
    "[Shipped File Created SSRs]\n[Module Created SSRs]\n[Created System-Settings]\n";

// A REG line as a person might write it: data, type, key path, access and
// options given.
std::string RegLine(const std::string& name, const std::string& data, const std::string& type,
                    const std::string& path = "Software\\X", const std::string& access = "",
                    const std::string& options = "") {
  return "\"" + name + "\",\"REG\",,,,\"" + FlagLetters("") + "\",\"" + data +
         "\",\"HKEY_LOCAL_MACHINE\",\"" + path + "\",\"Value\",\"" + type + "\",," +
         (access.empty() ? "" : "\"" + access + "\"") + "," +
         (options.empty() ? "" : "\"" + options + "\"") + ",,,,\n";
}
std::string PsLine(const std::string& name, const std::string& data = "7") {
  return "\"" + name + "\",\"PS\",,,,\"" + FlagLetters("") + "\",\"" + data +
         "\",\"HKEY_CURRENT_USER\",\"Prefs\",\"Size\",\"ZQFKEY_SZ\",,,,,,,\n";
}
std::string IniLine(const std::string& name, const std::string& data = "on") {
  return "\"" + name + "\",\"INI\",,,,\"" + FlagLetters("") + "\",\"" + data +
         "\",\"Options\",\"Mode\",,,,\n";
}

// A REG_SZ entry of HKEY_LOCAL_MACHINE\Software\X as the writer writes it.
std::string WrittenReg(const std::string& name, const std::string& data) {
  return "\"" + name + "\",\"REG\",,,,\"" + FlagLetters("") + "\",\"" + data +
         "\",\"HKEY_LOCAL_MACHINE\",\"Software\\X\",\"Value\",\"REG_SZ\",,\"KEY_READ KEY_WRITE "
         "KEY_EXECUTE \",,," +
         kNo32 + "," + kNo32 + "," + kNo32 + "\r\n";
}

class SettingsEntriesTest : public ::testing::Test {
 protected:
  SettingsEntriesTest() : dir_(host_.scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(dir_.c_str()), 1);
  }
  std::string SettingsFile() const { return dir_ + "/SSR/textedit.ssr"; }
  void Open(const std::string& records) {
    if (!records.empty()) WriteFileBytes(SettingsFile(), Head() + records + kTail);
    ASSERT_EQ(qvtest::OpenProfileAt(dir_, kLockedOpen), 1);
    host_.Clear();
  }
  std::vector<SSRRecord*> ReadRe(REList** list) {
    EXPECT_EQ(MPGetRECompleteList("Text Editor", "8.0", list, MODE_READ), 1);
    return RecordsOf<SSRRecord>(*list);
  }
  SSRRecord* OneRe(REList** list) {
    auto records = ReadRe(list);
    EXPECT_EQ(records.size(), 1u);
    return records.empty() ? nullptr : records[0];
  }
  std::vector<uint8_t> Bytes(const SSRRecord* r) const {
    return std::vector<uint8_t>(r->row.Data, r->row.Data + r->row.DataLength);
  }
  // The entry a put would make: module, name, HKLM below Software\X.
  static SSRRecord* NewRe(const char* name) {
    SSRRecord* r = nullptr;
    MPNewRE(&r);
    snprintf(r->row.ModuleName, sizeof r->row.ModuleName, "Text Editor");
    snprintf(r->row.ModuleKey2, sizeof r->row.ModuleKey2, "8.0");
    snprintf(r->row.Name, sizeof r->row.Name, "%s", name);
    r->row.Type = SSR_TYPE_REG;
    r->row.Root = 0x80000002u;
    snprintf(r->row.KeyPath, sizeof r->row.KeyPath, "Software\\X");
    snprintf(r->row.ValueName, sizeof r->row.ValueName, "Value");
    r->row.DataType = 1;
    snprintf(r->row.Data, sizeof r->row.Data, "text");
    return r;
  }

  qvtest::ScriptedHost host_;
  std::string dir_;
};

TEST_F(SettingsEntriesTest, AnEmptyAccessFieldGivesTheDefaultMaskAndEmptyOptionsGiveZero) {
  Open(RegLine("R1", "x", "REG_SZ") +
       RegLine("R2", "x", "REG_SZ", "K", "KEY_QUERY_VALUE,KEY_SET_VALUE", "REG_OPTION_VOLATILE"));
  REList* list = nullptr;
  auto records = ReadRe(&list);
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0]->row.Access, 0x2001Fu);
  EXPECT_EQ(records[0]->row.Options, 0u);
  EXPECT_EQ(records[1]->row.Access, 0x3u);
  EXPECT_EQ(records[1]->row.Options, QV_REG_OPTION_VOLATILE);
  EXPECT_EQ(records[0]->row.Type, SSR_TYPE_REG);
  EXPECT_STREQ(records[0]->row.ModuleName, "Text Editor");
  EXPECT_STREQ(records[0]->row.ModuleKey2, "8.0");
  MPFreeREList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsEntriesTest, LeadingBackslashesOfAKeyPathAreRemoved) {
  Open(RegLine("R1", "x", "REG_SZ", "\\\\Software\\X"));
  REList* list = nullptr;
  SSRRecord* r = OneRe(&list);
  ASSERT_NE(r, nullptr);
  EXPECT_STREQ(r->row.KeyPath, "Software\\X");
  MPFreeREList(list);
}

TEST_F(SettingsEntriesTest, ADwordReadsAsTheNumberItSpellsAndIsWrittenBackSo) {
  Open(RegLine("R1", "00 A5 4E 01", "REG_DWORD") + RegLine("R2", "00,A5,4E,01", "REG_DWORD") +
       RegLine("R3", "00 A5 4E 01", "REG_DWORD_BIG_ENDIAN"));
  REList* list = nullptr;
  auto records = ReadRe(&list);
  ASSERT_EQ(records.size(), 3u);
  const std::vector<uint8_t> expected = {0x01, 0x4E, 0xA5, 0x00};
  for (SSRRecord* r : records) {
    EXPECT_EQ(Bytes(r), expected) << r->row.Name;
    EXPECT_EQ(qv::DataAsWritten(qv::ReEntry(), r->row), "00A54E01");
  }
  EXPECT_EQ(records[2]->row.DataType, 5u);
  ASSERT_EQ(MPPutRECompleteList("Text Editor", "8.0", list), 1)
      << ::testing::PrintToString(host_.errors());
  MPFreeREList(list);
  std::string file = ReadFileBytes(SettingsFile());
  EXPECT_NE(file.find("\"R1\",\"REG\",,,,\"" + FlagLetters("") +
                      "\",\"00A54E01\",\"HKEY_LOCAL_MACHINE\",\"Software\\X\",\"Value\","
                      "\"REG_DWORD\",,\"KEY_READ KEY_WRITE KEY_EXECUTE \",,," +
                      kNo32 + "," + kNo32 + "," + kNo32 + "\r\n"),
            std::string::npos)
      << file;
  EXPECT_NE(file.find("\"00A54E01\",\"HKEY_LOCAL_MACHINE\",\"Software\\X\",\"Value\","
                      "\"REG_DWORD_BIG_ENDIAN\""),
            std::string::npos);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsEntriesTest, AShortDwordIsReportedKeptAndWrittenBackAsFourBytes) {
  Open(RegLine("R1", "01 02 03", "REG_DWORD") + PsLine("P1"));
  REList* list = nullptr;
  SSRRecord* r = OneRe(&list);
  ASSERT_NE(r, nullptr);
  EXPECT_EQ(r->row.DataLength, 3);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_NE(
      host_.errors()[0].find("REG DWORD entry must consist of exactly four pairs of hex digits"),
      std::string::npos);
  MPFreeREList(list);
  // A put of another entry writes the stored one back as it reads.
  SSRRecord* other = NewRe("R2");
  ASSERT_EQ(MPPutRE(other), 1);
  MPFreeRE(other);
  EXPECT_NE(ReadFileBytes(SettingsFile())
                .find("\"R1\",\"REG\",,,,\"" + FlagLetters("") + "\",\"01020300\","),
            std::string::npos);
}

TEST_F(SettingsEntriesTest, AFifthPairOfADwordIsIgnoredWithoutAnError) {
  Open(RegLine("R1", "00 A5 4E 01 FF", "REG_DWORD"));
  REList* list = nullptr;
  SSRRecord* r = OneRe(&list);
  ASSERT_NE(r, nullptr);
  EXPECT_EQ(r->row.DataLength, 4);
  EXPECT_EQ(Bytes(r), (std::vector<uint8_t>{0x01, 0x4E, 0xA5, 0x00}));
  MPFreeREList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsEntriesTest, BinaryKeepsTextOrderAndABadPairIsReportedAndEndsTheBytes) {
  Open(RegLine("R1", "01 02 03", "REG_BINARY") + RegLine("R2", "0A 0B xy", "REG_BINARY") +
       RegLine("R3", "a\\,b", "REG_MULTI_SZ"));
  REList* list = nullptr;
  auto records = ReadRe(&list);
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(Bytes(records[0]), (std::vector<uint8_t>{1, 2, 3}));
  EXPECT_EQ(Bytes(records[1]), (std::vector<uint8_t>{0x0A, 0x0B}));
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_NE(host_.errors()[0].find("Bad binary constant: use a format like \"00 A5 4E 01\""),
            std::string::npos);
  // A multi-string keeps the text as written.
  EXPECT_STREQ(records[2]->row.Data, "a\\,b");
  EXPECT_EQ(records[2]->row.DataLength, 0);
  EXPECT_EQ(qv::DataAsRegistryValue(qv::ReEntry(), records[0]->row), "hex:01,02,03");
  MPFreeREList(list);
}

TEST_F(SettingsEntriesTest, WritingRegEntriesKeepsTheOtherKindsLinesInOrderBeforeThem) {
  const std::string others = IniLine("I1") + PsLine("P1") + ";IAO;" + IniLine("I2");
  Open(RegLine("R1", "x", "REG_SZ") + IniLine("I1") + PsLine("P1") + RegLine("R2", "y", "REG_SZ") +
       ";IAO;" + IniLine("I2"));
  REList* list = nullptr;
  auto records = ReadRe(&list);
  ASSERT_EQ(records.size(), 2u);
  ASSERT_EQ(MPPutRECompleteList("Text Editor", "8.0", list), 1);
  MPFreeREList(list);
  EXPECT_EQ(ReadFileBytes(SettingsFile()),
            Head() + others + WrittenReg("R1", "x") + WrittenReg("R2", "y") + kTail);
  EXPECT_TRUE(host_.errors().empty());
}

// The put finds the settings file through the entry that took the stored
// one's place (the sanitizers watch that it never reads the one it freed).
TEST_F(SettingsEntriesTest, APutOfAStoredNameTakesItsPlaceInTheSection) {
  Open(RegLine("R1", "x", "REG_SZ") + PsLine("P1") + RegLine("R2", "y", "REG_SZ"));
  SSRRecord* r = NewRe("R1");
  snprintf(r->row.Data, sizeof r->row.Data, "new");
  ASSERT_EQ(MPPutRE(r), 1) << ::testing::PrintToString(host_.errors());
  EXPECT_STREQ(r->row.Name, "R1");
  MPFreeRE(r);
  EXPECT_EQ(ReadFileBytes(SettingsFile()),
            Head() + PsLine("P1") + WrittenReg("R1", "new") + WrittenReg("R2", "y") + kTail);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsEntriesTest, GeneratedNamesCountFromTheFileThenFromTheList) {
  Open(IniLine("MP_GEN_1111_00000003") + PsLine("MP_GEN_1111_00000004"));
  SSRRecord* r = NewRe("");
  ASSERT_EQ(MPPutRE(r), 1);
  const std::string expected = std::string("MP_GEN_") + qv::State().name_prefix + "00000004";
  EXPECT_EQ(std::string(r->row.Name), expected);
  MPFreeRE(r);
  EXPECT_NE(ReadFileBytes(SettingsFile()).find("\"" + expected + "\",\"REG\""), std::string::npos);
  // The two rules side by side: a number equal to the running counter
  // moves the file's scan not, the list's scan does.
  EXPECT_EQ(qv::NextGeneratedNumber({"MP_GEN_1111_00000003", "MP_GEN_1111_00000004"}, {}), 4);
  EXPECT_EQ(qv::NextGeneratedNumber({"MP_GEN_1111_00000003"}, {"MP_GEN_2222_00000004"}), 5);
  // The number stands at position 12 of the name, wherever the prefix is.
  EXPECT_EQ(qv::NextGeneratedNumber({}, {"x MP_GEN_2222_00000009", "Plain"}), 3);
}

TEST_F(SettingsEntriesTest, TwoWritesInOneOpenProfileNeverGiveTheSameName) {
  // Whatever generated names the file holds, and in whatever order.
  const std::vector<std::vector<std::string>> holdings = {
      {},
      {"MP_GEN_1111_00000003", "MP_GEN_1111_00000004"},
      {"MP_GEN_1111_00000004", "MP_GEN_1111_00000003", "MP_GEN_9999_00000001"},
      {"MP_GEN_0000_00000000", "MP_GEN_0000_00000000", "MP_GEN_0000_00000001"},
      {"MP_GEN_1234_00000007", "x", "MP_GEN_1234_00000002", "MP_GEN_1234_00000008"},
  };
  for (const auto& names : holdings) {
    std::string lines;
    for (size_t i = 0; i < names.size(); ++i) {
      lines += i % 2 == 0 ? IniLine(names[i]) : PsLine(names[i]);
    }
    WriteFileBytes(SettingsFile(), Head() + lines + kTail);
    ASSERT_EQ(qvtest::OpenProfileAt(dir_, kLockedOpen), 1);
    std::set<std::string> given;
    // Writes of every kind, one after the other, each with one unnamed entry.
    for (int write = 0; write < 6; ++write) {
      SSRRecord* r = nullptr;
      if (write % 3 == 0) {
        r = NewRe("");
        ASSERT_EQ(MPPutRE(r), 1);
      } else if (write % 3 == 1) {
        MPNewPE(&r);
        snprintf(r->row.ModuleName, sizeof r->row.ModuleName, "Text Editor");
        snprintf(r->row.ModuleKey2, sizeof r->row.ModuleKey2, "8.0");
        r->row.Root = 0x80000001u;
        r->row.DataType = ZQFKEY_SZ;
        ASSERT_EQ(MPPutPE(r), 1);
      } else {
        MPNewIE(&r);
        snprintf(r->row.ModuleName, sizeof r->row.ModuleName, "Text Editor");
        snprintf(r->row.ModuleKey2, sizeof r->row.ModuleKey2, "8.0");
        ASSERT_EQ(MPPutIE(r), 1);
      }
      EXPECT_TRUE(given.insert(r->row.Name).second) << r->row.Name;
      MPFreeRE(r);
    }
    CloseMasterProfile();
  }
  EXPECT_TRUE(host_.errors().empty());
}

// A put of one entry streams the section; the list form reads the kind's
// entries into a list and writes them back after the other kinds' lines.
// Both must leave the same bytes, results, names and reports, whatever the
// section holds, for a stored name, a new one and none, each followed in
// the same open by an unnamed entry of another kind.
TEST_F(SettingsEntriesTest, AStreamedPutLeavesWhatAPutThroughAListLeaves) {
  const std::string module_only = "\n[SourceSafe]\n$Header$\n\n[Module]\n\"Text Editor\",\"8.0\"\n";
  std::string lower = RegLine("R3", "x", "REG_SZ");
  lower.replace(lower.find("\"REG\""), 5, "\"reg\"");
  std::string bad_root = RegLine("R5", "x", "REG_SZ");
  bad_root.replace(bad_root.find("HKEY_LOCAL_MACHINE"), 18, "HKEY_NOWHERE");
  std::string continued = RegLine("R6", "x", "REG_SZ");
  continued.insert(continued.find("\"HKEY"), "\\\n");
  const std::string mixed =
      RegLine("R1", "x", "REG_SZ") + PsLine("P1") + IniLine("I1") + RegLine("R2", "y", "REG_SZ");
  const std::string files[] = {
      Head() + mixed + kTail,
      Head() + IniLine("MP_GEN_1111_00000003") + RegLine("MP_GEN_1111_00000007", "g", "REG_SZ") +
          PsLine("MP_GEN_1111_00000004") + RegLine("R1", "x", "REG_SZ") + kTail,
      // Only the other kinds' names are generated; the order they stand in
      // counts.
      Head() + IniLine("MP_GEN_1111_00000002") + PsLine("MP_GEN_1111_00000009") +
          IniLine("MP_GEN_1111_00000005") + RegLine("R1", "x", "REG_SZ") + kTail,
      // A generated name of another kind, one below the first name given:
      // the second put counts on from the names given out before.
      Head() + IniLine("MP_GEN_1111_00000001") + kTail,
      // A number equal to the running counter counts in the kind's names
      // only.
      Head() + RegLine("MP_GEN_1111_00000000", "g", "REG_SZ") + kTail,
      // A stored entry without a name is given one on every rewrite.
      Head() + RegLine("", "x", "REG_SZ") + PsLine("P1") + RegLine("R1", "x", "REG_SZ") + kTail,
      // A tag in other letters is the kind's to read, but not to drop.
      Head() + lower + mixed + kTail,
      Head() + ";IAO;" + RegLine("R1", "x", "REG_SZ") + ";IAO;" + PsLine("P2") + mixed + kTail,
      // A comment that goes on into an entry; an entry that goes on.
      Head() + "; note \\\n" + mixed + kTail,
      Head() + mixed + continued + kTail,
      Head() + RegLine("R4", "01", "REG_DWORD") + mixed + kTail,
      // Lines that do not read.
      Head() + mixed + bad_root + kTail,
      Head() + mixed + "junk line\n" + kTail,
      // The section missing, last without a line end, twice.
      module_only,
      Head() + mixed.substr(0, mixed.size() - 1),
      Head() + mixed + kTail + "[System-Settings Records]\n" + RegLine("R8", "z", "REG_SZ"),
      // Lines the rewrite cannot copy whole, before and in the section.
      std::string(6000, 'h') + "\n" + Head() + mixed + kTail,
      Head() + mixed + ";" + std::string(6000, 'c') + "\n" + kTail,
  };
  struct Outcome {
    std::vector<int> results;
    std::vector<std::string> names;
    std::string bytes;
    std::vector<std::string> errors;
  };
  auto put_each = [&](const std::string& file, const char* name, bool streams) {
    WriteFileBytes(SettingsFile(), file);
    Outcome out;
    if (qvtest::OpenProfileAt(dir_, kLockedOpen) != 1) return out;
    // Each open draws its own prefix for the names it gives.
    snprintf(qv::State().name_prefix, sizeof qv::State().name_prefix, "0042_");
    host_.Clear();
    for (const qv::EntryFamily* family : {&qv::ReFamily(), &qv::PeFamily()}) {
      SSRRecord* r = NewRe(family == &qv::ReFamily() ? name : "");
      snprintf(r->row.Data, sizeof r->row.Data, "put");
      if (family == &qv::PeFamily()) {
        r->row.Type = SSR_TYPE_PS;
        r->row.DataType = ZQFKEY_SZ;
      }
      out.results.push_back(streams ? family->Put(r) : family->PutThroughList(r));
      out.names.push_back(r->row.Name);
      MPFreeRE(r);
    }
    out.bytes = ReadFileBytes(SettingsFile());
    out.errors = host_.errors();
    CloseMasterProfile();
    host_.Clear();
    return out;
  };
  for (const std::string& file : files) {
    for (const char* first : {"R1", "R9", ""}) {
      SCOPED_TRACE(std::string("[") + first + "] " + file.substr(0, 300));
      const Outcome streamed = put_each(file, first, true);
      const Outcome listed = put_each(file, first, false);
      ASSERT_EQ(streamed.results.size(), 2u);
      EXPECT_EQ(streamed.results, listed.results);
      EXPECT_EQ(streamed.names, listed.names);
      EXPECT_EQ(streamed.bytes, listed.bytes);
      EXPECT_EQ(streamed.errors, listed.errors);
    }
  }
}

TEST_F(SettingsEntriesTest, GetSsrFindsRegThenPsButNeverAnIniEntry) {
  Open(IniLine("Only") + PsLine("Both") + RegLine("Both", "x", "REG_SZ") + PsLine("Ps"));
  SSRObject* object = nullptr;
  EXPECT_EQ(MPGetSSR("Text Editor", "8.0", "Only", &object), 0);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"MPGetSSR could not retrieve the SSR requested."}));
  ASSERT_EQ(MPGetSSR("Text Editor", "8.0", "Both", &object), 1);
  EXPECT_NE(object->reg, nullptr);
  EXPECT_EQ(object->ps, nullptr);
  EXPECT_EQ(object->data, &object->reg->row);
  EXPECT_EQ(MPFreeSSR(&object), 1);
  EXPECT_EQ(object, nullptr);
  ASSERT_EQ(MPGetSSR("Text Editor", "8.0", "Ps", &object), 1);
  EXPECT_EQ(object->reg, nullptr);
  ASSERT_NE(object->ps, nullptr);
  EXPECT_EQ(object->ps->row.SecondType, ZQFKEY_NONE);
  EXPECT_EQ(object->data->DataType, ZQFKEY_SZ);
  MPFreeSSR(&object);
}

TEST_F(SettingsEntriesTest, ObjectsAreCreatedPutAndFreedByTheirType) {
  Open("");
  SSRObject* object = nullptr;
  EXPECT_EQ(MPCreateSSR(&object, SSR_TYPE_INI), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Unsupported SSR Type, cannot create SSR Object."}));
  host_.Clear();
  ASSERT_EQ(MPCreateSSR(&object, SSR_TYPE_PS), 1);
  ASSERT_NE(object->ps, nullptr);
  EXPECT_EQ(object->data->Type, SSR_TYPE_PS);
  snprintf(object->data->ModuleName, sizeof object->data->ModuleName, "Text Editor");
  snprintf(object->data->ModuleKey2, sizeof object->data->ModuleKey2, "8.0");
  snprintf(object->data->Name, sizeof object->data->Name, "Width");
  object->data->Root = 0x80000001u;
  object->data->DataType = ZQFKEY_DWORD;
  object->data->DataLength = 4;
  object->data->Data[0] = 0x20;
  snprintf(object->node->Description, sizeof object->node->Description, "Window width");
  ASSERT_EQ(MPPutSSR(object), 1);
  MPFreeSSR(&object);
  // The new module got its settings file, the entry its line.
  PEList* list = nullptr;
  ASSERT_EQ(MPGetPECompleteList("Text Editor", "8.0", &list, MODE_READ), 1);
  auto records = RecordsOf<SSRRecord>(list);
  ASSERT_EQ(records.size(), 1u);
  EXPECT_STREQ(records[0]->Description, "Window width");
  EXPECT_EQ(records[0]->row.Access, 0x2001Fu);
  EXPECT_EQ((std::vector<uint8_t>(records[0]->row.Data, records[0]->row.Data + 4)),
            (std::vector<uint8_t>{0x20, 0, 0, 0}));
  MPFreePEList(list);
  // An object holding neither entry.
  object = static_cast<SSRObject*>(calloc(1, sizeof(SSRObject)));
  EXPECT_EQ(MPPutSSR(object), 0);
  EXPECT_EQ(MPFreeSSR(&object), 1);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"MPPutSSR does not support this SSRType!",
                                      "MEMORY ERROR:\r\nDeleting SSR with unknown origin."}));
}

TEST_F(SettingsEntriesTest, AModuleWithoutASettingsFileGivesEmptyListsForAllThreeKinds) {
  Open("");
  RecordList* list = nullptr;
  ASSERT_EQ(MPGetIECompleteList("Text Editor", "8.0", &list, MODE_READ), 1);
  EXPECT_EQ(list->count, 0u);
  MPFreeIEList(list);
  ASSERT_EQ(MPGetRECompleteList("Text Editor", "8.0", &list, MODE_READ), 1);
  EXPECT_EQ(list->count, 0u);
  MPFreeREList(list);
  ASSERT_EQ(MPGetPECompleteList("Text Editor", "8.0", &list, MODE_READ), 1);
  EXPECT_EQ(list->count, 0u);
  MPFreePEList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsEntriesTest, ReadingOneKindSaysNothingAboutTheOtherKindsLines) {
  Open(IniLine("I1") + PsLine("P1") + RegLine("R1", "x", "REG_SZ") + IniLine("I2", "00 zz"));
  REList* list = nullptr;
  ASSERT_EQ(OneRe(&list) != nullptr, true);
  MPFreeREList(list);
  IEList* ini = nullptr;
  ASSERT_EQ(MPGetIECompleteList("Text Editor", "8.0", &ini, MODE_READ), 1);
  auto entries = RecordsOf<SSRRecord>(ini);
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_STREQ(entries[1]->row.Data, "00 zz");
  EXPECT_STREQ(entries[0]->row.Section, "Options");
  EXPECT_STREQ(entries[0]->row.Key, "Mode");
  MPFreeIEList(ini);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsEntriesTest, ALineOfAnotherKindIsRefusedByTheKindsOwnReader) {
  Open("");
  const std::pair<const qv::EntryKind*, const char*> cases[] = {
      {&qv::ReEntry(), "Requested type is REG.  Type of record is not an REG."},
      {&qv::PeEntry(), "Requested type is PS.  Type of record is not an PS."},
      {&qv::IeEntry(), "Requested type is INI.  Type of record is not an INI."},
  };
  for (const auto& [kind, message] : cases) {
    host_.Clear();
    std::string line = kind == &qv::IeEntry() ? PsLine("P1") : IniLine("I1");
    line.pop_back();
    SSRRecord record{};
    EXPECT_FALSE(qv::ParseEntryLine(*kind, line.data(), &record));
    ASSERT_EQ(host_.errors().size(), 1u);
    EXPECT_NE(host_.errors()[0].find(message), std::string::npos) << host_.errors()[0];
  }
}

TEST_F(SettingsEntriesTest, TheIniCreatedFileNameReadsLongButIsKeptAsAKeyPart) {
  const std::string wide(300, 'c');
  Open("\"I1\",\"INI\",\"" + wide + "\",,,\"" + FlagLetters("Y") +
       "\",\"on\",\"S\",\"K\",\"Note\",\"" + FlagLetters("YY") + "\",,\n");
  IEList* list = nullptr;
  ASSERT_EQ(MPGetIECompleteList("Text Editor", "8.0", &list, MODE_READ), 1);
  auto entries = RecordsOf<SSRRecord>(list);
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(std::string(entries[0]->row.CFKey1), std::string(40, 'c'));
  EXPECT_EQ(entries[0]->row.EntryFlags, 0x80000000u);
  EXPECT_STREQ(entries[0]->Description, "Note");
  EXPECT_EQ(entries[0]->ModifySubkeyFlags, 0xC0000000u);
  MPFreeIEList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(SettingsEntriesTest, RegEntriesLoseBitZeroOfTheirFlagsOnReading) {
  Open("\"R1\",\"REG\",,,,\"" + FlagLetters(std::string(31, 'N') + "Y") +
       "\",\"x\",\"HKEY_USERS\",\"K\",\"V\",\"REG_SZ\",,,,,,,\n" + PsLine("P1") +
       "\"P2\",\"PS\",,,,\"" + FlagLetters(std::string(31, 'N') + "Y") +
       "\",\"x\",\"HKEY_USERS\",\"K\",\"V\",\"ZQFKEY_SZ\",,,,,,,\n");
  REList* list = nullptr;
  SSRRecord* r = OneRe(&list);
  ASSERT_NE(r, nullptr);
  EXPECT_EQ(r->row.EntryFlags, 0u);
  EXPECT_EQ(r->row.Root, 0x80000003u);
  MPFreeREList(list);
  SSRRecord* ps = nullptr;
  ASSERT_EQ(MPGetPE("Text Editor", "8.0", "P2", &ps), 1);
  EXPECT_EQ(ps->row.EntryFlags, 1u);
  MPFreePE(ps);
}

TEST_F(SettingsEntriesTest, DeletesNameTheirEntryAndDeleteSsrTakesItsAssociationsFirst) {
  const std::string head =
      "\n[SourceSafe]\n$Header$\n\n[Module]\n\"Text Editor\",\"8.0\"\n\n"
      "[File System-Settings]\n\"US\",\"Main\",\"edit.exe\",\"R1\"\r\n"
      "\"US\",\"Main\",\"edit.exe\",\"R2\"\r\n"
      "[Module System-Settings]\n\"R1\"\r\n[System-Settings Records]\n";
  WriteFileBytes(SettingsFile(), head + RegLine("R1", "x", "REG_SZ") + IniLine("R1") + kTail);
  ASSERT_EQ(qvtest::OpenProfileAt(dir_, kLockedOpen), 1);
  host_.Clear();
  EXPECT_EQ(MPDeleteRE("Text Editor", "8.0", "Nope"), 0);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{"Cannot delete a node not listed in list"}));
  host_.Clear();
  EXPECT_EQ(MPDeleteSSR("Text Editor", "8.0", "R1"), 1);
  // The PS entry of that name was not there to delete.
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{"Cannot delete a node not listed in list"}));
  EXPECT_EQ(ReadFileBytes(SettingsFile()),
            "\n[SourceSafe]\n$Header$\n\n[Module]\n\"Text Editor\",\"8.0\"\n\n"
            "[File System-Settings]\n\"US\",\"Main\",\"edit.exe\",\"R2\"\r\n"
            "[Module System-Settings]\n[System-Settings Records]\n" +
                IniLine("R1") + kTail);
}

TEST_F(SettingsEntriesTest, AnEntryWhoseLineCouldNotReadBackIsRefused) {
  Open("");
  SSRRecord* r = NewRe("R1");
  r->row.Type = SSR_TYPE_PS;
  EXPECT_EQ(MPPutRE(r), 0);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0].rfind("RE record refused: Type", 0), 0u) << host_.errors()[0];
  MPFreeRE(r);
  EXPECT_FALSE(qvtest::PathExists(SettingsFile()));
}

// A line is put together whole and goes out in one write: a disk that
// fills up partway leaves the bytes a write per field would have left, and
// the line does not count as written.
TEST_F(SettingsEntriesTest, AnEntryLineGoesOutInOneWriteAndAFullDiskStopsIt) {
  SSRRecord* r = NewRe("R1");
  r->row.Access = SSR_DEFAULT_ACCESS;
  std::string line;
  ASSERT_TRUE(qv::AppendEntryLine(qv::ReEntry(), r, &line));
  ASSERT_EQ(line, WrittenReg("R1", "text"));
  const std::string path = host_.scratch().Join("line.ssr");
  for (size_t budget : {size_t{0}, size_t{1}, size_t{40}, line.size() - 1, line.size()}) {
    SCOPED_TRACE(budget);
    qv::File* file = qv::File::Open(path, qv::OpenMode::kCreateAlways);
    ASSERT_NE(file, nullptr);
    qv::SetWriteBudget(static_cast<int64_t>(budget));
    const bool written = qv::WriteRecordLine(qv::ReFamily().schema(), r, file->handle());
    qv::SetWriteBudget(-1);
    delete file;
    EXPECT_EQ(written, budget == line.size());
    EXPECT_EQ(ReadFileBytes(path), line.substr(0, budget));
  }
  EXPECT_TRUE(host_.errors().empty());
  MPFreeRE(r);
}

// A type without a name leaves its field empty and the line unwritten, each
// time it is written, while the other fields go out as they stand.
TEST_F(SettingsEntriesTest, AnEntryWhoseTypeHasNoNameWritesAnEmptyTypeAndFails) {
  SSRRecord* r = NewRe("R1");
  r->row.Access = SSR_DEFAULT_ACCESS;
  r->row.DataType = 99;
  for (int round = 0; round < 2; ++round) {
    std::string line;
    EXPECT_FALSE(qv::AppendEntryLine(qv::ReEntry(), r, &line));
    std::string expected = WrittenReg("R1", "text");
    expected.replace(expected.find("\"REG_SZ\""), 8, "\"\"");
    EXPECT_EQ(line, expected);
  }
  EXPECT_EQ(host_.errors().size(), 2u);
  for (const std::string& error : host_.errors()) {
    EXPECT_NE(error.find("Unsupported REG DataType Key"), std::string::npos) << error;
  }
  MPFreeRE(r);
}

TEST_F(SettingsEntriesTest, TheFlagTablesNameTheirBits) {
  QvFlagNames* table = nullptr;
  ASSERT_EQ(MPGetSSRFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "System Settings Record");
  EXPECT_STREQ(table->bitNames[0], "");
  EXPECT_STREQ(table->bitNames[2], "Local");
  EXPECT_STREQ(table->bitNames[3], "Network");
  EXPECT_STREQ(table->bitNames[4], "Workstation");
  EXPECT_STREQ(table->bitNames[5], "Migrate across minor versions of the module");
  EXPECT_STREQ(table->bitNames[6], "Contains Replaceable Parameters");
  EXPECT_STREQ(table->bitNames[7], "Set At Deinstall");
  EXPECT_STREQ(table->bitNames[8], "Don't Replace");
  EXPECT_STREQ(table->bitNames[9], "");
  EXPECT_EQ(table->flagMask, 0x28000000u);
  MPFreeFlagNames(table);
  const std::pair<int (*)(QvFlagNames**), std::string> languages[] = {
      {&MPGetSSRModifySubkeyFlagNames, "System Settings Modify Subkey Flags|_MODIFYSUBKEY"},
      {&MPGetSSRModifyValueNameFlagNames,
       "System Settings Modify ValueName Flags|_MODIFYVALUENAME"},
      {&MPGetSSRModifyValueFlagNames, "System Settings Modify Value Flags|_MODIFYVALUE"},
  };
  for (const auto& [get, text] : languages) {
    ASSERT_EQ(get(&table), 1);
    const std::string title = text.substr(0, text.find('|'));
    const std::string suffix = text.substr(text.find('|') + 1);
    EXPECT_EQ(table->kindLabel, title);
    EXPECT_EQ(table->bitNames[0], "BR" + suffix);
    EXPECT_EQ(table->bitNames[23], "US" + suffix);
    EXPECT_EQ(table->bitNames[27], "CT" + suffix);
    EXPECT_STREQ(table->bitNames[28], "");
    EXPECT_EQ(table->flagMask, 0u);
    MPFreeFlagNames(table);
  }
}

TEST_F(SettingsEntriesTest, DatabaseProfilesInsertButNeverDeleteEntries) {
  const std::string db = host_.scratch().Join("shipping.orv");
  qvtest::MakeDatabase(db, qv::OrvikTableDefinition(qv::LoSchema()) + ";");
  ASSERT_EQ(qvtest::OpenProfileAt(db, OPEN_ORVIK | OPEN_LOCK | OPEN_NO_VCS), 1);
  host_.Clear();
  EXPECT_EQ(MPDeleteRE("Text Editor", "8.0", "R1"), 0);
  EXPECT_EQ(MPDeleteIE("Text Editor", "8.0", "I1"), 0);
  REList* list = nullptr;
  EXPECT_EQ(MPGetRECompleteList("Text Editor", "8.0", &list, MODE_READ), 0);
  MPFreeREList(list);
  SSRRecord* r = NewRe("R1");
  EXPECT_EQ(MPPutRE(r), 0);
  MPFreeRE(r);
  SSRObject* object = nullptr;
  ASSERT_EQ(MPCreateSSR(&object, SSR_TYPE_REG), 1);
  EXPECT_EQ(MPPutSSR(object), 0);
  MPFreeSSR(&object);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{
                "Cannot delete RE record from Orvik shipping profile(Orvik not supported feature).",
                "Cannot delete IE record from Orvik shipping profile(Orvik not supported feature).",
                "Cannot begin to Query Orvik Database for REs",
                "Cannot insert RE record into Orvik shipping profile",
                "Cannot insert SSR record in Orvik shipping profile"}));
}

}  // namespace
