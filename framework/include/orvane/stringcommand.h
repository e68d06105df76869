// String commands: commands addressed by name, their update states and their
// descriptive information.
//
// A module registers a handler for the command names it implements; any caller
// invokes a command by name with a property tree of arguments:
//
//   struct BuildCommands : Kf::StringCommand::Handler {
//     bool Invoke(const std::string& name, const KfPropertyTree& args) override { ...; return true; }
//   };
//   BuildCommands handler;
//   Kf::StringCommand::RegisterCmds(&handler, {"Build.Make", "Build.Clean"});
//   Kf::StringCommand::Invoke("Build.Make", KfPropertyTree(), nullptr);
//
// Update states (enabled, checked) are pushed with SetUpdate as often as a
// module likes; only real changes reach the update-state listeners. Command
// information (display and descriptive texts) is entered with SetCommandInfo
// and announced to the info listeners.
//
// Threads:
// - The handler table has its own mutex, so lookups are safe on any thread,
//   but handlers are meant to be registered and invoked on the UI thread.
//   No lock is held while a handler runs.
// - The update-state cache and its listener list are guarded by one
//   IdeUtil::Mutex. Listeners are called after the lock is released, on the
//   thread that called SetUpdate. A listener may register or unregister
//   listeners while being notified; one removed before its turn is not called,
//   one added during a notification is first called by the next one. A
//   listener unregistered on another thread while a notification is under way
//   is called by it once or not at all, so it must stay alive until no
//   SetUpdate can still be running (unregister it at shutdown or on the
//   thread that pushes the states).
// - The information table and its listener list are guarded by one
//   IdeUtil::RecursiveMutex, and info listeners are called with it held (so
//   that the names and texts they are told about cannot change under them):
//   they may call back into the information functions on the same thread,
//   but must not wait for another thread that does. Removal and addition
//   during a notification behave as for update-state listeners. An exception
//   thrown by an info listener stops the notification and reaches the caller.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "orvane/accel.h"
#include "orvane/export.h"
#include "orvane/propertytree.h"

namespace Kf::StringCommand {

// What the user interface shows for a command: `enabled` is non-zero when the
// command can run now, `checked` is non-zero when its menu item or tool button
// shows as checked (toggles such as "View.LineNumbers"). The all-zero state
// (disabled, unchecked) is the answer for a command nobody knows.
struct UpdateState {
  std::uint32_t enabled = 0;
  std::uint32_t checked = 0;
};

inline bool operator==(const UpdateState& a, const UpdateState& b) {
  return a.enabled == b.enabled && a.checked == b.checked;
}
inline bool operator!=(const UpdateState& a, const UpdateState& b) { return !(a == b); }

// Implemented by the module that carries out a set of commands.
class ORVANE_API Handler {
 public:
  virtual ~Handler();
  // Runs the command; false when it could not.
  virtual bool Invoke(const std::string& name, const KfPropertyTree& args) = 0;
  // Answers a question about the command into `result`; false when the
  // handler has no answer. The default has none.
  virtual bool Query(const std::string& name, const KfPropertyTree& args, KfPropertyTree* result);
  // The command's current state, asked when no state was pushed with
  // SetUpdate. The default is the all-zero state.
  virtual UpdateState GetUpdateState(const std::string& name);
};

// Told the name of a command whose update state changed.
class ORVANE_API IUpdateStateListener {
 public:
  virtual ~IUpdateStateListener();
  virtual void OnUpdateStateChanged(const std::string& name) = 0;
};

// Descriptive information about one command.
struct ORVANE_API CommandInfo {
  // `origin` values.
  static constexpr std::int32_t kRegistered = 0;  // entered by the module that owns the command
  static constexpr std::int32_t kFromSettings = 1;  // restored from stored key bindings; no module has
                                                   // entered it yet

  std::string command;                  // the command name
  std::string text;                     // display text, may hold '&' mnemonics ("&Build Project")
  std::string description;              // descriptive text (tooltip, status-bar help)
  std::int32_t origin = kRegistered;    // see above
  Kf::Accel::KeySequence key;           // a key shown beside the text; empty when none

  CommandInfo() = default;
  CommandInfo(std::string command, std::string text, std::string description,
              std::int32_t origin = kRegistered);
  // Copies hold their own key (KeySequence assignment shares its impl, so the
  // copy operations here build a fresh key instead).
  CommandInfo(const CommandInfo& other);
  CommandInfo(CommandInfo&& other) noexcept = default;
  CommandInfo& operator=(const CommandInfo& other);
  CommandInfo& operator=(CommandInfo&& other) noexcept;
  ~CommandInfo();
};

// The event handed to info listeners.
class ORVANE_API CommandInfoEvent {
 public:
  enum Hint : std::int32_t {
    InfoChanged = 0,      // the information of the named commands was entered or replaced
    ShortcutChanged = 1,  // the key bindings of the named commands changed (menus refresh their key texts)
    AllChanged = 2,       // anything may have changed; the name list may be incomplete or empty
  };

  CommandInfoEvent(std::vector<std::string> commands, Hint hint);
  const std::vector<std::string>& Commands() const { return commands_; }
  Hint GetHint() const { return hint_; }

 private:
  std::vector<std::string> commands_;
  Hint hint_;
};

// Told when command information changes; called with the information lock
// held (see Threads above).
class ORVANE_API ICommandInfoListener {
 public:
  virtual ~ICommandInfoListener();
  virtual void OnCommandInfoChanged(const CommandInfoEvent& event) = 0;
};

// Enters `handler` for each name, replacing an earlier handler of that name.
ORVANE_API void RegisterCmds(Handler* handler, const std::vector<std::string>& names);
// Removes each name whose registered handler is `handler`; a name that another
// handler has taken over since stays with that handler.
ORVANE_API void UnregisterCmds(Handler* handler, const std::vector<std::string>& names);

// Calls `handler` when given (even for a name nobody registered), otherwise
// the registered handler of `name`. False for an unknown name.
ORVANE_API bool Invoke(const std::string& name, const KfPropertyTree& args, Handler* handler);
// The same dispatch for a query.
ORVANE_API bool Query(const std::string& name, const KfPropertyTree& args, KfPropertyTree* result, Handler* handler);

// Stores the state and tells the update-state listeners, unless the same
// state is already stored.
ORVANE_API void SetUpdate(const std::string& name, const UpdateState& state);
// The stored state; else the registered handler's answer; else the zero state.
ORVANE_API UpdateState GetUpdate(const std::string& name);

ORVANE_API void RegisterUpdateStateListener(IUpdateStateListener* listener);
ORVANE_API void UnregisterUpdateStateListener(IUpdateStateListener* listener);
ORVANE_API void RegisterInfoListener(ICommandInfoListener* listener);
ORVANE_API void UnregisterInfoListener(ICommandInfoListener* listener);

// Enters or replaces the information of each command (keyed by its `command`
// field), then tells the info listeners (hint InfoChanged) the names concerned.
ORVANE_API void SetCommandInfo(const std::vector<CommandInfo>& infos);
// False, with `out` unchanged, when the command has no information.
ORVANE_API bool GetCommandInfo(const std::string& name, CommandInfo& out);
// The names that have information, in name order (byte-wise).
ORVANE_API void GetCommandsWithInfo(std::vector<std::string>& out);
// Calls each info listener in registration order with one event holding the
// names and the hint; a throwing listener ends the notification and its
// exception is rethrown here.
ORVANE_API void NotifyCommandInfoChanged(const std::vector<std::string>& names, CommandInfoEvent::Hint hint);

}  // namespace Kf::StringCommand
