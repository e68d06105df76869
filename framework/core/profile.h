// Internal: the scoped-profile facility behind the library's profiling tasks
// ("KfIdleTimeProcessing", "KfPersistentStorageLoad", ...).
//
//   static Kf::Detail::ProfileTask task("KfIdleTimeProcessing");
//   Kf::Detail::ScopedProfile profile(task);   // times this scope
//
// Each task counts its runs and their total time. An observer (the trace file)
// may be installed to see every begin and end.
//
// Threads: any. Counters are atomics; the observer pointer is atomic and the
// observer is called with no lock held.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace Kf::Detail {

class ProfileTask {
 public:
  explicit constexpr ProfileTask(const char* name) : name_(name) {}
  const char* Name() const { return name_; }

  void Record(std::chrono::nanoseconds elapsed) {
    count_.fetch_add(1, std::memory_order_relaxed);
    totalNs_.fetch_add(static_cast<std::uint64_t>(elapsed.count()), std::memory_order_relaxed);
  }
  std::uint64_t Count() const { return count_.load(std::memory_order_relaxed); }
  std::chrono::nanoseconds Total() const {
    return std::chrono::nanoseconds(totalNs_.load(std::memory_order_relaxed));
  }

 private:
  const char* name_;
  std::atomic<std::uint64_t> count_{0};
  std::atomic<std::uint64_t> totalNs_{0};
};

// Told of every profiled scope's begin (begin == true) and end.
using ProfileObserver = void (*)(const ProfileTask& task, bool begin);
void SetProfileObserver(ProfileObserver observer);
ProfileObserver GetProfileObserver();

class ScopedProfile {
 public:
  explicit ScopedProfile(ProfileTask& task) : task_(task), start_(std::chrono::steady_clock::now()) {
    if (ProfileObserver observer = GetProfileObserver()) observer(task_, true);
  }
  ~ScopedProfile() {
    task_.Record(std::chrono::steady_clock::now() - start_);
    if (ProfileObserver observer = GetProfileObserver()) observer(task_, false);
  }
  ScopedProfile(const ScopedProfile&) = delete;
  ScopedProfile& operator=(const ScopedProfile&) = delete;

 private:
  ProfileTask& task_;
  std::chrono::steady_clock::time_point start_;
};

}  // namespace Kf::Detail
