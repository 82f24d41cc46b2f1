// A put of one record into an owner's file copies most lines on their bytes
// alone. Whatever the section holds (lines in the writer's form and in
// forms only the reader takes, the key several times and in other
// spellings, lines behind the marker, comments, blank lines, now and then
// a line that fails the read), the put must leave exactly the bytes, and
// report exactly what, the list form of the same put does: read the
// section into a list, replace the first record with the key (or append),
// write the list back.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "quorvex/quorvex.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "support/location_profile.h"
#include "support/scripted_host.h"
#include "support/temp_dir.h"

namespace {

using qvtest::FlagLetters;
using qvtest::ReadFileBytes;
using qvtest::WriteFileBytes;

constexpr int kRounds = 150;

// One kind of an owner's file: how its file starts and ends, its lines,
// and its record put.
struct KindCase {
  const char* code;
  const char* file;  // under the profile folder
  std::string head;  // through the section's header
  std::string tail;  // the sections after it
  qv::Owner owner;
  std::function<std::string(std::mt19937&)> line;
  // Fills a record of the kind, with a key from the same small pool.
  std::function<void(std::mt19937&, void* record)> fill;
  // Whether two records carry the same key.
  std::function<bool(const void* a, const void* b)> same_key;
  // What a put of `from` over `to` changes: every member but the key's.
  std::function<void(void* to, const void* from)> take_over;
  std::function<int(void* record)> put;
};

size_t Pick(std::mt19937& rng, size_t n) {
  return static_cast<size_t>(rng() % n);
}

template <size_t N>
const char* OneOf(std::mt19937& rng, const char* const (&forms)[N]) {
  return forms[Pick(rng, N)];
}

// Lines that every kind's section may hold besides its own.
std::string OtherLine(std::mt19937& rng) {
  static const char* const kForms[] = {"; a comment\r\n", "\r\n", "   \r\n",
                                       ";IAO; also a comment\r\n", "\t; indented comment\r\n"};
  return OneOf(rng, kForms);
}

KindCase ShippingMedia() {
  KindCase c;
  c.code = "SM";
  c.file = "installs/local.in";
  c.head =
      "\n[Install]\n\"Local\",\"\",\"\",\"\",\"t1\",\"t2\",,,,,,,,,,\"t7\",\"\",\"\",\"t8\",\"t9\","
      "\"t10\"\r\n[Shipping Media]\r\n";
  c.tail = "[Archives]\r\n\"Main\",1,\"C:\\\\ARC\",2,\"cab\"\r\n";
  c.owner.name = "Local";
  c.line = [](std::mt19937& rng) {
    static const char* const kNumbers[] = {"1", "2", "3", "12", "01", " 2", "2 ", "0", "00"};
    static const char* const kNames[] = {
        "\"Disk\"",  "\"Disk 2\"", "\"\"",    "\"a^\"b\"",
        " \"Disk\"", "\"Disk\" ",  "\"x\"\"", "\"0123456789012345678901234567890123456789X\""};
    std::string line = Pick(rng, 8) == 0 ? ";IAO;" : "";
    line += std::string(OneOf(rng, kNumbers)) + "," + OneOf(rng, kNames);
    if (Pick(rng, 30) == 0) line += ",\"extra\"";
    if (Pick(rng, 60) == 0) line = "1";  // a text missing: the read fails
    return line + (Pick(rng, 4) == 0 ? "\n" : "\r\n");
  };
  c.fill = [](std::mt19937& rng, void* record) {
    auto* r = static_cast<SMRecord*>(record);
    snprintf(r->row.InstallName, sizeof r->row.InstallName, "Local");
    static const uint32_t kNumbers[] = {1, 2, 3, 12, 7};
    r->row.MediaNumber = kNumbers[Pick(rng, 5)];
    static const char* const kNames[] = {"Disk", "New", "", "a\"b", "with blanks "};
    snprintf(r->row.MediaName, sizeof r->row.MediaName, "%s", OneOf(rng, kNames));
    r->recordFlags = Pick(rng, 5) == 0 ? RECORD_IAO : 0;
  };
  c.same_key = [](const void* a, const void* b) {
    return static_cast<const SMRecord*>(a)->row.MediaNumber ==
           static_cast<const SMRecord*>(b)->row.MediaNumber;
  };
  c.take_over = [](void* to, const void* from) {
    auto* t = static_cast<SMRecord*>(to);
    const auto* f = static_cast<const SMRecord*>(from);
    memcpy(t->row.MediaName, f->row.MediaName, sizeof t->row.MediaName);
    t->recordFlags = f->recordFlags;
  };
  c.put = [](void* record) { return MPPutSM(static_cast<SMRecord*>(record)); };
  return c;
}

KindCase SubProducts() {
  KindCase c;
  c.code = "MP";
  c.file = "products/tools.pr";
  c.head = "\n[Product]\n\"Tools\",\"1.0\",\"\",\"\",\"\",\"\",\"\",\"\",\"" + FlagLetters("Y") +
           "\",7\r\n[Sub-Products]\r\n";
  c.tail = "[Modules]\r\n\"Editor\",\"8.0\",,\"" + FlagLetters("Y") + "\"\r\n";
  c.owner.name = "Tools";
  c.owner.key = "1.0";
  c.line = [](std::mt19937& rng) {
    static const char* const kNames[] = {"\"Suite\"",    "\"suite\"",  "\"Kit\"",
                                         "\"Su^\"ite\"", "\"Suite\" ", " \"Kit\""};
    static const char* const kVersions[] = {"\"1\"", "\"1\"", "\"2\"", "\"\"", "\"1 \""};
    static const char* const kNumbers[] = {"", "", "3", "0", "03", " 4"};
    static const char* const kFlags[] = {"N", "Y", "y", " N"};
    std::string line = Pick(rng, 8) == 0 ? ";IAO;" : "";
    line += std::string(OneOf(rng, kNames)) + "," + OneOf(rng, kVersions) + "," +
            OneOf(rng, kNumbers) + "," + OneOf(rng, kFlags);
    if (Pick(rng, 30) == 0) line += ",";
    if (Pick(rng, 60) == 0) line = "\"Suite,\"1\"";  // no closing quote: the read fails
    return line + "\r\n";
  };
  c.fill = [](std::mt19937& rng, void* record) {
    auto* r = static_cast<MPRecord*>(record);
    snprintf(r->row.ProductName, sizeof r->row.ProductName, "Tools");
    snprintf(r->row.ProductVersion, sizeof r->row.ProductVersion, "1.0");
    static const char* const kNames[] = {"Suite", "Suite", "suite", "Kit", "Su\"ite", "New"};
    static const char* const kVersions[] = {"1", "1", "2", ""};
    snprintf(r->row.SubProductName, sizeof r->row.SubProductName, "%s", OneOf(rng, kNames));
    snprintf(r->row.SubProductVersion, sizeof r->row.SubProductVersion, "%s",
             OneOf(rng, kVersions));
    r->row.Number = static_cast<int32_t>(Pick(rng, 3));
    r->row.Flags = Pick(rng, 2) == 0 ? MP_MOST_IMPORTANT : 0;
    r->recordFlags = Pick(rng, 5) == 0 ? RECORD_IAO : 0;
  };
  c.same_key = [](const void* a, const void* b) {
    const auto* x = static_cast<const MPRecord*>(a);
    const auto* y = static_cast<const MPRecord*>(b);
    return strcmp(x->row.SubProductName, y->row.SubProductName) == 0 &&
           strcmp(x->row.SubProductVersion, y->row.SubProductVersion) == 0;
  };
  c.take_over = [](void* to, const void* from) {
    auto* t = static_cast<MPRecord*>(to);
    const auto* f = static_cast<const MPRecord*>(from);
    t->row.Number = f->row.Number;
    t->row.Flags = f->row.Flags;
    t->recordFlags = f->recordFlags;
  };
  c.put = [](void* record) { return MPPutMP(static_cast<MPRecord*>(record)); };
  return c;
}

class StreamedPutPropertyTest : public ::testing::TestWithParam<KindCase (*)()> {
 protected:
  StreamedPutPropertyTest() : profile_(&host_) {}

