// The settings-record objects: a REG or a PS entry behind one handle, for
// callers that do not care which (SSRObject over RE and PE, CSSRObject over
// CRE and CPE).
#include <cstdlib>

#include "quorvex/report.h"
#include "quorvex/settings.h"
#include "records/family_io.h"
#include "records/orvik_rows.h"
#include "records/record_codec.h"
#include "records/ss_entry_family.h"

namespace qv {
namespace {

struct ObjectTexts {
  const char* not_found;
  const char* unsupported_type;
  const char* no_entry;
  const char* orvik_insert;
  const char* unknown_origin;
};

constexpr ObjectTexts kSsrTexts = {
    "MPGetSSR could not retrieve the SSR requested.",
    "Unsupported SSR Type, cannot create SSR Object.",
    "MPPutSSR does not support this SSRType!",
    "Cannot insert SSR record in Orvik shipping profile",
    "MEMORY ERROR:\r\nDeleting SSR with unknown origin.",
};
constexpr ObjectTexts kCssrTexts = {
    "MPGetCSSR could not retrieve the CSSR requested.",
    "Unsupported CSSR Type, cannot create CSSR Object.",
    "MPPutCSSR does not support this CSSRType!",
    "Cannot insert CSSR record in Orvik shipping profile",
    "MEMORY ERROR:\r\nDeleting CSSR with unknown origin.",
};

// One template for both objects: Object holds data, node, reg and ps.
template <class Object, class Record>
struct Objects {
  const EntryFamily& (*reg)();
  const EntryFamily& (*ps)();
  const KindSchema& (*body)();
  const ObjectTexts& texts;

  static Object* Wrap(Record* record, bool is_reg) {
    auto* object = static_cast<Object*>(calloc(1, sizeof(Object)));
    if (object == nullptr) {
      FreeRecord(record);
      return nullptr;
    }
    object->data = &record->row;
    object->node = record;
    (is_reg ? object->reg : object->ps) = record;
    return object;
  }

  int Get(const char* module, const char* key2, const char* name, Object** out) const {
    *out = nullptr;
    void* found = nullptr;
    bool is_reg = reg().Get(module, key2, name, &found) == 1;
    if (!is_reg && ps().Get(module, key2, name, &found) != 1) {
      ReportError(texts.not_found, 0);
      return 0;
    }
    *out = Wrap(static_cast<Record*>(found), is_reg);
    return *out != nullptr ? 1 : 0;
  }

  int Create(Object** out, uint32_t type) const {
    *out = nullptr;
    if (type != SSR_TYPE_REG && type != SSR_TYPE_PS) {
      ReportError(texts.unsupported_type, 0);
      return 0;
    }
    const bool is_reg = type == SSR_TYPE_REG;
    auto* record = static_cast<Record*>((is_reg ? reg() : ps()).New());
    if (record == nullptr) return 0;
    record->row.Type = static_cast<uint8_t>(type);
    *out = Wrap(record, is_reg);
    return *out != nullptr ? 1 : 0;
  }

  int Put(Object* object) const {
    if (!RequireLockedProfile()) return 0;
    if (IsOrvikProfile()) {
      if (object != nullptr && object->node != nullptr && InsertOrvikRow(body(), object->node)) {
        return 1;
      }
      ReportError(texts.orvik_insert, 0);
      return 0;
    }
    if (object != nullptr && object->reg != nullptr) return reg().Put(object->reg);
    if (object != nullptr && object->ps != nullptr) return ps().Put(object->ps);
    ReportError(texts.no_entry, 0);
    return 0;
  }

  int Free(Object** object) const {
    if (object == nullptr || *object == nullptr) return 1;
    if ((*object)->reg != nullptr) {
      FreeRecord((*object)->reg);
    } else if ((*object)->ps != nullptr) {
      FreeRecord((*object)->ps);
    } else {
      ReportError(texts.unknown_origin, 0);
    }
    free(*object);
    *object = nullptr;
    return 1;
  }
};

const Objects<SSRObject, SSRRecord> kSsr{&ReFamily, &PeFamily, &SsrBodySchema, kSsrTexts};
const Objects<CSSRObject, CSSRRecord> kCssr{&CreFamily, &CpeFamily, &CssrBodySchema, kCssrTexts};

}  // namespace
}  // namespace qv

extern "C" {

int MPGetSSR(const char* moduleName, const char* moduleKey2, const char* name,
             SSRObject** objectOut) {
  return qv::kSsr.Get(moduleName, moduleKey2, name, objectOut);
}
int MPCreateSSR(SSRObject** objectOut, uint32_t type) {
  return qv::kSsr.Create(objectOut, type);
}
int MPPutSSR(SSRObject* object) {
  return qv::kSsr.Put(object);
}
int MPFreeSSR(SSRObject** object) {
  return qv::kSsr.Free(object);
}

int MPDeleteSSR(const char* moduleName, const char* moduleKey2, const char* name) {
  // The associations go first; INI entries are not this operation's.
  MPDeleteMOSR(moduleName, moduleKey2, name);
  MPDeleteSFSR(moduleName, moduleKey2, nullptr, nullptr, nullptr, name);
  MPDeleteRE(moduleName, moduleKey2, name);
  MPDeletePE(moduleName, moduleKey2, name);
  return 1;
}

int MPGetCSSR(const char* moduleName, const char* moduleKey2, const char* name,
              CSSRObject** objectOut) {
  return qv::kCssr.Get(moduleName, moduleKey2, name, objectOut);
}
int MPCreateCSSR(CSSRObject** objectOut, uint32_t type) {
  return qv::kCssr.Create(objectOut, type);
}
int MPPutCSSR(CSSRObject* object) {
  return qv::kCssr.Put(object);
}
int MPFreeCSSR(CSSRObject** object) {
  return qv::kCssr.Free(object);
}

}  // extern "C"
