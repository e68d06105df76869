// The built-in Linux platform implementation.
#include <gtest/gtest.h>

#include <filesystem>

#include "orvane/events.h"
#include "orvane/platform.h"
#include "support/fake_platform.h"

namespace {

using Kf::Platform::KnownFolder;

// Sets (or unsets) a real environment variable for one scope.
class ScopedEnv {
 public:
  ScopedEnv(std::string name, const char* value) : name_(std::move(name)), hadOld_(native_.GetEnv(name_, old_)) {
    Set(value);
  }
  ~ScopedEnv() { Set(hadOld_ ? old_.c_str() : nullptr); }

 private:
  void Set(const char* value) { value ? (void)native_.SetEnv(name_, value) : (void)native_.UnsetEnv(name_); }
  Kf::Platform::IPlatform& native_ = Kf::Platform::Native();
  std::string name_, old_;
  bool hadOld_;
};

TEST(LinuxPlatform, EnvironmentRoundTrip) {
  auto& native = Kf::Platform::Native();
  ScopedEnv guard("ORVANE_TEST_VARIABLE", "first");
  std::string value;
  ASSERT_TRUE(native.GetEnv("ORVANE_TEST_VARIABLE", value));
  EXPECT_EQ(value, "first");
  EXPECT_TRUE(native.UnsetEnv("ORVANE_TEST_VARIABLE"));
  value = "untouched";
  EXPECT_FALSE(native.GetEnv("ORVANE_TEST_VARIABLE", value));
  EXPECT_EQ(value, "untouched");
  EXPECT_EQ(native.PathListSeparator(), ':');
}

TEST(LinuxPlatform, KnownFoldersFollowXdgWithHomeFallback) {
  auto& native = Kf::Platform::Native();
  ScopedEnv home("HOME", "/home/someone");
  GePath out;
  {
    ScopedEnv xdg("XDG_CONFIG_HOME", "/custom/config");
    ASSERT_TRUE(native.GetKnownFolder(KnownFolder::UserConfig, out));
    EXPECT_EQ(out, GePath("/custom/config"));
  }
  {
    ScopedEnv relative("XDG_CONFIG_HOME", "relative/ignored");
    ASSERT_TRUE(native.GetKnownFolder(KnownFolder::UserConfig, out));
    EXPECT_EQ(out, GePath("/home/someone/.config"));
  }
  ScopedEnv noData("XDG_DATA_HOME", nullptr);
  ASSERT_TRUE(native.GetKnownFolder(KnownFolder::UserData, out));
  EXPECT_EQ(out, GePath("/home/someone/.local/share"));
}

TEST(LinuxPlatform, UserLocalesInPosixPrecedence) {
  auto& native = Kf::Platform::Native();
  ScopedEnv language("LANGUAGE", "ja:en");
  ScopedEnv all("LC_ALL", nullptr);
  ScopedEnv messages("LC_MESSAGES", "C");
  ScopedEnv lang("LANG", "ja_JP.UTF-8");
  EXPECT_EQ(native.GetUserLocales(), (std::vector<std::string>{"ja", "en", "ja_JP.UTF-8"}));
}

TEST(LinuxPlatform, ProcessFactsAndCommonBinaries) {
  auto& native = Kf::Platform::Native();
  GePath exe, bin;
  ASSERT_TRUE(native.GetExecutablePath(exe));
  EXPECT_TRUE(std::filesystem::exists(exe.Native()));
  ASSERT_TRUE(Kf::GetCommonBinPath(bin));
  EXPECT_TRUE(std::filesystem::is_directory(bin.Native()));
  EXPECT_GT(native.GetProcessId(), 0u);
  EXPECT_FALSE(native.FormatShortDate(std::chrono::system_clock::now()).empty());
  EXPECT_FALSE(native.GetUserName().empty());
}

TEST(LinuxPlatform, HostFedKeyStateAndWakeHandler) {
  using Kf::Platform::Key;
  auto& native = Kf::Platform::Native();
  EXPECT_FALSE(native.IsKeyDown(Key::Control));
  Kf::Platform::FeedKeyState(Key::Control, true);
  EXPECT_TRUE(native.IsKeyDown(Key::Control));
  Kf::Platform::FeedKeyState(Key::Control, false);
  EXPECT_FALSE(native.IsKeyDown(Key::Control));

  int wakes = 0;
  native.WakeIdleLoop();  // no handler: nothing happens
  Kf::Platform::SetIdleWakeHandler([&] { ++wakes; });
  native.WakeIdleLoop();
  Kf::Platform::SetIdleWakeHandler({});
  native.WakeIdleLoop();
  EXPECT_EQ(wakes, 1);
}

TEST(PlatformRegistry, InstalledPlatformIsUsedUntilRemoved) {
  {
    Kf::Testing::ScopedFakePlatform fake;
    fake->commonBinDirectory = GePath("/fake/bin");
    GePath bin;
    ASSERT_TRUE(Kf::GetCommonBinPath(bin));
    EXPECT_EQ(bin, GePath("/fake/bin"));
    fake->commonBinDirectory = GePath();
    GePath unchanged("/keep");
    EXPECT_FALSE(Kf::GetCommonBinPath(unchanged));
    EXPECT_EQ(unchanged, GePath("/keep"));
  }
  EXPECT_EQ(&Kf::Platform::Current(), &Kf::Platform::Native());
}

}  // namespace
