#include <gtest/gtest.h>

#include <filesystem>

#include "listwindow_test_util.h"
#include "support/files.h"
#include "support/temp_path.h"

namespace {

using namespace ListWindowTest;
using Kf::ListWindow::ChunkInfo;
using Kf::ListWindow::IListModelFactory;
using Kf::ListWindow::KfTextFileListModel;
using Kf::ListWindow::SlidingModelProxy;

// A scratch file that is removed at the end of the test.
struct TempFile {
  explicit TempFile(const std::string& content) { Append(content); }
  ~TempFile() { std::filesystem::remove(path.Native()); }
  void Append(const std::string& content) { Kf::Testing::WriteFile(path, content, /*append=*/true); }
  const GePath path = GePath::FromNative(Kf::Testing::UniqueTempPath("orvane_listwindow"));
};

std::string Lines(int from, int to) {
  std::string text;
  for (int i = from; i < to; ++i) text += "line " + std::to_string(i) + "\n";
  return text;
}

std::string Text(KfTextFileListModel& model, u64 row) {
  auto cells = CellsOf(model, row);
  return cells.size() > 1 ? cells[1] : "<none>";
}

TEST(TextFileModel, NavigatesBeginEndAndByFraction) {
  TempFile file(Lines(0, 1000));
  KfTextFileListModel model(file.path, 50);
  ASSERT_TRUE(model.IsOpen());
  ChunkInfo chunk;
  model.GetChunk(&chunk);
  EXPECT_EQ(chunk.rows, 50u);
  EXPECT_TRUE(chunk.atStart);
  EXPECT_FALSE(chunk.atEnd);
  EXPECT_EQ(Text(model, 0), "line 0");

  u64 row = 0;
  model.NavigateTo("END", 30, &row, &chunk);
  EXPECT_EQ(chunk.rows, 30u);
  EXPECT_EQ(row, 29u);
  EXPECT_EQ(Text(model, row), "line 999");
  EXPECT_TRUE(chunk.atEnd);
  EXPECT_DOUBLE_EQ(chunk.fractionAfter, 0.0);

  model.NavigateTo(0.5, &row, &chunk);
  EXPECT_EQ(row, 0u);
  // Lines 0..99 are 7..8 bytes: byte size/2 lies in a line near 520.
  const std::string middle = Text(model, 0);
  EXPECT_NEAR(std::stoi(middle.substr(5)), 520, 20);
  EXPECT_NEAR(chunk.fractionBefore, 0.5, 0.01);

  model.NavigateTo("6", 10, &row, &chunk);  // byte 6 is the terminator of "line 0\n"
  EXPECT_EQ(Text(model, row), "line 0");
  model.NavigateTo("not a number", 10, &row, &chunk);
  EXPECT_EQ(Text(model, 0), "line 0") << "an unknown position leaves the chunk";
}

TEST(TextFileModel, GrowsBeforeAndAfterAndSeesAppendedLines) {
  TempFile file(Lines(0, 100));
  KfTextFileListModel model(file.path, 10);
  u64 row = 0;
  ChunkInfo chunk;
  model.NavigateTo(0.5, &row, &chunk);
  const std::string first = Text(model, 0);
  EXPECT_EQ(model.AddBefore(5, 0, &chunk), 5u);
  EXPECT_EQ(chunk.rows, 15u);
  EXPECT_EQ(Text(model, 5), first);
  EXPECT_EQ(model.AddAfter(5, 5, &chunk), 5u);
  EXPECT_EQ(chunk.rows, 15u) << "five dropped at the front";
  EXPECT_EQ(Text(model, 0), first);

  model.NavigateTo("END", 10, &row, &chunk);
  EXPECT_EQ(model.AddAfter(5, 0, &chunk), 0u);
  file.Append("partial");
  EXPECT_TRUE(model.CheckGrowth());
  EXPECT_EQ(model.AddAfter(5, 0, &chunk), 1u);
  EXPECT_EQ(Text(model, chunk.rows - 1), "partial");
  file.Append(" line\r\nnext\n");
  EXPECT_EQ(model.AddAfter(5, 0, &chunk), 1u) << "the unterminated line is re-read, one new line follows";
  EXPECT_EQ(Text(model, chunk.rows - 2), "partial line");
  EXPECT_EQ(Text(model, chunk.rows - 1), "next");
}

TEST(TextFileModel, ReadsAcrossBlocksAndOddFiles) {
  std::string longLine(200000, 'x');
  TempFile file("a\n" + longLine + "\n\nz");
  KfTextFileListModel model(file.path, 10);
  EXPECT_EQ(Text(model, 0), "a");
  EXPECT_EQ(Text(model, 1).size(), longLine.size());
  EXPECT_EQ(Text(model, 2), "");
  EXPECT_EQ(Text(model, 3), "z");
  u64 row = 0;
  ChunkInfo chunk;
  model.NavigateTo("END", 3, &row, &chunk);
  EXPECT_EQ(chunk.rows, 3u);
  EXPECT_EQ(Text(model, 0).size(), longLine.size()) << "a line longer than a read block is found backwards";

  TempFile empty("");
  KfTextFileListModel none(empty.path, 10);
  none.GetChunk(&chunk);
  EXPECT_EQ(chunk.rows, 0u);
  EXPECT_TRUE(chunk.atStart && chunk.atEnd);

  KfTextFileListModel missing(GePath("/nonexistent/dir/file.log"), 10);
  EXPECT_FALSE(missing.IsOpen());
  EXPECT_NE(missing.Error().find("file.log"), std::string::npos);
}

TEST(TextFileModel, FileWithoutLineEndsIsShownInBoundedPieces) {
  const std::size_t mib = 1024 * 1024;
  TempFile file(std::string(3 * mib + 5, 'b'));
  KfTextFileListModel model(file.path, 10);
  ChunkInfo chunk;
  model.GetChunk(&chunk);
  EXPECT_EQ(chunk.rows, 4u);
  EXPECT_EQ(Text(model, 0).size(), mib);
  EXPECT_EQ(Text(model, 3).size(), 5u);
  u64 row = 0;
  model.NavigateTo("END", 1, &row, &chunk);
  EXPECT_EQ(chunk.rows, 1u);
  EXPECT_EQ(Text(model, row).size(), mib);
  EXPECT_LE(model.ChunkBytes(), mib);
  EXPECT_EQ(model.AddBefore(1, 0, &chunk), 1u);
  model.NavigateTo(0.5, &row, &chunk);
  EXPECT_LE(model.ChunkBytes(), chunk.rows * mib) << "never more than one piece per row";
}

TEST(TextFileModel, WorksThroughTheSlidingProxy) {
  TempFile file(Lines(0, 5000));
  auto model = std::make_shared<KfTextFileListModel>(file.path, 60);
  RecordingListener host;
  SlidingModelProxy proxy;
  proxy.SetListener(&host);
  proxy.SetProvider(model);
  proxy.SetMinChunk(60);
  u64 row = 0;
  ChunkInfo chunk;
  proxy.NavigateTo(std::string("END"), &row, &chunk);
  EXPECT_EQ(CellsOf(proxy, row)[1], "line 4999");
  EXPECT_EQ(proxy.NumberOfRows(), 60u);
  EXPECT_EQ(proxy.AddBefore(30, &chunk), 30u);
  EXPECT_EQ(chunk.rows, 60u) << "the excess over the minimum chunk is dropped at the end";
  EXPECT_EQ(CellsOf(proxy, 0)[1], "line 4910");
}

TEST(TableModel, NotifiesEachKindOfChange) {
  struct Recorder : Kf::ListWindow::KfFlatListModelListener {
    void HandleNotification(const Note& note) override { notes.push_back(note); }
    bool Visible(u64*, u64*) override { return false; }
    std::vector<Note> notes;
  } recorder;
  Kf::ListWindow::KfTableListModel model(Columns({"Name", "Value"}));
  model.SetListener(&recorder);
  model.SetRows(NumberedRows(3));
  model.AppendRow({"extra"});
  EXPECT_TRUE(model.SetCell(1, 1, "x"));
  EXPECT_FALSE(model.SetCell(9, 0, "x"));
  EXPECT_FALSE(model.SetCell(0, 2, "x"));
  model.Click(2, 0, 0, 0);
  model.SetBlocked(true);
  model.SetColumns(Columns({"Only"}));
  using W = Kf::ListWindow::KfListModelListener;
  std::vector<W::What> kinds;
  for (const auto& note : recorder.notes) kinds.push_back(note.what);
  EXPECT_EQ(kinds, (std::vector<W::What>{W::AllRowsChanged, W::RowChanged, W::RowChanged, W::SelectionChanged,
                                         W::Block, W::PropertiesChanged}));
  ASSERT_EQ(recorder.notes.size(), 6u);
  EXPECT_EQ(recorder.notes[1].row, 3u);
  EXPECT_EQ(recorder.notes[2].row, 1u);
  EXPECT_EQ(recorder.notes[5].version, 6u);
  EXPECT_EQ(model.NumberOfRows(), 4u);
  model.SetListener(nullptr);
}

struct Factory : IListModelFactory {
  std::shared_ptr<KfListModel> Create(const std::string&) override {
    ++made;
    return std::make_shared<Kf::ListWindow::KfTableListModel>(Columns({"A"}));
  }
  int made = 0;
};

TEST(ListModelRegistry, LooksModelsUpByNameAndCreatesOnDemand) {
  Factory factory;
  Factory other;
  EXPECT_EQ(Kf::Gui::GetListModelFactory("Test.Registers"), nullptr);
  EXPECT_EQ(Kf::Gui::GetListModel("Test.Registers", true), nullptr);
  Kf::Gui::RegisterListModelFactory("Test.Registers", &factory);
  EXPECT_EQ(Kf::Gui::GetListModelFactory("Test.Registers"), &factory);
  EXPECT_EQ(Kf::Gui::FindListModel("Test.Registers"), nullptr);
  EXPECT_EQ(Kf::Gui::GetListModel("Test.Registers", false), nullptr);
  auto model = Kf::Gui::GetListModel("Test.Registers", true);
  ASSERT_NE(model, nullptr);
  EXPECT_EQ(Kf::Gui::GetListModel("Test.Registers", true), model);
  EXPECT_EQ(Kf::Gui::FindListModel("Test.Registers"), model);
  EXPECT_EQ(factory.made, 1);
  model.reset();
  EXPECT_EQ(Kf::Gui::FindListModel("Test.Registers"), nullptr) << "the registry does not keep models alive";

  Kf::Gui::RegisterListModelFactory("Test.Registers", &other);
  EXPECT_EQ(Kf::Gui::GetListModelFactory("Test.Registers"), &other) << "a second registration replaces the first";
  Kf::Gui::UnregisterListModelFactory("Test.Registers", &factory);
  EXPECT_EQ(Kf::Gui::GetListModelFactory("Test.Registers"), &other) << "only the registered one withdraws";
  Kf::Gui::UnregisterListModelFactory("Test.Registers", &other);
  EXPECT_EQ(Kf::Gui::GetListModelFactory("Test.Registers"), nullptr);
}

}  // namespace
