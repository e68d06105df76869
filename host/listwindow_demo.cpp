// The list window demo: a generated log shown through the sliding proxy.
#include "listwindow_demo.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <ostream>

namespace OrvaneHost {

using Kf::ListWindow::ChunkInfo;
using Kf::ListWindow::KfListModel;

std::int64_t WriteDemoLog(const GePath& path, std::uint64_t bytes) {
  std::ofstream out(path.Native(), std::ios::binary | std::ios::trunc);
  if (!out) return -1;
  static const char* const kinds[] = {"INFO ", "DEBUG", "WARN ", "INFO ", "TRACE"};
  static const char* const texts[] = {
      "flash programming block done",  "breakpoint hit at main.c:42", "target halted: watchdog reset",
      "downloading section .text",     "stack usage above 80%",       "trace buffer wrapped, continuing",
      "symbol table loaded (2314 symbols)",
  };
  std::string buffer;
  buffer.reserve(1 << 20);
  std::uint64_t written = 0;
  std::int64_t lines = 0;
  char line[160];
  while (written < bytes) {
    const std::uint64_t n = static_cast<std::uint64_t>(lines);
    const int length = std::snprintf(line, sizeof line, "%010llu %02llu:%02llu:%02llu.%03llu %s core%llu %s\n",
                                     static_cast<unsigned long long>(n),
                                     static_cast<unsigned long long>((n / 3600000) % 24),
                                     static_cast<unsigned long long>((n / 60000) % 60),
                                     static_cast<unsigned long long>((n / 1000) % 60),
                                     static_cast<unsigned long long>(n % 1000), kinds[n % 5],
                                     static_cast<unsigned long long>(n % 4), texts[(n * 7 + n / 5) % 7]);
    buffer.append(line, static_cast<std::size_t>(length));
    written += static_cast<std::uint64_t>(length);
    ++lines;
    if (buffer.size() > (1 << 20) - 200) {
      out.write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
      buffer.clear();
    }
  }
  out.write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
  return out ? lines : -1;
}

ConsoleListControl::ConsoleListControl(std::uint64_t screenRows, std::size_t wrapWidth)
    : screenRows_(screenRows), wrapWidth_(wrapWidth) {}

void ConsoleListControl::HandleMessage(const Message& message) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    messages_.push_back(message);
  }
  if (wake_) wake_();
}

void ConsoleListControl::SetWake(std::function<void()> wake) { wake_ = std::move(wake); }

std::size_t ConsoleListControl::PendingMessages() {
  std::lock_guard<std::mutex> lock(mutex_);
  return messages_.size();
}

bool ConsoleListControl::Visible(std::uint64_t* first, std::uint64_t* last) {
  std::lock_guard<std::mutex> lock(mutex_);
  *first = top_;
  *last = top_ + screenRows_ - 1;
  return true;
}

std::vector<std::string> ConsoleListControl::BreakLines(const std::string& text, int,
                                                        const Kf::ListWindow::KfListModelTypes::Format&) {
  std::vector<std::string> lines;
  std::size_t from = 0;
  while (text.size() - from > wrapWidth_) {
    std::size_t cut = text.rfind(' ', from + wrapWidth_);
    if (cut == std::string::npos || cut <= from) cut = from + wrapWidth_;
    lines.push_back(text.substr(from, cut - from));
    from = text[cut] == ' ' ? cut + 1 : cut;
  }
  lines.push_back(text.substr(from));
  return lines;
}

void ConsoleListControl::ScrollTo(std::uint64_t top) {
  std::lock_guard<std::mutex> lock(mutex_);
  top_ = top;
}

std::vector<ConsoleListControl::Message> ConsoleListControl::TakeMessages() {
  std::lock_guard<std::mutex> lock(mutex_);
  std::vector<Message> out;
  out.swap(messages_);
  return out;
}

std::uint64_t ConsoleListControl::Top() {
  std::lock_guard<std::mutex> lock(mutex_);
  return top_;
}

void PrintRows(std::ostream& out, Kf::ListWindow::ListWindowProxy& proxy, std::uint64_t first, std::uint64_t count,
               std::size_t maxWidth) {
  for (std::uint64_t row = first; row < first + count && row < proxy.NumberOfRows(); ++row) {
    std::vector<std::string> cells;
    std::vector<KfListModel::Format> formats;
    KfListModel::TreeInfo tree;
    bool flag = false;
    proxy.GetRow(row, &cells, &formats, &tree, &flag);
    std::string line;
    for (std::size_t c = 0; c < cells.size(); ++c) {
      if (c) line += " | ";
      line += cells[c];
    }
    if (line.size() > maxWidth) line = line.substr(0, maxWidth - 3) + "...";
    out << "  " << (row < 10 ? "  " : row < 100 ? " " : "") << row << "  " << line << '\n';
  }
}

bool ShowFirstAndLastScreen(std::ostream& out, const GePath& path, std::uint64_t screenRows, bool printRows) {
  using Clock = std::chrono::steady_clock;
  auto micros = [](Clock::duration d) { return std::chrono::duration_cast<std::chrono::microseconds>(d).count(); };

  auto start = Clock::now();
  auto model = std::make_shared<Kf::ListWindow::KfTextFileListModel>(path, screenRows);
  if (!model->IsOpen()) {
    out << "Cannot show the log: " << model->Error() << '\n';
    return false;
  }
  ConsoleListControl control(screenRows, 80);
  Kf::ListWindow::SlidingModelProxy proxy;
  proxy.SetListener(&control);
  proxy.SetProvider(model);
  proxy.SetMinChunk(static_cast<int>(screenRows));
  proxy.Attach();
  std::uint64_t row = 0;
  ChunkInfo chunk;
  proxy.NavigateTo(std::string("BEGIN"), &row, &chunk);
  if (printRows) PrintRows(out, proxy, 0, std::min<std::uint64_t>(screenRows, 5));
  auto firstScreen = Clock::now() - start;
  out << "First screen: " << chunk.rows << " rows in the chunk, at start " << std::boolalpha << chunk.atStart
      << ", " << micros(firstScreen) << " us from opening the file.\n";

  start = Clock::now();
  proxy.NavigateTo(std::string("END"), &row, &chunk);
  const std::uint64_t top = row + 1 >= screenRows ? row + 1 - screenRows : 0;
  if (printRows) PrintRows(out, proxy, top + screenRows - std::min<std::uint64_t>(screenRows, 5), 5);
  auto lastScreen = Clock::now() - start;
  out << "Last screen (\"END\"): chunk of " << chunk.rows << " rows, " << static_cast<int>(chunk.fractionBefore * 100)
      << "% of the file before it, at end " << chunk.atEnd << ", " << micros(lastScreen) << " us.\n";
  out << "Bytes of the file held by the model: " << model->ChunkBytes() << ".\n";

  proxy.AddBefore(screenRows, &chunk);
  out << "Scrolling up one screen: AddBefore(" << screenRows << ") leaves a chunk of " << chunk.rows
      << " rows (the excess over the minimum is dropped at the far end).\n";
  proxy.Detach();
  return true;
}

}  // namespace OrvaneHost
