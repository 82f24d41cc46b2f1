#include "core/section_rewrite.h"

#include <cstdio>
#include <cstring>

#include "core/replace_file.h"
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
  if (!finished_) CloseFiles();
}

bool SectionRewrite::Begin(QvFile input, const char* profile_path, const char* section,
                           const char* tail_section) {
  input_ = input;
  profile_path_ = profile_path != nullptr ? profile_path : "";
  section_ = section != nullptr ? section : "";
  tail_section_ = tail_section != nullptr ? tail_section : section_;
  if (QvFileIsOpen(input) == 0) {
    // Copying from nothing would replace the file with the section alone.
    char message[QV_LINE_SIZE];
    snprintf(message, sizeof message, "Cannot open input file %s.", profile_path_.c_str());
    ReportError(message, 0);
    return false;
  }
  // The new content is put together in memory and goes out in one piece: a
  // rewrite writes a field at a time, and a system call for each piece
  // would cost far more than the bytes.
  File* memory = File::OpenInMemory();
  memory->Reserve(RoomFor(input));
  output_ = memory->handle();
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
  CopyRest();
  return Complete();
}

bool SectionRewrite::FinishHere() {
  if (finished_ || output_ == QV_NO_FILE) return false;
  CopyRest();
  return Complete();
}

void SectionRewrite::CopyRest() {
  File* out = File::FromHandle(output_);
  char line[QV_LINE_SIZE];
  while (ReadProfileLine(input_, line, sizeof line) != 0) {
    out->Write(line, strlen(line));
    out->Write("\n", 1);
  }
}

void SectionRewrite::WriteBlock(const std::string& bytes) {
  if (finished_ || output_ == QV_NO_FILE) return;
  blocks_.push_back({File::FromHandle(output_)->memory().size(), bytes});
}

ByteRuns SectionRewrite::Content() const {
  const std::string& memory = File::FromHandle(output_)->memory();
  ByteRuns content;
  size_t from = 0;
  for (const Block& block : blocks_) {
    content.emplace_back(memory.data() + from, block.at - from);
    content.push_back(block.bytes);
    from = block.at;
  }
  content.emplace_back(memory.data() + from, memory.size() - from);
  return content;
}

bool SectionRewrite::Complete() {
  if (!CopiedWhole()) return false;
  finished_ = true;
  // The profile file is let go before it is replaced: an open file cannot
  // be renamed over on every system.
  QvCloseFile(input_);
  input_ = QV_NO_FILE;
  ByteRuns content = Content();
  bool replaced = ReplaceProfileFileWith(content, profile_path_.c_str());
  if (!replaced) KeepInTemporaryFile(content);
  CloseFiles();
  if (replaced) return true;
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message,
           "File %s cannot be written over, you may not have it checked out, and/or the "
           "attributes of the file may be set to Read-Only.",
           profile_path_.c_str());
  ReportError(message, 0);
  return false;
}

void SectionRewrite::KeepInTemporaryFile(const ByteRuns& content) {
  char temporary[QV_PATH_SIZE] = "";
  QvFile file = QV_NO_FILE;
  if (CreateTempFile(temporary, &file) == 0) {
    char message[QV_LINE_SIZE];
    snprintf(message, sizeof message, "Cannot create a temporary file to rewrite %s.",
             profile_path_.c_str());
    ReportError(message, 0);
    return;
  }
  temporary_path_ = temporary;
  File* out = File::FromHandle(file);
  for (std::string_view run : content) {
    if (out->Write(run.data(), run.size()) != run.size()) break;
  }
  QvCloseFile(file);
  // The file stays, but its name is let go: held, it would keep a
  // descriptor open and the name taken for the rest of the process, and a
  // long run of failed writes would use up both.
  ReleaseHeldName(ResolvePath(temporary_path_));
}

void SectionRewrite::CloseFiles() {
  QvCloseFile(input_);
  QvCloseFile(output_);
  input_ = QV_NO_FILE;
  output_ = QV_NO_FILE;
}

}  // namespace qv
