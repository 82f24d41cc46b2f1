// Building file paths from a base, relative parts and locations.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/state.h"
#include "profile/lodestar_relative.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"

namespace {

class BuildPathTest : public ::testing::Test {
 protected:
  std::string Build(const char* base, const char* part1, const char* part2, const char* part3,
                    const char* default_name, const char* name) {
    char destination[QV_PATH_SIZE];
    memset(destination, 'x', sizeof destination);
    EXPECT_EQ(BuildFilePath(destination, base, part1, part2, part3, default_name, name), 1);
    return destination;
  }

  qvtest::ScriptedHost host_;
};

// ---------------------------------------------------------------- BuildFilePath

TEST_F(BuildPathTest, BaseAloneWhenNothingElseIsGiven) {
  EXPECT_EQ(Build("C:\\MP\\", nullptr, nullptr, nullptr, nullptr, nullptr), "C:\\MP\\");
  EXPECT_EQ(Build(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), "");
}

TEST_F(BuildPathTest, RelativePartIsAppendedAsItIs) {
  EXPECT_EQ(Build("C:\\MP\\", "modules", nullptr, nullptr, "x.mo", "y.mo"), "C:\\MP\\modules");
  EXPECT_EQ(Build("C:\\MP", "modules", nullptr, nullptr, nullptr, nullptr), "C:\\MPmodules");
}

TEST_F(BuildPathTest, AbsolutePartReplacesThePath) {
  EXPECT_EQ(Build("C:\\MP\\", "D:\\Other", nullptr, nullptr, nullptr, nullptr), "D:\\Other");
  EXPECT_EQ(Build("C:\\MP\\", "..\\Up", nullptr, nullptr, nullptr, nullptr), "..\\Up");
  EXPECT_EQ(Build("C:\\MP\\", ".\\Here", nullptr, nullptr, nullptr, nullptr), ".\\Here");
  // A leading backslash alone is not absolute.
  EXPECT_EQ(Build("C:\\MP", "\\Sub", nullptr, nullptr, nullptr, nullptr), "C:\\MP\\Sub");
}

TEST_F(BuildPathTest, EmptyPartIsPassedOver) {
  EXPECT_EQ(Build("C:\\MP\\", "", "", nullptr, nullptr, nullptr), "C:\\MP\\");
}

TEST_F(BuildPathTest, MissingSecondPartEndsTheBuilding) {
  EXPECT_EQ(Build("C:\\MP\\", "a\\", nullptr, "c\\", "def.txt", "name.txt"), "C:\\MP\\a\\");
}

TEST_F(BuildPathTest, SecondPartContinuesTheFirst) {
  EXPECT_EQ(Build("C:\\MP\\", "a\\", "b\\", nullptr, "def.txt", nullptr), "C:\\MP\\a\\b\\");
  EXPECT_EQ(Build("C:\\MP\\", "a\\", "E:\\b\\", nullptr, nullptr, nullptr), "E:\\b\\");
}

TEST_F(BuildPathTest, ThirdPartStartsAgainFromTheBase) {
  EXPECT_EQ(Build("C:\\MP\\", "a\\", "b\\", "c\\", "def.txt", nullptr), "C:\\MP\\c\\def.txt");
  EXPECT_EQ(Build("C:\\MP\\", "a\\", "b\\", "F:\\c", "def.txt", nullptr), "F:\\c\\def.txt");
}

TEST_F(BuildPathTest, EmptyThirdPartKeepsTheFirstTwo) {
  EXPECT_EQ(Build("C:\\MP\\", "a\\", "b", "", "def.txt", "name.txt"), "C:\\MP\\a\\b\\name.txt");
}

TEST_F(BuildPathTest, MissingDefaultNameEndsBeforeTheFileName) {
  EXPECT_EQ(Build("C:\\MP\\", "a", "b", "c", nullptr, "name.txt"), "C:\\MP\\c");
}

TEST_F(BuildPathTest, NameWinsOverTheDefaultUnlessEmpty) {
  EXPECT_EQ(Build("C:\\MP\\", "", "", "", "def.txt", "name.txt"), "C:\\MP\\name.txt");
  EXPECT_EQ(Build("C:\\MP\\", "", "", "", "def.txt", ""), "C:\\MP\\def.txt");
  EXPECT_EQ(Build("C:\\MP\\", "", "", "", "def.txt", nullptr), "C:\\MP\\def.txt");
}

TEST_F(BuildPathTest, SeparatorFollowsTheOneInUse) {
  EXPECT_EQ(Build("/home/mp", "", "", "", "def.txt", nullptr), "/home/mp/def.txt");
  EXPECT_EQ(Build("C:\\MP", "", "", "", "def.txt", nullptr), "C:\\MP\\def.txt");
  EXPECT_EQ(Build("out", "", "", "", "def.txt", nullptr), "out/def.txt");
  // An empty directory leaves a bare file name.
  EXPECT_EQ(Build("", "", "", "", "def.txt", nullptr), "def.txt");
}

TEST_F(BuildPathTest, LongPathsAreCutToTheBuffer) {
  std::string base(300, 'b');
  EXPECT_EQ(Build(base.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr),
            std::string(260, 'b'));
}

// ---------------------------------------------------------------- BuildFilePathNameEx

std::string BuildEx(const char* location, const char* version, const char* relative,
                    const char* default_name, const char* base, const char* name, int* result) {
  char destination[QV_PATH_SIZE];
  memset(destination, 'x', sizeof destination);
  *result = BuildFilePathNameEx(destination, location, version, relative, default_name, "", "",
                                base, name);
  return destination;
}

TEST_F(BuildPathTest, RelativePathIsAppendedToTheBase) {
  int result = 0;
  EXPECT_EQ(BuildEx("Bin", "1.0", "rel\\dir", "def.dll", "C:\\src\\", "name.dll", &result),
            "C:\\src\\rel\\dir\\name.dll");
  EXPECT_EQ(result, 1);
  EXPECT_EQ(BuildEx("Bin", "1.0", "rel\\", "def.dll", "C:\\src\\", "", &result),
            "C:\\src\\rel\\def.dll");
  EXPECT_EQ(BuildEx("Bin", "1.0", "rel", "def.dll", nullptr, nullptr, &result), "rel/def.dll");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(BuildPathTest, AbsoluteRelativePathReplacesTheBase) {
  int result = 0;
  EXPECT_EQ(BuildEx("", "", "D:\\out", "def.dll", "C:\\src\\", nullptr, &result),
            "D:\\out\\def.dll");
  EXPECT_EQ(BuildEx("", "", "..\\out\\", "def.dll", "C:\\src\\", nullptr, &result),
            "..\\out\\def.dll");
  EXPECT_EQ(result, 1);
}

TEST_F(BuildPathTest, WithoutDefaultNameTheDirectoryIsStillPrepared) {
  int result = 0;
  EXPECT_EQ(BuildEx("", "", "rel", nullptr, "C:\\src\\", "name.dll", &result), "C:\\src\\rel\\");
  EXPECT_EQ(result, 1);
}

TEST_F(BuildPathTest, UnknownLocationIsReportedAndFails) {
  int result = 1;
  EXPECT_EQ(BuildEx("Bin", "1.0", "", "def.dll", "C:\\src\\", nullptr, &result), "C:\\src\\");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"BuildFilePathNameEx has been asked to find location "
                                     "\"Bin\",\"1.0\" that does not exist."});
  host_.Clear();
  EXPECT_EQ(BuildEx("Bin", "1.0", nullptr, "def.dll", nullptr, nullptr, &result), "");
  EXPECT_EQ(result, 0);
  EXPECT_EQ(host_.errors().size(), 1u);
}

