// The folder checks of locations and the paths built from them: long and
// short paths, the install root "$DR$", root locations, absolute folders,
// missing parents and cycles, and the catalogue's path building that now
// resolves real locations.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/location_checks.h"
#include "support/location_profile.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"

namespace {

using qvtest::FlagLetters;
using qvtest::kReadOnlyOpen;

// ---------------------------------------------------------------- folder checks

TEST(LocationChecksTest, NormalisationCollapsesSeparatorsAndDropsTheTrailingOne) {
  EXPECT_EQ(qv::NormaliseFolderName("Bin"), "Bin");
  EXPECT_EQ(qv::NormaliseFolderName("Bin\\"), "Bin");
  EXPECT_EQ(qv::NormaliseFolderName("Bin\\\\Tools\\\\\\"), "Bin\\Tools");
  EXPECT_EQ(qv::NormaliseFolderName("Program Files/Vardo/"), "Program Files\\Vardo");
  EXPECT_EQ(qv::NormaliseFolderName("\\"), "\\");
  EXPECT_EQ(qv::NormaliseFolderName("\\\\\\"), "\\\\");
  EXPECT_EQ(qv::NormaliseFolderName("\\\\server\\share\\"), "\\\\server\\share");
  EXPECT_EQ(qv::NormaliseFolderName("C:\\"), "C:\\");
  EXPECT_EQ(qv::NormaliseFolderName("C:\\Windows\\"), "C:\\Windows");
  EXPECT_EQ(qv::NormaliseFolderName("[WinDir]\\\\Fonts"), "[WinDir]\\Fonts");
  EXPECT_EQ(qv::NormaliseFolderName(""), "");
}

TEST(LocationChecksTest, ReplaceableParametersAreStripped) {
  std::string out;
  EXPECT_TRUE(qv::StripReplaceableParameters("[ProgramFilesDir]\\Vardo", &out));
  EXPECT_EQ(out, "\\Vardo");
  EXPECT_TRUE(qv::StripReplaceableParameters("[A]x[B]y", &out));
  EXPECT_EQ(out, "xy");
  EXPECT_TRUE(qv::StripReplaceableParameters("[WinSysDir]", &out));
  EXPECT_EQ(out, "");
  EXPECT_TRUE(qv::StripReplaceableParameters("Plain]Text", &out));
  EXPECT_EQ(out, "Plain]Text");
  EXPECT_FALSE(qv::StripReplaceableParameters("[A]x[Open\\Vardo", &out));
  EXPECT_EQ(out, "x");
}

TEST(LocationChecksTest, ShortPathsFollowTheEightDotThreeRules) {
  for (const char* path :
       {"BIN", "Bin", "LONGNAME.TXT", "A.B", "PROGRA~1", "C:\\WINDOWS\\SYSTEM", "\\WINDOWS",
        "..\\BIN", ".", "", "\\", "$$_!#%&'", "(A)-{B}.^@~", "SUB\\TOOLS.V2", "\xC4RGER"}) {
    EXPECT_TRUE(qv::IsShortPath(path)) << path;
  }
  for (const char* path :
       {"LONGNAMES", "A.TXTX", "My Dir", "A.B.C", ".HIDDEN", "NAME.", "A+B", "A,B", "A=B", "A;B",
        "a[b", "BIN\\LONGNAMES", "C:LONGNAMES1", "Help Files"}) {
    EXPECT_FALSE(qv::IsShortPath(path)) << path;
  }
}

// ---------------------------------------------------------------- paths

std::string Line(const std::string& name, const std::string& parent, const std::string& folder,
                 const std::string& short_folder = "") {
  std::string parent_fields =
      parent.empty() ? "," : (parent == "$DR$" ? "\"$DR$\"," : "\"" + parent + "\",\"1\"");
  std::string short_field = short_folder.empty() ? "" : "\"" + short_folder + "\"";
  return "\"" + name + "\",\"1\"," + parent_fields + ",\"" + folder + "\"," + short_field +
         ",\"\",\"" + FlagLetters("") + "\"\r\n";
}

class LocationPathsTest : public ::testing::Test {
 protected:
  LocationPathsTest() : profile_(&host_) {
    profile_.WriteLocations(
        Line("Lodestar", "$DR$", "Lodestar") + Line("Bin", "Lodestar", "Bin") +
        Line("Samples", "Bin", "Samples") + Line("Help", "Lodestar", "Help Files", "HELPFI~1") +
        Line("Shared", "", "[ProgramFilesDir]\\Vardo") + Line("Fonts", "", "\\Windows\\Fonts") +
        Line("Under Fonts", "Fonts", "TrueType") + Line("Orphan", "Missing", "Orphan") +
        Line("Vardo", "$DR$", "Vardo Apps", "VARDOA~1") + Line("LoopA", "LoopB", "A") +
        Line("LoopB", "LoopA", "B") + Line("Self", "Self", "Self") + Line("Drive", "", "\\"));
  }

