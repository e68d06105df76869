// The standard themes. Each constructor sets its display-element colours and
// its syntax colouring; everything else keeps the values of the Theme base.
//
// Classic keeps the colours of earlier versions and Color Accessibility its
// palette for colour-vision deficiencies, both exactly. The other themes are built from one palette each, every syntax
// colour having a contrast ratio of at least 4.5:1 against its editor
// background (7:1 in High contrast), so text stays readable.
#include <initializer_list>

#include "orvane/theme.h"

namespace Kf {
namespace {

constexpr XColor Rgb(std::uint32_t rrggbb) {
  return XColor{static_cast<std::uint8_t>(rrggbb >> 16), static_cast<std::uint8_t>((rrggbb >> 8) & 0xFF),
                static_cast<std::uint8_t>(rrggbb & 0xFF), 1};
}

void SetColors(EditorFontInfo& info, std::initializer_list<int> categories, std::uint32_t rrggbb, bool automatic) {
  for (int category : categories) info.SetColor(static_cast<EdSyntaxTokenCategory>(category), Rgb(rrggbb), automatic);
}

void SetStyles(EditorFontInfo& info, std::initializer_list<int> categories, XFont::Style style) {
  for (int category : categories) info.SetStyle(static_cast<EdSyntaxTokenCategory>(category), style);
}

void SetElements(Theme& theme, std::initializer_list<std::pair<int, std::uint32_t>> elements) {
  for (const auto& [element, rrggbb] : elements) theme.SetXColor(static_cast<DisplayElement>(element), Rgb(rrggbb));
}

// Japanese fonts are used without the italic style: their oblique forms are
// synthesised and hard to read.
XFont::Style CommentStyle(bool japanese) { return japanese ? XFont::Regular : XFont::Italic; }

// One colour per kind of text, for the themes whose colours are ours to pick.
struct Palette {
  std::uint32_t background;
  bool backgroundAutomatic;
  std::uint32_t text;  // plain text: categories 0, 2, 6 to 8, 18, 19, 21
  bool textAutomatic;
  std::uint32_t strongText;  // 13: bold plain text
  std::uint32_t keyword;     // 1 (bold) and 3
  std::uint32_t type;        // 4
  std::uint32_t number;      // 5
  std::uint32_t comment;     // 9, 10
  std::uint32_t docComment;  // 11, 12, 14, 15
  std::uint32_t preprocessor;  // 16
  std::uint32_t string;        // 17
  std::uint32_t marker;        // 20: drawn without a font style
};

void ApplyPalette(Theme& theme, const Palette& p, bool japanese) {
  EditorFontInfo& info = theme.GetEditorFontInfoRef();
  info.SetBackgroundColor(Rgb(p.background), p.backgroundAutomatic);
  SetColors(info, {0, 2, 6, 7, 8, 18, 19, 21}, p.text, p.textAutomatic);
  SetColors(info, {13}, p.strongText, p.textAutomatic);
  SetColors(info, {1, 3}, p.keyword, false);
  SetColors(info, {4}, p.type, false);
  SetColors(info, {5}, p.number, false);
  SetColors(info, {9, 10}, p.comment, false);
  SetColors(info, {11, 12, 14, 15}, p.docComment, false);
  SetColors(info, {16}, p.preprocessor, false);
  SetColors(info, {17}, p.string, false);
  SetColors(info, {20}, p.marker, false);
  SetStyles(info, {0, 2, 3, 4, 5, 6, 7, 8, 16, 17, 18, 19, 20, 21}, XFont::Regular);
  SetStyles(info, {1, 13}, XFont::Bold);
  SetStyles(info, {9, 10, 11, 12, 14, 15}, CommentStyle(japanese));
}

// The display elements every palette theme sets: 0 window text, 1 window
// background, 8 borders, 9 panes, 20 tool bars.
void ApplyElements(Theme& theme, std::uint32_t text, std::uint32_t window, std::uint32_t border, std::uint32_t pane,
                   std::uint32_t toolbar) {
  SetElements(theme, {{0, text}, {1, window}, {8, border}, {9, pane}, {20, toolbar}});
}

}  // namespace

DefaultTheme::DefaultTheme(const IHostColorInfo& hostColors) : Theme("Default", ThemeDefault, hostColors) {
  SetElements(*this, {{8, 0x909090}, {9, 0xCCCCCC}, {20, 0xE1E1E1}});
  // Plain text and the background follow the host, as the desktop does.
  ApplyPalette(*this,
               Palette{0xFFFFFF, true, 0x000000, true, 0x000000, 0x0000FF, 0x267F99, 0x098658, 0x008000, 0x0000A0,
                       0xAF00DB, 0xA31515, 0x0000FF},
               CurrentLangIsJPN());
}

ClassicTheme::ClassicTheme(const IHostColorInfo& hostColors) : Theme("Classic", ThemeClassic, hostColors) {
  SetElements(*this, {{9, 0xCCCCCC}, {8, 0x909090}, {20, 0xE1E1E1}});
  EditorFontInfo& info = GetEditorFontInfoRef();
  XFont base = GetFixedFont();
  base.size = 9;
  info.SetBaseFont(base);
  SetColors(info, {0, 1, 2}, 0x000000, true);
  SetColors(info, {3, 4}, 0x0000FF, false);
  SetColors(info, {5}, 0x009600, false);
  SetColors(info, {9, 10}, 0x008000, false);
  SetColors(info, {11, 12}, 0x0000A0, false);
  SetColors(info, {13}, 0x000000, true);
  SetColors(info, {14}, 0x0000A0, false);
  SetColors(info, {15}, 0x000080, false);
  SetColors(info, {16}, 0x0000FF, false);
  SetColors(info, {17}, 0xFF0000, false);
  SetColors(info, {18, 19}, 0x000000, true);
  SetColors(info, {20}, 0x0000FF, false);
  SetStyles(info, {1, 13}, XFont::Bold);
  SetStyles(info, {9, 10, 11, 12, 14, 15}, CommentStyle(CurrentLangIsJPN()));
  SetStyles(info, {0, 2, 3, 4, 5, 16, 17, 18, 19, 20}, XFont::Regular);
}

DarkModeTheme::DarkModeTheme(const IHostColorInfo& hostColors) : Theme("Dark mode", ThemeDarkMode, hostColors) {
  ApplyElements(*this, 0xDCDCDC, 0x1E1F22, 0x45474C, 0x2B2D30, 0x2B2D30);
  ApplyPalette(*this,
               Palette{0x1E1F22, false, 0xDCDCDC, false, 0xFFFFFF, 0x7AA7E8, 0x5CC8B4, 0xC3D89A, 0x7DAF6E, 0x8FB98A,
                       0xD08CD0, 0xE6A077, 0x7AA7E8},
               CurrentLangIsJPN());
}

HighContrastTheme::HighContrastTheme(const IHostColorInfo& hostColors)
    : Theme("High contrast", ThemeHighContrast, hostColors) {
  ApplyElements(*this, 0xFFFFFF, 0x000000, 0xFFFFFF, 0x000000, 0x000000);
  ApplyPalette(*this,
               Palette{0x000000, false, 0xFFFFFF, false, 0xFFFFFF, 0xFFFF00, 0x00FFFF, 0x7CFC00, 0x00FF00, 0x90EE90,
                       0xFF80FF, 0xFFA060, 0x00FFFF},
               CurrentLangIsJPN());
}

// Solarized. The backgrounds and plain text are the palette's base colours.
// Its accent colours are too light on base3 (and several too dark on base03)
// for 4.5:1, so each accent is moved along the line to black (light form) or
// to white (dark form) just far enough to reach it; the hue stays. Accents
// that already reach it are used as published.
//   base03 #002B36  base02 #073642  base01 #586E75  base00 #657B83
//   base0  #839496  base1  #93A1A1  base2  #EEE8D5  base3  #FDF6E3
//   yellow #B58900  orange #CB4B16  red #DC322F  magenta #D33682
//   violet #6C71C4  blue   #268BD2  cyan #2AA198  green  #859900
SolarizedTheme::SolarizedTheme(const IHostColorInfo& hostColors) : Theme("Solarized", ThemeSolarized, hostColors) {
  ApplyElements(*this, 0x586E75, 0xFDF6E3, 0x93A1A1, 0xEEE8D5, 0xEEE8D5);
  // text base01, strong base02; accents darkened: green, yellow, cyan,
  // base00 (comments), violet, orange, red, blue.
  ApplyPalette(*this,
               Palette{0xFDF6E3, false, 0x586E75, false, 0x073642, 0x687700, 0x8B6900, 0x207C75, 0x5E727A, 0x6368B4,
                       0xC14715, 0xD3302D, 0x2073AE},
               CurrentLangIsJPN());
}

DarkSolarizedTheme::DarkSolarizedTheme(const IHostColorInfo& hostColors)
    : Theme("Dark Solarized", ThemeDarkSolarized, hostColors) {
  ApplyElements(*this, 0x839496, 0x002B36, 0x586E75, 0x073642, 0x073642);
  // text base0, strong base1; green, yellow, cyan as published; base01
  // (comments), violet, orange, red and blue lightened.
  ApplyPalette(*this,
               Palette{0x002B36, false, 0x839496, false, 0x93A1A1, 0x859900, 0xB58900, 0x2AA198, 0x829298, 0x8589CE,
                       0xD7744C, 0xE56765, 0x3A95D6},
               CurrentLangIsJPN());
}

ColorVisionDeficiencyTheme::ColorVisionDeficiencyTheme(const IHostColorInfo& hostColors)
    : Theme("Color Accessibility", ThemeColorVisionDeficiency, hostColors) {
  EditorFontInfo& info = GetEditorFontInfoRef();
  info.SetBackgroundColor(Rgb(0xFFFFFF), false);
  SetColors(info, {0}, 0x009E73, false);
  SetColors(info, {1}, 0x0000FF, false);
  SetColors(info, {2, 3}, 0xD55E00, false);
  SetColors(info, {4}, 0x0000FF, false);
  SetColors(info, {5}, 0x000000, false);
  SetColors(info, {9, 10}, 0x0072B2, false);
  SetColors(info, {11, 12, 13}, 0x009E73, false);
  SetColors(info, {14, 15}, 0x0072B2, false);
  SetColors(info, {16}, 0x009E73, false);
  SetColors(info, {17}, 0xD55E00, false);
  SetColors(info, {18, 19}, 0x000000, false);
  SetColors(info, {20}, 0x009E73, false);
  SetStyles(info, {1, 2, 13, 17}, XFont::Bold);
  SetStyles(info, {9, 10, 11, 12, 14, 15, 16}, CommentStyle(CurrentLangIsJPN()));
  SetStyles(info, {19, 20}, XFont::Regular);
}

#define ORVANE_THEME_CLONE(ClassName) \
  std::shared_ptr<Theme> ClassName::Clone() const { return std::shared_ptr<Theme>(new ClassName(*this)); }
ORVANE_THEME_CLONE(DefaultTheme)
ORVANE_THEME_CLONE(ClassicTheme)
ORVANE_THEME_CLONE(DarkModeTheme)
ORVANE_THEME_CLONE(HighContrastTheme)
ORVANE_THEME_CLONE(SolarizedTheme)
ORVANE_THEME_CLONE(DarkSolarizedTheme)
ORVANE_THEME_CLONE(ColorVisionDeficiencyTheme)
#undef ORVANE_THEME_CLONE

}  // namespace Kf
