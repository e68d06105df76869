#include "core/event_mgr.h"

#include <boost/container/small_vector.hpp>

#include "orvane/hostutil.h"

namespace Kf::Event {

BaseEvent::~BaseEvent() = default;
BaseHandler::~BaseHandler() = default;

namespace Implementation {

EventMgr& EventMgr::Instance() {
  static EventMgr instance;
  return instance;
}

EventMgr::EventMgr() : KfIdleChoreImpl(No_enqueue_tag{}, /*foregroundOnly=*/false) {
  // Enqueued only now that the object is complete: the UI thread may run the
  // chore as soon as it is in the registry.
  Enqueue("class Kf::Event::Implementation::EventMgr");
}

EventMgr::~EventMgr() { Withdraw(); }

void EventMgr::Register(const std::string& name, BaseHandler* handler) {
  auto holder = std::make_shared<HandlerHolder>(handler);
  IdeUtil::ScopedLock lock(table_mutex_);
  table_[name].push_back(std::move(holder));
}

void EventMgr::Unregister(const std::string& name, BaseHandler* handler) {
  HolderList released;  // destroyed after the lock is dropped
  {
    IdeUtil::ScopedLock lock(table_mutex_);
    HolderList& holders = table_[name];
    for (auto it = holders.begin(); it != holders.end();) {
      if ((*it)->Handler() == handler) {
        released.push_back(std::move(*it));
        it = holders.erase(it);
      } else {
        ++it;
      }
    }
  }
}

void EventMgr::Deliver(const std::string& name, const BaseEvent& event) {
  boost::container::small_vector<std::weak_ptr<HandlerHolder>, 16> snapshot;
  {
    IdeUtil::ScopedLock lock(table_mutex_);
    const HolderList& holders = table_[name];
    snapshot.assign(holders.begin(), holders.end());
  }
  for (const std::weak_ptr<HandlerHolder>& weak : snapshot) {
    if (std::shared_ptr<HandlerHolder> holder = weak.lock()) (*holder)(event);
  }
}

void EventMgr::Notify(const std::string& name, const BaseEvent& event) {
  // With no host registered no thread is known to be the UI thread, so a
  // UI-only event waits for the idle pass.
  HostUtil::IHostUtil* host = HostUtil::GetHost();
  if (!event.MustRunOnUIThread() || (host && host->IsSafeUIThread())) {
    Deliver(name, event);
    return;
  }
  std::unique_ptr<BaseEvent> copy(event.Clone());
  IdeUtil::ScopedLock lock(queue_mutex_);
  pending_.emplace_back(name, std::move(copy));
}

bool EventMgr::DoIdleChore() {
  std::deque<std::pair<std::string, std::unique_ptr<BaseEvent>>> batch;
  {
    IdeUtil::ScopedLock lock(queue_mutex_);
    batch.swap(pending_);
  }
  for (const auto& [name, event] : batch) Deliver(name, *event);
  return false;
}

}  // namespace Implementation

void RegisterEvent(const std::string& name, BaseHandler* handler) {
  Implementation::EventMgr::Instance().Register(name, handler);
}

void UnregisterEvent(const std::string& name, BaseHandler* handler) {
  Implementation::EventMgr::Instance().Unregister(name, handler);
}

void NotifyEvent(const std::string& name, const BaseEvent& event) {
  Implementation::EventMgr::Instance().Notify(name, event);
}

}  // namespace Kf::Event
