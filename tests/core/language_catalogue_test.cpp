// The Japanese catalogue built beside the library, seen through the real
// platform layer and the C library's message locale (needs the ja_JP.UTF-8
// locale, which scripts/setup.sh generates).
#include <gtest/gtest.h>

#include "orvane/dialogs.h"
#include "orvane/language.h"
#include "orvane/statusbar.h"
#include "support/test_host.h"

namespace {

class Catalogue : public ::testing::Test {
 protected:
  void TearDown() override { Kf::Localize::InitIde("ENU"); }
  Kf::Testing::ScopedTestHost host;  // status-bar events ask for the UI thread
};

TEST_F(Catalogue, JapaneseAfterInitIdeJpnAndEnglishForAnyOtherCode) {
  Kf::Localize::InitIde("JPN");
  ASSERT_EQ(Kf::Localize::HelloWorld_shared(), "こんにちは世界")
      << "no Japanese: is the ja_JP.UTF-8 locale installed (scripts/setup.sh)?";
  Kf::StatusBar::SetCaretPosition(41, 6);
  EXPECT_EQ(Kf::StatusBar::GetCaretPositionText(), "行 42、列 7");

  for (const char* other : {"ENU", "DEU", ""}) {
    Kf::Localize::InitIde(other);
    EXPECT_EQ(Kf::Localize::HelloWorld_shared(), "Hello World") << other;
  }
  Kf::StatusBar::SetCaretPosition(41, 6);
  EXPECT_EQ(Kf::StatusBar::GetCaretPositionText(), "Ln 42, Col 7");
}

TEST_F(Catalogue, TheNoLauncherMessageIsTranslated) {
  Kf::Localize::InitIde("JPN");
  Kf::DontAsk::ClearDontAsk("NO_CONTEXT_HELP_LAUNCHER");
  Kf::HelpLauncher::Uninitialize();
  EXPECT_FALSE(Kf::HelpLauncher::Instance().KeywordLookup("printf", std::nullopt));
  ASSERT_EQ(host->Boxes().size(), 1u);
  EXPECT_EQ(host->Boxes()[0].text, "ヘルプ ランチャーが登録されていません。");
  EXPECT_EQ(host->Boxes()[0].caption, "状況依存ヘルプ");
}

}  // namespace
