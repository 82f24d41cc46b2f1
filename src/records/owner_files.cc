// The owners that have a file of a kind in the open profile.
#include <string>
#include <utility>
#include <vector>

#include "core/report_capture.h"
#include "core/state.h"
#include "profile/profile_files.h"
#include "quorvex/catalogue.h"
#include "quorvex/text.h"
#include "records/family_io.h"
#include "records/owner_kinds.h"

namespace qv {

std::vector<std::pair<std::string, std::string>> ProfileFileOwners(const char* file_kind,
                                                                   const char* section,
                                                                   bool with_version) {
  std::vector<std::pair<std::string, std::string>> owners;
  if (IsOrvikProfile()) return owners;
  // An identity line that does not read is the owner family's to report.
  ReportCapture quiet(/*quiet=*/true);
  for (const ProfileFileFound& found : ListProfileFiles(State().profile_path)) {
    if (std::string(found.kind) != file_kind) continue;
    QvFile file = QvOpenFileForRead(found.path.c_str());
    if (!QvFileIsOpen(file)) continue;
    SetParseFile(found.path.c_str());
    char line[QV_LINE_SIZE];
    char name[41] = "";
    char version[11] = "";
    uint32_t flags = 0;
    if (FindSection(file, section) == 1 &&
        ReadRecordLine(file, line, &flags, State().comment_mode) == 1) {
      char* cursor = line;
      if (ParseQuotedString(&cursor, name, 0, sizeof name) == 1 &&
          (!with_version || ParseQuotedString(&cursor, version, 0, sizeof version) == 1)) {
        owners.emplace_back(name, version);
      }
    }
    QvCloseFile(file);
  }
  return owners;
}

}  // namespace qv
