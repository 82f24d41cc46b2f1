// Rewriting one section of a profile file, keeping every other byte.
//
// The protocol of every "put complete list": copy the file through the
// section's header, let the family write the section's records, copy what
// follows the old section, and put the new content in place of the profile
// file. The new content is put together in memory and written once, beside
// the profile file, then renamed over it; only when that replacement fails
// does it go to a temporary file (QUORVEX.nnn), which is left for the user.
//
//   SectionRewrite rewrite;
//   if (!rewrite.Begin(input, path, "Ads")) return 0;
//   for (each record) WriteField(..., rewrite.output(), ...);
//   if (!rewrite.Finish()) return 0;
#ifndef QUORVEX_CORE_SECTION_REWRITE_H_
#define QUORVEX_CORE_SECTION_REWRITE_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/fs.h"
#include "quorvex/base.h"

namespace qv {

class SectionRewrite {
 public:
  SectionRewrite() = default;
  // Without a successful Finish: closes the profile file, which stays as it
  // was.
  ~SectionRewrite();
  SectionRewrite(const SectionRewrite&) = delete;
  SectionRewrite& operator=(const SectionRewrite&) = delete;

  // Takes over input (the profile file, opened for update; it is closed by
  // Finish or by the destructor, whatever Begin returns). Copies the input
  // up to and including the section's header (appending the header when
  // the file lacks the section). False, reported, when input is not an open
  // file or the file holds a line that cannot be copied whole (longer than
  // the reader's buffer, or with a NUL byte). With a tail section,
  // Finish resumes copying behind that section instead of behind this one,
  // leaving out everything between (and, when the file lacks it, the rest).
  bool Begin(QvFile input, const char* profile_path, const char* section,
             const char* tail_section = nullptr);

  // Where the family writes the section's records (a file in memory),
  // positioned after the section's header.
  QvFile output() const { return output_; }
  // Puts bytes after what output() holds so far without copying them: a
  // section assembled elsewhere goes out as it is. bytes must stay as they
  // are until Finish. What is written to output() afterwards follows them.
  void WriteBlock(const std::string& bytes);
  // The temporary file that holds the new content after a failed
  // replacement; "" before, or when none could be made.
  const std::string& temporary_path() const { return temporary_path_; }

  // Copies the rest of the file after the old section, closes the files and
  // replaces the profile file (unless a line could not be copied whole).
  // On failure "File %s cannot be written over, ..." is reported and the
  // new content is left in a temporary file. Returns success.
  bool Finish();

  // As Finish, for a caller that has read the old section from input with
  // ReadRecordLine up to its end (the next header, or the end of the file)
  // and met no line that may continue (ContinuableLineCount): the rest is
  // copied from there, without passing over the section again.
  bool FinishHere();

  // As Finish, but only the first record of the section (as the reader in
  // comment_mode finds it) is left out: a section that holds one record of
  // which only the first counts (a module's own line) keeps the rest.
  bool FinishAfterFirstRecord(int comment_mode);

 private:
  struct Block {
    size_t at;  // where in output()'s bytes it goes
    std::string_view bytes;
  };

  bool Complete();
  // Copies the input's lines from its position to its end.
  void CopyRest();
  void CloseFiles();
  bool CopiedWhole();
  // output()'s bytes with the blocks in their places.
  ByteRuns Content() const;
  // Leaves the content of a failed replacement in a temporary file.
  void KeepInTemporaryFile(const ByteRuns& content);

  QvFile input_ = QV_NO_FILE;
  QvFile output_ = QV_NO_FILE;  // the new content, in memory
  std::vector<Block> blocks_;
  std::string profile_path_;
  std::string section_;
  std::string tail_section_;
  std::string temporary_path_;
  bool finished_ = false;
  uint64_t cut_lines_ = 0;
};

}  // namespace qv

#endif  // QUORVEX_CORE_SECTION_REWRITE_H_
