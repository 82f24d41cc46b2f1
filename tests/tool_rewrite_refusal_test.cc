// quorvex put and delete on a file with a line the reader does not take as
// written: refused with the file and line, the file left byte for byte;
// --force writes the Ads anyway, while the other families refuse the read
// themselves.
#include <gtest/gtest.h>

#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/location_profile.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::ReadFileBytes;
using qvtest::RunTool;

const std::string kFlags(32, 'N');
constexpr char kHead[] = "\n[SourceSafe]\n$Header$\n\n";

struct BrokenFile {
  const char* name;
  const char* kind;
  std::string file;  // below the profile folder, as the engine names it
  std::string content;
  int line;  // the broken line
  std::string message;
  std::string put;  // one record as JSON
  std::vector<std::string> key;
  bool force_writes;  // the family keeps a broken line and rewrites with --force
  // Opening the profile reads the locations, so a broken location file
  // stops the tool there, with the engine's own message.
  bool refused_at_open = false;
};

void PrintTo(const BrokenFile& c, std::ostream* out) {
  *out << c.name;
}

std::vector<BrokenFile> Cases() {
  const std::string bad_flags = "Bad flag string: must contain 32 Y or N characters";
  return {
      {"Ads",
       "AD",
       "ADS\\adlist.ad",
       std::string(kHead) +
           "[Ads]\n1,0,0,\"a\",\"b\",Y,N,N,\"one\"\r\n2,0,0,\"a\",\"b\",Y,N,N,broken\r\n",
       7,
       "Bad string constant: must begin with double quote",
       R"({"name": "New"})",
       {"1"},
       true,
       false},
      {"Locations",
       "LO",
       "locs\\vardo.lo",
       std::string(qvtest::kLocationsHead) + "\"Root\",\"1\",\"$DR$\",,\"Root\",,\"\",\"" + kFlags +
           "\"\r\n\"Bad\",\"1\",,,\"Bad\",,\"\",\"NY\"\r\n",
       7,
       bad_flags,
       R"({"Name": "New", "Version": "1", "Folder": "New"})",
       {"Root", "1"},
       false,
       true},
      {"IconLocations",
       "IL",
       "locs\\icons.lo",
       std::string(qvtest::kIconLocationsHead) + "\"Programs\",\"WIN32_NT\",\"Programs\",\"" +
           kFlags + "\"\r\n\"Bad\",\"WIN32_NT\",\"Bad\",\"NY\"\r\n",
       7,
       bad_flags,
       R"({"Name": "New", "OsType": 2, "Path": "New"})",
       {"Programs"},
       false,
       false},
      {"Resources",
       "Resources",
       "RES_US\\pelhamUS.re",
       std::string(kHead) + "[Resources]\n\"IDS_A\",\"Text\",101,\r\n\"IDS_B\",Text,102,\r\n",
       7,
       "Bad string constant: must begin with double quote",
       R"({"LanguageCode": "US", "ResourceName": "IDS_C", "Text": "New"})",
       {"US", "IDS_A"},
       false,
       false},
      {"Strings",
       "Strings",
       "LANGUAGE\\setupUS.msg",
       std::string(kHead) + "[Strings]\nWelcome=Hello\r\nBro" + std::string(1, '\0') + "ken=x\r\n",
       7,
       "byte 0x00 at column 4 is not text",
       R"({"LanguageCode": "US", "MessageKey": "Bye", "MessageText": "Goodbye"})",
       {"US", "Welcome"},
       false,
       false},
  };
}

class ToolRewriteRefusalTest : public ::testing::TestWithParam<BrokenFile> {
 protected:
  ToolRewriteRefusalTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    path_ = profile_ + "/" + Slashed(GetParam().file);
    qvtest::WriteFileBytes(path_, GetParam().content);
  }

  static std::string Slashed(std::string path) {
    for (char& c : path) c = c == '\\' ? '/' : c;
    return path;
  }

  qvtest::ToolResult Run(std::vector<std::string> args, const std::string& input = "") {
    args.insert(args.begin(), {"-p", profile_});
    return RunTool(args, input);
  }

  std::string Named() const { return profile_ + "\\" + GetParam().file; }
  std::string File() const { return ReadFileBytes(path_); }

  qvtest::ScriptedHost host_;  // a private registry and temporary folder for the tool
  std::string profile_;
  std::string path_;
};

TEST_P(ToolRewriteRefusalTest, PutAndDeleteRefuseAndLeaveTheFile) {
  const BrokenFile& c = GetParam();
  std::string first = "quorvex: " + Named() + ":" + std::to_string(c.line) + ": " + c.message;
  std::string unchanged =
      "quorvex: " + Named() + " was left unchanged: mend it first, or --force writes anyway\n";
  if (c.refused_at_open) {
    first = "quorvex: " + Named() + " : Line #" + std::to_string(c.line) + "\n" + c.message;
    unchanged = "";
  }

  auto put = Run({"put", c.kind}, c.put);
  EXPECT_EQ(put.status, 1);
  EXPECT_NE(put.err.find(first + "\n" + unchanged), std::string::npos) << put.err;
  EXPECT_EQ(File(), c.content);

  std::vector<std::string> del = {"delete", c.kind};
  del.insert(del.end(), c.key.begin(), c.key.end());
  auto removed = Run(del);
  EXPECT_EQ(removed.status, 1);
  EXPECT_NE(removed.err.find(first + "\n" + unchanged), std::string::npos) << removed.err;
  EXPECT_EQ(File(), c.content);
}

TEST_P(ToolRewriteRefusalTest, ForceLeavesTheDecisionToTheEngine) {
  const BrokenFile& c = GetParam();
  auto put = Run({"--force", "put", c.kind}, c.put);
  EXPECT_EQ(put.err.find("was left unchanged"), std::string::npos) << put.err;
  if (c.force_writes) {
    EXPECT_EQ(put.status, 0) << put.err;
    EXPECT_NE(File(), c.content);
  } else {
    EXPECT_EQ(put.status, 1) << put.out;
    EXPECT_EQ(File(), c.content);
  }
}

TEST_P(ToolRewriteRefusalTest, AMissingFileIsLeftToTheEngine) {
  std::remove(path_.c_str());
  const BrokenFile& c = GetParam();
  auto put = Run({"--yes", "put", c.kind}, GetParam().put);
  EXPECT_EQ(put.err.find("was left unchanged"), std::string::npos) << put.err;
}

INSTANTIATE_TEST_SUITE_P(Kinds, ToolRewriteRefusalTest, ::testing::ValuesIn(Cases()),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
