// The tool's host hooks: questions on the terminal, or --yes/--no answers
// for scripts; every message goes to standard error.
#ifndef QUORVEX_TOOLS_TOOL_HOST_H_
#define QUORVEX_TOOLS_TOOL_HOST_H_

#include "command.h"

namespace qvtool {

void InstallToolHost(const GlobalOptions& options);
// How many errors the engine has reported since the host was installed.
int ReportedErrorCount();

}  // namespace qvtool

#endif  // QUORVEX_TOOLS_TOOL_HOST_H_
