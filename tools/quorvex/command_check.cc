// quorvex check: read every file of a Master Profile and report every
// problem with its file and line.
#include <iostream>
#include <nlohmann/json.hpp>

#include "command.h"
#include "quorvex/quorvex.h"
#include "records/profile_check.h"
#include "tool_host.h"

namespace qvtool {
namespace {

class CheckCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    return app.add_subcommand("check", "read every file of the profile, report every error");
  }

  int Run(const GlobalOptions& options) override {
    if (options.orvik) {
      PrintError("check reads Master Profiles; an Orvik profile is a database");
      return kExitUsage;
    }
    if (!OpenProfile(options, false)) return kExitFailed;
    int before = ReportedErrorCount();
    std::vector<qv::CheckedFile> files = qv::CheckProfileFiles();
    int errors = ReportedErrorCount() - before;
    if (options.json) {
      nlohmann::ordered_json j;
      j["errors"] = errors;
      j["files"] = nlohmann::ordered_json::array();
      for (const qv::CheckedFile& f : files) {
        j["files"].push_back({{"path", f.path}, {"sections", f.sections}, {"records", f.records}});
      }
      std::cout << j.dump(2) << "\n";
    } else {
      for (const qv::CheckedFile& f : files) {
        std::cout << f.path << ": " << f.sections << " sections, " << f.records << " records\n";
      }
      std::cout << files.size() << " files read, " << errors
                << (errors == 1 ? " problem" : " problems") << " reported\n";
    }
    return errors == 0 ? kExitOk : kExitFailed;
  }
};

}  // namespace

QVTOOL_REGISTER_COMMAND(CheckCommand);

}  // namespace qvtool
