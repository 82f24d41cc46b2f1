// The Ads family: reading "<profile>\ADS\adlist.ad" (or the Orvik table AD),
// finding, copying, putting, merging, writing and deleting Ads, and the
// bytes the file holds after every change.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/kind_api.h"
#include "records/location_family.h"
#include "records/orvik_rows.h"
#include "support/fake_ss.h"
#include "support/list_view.h"
#include "support/profiles.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::ReadFileBytes;
using qvtest::WriteFileBytes;

constexpr char kNotOpen[] = "It appears that you have not run OpenMasterProfile successfully!";
constexpr char kNotLocked[] =
    "It appears that you have not locked the Master Profile successfully!";
constexpr char kWriteOver[] =
    "File %s cannot be written over, you may not have it checked out, and/or the attributes of "
    "the file may be set to Read-Only.";

// A profile file as people keep it: a comment before the section, a
// comment, an inactive record and a blank line inside it, and a section
// after it with its own comment.
constexpr char kHead[] =
    "\n"
    "[SourceSafe]\n"
    "$Header: /Profile/ADS/adlist.ad 4 $\n"
    "\n"
    "; the Ads of the profile\n"
    "[Ads]\r\n";
constexpr char kTail[] =
    "[Notes]\n"
    "; kept: outside the Ads section\n"
    "\"free text\"\n";
constexpr char kBody[] =
    "3,1,20,\"Banner\",\"Top\",Y,N,Y,\"Spring Sale\"\r\n"
    "; dropped with the section\r\n"
    ";IAO;7,2,300,\"Side\",\"\",N,Y,N,\"Old Offer\"\r\n"
    "\r\n"
    "5,0,0,\"\",\"\",n,n,y,\"Say ^\"hi^\"\"\r\n"
    "\n";

// The three records as the writer writes them.
constexpr char kLine3[] = "3,1,20,\"Banner\",\"Top\",Y,N,Y,\"Spring Sale\"\r\n";
constexpr char kLine7[] = ";IAO;7,2,300,\"Side\",\"\",N,Y,N,\"Old Offer\"\r\n";
constexpr char kLine5[] = "5,0,0,\"\",\"\",N,N,Y,\"Say ^\"hi^\"\"\r\n";

std::string Profile() {
  return std::string(kHead) + kBody + kTail;
}
std::string Rewritten(const std::string& lines) {
  return std::string(kHead) + lines + kTail;
}

using ListPtr = qvtest::Owned<ADList, MPFreeADList>;
using RecordPtr = qvtest::Owned<ADRecord, MPFreeAD>;

RecordPtr NewAd(uint32_t id, const char* name, uint32_t flags = 0, uint8_t number1 = 0,
                uint16_t number2 = 0, const char* text1 = "", const char* text2 = "",
                uint32_t record_flags = 0) {
  ADRecord* record = nullptr;
  EXPECT_EQ(MPNewAD(&record), 1);
  record->row.id = id;
  record->row.number1 = number1;
  record->row.number2 = number2;
  snprintf(record->row.text1, sizeof record->row.text1, "%s", text1);
  snprintf(record->row.text2, sizeof record->row.text2, "%s", text2);
  record->row.flags = flags;
  record->recordFlags = record_flags;
  snprintf(record->name, sizeof record->name, "%s", name);
  return RecordPtr(record);
}

std::vector<ADRecord*> Records(const ADList* list) {
  return qvtest::RecordsOf<ADRecord>(list);
}

std::vector<uint32_t> Ids(const ADList* list) {
  std::vector<uint32_t> ids;
  for (const ADRecord* r : Records(list)) ids.push_back(r->row.id);
  return ids;
}

using qvtest::IsReadOnly;
using qvtest::MakeReadOnly;

class AdFamilyTest : public ::testing::Test {
 protected:
  AdFamilyTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
    ads_ = profile_ + "/ADS/adlist.ad";
  }

  int Open(uint32_t flags) { return qvtest::OpenProfileAt(profile_, flags); }
  void OpenLocked() { ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK), 1); }
  void OpenReadOnly() { ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS), 1); }

  void WriteAds(const std::string& bytes) { WriteFileBytes(ads_, bytes); }
  std::string Ads() const { return ReadFileBytes(ads_); }
  // The path the engine names the file by.
  std::string AdPath() const { return profile_ + "\\ADS\\adlist.ad"; }
  std::string WriteOverMessage() const {
    char text[QV_LINE_SIZE];
    snprintf(text, sizeof text, kWriteOver, AdPath().c_str());
    return text;
  }

  ListPtr Read(uint32_t mode = MODE_READ) {
    ADList* list = nullptr;
    EXPECT_EQ(MPGetADCompleteList(&list, mode), 1);
    return ListPtr(list);
  }

  // The engine's temporary files.
  std::vector<std::string> TempFiles() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(host_.scratch().Join("tmp"))) {
      std::string name = entry.path().filename().string();
      if (name.starts_with("QUORVEX.")) names.push_back(name);
    }
    return names;
  }

  std::vector<std::string> Errors() const { return host_.errors(); }

  // Puts one Ad into a profile whose Ads file is `file`, once with MPPutAD
  // and once as a complete list of that one record: the file and the
  // reports must come out the same, and so must the results and the id a
  // new record gets. Returns MPPutAD's result.
  int ExpectPutAsTheCompleteListPut(const std::string& file, uint32_t id, const char* name) {
    WriteAds(file);
    OpenLocked();
    RecordPtr one = NewAd(id, name, AD_LOCAL, 1, 2, "t1", "t2");
    const int put = MPPutAD(one.get());
    const std::string streamed = Ads();
    const std::vector<std::string> streamed_errors = Errors();
    CloseMasterProfile();
    host_.Clear();

    WriteAds(file);
    OpenLocked();
    ADList* list = nullptr;
    EXPECT_EQ(MPNewADList(&list), 1);
    ListPtr owned(list);
    ADRecord* copy = nullptr;
    EXPECT_EQ(MPCopyAD(&copy, NewAd(id, name, AD_LOCAL, 1, 2, "t1", "t2").get(), 0, nullptr), 1);
    EXPECT_EQ(MPAppendAD(list, copy), 1);
    EXPECT_EQ(put, MPPutADCompleteList(list));
    EXPECT_EQ(streamed, Ads());
    EXPECT_EQ(streamed_errors, Errors());
    if (id == 0) {
      EXPECT_EQ(one->row.id, Records(list)[0]->row.id);
    }
    CloseMasterProfile();
    host_.Clear();
    return put;
  }

  qvtest::ScriptedHost host_;
  std::string profile_;
  std::string ads_;
};

// ---------------------------------------------------------------- reading

