// What the terminal defaults ask of Windows: whether the program has a
// console to ask at, and standard streams that pass bytes unchanged.

#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "platform/terminal.h"
#include "platform/win32.h"

namespace qv {

namespace {

// Whether the program was built for the graphical subsystem, which gets no
// console: its standard streams lead nowhere a person would look.
bool IsGraphicalProgram() {
  const auto* base = reinterpret_cast<const unsigned char*>(GetModuleHandleA(nullptr));
  if (base == nullptr) return false;
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  if (dos->e_magic != IMAGE_DOS_SIGNATURE) return false;
  const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  return nt->Signature == IMAGE_NT_SIGNATURE &&
         nt->OptionalHeader.Subsystem == IMAGE_SUBSYSTEM_WINDOWS_GUI;
}

}  // namespace

bool TerminalIsInteractive() {
  return _isatty(_fileno(stdin)) != 0 && _isatty(_fileno(stderr)) != 0;
}

void UseBinaryStandardStreams() {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
}

bool SystemMessageBox(const std::string& caption, const std::string& text, bool error, bool* yes) {
  if (!IsGraphicalProgram()) return false;
  UINT type = MB_YESNO | MB_TASKMODAL | (error ? MB_ICONERROR : MB_ICONQUESTION);
  *yes = MessageBoxA(nullptr, text.c_str(), caption.c_str(), type) == IDYES;
  return true;
}

}  // namespace qv
