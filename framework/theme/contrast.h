// Relative luminance and contrast ratio of colours, by the WCAG 2 formulas:
// used to pick bright or dark icons and to check that themes stay readable.
#pragma once

#include <cmath>

#include "orvane/colortypes.h"

namespace Kf::Detail {

inline double LinearChannel(std::uint8_t value) {
  const double c = value / 255.0;
  return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

inline double RelativeLuminance(XColor color) {
  return 0.2126 * LinearChannel(color.red) + 0.7152 * LinearChannel(color.green) +
         0.0722 * LinearChannel(color.blue);
}

// From 1 (equal) to 21 (black on white).
inline double ContrastRatio(XColor a, XColor b) {
  const double la = RelativeLuminance(a);
  const double lb = RelativeLuminance(b);
  return la > lb ? (la + 0.05) / (lb + 0.05) : (lb + 0.05) / (la + 0.05);
}

}  // namespace Kf::Detail
