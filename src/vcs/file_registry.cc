// The registry entry that records a working file under version control.
#include <cstdio>
#include <string>
#include <vector>

#include "platform/fs.h"
#include "platform/registry.h"
#include "quorvex/report.h"
#include "quorvex/vcs.h"

namespace qv {
namespace {

constexpr char kFilesKey[] = "SOFTWARE\\Vardo\\Lodestar\\Stewardry\\VCS\\FILES";
constexpr size_t kFileNameMax = 40;

void Report(const char* format, const char* value) {
  char message[QV_LINE_SIZE];
  snprintf(message, sizeof message, format, value);
  ReportError(message, 0);
}

bool SetString(const std::string& key, const char* name, const char* text) {
  RegistryValue value;
  value.name = name;
  value.text = text != nullptr ? text : "";
  return RegistrySetValues(key, {value});
}

}  // namespace
}  // namespace qv

extern "C" int VcsRegisterFile(const char* workFilePath, const char* objectType,
                               const char* objectName, const char* objectVersion) {
  const char* work_file = workFilePath != nullptr ? workFilePath : "";
  const char* type = objectType != nullptr ? objectType : "";
  const char* name = objectName != nullptr ? objectName : "";
  const char* version = objectVersion != nullptr ? objectVersion : "";

  std::string drive, directory, file_name;
  qv::SplitPath(work_file, &drive, &directory, &file_name);
  if (file_name.size() > qv::kFileNameMax) file_name.resize(qv::kFileNameMax);

  char key[QV_LINE_SIZE];
  snprintf(key, sizeof key, "%s\\%s", qv::kFilesKey, file_name.c_str());
  if (!qv::RegistryCreateKey(key)) {
    qv::Report("Error Opening Key: HKEY_LOCAL_MACHINE\\%s", key);
    return 0;
  }

  // The work file path's failure names the object, as the host tool's
  // messages always have.
  struct StringValue {
    const char* name;
    const char* text;
    const char* failure_format;
    const char* failure_value;
  };
  const StringValue values[] = {
      {"WorkFilePath", work_file, "Error setting Value ObjectName=%s", name},
      {"ObjectType", type, "Error setting Value ObjectType=%s", type},
      {"ObjectName", name, "Error setting Value ObjectName=%s", name},
      {"ObjectVersion", version, "Error setting Value ObjectVersion=%s", version},
  };
  for (const StringValue& value : values) {
    if (!qv::SetString(key, value.name, value.text)) {
      qv::Report(value.failure_format, value.failure_value);
      return 0;
    }
  }

  // The other status bits belong to the host tool and are kept.
  qv::RegistryValue status;
  status.name = "VCS Status";
  status.is_dword = true;
  status.dword = qv::RegistryGetDword(key, "VCS Status").value_or(0) | VCS_REGISTERED;
  if (!qv::RegistrySetValues(key, {status})) {
    char message[QV_LINE_SIZE];
    snprintf(message, sizeof message, "Error setting VCS Status = %0X", VCS_REGISTERED);
    ReportError(message, 0);
    return 0;
  }
  return 1;
}
