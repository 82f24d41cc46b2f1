// quorvex symbols: the list of tables, one table's rows as text and JSON,
// table names in any case, and an unknown table as a usage error.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "support/run_tool.h"
#include "support/scripted_host.h"

namespace {

using qvtest::RunTool;

class ToolSymbolsTest : public ::testing::Test {
 protected:
  qvtest::ScriptedHost host_;  // gives the tool a private registry file
};

constexpr const char* kTables[] = {"root-keys",    "reg-data-types", "ps-data-types", "key-options",
                                   "access-masks", "show-commands",  "hot-keys"};

TEST_F(ToolSymbolsTest, WithoutATableListsEveryTable) {
  auto run = RunTool({"symbols"});
  ASSERT_EQ(run.status, 0) << run.err;
  for (const char* table : kTables) {
    EXPECT_NE(run.out.find(std::string(table) + " "), std::string::npos) << table;
  }
  auto json = RunTool({"--json", "symbols"});
  ASSERT_EQ(json.status, 0) << json.err;
  auto j = nlohmann::json::parse(json.out);
  ASSERT_EQ(j.size(), std::size(kTables));
  for (size_t i = 0; i < j.size(); ++i) EXPECT_EQ(j[i]["name"], kTables[i]);
}

TEST_F(ToolSymbolsTest, RowsPrintNameAndValueInTableOrder) {
  auto run = RunTool({"symbols", "show-commands"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out.find("SW_HIDE             0\n"), 0u) << run.out;
  EXPECT_NE(run.out.find("SW_SHOWMAXIMIZED    3\nSW_MAXIMIZE         3\n"), std::string::npos);
  EXPECT_NE(run.out.find("SW_MAX              10\n"), std::string::npos);

  auto roots = RunTool({"symbols", "root-keys"});
  ASSERT_EQ(roots.status, 0) << roots.err;
  EXPECT_NE(roots.out.find("HKEY_LOCAL_MACHINE        0x80000002\n"), std::string::npos)
      << roots.out;
}

TEST_F(ToolSymbolsTest, TableNamesIgnoreCase) {
  auto upper = RunTool({"symbols", "ACCESS-Masks"});
  ASSERT_EQ(upper.status, 0) << upper.err;
  EXPECT_EQ(upper.out, RunTool({"symbols", "access-masks"}).out);
  EXPECT_NE(upper.out.find("KEY_ALL_ACCESS          0xF003F\n"), std::string::npos) << upper.out;
}

TEST_F(ToolSymbolsTest, JsonRowsAreNameAndNumber) {
  auto run = RunTool({"--json", "symbols", "hot-keys"});
  ASSERT_EQ(run.status, 0) << run.err;
  auto j = nlohmann::json::parse(run.out);
  ASSERT_EQ(j.size(), 85u);
  EXPECT_EQ(j[0], (nlohmann::json{{"name", "HOTKEYF_SHIFT"}, {"value", 1}}));
  EXPECT_EQ(j[84], (nlohmann::json{{"name", "VK_RMENU"}, {"value", 0xA5}}));
  auto types = nlohmann::json::parse(RunTool({"--json", "symbols", "reg-data-types"}).out);
  ASSERT_EQ(types.size(), 10u);
  EXPECT_EQ(types[5], (nlohmann::json{{"name", "REG_DWORD_LITTLE_ENDIAN"}, {"value", 4}}));
}

TEST_F(ToolSymbolsTest, UnknownTableIsAUsageErrorNamingTheKnownOnes) {
  auto run = RunTool({"symbols", "hotkeys"});
  EXPECT_EQ(run.status, 2);
  EXPECT_TRUE(run.out.empty()) << run.out;
  EXPECT_NE(run.err.find("unknown table hotkeys"), std::string::npos) << run.err;
  for (const char* table : kTables) EXPECT_NE(run.err.find(table), std::string::npos) << table;
}

TEST_F(ToolSymbolsTest, HelpTellsHowValuesPrint) {
  auto run = RunTool({"symbols", "--help"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("hex"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("decimal"), std::string::npos) << run.out;
}

}  // namespace
