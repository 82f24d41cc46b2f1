// What the benchmarks share: a Master Profile in a temporary folder of its
// own (removed at the end), and module files of any size written directly.
#ifndef QUORVEX_BENCH_BENCH_PROFILE_H_
#define QUORVEX_BENCH_BENCH_PROFILE_H_

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "quorvex/quorvex.h"

namespace qvbench {

// The least a rewrite of a file costs, in seconds: read it, write a copy,
// make the copy durable, rename it over the file and make the rename
// durable. A put syncs the same two things: a rename
// that is not synced can be lost in a crash, with the old file back. The
// put benchmarks measure their ratio against this, in the same run.
inline double CopySeconds(const std::string& path) {
  auto start = std::chrono::steady_clock::now();
  std::string copy = path + ".copy";
  {
    std::ifstream in(path, std::ios::binary);
    std::ofstream out(copy, std::ios::binary);
    out << in.rdbuf();
  }
  auto sync = [](const std::string& name, int flags) {
    int fd = open(name.c_str(), flags);
    if (fd >= 0) {
      fsync(fd);
      close(fd);
    }
  };
  sync(copy, O_RDONLY);
  std::filesystem::rename(copy, path);  // the same bytes: the file stays as it was
  sync(std::filesystem::path(path).parent_path().string(), O_RDONLY | O_DIRECTORY);
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline bool OpenAt(const std::string& path, uint32_t flags) {
  char in_out[QV_PATH_SIZE];
  snprintf(in_out, sizeof in_out, "%s", path.c_str());
  uint32_t all = flags | OPEN_NO_VCS;
  return OpenMasterProfile(in_out, &all, "") == 1;
}

// An empty Master Profile "MP" in a new folder below $TMPDIR. The engine's
// last-profile entry goes to a registry file of the run's own unless
// QUORVEX_REGISTRY names one.
class BenchProfile {
 public:
  explicit BenchProfile(const char* tag) {
    const char* base = getenv("TMPDIR");
    std::string pattern =
        std::string(base != nullptr && *base ? base : "/tmp") + "/" + tag + ".XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
      perror("mkdtemp");
      exit(1);
    }
    folder_ = pattern;
    profile_ = folder_ + "/MP";
    if (QvInitMasterProfile(profile_.c_str()) != 1) {
      fprintf(stderr, "cannot make a profile in %s\n", profile_.c_str());
      exit(1);
    }
    if (getenv("QUORVEX_REGISTRY") == nullptr) {
      setenv("QUORVEX_REGISTRY", (folder_ + "/registry.reg").c_str(), 1);
    }
  }
  ~BenchProfile() {
    std::error_code ec;
    std::filesystem::remove_all(folder_, ec);
  }
  BenchProfile(const BenchProfile&) = delete;
  BenchProfile& operator=(const BenchProfile&) = delete;

  bool Open(uint32_t flags = OPEN_MASTER | OPEN_LOCK) const { return OpenAt(profile_, flags); }
  const std::string& folder() const { return folder_; }
  const std::string& profile() const { return profile_; }

 private:
  std::string folder_;
  std::string profile_;
};

// A module file: the module NAME VERSION with the file group "Program" and
// `files` shipped files FILE0.DLL ... in it, as the engine writes them.
inline bool WriteModuleFile(const std::string& path, const std::string& name,
                            const std::string& version, int files) {
  std::ofstream out(path, std::ios::binary);
  const std::string no(32, 'N');
  out << "\n[SourceSafe]\n$Header$\n\n[Module]\n\"" << name << "\",\"" << version
      << "\",\"\",\"\",\"\",\"\",\"\",\"" << no << "\",\"\",,\r\n[File Groups]\r\n"
      << "\"Program\",\"\",\"\",\"~\",,\"" << no << "\",\"\",\"\",,\r\n[File Group Files]\r\n";
  for (int i = 0; i < files; ++i) {
    out << "\"US\",\"Program\",\"FILE" << i << ".DLL\",,\"\",\"\",,,,1024,,,2,,,\""
        << std::string(32, 'Y') << "\",\"" << no << "\",,,,,,\"" << no << "\",\"" << no << "\"\r\n";
  }
  out << "[Modules I Require]\r\n";
  return static_cast<bool>(out);
}

}  // namespace qvbench

#endif  // QUORVEX_BENCH_BENCH_PROFILE_H_
