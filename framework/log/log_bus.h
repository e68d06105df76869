// Internal: the bus under KfLogServer and KfLogClient.
#pragma once

#include <cstddef>
#include <cstdint>

#include "orvane/log.h"

namespace Kf::Detail {

// As Kf::DoLog, and answers how many servers received the entry.
std::size_t DispatchEntry(KfLogServer::Entry& entry);

// Entries below this severity are dropped by clients (-1: none are).
std::int32_t MinimumLogSeverity();

}  // namespace Kf::Detail
