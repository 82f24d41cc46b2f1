#include "support/fake_ss.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/environment.h"

namespace qvtest {

namespace {
const char* const kVariables[] = {"QUORVEX_SS_CLIENT", "QUORVEX_FAKE_SS_LOG",
                                  "QUORVEX_FAKE_SS_SCRIPT"};
}  // namespace

FakeSs::FakeSs() {
  for (const char* name : kVariables) {
    const char* value = getenv(name);
    saved_.push_back({name, value != nullptr ? value : "", value != nullptr});
  }
  log_path_ = dir_.Join("calls.log");
  script_path_ = dir_.Join("answers.txt");
  WriteFileBytes(log_path_, "");
  WriteFileBytes(script_path_, "");
  // Made absolute now, while the current folder is the test's own: under
  // Wine a path such as "/work/build/fake_ss.exe" names a folder on the
  // current drive, which a test that changes folder may leave.
  std::error_code ec;
  std::string client = std::filesystem::absolute(QUORVEX_FAKE_SS, ec).string();
  qv::SetEnvironmentValue("QUORVEX_SS_CLIENT", ec ? QUORVEX_FAKE_SS : client.c_str());
  qv::SetEnvironmentValue("QUORVEX_FAKE_SS_LOG", log_path_.c_str());
  qv::SetEnvironmentValue("QUORVEX_FAKE_SS_SCRIPT", script_path_.c_str());
}

FakeSs::~FakeSs() {
  for (const SavedVariable& saved : saved_) {
    qv::SetEnvironmentValue(saved.name, saved.was_set ? saved.value.c_str() : nullptr);
  }
}

void FakeSs::AddLine(const std::string& line) {
  std::ofstream(script_path_, std::ios::app) << line << "\n";
}

void FakeSs::Answer(const std::string& word, int exit_code) {
  AddLine(word + " " + std::to_string(exit_code));
}

void FakeSs::AnswerWithOutput(const std::string& word, int exit_code, const std::string& output) {
  std::string file = dir_.Join("output" + std::to_string(++outputs_) + ".txt");
  WriteFileBytes(file, output);
  AddLine(word + " " + std::to_string(exit_code) + " " + file);
}

void FakeSs::AnswerSettingReadOnly(const std::string& word, int exit_code, const std::string& path,
                                   bool read_only) {
  AddLine(word + " " + std::to_string(exit_code) + " " + (read_only ? "ro=" : "rw=") + path);
}

void FakeSs::AnswerOtherwise(int exit_code) {
  AddLine("* " + std::to_string(exit_code));
}

void FakeSs::UseMissingClient() {
  qv::SetEnvironmentValue("QUORVEX_SS_CLIENT", "/nonexistent/ss");
}

std::vector<SsCall> FakeSs::Calls() const {
  std::vector<SsCall> calls;
  std::istringstream log(ReadFileBytes(log_path_));
  std::string line;
  while (std::getline(log, line)) {
    size_t bar = line.find('|');
    if (bar == std::string::npos) continue;
    calls.push_back({line.substr(0, bar), line.substr(bar + 1)});
  }
  return calls;
}

std::vector<std::string> FakeSs::CommandLines() const {
  std::vector<std::string> lines;
  for (const SsCall& call : Calls()) lines.push_back(call.command_line);
  return lines;
}

void FakeSs::ClearCalls() {
  WriteFileBytes(log_path_, "");
}

std::string RealDirectory(const std::string& path) {
  std::error_code ec;
  std::filesystem::path real = std::filesystem::canonical(path, ec);
  return ec ? path : real.string();
}

}  // namespace qvtest
