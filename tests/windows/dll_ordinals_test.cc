// quorvex.dll as a Windows host sees it: loaded with LoadLibrary, its
// operations reached by ordinal through GetProcAddress. Every export of
// quorvex.def must answer at its number with the very function that
// QuorvexProcByOrdinal gives for that number, and under its name too.
#define WIN32_LEAN_AND_MEAN
#include <gtest/gtest.h>
#include <windows.h>

#include <fstream>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "quorvex/quorvex.h"

namespace {

using ByOrdinal = QvProc (*)(uint32_t);

// GetProcAddress answers with one generic function type; the caller knows
// the real one.
template <typename Function>
Function As(FARPROC proc) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(proc));
}

// The "Name @N" lines of quorvex.def.
std::vector<std::pair<std::string, unsigned>> DefExports() {
  std::ifstream def(std::string(QUORVEX_SOURCE_DIR) + "/src/quorvex.def");
  std::vector<std::pair<std::string, unsigned>> exports;
  std::regex line(R"(^\s+(\w+)\s+@(\d+)\s*$)");
  std::string text;
  while (std::getline(def, text)) {
    if (!text.empty() && text.back() == '\r') text.pop_back();
    std::smatch m;
    if (std::regex_match(text, m, line)) exports.emplace_back(m[1], std::stoul(m[2]));
  }
  return exports;
}

class DllOrdinals : public testing::Test {
 protected:
  void SetUp() override {
    // The test program lives beside quorvex.dll, so the plain name finds it.
    dll_ = LoadLibraryA("quorvex.dll");
    ASSERT_NE(dll_, nullptr) << "LoadLibrary failed with " << GetLastError();
  }
  void TearDown() override {
    if (dll_ != nullptr) FreeLibrary(dll_);
  }
  FARPROC ByNumber(unsigned ordinal) { return GetProcAddress(dll_, MAKEINTRESOURCEA(ordinal)); }
  HMODULE dll_ = nullptr;
};

TEST_F(DllOrdinals, EveryDefExportAnswersAtItsNumber) {
  auto table = As<ByOrdinal>(GetProcAddress(dll_, "QuorvexProcByOrdinal"));
  ASSERT_NE(table, nullptr);
  auto exports = DefExports();
  ASSERT_GT(exports.size(), 200u);
  for (const auto& [name, ordinal] : exports) {
    FARPROC by_number = ByNumber(ordinal);
    ASSERT_NE(by_number, nullptr) << name << " @" << ordinal;
    EXPECT_EQ(by_number, GetProcAddress(dll_, name.c_str())) << name << " @" << ordinal;
    EXPECT_EQ(reinterpret_cast<QvProc>(by_number), table(ordinal)) << name << " @" << ordinal;
  }
}

TEST_F(DllOrdinals, UnknownOrdinalsAnswerNothing) {
  EXPECT_EQ(ByNumber(221), nullptr);
  auto table = As<ByOrdinal>(GetProcAddress(dll_, "QuorvexProcByOrdinal"));
  ASSERT_NE(table, nullptr);
  EXPECT_EQ(table(221), nullptr);
}

// A few operations called through their ordinals behave as the library's:
// a module list is made, a new module appended to it and the whole freed.
TEST_F(DllOrdinals, OperationsWorkWhenCalledByOrdinal) {
  using NewMO = int (*)(MORecord**);
  using NewMOList = int (*)(MOList**);
  using AppendMO = int (*)(MOList*, MORecord*);
  using FreeMOList = int (*)(MOList*);
  auto new_list = As<NewMOList>(ByNumber(QV_ORDINAL_MPNewMOList));
  auto new_record = As<NewMO>(ByNumber(QV_ORDINAL_MPNewMO));
  auto append = As<AppendMO>(ByNumber(QV_ORDINAL_MPAppendMO));
  auto free_list = As<FreeMOList>(ByNumber(QV_ORDINAL_MPFreeMOList));
  ASSERT_TRUE(new_list && new_record && append && free_list);
  MOList* list = nullptr;
  ASSERT_EQ(new_list(&list), 1);
  ASSERT_NE(list, nullptr);
  MORecord* record = nullptr;
  ASSERT_EQ(new_record(&record), 1);
  ASSERT_NE(record, nullptr);
  EXPECT_EQ(append(list, record), 1);
  EXPECT_EQ(list->count, 1u);
  EXPECT_EQ(free_list(list), 1);
}

}  // namespace
