// The session's language decision and the installed language packs.
#include "orvane/language.h"

#include <array>
#include <filesystem>
#include <optional>

#include "core/language_settings.h"
#include "orvane/events.h"
#include "orvane/locks.h"
#include "orvane/platform.h"

namespace Kf {
namespace {

struct KnownLanguage {
  const char* code;
  const char* name;    // the language's name in itself
  const char* prefix;  // locale names of this language begin with it
};

constexpr std::array<KnownLanguage, 2> kKnownLanguages{{
    {"ENU", "English", "en"},
    {"JPN", "日本語", "ja"},
}};

// Toolchain directories below the installation that carry their own packs.
constexpr std::array<const char*, 3> kToolchainDirs{"arm", "rl78", "rx"};

struct LanguageCache {
  IdeUtil::Mutex mutex;
  std::optional<std::string> current;                  // guarded by mutex
  std::optional<std::vector<std::string>> userLocales;  // guarded by mutex
};

LanguageCache& Cache() {
  static LanguageCache cache;
  return cache;
}

// The system's locale table, enumerated once.
std::vector<std::string> UserLocales() {
  LanguageCache& cache = Cache();
  IdeUtil::ScopedLock lock(cache.mutex);
  if (!cache.userLocales) cache.userLocales = Platform::Current().GetUserLocales();
  return *cache.userLocales;
}

bool IsDirectory(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_directory(path, error);
}

bool PackInstalled(const std::filesystem::path& installation, const char* code) {
  if (IsDirectory(installation / "Language" / code)) return true;
  for (const char* toolchain : kToolchainDirs) {
    if (IsDirectory(installation / toolchain / "Language" / code)) return true;
  }
  return false;
}

bool IsInstalled(const std::vector<LangStrings>& installed, const std::string& code) {
  for (const LangStrings& language : installed) {
    if (language.first == code) return true;
  }
  return false;
}

// Step 4: several languages are installed.
std::string ChooseAmongInstalled(const std::vector<LangStrings>& installed) {
  std::string next = Detail::LoadNextSessionLanguage();
  if (IsInstalled(installed, next)) return next;
  for (const std::string& locale : UserLocales()) {
    for (const KnownLanguage& language : kKnownLanguages) {
      if (locale.rfind(language.prefix, 0) == 0 && IsInstalled(installed, language.code)) return language.code;
    }
  }
  return std::string();
}

std::string DecideLanguage() {
  std::vector<LangStrings> installed;
  GetInstalledLanguages(&installed);
  std::string answer;
  if (installed.size() == 1)
    answer = installed.front().first;
  else if (installed.size() > 1)
    answer = ChooseAmongInstalled(installed);
  return answer.empty() ? "ENU" : answer;
}

}  // namespace

std::string GetCurrentLanguage() {
  std::string override;
  if (Platform::Current().GetEnv("QOR_LOCALE", override) && (override == "ENU" || override == "JPN"))
    return override;
  LanguageCache& cache = Cache();
  {
    IdeUtil::ScopedLock lock(cache.mutex);
    if (cache.current) return *cache.current;
  }
  std::string decided = DecideLanguage();
  IdeUtil::ScopedLock lock(cache.mutex);
  if (!cache.current) cache.current = decided;
  return *cache.current;
}

std::string GetNextSessionLanguage() {
  std::string next = Detail::LoadNextSessionLanguage();
  return next.empty() ? GetCurrentLanguage() : next;
}

void SetNextSessionLanguage(const std::string& code) { Detail::StoreNextSessionLanguage(code); }

unsigned int GetInstalledLanguages(std::vector<LangStrings>* out) {
  std::vector<LangStrings> installed;
  GePath bin;
  if (GetCommonBinPath(bin)) {
    std::filesystem::path installation = bin.Native().parent_path().parent_path();
    if (!installation.empty()) {
      for (const KnownLanguage& language : kKnownLanguages) {
        if (PackInstalled(installation, language.code)) installed.emplace_back(language.code, language.name);
      }
    }
  }
  auto count = static_cast<unsigned int>(installed.size());
  if (out) *out = std::move(installed);
  return count;
}

namespace X {
std::string GetCurrentLanguage() { return Kf::GetCurrentLanguage(); }
}  // namespace X

namespace Test {
void ClearCurrentLanguageCache() {
  LanguageCache& cache = Cache();
  IdeUtil::ScopedLock lock(cache.mutex);
  cache.current.reset();
  cache.userLocales.reset();
}
}  // namespace Test
}  // namespace Kf
