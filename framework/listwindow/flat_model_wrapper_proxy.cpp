// The flat wrapper: shows a finite flat model as a chunk of window rows, one
// per display line of each model row's line-break column.
#include <algorithm>
#include <string>

#include "core/diagnostics.h"
#include "orvane/listwindow_proxy.h"

namespace Kf::ListWindow {

using u64 = std::uint64_t;
using Message = ListWindowProxyListener::Message;

namespace {

// A blocked model's rows: the text colour is greyed and the flag set.
void MarkBlocked(std::vector<KfListModel::Format>* formats) {
  for (auto& format : *formats) {
    format.flags |= KfListModel::FormatBlocked;
    const Kf::XColor base = format.text.IsValid() ? format.text : Kf::XColor{0, 0, 0, 1};
    format.text = Kf::XColor{static_cast<std::uint8_t>((base.red + 0x80u) / 2),
                             static_cast<std::uint8_t>((base.green + 0x80u) / 2),
                             static_cast<std::uint8_t>((base.blue + 0x80u) / 2), 1};
  }
}

}  // namespace

FlatModelWrapperProxy::FlatModelWrapperProxy() : windowRows_(std::make_unique<WindowRows>()) {}

FlatModelWrapperProxy::~FlatModelWrapperProxy() { WithdrawFromModel(); }

void FlatModelWrapperProxy::SetProvider(std::shared_ptr<KfListModel> model) {
  WithdrawFromModel(model);
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  ListWindowProxy::SetProvider(std::move(model));
  flatModel_ = std::dynamic_pointer_cast<KfFlatListModel>(model_);
  FetchProperties();
  UpdateDefaultRow();
  windowRows_ = std::make_unique<WindowRows>();
  cache_.Clear();
  SetChunk(ChunkInfo());
  if (model_) model_->SetListener(this);
}

void FlatModelWrapperProxy::HandleNotification(const Note& note) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  bool allRowsChanged;
  Message message = FoldNotification(note, &allRowsChanged);
  message.value = kAllOnes;
  if (note.value != kAllOnes) message.text = std::to_string(note.value);
  if (allRowsChanged) rebuild_ = true;
  Tell(message);
}

void FlatModelWrapperProxy::AcknowledgeUpdate(u64 serial) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (!BeginAcknowledgement(serial)) return;
  UpdateSelection();
  pendingChange_ = 0;
}

void FlatModelWrapperProxy::GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats,
                                   TreeInfo* tree, bool* flag) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  RowData data;
  if (modelVersion_ != acknowledgedModelVersion_) {
    data = defaultRow_;
  } else {
    cache_.GetRow(row, &data);
  }
  if (inputBlocked_) MarkBlocked(&data.formats);
  *cells = std::move(data.cells);
  *formats = std::move(data.formats);
  *tree = std::move(data.treeInfo);
  *flag = data.flag;
}

u64 FlatModelWrapperProxy::ModelRow(u64 row) {
  const auto& rows = windowRows_->modelRows;
  return row < rows.size() ? rows[row] : kAllOnes;
}

void FlatModelWrapperProxy::UpdateSelection() {
  if (!model_) return;
  std::vector<SelRange> ranges;
  model_->GetSelection(&ranges);
  selectedRow_ = kAllOnes;
  selectionText_.clear();
  if (ranges.empty()) return;
  const u64 modelRow = ranges.front().first;
  // The selection text is the model row's number, which NavigateTo accepts.
  selectionText_ = std::to_string(modelRow);
  const auto& rows = windowRows_->modelRows;
  auto it = std::lower_bound(rows.begin(), rows.end(), modelRow);
  if (it != rows.end() && *it == modelRow) selectedRow_ = static_cast<u64>(it - rows.begin());
}

u64 FlatModelWrapperProxy::Scroll(ScrollOperation op, u64 top, u64 amount) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (!model_ || inputBlocked_) return top;
  return model_->Scroll(op, top, amount);
}

void FlatModelWrapperProxy::UpdateChunkInfo(ChunkInfo* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  const u64 total = flatModel_ ? flatModel_->NumberOfRows() : 0;
  const auto& rows = windowRows_->modelRows;
  ChunkInfo info;
  if (rows.empty() || total == 0) {
    info.rows = 0;
    info.fractionBefore = 0.0;
    info.fractionAfter = 0.0;
    info.atStart = true;
    info.atEnd = true;
  } else {
    const u64 first = rows.front();
    const u64 last = rows.back();
    const u64 after = total - 1 >= last ? total - 1 - last : 0;
    info.rows = rows.size();
    info.fractionBefore = static_cast<double>(first) / static_cast<double>(total);
    info.fractionAfter = static_cast<double>(after) / static_cast<double>(total);
    info.atStart = first == 0;
    info.atEnd = after == 0;
  }
  SetChunk(info);
  if (out) *out = info;
}

