#include <gtest/gtest.h>

#include "listwindow_test_util.h"

namespace {

using namespace ListWindowTest;
using Kf::ListWindow::ChunkInfo;
using Kf::ListWindow::KfFlatListModelListener;
using Kf::ListWindow::KfListModelListener;
using Kf::ListWindow::KfSlidingListModel;
using Kf::ListWindow::ListWindowProxy;
using Kf::ListWindow::SlidingModelProxy;

// A sliding model whose chunk is rows [start, start + rows) of an endless
// list; it records what the proxy asks of it.
class FakeSlidingModel : public KfSlidingListModel {
 public:
  u64 GetColumnInfo(std::vector<Column>* out) override {
    *out = columns;
    return out->size();
  }
  bool GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo*, bool* flag) override {
    ++fetches;
    if (refuse || row >= rows) return false;
    cells->assign(columns.size(), "r" + std::to_string(start + row));
    formats->assign(columns.size(), Format());
    *flag = false;
    return true;
  }
  void SetListener(KfFlatListModelListener* l) override { listener = l; }
  bool IsInputBlocked() override { return blocked; }
  void AcknowledgeUpdate(u64 version) override { acknowledged.push_back(version); }
  void GetChunk(ChunkInfo* out) override {
    *out = ChunkInfo();
    out->rows = rows;
  }
  u64 AddBefore(u64 count, u64 maxDrop, ChunkInfo* out) override {
    addArgs = {count, maxDrop};
    rows += count;
    GetChunk(out);
    return count;
  }
  u64 AddAfter(u64 count, u64 maxDrop, ChunkInfo* out) override {
    addArgs = {count, maxDrop};
    GetChunk(out);
    return 0;
  }
  void NavigateTo(const std::string& text, u64 minChunk, u64* row, ChunkInfo* out) override {
    navigatedText = text;
    navigatedMinChunk = minChunk;
    *row = 3;
    GetChunk(out);
  }
  void NavigateTo(double, u64* row, ChunkInfo* out) override {
    *row = 0;
    GetChunk(out);
  }
  void Notify(KfListModelListener::What what, u64 value = 7) {
    KfFlatListModelListener::Note note;
    note.what = what;
    note.version = ++version;
    note.value = value;
    note.text = "note";
    listener->HandleNotification(note);
  }

  std::vector<Column> columns = Columns({"A", "B"});
  u64 rows = 500;
  u64 start = 0;
  u64 version = 0;
  bool blocked = false;
  bool refuse = false;
  int fetches = 0;
  std::pair<u64, u64> addArgs;
  std::string navigatedText;
  u64 navigatedMinChunk = 0;
  std::vector<u64> acknowledged;
  KfFlatListModelListener* listener = nullptr;
};

struct SlidingFixture : ::testing::Test {
  void SetUp() override {
    model = std::make_shared<FakeSlidingModel>();
    proxy.SetListener(&host);
    proxy.SetProvider(model);
  }
  std::vector<std::string> Cells(u64 row) { return CellsOf(proxy, row); }
  std::shared_ptr<FakeSlidingModel> model;
  RecordingListener host;
  SlidingModelProxy proxy;
};

TEST_F(SlidingFixture, ProvidesColumnsDefaultRowAndChunk) {
  EXPECT_EQ(model->listener, &proxy);
  EXPECT_EQ(proxy.NumberOfRows(), 0u) << "the chunk is read at the host's first acknowledgement";
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  EXPECT_EQ(proxy.NumberOfRows(), 500u);
  std::vector<KfListModel::Column> columns;
  EXPECT_EQ(proxy.GetColumnInfo(&columns), 2u);
  EXPECT_EQ(columns[1].title, "B");
  EXPECT_EQ(Cells(4), (std::vector<std::string>{"r4", "r4"}));
  EXPECT_EQ(Cells(4), (std::vector<std::string>{"r4", "r4"}));
  EXPECT_EQ(model->fetches, 1) << "the second draw comes from the cache";

  model->refuse = true;
  EXPECT_EQ(Cells(9), (std::vector<std::string>{"-", "-"}));
  EXPECT_EQ(Cells(9), (std::vector<std::string>{"-", "-"}));
  EXPECT_EQ(model->fetches, 3) << "a refused row is asked for again at the next draw";
}

