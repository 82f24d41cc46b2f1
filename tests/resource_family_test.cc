// Resources: reading a language's texts from "<profile>\RES_US\pelham<code>.re",
// the generated names and their counter, putting, merging, deleting and
// matching texts, and the bytes the file holds after each write.
#include "records/resource_family.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "core/state.h"
#include "quorvex/quorvex.h"
#include "records/location_family.h"
#include "records/orvik_rows.h"
#include "support/list_view.h"
#include "support/profiles.h"
#include "support/run_tool.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::ReadFileBytes;
using qvtest::WriteFileBytes;

constexpr char kNotOpen[] = "It appears that you have not run OpenMasterProfile successfully!";
constexpr char kNotLocked[] =
    "It appears that you have not locked the Master Profile successfully!";

constexpr char kHeader[] = "\n[SourceSafe]\n$Header$\n\n[Resources]\n";

// A resource file as people keep it: a comment before the section, an
// inactive text, a comment and a blank line inside it, and a section
// after it.
constexpr char kHead[] =
    "\n"
    "[SourceSafe]\n"
    "$Header: /Profile/RES_US/pelhamUS.re 7 $\n"
    "\n"
    "; texts of the US installer\n"
    "[Resources]\r\n";
constexpr char kBody[] =
    "\"IDS_WELCOME\",\"Welcome to Pelham.\",101,\"First page\"\r\n"
    "; dropped with the section\r\n"
    ";IAO;\"IDS_OLD\",\"Pelham 3.0\",105,\r\n"
    "\r\n"
    "  \"MP_GEN_0001_00000000041\" , \"Text Editor\" , , \"Module name\"\r\n"
    "\"IDS_QUOTE\",\"Say ^\"hi^\"\",7\r\n";
constexpr char kTail[] =
    "[Notes]\n"
    "; kept: outside the section\n"
    "\"free text\"\n";

// The four texts as the writer writes them.
constexpr char kWelcome[] = "\"IDS_WELCOME\",\"Welcome to Pelham.\",101,\"First page\"\r\n";
constexpr char kOld[] = ";IAO;\"IDS_OLD\",\"Pelham 3.0\",105,\r\n";
constexpr char kEditor[] = "\"MP_GEN_0001_00000000041\",\"Text Editor\",,\"Module name\"\r\n";
constexpr char kQuote[] = "\"IDS_QUOTE\",\"Say ^\"hi^\"\",7,\r\n";

using ListPtr = qvtest::Owned<ResourceList, MPFreeResourceList>;
using RecordPtr = qvtest::Owned<ResourceRecord, MPFreeResource>;

std::vector<ResourceRecord*> Records(const ResourceList* list) {
  return qvtest::RecordsOf<ResourceRecord>(list);
}

std::vector<std::string> Names(const ResourceList* list) {
  std::vector<std::string> names;
  for (const ResourceRecord* r : Records(list)) names.push_back(r->ResourceName);
  return names;
}

RecordPtr NewText(const char* language, const char* name, const char* text, int32_t number = 0,
                  const char* note = "") {
  ResourceRecord* record = nullptr;
  EXPECT_EQ(MPNewResource(&record), 1);
  snprintf(record->LanguageCode, sizeof record->LanguageCode, "%s", language);
  snprintf(record->ResourceName, sizeof record->ResourceName, "%s", name);
  snprintf(record->Text, sizeof record->Text, "%s", text);
  record->ResourceNumber = number;
  snprintf(record->Note, sizeof record->Note, "%s", note);
  return RecordPtr(record);
}

