// quorvex: the command-line host of the engine, for scripts and people.
#include <iostream>

#include "command.h"
#include "quorvex/quorvex.h"
#include "tool_host.h"

int main(int argc, char** argv) {
  CLI::App app{"quorvex: read and change Master Profiles and Orvik profiles"};
  app.require_subcommand(1);
  qvtool::GlobalOptions options;
  app.add_option("-p,--profile", options.profile, "profile folder (or Orvik database file)");
  app.add_flag("--orvik", options.orvik, "the profile is an Orvik database");
  app.add_flag("--lock", options.lock, "open the profile locked for any command");
  auto* project =
      app.add_option("--vcs-project", options.vcs_project, "version-control project to use");
  auto* no_vcs = app.add_flag("--no-vcs", options.no_vcs, "work without version control (default)");
  project->excludes(no_vcs);
  app.add_flag("--read-active-only", options.read_active_only, "skip inactive (;IAO;) records");
  app.add_flag("--silent", options.silent, "never show the dialog; no message boxes");
  app.add_option("--log", options.log, "log file to create");
  auto* yes = app.add_flag("--yes", options.yes, "answer Yes to every question");
  auto* no = app.add_flag("--no", options.no, "answer No to every question");
  yes->excludes(no);
  app.add_flag("--force", options.force,
               "put and delete rewrite a file even when it does not read as written");
  app.add_flag("--json", options.json, "print JSON instead of tables");

  std::vector<std::unique_ptr<qvtool::Command>> commands;
  std::vector<std::pair<CLI::App*, qvtool::Command*>> subcommands;
  for (auto& factory : qvtool::CommandTable()) {
    commands.push_back(factory());
    subcommands.emplace_back(commands.back()->Register(app), commands.back().get());
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    int code = app.exit(e);
    return code == 0 ? qvtool::kExitOk : qvtool::kExitUsage;
  }
  qvtool::InstallToolHost(options);
  int status = qvtool::kExitUsage;
  for (auto& [sub, command] : subcommands) {
    if (sub->parsed()) status = command->Run(options);
  }
  CloseMasterProfile();
  return status;
}
