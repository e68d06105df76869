#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include <boost/json.hpp>

#include "log/trace_file.h"
#include "orvane/logtask.h"
#include "orvane/platform.h"
#include "orvane/storage.h"
#include "support/fake_platform.h"
#include "support/files.h"
#include "support/scoped_settings.h"

namespace {

using Kf::Testing::ReadFile;
using Kf::Testing::ReadLines;
using Kf::Testing::ScopedFakePlatform;
using Kf::Testing::ScopedGlobalStorage;

std::int64_t g_fakeNowNs = 0;
std::int64_t FakeClock() { return g_fakeNowNs; }

// Turns an event template into a pattern: TID becomes this thread's id, TS and
// DUR become numbers; everything else must match byte for byte.
std::regex EventPattern(const std::string& form) {
  std::string pattern = std::regex_replace(form, std::regex(R"([\[\]{}()*+?.\\^$|])"), R"(\$&)");
  const std::string tid = std::to_string(Kf::Platform::Current().GetCurrentThreadId());
  pattern = std::regex_replace(pattern, std::regex("TID"), tid);
  return std::regex(std::regex_replace(pattern, std::regex("TS|DUR"), "[0-9]+"));
}

class TraceFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Kf::Detail::ResetTraceForTesting();
    traceDir_ = settings_.Dir() / "traces";
    std::filesystem::create_directories(traceDir_.Native());
  }
  void TearDown() override {
    Kf::Detail::SetTraceClockForTesting(nullptr);
    Kf::Detail::ResetTraceForTesting();
    KfSetUsingMode(KfUsingMode::kIde);  // the default
  }
  // Turns tracing on through the settings and lets the next event decide anew.
  void UseSettingsTrace(ScopedGlobalStorage& global, bool enabled, const GePath& dir) {
    ASSERT_TRUE(global->StoreBool("TextEditor", "LoggingEnabled", enabled));
    ASSERT_TRUE(global->Store("TextEditor", "LoggingDirectory", dir.ToString()));
    Kf::Detail::ResetTraceForTesting();  // the stores themselves already took the decision
  }
  GePath UseEnvironmentTrace() {
    GePath file = traceDir_ / "env.trace";
    (void)fake_->SetEnv("QOR_QDBGSERVER_TRACE_FILE", file.ToString());
    return file;
  }

  ScopedFakePlatform fake_;
  Kf::Testing::ScopedSettingsDir settings_;
  GePath traceDir_;
};

TEST_F(TraceFileTest, EveryEventFormIsWrittenByteForByte) {
  GePath file = UseEnvironmentTrace();
  {
    Kf::ScopedLogTask plain("Plain");
    Kf::ScopedLogTask withExtra(std::string("Extra"), std::string("x=1"));
    Kf::InstantLogTask("Moment", "");
    Kf::InstantLogTask("Moment2", "why");
    Kf::ScopedLogSlowExecution slow("Slow", "ctx", std::chrono::microseconds(-1));
  }
  std::vector<std::string> lines = ReadLines(file);
  ASSERT_EQ(lines.size(), 8u);
  const char* forms[] = {
      R"([{"name": "start", "ph" : "i", "pid" : 0, "tid" :TID, "s" : "g" , "ts": TS},)",
      R"({"name": "Plain" ,"cat" : "PERF", "ph" : "B", "pid" : 0, "tid":TID, "ts": TS},)",
      R"({"name": "Extra" ,"cat" : "PERF", "ph" : "B", "pid" : 0, "tid":TID, "ts": TS,"args":{"extra":"x=1"}},)",
      R"({"name": "Moment", "ph" : "i", "pid" : 0, "tid" :TID, "ts" :TS, "s" : "p" ,"args":{"extra":""}},)",
      R"({"name": "Moment2", "ph" : "i", "pid" : 0, "tid" :TID, "ts" :TS, "s" : "p" ,"args":{"extra":"why"}},)",
      R"({"name": "Slow" , "cat": "LIMIT", "ph" : "X", "pid" : 0, "tid":TID, "ts": TS,"dur" : DUR,"args":{"limit":"TIMELIMIT EXCEEDED", "extra":"ctx"}},)",
      R"({"name": "Extra" ,"cat" : "PERF", "ph" : "E", "pid" : 0, "tid":TID, "ts": TS,"args":{"extra":"x=1"}},)",
      R"({"name": "Plain" ,"cat" : "PERF", "ph" : "E", "pid" : 0, "tid":TID, "ts": TS},)",
  };
  for (size_t i = 0; i < lines.size(); ++i) EXPECT_TRUE(std::regex_match(lines[i], EventPattern(forms[i]))) << lines[i];
  EXPECT_EQ(ReadFile(file).back(), '\n');
  EXPECT_EQ(ReadFile(file).find(']'), std::string::npos) << "the array is never closed";
}

