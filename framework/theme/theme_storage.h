// Reading themes from a storage and from ".theme.xml" files.
#pragma once

#include <memory>
#include <string>

#include "orvane/theme.h"

namespace Kf::Detail {

// kStorage reads the user's own settings leniently, as earlier versions did
// (an unknown type string makes a user theme). kUntrustedFile also refuses
// unknown type strings, over-long texts and control characters.
enum class ThemeCheck { kStorage, kUntrustedFile };

std::shared_ptr<Theme> LoadThemeFromStorage(KfPersistentStorage& storage, const std::string& key,
                                            const IHostColorInfo& hostColors, ThemeCheck check, std::string* error);
std::shared_ptr<Theme> LoadThemeFile(const GePath& file, const IHostColorInfo& hostColors, std::string* error);
bool SaveThemeFile(const Theme& theme, const GePath& file);

}  // namespace Kf::Detail
