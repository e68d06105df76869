#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "orvane/storage.h"
#include "theme/theme_fixture.h"

namespace Kf::Testing {
namespace {

class ThemesTest : public ThemeTest {
 protected:
  void SetUp() override {
    ThemeTest::SetUp();
    Event::RegisterEvent(kThemeChangedEventName, &handler_);
  }
  void TearDown() override {
    Event::UnregisterEvent(kThemeChangedEventName, &handler_);
    ThemeTest::TearDown();
  }
  // A new process: the collection is made and loaded again.
  Themes& Restart() {
    Themes::DestroyInstance();
    Themes* themes = Themes::CreateInstance(colors_, nullptr);
    EXPECT_TRUE(themes->Load());
    return *themes;
  }

  std::vector<std::string> events_;
  Event::FunctionHandler<ThemeChangedEvent> handler_{
      [this](const ThemeChangedEvent& e) { events_.push_back(e.currentThemeName); }};
};

TEST_F(ThemesTest, StartsWithTheStandardThemesAndDefaultCurrent) {
  Themes& themes = Restart();
  ASSERT_EQ(themes.GetThemes().size(), 7u);
  EXPECT_EQ(themes.GetCurrent()->GetName(), "Default");
  EXPECT_EQ(Themes::CreateInstance(colors_, nullptr), &themes);  // only one
  EXPECT_EQ(events_, std::vector<std::string>{"Default"});       // the load
}

TEST_F(ThemesTest, CurrentThemeSurvivesARestart) {
  Themes& themes = Restart();
  std::shared_ptr<Theme> copy = themes.AddCopy("Solarized");
  ASSERT_NE(copy, nullptr);
  copy->GetEditorFontInfoRef().SetColor(Cat(5), Hex(0x112233), false);
  ASSERT_TRUE(themes.SetCurrent(copy->GetName()));
  ASSERT_TRUE(themes.Save());

  Themes& again = Restart();
  ASSERT_EQ(again.GetThemes().size(), 8u);
  EXPECT_EQ(again.GetCurrent()->GetName(), "Solarized - Copy 1");
  EXPECT_EQ(again.GetCurrent()->GetBaseType(), ThemeSolarized);
  EXPECT_EQ(again.GetCurrent()->GetEditorFontInfoCRef().LookupColor(Cat(5)), Hex(0x112233));
  EXPECT_EQ(again.GetCurrentIndex(), 7u);
}

TEST_F(ThemesTest, CurrentFallsBackFromNameToIndexToFirst) {
  Themes& themes = Restart();
  ASSERT_TRUE(themes.SetCurrent("High contrast"));
  ASSERT_TRUE(themes.Save());
  GePath path;
  ASSERT_TRUE(Themes::GetThemesFile(path));
  {
    KfPersistentStorage storage("ThemesEdit", path);
    ASSERT_TRUE(storage.Store(Themes::kSection, "CurrentTheme", std::string("Gone")));
  }
  EXPECT_EQ(Restart().GetCurrent()->GetName(), "High contrast");  // by index
  {
    KfPersistentStorage storage("ThemesEdit", path);
    ASSERT_TRUE(storage.StoreInt64(Themes::kSection, "CurrentThemeIndex", 99));
  }
  EXPECT_EQ(Restart().GetCurrent()->GetName(), "Default");
}

TEST_F(ThemesTest, UnmodifiedStandardThemesComeFromCodeModifiedOnesFromStorage) {
  Themes& themes = Restart();
  auto all = themes.GetCloneOfThemes();
  all[ThemeClassic]->SetFixedFont(XFont("Edited", 12, XFont::Regular));
  all[ThemeClassic]->SetIsModified(true);
  all[ThemeDarkMode]->SetFixedFont(XFont("Stale", 12, XFont::Regular));  // not marked modified
  ASSERT_TRUE(themes.SetAll(all, 0));
  ASSERT_TRUE(themes.Save());
  Themes& again = Restart();
  EXPECT_EQ(again.Find("Classic")->GetFixedFont().face, "Edited");
  EXPECT_EQ(again.Find("Dark mode")->GetFixedFont().face, "Consolas");
  EXPECT_EQ(again.GetThemes().size(), 7u);
}

TEST_F(ThemesTest, CopyNamesNeverCollide) {
  Themes& themes = Restart();
  std::set<std::string> names;
  for (int i = 0; i < 3; ++i) names.insert(themes.AddCopy("Classic")->GetName());
  names.insert(themes.AddCopy("Classic - Copy 1")->GetName());
  EXPECT_EQ(names, (std::set<std::string>{"Classic - Copy 1", "Classic - Copy 2", "Classic - Copy 3",
                                          "Classic - Copy 1 - Copy 1"}));
  ASSERT_TRUE(themes.Remove("Classic - Copy 2"));
  EXPECT_EQ(themes.FindValidCopyName("Classic"), "Classic - Copy 2");
  // A user theme named like an existing one is renamed on the way in.
  std::shared_ptr<Theme> clash = ThemeFactory::CreateUserTheme(ThemeDefault, colors_);
  clash->SetName("Default");
  EXPECT_EQ(themes.Add(clash), "Default - Copy 1");
  EXPECT_EQ(themes.AddCopy("Nope"), nullptr);
}

TEST_F(ThemesTest, OneEventPerChangeAndNoneWithoutChange) {
  Themes& themes = Restart();
  events_.clear();
  ASSERT_TRUE(themes.SetCurrent("Classic"));
  ASSERT_TRUE(themes.SetCurrent("Classic"));  // no change
  EXPECT_FALSE(themes.SetCurrent("Missing"));
  EXPECT_FALSE(themes.SetCurrent(std::size_t{7}));
  std::shared_ptr<Theme> copy = themes.AddCopy("Classic");
  ASSERT_TRUE(themes.Remove(copy->GetName()));
  EXPECT_FALSE(themes.Remove("Classic"));  // standard themes stay
  ASSERT_TRUE(themes.SetAll(themes.GetCloneOfThemes(), 2));
  EXPECT_EQ(events_, (std::vector<std::string>{"Classic", "Classic", "Classic", "Dark mode"}));
}

TEST_F(ThemesTest, SetAllRefusesBrokenLists) {
  Themes& themes = Restart();
  events_.clear();
  auto all = themes.GetCloneOfThemes();
  EXPECT_FALSE(themes.SetAll({}, 0));
  EXPECT_FALSE(themes.SetAll(all, all.size()));
  auto withoutOne = all;
  withoutOne.erase(withoutOne.begin() + 3);
  EXPECT_FALSE(themes.SetAll(withoutOne, 0));
  auto duplicate = all;
  duplicate.push_back(ThemeFactory::CloneIntoUserTheme(*all[0]));  // named "Default" too
  EXPECT_FALSE(themes.SetAll(duplicate, 0));
  auto withNull = all;
  withNull.push_back(nullptr);
  EXPECT_FALSE(themes.SetAll(withNull, 0));
  EXPECT_TRUE(events_.empty());
  // The clones are independent of the collection's themes.
  all[0]->SetName("Renamed");
  EXPECT_NE(themes.Find("Default"), nullptr);
}

TEST_F(ThemesTest, RemovingTheCurrentThemeFallsBackToDefault) {
  Themes& themes = Restart();
  std::string name = themes.AddCopy("Dark mode")->GetName();
  ASSERT_TRUE(themes.SetCurrent(name));
  ASSERT_TRUE(themes.Remove(name));
  EXPECT_EQ(themes.GetCurrent()->GetName(), "Default");
}

TEST_F(ThemesTest, BrightIconsOnDarkColours) {
  Themes& themes = Restart();
  EXPECT_FALSE(themes.UseBrightIcons(Element(9)));  // #CCCCCC
  EXPECT_FALSE(themes.UseBrightIcons(Element(1)));  // no colour: the host's white background
  ASSERT_TRUE(themes.SetCurrent("Dark Solarized"));
  EXPECT_TRUE(themes.UseBrightIcons(Element(1)));
  EXPECT_FALSE(themes.UseBrightIcons(Element(0)));
  EXPECT_FALSE(themes.UseBrightIcons(Element(84)));  // no such element: the host's background
}

TEST_F(ThemesTest, OlderSettingsBecomeTheUserSettingsThemeOnce) {
  {
    KfPerOStream out(*global_, "Font", "Font2_0");
    out << std::string("Courier New") << std::int32_t{-16} << std::int32_t{400} << false;
  }
  Themes::DestroyInstance();
  IHostLogfontSizeConverter converter([](int height) { return static_cast<std::uint64_t>(-height * 3 / 4); });
  Themes* themes = Themes::CreateInstance(colors_, &converter);
  ASSERT_TRUE(themes->Load());
  std::shared_ptr<Theme> converted = themes->Find("User settings theme");
  ASSERT_NE(converted, nullptr);
  EXPECT_EQ(converted->GetType(), ThemeUser);
  EXPECT_EQ(converted->GetFixedFont(), XFont("Courier New", 12, XFont::Regular));
  EXPECT_EQ(themes->GetCurrent(), converted);  // the look the user had
  ASSERT_TRUE(themes->Save());

  // Not added a second time after a restart.
  Themes& again = Restart();
  EXPECT_EQ(again.GetThemes().size(), 8u);
  EXPECT_EQ(again.GetCurrent()->GetName(), "User settings theme");
}

TEST_F(ThemesTest, ImportAddsAUserThemeAndARefusedFileChangesNothing) {
  Themes& themes = Restart();
  const GePath good = global_.Settings().Dir() / "good.theme.xml";
  ASSERT_TRUE(themes.Find("Dark mode")->Save(good));
  events_.clear();
  std::string error;
  EXPECT_EQ(themes.Import(good, &error), "Dark mode - Copy 1");
  std::shared_ptr<Theme> imported = themes.Find("Dark mode - Copy 1");
  ASSERT_NE(imported, nullptr);
  EXPECT_EQ(imported->GetType(), ThemeUser);
  EXPECT_EQ(imported->GetBaseType(), ThemeDarkMode);

  const GePath bad = global_.Settings().Dir() / "bad.theme.xml";
  {
    std::ofstream out(bad.Native());
    out << "<settings><Theme><Name>x</Name></Theme></settings>";
  }
  const auto before = themes.GetThemes();
  EXPECT_EQ(themes.Import(bad, &error), "");
  EXPECT_NE(error.find("bad.theme.xml"), std::string::npos);
  EXPECT_EQ(themes.GetThemes(), before);
  EXPECT_EQ(events_.size(), 1u);  // the good import only
}

TEST_F(ThemesTest, NoOlderSettingsNoConvertedTheme) {
  EXPECT_EQ(ThemeFactory::LoadOldCompatibleTheme(colors_, nullptr), nullptr);
}

}  // namespace
}  // namespace Kf::Testing
