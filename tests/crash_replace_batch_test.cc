// A batch of rewrites leaves each profile file as it is until the batch
// ends, lets its later steps read what its earlier ones wrote, and then puts
// each file in place once.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "core/replace_batch.h"
#include "quorvex/quorvex.h"
#include "support/profiles.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

namespace fs = std::filesystem;

using qvtest::ReadFileBytes;

class ReplaceBatchTest : public ::testing::Test {
 protected:
  ReplaceBatchTest() {
    fs::copy(std::string(QUORVEX_SOURCE_DIR) + "/examples/profile", dir_,
             fs::copy_options::recursive);
  }
  void SetUp() override {
    ASSERT_EQ(qvtest::OpenProfileAt(dir_, OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK), 1);
  }

  static int PutAd(const char* name) {
    ADRecord* ad = nullptr;
    MPNewAD(&ad);
    snprintf(ad->name, sizeof ad->name, "%s", name);
    snprintf(ad->row.text1, sizeof ad->row.text1, "%s", name);
    int result = MPPutAD(ad);
    MPFreeAD(ad);
    return result;
  }

  std::string Ads() const { return ReadFileBytes(ads_); }

  qvtest::ScriptedHost host_;
  std::string dir_ = host_.scratch().Join("MP");
  std::string ads_ = dir_ + "/ADS/adlist.ad";
};

TEST_F(ReplaceBatchTest, TheFileChangesOnceWhenTheBatchEndsWithEveryStep) {
  const std::string before = Ads();
  {
    qv::ReplaceBatch batch;
    ASSERT_EQ(PutAd("First"), 1);
    EXPECT_EQ(Ads(), before);
    ASSERT_EQ(PutAd("Second"), 1);
    EXPECT_EQ(Ads(), before);
    // The second put read what the first wrote.
    ADList* list = nullptr;
    ASSERT_EQ(MPGetADCompleteList(&list, 0), 1);
    EXPECT_EQ(static_cast<ADRecord*>(list->tail->record)->name, std::string("Second"));
    EXPECT_EQ(static_cast<ADRecord*>(list->tail->prev->record)->name, std::string("First"));
    MPFreeADList(list);
  }
  std::string after = Ads();
  EXPECT_NE(after.find("\"First\""), std::string::npos);
  EXPECT_NE(after.find("\"Second\""), std::string::npos);
  EXPECT_FALSE(fs::exists(dir_ + "/ADS/.adlist.ad.staged"));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ReplaceBatchTest, ANestedBatchJoinsTheOuterOne) {
  const std::string before = Ads();
  {
    qv::ReplaceBatch outer;
    {
      qv::ReplaceBatch inner;
      ASSERT_EQ(PutAd("Inner"), 1);
    }
    EXPECT_EQ(Ads(), before);
  }
  EXPECT_NE(Ads().find("\"Inner\""), std::string::npos);
}

}  // namespace
