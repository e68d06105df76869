#include "host_themes.h"

#include <cmath>
#include <cstdio>
#include <ostream>
#include <utility>
#include <vector>

namespace OrvaneHost {
namespace {

using Kf::XColor;

double Linear(std::uint8_t value) {
  const double c = value / 255.0;
  return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double Luminance(XColor c) { return 0.2126 * Linear(c.red) + 0.7152 * Linear(c.green) + 0.0722 * Linear(c.blue); }

std::string Escape(const std::string& text) {
  std::string out;
  for (char ch : text) {
    switch (ch) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      case '\'': out += "&apos;"; break;
      default: out += ch;
    }
  }
  return out;
}

// The syntax categories of the sample's tokens.
enum Token : int {
  kText = 0,
  kKeyword = 1,
  kType = 4,
  kNumber = 5,
  kComment = 9,
  kDocComment = 11,
  kPreprocessor = 16,
  kString = 17,
};

using Line = std::vector<std::pair<int, std::string>>;

const std::vector<Line>& Sample() {
  static const std::vector<Line> lines = {
      {{kDocComment, "/** Blinks the status LED from the timer tick. */"}},
      {{kPreprocessor, "#include <stdint.h>"}},
      {{kPreprocessor, "#define LED_MASK "}, {kNumber, "0x20u"}},
      {},
      {{kKeyword, "static volatile "}, {kType, "uint8_t"}, {kText, " ticks = "}, {kNumber, "0"}, {kText, ";  "},
       {kComment, "// set by the timer"}},
      {},
      {{kType, "int"}, {kText, " main("}, {kType, "void"}, {kText, ")"}},
      {{kText, "{"}},
      {{kText, "    "}, {kKeyword, "const "}, {kType, "char"}, {kText, " *name = "}, {kString, "\"blinky\""},
       {kText, ";"}},
      {{kText, "    "}, {kKeyword, "for"}, {kText, " ("}, {kType, "int"}, {kText, " i = "}, {kNumber, "0"},
       {kText, "; i < "}, {kNumber, "10"}, {kText, "; i++) {"}},
      {{kText, "        "}, {kKeyword, "if"}, {kText, " (ticks > "}, {kNumber, "42"},
       {kText, ") PORTB ^= LED_MASK;"}},
      {{kText, "    }"}},
      {{kText, "    "}, {kKeyword, "return"}, {kText, " "}, {kNumber, "0"}, {kText, ";"}},
      {{kText, "}"}},
  };
  return lines;
}

}  // namespace

Kf::IHostColorInfo HostColors() {
  return Kf::IHostColorInfo([] { return XColor{0, 0, 0, 1}; }, [] { return XColor{255, 255, 255, 1}; });
}

Kf::Themes* LoadedThemes(std::ostream& err) {
  Kf::Themes* themes = Kf::Themes::Instance();
  if (themes) return themes;
  themes = Kf::Themes::CreateInstance(HostColors(), nullptr);
  if (!themes->Load()) {
    err << "orvane-host: the themes cannot be loaded (set ORVANE_SETTINGS_DIR or HOME)\n";
    return nullptr;
  }
  return themes;
}

std::string HexColor(XColor color) {
  if (!color.IsValid()) return "none";
  char text[8];
  std::snprintf(text, sizeof text, "#%02X%02X%02X", color.red, color.green, color.blue);
  return text;
}

double ContrastRatio(XColor a, XColor b) {
  const double la = Luminance(a);
  const double lb = Luminance(b);
  return la > lb ? (la + 0.05) / (lb + 0.05) : (lb + 0.05) / (la + 0.05);
}

void WriteThemePreviewSvg(const Kf::Theme& theme, std::ostream& out) {
  const Kf::IHostColorInfo& host = theme.GetHostColorInfo();
  Kf::EditorFontInfo info = theme.GetEditorFontInfo();
  info.UpdateAutomaticColor();  // automatic colours as this host draws them
  const XColor background = info.GetBackgroundColor().IsValid() ? info.GetBackgroundColor()
                                                                : host.DefaultBackgroundColor();
  const Kf::XFont& base = info.GetBaseFont();
  const double fontPx = static_cast<double>(base.size) * 4.0 / 3.0;
  const double lineHeight = std::round(fontPx * 1.4);
  const int textTop = 40;
  const int width = 720;
  const int editorHeight = static_cast<int>(lineHeight * static_cast<double>(Sample().size())) + 24;
  const int swatch = 20;
  const int perRow = 28;
  const int stripTop = textTop + editorHeight + 28;
  const int height = stripTop + 3 * (swatch + 4) + 16;

  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << width << "\" height=\"" << height
      << "\" viewBox=\"0 0 " << width << ' ' << height << "\">\n"
      << "<rect width=\"100%\" height=\"100%\" fill=\"#F4F4F4\"/>\n"
      << "<text x=\"12\" y=\"26\" font-family=\"" << Escape(theme.GetProportionalFont().face)
      << ", sans-serif\" font-size=\"16\" fill=\"#202020\">" << Escape(theme.GetName()) << " ("
      << Escape(Kf::Theme::TypeToTypeString(theme.GetType())) << ", based on "
      << Escape(Kf::Theme::TypeToTypeString(theme.GetBaseType())) << ")</text>\n"
      << "<rect x=\"8\" y=\"" << textTop << "\" width=\"" << width - 16 << "\" height=\"" << editorHeight
      << "\" fill=\"" << HexColor(background) << "\" stroke=\"#888888\"/>\n"
      << "<g font-family=\"" << Escape(base.face) << ", monospace\" font-size=\"" << fontPx
      << "\">\n";
  double y = textTop + 12 + fontPx;
  for (const Line& line : Sample()) {
    out << "<text x=\"20\" y=\"" << y << "\">";
    for (const auto& [category, text] : line) {
      const auto cat = static_cast<Kf::EdSyntaxTokenCategory>(category);
      XColor color = info.LookupColor(cat);
      if (!color.IsValid()) color = host.DefaultTextColor();
      out << "<tspan fill=\"" << HexColor(color) << '"';
      if (Kf::EditorFontInfo::HasStyling(cat)) {
        const Kf::XFont::Style style = info.LookupStyle(cat);
        if (style == Kf::XFont::Bold) out << " font-weight=\"bold\"";
        if (style == Kf::XFont::Italic) out << " font-style=\"italic\"";
      }
      // No-break spaces: renderers collapse runs of plain spaces in SVG text.
      std::string code = Escape(text);
      for (std::size_t at = code.find(' '); at != std::string::npos; at = code.find(' ', at + 6))
        code.replace(at, 1, "&#160;");
      out << '>' << code << "</tspan>";
    }
    out << "</text>\n";
    y += lineHeight;
  }
  out << "</g>\n<text x=\"12\" y=\"" << stripTop - 8
      << "\" font-family=\"sans-serif\" font-size=\"12\" fill=\"#404040\">display elements 0 to 83</text>\n";
  for (int element = 0; element < Kf::kDisplayElementCount; ++element) {
    const XColor color = theme.GetXColor(static_cast<Kf::DisplayElement>(element));
    const int x = 12 + (element % perRow) * (swatch + 4);
    const int top = stripTop + (element / perRow) * (swatch + 4);
    out << "<rect x=\"" << x << "\" y=\"" << top << "\" width=\"" << swatch << "\" height=\"" << swatch
        << "\" fill=\"" << (color.IsValid() ? HexColor(color) : std::string("none")) << "\" stroke=\"#888888\">"
        << "<title>element " << element << ": " << HexColor(color) << "</title></rect>\n";
    if (!color.IsValid()) {
      out << "<path d=\"M" << x << ' ' << top << "l" << swatch << ' ' << swatch << "M" << x + swatch << ' ' << top
          << "l-" << swatch << ' ' << swatch << "\" stroke=\"#BBBBBB\"/>\n";
    }
  }
  out << "</svg>\n";
}

}  // namespace OrvaneHost
