// Ready-made list models that a feature can use as they are or start from.
//
//   KfTableListModel     a universal model over an in-memory table of texts
//                        (for KfStdListWindowProxy)
//   KfTextFileListModel  a sliding model over a text file of any size, one
//                        row per line, that reads only the lines around its
//                        chunk (for SlidingModelProxy)
//   KfVectorFlatListModel a flat model over a vector of rows with one
//                        line-break column (for FlatModelWrapperProxy)
//
//   auto log = std::make_shared<Kf::ListWindow::KfTextFileListModel>(GePath("/var/log/build.log"));
//   if (!log->IsOpen()) ...;   // log->Error() says why
//   Kf::ListWindow::SlidingModelProxy proxy;
//   proxy.SetListener(&hostListener);
//   proxy.SetProvider(log);
//   proxy.NavigateTo(std::string("END"), &row, &chunk);
//
// Threads: each model guards its data with its own mutex, so its mutating
// operations may be called from any thread. A model notifies its listener
// after releasing that mutex (the proxy takes its own lock inside the
// notification, and calls into the model with that lock held).
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "orvane/export.h"
#include "orvane/gepath.h"
#include "orvane/listwindow_model.h"
#include "orvane/locks.h"

namespace Kf::ListWindow {

// A finite table of texts. Every mutation notifies the listener: SetCell and
// AppendRow name the row (RowChanged), SetRows changes all rows, SetColumns
// changes the properties; Click selects a row (SelectionChanged).
class ORVANE_API KfTableListModel : public KfUniversalListModel {
 public:
  explicit KfTableListModel(std::vector<Column> columns);
  ~KfTableListModel() override;

  void SetColumns(std::vector<Column> columns);
  void SetRows(std::vector<std::vector<std::string>> rows);
  void AppendRow(std::vector<std::string> cells);
  // False when the row or column does not exist.
  [[nodiscard]] bool SetCell(u64 row, int column, const std::string& text);
  // Model rows are marked busy (Block) or usable again (Unblock).
  void SetBlocked(bool blocked);
  void SetHelpTag(std::string tag);
  u64 Version();

  u64 GetColumnInfo(std::vector<Column>* out) override;
  u64 NumberOfRows() override;
  bool GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo* tree,
              bool* flag) override;
  SelType SelectionType() const override;
  bool IsInputBlocked() override;
  bool GetHelpTag(std::string* tag) override;
  void SetListener(KfFlatListModelListener* listener) override;
  void AcknowledgeUpdate(u64 version) override;
  void GetCurrentSelection(Selection* out) override;
  void GetSelection(std::vector<SelRange>* out) override;
  void Click(u64 row, int column, u64 position, unsigned int flags) override;

 private:
  void Notify(KfListModelListener::What what, u64 row);

  mutable IdeUtil::Mutex mutex_;
  std::vector<Column> columns_;                 // guarded by mutex_
  std::vector<std::vector<std::string>> rows_;  // guarded by mutex_
  u64 version_ = 0;                             // guarded by mutex_
  u64 acknowledged_ = 0;                        // guarded by mutex_
  u64 selected_ = ~u64{0};                      // guarded by mutex_
  bool blocked_ = false;                        // guarded by mutex_
  std::string helpTag_;                         // guarded by mutex_
  KfModelListenerSlot listener_;
};

// One row per line of a text file, with the columns "Offset" (the line's
// byte offset) and "Text". The model holds a chunk of lines and finds more
// lines around it on demand, reading blocks of the file before or after the
// chunk; it never reads the whole file, so a file of any size opens at once.
//
// Navigation: "BEGIN", "END", or a decimal byte offset (the line holding that
// byte); by fraction, the line holding that fraction of the file's bytes. A
// file that grew is seen at the next AddAfter, NavigateTo or CheckGrowth.
// Lines end at "\n"; a "\r" before it is dropped; a last line without "\n"
// counts as a line. A line longer than 1 MiB is shown in pieces of 1 MiB
// (reached from above or below, the pieces may be cut at different places),
// so a file without line ends never makes the model hold more than that per
// row. Bytes are passed through as they are (the host renders invalid UTF-8
// as it sees fit).
class ORVANE_API KfTextFileListModel : public KfSlidingListModel {
 public:
  explicit KfTextFileListModel(const GePath& path, u64 initialChunk = 200);
  ~KfTextFileListModel() override;

