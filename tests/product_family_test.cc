// Products: listing the product files, a new product's file, birth from a
// parent, sub-products and product modules, and deleting a product from
// every install that ships it.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
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

constexpr char kProductTemplate[] =
    "\n[SourceSafe]\n$Header$\n\n[Product]\n[Sub-Products]\n[Modules]";

std::string ProductLine(const std::string& name, const std::string& version,
                        const std::string& id_a = "", const std::string& id_b = "") {
  return "\"" + name + "\",\"" + version + "\",\"" + id_a + "\",\"" + id_b +
         "\",\"\",\"\",\"\",\"\",\"" + FlagLetters("YNNNNNNY") + "\",7\r\n";
}

// The names in a folder.
std::vector<std::string> Entries(const std::string& dir) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    names.push_back(entry.path().filename().string());
  }
  return names;
}

std::string InstallHead(const std::string& name) {
  return "\n[Install]\n\"" + name +
         "\",\"\",\"\",\"\",\"t1\",\"t2\",,,,,,,,,,\"t7\",\"\",\"\",\"t8\",\"t9\",\"t10\"\r\n";
}

class ProductFamilyTest : public ::testing::Test {
 protected:
  ProductFamilyTest() : profile_(&host_) {}

  std::string ProductFile(const std::string& name) const {
    return profile_.dir() + "/products/" + name;
  }
  std::string InstallFile(const std::string& name) const {
    return profile_.dir() + "/installs/" + name;
  }
  void OpenLocked() { ASSERT_EQ(profile_.Open(qvtest::kLockedOpen), 1); }

  PRRecord* NewProduct(const char* name, const char* version) {
    PRRecord* product = nullptr;
    MPNewPR(&product);
    snprintf(product->row.Name, sizeof product->row.Name, "%s", name);
    snprintf(product->row.Version, sizeof product->row.Version, "%s", version);
    return product;
  }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

TEST_F(ProductFamilyTest, AProfileWithoutProductsGivesAnEmptyList) {
  OpenLocked();
  PRList* list = nullptr;
  ASSERT_EQ(MPGetPRCompleteList(&list), 1);
  EXPECT_EQ(list->count, 0u);
  MPFreePRList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ProductFamilyTest, AProductFileWithoutAProductSectionIsSkipped) {
  WriteFileBytes(ProductFile("office.pr"), "\n[Product]\n" + ProductLine("Office", "9", "A", "B"));
  WriteFileBytes(ProductFile("empty.pr"), "\n[Sub-Products]\n\"Office\",\"9\",,N\r\n");
  OpenLocked();
  PRList* list = nullptr;
  ASSERT_EQ(MPGetPRCompleteList(&list), 1);
  ASSERT_EQ(list->count, 1u);
  auto* office = static_cast<PRRecord*>(list->head->record);
  EXPECT_STREQ(office->row.Name, "Office");
  EXPECT_STREQ(office->row.TextIdA, "A");
  EXPECT_STREQ(office->row.TextIdB, "B");
  EXPECT_EQ(office->row.Flags, 0x81000000u);
  EXPECT_EQ(office->row.Number, 7);
  EXPECT_STREQ(office->FileName, "office.pr");
  PRRecord* found = nullptr;
  EXPECT_EQ(MPFindPRNode(nullptr, nullptr, "OFFICE.PR", list, &found), 1);
  EXPECT_EQ(MPFindPRNode("office", "9", nullptr, list, &found), 0);
  MPFreePRList(list);
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ProductFamilyTest, ANewProductGetsTheProductTemplateAndIsAddedToVersionControl) {
  qvtest::FakeSs ss;
  WriteLastProfile(profile_.dir().c_str(), OPEN_MASTER | OPEN_LOCK, "Proj");
  ASSERT_EQ(profile_.Open(OPEN_MASTER | OPEN_LOCK), 1);
  ss.ClearCalls();
  PRRecord* product = NewProduct("Text Editor", "8.0");
  product->row.Flags = PR_LOCAL_INSTALL;
  ASSERT_EQ(MPPutPR(&product, nullptr), 1);
  EXPECT_STREQ(product->FileName, "TETE80.PR");
  std::string expected(kProductTemplate);
  expected.replace(expected.find("[Product]\n") + 10, 0,
                   "\"Text Editor\",\"8.0\",\"\",\"\",\"\",\"\",\"\",\"\",\"" +
                       FlagLetters("NNNNY") + "\",\r\n");
  EXPECT_EQ(ReadFileBytes(ProductFile("TETE80.PR")), expected + "\n");
  std::vector<std::string> lines = ss.CommandLines();
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "ss add TETE80.PR -c\"Initial Revision.\"");
  MPFreePR(&product);
  ASSERT_EQ(CloseMasterProfile(), 1);
}

