// Setup messages: the sections "Strings" and "Remove Strings" of
// "<profile>\LANGUAGE\setup<code>.msg", read as key=value lines and written
// back, and the creation of a missing file.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "platform/write_faults.h"
#include "quorvex/quorvex.h"
#include "records/location_family.h"
#include "records/orvik_rows.h"
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
constexpr char kCreateThisFile[] = "Do you want to Create this File?";
constexpr char kQuestionCaption[] = "Question from QUORVEX:";

constexpr char kHead[] =
    "\n"
    "[SourceSafe]\n"
    "$Header: /Profile/LANGUAGE/setupUS.msg 3 $\n"
    "\n"
    "[Strings]\r\n";
constexpr char kStrings[] =
    "Title=Pelham Setup\r\n"
    "Formula=A=B=C\r\n"
    "; dropped with the section\r\n"
    "Padded = value with blanks \t \r\n"
    ";IAO;Old=Retired message\r\n"
    "no equals sign here\r\n"
    "\r\n"
    "Quote=Say \"hi\"\r\n";
constexpr char kRemove[] =
    "[Remove Strings]\r\n"
    "RemoveTitle=Removing Pelham\r\n";

using StringListPtr = qvtest::Owned<StringList, MPFreeStringList>;
using RemoveListPtr = qvtest::Owned<RemoveStringList, MPFreeRemoveStringList>;
using StringPtr = qvtest::Owned<StringRecord, MPFreeString>;

template <class Record>
std::vector<Record*> Records(const RecordList* list) {
  return qvtest::RecordsOf<Record>(list);
}

std::vector<std::string> Pairs(const RecordList* list) {
  std::vector<std::string> pairs;
  for (const StringRecord* r : Records<StringRecord>(list)) {
    pairs.push_back(std::string(r->MessageKey) + "|" + r->MessageText);
  }
  return pairs;
}

StringPtr NewMessage(const char* language, const char* key, const char* text) {
  StringRecord* record = nullptr;
  EXPECT_EQ(MPNewString(&record), 1);
  snprintf(record->LanguageCode, sizeof record->LanguageCode, "%s", language);
  snprintf(record->MessageKey, sizeof record->MessageKey, "%s", key);
  snprintf(record->MessageText, sizeof record->MessageText, "%s", text);
  return StringPtr(record);
}

class StringFamilyTest : public ::testing::Test {
 protected:
  StringFamilyTest() {
    profile_ = host_.scratch().Join("MP");
    EXPECT_EQ(QvInitMasterProfile(profile_.c_str()), 1);
  }

  int Open(uint32_t flags, const std::string& log = "") {
    return qvtest::OpenProfileAt(profile_, flags, log);
  }
  void OpenLocked() { ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK), 1); }
  void OpenReadOnly() { ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS), 1); }

  std::string FileOf(const std::string& language) const {
    return profile_ + "/LANGUAGE/setup" + language + ".msg";
  }
  std::string EnginePath(const std::string& language) const {
    return profile_ + "\\LANGUAGE\\setup" + language + ".msg";
  }
  void WriteMessages(const std::string& language, const std::string& bytes) {
    WriteFileBytes(FileOf(language), bytes);
  }
  std::string Messages(const std::string& language) const {
    return ReadFileBytes(FileOf(language));
  }

  StringListPtr Read(const char* language) {
    StringList* list = nullptr;
    EXPECT_EQ(MPGetStringCompleteList(language, &list), 1);
    return StringListPtr(list);
  }
  RemoveListPtr ReadRemove(const char* language) {
    RemoveStringList* list = nullptr;
    EXPECT_EQ(MPGetRemoveStringCompleteList(language, &list), 1);
    return RemoveListPtr(list);
  }

  // Whether the global list of files names a file of the language.
  static bool Listed(const std::string& language) {
    RecordList* list = QvGlobalFileList();
    if (list == nullptr || list->head == nullptr) return false;
    RecordNode* node = list->head;
    do {
      if (static_cast<ProfileFileEntry*>(node->record)->ownerName == language) return true;
      node = node->next;
    } while (node != list->head);
    return false;
  }

  std::vector<std::string> Errors() const { return host_.errors(); }
  std::vector<std::string> Questions() const {
    std::vector<std::string> questions;
    for (const qvtest::ShownBox& box : host_.boxes()) {
      if (box.kind == QV_BOX_QUESTION) {
        EXPECT_EQ(box.caption, kQuestionCaption);
        questions.push_back(box.text);
      }
    }
    return questions;
  }

  qvtest::ScriptedHost host_;
  std::string profile_;
};

