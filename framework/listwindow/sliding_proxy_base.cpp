// The sliding proxies' common part: chunk bookkeeping, attachment and the
// row-level user operations, forwarded to the model under the proxy lock and
// dropped (with a neutral answer) while the model is blocked.
#include "orvane/listwindow_proxy.h"

#include <algorithm>

namespace Kf::ListWindow {

using u64 = std::uint64_t;

void SlidingListWindowProxy::Attach() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_) {
    model_->Attach();
    model_->Show(true);
  }
  detached_ = false;
}

void SlidingListWindowProxy::Detach() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_) {
    model_->Show(false);
    model_->Detach();
  }
  detached_ = true;
}

u64 SlidingListWindowProxy::NumberOfRows() { return chunkRows_.load(); }

u64 SlidingProxyBase::ModelRow(u64 row) { return row; }

void SlidingProxyBase::SetChunk(const ChunkInfo& chunk) {
  chunk_ = chunk;
  chunkRows_ = chunk.rows;
}

bool SlidingProxyBase::BeginAcknowledgement(u64 serial) {
  acknowledgedSerial_ = serial;
  if (serial != updateSerial_ || !model_) return false;
  if (modelVersion_ != acknowledgedModelVersion_ && !inputBlocked_) {
    model_->AcknowledgeUpdate(modelVersion_);
    acknowledgedModelVersion_ = modelVersion_;
  }
  if (pendingChange_ == 4) {
    FetchProperties();
    UpdateDefaultRow();
  }
  return true;
}

ListWindowProxyListener::Message SlidingProxyBase::FoldNotification(const Note& note, bool* allRowsChanged) {
  *allRowsChanged = false;
  modelVersion_ = note.version;
  if (note.what == KfListModelListener::Block) inputBlocked_ = true;
  if (note.what == KfListModelListener::Unblock) inputBlocked_ = false;
  ListWindowProxyListener::Message message;
  message.kind = ListWindowProxyListener::MessageRedraw;
  message.serial = ++updateSerial_;
  switch (note.what) {
    case KfListModelListener::Redraw:
    case KfListModelListener::SelectionChanged:
    case KfListModelListener::RowChanged:
      pendingChange_ = std::max<std::int32_t>(pendingChange_, note.what);
      break;
    case KfListModelListener::AllRowsChanged:
      pendingChange_ = std::max(pendingChange_, 3);
      *allRowsChanged = true;
      break;
    case KfListModelListener::PropertiesChanged:
      pendingChange_ = std::max(pendingChange_, 4);
      if (!inputBlocked_) message.kind = ListWindowProxyListener::MessageRelayout;
      break;
    case KfListModelListener::Block:
      pendingChange_ = std::max(pendingChange_, 3);
      break;
    case KfListModelListener::Unblock:
      pendingChange_ = std::max(pendingChange_, 3);
      if (pendingChange_ == 4) message.kind = ListWindowProxyListener::MessageRelayout;
      break;
  }
  return message;
}

int SlidingProxyBase::PendingChange() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return pendingChange_;
}

// Forwards a row-level call under the lock, or answers `neutral` while blocked
// or without a model.
#define ORVANE_FORWARD_ROW_OP(neutral, call)                     \
  IdeUtil::ScopedRecursiveLock lock(mutex_);                     \
  if (!model_ || inputBlocked_) return neutral;                  \
  return model_->call

