#include "tool_host.h"

#include <unistd.h>

#include <iostream>
#include <string>

#include "quorvex/quorvex.h"

namespace qvtool {
namespace {

struct HostSettings {
  int answer = -1;  // 1 --yes, 0 --no, -1 ask when a terminal is there
  bool interactive = false;
};
HostSettings g_settings;
int g_errors = 0;

bool AskTerminal(const std::string& question) {
  std::cerr << question << " [y/n] " << std::flush;
  std::string line;
  if (!std::getline(std::cin, line)) return false;
  return !line.empty() && (line[0] == 'y' || line[0] == 'Y');
}

constexpr char kNextBoxQuestion[] = "\nDo you want to see a Message Box for the Next Error?";

int MessageBox(void*, const char* text, const char* caption, int kind) {
  if (kind == QV_BOX_ERROR) {
    ++g_errors;
    std::string shown = text;
    size_t at = shown.rfind(kNextBoxQuestion);
    if (at != std::string::npos) shown.erase(at);
    std::cerr << "quorvex: " << shown << "\n";
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
    std::cerr << "(no terminal to ask: answered No; use --yes to agree)\n";
    return 0;
  }
  return AskTerminal("") ? 1 : 0;
}

int Dialog(void*, QuorvexOpenProfileRequest* request) {
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
