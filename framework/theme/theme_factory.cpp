// Making standard and user themes, and converting the font settings of
// earlier versions.
#include <cstdlib>

#include "orvane/storage.h"
#include "orvane/theme.h"
#include "theme/theme_language.h"

namespace Kf {
namespace {

template <class Base>
std::shared_ptr<Theme> MakeUser(const IHostColorInfo& hostColors) {
  return std::make_shared<UserTheme<Base>>(hostColors);
}

// The font records of earlier versions, in the "Global" storage section
// "Font": "Font2_0" the editor font and "Font2_1" the interface font (with
// "_JPN" variants for a Japanese user interface), each holding the face, the
// LOGFONT height, the weight and the italic flag. Their syntax colouring was
// kept as editor font records in the section "EditorFont".
constexpr const char* kOldFontSection = "Font";
constexpr const char* kOldEditorSection = "EditorFont";

bool LoadOldFont(KfPersistentStorage& storage, int index, bool japanese, const std::string& defaultFace,
                 IHostLogfontSizeConverter* converter, XFont& out) {
  std::string name = "Font2_" + std::to_string(index) + (japanese ? "_JPN" : "");
  KfPerIStream in(storage, kOldFontSection, name);
  std::string face;
  std::int32_t height = 0;
  std::int32_t weight = 400;
  bool italic = false;
  if (!(in >> face >> height >> weight >> italic)) return false;
  // Without the host's converter, assume the usual 96 pixels per inch.
  std::uint64_t points = converter ? converter->HeightToPoints(height)
                                   : static_cast<std::uint64_t>((std::abs(height) * 72 + 48) / 96);
  if (points < 1 || points > 1000) points = 10;
  XFont::Style style = weight >= 600 ? XFont::Bold : (italic ? XFont::Italic : XFont::Regular);
  out = XFont(face.empty() ? defaultFace : face, points, style);
  return true;
}

}  // namespace

std::vector<std::shared_ptr<Theme>> ThemeFactory::CreateStdThemes(const IHostColorInfo& hostColors) {
  std::vector<std::shared_ptr<Theme>> themes;
  for (int type = ThemeDefault; type < ThemeUser; ++type)
    themes.push_back(CreateStdTheme(static_cast<ThemeType>(type), hostColors));
  return themes;
}

std::shared_ptr<Theme> ThemeFactory::CreateStdTheme(ThemeType type, const IHostColorInfo& hostColors) {
  switch (type) {
    case ThemeDefault: return std::make_shared<DefaultTheme>(hostColors);
    case ThemeClassic: return std::make_shared<ClassicTheme>(hostColors);
    case ThemeDarkMode: return std::make_shared<DarkModeTheme>(hostColors);
    case ThemeHighContrast: return std::make_shared<HighContrastTheme>(hostColors);
    case ThemeSolarized: return std::make_shared<SolarizedTheme>(hostColors);
    case ThemeDarkSolarized: return std::make_shared<DarkSolarizedTheme>(hostColors);
    case ThemeColorVisionDeficiency: return std::make_shared<ColorVisionDeficiencyTheme>(hostColors);
    case ThemeUser: break;
  }
  return nullptr;
}

std::shared_ptr<Theme> ThemeFactory::CreateUserTheme(ThemeType baseType, const IHostColorInfo& hostColors) {
  switch (baseType) {
    case ThemeClassic: return MakeUser<ClassicTheme>(hostColors);
    case ThemeDarkMode: return MakeUser<DarkModeTheme>(hostColors);
    case ThemeHighContrast: return MakeUser<HighContrastTheme>(hostColors);
    case ThemeSolarized: return MakeUser<SolarizedTheme>(hostColors);
    case ThemeDarkSolarized: return MakeUser<DarkSolarizedTheme>(hostColors);
    case ThemeColorVisionDeficiency: return MakeUser<ColorVisionDeficiencyTheme>(hostColors);
    default: break;
  }
  return MakeUser<DefaultTheme>(hostColors);
}

std::shared_ptr<Theme> ThemeFactory::CloneIntoUserTheme(const Theme& theme) {
  const ThemeType base = theme.GetIsStandard() ? theme.GetType() : theme.GetBaseType();
  std::shared_ptr<Theme> user = CreateUserTheme(base, theme.GetHostColorInfo());
  user->SetName(theme.GetName());
  user->SetProportionalFont(theme.GetProportionalFont());
  user->SetFixedFont(theme.GetFixedFont());
  user->SetEditorFontInfo(theme.GetEditorFontInfoCRef());
  for (int element = 0; element < kDisplayElementCount; ++element)
    user->SetXColor(static_cast<DisplayElement>(element), theme.GetXColor(static_cast<DisplayElement>(element)));
  user->SetIsModified(theme.GetIsModified());
  return user;
}

std::shared_ptr<Theme> ThemeFactory::LoadOldCompatibleTheme(const IHostColorInfo& hostColors,
                                                            IHostLogfontSizeConverter* converter) {
  KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
  if (!global) return nullptr;
  const bool japanese = Detail::ThemeLanguageIsJapanese();
  std::shared_ptr<Theme> theme = CreateUserTheme(ThemeClassic, hostColors);
  bool found = false;

  XFont fixed;
  if (LoadOldFont(*global, 0, japanese, japanese ? "MS Mincho" : "Courier New", converter, fixed) ||
      LoadOldFont(*global, 0, !japanese, "Courier New", converter, fixed)) {
    theme->SetFixedFont(fixed);
    found = true;
  }
  XFont proportional;
  if (LoadOldFont(*global, 1, japanese, "MS Sans Serif", converter, proportional) ||
      LoadOldFont(*global, 1, !japanese, "MS Sans Serif", converter, proportional)) {
    theme->SetProportionalFont(proportional);
    found = true;
  }
  EditorFontInfo editor(hostColors);
  if (editor.Load(*global, kOldEditorSection)) {
    theme->SetEditorFontInfo(editor);
    found = true;
  } else if (found) {
    XFont base = theme->GetFixedFont();
    theme->GetEditorFontInfoRef().SetBaseFont(base);
  }
  if (!found) return nullptr;
  theme->SetName(Themes::kUserSettingsThemeName);
  return theme;
}

}  // namespace Kf
