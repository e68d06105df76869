// The proxy over a sliding model: the host sees only the model's current
// chunk, and the row cache is kept to exactly that chunk.
#include <algorithm>

#include "orvane/listwindow_proxy.h"

namespace Kf::ListWindow {

using u64 = std::uint64_t;
using Message = ListWindowProxyListener::Message;

SlidingModelProxy::SlidingModelProxy() = default;

SlidingModelProxy::~SlidingModelProxy() {
  WithdrawFromModel();
}

void SlidingModelProxy::SetProvider(std::shared_ptr<KfListModel> model) {
  WithdrawFromModel(model);
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  ListWindowProxy::SetProvider(std::move(model));
  slidingModel_ = std::dynamic_pointer_cast<KfSlidingListModel>(model_);
  FetchProperties();
  UpdateDefaultRow();
  // The chunk itself is read at the host's first acknowledgement.
  if (!inputBlocked_) ResetCacheToChunk();
  if (model_) model_->SetListener(this);
}

void SlidingModelProxy::ResetCacheToChunk() {
  cache_.Clear();
  cache_.EnsureInCache(0, chunk_.rows);
}

void SlidingModelProxy::UpdateSelection() {
  if (!slidingModel_) return;
  selectedRow_ = slidingModel_->GetSel(&selectionText_);
}

void SlidingModelProxy::HandleNotification(const Note& note) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  bool allRowsChanged;
  Message message = FoldNotification(note, &allRowsChanged);
  message.value = note.value;
  message.text = note.text;
  if (allRowsChanged) cache_.Clear();
  Tell(message);
}

void SlidingModelProxy::AcknowledgeUpdate(u64 serial) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (!BeginAcknowledgement(serial)) return;
  if (slidingModel_) {
    ChunkInfo chunk;
    slidingModel_->GetChunk(&chunk);
    SetChunk(chunk);
  }
  cache_.SetDirty();
  cache_.EnsureInCache(0, chunk_.rows);
  UpdateSelection();
  pendingChange_ = 0;
}

void SlidingModelProxy::GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats,
                               TreeInfo* tree, bool* flag) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  RowData data;
  if (modelVersion_ != acknowledgedModelVersion_) {
    data = defaultRow_;
  } else if (!cache_.GetRow(row, &data) && !inputBlocked_ && model_) {
    RowData fetched;
    if (model_->GetRow(row, &fetched.cells, &fetched.formats, &fetched.treeInfo, &fetched.flag)) {
      fetched.values.assign(columns_.size(), 0);
      cache_.Update(row, fetched);
      data = std::move(fetched);
    } else {
      data = defaultRow_;
    }
  }
  *cells = std::move(data.cells);
  *formats = std::move(data.formats);
  *tree = std::move(data.treeInfo);
  *flag = data.flag;
}

u64 SlidingModelProxy::Scroll(ScrollOperation op, u64 top, u64 amount) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (!model_ || inputBlocked_) return top;
  return model_->Scroll(op, top, amount);
}

u64 SlidingModelProxy::GrowChunk(u64 count, ChunkInfo* out,
                                 u64 (KfSlidingListModel::*grow)(u64, u64, ChunkInfo*)) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  u64 result = 0;
  if (!inputBlocked_ && slidingModel_) {
    const u64 minChunk = minChunk_;
    const u64 excess = chunk_.rows > minChunk ? chunk_.rows - minChunk : 0;
    ChunkInfo chunk = chunk_;
    result = (slidingModel_.get()->*grow)(count, count + excess, &chunk);
    SetChunk(chunk);
    ResetCacheToChunk();
    UpdateSelection();
  }
  *out = chunk_;
  return result;
}

u64 SlidingModelProxy::AddBefore(u64 count, ChunkInfo* out) {
  return GrowChunk(count, out, &KfSlidingListModel::AddBefore);
}

u64 SlidingModelProxy::AddAfter(u64 count, ChunkInfo* out) {
  return GrowChunk(count, out, &KfSlidingListModel::AddAfter);
}

void SlidingModelProxy::NavigateTo(const std::string& text, u64* row, ChunkInfo* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (inputBlocked_ || !slidingModel_) return;
  ChunkInfo chunk = chunk_;
  slidingModel_->NavigateTo(text, minChunk_.load(), row, &chunk);
  SetChunk(chunk);
  ResetCacheToChunk();
  UpdateSelection();
  *out = chunk_;
}

void SlidingModelProxy::NavigateTo(double fraction, u64* row, ChunkInfo* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (inputBlocked_ || !slidingModel_) return;
  ChunkInfo chunk = chunk_;
  slidingModel_->NavigateTo(fraction, row, &chunk);
  SetChunk(chunk);
  ResetCacheToChunk();
  UpdateSelection();
  *out = chunk_;
}

u64 SlidingModelProxy::SetSel(u64 row) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (slidingModel_) selectedRow_ = slidingModel_->SelectRow(row, &selectionText_);
  Message message;
  message.kind = ListWindowProxyListener::MessageRedraw;
  message.serial = ++updateSerial_;
  message.value = row;
  Tell(message);
  return selectedRow_;
}

int SlidingModelProxy::KeyNavigate(KeyNavOperation op, int count, int column, std::string* text) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (inputBlocked_ || !slidingModel_) return -1;
  return slidingModel_->KeyNavigate(op, count, column, text);
}

}  // namespace Kf::ListWindow
