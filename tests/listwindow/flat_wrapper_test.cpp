#include <gtest/gtest.h>

#include "listwindow_test_util.h"

namespace {

using namespace ListWindowTest;
using Kf::ListWindow::ChunkInfo;
using Kf::ListWindow::FlatModelWrapperProxy;
using Kf::ListWindow::KfListModelListener;
using Kf::ListWindow::KfVectorFlatListModel;

struct FlatFixture : ::testing::Test {
  void Use(std::vector<std::vector<std::string>> rows) {
    model = std::make_shared<KfVectorFlatListModel>(Columns({"Text", "Other"}), std::move(rows), 0);
    proxy.SetListener(&host);
    proxy.SetProvider(model);
  }
  std::vector<std::string> Cells(u64 row) { return CellsOf(proxy, row); }
  ChunkInfo Navigate(u64 modelRow, u64* windowRow) {
    ChunkInfo chunk;
    proxy.NavigateTo(modelRow, windowRow, &chunk);
    return chunk;
  }
  std::shared_ptr<KfVectorFlatListModel> model;
  RecordingListener host;
  FlatModelWrapperProxy proxy;
};

TEST_F(FlatFixture, EmptyModelYieldsAnEmptyChunkAtBothEnds) {
  Use({});
  ChunkInfo chunk;
  chunk.rows = 9;
  chunk.atStart = false;
  proxy.UpdateChunkInfo(&chunk);
  EXPECT_EQ(chunk, ChunkInfo());
  u64 row = 0;
  proxy.NavigateTo(std::string("END"), &row, &chunk);
  EXPECT_EQ(chunk.rows, 0u);
}

TEST_F(FlatFixture, ChunkFractionsCountModelRows) {
  Use(NumberedRows(100));
  proxy.SetMinChunk(100);
  u64 row = 0;
  ChunkInfo chunk = Navigate(0, &row);
  EXPECT_EQ(chunk.rows, 100u);
  EXPECT_DOUBLE_EQ(chunk.fractionBefore, 0.0);
  EXPECT_DOUBLE_EQ(chunk.fractionAfter, 0.0);
  EXPECT_TRUE(chunk.atStart && chunk.atEnd);

  proxy.SetMinChunk(10);
  proxy.ColumnWidthChanged(0);  // forces the next navigation to rebuild
  row = 0;
  chunk = Navigate(10, &row);
  EXPECT_EQ(proxy.ChunkModelRows().front(), 10u);
  EXPECT_EQ(proxy.ChunkModelRows().back(), 19u);
  EXPECT_DOUBLE_EQ(chunk.fractionBefore, 0.1);
  EXPECT_DOUBLE_EQ(chunk.fractionAfter, 0.8);
  EXPECT_FALSE(chunk.atStart || chunk.atEnd);
  EXPECT_EQ(row, 0u);
  EXPECT_EQ(Cells(0), (std::vector<std::string>{"row10", "100"}));
}

TEST_F(FlatFixture, NavigateByTextAndFraction) {
  Use(NumberedRows(500));
  proxy.SetMinChunk(20);
  u64 row = 0;
  ChunkInfo chunk;
  proxy.NavigateTo(std::string("END"), &row, &chunk);
  EXPECT_EQ(proxy.ChunkModelRows().back(), 499u);
  EXPECT_EQ(Cells(row), (std::vector<std::string>{"row499", "4990"}));
  EXPECT_EQ(proxy.ChunkModelRows().size(), 20u) << "rows above the end fill the minimum chunk";

  const auto before = proxy.ChunkModelRows();
  proxy.NavigateTo(std::string("500"), &row, &chunk);
  EXPECT_EQ(proxy.ChunkModelRows(), before) << "a row past the end is ignored";

  row = 0;
  proxy.NavigateTo(std::string("BEGIN"), &row, &chunk);
  EXPECT_EQ(proxy.ChunkModelRows().front(), 0u);
  EXPECT_EQ(row, 0u);
  EXPECT_TRUE(chunk.atStart);

  row = 0;
  proxy.NavigateTo(std::string(""), &row, &chunk);
  EXPECT_EQ(proxy.ChunkModelRows().front(), 0u) << "the empty text stays";

  row = 0;
  proxy.NavigateTo(0.5, &row, &chunk);
  EXPECT_EQ(Cells(row)[0], "row249") << "(500 - 1) * 0.5 truncates to 249";

  EXPECT_THROW(proxy.NavigateTo(std::string("twelve"), &row, &chunk), std::invalid_argument);
}

TEST_F(FlatFixture, BrokenRowsOccupyOneWindowRowPerLine) {
  Use({{"one", "a"}, {"two|lines|here", "b"}, {"three", "c"}});
  proxy.SetMinChunk(10);
  u64 row = 0;
  ChunkInfo chunk = Navigate(0, &row);
  EXPECT_EQ(chunk.rows, 5u);
  EXPECT_EQ(proxy.ChunkModelRows(), (std::vector<u64>{0, 1, 1, 1, 2}));
  EXPECT_EQ(Cells(1), (std::vector<std::string>{"two", "b"}));
  EXPECT_EQ(Cells(2), (std::vector<std::string>{"lines", ""}));
  EXPECT_EQ(Cells(3), (std::vector<std::string>{"here", ""}));
  EXPECT_EQ(Cells(4), (std::vector<std::string>{"three", "c"}));

  row = 0;
  Navigate(2, &row);
  EXPECT_EQ(row, 4u) << "a row inside the chunk is found without rebuilding";
  proxy.SetSel(3);
  std::string text;
  EXPECT_EQ(proxy.GetSel(&text), 1u) << "a continuation line selects its model row";
  EXPECT_EQ(text, "1");
}

TEST_F(FlatFixture, GrowingStopsAtTheEndsAndTakesWholeModelRows) {
  Use({{"a", ""}, {"b|b|b", ""}, {"c", ""}, {"d|d", ""}, {"e", ""}});
  proxy.SetMinChunk(1);
  u64 row = 0;
  Navigate(2, &row);
  EXPECT_EQ(proxy.ChunkModelRows(), (std::vector<u64>{2}));
  ChunkInfo chunk;
  proxy.AddAfter(1, &chunk);
  EXPECT_EQ(proxy.ChunkModelRows(), (std::vector<u64>{2, 3, 3})) << "an overshooting row is taken whole";
  proxy.AddBefore(2, &chunk);
  EXPECT_EQ(proxy.ChunkModelRows(), (std::vector<u64>{1, 1, 1, 2, 3, 3}));
  EXPECT_EQ(Cells(0)[0], "b");
  EXPECT_EQ(Cells(3)[0], "c");
  proxy.AddBefore(100, &chunk);
  proxy.AddAfter(100, &chunk);
  EXPECT_EQ(proxy.ChunkModelRows(), (std::vector<u64>{0, 1, 1, 1, 2, 3, 3, 4}));
  EXPECT_TRUE(chunk.atStart && chunk.atEnd);
  EXPECT_EQ(proxy.NumberOfRows(), 8u);
}

TEST_F(FlatFixture, ColumnWidthChangeAsksTheHostToNavigateToTheMiddleRow) {
  Use(NumberedRows(100));
  proxy.SetMinChunk(30);
  u64 row = 0;
  Navigate(40, &row);
  host.SetVisible(0, 10);
  const u64 serial = proxy.UpdateSerial();
  proxy.ColumnWidthChanged(0);
  auto message = host.Last();
  EXPECT_EQ(message.serial, serial + 1);
  EXPECT_EQ(message.value, FlatModelWrapperProxy::kAllOnes);
  EXPECT_EQ(message.text, std::to_string(proxy.ChunkModelRows()[5]));
  const u64 fetches = model->RowFetches();
  row = 0;
  Navigate(proxy.ChunkModelRows()[5], &row);
  EXPECT_GT(model->RowFetches(), fetches) << "the chunk is rebuilt although the row was in it";
}

TEST_F(FlatFixture, NotificationsCarryTheRowAsTextAndDefaultRowsUntilAcknowledged) {
  Use(NumberedRows(10));
  u64 row = 0;
  Navigate(0, &row);
  model->SetRows(NumberedRows(10, "new"));
  auto message = host.Last();
  EXPECT_EQ(message.value, FlatModelWrapperProxy::kAllOnes);
  EXPECT_EQ(message.text, "") << "a note without a row navigates nowhere";
  EXPECT_EQ(Cells(0), (std::vector<std::string>{"-", "-"}));
  proxy.AcknowledgeUpdate(message.serial);
  row = 0;
  Navigate(0, &row);
  EXPECT_EQ(Cells(0), (std::vector<std::string>{"new0", "0"})) << "the change rebuilt the chunk";
}

}  // namespace
