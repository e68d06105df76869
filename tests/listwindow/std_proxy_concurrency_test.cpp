#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <random>
#include <thread>

#include "listwindow_test_util.h"

namespace {

using namespace ListWindowTest;
using Kf::ListWindow::KfStdListWindowProxy;
using Kf::ListWindow::KfTableListModel;

struct OpenStdProxy : KfStdListWindowProxy {
  IdeUtil::RecursiveMutex& Mutex() { return mutex_; }
};

// Rows stamped with the model version that their content belongs to: every
// change is a SetRows made under `changeMutex`, so stamp == version.
std::vector<std::vector<std::string>> StampedRows(u64 stamp) {
  std::vector<std::vector<std::string>> rows(200 + stamp % 50);
  for (auto& row : rows) row = {std::to_string(stamp)};
  return rows;
}

// Two model threads change the table while the host thread gets rows,
// acknowledges and scrolls. After an acknowledgement that took effect, no
// fresh row of an older model state may be drawn.
TEST(StdProxyConcurrency, NoOldRowAfterTheAcknowledgementOfANewState) {
  auto model = std::make_shared<KfTableListModel>(Columns({"Stamp"}));
  std::mutex changeMutex;
  {
    std::lock_guard<std::mutex> lock(changeMutex);
    model->SetRows(StampedRows(model->Version() + 1));
  }
  RecordingListener host;
  OpenStdProxy proxy;
  proxy.SetListener(&host);
  proxy.SetProvider(model);
  proxy.Attach();

  std::atomic<bool> stop{false};
  auto changer = [&] {
    for (int i = 0; i < 150 && !stop; ++i) {
      std::lock_guard<std::mutex> lock(changeMutex);
      model->SetRows(StampedRows(model->Version() + 1));
    }
  };
  std::thread a(changer);
  std::thread b(changer);

  std::mt19937 random(7);
  u64 acknowledgedStamp = 0;
  int effectiveAcks = 0;
  int freshRows = 0;
  for (int step = 0; step < 3000; ++step) {
    std::vector<ListWindowProxyListener::Message> messages = host.Take();
    u64 latestSerial = 0;
    u64 latestVersion = 0;
    for (const auto& message : messages) {
      if (message.value != KfStdListWindowProxy::kAllOnes && message.serial >= latestSerial) {
        latestSerial = message.serial;
        latestVersion = message.value;
      }
    }
    if (latestSerial != 0) {
      IdeUtil::ScopedRecursiveLock hold(proxy.Mutex());  // no notification in between
      proxy.AcknowledgeUpdate(latestSerial);
      if (proxy.UpdateSerial() == latestSerial) {
        acknowledgedStamp = std::max(acknowledgedStamp, latestVersion);
        ++effectiveAcks;
      }
    }
    const u64 first = random() % 200;
    host.SetVisible(first, first + 30);
    for (u64 row = first; row <= first + 30 && row < proxy.NumberOfRows(); ++row) {
      std::vector<std::string> cells;
      std::vector<KfListModel::Format> formats;
      KfListModel::TreeInfo tree;
      bool flag = false;
      proxy.GetRow(row, &cells, &formats, &tree, &flag);
      ASSERT_EQ(cells.size(), 1u);
      if (formats[0].flags & KfListModel::FormatPending) continue;
      ++freshRows;
      ASSERT_GE(std::stoull(cells[0]), acknowledgedStamp) << "row " << row << " of an old state after an ack";
    }
  }
  stop = true;
  a.join();
  b.join();
  EXPECT_GT(effectiveAcks, 0);
  EXPECT_GT(freshRows, 0);

  // Once the model is quiet, one last acknowledgement brings every row to the final state.
  for (auto& message : host.Take()) proxy.AcknowledgeUpdate(message.serial);
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  const u64 finalVersion = model->Version();
  host.SetVisible(0, 20);
  for (int round = 0; round < 1000; ++round) {
    bool allFresh = true;
    for (u64 row = 0; row <= 20; ++row) {
      std::vector<std::string> cells;
      std::vector<KfListModel::Format> formats;
      KfListModel::TreeInfo tree;
      bool flag = false;
      proxy.GetRow(row, &cells, &formats, &tree, &flag);
      if (formats[0].flags & KfListModel::FormatPending) {
        allFresh = false;
      } else {
        EXPECT_EQ(std::stoull(cells[0]), finalVersion);
      }
    }
    if (allFresh) break;
    while (!proxy.Idle()) std::this_thread::yield();
  }
  proxy.Detach();
  EXPECT_FALSE(proxy.WorkerRunning());
}

// Detach while the worker is fetching and the model keeps notifying; then
// the proxy is destroyed while the model lives on.
TEST(StdProxyConcurrency, DetachInTheMiddleOfFetching) {
  for (int round = 0; round < 20; ++round) {
    auto model = std::make_shared<KfTableListModel>(Columns({"A", "B"}));
    model->SetRows(NumberedRows(5000));
    std::atomic<bool> stop{false};
    {
      RecordingListener host;
      host.SetVisible(0, 4999);
      KfStdListWindowProxy proxy;
      proxy.SetListener(&host);
      proxy.SetProvider(model);
      std::thread notifier([&] {
        int i = 0;
        while (!stop) (void)model->SetCell(static_cast<u64>(i++ % 5000), 1, "x");
      });
      for (u64 row = 0; row < 300; ++row) {
        std::vector<std::string> cells;
        std::vector<KfListModel::Format> formats;
        KfListModel::TreeInfo tree;
        bool flag = false;
        proxy.GetRow(row, &cells, &formats, &tree, &flag);
        if (row % 50 == 0) proxy.AcknowledgeUpdate(host.Last().serial);
      }
      proxy.Detach();
      EXPECT_FALSE(proxy.WorkerRunning());
      stop = true;
      notifier.join();
    }
    // The proxy withdrew; the model's notes now reach nobody.
    EXPECT_TRUE(model->SetCell(0, 0, "after"));
  }
}

}  // namespace