void FlatModelWrapperProxy::LineBreakRow(u64 modelRow, const RowData& row, std::vector<RowData>& out,
                                         std::vector<u64>& modelRows) {
  const int column = flatModel_ ? flatModel_->LineBreakColumn() : -1;
  std::vector<std::string> lines;
  const bool breakable = column >= 0 && static_cast<std::size_t>(column) < row.cells.size();
  if (breakable && !row.cells.empty()) {
    const std::size_t index = static_cast<std::size_t>(column);
    const Format format = index < columns_.size() ? columns_[index].format : Format();
    lines = listener_ ? listener_->BreakLines(row.cells[index], column, format)
                      : std::vector<std::string>{row.cells[index]};
  }
  if (lines.empty()) {
    out.push_back(row);
    modelRows.push_back(modelRow);
    return;
  }
  const std::size_t index = static_cast<std::size_t>(column);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    RowData windowRow;
    if (i == 0) {
      windowRow = row;
    } else {
      windowRow.cells.assign(row.cells.size(), std::string());
      windowRow.formats = row.formats;
      windowRow.values = row.values;
      windowRow.treeInfo = row.treeInfo;
    }
    windowRow.cells[index] = lines[i];
    out.push_back(std::move(windowRow));
    modelRows.push_back(modelRow);
  }
}

bool FlatModelWrapperProxy::GetWindowRowsForModelRow(u64 modelRow, std::vector<RowData>& out,
                                                     std::vector<u64>& modelRows) {
  RowData row;
  bool delivered = flatModel_ && flatModel_->GetRow(modelRow, &row.cells, &row.formats, &row.treeInfo, &row.flag);
  if (!delivered) {
    // The row keeps its place in the chunk, shown as the default row.
    out.push_back(defaultRow_);
    modelRows.push_back(modelRow);
    return false;
  }
  row.values.assign(columns_.size(), 0);
  LineBreakRow(modelRow, row, out, modelRows);
  return true;
}

u64 FlatModelWrapperProxy::AppendToChunk(u64 modelRow, u64 count) {
  const u64 total = flatModel_ ? flatModel_->NumberOfRows() : 0;
  auto& rows = *windowRows_;
  u64 next = rows.modelRows.empty() ? modelRow : modelRow + 1;
  u64 added = 0;
  while (added < count && next < total) {
    std::vector<RowData> data;
    std::vector<u64> numbers;
    GetWindowRowsForModelRow(next, data, numbers);
    for (std::size_t i = 0; i < data.size(); ++i) {
      cache_.Update(rows.modelRows.size(), data[i]);
      rows.modelRows.push_back(numbers[i]);
      rows.lineIndex.push_back(i);
    }
    added += data.size();
    ++next;
  }
  return added;
}

u64 FlatModelWrapperProxy::PrependToChunk(u64 modelRow, u64 count) {
  auto& rows = *windowRows_;
  u64 added = 0;
  u64 next = modelRow;
  while (added < count && next > 0) {
    --next;
    std::vector<RowData> data;
    std::vector<u64> numbers;
    GetWindowRowsForModelRow(next, data, numbers);
    cache_.ShiftDownRows(0, data.size());
    for (std::size_t i = 0; i < data.size(); ++i) cache_.Update(i, data[i]);
    std::vector<u64> lines(data.size());
    for (std::size_t i = 0; i < lines.size(); ++i) lines[i] = i;
    rows.modelRows.insert(rows.modelRows.begin(), numbers.begin(), numbers.end());
    rows.lineIndex.insert(rows.lineIndex.begin(), lines.begin(), lines.end());
    added += data.size();
  }
  return added;
}

u64 FlatModelWrapperProxy::AddBefore(u64 count, ChunkInfo* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (inputBlocked_ || !flatModel_) return 0;
  if (!windowRows_->modelRows.empty()) PrependToChunk(windowRows_->modelRows.front(), count);
  UpdateChunkInfo(out);
  UpdateSelection();
  return 0;
}

