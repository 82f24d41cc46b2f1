// The open resource files: texts changed one at a time are held per
// language and written back when the profile closes; a missing resource
// file is created on request and added to version control.
#include "records/resource_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/state.h"
#include "platform/write_faults.h"
#include "quorvex/quorvex.h"
#include "records/language_file.h"
#include "records/record_codec.h"
#include "records/resource_family.h"
#include "support/fake_ss.h"
#include "support/list_view.h"
#include "support/profiles.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::ReadFileBytes;
using qvtest::WriteFileBytes;

constexpr char kHeader[] = "\n[SourceSafe]\n$Header$\n\n[Resources]\n";
constexpr char kCreateResourceFile[] = "Do you want to Create Resource File for this language?";
constexpr char kWriteOver[] =
    "File %s cannot be written over, you may not have it checked out, and/or the attributes of "
    "the file may be set to Read-Only.";

constexpr char kHead[] =
    "\n"
    "[SourceSafe]\n"
    "$Header: /Profile/RES_US/pelhamUS.re 2 $\n"
    "\n"
    "[Resources]\n";
constexpr char kWelcome[] = "\"IDS_WELCOME\",\"Welcome.\",1,\r\n";
constexpr char kExit[] = ";IAO;\"IDS_EXIT\",\"Exit?\",2,\"asked on cancel\"\r\n";
constexpr char kTail[] =
    "[Notes]\n"
    "\"kept\"\n";

using ListPtr = qvtest::Owned<ResourceList, MPFreeResourceList>;
using RecordPtr = qvtest::Owned<ResourceRecord, MPFreeResource>;

RecordPtr NewText(const char* language, const char* name, const char* text, int32_t number = 0) {
  ResourceRecord* record = nullptr;
  EXPECT_EQ(MPNewResource(&record), 1);
  snprintf(record->LanguageCode, sizeof record->LanguageCode, "%s", language);
  snprintf(record->ResourceName, sizeof record->ResourceName, "%s", name);
  snprintf(record->Text, sizeof record->Text, "%s", text);
  record->ResourceNumber = number;
  return RecordPtr(record);
}

std::vector<std::string> Names(const ResourceList* list) {
  std::vector<std::string> names;
  if (list == nullptr || list->head == nullptr) return names;
  RecordNode* node = list->head;
  do {
    names.push_back(static_cast<ResourceRecord*>(node->record)->ResourceName);
    node = node->next;
  } while (node != list->head);
  return names;
}

struct Listed {
  std::string owner;
  std::string kind;
  uint32_t status;
};

// The global list's entries of one owner.
std::vector<Listed> ListedFor(const std::string& owner) {
  std::vector<Listed> out;
  RecordList* list = QvGlobalFileList();
  if (list == nullptr || list->head == nullptr) return out;
  RecordNode* node = list->head;
  do {
    auto* e = static_cast<ProfileFileEntry*>(node->record);
    if (owner == e->ownerName) out.push_back({e->ownerName, e->kind, e->status});
    node = node->next;
  } while (node != list->head);
  return out;
}

using qvtest::IsReadOnly;
using qvtest::MakeReadOnly;

class ResourceFilesTest : public ::testing::Test {
 protected:
  ResourceFilesTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
  }

  int Open(uint32_t flags, const std::string& log = "") {
    return qvtest::OpenProfileAt(profile_, flags, log);
  }
  void OpenLocked() { ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK), 1); }

  std::string FileOf(const std::string& language) const {
    return profile_ + "/RES_US/pelham" + language + ".re";
  }
  std::string CreatedFileOf(const std::string& language) const {
    return profile_ + "/RES_US/PELHAM" + language + ".RE";
  }
  std::string EnginePath(const std::string& language) const {
    return profile_ + "\\RES_US\\pelham" + language + ".re";
  }
  std::string Texts(const std::string& language) const { return ReadFileBytes(FileOf(language)); }

  std::vector<std::string> Questions() const {
    std::vector<std::string> questions;
    for (const qvtest::ShownBox& box : host_.boxes()) {
      if (box.kind == QV_BOX_QUESTION) {
        EXPECT_EQ(box.caption, "Question from QUORVEX:");
        questions.push_back(box.text);
      }
    }
    return questions;
  }

  std::vector<std::string> Errors() const { return host_.errors(); }

  qvtest::ScriptedHost host_;
  std::string profile_;
};

