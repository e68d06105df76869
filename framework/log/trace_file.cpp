#include "log/trace_file.h"

#include <atomic>
#include <charconv>
#include <chrono>
#include <thread>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <system_error>

#include <boost/json.hpp>

#include "core/diagnostics.h"
#include "core/profile.h"
#include "orvane/locks.h"
#include "orvane/logtask.h"
#include "orvane/platform.h"
#include "orvane/storage.h"

namespace Kf::Detail {
namespace {

// The trace state. The flags are atomics so the common check ("is tracing
// on?") takes no lock; the decision itself runs under decideMutex, and the
// file handles under fileMutex.
struct TraceState {
  std::atomic<bool> initialized{false};
  std::atomic<bool> enabled{false};
  std::atomic<bool> opened{false};
  bool firstEventWritten = false;  // guarded by fileMutex
  GePath tracePath;                // written once under decideMutex before `initialized`
  GePath infoPath;
  std::string stamp;
  IdeUtil::Mutex decideMutex;
  IdeUtil::Mutex fileMutex;
  std::FILE* trace = nullptr;  // guarded by fileMutex
};

TraceState& State() {
  // Never destroyed: events may come from static destructors at exit.
  static TraceState* state = new TraceState();
  return *state;
}

std::string LocalTime(const char* format, std::time_t when) {
  static std::mutex mutex;  // std::localtime shares one buffer
  char text[64] = {};
  std::lock_guard<std::mutex> lock(mutex);
  if (const std::tm* local = std::localtime(&when)) std::strftime(text, sizeof text, format, local);
  return text;
}

// Takes the decision; caller holds decideMutex.
void Decide(TraceState& state) {
  std::string fromEnv;
  if (Kf::Platform::Current().GetEnv("QOR_QDBGSERVER_TRACE_FILE", fromEnv) && !fromEnv.empty()) {
    state.tracePath = GePath(fromEnv);
    state.infoPath = GePath(fromEnv + ".info");
    state.enabled = true;
    return;
  }
  KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
  bool loggingEnabled = false;
  std::string directory;
  if (!global || !global->LoadBool("TextEditor", "LoggingEnabled", loggingEnabled) || !loggingEnabled) return;
  if (!global->Load("TextEditor", "LoggingDirectory", directory) || directory.empty()) return;
  std::error_code ec;
  if (!std::filesystem::is_directory(GePath(directory).Native(), ec)) return;
  state.stamp = LocalTime("%F-%H%M%S", std::time(nullptr));
  state.tracePath = GePath(directory) / ("QOR-IDE-Log-" + state.stamp + ".trace");
  state.infoPath = GePath(state.tracePath.ToString() + ".info");
  state.enabled = true;
}

void WriteInfoFile(const TraceState& state, std::int64_t startNs) {
  GePath executable;
  (void)Kf::Platform::Current().GetExecutablePath(executable);
  boost::json::object info;
  info["pid"] = Kf::Platform::Current().GetProcessId();
  info["executable"] = executable.ToString();
  info["startTime"] = LocalTime("%FT%T%z", std::time(nullptr));
  info["clock"] = "steady";
  info["clockAtStartUs"] = startNs / 1000;
  info["traceFile"] = state.tracePath.ToString();
  std::FILE* file = std::fopen(state.infoPath.Native().c_str(), "w");
  if (!file) {
    ReportError("trace", "cannot write " + state.infoPath.ToString());
    return;
  }
  std::string text = boost::json::serialize(info) + "\n";
  std::fwrite(text.data(), 1, text.size(), file);
  std::fclose(file);
}

// Appends a decimal number.
void AppendNumber(std::string& line, std::int64_t value) {
  char digits[24];
  auto result = std::to_chars(digits, digits + sizeof digits, value);
  line.append(digits, result.ptr);
}
void AppendNumber(std::string& line, std::uint64_t value) {
  char digits[24];
  auto result = std::to_chars(digits, digits + sizeof digits, value);
  line.append(digits, result.ptr);
}

std::string& LineBuffer() {
  thread_local std::string line;
  line.clear();
  return line;
}

void AppendStartEvent(std::string& line, std::uint64_t tid, std::int64_t nowNs) {
  line += R"({"name": "start", "ph" : "i", "pid" : 0, "tid" :)";
  AppendNumber(line, tid);
  line += R"(, "s" : "g" , "ts": )";
  AppendNumber(line, nowNs / 1000);
  line += "},\n";
}

// Writes one finished line (ending in "},\n"), opening the file with the
// start event first when this is the first event.
void WriteLine(const std::string& line) {
  TraceState& state = State();
  IdeUtil::ScopedLock lock(state.fileMutex);
  if (!state.firstEventWritten) {
    if (state.trace == nullptr) {
      state.trace = std::fopen(state.tracePath.Native().c_str(), "w");
      if (state.trace == nullptr) {
        // No file, no tracing: report once and stay off.
        state.enabled = false;
        ReportError("trace", "cannot open the trace file " + state.tracePath.ToString());
        return;
      }
      state.opened = true;
    }
    std::int64_t nowNs = TraceClockNs();
    std::string first = "[";
    AppendStartEvent(first, Kf::Platform::Current().GetCurrentThreadId(), nowNs);
    std::fwrite(first.data(), 1, first.size(), state.trace);
    std::fflush(state.trace);
    WriteInfoFile(state, nowNs);
    state.firstEventWritten = true;
  }
  std::fwrite(line.data(), 1, line.size(), state.trace);
  std::fflush(state.trace);
}

void OnProfileScope(const ProfileTask& task, bool begin) {
  if (!TraceWanted()) return;
  const char* name = task.Name();
  WriteTaskEvent(name, std::char_traits<char>::length(name), nullptr, begin, TraceClockNs());
}

// Profiling tasks reach the trace file from the moment the library is loaded.
const bool g_profileHooked = [] {
  SetProfileObserver(&OnProfileScope);
  return true;
}();

}  // namespace

namespace {
std::atomic<TraceClock> g_testClock{nullptr};
}  // namespace

void SetTraceClockForTesting(TraceClock clock) { g_testClock.store(clock); }

std::int64_t TraceClockNs() {
  if (TraceClock clock = g_testClock.load(std::memory_order_relaxed)) return clock();
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

// Waits for another thread's decision. The wait is bounded because the
// deciding thread may be reading the settings storage while this thread holds
// that storage's lock; past the bound this one event is dropped rather than
// deadlocking. A decision normally takes microseconds, so events of threads
// that start together are not lost even when the decider is preempted.
static bool AwaitDecision(const TraceState& state) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(500);
  while (!state.initialized.load(std::memory_order_acquire)) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::microseconds(50));
  }
  return true;
}

