// Opening, locking and closing a profile, the last-profile registry entry
// and the Open Profile dialog.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "core/state.h"
#include "platform/fs.h"
#include "platform/registry.h"
#include "profile/last_profile.h"
#include "quorvex/quorvex.h"
#include "records/location_family.h"
#include "records/orvik_rows.h"
#include "support/fake_ss.h"
#include "support/profile_holder.h"
#include "support/profiles.h"
#include "support/scripted_host.h"

namespace {

constexpr uint32_t kReadOnly = OPEN_MASTER | OPEN_NO_VCS;
constexpr uint32_t kLocked = OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK;

class OpenProfileTest : public ::testing::Test {
 protected:
  OpenProfileTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
  }

  int Open(std::string path, uint32_t flags, const char* log = "") {
    snprintf(path_, sizeof path_, "%s", path.c_str());
    flags_ = flags;
    return OpenMasterProfile(path_, &flags_, log);
  }

  std::string LockPath() const { return profile_ + "/QUORVEX.LOK"; }

  qvtest::ScriptedHost host_;
  std::string profile_;
  char path_[QV_PATH_SIZE];
  uint32_t flags_ = 0;
};

TEST_F(OpenProfileTest, OpensReadOnlyAndCloses) {
  ASSERT_EQ(Open(profile_, kReadOnly), 1);
  EXPECT_EQ(IsMasterProfileOpen(0), 1);
  EXPECT_EQ(IsMasterProfileOpen(OPEN_LOCK), 0);
  EXPECT_STREQ(QvOpenProfilePath(), profile_.c_str());
  EXPECT_EQ(QvOpenProfileFlags(), kReadOnly);
  EXPECT_FALSE(qvtest::PathExists(LockPath()));
  EXPECT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(IsMasterProfileOpen(0), 0);
  EXPECT_STREQ(QvOpenProfilePath(), "");
}

TEST_F(OpenProfileTest, TrailingSeparatorIsRemoved) {
  ASSERT_EQ(Open(profile_ + "\\", kReadOnly), 1);
  EXPECT_STREQ(path_, profile_.c_str());
}

TEST_F(OpenProfileTest, LockedOpenTakesTheLockFileAndCloseRemovesIt) {
  ASSERT_EQ(Open(profile_, kLocked), 1);
  EXPECT_EQ(IsMasterProfileOpen(OPEN_LOCK), 1);
  EXPECT_TRUE(qvtest::PathExists(LockPath()));
  CloseMasterProfile();
  EXPECT_FALSE(qvtest::PathExists(LockPath()));
}

TEST_F(OpenProfileTest, GeneratedNamePrefixIsFourDigitsAndUnderscore) {
  ASSERT_EQ(Open(profile_, kReadOnly), 1);
  std::string prefix = QvGeneratedNamePrefix();
  ASSERT_EQ(prefix.size(), 5u);
  for (int i = 0; i < 4; ++i) EXPECT_TRUE(isdigit(prefix[i])) << prefix;
  EXPECT_EQ(prefix[4], '_');
}

TEST_F(OpenProfileTest, RegistryRemembersPathTypeAndProject) {
  ASSERT_EQ(Open(profile_, kLocked), 1);
  std::string key = qv::LastProfileKey();
  EXPECT_EQ(key, std::string("SOFTWARE\\Vardo\\Lodestar\\Stewardry\\") +
                     qv::LastPathComponent(qv::HostProgramPath()));
  EXPECT_EQ(qv::RegistryGetString(key, "Path").value_or("?"), profile_);
  EXPECT_EQ(qv::RegistryGetDword(key, "Type").value_or(0), kLocked);
  EXPECT_EQ(qv::RegistryGetString(key, "VCS Project").value_or("?"), "");
#ifndef _WIN32
  // The registry file keeps the type as a number, as a registry export does.
  // (On Windows the read above is the check: it takes only a REG_DWORD.)
  std::string file = qvtest::ReadFileBytes(host_.registry_path());
  EXPECT_NE(file.find("\"Type\"=dword:a4000000"), std::string::npos) << file;
#endif
}

TEST_F(OpenProfileTest, EmptyPathOpensTheStoredPath) {
  ASSERT_EQ(Open(profile_, kReadOnly), 1);
  CloseMasterProfile();
  ASSERT_EQ(Open("", kReadOnly), 1);
  EXPECT_STREQ(path_, profile_.c_str());
}

