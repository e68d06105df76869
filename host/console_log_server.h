// A log server that prints every entry on the terminal: category, severity,
// text, and file:line when the entry refers to a file. Continuation lines are
// indented under their first line.
#pragma once

#include <iosfwd>
#include <mutex>

#include "orvane/log.h"

namespace OrvaneHost {

class ConsoleLogServer : public KfLogServer {
 public:
  explicit ConsoleLogServer(std::ostream& out);
  ~ConsoleLogServer() override;

  void AddCategory(const std::string& category) override;
  void StartSession(const std::string& category) override;
  void ProcessEntry(Entry& entry) override;

  // Whether category registrations are shown (the replay at registration
  // lists every category the library and the host know).
  bool showCategories = true;

 private:
  std::ostream& out_;
  std::mutex mutex_;  // the terminal is shared with the UI thread's output
};

const char* SeverityName(int severity);

}  // namespace OrvaneHost
