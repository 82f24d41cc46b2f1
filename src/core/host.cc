// Dispatch of the host hooks, with the terminal defaults.
#include "core/host.h"

#include <cstdio>
#include <string>

#include "platform/terminal.h"

namespace qv {
namespace {

QuorvexHost g_host = {};

bool DefaultMessageBox(const char* text, const char* caption, QuorvexBoxKind kind) {
  // Without a person to ask, an error box keeps the boxes coming (so every
  // error reaches standard error) and a question is declined, which is the
  // answer that changes nothing.
  bool unattended_answer = kind == QV_BOX_ERROR;
  // A program without a console (a graphical one on Windows) asks in the
  // system's own box.
  bool yes = false;
  if (SystemMessageBox(caption, text, kind == QV_BOX_ERROR, &yes)) return yes;
  if (TerminalIsInteractive()) return TerminalAskYesNo(caption, text, unattended_answer);
  TerminalPrint(std::string(caption) + "\n" + text + "\n");
  return unattended_answer;
}

bool DefaultOpenProfileDialog(QuorvexOpenProfileRequest* request) {
  if (!TerminalIsInteractive()) {
    TerminalPrint(std::string("Open Profile: ") + request->message + "\n");
    return false;
  }
  TerminalPrint(std::string("Open Profile\n") + request->message + "\n");
  std::string line;
  if (!TerminalReadLine(std::string("Profile Path [") + request->path + "]: ", &line)) {
    return false;
  }
  if (!line.empty()) snprintf(request->path, sizeof request->path, "%s", line.c_str());
  if (request->versionControl) {
    if (!TerminalReadLine(std::string("Version Control Project Name [") + request->project + "]: ",
                          &line)) {
      return false;
    }
    if (!line.empty()) snprintf(request->project, sizeof request->project, "%s", line.c_str());
  }
  return true;
}

}  // namespace

bool HostMessageBox(const char* text, const char* caption, QuorvexBoxKind kind) {
  if (g_host.messageBox != nullptr) {
    return g_host.messageBox(g_host.context, text, caption, kind) != 0;
  }
  return DefaultMessageBox(text, caption, kind);
}

bool HostOpenProfileDialog(QuorvexOpenProfileRequest* request) {
  if (g_host.openProfileDialog != nullptr) {
    return g_host.openProfileDialog(g_host.context, request) != 0;
  }
  return DefaultOpenProfileDialog(request);
}

void HostClosingNotice(const char* title, const char* text, bool done) {
  if (g_host.closingNotice != nullptr) g_host.closingNotice(g_host.context, title, text, done);
}

}  // namespace qv

extern "C" void QuorvexSetHost(const QuorvexHost* host) {
  qv::g_host = host != nullptr ? *host : QuorvexHost{};
}