TEST_F(AdFamilyTest, ReadsEveryRecordInFileOrder) {
  WriteAds(Profile());
  OpenReadOnly();
  ListPtr list = Read();
  ASSERT_NE(list, nullptr);
  std::vector<ADRecord*> r = Records(list.get());
  ASSERT_EQ(r.size(), 3u);
  EXPECT_EQ(list->count, 3u);

  EXPECT_EQ(r[0]->row.id, 3u);
  EXPECT_EQ(r[0]->row.number1, 1u);
  EXPECT_EQ(r[0]->row.number2, 20u);
  EXPECT_STREQ(r[0]->row.text1, "Banner");
  EXPECT_STREQ(r[0]->row.text2, "Top");
  EXPECT_EQ(r[0]->row.flags, AD_WORKSTATION | AD_LOCAL);
  EXPECT_STREQ(r[0]->name, "Spring Sale");
  EXPECT_EQ(r[0]->recordFlags, 0u);
  EXPECT_EQ(r[0]->lineNumber, 7u);
  EXPECT_EQ(r[0]->rowPointer, &r[0]->row);

  EXPECT_EQ(r[1]->row.id, 7u);
  EXPECT_EQ(r[1]->row.number1, 2u);
  EXPECT_EQ(r[1]->row.number2, 300u);
  EXPECT_STREQ(r[1]->row.text1, "Side");
  EXPECT_STREQ(r[1]->row.text2, "");
  EXPECT_EQ(r[1]->row.flags, AD_NETWORK);
  EXPECT_STREQ(r[1]->name, "Old Offer");
  EXPECT_EQ(r[1]->recordFlags, RECORD_IAO);
  EXPECT_EQ(r[1]->lineNumber, 9u);

  EXPECT_EQ(r[2]->row.id, 5u);
  EXPECT_EQ(r[2]->row.flags, AD_LOCAL);
  EXPECT_STREQ(r[2]->name, "Say \"hi\"");
  EXPECT_EQ(r[2]->lineNumber, 11u);
  EXPECT_EQ(list->current, nullptr);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(AdFamilyTest, FlagLettersStandForBitsOneTwoAndThree) {
  WriteAds(
      "[Ads]\n"
      "1,0,0,\"\",\"\",Y,N,N,\"w\"\n"
      "2,0,0,\"\",\"\",N,Y,N,\"n\"\n"
      "3,0,0,\"\",\"\",N,N,Y,\"l\"\n"
      "4,0,0,\"\",\"\",y,y,y,\"all\"\n"
      "5,0,0,\"\",\"\",n,N,n,\"none\"\n");
  OpenReadOnly();
  ListPtr list = Read();
  std::vector<uint32_t> flags;
  for (const ADRecord* r : Records(list.get())) flags.push_back(r->row.flags);
  EXPECT_EQ(flags, (std::vector<uint32_t>{2, 4, 8, 14, 0}));
}

TEST_F(AdFamilyTest, ContinuedLinesAreOneRecord) {
  WriteAds(
      "[Ads]\n"
      "  9, 4, 2 , \"first\",\\\n"
      "     \"second\" ,Y,Y,N,\"Joined\"  \n"
      "[Other]\n"
      "10,0,0,\"\",\"\",N,N,N,\"not an Ad\"\n");
  OpenReadOnly();
  ListPtr list = Read();
  std::vector<ADRecord*> r = Records(list.get());
  ASSERT_EQ(r.size(), 1u);
  EXPECT_EQ(r[0]->row.id, 9u);
  EXPECT_EQ(r[0]->row.number1, 4u);
  EXPECT_EQ(r[0]->row.number2, 2u);
  EXPECT_STREQ(r[0]->row.text1, "first");
  EXPECT_STREQ(r[0]->row.text2, "second");
  EXPECT_EQ(r[0]->row.flags, AD_WORKSTATION | AD_NETWORK);
  EXPECT_STREQ(r[0]->name, "Joined");
  EXPECT_EQ(r[0]->lineNumber, 3u);  // the line the record ended on
}

TEST_F(AdFamilyTest, ParseErrorsAreReportedWithTheLineAndDoNotStopTheLine) {
  std::string long_text(41, 'x');
  WriteAds("[Ads]\n1,0,0,\"" + long_text +
           "\",\"b\",Y,N,N,\"Too Long\"\n"
           "2,6,0,\"a\",\"b\",Y,N,X,\"Bad Flag\"\n");
  OpenReadOnly();
  ListPtr list = Read();
  std::vector<ADRecord*> r = Records(list.get());
  ASSERT_EQ(r.size(), 2u);
  // The too-long text is cut and the line goes on.
  EXPECT_EQ(std::string(r[0]->row.text1), std::string(40, 'x'));
  EXPECT_STREQ(r[0]->row.text2, "b");
  EXPECT_EQ(r[0]->row.flags, AD_WORKSTATION);
  EXPECT_STREQ(r[0]->name, "Too Long");
  // A bad flag is reported, and so is the name the cursor then stands before;
  // the record is still listed with what was read.
  EXPECT_EQ(r[1]->row.id, 2u);
  EXPECT_EQ(r[1]->row.number1, 6u);
  EXPECT_EQ(r[1]->row.flags, AD_WORKSTATION);
  EXPECT_STREQ(r[1]->name, "");
  std::string prefix = AdPath() + " : Line #";
  EXPECT_EQ(
      Errors(),
      (std::vector<std::string>{
          prefix + "2\nString \"\" is too long: should not exceed 40 characters (within quotes)",
          prefix + "3\nBad flag constant: must be a Y or an N character",
          prefix + "3\nBad string constant: must begin with double quote"}));
}

TEST_F(AdFamilyTest, ReadingWithoutAnOpenProfileIsReported) {
  WriteAds(Profile());
  ADList* list = nullptr;
  EXPECT_EQ(MPGetADCompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(Errors(), std::vector<std::string>{kNotOpen});
}

TEST_F(AdFamilyTest, MissingAdsFileIsReported) {
  OpenReadOnly();
  std::filesystem::remove(ads_);
  ADList* list = nullptr;
  EXPECT_EQ(MPGetADCompleteList(&list, MODE_READ), 0);
  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(Errors(),
            std::vector<std::string>{"Ad File " + AdPath() + " cannot be found or opened!"});
}

TEST_F(AdFamilyTest, MissingSectionReadsEmptyAndPutWritesItWithIdOne) {
  const std::string head = "\n[SourceSafe]\n$Header$\n; no Ads yet\n";
  WriteAds(head);
  OpenLocked();
  {
    ListPtr list = Read();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->count, 0u);
    EXPECT_EQ(list->head, nullptr);
  }
  RecordPtr ad = NewAd(0, "First", AD_NETWORK, 1, 2, "t1", "t2");
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  EXPECT_EQ(ad->row.id, 1u);
  EXPECT_EQ(Ads(), head + "[Ads]\n1,1,2,\"t1\",\"t2\",N,Y,N,\"First\"\r\n");
  EXPECT_TRUE(Errors().empty());
}

TEST_F(AdFamilyTest, ReadActiveOnlyProfileSkipsInactiveRecords) {
  WriteAds(Profile());
  ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS | OPEN_READ_ACTIVE_ONLY), 1);
  ListPtr list = Read();
  EXPECT_EQ(Ids(list.get()), (std::vector<uint32_t>{3, 5}));
}