// ---------------------------------------------------------------- closing

TEST_F(ResourceFilesTest, ClosingWritesBackAChangedLanguageWithEveryOtherByteKept) {
  WriteFileBytes(FileOf("US"), std::string(kHead) + kWelcome + kExit + kTail);
  OpenLocked();
  RecordPtr text = NewText("US", "IDS_DONE", "Done \"now\".", 3);
  ASSERT_EQ(MPPutResource(text.get()), 1);
  // Held, not yet written.
  EXPECT_EQ(Texts("US"), std::string(kHead) + kWelcome + kExit + kTail);
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Texts("US"), std::string(kHead) + kWelcome + kExit +
                             "\"IDS_DONE\",\"Done ^\"now^\".\",3,\r\n" + kTail);
  EXPECT_EQ(qv::State().resource_files, nullptr);
  EXPECT_EQ(host_.closing_notices().empty(), false);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceFilesTest, EveryChangedLanguageIsWrittenAndUnchangedOnesAreNot) {
  WriteFileBytes(FileOf("US"), std::string(kHeader) + kWelcome);
  WriteFileBytes(FileOf("DE"), std::string(kHeader) + kWelcome);
  // Not in the written form: rewriting it would show.
  const std::string french = std::string(kHeader) + "  \"IDS_WELCOME\" , \"Bienvenue.\" , 1\n";
  WriteFileBytes(FileOf("FR"), french);
  OpenLocked();
  RecordPtr us = NewText("US", "IDS_A", "a", 1);
  RecordPtr de = NewText("DE", "IDS_B", "b", 2);
  ASSERT_EQ(MPPutResource(us.get()), 1);
  ASSERT_EQ(MPPutResource(de.get()), 1);
  EXPECT_EQ(MPDeleteResource("FR", "IDS_NONE"), 0);  // loaded, unchanged
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Texts("US"), std::string(kHeader) + kWelcome + "\"IDS_A\",\"a\",1,\r\n");
  EXPECT_EQ(Texts("DE"), std::string(kHeader) + kWelcome + "\"IDS_B\",\"b\",2,\r\n");
  EXPECT_EQ(Texts("FR"), french);
}

TEST_F(ResourceFilesTest, ALanguageIsLoadedOnceAndItsChangesAreWhatReadsSee) {
  WriteFileBytes(FileOf("US"), std::string(kHeader) + kWelcome);
  OpenLocked();
  RecordPtr a = NewText("US", "IDS_A", "a");
  ASSERT_EQ(MPPutResource(a.get()), 1);
  ASSERT_EQ(MPDeleteResource("US", "IDS_WELCOME"), 1);
  // Changed behind the engine's back: the held list does not see it.
  WriteFileBytes(FileOf("US"), std::string(kHeader) + kWelcome + "\"IDS_OUTSIDE\",\"x\"\r\n");
  ResourceList* list = nullptr;
  ASSERT_EQ(MPGetResourceCompleteList("US", &list), 1);
  ListPtr holder(list);
  EXPECT_EQ(Names(list), std::vector<std::string>{"IDS_A"});
  ResourceRecord* found = nullptr;
  EXPECT_EQ(MPGetResource("US", "IDS_WELCOME", &found), 0);
  ASSERT_EQ(MPGetResource("US", "IDS_A", &found), 1);
  MPFreeResource(found);
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Texts("US"), std::string(kHeader) + "\"IDS_A\",\"a\",,\r\n");
}

TEST_F(ResourceFilesTest, ACompleteListPutWritesTheHeldChangesAtOnce) {
  WriteFileBytes(FileOf("US"), std::string(kHeader) + kWelcome);
  OpenLocked();
  RecordPtr a = NewText("US", "IDS_A", "a", 1);
  ASSERT_EQ(MPPutResource(a.get()), 1);
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("US", "IDS_B", "b", 2).release());
  ASSERT_EQ(MPPutResourceCompleteList(list), 1);
  const std::string written =
      std::string(kHeader) + kWelcome + "\"IDS_A\",\"a\",1,\r\n\"IDS_B\",\"b\",2,\r\n";
  EXPECT_EQ(Texts("US"), written);
  // Nothing is left to write: a read-only file is not touched at close.
  MakeReadOnly(FileOf("US"));
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Texts("US"), written);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceFilesTest, ClosingAProfileThatIsNotLockedWritesNothing) {
  const std::string bytes = std::string(kHeader) + kWelcome;
  WriteFileBytes(FileOf("US"), bytes);
  ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS), 1);
  ResourceRecord* found = nullptr;
  ASSERT_EQ(MPGetResource("US", "IDS_WELCOME", &found), 1);
  MPFreeResource(found);
  EXPECT_EQ(qv::State().resource_files, nullptr);  // reads hold nothing
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Texts("US"), bytes);
  EXPECT_TRUE(host_.closing_notices().empty());
}

