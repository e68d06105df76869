// The interruption check: a poller thread watches for Ctrl+Shift+period.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "orvane/idle.h"
#include "orvane/platform.h"
#include "orvane/thread.h"

namespace {

using Kf::Platform::Key;

constexpr auto kPollPeriod = std::chrono::milliseconds(100);

std::atomic<bool> g_interrupted{false};

class KeyboardPoller : public GeThread::Start {
 public:
  void Run() override {
    std::unique_lock<std::mutex> lock(mutex_);
    while (active_) {
      lock.unlock();
      Kf::Platform::IPlatform& platform = Kf::Platform::Current();
      // Tested in this order, each only if the previous key is down.
      if (platform.IsKeyDown(Key::Shift) && platform.IsKeyDown(Key::Control) && platform.IsKeyDown(Key::Period))
        g_interrupted.store(true);
      lock.lock();
      wake_.wait_for(lock, kPollPeriod, [this] { return !active_; });
    }
  }

  // Returns false when already active.
  bool Activate() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (active_) return false;
    active_ = true;
    return true;
  }

  // Returns false when not active. Wakes the poller so that it ends at once
  // instead of after its current period.
  bool Deactivate() {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      if (!active_) return false;
      active_ = false;
    }
    wake_.notify_all();
    return true;
  }

 private:
  std::mutex mutex_;
  std::condition_variable wake_;
  bool active_ = false;  // guarded by mutex_
};

// Start and stop come from the host's UI thread; `mutex` only keeps two
// overlapping calls from racing on the thread object. At process end a
// poller that is still active is stopped before its thread object goes.
struct PollerControl {
  ~PollerControl() {
    poller.Deactivate();
    thread.reset();
  }
  std::mutex mutex;
  KeyboardPoller poller;
  std::unique_ptr<GeThread> thread;  // guarded by mutex
};

PollerControl g_control;

}  // namespace

bool KfCheckInterruption() { return g_interrupted.exchange(false); }

void KfClearInterruption() { g_interrupted.store(false); }

void KfActivateInterruptionCheck(bool on) {
  std::lock_guard<std::mutex> lock(g_control.mutex);
  if (on) {
    if (!g_control.poller.Activate()) return;
    g_control.thread = std::make_unique<GeThread>(g_control.poller, "KfInterruptMgr kbd poller");
    (void)g_control.thread->Launch();
  } else {
    if (!g_control.poller.Deactivate()) return;
    g_control.thread.reset();  // joins
  }
}
