// Reading a whole profile to find what is wrong in it, as data: the
// `quorvex check` command prints the problems, and hosts that rewrite a file
// ask first whether the file reads cleanly.
#ifndef QUORVEX_RECORDS_PROFILE_CHECK_H_
#define QUORVEX_RECORDS_PROFILE_CHECK_H_

#include <string>
#include <vector>

#include "records/profile_problem.h"

namespace qv {

struct CheckedFile {
  std::string path;
  std::string kind;  // the catalogue kind
  int sections = 0;
  int records = 0;
  int problems = 0;
};

// Checks one file of a catalogue kind ("AD", "LO", "RES", ...): lines
// outside any section, sections the kind does not hold, bytes that are not
// text, lines too long for the reader, every message the reader and the
// field parsers give for its record lines, message lines without "=", and
// keys met twice within a kind. Nothing is reported through the error
// reporter. summary, when given, receives the counts.
std::vector<ProfileProblem> CheckProfileFile(const std::string& path, const char* file_kind,
                                             CheckedFile* summary = nullptr);

struct ProfileCheck {
  std::vector<CheckedFile> files;
  std::vector<ProfileProblem> problems;  // file by file, then the references
};

// Checks every file of the open Master Profile, then the references between
// its records.
ProfileCheck CheckProfile();

}  // namespace qv

#endif  // QUORVEX_RECORDS_PROFILE_CHECK_H_
