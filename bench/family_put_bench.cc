// One put through a kind's own operations (those the quorvex tool calls),
// for a kind of each family whose files the Ad and shipped-file cases do not
// cover: settings entries, shipping languages, setup messages, resource
// texts, a product's modules, an install's shipping media and a module
// group's modules. Beside it, a copy of the file the put rewrote (read,
// write, make durable, rename); the counter "ratio" is the put's time over
// the copy's, measured in the same run on the same disk.
//
// Each case copies the example profile and grows the file that holds the
// kind's records to N records: the engine's own line writer writes copies
// of a stored record with keys of their own, half before that record and
// half after it, and the grown file must list N records again. The put
// then puts that stored record back, so that every reference it makes
// stays good; a put rewrites the file whether or not a member changed,
// which each put is checked for. Resource texts, which the engine writes
// when the profile closes, are written after each put, as part of it.
#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "bench_profile.h"
#include "quorvex/quorvex.h"
#include "records/family_io.h"
#include "records/kind_api.h"
#include "records/record_codec.h"
#include "records/record_members.h"
#include "records/resource_files.h"

namespace fs = std::filesystem;

namespace {

struct FamilyCase {
  const char* family;
  const char* kind;
  qv::Texts owner;
  std::vector<int> sizes;
  // What a put leaves for the close to write, written now (nullptr: a put
  // writes its file itself).
  bool (*write_back)() = nullptr;
};

// Resource texts are changed in memory and written when the profile
// closes; the put's cost is the change and that write.
bool WriteUsResources() {
  return qv::WriteHeldResources("US");
}

const std::vector<FamilyCase>& Cases() {
  // Two-letter language codes allow 1,296 languages; a language file holds
  // far fewer.
  static const std::vector<FamilyCase> cases = {
      {"settings", "RE", {"Text Editor", "8.0"}, {100, 5000, 50000}},
      {"languages", "SLA", {}, {100, 1000}},
      {"setup messages", "Strings", {"US"}, {100, 5000, 50000}},
      {"resource texts", "Resources", {"US"}, {100, 5000, 50000}, &WriteUsResources},
      {"products", "MP", {"Lodestar Tools", "1.0"}, {100, 5000, 50000}},
      {"installs", "SM", {"Local"}, {100, 5000, 50000}},
      {"module groups", "MGM", {"Editors", "1.0"}, {100, 5000, 50000}},
  };
  return cases;
}

[[noreturn]] void Fail(const std::string& what) {
  fprintf(stderr, "family_put_bench: %s\n", what.c_str());
  exit(1);
}

std::vector<void*> ListOf(const qv::KindApi& api, const qv::Texts& owner, RecordList** list) {
  *list = nullptr;
  if (!api.list(owner, list)) Fail(std::string("cannot list ") + api.schema->kind->code);
  std::vector<void*> records;
  qv::GenericList::ForEach(*list, [&](void* record) { records.push_back(record); });
  return records;
}

void* CopyOf(const qv::KindSchema& schema, const void* record) {
  void* copy = qv::NewRecord(schema);
  if (copy == nullptr) Fail("out of memory");
  memcpy(copy, record, schema.record_size);
  qv::PointAtOwnRow(schema, copy);
  return copy;
}

// What tells that a file was written: a put replaces it by a new file (a
// new inode) or, where it writes in place, changes its modification time.
using Stamp = std::pair<ino_t, long long>;

Stamp StampOf(const std::string& path) {
  struct stat st;
  if (stat(path.c_str(), &st) != 0) return {0, 0};
  return {st.st_ino, static_cast<long long>(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec};
}

std::map<std::string, Stamp> Stamps(const std::string& folder) {
  std::map<std::string, Stamp> stamps;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) stamps[entry.path().string()] = StampOf(entry.path().string());
  }
  return stamps;
}

// The widest text a key member can take on its line.
size_t KeyRoom(const qv::KindSchema& schema, const qv::MemberSpec& member) {
  size_t room = member.size - 1;
  for (const qv::LineField& field : schema.line) {
    if (field.offset == member.offset && field.syntax == qv::LineSyntax::kText && field.width > 0) {
      room = std::min(room, static_cast<size_t>(field.width));
    }
  }
  return room;
}