// ---------------------------------------------------------------- reading

TEST_F(StringFamilyTest, ReadsKeyValueLinesSplitAtTheFirstEquals) {
  WriteMessages("US", std::string(kHead) + kStrings + kRemove);
  OpenReadOnly();
  StringListPtr list = Read("US");
  EXPECT_EQ(
      Pairs(list.get()),
      (std::vector<std::string>{"Title|Pelham Setup", "Formula|A=B=C", "Padded | value with blanks",
                                "Old|Retired message", "|", "Quote|Say \"hi\""}));
  std::vector<StringRecord*> r = Records<StringRecord>(list.get());
  EXPECT_STREQ(r[1]->MessageKey, "Formula");
  EXPECT_STREQ(r[1]->MessageText, "A=B=C");
  EXPECT_EQ(r[3]->recordFlags, RECORD_IAO);
  EXPECT_EQ(r[0]->lineNumber, 6u);
  for (StringRecord* record : r) EXPECT_STREQ(record->LanguageCode, "US");
  EXPECT_TRUE(Errors().empty());
}

TEST_F(StringFamilyTest, TrailingBlanksTabsAndLineEndsAreCut) {
  WriteMessages("US", std::string(kHead) + "Key=text \t\f\r\n" + "Empty=\r\n" + "=only text\n");
  OpenReadOnly();
  EXPECT_EQ(Pairs(Read("US").get()),
            (std::vector<std::string>{"Key|text", "Empty|", "|only text"}));
}

TEST_F(StringFamilyTest, RemoveStringsAreTheirOwnSection) {
  WriteMessages("US", std::string(kHead) + kStrings + kRemove);
  OpenReadOnly();
  RemoveListPtr list = ReadRemove("US");
  std::vector<RemoveStringRecord*> r = Records<RemoveStringRecord>(list.get());
  ASSERT_EQ(r.size(), 1u);
  EXPECT_STREQ(r[0]->MessageKey, "RemoveTitle");
  EXPECT_STREQ(r[0]->MessageText, "Removing Pelham");
  EXPECT_STREQ(r[0]->LanguageCode, "US");
}

TEST_F(StringFamilyTest, MissingFilesAndSectionsReadAsEmptyLists) {
  WriteMessages("US", std::string(kHead) + kStrings);
  OpenReadOnly();
  EXPECT_EQ(Read("DE")->count, 0u);
  EXPECT_EQ(ReadRemove("DE")->count, 0u);
  EXPECT_EQ(ReadRemove("US")->count, 0u);
  EXPECT_TRUE(Errors().empty());
  EXPECT_TRUE(host_.boxes().empty());
}

TEST_F(StringFamilyTest, TheExampleFileReads) {
  WriteFileBytes(FileOf("US"), ReadFileBytes(std::string(QUORVEX_SOURCE_DIR) +
                                             "/examples/profile/LANGUAGE/setupUS.msg"));
  OpenReadOnly();
  StringListPtr list = Read("US");
  EXPECT_EQ(list->count, 4u);
  EXPECT_EQ(Pairs(list.get()).back(), "Formula|A=B=C");
  EXPECT_EQ(ReadRemove("US")->count, 2u);
}

TEST_F(StringFamilyTest, TooLongPartsAreReportedAndCut) {
  std::string key(300, 'k');
  std::string text(2100, 't');
  WriteMessages("US", std::string(kHead) + key + "=" + text + "\r\n");
  OpenReadOnly();
  StringListPtr list = Read("US");
  std::vector<StringRecord*> r = Records<StringRecord>(list.get());
  ASSERT_EQ(r.size(), 1u);
  EXPECT_EQ(std::string(r[0]->MessageKey), key.substr(0, 260));
  EXPECT_EQ(std::string(r[0]->MessageText), text.substr(0, 2048));
  ASSERT_EQ(Errors().size(), 2u);
  EXPECT_NE(Errors()[0].find("Line #6\nMessage key is too long: should not exceed 260 characters"),
            std::string::npos);
  EXPECT_NE(
      Errors()[1].find("Line #6\nMessage text is too long: should not exceed 2048 characters"),
      std::string::npos);
}

