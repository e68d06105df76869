// The host's status bar on a terminal: it handles every status-bar event and
// prints the whole bar as one line each time a field changes.
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "orvane/statusbar.h"

namespace OrvaneHost {

class StatusLine {
 public:
  explicit StatusLine(std::ostream& out);
  ~StatusLine();
  StatusLine(const StatusLine&) = delete;
  StatusLine& operator=(const StatusLine&) = delete;

  // The line as it stands.
  std::string Text() const;

 private:
  void Print(const char* what);

  std::ostream& out_;
  std::vector<std::pair<const char*, std::unique_ptr<Kf::Event::BaseHandler>>> handlers_;
  // The fields, as the events reported them (UI thread only).
  std::string message_, caret_, encoding_, build_, language_, progress_;
  bool caps_ = false, num_ = false, overwrite_ = false;
};

}  // namespace OrvaneHost
