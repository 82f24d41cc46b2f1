// The location (LO) and icon-location (IL) families: reading with the
// folder checks, the changing operations with the bytes they leave in the
// files, the cursor search, copies, flag tables and the Orvik store.
#include "records/location_family.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/state.h"
#include "platform/fs.h"
#include "quorvex/quorvex.h"
#include "records/kind_api.h"
#include "records/orvik_rows.h"
#include "records/record_codec.h"
#include "support/fake_ss.h"
#include "support/location_profile.h"
#include "support/profiles.h"
#include "support/scripted_host.h"

namespace {

using qvtest::FlagLetters;
using qvtest::kLockedOpen;
using qvtest::kReadOnlyOpen;
using qvtest::LocationNames;
using qvtest::NewLocation;

const std::string kLodestar =
    "\"Lodestar\",\"1\",\"$DR$\",,\"Lodestar\",,\"\",\"" + FlagLetters("YYYN") + "\"\r\n";
const std::string kOld =
    ";IAO;\"Old\",\"1\",\"Lodestar\",\"1\",\"Old\",,\"\",\"" + FlagLetters("") + "\"\r\n";
const std::string kBin =
    "\"Bin\",\"1\",\"Lodestar\",\"1\",\"Bin\",,\"\",\"" + FlagLetters("NNY") + "\"\r\n";
const std::string kHelp = "\"Help\",\"1\",\"Lodestar\",\"1\",\"Help Files\",\"HELPFI~1\",\"\",\"" +
                          FlagLetters("NY") + "\"\r\n";

// A location file with a comment before the section, an inactive record and
// a section after it: everything but the records must survive a rewrite.
const std::string kHead = "\n[SourceSafe]\n$Header$\n\n; the folders of the product\n[Locations]\n";
const std::string kTail = "[Other]\nkeep this\r\nand this\n";

class LocationFamilyTest : public ::testing::Test {
 protected:
  LocationFamilyTest() : profile_(&host_) {}

  void WriteFile(const std::string& records) {
    qvtest::WriteFileBytes(profile_.LocationFile(), kHead + records + kTail);
  }

  // Opens after writing the records; the errors of the open are cleared.
  void OpenWith(const std::string& records, uint32_t flags = kLockedOpen) {
    profile_.WriteLocations(records);
    ASSERT_EQ(profile_.Open(flags), 1);
    host_.Clear();
  }

  std::string WarningPrefix(int line) const {
    return profile_.LocationFileAsNamed() + " : Line #" + std::to_string(line) + "\n";
  }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

// ---------------------------------------------------------------- reading

TEST_F(LocationFamilyTest, ReadsEveryFieldOfALine) {
  OpenWith("\"Help\",\"2.0\",\"Lodestar\",\"1\",\"Help Files\",\"HELPFI~1\",\"attr\",\"" +
           FlagLetters("YNNNY") + "\"\r\n");
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(list->count, 1u);
  const LORecord* r = static_cast<LORecord*>(list->head->record);
  EXPECT_STREQ(r->row.Name, "Help");
  EXPECT_STREQ(r->row.Version, "2.0");
  EXPECT_STREQ(r->row.ParentName, "Lodestar");
  EXPECT_STREQ(r->row.ParentVersion, "1");
  EXPECT_STREQ(r->row.Folder, "Help Files");
  EXPECT_STREQ(r->row.ShortFolder, "HELPFI~1");
  EXPECT_STREQ(r->row.Attribute40, "attr");
  EXPECT_EQ(r->row.Flags, LO_MODIFIABLE | LO_CUSTOM_INSTALL);
  EXPECT_EQ(r->recordFlags, 0u);
  EXPECT_EQ(r->lineNumber, 6u);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, OptionalFieldsMayBeEmpty) {
  OpenWith("\"Fonts\",\"1\",,,\"\\Windows\\Fonts\",,\"\",\"" + FlagLetters("NNNY") + "\"\r\n");
  LORecord* r = nullptr;
  ASSERT_EQ(MPGetLO("Fonts", "1", &r), 1);
  EXPECT_STREQ(r->row.ParentName, "");
  EXPECT_STREQ(r->row.ParentVersion, "");
  EXPECT_STREQ(r->row.Folder, "\\Windows\\Fonts");
  EXPECT_STREQ(r->row.ShortFolder, "");
  EXPECT_EQ(r->row.Flags, LO_DONT_REMOVE);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeLO(r);
}

TEST_F(LocationFamilyTest, ShortFolderIsDroppedWhenTheFolderIsAlreadyShort) {
  OpenWith("\"Bin\",\"1\",\"Lodestar\",\"1\",\"Bin\",\"BIN\",\"\",\"" + FlagLetters("") + "\"\r\n" +
           "\"Tools\",\"1\",\"Lodestar\",\"1\",\"Sub\\TOOLS.V2\",\"SUB\\TOOLS\",\"\",\"" +
           FlagLetters("") + "\"\r\n");
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(list->count, 2u);
  EXPECT_STREQ(static_cast<LORecord*>(list->head->record)->row.ShortFolder, "");
  EXPECT_STREQ(static_cast<LORecord*>(list->tail->record)->row.ShortFolder, "");
  EXPECT_TRUE(host_.errors().empty());
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, LongFolderWithoutShortFolderIsKeptWithAWarning) {
  OpenWith(kLodestar + "\"Help\",\"1\",\"Lodestar\",\"1\",\"Help Files\",,\"\",\"" +
           FlagLetters("") + "\"\r\n");
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(LocationNames(list), (std::vector<std::string>{"Lodestar", "Help"}));
  EXPECT_STREQ(static_cast<LORecord*>(list->tail->record)->row.Folder, "Help Files");
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{WarningPrefix(7) +
                                     "Location Help,1 has a long folder name and does not have an "
                                     "associated short folder name."});
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, LongFolderWarningShowsWhenTheProfileIsOpened) {
  profile_.WriteLocations("\"Docs\",\"3\",,,\"My Documents\",,\"\",\"" + FlagLetters("") +
                          "\"\r\n");
  ASSERT_EQ(profile_.Open(kReadOnlyOpen), 1);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{WarningPrefix(6) +
                                     "Location Docs,3 has a long folder name and does not have an "
                                     "associated short folder name."});
}