TEST_F(StringFamilyTest, GetFindsTheMessageByItsKey) {
  WriteMessages("US", std::string(kHead) + kStrings + kRemove);
  OpenReadOnly();
  StringRecord* found = nullptr;
  ASSERT_EQ(MPGetString("US", "Formula", &found), 1);
  StringPtr holder(found);
  EXPECT_STREQ(found->MessageText, "A=B=C");
  StringRecord* none = nullptr;
  EXPECT_EQ(MPGetString("US", "formula", &none), 0);
  EXPECT_EQ(MPGetString("US", "RemoveTitle", &none), 0);
  EXPECT_EQ(none, nullptr);
  RemoveStringRecord* removed = nullptr;
  ASSERT_EQ(MPGetRemoveString("US", "RemoveTitle", &removed), 1);
  EXPECT_STREQ(removed->MessageText, "Removing Pelham");
  MPFreeRemoveString(removed);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(StringFamilyTest, ReadingNeedsAnOpenProfile) {
  StringList* list = nullptr;
  EXPECT_EQ(MPGetStringCompleteList("US", &list), 0);
  RemoveStringList* remove = nullptr;
  EXPECT_EQ(MPGetRemoveStringCompleteList("US", &remove), 0);
  StringRecord* record = nullptr;
  EXPECT_EQ(MPGetString("US", "Title", &record), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{kNotOpen, kNotOpen, kNotOpen}));
}

TEST_F(StringFamilyTest, FindNodeWalksByKeyOrTakesTheNext) {
  WriteMessages("US", std::string(kHead) + kStrings);
  OpenReadOnly();
  StringListPtr list = Read("US");
  StringRecord* found = nullptr;
  list->current = nullptr;
  EXPECT_EQ(MPFindStringNode("", list.get(), &found), 1);  // the empty key is a key
  EXPECT_STREQ(found->MessageText, "");
  EXPECT_EQ(MPFindStringNode("Title", list.get(), &found), 0);
  int walked = 0;
  while (MPFindStringNode(nullptr, list.get(), &found)) ++walked;
  EXPECT_EQ(walked, 6);
}

// ---------------------------------------------------------------- writing

TEST_F(StringFamilyTest, PutReplacesTheMessageWithItsKeyAndKeepsEveryOtherByte) {
  WriteMessages("US", std::string(kHead) + kStrings + kRemove);
  OpenLocked();
  StringPtr message = NewMessage("US", "Formula", "x=\"y\"");
  ASSERT_EQ(MPPutString(message.get()), 1);
  StringPtr added = NewMessage("US", "Added", "new one");
  ASSERT_EQ(MPPutString(added.get()), 1);
  // The comment and the blank line of the section go; a line without "="
  // comes back as "=".
  EXPECT_EQ(Messages("US"), std::string(kHead) +
                                "Title=Pelham Setup\r\n"
                                "Formula=x=\"y\"\r\n"
                                "Padded = value with blanks\r\n"
                                ";IAO;Old=Retired message\r\n"
                                "=\r\n"
                                "Quote=Say \"hi\"\r\n"
                                "Added=new one\r\n" +
                                kRemove);
  EXPECT_TRUE(Errors().empty());
}

// A put of one message streams the section; a put of a list reads it into
// a list. A put must leave what a list put of the message twice leaves (the
// second finds the first and changes nothing), with the same result and
// reports, whatever the section holds.
TEST_F(StringFamilyTest, APutLeavesWhatAListPutLeavesWhateverTheSectionHolds) {
  const std::string files[] = {
      std::string(kHead) + kStrings + kRemove,
      // A comment that goes on into a message.
      std::string(kHead) + "; note \\\nTitle=One\r\nB=2\r\n" + kRemove,
      std::string(kHead) + "Title=One\r\n; note \\\n" + kRemove,
      // A message that goes on in the next line.
      std::string(kHead) + "Title=One \\\r\n more\r\n" + kRemove,
      // The section last, without a line end; twice; missing.
      std::string(kHead) + "Title=One",
      std::string(kHead) + "Title=One\r\n" + kRemove + "[Strings]\r\nTitle=Again\r\n",
      std::string("\n[SourceSafe]\n$Header$\n") + kRemove,
      // A key too long for the record, and lines the rewrite cannot copy.
      std::string(kHead) + std::string(300, 'k') + "=long\r\n" + kRemove,
      std::string(6000, 'h') + "\n" + kHead + "Title=One\r\n" + kRemove,
      std::string(kHead) + "Title=One\r\n;" + std::string(6000, 'c') + "\r\n" + kRemove,
  };
  for (const std::string& file : files) {
    for (const char* key : {"Title", "Added"}) {
      SCOPED_TRACE(key + (" " + file.substr(0, 200)));
      StringPtr message = NewMessage("US", key, "Put");

      WriteMessages("US", file);
      OpenLocked();
      const int put = MPPutString(message.get());
      const std::string streamed = Messages("US");
      const std::vector<std::string> streamed_errors = Errors();
      CloseMasterProfile();
      host_.Clear();

      WriteMessages("US", file);
      OpenLocked();
      StringList* list = nullptr;
      ASSERT_EQ(MPNewStringList(&list), 1);
      StringListPtr owned(list);
      for (int i = 0; i < 2; ++i) {
        StringRecord* copy = nullptr;
        ASSERT_EQ(MPCopyString(&copy, message.get()), 1);
        ASSERT_EQ(MPAppendString(list, copy), 1);
      }
      EXPECT_EQ(put, MPPutStringCompleteList(list));
      EXPECT_EQ(streamed, Messages("US"));
      EXPECT_EQ(streamed_errors, Errors());
      CloseMasterProfile();
      host_.Clear();
    }
  }
}