// ---------------------------------------------------------------- creating a file

TEST_F(ResourceFilesTest, AMissingFileIsCreatedWhenTheAnswerIsYes) {
  OpenLocked();
  host_.AnswerBoxes({true, true});  // see the next box; create
  RecordPtr text = NewText("DE", "IDS_A", "Hallo", 1);
  ASSERT_EQ(MPPutResource(text.get()), 1);
  EXPECT_EQ(Errors(), std::vector<std::string>{EnginePath("DE") + " cannot be found or opened!"});
  EXPECT_EQ(Questions(), std::vector<std::string>{kCreateResourceFile});
  // Entered as "RE" and new, but not yet on disk: the close puts the whole
  // file there in one step, so that a crash before it leaves no file that
  // holds its header alone.
  std::vector<Listed> listed = ListedFor("DE");
  ASSERT_EQ(listed.size(), 1u);
  EXPECT_EQ(listed[0].kind, "RE");
  EXPECT_EQ(listed[0].status, FS_CHECKED_OUT | qv::kFileNewToVcs);
  EXPECT_FALSE(qvtest::PathExists(CreatedFileOf("DE")));
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(ReadFileBytes(CreatedFileOf("DE")),
            std::string(kHeader) + "\"IDS_A\",\"Hallo\",1,\r\n");
  EXPECT_EQ(Questions().size(), 1u);
}

TEST_F(ResourceFilesTest, ANewFileNotYetWrittenIsThereAsItsHeaderWithoutAskingAgain) {
  OpenLocked();
  host_.AnswerBoxes({true, true});
  RecordPtr first = NewText("DE", "IDS_A", "Hallo", 1);
  ASSERT_EQ(MPPutResource(first.get()), 1);
  // A complete-list put of the same language writes the file at once; the
  // file it starts from is the new file's header.
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("DE", "IDS_B", "Welt", 2).release());
  ASSERT_EQ(MPPutResourceCompleteList(list), 1);
  EXPECT_EQ(Questions().size(), 1u);
  EXPECT_EQ(Errors().size(), 1u);
  EXPECT_EQ(ReadFileBytes(CreatedFileOf("DE")),
            std::string(kHeader) + "\"IDS_A\",\"Hallo\",1,\r\n\"IDS_B\",\"Welt\",2,\r\n");
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Questions().size(), 1u);
}

TEST_F(ResourceFilesTest, ANewFileWhoseFirstWriteFailsIsNotMadeAndNoLongerListed) {
  OpenLocked();
  host_.AnswerBoxes({true, true});
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("DE", "IDS_A", "Hallo", 1).release());
  qv::SetWriteBudget(0);  // the disk is full
  EXPECT_EQ(MPPutResourceCompleteList(list), 0);
  qv::SetWriteBudget(-1);
  EXPECT_FALSE(qvtest::PathExists(CreatedFileOf("DE")));
  EXPECT_TRUE(ListedFor("DE").empty());
  for (const auto& entry : std::filesystem::directory_iterator(profile_ + "/RES_US")) {
    EXPECT_NE(entry.path().filename().string()[0], '.') << entry.path();
  }
}

TEST_F(ResourceFilesTest, AnsweringNoChangesNothing) {
  OpenLocked();
  host_.AnswerBoxes({true, false});
  RecordPtr text = NewText("DE", "", "Hallo");
  EXPECT_EQ(MPPutResource(text.get()), 0);
  EXPECT_STREQ(text->ResourceName, "");  // no name was drawn
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("DE", "", "Welt").release());
  host_.AnswerBoxes({true, false});
  EXPECT_EQ(MPPutResourceCompleteList(list), 0);
  EXPECT_EQ(Names(list), std::vector<std::string>{""});
  EXPECT_EQ(Questions(), (std::vector<std::string>{kCreateResourceFile, kCreateResourceFile}));
  EXPECT_FALSE(qvtest::PathExists(CreatedFileOf("DE")));
  EXPECT_TRUE(ListedFor("DE").empty());
  EXPECT_EQ(qv::State().resource_counter, 0u);
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_FALSE(qvtest::PathExists(CreatedFileOf("DE")));
}