TEST_F(AdFamilyTest, ReadingForChangeChecksTheFileOut) {
  WriteAds(Profile());
  MakeReadOnly(ads_);
  OpenReadOnly();
  Read(MODE_READ);
  EXPECT_TRUE(IsReadOnly(ads_));
  // Without version control a check-out only makes the file writable.
  EXPECT_EQ(Ids(Read(MODE_UPDATE).get()), (std::vector<uint32_t>{3, 7, 5}));
  EXPECT_FALSE(IsReadOnly(ads_));
  EXPECT_EQ(Ads(), Profile());
}

TEST_F(AdFamilyTest, ExampleProfileAdsReadAndSurviveARewrite) {
  const std::string example =
      ReadFileBytes(std::string(QUORVEX_SOURCE_DIR) + "/examples/profile/ADS/adlist.ad");
  ASSERT_EQ(example.rfind("\n[SourceSafe]\n$Header$\n\n[Ads]\n", 0), 0u);
  WriteAds(example);
  OpenLocked();
  ListPtr list = Read();
  std::vector<ADRecord*> r = Records(list.get());
  ASSERT_EQ(r.size(), 5u);
  EXPECT_EQ(Ids(list.get()), (std::vector<uint32_t>{1, 2, 3, 4, 5}));
  EXPECT_EQ(r[3]->recordFlags, RECORD_IAO);
  EXPECT_STREQ(r[2]->name, "Ask your administrator about the \"Network Edition\"");
  EXPECT_TRUE(Errors().empty());
  // A rewrite keeps the comment outside the section and the inactive Ad.
  RecordPtr ad = NewAd(0, "New");
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  EXPECT_EQ(ad->row.id, 6u);
  std::string bytes = Ads();
  EXPECT_NE(bytes.find(";IAO;4,3,10,"), std::string::npos) << bytes;
  size_t notes = example.find("[Notes]");
  ASSERT_NE(notes, std::string::npos);
  EXPECT_TRUE(bytes.ends_with("6,0,0,\"\",\"\",N,N,N,\"New\"\r\n" + example.substr(notes)))
      << bytes;
}

// ---------------------------------------------------------------- finding

TEST_F(AdFamilyTest, FindWithIdZeroAndEmptyNameTakesTheNextRecord) {
  WriteAds(Profile());
  OpenReadOnly();
  ListPtr list = Read();
  ADRecord* found = nullptr;
  std::vector<uint32_t> seen;
  while (MPFindADNode(0, "", list.get(), &found) == 1) seen.push_back(found->row.id);
  EXPECT_EQ(seen, (std::vector<uint32_t>{3, 7, 5}));
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(list->current, nullptr);
  // The cursor was reset: the next search starts again from head.
  ASSERT_EQ(MPFindADNode(0, "", list.get(), &found), 1);
  EXPECT_EQ(found->row.id, 3u);
}

TEST_F(AdFamilyTest, FindMatchesIdOrNameIgnoringCaseFromTheCursor) {
  WriteAds(Profile());
  OpenReadOnly();
  ListPtr list = Read();
  std::vector<ADRecord*> r = Records(list.get());
  ADRecord* found = nullptr;

  ASSERT_EQ(MPFindADNode(7, "", list.get(), &found), 1);
  EXPECT_EQ(found, r[1]);
  EXPECT_EQ(list->current, list->head->next);
  // The search goes on from the cursor and does not come round again.
  EXPECT_EQ(MPFindADNode(3, "", list.get(), &found), 0);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(list->current, nullptr);
  ASSERT_EQ(MPFindADNode(3, "", list.get(), &found), 1);
  EXPECT_EQ(found, r[0]);

  list->current = nullptr;
  ASSERT_EQ(MPFindADNode(99, "oLD offer", list.get(), &found), 1);
  EXPECT_EQ(found, r[1]);
  // The first record that matches either key wins.
  list->current = nullptr;
  ASSERT_EQ(MPFindADNode(5, "SPRING SALE", list.get(), &found), 1);
  EXPECT_EQ(found, r[0]);
  list->current = nullptr;
  EXPECT_EQ(MPFindADNode(99, "Nothing", list.get(), &found), 0);
  EXPECT_EQ(found, nullptr);
}

// ---------------------------------------------------------------- get

TEST_F(AdFamilyTest, GetReturnsACopyOfTheRecordWithThatId) {
  WriteAds(Profile());
  OpenReadOnly();
  ADRecord* got = nullptr;
  ASSERT_EQ(MPGetAD(7, &got), 1);
  RecordPtr holder(got);
  EXPECT_EQ(got->row.id, 7u);
  EXPECT_EQ(got->row.number2, 300u);
  EXPECT_STREQ(got->row.text1, "Side");
  EXPECT_STREQ(got->name, "Old Offer");
  EXPECT_EQ(got->recordFlags, RECORD_IAO);
  EXPECT_EQ(got->lineNumber, 9u);
  EXPECT_EQ(got->rowPointer, &got->row);
}

