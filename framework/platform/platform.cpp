// The platform registry: which IPlatform the library asks.
#include "orvane/platform.h"

#include <atomic>

namespace Kf::Platform {
namespace {

std::atomic<IPlatform*> g_installed{nullptr};

}  // namespace

IPlatform::~IPlatform() = default;

IPlatform& Current() {
  IPlatform* installed = g_installed.load(std::memory_order_acquire);
  return installed ? *installed : Native();
}

void SetPlatform(IPlatform* platform) { g_installed.store(platform, std::memory_order_release); }

}  // namespace Kf::Platform
