// Internal: the process-wide registry of argument-variable expanders.
//
// Expanders run under the registry's recursive mutex, so they may call back
// into the registry on the same thread. Entries unregistered during a pass
// are left as empty slots and removed when the outermost pass ends, so the
// index of the running pass stays valid; entries registered during a pass are
// appended and seen by it.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "orvane/argvars.h"
#include "orvane/locks.h"

namespace Kf::Detail {

class ArgVarRegistry {
 public:
  // The process-wide registry; created on first use and never destroyed, so
  // that static expanders may unregister at any point of process exit.
  static ArgVarRegistry& Instance();

  void Register(ArgVarExpander* expander, const std::string& name);
  void Unregister(ArgVarExpander* expander);
  bool Expand(std::string& text);
  void Index(const std::string& key, std::set<std::string>& out);

 private:
  struct Entry {
    ArgVarExpander* expander;  // null once unregistered during a pass
    std::string name;
  };
  class Pass;
  template <typename Call>
  bool CallExpander(std::size_t index, const char* operation, Call&& call);

  IdeUtil::RecursiveMutex mutex_;
  std::vector<Entry> entries_;  // guarded by mutex_
  int passDepth_ = 0;           // guarded by mutex_: passes running on the holding thread
  bool hasEmptySlots_ = false;  // guarded by mutex_
};

}  // namespace Kf::Detail
