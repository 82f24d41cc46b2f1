// Hostile input to the tool and the checker: texts far longer than any
// member, NUL bytes, bytes that are not UTF-8, deep nesting and lines far
// longer than the reader's buffer. Each is refused or reported with a
// message, nothing is written, and nothing overflows (the sanitizer build
// runs this too).
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/run_tool.h"
#include "support/temp_dir.h"

namespace {

namespace fs = std::filesystem;

using qvtest::ReadFileBytes;
using qvtest::RunTool;
using qvtest::WriteFileBytes;

class HostileInputTest : public ::testing::Test {
 protected:
  HostileInputTest() {
    fs::copy(std::string(QUORVEX_SOURCE_DIR) + "/examples/profile", dir_,
             fs::copy_options::recursive);
  }

  std::string Ads() const { return ReadFileBytes(dir_ + "/ADS/adlist.ad"); }

  qvtest::TempDir scratch_;
  std::string dir_ = scratch_.Join("MP");
};

TEST_F(HostileInputTest, JsonThatNoRecordCanHoldIsRefusedAndNothingIsWritten) {
  const std::vector<std::pair<const char*, std::string>> inputs = {
      {"a text of 100,000 characters", R"({"text1": ")" + std::string(100000, 'x') + R"("})"},
      {"a NUL inside a text", R"({"text1": "a\u0000b", "name": "Nul"})"},
      {"bytes that are not UTF-8", "{\"text1\": \"\xff\xfe\xc0\x80\", \"name\": \"Bad\"}"},
      {"a number beyond 32 bits", R"({"id": 99999999999, "name": "Big"})"},
      {"a negative id", R"({"id": -1, "name": "Negative"})"},
      {"nesting 100,000 deep", std::string(100000, '[') + std::string(100000, ']')},
      {"a member of the wrong type", R"({"name": ["a", "b"]})"},
      {"ten megabytes on one line", std::string(10 << 20, '{')},
  };
  const std::string before = Ads();
  for (const auto& [what, json] : inputs) {
    SCOPED_TRACE(what);
    qvtest::ToolResult result = RunTool({"-p", dir_, "--no-vcs", "put", "AD", "-"}, json);
    EXPECT_NE(result.status, 0);
    EXPECT_NE(result.err, "");
    EXPECT_EQ(Ads(), before);
  }
}

TEST_F(HostileInputTest, CheckReportsLongLinesNulBytesAndNonUtf8WithoutReadingPastThem) {
  std::string head = "\n[SourceSafe]\n$Header$\n\n[Ads]\n";
  WriteFileBytes(dir_ + "/ADS/adlist.ad",
                 head + "1,1,1,\"" + std::string(1 << 20, 'a') + "\",\"b\",Y,N,N,\"c\"\r\n" +
                     "2,1,1,\"n" + std::string(1, '\0') + "ul\",\"b\",Y,N,N,\"c\"\r\n" +
                     "3,1,1,\"\xff\xfe\",\"b\",Y,N,N,\"c\"\r\n" + std::string(70000, '\0'));
  const std::string before = Ads();
  qvtest::ToolResult check = RunTool({"-p", dir_, "--no-vcs", "check"});
  EXPECT_EQ(check.status, 1);
  EXPECT_NE(check.out.find("adlist.ad:6: long:"), std::string::npos) << check.out;
  EXPECT_NE(check.out.find("adlist.ad:7: text:"), std::string::npos) << check.out;
  // A rewrite would lose what the reader cannot carry: the put is refused.
  qvtest::ToolResult put =
      RunTool({"-p", dir_, "--no-vcs", "put", "AD", "-"}, R"({"name": "New", "text1": "New"})");
  EXPECT_NE(put.status, 0);
  EXPECT_NE(put.err, "");
  EXPECT_EQ(Ads(), before);
}

}  // namespace
