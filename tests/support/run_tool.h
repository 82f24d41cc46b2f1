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

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_RUN_TOOL_H_
