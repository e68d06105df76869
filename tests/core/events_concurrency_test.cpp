// Cross-thread behaviour of named events and idle chores. Also run under
// ThreadSanitizer.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "orvane/events.h"
#include "orvane/idle.h"
#include "support/test_host.h"

namespace {

using namespace std::chrono_literals;

struct Number : Kf::Event::BaseEvent {
  int value = 0;
};
using UiNumber = Kf::Event::SpecializedEvent<Number>;
using AnyNumber = Kf::Event::SpecializedEvent<Number, false>;

// A one-shot gate for making two threads meet at a known point.
class Gate {
 public:
  void Open() {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      open_ = true;
    }
    cv_.notify_all();
  }
  void Wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    cv_.wait(lock, [this] { return open_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable cv_;
  bool open_ = false;
};

TEST(EventsConcurrency, WorkersQueueUiEventsThatArriveInPerThreadOrder) {
  Kf::Testing::ScopedTestHost host;
  KfIdleChoreImpl::IdleTime(0);
  std::vector<int> received;
  Kf::Event::FunctionHandler<UiNumber> handler([&](const UiNumber& e) { received.push_back(e.value); });
  Kf::Event::RegisterEvent("CONC_QUEUE", &handler);

  constexpr int kThreads = 4, kEach = 200;
  std::vector<std::thread> workers;
  for (int t = 0; t < kThreads; ++t) {
    workers.emplace_back([t] {
      for (int i = 0; i < kEach; ++i) {
        UiNumber e;
        e.value = t * kEach + i;
        Kf::Event::NotifyEvent("CONC_QUEUE", e);
      }
    });
  }
  // The UI thread keeps idling while the workers send.
  while (received.size() < static_cast<size_t>(kThreads * kEach)) {
    KfIdleChoreImpl::IdleTime(0);
    std::this_thread::yield();
  }
  for (auto& w : workers) w.join();
  KfIdleChoreImpl::IdleTime(0);
  ASSERT_EQ(received.size(), static_cast<size_t>(kThreads * kEach));
  std::vector<int> last(kThreads, -1);
  for (int v : received) {
    int t = v / kEach;
    EXPECT_LT(last[t], v) << "events of one thread must keep their order";
    last[t] = v;
  }
  Kf::Event::UnregisterEvent("CONC_QUEUE", &handler);
}

TEST(EventsConcurrency, HandlerUnregisteredDuringDeliveryIsCalledAtMostOnce) {
  // The delivering thread is inside the first handler when another thread
  // unregisters the second; the second is then called once or not at all,
  // and never after the delivery is over.
  for (int round = 0; round < 50; ++round) {
    Gate inFirst, unregistered;
    std::atomic<int> secondCalls{0};
    Kf::Event::FunctionHandler<AnyNumber> second([&](const AnyNumber&) { secondCalls.fetch_add(1); });
    Kf::Event::FunctionHandler<AnyNumber> first([&](const AnyNumber&) {
      inFirst.Open();
      if (round % 2 == 0) unregistered.Wait();  // half the rounds: unregister lands before its turn
    });
    Kf::Event::RegisterEvent("CONC_UNREG", &first);
    Kf::Event::RegisterEvent("CONC_UNREG", &second);

    std::thread deliverer([] {
      AnyNumber e;
      Kf::Event::NotifyEvent("CONC_UNREG", e);
    });
    inFirst.Wait();
    Kf::Event::UnregisterEvent("CONC_UNREG", &second);
    unregistered.Open();
    deliverer.join();
    EXPECT_LE(secondCalls.load(), 1);
    if (round % 2 == 0) EXPECT_EQ(secondCalls.load(), 0) << "its holder was released before its turn";

    int before = secondCalls.load();
    AnyNumber again;
    Kf::Event::NotifyEvent("CONC_UNREG", again);
    EXPECT_EQ(secondCalls.load(), before);
    Kf::Event::UnregisterEvent("CONC_UNREG", &first);
  }
}

TEST(EventsConcurrency, RegisterAndNotifyFromManyThreads) {
  std::atomic<int> calls{0};
  constexpr int kThreads = 4;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&] {
      Kf::Event::FunctionHandler<AnyNumber> mine([&](const AnyNumber&) { calls.fetch_add(1); });
      for (int i = 0; i < 200; ++i) {
        Kf::Event::RegisterEvent("CONC_MANY", &mine);
        AnyNumber e;
        Kf::Event::NotifyEvent("CONC_MANY", e);
        Kf::Event::UnregisterEvent("CONC_MANY", &mine);
      }
    });
  }
  for (auto& t : threads) t.join();
  // Each notification reaches at least the sender's own handler.
  EXPECT_GE(calls.load(), kThreads * 200);
}

// A chore whose first run blocks until released.
struct BlockingState {
  Gate started, release;
  std::atomic<bool> runEnded{false};
  std::atomic<bool> destroyedAfterRunEnded{false};
};

class BlockingChore : public KfIdleChoreImpl {
 public:
  explicit BlockingChore(BlockingState& s) : KfIdleChoreImpl("BlockingChore", false), state_(s) {}
  ~BlockingChore() override {
    Withdraw();  // waits for a run in progress
    state_.destroyedAfterRunEnded.store(state_.runEnded.load());
  }
  bool DoIdleChore() override {
    state_.started.Open();
    state_.release.Wait();
    state_.runEnded.store(true);
    return false;
  }

 private:
  BlockingState& state_;
};

TEST(IdleConcurrency, DestroyingAChoreOnAnotherThreadWaitsForItsRun) {
  BlockingState state;
  auto* chore = new BlockingChore(state);
  std::thread ui([] { KfIdleChoreImpl::IdleTime(0); });
  state.started.Wait();
  std::thread destroyer([chore] { delete chore; });
  // The destroyer is now blocked; the run ends only when released.
  std::this_thread::sleep_for(50ms);
  state.release.Open();
  destroyer.join();
  ui.join();
  EXPECT_TRUE(state.destroyedAfterRunEnded.load());
  KfIdleChoreImpl::IdleTime(0);  // the purged entry is never touched again
}

TEST(IdleConcurrency, ChoresEnqueuedAndDestroyedOnWorkersDuringPasses) {
  // Workers keep creating chores, waiting briefly for a run, and destroying
  // them, while the UI thread runs passes: no run may touch a dead chore.
  std::atomic<bool> stop{false};
  std::atomic<int> runs{0};
  struct Counting : KfIdleChoreImpl {
    // Built on a worker while the UI thread runs passes: enqueued only once
    // complete, withdrawn before its members go.
    explicit Counting(std::atomic<int>& r) : KfIdleChoreImpl(No_enqueue_tag{}, false), runs(r) { Enqueue("Counting"); }
    ~Counting() override { Withdraw(); }
    bool DoIdleChore() override {
      runs.fetch_add(1);
      ran.store(true);
      return false;
    }
    std::atomic<int>& runs;
    std::atomic<bool> ran{false};
  };
  std::vector<std::thread> workers;
  for (int t = 0; t < 3; ++t) {
    workers.emplace_back([&] {
      while (!stop.load()) {
        Counting chore(runs);
        for (int spin = 0; spin < 1000 && !chore.ran.load() && !stop.load(); ++spin) std::this_thread::yield();
      }
    });
  }
  for (int pass = 0; pass < 100000 && runs.load() < 300; ++pass) KfIdleChoreImpl::IdleTime(0);
  stop.store(true);
  for (auto& w : workers) w.join();
  KfIdleChoreImpl::IdleTime(0);
  EXPECT_GE(runs.load(), 300);
}

}  // namespace