u64 FlatModelWrapperProxy::AddAfter(u64 count, ChunkInfo* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (inputBlocked_ || !flatModel_) return 0;
  if (!windowRows_->modelRows.empty()) AppendToChunk(windowRows_->modelRows.back(), count);
  UpdateChunkInfo(out);
  UpdateSelection();
  return 0;
}

void FlatModelWrapperProxy::NavigateTo(u64 modelRow, u64* windowRow, ChunkInfo* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  auto& rows = windowRows_->modelRows;
  auto it = std::lower_bound(rows.begin(), rows.end(), modelRow);
  if (it != rows.end() && *it == modelRow && !rebuild_) {
    *windowRow = static_cast<u64>(it - rows.begin());
    UpdateChunkInfo(out);
    return;
  }
  windowRows_ = std::make_unique<WindowRows>();
  cache_.Clear();
  const u64 minChunk = minChunk_;
  const u64 added = AppendToChunk(modelRow, minChunk);
  u64 before = minChunk > added ? minChunk - added : 0;
  before = std::max(before, *windowRow);
  *windowRow = PrependToChunk(modelRow, before);
  UpdateChunkInfo(out);
  UpdateSelection();
  rebuild_ = false;
}

void FlatModelWrapperProxy::NavigateTo(double fraction, u64* windowRow, ChunkInfo* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (inputBlocked_ || !flatModel_) return;
  const u64 total = flatModel_->NumberOfRows();
  const u64 target = total == 0 ? 0 : static_cast<u64>((static_cast<double>(total) - 1.0) * fraction);
  NavigateTo(target, windowRow, out);
}

void FlatModelWrapperProxy::NavigateTo(const std::string& text, u64* windowRow, ChunkInfo* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (inputBlocked_ || !flatModel_) return;
  const u64 total = flatModel_->NumberOfRows();
  u64 target = 0;
  if (text == "BEGIN") {
    target = 0;
  } else if (text.empty()) {
    if (!windowRows_->modelRows.empty()) {
      UpdateChunkInfo(out);
      return;
    }
  } else if (text == "END") {
    target = total == 0 ? 0 : total - 1;
  } else {
    target = std::stoull(text);
  }
  if (target < total || target == 0) NavigateTo(target, windowRow, out);
}

void FlatModelWrapperProxy::SetMinChunk(int rows) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (rows > 0) minChunk_ = static_cast<u64>(rows);
}

void FlatModelWrapperProxy::ColumnWidthChanged(int) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  const auto& rows = windowRows_->modelRows;
  if (rows.empty()) return;
  u64 first = 0;
  u64 last = 0;
  if (!listener_ || !listener_->Visible(&first, &last)) first = last = 0;
  const u64 middle = std::min<u64>(first / 2 + last / 2 + (first % 2 + last % 2) / 2, rows.size() - 1);
  const u64 modelRow = rows[middle];
  rebuild_ = true;
  Message message;
  message.kind = ListWindowProxyListener::MessageRedraw;
  message.serial = ++updateSerial_;
  message.value = kAllOnes;
  message.text = std::to_string(modelRow);
  Tell(message);
}

u64 FlatModelWrapperProxy::SetSel(u64 row) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_) model_->ExtendSelection(ModelRow(row), false);
  UpdateSelection();
  Message message;
  message.kind = ListWindowProxyListener::MessageRedraw;
  message.serial = ++updateSerial_;
  message.value = row;
  Tell(message);
  return selectedRow_;
}

int FlatModelWrapperProxy::KeyNavigate(KeyNavOperation op, int count, int, std::string* text) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  const u64 rows = windowRows_->modelRows.size();
  if (inputBlocked_ || rows == 0) return -1;
  const u64 step = static_cast<u64>(std::max(count, 1));
  u64 row = selectedRow_ == kAllOnes ? 0 : selectedRow_;
  switch (op) {
    case KfListModel::KeyNavUp:
    case KfListModel::KeyNavPageUp:
      row = row > step ? row - step : 0;
      break;
    case KfListModel::KeyNavDown:
    case KfListModel::KeyNavPageDown:
      row = std::min(row + step, rows - 1);
      break;
    case KfListModel::KeyNavHome:
      row = 0;
      break;
    case KfListModel::KeyNavEnd:
      row = rows - 1;
      break;
    default:
      break;
  }
  SetSel(row);
  *text = selectionText_;
  return static_cast<int>(std::min<u64>(row, 0x7FFFFFFF));
}

std::vector<u64> FlatModelWrapperProxy::ChunkModelRows() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return windowRows_->modelRows;
}

}  // namespace Kf::ListWindow
