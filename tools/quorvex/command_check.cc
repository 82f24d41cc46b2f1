// quorvex check: read every file of a Master Profile and print every
// problem with its file and line. Silence means the profile is clean.
#include <iostream>
#include <nlohmann/json.hpp>

#include "command.h"
#include "progress.h"
#include "quorvex/quorvex.h"
#include "records/profile_check.h"
#include "tool_host.h"

namespace qvtool {
namespace {

constexpr char kFooter[] =
    "One line per problem: PATH:LINE: KIND: TEXT (--json: an array of\n"
    "{file, line, kind, text}); nothing when the profile is clean. KIND is\n"
    "the record kind code (AD, LO, ...) for what the reader and the field\n"
    "parsers say about a record line, or a class:\n"
    "  outside    a line before the first section header\n"
    "  section    record lines in a section the file's kind does not hold,\n"
    "             or in a repeated section the reader never reaches\n"
    "  text       bytes that are not text (control characters but tab; a\n"
    "             carriage return only right before the line feed)\n"
    "  long       a line the reader cannot take whole (5023 bytes or more)\n"
    "  parse      a reader message in a section of no known kind\n"
    "  message    a message line (Strings, Remove Strings) without \"=\"\n"
    "  duplicate  a key met twice within a kind in one file\n"
    "  reference  a reference naming no record of the profile\n"
    "  file       a file that cannot be read\n"
    "-v adds a summary line per file. Exit status 1 when anything is found.";

class CheckCommand : public Command {
 public:
  CLI::App* Register(CLI::App& app) override {
    CLI::App* sub =
        app.add_subcommand("check", "read every file of the profile, report every problem");
    sub->footer(kFooter);
    sub->add_flag("-v,--verbose", verbose_, "print a summary line per file");
    return sub;
  }

  int Run(const GlobalOptions& options) override {
    if (options.orvik) {
      PrintError("check reads Master Profiles; an Orvik profile is a database");
      return kExitUsage;
    }
    if (!OpenProfile(options, false)) return kExitFailed;
    qv::ProfileCheck check;
    {
      Progress progress("checking the profile");
      check = qv::CheckProfile();
    }
    if (options.json) {
      nlohmann::ordered_json out = nlohmann::ordered_json::array();
      for (const qv::ProfileProblem& p : check.problems) {
        out.push_back({{"file", p.file}, {"line", p.line}, {"kind", p.kind}, {"text", p.text}});
      }
      std::cout << out.dump(2) << "\n";
    } else {
      for (const qv::ProfileProblem& p : check.problems) {
        std::cout << p.file << ":" << p.line << ": " << p.kind << ": " << p.text << "\n";
      }
    }
    if (verbose_) {
      // The summary goes with the diagnostics, so that --json output stays
      // one document.
      std::ostream& out = options.json ? std::cerr : std::cout;
      for (const qv::CheckedFile& f : check.files) {
        out << f.path << ": " << f.sections << " sections, " << f.records << " records, "
            << f.problems << (f.problems == 1 ? " problem" : " problems") << "\n";
      }
    }
    return check.problems.empty() ? kExitOk : kExitFailed;
  }

 private:
  bool verbose_ = false;
};

}  // namespace

QVTOOL_REGISTER_COMMAND(CheckCommand);

}  // namespace qvtool
