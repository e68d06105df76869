#include <gtest/gtest.h>

#include "theme/contrast.h"
#include "theme/theme_fixture.h"

namespace Kf::Testing {
namespace {

TEST(ContrastTest, KnownRatios) {
  EXPECT_NEAR(Detail::ContrastRatio(Hex(0x000000), Hex(0xFFFFFF)), 21.0, 1e-9);
  EXPECT_NEAR(Detail::ContrastRatio(Hex(0x777777), Hex(0x777777)), 1.0, 1e-9);
  // Published reference values: #767676 on white is just above 4.5:1.
  EXPECT_NEAR(Detail::ContrastRatio(Hex(0x767676), Hex(0xFFFFFF)), 4.54, 0.01);
  EXPECT_NEAR(Detail::ContrastRatio(Hex(0x0000FF), Hex(0xFFFFFF)), 8.59, 0.01);
}

// Automatic colours are those of the reference host: black text on white.
XColor Effective(XColor color, bool automatic, XColor hostColor) { return automatic ? hostColor : color; }

using ThemeContrastTest = ThemeTest;

TEST_F(ThemeContrastTest, EveryChosenThemeKeepsEverySyntaxCategoryReadable) {
  const XColor hostText = colors_.DefaultTextColor();
  const XColor hostBackground = colors_.DefaultBackgroundColor();
  for (const char* language : {"ENU", "JPN"}) {
    SetLanguage(language);
    for (const auto& theme : ThemeFactory::CreateStdThemes(colors_)) {
      // Classic and Color Accessibility keep the colours of earlier versions
      // as given; see the next test.
      if (theme->GetType() == ThemeClassic || theme->GetType() == ThemeColorVisionDeficiency) continue;
      const double minimum = theme->GetType() == ThemeHighContrast ? 7.0 : 4.5;
      const EditorFontInfo& info = theme->GetEditorFontInfoCRef();
      const XColor background =
          Effective(info.GetBackgroundColor(), info.IsBackgroundColorAutomatic(), hostBackground);
      for (int c = 0; c < EditorFontInfo::kBuiltInCount; ++c) {
        const XColor text = Effective(info.LookupColor(Cat(c)), info.IsColorAutomatic(Cat(c)), hostText);
        ASSERT_TRUE(text.IsValid()) << theme->GetName() << " category " << c;
        EXPECT_GE(Detail::ContrastRatio(text, background), minimum) << theme->GetName() << " category " << c;
      }
    }
  }
}

TEST_F(ThemeContrastTest, SolarizedUsesThePublishedBaseColours) {
  const EditorFontInfo light = SolarizedTheme(colors_).GetEditorFontInfoCRef();
  const EditorFontInfo dark = DarkSolarizedTheme(colors_).GetEditorFontInfoCRef();
  EXPECT_EQ(light.GetBackgroundColor(), Hex(0xFDF6E3));  // base3
  EXPECT_EQ(light.LookupColor(Cat(0)), Hex(0x586E75));   // base01
  EXPECT_EQ(dark.GetBackgroundColor(), Hex(0x002B36));   // base03
  EXPECT_EQ(dark.LookupColor(Cat(0)), Hex(0x839496));    // base0
  EXPECT_EQ(dark.LookupColor(Cat(1)), Hex(0x859900));    // green, as published
}

}  // namespace
}  // namespace Kf::Testing
