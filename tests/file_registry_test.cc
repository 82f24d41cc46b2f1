// The registry entries that record working files under version control.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/environment.h"
#include "platform/registry.h"
#include "quorvex/quorvex.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"
#ifdef _WIN32
#include "platform/win32.h"
// <sddl.h> needs what <windows.h> defines first.
#include <sddl.h>
#endif

namespace {

const std::string kFilesKey = "SOFTWARE\\Vardo\\Lodestar\\Stewardry\\VCS\\FILES";

std::string FileKey(const std::string& name) {
  return kFilesKey + "\\" + name;
}

std::string Text(const std::string& key, const char* name) {
  return qv::RegistryGetString(key, name).value_or("<missing>");
}

#ifndef _WIN32
size_t CountOf(const std::string& text, const std::string& piece) {
  size_t count = 0;
  for (size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1)) {
    ++count;
  }
  return count;
}
#endif

#ifdef _WIN32
// On Windows a registry of a test's own is a key under HKEY_CURRENT_USER
// that QUORVEX_REGISTRY names; the test gives it a short name of its own,
// so that it can reach that key with the system's calls.
const char kPrivateRegistries[] = "Software\\QUORVEX private registries";

std::string NewRegistryName() {
  static int count = 0;
  return "file_registry_test " + std::to_string(GetCurrentProcessId()) + " " +
         std::to_string(++count);
}

// The key under HKEY_CURRENT_USER that holds key of the registry name.
std::string HostKey(const std::string& name, const std::string& key) {
  return std::string(kPrivateRegistries) + "\\" + name + "\\" + key;
}

// The number of subkeys of a key, -1 when it cannot be opened.
long SubkeyCount(const std::string& host_key) {
  HKEY opened;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, host_key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
    return -1;
  }
  DWORD count = 0;
  LONG r = RegQueryInfoKeyA(opened, nullptr, nullptr, nullptr, &count, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr);
  RegCloseKey(opened);
  return r == ERROR_SUCCESS ? static_cast<long>(count) : -1;
}
#endif

class FileRegistryTest : public ::testing::Test {
 protected:
#ifdef _WIN32
  FileRegistryTest() : registry_name_(NewRegistryName()) {
    qv::SetEnvironmentValue("QUORVEX_REGISTRY", registry_name_.c_str());
  }
  std::string registry_name_;
#endif
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

#ifdef _WIN32
  // The reads above are the check there: the status is read back only as a
  // REG_DWORD, the texts only as REG_SZ.
  EXPECT_EQ(SubkeyCount(HostKey(registry_name_, kFilesKey)), 1);
#else
  std::string bytes = qvtest::ReadFileBytes(host_.registry_path());
  EXPECT_NE(
      bytes.find("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Vardo\\Lodestar\\Stewardry\\VCS\\FILES\\abc.mo]"),
      std::string::npos);
  EXPECT_NE(bytes.find("\"ObjectVersion\"=\"7\""), std::string::npos);
  EXPECT_NE(bytes.find("\"VCS Status\"=dword:20000000"), std::string::npos);
#endif
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
#ifdef _WIN32
  EXPECT_EQ(SubkeyCount(HostKey(registry_name_, kFilesKey)), 1);
#else
  std::string bytes = qvtest::ReadFileBytes(host_.registry_path());
  EXPECT_EQ(CountOf(bytes, "\\VCS\\FILES\\setup.msg]"), 1u);
#endif
}

TEST_F(FileRegistryTest, FileNameIsCutToFortyCharacters) {
  std::string long_name(45, 'n');
  std::string path = "C:\\Work\\" + long_name;

  ASSERT_EQ(VcsRegisterFile(path.c_str(), "File", "$/Proj/x", "1"), 1);

  EXPECT_EQ(Text(FileKey(long_name.substr(0, 40)), "WorkFilePath"), path);
  EXPECT_FALSE(qv::RegistryKeyExists(FileKey(long_name)));
}

