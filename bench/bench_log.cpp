// Log throughput: the library's log bus against spdlog, each delivering every
// message to two consumers that hand it to a function, from 1 and 2 threads.
// And the cost of a status-bar caret update that changes nothing.
#include <benchmark/benchmark.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/base_sink.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "orvane/hostutil.h"
#include "orvane/log.h"
#include "orvane/statusbar.h"

namespace {

std::atomic<std::size_t> g_delivered{0};

void Consume(std::size_t bytes) { g_delivered.fetch_add(bytes, std::memory_order_relaxed); }

class FunctionServer : public KfLogServer {
 public:
  explicit FunctionServer(std::function<void(std::size_t)> f) : function_(std::move(f)) { RegisterLogServer(); }
  ~FunctionServer() override { UnregisterLogServer(); }
  void ProcessEntry(Entry& entry) override { function_(entry.Text().size()); }

 private:
  std::function<void(std::size_t)> function_;
};

// spdlog 1.10 has no callback sink: this one hands each formatted message to
// a function.
class FunctionSink : public spdlog::sinks::base_sink<std::mutex> {
 public:
  explicit FunctionSink(std::function<void(std::size_t)> f) : function_(std::move(f)) {}

 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    spdlog::memory_buf_t formatted;
    formatter_->format(message, formatted);
    function_(formatted.size());
  }
  void flush_() override {}

 private:
  std::function<void(std::size_t)> function_;
};

void EnsureServers() {
  static FunctionServer first(Consume), second(Consume);
}

void BM_LogBus_TwoServers(benchmark::State& state) {
  EnsureServers();
  KfLogClient client("Bench_Log", "bench");
  const std::string text = "compiling src/drivers/uart.c";
  for (auto _ : state) client.Log(KfLogClient::Info, text);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LogBus_TwoServers)->Threads(1)->Threads(2)->UseRealTime();

std::shared_ptr<spdlog::logger> MakeSpdlog(const char* pattern) {
  auto logger = std::make_shared<spdlog::logger>(
      "bench", spdlog::sinks_init_list{std::make_shared<FunctionSink>(Consume), std::make_shared<FunctionSink>(Consume)});
  if (pattern) logger->set_pattern(pattern);
  return logger;
}

// spdlog with its default pattern (time, logger name and level formatted into
// every message).
void BM_Spdlog_TwoSinks(benchmark::State& state) {
  static auto logger = MakeSpdlog(nullptr);
  const std::string text = "compiling src/drivers/uart.c";
  for (auto _ : state) logger->info(text);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Spdlog_TwoSinks)->Threads(1)->Threads(2)->UseRealTime();

// spdlog formatting the message text only, closest to what the bus does.
void BM_Spdlog_TwoSinks_MessageOnly(benchmark::State& state) {
  static auto logger = MakeSpdlog("%v");
  const std::string text = "compiling src/drivers/uart.c";
  for (auto _ : state) logger->info(text);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Spdlog_TwoSinks_MessageOnly)->Threads(1)->Threads(2)->UseRealTime();

// The status bar's events ask the host whether they run on the UI thread.
class BenchHost : public Kf::HostUtil::IHostUtil {
 public:
  MsgButton MsgBox(const std::string&, const std::string&, MsgIcon, MsgKind, MsgButton b,
                   const std::string&) override {
    return b;
  }
  bool IsSafeUIThread() override { return true; }
};

void BM_StatusBar_CaretUnchanged(benchmark::State& state) {
  BenchHost host;
  Kf::HostUtil::RegisterHost(&host);
  Kf::StatusBar::SetCaretPosition(10, 20);
  for (auto _ : state) Kf::StatusBar::SetCaretPosition(10, 20);
  Kf::HostUtil::UnregisterHost(&host);
}
BENCHMARK(BM_StatusBar_CaretUnchanged);

// The peer: every update moves the caret, so the text is stored and the
// event sent (to no handler).
void BM_StatusBar_CaretChanged(benchmark::State& state) {
  BenchHost host;
  Kf::HostUtil::RegisterHost(&host);
  int column = 0;
  for (auto _ : state) Kf::StatusBar::SetCaretPosition(10, (column++) & 1023);
  Kf::HostUtil::UnregisterHost(&host);
}
BENCHMARK(BM_StatusBar_CaretChanged);

}  // namespace
