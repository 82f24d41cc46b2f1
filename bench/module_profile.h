// A Master Profile made for a benchmark: one module, "Editor" 1, whose file
// holds N shipped files of the group "Program" (FILE0.DLL ...), in a
// temporary folder removed at the end.
#ifndef QUORVEX_BENCH_MODULE_PROFILE_H_
#define QUORVEX_BENCH_MODULE_PROFILE_H_

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "quorvex/quorvex.h"

namespace qvbench {

class ModuleProfile {
 public:
  explicit ModuleProfile(int files) {
    const char* base = getenv("TMPDIR");
    std::string pattern =
        std::string(base != nullptr && *base ? base : "/tmp") + "/qvsfbench.XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
      perror("mkdtemp");
      exit(1);
    }
    folder_ = pattern;
    profile_ = folder_ + "/MP";
    if (QvInitMasterProfile(profile_.c_str()) != 1) exit(1);
    module_ = profile_ + "/modules/editor.mo";
    std::ofstream out(module_, std::ios::binary);
    out << "\n[Module]\n\"Editor\",\"1\",\"\",\"\",\"\",\"\",\"\",\"" << std::string(32, 'N')
        << "\",\"\",,\r\n[File Groups]\r\n\"Program\",\"\",\"\",\"~\",,\"" << std::string(32, 'N')
        << "\",\"\",\"\",,\r\n[File Group Files]\r\n";
    for (int i = 0; i < files; ++i) {
      out << "\"US\",\"Program\",\"FILE" << i << ".DLL\",,\"\",\"\",,,,1024,,,2,,,\""
          << std::string(32, 'Y') << "\",\"" << std::string(32, 'N') << "\",,,,,,\""
          << std::string(32, 'N') << "\",\"" << std::string(32, 'N') << "\"\r\n";
    }
    out << "[Modules I Require]\r\n";
    if (getenv("QUORVEX_REGISTRY") == nullptr) {
      setenv("QUORVEX_REGISTRY", (folder_ + "/registry.reg").c_str(), 1);
    }
  }
  ~ModuleProfile() {
    std::error_code ec;
    std::filesystem::remove_all(folder_, ec);
  }
  bool Open() const {
    char path[QV_PATH_SIZE];
    snprintf(path, sizeof path, "%s", profile_.c_str());
    uint32_t flags = OPEN_MASTER | OPEN_LOCK | OPEN_NO_VCS;
    return OpenMasterProfile(path, &flags, "") == 1;
  }
  const std::string& module_file() const { return module_; }
  const std::string& folder() const { return folder_; }

 private:
  std::string folder_;
  std::string profile_;
  std::string module_;
};

}  // namespace qvbench

#endif  // QUORVEX_BENCH_MODULE_PROFILE_H_
