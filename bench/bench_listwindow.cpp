// List window benchmarks: the row cache against plain vector peers, the
// standard proxy against direct producer calls, and the sliding text file
// model against `tail -n 60`.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>

#include "orvane/listwindow.h"

namespace {

using Kf::ListWindow::ChunkInfo;
using Kf::ListWindow::KfListModel;
using Kf::ListWindow::ListWindowProxy;
using Cache = ListWindowProxy::Cache;
using RowData = ListWindowProxy::RowData;
using u64 = std::uint64_t;

RowData SampleRow() {
  RowData row;
  row.cells = {"0x20001000", "main.c:42", "breakpoint hit"};
  row.formats.resize(3);
  row.values.resize(3);
  return row;
}

// ---- Row cache -------------------------------------------------------------

void BM_CacheGetRowHit(benchmark::State& state) {
  Cache cache;
  cache.EnsureInCache(0, 1000);
  for (u64 r = 0; r < 1000; ++r) cache.Update(r, SampleRow());
  RowData out;
  u64 r = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(cache.GetRow(r, &out));
    r = (r + 1) % 1000;
  }
}
BENCHMARK(BM_CacheGetRowHit);

// Peer: copying a row out of a plain vector under a mutex.
void BM_PeerVectorRowCopy(benchmark::State& state) {
  std::vector<RowData> rows(1000, SampleRow());
  std::mutex mutex;
  RowData out;
  u64 r = 0;
  for (auto _ : state) {
    {
      std::lock_guard<std::mutex> lock(mutex);
      out = rows[r];
    }
    benchmark::DoNotOptimize(out);
    r = (r + 1) % 1000;
  }
}
BENCHMARK(BM_PeerVectorRowCopy);

void BM_CacheGetRowMiss(benchmark::State& state) {
  Cache cache;
  RowData defaultRow = SampleRow();
  defaultRow.cells.assign(3, "-");
  cache.SetDefaultRowData(defaultRow);
  cache.EnsureInCache(0, 1000);
  RowData out;
  u64 r = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(cache.GetRow(r, &out));
    r = (r + 1) % 1000;
  }
}
BENCHMARK(BM_CacheGetRowMiss);

void BM_CacheUpdate(benchmark::State& state) {
  Cache cache;
  cache.EnsureInCache(0, 1000);
  const RowData row = SampleRow();
  u64 r = 0;
  for (auto _ : state) {
    cache.Update(r, row);
    r = (r + 1) % 1000;
  }
}
BENCHMARK(BM_CacheUpdate);

// Jumps of state.range(0) rows back and forth, each one reshaping the run.
void BM_CacheEnsureInCacheJump(benchmark::State& state) {
  Cache cache;
  const u64 jump = static_cast<u64>(state.range(0));
  u64 at = 0;
  for (auto _ : state) {
    at = at == 0 ? jump : 0;
    cache.EnsureInCache(at, 60);
  }
}
BENCHMARK(BM_CacheEnsureInCacheJump)->Arg(100)->Arg(10000)->Arg(1000000);

// Inserting 10 rows in the middle of a full cache (100000 slots): the cache
// reshapes to half and inserts. Each iteration starts from a full cache.
void BM_CacheShiftDownRowsMiddleFull(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    Cache cache;
    cache.EnsureInCache(0, Cache::kMaxSlots);
    state.ResumeTiming();
    cache.ShiftDownRows(Cache::kMaxSlots / 2, 10);
    benchmark::DoNotOptimize(cache.NumberOfRows());
  }
}
BENCHMARK(BM_CacheShiftDownRowsMiddleFull);

// Peer: the same insertion into a plain vector of shared pointers.
void BM_PeerVectorInsertMiddleFull(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<std::shared_ptr<Cache::Entry>> rows(Cache::kMaxSlots);
    state.ResumeTiming();
    rows.insert(rows.begin() + Cache::kMaxSlots / 2, 10, nullptr);
    benchmark::DoNotOptimize(rows.size());
  }
}
BENCHMARK(BM_PeerVectorInsertMiddleFull);

// ---- Standard proxy --------------------------------------------------------

void Spin(std::chrono::nanoseconds d) {
  const auto until = std::chrono::steady_clock::now() + d;
  while (std::chrono::steady_clock::now() < until) {
  }
}

// 10^9 rows, each produced in about 2 microseconds.
class SlowModel : public Kf::ListWindow::KfUniversalListModel {
 public:
  u64 GetColumnInfo(std::vector<Column>* out) override {
    out->assign(2, Column());
    return 2;
  }
  u64 NumberOfRows() override { return 1000000000ull; }
  bool GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo*, bool*) override {
    Spin(std::chrono::microseconds(2));
    *cells = {std::to_string(row), "value"};
    formats->assign(2, Format());
    return true;
  }
};