std::string Base36(unsigned value, size_t digits) {
  static const char kDigits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  std::string text;
  do {
    text.insert(text.begin(), kDigits[value % 36]);
    value /= 36;
  } while (value != 0 || text.size() < digits);
  return text;
}

// The example profile with the kind's file grown to `records` records.
class FamilyProfile : public qvbench::BenchProfile {
 public:
  FamilyProfile(const FamilyCase& c, int records)
      : BenchProfile("qvfamilybench"), case_(c), api_(qv::FindKindApi(c.kind)) {
    if (api_ == nullptr) Fail(std::string("no kind ") + c.kind);
    std::error_code ec;
    fs::remove_all(profile(), ec);
    fs::copy(QUORVEX_EXAMPLE_PROFILE, profile(), fs::copy_options::recursive, ec);
    if (ec) Fail("cannot copy the example profile: " + ec.message());
    Grow(records);
  }
  ~FamilyProfile() { qv::FreeRecord(stored_); }

  const std::string& file() const { return file_; }

  // Puts the stored record back, and writes what the put left for later.
  bool Put() const {
    return api_->put(stored_) && (case_.write_back == nullptr || case_.write_back());
  }

 private:
  // Finds the stored record and its file, writes the copies around its
  // line, and checks that the file lists them all.
  void Grow(int records) {
    const qv::KindSchema& schema = *api_->schema;
    if (!Open()) Fail("cannot open the profile");
    RecordList* list = nullptr;
    std::vector<void*> stored = ListOf(*api_, case_.owner, &list);
    if (stored.empty()) Fail(std::string("the example has no ") + case_.kind);
    stored_ = CopyOf(schema, stored[stored.size() / 2]);
    std::vector<const qv::MemberSpec*> keys = qv::KeyMembers(*api_);
    if (keys.empty()) Fail(std::string("no key member for ") + case_.kind);
    const qv::MemberSpec& key = *keys.front();
    std::set<std::string> taken;
    uint32_t next_number = 0;
    for (void* record : stored) {
      taken.insert(qv::Folded(qv::MemberText(key, record)));
      if (key.type != qv::ValueType::kText) {
        next_number = std::max(next_number, qv::GetUnsigned(record, key.offset, key.type) + 1);
      }
    }
    const size_t existing = stored.size();
    qv::GenericList::Free(list);

    auto before = Stamps(profile());
    if (!Put()) Fail(std::string("cannot put a ") + case_.kind);
    std::vector<std::string> rewritten;
    for (const auto& [path, stamp] : Stamps(profile())) {
      auto was = before.find(path);
      if (was != before.end() && was->second != stamp) rewritten.push_back(path);
    }
    CloseMasterProfile();
    if (rewritten.size() != 1) {
      Fail(std::string("a put of ") + case_.kind + " rewrote " + std::to_string(rewritten.size()) +
           " files, not one");
    }
    file_ = rewritten.front();

    std::string line;
    if (!qv::AppendRecordLine(schema, stored_, &line)) Fail("cannot write a line");
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
    std::vector<std::string> copies;
    const std::string base = qv::MemberText(key, stored_);
    const size_t room = KeyRoom(schema, key);
    for (unsigned i = 0; copies.size() + existing < static_cast<size_t>(records); ++i) {
      void* copy = CopyOf(schema, stored_);
      if (key.type == qv::ValueType::kText) {
        std::string suffix = room < 8 ? Base36(i, room) : "_" + Base36(i, 1);
        if (suffix.size() > room) Fail(std::string("too many keys for ") + case_.kind);
        std::string text = base.substr(0, room - std::min(room, suffix.size())) + suffix;
        if (!taken.insert(qv::Folded(text)).second) {
          qv::FreeRecord(copy);
          continue;
        }
        snprintf(static_cast<char*>(copy) + key.offset, key.size, "%s", text.c_str());
      } else {
        qv::SetUnsigned(copy, key.offset, key.type, next_number++);
      }
      std::string copy_line;
      if (!qv::AppendRecordLine(schema, copy, &copy_line)) Fail("cannot write a copy's line");
      copies.push_back(copy_line);
      qv::FreeRecord(copy);
    }
    InsertAround(line, copies);

    if (!Open()) Fail("cannot open the grown profile");
    stored = ListOf(*api_, case_.owner, &list);
    const size_t listed = stored.size();
    qv::GenericList::Free(list);
    CloseMasterProfile();
    if (listed != static_cast<size_t>(std::max<size_t>(records, existing))) {
      Fail(std::string("the grown ") + case_.kind + " file lists " + std::to_string(listed) +
           " records, not " + std::to_string(records));
    }
  }

