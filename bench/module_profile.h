// A Master Profile made for a benchmark: one module, "Editor" 1, whose file
// holds N shipped files of the group "Program" (FILE0.DLL ...).
#ifndef QUORVEX_BENCH_MODULE_PROFILE_H_
#define QUORVEX_BENCH_MODULE_PROFILE_H_

#include <cstdlib>
#include <string>

#include "bench_profile.h"

namespace qvbench {

class ModuleProfile : public BenchProfile {
 public:
  explicit ModuleProfile(int files)
      : BenchProfile("qvsfbench"), module_(profile() + "/modules/editor.mo") {
    if (!WriteModuleFile(module_, "Editor", "1", files)) exit(1);
  }
  const std::string& module_file() const { return module_; }

 private:
  std::string module_;
};

}  // namespace qvbench

#endif  // QUORVEX_BENCH_MODULE_PROFILE_H_
