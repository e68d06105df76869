// The next-session language in the "Global" storage.
#include "core/language_settings.h"

#include "core/diagnostics.h"
#include "orvane/storage.h"

namespace Kf::Detail {
namespace {

constexpr const char* kSection = "LanguageSettings";
constexpr const char* kKey = "CurrentLanguage";

}  // namespace

std::string LoadNextSessionLanguage() {
  std::string code;
  if (KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global")) {
    if (!global->Load(kSection, kKey, code)) code.clear();
  }
  return code;
}

void StoreNextSessionLanguage(const std::string& code) {
  KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
  if (!global || !global->Store(kSection, kKey, code))
    ReportError("SetNextSessionLanguage", "could not save the next-session language \"" + code + "\"");
}

}  // namespace Kf::Detail
