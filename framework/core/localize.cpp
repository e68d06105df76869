// Binding the message catalogue of the session's language.
#include <libintl.h>

#include <map>
#include <string>

#include "core/translate.h"
#include "orvane/events.h"
#include "orvane/language.h"
#include "orvane/locks.h"
#include "orvane/platform.h"

namespace Kf::Localize {
namespace {

struct BoundDomains {
  IdeUtil::Mutex mutex;
  std::map<std::string, GePath> directories;  // guarded by mutex
};

BoundDomains& Domains() {
  static BoundDomains domains;
  return domains;
}

}  // namespace

void InitIde(const std::string& code) {
  const std::string locale = code == "JPN" ? "ja_JP" : "C";
  Platform::IPlatform& platform = Platform::Current();
  platform.SetEnv("LC_MESSAGES", locale);
  platform.SetMessagesLocale(locale);
  Detail::CatalogueChanged();
  GePath bin;
  if (GetCommonBinPath(bin)) bindtextdomain_once(Detail::kTextDomain, bin);
}

void InitIde() { InitIde(GetCurrentLanguage()); }

void bindtextdomain_once(const char* domain, const GePath& dir) {
  if (!domain || !*domain) return;
  BoundDomains& domains = Domains();
  IdeUtil::ScopedLock lock(domains.mutex);
  auto [it, inserted] = domains.directories.emplace(domain, dir);
  if (!inserted) return;
  ::bindtextdomain(domain, (dir / "locale").Native().c_str());
  ::bind_textdomain_codeset(domain, "UTF-8");
  Detail::CatalogueChanged();
}

std::string HelloWorld_shared() { return Detail::Tr("Hello World"); }

}  // namespace Kf::Localize
