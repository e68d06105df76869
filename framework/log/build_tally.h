// Internal: the count of failures in the current build session, which the
// status bar shows as the build result.
#pragma once

namespace Kf::Detail {

// A new "Log_Build" session began: nothing has failed in it yet.
void ResetBuildFailures();
// A failure (severity 3 or 4) was logged in the build category.
void CountBuildFailure();
// Failures since the last reset.
int BuildFailureCount();

}  // namespace Kf::Detail
