// A sliding list model over a text file: one row per line, read in blocks
// around the chunk so that a file of any size opens and navigates at once.
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

#include "orvane/listwindow_models.h"

namespace Kf::ListWindow {

using u64 = std::uint64_t;

namespace {

constexpr u64 kBlock = 64 * 1024;
// A line longer than this is shown in pieces of this size, so that a file
// without line ends (a binary dump, a corrupt log) never makes the model read
// or hold more than this per row.
constexpr u64 kMaxLine = 1024 * 1024;

// The line text without its terminator ("\n" or "\r\n").
std::string StripTerminator(std::string text) {
  if (!text.empty() && text.back() == '\n') text.pop_back();
  if (!text.empty() && text.back() == '\r') text.pop_back();
  return text;
}

}  // namespace

KfTextFileListModel::KfTextFileListModel(const GePath& path, u64 initialChunk)
    : initialChunk_(std::max<u64>(initialChunk, 1)) {
  file_.open(path.Native(), std::ios::binary);
  if (!file_) {
    error_ = "cannot open " + path.FileName() + " for reading";
    return;
  }
  RefreshSize();
  u64 row = 0;
  MoveTo(0, initialChunk_, &row);
}

KfTextFileListModel::~KfTextFileListModel() = default;

bool KfTextFileListModel::IsOpen() const { return error_.empty(); }
const std::string& KfTextFileListModel::Error() const { return error_; }

void KfTextFileListModel::RefreshSize() {
  if (!file_.is_open()) return;
  file_.clear();
  file_.seekg(0, std::ios::end);
  std::streamoff end = file_.tellg();
  fileSize_ = end > 0 ? static_cast<u64>(end) : 0;
}

bool KfTextFileListModel::ReadAt(u64 offset, u64 size, std::string* out) {
  out->assign(size, '\0');
  if (size == 0) return true;
  file_.clear();
  file_.seekg(static_cast<std::streamoff>(offset));
  file_.read(out->data(), static_cast<std::streamsize>(size));
  out->resize(static_cast<std::size_t>(std::max<std::streamsize>(file_.gcount(), 0)));
  return out->size() == size;
}

std::vector<KfTextFileListModel::Line> KfTextFileListModel::ReadLinesAfter(u64 pos, u64 count) {
  std::vector<Line> lines;
  std::string pending;  // bytes of the line being assembled
  u64 lineStart = pos;
  std::string block;
  while (lines.size() < count && pos < fileSize_) {
    const u64 want = std::min(kBlock, fileSize_ - pos);
    if (!ReadAt(pos, want, &block) && block.empty()) break;
    std::size_t from = 0;
    while (lines.size() < count) {
      std::size_t nl = block.find('\n', from);
      const std::size_t room = static_cast<std::size_t>(kMaxLine - pending.size());
      if (nl == std::string::npos || nl - from >= room) {
        if (block.size() - from < room) {
          pending.append(block, from, std::string::npos);
          break;
        }
        // An overlong line: cut a piece of kMaxLine bytes.
        pending.append(block, from, room);
        Line piece;
        piece.offset = lineStart;
        piece.end = pos + from + room;
        piece.text = std::move(pending);
        pending.clear();
        lines.push_back(std::move(piece));
        lineStart = pos + from + room;
        from += room;
        continue;
      }
      pending.append(block, from, nl + 1 - from);
      Line line;
      line.offset = lineStart;
      line.end = pos + nl + 1;
      line.text = StripTerminator(std::move(pending));
      pending.clear();
      lines.push_back(std::move(line));
      lineStart = pos + nl + 1;
      from = nl + 1;
    }
    pos += block.size();
  }
  // A last line without a terminator is a line of its own.
  if (lines.size() < count && pos >= fileSize_ && lineStart < fileSize_) {
    Line line;
    line.offset = lineStart;
    line.end = fileSize_;
    line.text = StripTerminator(std::move(pending));
    lines.push_back(std::move(line));
  }
  return lines;
}

u64 KfTextFileListModel::LineStartOf(u64 pos) {
  // Scan backward from pos for the "\n" that ends the previous line.
  std::string block;
  u64 end = pos;
  const u64 limit = pos > kMaxLine ? pos - kMaxLine : 0;
  while (end > limit) {
    const u64 start = end - limit > kBlock ? end - kBlock : limit;
    if (!ReadAt(start, end - start, &block)) return 0;
    std::size_t nl = block.rfind('\n');
    if (nl != std::string::npos) return start + nl + 1;
    end = start;
  }
  return limit;
}

std::vector<KfTextFileListModel::Line> KfTextFileListModel::ReadLinesBefore(u64 pos, u64 count) {
  std::vector<Line> lines;  // nearest first; reversed at the end
  std::string buffer;       // the bytes [bufferStart, pos)
  u64 bufferStart = pos;
  u64 end = pos;            // the end of the line being looked for
  std::string block;
  while (lines.size() < count && end > 0) {
    u64 start = 0;
    for (;;) {
      // The line ending at `end` starts after the last "\n" before its terminator.
      const std::size_t rel = static_cast<std::size_t>(end - 1 - bufferStart);
      const std::size_t nl = rel == 0 ? std::string::npos : buffer.rfind('\n', rel - 1);
      if (nl != std::string::npos) {
        start = bufferStart + nl + 1;
        break;
      }
      if (bufferStart == 0) {
        start = 0;
        break;
      }
      if (end - bufferStart >= kMaxLine) {
        start = end - kMaxLine;  // an overlong line: take its last piece
        break;
      }
      const u64 floor = end > kMaxLine ? end - kMaxLine : 0;
      const u64 newStart = bufferStart - floor > kBlock ? bufferStart - kBlock : floor;
      if (!ReadAt(newStart, bufferStart - newStart, &block)) return {};
      buffer.insert(0, block);
      bufferStart = newStart;
    }
    Line line;
    line.offset = start;
    line.end = end;
    line.text = StripTerminator(buffer.substr(static_cast<std::size_t>(start - bufferStart),
                                              static_cast<std::size_t>(end - start)));
    lines.push_back(std::move(line));
    end = start;
    // Keep the buffer to what is still needed.
    buffer.resize(static_cast<std::size_t>(end - bufferStart));
  }
  std::reverse(lines.begin(), lines.end());
  return lines;
}

void KfTextFileListModel::MoveTo(u64 pos, u64 minChunk, u64* row) {
  minChunk = std::max<u64>(minChunk, 1);
  selected_ = ~u64{0};
  if (pos >= fileSize_) {
    // The end: the last lines of the file, showing the last one.
    chunk_ = ReadLinesBefore(fileSize_, minChunk);
    *row = chunk_.empty() ? 0 : chunk_.size() - 1;
  } else {
    const u64 start = LineStartOf(pos);
    chunk_ = ReadLinesAfter(start, minChunk);
    u64 before = 0;
    if (chunk_.size() < minChunk && start > 0) {
      std::vector<Line> more = ReadLinesBefore(start, minChunk - chunk_.size());
      before = more.size();
      more.insert(more.end(), std::make_move_iterator(chunk_.begin()), std::make_move_iterator(chunk_.end()));
      chunk_ = std::move(more);
    }
    *row = before;
  }
  chunkBytes_ = 0;
  for (const Line& line : chunk_) chunkBytes_ += line.text.size();
}

void KfTextFileListModel::Describe(ChunkInfo* out) const {
  ChunkInfo info;
  info.rows = chunk_.size();
  if (chunk_.empty() || fileSize_ == 0) {
    info.atStart = true;
    info.atEnd = true;
  } else {
    const u64 first = chunk_.front().offset;
    const u64 end = chunk_.back().end;
    info.fractionBefore = static_cast<double>(first) / static_cast<double>(fileSize_);
    info.fractionAfter = end >= fileSize_ ? 0.0 : static_cast<double>(fileSize_ - end) / static_cast<double>(fileSize_);
    info.atStart = first == 0;
    info.atEnd = end >= fileSize_;
  }
  *out = info;
}

bool KfTextFileListModel::CheckGrowth() {
  KfFlatListModelListener::Note note;
  {
    IdeUtil::ScopedLock lock(mutex_);
    const u64 before = fileSize_;
    RefreshSize();
    if (fileSize_ <= before) return false;
    note.version = ++version_;
  }
  note.what = KfListModelListener::Redraw;
  listener_.Notify(note);
  return true;
}

u64 KfTextFileListModel::ChunkBytes() {
  IdeUtil::ScopedLock lock(mutex_);
  return chunkBytes_;
}

u64 KfTextFileListModel::GetColumnInfo(std::vector<Column>* out) {
  out->clear();
  Column offset;
  offset.title = "Offset";
  offset.format.flags = FormatAlignRight | FormatMonospace;
  offset.width = 110;
  offset.tooltip = "Byte offset of the line in the file";
  Column text;
  text.title = "Text";
  text.width = 800;
  out->push_back(offset);
  out->push_back(text);
  return out->size();
}

bool KfTextFileListModel::GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats,
                                 TreeInfo* tree, bool* flag) {
  IdeUtil::ScopedLock lock(mutex_);
  if (row >= chunk_.size()) return false;
  const Line& line = chunk_[row];
  *cells = {std::to_string(line.offset), line.text};
  Format offsetFormat;
  offsetFormat.flags = FormatAlignRight | FormatMonospace;
  *formats = {offsetFormat, Format()};
  *tree = TreeInfo();
  *flag = row == selected_;
  return true;
}

