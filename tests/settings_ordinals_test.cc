// The settings operations reached by ordinal: every ordinal the header
// names reaches an operation, the Windows exports carry the same numbers,
// and no two operations share one.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "quorvex/quorvex.h"

namespace {

std::string Slurp(const std::string& path) {
  std::ifstream file(path);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

std::map<std::string, uint32_t> HeaderOrdinals() {
  const std::string header = Slurp(std::string(QUORVEX_SOURCE_DIR) + "/include/quorvex/settings.h");
  std::map<std::string, uint32_t> ordinals;
  const std::regex define(R"(#define QV_ORDINAL_(\w+) (\d+))");
  for (auto it = std::sregex_iterator(header.begin(), header.end(), define);
       it != std::sregex_iterator(); ++it) {
    ordinals[(*it)[1]] = static_cast<uint32_t>(std::stoul((*it)[2]));
  }
  return ordinals;
}

TEST(SettingsOrdinals, EveryOperationHasItsOwnOrdinalInBothTables) {
  const auto ordinals = HeaderOrdinals();
  EXPECT_EQ(ordinals.size(), 220u);
  const std::string def = Slurp(std::string(QUORVEX_SOURCE_DIR) + "/src/quorvex.def");
  std::set<uint32_t> seen;
  std::set<QvProc> procs;
  for (const auto& [name, ordinal] : ordinals) {
    EXPECT_TRUE(seen.insert(ordinal).second) << name;
    QvProc proc = QuorvexProcByOrdinal(ordinal);
    EXPECT_NE(proc, nullptr) << name;
    EXPECT_TRUE(procs.insert(proc).second) << name;
    EXPECT_NE(def.find("    " + name + " @" + std::to_string(ordinal) + "\n"), std::string::npos)
        << name;
  }
}

TEST(SettingsOrdinals, OrdinalsReachTheNamedOperations) {
  EXPECT_EQ(QuorvexProcByOrdinal(QV_ORDINAL_MPGetRECompleteList),
            reinterpret_cast<QvProc>(&MPGetRECompleteList));
  EXPECT_EQ(QuorvexProcByOrdinal(QV_ORDINAL_MPPutIE), reinterpret_cast<QvProc>(&MPPutIE));
  EXPECT_EQ(QuorvexProcByOrdinal(QV_ORDINAL_MPGetSSR), reinterpret_cast<QvProc>(&MPGetSSR));
  EXPECT_EQ(QuorvexProcByOrdinal(QV_ORDINAL_MPFreeCSSR), reinterpret_cast<QvProc>(&MPFreeCSSR));
  EXPECT_EQ(QuorvexProcByOrdinal(QV_ORDINAL_MPDeleteSFSR), reinterpret_cast<QvProc>(&MPDeleteSFSR));
  EXPECT_EQ(QuorvexProcByOrdinal(QV_ORDINAL_MPClearDRKCSSRList),
            reinterpret_cast<QvProc>(&MPClearDRKCSSRList));
}

}  // namespace
