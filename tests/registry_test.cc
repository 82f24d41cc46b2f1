// The registry file: format, lookups, updates, concurrent writers.

#include "platform/registry.h"

#include <gtest/gtest.h>
#ifdef _WIN32
#include "platform/environment.h"
#include "platform/win32.h"
#include "support/child_mode.h"
#else
#include <dirent.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace {

using qvtest::TempDir;

constexpr char kKey[] = "SOFTWARE\\Vardo\\Lodestar\\Stewardry\\host";

qv::RegistryValue Text(const std::string& name, const std::string& text) {
  qv::RegistryValue value;
  value.name = name;
  value.text = text;
  return value;
}

qv::RegistryValue Dword(const std::string& name, uint32_t dword) {
  qv::RegistryValue value;
  value.name = name;
  value.is_dword = true;
  value.dword = dword;
  return value;
}

#ifdef _WIN32
// On Windows the registry is the system's, and QUORVEX_REGISTRY names a
// private key under HKEY_CURRENT_USER that stands for both hives. Each test
// gets a short name of its own, so that it can look at that key with the
// system's calls where the POSIX tests read the registry file.
const char kPrivateRegistries[] = "Software\\QUORVEX private registries";

std::string NewRegistryName() {
  static int count = 0;
  return "registry_test " + std::to_string(GetCurrentProcessId()) + " " + std::to_string(++count);
}

// The names of a key's values and of its subkeys, in the order the
// registry lists them; nothing when the key cannot be opened.
std::vector<std::string> Listed(const std::string& host_key, bool subkeys) {
  std::vector<std::string> names;
  HKEY opened;
  if (RegOpenKeyExA(HKEY_CURRENT_USER, host_key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
    return names;
  }
  for (DWORD i = 0;; ++i) {
    char name[16384];
    DWORD size = sizeof(name);
    LONG r = subkeys ? RegEnumKeyExA(opened, i, name, &size, nullptr, nullptr, nullptr, nullptr)
                     : RegEnumValueA(opened, i, name, &size, nullptr, nullptr, nullptr, nullptr);
    if (r != ERROR_SUCCESS) break;
    names.emplace_back(name, size);
  }
  RegCloseKey(opened);
  std::sort(names.begin(), names.end());
  return names;
}

// A value stored as another program would store it.
void StoreRaw(const std::string& host_key, const char* name, DWORD type, const void* data,
              DWORD size) {
  HKEY opened;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, host_key.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &opened, nullptr),
            ERROR_SUCCESS);
  EXPECT_EQ(RegSetValueExA(opened, name, 0, type, static_cast<const BYTE*>(data), size),
            ERROR_SUCCESS);
  RegCloseKey(opened);
}

// One of the two processes that write at once: P, its number.
int WriteManyValues(const std::vector<std::string>& args) {
  if (args.size() != 1) return 2;
  bool ok = true;
  for (int i = 0; i < 200; ++i) {
    std::string name = "P" + args[0] + "_" + std::to_string(i);
    ok = qv::RegistrySetValues("SOFTWARE\\VCS\\FILES", {Dword(name, static_cast<uint32_t>(i))}) &&
         ok;
  }
  return ok ? 0 : 1;
}

const qvtest::ChildMode kWriteManyValues("write-many-values", WriteManyValues);

class RegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* old = getenv("QUORVEX_REGISTRY");
    had_ = old != nullptr;
    if (had_) old_ = old;
    name_ = NewRegistryName();
    qv::SetEnvironmentValue("QUORVEX_REGISTRY", name_.c_str());
  }
  void TearDown() override {
    qv::SetEnvironmentValue("QUORVEX_REGISTRY", had_ ? old_.c_str() : nullptr);
  }
  // Where key of this test's registry is under HKEY_CURRENT_USER.
  std::string HostKey(const std::string& key = "") const {
    std::string path = std::string(kPrivateRegistries) + "\\" + name_;
    return key.empty() ? path : path + "\\" + key;
  }
  std::vector<std::string> ValueNames(const std::string& key) const {
    return Listed(HostKey(key), false);
  }
  std::vector<std::string> SubkeyNames(const std::string& key) const {
    return Listed(HostKey(key), true);
  }

  std::string name_;
  bool had_ = false;
  std::string old_;
};
#else
class RegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* old = getenv("QUORVEX_REGISTRY");
    had_ = old != nullptr;
    if (had_) old_ = old;
    file_ = dir_.Join("config/quorvex/registry.reg");
    setenv("QUORVEX_REGISTRY", file_.c_str(), 1);
  }
  void TearDown() override {
    if (had_) {
      setenv("QUORVEX_REGISTRY", old_.c_str(), 1);
    } else {
      unsetenv("QUORVEX_REGISTRY");
    }
  }
  std::string Content() const { return qvtest::ReadFileBytes(file_); }
  std::vector<std::string> FolderListing() const {
    std::vector<std::string> names;
    DIR* d = opendir(dir_.Join("config/quorvex").c_str());
    if (d == nullptr) return names;
    while (struct dirent* e = readdir(d)) {
      std::string name = e->d_name;
      if (name != "." && name != "..") names.push_back(name);
    }
    closedir(d);
    std::sort(names.begin(), names.end());
    return names;
  }

  TempDir dir_;
  std::string file_;
  bool had_ = false;
  std::string old_;
};
#endif