TEST_F(TraceFileTest, SlowExecutionWritesOnlyWhenStrictlyOverItsLimit) {
  GePath file = UseEnvironmentTrace();
  Kf::Detail::SetTraceClockForTesting(&FakeClock);
  g_fakeNowNs = 5'000'000;
  { Kf::ScopedLogTask opens("Open"); }  // opens the file at a known time
  {
    Kf::ScopedLogSlowExecution exact("Exact", std::chrono::microseconds(100));
    g_fakeNowNs += 100'000;
  }
  {
    Kf::ScopedLogSlowExecution over("Over", std::chrono::microseconds(100));
    g_fakeNowNs += 101'000;
  }
  std::vector<std::string> lines = ReadLines(file);
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[3], std::string(R"({"name": "Over" , "cat": "LIMIT", "ph" : "X", "pid" : 0, "tid":)") +
                          std::to_string(Kf::Platform::Current().GetCurrentThreadId()) +
                          R"(, "ts": 5100,"dur" : 101,"args":{"limit":"TIMELIMIT EXCEEDED", "extra":""}},)");
}

TEST_F(TraceFileTest, TimestampsAreClockNanosecondsTruncatedToMicroseconds) {
  GePath file = UseEnvironmentTrace();
  Kf::Detail::SetTraceClockForTesting(&FakeClock);
  g_fakeNowNs = 1'999;
  { Kf::InstantLogTask("t", ""); }
  std::vector<std::string> lines = ReadLines(file);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_NE(lines[1].find(R"("ts" :1,)"), std::string::npos) << lines[1];
}

TEST_F(TraceFileTest, OtherUsingModesWriteNothing) {
  GePath file = UseEnvironmentTrace();
  EXPECT_TRUE(KfCheckUsingMode(KfUsingMode::kIde)) << "a process that declares nothing runs as the IDE";
  KfSetUsingMode(KfUsingMode::kConsoleTool);
  { Kf::ScopedLogTask task("Hidden"); }
  EXPECT_FALSE(std::filesystem::exists(file.Native()));
  KfSetUsingMode(KfUsingMode::kDebugServer);
  EXPECT_TRUE(KfCheckUsingMode(KfUsingMode::kDebugServer));
  EXPECT_FALSE(KfCheckUsingMode(KfUsingMode::kIde));
  { Kf::ScopedLogTask task("Shown"); }
  EXPECT_EQ(ReadLines(file).size(), 3u);
}

TEST_F(TraceFileTest, EnvironmentWinsOverSettingsAndNamesTheFileAsIs) {
  ScopedGlobalStorage global;
  GePath file = UseEnvironmentTrace();
  UseSettingsTrace(global, true, traceDir_);
  { Kf::InstantLogTask("x", ""); }
  EXPECT_TRUE(std::filesystem::exists(file.Native()));
  const auto files = std::distance(std::filesystem::directory_iterator(traceDir_.Native()), {});
  EXPECT_EQ(files, 2) << "only env.trace and its .info";
}

TEST_F(TraceFileTest, SettingsEnableAStampedTraceWithAnInfoFile) {
  ScopedGlobalStorage global;
  UseSettingsTrace(global, true, traceDir_);
  { Kf::ScopedLogTask task("Work"); }
  GePath trace = Kf::Detail::CurrentTracePath();
  ASSERT_FALSE(trace.IsEmpty());
  EXPECT_EQ(trace.Parent(), traceDir_);
  EXPECT_TRUE(std::regex_match(trace.FileName(), std::regex(R"(QOR-IDE-Log-\d{4}-\d\d-\d\d-\d{6}\.trace)")))
      << trace.FileName();
  EXPECT_EQ(ReadLines(trace).size(), 3u);

  boost::json::value info = boost::json::parse(ReadFile(GePath(trace.ToString() + ".info")));
  EXPECT_EQ(info.at("pid").to_number<std::uint32_t>(), fake_->processId);
  EXPECT_EQ(info.at("traceFile").as_string(), trace.ToString());
  EXPECT_EQ(info.at("clock").as_string(), "steady");
  EXPECT_TRUE(info.at("clockAtStartUs").is_int64());
}

