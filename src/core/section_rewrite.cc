#include "core/section_rewrite.h"

#include <cstdio>
#include <cstring>

#include "core/report_capture.h"
#include "platform/file.h"
#include "platform/fs.h"
#include "platform/held_file.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "quorvex/writer.h"

namespace qv {

namespace {

// What a rewrite of the file puts out: about the file's size, with room
// for the records a put adds.
size_t RoomFor(QvFile input) {
  File* file = File::FromHandle(input);
  const int64_t at = file->Tell();
  int64_t size = file->Seek(0, SEEK_END) ? file->Tell() : 0;
  file->Seek(at, SEEK_SET);
  return static_cast<size_t>(size) + 64 * 1024;
}

}  // namespace

SectionRewrite::~SectionRewrite() {
  if (finished_) return;
  CloseFiles();
  if (!temporary_path_.empty()) DeleteFile(temporary_path_);
}

bool SectionRewrite::Begin(QvFile input, const char* profile_path, const char* section,
                           const char* tail_section) {
  input_ = input;
  profile_path_ = profile_path != nullptr ? profile_path : "";
  section_ = section != nullptr ? section : "";
  tail_section_ = tail_section != nullptr ? tail_section : section_;
  char message[QV_LINE_SIZE];
  if (QvFileIsOpen(input) == 0) {
    // Copying from nothing would replace the file with the section alone.
    snprintf(message, sizeof message, "Cannot open input file %s.", profile_path_.c_str());
    ReportError(message, 0);
    return false;
  }
  char temporary[QV_PATH_SIZE] = "";
  QvFile output = QV_NO_FILE;
  if (CreateTempFile(temporary, &output) == 0) {
    snprintf(message, sizeof message, "Cannot create a temporary file to rewrite %s.",
             profile_path_.c_str());
    ReportError(message, 0);
    return false;
  }
  // The new content is put together in memory and written to the
  // temporary file in one piece: a rewrite writes a field at a time, and a
  // system call for each piece would cost far more than the bytes.
  temporary_ = output;
  File* memory = File::OpenInMemory();
  memory->Reserve(RoomFor(input));
  output_ = memory->handle();
  temporary_path_ = temporary;
  cut_lines_ = CutLineCount();
  CopyHeadThroughSection(input_, output_, section_.c_str());
  return CopiedWhole();
}

// The copiers move lines through the reader's buffer: a line it cannot take
// whole would come out in pieces with a byte lost, so such a file is left
// as it is rather than rewritten.
bool SectionRewrite::CopiedWhole() {
  if (CutLineCount() == cut_lines_) return true;
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message,
           "File %s holds a line longer than 5023 characters or a NUL byte, which a rewrite "
           "cannot copy; the file was left unchanged.",
           profile_path_.c_str());
  ReportError(message, 0);
  return false;
}

bool SectionRewrite::Finish() {
  if (finished_ || output_ == QV_NO_FILE) return false;
  CopyTailAfterSection(input_, output_, tail_section_.c_str());
  return Complete();
}

bool SectionRewrite::FinishAfterFirstRecord(int comment_mode) {
  if (finished_ || output_ == QV_NO_FILE) return false;
  // The input stands behind the section's header: pass over the one record
  // the caller has written anew (none when the section is empty), then
  // copy every line after it as it stands.
  char record[QV_LINE_SIZE];
  uint32_t flags = 0;
  ReadRecordLine(input_, record, &flags, comment_mode);
  File* out = File::FromHandle(output_);
  char line[QV_LINE_SIZE];
  while (ReadProfileLine(input_, line, sizeof line) != 0) {
    out->Write(line, strlen(line));
    out->Write("\n", 1);
  }
  return Complete();
}

void SectionRewrite::Spill() {
  File* memory = File::FromHandle(output_);
  const std::string& content = memory->memory();
  if (File::FromHandle(temporary_)->Write(content.data(), content.size()) != content.size()) {
    spill_failed_ = true;
  }
  memory->ClearMemory();
}

void SectionRewrite::WriteBlock(const std::string& bytes) {
  if (finished_ || output_ == QV_NO_FILE) return;
  Spill();
  if (File::FromHandle(temporary_)->Write(bytes.data(), bytes.size()) != bytes.size()) {
    spill_failed_ = true;
  }
}

bool SectionRewrite::Complete() {
  if (!CopiedWhole()) return false;
  Spill();
  bool written = !spill_failed_;
  CloseFiles();
  finished_ = true;
  if (!written || QvReplaceProfileFile(temporary_path_.c_str(), profile_path_.c_str()) == 0) {
    // The temporary file stays, with the new content, but its name is let
    // go: held, it would keep a descriptor open and the name taken for the
    // rest of the process, and a long run of failed writes would use up
    // both.
    ReleaseHeldName(ResolvePath(temporary_path_));
    char message[QV_LINE_SIZE];
    snprintf(message, sizeof message,
             "File %s cannot be written over, you may not have it checked out, and/or the "
             "attributes of the file may be set to Read-Only.",
             profile_path_.c_str());
    ReportError(message, 0);
    return false;
  }
  return true;
}

void SectionRewrite::CloseFiles() {
  QvCloseFile(input_);
  QvCloseFile(output_);
  QvCloseFile(temporary_);
  input_ = QV_NO_FILE;
  output_ = QV_NO_FILE;
  temporary_ = QV_NO_FILE;
}

}  // namespace qv