bool TraceWanted() {
  TraceState& state = State();
  if (!state.initialized.load(std::memory_order_acquire)) {
    // The deciding thread reads the settings storage, whose own profiling
    // tasks ask again; they are not traced.
    thread_local bool t_deciding = false;
    if (t_deciding) return false;
    IdeUtil::ScopedTryLock lock(state.decideMutex);
    if (lock.IsLocked()) {
      if (!state.initialized.load(std::memory_order_acquire)) {
        t_deciding = true;
        Decide(state);
        t_deciding = false;
        state.initialized.store(true, std::memory_order_release);
      }
    } else if (!AwaitDecision(state)) {
      return false;
    }
  }
  if (!state.enabled.load(std::memory_order_acquire)) return false;
  return KfCheckUsingMode(KfUsingMode::kIde) || KfCheckUsingMode(KfUsingMode::kDebugServer);
}

void WriteTaskEvent(const char* name, std::size_t nameSize, const std::string* extra, bool begin,
                    std::int64_t nowNs) {
  std::string& line = LineBuffer();
  line += R"({"name": ")";
  line.append(name, nameSize);
  line += begin ? R"(" ,"cat" : "PERF", "ph" : "B", "pid" : 0, "tid":)" : R"(" ,"cat" : "PERF", "ph" : "E", "pid" : 0, "tid":)";
  AppendNumber(line, Kf::Platform::Current().GetCurrentThreadId());
  line += R"(, "ts": )";
  AppendNumber(line, nowNs / 1000);
  if (extra && !extra->empty()) {
    line += R"(,"args":{"extra":")";
    line += *extra;
    line += R"("})";
  }
  line += "},\n";
  WriteLine(line);
}

void WriteInstantEvent(const std::string& name, const std::string& extra, std::int64_t nowNs) {
  std::string& line = LineBuffer();
  line += R"({"name": ")";
  line += name;
  line += R"(", "ph" : "i", "pid" : 0, "tid" :)";
  AppendNumber(line, Kf::Platform::Current().GetCurrentThreadId());
  line += R"(, "ts" :)";
  AppendNumber(line, nowNs / 1000);
  line += R"(, "s" : "p" ,"args":{"extra":")";
  line += extra;
  line += "\"}},\n";
  WriteLine(line);
}

void WriteSlowEvent(const std::string& name, const std::string& extra, std::int64_t startNs,
                    std::int64_t elapsedNs) {
  std::string& line = LineBuffer();
  line += R"({"name": ")";
  line += name;
  line += R"(" , "cat": "LIMIT", "ph" : "X", "pid" : 0, "tid":)";
  AppendNumber(line, Kf::Platform::Current().GetCurrentThreadId());
  line += R"(, "ts": )";
  AppendNumber(line, startNs / 1000);
  line += R"(,"dur" : )";
  AppendNumber(line, elapsedNs / 1000);
  line += R"(,"args":{"limit":"TIMELIMIT EXCEEDED", "extra":")";
  line += extra;
  line += "\"}},\n";
  WriteLine(line);
}

void ResetTraceForTesting() {
  TraceState& state = State();
  IdeUtil::ScopedLock decide(state.decideMutex);
  IdeUtil::ScopedLock files(state.fileMutex);
  if (state.trace) std::fclose(state.trace);
  state.trace = nullptr;
  state.firstEventWritten = false;
  state.opened = false;
  state.enabled = false;
  state.tracePath = GePath();
  state.infoPath = GePath();
  state.stamp.clear();
  state.initialized = false;
}

GePath CurrentTracePath() {
  TraceState& state = State();
  return state.enabled ? state.tracePath : GePath();
}

GePath CurrentTraceInfoPath() {
  TraceState& state = State();
  return state.enabled ? state.infoPath : GePath();
}

}  // namespace Kf::Detail