#ifdef _WIN32
TEST_F(RegistryTest, PrivateRegistryFollowsEnvironment) {
  // No file holds the registry there; the name picks the key instead.
  EXPECT_EQ(qv::RegistryFilePath(), "");
  ASSERT_TRUE(qv::RegistrySetValues(kKey, {Text("Path", "one")}));
  EXPECT_EQ(ValueNames(kKey), std::vector<std::string>{"Path"});
  std::string first = name_;
  name_ = NewRegistryName();
  qv::SetEnvironmentValue("QUORVEX_REGISTRY", name_.c_str());
  EXPECT_FALSE(qv::RegistryKeyExists(kKey));
  EXPECT_FALSE(qv::RegistryGetString(kKey, "Path").has_value());
  ASSERT_TRUE(qv::RegistrySetValues(kKey, {Text("Path", "two")}));
  qv::SetEnvironmentValue("QUORVEX_REGISTRY", first.c_str());
  EXPECT_EQ(qv::RegistryGetString(kKey, "Path"), "one");
}
#else
TEST_F(RegistryTest, FilePathFollowsEnvironment) {
  EXPECT_EQ(qv::RegistryFilePath(), file_);
  unsetenv("QUORVEX_REGISTRY");
  const char* xdg = getenv("XDG_CONFIG_HOME");
  std::string old_xdg = xdg != nullptr ? xdg : "";
  setenv("XDG_CONFIG_HOME", "/cfg", 1);
  EXPECT_EQ(qv::RegistryFilePath(), "/cfg/quorvex/registry.reg");
  unsetenv("XDG_CONFIG_HOME");
  const char* home = getenv("HOME");
  std::string old_home = home != nullptr ? home : "";
  setenv("HOME", "/home/someone", 1);
  EXPECT_EQ(qv::RegistryFilePath(), "/home/someone/.config/quorvex/registry.reg");
  if (home != nullptr) {
    setenv("HOME", old_home.c_str(), 1);
  } else {
    unsetenv("HOME");
  }
  if (xdg != nullptr) setenv("XDG_CONFIG_HOME", old_xdg.c_str(), 1);
}
#endif

TEST_F(RegistryTest, MissingFileReadsAsEmpty) {
  EXPECT_FALSE(qv::RegistryKeyExists(kKey));
  EXPECT_FALSE(qv::RegistryGetString(kKey, "Path").has_value());
  EXPECT_FALSE(qv::RegistryGetDword(kKey, "Type").has_value());
#ifdef _WIN32
  EXPECT_TRUE(SubkeyNames("").empty());  // and reading made no key
#else
  EXPECT_FALSE(qvtest::PathExists(file_));
#endif
}

TEST_F(RegistryTest, SetValuesWritesRegedit4File) {
  ASSERT_TRUE(
      qv::RegistrySetValues(kKey, {Text("Path", "C:\\Profiles\\Main"), Dword("Type", 0x80000000u),
                                   Text("VCS Project", "Main \"quoted\"")}));
#ifndef _WIN32
  EXPECT_EQ(Content(),
            "REGEDIT4\n"
            "\n"
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Vardo\\Lodestar\\Stewardry\\host]\n"
            "\"Path\"=\"C:\\\\Profiles\\\\Main\"\n"
            "\"Type\"=dword:80000000\n"
            "\"VCS Project\"=\"Main \\\"quoted\\\"\"\n"
            "\n");
#endif
  EXPECT_EQ(qv::RegistryGetString(kKey, "Path"), "C:\\Profiles\\Main");
  EXPECT_EQ(qv::RegistryGetDword(kKey, "Type"), 0x80000000u);
  EXPECT_EQ(qv::RegistryGetString(kKey, "VCS Project"), "Main \"quoted\"");
