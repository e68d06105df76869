#include "host_app.h"

#include <algorithm>
#include <chrono>
#include <ostream>

#include "orvane/idle.h"
#include "orvane/platform.h"

namespace OrvaneHost {
namespace {

std::vector<TourStep*>& TourRegistry() {
  static std::vector<TourStep*> steps;
  return steps;
}

std::vector<Subcommand*>& SubcommandRegistry() {
  static std::vector<Subcommand*> commands;
  return commands;
}

}  // namespace

HostApp::HostApp(std::ostream& out) : out_(out), host_(out) {
  Kf::HostUtil::RegisterHost(&host_);
  // KfIdleChoreImpl::Nudge reaches this loop through the platform layer.
  Kf::Platform::SetIdleWakeHandler([this] { Wake(); });
}

HostApp::~HostApp() {
  Kf::Platform::SetIdleWakeHandler({});
  Kf::HostUtil::UnregisterHost(&host_);
}

void HostApp::Post(std::function<void()> task) {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    messages_.push_back(std::move(task));
  }
  wake_.notify_one();
}

void HostApp::Wake() {
  {
    std::lock_guard<std::mutex> lock(mutex_);
    woken_ = true;
  }
  wake_.notify_one();
}

int HostApp::RunIdle() {
  int passes = 0;
  for (long idleCount = 0;; ++idleCount) {
    ++passes;
    if (!KfIdleChoreImpl::IdleTime(idleCount, /*foreground=*/true)) break;
    std::lock_guard<std::mutex> lock(mutex_);
    if (!messages_.empty()) break;  // messages first, as a real loop does
  }
  return passes;
}

bool HostApp::RunUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  for (;;) {
    std::function<void()> task;
    {
      std::unique_lock<std::mutex> lock(mutex_);
      if (!messages_.empty()) {
        task = std::move(messages_.front());
        messages_.pop_front();
      }
    }
    if (task) {
      task();
    } else {
      RunIdle();
    }
    if (done()) return true;
    if (task) continue;
    std::unique_lock<std::mutex> lock(mutex_);
    if (!wake_.wait_until(lock, deadline, [this] { return woken_ || !messages_.empty(); })) return done();
    woken_ = false;
  }
}

TourStep::TourStep(int o, std::string t, Run r) : order(o), title(std::move(t)), run(std::move(r)) {
  TourRegistry().push_back(this);
}

std::vector<TourStep*> TourStep::All() {
  std::vector<TourStep*> steps = TourRegistry();
  std::stable_sort(steps.begin(), steps.end(), [](TourStep* a, TourStep* b) { return a->order < b->order; });
  return steps;
}

Subcommand::Subcommand(std::string n, std::string u, Run r) : name(std::move(n)), usage(std::move(u)), run(std::move(r)) {
  SubcommandRegistry().push_back(this);
}

Subcommand* Subcommand::Find(const std::string& wanted) {
  for (Subcommand* command : SubcommandRegistry())
    if (command->name == wanted) return command;
  return nullptr;
}

std::vector<Subcommand*> Subcommand::All() {
  std::vector<Subcommand*> commands = SubcommandRegistry();
  std::sort(commands.begin(), commands.end(), [](Subcommand* a, Subcommand* b) { return a->name < b->name; });
  return commands;
}

}  // namespace OrvaneHost
