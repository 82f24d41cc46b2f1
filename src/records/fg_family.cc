// File groups: "[File Groups]" of a module's file. A group may belong to
// another group of the same module; deleting a group takes its shipped
// files and every group below it along.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "quorvex/filegroups.h"
#include "records/filegroup_families.h"

namespace qv {
namespace {

// A group that belongs to no group is written with "~" in its parent field.
void MarkNoParent(void* record) {
  auto* r = static_cast<FGRecord*>(record);
  if (r->row.ParentGroup[0] == '\0') snprintf(r->row.ParentGroup, sizeof r->row.ParentGroup, "~");
}

KindSchema MakeFgSchema() {
  KindSchema schema = ModuleRecordSchema<FGRecord>("FG");
  schema.members.insert(schema.members.end(),
                        {
                            QV_MEMBER(FGRecord, row.GroupName, "GroupName", true),
                            QV_MEMBER(FGRecord, row.TextIdA, "TextIdA", true),
                            QV_MEMBER(FGRecord, row.TextIdB, "TextIdB", true),
                            QV_MEMBER(FGRecord, row.ParentGroup, "ParentGroup", true),
                            QV_MEMBER(FGRecord, row.Number, "Number", true),
                            QV_MEMBER(FGRecord, row.Flags, "Flags", true),
                            QV_MEMBER(FGRecord, row.SecondName, "SecondName", true),
                            QV_MEMBER(FGRecord, row.SecondVersion, "SecondVersion", true),
                            QV_MEMBER(FGRecord, Attribute260, "Attribute260", false),
                            QV_MEMBER(FGRecord, Attribute29, "Attribute29", false),
                            QV_MEMBER(FGRecord, recordFlags, "recordFlags", false),
                            QV_MEMBER(FGRecord, lineNumber, "lineNumber", false),
                        });
  schema.line = {
      QV_LINE_FIELD(FGRecord, row.GroupName, LineSyntax::kText, 20, 0, 0),
      QV_LINE_FIELD(FGRecord, row.TextIdB, LineSyntax::kText, 40, 0, 0),
      QV_LINE_FIELD(FGRecord, row.TextIdA, LineSyntax::kText, 40, 0, 0),
      QV_LINE_FIELD(FGRecord, row.ParentGroup, LineSyntax::kText, 20, FO_OPTIONAL, 0),
      QV_LINE_FIELD(FGRecord, row.Number, LineSyntax::kInteger, 0, FO_OPTIONAL, 0),
      QV_LINE_FIELD(FGRecord, row.Flags, LineSyntax::kFlagString32, 0, 0, 0),
      QV_LINE_FIELD(FGRecord, row.SecondName, LineSyntax::kText, 40, 0, 0),
      QV_LINE_FIELD(FGRecord, row.SecondVersion, LineSyntax::kText, 10, 0, 0),
      QV_LINE_FIELD(FGRecord, Attribute260, LineSyntax::kText, 260, FO_OPTIONAL, 0),
      QV_LINE_FIELD(FGRecord, Attribute29, LineSyntax::kText, 29, FO_OPTIONAL, 0),
  };
  schema.flag_label = "File Group";
  schema.bit_names[0] = "Quillon Component";
  schema.bit_names[1] = "Expandable in Custom Dialog";
  schema.bit_names[2] = "Ships on CD";
  schema.bit_names[3] = "Ships on Diskette";
  schema.bit_names[4] = "Keep Even if Empty";
  schema.flag_mask = 0x30000000u;
  schema.after_read = &MarkNoParent;
  return schema;
}

// The groups whose deletion is under way, so that groups naming each other
// as parents end the cascade instead of repeating it.
std::vector<std::string>& GroupsBeingDeleted() {
  static std::vector<std::string> groups;
  return groups;
}

bool DeleteGroupsBelow(const char* module_name, const char* module_version, const char* group) {
  RecordList* list = nullptr;
  if (FgFamily::ReadAll(module_name, module_version, &list, MODE_READ) != 1) {
    FgFamily::List::Free(list);
    return false;
  }
  std::vector<std::string> children;
  FgFamily::List::ForEach(list, [&](FGRecord* r) {
    if (strcmp(r->row.ParentGroup, group) == 0 && strcmp(r->row.GroupName, group) != 0 &&
        std::find(children.begin(), children.end(), r->row.GroupName) == children.end()) {
      children.push_back(r->row.GroupName);
    }
  });
  FgFamily::List::Free(list);
  auto& busy = GroupsBeingDeleted();
  for (const std::string& child : children) {
    if (std::find(busy.begin(), busy.end(), child) != busy.end()) continue;
    FgFamily::Key key{module_name, module_version, {child}};
    if (FgFamily::Delete(key) != 1) return false;
  }
  return true;
}

}  // namespace

const KindSchema& FgDesc::Schema() {
  static const KindSchema schema = MakeFgSchema();
  return schema;
}

// The shipped files of the group, then the groups below it, go first; in
// the database they are rows of their own that the caller deletes.
bool FgDesc::DeleteReferences(const OwnedKey<1>& key) {
  if (IsOrvikProfile() || !key.parts[0].has_value()) return true;
  const char* group = key.parts[0]->c_str();
  auto& busy = GroupsBeingDeleted();
  busy.push_back(*key.parts[0]);
  SfFamily::Key files{key.module_name, key.module_version, {*key.parts[0], {}, {}}};
  bool read = false;
  bool ok = true;
  if (SfFamily::AnyMatch(files, &read)) ok = SfFamily::Delete(files) == 1;
  ok = ok && read && DeleteGroupsBelow(key.module_name, key.module_version, group);
  busy.pop_back();
  return ok;
}

int FgDesc::Put(FGRecord* record, bool* written) {
  return FgFamily::Put(record, written);
}

const KindApi& FgKindApi() {
  return FgFamily::Api();
}

}  // namespace qv

