// Internal: the persisted next-session language ("Global" storage, section
// "LanguageSettings", key "CurrentLanguage"). Defined by the storage layer,
// which sits above this one.
#pragma once

#include <string>

namespace Kf::Detail {

// The stored code, empty when none is stored or the setting is unreadable.
std::string LoadNextSessionLanguage();
void StoreNextSessionLanguage(const std::string& code);

}  // namespace Kf::Detail
