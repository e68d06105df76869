#include "core/wide_text.h"

#include <cstdint>

namespace Kf::Detail {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(std::uint32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(std::uint32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

void AppendUtf8(std::string& out, char32_t code) {
  if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) code = kReplacement;
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
}

// Joins a high surrogate followed by a low one into one character; any other
// surrogate becomes U+FFFD. 32-bit text joins pairs as well: text that was
// UTF-16 before it was widened unit by unit still means one character there.
template <class Unit>
std::string UnitsToUtf8(std::basic_string_view<Unit> text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::uint32_t unit = text[i];
    if (IsHighSurrogate(unit) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
      const std::uint32_t low = text[++i];
      AppendUtf8(out, static_cast<char32_t>(0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00)));
    } else {
      AppendUtf8(out, static_cast<char32_t>(unit));
    }
  }
  return out;
}

}  // namespace

std::string Utf16ToUtf8(std::u16string_view text) { return UnitsToUtf8(text); }

std::string Utf32ToUtf8(std::u32string_view text) { return UnitsToUtf8(text); }

std::string WideToUtf8(std::wstring_view text) {
  if constexpr (sizeof(wchar_t) == 2) {
    std::u16string units(text.begin(), text.end());
    return Utf16ToUtf8(units);
  } else {
    // wchar_t is signed on Linux: a negative value turns into one above
    // U+10FFFF and is replaced.
    std::u32string codes;
    codes.reserve(text.size());
    for (wchar_t c : text) codes.push_back(static_cast<char32_t>(static_cast<std::uint32_t>(c)));
    return Utf32ToUtf8(codes);
  }
}

}  // namespace Kf::Detail
