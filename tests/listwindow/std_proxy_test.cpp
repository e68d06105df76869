#include <gtest/gtest.h>

#include <condition_variable>
#include <mutex>

#include "listwindow_test_util.h"
#include "orvane/platform.h"

namespace {

using namespace ListWindowTest;
using Kf::ListWindow::KfFlatListModelListener;
using Kf::ListWindow::KfListModelListener;
using Kf::ListWindow::KfStdListWindowProxy;
using Kf::ListWindow::KfTableListModel;
using Kf::ListWindow::KfUniversalListModel;

// A universal model that records the order of row fetches and can hold the
// worker inside a fetch until the test opens its gate.
class GatedModel : public KfUniversalListModel {
 public:
  u64 GetColumnInfo(std::vector<Column>* out) override {
    *out = Columns({"N"});
    return 1;
  }
  u64 NumberOfRows() override { return 1000000; }
  bool GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo*, bool*) override {
    std::unique_lock<std::mutex> lock(mutex_);
    fetched_.push_back(row);
    threadName_ = Kf::Platform::Current().GetCurrentThreadName();
    inside_ = true;
    changed_.notify_all();
    changed_.wait(lock, [this] { return open_; });
    inside_ = false;
    *cells = {"v" + std::to_string(row)};
    formats->assign(1, Format());
    return true;
  }
  void SetListener(KfFlatListModelListener* listener) override { listener_ = listener; }
  void Notify(KfListModelListener::What what, u64 row = 0) {
    KfFlatListModelListener::Note note;
    note.what = what;
    note.version = ++version_;
    note.row = row;
    listener_->HandleNotification(note);
  }
  void SetOpen(bool open) {
    std::lock_guard<std::mutex> lock(mutex_);
    open_ = open;
    changed_.notify_all();
  }
  void WaitInside() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return inside_; });
  }
  std::string ThreadName() {
    std::lock_guard<std::mutex> lock(mutex_);
    return threadName_;
  }
  std::vector<u64> Fetched() {
    std::lock_guard<std::mutex> lock(mutex_);
    return fetched_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool open_ = true;
  bool inside_ = false;
  std::vector<u64> fetched_;
  std::string threadName_;
  u64 version_ = 0;
  KfFlatListModelListener* listener_ = nullptr;
};

// Exposes the proxy mutex so a test can hold the worker back while it queues requests.
struct OpenStdProxy : KfStdListWindowProxy {
  IdeUtil::RecursiveMutex& Mutex() { return mutex_; }
};

struct Drawn {
  std::vector<std::string> cells;
  bool pending = false;
};

Drawn Draw(KfStdListWindowProxy& proxy, u64 row) {
  Drawn drawn;
  std::vector<KfListModel::Format> formats;
  KfListModel::TreeInfo tree;
  bool flag = false;
  proxy.GetRow(row, &drawn.cells, &formats, &tree, &flag);
  drawn.pending = !formats.empty() && (formats[0].flags & KfListModel::FormatPending) != 0;
  return drawn;
}

void WaitIdle(KfStdListWindowProxy& proxy) {
  while (!proxy.Idle()) std::this_thread::yield();
}

struct StdFixture : ::testing::Test {
  void SetUp() override {
    proxy.SetListener(&host);
    proxy.SetProvider(model);
  }
  std::shared_ptr<GatedModel> model = std::make_shared<GatedModel>();
  RecordingListener host;
  OpenStdProxy proxy;
};

TEST_F(StdFixture, MissingRowIsDrawnPendingAndFetchedByTheWorker) {
  EXPECT_TRUE(proxy.WorkerRunning());
  EXPECT_EQ(proxy.NumberOfRows(), 1000000u);
  Drawn first = Draw(proxy, 5);
  EXPECT_EQ(first.cells, (std::vector<std::string>{"-"}));
  EXPECT_TRUE(first.pending);
  WaitIdle(proxy);
  EXPECT_EQ(model->Fetched(), (std::vector<u64>{5}));
  EXPECT_EQ(model->ThreadName(), "List window proxy");
  auto messages = host.Take();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].kind, ListWindowProxyListener::MessageRedraw);
  EXPECT_EQ(messages[0].value, KfStdListWindowProxy::kAllOnes);
  Drawn second = Draw(proxy, 5);
  EXPECT_EQ(second.cells, (std::vector<std::string>{"v5"}));
  EXPECT_FALSE(second.pending);
}

TEST_F(StdFixture, RowsAreFetchedLowestFirst) {
  {
    IdeUtil::ScopedRecursiveLock hold(proxy.Mutex());  // the worker waits for this lock
    host.SetVisible(0, 100);
    Draw(proxy, 50);
    Draw(proxy, 10);
    Draw(proxy, 30);
  }
  WaitIdle(proxy);
  EXPECT_EQ(model->Fetched(), (std::vector<u64>{10, 30, 50}));
}

