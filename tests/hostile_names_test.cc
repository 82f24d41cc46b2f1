// Record data that becomes a file name (a module's, product's, install's or
// group's FileName, a language code, the short name made from an owner's
// name and key) never reaches a file outside its folder: a separator, "..",
// a drive or a wildcard is refused with a message, and nothing anywhere is
// created, changed or deleted.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/location_profile.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

namespace fs = std::filesystem;

using qvtest::FlagLetters;
using qvtest::ReadFileBytes;
using qvtest::WriteFileBytes;

constexpr char kRefusal[] =
    " cannot name a profile file: it holds a separator, \"..\", a drive "
    "or a wildcard, which could reach files outside the profile's "
    "folders; nothing was opened or written.";

// Names that leave the folder they are joined to, one way each.
const std::vector<std::string> kHostileFileNames = {
    "../../escape.MO",
    "..\\..\\escape.MO",
    "../../../escape.MO",
    "/tmp/qvescape.MO",
    "C:escape.MO",
    "sub/escape.MO",
    "..",
    "*.MO",
    "escape?.MO",
    "a\\..\\b.MO",
    "../../victim.MO",
};

const std::vector<std::string> kHostileLanguages = {"../../x", "..\\..\\x", "C:x", "/tmp/x",
                                                    "*",       "E?",        "..",  "a/b"};

class HostileNamesTest : public ::testing::Test {
 protected:
  HostileNamesTest() : profile_(&host_) {}

  void SetUp() override {
    WriteFileBytes(profile_.dir() + "/modules/editor.mo",
                   "\n[Module]\n\"Text Editor\",\"8.0\",\"\",\"\",\"\",\"\",\"\",\"" +
                       FlagLetters("") + "\",\"\",,\r\n");
    WriteFileBytes(profile_.dir() + "/RES_US/pelhamEN.re",
                   "\n[SourceSafe]\n$Header$\n\n[Resources]\n\"IDS_A\",\"Text\",1,\r\n");
    // A module file beside the profile: the name that reaches it must not
    // rewrite it.
    WriteFileBytes(fs::path(profile_.dir()).parent_path().string() + "/victim.MO",
                   "\n[Module]\n\"Stranger\",\"1\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("") +
                       "\",\"\",,\r\n");
    ASSERT_EQ(profile_.Open(qvtest::kLockedOpen), 1);
    host_.Clear();
  }

  // Every file below the scratch folder and its parent's entries, with
  // their bytes: the temporary folder, where the engine may keep scratch
  // files, is left out.
  std::map<std::string, std::string> Snapshot() const {
    std::map<std::string, std::string> files;
    fs::path scratch = fs::path(profile_.dir()).parent_path();
    for (const auto& entry : fs::recursive_directory_iterator(scratch)) {
      std::string relative = fs::relative(entry.path(), scratch).string();
      if (relative.rfind("tmp", 0) == 0) continue;
      files[relative] = entry.is_regular_file() ? ReadFileBytes(entry.path().string()) : "<dir>";
    }
    for (const auto& entry : fs::directory_iterator(scratch.parent_path())) {
      // The folder is shared with everything else on the machine (other
      // tests, compilers): only names a hostile input could make count.
      const std::string name = entry.path().filename().string();
      bool could_be_made = name.find("escape") != std::string::npos ||
                           name.find("victim") != std::string::npos || name == "x" ||
                           name.rfind("x.", 0) == 0 || name == "b.MO";
      if (could_be_made) files["../" + name] = "";
    }
    return files;
  }

