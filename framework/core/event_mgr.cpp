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
  generation_.fetch_add(1, std::memory_order_release);
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
  if (next->size() != current->size()) {
    replaced = std::exchange(current, std::move(next));
    generation_.fetch_add(1, std::memory_order_release);
  }
}

namespace {

// Per-thread delivery state: the handler list of the name this thread
// delivered last, with the generation it was read at (which proves it current
// while no list has changed since), and how many deliveries are in progress
// on this thread (a handler may deliver other events).
struct ThreadDeliveryState {
  std::uint64_t generation = 0;
  std::string name;
  std::shared_ptr<const std::vector<std::shared_ptr<EventMgr::HandlerHolder>>> list;
  int depth = 0;
};
// Initial-exec: a direct thread-pointer access instead of a resolver call on
// every delivery. The state is small enough for the static TLS reserve that
// the loader keeps even for libraries loaded at run time.
thread_local ThreadDeliveryState t_delivery __attribute__((tls_model("initial-exec")));

}  // namespace

void EventMgr::Deliver(const std::string& name, const BaseEvent& event) {
  ThreadDeliveryState& state = t_delivery;
  struct DepthGuard {
    explicit DepthGuard(int& d) : depth(d) { ++depth; }
    ~DepthGuard() { --depth; }
    int& depth;
  } guard(state.depth);

  // Most deliveries repeat the name their thread delivered last; then an
  // unchanged generation proves the cached list current and the table's lock
  // and lookup are skipped. Only the outermost delivery of a thread uses and
  // refreshes the cache, so the list it walks stays alive while its handlers
  // deliver other events; nested deliveries hold their own copy.
  const bool outermost = state.depth == 1;
  SharedHolderList nestedList;
  const HolderList* holders;
  if (outermost && state.generation == generation_.load(std::memory_order_acquire) && state.name == name) {
    holders = state.list.get();
  } else {
    SharedHolderList list;
    std::uint64_t generation;
    {
      IdeUtil::ScopedLock lock(table_mutex_);
      list = table_[name];
      generation = generation_.load(std::memory_order_relaxed);
    }
    if (outermost) {
      state.generation = generation;
      state.name = name;
      state.list = std::move(list);
      holders = state.list.get();
    } else {
      nestedList = std::move(list);
      holders = nestedList.get();
    }
  }
  if (!holders) return;
  for (const std::shared_ptr<HandlerHolder>& holder : *holders) {
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
