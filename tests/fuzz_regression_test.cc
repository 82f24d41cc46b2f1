// The fuzz targets' checks over every input kept in
// tests/fuzz/regressions/<target>/: hostile inputs made by hand and every
// input a fuzzer ever found a fault with. A finding becomes a regression
// test by putting its file there (scripts/fuzz writes its findings there).
//
// Each input runs in a child process of its own, so that an input that
// makes the target abort (or, in the sanitizer build, trips a sanitizer)
// fails with its file named and the other inputs still run.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "support/temp_dir.h"

extern "C" int QvFuzzEntry_record_line_fuzz(const uint8_t* data, size_t size);
extern "C" int QvFuzzEntry_profile_check_fuzz(const uint8_t* data, size_t size);
extern "C" int QvFuzzEntry_record_json_fuzz(const uint8_t* data, size_t size);

namespace {

namespace fs = std::filesystem;
using Entry = int (*)(const uint8_t*, size_t);

std::vector<fs::path> InputsOf(const std::string& target) {
  std::vector<fs::path> inputs;
  fs::path folder = fs::path(QUORVEX_SOURCE_DIR) / "tests/fuzz/regressions" / target;
  if (!fs::is_directory(folder)) return inputs;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.is_regular_file()) inputs.push_back(entry.path());
  }
  std::sort(inputs.begin(), inputs.end());
  return inputs;
}

void RunEvery(const std::string& target, Entry entry) {
  std::vector<fs::path> inputs = InputsOf(target);
  EXPECT_FALSE(inputs.empty()) << "no inputs for " << target;
  for (const fs::path& input : inputs) {
    std::string bytes = qvtest::ReadFileBytes(input.string());
    EXPECT_EXIT(
        {
          entry(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
          exit(0);
        },
        ::testing::ExitedWithCode(0), "")
        << target << " fails on " << input.string();
  }
}

TEST(FuzzRegressionTest, RecordLines) {
  RunEvery("record_line_fuzz", QvFuzzEntry_record_line_fuzz);
}

TEST(FuzzRegressionTest, WholeFilesForTheChecker) {
  RunEvery("profile_check_fuzz", QvFuzzEntry_profile_check_fuzz);
}

TEST(FuzzRegressionTest, TheToolsJsonInput) {
  RunEvery("record_json_fuzz", QvFuzzEntry_record_json_fuzz);
}

}  // namespace
