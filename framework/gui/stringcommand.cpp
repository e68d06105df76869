// The string-command registries: handlers by name, the update-state cache and
// the command information, each with its own lock.
#include "orvane/stringcommand.h"

#include <algorithm>
#include <map>
#include <utility>

#include "orvane/locks.h"

namespace Kf::StringCommand {
namespace {

struct HandlerTable {
  IdeUtil::Mutex mutex;
  std::map<std::string, Handler*> handlers;  // guarded by mutex
};

struct UpdateStates {
  IdeUtil::Mutex mutex;
  std::map<std::string, UpdateState> states;       // guarded by mutex
  std::vector<IUpdateStateListener*> listeners;   // guarded by mutex
};

struct InfoTable {
  IdeUtil::RecursiveMutex mutex;
  std::map<std::string, CommandInfo> infos;        // guarded by mutex
  std::vector<ICommandInfoListener*> listeners;   // guarded by mutex
};

HandlerTable& Handlers() {
  static HandlerTable table;
  return table;
}

UpdateStates& States() {
  static UpdateStates states;
  return states;
}

InfoTable& Infos() {
  static InfoTable table;
  return table;
}

Handler* FindHandler(const std::string& name) {
  HandlerTable& table = Handlers();
  IdeUtil::ScopedLock lock(table.mutex);
  auto found = table.handlers.find(name);
  return found == table.handlers.end() ? nullptr : found->second;
}

template <class T>
bool Contains(const std::vector<T*>& list, T* item) {
  return std::find(list.begin(), list.end(), item) != list.end();
}

}  // namespace

Handler::~Handler() = default;

bool Handler::Query(const std::string&, const KfPropertyTree&, KfPropertyTree*) { return false; }

UpdateState Handler::GetUpdateState(const std::string&) { return UpdateState(); }

IUpdateStateListener::~IUpdateStateListener() = default;
ICommandInfoListener::~ICommandInfoListener() = default;

CommandInfo::CommandInfo(std::string command_, std::string text_, std::string description_, std::int32_t origin_)
    : command(std::move(command_)), text(std::move(text_)), description(std::move(description_)), origin(origin_) {}

CommandInfo::CommandInfo(const CommandInfo& other) = default;

CommandInfo& CommandInfo::operator=(const CommandInfo& other) {
  if (this != &other) {
    CommandInfo copy(other);
    *this = std::move(copy);
  }
  return *this;
}

CommandInfo& CommandInfo::operator=(CommandInfo&& other) noexcept {
  command = std::move(other.command);
  text = std::move(other.text);
  description = std::move(other.description);
  origin = other.origin;
  key = std::move(other.key);
  return *this;
}

CommandInfo::~CommandInfo() = default;

CommandInfoEvent::CommandInfoEvent(std::vector<std::string> commands, Hint hint)
    : commands_(std::move(commands)), hint_(hint) {}

void RegisterCmds(Handler* handler, const std::vector<std::string>& names) {
  HandlerTable& table = Handlers();
  IdeUtil::ScopedLock lock(table.mutex);
  for (const std::string& name : names) table.handlers[name] = handler;
}

void UnregisterCmds(Handler* handler, const std::vector<std::string>& names) {
  HandlerTable& table = Handlers();
  IdeUtil::ScopedLock lock(table.mutex);
  for (const std::string& name : names) {
    auto found = table.handlers.find(name);
    if (found != table.handlers.end() && found->second == handler) table.handlers.erase(found);
  }
}

bool Invoke(const std::string& name, const KfPropertyTree& args, Handler* handler) {
  if (!handler) handler = FindHandler(name);
  return handler ? handler->Invoke(name, args) : false;
}

bool Query(const std::string& name, const KfPropertyTree& args, KfPropertyTree* result, Handler* handler) {
  if (!handler) handler = FindHandler(name);
  return handler ? handler->Query(name, args, result) : false;
}

void SetUpdate(const std::string& name, const UpdateState& state) {
  UpdateStates& states = States();
  std::vector<IUpdateStateListener*> snapshot;
  {
    IdeUtil::ScopedLock lock(states.mutex);
    auto [it, inserted] = states.states.try_emplace(name, state);
    if (!inserted) {
      if (it->second == state) return;
      it->second = state;
    }
    snapshot = states.listeners;
  }
  for (IUpdateStateListener* listener : snapshot) {
    {
      // A listener removed by an earlier one (or by another thread) is skipped.
      IdeUtil::ScopedLock lock(states.mutex);
      if (!Contains(states.listeners, listener)) continue;
    }
    listener->OnUpdateStateChanged(name);
  }
}

UpdateState GetUpdate(const std::string& name) {
  {
    UpdateStates& states = States();
    IdeUtil::ScopedLock lock(states.mutex);
    auto found = states.states.find(name);
    if (found != states.states.end()) return found->second;
  }
  Handler* handler = FindHandler(name);
  return handler ? handler->GetUpdateState(name) : UpdateState();
}

void RegisterUpdateStateListener(IUpdateStateListener* listener) {
  UpdateStates& states = States();
  IdeUtil::ScopedLock lock(states.mutex);
  states.listeners.push_back(listener);
}

void UnregisterUpdateStateListener(IUpdateStateListener* listener) {
  UpdateStates& states = States();
  IdeUtil::ScopedLock lock(states.mutex);
  auto found = std::find(states.listeners.begin(), states.listeners.end(), listener);
  if (found != states.listeners.end()) states.listeners.erase(found);
}

void RegisterInfoListener(ICommandInfoListener* listener) {
  InfoTable& table = Infos();
  IdeUtil::ScopedRecursiveLock lock(table.mutex);
  table.listeners.push_back(listener);
}

void UnregisterInfoListener(ICommandInfoListener* listener) {
  InfoTable& table = Infos();
  IdeUtil::ScopedRecursiveLock lock(table.mutex);
  auto found = std::find(table.listeners.begin(), table.listeners.end(), listener);
  if (found != table.listeners.end()) table.listeners.erase(found);
}

void SetCommandInfo(const std::vector<CommandInfo>& infos) {
  InfoTable& table = Infos();
  std::vector<std::string> names;
  names.reserve(infos.size());
  IdeUtil::ScopedRecursiveLock lock(table.mutex);
  for (const CommandInfo& info : infos) {
    table.infos[info.command] = info;
    names.push_back(info.command);
  }
  // Still under the recursive lock, so listeners see exactly these texts.
  NotifyCommandInfoChanged(names, CommandInfoEvent::InfoChanged);
}

bool GetCommandInfo(const std::string& name, CommandInfo& out) {
  InfoTable& table = Infos();
  IdeUtil::ScopedRecursiveLock lock(table.mutex);
  auto found = table.infos.find(name);
  if (found == table.infos.end()) return false;
  out = found->second;
  return true;
}

void GetCommandsWithInfo(std::vector<std::string>& out) {
  InfoTable& table = Infos();
  IdeUtil::ScopedRecursiveLock lock(table.mutex);
  out.clear();
  out.reserve(table.infos.size());
  for (const auto& [name, info] : table.infos) out.push_back(name);
}

void NotifyCommandInfoChanged(const std::vector<std::string>& names, CommandInfoEvent::Hint hint) {
  InfoTable& table = Infos();
  IdeUtil::ScopedRecursiveLock lock(table.mutex);
  const CommandInfoEvent event(names, hint);
  const std::vector<ICommandInfoListener*> snapshot = table.listeners;
  for (ICommandInfoListener* listener : snapshot) {
    if (!Contains(table.listeners, listener)) continue;
    listener->OnCommandInfoChanged(event);  // an exception leaves through the scoped lock
  }
}

}  // namespace Kf::StringCommand
