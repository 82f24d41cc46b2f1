#include "records/rewrite_check.h"

#include "core/report_capture.h"
#include "core/state.h"
#include "quorvex/catalogue.h"
#include "quorvex/text.h"
#include "records/profile_check.h"

namespace qv {

std::optional<ProfileProblem> RewriteProblem(const KindSchema& schema, const std::string& owner) {
  const KindInfo& kind = *schema.kind;
  const char* name = "";
  if (kind.file == KindFile::kLanguage) {
    if (owner.empty()) return std::nullopt;
    name = owner.c_str();
  } else if (kind.file != KindFile::kFixed) {
    return std::nullopt;
  }
  char path[QV_PATH_SIZE] = "";
  {
    // A file that cannot be opened is the family's to report.
    ReportCapture quiet(/*quiet=*/true);
    QvFile file = OpenProfileFile(State().profile_path, name, "", kind.file_kind, path, MODE_READ);
    if (!QvFileIsOpen(file)) return std::nullopt;
    QvCloseFile(file);
  }
  for (const ProfileProblem& problem : CheckProfileFile(path, kind.file_kind)) {
    if (RewriteWouldLose(problem)) return problem;
  }
  return std::nullopt;
}

}  // namespace qv
