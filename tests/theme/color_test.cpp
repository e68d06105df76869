#include <gtest/gtest.h>

#include <cstring>

#include "theme/theme_fixture.h"

namespace Kf::Testing {
namespace {

TEST(XColorTest, BytesAreRedGreenBlueValid) {
  const XColor blue = XColor::FromUInt32(0x01FF0000);
  EXPECT_EQ(blue, (XColor{0, 0, 255, 1}));
  unsigned char bytes[4];
  std::memcpy(bytes, &blue, 4);
  EXPECT_EQ(bytes[2], 0xFF);
  EXPECT_EQ(bytes[3], 1);
  EXPECT_EQ((XColor{255, 0, 0, 1}.ToUInt32()), 0x010000FFu);
  EXPECT_FALSE(XColor().IsValid());
  constexpr XColor designated{.red = 1, .green = 2, .blue = 3, .valid = 1};
  static_assert(designated.ToUInt32() == 0x01030201u);
}

TEST(ColorTypeTableTest, TranslatesEveryListedValueAndDefaultsToOne) {
  const std::pair<int, int> table[] = {{0, 0},   {1, 1},   {2, 7},   {3, 8},    {4, 10},   {5, 12},    {6, 13},
                                       {7, 14},  {8, 15},  {9, 16},  {10, 17},  {11, 49},  {23, 61},   {1000, 2},
                                       {1001, 20}, {1002, 24}, {24, 1}, {999, 1}, {-1, 1}, {1003, 1}};
  for (auto [type, element] : table)
    EXPECT_EQ(Color::ColorTypeToDisplayElement(static_cast<ColorType>(type)), element) << "type " << type;
  for (int type = 11; type <= 23; ++type)
    EXPECT_EQ(Color::ColorTypeToDisplayElement(static_cast<ColorType>(type)), type + 38);
}

// A host that answers each element with a colour that names it.
class ColorHost : public TestHost {
 public:
  XColor GetThemeXColor(DisplayElement element) override {
    return XColor{static_cast<std::uint8_t>(element), 0, 0, 1};
  }
};

TEST(LookupXColorTest, AsksTheHostForTheTranslatedElement) {
  ScopedFakePlatform platform;
  ColorHost host;
  HostUtil::RegisterHost(&host);
  EXPECT_EQ(LookupXColor(static_cast<ColorType>(1001)), (XColor{20, 0, 0, 1}));
  EXPECT_EQ(LookupXColor(static_cast<ColorType>(12)), (XColor{50, 0, 0, 1}));
  HostUtil::UnregisterHost(&host);
}

TEST(HostColorInfoTest, CopiesKeepBothCallbacksAndEmptyOnesAnswerNoColour) {
  int calls = 0;
  IHostColorInfo info([&] { ++calls; return XColor{1, 2, 3, 1}; }, [] { return XColor{4, 5, 6, 1}; });
  IHostColorInfo copy = info;
  EXPECT_EQ(copy.DefaultTextColor(), (XColor{1, 2, 3, 1}));
  EXPECT_EQ(copy.DefaultBackgroundColor(), (XColor{4, 5, 6, 1}));
  EXPECT_EQ(calls, 1);
  EXPECT_FALSE(IHostColorInfo(nullptr, nullptr).DefaultTextColor().IsValid());
}

using NativeThemeLookupTest = ThemeTest;

TEST_F(NativeThemeLookupTest, FollowsTheCurrentThemeAndIsZeroWithoutCollection) {
  Themes::DestroyInstance();
  EXPECT_EQ(LookupXColorFromNativeTheme(Element(9)).valid, 0);

  Themes* themes = Themes::CreateInstance(colors_, nullptr);
  ASSERT_NE(themes, nullptr);
  EXPECT_EQ(Themes::Instance(), themes);
  EXPECT_EQ(ThemesSingleton::Instance(), themes);
  EXPECT_EQ(LookupXColorFromNativeTheme(Element(9)), Hex(0xCCCCCC));  // Default
  ASSERT_TRUE(themes->SetCurrent("Dark mode"));
  EXPECT_EQ(LookupXColorFromNativeTheme(Element(1)), Hex(0x1E1F22));

  // A reader's pointer keeps its theme alive across a switch.
  std::shared_ptr<Theme> held = Themes::CurrentOfInstance();
  ASSERT_TRUE(themes->SetCurrent("Classic"));
  EXPECT_EQ(held->GetName(), "Dark mode");
  Themes::DestroyInstance();
  EXPECT_EQ(held->GetXColor(Element(1)), Hex(0x1E1F22));
  EXPECT_EQ(LookupXColorFromNativeTheme(Element(1)).valid, 0);
}

}  // namespace
}  // namespace Kf::Testing