using qv::FgFamily;

QV_DEFINE_LIST_OPERATIONS(FG, FGRecord, MPFreeFG)

extern "C" {

int MPNewFG(FGRecord** recordOut) {
  *recordOut = FgFamily::New();
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreeFG(FGRecord* record) {
  qv::FreeRecord(record);
  return 1;
}

int MPReleaseFG(FGRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPGetFGCompleteList(const char* moduleName, const char* moduleVersion, FGList** listOut,
                        uint32_t mode) {
  return FgFamily::ReadAll(moduleName, moduleVersion, listOut, mode);
}

int MPPutFGCompleteList(const char* moduleName, const char* moduleVersion, FGList* list) {
  return FgFamily::PutCompleteList(moduleName, moduleVersion, list);
}

int MPPutFG(FGRecord* record) {
  return FgFamily::Put(record);
}

int MPDeleteFG(const char* moduleName, const char* moduleVersion, const char* groupName) {
  return FgFamily::Delete({moduleName, moduleVersion, {qv::KeyPart(groupName)}});
}

int MPGetFG(const char* moduleName, const char* moduleVersion, const char* groupName,
            FGRecord** recordOut) {
  return FgFamily::Get({moduleName, moduleVersion, {qv::KeyPart(groupName)}}, recordOut);
}

int MPFindFGNode(const char* groupName, FGList* list, FGRecord** recordOut) {
  FgFamily::Key key;
  if (groupName != nullptr && *groupName != '\0') key.parts[0] = groupName;
  return FgFamily::Find(key, list, recordOut);
}

int MPCopyFG(FGRecord** recordInOut, const FGRecord* source, int mode, FGList* list) {
  return FgFamily::Copy(recordInOut, source, mode, list);
}

int MPWriteFGList(const char* moduleName, const char* moduleVersion, FGList* list) {
  return FgFamily::Write(moduleName, moduleVersion, list);
}

int MPGetFGFlagNames(FGFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(qv::FgDesc::Schema());
  return 1;
}

}  // extern "C"