void KfTextFileListModel::SetListener(KfFlatListModelListener* listener) { listener_.Set(listener); }

void KfTextFileListModel::GetChunk(ChunkInfo* out) {
  IdeUtil::ScopedLock lock(mutex_);
  Describe(out);
}

u64 KfTextFileListModel::GetSel(std::string* text) {
  IdeUtil::ScopedLock lock(mutex_);
  if (selected_ >= chunk_.size()) {
    text->clear();
    return ~u64{0};
  }
  *text = chunk_[selected_].text;
  return selected_;
}

u64 KfTextFileListModel::SelectRow(u64 row, std::string* text) {
  IdeUtil::ScopedLock lock(mutex_);
  selected_ = row < chunk_.size() ? row : ~u64{0};
  if (selected_ == ~u64{0}) {
    text->clear();
  } else {
    *text = chunk_[selected_].text;
  }
  return selected_;
}

u64 KfTextFileListModel::AddBefore(u64 count, u64 maxDrop, ChunkInfo* out) {
  IdeUtil::ScopedLock lock(mutex_);
  u64 added = 0;
  if (!chunk_.empty() && chunk_.front().offset > 0) {
    std::vector<Line> more = ReadLinesBefore(chunk_.front().offset, count);
    added = more.size();
    const u64 drop = std::min<u64>(maxDrop, chunk_.size());
    chunk_.resize(chunk_.size() - drop);
    if (selected_ != ~u64{0}) selected_ = selected_ < chunk_.size() ? selected_ + added : ~u64{0};
    more.insert(more.end(), std::make_move_iterator(chunk_.begin()), std::make_move_iterator(chunk_.end()));
    chunk_ = std::move(more);
    chunkBytes_ = 0;
    for (const Line& line : chunk_) chunkBytes_ += line.text.size();
  }
  Describe(out);
  return added;
}

