// Internal: the manager behind InstallPathPart and UninstallPathPart.
//
// It reads PATH once, when it is created, and from then on writes PATH as
// the installed parts' directories in front of that initial value. Tests
// create their own managers to control the initial value; the library uses
// one process-wide instance. Exported for the tests only.
#pragma once

#include <list>
#include <map>
#include <string>

#include "orvane/argvars.h"
#include "orvane/locks.h"

namespace Kf::Detail {

class ORVANE_API PathPartManager {
 public:
  // Reads the initial PATH through the platform layer.
  PathPartManager();

  // The process-wide manager, created on first use and never destroyed (a
  // static part may be destroyed, and so uninstall, at any point of exit).
  static PathPartManager& Instance();
  // The process-wide manager if it exists yet, else null.
  static PathPartManager* IfCreated();

  void Install(PathVariablePart* part, const std::list<GePath>& dirs);
  void Uninstall(PathVariablePart* part);
  // Uninstalls `part` only if it is installed; false (PATH untouched) otherwise.
  bool UninstallIfInstalled(PathVariablePart* part);

  // The value PATH gets with the parts installed now.
  std::string ComposePath();

 private:
  std::string ComposeLocked() const;
  void RewriteLocked();

  IdeUtil::Mutex mutex_;
  std::string initialPath_;                          // written once, in the constructor
  bool initialPathSet_ = false;                      // written once, in the constructor
  std::map<PathVariablePart*, std::string> parts_;   // guarded by mutex_: contributions, each ending in a separator
};

}  // namespace Kf::Detail
