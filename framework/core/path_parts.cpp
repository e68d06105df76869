#include "core/path_parts.h"

#include <atomic>

#include "core/diagnostics.h"
#include "orvane/platform.h"

namespace Kf {

namespace Detail {

namespace {

constexpr const char* kPathVariable = "PATH";

std::atomic<PathPartManager*> g_instance{nullptr};

}  // namespace

PathPartManager::PathPartManager() {
  initialPathSet_ = Platform::Current().GetEnv(kPathVariable, initialPath_);
  if (!initialPathSet_) initialPath_.clear();
}

PathPartManager& PathPartManager::Instance() {
  static PathPartManager* instance = [] {
    auto* manager = new PathPartManager();
    g_instance.store(manager, std::memory_order_release);
    return manager;
  }();
  return *instance;
}

PathPartManager* PathPartManager::IfCreated() { return g_instance.load(std::memory_order_acquire); }

void PathPartManager::Install(PathVariablePart* part, const std::list<GePath>& dirs) {
  if (!part) return;
  const char separator = Platform::Current().PathListSeparator();
  std::string contribution;
  for (const GePath& dir : dirs) {
    if (dir.IsEmpty()) continue;
    std::string text = dir.ToString();
    if (text.find(separator) != std::string::npos) {
      ReportError("InstallPathPart", "directory \"" + text + "\" contains the PATH list separator '" +
                                         std::string(1, separator) + "' and was left out of PATH");
      continue;
    }
    contribution += text;
    contribution += separator;
  }
  IdeUtil::ScopedLock lock(mutex_);
  parts_[part] = std::move(contribution);
  RewriteLocked();
}

void PathPartManager::Uninstall(PathVariablePart* part) {
  IdeUtil::ScopedLock lock(mutex_);
  parts_.erase(part);
  RewriteLocked();
}

bool PathPartManager::UninstallIfInstalled(PathVariablePart* part) {
  IdeUtil::ScopedLock lock(mutex_);
  if (parts_.erase(part) == 0) return false;
  RewriteLocked();
  return true;
}

std::string PathPartManager::ComposePath() {
  IdeUtil::ScopedLock lock(mutex_);
  return ComposeLocked();
}

std::string PathPartManager::ComposeLocked() const {
  // Each part in ascending key order goes in front of what is there, so the
  // part with the highest key stands first.
  std::string path = initialPath_;
  for (const auto& [part, contribution] : parts_) path.insert(0, contribution);
  // Contributions end with a separator; with nothing behind them that would
  // leave an empty entry, which POSIX reads as the current directory.
  if (initialPath_.empty() && !path.empty()) path.pop_back();
  return path;
}

void PathPartManager::RewriteLocked() {
  Platform::IPlatform& platform = Platform::Current();
  std::string path = ComposeLocked();
  bool written = (path.empty() && !initialPathSet_) ? platform.UnsetEnv(kPathVariable)
                                                    : platform.SetEnv(kPathVariable, path);
  if (!written) ReportError("PathPart", "could not set the PATH environment variable");
}

}  // namespace Detail

PathVariablePart::~PathVariablePart() {
  if (Detail::PathPartManager* manager = Detail::PathPartManager::IfCreated()) manager->UninstallIfInstalled(this);
}

void InstallPathPart(PathVariablePart* part, const std::list<GePath>& dirs) {
  Detail::PathPartManager::Instance().Install(part, dirs);
}

void UninstallPathPart(PathVariablePart* part) { Detail::PathPartManager::Instance().Uninstall(part); }

}  // namespace Kf