class ResourceFamilyTest : public ::testing::Test {
 protected:
  ResourceFamilyTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
  }

  int Open(uint32_t flags) { return qvtest::OpenProfileAt(profile_, flags); }
  void OpenLocked() { ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK), 1); }
  void OpenReadOnly() { ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS), 1); }

  std::string FileOf(const std::string& language) const {
    return profile_ + "/RES_US/pelham" + language + ".re";
  }
  // The path the engine names a missing file by.
  std::string EnginePath(const std::string& language) const {
    return profile_ + "\\RES_US\\pelham" + language + ".re";
  }
  void WriteTexts(const std::string& language, const std::string& bytes) {
    WriteFileBytes(FileOf(language), bytes);
  }
  std::string Texts(const std::string& language) const { return ReadFileBytes(FileOf(language)); }

  ListPtr Read(const char* language) {
    ResourceList* list = nullptr;
    EXPECT_EQ(MPGetResourceCompleteList(language, &list), 1);
    return ListPtr(list);
  }

  std::string Generated(uint32_t number) const {
    char name[64];
    snprintf(name, sizeof name, "MP_GEN_%s%011u", QvGeneratedNamePrefix(), number);
    return name;
  }

  std::vector<std::string> Errors() const { return host_.errors(); }

  qvtest::ScriptedHost host_;
  std::string profile_;
};

// ---------------------------------------------------------------- reading

TEST_F(ResourceFamilyTest, ReadsTheTextsOfTheLanguageInFileOrder) {
  WriteTexts("US", std::string(kHead) + kBody + kTail);
  OpenReadOnly();
  ListPtr list = Read("US");
  std::vector<ResourceRecord*> r = Records(list.get());
  ASSERT_EQ(r.size(), 4u);
  EXPECT_STREQ(r[0]->LanguageCode, "US");
  EXPECT_STREQ(r[0]->ResourceName, "IDS_WELCOME");
  EXPECT_STREQ(r[0]->Text, "Welcome to Pelham.");
  EXPECT_EQ(r[0]->ResourceNumber, 101);
  EXPECT_STREQ(r[0]->Note, "First page");
  EXPECT_EQ(r[0]->recordFlags, 0u);
  EXPECT_EQ(r[0]->lineNumber, 7u);

  EXPECT_STREQ(r[1]->ResourceName, "IDS_OLD");
  EXPECT_EQ(r[1]->recordFlags, RECORD_IAO);
  EXPECT_STREQ(r[1]->Note, "");

  EXPECT_STREQ(r[2]->ResourceName, "MP_GEN_0001_00000000041");
  EXPECT_STREQ(r[2]->Text, "Text Editor");
  EXPECT_EQ(r[2]->ResourceNumber, 0);  // an empty number
  EXPECT_STREQ(r[2]->Note, "Module name");

  EXPECT_STREQ(r[3]->Text, "Say \"hi\"");
  EXPECT_EQ(r[3]->ResourceNumber, 7);
  EXPECT_STREQ(r[3]->Note, "");  // a line without the note
  for (ResourceRecord* record : r) EXPECT_STREQ(record->LanguageCode, "US");
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceFamilyTest, ALanguageWithoutAFileReadsAsAnEmptyList) {
  OpenReadOnly();
  ListPtr list = Read("DE");
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count, 0u);
  EXPECT_TRUE(Errors().empty());
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(ResourceFamilyTest, AFileWithoutTheSectionReadsAsAnEmptyList) {
  WriteTexts("US", "\n[SourceSafe]\n$Header$\n\n[Other]\n\"A\",\"B\"\n");
  OpenReadOnly();
  ListPtr list = Read("US");
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(list->count, 0u);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceFamilyTest, TheFileIsFoundWhateverTheCaseOfItsName) {
  WriteFileBytes(profile_ + "/RES_US/PELHAMUS.RE", std::string(kHeader) + kWelcome);
  OpenReadOnly();
  EXPECT_EQ(Names(Read("US").get()), std::vector<std::string>{"IDS_WELCOME"});
}

TEST_F(ResourceFamilyTest, ReadingActiveOnlySkipsInactiveTexts) {
  WriteTexts("US", std::string(kHead) + kBody + kTail);
  ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS | OPEN_READ_ACTIVE_ONLY), 1);
  EXPECT_EQ(Names(Read("US").get()),
            (std::vector<std::string>{"IDS_WELCOME", "MP_GEN_0001_00000000041", "IDS_QUOTE"}));
}