#ifdef _WIN32
  // The key holds those values and nothing else.
  EXPECT_EQ(ValueNames(kKey), (std::vector<std::string>{"Path", "Type", "VCS Project"}));
#else
  // Only the registry and its lock file are left in the folder.
  EXPECT_EQ(FolderListing(), (std::vector<std::string>{"registry.reg", "registry.reg.lock"}));
#endif
}

TEST_F(RegistryTest, DwordIsEightLowercaseHexDigits) {
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\K", {Dword("Small", 0xabcd), Dword("Zero", 0)}));
#ifdef _WIN32
  // Stored as numbers: the reads below take only a REG_DWORD.
  EXPECT_EQ(ValueNames("SOFTWARE\\K"), (std::vector<std::string>{"Small", "Zero"}));
#else
  EXPECT_EQ(Content(),
            "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\K]\n"
            "\"Small\"=dword:0000abcd\n\"Zero\"=dword:00000000\n\n");
#endif
  EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\K", "Small"), 0xabcdu);
  EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\K", "Zero"), 0u);
}

TEST_F(RegistryTest, TypesDoNotMix) {
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\K", {Dword("D", 5), Text("S", "5")}));
  EXPECT_FALSE(qv::RegistryGetString("SOFTWARE\\K", "D").has_value());
  EXPECT_FALSE(qv::RegistryGetDword("SOFTWARE\\K", "S").has_value());
  EXPECT_FALSE(qv::RegistryGetString("SOFTWARE\\K", "Missing").has_value());
}

TEST_F(RegistryTest, KeyAndValueNamesIgnoreCase) {
  ASSERT_TRUE(qv::RegistrySetValues(kKey, {Text("Path", "one")}));
  EXPECT_TRUE(qv::RegistryKeyExists("software\\VARDO\\lodestar\\STEWARDRY\\Host"));
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\vardo\\Lodestar\\Stewardry\\HOST", "path"), "one");
  ASSERT_TRUE(
      qv::RegistrySetValues("Software\\Vardo\\Lodestar\\Stewardry\\Host", {Text("PATH", "two")}));
  // The one key and the one value were updated, keeping their spelling.
#ifdef _WIN32
  EXPECT_EQ(SubkeyNames("SOFTWARE\\Vardo\\Lodestar\\Stewardry"), std::vector<std::string>{"host"});
  EXPECT_EQ(ValueNames(kKey), std::vector<std::string>{"Path"});
  EXPECT_EQ(qv::RegistryGetString(kKey, "Path"), "two");
#else
  EXPECT_EQ(Content(),
            "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Vardo\\Lodestar\\Stewardry\\host]\n"
            "\"Path\"=\"two\"\n\n");
#endif
}

TEST_F(RegistryTest, ParentKeysExist) {
  ASSERT_TRUE(qv::RegistryCreateKey(kKey));
  EXPECT_TRUE(qv::RegistryKeyExists(kKey));
  EXPECT_TRUE(qv::RegistryKeyExists("SOFTWARE\\Vardo"));
  EXPECT_TRUE(qv::RegistryKeyExists("SOFTWARE"));
  EXPECT_FALSE(qv::RegistryKeyExists("SOFTWARE\\Var"));
  EXPECT_FALSE(qv::RegistryKeyExists("SOFTWARE\\Vardo\\Lodestar\\Stewardry\\hostile"));
}

TEST_F(RegistryTest, CreateKeyWritesEmptySectionOnce) {
  ASSERT_TRUE(qv::RegistryCreateKey("SOFTWARE\\New"));
#ifdef _WIN32
  // One empty key, made once.
  EXPECT_TRUE(ValueNames("SOFTWARE\\New").empty());
  ASSERT_TRUE(qv::RegistryCreateKey("software\\new"));
  EXPECT_EQ(SubkeyNames("SOFTWARE"), std::vector<std::string>{"New"});
  EXPECT_TRUE(ValueNames("SOFTWARE\\New").empty());
#else
  std::string expected = "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\New]\n\n";
  EXPECT_EQ(Content(), expected);
  ASSERT_TRUE(qv::RegistryCreateKey("software\\new"));
  EXPECT_EQ(Content(), expected);
#endif
}

