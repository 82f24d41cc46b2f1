// Reading a whole profile to find what is wrong in it.
#ifndef QUORVEX_RECORDS_PROFILE_CHECK_H_
#define QUORVEX_RECORDS_PROFILE_CHECK_H_

#include <string>
#include <vector>

namespace qv {

struct CheckedFile {
  std::string path;
  int sections = 0;
  int records = 0;
};

// Reads every file of the open Master Profile: each section and each record
// line, and the fields of every line whose kind is known. Every problem is
// reported through the error reporter with its file and line.
std::vector<CheckedFile> CheckProfileFiles();

}  // namespace qv

#endif  // QUORVEX_RECORDS_PROFILE_CHECK_H_