TEST_F(LocationFamilyTest, LongFolderWithItsShortFolderIsQuiet) {
  OpenWith(kHelp);
  LORecord* r = nullptr;
  ASSERT_EQ(MPGetLO("Help", "1", &r), 1);
  EXPECT_STREQ(r->row.ShortFolder, "HELPFI~1");
  EXPECT_TRUE(host_.errors().empty());
  MPFreeLO(r);
}

TEST_F(LocationFamilyTest, OpeningBracketWithoutClosingOneIsReported) {
  OpenWith("\"Shared\",\"1\",,,\"[ProgramFilesDir\\Vardo\",,\"\",\"" + FlagLetters("") + "\"\r\n" +
           "\"Common\",\"1\",,,\"[CommonDir\\Vardo\",\"C\\V\",\"\",\"" + FlagLetters("") +
           "\"\r\n");
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(list->count, 2u);
  // The folder counts as long: without a short form it is warned about too.
  EXPECT_EQ(
      host_.errors(),
      (std::vector<std::string>{
          "Location [ProgramFilesDir\\Vardo has a replaceable parameter with no closing bracket.",
          WarningPrefix(6) +
              "Location Shared,1 has a long folder name and does not have an associated short "
              "folder name.",
          "Location [CommonDir\\Vardo has a replaceable parameter with no closing bracket."}));
  EXPECT_STREQ(static_cast<LORecord*>(list->tail->record)->row.ShortFolder, "C\\V");
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, ReplaceableParametersAreLeftOutOfTheShortNameTest) {
  OpenWith("\"Shared\",\"1\",,,\"[ProgramFilesDir]\\Vardo\",\"X\",\"\",\"" + FlagLetters("") +
           "\"\r\n" + "\"Sys\",\"1\",,,\"[WinSysDir]\",,\"\",\"" + FlagLetters("") + "\"\r\n" +
           "\"Long\",\"1\",,,\"[WinDir]\\Long Name\",,\"\",\"" + FlagLetters("") + "\"\r\n");
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  const LORecord* shared = static_cast<LORecord*>(list->head->record);
  EXPECT_STREQ(shared->row.Folder, "[ProgramFilesDir]\\Vardo");
  EXPECT_STREQ(shared->row.ShortFolder, "");
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{WarningPrefix(8) +
                                     "Location Long,1 has a long folder name and does not have an "
                                     "associated short folder name."});
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, FoldersAreNormalisedAfterReading) {
  OpenWith("\"A\",\"1\",,,\"Bin\\\\Tools\\\",,\"\",\"" + FlagLetters("") + "\"\r\n" +
           "\"B\",\"1\",,,\"\\\",,\"\",\"" + FlagLetters("") + "\"\r\n" +
           "\"C\",\"1\",,,\"Program Files/Vardo\\\",\"PROGRA~1//VARDO\\\",\"\",\"" +
           FlagLetters("") + "\"\r\n");
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(list->count, 3u);
  RecordNode* node = list->head;
  EXPECT_STREQ(static_cast<LORecord*>(node->record)->row.Folder, "Bin\\Tools");
  EXPECT_STREQ(static_cast<LORecord*>(node->next->record)->row.Folder, "\\");
  EXPECT_STREQ(static_cast<LORecord*>(node->next->next->record)->row.Folder,
               "Program Files\\Vardo");
  EXPECT_STREQ(static_cast<LORecord*>(node->next->next->record)->row.ShortFolder,
               "PROGRA~1\\VARDO");
  EXPECT_TRUE(host_.errors().empty());
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, InactiveRecordsAreReadWithTheirFlag) {
  OpenWith(kLodestar + kOld);
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(list->count, 2u);
  EXPECT_EQ(static_cast<LORecord*>(list->tail->record)->recordFlags, RECORD_IAO);
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, MissingSectionReadsAsEmptyList) {
  OpenWith("");
  qvtest::WriteFileBytes(profile_.LocationFile(), "\n[SourceSafe]\n$Header$\n");
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count, 0u);
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, MissingFileIsReported) {
  OpenWith(kLodestar);
  std::remove(profile_.LocationFile().c_str());
  LOList* list = nullptr;
  EXPECT_EQ(MPGetLOCompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Location File " + profile_.LocationFileAsNamed() +
                                     " cannot be found or opened!"});
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, ReadingNeedsAnOpenProfile) {
  LOList* list = nullptr;
  EXPECT_EQ(MPGetLOCompleteList(&list, MODE_READ), 0);
  LORecord* record = nullptr;
  EXPECT_EQ(MPGetLO("Bin", "1", &record), 0);
  EXPECT_EQ(record, nullptr);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{
                "It appears that you have not run OpenMasterProfile successfully!",
                "It appears that you have not run OpenMasterProfile successfully!"}));
}