TEST_F(OpenProfileTest, EmptyPathWithoutRegistryUsesTheParentOfTheProgramFolder) {
#ifdef _WIN32
  const char* separators = "\\/";
#else
  const char* separators = "/";
#endif
  std::string expected = qv::HostProgramPath();
  expected.resize(expected.find_last_of(separators));
  expected.resize(expected.find_last_of(separators));
  host_.AnswerDialog([](QuorvexOpenProfileRequest*) { return false; });
  int ok = Open("", kReadOnly | OPEN_PROMPT);
  EXPECT_EQ(ok, 0);
  ASSERT_EQ(host_.dialogs().size(), 1u);
  EXPECT_STREQ(host_.dialogs()[0].path, expected.c_str());
}

TEST_F(OpenProfileTest, TypeFromRegistryReplacesTheFlags) {
  ASSERT_EQ(Open(profile_, kLocked), 1);
  CloseMasterProfile();
  ASSERT_EQ(Open(profile_, OPEN_TYPE_FROM_REGISTRY | OPEN_NO_VCS), 1);
  EXPECT_EQ(flags_, kLocked);
  EXPECT_EQ(IsMasterProfileOpen(OPEN_LOCK), 1);
}

TEST_F(OpenProfileTest, StoredProjectIsUsedOnlyForTheStoredPath) {
  WriteLastProfile(profile_.c_str(), OPEN_MASTER, "Proj");
  // The same path in another case keeps the project: paths compare without case.
  std::string upper = profile_;
  uint32_t flags = OPEN_MASTER;
  char path[QV_PATH_SIZE];
  char project[QV_PATH_SIZE] = "";
  for (char& c : upper) c = static_cast<char>(toupper(c));
  snprintf(path, sizeof path, "%s", upper.c_str());
  ASSERT_EQ(ReadLastProfile(path, &flags, project), 1);
  EXPECT_STREQ(project, "Proj");
  snprintf(path, sizeof path, "%s", (profile_ + "2").c_str());
  ASSERT_EQ(ReadLastProfile(path, &flags, project), 1);
  EXPECT_STREQ(project, "");
}

TEST_F(OpenProfileTest, VersionControlWithoutProjectAsksAgain) {
  qvtest::FakeSs ss;  // an empty project listing
  host_.AnswerDialog([](QuorvexOpenProfileRequest* r) {
    r->versionControl = 0;  // the person switches version control off
    return true;
  });
  WriteLastProfile(profile_.c_str(), OPEN_MASTER, "");
  ASSERT_EQ(Open(profile_, OPEN_MASTER), 1);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0],
            "In order to use Version Control, you must select a Version Control Project.\nIf you "
            "change Master Profiles you must re-select your Version Control Project");
  ASSERT_EQ(host_.dialogs().size(), 1u);
  EXPECT_STREQ(host_.dialogs()[0].message, "Please Select a Profile...");
  EXPECT_EQ(flags_ & OPEN_NO_VCS, OPEN_NO_VCS);
}

TEST_F(OpenProfileTest, StoredProjectOpensWithVersionControl) {
  WriteLastProfile(profile_.c_str(), OPEN_MASTER, "Proj");
  ASSERT_EQ(Open(profile_, OPEN_MASTER), 1);
  EXPECT_STREQ(QvOpenProfileProject(), "Proj");
  EXPECT_TRUE(host_.dialogs().empty());
}

TEST_F(OpenProfileTest, NoRegistryEntryAndVersionControlShowsTheEnterPathDialog) {
  qvtest::FakeSs ss;  // the dialog lists the projects
  host_.AnswerDialog([](QuorvexOpenProfileRequest*) { return false; });
  EXPECT_EQ(Open(profile_, OPEN_MASTER), 0);
  ASSERT_EQ(host_.dialogs().size(), 1u);
  EXPECT_STREQ(host_.dialogs()[0].message, "Enter the full path of the Master Profile");
}

TEST_F(OpenProfileTest, SameProfileAgainIsANoOp) {
  std::string log = host_.scratch().Join("first.log");
  ASSERT_EQ(Open(profile_, kLocked, log.c_str()), 1);
  std::string registry = qvtest::ReadFileBytes(host_.registry_path());
  std::string second_log = host_.scratch().Join("second.log");
  ASSERT_EQ(Open(profile_, kLocked, second_log.c_str()), 1);
  EXPECT_FALSE(qvtest::PathExists(second_log));
  EXPECT_EQ(qvtest::ReadFileBytes(host_.registry_path()), registry);
  EXPECT_TRUE(qvtest::PathExists(LockPath()));
  EXPECT_EQ(IsMasterProfileOpen(OPEN_LOCK), 1);
}

