// Reading themes from a storage and from ".theme.xml" files.
#pragma once

#include <memory>
#include <string>

#include "orvane/theme.h"

namespace Kf::Detail {

// The theme stored under `key`, or null when a value is missing or cannot be
// read (`error`, when given, then says which). An unknown type string gives
// a user theme, on "Default" when the base type is unknown too.
std::shared_ptr<Theme> LoadThemeFromStorage(KfPersistentStorage& storage, const std::string& key,
                                            const IHostColorInfo& hostColors, std::string* error);
std::shared_ptr<Theme> LoadThemeFile(const GePath& file, const IHostColorInfo& hostColors, std::string* error);
bool SaveThemeFile(const Theme& theme, const GePath& file);

}  // namespace Kf::Detail
