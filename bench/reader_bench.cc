// Reading speed of profile text: section search plus record lines, the raw
// physical-line loop, and std::getline over the same file as a yardstick.
//
// The file is generated once in a temporary folder: a few small sections
// around one large section of record lines, with comments, marked records
// and continuations sprinkled in as real profiles have them.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/file.h"
#include "quorvex/quorvex.h"

namespace {

constexpr int kRecordLines = 200000;

class GeneratedProfile {
 public:
  GeneratedProfile() {
    const char* base = getenv("TMPDIR");
    std::string pattern = std::string(base != nullptr && *base ? base : "/tmp") + "/qvbench.XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
      perror("mkdtemp");
      exit(1);
    }
    folder_ = pattern;
    path_ = folder_ + "/files.mo";
    std::ofstream out(path_, std::ios::binary);
    out << "; generated for the reader benchmark\n[Module]\n\"Bench\",\"B1\",Y,1 0 0 0\n\n";
    out << "[Files]\n";
    for (int i = 0; i < kRecordLines; ++i) {
      if (i % 50 == 0) out << "; files of group " << i / 50 << "\n";
      if (i % 97 == 0) {
        out << ";IAO;\"old" << i << ".dll\",\"SYSTEM\",N,0\n";
      } else if (i % 101 == 0) {
        out << "\"long" << i << ".dat\",\"APP\\DATA\",Y,\\\n    " << i << "\n";
      } else {
        out << "  \"file" << i << ".dll\",\"APP\\BIN\",Y," << i << ",\"" << std::string(32, 'N')
            << "\"\r\n";
      }
    }
    out << "\n[Settings]\n\"Key\",\"Value\"\n";
  }
  ~GeneratedProfile() {
    std::error_code ec;
    std::filesystem::remove_all(folder_, ec);
  }
  const std::string& path() const { return path_; }

 private:
  std::string folder_;
  std::string path_;
};

const GeneratedProfile& Profile() {
  static GeneratedProfile profile;
  return profile;
}

qv::File* OpenProfile() {
  qv::File* file = qv::File::Open(Profile().path(), qv::OpenMode::kReadExisting);
  if (file == nullptr) {
    fprintf(stderr, "cannot open %s\n", Profile().path().c_str());
    exit(1);
  }
  SetParseFile(Profile().path().c_str());
  return file;
}

void BM_FindSectionAndReadRecords(benchmark::State& state) {
  qv::File* file = OpenProfile();
  char record[QV_LINE_SIZE];
  int64_t records = 0;
  for (auto _ : state) {
    if (!FindSection(file->handle(), "Files")) state.SkipWithError("no section");
    uint32_t flags = 0;
    while (ReadRecordLine(file->handle(), record, &flags, COMMENT_MODE_RECORDS)) ++records;
  }
  state.SetItemsProcessed(records);
  state.counters["read_calls"] = benchmark::Counter(static_cast<double>(file->read_calls()),
                                                    benchmark::Counter::kAvgIterations);
  state.counters["lines_per_read_call"] =
      static_cast<double>(QvParseLineNumber()) / static_cast<double>(file->read_calls());
  delete file;
}
BENCHMARK(BM_FindSectionAndReadRecords)->Unit(benchmark::kMillisecond);

void BM_ReadProfileLine(benchmark::State& state) {
  qv::File* file = OpenProfile();
  char line[QV_LINE_SIZE];
  int64_t lines = 0;
  for (auto _ : state) {
    file->Seek(0, SEEK_SET);
    while (ReadProfileLine(file->handle(), line, sizeof line)) ++lines;
  }
  state.SetItemsProcessed(lines);
  state.counters["read_calls"] = benchmark::Counter(static_cast<double>(file->read_calls()),
                                                    benchmark::Counter::kAvgIterations);
  state.counters["lines_per_read_call"] =
      static_cast<double>(lines) / static_cast<double>(file->read_calls());
  delete file;
}
BENCHMARK(BM_ReadProfileLine)->Unit(benchmark::kMillisecond);

void BM_StdGetline(benchmark::State& state) {
  std::ifstream in(Profile().path(), std::ios::binary);
  std::string line;
  int64_t lines = 0;
  for (auto _ : state) {
    in.clear();
    in.seekg(0);
    while (std::getline(in, line)) ++lines;
  }
  state.SetItemsProcessed(lines);
}
BENCHMARK(BM_StdGetline)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
