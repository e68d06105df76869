#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "orvane/stringcommand.h"

namespace Kf::StringCommand {
namespace {

struct CountingListener : IUpdateStateListener {
  std::atomic<int> calls{0};
  void OnUpdateStateChanged(const std::string&) override { calls.fetch_add(1); }
};

struct InfoCounter : ICommandInfoListener {
  int calls = 0;  // guarded by the information lock, which is held while listeners run
  void OnCommandInfoChanged(const CommandInfoEvent&) override { ++calls; }
};

// Threads push states for their own commands while others read them and
// change the listener list; every real change is announced exactly once.
TEST(StringCommandConcurrency, UpdatesFromManyThreadsAreEachAnnouncedOnce) {
  CountingListener listener;
  RegisterUpdateStateListener(&listener);
  constexpr int kThreads = 4;
  constexpr int kRounds = 500;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([t] {
      const std::string name = "Concurrent.Cmd" + std::to_string(t);
      for (int i = 0; i < kRounds; ++i) {
        SetUpdate(name, UpdateState{static_cast<std::uint32_t>(i % 2), 0});
        SetUpdate(name, UpdateState{static_cast<std::uint32_t>(i % 2), 0});  // redundant
        (void)GetUpdate("Concurrent.Cmd" + std::to_string((t + 1) % kThreads));
      }
    });
  // It outlives every notification: one running on another thread may still
  // call it once after it was unregistered.
  CountingListener transient;
  std::thread churn([&transient] {
    for (int i = 0; i < kRounds; ++i) {
      RegisterUpdateStateListener(&transient);
      UnregisterUpdateStateListener(&transient);
    }
  });
  for (auto& thread : threads) thread.join();
  churn.join();
  UnregisterUpdateStateListener(&listener);
  EXPECT_EQ(listener.calls.load(), kThreads * kRounds);
}

TEST(StringCommandConcurrency, InformationChangesFromManyThreadsKeepEveryEntry) {
  InfoCounter counter;
  RegisterInfoListener(&counter);
  constexpr int kThreads = 4;
  constexpr int kRounds = 200;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t)
    threads.emplace_back([t] {
      for (int i = 0; i < kRounds; ++i) {
        const std::string name = "ConcurrentInfo." + std::to_string(t) + "." + std::to_string(i);
        SetCommandInfo({CommandInfo(name, "&Text " + name, "")});
        CommandInfo info;
        EXPECT_TRUE(GetCommandInfo(name, info));
        std::vector<std::string> names;
        GetCommandsWithInfo(names);
      }
    });
  for (auto& thread : threads) thread.join();
  UnregisterInfoListener(&counter);
  EXPECT_EQ(counter.calls, kThreads * kRounds);
  std::vector<std::string> names;
  GetCommandsWithInfo(names);
  EXPECT_GE(names.size(), static_cast<std::size_t>(kThreads * kRounds));
}

}  // namespace
}  // namespace Kf::StringCommand
