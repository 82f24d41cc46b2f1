// Rewriting one section of a profile file, keeping every other byte.
//
// The protocol of every "put complete list": copy the file through the
// section's header into a temporary file, let the family write the
// section's records there, copy what follows the old section, and put the
// temporary file in place of the profile file.
//
//   SectionRewrite rewrite;
//   if (!rewrite.Begin(input, path, "Ads")) return 0;
//   for (each record) WriteField(..., rewrite.output(), ...);
//   if (!rewrite.Finish()) return 0;
#ifndef QUORVEX_CORE_SECTION_REWRITE_H_
#define QUORVEX_CORE_SECTION_REWRITE_H_

#include <cstdint>
#include <string>

#include "quorvex/base.h"

namespace qv {

class SectionRewrite {
 public:
  SectionRewrite() = default;
  // Without a successful Finish: closes both files and removes the
  // temporary file, so the profile file stays as it was.
  ~SectionRewrite();
  SectionRewrite(const SectionRewrite&) = delete;
  SectionRewrite& operator=(const SectionRewrite&) = delete;

  // Takes over input (the profile file, opened for update; it is closed by
  // Finish or by the destructor, whatever Begin returns). Creates the
  // temporary file and copies the input up to and including the section's
  // header (appending the header when the file lacks the section). False,
  // reported, when input is not an open file, no temporary file can be
  // created, or the file holds a line that cannot be copied whole (longer
  // than the reader's buffer, or with a NUL byte). With a tail section,
  // Finish resumes copying behind that section instead of behind this one,
  // leaving out everything between (and, when the file lacks it, the rest).
  bool Begin(QvFile input, const char* profile_path, const char* section,
             const char* tail_section = nullptr);

  // Where the family writes the section's records, positioned after the
  // section's header; the new content goes to the temporary file at Finish.
  QvFile output() const { return output_; }
  // Puts bytes after what output() holds so far, straight into the
  // temporary file: a section assembled elsewhere goes out without being
  // copied again. What is written to output() afterwards follows them.
  void WriteBlock(const std::string& bytes);
  const std::string& temporary_path() const { return temporary_path_; }

  // Copies the rest of the file after the old section, closes both files and
  // replaces the profile file (unless a line could not be copied whole). On success the temporary
  // file is deleted; on failure "File %s cannot be written over, ..." is reported and the temporary
  // file is left in place. Returns success.
  bool Finish();

  // As Finish, but only the first record of the section (as the reader in
  // comment_mode finds it) is left out: a section that holds one record of
  // which only the first counts (a module's own line) keeps the rest.
  bool FinishAfterFirstRecord(int comment_mode);

 private:
  bool Complete();
  void CloseFiles();
  bool CopiedWhole();
  // Moves what output() holds to the temporary file.
  void Spill();

  QvFile input_ = QV_NO_FILE;
  QvFile output_ = QV_NO_FILE;     // the new content, in memory
  QvFile temporary_ = QV_NO_FILE;  // the temporary file it goes to
  std::string profile_path_;
  std::string section_;
  std::string tail_section_;
  std::string temporary_path_;
  bool finished_ = false;
  bool spill_failed_ = false;  // a write to the temporary file fell short
  uint64_t cut_lines_ = 0;
};

}  // namespace qv

#endif  // QUORVEX_CORE_SECTION_REWRITE_H_