TEST_F(ResourceFamilyTest, ABrokenLineFailsTheReadWithItsLine) {
  const std::string texts = std::string(kHeader) + "\"IDS_A\",Text,1\r\n" + kWelcome;
  WriteTexts("US", texts);
  OpenLocked();
  ResourceList* list = nullptr;
  EXPECT_EQ(MPGetResourceCompleteList("US", &list), 0);
  MPFreeResourceList(list);
  ASSERT_EQ(Errors().size(), 1u);
  EXPECT_NE(Errors()[0].find("Line #6"), std::string::npos);
  EXPECT_NE(Errors()[0].find("Bad string constant: must begin with double quote"),
            std::string::npos);
  // Nothing read from the broken file is written back over it.
  ResourceRecord* record = NewText("US", "IDS_NEW", "new").release();
  EXPECT_EQ(MPPutResource(record), 0);
  MPFreeResource(record);
  CloseMasterProfile();
  EXPECT_EQ(Texts("US"), texts);
}

TEST_F(ResourceFamilyTest, ReadingNeedsAnOpenProfile) {
  ResourceList* list = reinterpret_cast<ResourceList*>(1);
  EXPECT_EQ(MPGetResourceCompleteList("US", &list), 0);
  EXPECT_EQ(list, nullptr);
  ResourceRecord* record = reinterpret_cast<ResourceRecord*>(1);
  EXPECT_EQ(MPGetResource("US", "IDS_A", &record), 0);
  EXPECT_EQ(record, nullptr);
  EXPECT_EQ(Errors(), (std::vector<std::string>{kNotOpen, kNotOpen}));
}

TEST_F(ResourceFamilyTest, GetFindsATextByItsExactName) {
  WriteTexts("US", std::string(kHead) + kBody + kTail);
  OpenReadOnly();
  ResourceRecord* found = nullptr;
  ASSERT_EQ(MPGetResource("US", "IDS_QUOTE", &found), 1);
  RecordPtr holder(found);
  EXPECT_STREQ(found->Text, "Say \"hi\"");
  EXPECT_STREQ(found->LanguageCode, "US");
  ResourceRecord* none = nullptr;
  EXPECT_EQ(MPGetResource("US", "ids_quote", &none), 0);  // names keep their case
  EXPECT_EQ(MPGetResource("DE", "IDS_QUOTE", &none), 0);
  EXPECT_EQ(none, nullptr);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceFamilyTest, FindNodeWalksByNameOrTakesTheNext) {
  WriteTexts("US", std::string(kHead) + kBody + kTail);
  OpenReadOnly();
  ListPtr list = Read("US");
  ResourceRecord* found = nullptr;
  list->current = nullptr;
  EXPECT_EQ(MPFindResourceNode("IDS_QUOTE", list.get(), &found), 1);
  EXPECT_STREQ(found->ResourceName, "IDS_QUOTE");
  EXPECT_EQ(MPFindResourceNode("IDS_QUOTE", list.get(), &found), 0);
  EXPECT_EQ(found, nullptr);
  std::vector<std::string> walked;
  while (MPFindResourceNode("", list.get(), &found)) walked.push_back(found->ResourceName);
  EXPECT_EQ(walked, Names(list.get()));
}

TEST_F(ResourceFamilyTest, FlagNamesDescribeNoBits) {
  ResourceFlagNames* table = nullptr;
  ASSERT_EQ(MPGetResourceFlagNames(&table), 1);
  ASSERT_NE(table, nullptr);
  EXPECT_STREQ(table->kindLabel, "Resource");
  EXPECT_EQ(table->flagMask, 0u);
  for (auto& name : table->bitNames) EXPECT_STREQ(name, "");
  MPFreeFlagNames(table);
}

// ---------------------------------------------------------------- generated names

