// Shared pieces of the list window tour step and the "listwindow" subcommand:
// a generated log file, a console stand-in for the host's list control, and
// the first/last screen walk through the sliding proxy.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

#include "orvane/gepath.h"
#include "orvane/listwindow.h"

namespace OrvaneHost {

// Writes a log of about `bytes` bytes (whole lines) to `path`; returns the
// number of lines written, or -1 when the file cannot be written.
std::int64_t WriteDemoLog(const GePath& path, std::uint64_t bytes);

// The host's list control on a console: it collects messages (from any thread)
// for the UI thread, shows `screenRows` rows, and wraps texts at `wrapWidth`
// characters.
class ConsoleListControl : public Kf::ListWindow::ListWindowProxyListener {
 public:
  ConsoleListControl(std::uint64_t screenRows, std::size_t wrapWidth);
  void HandleMessage(const Message& message) override;
  bool Visible(std::uint64_t* first, std::uint64_t* last) override;
  std::vector<std::string> BreakLines(const std::string& text, int column,
                                      const Kf::ListWindow::KfListModelTypes::Format& format) override;

  // Called (from the notifying thread) after each message is queued; the
  // host uses it to wake its UI loop.
  void SetWake(std::function<void()> wake);
  void ScrollTo(std::uint64_t top);
  std::vector<Message> TakeMessages();
  std::size_t PendingMessages();
  std::uint64_t Top();

 private:
  std::mutex mutex_;
  std::vector<Message> messages_;  // guarded by mutex_
  std::uint64_t top_ = 0;          // guarded by mutex_
  std::function<void()> wake_;
  std::uint64_t screenRows_;
  std::size_t wrapWidth_;
};

// Prints rows [first, first + count) of `proxy` with their row numbers.
void PrintRows(std::ostream& out, Kf::ListWindow::ListWindowProxy& proxy, std::uint64_t first, std::uint64_t count,
               std::size_t maxWidth = 90);

// Opens `path` in a sliding proxy and shows its first and last screens of
// `screenRows` rows, with timings. Returns false when the file cannot be read.
bool ShowFirstAndLastScreen(std::ostream& out, const GePath& path, std::uint64_t screenRows, bool printRows);

}  // namespace OrvaneHost
