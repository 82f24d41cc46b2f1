// The one error path of the engine: log, then a Yes/No box that can switch
// further boxes off.
#include "quorvex/report.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "core/host.h"
#include "core/report_internal.h"
#include "core/state.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "platform/held_file.h"

namespace qv {
namespace {

constexpr size_t kMessageLimit = QV_LINE_SIZE;
constexpr char kBoxTitle[] = "Error from QUORVEX!";
constexpr char kNextBoxQuestion[] = "\nDo you want to see a Message Box for the Next Error?";
constexpr int kTempNames = 1000;

// Appends a piece only while the whole stays shorter than the limit, as the
// fixed message buffer of the reporter did: a piece that does not fit is
// left out whole rather than cut.
void AppendIfFits(std::string* text, const std::string& piece) {
  if (text->size() + piece.size() < kMessageLimit) text->append(piece);
}

void WriteAll(File* log, const std::string& text) {
  log->Write(text.data(), text.size());
}

}  // namespace
}  // namespace qv

using qv::State;

extern "C" {

void WriteLogEntry(const char* text) {
  qv::File* log = State().log_file;
  if (log == nullptr) return;
  static const std::string banner = std::string(86, '*') + "\n";
  qv::WriteAll(log, banner);
  qv::WriteAll(log, text);
  qv::WriteAll(log, "\n");
}

int ReportError(const char* message, int withLine) {
  if (qv::HandToCaptures(message, withLine)) return 1;
  std::string text;
  if (withLine == 1) {
    char prefix[QV_LINE_SIZE + 32];
    snprintf(prefix, sizeof prefix, "%s : Line #%d\n", State().parse_file, State().parse_line);
    text = prefix;
  }
  qv::AppendIfFits(&text, message != nullptr ? message : "");
  qv::AppendIfFits(&text, qv::kNextBoxQuestion);
  WriteLogEntry(text.c_str());
  if (!State().message_box_switch) return 1;
  bool see_next = qv::HostMessageBox(text.c_str(), qv::kBoxTitle, QV_BOX_ERROR);
  if (!see_next) State().message_box_switch = false;
  return see_next ? 1 : 0;
}

int ReportHostError(const char* message) {
  const char* body = message != nullptr ? message : "";
  WriteLogEntry(body);
  std::string text;
  std::string question = std::string("\n\n") + (qv::kNextBoxQuestion + 1);
  // When message and question together reach the limit the question is
  // dropped and the message shown alone, cut to the limit: the person still
  // sees what went wrong.
  if (strlen(body) + question.size() < qv::kMessageLimit) {
    text = std::string(body) + question;
  } else {
    text.assign(body, qv::kMessageLimit - 1);
  }
  if (!State().host_message_box_switch) return 1;
  bool see_next = qv::HostMessageBox(text.c_str(), qv::kBoxTitle, QV_BOX_ERROR);
  if (!see_next) State().host_message_box_switch = false;
  return see_next ? 1 : 0;
}

int CreateTempFile(char* pathOut, QvFile* handleOut) {
  std::string directory = qv::TempDirectory();
  if (directory.empty()) directory = ".";
  qv::AddTrailingSeparator(&directory);
  for (int n = 0; n < qv::kTempNames; ++n) {
    char path[QV_PATH_SIZE + 32];
    snprintf(path, sizeof path, "%s%s.%03d", directory.c_str(), "QUORVEX", n);
    // A name whose file a crashed process left behind is taken over; one
    // that a live process holds is skipped.
    qv::File* file = qv::CreateHeldFile(path);
    if (file == nullptr) continue;
    snprintf(pathOut, QV_PATH_SIZE, "%s", path);
    *handleOut = file->handle();
    return 1;
  }
  return 0;
}

void SkipLeadingBackslashes(char** text) {
  while (**text == '\\') ++*text;
}

int IsHexDigit(int c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F') ? 1 : 0;
}

int HexDigitValue(int c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return 0;
}

}  // extern "C"