TEST_F(ResourceFilesTest, ASilentProfileAsksNothingAndFails) {
  std::string log = host_.scratch().Join("quorvex.log");
  ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK | OPEN_SILENT, log), 1);
  RecordPtr text = NewText("DE", "IDS_A", "Hallo");
  EXPECT_EQ(MPPutResource(text.get()), 0);
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_FALSE(qvtest::PathExists(CreatedFileOf("DE")));
  ASSERT_EQ(CloseMasterProfile(), 1);
  std::string logged = ReadFileBytes(log);
  EXPECT_NE(logged.find(EnginePath("DE") + " cannot be found or opened!"), std::string::npos);
  EXPECT_EQ(logged.find(kCreateResourceFile), std::string::npos);
}

TEST_F(ResourceFilesTest, AnExistingFileThatCannotBeCreatedAnewIsReported) {
  OpenLocked();
  // A folder in the new file's place: the catalogue passes it over and
  // creation fails.
  qvtest::MakeDirs(CreatedFileOf("DE"));
  // Each failed creation is followed by the lookup and the question again,
  // until the answer is No.
  host_.AnswerBoxes({true, true, true, true, true, true, true, false});
  RecordPtr text = NewText("DE", "IDS_A", "Hallo");
  EXPECT_EQ(MPPutResource(text.get()), 0);
  const std::string missing = EnginePath("DE") + " cannot be found or opened!";
  const std::string cannot =
      "You have requested to create a resource file that you cannot, contact vendor.";
  EXPECT_EQ(Errors(), (std::vector<std::string>{missing, cannot, missing, cannot, missing}));
  EXPECT_EQ(Questions(), (std::vector<std::string>{kCreateResourceFile, kCreateResourceFile,
                                                   kCreateResourceFile}));
}

TEST_F(ResourceFilesTest, ACreationThatFailsOnceIsOfferedAgainAndThenSucceeds) {
  OpenLocked();
  qvtest::MakeDirs(CreatedFileOf("DE"));
  // The folder in the way is gone by the time the person answers again.
  host_.OnBox([this](const std::string& text) {
    if (text.find("contact vendor") != std::string::npos) {
      std::filesystem::remove_all(CreatedFileOf("DE"));
    }
  });
  host_.AnswerBoxes({true, true, true, true, true});
  RecordPtr text = NewText("DE", "IDS_A", "Hallo");
  EXPECT_EQ(MPPutResource(text.get()), 1);
  EXPECT_EQ(Questions().size(), 2u);
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_NE(ReadFileBytes(CreatedFileOf("DE")).find("\"IDS_A\",\"Hallo\""), std::string::npos);
}

// ---------------------------------------------------------------- version control

// ---------------------------------------------------------------- held texts

// What a language's held texts must behave as: a list of the texts in file
// order, searched from the top by exact name.
struct TextList {
  std::vector<ResourceRecord> texts;

  const ResourceRecord* Find(const std::string& name) const {
    for (const ResourceRecord& text : texts) {
      if (name == text.ResourceName) return &text;
    }
    return nullptr;
  }
  void Put(ResourceRecord record) {
    snprintf(record.LanguageCode, sizeof record.LanguageCode, "US");
    for (ResourceRecord& text : texts) {
      if (strcmp(text.ResourceName, record.ResourceName) == 0) {
        record.lineNumber = text.lineNumber;
        text = record;
        return;
      }
    }
    texts.push_back(record);
  }
  bool Remove(const std::string& name) {
    return std::erase_if(texts,
                         [&](const ResourceRecord& text) { return name == text.ResourceName; }) > 0;
  }
  std::string Lines() const {
    std::string lines;
    for (const ResourceRecord& text : texts)
      qv::AppendRecordLine(qv::ResourceSchema(), &text, &lines);
    return lines;
  }
};

