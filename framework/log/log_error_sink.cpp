// Routes the library's internal failure reports (Kf::Detail::ReportError) into
// its own log category. While no server is registered the report also goes to
// standard error, so that it is never lost silently.
#include <cstdio>

#include "core/diagnostics.h"
#include "log/log_bus.h"

namespace {

thread_local bool t_reporting = false;

void ReportToLog(const std::string& where, const std::string& what) {
  // A report raised while a report is being delivered on this thread (a
  // server that throws on every entry) goes to standard error instead.
  if (t_reporting) {
    std::fprintf(stderr, "orvane: %s: %s\n", where.c_str(), what.c_str());
    return;
  }
  t_reporting = true;
  static bool registered = (Kf::RegisterLogCategory(kKfFrameworkLogCategory), true);
  (void)registered;
  KfLogServer::Entry entry(kKfFrameworkLogCategory, "orvane", where + ": " + what, KfLogClient::Error, GePath(),
                           Kf::SrcPos(), 0, 0);
  std::size_t reached = Kf::Detail::DispatchEntry(entry);
  t_reporting = false;
  if (reached == 0) std::fprintf(stderr, "orvane: %s: %s\n", where.c_str(), what.c_str());
}

// Installed when the library is loaded.
[[maybe_unused]] const bool g_sinkInstalled = (Kf::Detail::SetErrorSink(&ReportToLog), true);

}  // namespace
