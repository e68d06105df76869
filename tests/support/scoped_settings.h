// Private settings roots for tests, so no test ever touches the real user's
// settings.
//
//   Kf::Testing::ScopedSettingsDir dir;        // ORVANE_SETTINGS_DIR -> a fresh temp dir
//   Kf::Testing::ScopedGlobalStorage global;   // also a fresh "Global" storage in it
//   global->Store("Section", "Key", 1u);
//
// ScopedSettingsDir sets the variable through the platform in use (the fake
// one when a ScopedFakePlatform is active, else the real environment) and puts
// back the previous value when it ends; the directory is removed.
// ScopedGlobalStorage registers its own "Global" storage, so
// KfPersistentStorage::GetStorage("Global") returns it for its lifetime.
#pragma once


#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "orvane/platform.h"
#include "orvane/storage.h"
#include "support/temp_path.h"

namespace Kf::Testing {

class ScopedSettingsDir {
 public:
  ScopedSettingsDir() {
    auto base = UniqueTempPath("orvane-test");
    std::error_code ec;
    std::filesystem::remove_all(base, ec);
    std::filesystem::create_directories(base, ec);
    dir_ = GePath::FromNative(base);
    auto& platform = Kf::Platform::Current();
    hadOld_ = platform.GetEnv("ORVANE_SETTINGS_DIR", old_);
    (void)platform.SetEnv("ORVANE_SETTINGS_DIR", dir_.ToString());
  }
  ~ScopedSettingsDir() {
    auto& platform = Kf::Platform::Current();
    (void)(hadOld_ ? platform.SetEnv("ORVANE_SETTINGS_DIR", old_) : platform.UnsetEnv("ORVANE_SETTINGS_DIR"));
    std::error_code ec;
    std::filesystem::remove_all(dir_.Native(), ec);
  }
  ScopedSettingsDir(const ScopedSettingsDir&) = delete;
  ScopedSettingsDir& operator=(const ScopedSettingsDir&) = delete;

  // The base settings directory.
  const GePath& Dir() const { return dir_; }
  // The option storage directory and the "Global" file inside it.
  GePath OptionDir() const { return dir_ / "Global"; }
  GePath GlobalFile() const { return OptionDir() / "QorIde.xml"; }

 private:
  GePath dir_;
  std::string old_;
  bool hadOld_ = false;
};

class ScopedGlobalStorage {
 public:
  ScopedGlobalStorage() : storage_(std::make_unique<KfPersistentStorage>("Global", dir_.GlobalFile())) {}
  KfPersistentStorage* operator->() { return storage_.get(); }
  KfPersistentStorage& operator*() { return *storage_; }
  KfPersistentStorage* get() { return storage_.get(); }
  const ScopedSettingsDir& Settings() const { return dir_; }

 private:
  ScopedSettingsDir dir_;
  std::unique_ptr<KfPersistentStorage> storage_;
};

}  // namespace Kf::Testing
