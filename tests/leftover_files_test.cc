// What a write killed half way leaves beside the profile files: the next
// locked open removes it, an open without the lock leaves it, and files
// that only look like it are never touched.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/profiles.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

constexpr uint32_t kUnlocked = OPEN_MASTER | OPEN_NO_VCS;
constexpr uint32_t kLocked = OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK;

// A replacement's temporary file and a batch's staged file, beside files
// that are there and beside new files that never arrived.
const std::vector<std::string> kLeftovers = {
    "ADS/.adlist.ad.staged",  // a staged next version
    "ADS/.adlist.ad.a1B2c3",  // a replacement's temporary file
    "locs/.vardo.lo.ZZ09az",
    "LANGUAGE/.pelham.la.staged",
    "SSR/.DRKSSR.DSI.x1y2z3",
    "ADS/..adlist.ad.staged.Qq7Rr8",  // a staged version half written
    // Beside files that never arrived: a new module, a new language.
    "modules/.TETE80.MO.q8W7e6",
    "RES_US/.PELHAMFR.RE.staged",
    "LANGUAGE/.SETUPFR.MSG.Ab3dE5",
};

// Names a person may well have, however close they come.
const std::vector<std::string> kLookAlikes = {
    "ADS/adlist.ad.staged",                // no leading dot
    "ADS/.adlist.ad.stage",                // not the batch's suffix
    "ADS/.adlist.ad.a1B2c",                // five letters, not six
    "ADS/.adlist.ad.a1B2c34",              // seven
    "ADS/.adlist.ad.a1-2c3",               // not letters and digits only
    "ADS/.adlist.ad_a1B2c3",               // no dot before them
    "ADS/.notes.txt.staged",               // not a profile file's name
    "ADS/..adlist.ad.staged",              // a second dot
    "ADS/..adlist.ad.a1B2c3",              // a second dot, and no staged file
    "ADS/..adlist.ad.stage.a1B2c3",        // the temporary file of no staged file
    "ADS/...adlist.ad.staged.a1B2c3",      // a third dot
    "modules/.adlist.ad.staged",           // the Ads file does not live here
    "modules/..mo.staged",                 // a hidden name, not a module file's
    "modules/.TETE80.MO.f0ldEr/kept.txt",  // a folder of that shape
    ".adlist.ad.staged",                   // the profile's own folder is not written
    "docs/.adlist.ad.staged",              // nor is a folder of the person's
};

class LeftoverFilesTest : public ::testing::Test {
 protected:
  LeftoverFilesTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    for (const std::string& name : kLeftovers) scratch().Write("MP/" + name, "half written\n");
    for (const std::string& name : kLookAlikes) scratch().Write("MP/" + name, "the person's\n");
  }

  qvtest::TempDir& scratch() { return host_.scratch(); }
  bool Exists(const std::string& name) { return qvtest::PathExists(profile_ + "/" + name); }

  qvtest::ScriptedHost host_;
  std::string profile_;
};

TEST_F(LeftoverFilesTest, ALockedOpenRemovesWhatKilledWritesLeft) {
  ASSERT_EQ(qvtest::OpenProfileAt(profile_, kLocked), 1);
  for (const std::string& name : kLeftovers) EXPECT_FALSE(Exists(name)) << name;
  EXPECT_TRUE(host_.boxes().empty());
  // Profile files themselves stay as they were.
  EXPECT_TRUE(Exists("ADS/adlist.ad"));
  EXPECT_TRUE(Exists("locs/vardo.lo"));
  EXPECT_TRUE(Exists("SSR/DRKSSR.DSI"));
  EXPECT_EQ(CloseMasterProfile(), 1);
}

TEST_F(LeftoverFilesTest, AnOpenWithoutTheLockLeavesThem) {
  // Another process may hold the lock and be writing these very files.
  ASSERT_EQ(qvtest::OpenProfileAt(profile_, kUnlocked), 1);
  for (const std::string& name : kLeftovers) EXPECT_TRUE(Exists(name)) << name;
  EXPECT_EQ(CloseMasterProfile(), 1);
}

TEST_F(LeftoverFilesTest, FilesThatOnlyLookLikeThemStay) {
  ASSERT_EQ(qvtest::OpenProfileAt(profile_, kLocked), 1);
  for (const std::string& name : kLookAlikes) {
    EXPECT_TRUE(Exists(name)) << name;
    EXPECT_EQ(scratch().Read("MP/" + name), "the person's\n") << name;
  }
  EXPECT_EQ(CloseMasterProfile(), 1);
}

}  // namespace