TEST_F(AdFamilyTest, GetOfAnAbsentIdReturnsZeroSilently) {
  WriteAds(Profile());
  OpenReadOnly();
  ADRecord* got = NewAd(1, "placeholder").release();
  RecordPtr holder(got);
  ADRecord* out = got;
  EXPECT_EQ(MPGetAD(42, &out), 0);
  EXPECT_EQ(out, nullptr);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(AdFamilyTest, GetWithoutAnOpenProfileIsReported) {
  ADRecord* out = nullptr;
  EXPECT_EQ(MPGetAD(3, &out), 0);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(Errors(), std::vector<std::string>{kNotOpen});
}

// ---------------------------------------------------------------- copy

TEST_F(AdFamilyTest, PlainCopyTakesEverythingFromTheSource) {
  RecordPtr source = NewAd(12, "Source", AD_LOCAL, 3, 4, "a", "b", RECORD_IAO);
  source->row.rowReference = 77;
  source->row.rest[5] = 9;
  source->lineNumber = 31;
  for (int mode : {0, 1}) {  // mode 1 without a stored record is a plain copy too
    ADRecord* copy = nullptr;
    ASSERT_EQ(MPCopyAD(&copy, source.get(), mode, nullptr), 1);
    RecordPtr holder(copy);
    ASSERT_NE(copy, source.get());
    EXPECT_EQ(memcmp(&copy->row, &source->row, sizeof copy->row), 0);
    EXPECT_EQ(copy->rowPointer, &copy->row);
    EXPECT_STREQ(copy->name, "Source");
    EXPECT_EQ(copy->lineNumber, 31u);
    EXPECT_EQ(copy->recordFlags, RECORD_IAO);
  }
}

TEST_F(AdFamilyTest, ReplacingCopyKeepsTheStoredIdentityAndTakesItsPlace) {
  WriteAds(Profile());
  OpenReadOnly();
  ListPtr list = Read();
  ADRecord* stored = Records(list.get())[0];
  stored->row.rowReference = 12;
  RecordPtr source = NewAd(99, "Other", AD_NETWORK, 9, 8, "New", "Text", RECORD_IAO);
  source->row.rowReference = 77;
  source->lineNumber = 55;

  ADRecord* in_out = stored;
  ASSERT_EQ(MPCopyAD(&in_out, source.get(), 1, list.get()), 1);
  ASSERT_NE(in_out, stored);
  EXPECT_EQ(in_out->row.id, 3u);
  EXPECT_EQ(in_out->row.rowReference, 12u);
  EXPECT_STREQ(in_out->name, "Spring Sale");
  EXPECT_EQ(in_out->lineNumber, 7u);
  EXPECT_EQ(in_out->row.number1, 9u);
  EXPECT_EQ(in_out->row.number2, 8u);
  EXPECT_STREQ(in_out->row.text1, "New");
  EXPECT_STREQ(in_out->row.text2, "Text");
  EXPECT_EQ(in_out->row.flags, AD_NETWORK);
  EXPECT_EQ(in_out->recordFlags, RECORD_IAO);
  EXPECT_EQ(in_out->rowPointer, &in_out->row);
  // The copy sits in the stored record's node; the stored record is freed.
  EXPECT_EQ(list->head->record, in_out);
  EXPECT_EQ(list->count, 3u);
  EXPECT_EQ(Ids(list.get()), (std::vector<uint32_t>{3, 7, 5}));
  EXPECT_TRUE(Errors().empty());
}

TEST_F(AdFamilyTest, PlainCopyOfAStoredRecordAlsoTakesItsPlaceInTheList) {
  WriteAds(Profile());
  OpenReadOnly();
  ListPtr list = Read();
  ADRecord* in_out = Records(list.get())[2];
  RecordPtr source = NewAd(40, "Fresh");
  ASSERT_EQ(MPCopyAD(&in_out, source.get(), 0, list.get()), 1);
  EXPECT_EQ(list->tail->record, in_out);
  EXPECT_EQ(Ids(list.get()), (std::vector<uint32_t>{3, 7, 40}));
  EXPECT_STREQ(in_out->name, "Fresh");
}

TEST_F(AdFamilyTest, CopyInPlaceOfARecordNotInTheListIsReported) {
  WriteAds(Profile());
  OpenReadOnly();
  ListPtr list = Read();
  RecordPtr stranger = NewAd(3, "Spring Sale");
  RecordPtr source = NewAd(3, "x", AD_LOCAL);
  ADRecord* in_out = stranger.get();
  EXPECT_EQ(MPCopyAD(&in_out, source.get(), 1, list.get()), 1);
  RecordPtr copy(in_out);
  EXPECT_EQ(Errors(), std::vector<std::string>{"Cannot copy a node not listed in list"});
  EXPECT_EQ(Ids(list.get()), (std::vector<uint32_t>{3, 7, 5}));
  for (const ADRecord* r : Records(list.get())) EXPECT_NE(r, copy.get());
}

// ---------------------------------------------------------------- put

TEST_F(AdFamilyTest, PutGivesANewRecordTheLargestIdPlusOne) {
  WriteAds(Profile());
  OpenLocked();
  RecordPtr ad =
      NewAd(0, "Summer \"Deal\"", AD_WORKSTATION | AD_NETWORK, 255, 65535, "Wide", "Low");
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  EXPECT_EQ(ad->row.id, 8u);  // 7 is the largest, wherever it stands
  EXPECT_EQ(Ads(), Rewritten(std::string(kLine3) + kLine7 + kLine5 +
                             "8,255,65535,\"Wide\",\"Low\",Y,Y,N,\"Summer ^\"Deal^\"\"\r\n"));
  EXPECT_TRUE(Errors().empty());
  EXPECT_TRUE(TempFiles().empty());
}

// A put reads the section a line at a time instead of into a list; what it
// writes and reports must be what the complete-list put writes for the same
// record, broken lines (which Ads keep with the fields that did read) too.
TEST_F(AdFamilyTest, PutWritesWhatTheCompleteListPutWrites) {
  const std::string file = std::string(kHead) + kBody +
                           "9,x,0,\"a\",\"b\",Y,N,N,\"Bad Number\"\r\n"
                           "11,6,0,\"a\",\"b\",Y,N,X,\"Bad Flag\"\r\n"
                           "12,0,0,\"" +
                           std::string(45, 'x') + "\",b,Y,N,N,\"Long and bare\"\r\n" + kTail;
  struct Case {
    uint32_t id;
    const char* name;
  };
  for (const Case& c : {Case{0, "New"}, Case{0, "old offer"}, Case{5, ""}, Case{12, "Other"},
                        Case{40, ""}, Case{0, ""}}) {
    SCOPED_TRACE(std::string(c.name) + " " + std::to_string(c.id));
    EXPECT_EQ(ExpectPutAsTheCompleteListPut(file, c.id, c.name), 1);
  }
}

// The put reads the file once and copies on from where its records ended;
// the complete-list put passes over the old section again. Files where the
// two passes could part (lines that go on in the next one, a section at the
// very end, twice, or missing, a line too long to copy) must come out the
// same either way, with the same reports.
TEST_F(AdFamilyTest, PutLeavesWhatTheCompleteListPutLeavesWhateverTheSectionHolds) {
  const std::string row = "3,1,20,\"Banner\",\"Top\",Y,N,Y,\"Spring Sale\"";
  const std::string files[] = {
      // A comment that goes on into a record: the pass over the section
      // stops there and copies the rest. (Before a carriage return, a
      // backslash does not continue a comment.)
      std::string(kHead) + "; note \\\n" + row + "\r\n4,0,0,\"\",\"\",Y,N,N,\"Four\"\r\n" + kTail,
      // The same, where the comment goes on into the next header.
      std::string(kHead) + row + "\r\n; note \\\n" + kTail,
      std::string(kHead) + row + "\r\n; note \\\r\n" + kTail,
      // A record that goes on in the next line, a blank after the backslash.
      std::string(kHead) + "3,1,20,\"Banner\", \\ \r\n  \"Top\",Y,N,Y,\"Spring Sale\"\r\n" + kTail,
      // An inactive record that goes on in a comment line.
      std::string(kHead) + ";IAO;3,1,20,\"Banner\",\\\r\n;IAO;\"Top\",Y,N,Y,\"Sale\"\r\n" + kTail,
      // A backslash inside a text, not at a line's end.
      std::string(kHead) + "3,1,20,\"Ban\\ner\",\"Top\",Y,N,Y,\"Spring Sale\"\r\n" + kTail,
      // The section last, its last line without a line end.
      std::string(kHead) + kBody + row,
      std::string(kHead) + kBody + "[Notes]",
      // The section twice: the second stays as it is.
      std::string(kHead) + row + "\r\n" + kTail + "[Ads]\r\n5,0,0,\"\",\"\",N,N,Y,\"Five\"\r\n",
      // No section at all.
      "\n[SourceSafe]\n$Header$\n" + std::string(kTail),
      // A line the rewrite cannot copy whole, before the section and in it.
      std::string(6000, 'h') + "\n" + kHead + row + "\r\n" + kTail,
      std::string(kHead) + row + "\r\n;" + std::string(6000, 'c') + "\r\n" + kTail,
  };
  for (const std::string& file : files) {
    SCOPED_TRACE(file.substr(0, 200));
    ExpectPutAsTheCompleteListPut(file, 0, "New");
  }
}

TEST_F(AdFamilyTest, PutIntoAnEmptySectionStartsAtOne) {
  OpenLocked();
  const std::string fresh = "\n[SourceSafe]\n$Header$\n\n[Ads]\n";
  ASSERT_EQ(Ads(), fresh);
  RecordPtr first = NewAd(0, "One");
  RecordPtr second = NewAd(0, "Two", AD_LOCAL);
  EXPECT_EQ(MPPutAD(first.get()), 1);
  EXPECT_EQ(first->row.id, 1u);
  EXPECT_EQ(Ads(), fresh + "1,0,0,\"\",\"\",N,N,N,\"One\"\r\n");
  EXPECT_EQ(MPPutAD(second.get()), 1);
  EXPECT_EQ(second->row.id, 2u);
  EXPECT_EQ(Ads(), fresh +
                       "1,0,0,\"\",\"\",N,N,N,\"One\"\r\n"
                       "2,0,0,\"\",\"\",N,N,Y,\"Two\"\r\n");
}

TEST_F(AdFamilyTest, PutWithIdZeroAndAStoredNameReplacesThatRecord) {
  WriteAds(Profile());
  OpenLocked();
  RecordPtr ad = NewAd(0, "spring SALE", AD_NETWORK, 4, 44, "Changed", "Too");
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  EXPECT_EQ(ad->row.id, 8u);  // it was given the next id before the search
  // The stored id and name survive; the rest is the new record's.
  EXPECT_EQ(Ads(), Rewritten(std::string("3,4,44,\"Changed\",\"Too\",N,Y,N,\"Spring Sale\"\r\n") +
                             kLine7 + kLine5));
  ListPtr list = Read();
  EXPECT_EQ(Ids(list.get()), (std::vector<uint32_t>{3, 7, 5}));
}

TEST_F(AdFamilyTest, PutWithAStoredIdReplacesItAndKeepsTheStoredName) {
  WriteAds(Profile());
  OpenLocked();
  RecordPtr ad = NewAd(5, "Renamed", AD_WORKSTATION, 6, 7, "x", "y");
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  EXPECT_EQ(Ads(), Rewritten(std::string(kLine3) + kLine7 +
                             "5,6,7,\"x\",\"y\",Y,N,N,\"Say ^\"hi^\"\"\r\n"));
}

TEST_F(AdFamilyTest, PutReplacesTheFirstRecordThatMatchesEitherKey) {
  WriteAds(Profile());
  OpenLocked();
  // Id 5 is the third record, but the first one has the name.
  RecordPtr ad = NewAd(5, "Spring Sale", 0, 9);
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  EXPECT_EQ(Ads(),
            Rewritten(std::string("3,9,0,\"\",\"\",N,N,N,\"Spring Sale\"\r\n") + kLine7 + kLine5));
}

TEST_F(AdFamilyTest, PutTakesTheRecordFlagsOfTheNewRecord) {
  WriteAds(Profile());
  OpenLocked();
  // Replacing the inactive record with an active one drops the marker...
  RecordPtr active = NewAd(7, "Old Offer", AD_NETWORK, 2, 300, "Side", "");
  EXPECT_EQ(MPPutAD(active.get()), 1);
  // ...and a new inactive record is written behind it.
  RecordPtr inactive = NewAd(0, "Dormant", 0, 0, 0, "", "", RECORD_IAO);
  EXPECT_EQ(MPPutAD(inactive.get()), 1);
  EXPECT_EQ(Ads(), Rewritten(std::string(kLine3) + "7,2,300,\"Side\",\"\",N,Y,N,\"Old Offer\"\r\n" +
                             kLine5 + ";IAO;8,0,0,\"\",\"\",N,N,N,\"Dormant\"\r\n"));
  ListPtr list = Read();
  EXPECT_EQ(Records(list.get())[3]->recordFlags, RECORD_IAO);
}

TEST_F(AdFamilyTest, PutWithANewIdAppendsWithThatId) {
  WriteAds(Profile());
  OpenLocked();
  RecordPtr ad = NewAd(20, "Twenty");
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  EXPECT_EQ(Ads(), Rewritten(std::string(kLine3) + kLine7 + kLine5 +
                             "20,0,0,\"\",\"\",N,N,N,\"Twenty\"\r\n"));
}

TEST_F(AdFamilyTest, InactiveRecordsAreWrittenBackBehindTheMarker) {
  WriteAds(Profile());
  OpenLocked();
  RecordPtr ad = NewAd(0, "New");
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  std::string bytes = Ads();
  EXPECT_NE(bytes.find(kLine7), std::string::npos) << bytes;
  ListPtr list = Read();
  EXPECT_EQ(Records(list.get())[1]->recordFlags, RECORD_IAO);
}

TEST_F(AdFamilyTest, PutNeedsALockedProfile) {
  WriteAds(Profile());
  RecordPtr ad = NewAd(0, "New");
  EXPECT_EQ(MPPutAD(ad.get()), 0);  // nothing open
  OpenReadOnly();
  EXPECT_EQ(MPPutAD(ad.get()), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{kNotLocked, kNotLocked}));
  EXPECT_EQ(ad->row.id, 0u);
  EXPECT_EQ(Ads(), Profile());
}

