// The file catalogue: finding fixed and per-owner profile files, the global
// list of files that grows with every owner met, and the status words.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "core/state.h"
#include "platform/fs.h"
#include "profile/global_file_list.h"
#include "quorvex/quorvex.h"
#include "support/fake_ss.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

struct Listed {
  std::string name;
  std::string key;
  std::string kind;
  std::string path;
  uint32_t status;
  bool operator==(const Listed& other) const {
    return name == other.name && key == other.key && kind == other.kind && path == other.path &&
           status == other.status;
  }
};

std::ostream& operator<<(std::ostream& out, const Listed& e) {
  return out << "{" << e.name << "," << e.key << "," << e.kind << "," << e.path << "," << e.status
             << "}";
}

std::string ModuleFile(const std::vector<std::pair<std::string, std::string>>& owners) {
  std::string text = "; module file\r\n[Module]\r\n";
  for (const auto& [name, version] : owners) {
    text += "\"" + name + "\",\"" + version + "\",\"More\",Y\r\n";
  }
  return text + "\r\n[File Groups]\r\n\"FG\",\"1\"\r\n";
}

class CatalogueTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = profile_.path();
    snprintf(qv::State().profile_path, QV_PATH_SIZE, "%s", dir_.c_str());
    qv::State().profile_flags = OPEN_MASTER | OPEN_NO_VCS;
    qv::State().global_file_list = qv::NewGlobalFileList();
    ASSERT_NE(qv::State().global_file_list, nullptr);
  }

  // The profile path of a file as the catalogue builds it: the pattern's
  // folder plus the name found on disk.
  std::string ProfilePath(const std::string& folder, const std::string& name) const {
    return dir_ + "\\" + folder + "\\" + name;
  }

  QvFile Open(const char* name, const char* key, const char* kind, uint32_t mode = MODE_READ) {
    return OpenProfileFile(dir_.c_str(), name, key, kind, path_, mode);
  }

  static std::vector<Listed> Entries() {
    std::vector<Listed> out;
    RecordList* list = QvGlobalFileList();
    if (list == nullptr || list->head == nullptr) return out;
    RecordNode* node = list->head;
    do {
      auto* e = static_cast<ProfileFileEntry*>(node->record);
      out.push_back({e->ownerName, e->ownerKey, e->kind, e->path, e->status});
      node = node->next;
    } while (node != list->head);
    return out;
  }

  static std::string FirstLine(QvFile file) {
    char line[QV_LINE_SIZE];
    if (ReadProfileLine(file, line, sizeof line) == 0) return "<eof>";
    std::string text = line;
    if (!text.empty() && text.back() == '\r') text.pop_back();
    return text;
  }

  qvtest::ScriptedHost host_;
  qvtest::TempDir profile_;
  std::string dir_;
  char path_[QV_PATH_SIZE] = "";
};

// ---------------------------------------------------------------- kinds

TEST_F(CatalogueTest, UnknownKindIsReportedAndGivesNone) {
  EXPECT_EQ(Open("", "", "XYZ"), QV_NO_FILE);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Unsupported Master Profile file Type XYZ"});
  EXPECT_TRUE(Entries().empty());
}

TEST_F(CatalogueTest, KindComparesWithoutRegardToCase) {
  profile_.Write("ADS/adlist.ad", "[Ads]\r\n");
  QvFile file = Open("", "", "ad");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(std::string(path_), ProfilePath("ADS", "adlist.ad"));
  ASSERT_EQ(Entries().size(), 1u);
  EXPECT_EQ(Entries()[0].kind, "AD");
}

