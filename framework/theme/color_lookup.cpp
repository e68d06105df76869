// The colour-name table, the host colour callbacks and the current theme's
// colour lookup.
#include <utility>

#include "orvane/hostutil.h"
#include "orvane/theme.h"

namespace Kf {

IHostColorInfo::IHostColorInfo(std::function<XColor()> defaultTextColor, std::function<XColor()> defaultBackgroundColor)
    : textColor_(std::move(defaultTextColor)), backgroundColor_(std::move(defaultBackgroundColor)) {}

XColor IHostColorInfo::DefaultTextColor() const { return textColor_ ? textColor_() : XColor(); }
XColor IHostColorInfo::DefaultBackgroundColor() const { return backgroundColor_ ? backgroundColor_() : XColor(); }

IHostLogfontSizeConverter::IHostLogfontSizeConverter(std::function<std::uint64_t(int)> heightToPoints)
    : heightToPoints_(std::move(heightToPoints)) {}

std::uint64_t IHostLogfontSizeConverter::HeightToPoints(int height) const {
  return heightToPoints_ ? heightToPoints_(height) : 0;
}

namespace Color {

DisplayElement ColorTypeToDisplayElement(ColorType type) {
  const std::int32_t value = type;
  switch (value) {
    case 0: return DisplayElement(0);
    case 2: return DisplayElement(7);
    case 3: return DisplayElement(8);
    case 4: return DisplayElement(10);
    case 5: return DisplayElement(12);
    case 6: return DisplayElement(13);
    case 7: return DisplayElement(14);
    case 8: return DisplayElement(15);
    case 9: return DisplayElement(16);
    case 10: return DisplayElement(17);
    case 1000: return DisplayElement(2);
    case 1001: return DisplayElement(20);
    case 1002: return DisplayElement(24);
    default: break;
  }
  if (value >= 11 && value <= 23) return DisplayElement(value + 38);
  return DisplayElement(1);
}

}  // namespace Color

XColor LookupXColor(ColorType type) {
  return HostUtil::GetThemeXColor(Color::ColorTypeToDisplayElement(type));
}

XColor LookupXColorFromNativeTheme(DisplayElement element) {
  // The shared pointer keeps the theme alive for the read even if another
  // thread switches themes meanwhile.
  std::shared_ptr<Theme> current = Themes::CurrentOfInstance();
  return current ? current->GetXColor(element) : XColor();
}

}  // namespace Kf