TEST_F(SlidingFixture, RowsAreDefaultBetweenANotificationAndItsAcknowledgement) {
  EXPECT_EQ(Cells(1), (std::vector<std::string>{"r1", "r1"}));
  model->start = 1000;
  model->Notify(KfListModelListener::AllRowsChanged, 42);
  auto messages = host.Take();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].kind, ListWindowProxyListener::MessageRedraw);
  EXPECT_EQ(messages[0].serial, 1u);
  EXPECT_EQ(messages[0].value, 42u);
  EXPECT_EQ(messages[0].text, "note");
  EXPECT_EQ(Cells(1), (std::vector<std::string>{"-", "-"}));
  EXPECT_EQ(Cells(2), (std::vector<std::string>{"-", "-"}));

  model->Notify(KfListModelListener::Redraw);  // serial 2
  proxy.AcknowledgeUpdate(1);                   // older: only recorded
  EXPECT_EQ(proxy.AcknowledgedSerial(), 1u);
  EXPECT_TRUE(model->acknowledged.empty());
  EXPECT_EQ(Cells(1), (std::vector<std::string>{"-", "-"}));
  EXPECT_EQ(proxy.PendingChange(), 3);

  proxy.AcknowledgeUpdate(2);
  EXPECT_EQ(model->acknowledged, (std::vector<u64>{2}));
  EXPECT_EQ(proxy.PendingChange(), 0);
  EXPECT_EQ(Cells(1), (std::vector<std::string>{"r1001", "r1001"}));
}

TEST_F(SlidingFixture, MessageKindsFollowBlockingAndEscalation) {
  model->Notify(KfListModelListener::PropertiesChanged);
  EXPECT_EQ(host.Last().kind, ListWindowProxyListener::MessageRelayout);

  model->Notify(KfListModelListener::Block);
  EXPECT_TRUE(proxy.InputBlocked());
  model->Notify(KfListModelListener::PropertiesChanged);
  EXPECT_EQ(host.Last().kind, ListWindowProxyListener::MessageRedraw) << "blocked: no relayout yet";
  model->Notify(KfListModelListener::Unblock);
  EXPECT_FALSE(proxy.InputBlocked());
  EXPECT_EQ(host.Last().kind, ListWindowProxyListener::MessageRelayout) << "pending 4 is relaid out on unblock";

  model->columns = Columns({"A", "B", "C"});
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  std::vector<KfListModel::Column> columns;
  EXPECT_EQ(proxy.GetColumnInfo(&columns), 3u);
  EXPECT_EQ(Cells(0), (std::vector<std::string>{"r0", "r0", "r0"}));
}

TEST_F(SlidingFixture, UnblockWithoutPropertyChangeIsARedraw) {
  model->Notify(KfListModelListener::Block);
  model->Notify(KfListModelListener::Unblock);
  EXPECT_EQ(host.Last().kind, ListWindowProxyListener::MessageRedraw);
  EXPECT_EQ(proxy.PendingChange(), 3);
}

TEST_F(SlidingFixture, AddBeforeLetsTheModelDropTheExcessOverMinChunk) {
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());  // reads the chunk of 500 rows
  proxy.SetMinChunk(200);
  ChunkInfo out;
  EXPECT_EQ(proxy.AddBefore(100, &out), 100u);
  EXPECT_EQ(model->addArgs, (std::pair<u64, u64>{100, 400}));
  EXPECT_EQ(out.rows, 600u);
  EXPECT_EQ(proxy.NumberOfRows(), 600u);

  model->rows = 150;
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());  // re-reads the chunk
  proxy.AddAfter(100, &out);
  EXPECT_EQ(model->addArgs, (std::pair<u64, u64>{100, 100}));

  proxy.SetMinChunk(0);
  proxy.SetMinChunk(-5);
  EXPECT_EQ(proxy.MinChunk(), 200u);
}

TEST_F(SlidingFixture, BlockedProxyIgnoresChunkMovesButReportsTheChunk) {
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  model->Notify(KfListModelListener::Block);
  ChunkInfo out;
  out.rows = 12345;
  EXPECT_EQ(proxy.AddBefore(10, &out), 0u);
  EXPECT_EQ(out.rows, 500u);
  ChunkInfo untouched;
  untouched.rows = 77;
  u64 row = 0;
  proxy.NavigateTo(std::string("END"), &row, &untouched);
  EXPECT_EQ(untouched.rows, 77u);
  EXPECT_TRUE(model->navigatedText.empty());
}

TEST_F(SlidingFixture, NavigateByTextPassesMinChunkAndResetsTheCache) {
  Cells(5);
  proxy.SetMinChunk(64);
  model->rows = 64;
  model->start = 9000;
  u64 row = 0;
  ChunkInfo out;
  proxy.NavigateTo(std::string("END"), &row, &out);
  EXPECT_EQ(model->navigatedText, "END");
  EXPECT_EQ(model->navigatedMinChunk, 64u);
  EXPECT_EQ(row, 3u);
  EXPECT_EQ(out.rows, 64u);
  EXPECT_EQ(Cells(5), (std::vector<std::string>{"r9005", "r9005"}));
}

