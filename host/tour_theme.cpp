// Tour steps for colours, fonts and themes. The theme collection of the tour
// lives in a scratch settings directory, never in the user's own settings.
#include <filesystem>
#include <fstream>
#include <ostream>
#include <system_error>

#include "host_app.h"
#include "host_themes.h"
#include "orvane/platform.h"

namespace OrvaneHost {
namespace {

namespace fs = std::filesystem;

// Points ORVANE_SETTINGS_DIR at a scratch directory while it lives, and gives
// the process a theme collection of its own there.
class ScratchThemes {
 public:
  ScratchThemes() {
    auto& platform = Kf::Platform::Current();
    GePath temp;
    if (!platform.GetKnownFolder(Kf::Platform::KnownFolder::Temp, temp)) temp = GePath("/tmp");
    dir_ = temp / ("orvane-tour-themes-" + std::to_string(platform.GetProcessId()));
    std::error_code ec;
    fs::create_directories(dir_.Native(), ec);
    hadOld_ = platform.GetEnv("ORVANE_SETTINGS_DIR", old_);
    (void)platform.SetEnv("ORVANE_SETTINGS_DIR", dir_.ToString());
    Kf::Themes::DestroyInstance();
  }
  ~ScratchThemes() {
    Kf::Themes::DestroyInstance();
    auto& platform = Kf::Platform::Current();
    if (hadOld_)
      (void)platform.SetEnv("ORVANE_SETTINGS_DIR", old_);
    else
      (void)platform.UnsetEnv("ORVANE_SETTINGS_DIR");
    std::error_code ec;
    fs::remove_all(dir_.Native(), ec);
  }
  const GePath& Dir() const { return dir_; }

 private:
  GePath dir_;
  std::string old_;
  bool hadOld_ = false;
};

TourStep colours(600, "Colours and display elements", [](HostApp& app) {
  std::ostream& out = app.Out();
  out << "Older colour names translate to display elements by a fixed table:\n  ";
  for (int type : {0, 1, 2, 11, 23, 1000, 1001, 1002, 999})
    out << type << "->" << Kf::Color::ColorTypeToDisplayElement(static_cast<Kf::ColorType>(type)) << "  ";
  out << "\nWithout a theme collection, LookupXColorFromNativeTheme(9) = "
      << HexColor(Kf::LookupXColorFromNativeTheme(static_cast<Kf::DisplayElement>(9))) << '\n';
  const Kf::XFont font("Noto Sans JP", 10, Kf::XFont::Bold);
  Kf::XFont back;
  out << "A font is stored as one readable text: \"" << font.ToStorageText() << "\" (reads back "
      << (Kf::XFont::FromStorageText(font.ToStorageText(), back) && back == font ? "equal" : "DIFFERENT") << ")\n";
});

TourStep themes(610, "Themes", [](HostApp& app) {
  std::ostream& out = app.Out();
  ScratchThemes scratch;
  Kf::Event::FunctionHandler<Kf::ThemeChangedEvent> changed(
      [&out](const Kf::ThemeChangedEvent& e) { out << "  [KF_THEME_CHANGED_EVENT] current: " << e.currentThemeName << '\n'; });
  Kf::Event::RegisterEvent(Kf::kThemeChangedEventName, &changed);

  Kf::Themes* themes = LoadedThemes(out);
  if (!themes) {
    Kf::Event::UnregisterEvent(Kf::kThemeChangedEventName, &changed);
    return;
  }
  out << "Standard themes, with the weakest syntax-colour contrast against the editor background:\n";
  for (const auto& theme : themes->GetThemes()) {
    Kf::EditorFontInfo info = theme->GetEditorFontInfo();
    info.UpdateAutomaticColor();
    double weakest = 21.0;
    for (int c = 0; c < Kf::EditorFontInfo::kBuiltInCount; ++c)
      weakest = std::min(weakest, ContrastRatio(info.LookupColor(static_cast<Kf::EdSyntaxTokenCategory>(c)),
                                                info.GetBackgroundColor()));
    out << "  " << theme->GetName() << ": background " << HexColor(info.GetBackgroundColor()) << ", weakest "
        << static_cast<int>(weakest * 100) / 100.0 << ":1"
        << (theme->GetType() == Kf::ThemeClassic || theme->GetType() == Kf::ThemeColorVisionDeficiency
                ? " (fixed colours, kept exactly)"
                : "")
        << '\n';
  }
  out << "Switching to \"Dark Solarized\":\n";
  (void)themes->SetCurrent("Dark Solarized");
  out << "  LookupXColorFromNativeTheme(1) = "
      << HexColor(Kf::LookupXColorFromNativeTheme(static_cast<Kf::DisplayElement>(1)))
      << ", bright icons there: " << (themes->UseBrightIcons(static_cast<Kf::DisplayElement>(1)) ? "yes" : "no")
      << '\n';
  out << "Copying \"Classic\" twice gives names that never collide:\n";
  for (int i = 0; i < 2; ++i) {
    auto copy = themes->AddCopy("Classic");
    out << "  added \"" << (copy ? copy->GetName() : std::string("?")) << "\"\n";
  }

  const GePath file = scratch.Dir() / ("Dark mode" + Kf::Theme::ThemeEnding());
  auto dark = themes->Find("Dark mode");
  out << "Export \"Dark mode\" to a .theme.xml file: " << (dark->Save(file) ? "written" : "FAILED") << '\n';
  std::string error;
  auto imported = Kf::Theme::Load(file, themes->GetHostColorInfo(), &error);
  out << "  and read back: " << (imported && *imported == *dark ? "equal to the original" : "DIFFERENT " + error)
      << '\n';
  const GePath broken = scratch.Dir() / ("broken" + Kf::Theme::ThemeEnding());
  {
    std::ofstream bad(broken.Native());
    bad << "<settings><Theme><Type>Sparkly</Type></Theme></settings>";
  }
  out << "A file from elsewhere with missing values is refused:\n  "
      << (Kf::Theme::Load(broken, themes->GetHostColorInfo(), &error) ? "ACCEPTED" : error) << '\n';
  out << "Saved the collection: " << (themes->Save() ? "yes" : "NO") << "; a restart loads it again:\n";
  Kf::Themes::DestroyInstance();
  themes = LoadedThemes(out);
  Kf::Event::UnregisterEvent(Kf::kThemeChangedEventName, &changed);
  if (themes) out << "  " << themes->GetThemes().size() << " themes, current \"" << themes->GetCurrent()->GetName() << "\"\n";
});

}  // namespace
}  // namespace OrvaneHost
