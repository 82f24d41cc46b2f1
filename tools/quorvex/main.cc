// quorvex: the command-line host of the engine, for scripts and people.
#include <iostream>

#include "command.h"
#include "platform/terminal.h"
#include "quorvex/quorvex.h"
#include "tool_host.h"

namespace {

// Usage lines of commands name the tool too: "Usage: quorvex put ...".
class Formatter : public CLI::Formatter {
 public:
  std::string make_usage(const CLI::App* app, std::string name) const override {
    std::string usage = CLI::Formatter::make_usage(app, name);
    if (app->get_parent() == nullptr || name.rfind("quorvex", 0) == 0) return usage;
    size_t at = usage.find(get_label("Usage") + ": ");
    if (at != std::string::npos) usage.insert(at + get_label("Usage").size() + 2, "quorvex ");
    return usage;
  }
};

// "  name  description" for every command, as the help lists them.
std::string CommandList(const CLI::App& app) {
  std::string list;
  for (const CLI::App* sub : app.get_subcommands({})) {
    std::string name = sub->get_name();
    list += "  " + name + std::string(name.size() < 16 ? 16 - name.size() : 1, ' ') +
            sub->get_description() + "\n";
  }
  return list;
}

int UnknownCommand(const CLI::App& app, const std::string& name) {
  qvtool::PrintError("unknown command '" + name + "'");
  std::cerr << "usage: quorvex [OPTIONS] COMMAND [ARGS...]\n\nCommands:\n"
            << CommandList(app) << "\nquorvex help COMMAND shows a command's arguments.\n";
  return qvtool::kExitUsage;
}

// quorvex help [COMMAND]: the same text as --help, on standard output.
int Help(const CLI::App& app, const std::string& name) {
  // The formatter directly: App::help would describe the help command itself.
  auto formatter = app.get_formatter();
  if (name.empty()) {
    std::cout << formatter->make_help(&app, "quorvex", CLI::AppFormatMode::Normal);
    return qvtool::kExitOk;
  }
  for (const CLI::App* sub : app.get_subcommands({})) {
    if (sub->get_name() == name) {
      std::cout << formatter->make_help(sub, "quorvex " + name, CLI::AppFormatMode::Normal);
      return qvtool::kExitOk;
    }
  }
  return UnknownCommand(app, name);
}

}  // namespace

int main(int argc, char** argv) {
  // Scripts read the output; its lines end in a line feed everywhere.
  qv::UseBinaryStandardStreams();
  CLI::App app{"quorvex: read and change Master Profiles and Orvik profiles", "quorvex"};
  app.require_subcommand(1);
  // Options are "-x" and "--name" on every system: on Windows the parser
  // would also take "/name" for an option, and then a path such as
  // "/work/adlist.ad" or a project such as "$/MP" given as an argument would
  // go missing.
  app.allow_windows_style_options(false);
  auto formatter = std::make_shared<Formatter>();
  formatter->label("SUBCOMMAND", "COMMAND");
  formatter->label("SUBCOMMANDS", "COMMANDS");
  app.formatter(formatter);
  app.set_version_flag("--version", std::string("quorvex ") + QUORVEX_VERSION_TEXT);
  app.footer("quorvex help COMMAND (or COMMAND --help) shows a command's arguments.");
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
  auto* no = app.add_flag("--no", options.no,
                          "answer No to every question (the default without a terminal)");
  yes->excludes(no);
  app.add_flag("--force", options.force,
               "put, set and delete rewrite a file even when it does not read as written; "
               "init fills a folder that is not empty");
  app.add_flag("--json", options.json, "print JSON instead of tables");

  std::vector<std::unique_ptr<qvtool::Command>> commands;
  std::vector<std::pair<CLI::App*, qvtool::Command*>> subcommands;
  for (auto& factory : qvtool::CommandTable()) {
    commands.push_back(factory());
    subcommands.emplace_back(commands.back()->Register(app), commands.back().get());
  }
  std::string help_topic;
  CLI::App* help = app.add_subcommand("help", "this help, or a command's arguments");
  help->add_option("COMMAND", help_topic, "the command to explain");
  for (CLI::App* sub : app.get_subcommands({})) sub->group("Commands");

  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForVersion& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    // A word where a command belongs names no command.
    if (app.get_subcommands().empty() && !app.remaining().empty()) {
      return UnknownCommand(app, app.remaining().front());
    }
    if (app.get_subcommands().empty() && dynamic_cast<const CLI::RequiredError*>(&e) != nullptr) {
      qvtool::PrintError("no command given");
      std::cerr << "usage: quorvex [OPTIONS] COMMAND [ARGS...]\n\nCommands:\n"
                << CommandList(app) << "\nquorvex --help shows the options.\n";
      return qvtool::kExitUsage;
    }
    if (app.get_subcommands().empty()) {
      app.exit(e);
      return qvtool::kExitUsage;
    }
    // A command's own mistake: what is wrong, its usage line, where to read more.
    const CLI::App* sub = app.get_subcommands().front();
    qvtool::PrintError(e.what());
    std::cerr << formatter->make_usage(sub, "quorvex " + sub->get_name()) << "quorvex help "
              << sub->get_name() << " explains it.\n";
    return qvtool::kExitUsage;
  }
  if (help->parsed()) return Help(app, help_topic);
  qvtool::InstallToolHost(options);
  int status = qvtool::kExitUsage;
  for (auto& [sub, command] : subcommands) {
    if (sub->parsed()) status = command->Run(options);
  }
  CloseMasterProfile();
  return status;
}
