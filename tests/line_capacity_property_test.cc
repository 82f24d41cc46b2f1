// For every kind with lines: random records, with texts made to break lines
// (quotes, carets, commas, "=", ";", "[", backslashes, line breaks, control
// and high bytes) and numbers at the edges of what the reader gives back,
// either read back from the file equal after the put, or are refused with
// the file unchanged byte for byte.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "core/report_capture.h"
#include "quorvex/quorvex.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "records/language_file.h"
#include "records/location_family.h"
#include "records/record_codec.h"
#include "records/resource_family.h"
#include "records/resource_files.h"
#include "support/location_profile.h"
#include "support/scoped_env.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

constexpr int kRecordsPerKind = 10000;

char* At(void* record, size_t offset) {
  return static_cast<char*>(record) + offset;
}

// The members a kind's line carries: the ones the line fields name, or the
// ones a kind with its own line format lists.
std::vector<const qv::MemberSpec*> CarriedMembers(const qv::KindSchema& schema) {
  std::vector<const qv::MemberSpec*> carried;
  for (const qv::MemberSpec& m : schema.members) {
    bool on_line = false;
    for (const qv::LineField& f : schema.line) on_line = on_line || f.offset == m.offset;
    for (const char* name : schema.custom_line_members)
      on_line = on_line || strcmp(name, m.name) == 0;
    if (on_line) carried.push_back(&m);
  }
  return carried;
}

class RandomRecords {
 public:
  explicit RandomRecords(uint32_t seed) : rng_(seed) {}

  // A hostile text holds some of the characters that break lines; a plain
  // one only letters, digits and blanks inside.
  std::string Text(size_t width, bool hostile) {
    static const std::string kHostile = "\"^,=;[]\\ \t\r\n\x01\x7f\x80\xff";
    size_t length = Pick(4) == 0 ? width : Pick(std::min<size_t>(width, 12) + 1);
    std::string text;
    for (size_t i = 0; i < length; ++i) {
      text += hostile && Pick(6) == 0 ? kHostile[Pick(kHostile.size())]
                                      : static_cast<char>('a' + Pick(26));
    }
    return text;
  }

  // Edges of what the reader gives back, or small values (every kind has
  // some number with few meanings, such as an OS type).
  uint32_t Number(bool hostile) {
    static const uint32_t kEdges[] = {0,     1,     7,           255,         256,
                                      65535, 65536, 0x7fffffffu, 0x80000000u, 0xffffffffu};
    if (!hostile) return static_cast<uint32_t>(Pick(4));
    return Pick(2) == 0 ? kEdges[Pick(std::size(kEdges))] : static_cast<uint32_t>(rng_());
  }

  // Each member is hostile with some chance, so that records of every
  // kind land on both sides.
  void Fill(const qv::KindSchema& schema, void* record) {
    for (const qv::MemberSpec* m : CarriedMembers(schema)) {
      bool hostile = Pick(8) == 0;
      if (m->type == qv::ValueType::kText) {
        std::string text = Text(m->size - 1, hostile);
        snprintf(At(record, m->offset), m->size, "%s", text.c_str());
      } else if (m->type == qv::ValueType::kVersionQuad) {
        uint32_t pair[2] = {Number(hostile), Number(hostile)};
        memcpy(At(record, m->offset), pair, sizeof pair);
      } else {
        qv::SetUnsigned(record, m->offset, m->type, Number(hostile));
      }
    }
    qv::RecordFlagsOf(schema, record) = Pick(4) == 0 ? RECORD_IAO : 0;
  }

  size_t Pick(size_t n) { return static_cast<size_t>(rng_() % n); }

 private:
  std::mt19937 rng_;
};

// What each kind needs besides its schema: how one record is put, where its
// file lies, and how the file is read back.
struct KindCase {
  const char* code;
  const char* file;  // below the profile
  const char* empty_file;
  std::function<int(void*)> put;
  std::function<bool(RecordList**)> read_back;
  std::function<void(void*)> prepare = [](void*) {};
};

std::string Name(const ::testing::TestParamInfo<const char*>& info) {
  std::string name = info.param;
  for (char& c : name) c = c == ' ' ? '_' : c;
  return name;
}

class LineCapacityPropertyTest : public ::testing::TestWithParam<const char*> {
 protected:
  LineCapacityPropertyTest() : profile_(&host_) {}

  // Thousands of puts each make the file durable; a folder in memory, where
  // there is one, keeps that from dominating the suite's time.
  qvtest::ScopedEnv memory_folder_{"TMPDIR",
                                   qvtest::PathExists("/dev/shm") ? "/dev/shm" : getenv("TMPDIR")};

