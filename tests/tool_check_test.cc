// quorvex check (one planted problem of each class, clean profiles, random
// bytes) and quorvex vcs.
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "platform/registry.h"
#include "support/fake_ss.h"
#include "support/location_profile.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"

namespace {

using qvtest::RunTool;

class ToolCheckTest : public ::testing::Test {
 protected:
  ToolCheckTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
  }
  qvtest::ScriptedHost host_;
  std::string profile_;
};

// 32 flag letters, all N.
const std::string kNoFlags(32, 'N');

// One line of `check` output.
std::string Line(const std::string& file, int line, const std::string& kind,
                 const std::string& text) {
  return file + ":" + std::to_string(line) + ": " + kind + ": " + text + "\n";
}

TEST_F(ToolCheckTest, CleanProfilePrintsNothing) {
  auto result = RunTool({"-p", profile_, "check"});
  EXPECT_EQ(result.status, 0) << result.out << result.err;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "");
  auto json = RunTool({"-p", profile_, "--json", "check"});
  ASSERT_EQ(json.status, 0) << json.err;
  EXPECT_EQ(nlohmann::json::parse(json.out), nlohmann::json::array());
}

TEST_F(ToolCheckTest, VerboseCheckSummarisesEveryFile) {
  auto result = RunTool({"-p", profile_, "check", "-v"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_NE(result.out.find(profile_ + "\\ADS\\adlist.ad: 2 sections, 1 records, 0 problems\n"),
            std::string::npos)
      << result.out;
  EXPECT_NE(
      result.out.find(profile_ + "\\LANGUAGE\\pelham.la: 6 sections, 1 records, 0 problems\n"),
      std::string::npos)
      << result.out;
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 7);
}

TEST_F(ToolCheckTest, ExampleProfileChecksClean) {
  auto result = RunTool({"-p", std::string(QUORVEX_SOURCE_DIR) + "/examples/profile", "check"});
  EXPECT_EQ(result.status, 0) << result.out << result.err;
  EXPECT_EQ(result.out, "");
}

// One problem of each class, each on a line of its own.
class PlantedProblemsTest : public ToolCheckTest {
 protected:
  PlantedProblemsTest() {
    auto& dir = host_.scratch();
    dir.Write("MP/ADS/adlist.ad",
              "\n"
              "stray text\n"  // 2: outside any section
              "[SourceSafe]\n$Header$\n\n"
              "[Ads]\n"
              "1,0,0,\"a\",\"b\",Y,N,N,\"fine\"\n"   // 7
              "2,0,0,\"a\",\"b\",Y,N,N,bad\n"        // 8: parser
              "1,0,0,\"c\",\"d\",N,N,N,\"again\"\n"  // 9: duplicate of 7
              "[Bogus]\n"                            // 10: section
              "\"x\"\n");
    dir.Write("MP/locs/vardo.lo", std::string(qvtest::kLocationsHead) +
                                      "\"Root\",\"1\",\"$DR$\",,\"Root\",,\"\",\"" + kNoFlags +
                                      "\"\n"  // 6
                                      "\"Kid\",\"1\",\"Root\",,\"Kid\",,\"\",\"" +
                                      kNoFlags +
                                      "\"\n"  // 7: an empty version finds Root 1
                                      "\"Lost\",\"1\",\"Gone\",\"1\",\"Lost\",,\"\",\"" +
                                      kNoFlags + "\"\n");  // 8: reference
    dir.Write("MP/locs/icons.lo", std::string(qvtest::kIconLocationsHead) +
                                      "\"Programs\",\"WIN32_NT\",\"Pro\x01grams\",\"" + kNoFlags +
                                      "\"\r\n");  // 6: text
    dir.Write("MP/LANGUAGE/OsDoC.LA", "\n[SourceSafe]\n$Header$\n\n[OS Document Language]\n\"" +
                                          std::string(6000, 'a') + "\"\n");  // 6: long
    dir.Write("MP/LANGUAGE/setupUS.msg",
              "\n[SourceSafe]\n$Header$\n\n[Strings]\nKey=Value\nNoEquals\n");  // 7: message
  }

  std::string Path(const std::string& relative) const { return profile_ + "\\" + relative; }
};

TEST_F(PlantedProblemsTest, CheckReportsEachWithFileAndLine) {
  auto result = RunTool({"-p", profile_, "check"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "");
  const std::string ads = Path("ADS\\adlist.ad");
  const std::vector<std::string> expected = {
      Line(Path("locs\\vardo.lo"), 8, "reference",
           "ParentName=\"Gone\" ParentVersion=\"1\" names no LO record"),
      Line(Path("locs\\icons.lo"), 6, "text", "byte 0x01 at column 27 is not text"),
      Line(ads, 2, "outside", "line outside any section"),
      Line(ads, 8, "AD", "Bad string constant: must begin with double quote"),
      Line(ads, 9, "duplicate", "AD id=\"1\" again (first at line 7)"),
      Line(ads, 10, "section",
           "section [Bogus] is not one a AD file holds; nothing reads its 1 record line"),
      Line(Path("LANGUAGE\\setupUS.msg"), 7, "message", "message line without \"=\""),
      Line(Path("LANGUAGE\\OsDoC.LA"), 6, "long",
           "line of 6002 bytes: the reader cuts lines of 5023 bytes or more and loses a byte"),
  };
  for (const std::string& line : expected) {
    EXPECT_NE(result.out.find(line), std::string::npos) << line << "in\n" << result.out;
  }
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'),
            static_cast<long>(expected.size()))
      << result.out;
}

TEST_F(PlantedProblemsTest, JsonCheckListsThemAsObjects) {
  auto result = RunTool({"-p", profile_, "--json", "check"});
  EXPECT_EQ(result.status, 1);
  auto j = nlohmann::json::parse(result.out);
  ASSERT_TRUE(j.is_array());
  std::vector<std::string> seen;
  for (const auto& p : j) {
    ASSERT_EQ(p.size(), 4u) << p;
    seen.push_back(p["file"].get<std::string>() + ":" + std::to_string(p["line"].get<int>()) + ":" +
                   p["kind"].get<std::string>());
    EXPECT_FALSE(p["text"].get<std::string>().empty()) << p;
  }
  std::sort(seen.begin(), seen.end());
  std::vector<std::string> expected = {
      Path("ADS\\adlist.ad") + ":2:outside",   Path("ADS\\adlist.ad") + ":8:AD",
      Path("ADS\\adlist.ad") + ":9:duplicate", Path("ADS\\adlist.ad") + ":10:section",
      Path("locs\\icons.lo") + ":6:text",      Path("locs\\vardo.lo") + ":8:reference",
      Path("LANGUAGE\\OsDoC.LA") + ":6:long",  Path("LANGUAGE\\setupUS.msg") + ":7:message",
  };
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(seen, expected);
}

TEST_F(ToolCheckTest, LinesAfterACutLineKeepTheirPlaceInTheFile) {
  // A NUL byte makes the reader take line 6 in two pieces; the bad name on
  // line 7 is still reported on line 7.
  host_.scratch().Write("MP/ADS/adlist.ad",
                        std::string("[Ads]\n1,0,0,\"a\",\"b\",Y,N,N,\"x\"\n\n\n\n") +
                            std::string("2,0,0,\"a\0b\",\"b\",Y,N,N,\"x\"\n", 26) +
                            "3,0,0,\"a\",\"b\",Y,N,N,x\n");
  auto result = RunTool({"-p", profile_, "check"});
  EXPECT_EQ(result.status, 1);
  const std::string ads = profile_ + "\\ADS\\adlist.ad";
  EXPECT_EQ(result.out,
            Line(ads, 6, "text", "byte 0x00 at column 9 is not text") +
                Line(ads, 7, "AD", "Bad string constant: must begin with double quote"));
}

TEST_F(ToolCheckTest, SettingsEntriesAreReadByTheKindTheirTagNames) {
  const std::string flags = "\"" + kNoFlags + "\"";
  const std::string reg = "\"Tabs\",\"REG\",,,," + flags +
                          ",\"00000004\",\"HKEY_CURRENT_USER\",\"Software\\Vardo\",\"Tab\","
                          "\"REG_DWORD\",,\"KEY_READ \",,," +
                          flags + "," + flags + "," + flags + "\n";
  const std::string ini = "\"Tabs\",\"INI\",,,," + flags + ",\"1\",\"edit.ini\",\"Tab\",," + flags +
                          "," + flags + "," + flags + "\n";
  std::string bad_reg = reg;
  bad_reg.replace(0, 6, "\"Reg2\"");
  bad_reg.replace(bad_reg.find(flags), flags.size(), "\"NY\"");
  std::string bad_ini = ini;
  bad_ini.replace(0, 6, "\"Ini2\"");
  bad_ini.replace(bad_ini.find(flags), flags.size(), "\"NY\"");
  host_.scratch().Write("MP/SSR/textedit.ssr",
                        "[Module]\n\"Text Editor\",\"8.0\"\n[File System-Settings]\n"
                        "[Module System-Settings]\n[System-Settings Records]\n" +
                            reg + ini + reg + bad_reg + bad_ini +
                            "[Shipped File Created SSRs]\n[Module Created SSRs]\n"
                            "[Created System-Settings]\n");
  auto result = RunTool({"-p", profile_, "check"});
  EXPECT_EQ(result.status, 1) << result.err;
  const std::string file = profile_ + "\\SSR\\textedit.ssr";
  // A registry and an INI entry may share a name; two registry entries may not.
  EXPECT_EQ(result.out,
            Line(file, 8, "duplicate", "RE Name=\"Tabs\" again (first at line 6)") +
                Line(file, 9, "RE", "Bad flag string: must contain 32 Y or N characters") +
                Line(file, 10, "IE", "Bad flag string: must contain 32 Y or N characters"));
}

TEST_F(ToolCheckTest, RandomBytesAreReported) {
  std::mt19937 random(20240611);
  std::string bytes(20000, '\0');
  for (char& c : bytes) c = static_cast<char>(random() & 0xFF);
  qvtest::WriteFileBytes(profile_ + "/locs/icons.lo", bytes);
  auto result = RunTool({"-p", profile_, "--json", "check"});
  EXPECT_EQ(result.status, 1) << result.err;
  auto j = nlohmann::json::parse(result.out);
  ASSERT_FALSE(j.empty());
  for (const auto& p : j) EXPECT_EQ(p["file"], profile_ + "\\locs\\icons.lo") << p;
}

TEST_F(ToolCheckTest, ContinuationOfAMarkedRecordMustBeCommentedOut) {
  host_.scratch().Write("MP/ADS/adlist.ad", "[Ads]\n;IAO;1,0,0,\"a\",\"b\",Y,N,N,\\\n\"name\"\n");
  auto result = RunTool({"-p", profile_, "check"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, Line(profile_ + "\\ADS\\adlist.ad", 3, "AD",
                             "Continued Comment line is not commented out."));
}

TEST_F(ToolCheckTest, VcsProjectsListsTheClientsProjects) {
  qvtest::FakeSs ss;
  ss.AnswerWithOutput("Dir", 0, "$/:\n$Alpha\n$Beta\n");
  auto result = RunTool({"--json", "vcs", "projects"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(nlohmann::json::parse(result.out), nlohmann::json::array({"Alpha", "Beta"}));
  ASSERT_EQ(ss.CommandLines().size(), 1u);
  EXPECT_EQ(ss.CommandLines()[0], "ss Dir $/");
}

TEST_F(ToolCheckTest, VcsProjectsFailureIsStatusOne) {
  qvtest::FakeSs ss;
  ss.Answer("Dir", 3);
  auto result = RunTool({"vcs", "projects"});
  EXPECT_EQ(result.status, 1);
  EXPECT_NE(result.err.find("Source Safe command \"ss Dir $/\" failed."), std::string::npos)
      << result.err;
}

TEST_F(ToolCheckTest, VcsRegisterRecordsTheFile) {
  auto result =
      RunTool({"vcs", "register", "/work/copy/adlist.ad", "File", "$/MP/ADS/adlist.ad", "7"});
  ASSERT_EQ(result.status, 0) << result.err;
  std::string key = "SOFTWARE\\Vardo\\Lodestar\\Stewardry\\VCS\\FILES\\adlist.ad";
  EXPECT_EQ(qv::RegistryGetString(key, "WorkFilePath").value_or(""), "/work/copy/adlist.ad");
  EXPECT_EQ(qv::RegistryGetString(key, "ObjectType").value_or(""), "File");
  EXPECT_EQ(qv::RegistryGetString(key, "ObjectName").value_or(""), "$/MP/ADS/adlist.ad");
  EXPECT_EQ(qv::RegistryGetString(key, "ObjectVersion").value_or(""), "7");
  EXPECT_EQ(qv::RegistryGetDword(key, "VCS Status").value_or(0), 0x20000000u);
  EXPECT_EQ(RunTool({"vcs", "register", "x"}).status, 2);
}

}  // namespace
