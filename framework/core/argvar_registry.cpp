#include "core/argvar_registry.h"

#include <algorithm>
#include <exception>

#include "core/diagnostics.h"

namespace Kf {

ArgVarExpander::~ArgVarExpander() = default;
void ArgVarExpander::AddToIndex(const std::string&, std::set<std::string>&) {}

namespace Detail {

namespace {

constexpr const char* kWhiteSpace = " \t\n\r\f\v";

void Trim(std::string& text) {
  std::size_t last = text.find_last_not_of(kWhiteSpace);
  if (last == std::string::npos) {
    text.clear();
    return;
  }
  text.erase(last + 1);
  text.erase(0, text.find_first_not_of(kWhiteSpace));
}

}  // namespace

// Marks a pass over the entries; the outermost one compacts empty slots when
// it ends. Constructed and destroyed with mutex_ held.
class ArgVarRegistry::Pass {
 public:
  explicit Pass(ArgVarRegistry& registry) : registry_(registry) { ++registry_.passDepth_; }
  ~Pass() {
    if (--registry_.passDepth_ == 0 && registry_.hasEmptySlots_) {
      auto& entries = registry_.entries_;
      entries.erase(std::remove_if(entries.begin(), entries.end(), [](const Entry& e) { return !e.expander; }),
                    entries.end());
      registry_.hasEmptySlots_ = false;
    }
  }
  Pass(const Pass&) = delete;
  Pass& operator=(const Pass&) = delete;

 private:
  ArgVarRegistry& registry_;
};

// Runs one expander call; an exception counts as a decline and is reported.
// The entry is read by index because the call may append to entries_.
template <typename Call>
bool ArgVarRegistry::CallExpander(std::size_t index, const char* operation, Call&& call) {
  try {
    return call();
  } catch (const std::exception& error) {
    ReportError(operation, "argument-variable expander \"" + entries_[index].name + "\" threw: " + error.what());
  } catch (...) {
    ReportError(operation, "argument-variable expander \"" + entries_[index].name + "\" threw an unknown exception");
  }
  return false;
}

ArgVarRegistry& ArgVarRegistry::Instance() {
  static ArgVarRegistry* instance = new ArgVarRegistry();
  return *instance;
}

void ArgVarRegistry::Register(ArgVarExpander* expander, const std::string& name) {
  if (!expander) return;
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  entries_.push_back(Entry{expander, name});
}

void ArgVarRegistry::Unregister(ArgVarExpander* expander) {
  if (!expander) return;
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  auto it = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& e) { return e.expander == expander; });
  if (it == entries_.end()) return;
  if (passDepth_ > 0) {
    it->expander = nullptr;
    hasEmptySlots_ = true;
  } else {
    entries_.erase(it);
  }
}

bool ArgVarRegistry::Expand(std::string& text) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  Pass pass(*this);
  std::string candidate;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    ArgVarExpander* expander = entries_[i].expander;
    if (!expander) continue;
    // Each expander sees the original text, even if an earlier one changed
    // its copy and then declined.
    candidate = text;
    if (CallExpander(i, "ExpandSingleVar", [&] { return expander->Expand(candidate); })) {
      Trim(candidate);
      text = std::move(candidate);
      return true;
    }
  }
  return false;
}

void ArgVarRegistry::Index(const std::string& key, std::set<std::string>& out) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  Pass pass(*this);
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    ArgVarExpander* expander = entries_[i].expander;
    if (!expander) continue;
    CallExpander(i, "GetIndex", [&] {
      expander->AddToIndex(key, out);
      return true;
    });
  }
}

}  // namespace Detail

void RegisterArgVarExpander(ArgVarExpander* expander, const std::string& name) {
  Detail::ArgVarRegistry::Instance().Register(expander, name);
}

void UnregisterArgVarExpander(ArgVarExpander* expander) { Detail::ArgVarRegistry::Instance().Unregister(expander); }

bool ExpandSingleVar(std::string* text) { return text && Detail::ArgVarRegistry::Instance().Expand(*text); }

void GetIndex(const std::string& key, std::set<std::string>& out) {
  Detail::ArgVarRegistry::Instance().Index(key, out);
}

const std::vector<std::string>& PathVariableNames() {
  static const std::vector<std::string> names{
      "$QV_DIR$",      "$WS_DIR$",      "$TOOLKIT_DIR$", "$PROJ_DIR$",   "$PROJ_PATH$",
      "$LIST_DIR$",    "$OBJ_DIR$",     "$EXE_DIR$",     "$TARGET_DIR$", "$TARGET_PATH$",
      "$TARGET_BPATH$", "$FILE_PATH$", "$FILE_BPATH$",  "$FILE_DIR$"};
  return names;
}

}  // namespace Kf