int SlidingProxyBase::GetEditableString(u64 row, int column, std::string* text, TextRange* range) {
  ORVANE_FORWARD_ROW_OP(-1, GetEditableString(ModelRow(row), column, text, range));
}
bool SlidingProxyBase::SetValue(u64 row, int column, const std::string& value) {
  ORVANE_FORWARD_ROW_OP(false, SetValue(ModelRow(row), column, value));
}
void SlidingProxyBase::GetSelection(std::vector<SelRange>* out) {
  ORVANE_FORWARD_ROW_OP(void(), GetSelection(out));
}
void SlidingProxyBase::ExtendSelection(KeyNavOperation op, int count) {
  ORVANE_FORWARD_ROW_OP(void(), ExtendSelection(op, count));
}
void SlidingProxyBase::ExtendSelection(u64 row, bool extend) {
  ORVANE_FORWARD_ROW_OP(void(), ExtendSelection(ModelRow(row), extend));
}
void SlidingProxyBase::Click(u64 row, int column, u64 position, unsigned int flags) {
  ORVANE_FORWARD_ROW_OP(void(), Click(ModelRow(row), column, position, flags));
}
void SlidingProxyBase::DoubleClick(u64 row, int column, u64 position) {
  ORVANE_FORWARD_ROW_OP(void(), DoubleClick(ModelRow(row), column, position));
}
bool SlidingProxyBase::CanExpand(u64 row) { ORVANE_FORWARD_ROW_OP(false, CanExpand(ModelRow(row))); }
bool SlidingProxyBase::CanCollapse(u64 row) { ORVANE_FORWARD_ROW_OP(false, CanCollapse(ModelRow(row))); }
void SlidingProxyBase::ToggleExpansion(u64 row) { ORVANE_FORWARD_ROW_OP(void(), ToggleExpansion(ModelRow(row))); }
void SlidingProxyBase::ToggleMoreOrLess(u64 row) { ORVANE_FORWARD_ROW_OP(void(), ToggleMoreOrLess(ModelRow(row))); }
void SlidingProxyBase::ToggleCheckMark(u64 row) { ORVANE_FORWARD_ROW_OP(void(), ToggleCheckMark(ModelRow(row))); }
bool SlidingProxyBase::ToggleExpansionAtDblClick(u64 row, int column) {
  ORVANE_FORWARD_ROW_OP(false, ToggleExpansionAtDblClick(ModelRow(row), column));
}
bool SlidingProxyBase::GetContextMenu(u64 row, int column, std::vector<Kf::ListWindowUtils::MenuItem>* items) {
  ORVANE_FORWARD_ROW_OP(false, GetContextMenu(ModelRow(row), column, items));
}
void SlidingProxyBase::HandleContextMenu(int command) { ORVANE_FORWARD_ROW_OP(void(), HandleContextMenu(command)); }
ListWindowProxy::Target SlidingProxyBase::ToolTip(u64 row, int column, int position, std::string* text) {
  ORVANE_FORWARD_ROW_OP(KfListModel::TargetNone, ToolTip(ModelRow(row), column, position, text));
}
ListWindowProxy::Target SlidingProxyBase::DropTest(u64 row, int column) {
  ORVANE_FORWARD_ROW_OP(KfListModel::TargetNone, DropTest(ModelRow(row), column));
}
bool SlidingProxyBase::CanDrop(u64 row, int column, const std::string& data) {
  ORVANE_FORWARD_ROW_OP(false, CanDrop(ModelRow(row), column, data));
}
bool SlidingProxyBase::Drop(u64 row, int column, const std::string& data) {
  ORVANE_FORWARD_ROW_OP(false, Drop(ModelRow(row), column, data));
}
bool SlidingProxyBase::CanDropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) {
  ORVANE_FORWARD_ROW_OP(false, CanDropLocal(ModelRow(row), column, data, ModelRow(fromRow), fromColumn));
}
bool SlidingProxyBase::DropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) {
  ORVANE_FORWARD_ROW_OP(false, DropLocal(ModelRow(row), column, data, ModelRow(fromRow), fromColumn));
}
bool SlidingProxyBase::GetDrag(u64 row, int column, std::string* data) {
  ORVANE_FORWARD_ROW_OP(false, GetDrag(ModelRow(row), column, data));
}
bool SlidingProxyBase::SaveContent(KfContentStorage* storage) { ORVANE_FORWARD_ROW_OP(false, SaveContent(storage)); }
bool SlidingProxyBase::RestoreContent(KfContentStorage* storage) {
  ORVANE_FORWARD_ROW_OP(false, RestoreContent(storage));
}

#undef ORVANE_FORWARD_ROW_OP

bool SlidingProxyBase::Visible(u64* first, u64* last) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return listener_ ? listener_->Visible(first, last) : false;
}

u64 SlidingProxyBase::GetSel(std::string* text) {
  // Taken under the lock (cheap, recursive) so that a copy never tears while a
  // model thread's notification moves the selection.
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (text != &selectionText_) *text = selectionText_;
  return selectedRow_;
}

void SlidingProxyBase::SetMinChunk(int rows) {
  if (rows > 0) minChunk_ = static_cast<u64>(rows);
}

void SlidingProxyBase::GetChunkInfo(ChunkInfo* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  *out = chunk_;
}

}  // namespace Kf::ListWindow
