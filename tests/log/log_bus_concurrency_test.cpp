#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "orvane/log.h"

namespace {

constexpr int kThreads = 4;
constexpr int kEntriesPerThread = 100000;
const char* const kCategory = "Test_Concurrency";

// Registered for the whole run. The bus never enters one server from two
// threads at once, so it needs no lock of its own (TSan checks that).
class StableServer : public KfLogServer {
 public:
  ~StableServer() override { UnregisterLogServer(); }
  void ProcessEntry(Entry& entry) override {
    if (entry.Category() == kCategory) ids.push_back(entry.EntryId());
  }
  std::vector<std::uint64_t> ids;
};

// Comes and goes during the run; counts deliveries after its removal.
class ChurningServer : public KfLogServer {
 public:
  ~ChurningServer() override { UnregisterLogServer(); }
  void ProcessEntry(Entry&) override {
    if (gone.load()) lateDeliveries.fetch_add(1);
  }
  std::atomic<bool> gone{false};
  std::atomic<int> lateDeliveries{0};
};

TEST(LogBusConcurrency, EveryEntryReachesEveryStableServerAndNoneArriveAfterRemoval) {
  StableServer first, second;
  first.RegisterLogServer();
  second.RegisterLogServer();

  std::atomic<int> writersDone{0};
  std::vector<std::thread> writers;
  for (int t = 0; t < kThreads; ++t) {
    writers.emplace_back([&writersDone, t] {
      KfLogClient client(kCategory, "writer" + std::to_string(t));
      for (int i = 0; i < kEntriesPerThread; ++i) client.Log(KfLogClient::Info, "entry");
      writersDone.fetch_add(1);
    });
  }
  int lateDeliveries = 0;
  int churns = 0;
  std::thread churner([&] {
    while (writersDone.load() < kThreads) {
      auto server = std::make_unique<ChurningServer>();
      server->RegisterLogServer();
      std::this_thread::yield();
      server->UnregisterLogServer();
      server->gone = true;
      std::this_thread::yield();
      lateDeliveries += server->lateDeliveries.load();
      ++churns;
    }
  });
  for (std::thread& writer : writers) writer.join();
  churner.join();
  first.UnregisterLogServer();
  second.UnregisterLogServer();

  EXPECT_GT(churns, 0);
  EXPECT_EQ(lateDeliveries, 0);
  for (StableServer* server : {&first, &second}) {
    ASSERT_EQ(server->ids.size(), static_cast<std::size_t>(kThreads * kEntriesPerThread));
    std::vector<std::uint64_t> sorted = server->ids;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end()) << "duplicate entry ids";
  }
  std::vector<std::uint64_t> a = first.ids, b = second.ids;
  std::sort(a.begin(), a.end());
  std::sort(b.begin(), b.end());
  EXPECT_EQ(a, b);
}

}  // namespace
