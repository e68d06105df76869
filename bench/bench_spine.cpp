// Benchmarks of the library spine: named-event delivery against
// boost::signals2, application-event notification, and the idle pass.
#include <benchmark/benchmark.h>

#include <boost/signals2.hpp>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "orvane/events.h"
#include "orvane/hostutil.h"
#include "orvane/idle.h"

namespace {

struct Payload : Kf::Event::BaseEvent {
  int value = 0;
};
using PayloadEvent = Kf::Event::SpecializedEvent<Payload>;

struct BenchHost : Kf::HostUtil::IHostUtil {
  MsgButton MsgBox(const std::string&, const std::string&, MsgIcon, MsgKind, MsgButton b,
                   const std::string&) override {
    return b;
  }
  bool IsSafeUIThread() override { return std::this_thread::get_id() == ui; }
  std::thread::id ui = std::this_thread::get_id();
};

void PerHandler(benchmark::State& state, int handlers) {
  // Seconds per handler call (printed with an SI prefix, "n" for ns).
  state.counters["per_handler"] = benchmark::Counter(
      handlers, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// A UI-thread event delivered on the UI thread to N handlers.
void BM_NamedEventDelivery(benchmark::State& state) {
  const int handlers = static_cast<int>(state.range(0));
  BenchHost host;
  Kf::HostUtil::RegisterHost(&host);
  long sum = 0;
  std::vector<std::unique_ptr<Kf::Event::FunctionHandler<PayloadEvent>>> list;
  for (int i = 0; i < handlers; ++i) {
    list.push_back(std::make_unique<Kf::Event::FunctionHandler<PayloadEvent>>(
        [&sum](const PayloadEvent& e) { sum += e.value; }));
    Kf::Event::RegisterEvent("BENCH_EVENT", list.back().get());
  }
  PayloadEvent event;
  event.value = 1;
  for (auto _ : state) {
    Kf::Event::NotifyEvent("BENCH_EVENT", event);
  }
  benchmark::DoNotOptimize(sum);
  for (auto& h : list) Kf::Event::UnregisterEvent("BENCH_EVENT", h.get());
  Kf::HostUtil::UnregisterHost(&host);
  PerHandler(state, handlers);
}
BENCHMARK(BM_NamedEventDelivery)->Arg(1)->Arg(10)->Arg(100);

// The peer: a boost::signals2 signal with the same number of slots, each a
// std::function doing the same work.
void BM_Signals2Delivery(benchmark::State& state) {
  const int slots = static_cast<int>(state.range(0));
  boost::signals2::signal<void(const PayloadEvent&)> signal;
  long sum = 0;
  for (int i = 0; i < slots; ++i) {
    std::function<void(const PayloadEvent&)> slot = [&sum](const PayloadEvent& e) { sum += e.value; };
    signal.connect(slot);
  }
  PayloadEvent event;
  event.value = 1;
  for (auto _ : state) {
    signal(event);
  }
  benchmark::DoNotOptimize(sum);
  PerHandler(state, slots);
}
BENCHMARK(BM_Signals2Delivery)->Arg(1)->Arg(10)->Arg(100);

struct CountingListener : Kf::Event::IAppEventListener {
  bool OnAppEvent(const Kf::Event::AppEvent& e) override {
    count += e.kind;
    return true;
  }
  long count = 0;
};

void BM_AppEventNotify(benchmark::State& state) {
  const int listeners = static_cast<int>(state.range(0));
  std::vector<CountingListener> list(listeners);
  for (auto& l : list) Kf::Event::RegisterAppEventListener(&l);
  const Kf::Event::AppEvent event{2, nullptr};
  for (auto _ : state) {
    benchmark::DoNotOptimize(Kf::Event::Notify(event));
  }
  for (auto& l : list) Kf::Event::UnregisterAppEventListener(&l);
  state.counters["per_listener"] = benchmark::Counter(
      listeners, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_AppEventNotify)->Arg(10)->Arg(100)->Arg(1000);

class BenchChore : public KfIdleChoreImpl {
 public:
  explicit BenchChore(bool busy) : KfIdleChoreImpl("BenchChore", false), busy_(busy) {}
  bool DoIdleChore() override {
    benchmark::ClobberMemory();
    return busy_;
  }

 private:
  bool busy_;
};

// One idle pass over 1000 chores of which 10 always want more time. The
// first pass of an idle period (idleCount 0) runs all 1000; later passes
// (idleCount > 0) run only the 10.
void BM_IdlePass(benchmark::State& state) {
  const long idleCount = state.range(0);
  std::vector<std::unique_ptr<BenchChore>> chores;
  for (int i = 0; i < 1000; ++i) chores.push_back(std::make_unique<BenchChore>(i % 100 == 0));
  KfIdleChoreImpl::IdleTime(0);
  for (auto _ : state) {
    benchmark::DoNotOptimize(KfIdleChoreImpl::IdleTime(idleCount));
  }
  chores.clear();
  KfIdleChoreImpl::IdleTime(0);  // purge
}
BENCHMARK(BM_IdlePass)->Arg(0)->Arg(1);

// The peer: the same calls through a plain vector of chore pointers with no
// registry, locks or flags.
void BM_IdlePassPlainLoop(benchmark::State& state) {
  const long idleCount = state.range(0);
  std::vector<std::unique_ptr<BenchChore>> chores;
  for (int i = 0; i < 1000; ++i) chores.push_back(std::make_unique<BenchChore>(i % 100 == 0));
  std::vector<bool> wants(chores.size(), true);
  for (auto _ : state) {
    bool any = false;
    for (size_t i = 0; i < chores.size(); ++i) {
      if (idleCount == 0 || wants[i]) {
        wants[i] = chores[i]->DoIdleChore();
        any = any || wants[i];
      }
    }
    benchmark::DoNotOptimize(any);
  }
}
BENCHMARK(BM_IdlePassPlainLoop)->Arg(0)->Arg(1);

}  // namespace
