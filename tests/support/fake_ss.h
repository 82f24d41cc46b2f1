// The fake version-control client: points the engine at tests/support/fake_ss,
// scripts its answers and collects the command lines it was given.
#ifndef QUORVEX_TESTS_SUPPORT_FAKE_SS_H_
#define QUORVEX_TESTS_SUPPORT_FAKE_SS_H_

#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace qvtest {

struct SsCall {
  std::string cwd;           // the client's working directory, symbolic links resolved
  std::string command_line;  // the whole command line, "ss ..." as the engine formed it
  bool operator==(const SsCall& other) const {
    return cwd == other.cwd && command_line == other.command_line;
  }
};

class FakeSs {
 public:
  // Sets QUORVEX_SS_CLIENT, QUORVEX_FAKE_SS_LOG and QUORVEX_FAKE_SS_SCRIPT.
  FakeSs();
  // Gives the three variables back their former values.
  ~FakeSs();
  FakeSs(const FakeSs&) = delete;
  FakeSs& operator=(const FakeSs&) = delete;

  // The next call whose first argument is `word` (ignoring case; "checkout",
  // "status", "Dir", ...) ends with exit_code. Answers are used once each,
  // in the order given.
  void Answer(const std::string& word, int exit_code);
  // The same, with `output` written to the client's standard output.
  void AnswerWithOutput(const std::string& word, int exit_code, const std::string& output);
  // The same, and the client makes `path` read-only (or writable) first.
  void AnswerSettingReadOnly(const std::string& word, int exit_code, const std::string& path,
                             bool read_only);
  // Every call that no answer matches ends with exit_code (else 0).
  void AnswerOtherwise(int exit_code);
  // Points QUORVEX_SS_CLIENT at a program that does not exist.
  void UseMissingClient();

  // The calls made so far, in order.
  std::vector<SsCall> Calls() const;
  std::vector<std::string> CommandLines() const;
  void ClearCalls();

 private:
  void AddLine(const std::string& line);

  TempDir dir_;
  std::string log_path_;
  std::string script_path_;
  int outputs_ = 0;
  struct SavedVariable {
    std::string name;
    std::string value;
    bool was_set;
  };
  std::vector<SavedVariable> saved_;
};

// The real path of a folder, as the client sees it as its working directory.
std::string RealDirectory(const std::string& path);

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_FAKE_SS_H_
