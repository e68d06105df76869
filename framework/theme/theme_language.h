// The one place the theme code asks for the user-interface language.
#pragma once

#include <string>

#include "orvane/language.h"

namespace Kf::Detail {

// True when the session's language is exactly "JPN".
inline bool ThemeLanguageIsJapanese() { return Kf::GetCurrentLanguage() == "JPN"; }

// The fixed-width face of the language's editor defaults.
inline std::string DefaultFixedFace(bool japanese) { return japanese ? "MS Mincho" : "Consolas"; }

}  // namespace Kf::Detail