TEST_F(OpenProfileTest, PromptForcesTheDialog) {
  ASSERT_EQ(Open(profile_, kReadOnly), 1);
  host_.AnswerDialog([](QuorvexOpenProfileRequest* r) {
    EXPECT_EQ(r->kind, QV_KIND_MASTER);
    EXPECT_EQ(r->flags & OPEN_PROMPT, 0u);  // cleared before the showing
    return true;
  });
  ASSERT_EQ(Open(profile_, kReadOnly | OPEN_PROMPT), 1);
  EXPECT_EQ(host_.dialogs().size(), 1u);
  EXPECT_EQ(flags_ & OPEN_PROMPT, 0u);
}

TEST_F(OpenProfileTest, MissingDirectoryGoesToTheDialogAndCancelKeepsTheOldProfile) {
  ASSERT_EQ(Open(profile_, kReadOnly), 1);
  host_.AnswerDialog([](QuorvexOpenProfileRequest*) { return false; });
  EXPECT_EQ(Open(host_.scratch().Join("nowhere"), kReadOnly), 0);
  EXPECT_TRUE(host_.errors().empty());  // a path that is no folder is not reported
  ASSERT_EQ(host_.dialogs().size(), 1u);
  EXPECT_STREQ(QvOpenProfilePath(), profile_.c_str());
}

TEST_F(OpenProfileTest, OneBlankIsNoProfile) {
  host_.AnswerDialog([](QuorvexOpenProfileRequest*) { return false; });
  EXPECT_EQ(Open(" ", kReadOnly), 0);
  EXPECT_EQ(host_.dialogs().size(), 1u);
}

TEST_F(OpenProfileTest, DialogChoiceIsOpened) {
  std::string real = profile_;
  host_.AnswerDialog([real](QuorvexOpenProfileRequest* r) {
    snprintf(r->path, sizeof r->path, "%s", real.c_str());
    r->readOnly = 0;
    r->readActiveOnly = 1;
    return true;
  });
  ASSERT_EQ(Open(host_.scratch().Join("nowhere"), kReadOnly), 1);
  EXPECT_STREQ(path_, profile_.c_str());
  EXPECT_EQ(flags_, kLocked | OPEN_READ_ACTIVE_ONLY);
  EXPECT_EQ(QvCommentMode(), 1);
}

TEST_F(OpenProfileTest, DialogShowsEveryControlFromTheFlags) {
  host_.AnswerDialog([](QuorvexOpenProfileRequest*) { return false; });
  Open(host_.scratch().Join("nowhere"),
       OPEN_ORVIK | OPEN_NO_VCS | OPEN_READ_ACTIVE_ONLY | OPEN_LOCK);
  ASSERT_EQ(host_.dialogs().size(), 1u);
  const QuorvexOpenProfileRequest& r = host_.dialogs()[0];
  EXPECT_EQ(r.kind, QV_KIND_ORVIK);
  EXPECT_EQ(r.versionControl, 0);
  EXPECT_EQ(r.readOnly, 0);
  EXPECT_EQ(r.readActiveOnly, 1);
  EXPECT_EQ(r.silent, 0);
  EXPECT_EQ(std::string(r.message).rfind("Error opening Orvik profile database file ", 0), 0u);
}

TEST_F(OpenProfileTest, DialogWithoutKindReportsTheProgrammingError) {
  uint32_t flags = kReadOnly;
  char path[QV_PATH_SIZE] = "";
  char project[QV_PATH_SIZE] = "";
  host_.AnswerDialog([](QuorvexOpenProfileRequest* r) {
    r->kind = QV_KIND_NONE;
    return true;
  });
  ASSERT_EQ(ShowOpenProfileDialog(path, project, "Please Select a Profile...", &flags), 1);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0], "Programming Error CheckedRadioButton #542!");
  EXPECT_EQ(flags & (OPEN_MASTER | OPEN_ORVIK | OPEN_INSTALLATION), 0u);
}

TEST_F(OpenProfileTest, DialogTurnsControlsIntoFlags) {
  qvtest::FakeSs ss;                                   // the dialog lists the projects
  uint32_t flags = OPEN_MASTER | OPEN_SILENT | 0x100;  // unknown bits are kept
  char path[QV_PATH_SIZE] = "p";
  char project[QV_PATH_SIZE] = "";
  host_.AnswerDialog([](QuorvexOpenProfileRequest* r) {
    EXPECT_EQ(r->versionControl, 1);
    EXPECT_EQ(r->readOnly, 1);
    EXPECT_EQ(r->silent, 1);
    r->kind = QV_KIND_INSTALLATION;
    r->versionControl = 0;
    r->silent = 0;
    snprintf(r->project, sizeof r->project, "%s", "Chosen");
    return true;
  });
  ASSERT_EQ(ShowOpenProfileDialog(path, project, "m", &flags), 1);
  EXPECT_EQ(flags, OPEN_INSTALLATION | OPEN_NO_VCS | 0x100);
  EXPECT_STREQ(project, "Chosen");
}

