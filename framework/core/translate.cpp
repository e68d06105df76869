#include "core/translate.h"

#include <libintl.h>

#include <atomic>

namespace Kf::Detail {
namespace {

std::atomic<unsigned> g_generation{0};

}  // namespace

unsigned CatalogueGeneration() { return g_generation.load(std::memory_order_acquire); }

void CatalogueChanged() { g_generation.fetch_add(1, std::memory_order_acq_rel); }

std::string Tr(const char* msgid) { return ::dgettext(kTextDomain, msgid); }

std::string TrN(const char* singular, const char* plural, unsigned long n) {
  return ::dngettext(kTextDomain, singular, plural, n);
}

}  // namespace Kf::Detail