TEST_F(StringFamilyTest, APutReplacesTheFirstMessageWithItsKeyOnly) {
  WriteMessages("US", std::string(kHead) + "Title=One\r\nB=2\r\nTitle=Two\r\n" + kRemove);
  OpenLocked();
  StringPtr message = NewMessage("US", "Title", "Put");
  ASSERT_EQ(MPPutString(message.get()), 1);
  EXPECT_EQ(Messages("US"), std::string(kHead) + "Title=Put\r\nB=2\r\nTitle=Two\r\n" + kRemove);
  EXPECT_TRUE(Errors().empty());
}

TEST_F(StringFamilyTest, PutCompleteListOfWhatWasReadKeepsTheWrittenForm) {
  const std::string written = std::string(kHead) +
                              "Title=Pelham Setup\r\n"
                              "Formula=A=B=C\r\n"
                              ";IAO;Old=Retired message\r\n"
                              "=\r\n"
                              "=\r\n" +
                              kRemove;
  WriteMessages("US", written);
  OpenLocked();
  StringListPtr list = Read("US");
  ASSERT_EQ(MPPutStringCompleteList(list.get()), 1);
  // Lines with one key pair up in order: nothing is added twice.
  EXPECT_EQ(Messages("US"), written);
}

TEST_F(StringFamilyTest, PutCompleteListMergesIntoTheStoredMessages) {
  WriteMessages("US", std::string(kHead) + "A=1\r\nB=2\r\n" + kRemove);
  OpenLocked();
  StringList* list = nullptr;
  ASSERT_EQ(MPNewStringList(&list), 1);
  StringListPtr holder(list);
  MPAppendString(list, NewMessage("US", "C", "3").release());
  MPAppendString(list, NewMessage("US", "A", "one").release());
  ASSERT_EQ(MPPutStringCompleteList(list), 1);
  EXPECT_EQ(Messages("US"), std::string(kHead) + "A=one\r\nB=2\r\nC=3\r\n" + kRemove);
  StringList* empty = nullptr;
  MPNewStringList(&empty);
  StringListPtr empty_holder(empty);
  EXPECT_EQ(MPPutStringCompleteList(empty), 1);
}

TEST_F(StringFamilyTest, RemoveStringsAreWrittenInTheirSectionOnly) {
  WriteMessages("US", std::string(kHead) + "A=1\r\n" + kRemove);
  OpenLocked();
  RemoveStringRecord* record = nullptr;
  ASSERT_EQ(MPNewRemoveString(&record), 1);
  snprintf(record->LanguageCode, sizeof record->LanguageCode, "US");
  snprintf(record->MessageKey, sizeof record->MessageKey, "RemoveDone");
  snprintf(record->MessageText, sizeof record->MessageText, "Done.");
  ASSERT_EQ(MPPutRemoveString(record), 1);
  MPFreeRemoveString(record);
  EXPECT_EQ(Messages("US"), std::string(kHead) + "A=1\r\n" + kRemove + "RemoveDone=Done.\r\n");
  ASSERT_EQ(MPDeleteRemoveString("US", "RemoveTitle"), 1);
  EXPECT_EQ(Messages("US"), std::string(kHead) + "A=1\r\n[Remove Strings]\r\nRemoveDone=Done.\r\n");
}

