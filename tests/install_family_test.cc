// Installs: known by their name alone, a new install's file, birth with
// three texts of its own, every section an install's file holds, install
// modules refused in a Master Profile, and the entries that deleting a
// module or an Ad takes out of every install and product.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/fake_ss.h"
#include "support/location_profile.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::FlagLetters;
using qvtest::ReadFileBytes;
using qvtest::WriteFileBytes;

constexpr char kInstallTemplate[] =
    "\n[SourceSafe]\n$Header$\n\n[Install]\n[Install Products]\n[Shipping Languages]\n"
    "[Interface Languages]\n[Alias Module Language]\n[Install Ads]\n[Shipping Media]\n"
    "[Archives]\n[Archive Module Languages]\n[Driver Module Groups]\n[Driver OSDLs]";

std::string InstallLine(const std::string& name, const std::string& a = "",
                        const std::string& b = "", const std::string& c = "") {
  return "\"" + name + "\",\"" + a + "\",\"" + b + "\",\"" + c +
         "\",\"t1\",\"t2\",\"t3\",4,\"t4\",\"t5\",\"t6\",5,6,7,\"" + FlagLetters("YNNNNNNNNNNNY") +
         "\",\"t7\",\"Second\",\"2\",\"t8\",\"t9\",\"t10\"\r\n";
}

// Every section of an install's file, as a test profile writes it.
std::string Sections(const std::string& module, const std::string& ad) {
  return "[Install Products]\n\"Office\",\"9\"\r\n"
         "[Shipping Languages]\n\"US\"\r\n"
         "[Interface Languages]\n\"US\",\"English\",\"Setup\",\"extra\"\r\n\"DE\",\"German\","
         "\"Setup\"\r\n"
         "[Alias Module Language]\n\"US\",\"" +
         module + "\",\"1\",\"UK\"\r\n\"US\",\"Viewer\",\"1\",\"UK\"\r\n" + "[Install Ads]\n" + ad +
         ",0,2,Y,\"Spring\"\r\n9,0,0,N,\r\n" +
         "[Shipping Media]\n1,\"Disk 1\"\r\n"
         "[Archives]\n\"Main\",1,\"C:\\\\ARC\",2,\"cab\"\r\n"
         "[Archive Module Languages]\n\"Main\",\"" +
         module + "\",\"1\",\"US\"\r\n" + "[Driver Module Groups]\n\"Tools\",\"1\",\"" +
         FlagLetters("Y") + "\"\r\n" + "[Driver OSDLs]\n\"US\",\"UK\"\r\n";
}

class InstallFamilyTest : public ::testing::Test {
 protected:
  InstallFamilyTest() : profile_(&host_) {}

  std::string InstallFile(const std::string& name) const {
    return profile_.dir() + "/installs/" + name;
  }
  std::string ProductFile(const std::string& name) const {
    return profile_.dir() + "/products/" + name;
  }
  void OpenLocked() { ASSERT_EQ(profile_.Open(qvtest::kLockedOpen), 1); }

