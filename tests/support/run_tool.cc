#include "support/run_tool.h"

#include <cstdlib>

#include "platform/program_run.h"
#include "support/temp_dir.h"

namespace qvtest {

ToolResult RunProgram(const std::vector<std::string>& args, const std::string& input,
                      const std::string& dir) {
  TempDir capture;
  std::string out_path = capture.Join("out");
  std::string err_path = capture.Join("err");
  std::string in_path = capture.Write("in", input);
  ToolResult result;
  result.status = qv::RunProgramWithFiles(args, dir, in_path, out_path, err_path);
  result.out = ReadFileBytes(out_path);
  result.err = ReadFileBytes(err_path);
  return result;
}

std::string ToolPath() {
  return QUORVEX_TOOL;
}

ToolResult RunToolIn(const std::string& dir, const std::vector<std::string>& args,
                     const std::string& input) {
  std::vector<std::string> argv = {ToolPath()};
  argv.insert(argv.end(), args.begin(), args.end());
  return RunProgram(argv, input, dir);
}

ToolResult RunTool(const std::vector<std::string>& args, const std::string& input) {
  return RunToolIn("", args, input);
}

}  // namespace qvtest
