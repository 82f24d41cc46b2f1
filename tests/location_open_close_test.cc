// Locations in opening and closing: the open reads them (and refuses a
// profile whose locations cannot be read), changes keep the open list up to
// date, and closing a locked profile writes the list back.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "core/state.h"
#include "platform/fs.h"
#include "platform/lock_file.h"
#include "quorvex/quorvex.h"
#include "support/location_profile.h"
#include "support/profiles.h"
#include "support/scripted_host.h"

namespace {

using qvtest::FlagLetters;
using qvtest::kLocationsHead;
using qvtest::kLockedOpen;
using qvtest::kReadOnlyOpen;

constexpr char kProblem[] = "Problem retrieving locations.  Please Try another Master Profile.";

const std::string kLodestar =
    "\"Lodestar\",\"1\",\"$DR$\",,\"Lodestar\",,\"\",\"" + FlagLetters("YYYN") + "\"\r\n";
const std::string kBin =
    "\"Bin\",\"1\",\"Lodestar\",\"1\",\"Bin\",,\"\",\"" + FlagLetters("NNY") + "\"\r\n";
const std::string kOld =
    ";IAO;\"Old\",\"1\",\"Lodestar\",\"1\",\"Old\",,\"\",\"" + FlagLetters("") + "\"\r\n";

class LocationOpenCloseTest : public ::testing::Test {
 protected:
  LocationOpenCloseTest() : profile_(&host_) {}

  std::string PathOf(const char* name) {
    char path[QV_PATH_SIZE] = "";
    if (!MPBuildLOPathByKey(name, "1", "", "", path)) return "(none)";
    return path;
  }

  // A second profile beside the first, with its own locations.
  std::string MakeSecondProfile(const std::string& records) {
    std::string dir = host_.scratch().Join("Second");
    EXPECT_EQ(QvInitMasterProfile(dir.c_str()), 1);
    qvtest::WriteFileBytes(dir + "/locs/vardo.lo", kLocationsHead + records);
    return dir;
  }

