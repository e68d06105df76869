// Internal: the named-event manager.
//
// One per process, created on first use. It maps event names to handler
// holders and keeps the queue of UI-only events raised off the UI thread,
// which its idle chore delivers at the next idle pass.
//
// Threads: any. table_mutex_ guards table_, queue_mutex_ guards pending_; the
// two are never held together and neither is held while a handler runs.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "orvane/events.h"
#include "orvane/idle.h"
#include "orvane/locks.h"

namespace Kf::Event::Implementation {

class EventMgr : public KfIdleChoreImpl {
 public:
  // Wraps one registered handler. A holder is shared by the handler list it
  // was registered in and by the snapshots that deliveries in progress hold;
  // unregistering unlinks it (after which no delivery starts a call through
  // it) and the last snapshot releases it. A delivery that already started
  // its call finishes it.
  class HandlerHolder {
   public:
    explicit HandlerHolder(BaseHandler* handler) : handler_(handler) {}
    virtual ~HandlerHolder() = default;
    virtual void operator()(const BaseEvent& event) { (*handler_)(event); }
    BaseHandler* Handler() const { return handler_; }
    bool IsUnlinked() const { return unlinked_.load(std::memory_order_acquire); }
    void Unlink() { unlinked_.store(true, std::memory_order_release); }

   private:
    BaseHandler* const handler_;
    std::atomic<bool> unlinked_{false};
  };

  static EventMgr& Instance();

  void Register(const std::string& name, BaseHandler* handler);
  void Unregister(const std::string& name, BaseHandler* handler);
  void Notify(const std::string& name, const BaseEvent& event);

  bool DoIdleChore() override;

 private:
  EventMgr();
  ~EventMgr() override;

  // Calls the handlers of `name` now, on this thread.
  void Deliver(const std::string& name, const BaseEvent& event);

  // Handler lists are copied on write: a delivery takes the current list by
  // reference count and walks it with no lock held, while registrations
  // publish new lists. Registration is rare; delivery is the hot path.
  using HolderList = std::vector<std::shared_ptr<HandlerHolder>>;
  using SharedHolderList = std::shared_ptr<const HolderList>;

  IdeUtil::Mutex table_mutex_;
  std::unordered_map<std::string, SharedHolderList> table_;  // guarded by table_mutex_
  // Advanced (under table_mutex_) by every change of any handler list, so a
  // thread's cached list of the name it delivered last is known to be current
  // without taking the lock.
  std::atomic<std::uint64_t> generation_{1};
  IdeUtil::Mutex queue_mutex_;
  std::deque<std::pair<std::string, std::unique_ptr<BaseEvent>>> pending_;  // guarded by queue_mutex_
};

}  // namespace Kf::Event::Implementation