TEST_F(OpenProfileTest, SilentFailureShowsNoDialogAndNoLaterBoxes) {
  EXPECT_EQ(Open(host_.scratch().Join("nowhere"), kReadOnly | OPEN_SILENT), 0);
  EXPECT_TRUE(host_.dialogs().empty());
  ASSERT_EQ(Open(profile_, kReadOnly | OPEN_SILENT), 1);
  ReportError("Later.", 0);
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(OpenProfileTest, OpenReArmsTheMessageBoxes) {
  host_.AnswerBoxes({false});
  ReportError("Off.", 0);
  ASSERT_EQ(Open(profile_, kReadOnly), 1);
  ReportError("On again.", 0);
  EXPECT_EQ(host_.boxes().size(), 2u);
}

TEST_F(OpenProfileTest, LogFileReceivesReportedErrors) {
  std::string log = host_.scratch().Join("engine.log");
  ASSERT_EQ(Open(profile_, kReadOnly, log.c_str()), 1);
  ReportError("Logged.", 0);
  CloseMasterProfile();
  EXPECT_EQ(qvtest::ReadFileBytes(log),
            std::string(86, '*') +
                "\nLogged.\nDo you want to see a Message Box for the Next "
                "Error?\n");
}

TEST_F(OpenProfileTest, LogFileThatCannotBeMadeIsReportedAndOpenGoesOn) {
  std::string log = host_.scratch().Join("no/such/folder/engine.log");
  ASSERT_EQ(Open(profile_, kReadOnly, log.c_str()), 1);
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0], "Cannot open Logfile " + log + ".");
}

TEST_F(OpenProfileTest, ReadActiveOnlyStaysForTheProcess) {
  EXPECT_EQ(QvCommentMode(), 2);
  ASSERT_EQ(Open(profile_, kReadOnly | OPEN_READ_ACTIVE_ONLY), 1);
  EXPECT_EQ(QvCommentMode(), 1);
  CloseMasterProfile();
  ASSERT_EQ(Open(profile_, kReadOnly), 1);
  EXPECT_EQ(QvCommentMode(), 1);
}

TEST_F(OpenProfileTest, ClosingWhenNothingIsOpenReturnsOne) {
  EXPECT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(IsMasterProfileOpen(0), 0);
  EXPECT_STREQ(QvOpenProfilePath(), "");
}

TEST_F(OpenProfileTest, ClosingUnlockedShowsNoNoticeAndLockedShowsIt) {
  ASSERT_EQ(Open(profile_, kReadOnly), 1);
  CloseMasterProfile();
  EXPECT_TRUE(host_.closing_notices().empty());
  ASSERT_EQ(Open(profile_, kLocked), 1);
  CloseMasterProfile();
  ASSERT_EQ(host_.closing_notices().size(), 2u);
  EXPECT_EQ(host_.closing_notices()[0],
            "show:Closing Master Profile...|Closing the Master Profile...\nPlease wait to do any "
            "Checkins\nuntil this message is gone..");
  EXPECT_EQ(host_.closing_notices()[1].rfind("done:", 0), 0u);
}

TEST_F(OpenProfileTest, OpeningAnotherProfileClosesTheFirst) {
  std::string second = host_.scratch().Join("MP2");
  ASSERT_EQ(QvInitMasterProfile(second.c_str()), 1);
  ASSERT_EQ(Open(profile_, kLocked), 1);
  ASSERT_EQ(Open(second, kLocked), 1);
  EXPECT_FALSE(qvtest::PathExists(LockPath()));
  EXPECT_TRUE(qvtest::PathExists(second + "/QUORVEX.LOK"));
  EXPECT_STREQ(QvOpenProfilePath(), second.c_str());
}

TEST_F(OpenProfileTest, ReopeningLockedWithOtherFlagsKeepsTheLock) {
  ASSERT_EQ(Open(profile_, kLocked), 1);
  ASSERT_EQ(Open(profile_, kLocked | OPEN_READ_ACTIVE_ONLY), 1);
  EXPECT_TRUE(qvtest::PathExists(LockPath()));
  EXPECT_EQ(IsMasterProfileOpen(OPEN_LOCK), 1);
}