class CountingHost : public Kf::ListWindow::ListWindowProxyListener {
 public:
  void HandleMessage(const Message&) override {
    std::lock_guard<std::mutex> lock(mutex_);
    // Like a real host, wake the UI side once, when the screen is complete.
    if (++count_ == target_) arrived_.notify_all();
  }
  bool Visible(u64* first, u64* last) override {
    std::lock_guard<std::mutex> lock(mutex_);
    *first = first_;
    *last = first_ + 59;
    return true;
  }
  void Reset(u64 first) {
    std::lock_guard<std::mutex> lock(mutex_);
    first_ = first;
    count_ = 0;
  }
  void WaitFor(int n) {
    std::unique_lock<std::mutex> lock(mutex_);
    target_ = n;
    arrived_.wait(lock, [&] { return count_ >= n; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable arrived_;
  int count_ = 0;
  int target_ = 60;
  u64 first_ = 0;
};

// From the first GetRow of 60 visible rows on a cold cache until all 60 are
// fetched and the host was told.
void BM_StdProxyColdScreen60(benchmark::State& state) {
  CountingHost host;
  Kf::ListWindow::KfStdListWindowProxy proxy;
  proxy.SetListener(&host);
  proxy.SetProvider(std::make_shared<SlowModel>());
  u64 first = 0;
  std::vector<std::string> cells;
  std::vector<KfListModel::Format> formats;
  KfListModel::TreeInfo tree;
  bool flag = false;
  for (auto _ : state) {
    first += 1000000;  // a new, cold stretch each time
    host.Reset(first);
    for (u64 row = first; row < first + 60; ++row) proxy.GetRow(row, &cells, &formats, &tree, &flag);
    host.WaitFor(60);
  }
  proxy.Detach();
}
BENCHMARK(BM_StdProxyColdScreen60)->UseRealTime()->Unit(benchmark::kMicrosecond);

// Peer: the 60 producer calls made directly.
void BM_PeerDirectProducer60(benchmark::State& state) {
  SlowModel model;
  std::vector<std::string> cells;
  std::vector<KfListModel::Format> formats;
  KfListModel::TreeInfo tree;
  bool flag = false;
  u64 first = 0;
  for (auto _ : state) {
    first += 1000000;
    for (u64 row = first; row < first + 60; ++row) (void)model.GetRow(row, &cells, &formats, &tree, &flag);
  }
}
BENCHMARK(BM_PeerDirectProducer60)->UseRealTime()->Unit(benchmark::kMicrosecond);

// ---- Sliding text file model -----------------------------------------------

// A generated log of `megabytes` MB, made once per size and removed at exit.
std::string LogOfSize(u64 megabytes) {
  static std::map<u64, std::string> made;
  auto it = made.find(megabytes);
  if (it != made.end()) return it->second;
  const auto path = std::filesystem::temp_directory_path() / ("orvane_bench_" + std::to_string(megabytes) + "MB.log");
  if (!std::filesystem::exists(path) || std::filesystem::file_size(path) < (megabytes << 20)) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    std::string line;
    std::string block;
    u64 written = 0;
    for (u64 n = 0; written < (megabytes << 20); ++n) {
      line = std::to_string(n) + " 12:00:00.000 INFO  core1 trace buffer wrapped, continuing at 0x2000" +
             std::to_string(n % 10000) + "\n";
      block += line;
      written += line.size();
      if (block.size() > (1u << 20)) {
        out << block;
        block.clear();
      }
    }
    out << block;
  }
  made[megabytes] = path.string();
  static bool cleanup = [] {
    std::atexit([] {
      for (auto& [size, file] : made) std::filesystem::remove(file);
    });
    return true;
  }();
  (void)cleanup;
  return path.string();
}

void DrawScreen(ListWindowProxy& proxy, u64 first) {
  std::vector<std::string> cells;
  std::vector<KfListModel::Format> formats;
  KfListModel::TreeInfo tree;
  bool flag = false;
  for (u64 row = first; row < first + 60 && row < proxy.NumberOfRows(); ++row) {
    proxy.GetRow(row, &cells, &formats, &tree, &flag);
    benchmark::DoNotOptimize(cells);
  }
}

long PeakRssKb() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

// Open the file and draw its first screen.
void BM_SlidingFileFirstScreen(benchmark::State& state) {
  const std::string path = LogOfSize(static_cast<u64>(state.range(0)));
  u64 held = 0;
  for (auto _ : state) {
    auto model = std::make_shared<Kf::ListWindow::KfTextFileListModel>(GePath(path), 60);
    Kf::ListWindow::SlidingModelProxy proxy;
    proxy.SetProvider(model);
    proxy.AcknowledgeUpdate(proxy.UpdateSerial());  // as a host does first: reads the chunk
    DrawScreen(proxy, 0);
    held = model->ChunkBytes();
  }
  state.counters["chunk_bytes"] = static_cast<double>(held);
  state.counters["peak_rss_kb"] = static_cast<double>(PeakRssKb());
}
BENCHMARK(BM_SlidingFileFirstScreen)->Arg(100)->Arg(1024)->Unit(benchmark::kMicrosecond);

// Open the file, navigate to "END" and draw the last screen.
void BM_SlidingFileLastScreen(benchmark::State& state) {
  const std::string path = LogOfSize(static_cast<u64>(state.range(0)));
  u64 held = 0;
  for (auto _ : state) {
    auto model = std::make_shared<Kf::ListWindow::KfTextFileListModel>(GePath(path), 60);
    Kf::ListWindow::SlidingModelProxy proxy;
    proxy.SetProvider(model);
    proxy.SetMinChunk(60);
    u64 row = 0;
    ChunkInfo chunk;
    proxy.NavigateTo(std::string("END"), &row, &chunk);
    DrawScreen(proxy, row + 1 - 60);
    held = model->ChunkBytes();
  }
  state.counters["chunk_bytes"] = static_cast<double>(held);
  state.counters["peak_rss_kb"] = static_cast<double>(PeakRssKb());
}
BENCHMARK(BM_SlidingFileLastScreen)->Arg(100)->Arg(1024)->Unit(benchmark::kMicrosecond);

// Peer: `tail -n 60` on the same file (a process of its own, output discarded).
void BM_PeerTailLast60(benchmark::State& state) {
  const std::string path = LogOfSize(static_cast<u64>(state.range(0)));
  const std::string command = "tail -n 60 '" + path + "' > /dev/null";
  for (auto _ : state) benchmark::DoNotOptimize(std::system(command.c_str()));
}
BENCHMARK(BM_PeerTailLast60)->Arg(100)->Arg(1024)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace
