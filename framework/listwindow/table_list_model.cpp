// A universal list model over an in-memory table of texts.
#include "orvane/listwindow_models.h"

namespace Kf::ListWindow {

using u64 = std::uint64_t;

KfTableListModel::KfTableListModel(std::vector<Column> columns) : columns_(std::move(columns)) {}
KfTableListModel::~KfTableListModel() = default;

void KfTableListModel::Notify(KfListModelListener::What what, u64 row) {
  KfFlatListModelListener::Note note;
  {
    IdeUtil::ScopedLock lock(mutex_);
    note.version = ++version_;
  }
  note.what = what;
  note.row = row;
  note.value = note.version;
  listener_.Notify(note);
}

void KfTableListModel::SetColumns(std::vector<Column> columns) {
  {
    IdeUtil::ScopedLock lock(mutex_);
    columns_ = std::move(columns);
    for (auto& row : rows_) row.resize(columns_.size());
  }
  Notify(KfListModelListener::PropertiesChanged, 0);
}

void KfTableListModel::SetRows(std::vector<std::vector<std::string>> rows) {
  {
    IdeUtil::ScopedLock lock(mutex_);
    rows_ = std::move(rows);
    for (auto& row : rows_) row.resize(columns_.size());
    if (selected_ != ~u64{0} && selected_ >= rows_.size()) selected_ = ~u64{0};
  }
  Notify(KfListModelListener::AllRowsChanged, 0);
}

void KfTableListModel::AppendRow(std::vector<std::string> cells) {
  u64 row = 0;
  {
    IdeUtil::ScopedLock lock(mutex_);
    cells.resize(columns_.size());
    row = rows_.size();
    rows_.push_back(std::move(cells));
  }
  Notify(KfListModelListener::RowChanged, row);
}

bool KfTableListModel::SetCell(u64 row, int column, const std::string& text) {
  {
    IdeUtil::ScopedLock lock(mutex_);
    if (row >= rows_.size() || column < 0 || static_cast<std::size_t>(column) >= columns_.size()) return false;
    rows_[row][static_cast<std::size_t>(column)] = text;
  }
  Notify(KfListModelListener::RowChanged, row);
  return true;
}

void KfTableListModel::SetBlocked(bool blocked) {
  {
    IdeUtil::ScopedLock lock(mutex_);
    if (blocked_ == blocked) return;
    blocked_ = blocked;
  }
  Notify(blocked ? KfListModelListener::Block : KfListModelListener::Unblock, 0);
}

void KfTableListModel::SetHelpTag(std::string tag) {
  IdeUtil::ScopedLock lock(mutex_);
  helpTag_ = std::move(tag);
}

u64 KfTableListModel::Version() {
  IdeUtil::ScopedLock lock(mutex_);
  return version_;
}

u64 KfTableListModel::GetColumnInfo(std::vector<Column>* out) {
  IdeUtil::ScopedLock lock(mutex_);
  *out = columns_;
  return columns_.size();
}

u64 KfTableListModel::NumberOfRows() {
  IdeUtil::ScopedLock lock(mutex_);
  return rows_.size();
}

bool KfTableListModel::GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats,
                              TreeInfo* tree, bool* flag) {
  IdeUtil::ScopedLock lock(mutex_);
  if (row >= rows_.size()) return false;
  *cells = rows_[row];
  formats->clear();
  for (const Column& column : columns_) formats->push_back(column.format);
  *tree = TreeInfo();
  *flag = row == selected_;
  return true;
}

KfListModelTypes::SelType KfTableListModel::SelectionType() const { return SelSingle; }

bool KfTableListModel::IsInputBlocked() {
  IdeUtil::ScopedLock lock(mutex_);
  return blocked_;
}

bool KfTableListModel::GetHelpTag(std::string* tag) {
  IdeUtil::ScopedLock lock(mutex_);
  if (helpTag_.empty()) return false;
  *tag = helpTag_;
  return true;
}

void KfTableListModel::SetListener(KfFlatListModelListener* listener) { listener_.Set(listener); }

void KfTableListModel::AcknowledgeUpdate(u64 version) {
  IdeUtil::ScopedLock lock(mutex_);
  acknowledged_ = version;
}

void KfTableListModel::GetCurrentSelection(Selection* out) {
  IdeUtil::ScopedLock lock(mutex_);
  *out = Selection();
  if (selected_ != ~u64{0}) {
    out->ranges.push_back({selected_, selected_});
    out->caretRow = selected_;
  }
}

void KfTableListModel::GetSelection(std::vector<SelRange>* out) {
  IdeUtil::ScopedLock lock(mutex_);
  out->clear();
  if (selected_ != ~u64{0}) out->push_back({selected_, selected_});
}

void KfTableListModel::Click(u64 row, int, u64, unsigned int) {
  {
    IdeUtil::ScopedLock lock(mutex_);
    if (row >= rows_.size() || row == selected_) return;
    selected_ = row;
  }
  Notify(KfListModelListener::SelectionChanged, row);
}

}  // namespace Kf::ListWindow
