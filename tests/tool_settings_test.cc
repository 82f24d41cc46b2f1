// The quorvex tool on settings files: entries listed with their values as
// the registry would hold them, JSON with the line's text and the bytes,
// puts that get generated names, associations, created entries and the
// index, and the example profile's settings.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/location_profile.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"

namespace {

using json = nlohmann::json;
using qvtest::FlagLetters;
using qvtest::ReadFileBytes;
using qvtest::RunTool;

class ToolSettingsTest : public ::testing::Test {
 protected:
  ToolSettingsTest() : profile_(host_.scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    const std::string flags = "\"" + FlagLetters("") + "\"";
    qvtest::WriteFileBytes(
        SettingsFile(),
        "\n[SourceSafe]\n$Header$\n\n[Module]\n\"Core\",\"1.0\"\n\n[File System-Settings]\n"
        "\"US\",\"Main\",\"a.exe\",\"Tabs\"\n[Module System-Settings]\n\"Tabs\"\n"
        "[System-Settings Records]\n"
        "\"Tabs\",\"REG\",,,,\"NNY" +
            std::string(29, 'N') +
            "\",\"00 A5 4E 01\",\"HKEY_CURRENT_USER\",\"Software\\Core\",\"Tabs\",\"REG_DWORD\","
            ",,,,,,\n"
            "\"Colors\",\"REG\",,,," +
            flags +
            ",\"0102FF\",\"HKEY_CURRENT_USER\",\"Software\\Core\",\"Colors\",\"REG_BINARY\",,,,,,,"
            "\n"
            "\"Font\",\"PS\",,,," +
            flags +
            ",\"Courier\",\"HKEY_CURRENT_USER\",\"Core\",\"Font\",\"ZQFKEY_SZ\",,,,,,,\n"
            "\"Bar\",\"INI\",,,," +
            flags +
            ",\"1\",\"core.ini\",\"Toolbar\",,,,\n"
            "[Shipped File Created SSRs]\n[Module Created SSRs]\n[Created System-Settings]\n"
            "\"Key\",\"REG\",,,," +
            flags + ",\"HKEY_LOCAL_MACHINE\",\"Software\\Core\",,,,,\n");
  }
  std::string SettingsFile() const { return profile_ + "/SSR/core.ssr"; }
  qvtest::ToolResult Run(std::vector<std::string> args, const std::string& input = "") {
    args.insert(args.begin(), {"-p", profile_});
    return RunTool(args, input);
  }

  qvtest::ScriptedHost host_;
  std::string profile_;
};

TEST_F(ToolSettingsTest, ValuesShowAsTheRegistryHoldsThem) {
  auto reg = Run({"list", "RE", "Core", "1.0"});
  ASSERT_EQ(reg.status, 0) << reg.err;
  EXPECT_NE(reg.out.find("dword:00a54e01"), std::string::npos) << reg.out;
  EXPECT_NE(reg.out.find("hex:01,02,ff"), std::string::npos) << reg.out;
  EXPECT_EQ(reg.out.find("Courier"), std::string::npos);
  auto ps = Run({"list", "PE", "Core", "1.0"});
  ASSERT_EQ(ps.status, 0) << ps.err;
  EXPECT_NE(ps.out.find("Courier"), std::string::npos);
  auto ini = Run({"--json", "list", "IE", "Core", "1.0"});
  ASSERT_EQ(ini.status, 0) << ini.err;
  EXPECT_EQ(json::parse(ini.out)[0].at("Section"), "core.ini");
}

TEST_F(ToolSettingsTest, JsonGivesTheLineTextAndTheBytes) {
  auto get = Run({"--json", "get", "RE", "Core", "1.0", "Tabs"});
  ASSERT_EQ(get.status, 0) << get.err;
  json tabs = json::parse(get.out);
  EXPECT_EQ(tabs.at("Data"), "00A54E01");
  EXPECT_EQ(tabs.at("DataBytes"), json::array({1, 78, 165, 0}));
  EXPECT_EQ(tabs.at("Access"), 0x2001F);
  EXPECT_EQ(tabs.at("flagNames"), json::array({"Local"}));
  auto font = json::parse(Run({"--json", "get", "PE", "Core", "1.0", "Font"}).out);
  EXPECT_EQ(font.at("Data"), "Courier");
  EXPECT_EQ(font.at("DataBytes"), json::array({'C', 'o', 'u', 'r', 'i', 'e', 'r'}));
}

TEST_F(ToolSettingsTest, PutsGetGeneratedNamesAndKeepTheOtherKinds) {
  auto put = Run({"--json", "put", "RE"},
                 R"({"ModuleName": "Core", "ModuleKey2": "1.0", "Root": 2147483650,
                     "KeyPath": "\\Software\\Core", "ValueName": "Size", "DataType": 4,
                     "Data": "00 00 01 00"})");
  ASSERT_EQ(put.status, 0) << put.err;
  json stored = json::parse(put.out);
  const std::string name = stored.at("Name");
  EXPECT_EQ(name.rfind("MP_GEN_", 0), 0u) << name;
  EXPECT_EQ(name.size(), 20u);
  EXPECT_EQ(stored.at("DataBytes"), json::array({0, 1, 0, 0}));
  EXPECT_EQ(stored.at("KeyPath"), "Software\\Core");
  const std::string file = ReadFileBytes(SettingsFile());
  EXPECT_NE(file.find("\"Font\",\"PS\""), std::string::npos);
  EXPECT_LT(file.find("\"Bar\",\"INI\""), file.find("\"Tabs\",\"REG\""));
  EXPECT_NE(file.find("\"" + name + "\",\"REG\",,,,"), std::string::npos);
  auto bad = Run({"put", "RE"}, R"({"ModuleName": "Core", "ModuleKey2": "1.0", "Name": "X",
                                     "DataType": 3, "Data": "0g"})");
  EXPECT_NE(bad.status, 0);
  EXPECT_NE(bad.err.find("Bad binary constant"), std::string::npos) << bad.err;
  ASSERT_EQ(Run({"delete", "RE", "Core", "1.0", name}).status, 0);
  EXPECT_EQ(ReadFileBytes(SettingsFile()).find(name), std::string::npos);
}

