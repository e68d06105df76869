// A host utility object for tests: records message boxes and answers with a
// scripted button; the UI thread is the thread that created it.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "orvane/hostutil.h"

namespace Kf::Testing {

class TestHost : public Kf::HostUtil::IHostUtil {
 public:
  struct Box {
    std::string text;
    std::string caption;
    MsgIcon icon;
    MsgKind kind;
    MsgButton defaultButton;
    std::string dontAskKey;
    bool operator==(const Box&) const = default;
  };

  MsgButton MsgBox(const std::string& text, const std::string& caption, MsgIcon icon, MsgKind kind,
                   MsgButton defaultButton, const std::string& dontAskKey) override {
    std::lock_guard<std::mutex> lock(mutex_);
    boxes_.push_back({text, caption, icon, kind, defaultButton, dontAskKey});
    return answer;
  }
  bool IsSafeUIThread() override { return std::this_thread::get_id() == uiThread_; }

  std::vector<Box> Boxes() {
    std::lock_guard<std::mutex> lock(mutex_);
    return boxes_;
  }

  MsgButton answer = BtnOk;

 private:
  std::thread::id uiThread_ = std::this_thread::get_id();
  std::mutex mutex_;
  std::vector<Box> boxes_;  // guarded by mutex_
};

// Registers a TestHost for the lifetime of the guard.
class ScopedTestHost {
 public:
  ScopedTestHost() { Kf::HostUtil::RegisterHost(&host_); }
  ~ScopedTestHost() { Kf::HostUtil::UnregisterHost(&host_); }
  TestHost& operator*() { return host_; }
  TestHost* operator->() { return &host_; }

 private:
  TestHost host_;
};

}  // namespace Kf::Testing