std::vector<ResourceRecord> HeldTexts(const char* language) {
  ResourceList* list = nullptr;
  EXPECT_EQ(MPGetResourceCompleteList(language, &list), 1);
  ListPtr holder(list);
  std::vector<ResourceRecord> texts;
  for (const ResourceRecord* text : qvtest::RecordsOf<ResourceRecord>(list)) texts.push_back(*text);
  return texts;
}

void ExpectSameText(const ResourceRecord& held, const ResourceRecord& expected) {
  EXPECT_STREQ(held.LanguageCode, expected.LanguageCode);
  EXPECT_STREQ(held.ResourceName, expected.ResourceName);
  EXPECT_STREQ(held.Text, expected.Text);
  EXPECT_EQ(held.ResourceNumber, expected.ResourceNumber);
  EXPECT_STREQ(held.Note, expected.Note);
  EXPECT_EQ(held.lineNumber, expected.lineNumber);
}

// The held texts read as the model, and each name finds the model's first.
void ExpectHeldAsModel(const TextList& model, const std::vector<std::string>& names) {
  std::vector<ResourceRecord> held = HeldTexts("US");
  ASSERT_EQ(held.size(), model.texts.size());
  for (size_t i = 0; i < held.size(); ++i) ExpectSameText(held[i], model.texts[i]);
  for (const std::string& name : names) {
    ResourceRecord* found = nullptr;
    const ResourceRecord* expected = model.Find(name);
    ASSERT_EQ(MPGetResource("US", name.c_str(), &found), expected != nullptr ? 1 : 0) << name;
    RecordPtr holder(found);
    if (expected != nullptr) ExpectSameText(*found, *expected);
  }
}

// The generated name that follows name: its last eleven digits, plus one.
std::string NameAfter(const std::string& name) {
  std::string next = name;
  for (size_t i = next.size(); i-- > next.size() - 11;) {
    if (next[i] != '9') {
      ++next[i];
      break;
    }
    next[i] = '0';
  }
  return next;
}

constexpr char kUnevenTexts[] =
    "  \"IDS_DUP\" , \"first\" , 1\n"
    "\"\",\"nameless\",2,\r\n"
    "\"IDS_ONE\",\"one\",3,\"a note\"\r\n"
    "\"IDS_DUP\",\"second\",4,\r\n"
    "\"\",\"nameless too\",,\r\n"
    "\"IDS_TWO\",\"two\",,\r\n"
    "\"IDS_DUP\",\"third\",6,\r\n";

