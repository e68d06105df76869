#include "log/build_tally.h"

#include <atomic>

namespace Kf::Detail {
namespace {

std::atomic<int> g_buildFailures{0};

}  // namespace

void ResetBuildFailures() { g_buildFailures.store(0, std::memory_order_relaxed); }
void CountBuildFailure() { g_buildFailures.fetch_add(1, std::memory_order_relaxed); }
int BuildFailureCount() { return g_buildFailures.load(std::memory_order_relaxed); }

}  // namespace Kf::Detail
