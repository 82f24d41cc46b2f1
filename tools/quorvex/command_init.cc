// quorvex init DIR: a new, empty Master Profile that opens.
#include <iostream>

#include "command.h"
#include "quorvex/quorvex.h"

namespace qvtool {
namespace {

class InitCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = app.add_subcommand("init", "make a new, empty Master Profile");
    sub->add_option("DIR", directory_, "folder of the new profile")->required();
    return sub;
  }

  int Run(const GlobalOptions&) override {
    if (!QvInitMasterProfile(directory_.c_str())) {
      PrintError("cannot create a Master Profile in " + directory_);
      return kExitFailed;
    }
    std::cout << "Created an empty Master Profile in " << directory_ << "\n";
    return kExitOk;
  }

 private:
  std::string directory_;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(InitCommand);

}  // namespace qvtool
