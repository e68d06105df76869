// Internal: the don't-ask table, shared by the question API (core) and its
// persistence (defined by the storage layer, which sits above this one).
#pragma once

#include <map>
#include <string>

#include "orvane/hostutil.h"

namespace Kf::Detail {

std::map<std::string, HostUtil::MsgButton>& DontAskTable();

// Writes the table to the "Global" storage; false when it could not be saved.
bool SaveDontAskTable(const std::map<std::string, HostUtil::MsgButton>& table);
// Reads the saved table into `out`; false (and `out` untouched) when nothing
// is saved or the record is damaged.
bool LoadDontAskTable(std::map<std::string, HostUtil::MsgButton>& out);

}  // namespace Kf::Detail
