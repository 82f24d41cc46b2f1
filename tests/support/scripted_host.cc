#include "support/scripted_host.h"

#include <cstdlib>

#include "core/state.h"
#include "platform/environment.h"

namespace qvtest {

namespace {
constexpr char kQuestion[] = "\nDo you want to see a Message Box for the Next Error?";

void SaveEnv(const char* name, std::string* value, bool* had) {
  const char* v = getenv(name);
  *had = v != nullptr;
  if (v != nullptr) *value = v;
}

void RestoreEnv(const char* name, const std::string& value, bool had) {
  qv::SetEnvironmentValue(name, had ? value.c_str() : nullptr);
}
}  // namespace

ScriptedHost::ScriptedHost() {
  CloseMasterProfile();
  qv::ResetStateForTesting();
  SaveEnv("QUORVEX_REGISTRY", &old_registry_, &had_registry_);
  SaveEnv("TMPDIR", &old_tmpdir_, &had_tmpdir_);
  SaveEnv("TMP", &old_tmp_, &had_tmp_);
  registry_path_ = scratch_.Join("registry.reg");
  qv::SetEnvironmentValue("QUORVEX_REGISTRY", registry_path_.c_str());
  // Temporary files of the engine go to a folder of this test alone.
  MakeDirs(scratch_.Join("tmp"));
  qv::SetEnvironmentValue("TMPDIR", scratch_.Join("tmp").c_str());
  qv::SetEnvironmentValue("TMP", scratch_.Join("tmp").c_str());
  QuorvexHost host = {this, &ScriptedHost::MessageBox, &ScriptedHost::Dialog,
                      &ScriptedHost::Notice};
  QuorvexSetHost(&host);
}

ScriptedHost::~ScriptedHost() {
  CloseMasterProfile();
  QuorvexSetHost(nullptr);
  qv::ResetStateForTesting();
  RestoreEnv("QUORVEX_REGISTRY", old_registry_, had_registry_);
  RestoreEnv("TMPDIR", old_tmpdir_, had_tmpdir_);
  RestoreEnv("TMP", old_tmp_, had_tmp_);
}

void ScriptedHost::AnswerBoxes(std::initializer_list<bool> answers) {
  for (bool a : answers) box_answers_.push_back(a);
}

void ScriptedHost::AnswerDialog(std::function<bool(QuorvexOpenProfileRequest*)> answer) {
  dialog_answers_.push_back(std::move(answer));
}

std::vector<std::string> ScriptedHost::errors() const {
  std::vector<std::string> out;
  for (const ShownBox& box : boxes_) {
    if (box.kind != QV_BOX_ERROR) continue;
    std::string text = box.text;
    size_t at = text.rfind(kQuestion);
    if (at != std::string::npos && at + sizeof kQuestion - 1 == text.size()) text.resize(at);
    out.push_back(text);
  }
  return out;
}

void ScriptedHost::Clear() {
  boxes_.clear();
  dialogs_.clear();
  dialog_messages_.clear();
  notices_.clear();
}

int ScriptedHost::MessageBox(void* context, const char* text, const char* caption, int kind) {
  auto* self = static_cast<ScriptedHost*>(context);
  self->boxes_.push_back({text, caption, kind});
  if (self->on_box_) self->on_box_(text);
  if (!self->box_answers_.empty()) {
    bool answer = self->box_answers_.front();
    self->box_answers_.pop_front();
    return answer ? 1 : 0;
  }
  return kind == QV_BOX_ERROR ? 1 : 0;
}

int ScriptedHost::Dialog(void* context, QuorvexOpenProfileRequest* request) {
  auto* self = static_cast<ScriptedHost*>(context);
  self->dialog_messages_.push_back(request->message != nullptr ? request->message : "");
  self->dialogs_.push_back(*request);
  self->dialogs_.back().message = self->dialog_messages_.back().c_str();
  self->dialogs_.back().projects = nullptr;  // freed by the engine after the showing
  if (self->dialog_answers_.empty()) return 0;
  auto answer = std::move(self->dialog_answers_.front());
  self->dialog_answers_.pop_front();
  return answer(request) ? 1 : 0;
}

void ScriptedHost::Notice(void* context, const char* title, const char* text, int done) {
  auto* self = static_cast<ScriptedHost*>(context);
  self->notices_.push_back(std::string(done ? "done:" : "show:") + title + "|" + text);
}

}  // namespace qvtest