TEST_F(ProductFamilyTest, AChildOfAParentWithoutAFileFailsAndLeavesNoFile) {
  OpenLocked();
  PRRecord* parent = NewProduct("Ghost", "1");
  PRRecord* child = NewProduct("Child", "1");
  EXPECT_EQ(MPPutPR(&child, parent), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{"Parent Product Could Not be found to birth Child."});
  EXPECT_EQ(Entries(profile_.dir() + "/products"), std::vector<std::string>{});
  MPFreePR(&child);
  MPFreePR(&parent);
}

TEST_F(ProductFamilyTest, ABornChildCopiesTheParentsFileWithTextsOfItsOwn) {
  WriteFileBytes(profile_.dir() + "/RES_US/pelhamEN.re",
                 "\n[SourceSafe]\n$Header$\n\n[Resources]\n\"IDS_A\",\"Office\",1,\r\n"
                 "\"IDS_B\",\"Office suite\",2,\r\n");
  const std::string rest = "[Modules]\n\"Editor\",\"1\",,\"" + FlagLetters("Y") + "\"\r\n";
  WriteFileBytes(ProductFile("office.pr"),
                 "\n[Product]\n" + ProductLine("Office", "9", "IDS_A", "IDS_B") + rest);
  OpenLocked();
  PRRecord* parent = nullptr;
  ASSERT_EQ(MPGetPR("Office", "9", &parent), 1);
  PRRecord* child = NewProduct("Office Pro", "10");
  ASSERT_EQ(MPPutPR(&child, parent), 1);
  EXPECT_STRNE(child->row.TextIdA, "IDS_A");
  EXPECT_STRNE(child->row.TextIdB, "IDS_B");
  EXPECT_STRNE(child->row.TextIdA, "");
  EXPECT_EQ(ReadFileBytes(ProductFile(child->FileName)),
            "\n[Product]\n" +
                ProductLine("Office Pro", "10", child->row.TextIdA, child->row.TextIdB) + rest);
  MPFreePR(&child);
  MPFreePR(&parent);
}

TEST_F(ProductFamilyTest, SubProductsAndProductModulesReadFromTheProductsFile) {
  WriteFileBytes(ProductFile("office.pr"), "\n[Product]\n" + ProductLine("Office", "9") +
                                               "[Sub-Products]\n\"Editor Suite\",\"2\",,Y\r\n"
                                               "\"Viewer\",\"1\",4,N\r\n"
                                               "[Modules]\n\"Editor\",\"1\",3,\"" +
                                               FlagLetters("YY") + "\"\r\n");
  OpenLocked();
  MPList* subs = nullptr;
  ASSERT_EQ(MPGetMPCompleteList("Office", "9", &subs, 0), 1);
  ASSERT_EQ(subs->count, 2u);
  auto* first = static_cast<MPRecord*>(subs->head->record);
  EXPECT_STREQ(first->row.ProductName, "Office");
  EXPECT_STREQ(first->row.SubProductName, "Editor Suite");
  EXPECT_EQ(first->row.Flags, MP_MOST_IMPORTANT);
  EXPECT_EQ(static_cast<MPRecord*>(subs->tail->record)->row.Number, 4);
  MPFreeMPList(subs);
  PMList* modules = nullptr;
  ASSERT_EQ(MPGetPMCompleteList("Office", "9", &modules, 0), 1);
  ASSERT_EQ(modules->count, 1u);
  auto* module = static_cast<PMRecord*>(modules->head->record);
  EXPECT_EQ(module->row.Flags, PM_REQUIRED | PM_SHIPS_ON_CD);
  EXPECT_EQ(module->row.Number, 3);
  MPFreePMList(modules);
  EXPECT_TRUE(host_.errors().empty());
  PMList* none = nullptr;
  EXPECT_EQ(MPGetPMCompleteList("Office", "10", &none, 0), 0);
  EXPECT_EQ(host_.errors(),
            std::vector<std::string>{
                "File associated with product Office,10 cannot be found or opened!"});
  MPFreePMList(none);
}

