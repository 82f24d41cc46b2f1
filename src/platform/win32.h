// What the Windows files of the platform layer share: <windows.h> without
// the macros that would rename the engine's own functions, and the mapping
// from Windows error codes to the errno values the engine reports.
#ifndef QUORVEX_PLATFORM_WIN32_H_
#define QUORVEX_PLATFORM_WIN32_H_

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// qv::DeleteFile is the engine's; the Windows function is called by its
// ANSI name.
#undef DeleteFile

#include <string>

namespace qv {

// The errno value for a Windows error code (EIO for the ones without one).
int ErrnoFromWin32(DWORD code);
// Sets errno from GetLastError() and returns it.
int SetErrnoFromLastError();
// The path with every "/" made "\".
std::string NativeSeparators(const std::string& path);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_WIN32_H_
