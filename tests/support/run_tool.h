// Runs the quorvex tool as a child process and captures what it prints.
#ifndef QUORVEX_TESTS_SUPPORT_RUN_TOOL_H_
#define QUORVEX_TESTS_SUPPORT_RUN_TOOL_H_

#include <string>
#include <vector>

namespace qvtest {

struct ToolResult {
  int status = -1;
  std::string out;
  std::string err;
};

// Runs the tool with the arguments; stdin is given `input` (or /dev/null).
ToolResult RunTool(const std::vector<std::string>& args, const std::string& input = "");

// The same, started in the folder `dir`.
ToolResult RunToolIn(const std::string& dir, const std::vector<std::string>& args,
                     const std::string& input = "");

// Runs a program (argv[0] found on PATH) in `dir` (empty: here), for the
// standard utilities a test drives the tool through.
ToolResult RunProgram(const std::vector<std::string>& argv, const std::string& input = "",
                      const std::string& dir = "");

// The path of the built tool.
std::string ToolPath();

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_RUN_TOOL_H_
