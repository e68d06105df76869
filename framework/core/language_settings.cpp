// PROVISIONAL: kept in memory until the settings storage is available; the
// stored value does not yet survive the process.
#include "core/language_settings.h"

#include "orvane/locks.h"

namespace Kf::Detail {
namespace {

IdeUtil::Mutex g_mutex;
std::string g_nextSession;  // guarded by g_mutex

}  // namespace

std::string LoadNextSessionLanguage() {
  IdeUtil::ScopedLock lock(g_mutex);
  return g_nextSession;
}

void StoreNextSessionLanguage(const std::string& code) {
  IdeUtil::ScopedLock lock(g_mutex);
  g_nextSession = code;
}

}  // namespace Kf::Detail