TEST_F(FileRegistryTest, KeyThatCannotBeOpenedIsReported) {
#ifdef _WIN32
  // A registry whose key is a link that leads nowhere can be neither read
  // nor written: every key below it is looked for at the link's target.
  HKEY parent;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kPrivateRegistries, 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &parent, nullptr),
            ERROR_SUCCESS);
  HKEY link;
  ASSERT_EQ(RegCreateKeyExA(parent, registry_name_.c_str(), 0, nullptr,
                            REG_OPTION_VOLATILE | REG_OPTION_CREATE_LINK, KEY_ALL_ACCESS, nullptr,
                            &link, nullptr),
            ERROR_SUCCESS);
  const wchar_t nowhere[] = L"\\Registry\\QUORVEX\\Nowhere";
  EXPECT_EQ(
      RegSetValueExW(link, L"SymbolicLinkValue", 0, REG_LINK,
                     reinterpret_cast<const BYTE*>(nowhere), sizeof(nowhere) - sizeof(wchar_t)),
      ERROR_SUCCESS);
  RegCloseKey(link);
#else
  // A registry below a plain file can be neither read nor written, even by root.
  std::string blocker = host_.scratch().Write("blocker", "");
  setenv("QUORVEX_REGISTRY", (blocker + "/registry.reg").c_str(), 1);
#endif

  EXPECT_EQ(VcsRegisterFile("C:\\Work\\abc.mo", "File", "$/Proj/abc.mo", "1"), 0);

  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{
                "Error Opening Key: "
                "HKEY_LOCAL_MACHINE\\SOFTWARE\\Vardo\\Lodestar\\Stewardry\\VCS\\FILES\\abc.mo"});
#ifdef _WIN32
  HKEY opened_link;
  if (RegOpenKeyExA(parent, registry_name_.c_str(), REG_OPTION_OPEN_LINK, KEY_ALL_ACCESS,
                    &opened_link) == ERROR_SUCCESS) {
    RegDeleteKeyA(opened_link, "");
    RegCloseKey(opened_link);
  }
  RegCloseKey(parent);
#endif
}

TEST_F(FileRegistryTest, WorkFilePathThatCannotBeSetIsReportedWithTheObjectName) {
  std::string key = FileKey("abc.mo");
  ASSERT_TRUE(qv::RegistryCreateKey(key));
#ifdef _WIN32
  // The key can be opened but its access list lets nobody set its values.
  HKEY opened;
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, HostKey(registry_name_, key).c_str(), 0,
                          KEY_READ | WRITE_DAC, &opened),
            ERROR_SUCCESS);
  PSECURITY_DESCRIPTOR read_only = nullptr;
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(
      "D:P(A;;KR;;;WD)", SDDL_REVISION_1, &read_only, nullptr));
  LONG set = RegSetKeySecurity(opened, DACL_SECURITY_INFORMATION, read_only);
  LocalFree(read_only);
  RegCloseKey(opened);
  ASSERT_EQ(set, ERROR_SUCCESS);
  HKEY writable;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, HostKey(registry_name_, key).c_str(), 0, KEY_SET_VALUE,
                    &writable) == ERROR_SUCCESS) {
    RegCloseKey(writable);
    GTEST_SKIP() << "the system gave write access to a key whose access list refuses it, and the "
                    "registry has no other way to refuse a value to a key that opens";
  }
#else
  // The key can be opened but no update can take the registry's update lock.
  std::string lock = host_.registry_path() + ".lock";
  std::filesystem::remove(lock);
  std::filesystem::create_directory(lock);
#endif

  EXPECT_EQ(VcsRegisterFile("C:\\Work\\abc.mo", "File", "$/Proj/abc.mo", "1"), 0);

  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Error setting Value ObjectName=$/Proj/abc.mo"});
  EXPECT_FALSE(qv::RegistryGetString(key, "WorkFilePath").has_value());
}

}  // namespace
