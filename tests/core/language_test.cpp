#include <gtest/gtest.h>
#include <libintl.h>

#include <filesystem>
#include <fstream>

#include "orvane/language.h"
#include "support/fake_platform.h"
#include "support/scoped_settings.h"

namespace {

namespace fs = std::filesystem;

// A fake installation: <root>/install/bin/x is the common-binaries directory,
// so <root>/install is the installation directory.
class Language : public ::testing::Test {
 protected:
  void SetUp() override {
    root = Kf::Testing::UniqueTempPath("orvane_language");
    fs::remove_all(root);
    fs::create_directories(root / "install" / "bin" / "x");
    platform->commonBinDirectory = GePath::FromNative(root / "install" / "bin" / "x");
    Kf::Test::ClearCurrentLanguageCache();
    Kf::SetNextSessionLanguage("");
  }
  void TearDown() override {
    Kf::Test::ClearCurrentLanguageCache();
    fs::remove_all(root);
  }
  void Install(const fs::path& relative) { fs::create_directories(root / "install" / relative); }

  Kf::Testing::ScopedFakePlatform platform;
  Kf::Testing::ScopedGlobalStorage global;  // a private settings root
  fs::path root;
};

TEST_F(Language, OnlyTheExactOverrideCodesWin) {
  Install("Language/ENU");
  platform->SetEnv("QOR_LOCALE", "JPN");
  EXPECT_EQ(Kf::GetCurrentLanguage(), "JPN");
  EXPECT_EQ(Kf::X::GetCurrentLanguage(), "JPN");
  for (const char* ignored : {"jpn", "JP", "JPN ", ""}) {
    platform->SetEnv("QOR_LOCALE", ignored);
    EXPECT_EQ(Kf::GetCurrentLanguage(), "ENU") << ignored;
  }
  // The override is not cached: it wins again as soon as it is set.
  platform->SetEnv("QOR_LOCALE", "JPN");
  EXPECT_EQ(Kf::GetCurrentLanguage(), "JPN");
}

TEST_F(Language, ASingleInstalledLanguageIsTheAnswerAndIsCached) {
  Install("Language/JPN");
  std::vector<Kf::LangStrings> installed;
  ASSERT_EQ(Kf::GetInstalledLanguages(&installed), 1u);
  EXPECT_EQ(installed[0], (Kf::LangStrings{"JPN", "日本語"}));
  EXPECT_EQ(Kf::GetCurrentLanguage(), "JPN");

  Install("Language/ENU");
  platform->locales = {"en_US.UTF-8"};
  EXPECT_EQ(Kf::GetCurrentLanguage(), "JPN");  // decided once per session
  Kf::Test::ClearCurrentLanguageCache();
  EXPECT_EQ(Kf::GetCurrentLanguage(), "ENU");
}

TEST_F(Language, ToolchainPacksCountButOtherFoldersDoNot) {
  Install("tools/Language/JPN");
  EXPECT_EQ(Kf::GetInstalledLanguages(nullptr), 0u);
  EXPECT_EQ(Kf::GetCurrentLanguage(), "ENU") << "nothing installed means English";
  Kf::Test::ClearCurrentLanguageCache();
  Install("rl78/Language/JPN");
  std::vector<Kf::LangStrings> installed;
  ASSERT_EQ(Kf::GetInstalledLanguages(&installed), 1u);
  EXPECT_EQ(installed[0].first, "JPN");
}

TEST_F(Language, SeveralInstalledChooseByNextSessionThenSystemLocale) {
  Install("Language/ENU");
  Install("rx/Language/JPN");
  ASSERT_EQ(Kf::GetInstalledLanguages(nullptr), 2u);

  platform->locales = {"de_DE.UTF-8", "ja_JP.UTF-8", "en_US.UTF-8"};
  EXPECT_EQ(Kf::GetCurrentLanguage(), "JPN");

  Kf::Test::ClearCurrentLanguageCache();
  platform->locales = {"de_DE.UTF-8"};
  EXPECT_EQ(Kf::GetCurrentLanguage(), "ENU");

  Kf::Test::ClearCurrentLanguageCache();
  platform->locales = {"ja_JP.UTF-8"};
  Kf::SetNextSessionLanguage("ENU");
  EXPECT_EQ(Kf::GetCurrentLanguage(), "ENU");

  Kf::Test::ClearCurrentLanguageCache();
  Kf::SetNextSessionLanguage("KOR");  // not installed: ignored
  EXPECT_EQ(Kf::GetCurrentLanguage(), "JPN");
}

TEST_F(Language, NextSessionLanguageLeavesTheCurrentOneAlone) {
  EXPECT_EQ(Kf::GetNextSessionLanguage(), "ENU");  // none stored: the current one
  Kf::SetNextSessionLanguage("JPN");
  EXPECT_EQ(Kf::GetCurrentLanguage(), "ENU");
  EXPECT_EQ(Kf::GetNextSessionLanguage(), "JPN");

  // It is in the settings file, where the next session will read it.
  KfPersistentStorage reread("LanguageReread", global.Settings().GlobalFile());
  std::string stored;
  ASSERT_TRUE(reread.Load("LanguageSettings", "CurrentLanguage", stored));
  EXPECT_EQ(stored, "JPN");
}

TEST_F(Language, FileNamesCarryTheLanguageBeforeTheExtension) {
  platform->SetEnv("QOR_LOCALE", "JPN");
  EXPECT_EQ(Kf::LanguageSpecificFileName("Manual.pdf"), "Manual_JPN.pdf");
  EXPECT_EQ(Kf::LanguageSpecificFileName("Manual_ENU.pdf"), "Manual_JPN.pdf");
  EXPECT_EQ(Kf::LanguageSpecificFileName("README"), "README_JPN");
  EXPECT_EQ(Kf::LanguageSpecificFileName("archive.tar.gz"), "archive.tar_JPN.gz");
  EXPECT_EQ(Kf::LanguageNeutralFileName("Manual_JPN.pdf"), "Manual.pdf");
  EXPECT_EQ(Kf::LanguageNeutralFileName("Manual.pdf"), "Manual.pdf");
  EXPECT_EQ(Kf::LanguageNeutralFileName("_JPN.pdf"), "_JPN.pdf");  // a suffix alone is a name
  platform->SetEnv("QOR_LOCALE", "ENU");
  EXPECT_EQ(Kf::LanguageSpecificFileName("Manual_JPN.pdf"), "Manual.pdf");
}

TEST_F(Language, SpecificPathFallsBackToTheNeutralFile) {
  platform->SetEnv("QOR_LOCALE", "JPN");
  GePath neutral = GePath::FromNative(root / "Manual.pdf");
  EXPECT_EQ(Kf::LanguageSpecificPath(neutral), neutral);
  std::ofstream(root / "Manual_JPN.pdf") << "x";
  EXPECT_EQ(Kf::LanguageSpecificPath(neutral), GePath::FromNative(root / "Manual_JPN.pdf"));
}

TEST_F(Language, InitIdeSelectsJapaneseOnlyForJpn) {
  // Binding the real catalogue directory keeps later catalogue tests in this
  // process valid (a domain is bound once).
  GePath real;
  ASSERT_TRUE(Kf::Platform::Native().GetCommonBinDirectory(real));
  platform->commonBinDirectory = real;
  std::string value;
  Kf::Localize::InitIde("JPN");
  ASSERT_TRUE(platform->GetEnv("LC_MESSAGES", value));
  EXPECT_EQ(value, "ja_JP");
  EXPECT_EQ(platform->messagesLocale, "ja_JP");
  for (const char* other : {"ENU", "jpn", "DEU", ""}) {
    Kf::Localize::InitIde(other);
    ASSERT_TRUE(platform->GetEnv("LC_MESSAGES", value));
    EXPECT_EQ(value, "C") << other;
    EXPECT_EQ(platform->messagesLocale, "C") << other;
  }
}

TEST_F(Language, ADomainKeepsItsFirstBinding) {
  Kf::Localize::bindtextdomain_once("orvane_bind_test", GePath("/first"));
  Kf::Localize::bindtextdomain_once("orvane_bind_test", GePath("/second"));
  EXPECT_STREQ(::bindtextdomain("orvane_bind_test", nullptr), "/first/locale");
  EXPECT_STREQ(::bind_textdomain_codeset("orvane_bind_test", nullptr), "UTF-8");
}

}  // namespace