TEST_F(RegistryTest, UpdatesKeepOrderAndUnknownContent) {
#ifdef _WIN32
  // Values of kinds the engine does not write, and keys it does not know,
  // as other programs left them: an update changes only what it names.
  const BYTE bin[] = {1, 2, 3, 4, 5};
  StoreRaw(HostKey("SOFTWARE\\A"), "First", REG_SZ, "1", 2);
  StoreRaw(HostKey("SOFTWARE\\A"), "Bin", REG_BINARY, bin, sizeof(bin));
  StoreRaw(HostKey("SOFTWARE\\A"), "", REG_SZ, "default", 8);
  DWORD last = 2;
  StoreRaw(HostKey("SOFTWARE\\A"), "Last", REG_DWORD, &last, sizeof(last));
  StoreRaw(HostKey("SOFTWARE\\B"), "X", REG_SZ, "y", 2);
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\A", {Text("First", "one"), Dword("New", 7)}));
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\C", {Text("Z", "z")}));
  EXPECT_EQ(ValueNames("SOFTWARE\\A"),
            (std::vector<std::string>{"", "Bin", "First", "Last", "New"}));
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\A", "First"), "one");
  EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\A", "New"), 7u);
  HKEY a;
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, HostKey("SOFTWARE\\A").c_str(), 0, KEY_READ, &a),
            ERROR_SUCCESS);
  BYTE read[16];
  DWORD type = 0;
  DWORD size = sizeof(read);
  EXPECT_EQ(RegQueryValueExA(a, "Bin", nullptr, &type, read, &size), ERROR_SUCCESS);
  RegCloseKey(a);
  EXPECT_EQ(type, static_cast<DWORD>(REG_BINARY));
  EXPECT_EQ(std::vector<BYTE>(read, read + size), std::vector<BYTE>(bin, bin + sizeof(bin)));
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\B", "X"), "y");
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\C", "Z"), "z");
  EXPECT_EQ(SubkeyNames("SOFTWARE"), (std::vector<std::string>{"A", "B", "C"}));
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\A", ""), "default");
  EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\A", "Last"), 2u);
  EXPECT_FALSE(qv::RegistryKeyExists("Other"));
#else
  qvtest::MakeDirs(dir_.Join("config/quorvex"));
  qvtest::WriteFileBytes(file_,
                         "REGEDIT4\n"
                         "\n"
                         "[HKEY_CURRENT_USER\\Other]\n"
                         "\"Keep\"=\"me\"\n"
                         "\n"
                         "[HKEY_LOCAL_MACHINE\\SOFTWARE\\A]\n"
                         "\"First\"=\"1\"\n"
                         "\"Bin\"=hex:01,02,03,\\\n"
                         "  04,05\n"
                         "; a comment\n"
                         "@=\"default\"\n"
                         "\"Last\"=dword:00000002\n"
                         "\n"
                         "[HKEY_LOCAL_MACHINE\\SOFTWARE\\B]\n"
                         "\"X\"=\"y\"\n"
                         "\n");
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\A", {Text("First", "one"), Dword("New", 7)}));
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\C", {Text("Z", "z")}));
  EXPECT_EQ(Content(),
            "REGEDIT4\n"
            "\n"
            "[HKEY_CURRENT_USER\\Other]\n"
            "\"Keep\"=\"me\"\n"
            "\n"
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\A]\n"
            "\"First\"=\"one\"\n"
            "\"Bin\"=hex:01,02,03,\\\n"
            "  04,05\n"
            "; a comment\n"
            "@=\"default\"\n"
            "\"Last\"=dword:00000002\n"
            "\"New\"=dword:00000007\n"
            "\n"
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\B]\n"
            "\"X\"=\"y\"\n"
            "\n"
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\C]\n"
            "\"Z\"=\"z\"\n"
            "\n");
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\A", ""), "default");
  EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\A", "Last"), 2u);
  EXPECT_FALSE(qv::RegistryKeyExists("Other"));
#endif
}

// What other programs wrote is read: on POSIX a registry file with CR LF
// line ends, as Windows tools write it; on Windows, texts stored without
// their closing null or as REG_EXPAND_SZ.
TEST_F(RegistryTest, ReadsCrLfFiles) {
#ifdef _WIN32
  StoreRaw(HostKey("SOFTWARE\\W"), "Path", REG_SZ, "C:\\x", 4);
  StoreRaw(HostKey("SOFTWARE\\W"), "Expand", REG_EXPAND_SZ, "%TEMP%", 7);
  DWORD ten = 10;
  StoreRaw(HostKey("SOFTWARE\\W"), "Type", REG_DWORD, &ten, sizeof(ten));
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\W", "Path"), "C:\\x");
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\W", "Expand"), "%TEMP%");
  EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\W", "Type"), 10u);
#else
  qvtest::MakeDirs(dir_.Join("config/quorvex"));
  qvtest::WriteFileBytes(file_,
                         "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\W]\r\n"
                         "\"Path\"=\"C:\\\\x\"\r\n\"Type\"=dword:0000000A\r\n\r\n");
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\W", "Path"), "C:\\x");
  EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\W", "Type"), 10u);
#endif
}

