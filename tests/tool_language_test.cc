// The quorvex tool on the language kinds and the registry-administration
// kinds: list, get, put, delete and flags, their keys, the refusals of
// each store, and the example profile's records.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/kind_api.h"
#include "records/location_family.h"
#include "records/orvik_rows.h"
#include "support/location_profile.h"
#include "support/profiles.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"

namespace {

using nlohmann::json;
using qvtest::FlagLetters;
using qvtest::ReadFileBytes;
using qvtest::RunTool;

const std::string kHead = "\n[SourceSafe]\n$Header$\n\n";
const std::string kLanguages = kHead +
                               "[Shipping Languages]\n\"US\",\"English\"\r\n\"DE\",\"German\"\r\n" +
                               "[Document Languages]\n\"US\",\"English\"\r\n" + "[OS Languages]\n" +
                               "[Available Interface Languages]\n\"US\",\"English\"\r\n" +
                               "[Interface Languages]\n\"US\"\r\n" + "[Notes]\nkept\n";
const std::string kCore =
    "\"Core\",\"4.0\",\"HKLM\",\"SOFTWARE\\Vardo\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("") +
    "\"\r\n";
const std::string kRam =
    kHead + "[Development Reg Keys]\n" + kCore +
    "[Development Reg Key Products]\n[Development Products]\n\"SUITE\",\"Suite\",\"" +
    FlagLetters("") + "\"\r\n";

std::vector<std::string> Column(const std::string& out, const char* member) {
  std::vector<std::string> values;
  for (const json& record : json::parse(out)) values.push_back(record.at(member));
  return values;
}

class ToolLanguageTest : public ::testing::Test {
 protected:
  ToolLanguageTest() : profile_(host_.scratch().Join("MP")) {
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    qvtest::WriteFileBytes(LanguageFile(), kLanguages);
    qvtest::WriteFileBytes(RamFile(), kRam);
  }

  std::string LanguageFile() const { return profile_ + "/LANGUAGE/pelham.la"; }
  std::string RamFile() const { return profile_ + "/REGADMIN/REGADMIN.RAM"; }

  qvtest::ToolResult Run(std::vector<std::string> args, const std::string& input = "") {
    args.insert(args.begin(), {"-p", profile_});
    return RunTool(args, input);
  }

