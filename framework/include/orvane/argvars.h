// Argument variables and path parts.
//
// Argument variables are words enclosed in dollar signs ("$CUR_DIR$",
// "$PROJ_DIR$") that stand for a directory, a user name, a date and so on in
// tool arguments, paths and settings. Expanders turn one such variable into
// its text; modules register them, and ExpandSingleVar asks each in
// registration order until one knows the variable.
//
//   class ProjectVars : public Kf::ArgVarExpander {
//    public:
//     bool Expand(std::string& text) override {
//       if (text != "$PROJ_DIR$") return false;
//       text = project_.Directory().ToString();
//       return true;
//     }
//   };
//   ProjectVars vars;
//   Kf::RegisterArgVarExpander(&vars, "ProjectVars");
//   std::string text = "$PROJ_DIR$";
//   if (Kf::ExpandSingleVar(&text)) ...;      // text is now the directory
//   Kf::UnregisterArgVarExpander(&vars);      // before `vars` goes away
//
// The library registers its own expander, "StandardArgVarExpander", when it
// is loaded, so it always comes first and no later expander can override its
// four variables:
//   "$QV_DIR$"     two levels above the directory of the shared binaries
//   "$USER_NAME$"  the logged-on user's name
//   "$DATE$"       today's date in the user's locale short date format
//   "$CUR_DIR$"    the process's current directory
// Each is compared exactly, case-sensitively, with the whole text; when the
// platform cannot answer, the variable is declined. The other path variables
// (PathVariableNames()) belong to expanders that the host registers.
//
// Path parts: a module that needs directories on the process's PATH while it
// is loaded installs them as a part and uninstalls them when it goes:
//
//   static Kf::PathVariablePart part;
//   Kf::InstallPathPart(&part, {toolsDir, toolsDir / "bin"});
//   ...
//   Kf::UninstallPathPart(&part);
//
// PATH is rebuilt from the value it had when the first part was installed
// (read once), with every installed part's directories in front, joined with
// the platform's list separator (':' on Linux, ';' on Windows). Parts stand
// in descending order of their addresses; a part's own directories keep
// their order. Changes that others make to PATH in the meantime are
// overwritten by the next install or uninstall.
//
// Threads: every function may be called from any thread. The expander
// registry is guarded by one recursive mutex, which ExpandSingleVar and
// GetIndex hold while the expanders run, on the caller's thread. So an
// expander may, on the same thread, call ExpandSingleVar, register another
// expander (it is offered the text in the same pass, after the ones before
// it) or unregister any expander, itself included (it is not called again).
// Another thread that registers, unregisters or expands meanwhile waits; an
// expander must therefore never wait for another thread that uses the
// registry. An exception thrown by an expander is reported and counts as a
// decline. The path-part manager serialises installs and uninstalls with its
// own mutex; no callback runs under it.
#pragma once

#include <list>
#include <set>
#include <string>
#include <vector>

#include "orvane/export.h"
#include "orvane/gepath.h"

namespace Kf {

// Turns argument variables into their text. Implemented by modules.
// Threads: Expand and AddToIndex run on the thread that called
// ExpandSingleVar or GetIndex, with the registry's recursive mutex held (see
// above); an expander shared by several threads guards its own state.
class ORVANE_API ArgVarExpander {
 public:
  virtual ~ArgVarExpander();
  // If `text` is a variable this expander knows, replaces it with its value
  // and returns true; otherwise returns false and leaves `text` alone.
  virtual bool Expand(std::string& text) = 0;
  // Adds the variable names this expander contributes for `key` (the caller
  // decides what keys mean). The default adds nothing.
  virtual void AddToIndex(const std::string& key, std::set<std::string>& out);
};

// Appends `expander` to the registry (no duplicate check). `name` is for
// people reading logs; the registry identifies expanders by pointer. The
// library never owns the expander.
ORVANE_API void RegisterArgVarExpander(ArgVarExpander* expander, const std::string& name);
// Removes the first registration of `expander`; nothing happens when there is none.
ORVANE_API void UnregisterArgVarExpander(ArgVarExpander* expander);

// Expands `*text`, which holds exactly one variable and nothing else
// ("$CUR_DIR$", not " $CUR_DIR$" or "$CUR_DIR$/x"). The first expander that
// knows it wins; its value, trimmed of white space at both ends, replaces
// `*text`. False, `*text` unchanged, when no expander knows it (or text is null).
ORVANE_API bool ExpandSingleVar(std::string* text);

// Asks every registered expander, in order, to add its names for `key` to `out`.
ORVANE_API void GetIndex(const std::string& key, std::set<std::string>& out);

// The path variables that path text may contain, in the order the path type
// looks for them: "$QV_DIR$", "$WS_DIR$", "$TOOLKIT_DIR$", "$PROJ_DIR$",
// "$PROJ_PATH$", "$LIST_DIR$", "$OBJ_DIR$", "$EXE_DIR$", "$TARGET_DIR$",
// "$TARGET_PATH$", "$TARGET_BPATH$", "$FILE_PATH$", "$FILE_BPATH$", "$FILE_DIR$".
ORVANE_API const std::vector<std::string>& PathVariableNames();

// Identifies one module's contribution to PATH: its address is the key under
// which InstallPathPart stores the directories. Destroying an installed part
// uninstalls it, so PATH never keeps directories of a part that is gone.
// Threads: a part may be installed, uninstalled and destroyed on any thread;
// the path-part manager's mutex serialises these.
class ORVANE_API PathVariablePart {
 public:
  PathVariablePart() = default;
  virtual ~PathVariablePart();
  PathVariablePart(const PathVariablePart&) = delete;
  PathVariablePart& operator=(const PathVariablePart&) = delete;
};

// Sets `part`'s directories (replacing any it had) and rewrites PATH. Empty
// paths are skipped; a directory containing the list separator cannot be
// written into PATH and is skipped with a reported error. When PATH was
// empty or unset at the start, no trailing separator is left (an empty entry
// would mean "the current directory" to a POSIX shell).
ORVANE_API void InstallPathPart(PathVariablePart* part, const std::list<GePath>& dirs);
// Removes `part`'s directories (if any) and rewrites PATH. With no part left,
// PATH is back to its initial value (unset again if it was unset).
ORVANE_API void UninstallPathPart(PathVariablePart* part);

}  // namespace Kf
