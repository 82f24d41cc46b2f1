// Asking the host program: message boxes, the Open Profile dialog and the
// closing notice go to the callbacks of QuorvexSetHost, or to the defaults.
#ifndef QUORVEX_CORE_HOST_H_
#define QUORVEX_CORE_HOST_H_

#include "quorvex/host.h"

namespace qv {

// Shows a Yes/No box; true for Yes.
bool HostMessageBox(const char* text, const char* caption, QuorvexBoxKind kind);
// Shows the Open Profile dialog; true for OK.
bool HostOpenProfileDialog(QuorvexOpenProfileRequest* request);
void HostClosingNotice(const char* title, const char* text, bool done);

}  // namespace qv

#endif  // QUORVEX_CORE_HOST_H_
