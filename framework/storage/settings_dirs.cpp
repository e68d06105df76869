#include <filesystem>
#include <system_error>

#include "orvane/platform.h"
#include "orvane/storage.h"
#include "storage/storage_impl.h"

namespace Kf::Storage::Detail {

bool GetBaseSettingsDirectory(GePath& out) {
  Kf::Platform::IPlatform& platform = Kf::Platform::Current();
  std::string redirected;
  if (platform.GetEnv("ORVANE_SETTINGS_DIR", redirected) && !redirected.empty()) {
    out = GePath(redirected);
    return true;
  }
  GePath config;
  if (!platform.GetKnownFolder(Kf::Platform::KnownFolder::UserConfig, config) || config.IsEmpty()) return false;
  out = config / "orvane";
  return true;
}

}  // namespace Kf::Storage::Detail

bool KfGetOptionStorageDirectory(GePath& out) {
  GePath base;
  if (!Kf::Storage::Detail::GetBaseSettingsDirectory(base)) return false;
  GePath directory = base / "Global";
  std::error_code ec;
  std::filesystem::create_directories(directory.Native(), ec);
  if (!std::filesystem::is_directory(directory.Native(), ec)) return false;
  out = directory;
  return true;
}