  void SetUp() override {
    ASSERT_EQ(profile_.Open(kReadOnlyOpen), 1);
    ASSERT_TRUE(host_.errors().empty()) << host_.errors()[0];
  }

  std::string Path(const char* name, const char* root = "", bool short_form = false) {
    char path[QV_PATH_SIZE];
    memset(path, 'x', sizeof path);
    int found = short_form ? MPBuildLOShortPathByKey(name, "1", root, "", path)
                           : MPBuildLOPathByKey(name, "1", root, "", path);
    return found ? std::string(path) : "(none: " + std::string(path) + ")";
  }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

TEST_F(LocationPathsTest, UnderTheInstallRootWithoutARootLocationThePathKeepsDR) {
  EXPECT_EQ(Path("Lodestar"), "$DR$\\Lodestar\\");
  EXPECT_EQ(Path("Vardo"), "$DR$\\Vardo Apps\\");
}

TEST_F(LocationPathsTest, UnderARootLocationThePathContinuesTheRootsPath) {
  EXPECT_EQ(Path("Lodestar", "Vardo"), "$DR$\\Vardo Apps\\Lodestar\\");
  EXPECT_EQ(Path("Bin", "Vardo"), "$DR$\\Vardo Apps\\Lodestar\\Bin\\");
  EXPECT_EQ(Path("Vardo", "Lodestar"), "$DR$\\Lodestar\\Vardo Apps\\");
  // The root location itself is where the install starts.
  EXPECT_EQ(Path("Vardo", "Vardo"), "$DR$\\Vardo Apps\\");
  EXPECT_EQ(Path("Bin", "Lodestar"), "$DR$\\Lodestar\\Bin\\");
}

TEST_F(LocationPathsTest, RootThatNamesNoLocationIsNoRoot) {
  EXPECT_EQ(Path("Bin", "Nowhere"), "$DR$\\Lodestar\\Bin\\");
}

TEST_F(LocationPathsTest, NestedLocationsContinueTheirParents) {
  EXPECT_EQ(Path("Bin"), "$DR$\\Lodestar\\Bin\\");
  EXPECT_EQ(Path("Samples"), "$DR$\\Lodestar\\Bin\\Samples\\");
  EXPECT_EQ(Path("Help"), "$DR$\\Lodestar\\Help Files\\");
}

TEST_F(LocationPathsTest, ShortPathTakesEachLevelsShortFolder) {
  EXPECT_EQ(Path("Help", "", true), "$DR$\\Lodestar\\HELPFI~1\\");
  EXPECT_EQ(Path("Samples", "", true), "$DR$\\Lodestar\\Bin\\Samples\\");
  EXPECT_EQ(Path("Bin", "Vardo", true), "$DR$\\VARDOA~1\\Lodestar\\Bin\\");
  EXPECT_EQ(Path("Bin", "Vardo", false), "$DR$\\Vardo Apps\\Lodestar\\Bin\\");
}

TEST_F(LocationPathsTest, FolderBeginningWithABackslashStandsOnItsOwn) {
  EXPECT_EQ(Path("Fonts"), "\\Windows\\Fonts\\");
  EXPECT_EQ(Path("Fonts", "Vardo"), "\\Windows\\Fonts\\");
  EXPECT_EQ(Path("Under Fonts"), "\\Windows\\Fonts\\TrueType\\");
  EXPECT_EQ(Path("Drive"), "\\");
}

TEST_F(LocationPathsTest, ReplaceableParametersStayInThePath) {
  EXPECT_EQ(Path("Shared"), "[ProgramFilesDir]\\Vardo\\");
  EXPECT_EQ(Path("Shared", "", true), "[ProgramFilesDir]\\Vardo\\");
}

TEST_F(LocationPathsTest, MissingParentContributesNothing) {
  EXPECT_EQ(Path("Orphan"), "Orphan\\");
}

TEST_F(LocationPathsTest, CyclesEndWhereTheyCloseOnThemselves) {
  EXPECT_EQ(Path("LoopA"), "B\\A\\");
  EXPECT_EQ(Path("LoopB"), "A\\B\\");
  EXPECT_EQ(Path("Self"), "Self\\");
}

TEST_F(LocationPathsTest, UnknownLocationHasNoPathAndNoMessage) {
  EXPECT_EQ(Path("Nowhere"), "(none: )");
  EXPECT_EQ(Path(""), "(none: )");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LocationPathsTest, RecordGivenByTheCallerIsBuiltAmongTheProfilesLocations) {
  LORecord* tools = qvtest::NewLocation("Tools", "1", "Bin", "1", "Tools\\Extra", "TOOLS");
  char path[QV_PATH_SIZE];
  ASSERT_EQ(MPBuildLOPath(tools, nullptr, nullptr, path), 1);
  EXPECT_STREQ(path, "$DR$\\Lodestar\\Bin\\Tools\\Extra\\");
  ASSERT_EQ(MPBuildLOShortPath(tools, "Vardo", "1", path), 1);
  EXPECT_STREQ(path, "$DR$\\VARDOA~1\\Lodestar\\Bin\\TOOLS\\");
  // A copy of a location that names itself as parent ends too.
  LORecord* self = qvtest::NewLocation("Self", "1", "Self", "1", "Self");
  ASSERT_EQ(MPBuildLOPath(self, "", "", path), 1);
  EXPECT_STREQ(path, "Self\\");
  EXPECT_EQ(MPBuildLOPath(nullptr, "", "", path), 0);
  EXPECT_STREQ(path, "");
  MPFreeLO(tools);
  MPFreeLO(self);
}

TEST_F(LocationPathsTest, LongPathsAreCutToTheBuffer) {
  LORecord* deep = qvtest::NewLocation("Deep", "1", "Bin", "1", std::string(250, 'd').c_str());
  char path[QV_PATH_SIZE];
  ASSERT_EQ(MPBuildLOPath(deep, "", "", path), 1);
  EXPECT_EQ(strlen(path), QV_PATH_SIZE - 1u);
  EXPECT_EQ(std::string(path).rfind("$DR$\\Lodestar\\Bin\\ddd", 0), 0u);
  MPFreeLO(deep);
}

TEST(LocationPathsWithoutProfileTest, ByKeyNeedsAnOpenProfile) {
  qvtest::ScriptedHost host;
  char path[QV_PATH_SIZE] = "old";
  EXPECT_EQ(MPBuildLOPathByKey("Bin", "1", "", "", path), 0);
  EXPECT_STREQ(path, "");
  EXPECT_EQ(host.errors(), std::vector<std::string>{
                               "It appears that you have not run OpenMasterProfile successfully!"});
  // A record needs no profile when it names no parent.
  LORecord* fonts = qvtest::NewLocation("Fonts", "1", "$DR$", "", "Fonts");
  ASSERT_EQ(MPBuildLOPath(fonts, "", "", path), 1);
  EXPECT_STREQ(path, "$DR$\\Fonts\\");
  MPFreeLO(fonts);
}

// ---------------------------------------------------------------- the catalogue's path building

std::string BuildEx(const char* location, const char* root, const char* base, const char* name,
                    int* result) {
  char destination[QV_PATH_SIZE];
  memset(destination, 'x', sizeof destination);
  *result = BuildFilePathNameEx(destination, location, "1", "", "def.dll", root, "1", base, name);
  return destination;
}

TEST_F(LocationPathsTest, BuildFilePathNameExPlacesALocationBelowTheLodestarLocation) {
  int result = 0;
  EXPECT_EQ(BuildEx("Bin", "", "C:\\src\\", "name.dll", &result), "C:\\src\\Bin\\name.dll");
  EXPECT_EQ(result, 1);
  EXPECT_EQ(BuildEx("Samples", "", "C:\\src\\", nullptr, &result),
            "C:\\src\\Bin\\Samples\\def.dll");
  EXPECT_EQ(BuildEx("Lodestar", "", "C:\\src\\", nullptr, &result), "C:\\src\\def.dll");
  EXPECT_EQ(BuildEx("Help", "Vardo", "C:\\src\\", nullptr, &result),
            "C:\\src\\Help Files\\def.dll");
  EXPECT_EQ(result, 1);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LocationPathsTest, BuildFilePathNameExPutsASeparatorAfterABaseWithoutOne) {
  int result = 0;
  EXPECT_EQ(BuildEx("Bin", "", "/out", nullptr, &result), "/out/Bin\\def.dll");
  EXPECT_EQ(result, 1);
  EXPECT_EQ(BuildEx("Bin", "", "C:\\src", "name.dll", &result), "C:\\src\\Bin\\name.dll");
  // A base that ends in a separator gets no second one.
  EXPECT_EQ(BuildEx("Bin", "", "/out/", nullptr, &result), "/out/Bin\\def.dll");
  // The Lodestar location itself adds nothing but the file name's separator.
  EXPECT_EQ(BuildEx("Lodestar", "", "/out", nullptr, &result), "/out/def.dll");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(LocationPathsTest, BuildFilePathNameExStillReportsAnUnknownLocation) {
  int result = 1;
  EXPECT_EQ(BuildEx("Nowhere", "", "C:\\src\\", nullptr, &result), "C:\\src\\");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"BuildFilePathNameEx has been asked to find "
                                                     "location \"Nowhere\",\"1\" that does not "
                                                     "exist."});
}

TEST_F(LocationPathsTest, LodestarLocationPathResolves) {
  char destination[QV_PATH_SIZE] = "old";
  ASSERT_EQ(GetLodestarLocationPath(destination, "", ""), 1);
  EXPECT_STREQ(destination, "$DR$\\Lodestar\\");
  ASSERT_EQ(GetLodestarLocationPath(destination, "Vardo", "1"), 1);
  EXPECT_STREQ(destination, "$DR$\\Vardo Apps\\Lodestar\\");
  EXPECT_TRUE(host_.errors().empty());
}

// ---------------------------------------------------------------- quorvex location-path

TEST_F(LocationPathsTest, ToolPrintsThePath) {
  CloseMasterProfile();
  auto run = qvtest::RunTool({"-p", profile_.dir(), "location-path", "Bin", "1"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "$DR$\\Lodestar\\Bin\\\n");
  run = qvtest::RunTool({"-p", profile_.dir(), "location-path", "Help", "1", "--short"});
  EXPECT_EQ(run.out, "$DR$\\Lodestar\\HELPFI~1\\\n");
  run = qvtest::RunTool(
      {"-p", profile_.dir(), "location-path", "Help", "1", "--root", "Vardo", "1", "--short"});
  EXPECT_EQ(run.out, "$DR$\\VARDOA~1\\Lodestar\\HELPFI~1\\\n");
  run = qvtest::RunTool({"-p", profile_.dir(), "location-path", "Nowhere", "1"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("no location Nowhere,1"), std::string::npos) << run.err;
  run = qvtest::RunTool({"-p", profile_.dir(), "location-path", "Bin"});
  EXPECT_EQ(run.status, 2);
}

TEST(LocationExampleTest, ExampleProfileResolvesItsLocations) {
  qvtest::ScriptedHost host;
  const std::string example = std::string(QUORVEX_SOURCE_DIR) + "/examples/profile";
  auto run = qvtest::RunTool({"-p", example, "location-path", "Samples", "1"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "$DR$\\Lodestar\\Bin\\Samples\\\n");
  run = qvtest::RunTool({"-p", example, "location-path", "Help", "1", "--short"});
  EXPECT_EQ(run.out, "$DR$\\Lodestar\\HELPFI~1\\\n");
  run = qvtest::RunTool({"-p", example, "location-path", "Shared", "1"});
  EXPECT_EQ(run.out, "[ProgramFilesDir]\\Vardo\\\n");
  run = qvtest::RunTool({"-p", example, "location-path", "Fonts", "1"});
  EXPECT_EQ(run.out, "\\Windows\\Fonts\\\n");
  EXPECT_EQ(run.err, "");
}

}  // namespace
