// The quorvex tool on products, installs and module groups: list, get, put
// and delete by the owner's key, install modules refused, a new module
// group refused with a plain explanation, and the example profile.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using nlohmann::json;
using qvtest::ReadFileBytes;
using qvtest::RunTool;
using qvtest::WriteFileBytes;

const std::string kNoFlags(32, 'N');

class ToolProductTest : public ::testing::Test {
 protected:
  ToolProductTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    WriteFileBytes(profile_ + "/products/office.pr",
                   "\n[Product]\n\"Office\",\"9\",\"\",\"\",\"\",\"\",\"\",\"\",\"" + kNoFlags +
                       "\",\r\n[Sub-Products]\n\"Viewer\",\"1\",,Y\r\n[Modules]\n"
                       "\"Editor\",\"1\",2,\"" +
                       kNoFlags + "\"\r\n");
    WriteFileBytes(profile_ + "/installs/net.in",
                   "\n[Install]\n\"Net\",\"\",\"\",\"\",\"t1\",\"t2\",,,,,,,,,,\"t7\",\"\",\"\","
                   "\"t8\",\"t9\",\"t10\"\r\n[Install Products]\n\"Office\",\"9\"\r\n"
                   "\"Viewer\",\"1\"\r\n");
  }

  qvtest::ToolResult Run(std::vector<std::string> args, const std::string& input = "") {
    args.insert(args.begin(), {"-p", profile_});
    return RunTool(args, input);
  }

  qvtest::ScriptedHost host_;
  std::string profile_;
};

TEST_F(ToolProductTest, ListsAndGetsByTheOwnersKey) {
  qvtest::ToolResult products = Run({"--json", "list", "PR"});
  ASSERT_EQ(products.status, 0) << products.err;
  json list = json::parse(products.out);
  ASSERT_EQ(list.size(), 1u);
  EXPECT_EQ(list[0].at("Name"), "Office");
  EXPECT_EQ(list[0].at("FileName"), "office.pr");
  qvtest::ToolResult install = Run({"--json", "get", "DR", "Net"});
  ASSERT_EQ(install.status, 0) << install.err;
  EXPECT_EQ(json::parse(install.out).at("text10"), "t10");
  qvtest::ToolResult modules = Run({"--json", "list", "PM", "Office", "9"});
  ASSERT_EQ(modules.status, 0) << modules.err;
  EXPECT_EQ(json::parse(modules.out)[0].at("ModuleName"), "Editor");
  qvtest::ToolResult products_of_net = Run({"--json", "list", "DP", "Net"});
  ASSERT_EQ(products_of_net.status, 0) << products_of_net.err;
  EXPECT_EQ(json::parse(products_of_net.out).size(), 2u);
}

TEST_F(ToolProductTest, PutsAndDeletesAnInstallsProducts) {
  qvtest::ToolResult put =
      Run({"put", "DP"}, R"({"InstallName":"Net","ProductName":"Suite","ProductVersion":"2"})");
  ASSERT_EQ(put.status, 0) << put.err;
  EXPECT_NE(ReadFileBytes(profile_ + "/installs/net.in").find("\"Suite\",\"2\"\r\n"),
            std::string::npos);
  qvtest::ToolResult gone = Run({"delete", "PR", "Office", "9"});
  ASSERT_EQ(gone.status, 0) << gone.err;
  EXPECT_FALSE(qvtest::PathExists(profile_ + "/products/office.pr"));
  std::string net = ReadFileBytes(profile_ + "/installs/net.in");
  EXPECT_EQ(net.find("\"Office\""), std::string::npos);
  EXPECT_NE(net.find("\"Viewer\",\"1\"\r\n\"Suite\",\"2\"\r\n"), std::string::npos) << net;
}

TEST_F(ToolProductTest, InstallModulesAreRefusedInAMasterProfile) {
  qvtest::ToolResult list = Run({"list", "DM", "Net"});
  EXPECT_EQ(list.status, 1);
  EXPECT_NE(list.err.find("Driver Module is not explicitly a part of the Master Profile"),
            std::string::npos)
      << list.err;
}

TEST_F(ToolProductTest, ANewModuleGroupIsRefusedAndExplained) {
  qvtest::ToolResult put = Run({"put", "MG"}, R"({"Name":"Tools","Version":"1"})");
  EXPECT_EQ(put.status, 1);
  size_t engine = put.err.find("Unsupported File Type given to CreateMungedFile.");
  size_t plain = put.err.find("A new module group cannot be added");
  ASSERT_NE(engine, std::string::npos) << put.err;
  ASSERT_NE(plain, std::string::npos) << put.err;
  EXPECT_LT(engine, plain);
  EXPECT_FALSE(qvtest::PathExists(profile_ + "/UIGroups/Tools1.MG"));
}

TEST_F(ToolProductTest, TheExampleProfileHasProductsInstallsAndAModuleGroup) {
  const std::string example = std::string(QUORVEX_SOURCE_DIR) + "/examples/profile";
  qvtest::ToolResult products = RunTool({"-p", example, "--json", "list", "PR"});
  ASSERT_EQ(products.status, 0) << products.err;
  EXPECT_EQ(json::parse(products.out).size(), 2u);
  qvtest::ToolResult installs = RunTool({"-p", example, "--json", "list", "DR"});
  ASSERT_EQ(installs.status, 0) << installs.err;
  EXPECT_EQ(json::parse(installs.out).size(), 2u);
  qvtest::ToolResult groups = RunTool({"-p", example, "--json", "list", "MGM", "Editors", "1.0"});
  ASSERT_EQ(groups.status, 0) << groups.err;
  EXPECT_EQ(json::parse(groups.out).size(), 2u);
  qvtest::ToolResult check = RunTool({"-p", example, "check"});
  EXPECT_EQ(check.status, 0) << check.out << check.err;
  EXPECT_EQ(check.out, "");
}

}  // namespace
