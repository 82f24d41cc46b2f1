// Listing 100,000 shipped files from an Orvik profile (SQLite) and from the
// module file of a Master Profile, side by side on the same records: the
// database is filled from the text profile's own list before timing.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <memory>
#include <string>

#include "module_profile.h"
#include "quorvex/quorvex.h"

namespace {

constexpr int kFiles = 100000;

struct Stores {
  qvbench::ModuleProfile text{kFiles};
  std::string database = text.folder() + "/shipping.orv";
  bool ready = false;

  Stores() {
    SFList* list = nullptr;
    if (!text.Open() || MPGetSFCompleteList("Editor", "1", &list, MODE_READ) != 1) return;
    CloseMasterProfile();
    if (QvInitOrvikProfile(database.c_str()) != 1 ||
        !qvbench::OpenAt(database, OPEN_ORVIK | OPEN_LOCK)) {
      MPFreeSFList(list);
      return;
    }
    ready = MPPutSFCompleteList("Editor", "1", list) == 1;
    MPFreeSFList(list);
    CloseMasterProfile();
  }
};

Stores& TheStores() {
  static Stores stores;
  return stores;
}

void ListShippedFiles(benchmark::State& state, bool orvik) {
  Stores& stores = TheStores();
  if (!stores.ready) {
    state.SkipWithError("cannot make the two profiles");
    return;
  }
  bool opened = orvik ? qvbench::OpenAt(stores.database, OPEN_ORVIK) : stores.text.Open();
  if (!opened) {
    state.SkipWithError("cannot open the profile");
    return;
  }
  double held = 0;
  for (auto _ : state) {
    size_t before = mallinfo2().uordblks;
    SFList* list = nullptr;
    if (MPGetSFCompleteList("Editor", "1", &list, MODE_READ) != 1 || list->count != kFiles) {
      state.SkipWithError("the list is not whole");
    }
    held = static_cast<double>(mallinfo2().uordblks - before);
    MPFreeSFList(list);
  }
  // What the list holds on the heap (records, nodes and all) over the
  // records' own size.
  state.counters["memory_ratio"] = held / (static_cast<double>(kFiles) * sizeof(SFRecord));
  CloseMasterProfile();
  state.SetItemsProcessed(state.iterations() * kFiles);
}

void BM_ListShippedFilesFromText(benchmark::State& state) {
  ListShippedFiles(state, false);
}
void BM_ListShippedFilesFromSqlite(benchmark::State& state) {
  ListShippedFiles(state, true);
}

BENCHMARK(BM_ListShippedFilesFromText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ListShippedFilesFromSqlite)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
