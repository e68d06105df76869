// The font value and its one-line storage text.
#include <charconv>

#include "orvane/theme.h"

namespace Kf {
namespace {

// The named styles by name, any other number as plain decimal, so that every
// value of the enumeration survives a save and a load.
std::string StyleStorageText(XFont::Style style) {
  if (style >= XFont::Regular && style <= XFont::Italic) return XFont::StyleName(style);
  return std::to_string(static_cast<std::int32_t>(style));
}

bool ParseStyle(const std::string& text, XFont::Style& out) {
  for (XFont::Style style : {XFont::Regular, XFont::Bold, XFont::Italic}) {
    if (text == XFont::StyleName(style)) {
      out = style;
      return true;
    }
  }
  std::int32_t number = 0;
  const char* end = text.data() + text.size();
  auto [ptr, ec] = std::from_chars(text.data(), end, number);
  if (text.empty() || ec != std::errc() || ptr != end) return false;
  out = static_cast<XFont::Style>(number);
  return true;
}

}  // namespace

XFont::XFont(const std::string& fontFace) : face(fontFace) {}

// A negative int widens with its sign, as the older interface did.
XFont::XFont(const std::string& fontFace, int fontSize, Style fontStyle)
    : face(fontFace), size(static_cast<std::uint64_t>(static_cast<std::int64_t>(fontSize))), style(fontStyle) {}

XFont::XFont(const std::string& fontFace, std::uint64_t fontSize, Style fontStyle)
    : face(fontFace), size(fontSize), style(fontStyle) {}

bool XFont::operator==(const XFont& other) const {
  return face == other.face && style == other.style && size == other.size;
}

bool XFont::operator!=(const XFont& other) const { return !(*this == other); }

std::string XFont::StyleName(Style style) {
  switch (style) {
    case Regular: return "Regular";
    case Bold: return "Bold";
    case Italic: return "Italic";
  }
  return "Style" + std::to_string(static_cast<std::int32_t>(style));
}

std::string XFont::Description() const {
  std::string text = face + " " + std::to_string(size) + " pt";
  if (style != Regular) text += " " + StyleName(style);
  return text;
}

std::string XFont::ToStorageText() const {
  return std::to_string(size) + ";" + StyleStorageText(style) + ";" + face;
}

bool XFont::FromStorageText(const std::string& text, XFont& out) {
  const std::size_t first = text.find(';');
  if (first == std::string::npos) return false;
  const std::size_t second = text.find(';', first + 1);
  if (second == std::string::npos) return false;
  std::uint64_t size = 0;
  const char* begin = text.data();
  const char* end = begin + first;
  auto [ptr, ec] = std::from_chars(begin, end, size);
  if (first == 0 || ec != std::errc() || ptr != end) return false;
  Style style = Regular;
  if (!ParseStyle(text.substr(first + 1, second - first - 1), style)) return false;
  out = XFont(text.substr(second + 1), size, style);
  return true;
}

}  // namespace Kf