TEST_F(ResourceFamilyTest, AfterReadingGeneratedNameFortyOneTheNextNameInAnyLanguageUses42) {
  WriteTexts("US", std::string(kHeader) + kEditor);
  WriteTexts("DE", kHeader);
  OpenLocked();
  Read("US");
  RecordPtr text = NewText("DE", "", "Neu");
  ASSERT_EQ(MPPutResource(text.get()), 1);
  EXPECT_EQ(std::string(text->ResourceName), Generated(42));
  EXPECT_EQ(strlen(text->ResourceName), 23u);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceFamilyTest, GeneratedNamesHaveThePrefixAndElevenDigits) {
  WriteTexts("US", kHeader);
  OpenLocked();
  RecordPtr text = NewText("US", "", "First");
  ASSERT_EQ(MPPutResource(text.get()), 1);
  std::string name = text->ResourceName;
  EXPECT_EQ(name.size(), 23u);
  EXPECT_EQ(name.substr(0, 7), "MP_GEN_");
  EXPECT_EQ(name.substr(7, 5), QvGeneratedNamePrefix());
  EXPECT_EQ(name.substr(12), "00000000000");
}

TEST_F(ResourceFamilyTest, TheCounterRisesAboveANumberItIsNotAbove) {
  OpenReadOnly();
  qv::State().resource_counter = 0;
  WriteTexts("US", std::string(kHeader) + kEditor);  // 41
  Read("US");
  EXPECT_EQ(qv::State().resource_counter, 42u);
  // Equal to a number read: not above it, so raised past it.
  WriteTexts("DE", std::string(kHeader) + "\"MP_GEN_0001_00000000042\",\"x\"\r\n");
  Read("DE");
  EXPECT_EQ(qv::State().resource_counter, 43u);
  // Never lowered, whatever a file holds.
  WriteTexts("FR", std::string(kHeader) + "\"MP_GEN_0001_00000000007\",\"x\"\r\n");
  Read("FR");
  EXPECT_EQ(qv::State().resource_counter, 43u);
}

TEST_F(ResourceFamilyTest, AnyPrefixCountsAndTheNumberStandsAtPositionTwelve) {
  OpenReadOnly();
  qv::State().resource_counter = 0;
  WriteTexts("US", std::string(kHeader) +
                       "\"MP_GEN_9876_00000000100\",\"other prefix\"\r\n"
                       "\"XMP_GEN_0001_00000000500\",\"prefix inside\"\r\n"
                       "\"IDS_00000000000000900\",\"no prefix\"\r\n");
  Read("US");
  // "XMP_GEN_0001_00000000500" holds "_00000000500" at position 12: no
  // number to pass.
  EXPECT_EQ(qv::State().resource_counter, 101u);
}

TEST_F(ResourceFamilyTest, TwoWritesInOneOpenProfileNeverMakeTheSameName) {
  WriteTexts("US", std::string(kHeader) + kEditor);
  WriteTexts("DE", kHeader);
  OpenLocked();
  std::set<std::string> names;
  RecordPtr a = NewText("US", "", "a");
  ASSERT_EQ(MPPutResource(a.get()), 1);
  names.insert(a->ResourceName);

  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("DE", "", "b").release());
  MPAppendResource(list, NewText("DE", "", "c").release());
  ASSERT_EQ(MPPutResourceCompleteList(list), 1);
  for (const std::string& name : Names(list)) names.insert(name);

  RecordPtr d = NewText("DE", "", "d");
  ASSERT_EQ(MPPutResource(d.get()), 1);
  names.insert(d->ResourceName);
  RecordPtr e = NewText("US", "", "e");
  ASSERT_EQ(MPPutResource(e.get()), 1);
  names.insert(e->ResourceName);

  EXPECT_EQ(names.size(), 5u);
  EXPECT_EQ(names, (std::set<std::string>{Generated(42), Generated(43), Generated(44),
                                          Generated(45), Generated(46)}));
  ASSERT_EQ(CloseMasterProfile(), 1);
  // What the files hold agrees.
  EXPECT_NE(Texts("US").find(Generated(42)), std::string::npos);
  EXPECT_NE(Texts("US").find(Generated(46)), std::string::npos);
  EXPECT_NE(Texts("DE").find(Generated(43)), std::string::npos);
  EXPECT_NE(Texts("DE").find(Generated(45)), std::string::npos);
}