TEST_F(CatalogueTest, EveryFixedKindHasItsPath) {
  struct Case {
    const char* kind;
    const char* name;
    const char* path;
  };
  const Case cases[] = {
      {"LO", "", "\\locs\\vardo.lo"},       {"ILO", "", "\\locs\\icons.lo"},
      {"LA", "", "\\LANGUAGE\\pelham.la"},  {"RES", "US", "\\RES_US\\pelhamUS.re"},
      {"AD", "", "\\ADS\\adlist.ad"},       {"MSG", "DE", "\\LANGUAGE\\setupDE.msg"},
      {"DSI", "", "\\SSR\\DRKSSR.DSI"},     {"RAM", "", "\\REGADMIN\\REGADMIN.RAM"},
      {"OSDL", "", "\\LANGUAGE\\OsDoC.LA"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.kind);
    EXPECT_EQ(Open(c.name, "", c.kind), QV_NO_FILE);
    EXPECT_EQ(std::string(path_), dir_ + c.path);
  }
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(CatalogueTest, PerOwnerKindsSearchTheirPatterns) {
  struct Case {
    const char* kind;
    const char* pattern;
  };
  const Case cases[] = {{"MO", "\\modules\\*.mo"},
                        {"SSR", "\\SSR\\*.ssr"},
                        {"IN", "\\installs\\*.in"},
                        {"PR", "\\products\\*.pr"},
                        {"MG", "\\UIGroups\\*.MG"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.kind);
    EXPECT_EQ(Open("Nobody", "1.0", c.kind), QV_NO_FILE);
    EXPECT_EQ(std::string(path_), dir_ + c.pattern);
  }
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_TRUE(Entries().empty());
}

// ---------------------------------------------------------------- fixed files

TEST_F(CatalogueTest, MissingFixedFileGivesNoneWithTheFixedPath) {
  EXPECT_EQ(Open("", "", "LO"), QV_NO_FILE);
  EXPECT_EQ(std::string(path_), dir_ + "\\locs\\vardo.lo");
  EXPECT_TRUE(host_.errors().empty());
  EXPECT_TRUE(Entries().empty());
}

TEST_F(CatalogueTest, FixedFileIsFoundWhateverTheCaseOnDisk) {
  profile_.Write("Locs/VARDO.LO", "[Locations]\r\n\"Lodestar\",\"1\"\r\n");
  QvFile file = Open("", "", "LO");
  ASSERT_TRUE(QvFileIsOpen(file));
  EXPECT_EQ(std::string(QvParseFileName()), std::string(path_));
  EXPECT_EQ(QvParseLineNumber(), 0);
  EXPECT_EQ(FirstLine(file), "[Locations]");
  QvCloseFile(file);
  // The pattern's folder as written, the name as found.
  EXPECT_EQ(std::string(path_), ProfilePath("locs", "VARDO.LO"));
  EXPECT_EQ(Entries(), (std::vector<Listed>{{"", "", "LO", path_, 0}}));
}

TEST_F(CatalogueTest, NamedFixedFileIsListedUnderItsName) {
  profile_.Write("RES_US/pelhamDE.re", "[Resources]\r\n");
  QvFile file = Open("DE", "", "RES");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(Entries(),
            (std::vector<Listed>{{"DE", "", "RES", ProfilePath("RES_US", "pelhamDE.re"), 0}}));
  // Another name is another file.
  EXPECT_EQ(Open("FR", "", "RES"), QV_NO_FILE);
  EXPECT_EQ(std::string(path_), dir_ + "\\RES_US\\pelhamFR.re");
}

TEST_F(CatalogueTest, FixedFileThatCannotBeOpenedGivesTheFailedHandle) {
  qvtest::MakeDirs(profile_.Join("ADS"));
  qvtest::UnopenableFile unopenable(profile_.Join("ADS/adlist.ad"));
  QvFile file = Open("", "", "AD");
  EXPECT_EQ(file, QV_FAILED_FILE);
  std::string expected = ProfilePath("ADS", "adlist.ad");
  EXPECT_EQ(std::string(path_), expected);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Cannot open input file " + expected + "."});
  EXPECT_EQ(Entries(), (std::vector<Listed>{{"", "", "AD", expected, 0}}));
}

TEST_F(CatalogueTest, FailedHandleAfterCheckOutIsReportedAndReturned) {
  qvtest::MakeDirs(profile_.Join("ADS"));
  qvtest::UnopenableFile unopenable(profile_.Join("ADS/adlist.ad"));
  QvFile file = Open("", "", "AD", MODE_UPDATE);
  EXPECT_EQ(file, QV_FAILED_FILE);
  std::string expected = ProfilePath("ADS", "adlist.ad");
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{"Cannot open input file " + expected + ".",
                                                      "Cannot re-open input file " + expected +
                                                          " after Source Safe checkout."}));
}