TEST_F(LocationFamilyTest, ChangesNeedALockedProfile) {
  OpenWith(kLodestar, kReadOnlyOpen);
  LORecord* record = NewLocation("Bin", "1", "Lodestar", "1", "Bin");
  EXPECT_EQ(MPPutLO(record), 0);
  EXPECT_EQ(MPDeleteLO("Lodestar", "1"), 0);
  EXPECT_EQ(MPWriteLOList(nullptr), 0);
  const std::string text = "It appears that you have not locked the Master Profile successfully!";
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{text, text, text}));
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kLodestar);
  MPFreeLO(record);
}

// ---------------------------------------------------------------- get, find, copy

TEST_F(LocationFamilyTest, GetFindsByNameAndVersionIgnoringCase) {
  OpenWith(kLodestar + kBin + "\"Bin\",\"2\",\"Lodestar\",\"1\",\"Bin2\",,\"\",\"" +
           FlagLetters("") + "\"\r\n");
  LORecord* r = nullptr;
  ASSERT_EQ(MPGetLO("bin", "2", &r), 1);
  EXPECT_STREQ(r->row.Folder, "Bin2");
  MPReleaseLO(&r);
  EXPECT_EQ(r, nullptr);
  // No version: the first location of that name.
  ASSERT_EQ(MPGetLO("BIN", "", &r), 1);
  EXPECT_STREQ(r->row.Folder, "Bin");
  MPReleaseLO(&r);
  EXPECT_EQ(MPGetLO("Bin", "3", &r), 0);
  EXPECT_EQ(r, nullptr);
  EXPECT_EQ(MPGetLO("", "", &r), 0);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LocationFamilyTest, FindWithoutNameStepsThroughTheList) {
  OpenWith(kLodestar + kBin + kHelp);
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  LORecord* r = nullptr;
  list->current = nullptr;
  std::vector<std::string> seen;
  while (MPFindLONode("", "", list, &r)) seen.push_back(r->row.Name);
  EXPECT_EQ(seen, (std::vector<std::string>{"Lodestar", "Bin", "Help"}));
  EXPECT_EQ(r, nullptr);
  EXPECT_EQ(list->current, nullptr);
  // The search goes on from the cursor: "Lodestar" lies behind it.
  ASSERT_EQ(MPFindLONode("Bin", "1", list, &r), 1);
  EXPECT_EQ(MPFindLONode("Lodestar", nullptr, list, &r), 0);
  list->current = nullptr;
  EXPECT_EQ(MPFindLONode("LODESTAR", nullptr, list, &r), 1);
  EXPECT_EQ(MPFindLONode("Help", "9", list, &r), 0);
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, ReplacingCopyKeepsTheStoredKeyAndLine) {
  LOList* list = nullptr;
  MPNewLOList(&list);
  LORecord* stored = NewLocation("Bin", "1", "Lodestar", "1", "Bin");
  stored->lineNumber = 12;
  MPAppendLO(list, stored);
  LORecord* source = NewLocation("BIN", "1", "Other", "2", "Binaries");
  source->lineNumber = 99;
  source->recordFlags = RECORD_IAO;
  LORecord* copy = stored;
  ASSERT_EQ(MPCopyLO(&copy, source, 1, list), 1);
  EXPECT_NE(copy, stored);
  EXPECT_EQ(list->head->record, copy);
  EXPECT_STREQ(copy->row.Name, "Bin");
  EXPECT_STREQ(copy->row.Version, "1");
  EXPECT_STREQ(copy->row.ParentName, "Other");
  EXPECT_STREQ(copy->row.Folder, "Binaries");
  EXPECT_EQ(copy->lineNumber, 12u);
  EXPECT_EQ(copy->recordFlags, RECORD_IAO);
  LORecord* plain = nullptr;
  ASSERT_EQ(MPCopyLO(&plain, source, 0, nullptr), 1);
  EXPECT_STREQ(plain->row.Name, "BIN");
  EXPECT_EQ(plain->lineNumber, 99u);
  MPFreeLO(plain);
  MPFreeLO(source);
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, NewRecordIsZeroed) {
  LORecord* r = nullptr;
  ASSERT_EQ(MPNewLO(&r), 1);
  LORecord zero;
  memset(&zero, 0, sizeof zero);
  EXPECT_EQ(memcmp(r, &zero, sizeof zero), 0);
  EXPECT_EQ(MPFreeLO(r), 1);
}

