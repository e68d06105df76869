#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "theme/theme_fixture.h"

namespace Kf::Testing {
namespace {

using ThemeConcurrencyTest = ThemeTest;

// Readers on other threads look colours up while the UI thread switches and
// edits themes: every colour read is one that some theme really has, and no
// reader sees a freed theme (the sanitizers check the latter).
TEST_F(ThemeConcurrencyTest, LookupsWhileTheCurrentThemeChanges) {
  Themes* themes = Themes::CreateInstance(colors_, nullptr);
  const XColor light = themes->Find("Default")->GetXColor(Element(9));
  const XColor dark = themes->Find("Dark mode")->GetXColor(Element(9));
  std::atomic<bool> stop{false};
  std::atomic<int> wrong{0};
  std::vector<std::thread> readers;
  for (int i = 0; i < 3; ++i) {
    readers.emplace_back([&] {
      while (!stop.load()) {
        const XColor c = LookupXColorFromNativeTheme(Element(9));
        if (c != light && c != dark) wrong.fetch_add(1);
        (void)themes->GetCloneOfThemes().size();
      }
    });
  }
  for (int round = 0; round < 200; ++round) {
    ASSERT_TRUE(themes->SetCurrent(round % 2 ? "Dark mode" : "Default"));
    if (round % 50 == 0) {
      auto all = themes->GetCloneOfThemes();
      ASSERT_TRUE(themes->SetAll(all, themes->GetCurrentIndex()));
    }
  }
  stop.store(true);
  for (auto& reader : readers) reader.join();
  EXPECT_EQ(wrong.load(), 0);
}

}  // namespace
}  // namespace Kf::Testing
