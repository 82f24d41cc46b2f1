// quorvex location-path: where a location's files go on the target machine.
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "command.h"
#include "quorvex/quorvex.h"

namespace qvtool {
namespace {

class LocationPathCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub =
        app.add_subcommand("location-path", "the path of a location on the target machine");
    sub->add_option("NAME", name_, "the location's name")->required();
    sub->add_option("VERSION", version_, "the location's version")->required();
    sub->add_flag("--short", short_, "the short (8.3) form of each folder where it has one");
    sub->add_option("--root", root_, "the location that stands for the install root")
        ->expected(2)
        ->type_name("NAME VERSION");
    return sub;
  }

  int Run(const GlobalOptions& options) override {
    if (!OpenProfile(options, false)) return kExitFailed;
    const char* root_name = root_.size() == 2 ? root_[0].c_str() : "";
    const char* root_version = root_.size() == 2 ? root_[1].c_str() : "";
    char path[QV_PATH_SIZE] = "";
    int found =
        short_ ? MPBuildLOShortPathByKey(name_.c_str(), version_.c_str(), root_name, root_version,
                                         path)
               : MPBuildLOPathByKey(name_.c_str(), version_.c_str(), root_name, root_version, path);
    if (!found) {
      PrintError("no location " + name_ + "," + version_);
      return kExitFailed;
    }
    if (options.json) {
      nlohmann::ordered_json j;
      j["name"] = name_;
      j["version"] = version_;
      j["path"] = path;
      std::cout << j.dump(2) << "\n";
    } else {
      std::cout << path << "\n";
    }
    return kExitOk;
  }

 private:
  std::string name_;
  std::string version_;
  bool short_ = false;
  std::vector<std::string> root_;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(LocationPathCommand);

}  // namespace qvtool