TEST_F(LocationFamilyTest, FlagTables) {
  LOFlagNames* lo = nullptr;
  ASSERT_EQ(MPGetLOFlagNames(&lo), 1);
  ASSERT_NE(lo, nullptr);
  EXPECT_STREQ(lo->kindLabel, "Location");
  EXPECT_EQ(lo->flagMask, 0x4FC00000u);
  const char* expected[12] = {"Modifiable",
                              "Visible in custom dialog",
                              "Always create",
                              "Don't remove (Win, WinSys, etc.)",
                              "Participates in Custom install",
                              "Participates in Minimum install",
                              "Participates in Standard install",
                              "Participates in Local install",
                              "Participates in Network install",
                              "Participates in Workstation install",
                              "Remote Create Always",
                              "Remote Don't Remove"};
  for (int i = 0; i < 12; ++i) EXPECT_STREQ(lo->bitNames[i], expected[i]) << i;
  for (int i = 12; i < 32; ++i) EXPECT_STREQ(lo->bitNames[i], "") << i;
  MPFreeFlagNames(lo);

  ILFlagNames* il = nullptr;
  ASSERT_EQ(MPGetILFlagNames(&il), 1);
  EXPECT_STREQ(il->kindLabel, "Icon Location");
  EXPECT_EQ(il->flagMask, 0u);
  EXPECT_STREQ(il->bitNames[0], "Don't remove");
  EXPECT_STREQ(il->bitNames[1], "Check if Personal Location [vs Common (matters only under NT)]");
  for (int i = 2; i < 32; ++i) EXPECT_STREQ(il->bitNames[i], "") << i;
  MPFreeFlagNames(il);
}

TEST_F(LocationFamilyTest, ListOperationsOfBothKinds) {
  LOList* list = nullptr;
  ASSERT_EQ(MPNewLOList(&list), 1);
  LORecord* a = NewLocation("A", "1", "", "", "A");
  LORecord* b = NewLocation("B", "1", "", "", "B");
  LORecord* c = NewLocation("C", "1", "", "", "C");
  EXPECT_EQ(MPAppendLO(list, a), 1);
  EXPECT_EQ(MPAddLOAt(list, 1, b), 1);
  EXPECT_EQ(MPInsertLOAfter(list, 2, c), 1);
  EXPECT_EQ(LocationNames(list), (std::vector<std::string>{"B", "A", "C"}));
  EXPECT_EQ(MPRemoveLONode(list, a), 1);
  MPFreeLO(a);
  EXPECT_EQ(MPDeleteLONode(list, 1), 1);
  MPFreeLO(b);
  EXPECT_EQ(LocationNames(list), (std::vector<std::string>{"C"}));
  EXPECT_EQ(MPSetLONode(list, 1, NewLocation("D", "1", "", "", "D")), 1);
  EXPECT_EQ(LocationNames(list), (std::vector<std::string>{"D"}));
  EXPECT_EQ(MPClearLOList(list), 1);
  EXPECT_EQ(list->count, 0u);
  EXPECT_EQ(MPFreeLOList(list), 1);

  ILList* icons = nullptr;
  ASSERT_EQ(MPNewILList(&icons), 1);
  ILRecord* icon = nullptr;
  ASSERT_EQ(MPNewIL(&icon), 1);
  EXPECT_EQ(MPAppendIL(icons, icon), 1);
  EXPECT_EQ(icons->count, 1u);
  EXPECT_EQ(MPFreeILList(icons), 1);
}

// ---------------------------------------------------------------- put and delete

TEST_F(LocationFamilyTest, PutAppendsAndKeepsEveryOtherByte) {
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  WriteFile(kLodestar + kOld + kBin);
  LORecord* help = NewLocation("Help", "1", "Lodestar", "1", "Help Files", "HELPFI~1");
  help->row.Flags = LO_VISIBLE_IN_CUSTOM;
  ASSERT_EQ(MPPutLO(help), 1);
  EXPECT_EQ(profile_.Locations(), kHead + kLodestar + kOld + kBin + kHelp + kTail);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeLO(help);
}

TEST_F(LocationFamilyTest, PutReplacesTheLocationWithTheSameKeyAndKeepsItsKey) {
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  WriteFile(kLodestar + kOld + kBin);
  LORecord* bin = NewLocation("BIN", "1", "Lodestar", "1", "Binaries", "BINARI~1");
  ASSERT_EQ(MPPutLO(bin), 1);
  EXPECT_EQ(profile_.Locations(),
            kHead + kLodestar + kOld +
                "\"Bin\",\"1\",\"Lodestar\",\"1\",\"Binaries\",\"BINARI~1\",\"\",\"" +
                FlagLetters("") + "\"\r\n" + kTail);
  MPFreeLO(bin);
}

TEST_F(LocationFamilyTest, PutWithAnotherVersionAddsALocation) {
  OpenWith(kLodestar + kBin);
  LORecord* bin = NewLocation("Bin", "2", "Lodestar", "1", "Bin2");
  ASSERT_EQ(MPPutLO(bin), 1);
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kLodestar + kBin +
                                      "\"Bin\",\"2\",\"Lodestar\",\"1\",\"Bin2\",,\"\",\"" +
                                      FlagLetters("") + "\"\r\n");
  MPFreeLO(bin);
}

TEST_F(LocationFamilyTest, PutCompleteListMergesIntoTheStoredLocations) {
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  WriteFile(kLodestar + kOld + kBin);
  LOList* list = nullptr;
  MPNewLOList(&list);
  MPAppendLO(list, NewLocation("Help", "1", "Lodestar", "1", "Help Files", "HELPFI~1"));
  static_cast<LORecord*>(list->head->record)->row.Flags = LO_VISIBLE_IN_CUSTOM;
  MPAppendLO(list, NewLocation("Lodestar", "1", "$DR$", "", "Lodestar2"));
  ASSERT_EQ(MPPutLOCompleteList(list), 1);
  EXPECT_EQ(list->count, 2u);  // the given list keeps its records
  EXPECT_EQ(profile_.Locations(), kHead + "\"Lodestar\",\"1\",\"$DR$\",,\"Lodestar2\",,\"\",\"" +
                                      FlagLetters("") + "\"\r\n" + kOld + kBin + kHelp + kTail);
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, PutCompleteListOfNothingRewritesTheFileUnchanged) {
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  WriteFile(kLodestar + kOld + kBin);
  LOList* list = nullptr;
  MPNewLOList(&list);
  ASSERT_EQ(MPPutLOCompleteList(list), 1);
  EXPECT_EQ(profile_.Locations(), kHead + kLodestar + kOld + kBin + kTail);
  MPFreeLOList(list);
}

