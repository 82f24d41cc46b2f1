// Generated names of new profile files and their creation.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "core/state.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::PathExists;

class MungedFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    snprintf(qv::State().profile_path, QV_PATH_SIZE, "%s", profile_.path().c_str());
  }

  // Creates a file and returns the path handed back ("" for none); the file
  // is closed again.
  std::string Create(const char* name, const char* key, const char* kind) {
    char path[QV_PATH_SIZE] = "junk";
    QvFile file = CreateMungedFile(name, key, kind, path);
    if (file == QV_NO_FILE) {
      EXPECT_STREQ(path, "");
      return "";
    }
    EXPECT_TRUE(QvFileIsOpen(file));
    QvCloseFile(file);
    return path;
  }

  // What the engine hands back for a file in a folder of the profile.
  std::string Expected(const std::string& folder, const std::string& file) const {
    return profile_.path() + "\\" + folder + "\\" + file;
  }

  qvtest::ScriptedHost host_;
  qvtest::TempDir profile_;
};

TEST(UppercaseInitialsTest, TakesTheCapitalsInOrder) {
  char out[64] = "junk";
  EXPECT_EQ(UppercaseInitials("Address Book Manager", out), 1);
  EXPECT_STREQ(out, "ABM");
  UppercaseInitials("TextEditor", out);
  EXPECT_STREQ(out, "TE");
  UppercaseInitials("aBcD 9 Z!", out);
  EXPECT_STREQ(out, "BDZ");
  UppercaseInitials("lower only", out);
  EXPECT_STREQ(out, "");
  UppercaseInitials("", out);
  EXPECT_STREQ(out, "");
}

TEST_F(MungedFileTest, TwoInitialsAreGivenTwice) {
  EXPECT_EQ(Create("Text Editor", "8.0", "MO"), Expected("MODULES", "TETE80.MO"));
  EXPECT_TRUE(PathExists(profile_.Join("MODULES/TETE80.MO")));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(MungedFileTest, ThreeInitialsTakeFiveLettersThenNumberedNames) {
  EXPECT_EQ(Create("Address Book Manager", "1.0", "MO"), Expected("MODULES", "Addre10.MO"));
  EXPECT_EQ(Create("Address Book Manager", "1.0", "MO"), Expected("MODULES", "Addre001.MO"));
  EXPECT_EQ(Create("Address Book Manager", "1.0", "MO"), Expected("MODULES", "Addre002.MO"));
  EXPECT_TRUE(PathExists(profile_.Join("MODULES/Addre10.MO")));
  EXPECT_TRUE(PathExists(profile_.Join("MODULES/Addre001.MO")));
  EXPECT_TRUE(PathExists(profile_.Join("MODULES/Addre002.MO")));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(MungedFileTest, FewerThanTwoInitials) {
  EXPECT_EQ(Create("editor", "2.5", "PR"), Expected("Products", "edito25.PR"));
  EXPECT_EQ(Create("Spellchecker", "", "SSR"), Expected("SSR", "Spell.SSR"));
  EXPECT_EQ(Create("Ab", "7", "MO"), Expected("MODULES", "Ab7.MO"));
}

TEST_F(MungedFileTest, KeyLosesItsDotsAndKeepsThreeCharacters) {
  EXPECT_EQ(Create("Editor Tools", "10.20.30", "PR"), Expected("Products", "ETET102.PR"));
  EXPECT_EQ(Create("Very Big Editor", "1.2.3.4", "SSR"), Expected("SSR", "VeryB123.SSR"));
}

TEST_F(MungedFileTest, InstallTakesEightLettersOfTheName) {
  EXPECT_EQ(Create("Network Install Kit", "", "IN"), Expected("Installs", "NetworkI.IN"));
  EXPECT_EQ(Create("Network Install Kit", "", "IN"), Expected("Installs", "Netwo001.IN"));
  EXPECT_EQ(Create("Lab", "", "IN"), Expected("Installs", "Lab.IN"));
}

TEST_F(MungedFileTest, ResourceFileExistsAlready) {
  EXPECT_EQ(Create("US", "", "RE"), Expected("RES_US", "PELHAMUS.RE"));
  SetParseFile("elsewhere.mo");
  EXPECT_EQ(Create("US", "", "RE"), "");
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0],
            "You have requested to create a resource file that you cannot, contact vendor.");
  EXPECT_FALSE(PathExists(profile_.Join("RES_US/PELHA001.RE")));
}

