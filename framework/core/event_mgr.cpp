#include "core/event_mgr.h"

#include <utility>

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
  SharedHolderList replaced;  // released after the lock is dropped
  IdeUtil::ScopedLock lock(table_mutex_);
  SharedHolderList& current = table_[name];
  auto next = current ? std::make_shared<HolderList>(*current) : std::make_shared<HolderList>();
  next->push_back(std::move(holder));
  replaced = std::exchange(current, std::move(next));
}

void EventMgr::Unregister(const std::string& name, BaseHandler* handler) {
  SharedHolderList replaced;  // the unlinked holders go with it, after the lock
  IdeUtil::ScopedLock lock(table_mutex_);
  SharedHolderList& current = table_[name];
  if (!current) return;
  auto next = std::make_shared<HolderList>();
  next->reserve(current->size());
  for (const std::shared_ptr<HandlerHolder>& holder : *current) {
    if (holder->Handler() == handler)
      holder->Unlink();
    else
      next->push_back(holder);
  }
  if (next->size() != current->size()) replaced = std::exchange(current, std::move(next));
}

void EventMgr::Deliver(const std::string& name, const BaseEvent& event) {
  SharedHolderList snapshot;
  {
    IdeUtil::ScopedLock lock(table_mutex_);
    snapshot = table_[name];
  }
  if (!snapshot) return;
  for (const std::shared_ptr<HandlerHolder>& holder : *snapshot) {
    if (!holder->IsUnlinked()) (*holder)(event);
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