TEST_F(CatalogueTest, FolderNamedLikeTheFixedFileIsPassedOver) {
  qvtest::MakeDirs(profile_.Join("ADS/adlist.ad"));
  EXPECT_EQ(Open("", "", "AD"), QV_NO_FILE);
  EXPECT_EQ(std::string(path_), dir_ + "\\ADS\\adlist.ad");
  EXPECT_TRUE(host_.errors().empty());
}

// ---------------------------------------------------------------- per-owner files

TEST_F(CatalogueTest, ModuleSearchScansInDirectoryOrderAndListsEveryModuleMet) {
  // Written out of order: the search follows the names, ignoring case.
  profile_.Write("modules/d.mo", ModuleFile({{"Delta", "4.0"}}));
  profile_.Write("modules/c.mo", ModuleFile({{"Gamma", "3.0"}}));
  profile_.Write("modules/B.mo", ModuleFile({{"Beta", "2.0"}, {"Beta2", "2.1"}}));
  profile_.Write("modules/a.MO", ModuleFile({{"Alpha", "1.0"}}));
  profile_.Write("modules/notes.txt", ModuleFile({{"Gamma", "3.0"}}));

  QvFile file = Open("Gamma", "3.0", "MO");
  ASSERT_TRUE(QvFileIsOpen(file));
  EXPECT_EQ(std::string(QvParseFileName()), ProfilePath("modules", "c.mo"));
  EXPECT_EQ(QvParseLineNumber(), 0);
  // Handed back at its start.
  EXPECT_EQ(FirstLine(file), "; module file");
  QvCloseFile(file);
  EXPECT_EQ(std::string(path_), ProfilePath("modules", "c.mo"));
  EXPECT_EQ(Entries(), (std::vector<Listed>{
                           {"Alpha", "1.0", "MO", ProfilePath("modules", "a.MO"), 0},
                           {"Beta", "2.0", "MO", ProfilePath("modules", "B.mo"), 0},
                           {"Beta2", "2.1", "MO", ProfilePath("modules", "B.mo"), 0},
                           {"Gamma", "3.0", "MO", ProfilePath("modules", "c.mo"), 0},
                       }));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(CatalogueTest, MatchStopsTheScanOfTheFile) {
  profile_.Write("modules/a.mo", ModuleFile({{"First", "1"}, {"Second", "1"}}));
  QvFile file = Open("First", "1", "MO");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  ASSERT_EQ(Entries().size(), 1u);
  EXPECT_EQ(Entries()[0].name, "First");
}

TEST_F(CatalogueTest, ListedOwnerIsOpenedWithoutSearching) {
  profile_.Write("modules/a.mo", ModuleFile({{"Alpha", "1.0"}}));
  profile_.Write("modules/b.mo", ModuleFile({{"Beta", "2.0"}}));
  QvFile file = Open("Beta", "2.0", "MO");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  ASSERT_EQ(Entries().size(), 2u);

  // Listed owners come straight from the list: nothing is added.
  for (const char* name : {"Alpha", "Beta"}) {
    SCOPED_TRACE(name);
    file = Open(name, name[0] == 'A' ? "1.0" : "2.0", "MO");
    ASSERT_TRUE(QvFileIsOpen(file));
    QvCloseFile(file);
    EXPECT_EQ(Entries().size(), 2u);
  }
  EXPECT_EQ(std::string(path_), ProfilePath("modules", "b.mo"));

  // Even when the file's identity changed since: the list is trusted.
  profile_.Write("modules/b.mo", ModuleFile({{"Other", "9"}}));
  file = Open("Beta", "2.0", "MO");
  EXPECT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(Entries().size(), 2u);
}

TEST_F(CatalogueTest, ListedFileThatCannotBeOpenedIsReportedAndTheSearchGoesOn) {
  profile_.Write("modules/a.mo", ModuleFile({{"Alpha", "1.0"}}));
  std::string stale = dir_ + "\\modules\\gone.mo";
  ASSERT_TRUE(qv::AddGlobalFileEntry("Alpha", "1.0", "MO", stale.c_str()));
  QvFile file = Open("Alpha", "1.0", "MO");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(std::string(path_), ProfilePath("modules", "a.mo"));
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Cannot open input file " + stale + "."});
  EXPECT_EQ(Entries().size(), 2u);
}

TEST_F(CatalogueTest, OwnersThatDifferOnlyInCaseAreDifferentOwners) {
  profile_.Write("modules/1.mo", ModuleFile({{"Foo", "1.0"}}));
  profile_.Write("modules/2.mo", ModuleFile({{"FOO", "1.0"}}));
  profile_.Write("modules/3.mo", ModuleFile({{"Bar", "V1"}}));

  QvFile file = Open("FOO", "1.0", "MO");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(std::string(path_), ProfilePath("modules", "2.mo"));

  // Listed as "Foo" and "FOO", neither is "foo".
  EXPECT_EQ(Open("foo", "1.0", "MO"), QV_NO_FILE);
  EXPECT_EQ(std::string(path_), dir_ + "\\modules\\*.mo");
  // The second key compares with regard to case too.
  EXPECT_EQ(Open("Bar", "v1", "MO"), QV_NO_FILE);

  file = Open("Foo", "1.0", "MO");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(std::string(path_), ProfilePath("modules", "1.mo"));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(CatalogueTest, MissingOwnerGivesThePatternAndListsEveryOwner) {
  profile_.Write("modules/a.mo", ModuleFile({{"Alpha", "1.0"}}));
  profile_.Write("modules/b.mo", "[File Groups]\r\n\"FG\",\"1\"\r\n");  // no identity
  profile_.Write("modules/c.mo", ModuleFile({{"Gamma", "3.0"}}));
  EXPECT_EQ(Open("Nobody", "1.0", "MO"), QV_NO_FILE);
  EXPECT_EQ(std::string(path_), dir_ + "\\modules\\*.mo");
  EXPECT_EQ(Entries(), (std::vector<Listed>{
                           {"Alpha", "1.0", "MO", ProfilePath("modules", "a.mo"), 0},
                           {"Gamma", "3.0", "MO", ProfilePath("modules", "c.mo"), 0},
                       }));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(CatalogueTest, WithoutSecondKeyOnlyTheNameIsRead) {
  profile_.Write("SSR/x1.ssr", "[Module]\r\n\"Core\",\"5.0\"\r\n");
  QvFile file = Open("Core", "", "SSR");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(Entries(), (std::vector<Listed>{{"Core", "", "SSR", ProfilePath("SSR", "x1.ssr"), 0}}));

  // Module groups are named by their name alone.
  profile_.Write("UIGroups/g.mg", "[Module Groups]\r\n\"Tools\"\r\n");
  file = Open("Tools", "", "MG");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(std::string(path_), ProfilePath("UIGroups", "g.mg"));
}

TEST_F(CatalogueTest, PerOwnerFileThatCannotBeOpenedIsPassedOver) {
  qvtest::MakeDirs(profile_.Join("products"));
  qvtest::UnopenableFile unopenable(profile_.Join("products/a.pr"));
  profile_.Write("products/b.pr", "[Product]\r\n\"Suite\",\"1\"\r\n");
  QvFile file = Open("Suite", "1", "PR");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(std::string(path_), ProfilePath("products", "b.pr"));
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Cannot open input file " +
                                                     ProfilePath("products", "a.pr") + "."});
}

TEST_F(CatalogueTest, MarkedIdentityRecordsCountInTheDefaultCommentMode) {
  profile_.Write("installs/a.in", "[Install]\r\n;IAO;\"Old\",\"1\"\r\n\"New\",\"1\"\r\n");
  QvFile file = Open("Old", "1", "IN");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(std::string(path_), ProfilePath("installs", "a.in"));
}

TEST_F(CatalogueTest, WorksWithoutTheGlobalList) {
  qv::FreeGlobalFileList(qv::State().global_file_list);
  qv::State().global_file_list = nullptr;
  profile_.Write("modules/a.mo", ModuleFile({{"Alpha", "1.0"}}));
  profile_.Write("ADS/adlist.ad", "[Ads]\r\n");
  QvFile file = Open("Alpha", "1.0", "MO");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  file = Open("", "", "AD");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_EQ(QvGlobalFileList(), nullptr);
  EXPECT_TRUE(host_.errors().empty());
}

// ---------------------------------------------------------------- update mode

TEST_F(CatalogueTest, UpdateWithoutVersionControlMakesTheFileWritable) {
  std::string disk = profile_.Write("ADS/adlist.ad", "[Ads]\r\n");
  ASSERT_TRUE(qv::SetReadOnly(disk, true));
  QvFile file = Open("", "", "AD", MODE_UPDATE);
  ASSERT_TRUE(QvFileIsOpen(file));
  EXPECT_EQ(FirstLine(file), "[Ads]");
  QvCloseFile(file);
  EXPECT_FALSE(qv::IsReadOnly(disk));
  EXPECT_EQ(std::string(QvParseFileName()), ProfilePath("ADS", "adlist.ad"));
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(CatalogueTest, UpdateChecksTheFileOutAndMarksIt) {
  qvtest::FakeSs ss;
  qv::State().profile_flags = OPEN_MASTER;  // version control on
  std::string disk = profile_.Write("modules/a.mo", ModuleFile({{"Alpha", "1.0"}}));
  ASSERT_TRUE(qv::SetReadOnly(disk, true));
  QvFile file = Open("Alpha", "1.0", "MO", MODE_UPDATE);
  ASSERT_TRUE(QvFileIsOpen(file));
  EXPECT_EQ(FirstLine(file), "; module file");
  QvCloseFile(file);
  std::vector<std::string> commands = ss.CommandLines();
  ASSERT_FALSE(commands.empty());
  EXPECT_EQ(commands.back(), "ss checkout a.mo");
  EXPECT_EQ(GetFileStatus(path_), FS_CHECKED_OUT);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(CatalogueTest, UpdateOfAFileAlreadyCheckedOutRunsNoVersionControl) {
  qvtest::FakeSs ss;
  qv::State().profile_flags = OPEN_MASTER;  // version control on
  std::string disk = profile_.Write("modules/a.mo", ModuleFile({{"Alpha", "1.0"}}));
  QvFile file = Open("Alpha", "1.0", "MO");
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  ASSERT_EQ(SetFileStatusBits(path_, FS_CHECKED_OUT), 1);
  ASSERT_TRUE(qv::SetReadOnly(disk, true));

  file = Open("Alpha", "1.0", "MO", MODE_UPDATE);
  ASSERT_TRUE(QvFileIsOpen(file));
  QvCloseFile(file);
  EXPECT_TRUE(ss.CommandLines().empty());
  EXPECT_TRUE(qv::IsReadOnly(disk));  // nothing touched it
  EXPECT_TRUE(host_.boxes().empty());
}

// ---------------------------------------------------------------- status words

TEST_F(CatalogueTest, StatusStartsAtZeroAndTakesBits) {
  profile_.Write("ADS/adlist.ad", "[Ads]\r\n");
  QvCloseFile(Open("", "", "AD"));
  std::string path = path_;
  EXPECT_EQ(GetFileStatus(path.c_str()), 0u);
  EXPECT_EQ(SetFileStatusBits(path.c_str(), FS_CHECKED_OUT | 0x1u), 1);
  EXPECT_EQ(GetFileStatus(path.c_str()), FS_CHECKED_OUT | 0x1u);
  EXPECT_EQ(ClearFileStatusBits(path.c_str(), 0x1u), 1);
  EXPECT_EQ(GetFileStatus(path.c_str()), FS_CHECKED_OUT);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(CatalogueTest, StatusPathComparesWithoutRegardToCase) {
  ASSERT_TRUE(qv::AddGlobalFileEntry("M", "1", "MO", "C:\\MP\\Modules\\abc.mo"));
  EXPECT_EQ(SetFileStatusBits("c:\\mp\\MODULES\\ABC.MO", FS_CHECKED_OUT), 1);
  EXPECT_EQ(GetFileStatus("C:\\MP\\Modules\\abc.mo"), FS_CHECKED_OUT);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(CatalogueTest, StatusOfAnUnlistedFileIsReported) {
  EXPECT_EQ(GetFileStatus("C:\\MP\\x.mo"), 0u);
  EXPECT_EQ(SetFileStatusBits("C:\\MP\\x.mo", FS_CHECKED_OUT), 0);
  EXPECT_EQ(ClearFileStatusBits("C:\\MP\\x.mo", FS_CHECKED_OUT), 0);
  const std::string message = "Can't find C:\\MP\\x.mo file in global list of files.";
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{message, message, message}));
}

TEST_F(CatalogueTest, StatusWithoutAListIsReported) {
  qv::FreeGlobalFileList(qv::State().global_file_list);
  qv::State().global_file_list = nullptr;
  EXPECT_EQ(GetFileStatus("a.mo"), 0u);
  EXPECT_EQ(SetFileStatusBits("a.mo", 1), 0);
  EXPECT_EQ(host_.errors().size(), 2u);
}

TEST_F(CatalogueTest, StatusFollowsTheFirstEntryOfAPath) {
  ASSERT_TRUE(qv::AddGlobalFileEntry("A", "1", "MO", "p.mo"));
  ASSERT_TRUE(qv::AddGlobalFileEntry("B", "1", "MO", "p.mo"));
  EXPECT_EQ(SetFileStatusBits("p.mo", 4), 1);
  std::vector<Listed> entries = Entries();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0].status, 4u);
  EXPECT_EQ(entries[1].status, 0u);
}

// ---------------------------------------------------------------- the list itself

TEST_F(CatalogueTest, EntriesAreRemovedByOwnerAndKind) {
  ASSERT_TRUE(qv::AddGlobalFileEntry("A", "1", "MO", "a.mo"));
  ASSERT_TRUE(qv::AddGlobalFileEntry("B", "1", "MO", "b.mo"));
  ASSERT_TRUE(qv::AddGlobalFileEntry("B", "1", "SSR", "b.ssr"));
  EXPECT_FALSE(qv::RemoveGlobalFileEntry("b", "1", "MO"));
  EXPECT_TRUE(qv::RemoveGlobalFileEntry("B", "1", "mo"));
  EXPECT_EQ(Entries(),
            (std::vector<Listed>{{"A", "1", "MO", "a.mo", 0}, {"B", "1", "SSR", "b.ssr", 0}}));
  EXPECT_TRUE(qv::RemoveGlobalFileEntry("A", "1", "MO"));
  EXPECT_TRUE(qv::RemoveGlobalFileEntry("B", "1", "SSR"));
  RecordList* list = QvGlobalFileList();
  EXPECT_EQ(list->count, 0u);
  EXPECT_EQ(list->head, nullptr);
  EXPECT_EQ(list->tail, nullptr);
  EXPECT_FALSE(qv::RemoveGlobalFileEntry("A", "1", "MO"));
}

TEST_F(CatalogueTest, ListKeepsItsRing) {
  for (const char* p : {"1", "2", "3"}) ASSERT_TRUE(qv::AddGlobalFileEntry(p, "", "AD", p));
  RecordList* list = QvGlobalFileList();
  EXPECT_EQ(list->count, 3u);
  EXPECT_EQ(list->tail->next, list->head);
  EXPECT_EQ(list->head->prev, list->tail);
  EXPECT_EQ(list->current, nullptr);
  EXPECT_EQ(list->reserved, 0u);
}

TEST_F(CatalogueTest, LongTextsAreCutToTheirFields) {
  std::string name(60, 'n');
  std::string key(20, 'k');
  std::string path(400, 'p');
  ASSERT_TRUE(qv::AddGlobalFileEntry(name.c_str(), key.c_str(), "OSDLX", path.c_str()));
  std::vector<Listed> entries = Entries();
  ASSERT_EQ(entries.size(), 1u);
  EXPECT_EQ(entries[0].name, std::string(40, 'n'));
  EXPECT_EQ(entries[0].key, std::string(10, 'k'));
  EXPECT_EQ(entries[0].kind, "OSDL");
  EXPECT_EQ(entries[0].path, std::string(260, 'p'));
}

}  // namespace