TEST_F(MungedFileTest, MessageFileIsNumberedWhenTaken) {
  EXPECT_EQ(Create("US", "", "MSG"), Expected("Language", "SETUPUS.MSG"));
  EXPECT_EQ(Create("US", "", "MSG"), Expected("Language", "SETUP001.MSG"));
}

TEST_F(MungedFileTest, KindIsTheExtensionInTheCaseGiven) {
  EXPECT_EQ(Create("Text Editor", "8.0", "mo"), Expected("MODULES", "TETE80.mo"));
  EXPECT_EQ(Create("Text Editor", "8.0", "Ssr"), Expected("SSR", "TETE80.Ssr"));
}

TEST_F(MungedFileTest, ExistingFolderIsFoundWithoutRegardToCase) {
  qvtest::MakeDirs(profile_.Join("modules"));
  EXPECT_EQ(Create("Text Editor", "8.0", "MO"), Expected("MODULES", "TETE80.MO"));
  EXPECT_TRUE(PathExists(profile_.Join("modules/TETE80.MO")));
  // No second folder beside it: the one listed keeps the spelling it had.
  // (Asking whether "MODULES" exists would not tell on a file system that
  // ignores case.)
  std::vector<std::string> names;
  for (const qv::DirEntry& entry : qv::FindFiles(profile_.Join("*"))) names.push_back(entry.name);
  EXPECT_EQ(names, std::vector<std::string>{"modules"});
}

TEST_F(MungedFileTest, NewFileIsEmptyAndWritable) {
  char path[QV_PATH_SIZE];
  QvFile file = CreateMungedFile("Text Editor", "8.0", "MO", path);
  ASSERT_TRUE(QvFileIsOpen(file));
  EXPECT_EQ(AddSections(file, "MO", "Text Editor", "8.0"), 1);
  QvCloseFile(file);
  std::string bytes = qvtest::ReadFileBytes(profile_.Join("MODULES/TETE80.MO"));
  EXPECT_EQ(bytes.substr(0, 14), "\n[SourceSafe]\n");
}

TEST_F(MungedFileTest, ModuleGroupsAndUnknownKindsAreRefused) {
  for (const char* kind : {"MG", "mg", "RES", "LO", ""}) {
    EXPECT_EQ(Create("Group", "1", kind), "") << kind;
  }
  ASSERT_EQ(host_.errors().size(), 5u);
  for (const std::string& error : host_.errors()) {
    EXPECT_EQ(error, "Unsupported File Type given to CreateMungedFile.");
  }
  EXPECT_FALSE(PathExists(profile_.Join("UIGroups")));
}

TEST_F(MungedFileTest, GivesUpSilentlyAfterTheLastNumber) {
  qvtest::MakeDirs(profile_.Join("MODULES"));
  qvtest::WriteFileBytes(profile_.Join("MODULES/Addre10.MO"), "");
  for (int n = 1; n <= 999; ++n) {
    char name[32];
    snprintf(name, sizeof name, "MODULES/Addre%03d.MO", n);
    qvtest::WriteFileBytes(profile_.Join(name), "");
  }
  EXPECT_EQ(Create("Address Book Manager", "1.0", "MO"), "");
  EXPECT_TRUE(host_.errors().empty());
  // One name free again: it is found.
  std::remove(profile_.Join("MODULES/Addre998.MO").c_str());
  EXPECT_EQ(Create("Address Book Manager", "1.0", "MO"), Expected("MODULES", "Addre998.MO"));
}

TEST_F(MungedFileTest, NoProfileOpen) {
  qv::State().profile_path[0] = '\0';
  EXPECT_EQ(Create("Text Editor", "8.0", "MO"), "");
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_EQ(host_.errors()[0], "It appears that you have not run OpenMasterProfile successfully!");
}

}  // namespace