TEST_F(ProductFamilyTest, PutsAndDeletesOfContainedRecordsRewriteTheirSection) {
  const std::string head = "\n[Product]\n" + ProductLine("Office", "9");
  WriteFileBytes(ProductFile("office.pr"), head + "[Sub-Products]\n[Modules]\n");
  OpenLocked();
  PMRecord* pm = nullptr;
  MPNewPM(&pm);
  snprintf(pm->row.ProductName, sizeof pm->row.ProductName, "Office");
  snprintf(pm->row.ProductVersion, sizeof pm->row.ProductVersion, "9");
  snprintf(pm->row.ModuleName, sizeof pm->row.ModuleName, "Editor");
  snprintf(pm->row.ModuleVersion, sizeof pm->row.ModuleVersion, "1");
  pm->row.Flags = PM_SHIPS_ON_DISKETTE;
  ASSERT_EQ(MPPutPM(pm), 1);
  MPFreePM(pm);
  MPRecord* mp = nullptr;
  MPNewMP(&mp);
  snprintf(mp->row.ProductName, sizeof mp->row.ProductName, "Office");
  snprintf(mp->row.ProductVersion, sizeof mp->row.ProductVersion, "9");
  snprintf(mp->row.SubProductName, sizeof mp->row.SubProductName, "Viewer");
  snprintf(mp->row.SubProductVersion, sizeof mp->row.SubProductVersion, "1");
  ASSERT_EQ(MPPutMP(mp), 1);
  MPFreeMP(mp);
  EXPECT_EQ(ReadFileBytes(ProductFile("office.pr")),
            head + "[Sub-Products]\n\"Viewer\",\"1\",,N\r\n[Modules]\n\"Editor\",\"1\",,\"" +
                FlagLetters("NNY") + "\"\r\n");
  ASSERT_EQ(MPDeletePM("Office", "9", "Editor", "1"), 1);
  ASSERT_EQ(MPDeleteMP("Office", "9", "Viewer", nullptr), 1);
  EXPECT_EQ(ReadFileBytes(ProductFile("office.pr")), head + "[Sub-Products]\n[Modules]\n");
  EXPECT_TRUE(host_.errors().empty());
}

TEST_F(ProductFamilyTest, ABrokenLineFailsTheReadAndPutsAndDeletesLeaveTheFile) {
  const std::string bytes = "\n[Product]\n" + ProductLine("Office", "9") +
                            "[Sub-Products]\n\"Viewer\",\"1\",,N\r\n"
                            "[Modules]\n\"Editor\",\"1\",,\"" +
                            FlagLetters("Y") + "\"\r\n\"Broken\r\n";
  WriteFileBytes(ProductFile("office.pr"), bytes);
  OpenLocked();
  PMList* list = nullptr;
  EXPECT_EQ(MPGetPMCompleteList("Office", "9", &list, 0), 0);
  MPFreePMList(list);
  PMRecord* pm = nullptr;
  MPNewPM(&pm);
  snprintf(pm->row.ProductName, sizeof pm->row.ProductName, "Office");
  snprintf(pm->row.ProductVersion, sizeof pm->row.ProductVersion, "9");
  snprintf(pm->row.ModuleName, sizeof pm->row.ModuleName, "Other");
  MPPutPM(pm);
  MPFreePM(pm);
  MPDeletePM("Office", "9", "Editor", "1");
  MPDeletePM(nullptr, nullptr, "Editor", "1");
  EXPECT_EQ(ReadFileBytes(ProductFile("office.pr")), bytes);
  EXPECT_FALSE(host_.errors().empty());
}