  // The run refused the name with the message that names it, and nothing
  // changed.
  void ExpectRefused(const std::string& name, const std::map<std::string, std::string>& before,
                     int result) {
    SCOPED_TRACE(name);
    EXPECT_EQ(result, 0);
    std::vector<std::string> errors = host_.errors();
    ASSERT_FALSE(errors.empty());
    EXPECT_EQ(errors.front(), name + kRefusal);
    EXPECT_EQ(Snapshot(), before);
    EXPECT_FALSE(fs::exists("/tmp/qvescape.MO"));
    host_.Clear();
  }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

TEST_F(HostileNamesTest, AModuleFileNameOutsideTheModulesFolderIsRefused) {
  for (const std::string& name : kHostileFileNames) {
    auto before = Snapshot();
    MORecord* record = nullptr;
    MPNewMO(&record);
    snprintf(record->row.Name, sizeof record->row.Name, "Stranger");
    snprintf(record->row.Version, sizeof record->row.Version, "1");
    snprintf(record->FileName, sizeof record->FileName, "%s", name.c_str());
    int result = MPPutMO(&record, nullptr);
    MPFreeMO(&record);
    ExpectRefused(name, before, result);
  }
}

TEST_F(HostileNamesTest, AProductInstallOrGroupFileNameOutsideItsFolderIsRefused) {
  for (const std::string& name : kHostileFileNames) {
    auto before = Snapshot();
    PRRecord* product = nullptr;
    MPNewPR(&product);
    snprintf(product->row.Name, sizeof product->row.Name, "Stranger");
    snprintf(product->row.Version, sizeof product->row.Version, "1");
    snprintf(product->FileName, sizeof product->FileName, "%s", name.c_str());
    int result = MPPutPR(&product, nullptr);
    MPFreePR(&product);
    ExpectRefused(name, before, result);

    DRRecord* install = nullptr;
    MPNewDR(&install);
    snprintf(install->row.Name, sizeof install->row.Name, "Stranger");
    snprintf(install->FileName, sizeof install->FileName, "%s", name.c_str());
    result = MPPutDR(&install, nullptr);
    MPFreeDR(&install);
    ExpectRefused(name, before, result);

    MGRecord* group = nullptr;
    MPNewMG(&group);
    snprintf(group->row.Name, sizeof group->row.Name, "Stranger");
    snprintf(group->row.Version, sizeof group->row.Version, "1");
    snprintf(group->FileName, sizeof group->FileName, "%s", name.c_str());
    result = MPPutMG(&group, nullptr);
    MPFreeMG(&group);
    ExpectRefused(name, before, result);
  }
}

TEST_F(HostileNamesTest, ANewFileWhoseShortNameWouldLeaveItsFolderIsNotMade) {
  // The short name takes five letters of the name and three of the key.
  const std::vector<std::pair<std::string, std::string>> keys = {
      {"../..", "1"}, {"ab/cd", "1"}, {"a\\b", "1"}, {"x:y", "1"}, {"Fine", "1/2"}, {". .x", "1"}};
  for (const auto& [name, version] : keys) {
    auto before = Snapshot();
    MORecord* record = nullptr;
    MPNewMO(&record);
    snprintf(record->row.Name, sizeof record->row.Name, "%s", name.c_str());
    snprintf(record->row.Version, sizeof record->row.Version, "%s", version.c_str());
    int result = MPPutMO(&record, nullptr);
    MPFreeMO(&record);
    ExpectRefused(version == "1" ? name : version, before, result);
  }
}

TEST_F(HostileNamesTest, ALanguageCodeThatWouldLeaveTheLanguageFoldersIsRefused) {
  for (const std::string& code : kHostileLanguages) {
    auto before = Snapshot();
    ResourceRecord* text = nullptr;
    MPNewResource(&text);
    snprintf(text->LanguageCode, sizeof text->LanguageCode, "%s", code.c_str());
    snprintf(text->ResourceName, sizeof text->ResourceName, "IDS_B");
    snprintf(text->Text, sizeof text->Text, "Hostile");
    host_.AnswerBoxes({true, true, true});  // yes to any offer to make the file
    ExpectRefused(code, before, MPPutResource(text));
    MPFreeResource(text);

    ResourceList* list = nullptr;
    ExpectRefused(code, before, MPGetResourceCompleteList(code.c_str(), &list));
    EXPECT_EQ(list, nullptr);
    ExpectRefused(code, before, MPDeleteResource(code.c_str(), "IDS_A"));

    StringRecord* message = nullptr;
    MPNewString(&message);
    snprintf(message->LanguageCode, sizeof message->LanguageCode, "%s", code.c_str());
    snprintf(message->MessageKey, sizeof message->MessageKey, "Title");
    snprintf(message->MessageText, sizeof message->MessageText, "Hostile");
    host_.AnswerBoxes({true, true, true});
    ExpectRefused(code, before, MPPutString(message));
    MPFreeString(message);
    StringList* strings = nullptr;
    ExpectRefused(code, before, MPGetStringCompleteList(code.c_str(), &strings));
    EXPECT_EQ(strings, nullptr);
  }
}

TEST_F(HostileNamesTest, PlainNamesStillWork) {
  MORecord* record = nullptr;
  MPNewMO(&record);
  snprintf(record->row.Name, sizeof record->row.Name, "Text Editor");
  snprintf(record->row.Version, sizeof record->row.Version, "8.0");
  snprintf(record->FileName, sizeof record->FileName, "editor.mo");
  EXPECT_EQ(MPPutMO(&record, nullptr), 1);
  MPFreeMO(&record);
  ResourceList* list = nullptr;
  ASSERT_EQ(MPGetResourceCompleteList("EN", &list), 1);
  EXPECT_EQ(list->count, 1u);
  MPFreeResourceList(list);
  EXPECT_TRUE(host_.errors().empty());
}

}  // namespace
