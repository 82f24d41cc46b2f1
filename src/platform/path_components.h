// The walk that ResolvePath makes on every system: component by component,
// each one that exists spelled as the folder stores it.
#ifndef QUORVEX_PLATFORM_PATH_COMPONENTS_H_
#define QUORVEX_PLATFORM_PATH_COMPONENTS_H_

#include <string>

namespace qv {

// The name under which the folder (a prefix that ends in a separator, or ""
// for the current folder) stores the entry named component, without regard
// to case; "" when it has none.
using StoredNameFinder = std::string (*)(const std::string& folder, const std::string& component);

// Appends path[from...] to prefix: a leading run of separators becomes one
// separator, so does every run between components, and each component is
// replaced by its stored name. The first `kept` components stay as given
// (a server and share), as do "." and ".."; below a component that does not
// exist nothing is looked up.
std::string ResolveComponents(std::string prefix, const std::string& path, size_t from,
                              char separator, int kept, StoredNameFinder stored_name);

}  // namespace qv

#endif  // QUORVEX_PLATFORM_PATH_COMPONENTS_H_
