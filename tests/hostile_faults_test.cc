// A full disk and read-only files: every write path, stopped after any
// number of bytes, leaves each profile file as it was or as the write would
// have made it, never in between, and says so with the writer's message.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/write_faults.h"
#include "quorvex/quorvex.h"
#include "records/profile_check.h"
#include "support/fake_ss.h"
#include "support/profiles.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

constexpr char kNotWritten[] =
    " cannot be written over, you may not have it checked out, and/or the attributes of the "
    "file may be set to Read-Only.";

struct WritePath {
  const char* name;
  std::function<int()> run;
  bool one_step;  // all or nothing; a cascade may stop between files
};

int PutAd() {
  ADRecord* ad = nullptr;
  MPNewAD(&ad);
  ad->row.id = 9;
  snprintf(ad->row.text1, sizeof ad->row.text1, "Autumn offer");
  snprintf(ad->name, sizeof ad->name, "Autumn");
  int result = MPPutAD(ad);
  MPFreeAD(ad);
  return result;
}

int BirthOfAModule() {
  MORecord* parent = nullptr;
  if (MPGetMO("Text Editor", "8.0", &parent) != 1) return -1;
  MORecord* child = nullptr;
  MPNewMO(&child);
  snprintf(child->row.Name, sizeof child->row.Name, "Clone Editor");
  snprintf(child->row.Version, sizeof child->row.Version, "2.0");
  int result = MPPutMO(&child, parent);
  MPFreeMO(&child);
  MPFreeMO(&parent);
  return result;
}

// Ad 1 is named by an install ad of the network install.
int DeleteAnAd() {
  return MPDeleteAD(1);
}

// The module is named in installs (two sections of one), a product and a
// module group.
int DeleteAModule() {
  return MPDeleteMO("Text Editor", "8.0");
}

int RenameAGroup() {
  return MPRenameFG("Text Editor", "8.0", "Help", 0, 0, "Manuals");
}

int PutAText() {
  ResourceRecord* text = nullptr;
  MPNewResource(&text);
  snprintf(text->LanguageCode, sizeof text->LanguageCode, "US");
  snprintf(text->ResourceName, sizeof text->ResourceName, "IDS_FULL_DISK");
  snprintf(text->Text, sizeof text->Text, "Written when the disk had room");
  int result = MPPutResource(text);
  MPFreeResource(text);
  // Resource files are written back when the profile closes.
  CloseMasterProfile();
  return result;
}

int PutAllAds() {
  ADList* list = nullptr;
  if (MPGetADCompleteList(&list, MODE_UPDATE) != 1) return -1;
  auto* first = static_cast<ADRecord*>(list->head->record);
  MPRemoveADNode(list, first);
  MPFreeAD(first);  // a removed record is the caller's
  int result = MPPutADCompleteList(list);
  MPFreeADList(list);
  return result;
}

const std::vector<WritePath> kWritePaths = {
    {"put AD", PutAd, true},
    {"complete-list put AD", PutAllAds, true},
    {"put Resource and close", PutAText, false},
    {"birth of a module", BirthOfAModule, false},
    {"delete an Ad with its install ads", DeleteAnAd, false},
    {"delete a module with its references", DeleteAModule, false},
    {"rename a file group, its files and icons", RenameAGroup, true},
};

// The names of the files in which two snapshots differ, for messages.
std::string Differences(const Files& a, const Files& b) {
  std::string names;
  for (const auto& [name, bytes] : a) {
    if (b.count(name) == 0 || b.at(name) != bytes) names += " " + name;
  }
  for (const auto& [name, bytes] : b) {
    if (a.count(name) == 0) names += " +" + name;
  }
  return names;
}

// Generated text ids carry a prefix drawn from the clock at each open
// ("MP_GEN_0876_..."): two runs of one write differ only there.
std::string WithoutNamePrefix(std::string bytes) {
  static const std::string kGenerated = "MP_GEN_";
  for (size_t at = bytes.find(kGenerated); at != std::string::npos;
       at = bytes.find(kGenerated, at + 1)) {
    for (size_t i = at + kGenerated.size(); i < at + kGenerated.size() + 4 && i < bytes.size();
         ++i) {
      if (bytes[i] >= '0' && bytes[i] <= '9') bytes[i] = '#';
    }
  }
  return bytes;
}

// Where two versions of a file part, for messages.
std::string FirstDifference(const std::string& expected, const std::string& actual) {
  size_t at = 0;
  while (at < expected.size() && at < actual.size() && expected[at] == actual[at]) ++at;
  size_t from = at < 40 ? 0 : at - 40;
  return "new has \"" + expected.substr(from, 80) + "\", found \"" + actual.substr(from, 80) + "\"";
}

bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() &&
         text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

class HostileFaultsTest : public ::testing::Test {
 protected:
  ~HostileFaultsTest() override {
    qv::SetWriteBudget(-1);
    CloseMasterProfile();  // while the fake client is still in place
  }

  // A fresh copy of the example profile, opened locked.
  void Fresh(uint32_t flags = OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK) {
    CloseMasterProfile();
    qvtest::RemoveTree(dir_);
    fs::copy(std::string(QUORVEX_SOURCE_DIR) + "/examples/profile", dir_,
             fs::copy_options::recursive);
    ASSERT_EQ(qvtest::OpenProfileAt(dir_, flags), 1);
    host_.Clear();
  }