TEST_F(AdFamilyTest, PutWithoutTheAdsFileIsReported) {
  OpenLocked();
  std::filesystem::remove(ads_);
  RecordPtr ad = NewAd(0, "New");
  EXPECT_EQ(MPPutAD(ad.get()), 0);
  EXPECT_EQ(Errors(),
            std::vector<std::string>{"Ad File " + AdPath() + " cannot be found or opened!"});
  EXPECT_FALSE(qvtest::PathExists(ads_));
}

// A checked-in file is read-only; a client that checks it out but leaves it
// so makes the rewrite fail.
class AdFamilyVcsTest : public AdFamilyTest {
 protected:
  // Closing may write files back: the fake client must still be in place.
  ~AdFamilyVcsTest() override { CloseMasterProfile(); }

  void OpenLockedWithVcs() {
    WriteLastProfile(profile_.c_str(), OPEN_MASTER, "Proj");
    ASSERT_EQ(Open(OPEN_MASTER | OPEN_LOCK), 1);
    ASSERT_STREQ(QvOpenProfileProject(), "Proj");
    MakeReadOnly(ads_);
    ss_.AnswerSettingReadOnly("checkout", 0, ads_, true);
    ss_.ClearCalls();
  }
  qvtest::FakeSs ss_;
};

TEST_F(AdFamilyVcsTest, PutReturnsOneEvenWhenTheFileCannotBeWrittenOver) {
  WriteAds(Profile());
  OpenLockedWithVcs();
  RecordPtr ad = NewAd(0, "New");
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  EXPECT_EQ(Errors(), std::vector<std::string>{WriteOverMessage()});
  EXPECT_EQ(Ads(), Profile());
  EXPECT_TRUE(IsReadOnly(ads_));
  EXPECT_EQ(TempFiles().size(), 1u);  // left in place
  // Checked out once: the rewrite found it checked out already.
  EXPECT_EQ(ss_.CommandLines(),
            (std::vector<std::string>{"ss cp \\Proj\\ADS", "ss checkout adlist.ad"}));
  for (const qvtest::ShownBox& box : host_.boxes()) EXPECT_EQ(box.kind, QV_BOX_ERROR);
}