TEST_F(ResourceFilesTest, HeldTextsAreWhatAListOfThemInFileOrderWouldBe) {
  WriteFileBytes(FileOf("US"), std::string(kHead) + kUnevenTexts + kTail);
  OpenLocked();
  TextList model;
  model.texts = HeldTexts("US");
  ASSERT_EQ(model.texts.size(), 7u);
  // The names the engine gives join these as they are given.
  std::vector<std::string> names = {"IDS_DUP", "IDS_ONE",  "IDS_TWO",
                                    "IDS_NEW", "IDS_MORE", "IDS_LAST"};
  std::mt19937 random(20261124);
  auto pick = [&](size_t n) { return static_cast<size_t>(random() % n); };
  int writes = 0;
  for (int step = 0; step < 600; ++step) {
    SCOPED_TRACE(step);
    const size_t what = pick(20);
    if (what < 8) {
      // One text, named or to be named.
      const bool unnamed = pick(6) == 0;
      std::string text = "text " + std::to_string(step);
      RecordPtr put = NewText("US", unnamed ? "" : names[pick(names.size())].c_str(), text.c_str(),
                              static_cast<int32_t>(pick(4)));
      if (pick(3) == 0) snprintf(put->Note, sizeof put->Note, "note %d", step);
      ASSERT_EQ(MPPutResource(put.get()), 1);
      if (unnamed) names.push_back(put->ResourceName);
      model.Put(*put);
    } else if (what < 12) {
      const std::string& name = names[pick(names.size())];
      EXPECT_EQ(MPDeleteResource("US", name.c_str()), model.Remove(name) ? 1 : 0);
    } else if (what < 14) {
      // A complete list: its texts are put one by one, then the file is
      // written.
      ResourceList* list = nullptr;
      MPNewResourceList(&list);
      ListPtr holder(list);
      const size_t count = 1 + pick(3);
      for (size_t i = 0; i < count; ++i) {
        const bool unnamed = pick(4) == 0;
        MPAppendResource(list, NewText("US", unnamed ? "" : names[pick(names.size())].c_str(),
                                       "listed", static_cast<int32_t>(i))
                                   .release());
      }
      ASSERT_EQ(MPPutResourceCompleteList(list), 1);
      for (const ResourceRecord* text : qvtest::RecordsOf<ResourceRecord>(list)) {
        if (std::find(names.begin(), names.end(), text->ResourceName) == names.end()) {
          names.push_back(text->ResourceName);
        }
        model.Put(*text);
      }
    } else if (what < 16) {
      ASSERT_TRUE(qv::WriteHeldResources("US"));
    } else {
      ExpectHeldAsModel(model, names);
      continue;
    }
    if (what >= 12 && what < 16) {
      // A write names the nameless texts in order, each after the last.
      ++writes;
      std::vector<ResourceRecord> held = HeldTexts("US");
      ASSERT_EQ(held.size(), model.texts.size());
      std::string last;
      for (size_t i = 0; i < held.size(); ++i) {
        if (model.texts[i].ResourceName[0] != '\0') continue;
        const std::string given = held[i].ResourceName;
        EXPECT_EQ(given.rfind("MP_GEN_", 0), 0u) << given;
        EXPECT_GT(given, last);
        last = given;
        snprintf(model.texts[i].ResourceName, sizeof model.texts[i].ResourceName, "%s",
                 given.c_str());
        names.push_back(given);
      }
      EXPECT_EQ(Texts("US"), std::string(kHead) + model.Lines() + kTail);
    }
    ExpectHeldAsModel(model, names);
  }
  EXPECT_GT(writes, 30);
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(ResourceFilesTest, ANameAWriteGivesThatWasAlsoPutByHandFindsTheEarlierText) {
  WriteFileBytes(FileOf("US"), std::string(kHeader) + "\"\",\"nameless\",1,\r\n" + kWelcome);
  OpenLocked();
  RecordPtr generated = NewText("US", "", "generated");
  ASSERT_EQ(MPPutResource(generated.get()), 1);
  const std::string first = generated->ResourceName;
  const std::string next = NameAfter(first);
  RecordPtr by_hand = NewText("US", next.c_str(), "by hand");
  ASSERT_EQ(MPPutResource(by_hand.get()), 1);
  // The nameless text, before both, is given the name put by hand.
  ASSERT_TRUE(qv::WriteHeldResources("US"));
  std::vector<ResourceRecord> held = HeldTexts("US");
  ASSERT_EQ(held.size(), 4u);
  EXPECT_EQ(std::vector<std::string>({held[0].ResourceName, held[1].ResourceName,
                                      held[2].ResourceName, held[3].ResourceName}),
            std::vector<std::string>({next, "IDS_WELCOME", first, next}));
  ResourceRecord* found = nullptr;
  ASSERT_EQ(MPGetResource("US", next.c_str(), &found), 1);
  EXPECT_STREQ(RecordPtr(found)->Text, "nameless");
  RecordPtr replaced = NewText("US", next.c_str(), "replaced");
  ASSERT_EQ(MPPutResource(replaced.get()), 1);
  held = HeldTexts("US");
  ASSERT_EQ(held.size(), 4u);
  EXPECT_STREQ(held[0].Text, "replaced");
  EXPECT_STREQ(held[3].Text, "by hand");
  EXPECT_EQ(MPDeleteResource("US", next.c_str()), 1);
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_EQ(Texts("US"), std::string(kHeader) + kWelcome + "\"" + first + "\",\"generated\",,\r\n");
}

class ResourceFilesVcsTest : public ResourceFilesTest {
 protected:
  void OpenLockedWithVcs() {
    WriteLastProfile(profile_.c_str(), OPEN_MASTER, "Proj");
    ASSERT_EQ(Open(OPEN_MASTER | OPEN_LOCK), 1);
    ASSERT_STREQ(QvOpenProfileProject(), "Proj");
    ss_.ClearCalls();
  }
  // Closing runs version-control commands too: close while the fake client
  // is still in place, not after it is gone.
  void TearDown() override { CloseMasterProfile(); }
  qvtest::FakeSs ss_;
};

TEST_F(ResourceFilesVcsTest, ANewFileIsAddedWithInitialRevisionAfterItsFirstWrite) {
  OpenLockedWithVcs();
  // Adding checks the file in: it is read-only afterwards.
  ss_.AnswerSettingReadOnly("add", 0, CreatedFileOf("DE"), true);
  ss_.AnswerSettingReadOnly("checkout", 0, CreatedFileOf("DE"), false);
  host_.AnswerBoxes({true, true});
  ResourceList* list = nullptr;
  MPNewResourceList(&list);
  ListPtr holder(list);
  MPAppendResource(list, NewText("DE", "IDS_A", "Hallo", 1).release());
  ASSERT_EQ(MPPutResourceCompleteList(list), 1);
  EXPECT_EQ(ReadFileBytes(CreatedFileOf("DE")),
            std::string(kHeader) + "\"IDS_A\",\"Hallo\",1,\r\n");
  EXPECT_EQ(ss_.CommandLines(),
            (std::vector<std::string>{"ss cp \\Proj\\RES_US",
                                      "ss add PELHAMDE.RE -c\"Initial Revision.\""}));
  EXPECT_TRUE(IsReadOnly(CreatedFileOf("DE")));
  // Its new state: under version control, not checked out.
  EXPECT_EQ(ListedFor("DE")[0].status, 0u);

  // The next change checks it out first and is not added again.
  ss_.ClearCalls();
  ResourceList* more = nullptr;
  MPNewResourceList(&more);
  ListPtr more_holder(more);
  MPAppendResource(more, NewText("DE", "IDS_B", "Welt", 2).release());
  ASSERT_EQ(MPPutResourceCompleteList(more), 1);
  EXPECT_EQ(ss_.CommandLines(),
            (std::vector<std::string>{"ss cp \\Proj\\RES_US", "ss checkout PELHAMDE.RE"}));
  EXPECT_EQ(ReadFileBytes(CreatedFileOf("DE")),
            std::string(kHeader) + "\"IDS_A\",\"Hallo\",1,\r\n\"IDS_B\",\"Welt\",2,\r\n");
}

TEST_F(ResourceFilesVcsTest, ClosingAddsAFileCreatedForASingleText) {
  OpenLockedWithVcs();
  host_.AnswerBoxes({true, true});
  RecordPtr text = NewText("DE", "", "Hallo");
  ASSERT_EQ(MPPutResource(text.get()), 1);
  EXPECT_TRUE(ss_.CommandLines().empty());
  ASSERT_EQ(CloseMasterProfile(), 1);
  // Resource files are written back first; what closing does next is not
  // theirs.
  std::vector<std::string> lines = ss_.CommandLines();
  ASSERT_GE(lines.size(), 2u);
  lines.resize(2);
  EXPECT_EQ(lines, (std::vector<std::string>{"ss cp \\Proj\\RES_US",
                                             "ss add PELHAMDE.RE -c\"Initial Revision.\""}));
  EXPECT_EQ(ReadFileBytes(CreatedFileOf("DE")),
            std::string(kHeader) + "\"" + text->ResourceName + "\",\"Hallo\",,\r\n");
}

TEST_F(ResourceFilesVcsTest, AFailedWriteBackIsReportedAndTheTableStillGoes) {
  WriteFileBytes(FileOf("US"), std::string(kHeader) + kWelcome);
  MakeReadOnly(FileOf("US"));
  OpenLockedWithVcs();
  // The client checks the file out but leaves it read-only.
  ss_.AnswerSettingReadOnly("checkout", 0, FileOf("US"), true);
  RecordPtr text = NewText("US", "IDS_A", "a", 1);
  ASSERT_EQ(MPPutResource(text.get()), 1);
  EXPECT_EQ(ss_.CommandLines(),
            (std::vector<std::string>{"ss cp \\Proj\\RES_US", "ss checkout pelhamUS.re"}));
  ASSERT_EQ(CloseMasterProfile(), 1);
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message, kWriteOver, EnginePath("US").c_str());
  EXPECT_EQ(Errors(), std::vector<std::string>{message});
  EXPECT_EQ(Texts("US"), std::string(kHeader) + kWelcome);
  EXPECT_EQ(qv::State().resource_files, nullptr);
}

}  // namespace
