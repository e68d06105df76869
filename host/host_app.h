// The reference host's application: its message loop, its tour of the
// library's services and its subcommands.
//
// Tour steps and subcommands register themselves from their own files:
//
//   static OrvaneHost::TourStep step(20, "Idle chores", [](OrvaneHost::HostApp& app) { ... });
//   static OrvaneHost::Subcommand keys("keys", "keys list | bind KEY CMD", [](OrvaneHost::HostApp& app,
//       const std::vector<std::string>& args) { ...; return 0; });
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

#include "console_host.h"

namespace OrvaneHost {

// The host's message loop: posted tasks are its messages; when none is
// waiting it runs idle passes of the library, as an IDE's loop does.
// Threads: Post and Wake may be called from any thread; Run and RunIdle only
// on the main (UI) thread.
class HostApp {
 public:
  explicit HostApp(std::ostream& out);
  ~HostApp();

  std::ostream& Out() { return out_; }
  ConsoleHost& Host() { return host_; }

  // Queues a task for the UI thread and wakes the loop.
  void Post(std::function<void()> task);
  // Processes messages and idle passes until `done` returns true (checked
  // after every message and idle period) or `timeout` expires.
  bool RunUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout);
  // One idle period: idle passes with a growing count while a chore wants
  // more time. Returns the number of passes.
  int RunIdle();

 private:
  void Wake();

  std::ostream& out_;
  ConsoleHost host_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::function<void()>> messages_;  // guarded by mutex_
  bool woken_ = false;                          // guarded by mutex_
};

class TourStep {
 public:
  using Run = std::function<void(HostApp&)>;
  TourStep(int order, std::string title, Run run);
  static std::vector<TourStep*> All();  // in order
  int order;
  std::string title;
  Run run;
};

class Subcommand {
 public:
  using Run = std::function<int(HostApp&, const std::vector<std::string>& args)>;
  Subcommand(std::string name, std::string usage, Run run);
  static Subcommand* Find(const std::string& name);
  static std::vector<Subcommand*> All();  // by name
  std::string name;
  std::string usage;
  Run run;
};

}  // namespace OrvaneHost
