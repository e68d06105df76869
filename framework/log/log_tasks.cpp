#include "orvane/logtask.h"

#include <atomic>
#include <cstring>

#include "log/trace_file.h"

namespace {

std::atomic<int> g_usingMode{KfUsingMode::kIde};

}  // namespace

void KfSetUsingMode(int mode) { g_usingMode.store(mode, std::memory_order_release); }

bool KfCheckUsingMode(int mode) { return g_usingMode.load(std::memory_order_acquire) == mode; }

namespace Kf {

ScopedLogTask::ScopedLogTask(const char* name) { Begin(name ? name : "", name ? std::strlen(name) : 0, nullptr); }

ScopedLogTask::ScopedLogTask(const std::string& name) { Begin(name.data(), name.size(), nullptr); }

ScopedLogTask::ScopedLogTask(const std::string& name, const std::string& extra) {
  Begin(name.data(), name.size(), &extra);
}

void ScopedLogTask::Begin(const char* name, std::size_t nameSize, const std::string* extra) {
  start_ = Detail::TraceClockNs();
  // With tracing off nothing more happens: no copies, no second clock read.
  if (!Detail::TraceWanted()) return;
  name_.assign(name, nameSize);
  if (extra) extra_ = *extra;
  traced_ = true;
  Detail::WriteTaskEvent(name_.data(), name_.size(), &extra_, true, start_);
}

ScopedLogTask::~ScopedLogTask() {
  if (!traced_ || !Detail::TraceWanted()) return;
  Detail::WriteTaskEvent(name_.data(), name_.size(), &extra_, false, Detail::TraceClockNs());
}

InstantLogTask::InstantLogTask(const std::string& name, const std::string& extra) {
  std::int64_t now = Detail::TraceClockNs();
  if (!Detail::TraceWanted()) return;
  name_ = name;
  extra_ = extra;
  Detail::WriteInstantEvent(name_, extra_, now);
}

ScopedLogSlowExecution::ScopedLogSlowExecution(const std::string& name, std::chrono::microseconds limit)
    : ScopedLogSlowExecution(name, std::string(), limit) {}

ScopedLogSlowExecution::ScopedLogSlowExecution(const std::string& name, const std::string& extra,
                                               std::chrono::microseconds limit)
    : name_(name), extra_(extra), limit_(limit.count()), start_(Detail::TraceClockNs()) {}

ScopedLogSlowExecution::~ScopedLogSlowExecution() {
  end_ = Detail::TraceClockNs();
  std::int64_t elapsed = end_ - start_;
  if (elapsed > limit_ * 1000 && Detail::TraceWanted()) Detail::WriteSlowEvent(name_, extra_, start_, elapsed);
}

}  // namespace Kf