  int OpenPath(const std::string& dir, uint32_t flags) { return qvtest::OpenProfileAt(dir, flags); }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

TEST_F(LocationOpenCloseTest, OpeningReadsTheLocations) {
  profile_.WriteLocations(kLodestar + kBin + kOld);
  ASSERT_EQ(profile_.Open(kReadOnlyOpen), 1);
  ASSERT_NE(qv::State().location_list, nullptr);
  EXPECT_EQ(qvtest::LocationNames(qv::State().location_list),
            (std::vector<std::string>{"Lodestar", "Bin", "Old"}));
  EXPECT_EQ(PathOf("Bin"), "$DR$\\Lodestar\\Bin\\");
  EXPECT_TRUE(host_.errors().empty());
  CloseMasterProfile();
  EXPECT_EQ(qv::State().location_list, nullptr);
}

TEST_F(LocationOpenCloseTest, ReadActiveOnlyLeavesInactiveLocationsOut) {
  profile_.WriteLocations(kLodestar + kOld);
  ASSERT_EQ(profile_.Open(kReadOnlyOpen | OPEN_READ_ACTIVE_ONLY), 1);
  // The comment mode is set after the locations were read: only the lists
  // read from now on leave the inactive records out.
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(qvtest::LocationNames(list), std::vector<std::string>{"Lodestar"});
  MPFreeLOList(list);
}

TEST_F(LocationOpenCloseTest, MissingLocationFileFailsTheOpen) {
  std::remove(profile_.LocationFile().c_str());
  host_.AnswerDialog([](QuorvexOpenProfileRequest*) { return false; });
  EXPECT_EQ(profile_.Open(kReadOnlyOpen), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{kProblem});
  EXPECT_EQ(host_.dialogs().size(), 1u);
  EXPECT_EQ(IsMasterProfileOpen(0), 0);
}

TEST_F(LocationOpenCloseTest, MissingLocationFileFailsASilentOpenQuietly) {
  std::remove(profile_.LocationFile().c_str());
  EXPECT_EQ(profile_.Open(kReadOnlyOpen | OPEN_SILENT), 0);
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_TRUE(host_.dialogs().empty());
  EXPECT_EQ(IsMasterProfileOpen(0), 0);
}

TEST_F(LocationOpenCloseTest, FailedOpenKeepsTheOpenProfileAndItsLocations) {
  profile_.WriteLocations(kLodestar + kBin);
  ASSERT_EQ(profile_.Open(kReadOnlyOpen), 1);
  std::string second = MakeSecondProfile(kLodestar);
  std::remove((second + "/locs/vardo.lo").c_str());
  EXPECT_EQ(OpenPath(second, kReadOnlyOpen | OPEN_SILENT), 0);
  EXPECT_STREQ(QvOpenProfilePath(), profile_.dir().c_str());
  EXPECT_EQ(PathOf("Bin"), "$DR$\\Lodestar\\Bin\\");
}

TEST_F(LocationOpenCloseTest, OpeningAnotherProfileReadsItsOwnLocations) {
  profile_.WriteLocations(kLodestar + kBin);
  ASSERT_EQ(profile_.Open(kReadOnlyOpen), 1);
  // The open profile's catalogue now knows its location file.
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  MPFreeLOList(list);
  std::string second = MakeSecondProfile("\"Lodestar\",\"1\",\"$DR$\",,\"Star\",,\"\",\"" +
                                         FlagLetters("") + "\"\r\n");
  ASSERT_EQ(OpenPath(second, kReadOnlyOpen), 1);
  EXPECT_EQ(PathOf("Lodestar"), "$DR$\\Star\\");
  EXPECT_EQ(PathOf("Bin"), "(none)");
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(qvtest::LocationNames(list), std::vector<std::string>{"Lodestar"});
  MPFreeLOList(list);
}

TEST_F(LocationOpenCloseTest, OpenThatFailsOnTheLockLeavesTheOpenProfilesFilesAlone) {
  profile_.WriteLocations(kLodestar + kBin);
  ASSERT_EQ(profile_.Open(kReadOnlyOpen), 1);
  std::string second = MakeSecondProfile("\"Lodestar\",\"1\",\"$DR$\",,\"Star\",,\"\",\"" +
                                         FlagLetters("") + "\"\r\n");
  qv::LockFile* held = qv::LockFile::Acquire(second + "/QUORVEX.LOK");
  ASSERT_NE(held, nullptr);
  EXPECT_EQ(OpenPath(second, kLockedOpen | OPEN_SILENT), 0);
  held->Release();
  ASSERT_STREQ(QvOpenProfilePath(), profile_.dir().c_str());
  // Reading the locations again still reads the open profile's file.
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  EXPECT_EQ(qvtest::LocationNames(list), (std::vector<std::string>{"Lodestar", "Bin"}));
  MPFreeLOList(list);
}

TEST_F(LocationOpenCloseTest, ChangeThenCloseLeavesTheChangeInTheFile) {
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  LORecord* bin = qvtest::NewLocation("Bin", "1", "Lodestar", "1", "Bin");
  bin->row.Flags = LO_ALWAYS_CREATE;
  ASSERT_EQ(MPPutLO(bin), 1);
  MPFreeLO(bin);
  // The open list follows the change at once.
  EXPECT_EQ(PathOf("Bin"), "$DR$\\Lodestar\\Bin\\");
  EXPECT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(profile_.Locations(), kLocationsHead + kLodestar + kBin);
  ASSERT_EQ(profile_.Open(kReadOnlyOpen), 1);
  LORecord* read = nullptr;
  ASSERT_EQ(MPGetLO("Bin", "1", &read), 1);
  EXPECT_EQ(read->row.Flags, LO_ALWAYS_CREATE);
  MPFreeLO(read);
}

TEST_F(LocationOpenCloseTest, DeleteThenCloseLeavesTheLocationOut) {
  profile_.WriteLocations(kLodestar + kBin);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  ASSERT_EQ(MPDeleteLO("Bin", "1"), 1);
  EXPECT_EQ(PathOf("Bin"), "(none)");
  CloseMasterProfile();
  EXPECT_EQ(profile_.Locations(), kLocationsHead + kLodestar);
}

// A location file as people write it: comments and blank lines in the
// section, line feeds alone, a trailing backslash and a long folder.
const std::string kHandWritten =
    "\n[SourceSafe]\n$Header$\n\n[Locations]\n"
    "; the product's folders\n"
    "\"Lodestar\", \"1\", \"$DR$\", , \"Lodestar\\\", , \"\", \"" +
    FlagLetters("Y") +
    "\"\n"
    "\n"
    ";IAO;\"Old\",\"1\",\"Lodestar\",\"1\",\"Old\",,\"\",\"" +
    FlagLetters("") +
    "\"\n"
    "\"Help\",\"1\",\"Lodestar\",\"1\",\"Help Files\",,\"\",\"" +
    FlagLetters("") +
    "\"\n"
    "\n[Later]\nstays\n";

TEST_F(LocationOpenCloseTest, ReadOnlyOpenAndCloseLeaveTheFileByteIdentical) {
  qvtest::WriteFileBytes(profile_.LocationFile(), kHandWritten);
  ASSERT_EQ(profile_.Open(kReadOnlyOpen), 1);
  LOList* list = nullptr;
  ASSERT_EQ(MPGetLOCompleteList(&list, MODE_READ), 1);
  MPFreeLOList(list);
  EXPECT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(profile_.Locations(), kHandWritten);
}

TEST_F(LocationOpenCloseTest, LockedCloseWritesTheListBack) {
  qvtest::WriteFileBytes(profile_.LocationFile(), kHandWritten);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  EXPECT_EQ(CloseMasterProfile(), 1);
  // The section is written as the engine writes records: folders in their
  // normal form, inactive records behind their marker, the rest kept.
  EXPECT_EQ(profile_.Locations(),
            "\n[SourceSafe]\n$Header$\n\n[Locations]\n"
            "\"Lodestar\",\"1\",\"$DR$\",,\"Lodestar\",,\"\",\"" +
                FlagLetters("Y") + "\"\r\n" + kOld +
                "\"Help\",\"1\",\"Lodestar\",\"1\",\"Help Files\",,\"\",\"" + FlagLetters("") +
                "\"\r\n" + "[Later]\nstays\n");
  EXPECT_EQ(host_.closing_notices().size(), 2u);
}

TEST_F(LocationOpenCloseTest, LockedCloseOfAFileAsTheEngineWritesItChangesNoByte) {
  profile_.WriteLocations(kLodestar + kOld + kBin);
  const std::string before = profile_.Locations();
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  CloseMasterProfile();
  EXPECT_EQ(profile_.Locations(), before);
}

TEST_F(LocationOpenCloseTest, LockedCloseOfTheExampleProfileChangesNoByte) {
  const std::string example = std::string(QUORVEX_SOURCE_DIR) + "/examples/profile/locs/";
  qvtest::WriteFileBytes(profile_.LocationFile(), qvtest::ReadFileBytes(example + "vardo.lo"));
  qvtest::WriteFileBytes(profile_.IconFile(), qvtest::ReadFileBytes(example + "icons.lo"));
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_EQ(qv::State().location_list->count, 7u);
  ILList* icons = nullptr;
  ASSERT_EQ(MPGetILCompleteList(&icons, MODE_READ), 1);
  EXPECT_EQ(icons->count, 4u);
  MPFreeILList(icons);
  CloseMasterProfile();
  EXPECT_EQ(profile_.Locations(), qvtest::ReadFileBytes(example + "vardo.lo"));
}

TEST_F(LocationOpenCloseTest, CloseWritesBackEvenAfterTheReadOnlyAttributeWasSet) {
  profile_.WriteLocations(kLodestar);
  ASSERT_EQ(profile_.Open(kLockedOpen), 1);
  // Without version control the check-out makes the file writable, so the
  // write-back goes through even when the attribute was set meanwhile.
  qv::SetReadOnly(profile_.LocationFile(), true);
  CloseMasterProfile();
  EXPECT_FALSE(qv::IsReadOnly(profile_.LocationFile()));
  EXPECT_EQ(profile_.Locations(), kLocationsHead + kLodestar);
  EXPECT_TRUE(host_.errors().empty());
}

}  // namespace
