// One MPPutSF into a module file of N shipped files, beside copying that
// file (read it, write a new file, make it durable, rename it over the old
// one: what a put must do at the least). The counter "ratio" is the put's
// time over the copy's, measured in the same run on the same disk.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "module_profile.h"
#include "quorvex/quorvex.h"

namespace {

using qvbench::ModuleProfile;

ModuleProfile& ProfileOf(int files) {
  static std::map<int, std::unique_ptr<ModuleProfile>> profiles;
  auto& profile = profiles[files];
  if (profile == nullptr) profile = std::make_unique<ModuleProfile>(files);
  return *profile;
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
    copy_seconds += qvbench::CopySeconds(profile.module_file());
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
