// Helpers shared by the list window tests: a recording host listener and
// small row builders.
#pragma once

#include <deque>
#include <mutex>
#include <string>
#include <vector>

#include "orvane/listwindow.h"

namespace ListWindowTest {

using Kf::ListWindow::KfListModel;
using Kf::ListWindow::ListWindowProxyListener;
using u64 = std::uint64_t;

// Records every message (from any thread), answers a settable visible range
// and breaks texts at '|' characters.
class RecordingListener : public ListWindowProxyListener {
 public:
  void HandleMessage(const Message& message) override {
    std::lock_guard<std::mutex> lock(mutex_);
    messages_.push_back(message);
  }
  bool Visible(u64* first, u64* last) override {
    std::lock_guard<std::mutex> lock(mutex_);
    *first = first_;
    *last = last_;
    return shown_;
  }
  std::vector<std::string> BreakLines(const std::string& text, int, const KfListModel::Format&) override {
    std::vector<std::string> lines(1);
    for (char c : text)
      if (c == '|') lines.emplace_back(); else lines.back() += c;
    return lines;
  }

  void SetVisible(u64 first, u64 last, bool shown = true) {
    std::lock_guard<std::mutex> lock(mutex_);
    first_ = first;
    last_ = last;
    shown_ = shown;
  }
  std::vector<Message> Take() {
    std::lock_guard<std::mutex> lock(mutex_);
    std::vector<Message> out(messages_.begin(), messages_.end());
    messages_.clear();
    return out;
  }
  Message Last() {
    std::lock_guard<std::mutex> lock(mutex_);
    return messages_.empty() ? Message() : messages_.back();
  }

 private:
  std::mutex mutex_;
  std::deque<Message> messages_;
  u64 first_ = 0;
  u64 last_ = 59;
  bool shown_ = true;
};

inline std::vector<KfListModel::Column> Columns(std::initializer_list<const char*> titles) {
  std::vector<KfListModel::Column> columns;
  for (const char* title : titles) {
    KfListModel::Column column;
    column.title = title;
    columns.push_back(column);
  }
  return columns;
}

// The cells a model or proxy gives for one row (empty if it gives none).
template <class Source>
std::vector<std::string> CellsOf(Source& source, u64 row) {
  std::vector<std::string> cells;
  std::vector<KfListModel::Format> formats;
  KfListModel::TreeInfo tree;
  bool flag = false;
  source.GetRow(row, &cells, &formats, &tree, &flag);
  return cells;
}

inline std::vector<std::vector<std::string>> NumberedRows(u64 count, const std::string& prefix = "row") {
  std::vector<std::vector<std::string>> rows;
  for (u64 i = 0; i < count; ++i) rows.push_back({prefix + std::to_string(i), std::to_string(i * 10)});
  return rows;
}

}  // namespace ListWindowTest
