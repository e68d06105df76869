// The reference host's side of themes: its default colours, the theme
// collection it loads, and the SVG preview of a theme.
#pragma once

#include <iosfwd>
#include <string>

#include "orvane/theme.h"

namespace OrvaneHost {

// The console host's default colours: black text on a white background. A
// GUI host would answer the desktop's current colours here.
Kf::IHostColorInfo HostColors();

// The process's theme collection, created and loaded from the settings on
// first use. Null (with a message on `err`) when it cannot be loaded.
Kf::Themes* LoadedThemes(std::ostream& err);

// "#RRGGBB", or "none" for the zero colour.
std::string HexColor(Kf::XColor color);
// The WCAG 2 contrast ratio of two colours (1 to 21).
double ContrastRatio(Kf::XColor a, Kf::XColor b);

// Writes an SVG picture of the theme: a short C sample in the theme's editor
// font, background and syntax colours and styles, and a strip of its 84
// display-element colours (crossed boxes where the theme sets none).
void WriteThemePreviewSvg(const Kf::Theme& theme, std::ostream& out);

}  // namespace OrvaneHost
