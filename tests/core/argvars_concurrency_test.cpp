#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "core/path_parts.h"
#include "orvane/argvars.h"
#include "support/fake_platform.h"

namespace {

// Answers "$N<k>$" with "value <k>" for its own k.
class NumberExpander : public Kf::ArgVarExpander {
 public:
  explicit NumberExpander(int k) : variable_("$N" + std::to_string(k) + "$"), value_("value " + std::to_string(k)) {}
  bool Expand(std::string& text) override {
    if (text != variable_) return false;
    text = value_;
    return true;
  }

 private:
  std::string variable_;
  std::string value_;
};

TEST(ArgVarsConcurrency, ExpansionsFromManyThreadsWhileExpandersComeAndGo) {
  Kf::Testing::ScopedFakePlatform platform;
  constexpr int kStable = 4;
  std::vector<std::unique_ptr<NumberExpander>> stable;
  for (int k = 0; k < kStable; ++k) {
    stable.push_back(std::make_unique<NumberExpander>(k));
    Kf::RegisterArgVarExpander(stable.back().get(), "stable");
  }

  std::atomic<bool> stop{false};
  std::thread churn([&] {
    NumberExpander transient(99);
    while (!stop.load()) {
      Kf::RegisterArgVarExpander(&transient, "transient");
      Kf::UnregisterArgVarExpander(&transient);
    }
  });

  std::atomic<int> failures{0};
  std::vector<std::thread> workers;
  for (int t = 0; t < 4; ++t) {
    workers.emplace_back([&, t] {
      for (int i = 0; i < 2000; ++i) {
        int k = (t + i) % kStable;
        std::string text = "$N" + std::to_string(k) + "$";
        if (!Kf::ExpandSingleVar(&text) || text != "value " + std::to_string(k)) ++failures;
        std::string user = "$USER_NAME$";
        if (!Kf::ExpandSingleVar(&user) || user != "tester") ++failures;
        std::string unknown = "$NONE$";
        if (Kf::ExpandSingleVar(&unknown) || unknown != "$NONE$") ++failures;
      }
    });
  }
  for (auto& worker : workers) worker.join();
  stop = true;
  churn.join();
  EXPECT_EQ(failures.load(), 0);
  for (auto& expander : stable) Kf::UnregisterArgVarExpander(expander.get());
}

TEST(PathPartsConcurrency, ConcurrentInstallsKeepEveryPart) {
  Kf::Testing::ScopedFakePlatform platform;
  ASSERT_TRUE(platform->SetEnv("PATH", "/usr/bin"));
  Kf::Detail::PathPartManager manager;
  constexpr int kThreads = 4;
  Kf::PathVariablePart parts[kThreads];
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      GePath dir("/part" + std::to_string(t));
      for (int i = 0; i < 300; ++i) {
        manager.Install(&parts[t], {dir});
        manager.Uninstall(&parts[t]);
      }
      manager.Install(&parts[t], {dir});
    });
  }
  for (auto& thread : threads) thread.join();
  std::string path;
  ASSERT_TRUE(platform->GetEnv("PATH", path));
  EXPECT_EQ(path, manager.ComposePath());
  for (int t = 0; t < kThreads; ++t) EXPECT_NE(path.find("/part" + std::to_string(t) + ":"), std::string::npos) << path;
  EXPECT_EQ(path.size(), std::string("/usr/bin").size() + kThreads * std::string("/partN:").size());
  for (auto& part : parts) manager.Uninstall(&part);
}

}  // namespace
