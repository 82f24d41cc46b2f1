// A host whose message boxes and dialogs answer from a script and remember
// what they were shown. Installing it also points the registry at a fresh
// temporary file and resets the engine's process-wide state.
#ifndef QUORVEX_TESTS_SUPPORT_SCRIPTED_HOST_H_
#define QUORVEX_TESTS_SUPPORT_SCRIPTED_HOST_H_

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "support/temp_dir.h"

namespace qvtest {

struct ShownBox {
  std::string text;
  std::string caption;
  int kind;
};

class ScriptedHost {
 public:
  ScriptedHost();   // installs itself; closes any open profile first
  ~ScriptedHost();  // closes the profile, uninstalls, restores the environment

  // Answers for the next boxes, in order; when none is left: Yes for error
  // boxes, No for questions.
  void AnswerBoxes(std::initializer_list<bool> answers);
  // The next dialog showings: each function edits the request and returns
  // OK (true) or cancel. With none left the dialog is cancelled.
  void AnswerDialog(std::function<bool(QuorvexOpenProfileRequest*)> answer);
  // Called with each box's text before it is answered: what the person does
  // while the box is up.
  void OnBox(std::function<void(const std::string&)> action) { on_box_ = std::move(action); }

  const std::vector<ShownBox>& boxes() const { return boxes_; }
  // Texts of the error boxes, without the "next box" question.
  std::vector<std::string> errors() const;
  const std::vector<QuorvexOpenProfileRequest>& dialogs() const { return dialogs_; }
  const std::vector<std::string>& closing_notices() const { return notices_; }
  void Clear();

  const std::string& registry_path() const { return registry_path_; }
  TempDir& scratch() { return scratch_; }

 private:
  static int MessageBox(void* context, const char* text, const char* caption, int kind);
  static int Dialog(void* context, QuorvexOpenProfileRequest* request);
  static void Notice(void* context, const char* title, const char* text, int done);

  TempDir scratch_;
  std::string registry_path_;
  std::string old_registry_;
  bool had_registry_ = false;
  std::string old_tmpdir_;
  bool had_tmpdir_ = false;
  std::string old_tmp_;  // TMP: where Windows puts temporary files
  bool had_tmp_ = false;
  std::deque<bool> box_answers_;
  std::function<void(const std::string&)> on_box_;
  std::deque<std::function<bool(QuorvexOpenProfileRequest*)>> dialog_answers_;
  std::vector<ShownBox> boxes_;
  std::vector<QuorvexOpenProfileRequest> dialogs_;
  std::deque<std::string> dialog_messages_;  // what dialogs_[i].message points at
  std::vector<std::string> notices_;
};

}  // namespace qvtest

#endif  // QUORVEX_TESTS_SUPPORT_SCRIPTED_HOST_H_
