// The framework's lock wrappers and scoped guards.
//
// Every registry that more than one thread touches uses these instead of bare
// standard mutexes, so that lock usage reads the same everywhere:
//
//   IdeUtil::Mutex mutex_;
//   ...
//   IdeUtil::ScopedLock lock(mutex_);   // held until the end of the scope
//
// Both mutex types also satisfy the standard Lockable requirements
// (lock/unlock/try_lock), so they work with std::condition_variable_any.
//
// Threads: any. A Mutex is not recursive; locking it twice on one thread
// deadlocks. A RecursiveMutex may be taken again by the thread that holds it.
#pragma once

#include <mutex>

namespace IdeUtil {

class Mutex {
 public:
  Mutex() = default;
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  void Lock() { mutex_.lock(); }
  void Unlock() { mutex_.unlock(); }
  [[nodiscard]] bool TryLock() { return mutex_.try_lock(); }

  // Standard Lockable spelling.
  void lock() { mutex_.lock(); }
  void unlock() { mutex_.unlock(); }
  [[nodiscard]] bool try_lock() { return mutex_.try_lock(); }

 private:
  std::mutex mutex_;
};

class RecursiveMutex {
 public:
  RecursiveMutex() = default;
  RecursiveMutex(const RecursiveMutex&) = delete;
  RecursiveMutex& operator=(const RecursiveMutex&) = delete;

  void Lock() { mutex_.lock(); }
  void Unlock() { mutex_.unlock(); }
  [[nodiscard]] bool TryLock() { return mutex_.try_lock(); }

  void lock() { mutex_.lock(); }
  void unlock() { mutex_.unlock(); }
  [[nodiscard]] bool try_lock() { return mutex_.try_lock(); }

 private:
  std::recursive_mutex mutex_;
};

// Holds a Mutex for the lifetime of the guard.
class [[nodiscard]] ScopedLock {
 public:
  explicit ScopedLock(Mutex& mutex) : mutex_(mutex) { mutex_.Lock(); }
  ~ScopedLock() { mutex_.Unlock(); }
  ScopedLock(const ScopedLock&) = delete;
  ScopedLock& operator=(const ScopedLock&) = delete;

 private:
  Mutex& mutex_;
};

// Tries once to take a Mutex; IsLocked() tells whether it succeeded. The mutex
// is released at the end of the scope only if it was taken.
class [[nodiscard]] ScopedTryLock {
 public:
  explicit ScopedTryLock(Mutex& mutex) : mutex_(mutex), locked_(mutex.TryLock()) {}
  ~ScopedTryLock() {
    if (locked_) mutex_.Unlock();
  }
  ScopedTryLock(const ScopedTryLock&) = delete;
  ScopedTryLock& operator=(const ScopedTryLock&) = delete;

  bool IsLocked() const { return locked_; }
  explicit operator bool() const { return locked_; }

 private:
  Mutex& mutex_;
  bool locked_;
};

// Holds a RecursiveMutex for the lifetime of the guard.
class [[nodiscard]] ScopedRecursiveLock {
 public:
  explicit ScopedRecursiveLock(RecursiveMutex& mutex) : mutex_(mutex) { mutex_.Lock(); }
  ~ScopedRecursiveLock() { mutex_.Unlock(); }
  ScopedRecursiveLock(const ScopedRecursiveLock&) = delete;
  ScopedRecursiveLock& operator=(const ScopedRecursiveLock&) = delete;

 private:
  RecursiveMutex& mutex_;
};

}  // namespace IdeUtil