TEST_F(LocationFamilyTest, DeleteRemovesTheLocationAndKeepsTheRest) {
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  WriteFile(kLodestar + kBin + kOld + kBin);
  ASSERT_EQ(MPDeleteLO("bin", "1"), 1);
  EXPECT_EQ(profile_.Locations(), kHead + kLodestar + kOld + kTail);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LocationFamilyTest, DeleteOfAnAbsentLocationFailsSilentlyAndWritesNothing) {
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  WriteFile(kLodestar + kBin);
  EXPECT_EQ(MPDeleteLO("Bin", "2"), 0);
  EXPECT_EQ(MPDeleteLO("", ""), 0);
  EXPECT_EQ(profile_.Locations(), kHead + kLodestar + kBin + kTail);
  EXPECT_TRUE(host_.errors().empty());
}

// "Win","2" and "Win","" side by side: the empty version names the second.
const std::string kWin2 = "\"Win\",\"2\",\"$DR$\",,\"Win2\",,\"\",\"" + FlagLetters("") + "\"\r\n";
const std::string kWinEmpty =
    "\"Win\",\"\",\"$DR$\",,\"WinE\",,\"\",\"" + FlagLetters("") + "\"\r\n";

TEST_F(LocationFamilyTest, AnExactKeyWinsOverAnotherVersionInEveryOperation) {
  OpenWith(kWin2 + kWinEmpty);
  LORecord* found = nullptr;
  ASSERT_EQ(MPGetLO("WIN", "", &found), 1);
  EXPECT_STREQ(found->row.Folder, "WinE");
  MPFreeLO(found);
  // A put of "Win","" replaces only "Win","".
  LORecord* record = NewLocation("Win", "", "$DR$", "", "Changed");
  ASSERT_EQ(MPPutLO(record), 1);
  MPFreeLO(record);
  std::string changed = "\"Win\",\"\",\"$DR$\",,\"Changed\",,\"\",\"" + FlagLetters("") + "\"\r\n";
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kWin2 + changed);
  // A child naming "Win" without a version lies below "Win","".
  char path[QV_PATH_SIZE];
  LORecord* child = NewLocation("Child", "1", "Win", "", "Sub");
  ASSERT_EQ(MPBuildLOPath(child, "", "", path), 1);
  EXPECT_STREQ(path, "$DR$\\Changed\\Sub\\");
  MPFreeLO(child);
  // A delete of "Win","" deletes only "Win","".
  ASSERT_EQ(MPDeleteLO("Win", ""), 1);
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kWin2);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LocationFamilyTest, AGivenVersionNeverReachesAnotherVersion) {
  OpenWith(kWin2 + kWinEmpty);
  LORecord* record = NewLocation("Win", "3", "$DR$", "", "Three");
  ASSERT_EQ(MPPutLO(record), 1);
  MPFreeLO(record);
  std::string three = "\"Win\",\"3\",\"$DR$\",,\"Three\",,\"\",\"" + FlagLetters("") + "\"\r\n";
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kWin2 + kWinEmpty + three);
  EXPECT_EQ(MPDeleteLO("Win", "9"), 0);
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kWin2 + kWinEmpty + three);
}

TEST_F(LocationFamilyTest, WithoutAnEmptyVersionAnEmptyKeyReachesTheName) {
  OpenWith(kWin2);
  LORecord* found = nullptr;
  ASSERT_EQ(MPGetLO("Win", "", &found), 1);
  EXPECT_STREQ(found->row.Version, "2");
  MPFreeLO(found);
  ASSERT_EQ(MPDeleteLO("Win", nullptr), 1);
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead);
}

TEST_F(LocationFamilyTest, UpdateReferencesWithNothingReferringSucceeds) {
  OpenWith(kLodestar);
  EXPECT_EQ(MPUpdateLOReferences("Lodestar", "1", 0x80000000u, "", ""), 1);
  EXPECT_EQ(MPUpdateLOReferences("Lodestar", "1", 0x20000000u, "Other", "2"), 1);
  EXPECT_EQ(MPUpdateLOReferences("Lodestar", "1", 7, "", ""), 1);
  EXPECT_EQ(MPUpdateILReferences("Programs", 0x80000000u, ""), 1);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LocationFamilyTest, DeleteKeepsTheChildLocations) {
  OpenWith(kLodestar + kBin);
  ASSERT_EQ(MPDeleteLO("Lodestar", "1"), 1);
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kBin);
}

