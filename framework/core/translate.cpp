#include "core/translate.h"

#include <libintl.h>

namespace Kf::Detail {

std::string Tr(const char* msgid) { return ::dgettext(kTextDomain, msgid); }

std::string TrN(const char* singular, const char* plural, unsigned long n) {
  return ::dngettext(kTextDomain, singular, plural, n);
}

}  // namespace Kf::Detail