  Files Snapshot() const {
    Files files;
    for (const auto& entry : fs::recursive_directory_iterator(dir_)) {
      if (!entry.is_regular_file()) continue;
      std::string name = fs::relative(entry.path(), dir_).string();
      if (name == "QUORVEX.LOK") continue;  // the open's, not the profile's
      files[name] = WithoutNamePrefix(qvtest::ReadFileBytes(entry.path().string()));
    }
    return files;
  }

  // What a check of the profile, opened afresh, finds.
  std::vector<std::string> CheckProblems() const {
    CloseMasterProfile();
    if (qvtest::OpenProfileAt(dir_, OPEN_MASTER | OPEN_NO_VCS) != 1) return {"does not open"};
    std::vector<std::string> texts;
    for (const auto& problem : qv::CheckProfile().problems) {
      texts.push_back(problem.file + ":" + std::to_string(problem.line) + ": " + problem.text);
    }
    return texts;
  }

  bool WriterSaidWhy() const {
    for (const std::string& error : host_.errors()) {
      if (error.rfind("File ", 0) == 0 && EndsWith(error, kNotWritten)) return true;
    }
    return false;
  }

  qvtest::ScriptedHost host_;
  std::string dir_ = host_.scratch().Join("MP");
};

TEST_F(HostileFaultsTest, AFullDiskLeavesEveryFileAsItWasOrAsTheWriteWouldHaveMadeIt) {
  int cases = 0;
  int refused = 0;
  for (const WritePath& path : kWritePaths) {
    SCOPED_TRACE(path.name);
    Fresh();
    Files before = Snapshot();
    ASSERT_EQ(path.run(), 1);
    ASSERT_EQ(host_.errors(), std::vector<std::string>{});
    Files after = Snapshot();
    ASSERT_NE(Differences(before, after), "");
    size_t written = 0;
    for (const auto& [name, bytes] : after) {
      if (before.count(name) == 0 || before.at(name) != bytes) written += bytes.size();
    }
    // Budgets up to what the write needs: the small ones one by one, then
    // growing by a quarter.
    for (size_t budget = 0; budget <= written * 3 + 16;
         budget += budget < 16 ? 1 : budget / 4 + 1) {
      SCOPED_TRACE("budget " + std::to_string(budget));
      Fresh();
      qv::SetWriteBudget(static_cast<int64_t>(budget));
      path.run();
      qv::SetWriteBudget(-1);
      ++cases;
      Files now = Snapshot();
      for (const auto& [name, bytes] : now) {
        bool old = before.count(name) != 0 && before.at(name) == bytes;
        bool made = after.count(name) != 0 && after.at(name) == bytes;
        EXPECT_TRUE(old || made) << name << " is neither its old nor its new version: "
                                 << FirstDifference(after.count(name) ? after.at(name) : "", bytes);
      }
      for (const auto& [name, bytes] : before) {
        if (now.count(name) == 0) {
          EXPECT_EQ(after.count(name), 0u) << name << " went missing";
        }
      }
      if (host_.errors().empty()) {
        EXPECT_EQ(Differences(now, after), "") << "a write that said nothing did not finish";
        continue;
      }
      ++refused;
      EXPECT_TRUE(WriterSaidWhy()) << host_.errors().front();
      if (path.one_step) {
        EXPECT_EQ(Differences(now, before), "")
            << "a failed write changed the profile: " << ::testing::PrintToString(host_.errors());
      }
      EXPECT_EQ(CheckProblems(), std::vector<std::string>{});
    }
  }
  std::printf("full-disk cases tried: %d over %zu write paths, %d stopped by the full disk\n",
              cases, kWritePaths.size(), refused);
}

// A checked-in file is read-only; a client that says it checked the file
// out but left it so makes the rewrite fail, and the file stays as it is.
TEST_F(HostileFaultsTest, AFileLeftReadOnlyStaysAsItIsAndTheWriterSaysWhy) {
  const std::vector<std::pair<const char*, std::function<int()>>> paths = {
      {"ADS/adlist.ad", PutAd}, {"ADS/adlist.ad", PutAllAds}, {"RES_US/pelhamUS.re", PutAText}};
  for (const auto& [file, run] : paths) {
    SCOPED_TRACE(file);
    qvtest::FakeSs ss;
    ss.AnswerOtherwise(0);
    Fresh();
    WriteLastProfile(dir_.c_str(), OPEN_MASTER, "Proj");
    Fresh(OPEN_MASTER | OPEN_LOCK);
    std::string target = dir_ + "/" + file;
    qvtest::MakeReadOnly(target);
    ss.AnswerSettingReadOnly("checkout", 0, target, true);
    Files before = Snapshot();
    run();
    EXPECT_EQ(Differences(Snapshot(), before), "");
    EXPECT_TRUE(WriterSaidWhy()) << (host_.errors().empty() ? "" : host_.errors().front());
    EXPECT_TRUE(qvtest::IsReadOnly(target));
    CloseMasterProfile();
  }
}

}  // namespace
