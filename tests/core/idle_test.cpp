#include "orvane/idle.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>
#include <vector>

#include "support/fake_platform.h"

namespace {

// A chore whose behaviour each test scripts.
class ScriptedChore : public KfIdleChoreImpl {
 public:
  ScriptedChore(std::function<bool()> work, bool foregroundOnly = false)
      : KfIdleChoreImpl("ScriptedChore", foregroundOnly), work_(std::move(work)) {}
  ScriptedChore(No_enqueue_tag tag, std::function<bool()> work) : KfIdleChoreImpl(tag, false), work_(std::move(work)) {}
  ~ScriptedChore() override { Withdraw(); }
  bool DoIdleChore() override {
    ++runs;
    return work_();
  }
  int runs = 0;

 private:
  std::function<bool()> work_;
};

// Other test suites may leave long-lived chores (the named-event manager);
// these tests only look at their own chores.
void RunPasses(int count, long idleCount = 0) {
  for (int i = 0; i < count; ++i) KfIdleChoreImpl::IdleTime(idleCount);
}

TEST(IdleChores, FirstPassRunsEveryChoreLaterPassesOnlyThoseWantingMoreTime) {
  int busyLeft = 2;
  ScriptedChore busy([&] { return --busyLeft > 0; });
  ScriptedChore idle([] { return false; });

  EXPECT_TRUE(KfIdleChoreImpl::IdleTime(0));
  EXPECT_EQ(busy.runs, 1);
  EXPECT_EQ(idle.runs, 1);
  EXPECT_TRUE(busy.WantsMoreTime());
  EXPECT_FALSE(idle.WantsMoreTime());

  // idleCount 1: only the chore that asked for more time runs.
  EXPECT_FALSE(KfIdleChoreImpl::IdleTime(1));
  EXPECT_EQ(busy.runs, 2);
  EXPECT_EQ(idle.runs, 1);

  // Now neither wants time; another pass of the same idle period runs nothing.
  RunPasses(1, 2);
  EXPECT_EQ(busy.runs, 2);
  EXPECT_EQ(idle.runs, 1);
}

TEST(IdleChores, BackgroundPassSkipsForegroundOnlyChoresAndKeepsTheirFlag) {
  ScriptedChore foregroundOnly([] { return false; }, /*foregroundOnly=*/true);
  ScriptedChore anytime([] { return false; });
  foregroundOnly.SetWantsMoreTime(true);

  KfIdleChoreImpl::IdleTime(0, /*foreground=*/false);
  EXPECT_EQ(foregroundOnly.runs, 0);
  EXPECT_TRUE(foregroundOnly.WantsMoreTime());
  EXPECT_EQ(anytime.runs, 1);

  KfIdleChoreImpl::IdleTime(0, /*foreground=*/true);
  EXPECT_EQ(foregroundOnly.runs, 1);
  EXPECT_FALSE(foregroundOnly.WantsMoreTime());
}

TEST(IdleChores, NoEnqueueTagChoreRunsOnlyAfterEnqueue) {
  ScriptedChore later(KfIdleChoreImpl::No_enqueue_tag{}, [] { return false; });
  RunPasses(2);
  EXPECT_EQ(later.runs, 0);
  later.Enqueue("later");
  later.Enqueue("twice");  // a chore is enqueued at most once
  RunPasses(1);
  EXPECT_EQ(later.runs, 1);
}

TEST(IdleChores, DestroyedChoreIsNeverRunAgain) {
  int runs = 0;
  auto chore = std::make_unique<ScriptedChore>([&] {
    ++runs;
    return true;
  });
  RunPasses(1);
  chore.reset();
  RunPasses(2);
  EXPECT_EQ(runs, 1);
}

// Deletes itself on its first run; the pass must go on with the next chore.
class SelfDestroyingChore : public KfIdleChoreImpl {
 public:
  explicit SelfDestroyingChore(bool* destroyed) : KfIdleChoreImpl("SelfDestroying", false), destroyed_(destroyed) {}
  ~SelfDestroyingChore() override { *destroyed_ = true; }
  bool DoIdleChore() override {
    delete this;
    return true;
  }

 private:
  bool* destroyed_;
};

TEST(IdleChores, ChoreMayDeleteItselfInsideDoIdleChore) {
  bool destroyed = false;
  new SelfDestroyingChore(&destroyed);
  ScriptedChore next([] { return false; });
  bool wantsMore = KfIdleChoreImpl::IdleTime(0);
  EXPECT_TRUE(destroyed);
  EXPECT_TRUE(wantsMore);  // its answer still counts for the pass
  EXPECT_EQ(next.runs, 1);
  RunPasses(1);  // the purged entry is gone; nothing touches the dead chore
  EXPECT_EQ(next.runs, 2);
}

TEST(IdleChores, ChoreEnqueuedDuringAPassRunsInThatPass) {
  std::unique_ptr<ScriptedChore> late;
  ScriptedChore spawner([&] {
    if (!late) late = std::make_unique<ScriptedChore>([] { return false; });
    return false;
  });
  RunPasses(1);
  ASSERT_TRUE(late);
  EXPECT_EQ(late->runs, 1);
}

TEST(IdleChores, NudgeWakesTheHostLoopThroughThePlatform) {
  Kf::Testing::ScopedFakePlatform platform;
  KfIdleChoreImpl::Nudge();
  KfIdleChoreImpl::Nudge();
  EXPECT_EQ(platform->wakeCount.load(), 2);
}

TEST(Interruption, CheckIsTestAndClearAndNeedsAllThreeKeys) {
  using Kf::Platform::Key;
  Kf::Testing::ScopedFakePlatform platform;
  KfClearInterruption();
  platform->SetKeyDown(Key::Shift, true);
  platform->SetKeyDown(Key::Control, true);
  platform->SetKeyDown(Key::Period, true);
  EXPECT_FALSE(KfCheckInterruption()) << "nothing is seen while the poller is off";

  KfActivateInterruptionCheck(true);
  KfActivateInterruptionCheck(true);  // a second start changes nothing
  bool seen = false;
  for (int i = 0; i < 100 && !seen; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    seen = KfCheckInterruption();
  }
  EXPECT_TRUE(seen);
  // Released keys: the next check after the flag was read is false.
  platform->SetKeyDown(Key::Period, false);
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  KfClearInterruption();
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  EXPECT_FALSE(KfCheckInterruption());

  KfActivateInterruptionCheck(false);
  KfActivateInterruptionCheck(false);  // stopping twice is harmless
  auto names = platform->ThreadNames();
  EXPECT_NE(std::find(names.begin(), names.end(), "KfInterruptMgr kbd poller"), names.end());
}

}  // namespace
