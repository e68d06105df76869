#include "support/fake_platform.h"

namespace Kf::Testing {

namespace {
thread_local std::string t_name;
}

FakePlatform::FakePlatform() {
  folders[Kf::Platform::KnownFolder::Home] = GePath("/home/tester");
  folders[Kf::Platform::KnownFolder::UserConfig] = GePath("/home/tester/.config");
  folders[Kf::Platform::KnownFolder::UserData] = GePath("/home/tester/.local/share");
  folders[Kf::Platform::KnownFolder::UserCache] = GePath("/home/tester/.cache");
  folders[Kf::Platform::KnownFolder::Temp] = GePath("/tmp");
  folders[Kf::Platform::KnownFolder::Documents] = GePath("/home/tester/Documents");
}

bool FakePlatform::GetEnv(const std::string& name, std::string& value) {
  std::lock_guard<std::mutex> lock(mutex_);
  auto it = env_.find(name);
  if (it == env_.end()) return false;
  value = it->second;
  return true;
}

bool FakePlatform::SetEnv(const std::string& name, const std::string& value) {
  std::lock_guard<std::mutex> lock(mutex_);
  env_[name] = value;
  return true;
}

bool FakePlatform::UnsetEnv(const std::string& name) {
  std::lock_guard<std::mutex> lock(mutex_);
  env_.erase(name);
  return true;
}

bool FakePlatform::GetCurrentDirectory(GePath& out) {
  out = currentDirectory;
  return true;
}

std::string FakePlatform::GetUserName() { return userName; }

std::string FakePlatform::FormatShortDate(std::chrono::system_clock::time_point) { return shortDate; }

std::vector<std::string> FakePlatform::GetUserLocales() { return locales; }

bool FakePlatform::IsKeyDown(Kf::Platform::Key key) { return keys_[static_cast<int>(key)].load(); }

void FakePlatform::SetKeyDown(Kf::Platform::Key key, bool down) { keys_[static_cast<int>(key)].store(down); }

bool FakePlatform::GetKnownFolder(Kf::Platform::KnownFolder folder, GePath& out) {
  auto it = folders.find(folder);
  if (it == folders.end()) return false;
  out = it->second;
  return true;
}

bool FakePlatform::GetCommonBinDirectory(GePath& out) {
  if (commonBinDirectory.IsEmpty()) return false;
  out = commonBinDirectory;
  return true;
}

bool FakePlatform::GetExecutablePath(GePath& out) {
  out = executablePath;
  return true;
}

void FakePlatform::SetCurrentThreadName(const std::string& name) {
  t_name = name;
  std::lock_guard<std::mutex> lock(mutex_);
  threadNames_.push_back(name);
}

std::string FakePlatform::GetCurrentThreadName() { return t_name; }

bool FakePlatform::SetMessagesLocale(const std::string& name) {
  messagesLocale = name;
  return true;
}

std::vector<std::string> FakePlatform::ThreadNames() {
  std::lock_guard<std::mutex> lock(mutex_);
  return threadNames_;
}

}  // namespace Kf::Testing
