// One thing wrong in a profile file, as data, and the names of the classes
// of problems that belong to no record kind.
#ifndef QUORVEX_RECORDS_PROFILE_PROBLEM_H_
#define QUORVEX_RECORDS_PROFILE_PROBLEM_H_

#include <string>

namespace qv {

struct ProfileProblem {
  std::string file;
  int line = 0;      // the line's place in the file, from 1; 0 for the whole file
  std::string kind;  // a record kind code ("AD", "LO", ...) or one of the classes below
  std::string text;
};

// A line before the first section header that is neither blank nor a comment.
inline constexpr char kOutsideProblem[] = "outside";
// A section a file of its kind does not hold, with record lines in it.
inline constexpr char kSectionProblem[] = "section";
// Bytes that are not text: control characters other than tab, and a
// carriage return that does not stand right before the line feed.
inline constexpr char kTextProblem[] = "text";
// A physical line too long for the reader to take whole.
inline constexpr char kLongProblem[] = "long";
// What the line reader said about a line in a section of no known kind.
inline constexpr char kParseProblem[] = "parse";
// A key=value message line without "=".
inline constexpr char kMessageProblem[] = "message";
// A key met twice among the records of one kind in one file.
inline constexpr char kDuplicateProblem[] = "duplicate";
// A reference that names no record of the profile.
inline constexpr char kReferenceProblem[] = "reference";
// A file that cannot be opened or read.
inline constexpr char kFileProblem[] = "file";

// Whether rewriting a section of the file would destroy what the problem
// points at or carry it on: lines the reader does not take as written
// (parser messages, non-text bytes, overlong lines, message lines without
// "="). Such a file must be mended by hand before the engine rewrites it.
bool RewriteWouldLose(const ProfileProblem& problem);

}  // namespace qv

#endif  // QUORVEX_RECORDS_PROFILE_PROBLEM_H_
