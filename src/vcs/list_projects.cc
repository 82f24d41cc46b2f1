// The top-level projects of the version-control database.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/file.h"
#include "platform/fs.h"
#include "quorvex/list.h"
#include "quorvex/report.h"
#include "quorvex/text.h"
#include "quorvex/vcs.h"
#include "vcs/vcs_internal.h"

namespace qv {
namespace {

constexpr char kListCommand[] = "ss Dir $/";
constexpr size_t kProjectNameMax = QV_PATH_SIZE - 1;

void DiscardTempFile(QvFile file, const char* path) {
  QvCloseFile(file);
  DeleteFile(path);
}

// A listing names a project as "$Name"; "$/..." lines name the root.
void AppendProject(RecordList* list, const char* line) {
  if (line[0] != '$' || line[1] == '/') return;
  size_t length = strnlen(line + 1, kProjectNameMax);
  // Output written on Windows ends its lines with a carriage return.
  while (length > 0 && line[length] == '\r') --length;
  char* name = static_cast<char*>(malloc(length + 1));
  if (name == nullptr) return;
  memcpy(name, line + 1, length);
  name[length] = '\0';
  MPAddAt(list, list->count + 1, name);
}

}  // namespace
}  // namespace qv

extern "C" int VcsListProjects(RecordList** listOut) {
  if (!qv::VcsClientReady()) return 0;
  char temp_path[QV_PATH_SIZE];
  QvFile output = QV_NO_FILE;
  if (!CreateTempFile(temp_path, &output)) {
    char message[QV_LINE_SIZE];
    snprintf(message, sizeof message,
             "Cannot create a temporary file for Source Safe command \"%s\".", qv::kListCommand);
    ReportError(message, 0);
    return 0;
  }
  int code = RunCommand(qv::kListCommand, nullptr, qv::kShowMinimised, qv::kListCommand, output);
  if (code != 0) {
    qv::ReportCommandFailed(qv::kListCommand);
    qv::DiscardTempFile(output, temp_path);
    return 0;
  }
  qv::File::FromHandle(output)->Seek(0, SEEK_SET);
  RecordList* list = nullptr;
  MPNewStringList(&list);
  if (list == nullptr) {
    ReportError("Out of memory while listing the Source Safe projects.", 0);
    qv::DiscardTempFile(output, temp_path);
    return 0;
  }
  char line[QV_LINE_SIZE];
  uint32_t flags = 0;
  while (ReadRecordLine(output, line, &flags, COMMENT_MODE_LISTING)) {
    qv::AppendProject(list, line);
  }
  qv::DiscardTempFile(output, temp_path);
  if (listOut != nullptr) {
    *listOut = list;
  } else {
    MPFreeStringList(list);
  }
  return 1;
}