TEST_F(AdFamilyVcsTest, WriteListFailsWhenTheFileCannotBeWrittenOver) {
  WriteAds(Profile());
  OpenLockedWithVcs();
  ListPtr list = Read(MODE_UPDATE);
  EXPECT_EQ(MPWriteADList(list.get()), 0);
  EXPECT_EQ(Errors(), std::vector<std::string>{WriteOverMessage()});
  EXPECT_EQ(Ads(), Profile());
}

TEST_F(AdFamilyVcsTest, PutCompleteListReturnsOneWhenTheFileCannotBeWrittenOver) {
  WriteAds(Profile());
  OpenLockedWithVcs();
  ADList* given = nullptr;
  MPNewADList(&given);
  ListPtr holder(given);
  MPAppendAD(given, NewAd(0, "New").release());
  EXPECT_EQ(MPPutADCompleteList(given), 1);
  EXPECT_EQ(Errors(), std::vector<std::string>{WriteOverMessage()});
  EXPECT_EQ(Ads(), Profile());
}

// ---------------------------------------------------------------- complete list

TEST_F(AdFamilyTest, PutCompleteListWithAnEmptyListRewritesTheFileUnchanged) {
  const std::string written = Rewritten(std::string(kLine3) + kLine7 + kLine5);
  WriteAds(written);
  OpenLocked();
  ADList* empty = nullptr;
  ASSERT_EQ(MPNewADList(&empty), 1);
  ListPtr holder(empty);
  EXPECT_EQ(MPPutADCompleteList(empty), 1);
  EXPECT_EQ(Ads(), written);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(AdFamilyTest, RewriteDropsTheCommentsAndBlankLinesOfTheSectionOnly) {
  WriteAds(Profile());
  OpenLocked();
  ADList* empty = nullptr;
  ASSERT_EQ(MPNewADList(&empty), 1);
  ListPtr holder(empty);
  EXPECT_EQ(MPPutADCompleteList(empty), 1);
  EXPECT_EQ(Ads(), Rewritten(std::string(kLine3) + kLine7 + kLine5));
}

TEST_F(AdFamilyTest, PutCompleteListMergesByIdAndName) {
  WriteAds(Profile());
  OpenLocked();
  ADList* given = nullptr;
  ASSERT_EQ(MPNewADList(&given), 1);
  ListPtr holder(given);
  ADRecord* fresh = NewAd(0, "Fresh", AD_LOCAL).release();
  ADRecord* by_id = NewAd(7, "Ignored Name", AD_WORKSTATION, 1, 1, "by", "id").release();
  ADRecord* by_name = NewAd(0, "SAY \"HI\"", AD_NETWORK, 2, 2, "by", "name").release();
  ADRecord* fresh2 = NewAd(0, "Fresh Too").release();
  for (ADRecord* r : {fresh, by_id, by_name, fresh2}) ASSERT_EQ(MPAppendAD(given, r), 1);

  EXPECT_EQ(MPPutADCompleteList(given), 1);
  // Ids 0 got 8, 9 and 10 in list order (7 is the largest over both lists).
  EXPECT_EQ(fresh->row.id, 8u);
  EXPECT_EQ(by_name->row.id, 9u);
  EXPECT_EQ(fresh2->row.id, 10u);
  // The given list keeps its own records.
  EXPECT_EQ(Records(given), (std::vector<ADRecord*>{fresh, by_id, by_name, fresh2}));
  EXPECT_STREQ(by_id->name, "Ignored Name");
  EXPECT_EQ(Ads(),
            Rewritten(std::string(kLine3) + "7,1,1,\"by\",\"id\",Y,N,N,\"Old Offer\"\r\n"
                                            "5,2,2,\"by\",\"name\",N,Y,N,\"Say ^\"hi^\"\"\r\n"
                                            "8,0,0,\"\",\"\",N,N,Y,\"Fresh\"\r\n"
                                            "10,0,0,\"\",\"\",N,N,N,\"Fresh Too\"\r\n"));
  EXPECT_TRUE(Errors().empty());
}

TEST_F(AdFamilyTest, PutCompleteListSearchesOnFromThePreviousMatch) {
  // Two stored records share id 1 (a hand-edited file).
  WriteAds(
      "[Ads]\n"
      "1,0,0,\"\",\"\",N,N,N,\"A\"\n"
      "2,0,0,\"\",\"\",N,N,N,\"B\"\n"
      "1,0,0,\"\",\"\",N,N,N,\"A again\"\n");
  OpenLocked();
  ADList* given = nullptr;
  ASSERT_EQ(MPNewADList(&given), 1);
  ListPtr holder(given);
  MPAppendAD(given, NewAd(1, "x", 0, 11).release());
  MPAppendAD(given, NewAd(1, "y", 0, 12).release());
  EXPECT_EQ(MPPutADCompleteList(given), 1);
  // The second record matched the stored record after the first match.
  EXPECT_EQ(Ads(),
            "[Ads]\n"
            "1,11,0,\"\",\"\",N,N,N,\"A\"\r\n"
            "2,0,0,\"\",\"\",N,N,N,\"B\"\r\n"
            "1,12,0,\"\",\"\",N,N,N,\"A again\"\r\n");
}

TEST_F(AdFamilyTest, PutCompleteListSearchesFromTheStartWhenNothingFollows) {
  WriteAds(Rewritten(std::string(kLine3) + kLine7 + kLine5));
  OpenLocked();
  ADList* given = nullptr;
  ASSERT_EQ(MPNewADList(&given), 1);
  ListPtr holder(given);
  MPAppendAD(given, NewAd(5, "", 0, 50).release());  // the last stored record
  MPAppendAD(given, NewAd(3, "", 0, 30).release());  // found from the start again
  EXPECT_EQ(MPPutADCompleteList(given), 1);
  EXPECT_EQ(Ads(), Rewritten("3,30,0,\"\",\"\",N,N,N,\"Spring Sale\"\r\n" + std::string(kLine7) +
                             "5,50,0,\"\",\"\",N,N,N,\"Say ^\"hi^\"\"\r\n"));
}

TEST_F(AdFamilyTest, PutCompleteListGoesOnWhenNotLocked) {
  WriteAds(Profile());
  OpenReadOnly();
  ADList* given = nullptr;
  ASSERT_EQ(MPNewADList(&given), 1);
  ListPtr holder(given);
  MPAppendAD(given, NewAd(0, "New").release());
  // Reported by the put, which goes on, and again by the rewrite, which stops.
  EXPECT_EQ(MPPutADCompleteList(given), 1);
  EXPECT_EQ(Errors(), (std::vector<std::string>{kNotLocked, kNotLocked}));
  EXPECT_EQ(Records(given)[0]->row.id, 8u);
  EXPECT_EQ(Ads(), Profile());
}

TEST_F(AdFamilyTest, PutCompleteListWithoutAProfileEndsAfterTheRead) {
  ADList* given = nullptr;
  ASSERT_EQ(MPNewADList(&given), 1);
  ListPtr holder(given);
  EXPECT_EQ(MPPutADCompleteList(given), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{kNotLocked, kNotOpen}));
}