TEST_F(ResourceFamilyTest, NamesBroughtByTheListDoNotRaiseTheCounter) {
  // Only names read from the resource files move the counter.
  WriteTexts("US", std::string(kHeader) + "\"MP_GEN_0001_00000000041\",\"old\",,\r\n");
  OpenLocked();
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("US", "", "new").release());
  MPAppendResource(list, NewText("US", "MP_GEN_0002_00000000077", "from elsewhere").release());
  ASSERT_EQ(MPPutResourceCompleteList(list), 1);
  EXPECT_EQ(Names(list), (std::vector<std::string>{Generated(42), "MP_GEN_0002_00000000077"}));
}

// ---------------------------------------------------------------- writing

TEST_F(ResourceFamilyTest, PutCompleteListMergesAndKeepsEveryOtherByte) {
  WriteTexts("US", std::string(kHead) + kBody + kTail);
  OpenLocked();
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("US", "IDS_QUOTE", "Say \"bye\"", 8, "changed").release());
  MPAppendResource(list, NewText("US", "IDS_NEW", "Brand new", 0, "").release());
  ASSERT_EQ(MPPutResourceCompleteList(list), 1);
  EXPECT_EQ(Texts("US"), std::string(kHead) + kWelcome + kOld + kEditor +
                             "\"IDS_QUOTE\",\"Say ^\"bye^\"\",8,\"changed\"\r\n"
                             "\"IDS_NEW\",\"Brand new\",,\r\n" +
                             kTail);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceFamilyTest, PutCompleteListOfWhatWasReadRewritesTheSectionAsWritten) {
  WriteTexts("US", std::string(kHead) + kBody + kTail);
  OpenLocked();
  ListPtr list = Read("US");
  ASSERT_EQ(MPPutResourceCompleteList(list.get()), 1);
  // The comment and the blank line of the section go; the rest stays.
  const std::string written = std::string(kHead) + kWelcome + kOld + kEditor + kQuote + kTail;
  EXPECT_EQ(Texts("US"), written);
  // Writing again changes nothing.
  ListPtr again = Read("US");
  ASSERT_EQ(MPPutResourceCompleteList(again.get()), 1);
  EXPECT_EQ(Texts("US"), written);
}

TEST_F(ResourceFamilyTest, PutCompleteListOfAnEmptyListWritesNothing) {
  const std::string bytes = std::string(kHead) + kBody + kTail;
  WriteTexts("US", bytes);
  OpenLocked();
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  EXPECT_EQ(MPPutResourceCompleteList(list), 1);
  EXPECT_EQ(MPPutResourceCompleteList(nullptr), 1);
  EXPECT_EQ(Texts("US"), bytes);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceFamilyTest, PutCompleteListTakesTheLanguageOfTheFirstRecord) {
  WriteTexts("US", kHeader);
  WriteTexts("DE", kHeader);
  OpenLocked();
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("DE", "IDS_A", "a", 1).release());
  MPAppendResource(list, NewText("US", "IDS_B", "b", 2).release());
  ASSERT_EQ(MPPutResourceCompleteList(list), 1);
  EXPECT_EQ(Texts("DE"), std::string(kHeader) + "\"IDS_A\",\"a\",1,\r\n\"IDS_B\",\"b\",2,\r\n");
  EXPECT_EQ(Texts("US"), kHeader);
  ListPtr de = Read("DE");
  for (const ResourceRecord* r : Records(de.get())) EXPECT_STREQ(r->LanguageCode, "DE");
}

TEST_F(ResourceFamilyTest, ChangingNeedsALockedProfile) {
  WriteTexts("US", std::string(kHeader) + kWelcome);
  OpenReadOnly();
  RecordPtr text = NewText("US", "IDS_A", "a");
  EXPECT_EQ(MPPutResource(text.get()), 0);
  EXPECT_EQ(MPDeleteResource("US", "IDS_WELCOME"), 0);
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("US", "IDS_B", "b").release());
  EXPECT_EQ(MPPutResourceCompleteList(list), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{kNotLocked, kNotLocked, kNotLocked}));
  EXPECT_EQ(Texts("US"), std::string(kHeader) + kWelcome);
}

