// A platform layer for tests: an in-memory environment, settable date, user,
// locales, folders and key states, and counted wake-ups. Install it for the
// lifetime of a test with ScopedFakePlatform.
#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "orvane/platform.h"

namespace Kf::Testing {

class FakePlatform : public Kf::Platform::IPlatform {
 public:
  bool GetEnv(const std::string& name, std::string& value) override;
  bool SetEnv(const std::string& name, const std::string& value) override;
  bool UnsetEnv(const std::string& name) override;
  char PathListSeparator() const override { return separator; }
  bool GetCurrentDirectory(GePath& out) override {
    out = currentDirectory;
    return true;
  }
  std::string GetUserName() override { return userName; }
  std::string FormatShortDate(std::chrono::system_clock::time_point) override { return shortDate; }
  std::vector<std::string> GetUserLocales() override { return locales; }
  bool IsKeyDown(Kf::Platform::Key key) override { return keys_[static_cast<int>(key)].load(); }
  void WakeIdleLoop() override { ++wakeCount; }
  bool GetKnownFolder(Kf::Platform::KnownFolder folder, GePath& out) override;
  bool GetCommonBinDirectory(GePath& out) override;
  bool GetExecutablePath(GePath& out) override {
    out = executablePath;
    return true;
  }
  std::uint32_t GetProcessId() override { return processId; }
  void SetCurrentThreadName(const std::string& name) override;
  std::string GetCurrentThreadName() override;
  // Files are real in tests: these forward to the built-in platform.
  bool GetFileIdentity(const GePath& file, Kf::Platform::FileIdentity& out) override {
    return Kf::Platform::Native().GetFileIdentity(file, out);
  }
  std::uint64_t GetCurrentThreadId() override { return Kf::Platform::Native().GetCurrentThreadId(); }
  bool SetMessagesLocale(const std::string& name) override {
    messagesLocale = name;  // the real locale is not touched
    return true;
  }

  void SetKeyDown(Kf::Platform::Key key, bool down) { keys_[static_cast<int>(key)].store(down); }
  // Names given to threads so far, in order.
  std::vector<std::string> ThreadNames();

  // Plain settings; set them before the code under test runs.
  char separator = ':';
  std::string userName = "tester";
  std::string shortDate = "11/22/2026";
  std::vector<std::string> locales{"en_US.UTF-8"};
  GePath currentDirectory{"/work/current"};
  GePath commonBinDirectory{"/opt/orvane/bin"};
  GePath executablePath{"/opt/orvane/bin/host"};
  std::map<Kf::Platform::KnownFolder, GePath> folders{
      {Kf::Platform::KnownFolder::Home, GePath("/home/tester")},
      {Kf::Platform::KnownFolder::UserConfig, GePath("/home/tester/.config")},
      {Kf::Platform::KnownFolder::UserData, GePath("/home/tester/.local/share")},
      {Kf::Platform::KnownFolder::UserCache, GePath("/home/tester/.cache")},
      {Kf::Platform::KnownFolder::Temp, GePath("/tmp")},
      {Kf::Platform::KnownFolder::Documents, GePath("/home/tester/Documents")}};
  std::uint32_t processId = 4242;
  std::atomic<int> wakeCount{0};
  std::string messagesLocale;  // the last SetMessagesLocale name

 private:
  std::mutex mutex_;
  std::map<std::string, std::string> env_;  // guarded by mutex_
  std::vector<std::string> threadNames_;    // guarded by mutex_
  std::atomic<bool> keys_[static_cast<int>(Kf::Platform::Key::kCount)] = {};
};

// Installs a FakePlatform for the lifetime of the guard.
class ScopedFakePlatform {
 public:
  ScopedFakePlatform() { Kf::Platform::SetPlatform(&fake_); }
  ~ScopedFakePlatform() { Kf::Platform::SetPlatform(nullptr); }
  FakePlatform& operator*() { return fake_; }
  FakePlatform* operator->() { return &fake_; }

 private:
  FakePlatform fake_;
};

}  // namespace Kf::Testing
