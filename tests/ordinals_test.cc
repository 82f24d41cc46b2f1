// The operations hosts reach by ordinal.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "quorvex/quorvex.h"

namespace {

TEST(Ordinals, DocumentedOrdinalsReachTheirOperations) {
  EXPECT_EQ(QuorvexProcByOrdinal(219), reinterpret_cast<QvProc>(&MPBuildLOPath));
  EXPECT_EQ(QuorvexProcByOrdinal(220), reinterpret_cast<QvProc>(&MPBuildLOPathByKey));
  EXPECT_EQ(QuorvexProcByOrdinal(1067), reinterpret_cast<QvProc>(&MPBuildLOShortPath));
  EXPECT_EQ(QuorvexProcByOrdinal(1068), reinterpret_cast<QvProc>(&MPBuildLOShortPathByKey));
}

TEST(Ordinals, UnknownOrdinalGivesNothing) {
  EXPECT_EQ(QuorvexProcByOrdinal(0), nullptr);
  EXPECT_EQ(QuorvexProcByOrdinal(221), nullptr);
}

TEST(Ordinals, WindowsExportsCarryTheSameNumbers) {
  std::ifstream def(std::string(QUORVEX_SOURCE_DIR) + "/src/quorvex.def");
  std::stringstream text;
  text << def.rdbuf();
  for (const char* line : {"MPBuildLOPath @219", "MPBuildLOPathByKey @220",
                           "MPBuildLOShortPath @1067", "MPBuildLOShortPathByKey @1068"}) {
    EXPECT_NE(text.str().find(line), std::string::npos) << line;
  }
}

}  // namespace
