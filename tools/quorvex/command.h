// The commands of the quorvex tool: each one registers itself with the
// command table and runs against the options every command shares.
#ifndef QUORVEX_TOOLS_COMMAND_H_
#define QUORVEX_TOOLS_COMMAND_H_

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qvtool {

// Exit statuses of the tool.
constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

struct GlobalOptions {
  std::string profile;  // -p PATH; empty: the last profile of this tool
  bool orvik = false;
  bool lock = false;
  std::string vcs_project;  // empty: version control off
  bool no_vcs = false;
  bool read_active_only = false;
  bool silent = false;
  std::string log;
  bool yes = false;
  bool no = false;
  bool force = false;  // rewrite files even when they do not read as written
  bool json = false;
};

class Command {
 public:
  virtual ~Command() = default;
  // Adds the subcommand and its arguments to the application.
  virtual CLI::App* Register(CLI::App& app) = 0;
  virtual int Run(const GlobalOptions& options) = 0;
};

using CommandFactory = std::function<std::unique_ptr<Command>()>;
std::vector<CommandFactory>& CommandTable();

struct CommandRegistration {
  explicit CommandRegistration(CommandFactory factory) {
    CommandTable().push_back(std::move(factory));
  }
};

#define QVTOOL_REGISTER_COMMAND(Type)                       \
  static ::qvtool::CommandRegistration registration_##Type( \
      [] { return std::unique_ptr<::qvtool::Command>(new Type()); })

// Opens the profile that the options name; `change` opens it locked. False
// when the engine refused (its message is on standard error).
bool OpenProfile(const GlobalOptions& options, bool change);

// Prints a failure of the tool itself (not of the engine) to standard error.
void PrintError(const std::string& text);

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_COMMAND_H_
