// The user-interface language: which language this session uses, which one
// the next session will use, and the message catalogue that translates the
// library's texts. Languages are three-letter codes: "ENU" and "JPN".
//
//   Kf::Localize::InitIde();                      // at start-up, on the UI thread
//   std::string hello = Kf::Localize::HelloWorld_shared();  // "こんにちは世界" in Japanese
//   Kf::SetNextSessionLanguage("JPN");            // takes effect at the next start
//
// Deciding the session's language (GetCurrentLanguage):
//   1. The environment variable QOR_LOCALE set to exactly "ENU" or "JPN" wins
//      (re-read on every call, never cached).
//   2. Otherwise the cached decision, once made.
//   3. Exactly one installed language: that one.
//   4. Several: the next-session language when it names one of them;
//      otherwise the user's system locales in order of preference, "ja..."
//      choosing JPN and "en..." choosing ENU, the first that names an
//      installed language winning.
//   5. Nothing decided: "ENU".
//
// Language packs. The installation directory is two levels above the
// common-binaries directory (Kf::GetCommonBinPath). A language is installed
// when a folder <installation>/Language/<CODE> exists, CODE being "ENU" or
// "JPN". The toolchain directories <installation>/arm, /rl78 and /rx carry
// language packs of their own in the same form (<installation>/rx/Language/JPN)
// and a pack found in any of them counts too, so that a toolchain installed in
// one language offers it; other folders of the installation are not searched.
// The message catalogues themselves live in <common-binaries>/locale/<ll>/
// LC_MESSAGES/<domain>.mo.
//
// File names. A language-specific file carries the language code before its
// extension: "Manual.pdf" becomes "Manual_JPN.pdf" for Japanese. English is
// the language of the neutral files, so for "ENU" the specific name is the
// neutral name. LanguageNeutralFileName removes a "_ENU" or "_JPN" suffix.
//
// Threads: decide the language on the UI thread at start-up, before other
// threads ask (the cache itself is unguarded). The system-locale table and
// the bound-domain map are guarded and may be used from any thread. InitIde
// changes the process's message locale and is for start-up only.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "orvane/export.h"
#include "orvane/gepath.h"

namespace Kf {

// One installed language: the code ("JPN") and the language's name in itself
// ("日本語").
using LangStrings = std::pair<std::string, std::string>;

ORVANE_API std::string GetCurrentLanguage();
// The language stored for the next session, or the current one when none is
// stored.
ORVANE_API std::string GetNextSessionLanguage();
// Stores the language for the next session; this session keeps its own.
ORVANE_API void SetNextSessionLanguage(const std::string& code);
// Fills `out` (when not null) with the installed languages, ENU before JPN,
// and returns their number.
ORVANE_API unsigned int GetInstalledLanguages(std::vector<LangStrings>* out);

ORVANE_API std::string LanguageNeutralFileName(const std::string& fileName);
ORVANE_API std::string LanguageSpecificFileName(const std::string& fileName);
// The language-specific form of the file when such a file exists, otherwise
// `path` itself.
ORVANE_API GePath LanguageSpecificPath(const GePath& path);

namespace X {
// The same as Kf::GetCurrentLanguage, under its older name.
ORVANE_API std::string GetCurrentLanguage();
}  // namespace X

namespace Test {
// Forgets the cached language decision (and the cached system locales), so
// that the next GetCurrentLanguage decides again.
ORVANE_API void ClearCurrentLanguageCache();
}  // namespace Test

namespace Localize {

// Selects the session's message language: Japanese for "JPN", the
// untranslated (English) texts for any other code; then binds the library's
// text domain "ide" to the catalogues below the common-binaries directory.
ORVANE_API void InitIde(const std::string& code);
// InitIde(GetCurrentLanguage()).
ORVANE_API void InitIde();
// Binds `domain` to the catalogues in `dir`/locale with UTF-8 output, once per
// process: later calls for the same domain keep the first directory.
ORVANE_API void bindtextdomain_once(const char* domain, const GePath& dir);
// "Hello World" in the session's language: a probe that the catalogue is bound.
ORVANE_API std::string HelloWorld_shared();

}  // namespace Localize
}  // namespace Kf
