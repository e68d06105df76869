#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <boost/json.hpp>

#include "log/trace_file.h"
#include "orvane/logtask.h"
#include "orvane/platform.h"
#include "orvane/storage.h"
#include "support/scoped_settings.h"

namespace {

class TraceConcurrencyTest : public ::testing::Test {
 protected:
  void TearDown() override {
    (void)Kf::Platform::Current().UnsetEnv("QOR_QDBGSERVER_TRACE_FILE");
    Kf::Detail::ResetTraceForTesting();
    KfSetUsingMode(KfUsingMode::kIde);  // the default
  }
};

// The first events race the decision, which reads the "Global" storage,
// while other threads hold that storage's lock for their own stores. Nothing
// may deadlock, and every line written must be one whole event.
TEST_F(TraceConcurrencyTest, FirstEventsRaceTheSettingsDecisionWithoutDeadlockOrTornLines) {
  Kf::Testing::ScopedGlobalStorage global;
  GePath traceDir = global.Settings().Dir() / "traces";
  std::filesystem::create_directories(traceDir.Native());
  ASSERT_TRUE(global->StoreBool("TextEditor", "LoggingEnabled", true));
  ASSERT_TRUE(global->Store("TextEditor", "LoggingDirectory", traceDir.ToString()));
  Kf::Detail::ResetTraceForTesting();

  std::atomic<bool> go{false};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      while (!go.load()) std::this_thread::yield();
      for (int i = 0; i < 100; ++i) {
        if (t % 2 == 0) {
          (void)global->Store("Work", "k" + std::to_string(t), static_cast<std::uint32_t>(i));
        } else {
          Kf::ScopedLogTask task("Task", std::to_string(i));
          Kf::InstantLogTask("Mark", "");
        }
      }
    });
  go = true;
  for (auto& thread : threads) thread.join();

  GePath trace = Kf::Detail::CurrentTracePath();
  ASSERT_FALSE(trace.IsEmpty());
  std::ifstream in(trace.Native());
  std::string line;
  int lines = 0;
  while (std::getline(in, line)) {
    if (lines == 0) {
      ASSERT_EQ(line.front(), '[');
      line.erase(0, 1);
    }
    ASSERT_EQ(line.back(), ',');
    line.pop_back();
    boost::system::error_code ec;
    boost::json::value event = boost::json::parse(line, ec);
    ASSERT_FALSE(ec) << line;
    EXPECT_TRUE(event.as_object().contains("ph"));
    ++lines;
  }
  EXPECT_GT(lines, 100);
}

}  // namespace