// ---------------------------------------------------------------- write

TEST_F(AdFamilyTest, WriteListWritesTheListInItsOrder) {
  WriteAds(Profile());
  OpenLocked();
  ADList* list = nullptr;
  ASSERT_EQ(MPNewADList(&list), 1);
  ListPtr holder(list);
  MPAppendAD(list,
             NewAd(9, "Last, \"quoted\"", AD_LOCAL | AD_NETWORK, 1, 2, "c,d", "^b").release());
  MPAppendAD(list, NewAd(2, "Gone", AD_WORKSTATION, 0, 0, "", "", RECORD_IAO).release());
  EXPECT_EQ(MPWriteADList(list), 1);
  EXPECT_EQ(Ads(), Rewritten("9,1,2,\"c,d\",\"^b\",N,Y,Y,\"Last, ^\"quoted^\"\"\r\n"
                             ";IAO;2,0,0,\"\",\"\",Y,N,N,\"Gone\"\r\n"));
  // What was written reads back as it was.
  ListPtr back = Read();
  std::vector<ADRecord*> r = Records(back.get());
  ASSERT_EQ(r.size(), 2u);
  EXPECT_STREQ(r[0]->name, "Last, \"quoted\"");
  EXPECT_STREQ(r[0]->row.text1, "c,d");
  EXPECT_STREQ(r[0]->row.text2, "^b");  // a caret stays unless a quote follows
  EXPECT_EQ(r[1]->recordFlags, RECORD_IAO);
}

TEST_F(AdFamilyTest, WriteListNeedsALockedProfile) {
  WriteAds(Profile());
  OpenReadOnly();
  ListPtr list = Read();
  EXPECT_EQ(MPWriteADList(list.get()), 0);
  EXPECT_EQ(Errors(), std::vector<std::string>{kNotLocked});
  EXPECT_EQ(Ads(), Profile());
}

TEST_F(AdFamilyTest, WriteListWithoutTheAdsFileIsReported) {
  OpenLocked();
  std::filesystem::remove(ads_);
  ADList* list = nullptr;
  ASSERT_EQ(MPNewADList(&list), 1);
  ListPtr holder(list);
  EXPECT_EQ(MPWriteADList(list), 0);
  EXPECT_EQ(Errors(),
            std::vector<std::string>{"Ad File " + AdPath() + " cannot be found or opened!"});
  EXPECT_FALSE(qvtest::PathExists(ads_));
}

// ---------------------------------------------------------------- delete

TEST_F(AdFamilyTest, DeleteRemovesEveryRecordWithTheId) {
  WriteAds(Rewritten(std::string(kLine5) + kLine3 + kLine7 + kLine5));
  OpenLocked();
  EXPECT_EQ(MPDeleteAD(5), 1);
  EXPECT_EQ(Ads(), Rewritten(std::string(kLine3) + kLine7));
  EXPECT_EQ(MPDeleteAD(7), 1);
  EXPECT_EQ(Ads(), Rewritten(kLine3));
  EXPECT_EQ(MPDeleteAD(3), 1);
  EXPECT_EQ(Ads(), Rewritten(""));
  EXPECT_TRUE(Errors().empty());
}

TEST_F(AdFamilyTest, DeleteOfAnAbsentIdReturnsZeroSilently) {
  WriteAds(Profile());
  MakeReadOnly(ads_);
  OpenLocked();
  EXPECT_EQ(MPDeleteAD(42), 0);
  EXPECT_TRUE(Errors().empty());
  EXPECT_EQ(Ads(), Profile());
  EXPECT_TRUE(IsReadOnly(ads_));  // looked up without a check-out
}

TEST_F(AdFamilyTest, DeleteNeedsALockedProfile) {
  WriteAds(Profile());
  EXPECT_EQ(MPDeleteAD(3), 0);
  OpenReadOnly();
  EXPECT_EQ(MPDeleteAD(3), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{kNotLocked, kNotLocked}));
  EXPECT_EQ(Ads(), Profile());
}

TEST_F(AdFamilyTest, UpdateReferencesAlwaysSucceeds) {
  WriteAds(Profile());
  OpenLocked();
  EXPECT_EQ(MPUpdateADReferences(3, 0x80000000u, 0), 1);
  EXPECT_EQ(MPUpdateADReferences(3, 0x20000000u, 4), 1);
  EXPECT_EQ(MPUpdateADReferences(3, 0, 0), 1);
  EXPECT_TRUE(Errors().empty());
  EXPECT_EQ(Ads(), Profile());
}

// ---------------------------------------------------------------- the rest

TEST_F(AdFamilyTest, FlagNamesDescribeBitsOneToThree) {
  ADFlagNames* table = nullptr;
  ASSERT_EQ(MPGetADFlagNames(&table), 1);
  ASSERT_NE(table, nullptr);
  EXPECT_STREQ(table->kindLabel, "Ad");
  EXPECT_EQ(table->flagMask, 14u);
  for (int entry = 1; entry <= 32; ++entry) {
    const char* name = table->bitNames[entry - 1];
    switch (entry) {
      case 29:
        EXPECT_STREQ(name, "Participates in Local install");
        break;
      case 30:
        EXPECT_STREQ(name, "Participates in Network install");
        break;
      case 31:
        EXPECT_STREQ(name, "Participates in Workstation install");
        break;
      default:
        EXPECT_STREQ(name, "") << "entry " << entry;
    }
  }
  MPFreeFlagNames(table);
}

TEST_F(AdFamilyTest, NewRecordIsZeroedButForItsRowPointer) {
  ADRecord* record = nullptr;
  ASSERT_EQ(MPNewAD(&record), 1);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(record->rowPointer, &record->row);
  ADRecord zero;
  memset(&zero, 0, sizeof zero);
  zero.rowPointer = &record->row;
  EXPECT_EQ(memcmp(record, &zero, sizeof zero), 0);
  EXPECT_EQ(MPReleaseAD(&record), 1);
  EXPECT_EQ(record, nullptr);
  EXPECT_EQ(MPFreeAD(NewAd(1, "x").release()), 1);
}

