// The row cache of a list window proxy: a bounded, sliding run of row slots.
#include <algorithm>

#include "orvane/listwindow_proxy.h"

namespace Kf::ListWindow {

using Cache = ListWindowProxy::Cache;
using u64 = std::uint64_t;

Cache::Cache() = default;
Cache::~Cache() = default;

void Cache::SyncSize() { size_.store(rows_.size(), std::memory_order_relaxed); }

bool Cache::GetRow(u64 row, RowData* out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (row >= firstRow_ && row - firstRow_ < rows_.size()) {
    const std::shared_ptr<Entry>& entry = rows_[row - firstRow_];
    if (entry) {
      *out = entry->data;
      return !entry->dirty;
    }
  }
  *out = defaultRowData_;
  return false;
}

void Cache::Update(u64 row, const RowData& data) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  EnsureInCache(row, 1);
  auto entry = std::make_shared<Entry>();
  entry->data = data;
  rows_[row - firstRow_] = std::move(entry);
}

void Cache::ShiftDownRows(u64 row, u64 count) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  u64 idx = row - firstRow_;  // wraps for rows before the run, which then counts as "beyond"
  u64 size = rows_.size();
  if (idx > size) return;
  if (size + count > kMaxSlots) {
    if (row < firstRow_) {
      Clear();
      return;
    }
    u64 keep = std::max(size / 2, kMinKeptAbove);
    u64 before = std::min(keep, idx);
    u64 after = 0;
    if (before + count <= kMaxSlots) {
      after = std::min(kMaxSlots - before - count, size - idx);
    } else {
      count = kMaxSlots - before;
    }
    u64 dropFront = idx - before;
    rows_.erase(rows_.begin(), rows_.begin() + static_cast<std::ptrdiff_t>(dropFront));
    firstRow_ += dropFront;
    rows_.resize(before + after);
    Trace("shift down reshaped");
  }
  rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(row - firstRow_), count, nullptr);
  SyncSize();
}

void Cache::ShiftUpRows(u64 row, u64 count) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  u64 idx = row - firstRow_;
  if (idx >= rows_.size()) return;
  u64 erase = std::min(count, rows_.size() - idx);
  auto from = rows_.begin() + static_cast<std::ptrdiff_t>(idx);
  rows_.erase(from, from + static_cast<std::ptrdiff_t>(erase));
  SyncSize();
}

void Cache::SetDirty(u64 row) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (row >= firstRow_ && row - firstRow_ < rows_.size()) {
    if (auto& entry = rows_[row - firstRow_]) entry->dirty = true;
  }
}

void Cache::SetDirty() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  for (auto& entry : rows_) {
    if (entry) entry->dirty = true;
  }
}

void Cache::Clear() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  rows_.clear();
  firstRow_ = 0;
  SyncSize();
}

void Cache::SetDefaultRowData(const RowData& data) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  defaultRowData_ = data;
}

void Cache::EnsureInCache(u64 row, u64 count) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  const u64 limit = std::max(count, kMaxSlots);
  const u64 size = rows_.size();
  if (row < firstRow_) {
    const u64 gap = firstRow_ - row;
    if (gap > limit) {
      Clear();
      firstRow_ = row;
      rows_.resize(count);
    } else {
      if (size + gap > limit) rows_.resize(limit - gap);
      rows_.insert(rows_.begin(), gap, nullptr);
      firstRow_ = row;
    }
    SyncSize();
    return;
  }
  const u64 end = firstRow_ + size;
  const u64 want = row + count;
  if (end >= want) return;
  if (end + limit < want) {
    Clear();
    rows_.resize(count);
    firstRow_ = row;
  } else if (firstRow_ + limit < want) {
    // Keep the last `limit` slots of the grown run, which ends at `want`.
    const u64 newFirst = want - limit;
    const u64 drop = std::min<u64>(newFirst - firstRow_, rows_.size());
    rows_.erase(rows_.begin(), rows_.begin() + static_cast<std::ptrdiff_t>(drop));
    firstRow_ = newFirst;
    rows_.resize(limit);
  } else if (rows_.size() != row - firstRow_ + count) {
    rows_.resize(row - firstRow_ + count);
  }
  SyncSize();
}

u64 Cache::NumberOfRows() const { return size_.load(std::memory_order_relaxed); }

u64 Cache::FirstRow() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return firstRow_;
}

bool Cache::IsFilled(u64 row) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return row >= firstRow_ && row - firstRow_ < rows_.size() && rows_[row - firstRow_] != nullptr;
}

void Cache::Trace(const std::string&) {}

}  // namespace Kf::ListWindow