  KindCase CaseFor(const std::string& code) {
    auto language_read = [](const qv::LanguageFileKind& kind) {
      return
          [&kind](RecordList** list) { return qv::ReadLanguageList(kind, "US", MODE_READ, list); };
    };
    auto fixed_read = [](const char* kind) {
      return [kind](RecordList** list) {
        return qv::ReadKindList(*qv::FindKindApi(kind)->schema, qv::Owner{}, MODE_READ, list);
      };
    };
    auto set_us = [](size_t offset, size_t size) {
      return [offset, size](void* r) { snprintf(At(r, offset), size, "US"); };
    };
    if (code == "AD") {
      return {"AD", "ADS/adlist.ad", "\n[SourceSafe]\n$Header$\n\n[Ads]\n",
              [](void* r) { return MPPutAD(static_cast<ADRecord*>(r)); }, fixed_read("AD")};
    }
    if (code == "LO") {
      return {"LO", "locs/vardo.lo", qvtest::kLocationsHead,
              [](void* r) { return MPPutLO(static_cast<LORecord*>(r)); }, fixed_read("LO")};
    }
    if (code == "IL") {
      return {"IL", "locs/icons.lo", qvtest::kIconLocationsHead,
              [](void* r) { return MPPutIL(static_cast<ILRecord*>(r)); }, fixed_read("IL")};
    }
    if (code == "Resources") {
      return {"Resources",
              "RES_US/pelhamUS.re",
              "\n[SourceSafe]\n$Header$\n\n[Resources]\n",
              [](void* r) {
                ResourceList* list = nullptr;
                MPNewResourceList(&list);
                ResourceRecord* copy = nullptr;
                MPCopyResource(&copy, static_cast<ResourceRecord*>(r));
                MPAppendResource(list, copy);
                int result = MPPutResourceCompleteList(list);
                // The put names a nameless text in the list it was given.
                memcpy(static_cast<ResourceRecord*>(r)->ResourceName, copy->ResourceName,
                       sizeof copy->ResourceName);
                MPFreeResourceList(list);
                // Later reads come from the file, not from the held texts.
                qv::WriteBackResourceFiles();
                return result;
              },
              language_read(qv::ResourceFileKind()),
              set_us(offsetof(ResourceRecord, LanguageCode), sizeof(ResourceRecord::LanguageCode))};
    }
    const bool remove = code == "Remove Strings";
    return {remove ? "Remove Strings" : "Strings",
            "LANGUAGE/setupUS.msg",
            "\n[SourceSafe]\n$Header$\n\n[Strings]\n[Remove Strings]\n",
            [remove](void* r) {
              return remove ? MPPutRemoveString(static_cast<RemoveStringRecord*>(r))
                            : MPPutString(static_cast<StringRecord*>(r));
            },
            language_read(remove ? qv::RemoveStringFileKind() : qv::StringFileKind()),
            set_us(offsetof(StringRecord, LanguageCode), sizeof(StringRecord::LanguageCode))};
  }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

TEST_P(LineCapacityPropertyTest, RandomRecordsReadBackEqualOrAreRefusedWithTheFileUnchanged) {
  const KindCase kind = CaseFor(GetParam());
  const qv::KindSchema& schema = *qv::FindKindApi(kind.code)->schema;
  const std::string path = profile_.dir() + "/" + kind.file;
  qvtest::WriteFileBytes(path, kind.empty_file);
  ASSERT_EQ(profile_.Open(qvtest::kLockedOpen), 1);
  host_.Clear();

  RandomRecords random(20261122u);
  int accepted = 0;
  int refused = 0;
  for (int i = 0; i < kRecordsPerKind; ++i) {
    void* record = qv::NewRecord(schema);
    random.Fill(schema, record);
    kind.prepare(record);
    if (kind.put(record) == 1) {
      ++accepted;
      // What the reader makes of the line: the given record after the
      // kind's own read-time checks (locations normalise their folders).
      void* expected = qv::NewRecord(schema);
      memcpy(expected, record, schema.record_size);
      if (schema.after_read != nullptr) {
        qv::ReportCapture quiet(true);
        schema.after_read(expected);
      }
      RecordList* list = nullptr;
      ASSERT_TRUE(kind.read_back(&list)) << "record " << i;
      ASSERT_EQ(list->count, 1u) << "record " << i;
      void* back = list->head->record;
      for (const qv::MemberSpec* m : CarriedMembers(schema)) {
        bool same = m->type == qv::ValueType::kText
                        ? strcmp(At(expected, m->offset), At(back, m->offset)) == 0
                        : memcmp(At(expected, m->offset), At(back, m->offset),
                                 m->type == qv::ValueType::kVersionQuad ? m->size
                                 : m->type == qv::ValueType::kU8        ? 1
                                 : m->type == qv::ValueType::kU16       ? 2
                                                                        : 4) == 0;
        ASSERT_TRUE(same) << kind.code << " record " << i << " member " << m->name;
      }
      EXPECT_EQ(qv::RecordFlagsOf(schema, back) & RECORD_IAO,
                qv::RecordFlagsOf(schema, expected) & RECORD_IAO);
      qv::GenericList::Free(list);
      qv::FreeRecord(expected);
      qvtest::WriteFileBytes(path, kind.empty_file);
    } else {
      ++refused;
      ASSERT_EQ(qvtest::ReadFileBytes(path), kind.empty_file) << "record " << i;
      ASSERT_EQ(host_.errors().size(), 1u) << "record " << i;
      EXPECT_NE(host_.errors()[0].find(" record refused: "), std::string::npos)
          << host_.errors()[0];
    }
    host_.Clear();
    qv::FreeRecord(record);
  }
  // The generator must reach both sides.
  EXPECT_GT(accepted, kRecordsPerKind / 20);
  EXPECT_GT(refused, kRecordsPerKind / 20);
}

INSTANTIATE_TEST_SUITE_P(Kinds, LineCapacityPropertyTest,
                         ::testing::Values("AD", "LO", "IL", "Resources", "Strings",
                                           "Remove Strings"),
                         Name);

}  // namespace