TEST_F(BuildPathTest, MissingLodestarLocationIsReported) {
  char destination[QV_PATH_SIZE] = "old";
  EXPECT_EQ(GetLodestarLocationPath(destination, "", ""), 0);
  EXPECT_STREQ(destination, "");
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Lodestar Location cannot be found in Master Profile!"});
}

// ---------------------------------------------------------------- Lodestar-relative folders

TEST(LodestarRelativeTest, FolderInsideLodestarIsNamedByThePartBelowIt) {
  EXPECT_EQ(qv::RelativeToLodestar("$DR$\\Lodestar\\Bin\\", "$DR$\\Lodestar\\"), "Bin\\");
  EXPECT_EQ(qv::RelativeToLodestar("$DR$\\Lodestar\\Bin\\Sub\\", "$DR$\\Lodestar"), "Bin\\Sub\\");
  EXPECT_EQ(qv::RelativeToLodestar("$dr$\\LODESTAR\\Bin\\", "$DR$\\Lodestar\\"), "Bin\\");
  EXPECT_EQ(qv::RelativeToLodestar("$DR$\\Lodestar\\", "$DR$\\Lodestar\\"), "");
}

TEST(LodestarRelativeTest, FolderOutsideLodestarIsKept) {
  EXPECT_EQ(qv::RelativeToLodestar("$DR$\\Windows\\", "$DR$\\Lodestar\\"), "$DR$\\Windows\\");
  EXPECT_EQ(qv::RelativeToLodestar("$DR$\\Lodestar2\\", "$DR$\\Lodestar"), "$DR$\\Lodestar2\\");
  EXPECT_EQ(qv::RelativeToLodestar("$DR$\\", "$DR$\\Lodestar\\"), "$DR$\\");
  EXPECT_EQ(qv::RelativeToLodestar("\\Abs\\", ""), "\\Abs\\");
}

}  // namespace
