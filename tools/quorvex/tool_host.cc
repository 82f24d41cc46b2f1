#include "tool_host.h"

#include <unistd.h>

#include <iostream>
#include <set>
#include <string>

#include "progress.h"
#include "quorvex/quorvex.h"

namespace qvtool {
namespace {

struct HostSettings {
  int answer = -1;  // 1 --yes, 0 --no, -1 ask when a terminal is there
  bool interactive = false;
};
HostSettings g_settings;
int g_errors = 0;
// A command may read the same file several times (a put reads the list,
// writes it, reads it back): each problem is shown once per run.
std::set<std::string> g_shown;
bool g_hint_given = false;

bool AskTerminal(const std::string& question) {
  std::cerr << question << " [y/n] " << std::flush;
  std::string line;
  if (!std::getline(std::cin, line)) return false;
  return !line.empty() && (line[0] == 'y' || line[0] == 'Y');
}

constexpr char kNextBoxQuestion[] = "\nDo you want to see a Message Box for the Next Error?";

int MessageBox(void*, const char* text, const char* caption, int kind) {
  ProgressPause pause;
  if (kind == QV_BOX_ERROR) {
    ++g_errors;
    std::string shown = text;
    size_t at = shown.rfind(kNextBoxQuestion);
    if (at != std::string::npos) shown.erase(at);
    if (g_shown.insert(shown).second) std::cerr << "quorvex: " << shown << "\n";
    // Error boxes ask whether to show the next one: a tool always wants the
    // next error on standard error, so it never switches them off.
    return 1;
  }
  std::cerr << caption << "\n" << text << "\n";
  if (g_settings.answer >= 0) {
    std::cerr << (g_settings.answer ? "(answered Yes)\n" : "(answered No)\n");
    return g_settings.answer;
  }
  if (!g_settings.interactive) {
    // The way out is said once; later questions of the run only show the answer.
    std::cerr << (g_hint_given ? "(answered No)\n"
                               : "(no terminal to ask: answered No; use --yes to agree)\n");
    g_hint_given = true;
    return 0;
  }
  return AskTerminal("") ? 1 : 0;
}

int Dialog(void*, QuorvexOpenProfileRequest* request) {
  ProgressPause pause;
  std::cerr << "Open Profile: " << request->message << "\n";
  // A tool is told what to open on its command line; the dialog would only
  // ask the same again. Refuse it, so the engine's failure surfaces.
  return 0;
}

}  // namespace

int ReportedErrorCount() {
  return g_errors;
}

void InstallToolHost(const GlobalOptions& options) {
  g_settings.answer = options.yes ? 1 : options.no ? 0 : -1;
  g_settings.interactive = isatty(STDIN_FILENO) && isatty(STDERR_FILENO);
  QuorvexHost host = {};
  host.messageBox = &MessageBox;
  host.openProfileDialog = &Dialog;
  QuorvexSetHost(&host);
}

}  // namespace qvtool