TEST_F(RegistryTest, LineBreaksInTextSurvive) {
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\K", {Text("T", "a\nb\r\\c\"")}));
#ifndef _WIN32
  EXPECT_EQ(Content(),
            "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\K]\n\"T\"=\"a\\nb\\r\\\\c\\\"\"\n\n");
#endif
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\K", "T"), "a\nb\r\\c\"");
}

TEST_F(RegistryTest, EmptyStringValue) {
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\K", {Text("Empty", "")}));
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\K", "Empty"), "");
}

TEST_F(RegistryTest, UnwritableLocationFails) {
#ifdef _WIN32
  // A registry whose key is a link that leads nowhere: every key below it
  // is looked for at the link's target.
  HKEY parent;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, kPrivateRegistries, 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_ALL_ACCESS, nullptr, &parent, nullptr),
            ERROR_SUCCESS);
  HKEY link;
  ASSERT_EQ(RegCreateKeyExA(parent, name_.c_str(), 0, nullptr,
                            REG_OPTION_VOLATILE | REG_OPTION_CREATE_LINK, KEY_ALL_ACCESS, nullptr,
                            &link, nullptr),
            ERROR_SUCCESS);
  const wchar_t nowhere[] = L"\\Registry\\QUORVEX\\Nowhere";
  EXPECT_EQ(
      RegSetValueExW(link, L"SymbolicLinkValue", 0, REG_LINK,
                     reinterpret_cast<const BYTE*>(nowhere), sizeof(nowhere) - sizeof(wchar_t)),
      ERROR_SUCCESS);
  RegCloseKey(link);
  EXPECT_FALSE(qv::RegistrySetValues("SOFTWARE\\K", {Text("A", "b")}));
  EXPECT_FALSE(qv::RegistryCreateKey("SOFTWARE\\K"));
  EXPECT_FALSE(qv::RegistryKeyExists("SOFTWARE\\K"));
  if (RegOpenKeyExA(parent, name_.c_str(), REG_OPTION_OPEN_LINK, KEY_ALL_ACCESS, &link) ==
      ERROR_SUCCESS) {
    RegDeleteKeyA(link, "");
    RegCloseKey(link);
  }
  RegCloseKey(parent);
#else
  qvtest::WriteFileBytes(dir_.Join("plainfile"), "x");
  std::string bad = dir_.Join("plainfile/registry.reg");
  setenv("QUORVEX_REGISTRY", bad.c_str(), 1);
  EXPECT_FALSE(qv::RegistrySetValues("SOFTWARE\\K", {Text("A", "b")}));
  EXPECT_FALSE(qv::RegistryCreateKey("SOFTWARE\\K"));
  EXPECT_FALSE(qv::RegistryKeyExists("SOFTWARE\\K"));
#endif
}

TEST_F(RegistryTest, ConcurrentWritersLoseNothing) {
  const int kPerProcess = 200;
#ifdef _WIN32
  // Windows has no fork: the writers are this program in a child mode.
  {
    qvtest::Child first("write-many-values", {"0"});
    qvtest::Child second("write-many-values", {"1"});
    EXPECT_EQ(first.Wait(), 0) << first.err();
    EXPECT_EQ(second.Wait(), 0) << second.err();
  }
#else
  pid_t pids[2];
  for (int p = 0; p < 2; ++p) {
    pids[p] = fork();
    if (pids[p] == 0) {
      bool ok = true;
      for (int i = 0; i < kPerProcess; ++i) {
        std::string name = "P" + std::to_string(p) + "_" + std::to_string(i);
        ok = qv::RegistrySetValues("SOFTWARE\\VCS\\FILES",
                                   {Dword(name, static_cast<uint32_t>(i))}) &&
             ok;
      }
      _exit(ok ? 0 : 1);
    }
  }
  for (pid_t pid : pids) {
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
  }
#endif
  for (int p = 0; p < 2; ++p) {
    for (int i = 0; i < kPerProcess; ++i) {
      std::string name = "P" + std::to_string(p) + "_" + std::to_string(i);
      EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\VCS\\FILES", name), static_cast<uint32_t>(i))
          << name;
    }
  }
#ifdef _WIN32
  EXPECT_EQ(ValueNames("SOFTWARE\\VCS\\FILES").size(), 2u * kPerProcess);
#else
  EXPECT_EQ(FolderListing(), (std::vector<std::string>{"registry.reg", "registry.reg.lock"}));
#endif
}

}  // namespace