TEST_F(StringFamilyTest, DeleteRemovesEveryMessageWithTheKey) {
  WriteMessages("US", std::string(kHead) + "A=1\r\nB=2\r\nA=3\r\n" + kRemove);
  OpenLocked();
  EXPECT_EQ(MPDeleteString("US", "A"), 1);
  EXPECT_EQ(Messages("US"), std::string(kHead) + "B=2\r\n" + kRemove);
  EXPECT_EQ(MPDeleteString("US", "A"), 0);
  EXPECT_EQ(MPDeleteString("DE", "A"), 0);
  EXPECT_TRUE(Errors().empty());
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_FALSE(qvtest::PathExists(FileOf("DE")));
}

TEST_F(StringFamilyTest, ChangingNeedsALockedProfile) {
  const std::string bytes = std::string(kHead) + "A=1\r\n";
  WriteMessages("US", bytes);
  OpenReadOnly();
  StringPtr message = NewMessage("US", "B", "2");
  EXPECT_EQ(MPPutString(message.get()), 0);
  EXPECT_EQ(MPDeleteString("US", "A"), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{kNotLocked, kNotLocked}));
  EXPECT_EQ(Messages("US"), bytes);
}

// ---------------------------------------------------------------- a missing file

TEST_F(StringFamilyTest, AMissingFileIsCreatedWhenTheAnswerIsYes) {
  OpenLocked();
  host_.AnswerBoxes({true, true});  // see the next box; create
  StringPtr message = NewMessage("DE", "Title", "Pelham-Setup");
  ASSERT_EQ(MPPutString(message.get()), 1);
  EXPECT_EQ(Errors(), std::vector<std::string>{EnginePath("DE") + " cannot be found or opened!"});
  EXPECT_EQ(Questions(), std::vector<std::string>{kCreateThisFile});
  EXPECT_EQ(ReadFileBytes(profile_ + "/LANGUAGE/SETUPDE.MSG"),
            "\n[SourceSafe]\n$Header$\n\n[Strings]\nTitle=Pelham-Setup\r\n");
  EXPECT_TRUE(Listed("DE"));
  // The catalogue finds it now.
  StringRecord* found = nullptr;
  ASSERT_EQ(MPGetString("DE", "Title", &found), 1);
  MPFreeString(found);
}

TEST_F(StringFamilyTest, ANewFileWhoseFirstWriteFailsIsNotMadeAndIsOfferedAgain) {
  OpenLocked();
  host_.AnswerBoxes({true, true});
  StringPtr message = NewMessage("DE", "Title", "Pelham-Setup");
  qv::SetWriteBudget(0);  // the disk is full
  EXPECT_EQ(MPPutString(message.get()), 0);
  qv::SetWriteBudget(-1);
  // The header was never written on its own: there is no file at all.
  EXPECT_FALSE(qvtest::PathExists(profile_ + "/LANGUAGE/SETUPDE.MSG"));
  EXPECT_FALSE(Listed("DE"));
  host_.AnswerBoxes({true, true});
  ASSERT_EQ(MPPutString(message.get()), 1);
  EXPECT_EQ(Questions(), (std::vector<std::string>{kCreateThisFile, kCreateThisFile}));
  EXPECT_EQ(ReadFileBytes(profile_ + "/LANGUAGE/SETUPDE.MSG"),
            "\n[SourceSafe]\n$Header$\n\n[Strings]\nTitle=Pelham-Setup\r\n");
}

TEST_F(StringFamilyTest, ANewFileGetsTheRemoveStringsSectionWhenItIsWritten) {
  OpenLocked();
  host_.AnswerBoxes({true, true});
  RemoveStringRecord* record = nullptr;
  ASSERT_EQ(MPNewRemoveString(&record), 1);
  snprintf(record->LanguageCode, sizeof record->LanguageCode, "FR");
  snprintf(record->MessageKey, sizeof record->MessageKey, "Bye");
  snprintf(record->MessageText, sizeof record->MessageText, "Au revoir");
  ASSERT_EQ(MPPutRemoveString(record), 1);
  MPFreeRemoveString(record);
  EXPECT_EQ(ReadFileBytes(profile_ + "/LANGUAGE/SETUPFR.MSG"),
            "\n[SourceSafe]\n$Header$\n\n[Strings]\n[Remove Strings]\nBye=Au revoir\r\n");
}

