// The idle-chore registry and the idle pass.
//
// Entries are only ever unlinked by the purge sweep at the end of a pass, on
// the UI thread; everywhere else they are marked removed. That keeps the
// pass's cursor valid while other threads enqueue and withdraw chores.
#include "orvane/idle.h"

#include <atomic>
#include <list>
#include <stdexcept>

#include "core/profile.h"
#include "orvane/locks.h"
#include "orvane/platform.h"

struct KfIdleChoreImpl::Flags {
  const bool foregroundOnly;
  std::atomic<bool> wantsMoreTime{false};
  std::atomic<bool> enqueued{false};
};

namespace {

struct ChoreEntry {
  ChoreEntry(KfIdleChoreImpl* c, std::string n) : chore(c), name(std::move(n)) {}
  KfIdleChoreImpl* const chore;
  const std::string name;  // for identification only
  std::atomic<bool> removed{false};
};

// Set when the registry is destroyed at library unload; chores destroyed after
// that only free their own state. A trivially destructible global, so it is
// valid during the whole static destruction phase.
std::atomic<bool> g_registryTornDown{false};

struct ChoreRegistry {
  ~ChoreRegistry() { g_registryTornDown.store(true); }

  IdeUtil::Mutex listLock;
  std::list<ChoreEntry> entries;                  // guarded by listLock
  std::list<ChoreEntry>::iterator cursor;          // guarded by listLock
  IdeUtil::RecursiveMutex runLock;                // held while a chore runs or is withdrawn
  std::atomic<bool> purgeNeeded{false};
};

ChoreRegistry& Registry() {
  static ChoreRegistry registry;
  return registry;
}

Kf::Detail::ProfileTask& IdleTimeTask() {
  static Kf::Detail::ProfileTask task("KfIdleTimeProcessing");
  return task;
}

}  // namespace

KfIdleChoreImpl::KfIdleChoreImpl(const std::string& name, bool foregroundOnly)
    : flags_(new Flags{foregroundOnly}) {
  Enqueue(name);
}

KfIdleChoreImpl::KfIdleChoreImpl(No_enqueue_tag, bool foregroundOnly) : flags_(new Flags{foregroundOnly}) {}

KfIdleChoreImpl::~KfIdleChoreImpl() {
  Withdraw();
}

bool KfIdleChoreImpl::DoIdleChore() { return false; }

void KfIdleChoreImpl::Enqueue(const std::string& name) {
  if (flags_->enqueued.exchange(true)) return;
  ChoreRegistry& registry = Registry();
  IdeUtil::ScopedLock lock(registry.listLock);
  if (registry.entries.size() >= registry.entries.max_size()) throw std::length_error("list too long");
  registry.entries.emplace_back(this, name);
}

void KfIdleChoreImpl::Withdraw() {
  if (!flags_->enqueued.exchange(false) || g_registryTornDown.load()) return;
  ChoreRegistry& registry = Registry();
  {
    IdeUtil::ScopedLock lock(registry.listLock);
    for (ChoreEntry& entry : registry.entries) {
      if (entry.chore == this && !entry.removed.exchange(true)) {
        registry.purgeNeeded.store(true);
        break;
      }
    }
  }
  // Waits for a run of this chore on another thread; on the UI thread, inside
  // the chore's own DoIdleChore, the recursive lock is already ours.
  IdeUtil::ScopedRecursiveLock run(registry.runLock);
}

bool KfIdleChoreImpl::ForegroundOnly() { return flags_->foregroundOnly; }

bool KfIdleChoreImpl::WantsMoreTime() const { return flags_->wantsMoreTime.load(std::memory_order_relaxed); }

void KfIdleChoreImpl::SetWantsMoreTime(bool wants) { flags_->wantsMoreTime.store(wants, std::memory_order_relaxed); }

void KfIdleChoreImpl::Nudge() { Kf::Platform::Current().WakeIdleLoop(); }

bool KfIdleChoreImpl::IdleTime(long idleCount) { return IdleTime(idleCount, true); }

bool KfIdleChoreImpl::IdleTime(long idleCount, bool foreground) {
  Kf::Detail::ScopedProfile profile(IdleTimeTask());
  ChoreRegistry& registry = Registry();
  ChoreEntry* entry;
  {
    IdeUtil::ScopedLock lock(registry.listLock);
    registry.cursor = registry.entries.begin();
    if (registry.cursor == registry.entries.end()) return false;
    entry = &*registry.cursor;
  }

  bool passResult = false;
  while (entry) {
    if (!entry->removed.load()) {
      IdeUtil::ScopedRecursiveLock run(registry.runLock);
      // Checked again under the run lock: a withdrawal that slipped in between
      // has marked the entry and is waiting for this lock, and its object may
      // already be half destroyed.
      KfIdleChoreImpl* chore = entry->chore;
      if (!entry->removed.load() && (foreground || !chore->ForegroundOnly()) &&
          (idleCount == 0 || chore->WantsMoreTime())) {
        bool wantsMore = chore->DoIdleChore();
        // A chore that destroyed itself has no flags left to write.
        if (!entry->removed.load()) chore->SetWantsMoreTime(wantsMore);
        passResult = passResult || wantsMore;
      }
    }
    // Advance and fetch the next entry in one critical section.
    IdeUtil::ScopedLock lock(registry.listLock);
    ++registry.cursor;
    entry = registry.cursor == registry.entries.end() ? nullptr : &*registry.cursor;
  }

  if (registry.purgeNeeded.exchange(false)) {
    IdeUtil::ScopedLock lock(registry.listLock);
    registry.entries.remove_if([](const ChoreEntry& entry) { return entry.removed.load(); });
    registry.cursor = registry.entries.begin();
  }
  return passResult;
}
