// The registry file: format, lookups, updates, concurrent writers.

#include "platform/registry.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

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

TEST_F(RegistryTest, MissingFileReadsAsEmpty) {
  EXPECT_FALSE(qv::RegistryKeyExists(kKey));
  EXPECT_FALSE(qv::RegistryGetString(kKey, "Path").has_value());
  EXPECT_FALSE(qv::RegistryGetDword(kKey, "Type").has_value());
  EXPECT_FALSE(qvtest::PathExists(file_));
}

TEST_F(RegistryTest, SetValuesWritesRegedit4File) {
  ASSERT_TRUE(
      qv::RegistrySetValues(kKey, {Text("Path", "C:\\Profiles\\Main"), Dword("Type", 0x80000000u),
                                   Text("VCS Project", "Main \"quoted\"")}));
  EXPECT_EQ(Content(),
            "REGEDIT4\n"
            "\n"
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Vardo\\Lodestar\\Stewardry\\host]\n"
            "\"Path\"=\"C:\\\\Profiles\\\\Main\"\n"
            "\"Type\"=dword:80000000\n"
            "\"VCS Project\"=\"Main \\\"quoted\\\"\"\n"
            "\n");
  EXPECT_EQ(qv::RegistryGetString(kKey, "Path"), "C:\\Profiles\\Main");
  EXPECT_EQ(qv::RegistryGetDword(kKey, "Type"), 0x80000000u);
  EXPECT_EQ(qv::RegistryGetString(kKey, "VCS Project"), "Main \"quoted\"");
  // Only the registry and its lock file are left in the folder.
  EXPECT_EQ(FolderListing(), (std::vector<std::string>{"registry.reg", "registry.reg.lock"}));
}

TEST_F(RegistryTest, DwordIsEightLowercaseHexDigits) {
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\K", {Dword("Small", 0xabcd), Dword("Zero", 0)}));
  EXPECT_EQ(Content(),
            "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\K]\n"
            "\"Small\"=dword:0000abcd\n\"Zero\"=dword:00000000\n\n");
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
  EXPECT_EQ(Content(),
            "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Vardo\\Lodestar\\Stewardry\\host]\n"
            "\"Path\"=\"two\"\n\n");
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
  std::string expected = "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\New]\n\n";
  EXPECT_EQ(Content(), expected);
  ASSERT_TRUE(qv::RegistryCreateKey("software\\new"));
  EXPECT_EQ(Content(), expected);
}

TEST_F(RegistryTest, UpdatesKeepOrderAndUnknownContent) {
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
}

TEST_F(RegistryTest, ReadsCrLfFiles) {
  qvtest::MakeDirs(dir_.Join("config/quorvex"));
  qvtest::WriteFileBytes(file_,
                         "REGEDIT4\r\n\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\W]\r\n"
                         "\"Path\"=\"C:\\\\x\"\r\n\"Type\"=dword:0000000A\r\n\r\n");
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\W", "Path"), "C:\\x");
  EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\W", "Type"), 10u);
}

TEST_F(RegistryTest, LineBreaksInTextSurvive) {
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\K", {Text("T", "a\nb\r\\c\"")}));
  EXPECT_EQ(Content(),
            "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\K]\n\"T\"=\"a\\nb\\r\\\\c\\\"\"\n\n");
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\K", "T"), "a\nb\r\\c\"");
}

TEST_F(RegistryTest, EmptyStringValue) {
  ASSERT_TRUE(qv::RegistrySetValues("SOFTWARE\\K", {Text("Empty", "")}));
  EXPECT_EQ(qv::RegistryGetString("SOFTWARE\\K", "Empty"), "");
}

TEST_F(RegistryTest, UnwritableLocationFails) {
  qvtest::WriteFileBytes(dir_.Join("plainfile"), "x");
  std::string bad = dir_.Join("plainfile/registry.reg");
  setenv("QUORVEX_REGISTRY", bad.c_str(), 1);
  EXPECT_FALSE(qv::RegistrySetValues("SOFTWARE\\K", {Text("A", "b")}));
  EXPECT_FALSE(qv::RegistryCreateKey("SOFTWARE\\K"));
  EXPECT_FALSE(qv::RegistryKeyExists("SOFTWARE\\K"));
}

TEST_F(RegistryTest, ConcurrentWritersLoseNothing) {
  const int kPerProcess = 200;
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
  for (int p = 0; p < 2; ++p) {
    for (int i = 0; i < kPerProcess; ++i) {
      std::string name = "P" + std::to_string(p) + "_" + std::to_string(i);
      EXPECT_EQ(qv::RegistryGetDword("SOFTWARE\\VCS\\FILES", name), static_cast<uint32_t>(i))
          << name;
    }
  }
  EXPECT_EQ(FolderListing(), (std::vector<std::string>{"registry.reg", "registry.reg.lock"}));
}

}  // namespace