TEST_F(AdFamilyTest, ListOperationsOfTheKind) {
  ADList* list = nullptr;
  ASSERT_EQ(MPNewADList(&list), 1);
  ListPtr holder(list);
  ADRecord* a = NewAd(1, "a").release();
  ADRecord* b = NewAd(2, "b").release();
  ADRecord* c = NewAd(3, "c").release();
  ADRecord* d = NewAd(4, "d").release();
  ASSERT_EQ(MPAppendAD(list, a), 1);
  ASSERT_EQ(MPAddADAt(list, 1, b), 1);
  ASSERT_EQ(MPInsertADAfter(list, 2, c), 1);
  EXPECT_EQ(Ids(list), (std::vector<uint32_t>{2, 1, 3}));
  RecordPtr stray = NewAd(9, "stray");
  EXPECT_EQ(MPAddADAt(list, 0, stray.get()), 0);
  EXPECT_EQ(MPAddADAt(list, 5, stray.get()), 0);
  ASSERT_EQ(MPSetADNode(list, 2, d), 1);  // frees a
  EXPECT_EQ(Ids(list), (std::vector<uint32_t>{2, 4, 3}));
  ASSERT_EQ(MPRemoveADNode(list, b), 1);
  MPFreeAD(b);
  ASSERT_EQ(MPDeleteADNode(list, 2), 1);  // the node of c, not c
  MPFreeAD(c);
  EXPECT_EQ(Ids(list), (std::vector<uint32_t>{4}));
  EXPECT_EQ(MPClearADList(list), 1);
  EXPECT_EQ(list->count, 0u);
  EXPECT_EQ(MPFreeADList(nullptr), 1);
  EXPECT_EQ(Errors(),
            (std::vector<std::string>{"To use MPAddAt, mpindex must be greater than zero.",
                                      "Index exceeds possible itemcount."}));
}

// ---------------------------------------------------------------- Orvik

class AdOrvikTest : public AdFamilyTest {
 protected:
  AdOrvikTest() { database_ = host_.scratch().Join("shipping.orv"); }

  // A database file; with_table adds the table AD with two rows.
  void MakeDatabase(bool with_table) {
    // Opening reads the locations, so every Orvik profile has their table.
    std::string sql = qv::OrvikTableDefinition(qv::LoSchema()) + ";";
    if (with_table) {
      sql += qv::OrvikTableDefinition(*qv::AdKindApi().schema) + ";";
      sql +=
          "INSERT INTO \"AD\" (id, number1, number2, text1, text2, flags, rowReference) "
          "VALUES (4, 1, 500, 'Orvik', 'Row', 6, 44);"
          "INSERT INTO \"AD\" (id, number1, number2, text1, text2, flags, rowReference) "
          "VALUES (2, 0, 0, '', 'Second', 8, 0);";
    }
    qvtest::MakeDatabase(database_, sql);
  }

  void OpenOrvik(bool locked) {
    ASSERT_EQ(qvtest::OpenProfileAt(database_, OPEN_ORVIK | OPEN_NO_VCS | (locked ? OPEN_LOCK : 0)),
              1);
  }

  std::string database_;
};

TEST_F(AdOrvikTest, ListsTheRowsOfTableAD) {
  MakeDatabase(true);
  OpenOrvik(false);
  ListPtr list = Read();
  std::vector<ADRecord*> r = Records(list.get());
  ASSERT_EQ(r.size(), 2u);
  EXPECT_EQ(r[0]->row.id, 4u);
  EXPECT_EQ(r[0]->row.number1, 1u);
  EXPECT_EQ(r[0]->row.number2, 500u);
  EXPECT_STREQ(r[0]->row.text1, "Orvik");
  EXPECT_STREQ(r[0]->row.text2, "Row");
  EXPECT_EQ(r[0]->row.flags, AD_NETWORK | AD_WORKSTATION);
  EXPECT_EQ(r[0]->row.rowReference, 44u);
  EXPECT_EQ(r[0]->rowPointer, &r[0]->row);
  EXPECT_STREQ(r[0]->name, "");
  EXPECT_EQ(r[1]->row.id, 2u);
  EXPECT_EQ(r[1]->row.flags, AD_LOCAL);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(AdOrvikTest, WithoutTheTableTheQueryCannotBegin) {
  MakeDatabase(false);
  OpenOrvik(false);
  ADList* list = nullptr;
  EXPECT_EQ(MPGetADCompleteList(&list, MODE_READ), 0);
  ListPtr holder(list);
  ASSERT_NE(list, nullptr);  // the empty list stays with the caller
  EXPECT_EQ(list->count, 0u);
  EXPECT_EQ(Errors(), std::vector<std::string>{"Cannot begin to Query Orvik Database for Ads"});
}

TEST_F(AdOrvikTest, GetReturnsZeroSilently) {
  MakeDatabase(true);
  OpenOrvik(false);
  ADRecord* out = nullptr;
  EXPECT_EQ(MPGetAD(4, &out), 0);
  EXPECT_EQ(out, nullptr);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(AdOrvikTest, GetAfterTheProfileClosedReportsThatNoneIsOpen) {
  MakeDatabase(true);
  OpenOrvik(false);
  CloseMasterProfile();
  ADRecord* out = nullptr;
  EXPECT_EQ(MPGetAD(4, &out), 0);
  EXPECT_EQ(Errors(), std::vector<std::string>{kNotOpen});
}

TEST_F(AdOrvikTest, WritingIsNotImplemented) {
  MakeDatabase(true);
  OpenOrvik(true);
  ListPtr list = Read();
  EXPECT_EQ(MPWriteADList(list.get()), 0);
  EXPECT_EQ(Errors(), std::vector<std::string>{"ADs not implemented in QUORVEX for Orvik"});
  // A put reads the rows, and its rewrite is refused the same way.
  host_.Clear();
  RecordPtr ad = NewAd(0, "New");
  EXPECT_EQ(MPPutAD(ad.get()), 1);
  EXPECT_EQ(ad->row.id, 5u);
  EXPECT_EQ(Errors(), std::vector<std::string>{"ADs not implemented in QUORVEX for Orvik"});
  EXPECT_EQ(Ids(Read().get()), (std::vector<uint32_t>{4, 2}));
}

TEST_F(AdOrvikTest, DeletingIsNotImplemented) {
  MakeDatabase(true);
  OpenOrvik(true);
  EXPECT_EQ(MPDeleteAD(4), 0);
  EXPECT_EQ(Errors(), std::vector<std::string>{
                          "Cannot delete AD record from Orvik shipping profile(not implemented in "
                          "TARROWBY.)"});
  EXPECT_EQ(Ids(Read().get()), (std::vector<uint32_t>{4, 2}));
}

TEST_F(AdOrvikTest, ChangesNeedALockedProfile) {
  MakeDatabase(true);
  OpenOrvik(false);
  ListPtr list = Read();
  EXPECT_EQ(MPWriteADList(list.get()), 0);
  EXPECT_EQ(MPDeleteAD(4), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{kNotLocked, kNotLocked}));
}

}  // namespace
