// GeThread: a named thread that runs a GeThread::Start runnable.
//
//   class Fetcher : public GeThread::Start {
//     void Run() override { ... }
//   };
//   Fetcher fetcher;
//   GeThread thread(fetcher, "List window proxy");
//   thread.Launch();
//   ...
//   thread.Join();
//
// The thread carries its name in the platform's thread list (for debuggers and
// crash reports) from its first instruction. An exception that escapes Run()
// is caught at the thread's boundary and reported to the library's log; it
// never terminates the process.
//
// Threads: Launch, Join and the destructor are called by the owner, one thread
// at a time; IsRunning may be asked from any thread. The destructor joins.
#pragma once

#include <memory>
#include <string>

#include "orvane/export.h"

class ORVANE_API GeThread {
 public:
  // The work a thread runs. The runnable must outlive the run.
  class ORVANE_API Start {
   public:
    virtual ~Start();
    virtual void Run() = 0;
  };

  GeThread(Start& runnable, std::string name);
  ~GeThread();
  GeThread(const GeThread&) = delete;
  GeThread& operator=(const GeThread&) = delete;

  // Starts the thread; false when it was already launched and not joined.
  [[nodiscard]] bool Launch();
  // Waits for Run() to return; does nothing when the thread is not launched or
  // when called from the thread itself.
  void Join();
  // True from Launch until Run() has returned.
  bool IsRunning() const;
  const std::string& Name() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