TEST_F(ResourceFamilyTest, PutWithoutALanguageIsRefused) {
  OpenLocked();
  RecordPtr text = NewText("", "IDS_A", "a");
  EXPECT_EQ(MPPutResource(text.get()), 0);
  EXPECT_EQ(Errors(),
            std::vector<std::string>{"A language code is needed to find a resource file."});
}

// ---------------------------------------------------------------- single texts

TEST_F(ResourceFamilyTest, PutReplacesTheTextWithItsNameAndKeepsTheOthers) {
  WriteTexts("US", std::string(kHead) + kBody + kTail);
  OpenLocked();
  RecordPtr text = NewText("US", "IDS_WELCOME", "Hello.", 101, "First page");
  ASSERT_EQ(MPPutResource(text.get()), 1);
  ResourceRecord* found = nullptr;
  ASSERT_EQ(MPGetResource("US", "IDS_WELCOME", &found), 1);
  RecordPtr holder(found);
  EXPECT_STREQ(found->Text, "Hello.");
  EXPECT_EQ(found->lineNumber, 7u);  // the stored text's line
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Texts("US"), std::string(kHead) + "\"IDS_WELCOME\",\"Hello.\",101,\"First page\"\r\n" +
                             kOld + kEditor + kQuote + kTail);
}

TEST_F(ResourceFamilyTest, DeleteRemovesEveryTextWithTheName) {
  WriteTexts("US", std::string(kHeader) + kWelcome + kQuote + kWelcome);
  OpenLocked();
  EXPECT_EQ(MPDeleteResource("US", "IDS_WELCOME"), 1);
  EXPECT_EQ(Names(Read("US").get()), std::vector<std::string>{"IDS_QUOTE"});
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Texts("US"), std::string(kHeader) + kQuote);
}

TEST_F(ResourceFamilyTest, DeletingWhatIsNotThereGivesZeroSilently) {
  WriteTexts("US", std::string(kHeader) + kWelcome);
  OpenLocked();
  EXPECT_EQ(MPDeleteResource("US", "IDS_NONE"), 0);
  EXPECT_EQ(MPDeleteResource("DE", "IDS_WELCOME"), 0);  // no file: nothing asked
  EXPECT_TRUE(Errors().empty());
  EXPECT_TRUE(host_.boxes().empty());
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Texts("US"), std::string(kHeader) + kWelcome);
  EXPECT_FALSE(qvtest::PathExists(FileOf("DE")));
}

// ---------------------------------------------------------------- matching

class ResourceMatchTest : public ResourceFamilyTest {
 protected:
  struct Match {
    ListPtr primary, update, result;
  };
  Match Run(const char* primary, const char* update) {
    ResourceList* p = nullptr;
    ResourceList* u = nullptr;
    ResourceList* r = nullptr;
    EXPECT_EQ(MPMatchResources(primary, update, &p, &u, &r), 1);
    return {ListPtr(p), ListPtr(u), ListPtr(r)};
  }
};