TEST_F(ProductFamilyTest, DeletingAProductRemovesItFromEveryInstallsProducts) {
  WriteFileBytes(ProductFile("office.pr"), "\n[Product]\n" + ProductLine("Office", "9"));
  WriteFileBytes(ProductFile("viewer.pr"), "\n[Product]\n" + ProductLine("Viewer", "1"));
  const std::string tail = "[Shipping Media]\n1,\"Disk 1\"\r\n";
  WriteFileBytes(InstallFile("net.in"), InstallHead("Net") +
                                            "[Install Products]\n\"Office\",\"9\"\r\n"
                                            "\"Viewer\",\"1\"\r\n\"Office\",\"10\"\r\n" +
                                            tail);
  WriteFileBytes(InstallFile("local.in"),
                 InstallHead("Local") + "[Install Products]\n\"Office\",\"9\"\r\n");
  WriteFileBytes(InstallFile("other.in"),
                 InstallHead("Other") + "[Install Products]\n\"Viewer\",\"1\"\r\n");
  OpenLocked();
  ASSERT_EQ(MPDeletePR("Office", "9"), 1);
  EXPECT_TRUE(host_.errors().empty());
  // Every file of the profile, read afterwards.
  EXPECT_FALSE(qvtest::PathExists(ProductFile("office.pr")));
  EXPECT_EQ(ReadFileBytes(ProductFile("viewer.pr")), "\n[Product]\n" + ProductLine("Viewer", "1"));
  EXPECT_EQ(
      ReadFileBytes(InstallFile("net.in")),
      InstallHead("Net") + "[Install Products]\n\"Viewer\",\"1\"\r\n\"Office\",\"10\"\r\n" + tail);
  EXPECT_EQ(ReadFileBytes(InstallFile("local.in")), InstallHead("Local") + "[Install Products]\n");
  EXPECT_EQ(ReadFileBytes(InstallFile("other.in")),
            InstallHead("Other") + "[Install Products]\n\"Viewer\",\"1\"\r\n");
  EXPECT_EQ(MPDeletePR("Office", "9"), 0);
  EXPECT_EQ(host_.errors(), std::vector<std::string>{"Cannot find PR file to delete it."});
}

TEST_F(ProductFamilyTest, DeleteReferencesWithAnyOtherMaskDoesNothing) {
  WriteFileBytes(InstallFile("net.in"),
                 InstallHead("Net") + "[Install Products]\n\"Office\",\"9\"\r\n");
  OpenLocked();
  EXPECT_EQ(MPDeletePRReferences("Office", "9", 0x20000000u, 0, 0), 1);
  EXPECT_EQ(ReadFileBytes(InstallFile("net.in")),
            InstallHead("Net") + "[Install Products]\n\"Office\",\"9\"\r\n");
}

TEST_F(ProductFamilyTest, TheFlagTablesKeepTheirGaps) {
  OpenLocked();
  PRFlagNames* product = nullptr;
  ASSERT_EQ(MPGetPRFlagNames(&product), 1);
  EXPECT_STREQ(product->kindLabel, "Product");
  EXPECT_EQ(product->flagMask, 0xFF000000u);
  EXPECT_STREQ(product->bitNames[0], "Expandable in custom dialog");
  EXPECT_STREQ(product->bitNames[6], "Participates in Workstation install");
  EXPECT_STREQ(product->bitNames[7], "");
  EXPECT_STREQ(product->bitNames[8],
               "Software distribution may be triggered when this application starts");
  EXPECT_STREQ(product->bitNames[9], "");
  MPFreeFlagNames(product);
  MPFlagNames* master = nullptr;
  ASSERT_EQ(MPGetMPFlagNames(&master), 1);
  EXPECT_STREQ(master->kindLabel, "Master Product");
  EXPECT_EQ(master->flagMask, 0u);
  for (int i = 0; i < 31; ++i) EXPECT_STREQ(master->bitNames[i], "");
  EXPECT_STREQ(master->bitNames[31], "Most important product");
  MPFreeFlagNames(master);
  PMFlagNames* pm = nullptr;
  ASSERT_EQ(MPGetPMFlagNames(&pm), 1);
  EXPECT_STREQ(pm->kindLabel, "Product Module");
  EXPECT_EQ(pm->flagMask, 0x60000000u);
  EXPECT_STREQ(pm->bitNames[0], "Required by the associated product");
  EXPECT_STREQ(pm->bitNames[1], "Ships on CD");
  EXPECT_STREQ(pm->bitNames[2], "Ships on Diskette");
  EXPECT_STREQ(pm->bitNames[3], "");
  MPFreeFlagNames(pm);
}

}  // namespace
