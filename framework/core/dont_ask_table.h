// Internal: the don't-ask table, shared by the question API and its
// persistence.
#pragma once

#include <map>
#include <string>

#include "orvane/hostutil.h"

namespace Kf::Detail {

std::map<std::string, HostUtil::MsgButton>& DontAskTable();

}  // namespace Kf::Detail
