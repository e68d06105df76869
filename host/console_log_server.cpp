#include "console_log_server.h"

#include <ostream>

namespace OrvaneHost {

const char* SeverityName(int severity) {
  switch (severity) {
    case KfLogClient::Trace: return "trace";
    case KfLogClient::Info: return "info";
    case KfLogClient::Warning: return "warning";
    case KfLogClient::Error: return "error";
    case KfLogClient::Fatal: return "fatal";
    default: return "other";
  }
}

ConsoleLogServer::ConsoleLogServer(std::ostream& out) : out_(out) {}

ConsoleLogServer::~ConsoleLogServer() { UnregisterLogServer(); }

void ConsoleLogServer::AddCategory(const std::string& category) {
  if (!showCategories) return;
  std::lock_guard<std::mutex> lock(mutex_);
  out_ << "  [log] category " << category << '\n';
}

void ConsoleLogServer::StartSession(const std::string& category) {
  std::lock_guard<std::mutex> lock(mutex_);
  out_ << "  [log] " << category << ": new session\n";
}

void ConsoleLogServer::ProcessEntry(Entry& entry) {
  std::lock_guard<std::mutex> lock(mutex_);
  out_ << "  [log #" << entry.EntryId() << "] ";
  if (entry.IsSubEntry()) {
    out_ << "    " << entry.Text() << '\n';
    return;
  }
  out_ << entry.Category() << ' ' << SeverityName(entry.Severity()) << ": " << entry.Text();
  if (!entry.Path().IsEmpty()) out_ << "  (" << entry.Path().ToString() << ':' << entry.SrcPos().line + 1 << ')';
  out_ << '\n';
}

}  // namespace OrvaneHost
