#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "support/recording_log_server.h"
#include "orvane/statusbar.h"
#include "support/test_host.h"

namespace {

using Kf::Testing::RecordingServer;
using Entry = KfLogServer::Entry;

TEST(LogEntry, CopiesAreDeepAndSetTextGrowsWithoutShrinking) {
  Entry original("Cat", "sender", "message", 2, GePath("a.c"), Kf::SrcPos(3, 4), Kf::SrcPos(9, 9), 7, 11);
  EXPECT_EQ(original.SrcEndPos(), Kf::SrcPos(3, 4));  // the end argument is ignored
  Entry copy(original);
  copy.SetText("extra", 3);
  EXPECT_EQ(copy.NumberOfTexts(), 4u);
  EXPECT_EQ(copy.Text(1), "");
  EXPECT_EQ(copy.Text(3), "extra");
  EXPECT_EQ(copy.Text(99), "");
  copy.SetText("first", 1);
  EXPECT_EQ(copy.NumberOfTexts(), 4u);
  EXPECT_EQ(original.NumberOfTexts(), 1u);
  EXPECT_EQ(original.Text(), "message");

  Entry assigned;
  EXPECT_EQ(assigned.NumberOfTexts(), 0u);
  EXPECT_EQ(assigned.Text(), "");
  assigned = copy;
  EXPECT_EQ(assigned.Text(3), "extra");
  EXPECT_EQ(assigned.Path(), GePath("a.c"));
  EXPECT_EQ(assigned.EntryId(), 11u);
}

std::vector<std::string> Texts(const std::vector<Entry>& entries) {
  std::vector<std::string> texts;
  for (const Entry& entry : entries) texts.push_back(entry.Text());
  return texts;
}

class LogBus : public ::testing::Test {
 protected:
  void SetUp() override { server.RegisterLogServer(); }
  Kf::Testing::ScopedTestHost host;  // status-bar events need a UI thread
  RecordingServer server;
};

TEST_F(LogBus, MultiLineTextBecomesEntryAndContinuations) {
  KfLogClient client("Test_MultiLine", "compiler");
  client.Log(KfLogClient::Warning, {GePath("main.c"), {4, 2}, {4, 9}}, "a\nb\n", "hint");
  auto entries = server.EntriesOf("Test_MultiLine");
  ASSERT_EQ(Texts(entries), (std::vector<std::string>{"a", "b"}));
  EXPECT_FALSE(entries[0].IsSubEntry());
  EXPECT_EQ(entries[0].Path(), GePath("main.c"));
  EXPECT_EQ(entries[0].SrcPos(), Kf::SrcPos(4, 2));
  EXPECT_EQ(entries[0].SrcEndPos(), Kf::SrcPos(4, 2));
  EXPECT_TRUE(entries[1].IsSubEntry());
  EXPECT_TRUE(entries[1].Path().IsEmpty());
  EXPECT_EQ(entries[1].SrcPos(), Kf::SrcPos());
  EXPECT_EQ(entries[1].EntryId(), entries[0].EntryId() + 1);
  for (const Entry& entry : entries) {
    EXPECT_EQ(entry.Text(1), "hint");
    EXPECT_EQ(entry.Sender(), "compiler");
    EXPECT_EQ(entry.Severity(), KfLogClient::Warning);
    EXPECT_GT(entry.TimeStamp(), 1600000000);
  }
}

TEST_F(LogBus, EmptyLinesAndCarriageReturnsAreKept) {
  KfLogClient client("Test_EmptyLines", "s");
  client.Log(KfLogClient::Info, "one\n\nthree");
  client.Log(KfLogClient::Info, "");
  client.Log(KfLogClient::Info, "dos\r\nline\r");
  auto entries = server.EntriesOf("Test_EmptyLines");
  ASSERT_EQ(Texts(entries), (std::vector<std::string>{"one", "", "three", "", "dos\r", "line\r"}));
  EXPECT_TRUE(entries[1].IsSubEntry());
  EXPECT_FALSE(entries[3].IsSubEntry());
}

TEST_F(LogBus, CategoriesNotifyOnceAndAreReplayedToNewServers) {
  KfLogClient first("Test_Categories", "a");
  KfLogClient second("Test_Categories", "b");
  EXPECT_EQ(std::count(server.added.begin(), server.added.end(), "Test_Categories"), 1);

  RecordingServer late;
  late.RegisterLogServer();
  late.RegisterLogServer();
  EXPECT_EQ(std::count(late.added.begin(), late.added.end(), "Test_Categories"), 1);
  EXPECT_TRUE(std::is_sorted(late.added.begin(), late.added.end()));

  first.UnregisterLogClient();
  second.UnregisterLogClient();
  EXPECT_EQ(std::count(server.removed.begin(), server.removed.end(), "Test_Categories"), 1);
  EXPECT_EQ(std::count(late.removed.begin(), late.removed.end(), "Test_Categories"), 1);

  second.StartSession();
  EXPECT_EQ(server.sessions.back(), "Test_Categories");
}

TEST_F(LogBus, ServerUnregisteringItselfInsideACallbackGetsNothingMore) {
  RecordingServer quitter;
  quitter.onEntry = [&](Entry&) { quitter.UnregisterLogServer(); };
  quitter.RegisterLogServer();
  KfLogClient client("Test_Quitter", "s");
  client.Log(KfLogClient::Info, "1\n2\n3");
  client.StartSession();
  EXPECT_EQ(quitter.EntriesOf("Test_Quitter").size(), 1u);
  EXPECT_TRUE(quitter.sessions.empty());
  EXPECT_EQ(server.EntriesOf("Test_Quitter").size(), 3u);

  quitter.onEntry = nullptr;  // registering again works once the walk is over
  quitter.RegisterLogServer();
  client.Log(KfLogClient::Info, "4");
  EXPECT_EQ(quitter.EntriesOf("Test_Quitter").size(), 2u);
}

TEST_F(LogBus, ServerMayLogFromInsideItsCallback) {
  KfLogClient echo("Test_Echo", "echo");
  server.onEntry = [&](Entry& entry) {
    if (entry.Category() == "Test_Source") echo.Log(KfLogClient::Info, "echo of " + entry.Text());
  };
  KfLogClient source("Test_Source", "s");
  source.Log(KfLogClient::Info, "x");
  server.onEntry = nullptr;
  EXPECT_EQ(Texts(server.EntriesOf("Test_Echo")), std::vector<std::string>{"echo of x"});
}

TEST_F(LogBus, EntriesWithoutServersStillConsumeIds) {
  KfLogClient client("Test_Ids", "s");
  client.Log(KfLogClient::Info, "before");
  server.UnregisterLogServer();
  client.Log(KfLogClient::Info, "lost\nlost too");
  server.RegisterLogServer();
  client.Log(KfLogClient::Info, "after");
  auto entries = server.EntriesOf("Test_Ids");
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_GE(entries[1].EntryId(), entries[0].EntryId() + 3);
}

TEST_F(LogBus, AThrowingServerIsReportedInTheFrameworkCategory) {
  struct Thrower : KfLogServer {
    ~Thrower() override { UnregisterLogServer(); }
    void ProcessEntry(Entry& entry) override {
      if (entry.Category() == "Test_Throw") throw std::runtime_error("window gone");
    }
  } thrower;
  thrower.RegisterLogServer();
  KfLogClient client("Test_Throw", "s");
  client.Log(KfLogClient::Info, "x");
  auto reports = server.EntriesOf(kKfFrameworkLogCategory);
  ASSERT_FALSE(reports.empty());
  EXPECT_NE(reports.back().Text().find("window gone"), std::string::npos);
  EXPECT_EQ(reports.back().Severity(), KfLogClient::Error);
  EXPECT_EQ(server.EntriesOf("Test_Throw").size(), 1u);
}

TEST_F(LogBus, BuildFailuresRefreshTheBuildResultAfterTheirLines) {
  int events = 0;
  std::size_t entriesAtEvent = 0;
  Kf::Event::FunctionHandler<Kf::StatusBar::StatusBarBuildResultEvent> handler(
      [&](const Kf::StatusBar::StatusBarBuildResultEvent&) {
        ++events;
        entriesAtEvent = server.EntriesOf(kKfBuildCategory).size();
      });
  Kf::Event::RegisterEvent(Kf::StatusBar::kBuildEvent, &handler);
  KfLogClient build(kKfBuildCategory, "make");
  build.StartSession();
  EXPECT_EQ(events, 1);
  EXPECT_EQ(Kf::StatusBar::GetBuildResultText(), "No build errors");

  build.Log(KfLogClient::Warning, "just a warning");
  EXPECT_EQ(events, 1);
  build.Log(KfLogClient::Error, "error: one\n  detail");
  EXPECT_EQ(events, 2);
  EXPECT_EQ(entriesAtEvent, 3u);
  EXPECT_EQ(Kf::StatusBar::GetBuildResultText(), "1 build error");
  build.Log(KfLogClient::Fatal, "fatal");
  EXPECT_EQ(Kf::StatusBar::GetBuildResultText(), "2 build errors");

  KfLogClient other(kKfToolOutputCategory, "tool");
  other.Log(KfLogClient::Error, "not a build failure");
  EXPECT_EQ(events, 3);

  build.StartSession();
  EXPECT_EQ(Kf::StatusBar::GetBuildResultText(), "No build errors");
  Kf::Event::UnregisterEvent(Kf::StatusBar::kBuildEvent, &handler);
}

TEST_F(LogBus, MovedClientKeepsLoggingAndTheSourceIsInert) {
  KfLogClient original("Test_Move", "s");
  KfLogClient moved(std::move(original));
  moved.Log(KfLogClient::Info, "from moved");
  original.Log(KfLogClient::Info, "from source");  // NOLINT: use after move is defined as a no-op
  EXPECT_EQ(Texts(server.EntriesOf("Test_Move")), std::vector<std::string>{"from moved"});
}

}  // namespace