  // Half the copies go before the stored record's line, half after it.
  void InsertAround(const std::string& line, const std::vector<std::string>& copies) {
    std::ifstream in(file_, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    const std::string old = text.str();
    size_t at = 0;
    while ((at = old.find(line, at)) != std::string::npos) {
      if (at == 0 || old[at - 1] == '\n') break;
      at += line.size();
    }
    if (at == std::string::npos) Fail("the stored record's line is not in " + file_);
    at = old.rfind('\n', at);
    at = at == std::string::npos ? 0 : at + 1;
    size_t end = old.find('\n', at);
    end = end == std::string::npos ? old.size() : end + 1;
    std::string grown = old.substr(0, at);
    const size_t half = copies.size() / 2;
    for (size_t i = 0; i < half; ++i) grown += copies[i];
    grown += old.substr(at, end - at);
    for (size_t i = half; i < copies.size(); ++i) grown += copies[i];
    grown += old.substr(end);
    std::ofstream out(file_, std::ios::binary | std::ios::trunc);
    out << grown;
    if (!out) Fail("cannot write " + file_);
  }

  const FamilyCase& case_;
  const qv::KindApi* api_;
  void* stored_ = nullptr;
  std::string file_;
};

FamilyProfile& ProfileOf(const FamilyCase& c, int records) {
  static std::map<std::pair<std::string, int>, std::unique_ptr<FamilyProfile>> profiles;
  auto& profile = profiles[{c.kind, records}];
  if (profile == nullptr) profile = std::make_unique<FamilyProfile>(c, records);
  return *profile;
}

void BM_PutFamily(benchmark::State& state, const FamilyCase* c) {
  const int records = static_cast<int>(state.range(0));
  FamilyProfile& profile = ProfileOf(*c, records);
  if (!profile.Open()) {
    state.SkipWithError("cannot open the profile");
    return;
  }
  double put_seconds = 0;
  double copy_seconds = 0;
  int failed = 0;
  int kept = 0;
  for (auto _ : state) {
    const Stamp before = StampOf(profile.file());
    auto start = std::chrono::steady_clock::now();
    if (!profile.Put()) ++failed;
    put_seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.PauseTiming();
    if (StampOf(profile.file()) == before) ++kept;
    copy_seconds += qvbench::CopySeconds(profile.file());
    state.ResumeTiming();
  }
  CloseMasterProfile();
  if (failed != 0) state.SkipWithError("a put failed");
  if (kept != 0) state.SkipWithError("a put did not rewrite the file");
  state.SetLabel(std::string(c->family) + " (" + c->kind + ")");
  state.counters["records"] = records;
  state.counters["ratio"] = copy_seconds > 0 ? put_seconds / copy_seconds : 0;
  std::error_code ec;
  state.counters["file_bytes"] = static_cast<double>(fs::file_size(profile.file(), ec));
}

}  // namespace

int main(int argc, char** argv) {
  for (const FamilyCase& c : Cases()) {
    auto* bench = benchmark::RegisterBenchmark((std::string("BM_PutFamily/") + c.kind).c_str(),
                                               BM_PutFamily, &c);
    for (int size : c.sizes) bench->Arg(size);
    bench->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
