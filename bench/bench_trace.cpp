// Trace events against spdlog writing the same lines with a flush after each
// line; and the cost of a scoped log task with tracing off against two clock
// reads.
#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <string>

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include "log/trace_file.h"
#include "orvane/logtask.h"
#include "orvane/platform.h"
#include "support/scoped_settings.h"

namespace {

// Tracing on, into a file in a private directory, for the benchmark's life.
struct TraceOn {
  TraceOn() {
    file = dir.Dir() / "bench.trace";
    (void)Kf::Platform::Current().SetEnv("QOR_QDBGSERVER_TRACE_FILE", file.ToString());
    Kf::Detail::ResetTraceForTesting();
  }
  ~TraceOn() {
    (void)Kf::Platform::Current().UnsetEnv("QOR_QDBGSERVER_TRACE_FILE");
    Kf::Detail::ResetTraceForTesting();
  }
  Kf::Testing::ScopedSettingsDir dir;
  GePath file;
};

// Two lines (begin and end) per iteration.
void BM_TraceScopedTaskOn(benchmark::State& state) {
  TraceOn on;
  for (auto _ : state) {
    Kf::ScopedLogTask task("KfBenchmarkTask");
  }
  state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_TraceScopedTaskOn);

void BM_SpdlogSameLinesFlushed(benchmark::State& state) {
  Kf::Testing::ScopedSettingsDir dir;
  auto logger = spdlog::basic_logger_mt("bench-trace", (dir.Dir() / "spdlog.trace").ToString(), true);
  logger->set_pattern("%v");
  logger->flush_on(spdlog::level::info);
  const std::string tid = std::to_string(Kf::Platform::Current().GetCurrentThreadId());
  for (auto _ : state) {
    auto ts = std::chrono::duration_cast<std::chrono::microseconds>(
                  std::chrono::steady_clock::now().time_since_epoch()).count();
    logger->info(R"({{"name": "KfBenchmarkTask" ,"cat" : "PERF", "ph" : "B", "pid" : 0, "tid":{}, "ts": {}}},)", tid, ts);
    ts = std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::steady_clock::now().time_since_epoch()).count();
    logger->info(R"({{"name": "KfBenchmarkTask" ,"cat" : "PERF", "ph" : "E", "pid" : 0, "tid":{}, "ts": {}}},)", tid, ts);
  }
  state.SetItemsProcessed(state.iterations() * 2);
  spdlog::drop("bench-trace");
}
BENCHMARK(BM_SpdlogSameLinesFlushed);

void BM_ScopedLogTaskOff(benchmark::State& state) {
  Kf::Testing::ScopedSettingsDir dir;  // an empty "Global": tracing stays off
  Kf::Detail::ResetTraceForTesting();
  { Kf::ScopedLogTask first("KfDecide"); }  // takes the decision outside the loop
  for (auto _ : state) {
    Kf::ScopedLogTask task("KfBenchmarkTask");
    benchmark::DoNotOptimize(&task);
  }
  Kf::Detail::ResetTraceForTesting();
}
BENCHMARK(BM_ScopedLogTaskOff);

void BM_TwoClockReads(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::chrono::steady_clock::now());
    benchmark::DoNotOptimize(std::chrono::steady_clock::now());
  }
}
BENCHMARK(BM_TwoClockReads);

}  // namespace