TEST_F(LocationFamilyTest, ChangeUnderVersionControlChecksTheFileOut) {
  qvtest::FakeSs ss;
  profile_.WriteLocations(kLodestar);
  qv::SetReadOnly(profile_.LocationFile(), true);
  WriteLastProfile(profile_.dir().c_str(), OPEN_MASTER | OPEN_LOCK, "Proj");
  ASSERT_EQ(profile_.Open(OPEN_MASTER | OPEN_LOCK), 1);
  ss.AnswerSettingReadOnly("checkout", 0, profile_.LocationFile(), false);
  LORecord* bin = NewLocation("Bin", "1", "Lodestar", "1", "Bin");
  bin->row.Flags = LO_ALWAYS_CREATE;
  ASSERT_EQ(MPPutLO(bin), 1);
  std::vector<std::string> lines = ss.CommandLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0], "ss cp \\Proj\\locs");
  EXPECT_EQ(lines[1], "ss checkout vardo.lo");
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kLodestar + kBin);
  // Closing writes the list back; the file is checked out already.
  ss.ClearCalls();
  CloseMasterProfile();
  EXPECT_TRUE(ss.CommandLines().empty());
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kLodestar + kBin);
  MPFreeLO(bin);
}

// ---------------------------------------------------------------- icon locations

const std::string kPrograms =
    "\"Programs\",\"WIN32_NT\",\"Programs\",\"" + FlagLetters("Y") + "\"\r\n";
const std::string kDesktop =
    "\"Desktop\",\"WIN32_WINDOWS\",\"Desktop\",\"" + FlagLetters("NY") + "\"\r\n";

class IconLocationTest : public LocationFamilyTest {
 protected:
  void OpenWithIcons(const std::string& records) {
    profile_.WriteIcons(records);
    ASSERT_EQ(profile_.Open(kLockedOpen), 1);
    host_.Clear();
  }
};

TEST_F(IconLocationTest, ReadsEveryField) {
  OpenWithIcons(kPrograms + ";IAO;" + kDesktop);
  ILList* list = nullptr;
  ASSERT_EQ(MPGetILCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(list->count, 2u);
  const ILRecord* programs = static_cast<ILRecord*>(list->head->record);
  EXPECT_STREQ(programs->row.Name, "Programs");
  EXPECT_EQ(programs->row.OsType, IL_OS_WIN32_NT);
  EXPECT_STREQ(programs->row.Path, "Programs");
  EXPECT_EQ(programs->row.Flags, IL_DONT_REMOVE);
  EXPECT_EQ(programs->lineNumber, 6u);
  const ILRecord* desktop = static_cast<ILRecord*>(list->tail->record);
  EXPECT_EQ(desktop->row.OsType, IL_OS_WIN32_WINDOWS);
  EXPECT_EQ(desktop->row.Flags, IL_PERSONAL);
  EXPECT_EQ(desktop->recordFlags, RECORD_IAO);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeILList(list);
}

TEST_F(IconLocationTest, UnknownOsTypeIsReportedAndReadsAsWin32s) {
  OpenWithIcons("\"Old\",\"OS2\",\"Programs\",\"" + FlagLetters("") + "\"\r\n");
  ILRecord* r = nullptr;
  ASSERT_EQ(MPGetIL("old", &r), 1);
  EXPECT_EQ(r->row.OsType, IL_OS_WIN32_S);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{profile_.IconFileAsNamed() +
                                                     " : Line #6\nUnsupported OS Type"});
  MPFreeIL(r);
}

TEST_F(IconLocationTest, MissingFileIsReported) {
  OpenWithIcons(kPrograms);
  std::remove(profile_.IconFile().c_str());
  ILList* list = nullptr;
  EXPECT_EQ(MPGetILCompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Icon Location File " + profile_.IconFileAsNamed() +
                                     " cannot be found or opened!"});
  MPFreeILList(list);
}

TEST_F(IconLocationTest, PutReplacesByNameAndAppendsTheRest) {
  OpenWithIcons(";IAO;" + kPrograms + kDesktop);
  ILRecord* desktop = nullptr;
  MPNewIL(&desktop);
  snprintf(desktop->row.Name, sizeof desktop->row.Name, "DESKTOP");
  desktop->row.OsType = IL_OS_WIN32_NT;
  snprintf(desktop->row.Path, sizeof desktop->row.Path, "Desktop\\Vardo");
  ASSERT_EQ(MPPutIL(desktop), 1);
  snprintf(desktop->row.Name, sizeof desktop->row.Name, "Startup");
  desktop->row.OsType = IL_OS_WIN16;
  snprintf(desktop->row.Path, sizeof desktop->row.Path, "StartUp");
  desktop->row.Flags = IL_DONT_REMOVE;
  ASSERT_EQ(MPPutIL(desktop), 1);
  EXPECT_EQ(profile_.Icons(),
            std::string(qvtest::kIconLocationsHead) + ";IAO;" + kPrograms +
                "\"Desktop\",\"WIN32_NT\",\"Desktop\\Vardo\",\"" + FlagLetters("") + "\"\r\n" +
                "\"Startup\",\"WIN16\",\"StartUp\",\"" + FlagLetters("Y") + "\"\r\n");
  MPFreeIL(desktop);
}