TEST_F(StringFamilyTest, AnsweringNoChangesNothing) {
  OpenLocked();
  host_.AnswerBoxes({true, false});
  StringPtr message = NewMessage("DE", "Title", "Pelham-Setup");
  EXPECT_EQ(MPPutString(message.get()), 0);
  EXPECT_EQ(Questions(), std::vector<std::string>{kCreateThisFile});
  EXPECT_FALSE(qvtest::PathExists(profile_ + "/LANGUAGE/SETUPDE.MSG"));
  EXPECT_FALSE(qvtest::PathExists(FileOf("DE")));
  EXPECT_FALSE(Listed("DE"));
}

TEST_F(StringFamilyTest, ASilentProfileAsksNothingAndFails) {
  std::string log = host_.scratch().Join("quorvex.log");
  ASSERT_EQ(Open(OPEN_MASTER | OPEN_NO_VCS | OPEN_LOCK | OPEN_SILENT, log), 1);
  StringPtr message = NewMessage("DE", "Title", "Pelham-Setup");
  EXPECT_EQ(MPPutString(message.get()), 0);
  EXPECT_TRUE(host_.boxes().empty());
  EXPECT_FALSE(qvtest::PathExists(profile_ + "/LANGUAGE/SETUPDE.MSG"));
  ASSERT_EQ(CloseMasterProfile(), 1);
  EXPECT_NE(ReadFileBytes(log).find(EnginePath("DE") + " cannot be found or opened!"),
            std::string::npos);
}

// ---------------------------------------------------------------- Orvik

TEST_F(StringFamilyTest, SetupMessagesAreNotPartOfOrvik) {
  std::string database = host_.scratch().Join("shipping.orv");
  qvtest::MakeDatabase(database, qv::OrvikTableDefinition(qv::LoSchema()));
  ASSERT_EQ(qvtest::OpenProfileAt(database, OPEN_ORVIK | OPEN_NO_VCS | OPEN_LOCK), 1);

  StringList* list = nullptr;
  EXPECT_EQ(MPGetStringCompleteList("US", &list), 0);
  RemoveStringList* remove = nullptr;
  EXPECT_EQ(MPGetRemoveStringCompleteList("US", &remove), 0);
  StringRecord* record = nullptr;
  EXPECT_EQ(MPGetString("US", "Title", &record), 0);
  RemoveStringRecord* removed = nullptr;
  EXPECT_EQ(MPGetRemoveString("US", "Title", &removed), 0);
  StringPtr message = NewMessage("US", "Title", "x");
  EXPECT_EQ(MPPutString(message.get()), 0);
  EXPECT_EQ(Errors(), (std::vector<std::string>{"Setup Messages are not part of Orvik.",
                                                "Setup Messages are not part of Orvik.",
                                                "Alias Module Language is not a part of Orvik",
                                                "Alias Module Language is not a part of Orvik",
                                                "Setup Messages are not part of Orvik."}));
}

TEST_F(StringFamilyTest, FlagNamesDescribeNoBits) {
  StringFlagNames* table = nullptr;
  ASSERT_EQ(MPGetStringFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "String");
  EXPECT_EQ(table->flagMask, 0u);
  MPFreeFlagNames(table);
  RemoveStringFlagNames* remove = nullptr;
  ASSERT_EQ(MPGetRemoveStringFlagNames(&remove), 1);
  EXPECT_STREQ(remove->kindLabel, "Remove String");
  MPFreeFlagNames(remove);
}

TEST_F(StringFamilyTest, ListOperationsWorkOnMessages) {
  StringList* list = nullptr;
  ASSERT_EQ(MPNewStringList(&list), 1);
  StringRecord* a = NewMessage("US", "A", "1").release();
  StringRecord* b = NewMessage("US", "B", "2").release();
  EXPECT_EQ(MPAppendString(list, a), 1);
  EXPECT_EQ(MPAddStringAt(list, 1, b), 1);
  EXPECT_EQ(Pairs(list), (std::vector<std::string>{"B|2", "A|1"}));
  EXPECT_EQ(MPRemoveStringNode(list, b), 1);
  MPFreeString(b);
  EXPECT_EQ(MPSetStringNode(list, 1, NewMessage("US", "C", "3").release()), 1);
  EXPECT_EQ(Pairs(list), std::vector<std::string>{"C|3"});
  EXPECT_EQ(MPClearStringList(list), 1);
  EXPECT_EQ(list->count, 0u);
  EXPECT_EQ(MPFreeStringList(list), 1);
}

}  // namespace