TEST_F(SlidingFixture, SetSelAdvancesTheSerial) {
  const u64 before = proxy.UpdateSerial();
  proxy.SetSel(12);
  EXPECT_EQ(proxy.UpdateSerial(), before + 1);
  EXPECT_EQ(host.Last().value, 12u);
  std::string text;
  EXPECT_EQ(proxy.GetSel(&text), 12u);
}

// A proxy with access to the protected helpers.
struct OpenProxy : SlidingModelProxy {
  using ListWindowProxy::VerifyRowData;
};

TEST(ListWindowProxyBase, MaybeEscalateKeepsTheFirstOnTies) {
  using W = KfListModelListener;
  EXPECT_EQ(ListWindowProxy::MaybeEscalate(W::Block, W::Redraw), W::Block);
  EXPECT_EQ(ListWindowProxy::MaybeEscalate(W::Redraw, W::Block), W::Redraw);
  for (int w = 0; w <= 6; ++w)
    EXPECT_EQ(ListWindowProxy::MaybeEscalate(W::PropertiesChanged, static_cast<W::What>(w)), W::PropertiesChanged);
  EXPECT_EQ(ListWindowProxy::MaybeEscalate(W::Redraw, W::RowChanged), W::RowChanged);
  EXPECT_EQ(ListWindowProxy::MaybeEscalate(static_cast<W::What>(99), W::Unblock), W::Unblock)
      << "a value outside the table ranks lowest";
}

TEST(ListWindowProxyBase, VerifyRowDataAllowsOneExtraRowFormat) {
  OpenProxy proxy;
  proxy.SetProvider(std::make_shared<FakeSlidingModel>());
  ListWindowProxy::RowData row;
  row.cells = {"a", "b"};
  row.formats.resize(2);
  EXPECT_TRUE(proxy.VerifyRowData(row));
  row.formats.resize(3);
  EXPECT_TRUE(proxy.VerifyRowData(row));
  row.formats.resize(4);
  EXPECT_FALSE(proxy.VerifyRowData(row));
  row.formats.resize(2);
  row.cells.pop_back();
  EXPECT_FALSE(proxy.VerifyRowData(row));
}

TEST(ListWindowProxyBase, FreshProxyStateAndSelfCopy) {
  SlidingModelProxy proxy;
  KfListModel::ListSpec spec;
  spec.showHeader = false;
  proxy.GetListSpec(&spec);
  EXPECT_FALSE(spec.isTree);
  EXPECT_TRUE(spec.showHeader);
  EXPECT_TRUE(spec.resizableColumns);
  EXPECT_EQ(proxy.SelectionType(), KfListModel::SelNone);
  EXPECT_TRUE(proxy.Detached());
  EXPECT_TRUE(proxy.Idle());
  EXPECT_TRUE(proxy.GetStringCmds().empty());
  EXPECT_FALSE(proxy.ExecStringCmd("anything", KfPropertyTree()));
}

struct SelfCopyProxy : SlidingModelProxy {
  u64 CopyOwnColumns() { return GetColumnInfo(&columns_); }
};

TEST(ListWindowProxyBase, GetColumnInfoIntoItsOwnVectorKeepsIt) {
  SelfCopyProxy proxy;
  proxy.SetProvider(std::make_shared<FakeSlidingModel>());
  EXPECT_EQ(proxy.CopyOwnColumns(), 2u);
  std::vector<KfListModel::Column> columns;
  proxy.GetColumnInfo(&columns);
  EXPECT_EQ(columns.size(), 2u);
}

TEST_F(SlidingFixture, HostIsUpToDateFollowsSerialsAndExpectation) {
  EXPECT_TRUE(proxy.HostIsUpToDate());
  proxy.HostExpectsUpdate(true);
  EXPECT_FALSE(proxy.HostIsUpToDate());
  model->Notify(KfListModelListener::Redraw);
  EXPECT_FALSE(proxy.HostIsUpToDate()) << "announced but not acknowledged";
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  EXPECT_TRUE(proxy.HostIsUpToDate());
  model->Notify(KfListModelListener::Block);
  proxy.AcknowledgeUpdate(proxy.UpdateSerial());
  EXPECT_FALSE(proxy.HostIsUpToDate()) << "a blocked model is never up to date";
}

TEST_F(SlidingFixture, InputIsDroppedWhileBlocked) {
  struct CountingModel : FakeSlidingModel {
    void ColumnClick(int) override { ++clicks; }
    int clicks = 0;
  };
  auto counting = std::make_shared<CountingModel>();
  proxy.SetProvider(counting);
  proxy.ColumnClick(1);
  counting->Notify(KfListModelListener::Block);
  proxy.ColumnClick(1);
  EXPECT_EQ(counting->clicks, 1);
}

}  // namespace