  qvtest::ScriptedHost host_;  // a private registry and temporary folder for the tool
  std::string profile_;
};

TEST_F(ToolLanguageTest, EveryKindIsListed) {
  auto sla = Run({"--json", "list", "sla"});
  ASSERT_EQ(sla.status, 0) << sla.err;
  EXPECT_EQ(Column(sla.out, "LanguageCode"), (std::vector<std::string>{"US", "DE"}));
  EXPECT_EQ(Column(sla.out, "LanguageName"), (std::vector<std::string>{"English", "German"}));
  for (const char* kind : {"DLA", "OSLA", "AILA", "OSDL", "DRK", "DRKPR", "DVPR"}) {
    auto list = Run({"--json", "list", kind});
    EXPECT_EQ(list.status, 0) << kind << ": " << list.err;
    EXPECT_TRUE(json::parse(list.out).is_array()) << kind;
  }
  auto drk = Run({"--json", "list", "DRK"});
  EXPECT_EQ(Column(drk.out, "text2"), std::vector<std::string>{"SOFTWARE\\Vardo"});
}

TEST_F(ToolLanguageTest, PutGetAndDeleteALanguage) {
  auto put =
      Run({"--json", "put", "DLA"}, R"({"LanguageCode": "PT-BR", "LanguageName": "Portuguese"})");
  ASSERT_EQ(put.status, 0) << put.err;
  EXPECT_EQ(json::parse(put.out).at("LanguageCode"), "PT-BR");
  auto get = Run({"--json", "get", "DLA", "PT-BR"});
  ASSERT_EQ(get.status, 0) << get.err;
  EXPECT_EQ(json::parse(get.out).at("LanguageName"), "Portuguese");
  EXPECT_EQ(Run({"get", "DLA", "pt-br"}).status, 1);  // codes keep their case
  auto remove = Run({"delete", "DLA", "US"});
  ASSERT_EQ(remove.status, 0) << remove.err;
  EXPECT_EQ(ReadFileBytes(LanguageFile()),
            kHead + "[Shipping Languages]\n\"US\",\"English\"\r\n\"DE\",\"German\"\r\n" +
                "[Document Languages]\n\"PT-BR\",\"Portuguese\"\r\n" + "[OS Languages]\n" +
                "[Available Interface Languages]\n\"US\",\"English\"\r\n" +
                "[Interface Languages]\n\"US\"\r\n" + "[Notes]\nkept\n");
}

TEST_F(ToolLanguageTest, PuttingAnInterfaceLanguageLeavesOutTheInterfaceLanguageSection) {
  auto put = Run({"put", "AILA"}, R"({"LanguageCode": "DE", "LanguageName": "German"})");
  ASSERT_EQ(put.status, 0) << put.err;
  EXPECT_EQ(ReadFileBytes(LanguageFile()),
            kHead + "[Shipping Languages]\n\"US\",\"English\"\r\n\"DE\",\"German\"\r\n" +
                "[Document Languages]\n\"US\",\"English\"\r\n" + "[OS Languages]\n" +
                "[Available Interface Languages]\n\"US\",\"English\"\r\n\"DE\",\"German\"\r\n" +
                "[Notes]\nkept\n");
}

TEST_F(ToolLanguageTest, DevelopmentKeysTakeBothKeyParts) {
  auto usage = Run({"get", "DRK", "Core"});
  EXPECT_EQ(usage.status, 2);
  EXPECT_NE(usage.err.find("kind DRK takes the key DRKName DRKKey2"), std::string::npos)
      << usage.err;
  auto get = Run({"--json", "get", "DRK", "Core", "4.0"});
  ASSERT_EQ(get.status, 0) << get.err;
  EXPECT_EQ(json::parse(get.out).at("text1"), "HKLM");
  auto usage3 = Run({"delete", "DRKPR", "Core", "4.0"});
  EXPECT_EQ(usage3.status, 2);
  EXPECT_NE(usage3.err.find("kind DRKPR takes the key DRKName text1 text2"), std::string::npos)
      << usage3.err;
}

TEST_F(ToolLanguageTest, AnInactiveDevelopmentKeyIsRefusedAndTheFileKept) {
  auto put =
      Run({"put", "DRK"}, R"({"DRKName": "Tools", "DRKKey2": "1.0", "recordFlags": 2147483648})");
  EXPECT_EQ(put.status, 1);
  EXPECT_NE(put.err.find("DRK record refused: text1 cannot be written so that it reads back; "
                         "nothing was written."),
            std::string::npos)
      << put.err;
  EXPECT_EQ(ReadFileBytes(RamFile()), kRam);
  // A file that holds an inactive DRK line reads, but DRK changes refuse to
  // write it; the other sections still change.
  const std::string inactive = kHead + "[Development Reg Keys]\n;IAO;" + kCore +
                               "[Development Reg Key Products]\n[Development Products]\n";
  qvtest::WriteFileBytes(RamFile(), inactive);
  auto list = Run({"--json", "list", "DRK"});
  ASSERT_EQ(list.status, 0) << list.err;
  EXPECT_EQ(json::parse(list.out).at(0).at("recordFlags"), 2147483648u);
  auto other = Run({"put", "DRK"}, R"({"DRKName": "Tools", "DRKKey2": "1.0"})");
  EXPECT_EQ(other.status, 1);
  EXPECT_EQ(ReadFileBytes(RamFile()), inactive);
  auto product = Run({"put", "DVPR"}, R"({"ProductCode": "DEV", "ProductName": "Kit"})");
  ASSERT_EQ(product.status, 0) << product.err;
  EXPECT_EQ(ReadFileBytes(RamFile()), inactive + "\"DEV\",\"Kit\",\"" + FlagLetters("") + "\"\r\n");
}

TEST_F(ToolLanguageTest, UserInfoDataIsNotInAMasterProfile) {
  auto list = Run({"list", "UNFO"});
  EXPECT_EQ(list.status, 1);
  EXPECT_NE(list.err.find("UserInfo Data is not explicitly a part of the Master Profile"),
            std::string::npos)
      << list.err;
  auto put = Run({"put", "UNFO"}, R"({"FieldName": "Company"})");
  EXPECT_EQ(put.status, 1);
}

TEST_F(ToolLanguageTest, FlagTables) {
  auto osdl = Run({"flags", "OSDL"});
  ASSERT_EQ(osdl.status, 0) << osdl.err;
  EXPECT_EQ(osdl.out,
            "OS Document Language (mask 0x80000000)\nbit 31  letter 1   Default Application "
            "Document Language\n");
  auto drkpr = Run({"flags", "DRKPR"});
  EXPECT_EQ(drkpr.out, "Development Reg Key Products (mask 0x0)\n");
}

TEST_F(ToolLanguageTest, AnOrvikProfileRefusesShippingLanguagesAndKeepsDocumentLanguages) {
  std::string db = host_.scratch().Join("shipping.orv");
  qvtest::MakeDatabase(db, qv::OrvikTableDefinition(qv::LoSchema()) + ";" +
                               qv::OrvikTableDefinition(*qv::FindKindApi("DLA")->schema) +
                               ";INSERT INTO DLA VALUES ('US', 'English');");
  auto sla = RunTool({"-p", db, "--orvik", "list", "SLA"});
  EXPECT_EQ(sla.status, 1);
  EXPECT_NE(sla.err.find("Shipping Language is not a part of Orvik"), std::string::npos) << sla.err;
  auto dla = RunTool({"-p", db, "--orvik", "--json", "list", "DLA"});
  ASSERT_EQ(dla.status, 0) << dla.err;
  EXPECT_EQ(Column(dla.out, "LanguageCode"), std::vector<std::string>{"US"});
}

TEST(ToolLanguageExampleTest, TheExampleProfileHasRecordsOfEachKind) {
  qvtest::ScriptedHost host;
  const std::string example = std::string(QUORVEX_SOURCE_DIR) + "/examples/profile";
  for (const char* kind : {"SLA", "DLA", "OSLA", "AILA", "OSDL", "DRK", "DRKPR", "DVPR"}) {
    auto list = RunTool({"-p", example, "--json", "list", kind});
    ASSERT_EQ(list.status, 0) << kind << ": " << list.err;
    EXPECT_FALSE(json::parse(list.out).empty()) << kind;
  }
}

}  // namespace
