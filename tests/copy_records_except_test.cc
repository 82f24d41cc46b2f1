// Copying a section's records except those of one name, and the next free
// generated-name number found on the way.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/state.h"
#include "platform/file.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

const char kSection[] = "Created System-Settings";

class CopyRecordsExceptTest : public ::testing::Test {
 protected:
  void SetUp() override { snprintf(qv::State().name_prefix, 6, "%s", "1234_"); }

  // Copies the section of input_text except `name`; returns the result and
  // leaves the copied bytes in output_ and the input's next line in after_.
  int Copy(const std::string& input_text, const char* name, uint32_t* next) {
    std::string input_path = host_.scratch().Write("in.ssr", input_text);
    std::string output_path = host_.scratch().Join("out.tmp");
    QvFile input = QvOpenFileForRead(input_path.c_str());
    qv::File* output = qv::File::Open(output_path, qv::OpenMode::kCreateAlways);
    EXPECT_NE(input, QV_NO_FILE);
    EXPECT_NE(output, nullptr);
    SetParseFile(input_path.c_str());
    EXPECT_EQ(FindSection(input, kSection), 1);
    int result = CopyRecordsExcept(input, output->handle(), name, next);
    char line[QV_LINE_SIZE];
    after_ = ReadProfileLine(input, line, sizeof line) != 0 ? line : "<eof>";
    QvCloseFile(input);
    delete output;
    output_ = qvtest::ReadFileBytes(output_path);
    return result;
  }

  qvtest::ScriptedHost host_;
  std::string output_;
  std::string after_;
};

const char kFile[] =
    "[Created System-Settings]\r\n"
    "\"MP_GEN_1234_00000005\",\"ModA\",\"1.0\"\r\n"
    "\"MP_GEN_1234_00000009\",\"ModB\",\"1.0\"\r\n"
    "; a comment\r\n"
    "\"Plain\",\"ModA\",\"2.0\"\r\n"
    ";IAO;\"MP_GEN_1234_00000002\",\"ModC\",\"1.0\"\r\n"
    "\r\n"
    "[Next]\r\n"
    "\"MP_GEN_1234_00000077\",\"ModB\"\r\n";

TEST_F(CopyRecordsExceptTest, DropsTheNamedRecordsAndCopiesTheRest) {
  uint32_t next = 3;
  EXPECT_EQ(Copy(kFile, "ModA", &next), 1);
  EXPECT_EQ(output_,
            "\"MP_GEN_1234_00000009\",\"ModB\",\"1.0\"\r\n"
            ";IAO;\"MP_GEN_1234_00000002\",\"ModC\",\"1.0\"\r\n");
  // The largest number seen, dropped records included, plus one; the next
  // section's numbers do not count.
  EXPECT_EQ(next, 10u);
  // The input is left on the next section's header.
  EXPECT_EQ(after_, "[Next]\r");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(CopyRecordsExceptTest, NameToDropComparesWithRegardToCase) {
  uint32_t next = 0;
  EXPECT_EQ(Copy(kFile, "moda", &next), 1);
  EXPECT_EQ(output_,
            "\"MP_GEN_1234_00000005\",\"ModA\",\"1.0\"\r\n"
            "\"MP_GEN_1234_00000009\",\"ModB\",\"1.0\"\r\n"
            "\"Plain\",\"ModA\",\"2.0\"\r\n"
            ";IAO;\"MP_GEN_1234_00000002\",\"ModC\",\"1.0\"\r\n");
}

TEST_F(CopyRecordsExceptTest, EqualNumberLeavesTheNextNumberUnchanged) {
  uint32_t next = 9;
  EXPECT_EQ(Copy(kFile, "None", &next), 1);
  EXPECT_EQ(next, 9u);
}

TEST_F(CopyRecordsExceptTest, LargerNextNumberIsKept) {
  uint32_t next = 500;
  EXPECT_EQ(Copy(kFile, "None", &next), 1);
  EXPECT_EQ(next, 500u);
}

TEST_F(CopyRecordsExceptTest, OnlyGeneratedNamesCount) {
  uint32_t next = 1;
  EXPECT_EQ(Copy("[Created System-Settings]\r\n"
                 "\"GEN_1234_00000099\",\"M\"\r\n"
                 "\"MP_GEN_9999_00000042\",\"M\"\r\n"
                 "\"MP_GEN_\",\"M\"\r\n",
                 "None", &next),
            1);
  // The number stands after the prefix, whatever that prefix holds.
  EXPECT_EQ(next, 43u);
}

TEST_F(CopyRecordsExceptTest, ContinuedRecordsAreCopiedJoined) {
  uint32_t next = 0;
  EXPECT_EQ(Copy("[Created System-Settings]\r\n"
                 "\"MP_GEN_1234_00000001\", \\\r\n"
                 "  \"ModB\"\r\n",
                 "ModA", &next),
            1);
  EXPECT_EQ(output_, "\"MP_GEN_1234_00000001\", \"ModB\"\r\n");
  EXPECT_EQ(next, 2u);
}

TEST_F(CopyRecordsExceptTest, EmptySectionCopiesNothing) {
  uint32_t next = 7;
  EXPECT_EQ(Copy("[Created System-Settings]\r\n[Next]\r\n", "ModA", &next), 1);
  EXPECT_EQ(output_, "");
  EXPECT_EQ(next, 7u);
  EXPECT_EQ(after_, "[Next]\r");
}

TEST_F(CopyRecordsExceptTest, RecordThatDoesNotParseIsReportedAndKept) {
  uint32_t next = 0;
  EXPECT_EQ(Copy("[Created System-Settings]\r\nBroken,\"ModA\"\r\n", "ModA", &next), 1);
  EXPECT_EQ(output_, "Broken,\"ModA\"\r\n");
  ASSERT_EQ(host_.errors().size(), 1u);
  EXPECT_NE(host_.errors()[0].find("Bad string constant: must begin with double quote"),
            std::string::npos);
}

TEST_F(CopyRecordsExceptTest, ShortWriteIsReported) {
  std::string input_path = host_.scratch().Write("in.ssr", kFile);
  std::string output_path = host_.scratch().Write("out.tmp", "");
  QvFile input = QvOpenFileForRead(input_path.c_str());
  QvFile output = QvOpenFileForRead(output_path.c_str());  // cannot be written
  ASSERT_EQ(FindSection(input, kSection), 1);
  uint32_t next = 0;
  EXPECT_EQ(CopyRecordsExcept(input, output, "ModA", &next), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Write Error #652!"});
  QvCloseFile(input);
  QvCloseFile(output);
}

}  // namespace
