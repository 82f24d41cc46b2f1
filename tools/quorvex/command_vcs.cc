// quorvex vcs: the version-control client's projects, and recording a
// working file in the version-control file registry.
#include <iostream>
#include <nlohmann/json.hpp>

#include "command.h"
#include "quorvex/quorvex.h"
#include "records/record_list.h"

namespace qvtool {
namespace {

class VcsCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* vcs = app.add_subcommand("vcs", "version control");
    vcs->require_subcommand(1);
    projects_ = vcs->add_subcommand("projects", "the projects of the version-control database");
    register_ = vcs->add_subcommand("register", "record a working file in the registry");
    register_->add_option("PATH", path_, "the working file")->required();
    register_->add_option("TYPE", type_, "the version-control object type")->required();
    register_->add_option("NAME", name_, "the version-control object name")->required();
    register_->add_option("VERSION", version_, "the object version")->required();
    return vcs;
  }

  int Run(const GlobalOptions& options) override {
    if (projects_->parsed()) return ListProjects(options);
    return VcsRegisterFile(path_.c_str(), type_.c_str(), name_.c_str(), version_.c_str())
               ? kExitOk
               : kExitFailed;
  }

 private:
  int ListProjects(const GlobalOptions& options) {
    RecordList* list = nullptr;
    if (!VcsListProjects(&list)) return kExitFailed;
    nlohmann::json names = nlohmann::json::array();
    qv::ForEachRecord<char>(list, [&](char* name) { names.push_back(name); });
    MPFreeStringList(list);
    if (options.json) {
      std::cout << names.dump(2) << "\n";
    } else {
      for (const auto& n : names) std::cout << n.get<std::string>() << "\n";
    }
    return kExitOk;
  }

  CLI::App* projects_ = nullptr;
  CLI::App* register_ = nullptr;
  std::string path_, type_, name_, version_;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(VcsCommand);

}  // namespace qvtool
