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
namespace Detail {

// The shared shape of both mutex types and of their scoped guards.
template <class StdMutex>
class BasicMutex {
 public:
  BasicMutex() = default;
  BasicMutex(const BasicMutex&) = delete;
  BasicMutex& operator=(const BasicMutex&) = delete;

  void Lock() { mutex_.lock(); }
  void Unlock() { mutex_.unlock(); }
  bool TryLock() { return mutex_.try_lock(); }

  // Standard Lockable spelling.
  void lock() { mutex_.lock(); }
  void unlock() { mutex_.unlock(); }
  bool try_lock() { return mutex_.try_lock(); }

 private:
  StdMutex mutex_;
};

template <class MutexT>
class [[nodiscard]] BasicScopedLock {
 public:
  explicit BasicScopedLock(MutexT& mutex) : mutex_(mutex) { mutex_.Lock(); }
  ~BasicScopedLock() { mutex_.Unlock(); }
  BasicScopedLock(const BasicScopedLock&) = delete;
  BasicScopedLock& operator=(const BasicScopedLock&) = delete;

 private:
  MutexT& mutex_;
};

}  // namespace Detail

class Mutex : public Detail::BasicMutex<std::mutex> {};
class RecursiveMutex : public Detail::BasicMutex<std::recursive_mutex> {};

// Holds a Mutex for the lifetime of the guard.
class [[nodiscard]] ScopedLock : public Detail::BasicScopedLock<Mutex> {
 public:
  using BasicScopedLock::BasicScopedLock;
};

// Holds a RecursiveMutex for the lifetime of the guard.
class [[nodiscard]] ScopedRecursiveLock : public Detail::BasicScopedLock<RecursiveMutex> {
 public:
  using BasicScopedLock::BasicScopedLock;
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

}  // namespace IdeUtil
