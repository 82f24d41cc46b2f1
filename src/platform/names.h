// Name rules that the engine shares with Windows file systems, whatever
// the host: ASCII case folding, the order NTFS lists a folder in, and the
// FindFirstFile wildcards.
#ifndef QUORVEX_PLATFORM_NAMES_H_
#define QUORVEX_PLATFORM_NAMES_H_

#include <string>

namespace qv {

char LowerAscii(char c);
char UpperAscii(char c);
bool EqualNoCase(const std::string& a, const std::string& b);
// Orders names as NTFS lists them: by their upper-case form (so "_" comes
// after the letters), ties by bytes.
bool NameLess(const std::string& a, const std::string& b);
// "*" matches any run, "?" any one character, letters ignore case; as on
// Windows, "name.*" also matches a name without any extension and "*.*"
// matches everything.
bool PatternMatches(const std::string& pattern, const std::string& name);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_NAMES_H_