TEST_F(TraceFileTest, MissingDirectoryKeepsTracingOffForTheProcess) {
  ScopedGlobalStorage global;
  UseSettingsTrace(global, true, traceDir_ / "missing");
  { Kf::ScopedLogTask task("Work"); }
  EXPECT_TRUE(Kf::Detail::CurrentTracePath().IsEmpty());
  // A later change of the settings is not seen until the next start.
  ASSERT_TRUE(global->Store("TextEditor", "LoggingDirectory", traceDir_.ToString()));
  { Kf::ScopedLogTask task("Work"); }
  EXPECT_TRUE(Kf::Detail::CurrentTracePath().IsEmpty());
  EXPECT_TRUE(std::filesystem::is_empty(traceDir_.Native()));
}

TEST_F(TraceFileTest, DisabledSettingOrNoStorageMeansNoTrace) {
  ScopedGlobalStorage global;
  UseSettingsTrace(global, false, traceDir_);
  { Kf::ScopedLogTask task("Work"); }
  EXPECT_TRUE(std::filesystem::is_empty(traceDir_.Native()));
}

TEST_F(TraceFileTest, QuoteInANameIsWrittenUnescaped) {
  GePath file = UseEnvironmentTrace();
  { Kf::InstantLogTask("say \"hi\"", ""); }
  std::vector<std::string> lines = ReadLines(file);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1].rfind(R"({"name": "say "hi"", "ph")", 0), 0u) << lines[1];
}

TEST_F(TraceFileTest, ProfilingTasksReachTheTrace) {
  GePath file = UseEnvironmentTrace();
  ScopedGlobalStorage global;
  std::uint32_t value = 0;
  (void)global->Load("S", "k", value);
  std::string text = ReadFile(file);
  EXPECT_NE(text.find(R"({"name": "KfPersistentStorageLoad" ,"cat" : "PERF", "ph" : "B")"), std::string::npos);
  EXPECT_NE(text.find(R"({"name": "KfPersistentStorageLoad" ,"cat" : "PERF", "ph" : "E")"), std::string::npos);
}

// A real consumer: closes the array and parses it with a JSON parser that
// accepts the trailing comma, then checks the events' structure.
TEST_F(TraceFileTest, ProducedTraceIsValidJsonWithNestedEventsPerThread) {
  GePath file = UseEnvironmentTrace();
  auto work = [](int depth, auto& self) -> void {
    Kf::ScopedLogTask task("Level" + std::to_string(depth), depth % 2 ? "odd" : "");
    if (depth < 4) self(depth + 1, self);
    Kf::InstantLogTask("Leaf", "d");
  };
  std::vector<std::thread> threads;
  for (int t = 0; t < 3; ++t)
    threads.emplace_back([&] {
      for (int i = 0; i < 20; ++i) work(0, work);
    });
  for (auto& thread : threads) thread.join();

  std::string text = ReadFile(file) + "]";
  boost::json::parse_options options;
  options.allow_trailing_commas = true;
  boost::json::value doc = boost::json::parse(text, {}, options);
  const boost::json::array& events = doc.as_array();
  EXPECT_EQ(events.size(), ReadLines(file).size()) << "one event per line";
  EXPECT_EQ(events.size(), 1u + 3 * 20 * 5 * 3);

  std::map<std::int64_t, std::vector<std::string>> open;  // per thread: names begun, not yet ended
  std::map<std::int64_t, std::int64_t> lastTs;
  for (const auto& value : events) {
    const boost::json::object& event = value.as_object();
    for (const char* field : {"name", "ph", "ts", "pid", "tid"}) ASSERT_TRUE(event.contains(field)) << field;
    std::int64_t tid = event.at("tid").to_number<std::int64_t>();
    std::int64_t ts = event.at("ts").to_number<std::int64_t>();
    if (event.at("name") == "start") continue;  // stamped when the file opens, not by a thread's task
    EXPECT_GE(ts, lastTs[tid]) << "one monotonic clock per thread";
    lastTs[tid] = ts;
    std::string ph(event.at("ph").as_string());
    std::string name(event.at("name").as_string());
    if (ph == "B") open[tid].push_back(name);
    if (ph == "E") {
      ASSERT_FALSE(open[tid].empty());
      EXPECT_EQ(open[tid].back(), name);
      open[tid].pop_back();
    }
  }
  for (auto& [tid, names] : open) EXPECT_TRUE(names.empty()) << tid;
}

}  // namespace
