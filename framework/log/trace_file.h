// Internal: the process-wide trace file behind the scoped log tasks and the
// profiling tasks.
#pragma once

#include <cstdint>
#include <string>

#include "orvane/export.h"
#include "orvane/gepath.h"

namespace Kf::Detail {

// The steady clock in nanoseconds: the clock every "ts" counts.
std::int64_t TraceClockNs();

// Decides (once) whether tracing is on and whether this process's using mode
// allows writing. Cheap after the first call.
bool TraceWanted();

// (Exported for the tests and benchmarks, not part of the public interface.)

// Each writes one event line (the forms are fixed byte for byte); nothing
// happens unless TraceWanted(). Times are steady-clock nanoseconds.
void WriteTaskEvent(const char* name, std::size_t nameSize, const std::string* extra, bool begin,
                    std::int64_t nowNs);
void WriteInstantEvent(const std::string& name, const std::string& extra, std::int64_t nowNs);
void WriteSlowEvent(const std::string& name, const std::string& extra, std::int64_t startNs,
                    std::int64_t elapsedNs);

// For tests: replaces the clock (null restores the steady clock).
using TraceClock = std::int64_t (*)();
ORVANE_API void SetTraceClockForTesting(TraceClock clock);

// For tests: forgets the decision and closes the files, so the next event
// decides again.
ORVANE_API void ResetTraceForTesting();
// The trace and info file paths in use (empty while off).
ORVANE_API GePath CurrentTracePath();
ORVANE_API GePath CurrentTraceInfoPath();

}  // namespace Kf::Detail
