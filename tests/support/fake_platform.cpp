#include "support/fake_platform.h"

namespace Kf::Testing {

namespace {
thread_local std::string t_name;
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

void FakePlatform::SetCurrentThreadName(const std::string& name) {
  t_name = name;
  std::lock_guard<std::mutex> lock(mutex_);
  threadNames_.push_back(name);
}

std::string FakePlatform::GetCurrentThreadName() { return t_name; }

std::vector<std::string> FakePlatform::ThreadNames() {
  std::lock_guard<std::mutex> lock(mutex_);
  return threadNames_;
}

}  // namespace Kf::Testing