TEST_F(IconLocationTest, DeleteAndGet) {
  OpenWithIcons(kPrograms + kDesktop);
  ILRecord* r = nullptr;
  ASSERT_EQ(MPGetIL("Desktop", &r), 1);
  EXPECT_STREQ(r->row.Path, "Desktop");
  MPReleaseIL(&r);
  ASSERT_EQ(MPDeleteIL("desktop"), 1);
  EXPECT_EQ(profile_.Icons(), qvtest::kIconLocationsHead + kPrograms);
  EXPECT_EQ(MPGetIL("Desktop", &r), 0);
  EXPECT_EQ(MPDeleteIL("Desktop"), 0);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(IconLocationTest, PutCompleteListAndFind) {
  OpenWithIcons(kPrograms);
  ILList* list = nullptr;
  MPNewILList(&list);
  ILRecord* desktop = nullptr;
  MPNewIL(&desktop);
  snprintf(desktop->row.Name, sizeof desktop->row.Name, "Desktop");
  desktop->row.OsType = IL_OS_WIN32_WINDOWS;
  snprintf(desktop->row.Path, sizeof desktop->row.Path, "Desktop");
  desktop->row.Flags = IL_PERSONAL;
  MPAppendIL(list, desktop);
  ASSERT_EQ(MPPutILCompleteList(list), 1);
  EXPECT_EQ(profile_.Icons(), qvtest::kIconLocationsHead + kPrograms + kDesktop);
  MPFreeILList(list);

  ASSERT_EQ(MPGetILCompleteList(&list, MODE_READ), 1);
  ILRecord* found = nullptr;
  list->current = nullptr;
  ASSERT_EQ(MPFindILNode("DESKTOP", list, &found), 1);
  EXPECT_STREQ(found->row.Path, "Desktop");
  EXPECT_EQ(MPFindILNode("", list, &found), 0);
  EXPECT_EQ(found, nullptr);
  MPFreeILList(list);
}

// ---------------------------------------------------------------- the Orvik store

class LocationOrvikTest : public LocationFamilyTest {
 protected:
  // A database with the LO and IL tables (either may be left out).
  std::string MakeDatabase(bool with_lo = true, bool with_il = true,
                           const std::string& extra_sql = "") {
    std::string db = host_.scratch().Join("shipping.orv");
    std::string sql;
    if (with_lo) sql += qv::OrvikTableDefinition(qv::LoSchema()) + ";";
    if (with_il) sql += qv::OrvikTableDefinition(qv::IlSchema()) + ";";
    sql += extra_sql;
    qvtest::MakeDatabase(db, sql);
    return db;
  }

  int OpenOrvik(const std::string& db, uint32_t extra = OPEN_LOCK) {
    return qvtest::OpenProfileAt(db, OPEN_ORVIK | OPEN_NO_VCS | extra);
  }
};

TEST_F(LocationOrvikTest, ARowThatCannotBeFetchedFailsTheReadWithTheKindsText) {
  // The second row's flags cannot be computed: the step fails on it.
  std::string db = host_.scratch().Join("broken.orv");
  // Added after the rows, the computed column is first evaluated by the read.
  qvtest::MakeDatabase(
      db,
      "CREATE TABLE LO (Name TEXT, Version TEXT, ParentName TEXT, ParentVersion TEXT, "
      "Folder TEXT, ShortFolder TEXT, Attribute40 TEXT);" +
          qv::OrvikTableDefinition(qv::IlSchema()) +
          ";INSERT INTO LO VALUES ('Lodestar', '1', '$DR$', '', 'Lodestar', '', ''), "
          "('Bad', '1', '$DR$', '', 'Bad', '', '');"
          "ALTER TABLE LO ADD COLUMN Flags INTEGER GENERATED ALWAYS AS "
          "(CASE WHEN Name = 'Bad' THEN json('not json') ELSE 0 END) VIRTUAL;");
  host_.AnswerDialog([](QuorvexOpenProfileRequest*) { return false; });
  ASSERT_EQ(OpenOrvik(db, OPEN_LOCK), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Cannot get Location out of Orvik profile.",
                                      "Problem retrieving locations.  Please Try another Master "
                                      "Profile."}));
}

TEST_F(LocationOrvikTest, LocationsAreReadFromTheDatabase) {
  std::string db = MakeDatabase(
      true, true,
      "INSERT INTO LO (Name, Version, ParentName, ParentVersion, Folder, ShortFolder, "
      "Attribute40, Flags) VALUES ('Lodestar', '1', '$DR$', '', 'Lodestar', '', '', 2147483648);"
      "INSERT INTO IL (Name, OsType, Path, Flags) VALUES ('Programs', 2, 'Programs', 0);");
  ASSERT_EQ(OpenOrvik(db), 1);
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(LocationNames(list), std::vector<std::string>{"Lodestar"});
  EXPECT_EQ(static_cast<LORecord*>(list->head->record)->row.Flags, LO_MODIFIABLE);
  MPFreeLOList(list);
  ILList* icons = nullptr;
  ASSERT_EQ(MPGetILCompleteList(&icons, MODE_READ), 1);
  EXPECT_EQ(icons->count, 1u);
  MPFreeILList(icons);
  // Single records come from the text store only.
  LORecord* r = nullptr;
  EXPECT_EQ(MPGetLO("Lodestar", "1", &r), 0);
  EXPECT_EQ(r, nullptr);
  char path[QV_PATH_SIZE];
  ASSERT_EQ(MPBuildLOPathByKey("Lodestar", "1", "", "", path), 1);
  EXPECT_STREQ(path, "$DR$\\Lodestar\\");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LocationOrvikTest, QueryThatCannotBeginIsReportedWithTheKindsLabels) {
  std::string db = MakeDatabase(true, false);
  ASSERT_EQ(OpenOrvik(db), 1);
  ILList* icons = nullptr;
  EXPECT_EQ(MPGetILCompleteList(&icons, MODE_READ), 0);
  ASSERT_NE(icons, nullptr);  // the empty list stays with the caller
  EXPECT_EQ(icons->count, 0u);
  MPFreeILList(icons);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Cannot begin to Query Orvik Database for ILs"});
}