TEST_F(ResourceMatchTest, PairsByNameAndNumberKeepingTheOrder) {
  WriteTexts("US", std::string(kHeader) +
                       "\"A\",\"a\",1\r\n\"B\",\"b\",2\r\n\"C\",\"c\",3\r\n\"D\",\"d\",4\r\n");
  WriteTexts("DE", std::string(kHeader) +
                       "\"C\",\"c\",3\r\n\"X\",\"x\",9\r\n\"B\",\"b\",20\r\n\"A\",\"a\",1\r\n");
  OpenReadOnly();
  Match m = Run("US", "DE");
  EXPECT_EQ(Names(m.result.get()), (std::vector<std::string>{"C", "A"}));
  EXPECT_EQ(Names(m.primary.get()), (std::vector<std::string>{"B", "D"}));
  EXPECT_EQ(Names(m.update.get()), (std::vector<std::string>{"X", "B"}));
  for (const ResourceRecord* r : Records(m.result.get())) EXPECT_STREQ(r->LanguageCode, "DE");
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceMatchTest, TheSearchGoesOnBehindThePartnerLastFound) {
  WriteTexts("US", std::string(kHeader) + "\"A\",\"first\",1\r\n\"A\",\"second\",2\r\n");
  WriteTexts("DE", std::string(kHeader) + "\"A\",\"eins\",1\r\n\"A\",\"zwei\",2\r\n");
  OpenReadOnly();
  Match m = Run("US", "DE");
  EXPECT_EQ(m.result->count, 2u);
  EXPECT_EQ(m.primary->count, 0u);
  EXPECT_EQ(m.update->count, 0u);

  // In the other order the first search stops on A 1 (numbers differ) and
  // the second one, starting behind it, meets A 2 only.
  WriteTexts("DE", std::string(kHeader) + "\"A\",\"zwei\",2\r\n\"A\",\"eins\",1\r\n");
  Match n = Run("US", "DE");
  EXPECT_EQ(n.result->count, 0u);
  EXPECT_EQ(n.primary->count, 2u);
  EXPECT_EQ(n.update->count, 2u);
}

TEST_F(ResourceMatchTest, LanguagesWithoutFilesMatchNothing) {
  WriteTexts("US", std::string(kHeader) + kWelcome);
  OpenReadOnly();
  Match m = Run("US", "DE");
  EXPECT_EQ(Names(m.primary.get()), std::vector<std::string>{"IDS_WELCOME"});
  EXPECT_EQ(m.update->count, 0u);
  EXPECT_EQ(m.result->count, 0u);
}

