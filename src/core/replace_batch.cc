#include "core/replace_batch.h"

#include <cstdio>
#include <functional>
#include <utility>
#include <vector>

#include "platform/fs.h"
#include "platform/read_redirects.h"
#include "quorvex/base.h"
#include "quorvex/report.h"

namespace qv {
namespace {

int depth = 0;

struct Staged {
  std::string profile;  // as the engine names it, for messages
  std::string host;     // the profile file's host path
  std::string staged;   // where its next version waits
};

std::vector<Staged>& StagedFiles() {
  static std::vector<Staged> staged;
  return staged;
}

// Each file in the order it was first staged. The staged content is
// copied over the profile file (keeping the file's permissions) in one
// atomic replacement.
void PutStagedInPlace() {
  std::vector<Staged> files = std::move(StagedFiles());
  StagedFiles().clear();
  ClearReadRedirects();
  for (const Staged& file : files) {
    if (!ReplaceFileContent(file.staged, file.host)) {
      char message[QV_LINE_SIZE];
      snprintf(message, sizeof message,
               "File %s cannot be written over, you may not have it checked out, and/or the "
               "attributes of the file may be set to Read-Only.",
               file.profile.c_str());
      ReportError(message, 0);
    }
    DeleteFile(file.staged);
  }
}

}  // namespace

ReplaceBatch::ReplaceBatch() {
  ++depth;
}

ReplaceBatch::~ReplaceBatch() {
  if (--depth == 0) PutStagedInPlace();
}

bool ReplaceBatchOpen() {
  return depth > 0;
}

namespace {

// Keeps what write puts into the staging file as profile's next version.
bool Stage(const std::string& profile, const std::function<bool(const std::string&)>& write) {
  std::string host = ResolvePath(profile);
  std::string staged;
  for (const Staged& file : StagedFiles()) {
    if (file.host == host) staged = file.staged;
  }
  bool first = staged.empty();
  if (first) {
    std::string drive, directory, name;
    SplitPath(host, &drive, &directory, &name);
    staged = drive + directory + "." + name + ".staged";
  }
  if (!write(staged)) return false;
  if (first) {
    StagedFiles().push_back({profile, host, staged});
    RedirectReads(host, staged);
  }
  return true;
}

}  // namespace

bool StageReplacement(const std::string& temporary, const std::string& profile) {
  return Stage(profile, [&](const std::string& staged) {
    if (!ReplaceFileContent(temporary, staged)) return false;
    DeleteFile(temporary);
    return true;
  });
}

bool StageContent(const ByteRuns& content, const std::string& profile) {
  return Stage(profile,
               [&](const std::string& staged) { return ReplaceFileWithBytes(content, staged); });
}

}  // namespace qv