  std::string Path(const KindCase& c) const { return profile_.dir() + "/" + c.file; }

  // The list form of the put: what the put must leave.
  bool PutThroughList(const KindCase& c, const qv::KindSchema& schema, const void* record,
                      bool* had_key) {
    RecordList* list = nullptr;
    if (!qv::ReadKindList(schema, c.owner, MODE_UPDATE, &list)) {
      qv::GenericList::Free(list);
      return false;
    }
    void* found = nullptr;
    qv::GenericList::ForEach(list, [&](void* stored) {
      if (found == nullptr && c.same_key(stored, record)) found = stored;
    });
    *had_key = found != nullptr;
    if (found != nullptr) {
      c.take_over(found, record);
    } else {
      void* copy = qv::NewRecord(schema);
      memcpy(copy, record, schema.record_size);
      qv::PointAtOwnRow(schema, copy);
      SetLineNumberToNone(schema, copy);
      qv::GenericList::Append(list, copy);
    }
    const bool written = qv::WriteKindSection(schema, c.owner, list);
    qv::GenericList::Free(list);
    return written;
  }

  static void SetLineNumberToNone(const qv::KindSchema& schema, void* record) {
    qv::SetLineNumber(schema, record, 0);
  }

  qvtest::ScriptedHost host_;
  qvtest::LocationProfile profile_;
};

TEST_P(StreamedPutPropertyTest, APutLeavesWhatTheListFormOfItLeaves) {
  const KindCase c = GetParam()();
  const qv::KindApi* api = qv::FindKindApi(c.code);
  ASSERT_NE(api, nullptr);
  const qv::KindSchema& schema = *api->schema;
  std::mt19937 rng(20261124u);
  WriteFileBytes(Path(c), c.head + c.tail);
  ASSERT_EQ(profile_.Open(qvtest::kLockedOpen), 1);
  int failed_reads = 0;
  int replaced = 0;
  for (int round = 0; round < kRounds; ++round) {
    SCOPED_TRACE(round);
    std::string section;
    const size_t lines = Pick(rng, 14);
    for (size_t i = 0; i < lines; ++i) section += Pick(rng, 6) == 0 ? OtherLine(rng) : c.line(rng);
    const std::string before = c.head + section + c.tail;
    std::unique_ptr<void, void (*)(void*)> record(qv::NewRecord(schema), &qv::FreeRecord);
    c.fill(rng, record.get());

    WriteFileBytes(Path(c), before);
    host_.Clear();
    const int put = c.put(record.get());
    const std::string streamed = ReadFileBytes(Path(c));
    const std::vector<std::string> streamed_errors = host_.errors();

    WriteFileBytes(Path(c), before);
    host_.Clear();
    bool had_key = false;
    const bool listed = PutThroughList(c, schema, record.get(), &had_key);
    const std::string expected = ReadFileBytes(Path(c));

    ASSERT_EQ(put == 1, listed) << before;
    ASSERT_EQ(streamed, expected) << before;
    ASSERT_EQ(streamed_errors, host_.errors()) << before;
    if (!listed) ++failed_reads;
    if (listed && had_key) ++replaced;
  }
  // Failed reads, replacing puts and appending puts all came up.
  EXPECT_GT(failed_reads, 0);
  EXPECT_GT(replaced, kRounds / 10);
  EXPECT_LT(failed_reads + replaced, kRounds - kRounds / 10);
}

INSTANTIATE_TEST_SUITE_P(Kinds, StreamedPutPropertyTest,
                         ::testing::Values(&ShippingMedia, &SubProducts),
                         [](const auto& info) { return std::string(info.param().code); });

}  // namespace
