#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "orvane/storage.h"
#include "theme/theme_fixture.h"

namespace Kf::Testing {
namespace {

// Exposes the protected statics for the tests.
struct ThemeStatics : DefaultTheme {
  using Theme::CurrentLangIsJPN;
  using Theme::TypeStringToType;
};

using ThemeValuesTest = ThemeTest;

TEST_F(ThemeValuesTest, TypeStringsAreExact) {
  const char* strings[] = {"Default",      "Classic",       "DarkMode", "HighContrast", "Solarized",
                           "DarkSolarized", "ColorVisionDeficiency", "User"};
  for (int t = 0; t < 8; ++t) {
    EXPECT_EQ(Theme::TypeToTypeString(static_cast<ThemeType>(t)), strings[t]);
    EXPECT_EQ(ThemeStatics::TypeStringToType(strings[t]), t);
  }
  EXPECT_EQ(ThemeStatics::TypeStringToType("classic"), ThemeUser);
  EXPECT_EQ(ThemeStatics::TypeStringToType("Classic "), ThemeUser);
  EXPECT_EQ(Theme::TypeToTypeString(static_cast<ThemeType>(8)), "");
  EXPECT_EQ(Theme::ThemeEnding(), ".theme.xml");
  SetLanguage("JPN");
  EXPECT_TRUE(ThemeStatics::CurrentLangIsJPN());
  SetLanguage("ENU");
  EXPECT_FALSE(ThemeStatics::CurrentLangIsJPN());
}

// A theme class that sets nothing, to see the base class's values.
class BareTheme : public Theme {
 public:
  explicit BareTheme(const IHostColorInfo& colors) : Theme("Bare", ThemeDefault, colors) {}
  std::shared_ptr<Theme> Clone() const override { return std::shared_ptr<Theme>(new BareTheme(*this)); }
};

TEST_F(ThemeValuesTest, FreshThemeAndGuardedSetters) {
  BareTheme theme(colors_);
  EXPECT_FALSE(theme.GetIsModified());
  EXPECT_TRUE(theme.GetIsStandard());
  for (int e = 0; e < 84; ++e) EXPECT_EQ(theme.GetXColor(Element(e)).valid, 0);
  EXPECT_EQ(theme.GetProportionalFont(), XFont("Verdana", 10, XFont::Regular));
  EXPECT_EQ(theme.GetFixedFont(), XFont("Consolas", 10, XFont::Regular));
  EXPECT_EQ(theme.GetEditorFontInfoCRef().GetBaseFont(), theme.GetFixedFont());

  const BareTheme before(theme);
  theme.SetXColor(Element(84), Hex(0x123456));
  theme.SetXColor(Element(1000), Hex(0x123456));
  theme.SetName("");
  EXPECT_EQ(theme, before);
  theme.SetXColor(Element(83), Hex(0x123456));
  EXPECT_EQ(theme.GetXColor(Element(83)), Hex(0x123456));

  SetLanguage("JPN");
  EXPECT_EQ(BareTheme(colors_).GetProportionalFont().face, "Noto Sans JP");
}

TEST_F(ThemeValuesTest, ClassicValues) {
  ClassicTheme classic(colors_);
  EXPECT_EQ(classic.GetName(), "Classic");
  EXPECT_EQ(classic.GetType(), ThemeClassic);
  EXPECT_EQ(classic.GetXColor(Element(9)), Hex(0xCCCCCC));
  EXPECT_EQ(classic.GetXColor(Element(8)), Hex(0x909090));
  EXPECT_EQ(classic.GetXColor(Element(20)), Hex(0xE1E1E1));
  EXPECT_EQ(classic.GetXColor(Element(0)).valid, 0);
  const EditorFontInfo& info = classic.GetEditorFontInfoCRef();
  EXPECT_EQ(info.GetBaseFont(), XFont("Consolas", 9, XFont::Regular));
  const struct { int category; std::uint32_t color; bool automatic; XFont::Style style; } expected[] = {
      {0, 0x000000, true, XFont::Regular},  {1, 0x000000, true, XFont::Bold},    {3, 0x0000FF, false, XFont::Regular},
      {5, 0x009600, false, XFont::Regular}, {9, 0x008000, false, XFont::Italic}, {12, 0x0000A0, false, XFont::Italic},
      {13, 0x000000, true, XFont::Bold},    {14, 0x0000A0, false, XFont::Italic}, {15, 0x000080, false, XFont::Italic},
      {16, 0x0000FF, false, XFont::Regular}, {17, 0xFF0000, false, XFont::Regular}, {19, 0x000000, true, XFont::Regular},
      {20, 0x0000FF, false, XFont::Regular},
  };
  for (const auto& e : expected) {
    EXPECT_EQ(info.LookupColor(Cat(e.category)), Hex(e.color)) << e.category;
    EXPECT_EQ(info.IsColorAutomatic(Cat(e.category)), e.automatic) << e.category;
    EXPECT_EQ(info.LookupStyle(Cat(e.category)), e.style) << e.category;
  }
}

TEST_F(ThemeValuesTest, JapaneseDropsTheItalicStyleOfCommentLikeCategories) {
  SetLanguage("JPN");
  ClassicTheme classic(colors_);
  ColorVisionDeficiencyTheme vision(colors_);
  for (int c : {9, 10, 11, 12, 14, 15}) {
    EXPECT_EQ(classic.GetEditorFontInfoCRef().LookupStyle(Cat(c)), XFont::Regular) << c;
    EXPECT_EQ(vision.GetEditorFontInfoCRef().LookupStyle(Cat(c)), XFont::Regular) << c;
  }
  EXPECT_EQ(classic.GetEditorFontInfoCRef().LookupStyle(Cat(1)), XFont::Bold);
  EXPECT_EQ(vision.GetEditorFontInfoCRef().LookupStyle(Cat(16)), XFont::Regular);
}

TEST_F(ThemeValuesTest, ColorVisionValuesAreExactlyTheGivenOnes) {
  ColorVisionDeficiencyTheme theme(colors_);
  EXPECT_EQ(theme.GetName(), "Color Accessibility");
  const EditorFontInfo& info = theme.GetEditorFontInfoCRef();
  EXPECT_EQ(info.GetBackgroundColor(), Hex(0xFFFFFF));
  EXPECT_FALSE(info.IsBackgroundColorAutomatic());
  const std::pair<int, std::uint32_t> colours[] = {
      {0, 0x009E73},  {1, 0x0000FF},  {2, 0xD55E00},  {3, 0xD55E00},  {4, 0x0000FF},  {5, 0x000000},
      {9, 0x0072B2},  {10, 0x0072B2}, {11, 0x009E73}, {12, 0x009E73}, {13, 0x009E73}, {14, 0x0072B2},
      {15, 0x0072B2}, {16, 0x009E73}, {17, 0xD55E00}, {18, 0x000000}, {19, 0x000000}, {20, 0x009E73}};
  for (auto [category, colour] : colours) {
    EXPECT_EQ(info.LookupColor(Cat(category)), Hex(colour)) << category;
    EXPECT_FALSE(info.IsColorAutomatic(Cat(category))) << category;
  }
  for (int c : {1, 2, 13, 17}) EXPECT_EQ(info.LookupStyle(Cat(c)), XFont::Bold) << c;
  for (int c : {9, 10, 11, 12, 14, 15, 16}) EXPECT_EQ(info.LookupStyle(Cat(c)), XFont::Italic) << c;
  for (int c : {19, 20}) EXPECT_EQ(info.LookupStyle(Cat(c)), XFont::Regular) << c;
}

TEST_F(ThemeValuesTest, FactoryMakesEveryStandardAndUserTheme) {
  auto themes = ThemeFactory::CreateStdThemes(colors_);
  ASSERT_EQ(themes.size(), 7u);
  const char* names[] = {"Default", "Classic", "Dark mode", "High contrast", "Solarized", "Dark Solarized",
                         "Color Accessibility"};
  for (int t = 0; t < 7; ++t) {
    EXPECT_EQ(themes[t]->GetType(), t);
    EXPECT_EQ(themes[t]->GetBaseType(), t);
    EXPECT_EQ(themes[t]->GetName(), names[t]);
    std::shared_ptr<Theme> clone = themes[t]->Clone();
    EXPECT_EQ(typeid(*clone), typeid(*themes[t]));
    EXPECT_EQ(*clone, *themes[t]);
  }
  EXPECT_EQ(ThemeFactory::CreateStdTheme(ThemeUser, colors_), nullptr);

  std::shared_ptr<Theme> user = ThemeFactory::CreateUserTheme(ThemeDarkMode, colors_);
  EXPECT_EQ(user->GetType(), ThemeUser);
  EXPECT_EQ(user->GetBaseType(), ThemeDarkMode);
  EXPECT_FALSE(user->GetIsStandard());
  EXPECT_EQ(user->GetXColor(Element(1)), themes[ThemeDarkMode]->GetXColor(Element(1)));
  EXPECT_EQ(typeid(*user->Clone()), typeid(UserTheme<DarkModeTheme>));
  EXPECT_EQ(ThemeFactory::CreateUserTheme(ThemeUser, colors_)->GetBaseType(), ThemeDefault);

  std::shared_ptr<Theme> cloned = ThemeFactory::CloneIntoUserTheme(*themes[ThemeSolarized]);
  EXPECT_EQ(cloned->GetType(), ThemeUser);
  EXPECT_EQ(cloned->GetBaseType(), ThemeSolarized);
  EXPECT_EQ(cloned->GetEditorFontInfoCRef(), themes[ThemeSolarized]->GetEditorFontInfoCRef());
  EXPECT_EQ(ThemeFactory::CloneIntoUserTheme(*cloned)->GetBaseType(), ThemeSolarized);
}

std::vector<std::shared_ptr<Theme>> EveryKindOfTheme(const IHostColorInfo& colors) {
  auto themes = ThemeFactory::CreateStdThemes(colors);
  std::shared_ptr<Theme> user = ThemeFactory::CreateUserTheme(ThemeHighContrast, colors);
  user->SetName("Mine, with ünïcode & <markup>");
  user->SetFixedFont(XFont("Source Code Pro", 14, XFont::Regular));
  user->SetProportionalFont(XFont("Noto Sans; CJK", 11, XFont::Bold));
  user->GetEditorFontInfoRef().SetColor(Cat(5), Hex(0x00FF80), false);
  user->SetIsModified(true);
  themes.push_back(user);
  // Values a hand-made file would rarely hold but the interface allows.
  std::shared_ptr<Theme> odd = ThemeFactory::CreateUserTheme(ThemeClassic, colors);
  odd->SetName(std::string(300, 'n') + "\twith a tab\x01");
  odd->SetFixedFont(XFont(std::string(150, 'f'), std::uint64_t{0}, static_cast<XFont::Style>(7)));
  odd->SetProportionalFont(XFont("", ~std::uint64_t{0}, static_cast<XFont::Style>(-2)));
  themes.push_back(odd);
  return themes;
}

TEST_F(ThemeValuesTest, EveryThemeRoundTripsThroughStorageAndFiles) {
  for (const char* language : {"ENU", "JPN"}) {
    SetLanguage(language);
    int i = 0;
    for (const auto& theme : EveryKindOfTheme(colors_)) {
      const std::string key = "T" + std::to_string(i++) + language;
      ASSERT_TRUE(theme->Save(*global_, key));
      std::shared_ptr<Theme> back = Theme::Load(*global_, key, colors_);
      ASSERT_NE(back, nullptr) << theme->GetName();
      EXPECT_EQ(*back, *theme) << theme->GetName();
      EXPECT_EQ(typeid(*back), typeid(*theme));

      const GePath file = global_.Settings().Dir() / (key + Theme::ThemeEnding());
      ASSERT_TRUE(theme->Save(file));
      std::string error;
      std::shared_ptr<Theme> fromFile = Theme::Load(file, colors_, &error);
      ASSERT_NE(fromFile, nullptr) << error;
      EXPECT_EQ(*fromFile, *theme) << theme->GetName();
    }
  }
}

TEST_F(ThemeValuesTest, SaveWritesTheThemeValuesBeforeTheEditorRecords) {
  ASSERT_TRUE(ClassicTheme(colors_).Save(*global_, "Ordered"));
  std::vector<std::string> keys;
  ASSERT_TRUE(global_->GetKeys("Ordered", keys));
  const std::vector<std::string> expected = {"Name", "PropFont", "FixedFont", "Type", "BaseType", "Modified"};
  ASSERT_GT(keys.size(), expected.size());
  EXPECT_EQ(std::vector<std::string>(keys.begin(), keys.begin() + 6), expected);
}

TEST_F(ThemeValuesTest, SavingOverAFileReplacesItWhole) {
  const GePath file = global_.Settings().Dir() / "x.theme.xml";
  ASSERT_TRUE(DarkModeTheme(colors_).Save(file));
  ASSERT_TRUE(ClassicTheme(colors_).Save(file));
  std::shared_ptr<Theme> (*loadFile)(const GePath&, const IHostColorInfo&) = &Theme::Load;
  std::shared_ptr<Theme> back = loadFile(file, colors_);
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->GetType(), ThemeClassic);
  EXPECT_FALSE(Theme::Load(global_.Settings().Dir() / "missing.theme.xml", colors_));

