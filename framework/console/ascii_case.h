// Internal: ASCII-only letter-case folding for option names. Only A-Z and
// a-z fold; every other byte, UTF-8 sequences included, compares exactly.
#pragma once

#include <string_view>

namespace Kf::Console::Detail {

inline char FoldAscii(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

inline bool EqualsIgnoringAsciiCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (FoldAscii(a[i]) != FoldAscii(b[i])) return false;
  return true;
}

}  // namespace Kf::Console::Detail
