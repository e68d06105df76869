// Shared set-up of the theme tests: a fake platform, a private settings
// root, a chosen user-interface language, and the reference host's default
// colours (black text on white) for automatic colours.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "orvane/theme.h"
#include "support/fake_platform.h"
#include "support/scoped_settings.h"
#include "support/test_host.h"

namespace Kf::Testing {

inline IHostColorInfo ReferenceHostColors() {
  return IHostColorInfo([] { return XColor{0, 0, 0, 1}; }, [] { return XColor{255, 255, 255, 1}; });
}

constexpr XColor Hex(std::uint32_t rrggbb) {
  return XColor{static_cast<std::uint8_t>(rrggbb >> 16), static_cast<std::uint8_t>((rrggbb >> 8) & 0xFF),
                static_cast<std::uint8_t>(rrggbb & 0xFF), 1};
}

inline EdSyntaxTokenCategory Cat(int n) { return static_cast<EdSyntaxTokenCategory>(n); }
inline DisplayElement Element(int n) { return static_cast<DisplayElement>(n); }

class ThemeTest : public ::testing::Test {
 protected:
  void SetUp() override { SetLanguage("ENU"); }
  void TearDown() override { Themes::DestroyInstance(); }
  void SetLanguage(const std::string& code) { (void)platform_->SetEnv("QOR_LOCALE", code); }

  ScopedFakePlatform platform_;
  ScopedTestHost host_;
  ScopedGlobalStorage global_;
  IHostColorInfo colors_ = ReferenceHostColors();
};

}  // namespace Kf::Testing