  DRRecord* NewInstall(const char* name) {
    DRRecord* install = nullptr;
    MPNewDR(&install);
    snprintf(install->row.Name, sizeof install->row.Name, "%s", name);
    snprintf(install->row.text7, sizeof install->row.text7, "seven");
    return install;
  }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

TEST_F(InstallFamilyTest, AnInstallIsKnownByItsNameAlone) {
  WriteFileBytes(InstallFile("net.in"), "\n[Install]\n" + InstallLine("Net", "A", "B", "C"));
  WriteFileBytes(InstallFile("local.in"), "\n[Install]\n" + InstallLine("Local"));
  WriteFileBytes(InstallFile("none.in"), "\n[Install Products]\n\"Office\",\"9\"\r\n");
  OpenLocked();
  DRList* list = nullptr;
  ASSERT_EQ(MPGetDRCompleteList(&list), 1);
  ASSERT_EQ(list->count, 2u);
  DRRecord* found = nullptr;
  ASSERT_EQ(MPFindDRNode("Net", nullptr, list, &found), 1);
  EXPECT_STREQ(found->row.TextIdA, "A");
  EXPECT_STREQ(found->row.TextIdC, "C");
  EXPECT_STREQ(found->row.text2, "t2");
  EXPECT_EQ(found->row.number1, 4);
  EXPECT_EQ(found->row.number4, 7);
  EXPECT_EQ(found->row.Flags, DR_NET_ALLOWS_LOCAL | DR_CURRENT_LOCATIONS_ONLY);
  EXPECT_STREQ(found->row.SecondVersion, "2");
  EXPECT_STREQ(found->row.text10, "t10");
  EXPECT_EQ(MPFindDRNode("net", nullptr, list, &found), 0);
  ASSERT_EQ(MPFindDRNode(nullptr, "LOCAL.IN", list, &found), 1);
  EXPECT_STREQ(found->row.Name, "Local");
  MPFreeDRList(list);
  DRRecord* net = nullptr;
  ASSERT_EQ(MPGetDR("Net", &net), 1);
  EXPECT_STREQ(net->FileName, "net.in");
  MPFreeDR(&net);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(InstallFamilyTest, ANewInstallGetsTheInstallTemplateUnderItsCutName) {
  qvtest::FakeSs ss;
  WriteLastProfile(profile_.dir().c_str(), OPEN_MASTER | OPEN_LOCK, "Proj");
  ASSERT_EQ(profile_.Open(OPEN_MASTER | OPEN_LOCK), 1);
  ss.ClearCalls();
  DRRecord* install = NewInstall("Network Install");
  ASSERT_EQ(MPPutDR(&install, nullptr), 1);
  EXPECT_STREQ(install->FileName, "NetworkI.IN");
  std::string expected(kInstallTemplate);
  expected.replace(expected.find("[Install]\n") + 10, 0,
                   // Optional fields left empty are written empty.
                   "\"Network Install\",\"\",\"\",\"\",\"\",\"\",,,,,,,,,\"" + FlagLetters("") +
                       "\",\"seven\",\"\",\"\",\"\",\"\",\"\"\r\n");
  EXPECT_EQ(ReadFileBytes(InstallFile("NetworkI.IN")), expected + "\n");
  std::vector<std::string> lines = ss.CommandLines();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "ss add NetworkI.IN -c\"Initial Revision.\"");
  MPFreeDR(&install);
  ASSERT_EQ(CloseMasterProfile(), 1);
}

TEST_F(InstallFamilyTest, ABornInstallGetsItsThreeTextsAnewAndKeepsTheSections) {
  WriteFileBytes(profile_.dir() + "/RES_US/pelhamEN.re",
                 "\n[SourceSafe]\n$Header$\n\n[Resources]\n\"IDS_A\",\"Net\",1,\r\n"
                 "\"IDS_B\",\"Network\",2,\r\n\"IDS_C\",\"Network setup\",3,\r\n");
  WriteFileBytes(
      InstallFile("net.in"),
      "\n[Install]\n" + InstallLine("Net", "IDS_A", "IDS_B", "IDS_C") + Sections("Editor", "3"));
  OpenLocked();
  DRRecord* parent = nullptr;
  ASSERT_EQ(MPGetDR("Net", &parent), 1);
  DRRecord* child = NewInstall("Net Two");
  ASSERT_EQ(MPPutDR(&child, parent), 1);
  for (const char* id : {child->row.TextIdA, child->row.TextIdB, child->row.TextIdC}) {
    EXPECT_NE(std::string(id).rfind("MP_GEN_", 0), std::string::npos) << id;
  }
  EXPECT_EQ(ReadFileBytes(InstallFile(child->FileName)),
            "\n[Install]\n" +
                InstallLine("Net Two", child->row.TextIdA, child->row.TextIdB, child->row.TextIdC) +
                Sections("Editor", "3"));
  MPFreeDR(&child);
  DRRecord* orphan = NewInstall("Orphan");
  DRRecord* ghost = NewInstall("Ghost");
  EXPECT_EQ(MPPutDR(&orphan, ghost), 0);
  MPFreeDR(&ghost);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Parent Driver Could Not be found to birth Child."});
  MPFreeDR(&orphan);
  MPFreeDR(&parent);
}

TEST_F(InstallFamilyTest, EverySectionOfAnInstallReadsIntoItsKind) {
  WriteFileBytes(InstallFile("net.in"),
                 "\n[Install]\n" + InstallLine("Net") + Sections("Editor", "3"));
  OpenLocked();
  DPList* dp = nullptr;
  ASSERT_EQ(MPGetDPCompleteList("Net", &dp, 0), 1);
  ASSERT_EQ(dp->count, 1u);
  EXPECT_STREQ(static_cast<DPRecord*>(dp->head->record)->row.InstallName, "Net");
  EXPECT_STREQ(static_cast<DPRecord*>(dp->head->record)->row.ProductVersion, "9");
  MPFreeDPList(dp);
  ILAList* ila = nullptr;
  ASSERT_EQ(MPGetILACompleteList("Net", &ila, 0), 1);
  ASSERT_EQ(ila->count, 2u);
  EXPECT_STREQ(static_cast<ILARecord*>(ila->head->record)->row.text3, "extra");
  EXPECT_STREQ(static_cast<ILARecord*>(ila->tail->record)->row.text3, "");
  MPFreeILAList(ila);
  DAList* da = nullptr;
  ASSERT_EQ(MPGetDACompleteList("Net", &da, 0), 1);
  ASSERT_EQ(da->count, 2u);
  auto* ad = static_cast<DARecord*>(da->head->record);
  EXPECT_EQ(ad->row.AdId, 3u);
  EXPECT_EQ(ad->row.number2, 2u);
  EXPECT_EQ(ad->row.Flags, DA_FLAG);
  EXPECT_STREQ(ad->row.text1, "Spring");
  MPFreeDAList(da);
  ARList* ar = nullptr;
  ASSERT_EQ(MPGetARCompleteList("Net", &ar, 0), 1);
  EXPECT_STREQ(static_cast<ARRecord*>(ar->head->record)->row.Path, "C:\\\\ARC");
  MPFreeARList(ar);
  SMList* sm = nullptr;
  ASSERT_EQ(MPGetSMCompleteList("Net", &sm, 0), 1);
  EXPECT_STREQ(static_cast<SMRecord*>(sm->head->record)->row.MediaName, "Disk 1");
  MPFreeSMList(sm);
  DSLAList* dsla = nullptr;
  ASSERT_EQ(MPGetDSLACompleteList("Net", &dsla, 0), 1);
  EXPECT_STREQ(static_cast<DSLARecord*>(dsla->head->record)->row.LanguageCode, "US");
  MPFreeDSLAList(dsla);
  DODLList* dodl = nullptr;
  ASSERT_EQ(MPGetDODLCompleteList("Net", &dodl, 0), 1);
  EXPECT_STREQ(static_cast<DODLRecord*>(dodl->head->record)->row.DocLanguageCode, "UK");
  MPFreeDODLList(dodl);
  DMGList* dmg = nullptr;
  ASSERT_EQ(MPGetDMGCompleteList("Net", &dmg, 0), 1);
  EXPECT_EQ(static_cast<DMGRecord*>(dmg->head->record)->row.Flags, 0x80000000u);
  MPFreeDMGList(dmg);
  AMLList* aml = nullptr;
  ASSERT_EQ(MPGetAMLCompleteList("Net", &aml, 0), 1);
  EXPECT_STREQ(static_cast<AMLRecord*>(aml->head->record)->row.AliasLanguageCode, "UK");
  MPFreeAMLList(aml);
  AMLAList* amla = nullptr;
  ASSERT_EQ(MPGetAMLACompleteList("Net", &amla, 0), 1);
  EXPECT_STREQ(static_cast<AMLARecord*>(amla->head->record)->row.ModuleName, "Editor");
  MPFreeAMLAList(amla);
  EXPECT_TRUE(host_.errors().empty());
  DPList* none = nullptr;
  EXPECT_EQ(MPGetDPCompleteList("Gone", &none, 0), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{
                                "File associated with install Gone cannot be found or opened!"});
  MPFreeDPList(none);
}

TEST_F(InstallFamilyTest, InstallModulesAreRefusedInAMasterProfile) {
  WriteFileBytes(InstallFile("net.in"), "\n[Install]\n" + InstallLine("Net"));
  OpenLocked();
  const std::string refusal = "Driver Module is not explicitly a part of the Master Profile";
  DMList* list = nullptr;
  EXPECT_EQ(MPGetDMCompleteList("Net", &list, 0), 0);
  EXPECT_EQ(list, nullptr);
  DMRecord* dm = nullptr;
  MPNewDM(&dm);
  EXPECT_EQ(MPPutDM(dm), 0);
  MPFreeDM(dm);
  EXPECT_EQ(MPDeleteDM("Net", "Editor", "1"), 0);
  EXPECT_EQ(host_.errors(), (std::vector<std::string>{refusal, refusal, refusal}));
}

TEST_F(InstallFamilyTest, ABrokenLineInEachSectionFailsTheReadAndLeavesTheFile) {
  const std::vector<std::pair<std::string, std::string>> sections = {
      {"[Install Products]\n", "DP"},
      {"[Shipping Languages]\n", "DSLA"},
      {"[Interface Languages]\n", "ILA"},
      {"[Alias Module Language]\n", "AML"},
      {"[Install Ads]\n", "DA"},
      {"[Shipping Media]\n", "SM"},
      {"[Archives]\n", "AR"},
      {"[Archive Module Languages]\n", "AMLA"},
      {"[Driver Module Groups]\n", "DMG"},
      {"[Driver OSDLs]\n", "DODL"},
  };
  const std::string good = "\n[Install]\n" + InstallLine("Net") + Sections("Editor", "3");
  OpenLocked();
  for (const auto& [header, code] : sections) {
    std::string bytes = good;
    bytes.insert(bytes.find(header) + header.size(), "\"Broken\r\n");
    WriteFileBytes(InstallFile("net.in"), bytes);
    RecordList* list = nullptr;
    int read = 0;
    if (code == "DP") read = MPGetDPCompleteList("Net", &list, 0);
    if (code == "DSLA") read = MPGetDSLACompleteList("Net", &list, 0);
    if (code == "ILA") read = MPGetILACompleteList("Net", &list, 0);
    if (code == "AML") read = MPGetAMLCompleteList("Net", &list, 0);
    if (code == "DA") read = MPGetDACompleteList("Net", &list, 0);
    if (code == "SM") read = MPGetSMCompleteList("Net", &list, 0);
    if (code == "AR") read = MPGetARCompleteList("Net", &list, 0);
    if (code == "AMLA") read = MPGetAMLACompleteList("Net", &list, 0);
    if (code == "DMG") read = MPGetDMGCompleteList("Net", &list, 0);
    if (code == "DODL") read = MPGetDODLCompleteList("Net", &list, 0);
    EXPECT_EQ(read, 0) << code;
    MPFreeDPList(list);
    // Puts and deletes of the kind read the section first and go no further.
    if (code == "DP") MPDeleteDP("Net", "Office", "9");
    if (code == "DSLA") MPDeleteDSLA("Net", "US");
    if (code == "ILA") MPDeleteILA("Net", "US");
    if (code == "AML") MPDeleteAML("Net", nullptr, "Viewer", nullptr, nullptr);
    if (code == "DA") MPDeleteDA("Net", 9);
    if (code == "SM") MPDeleteSM("Net", 1);
    if (code == "AR") MPDeleteAR("Net", "Main");
    if (code == "AMLA") MPDeleteAMLA("Net", nullptr, "Editor", "1", nullptr);
    if (code == "DMG") MPDeleteDMG("Net", "Tools", "1");
    if (code == "DODL") MPDeleteDODL("Net", "US", nullptr);
    if (code == "SM") {
      SMRecord* sm = nullptr;
      MPNewSM(&sm);
      snprintf(sm->row.InstallName, sizeof sm->row.InstallName, "Net");
      sm->row.MediaNumber = 2;
      MPPutSM(sm);
      MPFreeSM(sm);
    }
    EXPECT_EQ(ReadFileBytes(InstallFile("net.in")), bytes) << code;
  }
  EXPECT_FALSE(host_.errors().empty());
}

TEST_F(InstallFamilyTest, DeletingAModuleRemovesItsEntriesFromEveryInstallAndProduct) {
  WriteFileBytes(profile_.dir() + "/modules/editor.mo",
                 "\n[Module]\n\"Editor\",\"1\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("") +
                     "\",\"\",,\r\n");
  const std::string net = "\n[Install]\n" + InstallLine("Net") + Sections("Editor", "3");
  const std::string local = "\n[Install]\n" + InstallLine("Local") + Sections("Viewer", "3");
  WriteFileBytes(InstallFile("net.in"), net);
  WriteFileBytes(InstallFile("local.in"), local);
  const std::string product_head =
      "\n[Product]\n\"Office\",\"9\",\"\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("") +
      "\",\r\n[Sub-Products]\n[Modules]\n";
  const std::string viewer_pm = "\"Viewer\",\"1\",,\"" + FlagLetters("") + "\"\r\n";
  WriteFileBytes(ProductFile("office.pr"),
                 product_head + "\"Editor\",\"1\",,\"" + FlagLetters("Y") + "\"\r\n" + viewer_pm);
  WriteFileBytes(ProductFile("suite.pr"),
                 "\n[Product]\n\"Suite\",\"1\",\"\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("") +
                     "\",\r\n[Modules]\n\"Editor\",\"1\",2,\"" + FlagLetters("") + "\"\r\n");
  OpenLocked();
  ASSERT_EQ(MPDeleteMO("Editor", "1"), 1);
  EXPECT_TRUE(host_.errors().empty());
  // Every file of the profile, read afterwards.
  std::string expected_net = net;
  auto erase = [](std::string* text, const std::string& line) {
    size_t at = text->find(line);
    ASSERT_NE(at, std::string::npos) << line;
    text->erase(at, line.size());
  };
  erase(&expected_net, "\"US\",\"Editor\",\"1\",\"UK\"\r\n");
  erase(&expected_net, "\"Main\",\"Editor\",\"1\",\"US\"\r\n");
  EXPECT_EQ(ReadFileBytes(InstallFile("net.in")), expected_net);
  EXPECT_EQ(ReadFileBytes(InstallFile("local.in")), local);
  EXPECT_EQ(ReadFileBytes(ProductFile("office.pr")), product_head + viewer_pm);
  EXPECT_EQ(ReadFileBytes(ProductFile("suite.pr")),
            "\n[Product]\n\"Suite\",\"1\",\"\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("") +
                "\",\r\n[Modules]\n");
  EXPECT_FALSE(qvtest::PathExists(profile_.dir() + "/modules/editor.mo"));
}

TEST_F(InstallFamilyTest, DeletingAnAdRemovesItsInstallAdsFromEveryInstall) {
  WriteFileBytes(profile_.dir() + "/ADS/adlist.ad",
                 "\n[SourceSafe]\n$Header$\n\n[Ads]\n3,0,0,\"\",\"\",N,N,N,\"Spring\"\r\n"
                 "9,0,0,\"\",\"\",N,N,N,\"Winter\"\r\n");
  const std::string net = "\n[Install]\n" + InstallLine("Net") + Sections("Editor", "3");
  const std::string local = "\n[Install]\n" + InstallLine("Local") + Sections("Editor", "4");
  WriteFileBytes(InstallFile("net.in"), net);
  WriteFileBytes(InstallFile("local.in"), local);
  OpenLocked();
  ASSERT_EQ(MPDeleteAD(3), 1);
  EXPECT_TRUE(host_.errors().empty());
  std::string expected_net = net;
  expected_net.erase(expected_net.find("3,0,2,Y,\"Spring\"\r\n"), 18);
  EXPECT_EQ(ReadFileBytes(InstallFile("net.in")), expected_net);
  EXPECT_EQ(ReadFileBytes(InstallFile("local.in")), local);
  EXPECT_EQ(ReadFileBytes(profile_.dir() + "/ADS/adlist.ad"),
            "\n[SourceSafe]\n$Header$\n\n[Ads]\n9,0,0,\"\",\"\",N,N,N,\"Winter\"\r\n");
  // A change of an Ad's id follows into the installs.
  ASSERT_EQ(MPUpdateADReferences(4, 0x20000000u, 12), 1);
  std::string expected_local = local;
  expected_local.replace(expected_local.find("4,0,2,Y"), 1, "12");
  EXPECT_EQ(ReadFileBytes(InstallFile("local.in")), expected_local);
}

TEST_F(InstallFamilyTest, DeletingAnInstallTakesItsFile) {
  WriteFileBytes(InstallFile("net.in"), "\n[Install]\n" + InstallLine("Net"));
  OpenLocked();
  ASSERT_EQ(MPDeleteDR("Net"), 1);
  EXPECT_FALSE(qvtest::PathExists(InstallFile("net.in")));
  EXPECT_EQ(MPDeleteDR("Net"), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Cannot find DR file to delete it."});
}

TEST_F(InstallFamilyTest, TheDriverFlagTableKeepsItsGaps) {
  OpenLocked();
  DRFlagNames* table = nullptr;
  ASSERT_EQ(MPGetDRFlagNames(&table), 1);
  EXPECT_STREQ(table->kindLabel, "Driver");
  EXPECT_EQ(table->flagMask, 0xC0080000u);
  EXPECT_STREQ(table->bitNames[0], "Allow a Net install to Allow a Local install");
  EXPECT_STREQ(table->bitNames[1], "Allow a Net install To Allow a Workstation install");
  EXPECT_STREQ(table->bitNames[4], "Allow Server install only to Tallgrass servers");
  for (int i = 5; i < 12; ++i) EXPECT_STREQ(table->bitNames[i], "") << i;
  EXPECT_STREQ(table->bitNames[12], "Only use current Location versions");
  EXPECT_STREQ(table->bitNames[13], "");
  MPFreeFlagNames(table);
}

}  // namespace
