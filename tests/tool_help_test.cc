// The quorvex tool as a new user meets it: help, help COMMAND, --version,
// unknown commands, and the README agreeing with the tool's own help, down
// to the build commands it gives.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "support/run_tool.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::RunTool;

std::string SourceFile(const std::string& relative) {
  return qvtest::ReadFileBytes(std::string(QUORVEX_SOURCE_DIR) + "/" + relative);
}

// The command names of a help text's "Commands:" section.
std::set<std::string> HelpCommands(const std::string& help) {
  std::set<std::string> names;
  std::istringstream in(help.substr(help.find("Commands:")));
  std::string line;
  std::getline(in, line);
  while (std::getline(in, line) && !line.empty()) {
    std::istringstream words(line);
    std::string name;
    words >> name;
    names.insert(name);
  }
  return names;
}

// The command names of the README's usage block: lines indented by two
// spaces, below the synopsis.
std::set<std::string> ReadmeCommands() {
  std::string readme = SourceFile("README.md");
  size_t start = readme.find("## The `quorvex` tool");
  start = readme.find("```\n", start) + 4;
  std::istringstream in(readme.substr(start, readme.find("```", start) - start));
  std::set<std::string> names;
  std::string line;
  while (std::getline(in, line)) {
    if (line.size() > 2 && line.rfind("  ", 0) == 0 && line[2] != ' ')
      names.insert(line.substr(2, line.find(' ', 2) - 2));
  }
  return names;
}

class ToolHelpTest : public ::testing::Test {
 protected:
  qvtest::ScriptedHost host_;  // a private registry for the tool
};

TEST_F(ToolHelpTest, HelpListsEveryCommand) {
  auto help = RunTool({"help"});
  ASSERT_EQ(help.status, 0) << help.err;
  auto dashes = RunTool({"--help"});
  ASSERT_EQ(dashes.status, 0);
  EXPECT_EQ(help.out, dashes.out);
  EXPECT_NE(help.out.find("Usage: quorvex [OPTIONS] COMMAND"), std::string::npos) << help.out;
  std::set<std::string> commands = HelpCommands(help.out);
  for (const char* name : {"help", "info", "list", "get", "put", "set", "delete", "init"})
    EXPECT_EQ(commands.count(name), 1u) << name;
}

TEST_F(ToolHelpTest, HelpOfACommandIsItsUsage) {
  auto help = RunTool({"help", "put"});
  ASSERT_EQ(help.status, 0) << help.err;
  EXPECT_NE(help.out.find("Usage: quorvex put [OPTIONS] KIND [FILE]"), std::string::npos)
      << help.out;
  EXPECT_NE(help.out.find("members left out become empty"), std::string::npos) << help.out;
  EXPECT_EQ(help.out, RunTool({"put", "--help"}).out);
  // Every command the tool lists explains itself.
  for (const std::string& name : HelpCommands(RunTool({"--help"}).out)) {
    auto one = RunTool({"help", name});
    EXPECT_EQ(one.status, 0) << name;
    EXPECT_NE(one.out.find("Usage: quorvex " + name), std::string::npos) << one.out;
  }
}

TEST_F(ToolHelpTest, UnknownCommandIsNamedWithTheUsage) {
  auto run = RunTool({"frobnicate"});
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.err.substr(0, run.err.find('\n')), "quorvex: unknown command 'frobnicate'");
  EXPECT_NE(run.err.find("usage: quorvex [OPTIONS] COMMAND"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find("  list "), std::string::npos) << run.err;
  auto help = RunTool({"help", "frobnicate"});
  EXPECT_EQ(help.status, 2);
  EXPECT_EQ(help.err.substr(0, help.err.find('\n')), "quorvex: unknown command 'frobnicate'");
  auto none = RunTool({});
  EXPECT_EQ(none.status, 2);
  EXPECT_EQ(none.err.substr(0, none.err.find('\n')), "quorvex: no command given");
}

TEST_F(ToolHelpTest, VersionPrintsTheVersion) {
  auto run = RunTool({"--version"});
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(std::regex_match(run.out, std::regex("quorvex [0-9]+\\.[0-9]+(\\.[0-9]+)?\n")))
      << run.out;
}

TEST_F(ToolHelpTest, ReadmeListsTheCommandsOfTheHelp) {
  std::set<std::string> tool = HelpCommands(RunTool({"--help"}).out);
  std::set<std::string> readme = ReadmeCommands();
  ASSERT_FALSE(tool.empty());
  EXPECT_EQ(readme, tool);
  // And says what put's help says about members left out.
  EXPECT_NE(SourceFile("README.md").find("members left out become empty"), std::string::npos);
}

// The README's build command and scripts/test configure the same folder the
// same way, so the tests reuse every object the first command compiled.
TEST_F(ToolHelpTest, ReadmeBuildAndTestScriptShareOneConfiguration) {
  std::string readme = SourceFile("README.md");
  std::smatch configure;
  ASSERT_TRUE(std::regex_search(readme, configure, std::regex("cmake -S \\. -B (\\S+)([^&\n]*)")));
  std::string script = SourceFile("scripts/test");
  std::smatch dir;
  std::smatch args;
  ASSERT_TRUE(std::regex_search(script, dir, std::regex("\ndir=(\\S+)\n")));
  ASSERT_TRUE(std::regex_search(script, args, std::regex("\nargs=\\(([^)]*)\\)\n")));
  EXPECT_EQ(configure[1].str(), dir[1].str());
  auto words = [](const std::string& text) {
    std::set<std::string> set;
    std::istringstream in(text);
    std::string w;
    while (in >> w) set.insert(w);
    return set;
  };
  EXPECT_EQ(words(configure[2].str()), words(args[1].str()));
}

}  // namespace
