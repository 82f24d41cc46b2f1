// Ads: the advertisements of the profile, in "<profile>\ADS\adlist.ad".
#include <strings.h>

#include <cstring>

#include "quorvex/ad.h"
#include "quorvex/report.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "records/line_capacity.h"
#include "records/record_codec.h"
#include "records/reference_hooks.h"

namespace qv {
namespace {

KindSchema MakeAdSchema() {
  KindSchema schema = {
      FindKindInfo("AD"),
      sizeof(ADRecord),
      offsetof(ADRecord, row),
      sizeof(ADRow),
      offsetof(ADRecord, rowPointer),
      offsetof(ADRecord, recordFlags),
      offsetof(ADRecord, lineNumber),
      {
          QV_MEMBER(ADRecord, row.id, "id", true),
          QV_MEMBER(ADRecord, row.number1, "number1", true),
          QV_MEMBER(ADRecord, row.number2, "number2", true),
          QV_MEMBER(ADRecord, row.text1, "text1", true),
          QV_MEMBER(ADRecord, row.text2, "text2", true),
          QV_MEMBER(ADRecord, row.flags, "flags", true),
          QV_MEMBER(ADRecord, row.rowReference, "rowReference", true),
          QV_MEMBER(ADRecord, recordFlags, "recordFlags", false),
          QV_MEMBER(ADRecord, lineNumber, "lineNumber", false),
          QV_MEMBER(ADRecord, name, "name", false),
      },
      {
          QV_LINE_FIELD(ADRecord, row.id, LineSyntax::kInteger, 0, 0, 0),
          QV_LINE_FIELD(ADRecord, row.number1, LineSyntax::kInteger, 0, 0, 0),
          QV_LINE_FIELD(ADRecord, row.number2, LineSyntax::kInteger, 0, 0, 0),
          QV_LINE_FIELD(ADRecord, row.text1, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(ADRecord, row.text2, LineSyntax::kText, 40, 0, 0),
          QV_LINE_FIELD(ADRecord, row.flags, LineSyntax::kFlag, 0, 0, AD_WORKSTATION),
          QV_LINE_FIELD(ADRecord, row.flags, LineSyntax::kFlag, 0, 0, AD_NETWORK),
          QV_LINE_FIELD(ADRecord, row.flags, LineSyntax::kFlag, 0, 0, AD_LOCAL),
          QV_LINE_FIELD(ADRecord, name, LineSyntax::kText, 384, 0, 0),
      },
      "Ad",
      {nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       nullptr,
       "Participates in Local install",
       "Participates in Network install",
       "Participates in Workstation install",
       nullptr},
      AD_WORKSTATION | AD_NETWORK | AD_LOCAL,
      "Ad File %s cannot be found or opened!",
  };
  // An Ads line is read field by field: a bad field leaves its value empty
  // and the rest of the line is still read.
  schema.failed_line = KindSchema::FailedLine::kKeepLine;
  return schema;
}

const KindSchema& AdSchema() {
  static const KindSchema schema = MakeAdSchema();
  return schema;
}

using AdList = ListOps<ADRecord, &MPFreeAD>;

// The largest id + 1 over the lists (1 when they are empty).
uint32_t NextId(std::initializer_list<RecordList*> lists) {
  uint32_t next = 1;
  for (RecordList* list : lists) {
    AdList::ForEach(list, [&](ADRecord* r) {
      if (r->row.id >= next) next = r->row.id + 1;
    });
  }
  return next;
}

// A copy of `source` that takes the place of `stored` in the list.
void ReplaceStored(RecordList* list, ADRecord* stored, const ADRecord* source) {
  ADRecord* record = stored;
  MPCopyAD(&record, source, 1, list);
}

void AppendCopy(RecordList* list, const ADRecord* source) {
  ADRecord* record = nullptr;
  MPCopyAD(&record, source, 0, nullptr);
  AdList::Append(list, record);
}

// MPWriteADList for lists whose records were read from the file or checked
// on their way in.
int WriteAdList(ADList* list) {
  if (!RequireLockedProfile()) return 0;
  if (IsOrvikProfile()) {
    ReportError("ADs not implemented in QUORVEX for Orvik", 0);
    return 0;
  }
  return WriteKindSection(AdSchema(), Owner{}, list) ? 1 : 0;
}

// The put without a list of the section, as the list would have it: the
// record takes the place (and keeps the id, row reference, name and line)
// of the first stored record with its name or its id; without either it is
// added at the end, a record without an id getting the largest id + 1,
// which the caller's record is given as well.
int PutAdStreamed(ADRecord* record, bool* written) {
  const uint32_t id = record->row.id;
  uint32_t next = 1;
  ADRecord* added = nullptr;
  if (!MPCopyAD(&added, record, 0, nullptr)) return 0;
  if (id == 0) added->row.id = next;
  bool rewritten = false;
  bool read = PutIntoSection(
      AdSchema(), Owner{}, added,
      [&](const void* stored) {
        const auto* ad = static_cast<const ADRecord*>(stored);
        if (ad->row.id >= next) next = ad->row.id + 1;
        if (id == 0) added->row.id = next;
        if (record->name[0] != '\0' && strcasecmp(record->name, ad->name) == 0) return true;
        return id != 0 && ad->row.id == id;
      },
      [](void* copy, const void* stored) {
        auto* replacing = static_cast<ADRecord*>(copy);
        const auto* old = static_cast<const ADRecord*>(stored);
        replacing->row.id = old->row.id;
        replacing->row.rowReference = old->row.rowReference;
        memcpy(replacing->name, old->name, sizeof replacing->name);
        replacing->lineNumber = old->lineNumber;
      },
      &rewritten);
  MPFreeAD(added);
  if (!read) return 0;
  if (id == 0) record->row.id = next;
  if (written != nullptr) *written = rewritten;
  return 1;
}

// MPPutAD, telling in *written (when given) whether the file was
// rewritten: the put's result is 1 either way.
int PutAd(ADRecord* record, bool* written) {
  if (written != nullptr) *written = false;
  if (!RequireLockedProfile()) return 0;
  if (!RecordFitsLine(AdSchema(), record)) return 0;
  if (!IsOrvikProfile() && CanPutIntoSection(AdSchema())) return PutAdStreamed(record, written);
  ADList* list = nullptr;
  if (!MPGetADCompleteList(&list, MODE_UPDATE)) {
    MPFreeADList(list);
    return 0;
  }
  uint32_t next = NextId({list});
  if (record->row.id == 0) record->row.id = next;
  ADRecord* found = nullptr;
  list->current = nullptr;
  if (MPFindADNode(record->row.id, record->name, list, &found)) {
    ReplaceStored(list, found, record);
  } else {
    AppendCopy(list, record);
  }
  list->current = nullptr;
  // The put has happened in memory; a failed rewrite was reported and the
  // caller has always been told 1 here.
  bool rewritten = WriteAdList(list) == 1;
  if (written != nullptr) *written = rewritten;
  MPFreeADList(list);
  return 1;
}

bool ParseId(const std::string& text, uint32_t* id) {
  char* end = nullptr;
  unsigned long value = strtoul(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || value > UINT32_MAX) return false;
  *id = static_cast<uint32_t>(value);
  return true;
}

const KindApi& MakeAdApi() {
  static KindApi api;
  api.schema = &AdSchema();
  api.key_names = {"id"};
  api.list = [](const Texts&, RecordList** list) {
    return MPGetADCompleteList(list, MODE_READ) == 1;
  };
  api.get = [](const Texts& key, void** record) {
    uint32_t id;
    if (!ParseId(key.at(0), &id)) return false;
    ADRecord* found = nullptr;
    bool ok = MPGetAD(id, &found) == 1;
    *record = found;
    return ok;
  };
  api.put = [](void* record) {
    bool written = false;
    return PutAd(static_cast<ADRecord*>(record), &written) == 1 && written;
  };
  api.remove = [](const Texts& key) {
    uint32_t id;
    return ParseId(key.at(0), &id) && MPDeleteAD(id) == 1;
  };
  api.flag_names = [](QvFlagNames** table) { return MPGetADFlagNames(table) == 1; };
  api.stored = [](const void* record) -> void* {
    const ADRecord* ad = static_cast<const ADRecord*>(record);
    ADList* list = nullptr;
    if (!MPGetADCompleteList(&list, MODE_READ)) {
      MPFreeADList(list);
      return nullptr;
    }
    ADRecord* found = nullptr;
    ADRecord* copy = nullptr;
    list->current = nullptr;
    if (MPFindADNode(ad->row.id, ad->name, list, &found)) MPCopyAD(&copy, found, 0, nullptr);
    MPFreeADList(list);
    return copy;
  };
  return api;
}

}  // namespace

const KindApi& AdKindApi() {
  static const KindApi& api = MakeAdApi();
  return api;
}

}  // namespace qv

using qv::AdSchema;

QV_DEFINE_LIST_OPERATIONS(AD, ADRecord, MPFreeAD)

extern "C" {

int MPNewAD(ADRecord** recordOut) {
  *recordOut = static_cast<ADRecord*>(qv::NewRecord(AdSchema()));
  return *recordOut != nullptr ? 1 : 0;
}

int MPFreeAD(ADRecord* record) {
  qv::FreeRecord(record);
  return 1;
}

int MPReleaseAD(ADRecord** record) {
  if (record == nullptr) return 1;
  qv::FreeRecord(*record);
  *record = nullptr;
  return 1;
}

int MPGetADCompleteList(ADList** listOut, uint32_t mode) {
  if (!qv::RequireOpenProfile()) return 0;
  return qv::ReadKindList(AdSchema(), qv::Owner{}, mode, listOut) ? 1 : 0;
}

int MPFindADNode(uint32_t id, const char* name, ADList* list, ADRecord** recordOut) {
  for (;;) {
    ADRecord* record = qv::AdList::Next(list);
    *recordOut = record;
    if (record == nullptr) return 0;
    if (name != nullptr && name[0] != '\0' && strcasecmp(name, record->name) == 0) return 1;
    if (id == 0 || record->row.id == id) return 1;
  }
}

int MPCopyAD(ADRecord** recordInOut, const ADRecord* source, int mode, ADList* list) {
  ADRecord* stored = *recordInOut;
  ADRecord* copy = nullptr;
  if (!MPNewAD(&copy)) return 0;
  copy->row = source->row;
  if (mode == 1 && stored != nullptr) {
    // The stored record keeps its identity: id, row reference, name, line.
    copy->row.id = stored->row.id;
    copy->row.rowReference = stored->row.rowReference;
    memcpy(copy->name, stored->name, sizeof copy->name);
    copy->lineNumber = stored->lineNumber;
  } else {
    memcpy(copy->name, source->name, sizeof copy->name);
    copy->lineNumber = source->lineNumber;
  }
  copy->recordFlags = source->recordFlags;
  *recordInOut = copy;
  if (stored != nullptr && list != nullptr) qv::AdList::ReplaceRecord(list, stored, copy);
  return 1;
}

int MPWriteADList(ADList* list) {
  if (!qv::RequireLockedProfile()) return 0;
  if (!qv::IsOrvikProfile() && !qv::ListFitsLines(AdSchema(), list)) return 0;
  return qv::WriteAdList(list);
}

int MPGetAD(uint32_t id, ADRecord** recordOut) {
  *recordOut = nullptr;
  // Single records are served from the text store only.
  if (qv::IsOrvikProfile()) return 0;
  ADList* list = nullptr;
  if (!MPGetADCompleteList(&list, MODE_READ)) {
    MPFreeADList(list);
    return 0;
  }
  ADRecord* found = nullptr;
  int result = 0;
  list->current = nullptr;
  if (MPFindADNode(id, "", list, &found)) result = MPCopyAD(recordOut, found, 0, nullptr);
  MPFreeADList(list);
  return result;
}

int MPPutAD(ADRecord* record) {
  return qv::PutAd(record, nullptr);
}

int MPPutADCompleteList(ADList* list) {
  // Deliberately no early return: the rewrite below reports the lock again.
  qv::RequireLockedProfile();
  if (!qv::ListFitsLines(AdSchema(), list)) return 0;
  ADList* stored = nullptr;
  if (!MPGetADCompleteList(&stored, MODE_UPDATE)) {
    MPFreeADList(stored);
    return 0;
  }
  uint32_t next = qv::NextId({stored, list});
  stored->current = nullptr;
  qv::AdList::ForEach(list, [&](ADRecord* record) {
    if (record->row.id == 0) record->row.id = next++;
    ADRecord* found = nullptr;
    if (!MPFindADNode(record->row.id, record->name, stored, &found)) {
      stored->current = nullptr;
      MPFindADNode(record->row.id, record->name, stored, &found);
    }
    if (found != nullptr) {
      qv::ReplaceStored(stored, found, record);
    } else {
      qv::AppendCopy(stored, record);
    }
  });
  stored->current = nullptr;
  qv::WriteAdList(stored);
  MPFreeADList(stored);
  return 1;
}

int MPUpdateADReferences(uint32_t id, uint32_t mode, uint32_t newValue) {
  if (mode == qv::kDeleteReferences) {
    qv::DeleteDriverAdsOfAd(id);
    qv::DeleteFileGroupAdsOfAd(id);
  } else if (mode == qv::kUpdateReferences) {
    qv::UpdateDriverAdsOfAd(id, mode, newValue);
    qv::UpdateFileGroupAdsOfAd(id, mode, newValue);
  }
  return 1;
}

int MPDeleteAD(uint32_t id) {
  if (!qv::RequireLockedProfile()) return 0;
  MPUpdateADReferences(id, qv::kDeleteReferences, 0);
  if (qv::IsOrvikProfile()) {
    ReportError("Cannot delete AD record from Orvik shipping profile(not implemented in TARROWBY.)",
                0);
    return 0;
  }
  ADList* list = nullptr;
  if (!MPGetADCompleteList(&list, MODE_READ)) {
    MPFreeADList(list);
    return 0;
  }
  ADRecord* found = nullptr;
  list->current = nullptr;
  bool present = MPFindADNode(id, "", list, &found) == 1;
  MPFreeADList(list);
  if (!present) return 0;
  list = nullptr;
  if (!MPGetADCompleteList(&list, MODE_UPDATE)) {
    MPFreeADList(list);
    return 0;
  }
  list->current = nullptr;
  while (MPFindADNode(id, "", list, &found)) {
    qv::UnlinkRecord(list, found);
    MPFreeAD(found);
  }
  qv::WriteAdList(list);
  MPFreeADList(list);
  return 1;
}

int MPGetADFlagNames(ADFlagNames** tableOut) {
  *tableOut = qv::NewFlagNames(AdSchema());
  return 1;
}

}  // extern "C"
