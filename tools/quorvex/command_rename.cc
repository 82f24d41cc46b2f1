// quorvex rename: a file group or a shipped file under a new key, with
// every record that names it following along.
#include <string>
#include <vector>

#include "command.h"
#include "quorvex/quorvex.h"

namespace qvtool {
namespace {

class RenameCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = app.add_subcommand("rename", "give a file group or shipped file a new key");
    sub->add_option("KIND", kind_, "FG or SF")->required();
    sub->add_option("KEY", key_,
                    "FG: NAME VERSION OLD NEW; SF: NAME VERSION GROUP LANGUAGE FILE NEWGROUP "
                    "NEWLANGUAGE NEWFILE")
        ->required();
    return sub;
  }

  int Run(const GlobalOptions& options) override {
    const bool group = EqualsIgnoringCase(kind_, "FG");
    const bool file = EqualsIgnoringCase(kind_, "SF");
    if ((!group && !file) || key_.size() != (group ? 4u : 8u)) {
      PrintError(group || file ? "rename " + kind_ + " takes " + (group ? "4" : "8") + " keys"
                               : "rename takes FG or SF");
      return kExitUsage;
    }
    if (!OpenProfile(options, true)) return kExitFailed;
    const auto k = [&](size_t i) { return key_[i].c_str(); };
    int renamed = group ? MPRenameFG(k(0), k(1), k(2), 0, 0, k(3))
                        : MPRenameSF(k(0), k(1), k(2), k(3), k(4), 0, 0, k(5), k(6), k(7));
    return renamed == 1 ? kExitOk : kExitFailed;
  }

 private:
  static bool EqualsIgnoringCase(const std::string& a, const char* b) {
    std::string upper;
    for (char c : a) upper += static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
    return upper == b;
  }

  std::string kind_;
  std::vector<std::string> key_;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(RenameCommand);

}  // namespace qvtool
