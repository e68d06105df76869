// Scoped log tasks: marks in the process-wide performance trace file.
//
//   void Rebuild() {
//     Kf::ScopedLogTask task("Rebuild", projectName);   // begin event now, end event at scope exit
//     Kf::ScopedLogSlowExecution watch("Parse", std::chrono::milliseconds(50));  // one event if slower
//     ...
//     Kf::InstantLogTask("CacheHit", key);               // one instant event
//   }
//
// The trace file is a JSON array of trace events ("name", "ph", "ts", "pid",
// "tid"), one event per line, never closed with "]". "ts" and "dur" are
// microseconds of the steady (monotonic) clock. Names and extras are written
// as they are, without JSON escaping: a name holding a double quote makes the
// file unreadable, so use plain names.
//
// Switching it on (decided once per process, on the first event):
//   - the environment variable QOR_QDBGSERVER_TRACE_FILE names the trace file
//     (used as it is); otherwise
//   - the "Global" settings: "TextEditor"/"LoggingEnabled" true and
//     "TextEditor"/"LoggingDirectory" an existing directory; the file is then
//     "<directory>/QOR-IDE-Log-<YYYY-MM-DD-HHMMSS>.trace".
// Events are written only while the process runs in using mode 2 (the IDE)
// or 5 (the debug server), see KfSetUsingMode below. Beside the trace file the
// library writes "<trace file>.info", a JSON object describing the process:
// {"pid", "executable", "startTime" (local time, ISO 8601), "clock"
// ("steady"), "clockAtStartUs" (the "ts" of the start event), "traceFile"}.
//
// The library's profiling tasks ("KfPersistentStorageLoad",
// "KfIdleTimeProcessing", ...) appear in the trace as begin and end events.
//
// Threads: any thread may create these objects. Each event is one whole line,
// written and flushed under the trace file's lock. With tracing off an object
// only reads the clock.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "orvane/export.h"

namespace Kf {

// Writes a begin event when constructed and an end event when destroyed.
class ORVANE_API ScopedLogTask {
 public:
  ScopedLogTask(const char* name);
  ScopedLogTask(const std::string& name);
  ScopedLogTask(const std::string& name, const std::string& extra);
  ~ScopedLogTask();
  ScopedLogTask(const ScopedLogTask&) = default;
  ScopedLogTask& operator=(const ScopedLogTask&) = default;

 private:
  void Begin(const char* name, std::size_t nameSize, const std::string* extra);

  std::string name_;   // copied only when tracing is on
  std::string extra_;
  std::int64_t start_ = 0;  // steady clock, nanoseconds
  bool traced_ = false;     // a begin event was written, so an end event is due
};

// Writes one instant event, at construction.
class ORVANE_API InstantLogTask {
 public:
  InstantLogTask(const std::string& name, const std::string& extra);
  ~InstantLogTask() {}
  InstantLogTask(const InstantLogTask&) = default;
  InstantLogTask& operator=(const InstantLogTask&) = default;

 private:
  std::string name_;
  std::string extra_;
};

// Writes one complete event when destroyed, and only when the scope took
// longer than `limit` (strictly).
class ORVANE_API ScopedLogSlowExecution {
 public:
  ScopedLogSlowExecution(const std::string& name, std::chrono::microseconds limit);
  ScopedLogSlowExecution(const std::string& name, const std::string& extra, std::chrono::microseconds limit);
  ~ScopedLogSlowExecution();
  ScopedLogSlowExecution(const ScopedLogSlowExecution&) = default;
  ScopedLogSlowExecution& operator=(const ScopedLogSlowExecution&) = default;

 private:
  std::string name_;
  std::string extra_;
  std::int64_t limit_;      // microseconds
  std::int64_t start_;      // steady clock, nanoseconds
  std::int64_t end_ = 0;    // filled by the destructor
};

}  // namespace Kf

// The process's using modes. A host declares its mode once at start-up,
// before its first traced event:
//
//   KfSetUsingMode(KfUsingMode::kConsoleTool);   // a tool that never traces
//
// The trace file is written only in kIde and kDebugServer. A process that
// never sets a mode runs as kIde, the library's main host, so setting the
// trace variable or the logging settings is enough to get a trace.
namespace KfUsingMode {
constexpr int kUnset = 0;          // no mode: writes no trace
constexpr int kConsoleTool = 1;    // a command-line tool of the tool chain
constexpr int kIde = 2;            // the interactive IDE host
constexpr int kBuildSlave = 3;     // a multicore build slave process
constexpr int kHeadless = 4;       // the IDE run without a user interface (scripts, tests)
constexpr int kDebugServer = 5;    // the debug server process
}  // namespace KfUsingMode

// Sets the process-wide using mode. Threads: any; meant for start-up.
ORVANE_API void KfSetUsingMode(int mode);
// Whether the process runs in `mode`. Threads: any.
ORVANE_API bool KfCheckUsingMode(int mode);
