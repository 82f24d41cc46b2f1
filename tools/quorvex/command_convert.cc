// quorvex convert SRC DST: a whole profile copied into the other store.
#include <sys/stat.h>

#include <filesystem>
#include <iostream>

#include "command.h"
#include "profile_convert.h"
#include "progress.h"
#include "tool_host.h"

namespace qvtool {
namespace {

constexpr char kFooter[] =
    "SRC is a Master Profile folder or an Orvik database file; DST, which\n"
    "must not exist, becomes a profile of the other store. What the\n"
    "database cannot hold (kinds without a table, inactive records, members\n"
    "only the text store keeps) is listed and kept beside the tables, and a\n"
    "conversion back brings it back. Nothing is written when SRC does not\n"
    "read whole. Exit status 1 when anything failed.";

class ConvertCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub = app.add_subcommand("convert", "copy a whole profile into the other store");
    sub->add_option("SRC", source_, "Master Profile folder or Orvik database file")->required();
    sub->add_option("DST", target_, "the new profile (must not exist)")->required();
    sub->footer(kFooter);
    return sub;
  }

  int Run(const GlobalOptions& options) override {
    struct stat st;
    if (stat(source_.c_str(), &st) != 0) {
      PrintError("cannot convert " + source_ + ": no such file or folder");
      return kExitFailed;
    }
    if (stat(target_.c_str(), &st) == 0) {
      PrintError("cannot convert into " + target_ + ": it exists (nothing was changed)");
      return kExitFailed;
    }
    stat(source_.c_str(), &st);
    source_ = std::filesystem::absolute(source_).lexically_normal().string();
    target_ = std::filesystem::absolute(target_).lexically_normal().string();
    bool from_orvik = !S_ISDIR(st.st_mode);
    // Files the new profile lacks (a language's resource file) are made
    // without asking.
    GlobalOptions answers = options;
    answers.yes = true;
    answers.no = false;
    InstallToolHost(answers);
    ConvertResult result;
    {
      Progress progress(std::string("converting ") + (from_orvik ? "the database" : "the folder"));
      result = ConvertProfile(source_, from_orvik, target_);
    }
    for (const std::string& note : result.notes) std::cout << note << "\n";
    for (const std::string& failure : result.failures) PrintError(failure);
    std::cout << (result.ok ? "Converted " : "Did not finish converting ") << source_ << " ("
              << (from_orvik ? "Orvik" : "Master Profile") << ") into " << target_ << " ("
              << (from_orvik ? "Master Profile" : "Orvik") << "): " << result.records
              << " records read, " << result.written << " written, " << result.aside
              << " kept aside\n";
    return result.ok ? kExitOk : kExitFailed;
  }

 private:
  std::string source_;
  std::string target_;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(ConvertCommand);

}  // namespace qvtool