TEST_F(ToolSettingsTest, AssociationsCreatedEntriesAndTheIndex) {
  auto files = Run({"--json", "list", "SFSR", "Core", "1.0"});
  ASSERT_EQ(files.status, 0) << files.err;
  EXPECT_EQ(json::parse(files.out)[0].at("FileName"), "a.exe");
  auto module = Run({"--json", "list", "MOSR", "Core", "1.0"});
  ASSERT_EQ(module.status, 0) << module.err;
  EXPECT_EQ(json::parse(module.out)[0].at("SSRName"), "Tabs");
  auto put = Run({"put", "MOCR"}, R"({"ModuleName": "Core", "ModuleKey2": "1.0",
                                      "CSSRName": "Key"})");
  ASSERT_EQ(put.status, 0) << put.err;
  EXPECT_NE(ReadFileBytes(SettingsFile()).find("[Module Created SSRs]\n\"Key\"\r\n"),
            std::string::npos);
  auto created = Run({"--json", "get", "CRE", "Core", "1.0", "Key"});
  ASSERT_EQ(created.status, 0) << created.err;
  EXPECT_EQ(json::parse(created.out).at("Root"), 0x80000002u);
  auto index = Run({"put", "DRKSSR"}, R"({"DRKName": "Core", "SSRName": "Tabs",
                                          "ModuleName": "Core", "ModuleKey2": "1.0"})");
  ASSERT_EQ(index.status, 0) << index.err;
  auto lines = Run({"--json", "list", "DRKSSR"});
  ASSERT_EQ(lines.status, 0) << lines.err;
  EXPECT_EQ(json::parse(lines.out)[0].at("SSRName"), "Tabs");
  auto flags = Run({"flags", "RE"});
  ASSERT_EQ(flags.status, 0) << flags.err;
  EXPECT_NE(flags.out.find("Don't Replace"), std::string::npos);
}

TEST(ToolSettingsExample, TheExampleProfileHoldsSettingsOfEveryKind) {
  qvtest::ScriptedHost host;
  const std::string example = std::string(QUORVEX_SOURCE_DIR) + "/examples/profile";
  for (const char* kind : {"RE", "PE", "IE", "CRE", "CPE", "CIE", "MOSR", "SFSR", "MOCR", "SFCR"}) {
    auto listed = RunTool({"-p", example, "--json", "list", kind, "Text Editor", "8.0"});
    ASSERT_EQ(listed.status, 0) << kind << ": " << listed.err;
    EXPECT_FALSE(json::parse(listed.out).empty()) << kind;
  }
  auto index = RunTool({"-p", example, "--json", "list", "DRKCSSR"});
  ASSERT_EQ(index.status, 0) << index.err;
  EXPECT_EQ(json::parse(index.out)[0].at("CSSRName"), "EditorKey");
  auto check = RunTool({"-p", example, "check"});
  EXPECT_EQ(check.status, 0) << check.err;
  EXPECT_EQ(check.out, "");
  EXPECT_EQ(check.err, "");
}

}  // namespace
