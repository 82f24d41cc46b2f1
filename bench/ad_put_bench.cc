// The cost of one MPPutAD as the Ads file grows: every put reads the file
// for change and rewrites it whole through a temporary file, so time and
// bytes moved grow with the number of records.
//
// The counter "ratio" is the put's time over a copy of the file's (read,
// write, make durable, rename), measured in the same run on the same disk.
//
// Each size gets its own Master Profile (made by QvInitMasterProfile in a
// temporary folder, opened locked without version control). A put replaces
// a record found by its name, so the file keeps its size from one put to the
// next. Counters per put: the file's size, and the bytes and system calls
// with which the process read and wrote (from /proc/self/io where it
// exists; else the bytes are estimated as the file's size read twice - once
// to list, once to copy - and written once).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "bench_profile.h"
#include "quorvex/quorvex.h"

namespace {

class AdsProfile : public qvbench::BenchProfile {
 public:
  explicit AdsProfile(int records) : BenchProfile("qvadbench"), ads_(profile() + "/ADS/adlist.ad") {
    std::ofstream out(ads_, std::ios::binary | std::ios::app);
    for (int id = 1; id <= records; ++id) {
      out << (id % 50 == 0 ? ";IAO;" : "") << id << "," << id % 7 << "," << id % 1000
          << ",\"Banner " << id << "\",\"Top\"," << (id % 2 ? "Y" : "N") << ",N,Y,\"Ad number "
          << id << "\"\r\n";
    }
    out << "\n[Notes]\n; outside the Ads section\n";
  }
  const std::string& ads() const { return ads_; }
  uint64_t FileSize() const {
    std::error_code ec;
    return std::filesystem::file_size(ads_, ec);
  }

 private:
  std::string ads_;
};

// One profile per size, kept for the whole run.
AdsProfile& ProfileOf(int records) {
  static std::map<int, std::unique_ptr<AdsProfile>> profiles;
  auto& profile = profiles[records];
  if (profile == nullptr) profile = std::make_unique<AdsProfile>(records);
  return *profile;
}

// What the process has read and written so far: bytes and system calls.
struct ProcessIo {
  uint64_t read_bytes = 0;
  uint64_t written_bytes = 0;
  uint64_t read_calls = 0;
  uint64_t write_calls = 0;

  // Adds what was read and written between two samples.
  void Add(const ProcessIo& from, const ProcessIo& to) {
    read_bytes += to.read_bytes - from.read_bytes;
    written_bytes += to.written_bytes - from.written_bytes;
    read_calls += to.read_calls - from.read_calls;
    write_calls += to.write_calls - from.write_calls;
  }

  // False without /proc/self/io.
  bool Sample() {
    std::ifstream io("/proc/self/io");
    if (!io) return false;
    std::map<std::string, uint64_t> values;
    std::string key;
    uint64_t value = 0;
    while (io >> key >> value) values[key] = value;
    if (values.count("rchar:") == 0 || values.count("wchar:") == 0) return false;
    read_bytes = values["rchar:"];
    written_bytes = values["wchar:"];
    read_calls = values["syscr:"];
    write_calls = values["syscw:"];
    return true;
  }
};

void BM_PutAD(benchmark::State& state) {
  const int records = static_cast<int>(state.range(0));
  AdsProfile& profile = ProfileOf(records);
  if (!profile.Open()) {
    state.SkipWithError("cannot open the profile");
    return;
  }
  ADRecord* record = nullptr;
  MPNewAD(&record);
  // The middle record, found by its name in another case.
  snprintf(record->name, sizeof record->name, "AD NUMBER %d", records / 2 + 1);
  snprintf(record->row.text1, sizeof record->row.text1, "Replaced");
  record->row.flags = AD_NETWORK;

  // The puts' own reads and writes, without the copies beside them.
  ProcessIo io;
  bool measured = true;
  int failed = 0;
  double put_seconds = 0;
  double copy_seconds = 0;
  for (auto _ : state) {
    record->row.id = 0;
    record->row.number2 = static_cast<uint16_t>(state.iterations());
    ProcessIo before;
    measured = measured && before.Sample();
    auto start = std::chrono::steady_clock::now();
    if (MPPutAD(record) != 1) ++failed;
    put_seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    ProcessIo after;
    measured = measured && after.Sample();
    io.Add(before, after);
    state.PauseTiming();
    copy_seconds += qvbench::CopySeconds(profile.ads());
    state.ResumeTiming();
  }
  MPFreeAD(record);
  CloseMasterProfile();
  if (failed != 0) state.SkipWithError("a put failed");

  const double size = static_cast<double>(profile.FileSize());
  const auto per_put = benchmark::Counter::kAvgIterations;
  state.counters["records"] = records;
  // The put's time over a copy of the file's, measured in the same run.
  state.counters["ratio"] = copy_seconds > 0 ? put_seconds / copy_seconds : 0;
  state.counters["file_bytes"] = size;
  if (measured) {
    auto counter = [&](uint64_t total) {
      return benchmark::Counter(static_cast<double>(total), per_put);
    };
    state.counters["read_bytes"] = counter(io.read_bytes);
    state.counters["written_bytes"] = counter(io.written_bytes);
    state.counters["read_calls"] = counter(io.read_calls);
    state.counters["write_calls"] = counter(io.write_calls);
  } else {
    state.counters["read_bytes"] = 2 * size;
    state.counters["written_bytes"] = size;
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * size));
}

BENCHMARK(BM_PutAD)->Arg(100)->Arg(1000)->Arg(200000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
