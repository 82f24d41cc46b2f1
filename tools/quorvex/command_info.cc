// quorvex info: what is open, how, and with which generated-name prefix.
#include <iostream>
#include <nlohmann/json.hpp>

#include "command.h"
#include "quorvex/quorvex.h"

namespace qvtool {
namespace {

struct FlagName {
  uint32_t bit;
  const char* name;
};
constexpr FlagName kFlagNames[] = {
    {OPEN_MASTER, "OPEN_MASTER"},
    {OPEN_ORVIK, "OPEN_ORVIK"},
    {OPEN_LOCK, "OPEN_LOCK"},
    {OPEN_INSTALLATION, "OPEN_INSTALLATION"},
    {OPEN_NO_VCS, "OPEN_NO_VCS"},
    {OPEN_PROMPT, "OPEN_PROMPT"},
    {OPEN_TYPE_FROM_REGISTRY, "OPEN_TYPE_FROM_REGISTRY"},
    {OPEN_SILENT, "OPEN_SILENT"},
    {OPEN_READ_ACTIVE_ONLY, "OPEN_READ_ACTIVE_ONLY"},
};

std::vector<std::string> FlagNames(uint32_t flags) {
  std::vector<std::string> names;
  for (const FlagName& f : kFlagNames) {
    if (flags & f.bit) names.push_back(f.name);
  }
  return names;
}

class InfoCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    return app.add_subcommand("info", "what is open, how, and with which generated-name prefix");
  }

  int Run(const GlobalOptions& options) override {
    if (!OpenProfile(options, false)) return kExitFailed;
    uint32_t flags = QvOpenProfileFlags();
    std::string kind = (flags & OPEN_ORVIK) ? "Orvik profile" : "Master Profile";
    bool locked = IsMasterProfileOpen(OPEN_LOCK) != 0;
    if (options.json) {
      nlohmann::json j;
      j["kind"] = kind;
      j["path"] = QvOpenProfilePath();
      j["flags"] = flags;
      j["flagNames"] = FlagNames(flags);
      j["locked"] = locked;
      j["vcsProject"] = QvOpenProfileProject();
      j["prefix"] = QvGeneratedNamePrefix();
      std::cout << j.dump(2) << "\n";
      return kExitOk;
    }
    std::string names;
    for (const std::string& n : FlagNames(flags)) names += (names.empty() ? "" : " ") + n;
    std::cout << "Open:        " << kind << "\n"
              << "Path:        " << QvOpenProfilePath() << "\n"
              << "Flags:       0x" << std::hex << flags << std::dec << " (" << names << ")\n"
              << "Locked:      " << (locked ? "yes" : "no") << "\n"
              << "VCS project: " << (QvOpenProfileProject()[0] ? QvOpenProfileProject() : "(none)")
              << "\n"
              << "Prefix:      " << QvGeneratedNamePrefix() << "\n";
    return kExitOk;
  }
};

}  // namespace

QVTOOL_REGISTER_COMMAND(InfoCommand);

}  // namespace qvtool
