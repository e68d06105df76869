// A flat list model over a vector of rows.
#include "orvane/listwindow_models.h"

namespace Kf::ListWindow {

using u64 = std::uint64_t;

KfVectorFlatListModel::KfVectorFlatListModel(std::vector<Column> columns, std::vector<std::vector<std::string>> rows,
                                             int lineBreakColumn)
    : columns_(std::move(columns)), rows_(std::move(rows)), lineBreakColumn_(lineBreakColumn) {
  for (auto& row : rows_) row.resize(columns_.size());
}

KfVectorFlatListModel::~KfVectorFlatListModel() = default;

void KfVectorFlatListModel::SetRows(std::vector<std::vector<std::string>> rows) {
  KfFlatListModelListener::Note note;
  {
    IdeUtil::ScopedLock lock(mutex_);
    rows_ = std::move(rows);
    for (auto& row : rows_) row.resize(columns_.size());
    note.version = ++version_;
  }
  note.what = KfListModelListener::AllRowsChanged;
  listener_.Notify(note);
}

u64 KfVectorFlatListModel::RowFetches() {
  IdeUtil::ScopedLock lock(mutex_);
  return fetches_;
}

u64 KfVectorFlatListModel::GetColumnInfo(std::vector<Column>* out) {
  IdeUtil::ScopedLock lock(mutex_);
  *out = columns_;
  return columns_.size();
}

u64 KfVectorFlatListModel::NumberOfRows() {
  IdeUtil::ScopedLock lock(mutex_);
  return rows_.size();
}

int KfVectorFlatListModel::LineBreakColumn() { return lineBreakColumn_; }

bool KfVectorFlatListModel::GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats,
                                   TreeInfo* tree, bool* flag) {
  IdeUtil::ScopedLock lock(mutex_);
  ++fetches_;
  if (row >= rows_.size()) return false;
  *cells = rows_[row];
  formats->clear();
  for (const Column& column : columns_) formats->push_back(column.format);
  *tree = TreeInfo();
  *flag = row == selected_;
  return true;
}

void KfVectorFlatListModel::SetListener(KfFlatListModelListener* listener) { listener_.Set(listener); }

u64 KfVectorFlatListModel::SelectRow(u64 row) {
  IdeUtil::ScopedLock lock(mutex_);
  selected_ = row < rows_.size() ? row : ~u64{0};
  return selected_;
}

void KfVectorFlatListModel::GetSelection(std::vector<SelRange>* out) {
  IdeUtil::ScopedLock lock(mutex_);
  out->clear();
  if (selected_ != ~u64{0}) out->push_back({selected_, selected_});
}

void KfVectorFlatListModel::ExtendSelection(u64 row, bool) { SelectRow(row); }

}  // namespace Kf::ListWindow