TEST_F(ResourceMatchTest, TheExampleProfileMatchesThreeTexts) {
  std::filesystem::copy(
      std::string(QUORVEX_SOURCE_DIR) + "/examples/profile/RES_US", profile_ + "/RES_US",
      std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
  OpenReadOnly();
  Match m = Run("US", "DE");
  EXPECT_EQ(Names(m.result.get()),
            (std::vector<std::string>{"IDS_WELCOME", "IDS_EXIT", "MP_GEN_0001_00000000041"}));
  EXPECT_EQ(Names(m.primary.get()),
            (std::vector<std::string>{"IDS_DISK", "IDS_DONE", "IDS_OLD_BANNER"}));
  EXPECT_EQ(Names(m.update.get()), (std::vector<std::string>{"IDS_DISK", "IDS_LICENSE"}));
}

TEST_F(ResourceMatchTest, TheToolPrintsTheThreeLists) {
  WriteTexts("US", std::string(kHeader) + "\"A\",\"a\",1\r\n\"B\",\"b\",2\r\n");
  WriteTexts("DE", std::string(kHeader) + "\"B\",\"b\",2\r\n\"C\",\"c\",3\r\n");
  qvtest::ToolResult json =
      qvtest::RunTool({"-p", profile_, "--json", "resources", "match", "US", "DE"});
  ASSERT_EQ(json.status, 0) << json.err;
  nlohmann::json j = nlohmann::json::parse(json.out);
  ASSERT_EQ(j["matched"].size(), 1u);
  EXPECT_EQ(j["matched"][0]["ResourceName"], "B");
  EXPECT_EQ(j["matched"][0]["LanguageCode"], "DE");
  ASSERT_EQ(j["primaryOnly"].size(), 1u);
  EXPECT_EQ(j["primaryOnly"][0]["ResourceName"], "A");
  ASSERT_EQ(j["updateOnly"].size(), 1u);
  EXPECT_EQ(j["updateOnly"][0]["ResourceName"], "C");
  EXPECT_EQ(j["updateOnly"][0]["ResourceNumber"], 3);

  qvtest::ToolResult table = qvtest::RunTool({"-p", profile_, "resources", "match", "US", "DE"});
  ASSERT_EQ(table.status, 0) << table.err;
  EXPECT_NE(table.out.find("Only in US: 1"), std::string::npos) << table.out;
  EXPECT_NE(table.out.find("Only in DE: 1"), std::string::npos) << table.out;
  EXPECT_EQ(qvtest::RunTool({"-p", profile_, "resources", "match", "US"}).status, 2);
}

TEST_F(ResourceMatchTest, MatchingNeedsAnOpenProfile) {
  ResourceList* p = nullptr;
  ResourceList* u = nullptr;
  ResourceList* r = nullptr;
  EXPECT_EQ(MPMatchResources("US", "DE", &p, &u, &r), 0);
  EXPECT_EQ(p, nullptr);
  EXPECT_EQ(u, nullptr);
  EXPECT_EQ(r, nullptr);
  EXPECT_EQ(Errors(), std::vector<std::string>{kNotOpen});
}

// ---------------------------------------------------------------- Orvik

class ResourceOrvikTest : public ResourceFamilyTest {
 protected:
  ResourceOrvikTest() { database_ = host_.scratch().Join("shipping.orv"); }

  void MakeDatabase(bool with_table) {
    // Opening reads the locations: their table is there, empty.
    std::string sql = qv::OrvikTableDefinition(qv::LoSchema()) + ";";
    if (with_table) {
      sql += qv::OrvikTableDefinition(qv::ResourceSchema()) + ";";
      sql +=
          "INSERT INTO \"Resources\" VALUES ('US', 'IDS_A', 'a', 1, '');"
          "INSERT INTO \"Resources\" VALUES ('DE', 'IDS_A', 'A', 1, '');"
          "INSERT INTO \"Resources\" VALUES ('US', 'MP_GEN_0001_00000000070', 'b', 2, 'n');";
    }
    qvtest::MakeDatabase(database_, sql);
  }

  void OpenOrvik(bool locked) {
    ASSERT_EQ(qvtest::OpenProfileAt(database_, OPEN_ORVIK | OPEN_NO_VCS | (locked ? OPEN_LOCK : 0)),
              1);
  }

  std::string database_;
};

TEST_F(ResourceOrvikTest, ReadsTheRowsOfTheLanguage) {
  MakeDatabase(true);
  OpenOrvik(false);
  qv::State().resource_counter = 0;
  ListPtr list = Read("US");
  EXPECT_EQ(Names(list.get()), (std::vector<std::string>{"IDS_A", "MP_GEN_0001_00000000070"}));
  EXPECT_STREQ(Records(list.get())[1]->Note, "n");
  EXPECT_EQ(qv::State().resource_counter, 71u);
  ResourceRecord* found = nullptr;
  ASSERT_EQ(MPGetResource("DE", "IDS_A", &found), 1);
  RecordPtr holder(found);
  EXPECT_STREQ(found->Text, "A");
}

TEST_F(ResourceOrvikTest, WithoutTheTableTheQueryCannotBegin) {
  MakeDatabase(false);
  OpenOrvik(false);
  ResourceList* p = nullptr;
  ResourceList* u = nullptr;
  ResourceList* r = nullptr;
  EXPECT_EQ(MPMatchResources("US", "DE", &p, &u, &r), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{
                          "Cannot begin to Query Orvik Database for Resource Strings",
                          "Can't access Primary Language Resources(They might not exist yet)"}));
  MPFreeResourceList(p);
  MPFreeResourceList(u);
  MPFreeResourceList(r);
}

TEST_F(ResourceOrvikTest, ChangesAreRefused) {
  MakeDatabase(true);
  OpenOrvik(true);
  RecordPtr text = NewText("US", "IDS_B", "b");
  EXPECT_EQ(MPPutResource(text.get()), 0);
  EXPECT_EQ(MPDeleteResource("US", "IDS_A"), 0);
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("US", "IDS_C", "c").release());
  EXPECT_EQ(MPPutResourceCompleteList(list), 0);
  EXPECT_EQ(Errors(),
            (std::vector<std::string>{"Resources not implemented in QUORVEX for Orvik",
                                      "Cannot delete Resources record from Orvik shipping profile",
                                      "Resources not implemented in QUORVEX for Orvik"}));
}

}  // namespace
