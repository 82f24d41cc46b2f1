// The registry entries that record working files under version control.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/registry.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

const std::string kFilesKey = "SOFTWARE\\Vardo\\Lodestar\\Stewardry\\VCS\\FILES";

std::string FileKey(const std::string& name) {
  return kFilesKey + "\\" + name;
}

std::string Text(const std::string& key, const char* name) {
  return qv::RegistryGetString(key, name).value_or("<missing>");
}

size_t CountOf(const std::string& text, const std::string& piece) {
  size_t count = 0;
  for (size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
    ++count;
  }
  return count;
}

class FileRegistryTest : public ::testing::Test {
 protected:
  qvtest::ScriptedHost host_;
};

TEST_F(FileRegistryTest, RegisterWritesFourTextsAndTheRegisteredBit) {
  EXPECT_EQ(VcsRegisterFile("C:\\Work\\modules\\abc.mo", "File", "$/Proj/modules/abc.mo", "7"), 1);

  std::string key = FileKey("abc.mo");
  EXPECT_EQ(Text(key, "WorkFilePath"), "C:\\Work\\modules\\abc.mo");
  EXPECT_EQ(Text(key, "ObjectType"), "File");
  EXPECT_EQ(Text(key, "ObjectName"), "$/Proj/modules/abc.mo");
  EXPECT_EQ(Text(key, "ObjectVersion"), "7");
  // A status that did not exist counts as 0 before the bit is added.
  EXPECT_EQ(qv::RegistryGetDword(key, "VCS Status"), std::optional<uint32_t>(VCS_REGISTERED));
  EXPECT_TRUE(host_.boxes().empty());

  std::string bytes = qvtest::ReadFileBytes(host_.registry_path());
  EXPECT_NE(
      bytes.find("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Vardo\\Lodestar\\Stewardry\\VCS\\FILES\\abc.mo]"),
      std::string::npos);
  EXPECT_NE(bytes.find("\"ObjectVersion\"=\"7\""), std::string::npos);
  EXPECT_NE(bytes.find("\"VCS Status\"=dword:20000000"), std::string::npos);
}

TEST_F(FileRegistryTest, HostPathNamesSubkeyByItsFileName) {
  qvtest::TempDir dir;
  std::string path = dir.Join("modules/xyz.mo");

  EXPECT_EQ(VcsRegisterFile(path.c_str(), "File", "$/Proj/modules/xyz.mo", "1"), 1);

  EXPECT_EQ(Text(FileKey("xyz.mo"), "WorkFilePath"), path);
}

TEST_F(FileRegistryTest, RegisteringTwiceOverwritesTextsAndKeepsOtherStatusBits) {
  std::string key = FileKey("abc.mo");
  qv::RegistryValue status;
  status.name = "VCS Status";
  status.is_dword = true;
  status.dword = 0x00000105;
  ASSERT_TRUE(qv::RegistrySetValues(key, {status}));

  ASSERT_EQ(VcsRegisterFile("C:\\Work\\abc.mo", "File", "$/Proj/abc.mo", "1"), 1);
  EXPECT_EQ(qv::RegistryGetDword(key, "VCS Status"), std::optional<uint32_t>(0x20000105u));

  ASSERT_EQ(VcsRegisterFile("C:\\Work\\abc.mo", "Project", "$/Other/abc.mo", "2"), 1);

  EXPECT_EQ(Text(key, "WorkFilePath"), "C:\\Work\\abc.mo");
  EXPECT_EQ(Text(key, "ObjectType"), "Project");
  EXPECT_EQ(Text(key, "ObjectName"), "$/Other/abc.mo");
  EXPECT_EQ(Text(key, "ObjectVersion"), "2");
  EXPECT_EQ(qv::RegistryGetDword(key, "VCS Status"), std::optional<uint32_t>(0x20000105u));
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(FileRegistryTest, SameFileNameInTwoFoldersSharesOneSubkeyAndLaterWins) {
  ASSERT_EQ(VcsRegisterFile("C:\\One\\setup.msg", "File", "$/One/setup.msg", "3"), 1);
  ASSERT_EQ(VcsRegisterFile("D:\\Two\\setup.msg", "File", "$/Two/setup.msg", "4"), 1);

  std::string key = FileKey("setup.msg");
  EXPECT_EQ(Text(key, "WorkFilePath"), "D:\\Two\\setup.msg");
  EXPECT_EQ(Text(key, "ObjectName"), "$/Two/setup.msg");
  EXPECT_EQ(Text(key, "ObjectVersion"), "4");
  std::string bytes = qvtest::ReadFileBytes(host_.registry_path());
  EXPECT_EQ(CountOf(bytes, "\\VCS\\FILES\\setup.msg]"), 1u);
}

TEST_F(FileRegistryTest, FileNameIsCutToFortyCharacters) {
  std::string long_name(45, 'n');
  std::string path = "C:\\Work\\" + long_name;

  ASSERT_EQ(VcsRegisterFile(path.c_str(), "File", "$/Proj/x", "1"), 1);

  EXPECT_EQ(Text(FileKey(long_name.substr(0, 40)), "WorkFilePath"), path);
  EXPECT_FALSE(qv::RegistryKeyExists(FileKey(long_name)));
}

TEST_F(FileRegistryTest, KeyThatCannotBeOpenedIsReported) {
  // A registry below a plain file can be neither read nor written, even by root.
  std::string blocker = host_.scratch().Write("blocker", "");
  setenv("QUORVEX_REGISTRY", (blocker + "/registry.reg").c_str(), 1);

  EXPECT_EQ(VcsRegisterFile("C:\\Work\\abc.mo", "File", "$/Proj/abc.mo", "1"), 0);

  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{
                "Error Opening Key: "
                "HKEY_LOCAL_MACHINE\\SOFTWARE\\Vardo\\Lodestar\\Stewardry\\VCS\\FILES\\abc.mo"});
}

TEST_F(FileRegistryTest, WorkFilePathThatCannotBeSetIsReportedWithTheObjectName) {
  std::string key = FileKey("abc.mo");
  ASSERT_TRUE(qv::RegistryCreateKey(key));
  // The key can be opened but no update can take the registry's update lock.
  std::string lock = host_.registry_path() + ".lock";
  std::filesystem::remove(lock);
  std::filesystem::create_directory(lock);

  EXPECT_EQ(VcsRegisterFile("C:\\Work\\abc.mo", "File", "$/Proj/abc.mo", "1"), 0);

  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Error setting Value ObjectName=$/Proj/abc.mo"});
  EXPECT_FALSE(qv::RegistryGetString(key, "WorkFilePath").has_value());
}

}  // namespace
