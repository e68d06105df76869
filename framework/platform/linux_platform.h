// The built-in platform implementation for Linux (and other POSIX systems).
// Internal to the library; reached through Kf::Platform::Native().
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <mutex>

#include "orvane/platform.h"

namespace Kf::Platform {

// Threads: any. env_mutex_ serialises the library's own environment access
// (getenv/setenv are not safe against each other); wake_mutex_ guards the wake
// handler, which is called without the lock held.
class LinuxPlatform final : public IPlatform {
 public:
  bool GetEnv(const std::string& name, std::string& value) override;
  bool SetEnv(const std::string& name, const std::string& value) override;
  bool UnsetEnv(const std::string& name) override;
  char PathListSeparator() const override { return ':'; }
  bool GetCurrentDirectory(GePath& out) override;
  std::string GetUserName() override;
  std::string FormatShortDate(std::chrono::system_clock::time_point when) override;
  std::vector<std::string> GetUserLocales() override;
  bool IsKeyDown(Key key) override;
  void WakeIdleLoop() override;
  bool GetKnownFolder(KnownFolder folder, GePath& out) override;
  bool GetCommonBinDirectory(GePath& out) override;
  bool GetExecutablePath(GePath& out) override;
  std::uint32_t GetProcessId() override;
  void SetCurrentThreadName(const std::string& name) override;
  std::string GetCurrentThreadName() override;
  bool GetFileIdentity(const GePath& file, FileIdentity& out) override;
  std::uint64_t GetCurrentThreadId() override;
  bool SetMessagesLocale(const std::string& name) override;

  void FeedKeyState(Key key, bool down);
  void SetIdleWakeHandler(std::function<void()> handler);

 private:
  std::mutex env_mutex_;
  std::array<std::atomic<bool>, static_cast<size_t>(Key::kCount)> keys_{};
  std::mutex wake_mutex_;
  std::function<void()> wake_handler_;  // guarded by wake_mutex_
};

LinuxPlatform& LinuxNative();

}  // namespace Kf::Platform
