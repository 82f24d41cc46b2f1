// One MPPutSF into a module file of N shipped files, beside copying that
// file (read it, write a new file, make it durable, rename it over the old
// one: what a put must do at the least). The counter "ratio" is the put's
// time over the copy's, measured in the same run on the same disk.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "quorvex/quorvex.h"

namespace {

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

 private:
  std::string folder_;
  std::string profile_;
  std::string module_;
};

ModuleProfile& ProfileOf(int files) {
  static std::map<int, std::unique_ptr<ModuleProfile>> profiles;
  auto& profile = profiles[files];
  if (profile == nullptr) profile = std::make_unique<ModuleProfile>(files);
  return *profile;
}

// The least a rewrite of the file costs: read it, write a copy, make the
// copy durable, rename it into place.
double CopySeconds(const std::string& path) {
  auto start = std::chrono::steady_clock::now();
  std::string copy = path + ".copy";
  {
    std::ifstream in(path, std::ios::binary);
    std::ofstream out(copy, std::ios::binary);
    out << in.rdbuf();
  }
  int fd = open(copy.c_str(), O_RDONLY);
  if (fd >= 0) {
    fsync(fd);
    close(fd);
  }
  std::filesystem::rename(copy, path + ".moved");
  std::filesystem::remove(path + ".moved");
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BM_PutShippedFile(benchmark::State& state) {
  const int files = static_cast<int>(state.range(0));
  ModuleProfile& profile = ProfileOf(files);
  if (!profile.Open()) {
    state.SkipWithError("cannot open the profile");
    return;
  }
  SFRecord* record = nullptr;
  MPNewSF(&record);
  snprintf(record->row.ModuleName, sizeof record->row.ModuleName, "Editor");
  snprintf(record->row.ModuleVersion, sizeof record->row.ModuleVersion, "1");
  snprintf(record->row.Language, sizeof record->row.Language, "US");
  snprintf(record->row.GroupName, sizeof record->row.GroupName, "Program");
  snprintf(record->row.FileName, sizeof record->row.FileName, "FILE%d.DLL", files / 2);
  double put_seconds = 0;
  double copy_seconds = 0;
  for (auto _ : state) {
    record->row.Size += 1;  // the file keeps its size: the put replaces
    auto start = std::chrono::steady_clock::now();
    if (MPPutSF(record) != 1) state.SkipWithError("put failed");
    put_seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.PauseTiming();
    copy_seconds += CopySeconds(profile.module_file());
    state.ResumeTiming();
  }
  MPFreeSF(record);
  CloseMasterProfile();
  state.counters["ratio"] = copy_seconds > 0 ? put_seconds / copy_seconds : 0;
  std::error_code ec;
  state.counters["file_bytes"] =
      static_cast<double>(std::filesystem::file_size(profile.module_file(), ec));
}

BENCHMARK(BM_PutShippedFile)->Arg(100)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
