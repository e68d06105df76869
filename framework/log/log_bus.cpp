// The server registry, the category set, the broadcast walk and the entry-id
// counter. All of them live until the process ends (they are never deleted,
// so servers with static lifetime may unregister during process exit).
#include "log/log_bus.h"

#include <array>
#include <atomic>
#include <chrono>
#include <exception>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "core/diagnostics.h"
#include "log/build_tally.h"
#include "orvane/locks.h"

namespace {

// Runs a server callback; an exception escaping it stops at the bus.
template <class Call>
void Guarded(const char* what, Call&& call) {
  try {
    call();
  } catch (const std::exception& error) {
    Kf::Detail::ReportError(what, error.what());
  } catch (...) {
    Kf::Detail::ReportError(what, "unknown exception");
  }
}

class CategorySet {
 public:
  // False when the name was known already.
  bool Insert(const std::string& name) {
    IdeUtil::ScopedLock lock(mutex_);
    return names_.insert(name).second;
  }
  // False when the name was not known.
  bool Erase(const std::string& name) {
    IdeUtil::ScopedLock lock(mutex_);
    return names_.erase(name) != 0;
  }
  // Tells a newly registered server every known category, under the lock so
  // that the server sees a consistent set.
  void Replay(KfLogServer& server) {
    IdeUtil::ScopedLock lock(mutex_);
    for (const std::string& name : names_)
      Guarded("KfLogServer::AddCategory", [&] { server.AddCategory(name); });
  }

 private:
  IdeUtil::Mutex mutex_;
  std::set<std::string> names_;  // guarded by mutex_
};

CategorySet& Categories() {
  static auto* categories = new CategorySet;
  return *categories;
}

// One registered server. Its mutex is held while the server is called, so a
// server is never entered by two threads at once; it is recursive because a
// server may log or unregister itself from inside its own callback.
struct ServerRecord {
  IdeUtil::RecursiveMutex mutex;
  bool registered = false;  // guarded by mutex
  bool removed = false;     // guarded by mutex
};

// Servers by address. A walk (a broadcast, a registration or a removal) keeps
// every record alive: removed records wait on a list until the last walk
// ends, so an iterator held by a walk never dangles.
class ServerRegistry {
 public:
  // Calls `operation` for every server registered when the walk begins, in
  // address order, skipping those removed since. The servers are listed under
  // the registry mutex once; the walk count keeps their records alive, so
  // the list stays valid without that mutex. A server registered during the
  // walk is not called by it.
  template <class Operation>
  std::size_t Broadcast(Operation&& operation) {
    struct Target {
      KfLogServer* server;
      ServerRecord* record;
    };
    constexpr std::size_t kInline = 8;
    std::array<Target, kInline> inlineTargets;
    std::vector<Target> spilled;
    Target* targets = inlineTargets.data();
    std::size_t count = 0;
    {
      IdeUtil::ScopedLock lock(mutex_);
      walks_.fetch_add(1, std::memory_order_acq_rel);
      if (records_.size() > kInline) {
        spilled.resize(records_.size());
        targets = spilled.data();
      }
      for (const auto& [server, record] : records_) targets[count++] = {server, record.get()};
    }
    std::size_t reached = 0;
    for (std::size_t i = 0; i < count; ++i) {
      IdeUtil::ScopedRecursiveLock recordLock(targets[i].record->mutex);
      if (targets[i].record->registered && !targets[i].record->removed) {
        operation(*targets[i].server);
        ++reached;
      }
    }
    FinishWalk();
    return reached;
  }

  void Register(KfLogServer* server) {
    ServerRecord* record;
    {
      IdeUtil::ScopedLock lock(mutex_);
      walks_.fetch_add(1, std::memory_order_acq_rel);
      std::unique_ptr<ServerRecord>& slot = records_[server];
      if (!slot) slot = std::make_unique<ServerRecord>();
      record = slot.get();
    }
    {
      IdeUtil::ScopedRecursiveLock recordLock(record->mutex);
      if (record->removed) {
        // Unregistered while some walk was under way and registered again
        // before that walk ended: take the record off the waiting list.
        {
          IdeUtil::ScopedLock lock(mutex_);
          std::erase(waiting_, server);
          hasWaiting_.store(!waiting_.empty(), std::memory_order_release);
        }
        record->removed = false;
        record->registered = false;
      }
      if (!record->registered) {
        Categories().Replay(*server);
        record->registered = true;
      }
    }
    FinishWalk();
  }

