#include "core/profile.h"

namespace Kf::Detail {
namespace {

std::atomic<ProfileObserver> g_observer{nullptr};

}  // namespace

void SetProfileObserver(ProfileObserver observer) { g_observer.store(observer, std::memory_order_release); }

ProfileObserver GetProfileObserver() { return g_observer.load(std::memory_order_acquire); }

}  // namespace Kf::Detail
