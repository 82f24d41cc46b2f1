// The header templates of new profile files, byte for byte.

#include <gtest/gtest.h>

#include <string>

#include "platform/file.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

class FileTemplatesTest : public ::testing::Test {
 protected:
  // AddSections on a fresh file; returns the bytes written.
  std::string Template(const char* kind, const char* first = "", const char* second = "",
                       int expected_result = 1) {
    std::string path = dir_.Join("new" + std::to_string(files_++) + ".txt");
    qv::File* file = qv::File::Open(path, qv::OpenMode::kCreateNew);
    EXPECT_NE(file, nullptr);
    EXPECT_EQ(AddSections(file->handle(), kind, first, second), expected_result);
    delete file;
    return qvtest::ReadFileBytes(path);
  }

  qvtest::ScriptedHost host_;
  qvtest::TempDir dir_;
  int files_ = 0;
};

TEST_F(FileTemplatesTest, ModuleFile) {
  EXPECT_EQ(Template("MO"),
            "\n[SourceSafe]\n$Header$\n\n[Module]\n[Document Languages]\n[Languages]\n"
            "[File Groups]\n[File Groups I Require]\n[File Group Ads]\n[File Group Files]\n"
            "[Modules I Require]\n[Created Files]\n[Installed Icons]\n"
            "[Installed Icon Locations]\n[Module Locations]");
}

TEST_F(FileTemplatesTest, InstallFile) {
  EXPECT_EQ(Template("IN"),
            "\n[SourceSafe]\n$Header$\n\n[Install]\n[Install Products]\n[Shipping Languages]\n"
            "[Interface Languages]\n[Alias Module Language]\n[Install Ads]\n[Shipping Media]\n"
            "[Archives]\n[Archive Module Languages]\n[Driver Module Groups]\n[Driver OSDLs]");
}

TEST_F(FileTemplatesTest, ProductFile) {
  EXPECT_EQ(Template("PR"), "\n[SourceSafe]\n$Header$\n\n[Product]\n[Sub-Products]\n[Modules]");
}

TEST_F(FileTemplatesTest, ModuleGroupFile) {
  EXPECT_EQ(Template("MG"), "\n[SourceSafe]\n$Header$\n\n[Module Group Modules]");
}

TEST_F(FileTemplatesTest, SettingsFileNamesItsModule) {
  EXPECT_EQ(Template("SSR", "Text Editor", "8.0"),
            "\n[SourceSafe]\n$Header$\n\n[Module]\n\"Text Editor\",\"8.0\"\n\n"
            "[File System-Settings]\n[Module System-Settings]\n[System-Settings Records]\n"
            "[Shipped File Created SSRs]\n[Module Created SSRs]\n[Created System-Settings]\n");
}

TEST_F(FileTemplatesTest, ResourceAndMessageFiles) {
  EXPECT_EQ(Template("RES"), "\n[SourceSafe]\n$Header$\n\n[Resources]\n");
  EXPECT_EQ(Template("MSG"), "\n[SourceSafe]\n$Header$\n\n[Strings]\n");
}

TEST_F(FileTemplatesTest, KeysAreUsedBySettingsFilesOnly) {
  EXPECT_EQ(Template("PR", "Office", "1.0"), Template("PR"));
  EXPECT_EQ(Template("RES", "US", "x"), Template("RES"));
}

TEST_F(FileTemplatesTest, KindIgnoresCase) {
  EXPECT_EQ(Template("mo"), Template("MO"));
  EXPECT_EQ(Template("Ssr", "a", "b"), Template("SSR", "a", "b"));
  EXPECT_EQ(Template("msg"), Template("MSG"));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(FileTemplatesTest, UnknownKindIsReportedWithoutLinePrefix) {
  SetParseFile("somewhere.mo");
  EXPECT_EQ(Template("XX", "", "", 0), "");
  // "RE" names resource files to CreateMungedFile only.
  EXPECT_EQ(Template("RE", "", "", 0), "");
  EXPECT_EQ(Template("", "", "", 0), "");
  ASSERT_EQ(host_.errors().size(), 3u);
  for (const std::string& error : host_.errors()) {
    EXPECT_EQ(error, "Unsupported File Type given to AddSections.");
  }
}

TEST_F(FileTemplatesTest, TemplateSectionsAreFoundByTheReader) {
  std::string path = dir_.Join("x.SSR");
  qv::File* file = qv::File::Open(path, qv::OpenMode::kCreateNew);
  ASSERT_NE(file, nullptr);
  AddSections(file->handle(), "SSR", "Text Editor", "8.0");
  delete file;
  QvFile in = QvOpenFileForRead(path.c_str());
  SetParseFile(path.c_str());
  ASSERT_EQ(FindSection(in, "Module"), 1);
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  ASSERT_EQ(ReadRecordLine(in, record, &flags, COMMENT_MODE_RECORDS), 1);
  char* cursor = record;
  char name[41], key[11];
  ASSERT_EQ(ParseQuotedString(&cursor, name, 0, sizeof name), 1);
  ASSERT_EQ(ParseQuotedString(&cursor, key, 0, sizeof key), 1);
  EXPECT_STREQ(name, "Text Editor");
  EXPECT_STREQ(key, "8.0");
  EXPECT_EQ(FindSection(in, "Created System-Settings"), 1);
  EXPECT_EQ(ReadRecordLine(in, record, &flags, COMMENT_MODE_RECORDS), 0);
  QvCloseFile(in);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(FileTemplatesTest, AKnownKindSucceedsWhateverTheHandle) {
  for (const char* kind : {"MO", "IN", "PR", "MG", "SSR", "RES", "MSG"}) {
    EXPECT_EQ(AddSections(QV_NO_FILE, kind, "Name", "1"), 1) << kind;
    EXPECT_EQ(AddSections(QV_FAILED_FILE, kind, "Name", "1"), 1) << kind;
  }
  EXPECT_TRUE(host_.errors().empty());
}

}  // namespace