u64 KfTextFileListModel::AddAfter(u64 count, u64 maxDrop, ChunkInfo* out) {
  IdeUtil::ScopedLock lock(mutex_);
  RefreshSize();
  u64 added = 0;
  const u64 from = chunk_.empty() ? 0 : chunk_.back().end;
  if (from < fileSize_) {
    std::vector<Line> more;
    // A last line without a terminator may have grown since: read it again.
    std::string lastByte;
    if (!chunk_.empty() && ReadAt(chunk_.back().end - 1, 1, &lastByte) && lastByte != "\n") {
      const u64 start = chunk_.back().offset;
      chunk_.pop_back();
      more = ReadLinesAfter(start, count + 1);
      added = more.empty() ? 0 : more.size() - 1;
    } else {
      more = ReadLinesAfter(from, count);
      added = more.size();
    }
    const u64 drop = std::min<u64>(maxDrop, chunk_.size());
    chunk_.erase(chunk_.begin(), chunk_.begin() + static_cast<std::ptrdiff_t>(drop));
    if (selected_ != ~u64{0}) selected_ = selected_ >= drop ? selected_ - drop : ~u64{0};
    chunk_.insert(chunk_.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
    chunkBytes_ = 0;
    for (const Line& line : chunk_) chunkBytes_ += line.text.size();
  }
  Describe(out);
  return added;
}

void KfTextFileListModel::NavigateTo(const std::string& text, u64 minChunk, u64* row, ChunkInfo* out) {
  IdeUtil::ScopedLock lock(mutex_);
  RefreshSize();
  if (text == "BEGIN") {
    MoveTo(0, minChunk, row);
  } else if (text == "END") {
    MoveTo(fileSize_, minChunk, row);
  } else {
    u64 offset = 0;
    const char* first = text.data();
    const char* last = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(first, last, offset);
    if (ec == std::errc() && ptr == last && !text.empty()) MoveTo(offset, minChunk, row);
  }
  Describe(out);
}

void KfTextFileListModel::NavigateTo(double fraction, u64* row, ChunkInfo* out) {
  IdeUtil::ScopedLock lock(mutex_);
  RefreshSize();
  fraction = std::clamp(fraction, 0.0, 1.0);
  const u64 pos = static_cast<u64>(static_cast<double>(fileSize_) * fraction);
  MoveTo(pos, std::max<u64>(chunk_.size(), initialChunk_), row);
  Describe(out);
}

}  // namespace Kf::ListWindow