TEST_F(LocationOrvikTest, OpeningWithoutALocationTableFails) {
  std::string db = MakeDatabase(false, true);
  // Reported even when silent: the database branch has always done so.
  EXPECT_EQ(OpenOrvik(db, OPEN_SILENT), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{
                "Cannot begin to Query Orvik Database for FGDs",
                "Problem retrieving locations.  Please Try another Master Profile."}));
}

TEST_F(LocationOrvikTest, PutIsAPlainInsertAndTheOpenListFollows) {
  std::string db = MakeDatabase();
  ASSERT_EQ(OpenOrvik(db), 1);
  LORecord* lodestar = NewLocation("Lodestar", "1", "$DR$", "", "Lodestar");
  ASSERT_EQ(MPPutLO(lodestar), 1);
  char path[QV_PATH_SIZE];
  ASSERT_EQ(MPBuildLOPathByKey("Lodestar", "1", "", "", path), 1);
  EXPECT_STREQ(path, "$DR$\\Lodestar\\");
  // The second put inserts a second row as given: nothing is replaced.
  snprintf(lodestar->row.Folder, sizeof lodestar->row.Folder, "Lodestar2");
  ASSERT_EQ(MPPutLO(lodestar), 1);
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  ASSERT_EQ(list->count, 2u);
  EXPECT_STREQ(static_cast<LORecord*>(list->head->record)->row.Folder, "Lodestar");
  EXPECT_STREQ(static_cast<LORecord*>(list->head->next->record)->row.Folder, "Lodestar2");
  MPFreeLOList(list);
  ASSERT_EQ(MPDeleteLO("Lodestar", "1"), 1);
  EXPECT_EQ(MPBuildLOPathByKey("Lodestar", "1", "", "", path), 0);
  EXPECT_TRUE(host_.errors().empty());
  MPFreeLO(lodestar);
}

TEST_F(LocationOrvikTest, RefusedInsertShowsBothTexts) {
  std::string db = MakeDatabase(
      true, true,
      "CREATE TRIGGER refuse_lo BEFORE INSERT ON LO BEGIN SELECT RAISE(ABORT, 'no'); END;"
      "CREATE TRIGGER refuse_il BEFORE INSERT ON IL BEGIN SELECT RAISE(ABORT, 'no'); END;");
  ASSERT_EQ(OpenOrvik(db), 1);
  LORecord* bin = NewLocation("Bin", "1", "Lodestar", "1", "Bin");
  EXPECT_EQ(MPPutLO(bin), 0);
  ILRecord* icon = nullptr;
  MPNewIL(&icon);
  EXPECT_EQ(MPPutIL(icon), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Cannot insert LO record in Orvik shipping profile",
                                      "Cannot insert LO record into Orvik shipping profile",
                                      "Cannot insert IL record in Orvik shipping profile",
                                      "Cannot insert IL record into Orvik shipping profile"}));
  MPFreeLO(bin);
  MPFreeIL(icon);
}

TEST_F(LocationOrvikTest, DeleteOfNothingAndWritingAreRefused) {
  std::string db = MakeDatabase();
  ASSERT_EQ(OpenOrvik(db), 1);
  EXPECT_EQ(MPDeleteLO("Bin", "1"), 0);
  EXPECT_EQ(MPDeleteIL("Programs"), 0);
  EXPECT_EQ(MPWriteLOList(nullptr), 0);
  EXPECT_EQ(MPWriteILList(nullptr), 0);
  EXPECT_EQ(host_.errors(),
            (std::vector<std::string>{"Cannot delete LO record from Orvik shipping profile.",
                                      "Cannot delete IL record from Orvik shipping profile.",
                                      "LOs not implemented in QUORVEX for Orvik",
                                      "ILs not implemented in QUORVEX for Orvik"}));
}

// ---------------------------------------------------------------- the tool's view

TEST_F(LocationFamilyTest, KindApisServeTheTool) {
  OpenWith(kLodestar + kBin);
  const qv::KindApi& lo = qv::LoKindApi();
  EXPECT_STREQ(lo.schema->kind->code, "LO");
  EXPECT_EQ(lo.key_names.size(), 2u);
  void* record = nullptr;
  ASSERT_TRUE(lo.get({"Bin", "1"}, &record));
  EXPECT_STREQ(static_cast<LORecord*>(record)->row.Folder, "Bin");
  static_cast<LORecord*>(record)->row.Flags = LO_MODIFIABLE;
  ASSERT_TRUE(lo.put(record));
  void* stored = lo.stored(record);
  ASSERT_NE(stored, nullptr);
  EXPECT_EQ(static_cast<LORecord*>(stored)->row.Flags, LO_MODIFIABLE);
  qv::FreeRecord(stored);
  qv::FreeRecord(record);
  EXPECT_TRUE(lo.remove({"Bin", "1"}));
  EXPECT_EQ(profile_.Locations(), qvtest::kLocationsHead + kLodestar);

  const qv::KindApi& il = qv::IlKindApi();
  EXPECT_STREQ(il.schema->kind->code, "IL");
  ASSERT_EQ(il.key_names.size(), 1u);
  EXPECT_STREQ(il.key_names[0], "Name");
  RecordList* list = nullptr;
  ASSERT_TRUE(il.list({}, &list));
  EXPECT_EQ(list->count, 0u);
  MPFreeILList(list);
}

}  // namespace
