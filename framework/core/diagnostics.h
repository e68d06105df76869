// Internal: reporting of failures that have no caller to return them to
// (exceptions escaping a thread or a callback at the library's boundary).
#pragma once

#include <functional>
#include <string>

namespace Kf::Detail {

// Reports an internal failure. Until the log subsystem installs its sink the
// report goes to standard error.
void ReportError(const std::string& where, const std::string& what);

// The log subsystem routes reports into the library's log with this.
using ErrorSink = std::function<void(const std::string& where, const std::string& what)>;
void SetErrorSink(ErrorSink sink);

}  // namespace Kf::Detail
