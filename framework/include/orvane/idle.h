// Idle chores: deferred work on the UI thread, and the interruption check.
//
// A module derives from KfIdleChoreImpl and overrides DoIdleChore; the chore
// is enqueued at construction and withdrawn at destruction. The host's message
// loop calls KfIdleChoreImpl::IdleTime whenever its queue is empty:
//
//   class RefreshViews : public KfIdleChoreImpl {
//    public:
//     RefreshViews() : KfIdleChoreImpl("RefreshViews", /*foregroundOnly=*/true) {}
//     ~RefreshViews() override { Withdraw(); }
//     bool DoIdleChore() override { return RefreshSomeViews(); }  // true: more to do
//   };
//
//   // host loop
//   for (long idleCount = 0; !HasMessages() && KfIdleChoreImpl::IdleTime(idleCount); ++idleCount) {}
//
// An idle pass with idleCount 0 runs every chore; later passes of the same idle
// period run only chores whose last run asked for more time. Chores that are
// foreground-only are skipped while the application is in the background.
//
// Threads: IdleTime runs on the UI thread. Chores may be constructed and
// destroyed on any thread. Destroying a chore while it runs on another thread
// waits for the run to end. Because base classes are built before and
// destroyed after the derived parts, a chore built off the UI thread uses
// No_enqueue_tag and calls Enqueue() at the end of its own constructor, and a
// chore destroyed off the UI thread calls Withdraw() first in its own
// destructor; otherwise a pass could run it half built or half destroyed. A chore may delete
// itself from inside DoIdleChore. The registry list is guarded by a mutex
// that is never held while a chore runs; a recursive run lock is held while a
// chore runs and while one is withdrawn. Chores may be enqueued from any
// thread during a pass; they run in the same pass.
//
// Interruption: KfActivateInterruptionCheck(true) starts a poller thread that
// watches for Ctrl+Shift+period every 100 ms; long work on any thread asks
// KfCheckInterruption() whether the user pressed it (test-and-clear).
#pragma once

#include <memory>
#include <string>

#include "orvane/export.h"

class ORVANE_API KfIdleChoreImpl {
 public:
  // Tag for a chore that is enqueued later, once it is fully built.
  struct No_enqueue_tag {};

  KfIdleChoreImpl(const std::string& name, bool foregroundOnly);
  KfIdleChoreImpl(No_enqueue_tag, bool foregroundOnly);
  virtual ~KfIdleChoreImpl();
  KfIdleChoreImpl(const KfIdleChoreImpl&) = delete;
  KfIdleChoreImpl& operator=(const KfIdleChoreImpl&) = delete;

  // The chore's work; returns true when it wants more idle time soon.
  virtual bool DoIdleChore();

  // Appends this chore to the registry. A chore is enqueued at most once.
  void Enqueue(const std::string& name);

  bool ForegroundOnly();
  bool WantsMoreTime() const;
  void SetWantsMoreTime(bool wants);

  // Wakes the host's message loop so that an idle pass follows soon.
  static void Nudge();
  // One idle pass; true when a chore that ran asked for more time.
  static bool IdleTime(long idleCount, bool foreground);
  static bool IdleTime(long idleCount);

 protected:
  // Withdraws the chore from the registry and waits for a run of it on another
  // thread to end. Idempotent; the base destructor calls it too. Call it first
  // in the destructor of a derived chore that other threads may destroy.
  void Withdraw();

 private:
  struct Flags;
  std::unique_ptr<Flags> flags_;
};

// True once after the user pressed Ctrl+Shift+period while the check was
// active; the call clears the flag.
ORVANE_API bool KfCheckInterruption();
ORVANE_API void KfClearInterruption();
// Starts (true) or stops (false) the keyboard poller.
ORVANE_API void KfActivateInterruptionCheck(bool on);
