// Internal: the fields of a log entry.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvane/log.h"

struct KfLogServer::Entry::Impl {
  std::string category;
  std::string sender;
  std::vector<std::string> texts;
  std::int64_t timestamp = 0;
  int severity = 0;
  GePath path;
  Kf::SrcPos srcPos;
  Kf::SrcPos srcEndPos;
  std::uint64_t entryId = 0;
  bool isSubEntry = false;
};