  // A storage whose file cannot be written: the save says so.
  KfPersistentStorage unwritable("Unwritable", file / "below-a-file.xml");
  EXPECT_FALSE(ClassicTheme(colors_).Save(unwritable, "T"));
}

TEST_F(ThemeValuesTest, StorageLoadFailsOnMissingValues) {
  ASSERT_TRUE(ClassicTheme(colors_).Save(*global_, "C"));
  for (const char* name : {"Name", "PropFont", "FixedFont", "Type", "Modified", "XFontBase"}) {
    ASSERT_TRUE(ClassicTheme(colors_).Save(*global_, "C"));
    ASSERT_TRUE(global_->DeleteKey("C", name));
    EXPECT_EQ(Theme::Load(*global_, "C", colors_), nullptr) << name;
  }
  // A missing base type gives a user theme on "Default"; an unknown type
  // string, read from the user's own settings, a user theme; an empty name
  // leaves the theme its own name.
  ASSERT_TRUE(ThemeFactory::CreateUserTheme(ThemeClassic, colors_)->Save(*global_, "U"));
  ASSERT_TRUE(global_->DeleteKey("U", "BaseType"));
  EXPECT_EQ(Theme::Load(*global_, "U", colors_)->GetBaseType(), ThemeDefault);
  ASSERT_TRUE(global_->Store("U", "Type", std::string("Future")));
  EXPECT_EQ(Theme::Load(*global_, "U", colors_)->GetType(), ThemeUser);
  ASSERT_TRUE(global_->Store("U", "Name", std::string()));
  std::shared_ptr<Theme> unnamed = Theme::Load(*global_, "U", colors_);
  ASSERT_NE(unnamed, nullptr);
  EXPECT_EQ(unnamed->GetName(), "Default");
}

class ThemeFileTest : public ThemeTest {
 protected:
  // A valid theme file's text, with `from` replaced by `to`.
  std::string ValidText(const std::string& from = "", const std::string& to = "") {
    const GePath file = global_.Settings().Dir() / "valid.theme.xml";
    EXPECT_TRUE(ThemeFactory::CreateUserTheme(ThemeSolarized, colors_)->Save(file));
    std::ifstream in(file.Native());
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!from.empty()) {
      const std::size_t at = text.find(from);
      EXPECT_NE(at, std::string::npos) << from;
      if (at != std::string::npos) text.replace(at, from.size(), to);
    }
    return text;
  }
  std::string LoadError(const std::string& text) {
    const GePath file = global_.Settings().Dir() / "untrusted.theme.xml";
    {
      std::ofstream out(file.Native(), std::ios::binary | std::ios::trunc);
      out << text;
    }
    std::string error;
    EXPECT_EQ(Theme::Load(file, colors_, &error), nullptr) << text.substr(0, 200);
    // The refused file is left exactly where and as it was.
    std::ifstream in(file.Native(), std::ios::binary);
    std::string after((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(after, text);
    return error;
  }
};

TEST_F(ThemeFileTest, UntrustedFilesAreRefusedWithAClearError) {
  EXPECT_NE(LoadError("<settings><Theme>").find("not well-formed"), std::string::npos);
  EXPECT_NE(LoadError("").find("not well-formed"), std::string::npos);
  EXPECT_NE(LoadError("<other/>").find("root element"), std::string::npos);
  EXPECT_NE(LoadError("<settings/>").find("no \"Theme\" section"), std::string::npos);
  EXPECT_NE(LoadError(ValidText("<Modified>0</Modified>", "<Modified>maybe</Modified>")).find("Modified"),
            std::string::npos);
  EXPECT_NE(LoadError(ValidText("<FixedFont>10;", "<FixedFont>ten;")).find("FixedFont"), std::string::npos);
  EXPECT_NE(LoadError(ValidText("<Name>Solarized</Name>", "")).find("Name"), std::string::npos);
  EXPECT_NE(LoadError(ValidText("<i>253</i>", "<i>256</i>")).find("editor font"), std::string::npos);
  EXPECT_NE(LoadError(std::string(Theme::kMaxFileBytes + 1, ' ')).find("larger than"), std::string::npos);
  // The error names the file.
  EXPECT_NE(LoadError("<other/>").find("untrusted.theme.xml"), std::string::npos);
}

// A file is read as a storage would be: type strings this version does not
// know give a user theme, as they do in the user's own settings.
TEST_F(ThemeFileTest, FilesFromElsewhereLoadAsFromAStorage) {
  const GePath file = global_.Settings().Dir() / "ok.theme.xml";
  const auto load = [&](const std::string& text) {
    {
      std::ofstream out(file.Native(), std::ios::binary | std::ios::trunc);
      out << text;
    }
    std::string error;
    std::shared_ptr<Theme> theme = Theme::Load(file, colors_, &error);
    EXPECT_NE(theme, nullptr) << error;
    return theme;
  };
  std::shared_ptr<Theme> theme = load(ValidText("<Name>", "<Name>Shared "));
  ASSERT_NE(theme, nullptr);
  EXPECT_EQ(theme->GetBaseType(), ThemeSolarized);
  EXPECT_EQ(theme->GetName(), "Shared Solarized");

  theme = load(ValidText("<Type>User</Type>", "<Type>Sparkly</Type>"));
  ASSERT_NE(theme, nullptr);
  EXPECT_EQ(theme->GetType(), ThemeUser);
  EXPECT_EQ(theme->GetBaseType(), ThemeSolarized);
  theme = load(ValidText("<BaseType>Solarized</BaseType>", "<BaseType>User</BaseType>"));
  ASSERT_NE(theme, nullptr);
  EXPECT_EQ(theme->GetBaseType(), ThemeDefault);
}


// Damaged copies of a valid file (cut short, bytes changed) never crash the
// loader: each is either refused with an error or read as a whole theme.
TEST_F(ThemeFileTest, DamagedFilesAreRefusedOrReadWhole) {
  const std::string valid = ValidText();
  const GePath file = global_.Settings().Dir() / "damaged.theme.xml";
  std::uint32_t seed = 12345;
  auto next = [&seed] { return seed = seed * 1103515245u + 12345u; };
  int refused = 0;
  for (int round = 0; round < 120; ++round) {
    std::string text = valid;
    if (round % 2 == 0) {
      text.resize(next() % text.size());
    } else {
      for (int flips = 0; flips < 3; ++flips) text[next() % text.size()] = static_cast<char>(next() % 256);
    }
    {
      std::ofstream out(file.Native(), std::ios::binary | std::ios::trunc);
      out << text;
    }
    std::string error;
    std::shared_ptr<Theme> theme = Theme::Load(file, colors_, &error);
    if (theme) {
      EXPECT_FALSE(theme->GetName().empty());
      EXPECT_EQ(theme->GetEditorFontInfoCRef().FontCount(), 22);
    } else {
      EXPECT_FALSE(error.empty());
      ++refused;
    }
  }
  EXPECT_GT(refused, 60);  // every truncation that cuts the document is refused
}

}  // namespace
}  // namespace Kf::Testing
