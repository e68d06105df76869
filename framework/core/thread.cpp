#include "orvane/thread.h"

#include <atomic>
#include <exception>
#include <thread>

#include "core/diagnostics.h"
#include "orvane/platform.h"

struct GeThread::Impl {
  Impl(Start& r, std::string n) : runnable(r), name(std::move(n)) {}
  Start& runnable;
  std::string name;
  std::thread thread;
  std::atomic<bool> running{false};
};

GeThread::Start::~Start() = default;

GeThread::GeThread(Start& runnable, std::string name)
    : impl_(std::make_unique<Impl>(runnable, std::move(name))) {}

GeThread::~GeThread() {
  if (!impl_->thread.joinable()) return;
  // A thread that destroys its own GeThread cannot join itself; it lets the
  // run finish on its own.
  if (impl_->thread.get_id() == std::this_thread::get_id())
    impl_->thread.detach();
  else
    impl_->thread.join();
}

bool GeThread::Launch() {
  if (impl_->thread.joinable()) return false;
  impl_->running.store(true);
  impl_->thread = std::thread([impl = impl_.get()] {
    Kf::Platform::Current().SetCurrentThreadName(impl->name);
    try {
      impl->runnable.Run();
    } catch (const std::exception& e) {
      Kf::Detail::ReportError("thread \"" + impl->name + "\"", e.what());
    } catch (...) {
      Kf::Detail::ReportError("thread \"" + impl->name + "\"", "unknown exception");
    }
    impl->running.store(false);
  });
  return true;
}

void GeThread::Join() {
  if (!impl_->thread.joinable() || impl_->thread.get_id() == std::this_thread::get_id()) return;
  impl_->thread.join();
}

bool GeThread::IsRunning() const { return impl_->running.load(); }

const std::string& GeThread::Name() const { return impl_->name; }