  bool IsOpen() const;
  const std::string& Error() const;
  // Re-reads the file's size; true (and a Redraw note) when it grew.
  bool CheckGrowth();
  // Bytes currently read into the chunk (for memory checks).
  u64 ChunkBytes();

  u64 GetColumnInfo(std::vector<Column>* out) override;
  bool GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo* tree,
              bool* flag) override;
  void SetListener(KfFlatListModelListener* listener) override;
  void GetChunk(ChunkInfo* out) override;
  u64 GetSel(std::string* text) override;
  u64 SelectRow(u64 row, std::string* text) override;
  u64 AddBefore(u64 count, u64 maxDrop, ChunkInfo* out) override;
  u64 AddAfter(u64 count, u64 maxDrop, ChunkInfo* out) override;
  void NavigateTo(const std::string& text, u64 minChunk, u64* row, ChunkInfo* out) override;
  void NavigateTo(double fraction, u64* row, ChunkInfo* out) override;

 private:
  struct Line {
    u64 offset = 0;
    u64 end = 0;  // one past the line's last byte, terminator included
    std::string text;
  };
  std::vector<Line> ReadLinesAfter(u64 pos, u64 count);
  std::vector<Line> ReadLinesBefore(u64 pos, u64 count);
  u64 LineStartOf(u64 pos);
  bool ReadAt(u64 offset, u64 size, std::string* out);
  void RefreshSize();
  void MoveTo(u64 pos, u64 minChunk, u64* row);
  void Describe(ChunkInfo* out) const;

  mutable IdeUtil::Mutex mutex_;
  std::string error_;
  std::ifstream file_;             // guarded by mutex_
  u64 fileSize_ = 0;               // guarded by mutex_
  std::vector<Line> chunk_;        // guarded by mutex_
  u64 chunkBytes_ = 0;             // guarded by mutex_
  u64 initialChunk_;
  u64 selected_ = ~u64{0};         // guarded by mutex_
  u64 version_ = 0;                // guarded by mutex_
  KfModelListenerSlot listener_;
};

// A flat model over a vector of rows, for tests and small wrapped lists.
class ORVANE_API KfVectorFlatListModel : public KfFlatListModel {
 public:
  KfVectorFlatListModel(std::vector<Column> columns, std::vector<std::vector<std::string>> rows,
                        int lineBreakColumn);
  ~KfVectorFlatListModel() override;

  void SetRows(std::vector<std::vector<std::string>> rows);
  // How often GetRow was called (tests check that the proxy caches).
  u64 RowFetches();

  u64 GetColumnInfo(std::vector<Column>* out) override;
  u64 NumberOfRows() override;
  int LineBreakColumn() override;
  bool GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo* tree,
              bool* flag) override;
  void SetListener(KfFlatListModelListener* listener) override;
  // Selects `row` (all ones for none); returns the row selected.
  u64 SelectRow(u64 row);
  void GetSelection(std::vector<SelRange>* out) override;
  // Selects `row` (the flat wrapper's SetSel); `extend` is ignored: one row is selected at a time.
  void ExtendSelection(u64 row, bool extend) override;
  using KfListModelInput::ExtendSelection;

 private:
  IdeUtil::Mutex mutex_;
  std::vector<Column> columns_;                 // guarded by mutex_
  std::vector<std::vector<std::string>> rows_;  // guarded by mutex_
  int lineBreakColumn_;
  u64 version_ = 0;     // guarded by mutex_
  u64 fetches_ = 0;     // guarded by mutex_
  u64 selected_ = ~u64{0};  // guarded by mutex_
  KfModelListenerSlot listener_;
};

}  // namespace Kf::ListWindow