  void Unregister(KfLogServer* server) {
    ServerRecord* record = nullptr;
    {
      IdeUtil::ScopedLock lock(mutex_);
      walks_.fetch_add(1, std::memory_order_acq_rel);
      auto it = records_.find(server);
      if (it != records_.end()) record = it->second.get();
    }
    if (record) {
      IdeUtil::ScopedRecursiveLock recordLock(record->mutex);
      if (!record->removed) {
        record->removed = true;
        IdeUtil::ScopedLock lock(mutex_);
        waiting_.push_back(server);
        hasWaiting_.store(true, std::memory_order_release);
      }
    }
    FinishWalk();
  }

 private:
  using Map = std::map<KfLogServer*, std::unique_ptr<ServerRecord>>;

  // Ends a walk. The last walk to end erases the records removed meanwhile;
  // a walk that removed nothing and is not the last takes no lock.
  void FinishWalk() {
    if (walks_.fetch_sub(1, std::memory_order_acq_rel) != 1 || !hasWaiting_.load(std::memory_order_acquire)) return;
    std::vector<std::unique_ptr<ServerRecord>> erased;  // destroyed after the lock
    IdeUtil::ScopedLock lock(mutex_);
    // Walks begin under this mutex, so none can start while it is held.
    if (walks_.load(std::memory_order_acquire) != 0) return;
    for (KfLogServer* server : waiting_) {
      auto it = records_.find(server);
      if (it == records_.end()) continue;
      erased.push_back(std::move(it->second));
      records_.erase(it);
    }
    waiting_.clear();
    hasWaiting_.store(false, std::memory_order_release);
  }

  IdeUtil::Mutex mutex_;
  Map records_;                        // guarded by mutex_
  std::vector<KfLogServer*> waiting_;  // guarded by mutex_; removed records to erase
  // Walks in progress: raised under mutex_, lowered without it.
  std::atomic<int> walks_{0};
  std::atomic<bool> hasWaiting_{false};  // written under mutex_: waiting_ is not empty
};

ServerRegistry& Servers() {
  static auto* registry = new ServerRegistry;
  return *registry;
}

std::atomic<std::uint64_t> g_nextEntryId{0};
std::atomic<std::int32_t> g_minimumSeverity{-1};

}  // namespace

KfLogServer::KfLogServer() = default;

KfLogServer::~KfLogServer() { UnregisterLogServer(); }

void KfLogServer::AddCategory(const std::string&) {}
void KfLogServer::RemoveCategory(const std::string&) {}
void KfLogServer::StartSession(const std::string&) {}

void KfLogServer::RegisterLogServer() { Servers().Register(this); }

void KfLogServer::UnregisterLogServer() { Servers().Unregister(this); }

namespace Kf {

void RegisterLogCategory(const std::string& category) {
  if (!Categories().Insert(category)) return;
  Servers().Broadcast([&](KfLogServer& server) {
    Guarded("KfLogServer::AddCategory", [&] { server.AddCategory(category); });
  });
}

void UnregisterLogCategory(const std::string& category) {
  if (!Categories().Erase(category)) return;
  Servers().Broadcast([&](KfLogServer& server) {
    Guarded("KfLogServer::RemoveCategory", [&] { server.RemoveCategory(category); });
  });
}

void StartLogSession(const std::string& category) {
  // A new build starts with a clean build result.
  if (category == kKfBuildCategory) Detail::ResetBuildFailures();
  Servers().Broadcast([&](KfLogServer& server) {
    Guarded("KfLogServer::StartSession", [&] { server.StartSession(category); });
  });
}

void DoLog(KfLogServer::Entry& entry) { Detail::DispatchEntry(entry); }

namespace Detail {

std::size_t DispatchEntry(KfLogServer::Entry& entry) {
  auto now = std::chrono::system_clock::now().time_since_epoch();
  entry.TimeStamp(std::chrono::duration_cast<std::chrono::seconds>(now).count());
  entry.EntryId(g_nextEntryId.fetch_add(1, std::memory_order_relaxed));
  return Servers().Broadcast([&](KfLogServer& server) {
    Guarded("KfLogServer::ProcessEntry", [&] { server.ProcessEntry(entry); });
  });
}

std::int32_t MinimumLogSeverity() { return g_minimumSeverity.load(std::memory_order_relaxed); }

}  // namespace Detail
}  // namespace Kf
