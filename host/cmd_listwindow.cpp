// The "listwindow" subcommand: the large-log demo with a chosen size, or any
// existing text file, shown through the sliding proxy.
#include <filesystem>
#include <ostream>

#include "host_app.h"
#include "listwindow_demo.h"
#include "orvane/platform.h"

namespace OrvaneHost {
namespace {

// "1G", "100M", "64K" or a plain byte count; 0 when unreadable.
std::uint64_t ParseSize(const std::string& text) {
  if (text.empty()) return 0;
  std::size_t used = 0;
  unsigned long long value = 0;
  try {
    value = std::stoull(text, &used);
  } catch (const std::exception&) {
    return 0;
  }
  const std::string unit = text.substr(used);
  if (unit.empty() || unit == "B") return value;
  if (unit == "K" || unit == "KB") return value << 10;
  if (unit == "M" || unit == "MB") return value << 20;
  if (unit == "G" || unit == "GB") return value << 30;
  return 0;
}

int Run(HostApp& app, const std::vector<std::string>& args) {
  std::ostream& out = app.Out();
  if (args.size() >= 2 && args[0] == "show") return ShowFirstAndLastScreen(out, GePath(args[1]), 60, true) ? 0 : 1;
  if (args.empty() || args[0] != "demo") {
    out << "usage: listwindow demo [--size 1G] [--keep] | listwindow show FILE\n";
    return 2;
  }
  std::uint64_t size = 1ull << 30;
  bool keep = false;
  for (std::size_t i = 1; i < args.size(); ++i) {
    if (args[i] == "--size" && i + 1 < args.size()) {
      size = ParseSize(args[++i]);
      if (size == 0) {
        out << "Unreadable size \"" << args[i] << "\" (use e.g. 1G, 100M, 64K).\n";
        return 2;
      }
    } else if (args[i] == "--keep") {
      keep = true;
    }
  }
  GePath dir;
  if (!Kf::Platform::Current().GetKnownFolder(Kf::Platform::KnownFolder::Temp, dir))
    dir = GePath(std::filesystem::temp_directory_path().string());
  const GePath path = dir / ("orvane-demo-" + std::to_string(Kf::Platform::Current().GetProcessId()) + ".log");
  out << "Writing " << size << " bytes of log to " << path.ToUtf8() << " ...\n";
  const std::int64_t lines = WriteDemoLog(path, size);
  if (lines < 0) {
    out << "Could not write the log.\n";
    return 1;
  }
  out << lines << " lines written.\n";
  const bool shown = ShowFirstAndLastScreen(out, path, 60, true);
  if (keep) {
    out << "Kept " << path.ToUtf8() << ".\n";
  } else {
    std::error_code ignored;
    std::filesystem::remove(path.Native(), ignored);
  }
  return shown ? 0 : 1;
}

Subcommand listwindow("listwindow", "listwindow demo [--size 1G] [--keep] | show FILE   a large log in a list window",
                      Run);

}  // namespace
}  // namespace OrvaneHost