// The lock held by another process, which opens the profile locked and
// keeps it open until it is released or killed.
class LockHolder : public qvtest::ProfileHolder {
 public:
  explicit LockHolder(const std::string& profile) : ProfileHolder(profile, kLocked) {
    EXPECT_TRUE(opened()) << err();
  }
};

TEST_F(OpenProfileTest, SecondLockedOpenFailsWhileAnotherProcessHoldsTheLock) {
  LockHolder holder(profile_);
  host_.AnswerDialog([](QuorvexOpenProfileRequest*) { return false; });
  EXPECT_EQ(Open(profile_, kLocked), 0);
  std::string expected = "Cannot open Lockfile " + profile_ + "\\QUORVEX.LOK.";
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0], expected);
  ASSERT_EQ(host_.dialogs().size(), 1u);
  EXPECT_EQ(std::string(host_.dialogs()[0].message), expected);
  EXPECT_EQ(Open(profile_, kReadOnly), 1);  // reading is never locked out
  CloseMasterProfile();
  holder.Release();
  EXPECT_EQ(Open(profile_, kLocked), 1);
}

TEST_F(OpenProfileTest, LockOfAKilledProcessDoesNotBlock) {
  {
    LockHolder holder(profile_);
    holder.Kill();
  }
  EXPECT_EQ(Open(profile_, kLocked), 1);
}

TEST_F(OpenProfileTest, StaleLockFileDoesNotBlock) {
  qvtest::WriteFileBytes(LockPath(), "");
  EXPECT_EQ(Open(profile_, kLocked), 1);
}

TEST_F(OpenProfileTest, OrvikDatabaseOpensAndCloses) {
  std::string db = host_.scratch().Join("shipping.orv");
  // An Orvik profile holds its locations in a table of its own.
  qvtest::MakeDatabase(db, qv::OrvikTableDefinition(qv::LoSchema()));
  ASSERT_EQ(Open(db, OPEN_ORVIK | OPEN_NO_VCS | OPEN_LOCK), 1);
  EXPECT_EQ(IsMasterProfileOpen(OPEN_LOCK), 1);  // locked without a lock file
  EXPECT_EQ(qv::State().orvik_handles[0], 2u);
  EXPECT_EQ(qv::State().orvik_handles[1], 0u);
  EXPECT_EQ(qv::State().orvik_handles[2], 2u);
  EXPECT_EQ(qv::State().orvik_handles[3], 2u);
  EXPECT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(IsMasterProfileOpen(0), 0);
}

TEST_F(OpenProfileTest, OrvikLocationsThatCannotBeReadAreReportedEvenWhenSilent) {
  std::string db = host_.scratch().Join("empty.orv");
  qvtest::MakeDatabase(db, "CREATE TABLE unrelated(x)");
  EXPECT_EQ(Open(db, OPEN_ORVIK | OPEN_NO_VCS | OPEN_SILENT), 0);
  ASSERT_EQ(host_.errors().size(), 2u);
  EXPECT_EQ(host_.errors()[0], "Cannot begin to Query Orvik Database for FGDs");
  EXPECT_EQ(host_.errors()[1], "Problem retrieving locations.  Please Try another Master Profile.");
  // The database was made current before its locations failed, and stays so.
  EXPECT_STREQ(QvOpenProfilePath(), db.c_str());
}

TEST_F(OpenProfileTest, OrvikFileThatIsNoDatabaseIsRefusedInTheDialogOnly) {
  std::string bogus = host_.scratch().Write("bogus.orv", "this is not a database at all......");
  host_.AnswerDialog([](QuorvexOpenProfileRequest*) { return false; });
  EXPECT_EQ(Open(bogus, OPEN_ORVIK | OPEN_NO_VCS), 0);
  EXPECT_TRUE(host_.errors().empty());
  ASSERT_EQ(host_.dialogs().size(), 1u);
  EXPECT_EQ(std::string(host_.dialogs()[0].message),
            "Error opening Orvik profile database file " + bogus + ".");
}

TEST_F(OpenProfileTest, InstallationKindOpensNothing) {
  host_.AnswerDialog([](QuorvexOpenProfileRequest* r) {
    EXPECT_EQ(r->kind, QV_KIND_INSTALLATION);
    return false;
  });
  EXPECT_EQ(Open(profile_, OPEN_INSTALLATION | OPEN_NO_VCS), 0);
  EXPECT_EQ(host_.dialogs().size(), 1u);
}

}  // namespace