TEST_F(StdFixture, RequestsArePrunedToTheVisibleRange) {
  {
    IdeUtil::ScopedRecursiveLock hold(proxy.Mutex());
    host.SetVisible(0, 40);
    for (u64 row = 0; row <= 40; row += 10) Draw(proxy, row);
    host.SetVisible(1000, 1040);
    Draw(proxy, 1010);
    Draw(proxy, 1039);
    EXPECT_EQ(proxy.QueuedRequests(), (std::vector<u64>{1010, 1039}));
  }
  WaitIdle(proxy);
  auto fetched = model->Fetched();
  for (u64 row : fetched) EXPECT_GE(row, 1000u) << "a row that scrolled out of view was fetched";
}

TEST_F(StdFixture, IdleIsFalseWhileTheWorkerIsInsideAFetch) {
  model->SetOpen(false);
  Draw(proxy, 3);
  model->WaitInside();
  EXPECT_TRUE(proxy.QueuedRequests().empty());
  EXPECT_FALSE(proxy.Idle());
  EXPECT_FALSE(proxy.HostIsUpToDate());
  model->SetOpen(true);
  WaitIdle(proxy);
  EXPECT_TRUE(proxy.HostIsUpToDate());
}

TEST_F(StdFixture, NothingIsRequestedUntilTheHostAcknowledges) {
  model->Notify(KfListModelListener::Redraw);
  Drawn drawn = Draw(proxy, 2);
  EXPECT_TRUE(drawn.pending);
  EXPECT_TRUE(proxy.QueuedRequests().empty());
  WaitIdle(proxy);
  EXPECT_TRUE(model->Fetched().empty());
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  Draw(proxy, 2);
  WaitIdle(proxy);
  EXPECT_EQ(model->Fetched(), (std::vector<u64>{2}));
}

TEST_F(StdFixture, DetachWaitsForTheWorkerAndSetProviderStartsANewOne) {
  model->SetOpen(false);
  Draw(proxy, 1);
  model->WaitInside();
  std::thread opener([this] {
    // Detach must wait for the fetch under way; open the gate from elsewhere.
    while (proxy.WorkerRunning() && !proxy.Idle()) {
      model->SetOpen(true);
      std::this_thread::yield();
    }
  });
  proxy.Detach();
  opener.join();
  EXPECT_FALSE(proxy.WorkerRunning());
  EXPECT_TRUE(proxy.Detached());
  EXPECT_EQ(model->Fetched(), (std::vector<u64>{1}));

  auto next = std::make_shared<GatedModel>();
  proxy.SetProvider(next);
  EXPECT_TRUE(proxy.WorkerRunning());
  EXPECT_FALSE(proxy.Detached());
  Draw(proxy, 8);
  WaitIdle(proxy);
  EXPECT_EQ(next->Fetched(), (std::vector<u64>{8}));
}

TEST_F(StdFixture, RowChangeMarksOnlyThatRowDirty) {
  host.SetVisible(0, 9);
  for (u64 row = 0; row < 10; ++row) Draw(proxy, row);
  WaitIdle(proxy);
  model->Notify(KfListModelListener::RowChanged, 7);
  EXPECT_EQ(proxy.PendingChange(), KfListModelListener::RowChanged);
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  EXPECT_EQ(proxy.PendingChange(), 0);
  {
    IdeUtil::ScopedRecursiveLock hold(proxy.Mutex());
    for (u64 row = 0; row < 10; ++row) EXPECT_EQ(Draw(proxy, row).pending, row == 7) << "row " << row;
  }
}

TEST(StdProxy, TableModelChangesReachTheHostInOrder) {
  auto model = std::make_shared<KfTableListModel>(Columns({"Name", "Value"}));
  model->SetRows(NumberedRows(20));
  model->SetHelpTag("Registers");
  RecordingListener host;
  KfStdListWindowProxy proxy;
  proxy.SetListener(&host);
  proxy.SetProvider(model);
  proxy.Attach();
  std::string tag;
  EXPECT_TRUE(proxy.GetHelpTag(&tag));
  EXPECT_EQ(tag, "Registers");

  model->AppendRow({"new", "1"});
  EXPECT_EQ(proxy.NumberOfRows(), 20u) << "the count changes at the acknowledgement";
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  EXPECT_EQ(proxy.NumberOfRows(), 21u);

  proxy.Click(4, 0, 0, 0);
  EXPECT_EQ(proxy.PendingChange(), KfListModelListener::SelectionChanged);
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  EXPECT_EQ(proxy.CurrentSelection().caretRow, 4u);

  model->SetColumns(Columns({"Only"}));
  EXPECT_EQ(host.Last().kind, ListWindowProxyListener::MessageRelayout);
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  std::vector<KfListModel::Column> columns;
  EXPECT_EQ(proxy.GetColumnInfo(&columns), 1u);
  Draw(proxy, 0);
  WaitIdle(proxy);
  EXPECT_EQ(Draw(proxy, 0).cells, (std::vector<std::string>{"row0"}));

  model->SetBlocked(true);
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  Drawn blocked = Draw(proxy, 0);
  EXPECT_TRUE(blocked.pending) << "a blocked model's rows are marked";
  EXPECT_TRUE(proxy.QueuedRequests().empty());
  proxy.Detach();
}

}  // namespace
