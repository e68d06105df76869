// The accelerator manager: binding tables, installation of default parts, the
// idle rebuild and the save on the settings-save application event.
#include <algorithm>
#include <cassert>
#include <unordered_set>

#include "core/diagnostics.h"
#include "orvane/accel.h"
#include "orvane/events.h"

namespace Kf::Accel {

AccelManager* AccelManager::msTheAccelManager = nullptr;
bool AccelManager::msLoadResult = false;

// Saves the bindings when the host announces its settings-save moment.
class AccelManager::SaveListener : public Kf::Event::IAppEventListener {
 public:
  explicit SaveListener(AccelManager* owner) : owner_(owner) {}
  bool OnAppEvent(const Kf::Event::AppEvent& event) override {
    if (event.kind == Kf::Event::AppEvent::kSaveSettings) owner_->WriteToPersistentStorage();
    return true;
  }

 private:
  AccelManager* owner_;
};

AccelPart::AccelPart(AccelType type_) : type(type_) {}

AccelPart::AccelPart(AccelType type_, const std::vector<AccelEntry>& entries_) : type(type_), entries(entries_) {}

void AccelPart::Install() { AccelManager::Instance().Install(*this); }

void AccelPart::Uninstall() { AccelManager::Instance().Uninstall(*this); }

AccelManager::AccelManager()
    : KfIdleChoreImpl("Kf::Accel::AccelManager", false),
      needsRebuild(false),
      loaded(false),
      listener_(new SaveListener(this)) {
  Kf::Event::RegisterAppEventListener(listener_);
  msTheAccelManager = this;
}

AccelManager::~AccelManager() {
  Withdraw();
  msTheAccelManager = nullptr;
  Kf::Event::UnregisterAppEventListener(listener_);
  delete listener_;
}

AccelManager& AccelManager::Instance() {
  assert(msTheAccelManager && "the host creates its AccelManager before any part installs");
  return *msTheAccelManager;
}

bool AccelManager::EnsureLoaded() {
  if (!loaded) {
    msLoadResult = LoadFromPersistentStorage();
    loaded = true;
  }
  return msLoadResult;
}

void AccelManager::Install(const AccelPart& part) {
  (void)EnsureLoaded();  // a failed load only means there are no user bindings
  installedParts_.push_back(part);
  const bool isPrimary = part.type == AccelPart::Primary;

  // The one-binding-per-command test is CommandIsInSet(command, primary), a
  // walk of the whole table per entry. A set of the commands bound in
  // `primary`, kept in step with it while this part installs, answers the
  // same question without making a large install quadratic.
  std::unordered_set<std::string> boundInPrimary;
  if (isPrimary)
    for (const auto& [key, command] : primary) boundInPrimary.insert(command);

  for (const AccelEntry& entry : part.entries) {
    if (!entry.key) {
      Kf::Detail::ReportError("AccelManager::Install", "entry for \"" + entry.command + "\" has no key; skipped");
      continue;
    }
    const bool keyFree = !KeySequenceIsUsed(entry.key);
    if (isPrimary) {
      if (keyFree) {
        if (boundInPrimary.insert(entry.command).second) primary[entry.key] = entry.command;
        needsRebuild = true;
      }
      primaryDefault[entry.key] = entry.command;
    } else {
      if (keyFree) {
        secondary[entry.key] = entry.command;
        needsRebuild = true;
      }
      secondaryDefault[entry.key] = entry.command;
    }
  }
}

void AccelManager::Uninstall(const AccelPart& part) {
  AccelMap& defaults = part.type == AccelPart::Primary ? primaryDefault : secondaryDefault;
  for (const AccelEntry& entry : part.entries)
    if (entry.key) defaults.erase(entry.key);
  auto same = [&part](const AccelPart& installed) {
    return installed.type == part.type && installed.entries == part.entries;
  };
  auto found = std::find_if(installedParts_.begin(), installedParts_.end(), same);
  if (found != installedParts_.end()) installedParts_.erase(found);
}

void AccelManager::GetPrimaryAccels(AccelMap& out) { out = primary; }
void AccelManager::GetSecondaryAccels(AccelMap& out) { out = secondary; }
void AccelManager::GetPrimaryAccelsDefault(AccelMap& out) { out = primaryDefault; }
void AccelManager::GetSecondaryAccelsDefault(AccelMap& out) { out = secondaryDefault; }

void AccelManager::SetPrimaryAccels(const AccelMap& table) {
  primary = table;
  needsRebuild = true;
}

void AccelManager::SetSecondaryAccels(const AccelMap& table) {
  secondary = table;
  needsRebuild = true;
}

void AccelManager::SetAcceleratorsNeedsReBuild() { needsRebuild = true; }

bool AccelManager::DoIdleChore() {
  if (needsRebuild) {
    RebuildAccelerators();
    needsRebuild = false;
  }
  return false;
}

bool AccelManager::GetShortcutString(const std::string& command, std::string& out) {
  for (const auto& [key, bound] : primary)
    if (bound == command) {
      KeySequenceToString(key, out);
      return true;
    }
  return false;
}

bool AccelManager::KeySequenceIsUsed(const KeySequence& key) {
  return primary.count(key) != 0 || secondary.count(key) != 0;
}

bool AccelManager::CommandIsInSet(const std::string& command, const AccelMap& table) {
  for (const auto& [key, bound] : table)
    if (bound == command) return true;
  return false;
}

bool AccelManager::FindKeySequence(const std::string& command, const AccelMap& table, KeySequence& out) {
  for (const auto& [key, bound] : table)
    if (bound == command) {
      out = KeySequence(key);  // a copy of its own: copy assignment would share
      return true;
    }
  return false;
}

void AccelManager::SetDefaultIfMissing(const AccelEntry& entry, AccelMap& target, bool allowSecondBinding) {
  if (KeySequenceIsUsed(entry.key)) return;
  if (!allowSecondBinding && CommandIsInSet(entry.command, target)) return;
  target[entry.key] = entry.command;
  needsRebuild = true;
}

}  // namespace Kf::Accel
