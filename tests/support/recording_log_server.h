// A log server for tests that records everything it receives.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "orvane/log.h"

namespace Kf::Testing {

class RecordingServer : public KfLogServer {
 public:
  ~RecordingServer() override { UnregisterLogServer(); }

  void AddCategory(const std::string& category) override { added.push_back(category); }
  void RemoveCategory(const std::string& category) override { removed.push_back(category); }
  void StartSession(const std::string& category) override { sessions.push_back(category); }
  void ProcessEntry(Entry& entry) override {
    entries.push_back(entry);
    if (onEntry) onEntry(entry);
  }

  // Entries of one category only (other tests' diagnostics may pass by).
  std::vector<Entry> EntriesOf(const std::string& category) const {
    std::vector<Entry> result;
    for (const Entry& entry : entries)
      if (entry.Category() == category) result.push_back(entry);
    return result;
  }

  std::vector<std::string> added, removed, sessions;
  std::vector<Entry> entries;
  std::function<void(Entry&)> onEntry;
};

}  // namespace Kf::Testing
