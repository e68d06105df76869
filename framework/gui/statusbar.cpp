// The process-wide status-bar state and its setters. Each setter changes the
// state under the state lock, then sends its event with no lock held.
#include "orvane/statusbar.h"

#include <boost/format.hpp>
#include <map>
#include <optional>
#include <vector>

#include "core/translate.h"
#include "log/build_tally.h"
#include "orvane/hostutil.h"

namespace Kf::StatusBar {
namespace {

struct ProgressOutput {
  std::weak_ptr<volatile ProgressStatus> status;
  std::string description;
  std::uint64_t serial = 0;  // creation order: newer outputs have larger serials
};

struct State {
  IdeUtil::Mutex mutex;
  std::string message;        // guarded by mutex
  std::string caretText;      // guarded by mutex
  std::optional<Kf::SrcPos> caretPosition;  // guarded by mutex: the position caretText shows
  unsigned caretGeneration = 0;             // guarded by mutex: the catalogue it was made with
  std::string encoding;       // guarded by mutex
  bool capsLock = false;      // guarded by mutex
  bool numLock = false;       // guarded by mutex
  bool overwrite = false;     // guarded by mutex
  std::string buildResult;    // guarded by mutex
  std::string language;       // guarded by mutex
  ProgressStatus progress;    // guarded by mutex: the combined progress shown
  std::string progressSource;  // guarded by mutex
  ProgressStatus::Priority minimumShown = ProgressStatus::Low;  // guarded by mutex
  ProgressStatus::Priority foreground = ProgressStatus::High;   // guarded by mutex
  std::vector<ProgressOutput> outputs;  // guarded by mutex
  std::uint64_t nextSerial = 0;         // guarded by mutex
};

State& TheState() {
  static auto* state = new State;  // lives until the process ends
  return *state;
}

template <class Event>
void Send(const char* name, const Event& event) {
  Kf::Event::NotifyEvent(name, event);
}

std::string FormatCaret(const Kf::SrcPos& position) {
  try {
    return (boost::format(Kf::Detail::Tr("Ln %1%, Col %2%")) % (position.line + 1) % (position.column + 1)).str();
  } catch (const boost::io::format_error&) {
    // A broken translation must not take the caret display down.
    return (boost::format("Ln %1%, Col %2%") % (position.line + 1) % (position.column + 1)).str();
  }
}

std::string BuildResultText(int failures) {
  if (failures <= 0) return Kf::Detail::Tr("No build errors");
  std::string pattern = Kf::Detail::TrN("%1% build error", "%1% build errors", static_cast<unsigned long>(failures));
  try {
    return (boost::format(pattern) % failures).str();
  } catch (const boost::io::format_error&) {
    return std::to_string(failures);
  }
}

const std::map<std::string, std::string>& LanguageMenuStrings() {
  static const std::map<std::string, std::string> table{
      {"ENU", "Next session in English"},
      {"JPN", "次回起動から日本語に切替え"},
  };
  return table;
}

// Combines the live outputs into the progress shown (see the header for the
// rules). Called under the state lock; prunes outputs that stopped counting.
void CombineProgress(State& state, ProgressStatus& shown, std::string& source) {
  struct Live {
    std::shared_ptr<volatile ProgressStatus> status;
    const ProgressOutput* output;
  };
  std::vector<Live> live;
  std::erase_if(state.outputs, [](const ProgressOutput& output) {
    auto status = output.status.lock();
    return !status || status->IsFinished();
  });
  bool foregroundLive = false;
  for (const ProgressOutput& output : state.outputs) {
    auto status = output.status.lock();
    if (!status || status->GetPriority() < state.minimumShown) continue;
    foregroundLive = foregroundLive || status->GetPriority() >= state.foreground;
    live.push_back({std::move(status), &output});
  }
  if (foregroundLive)
    std::erase_if(live, [&](const Live& l) { return l.status->GetPriority() < state.foreground; });
  if (live.empty()) {
    shown = ProgressStatus();
    source.clear();
    return;
  }
  const Live* lead = &live.front();
  std::int64_t done = 0, total = 0;
  bool cancel = false;
  for (const Live& l : live) {
    if (l.status->StepsTotal() > 0) {
      done += l.status->StepsDone();
      total += l.status->StepsTotal();
    }
    cancel = cancel || l.status->CancelRequested();
    auto priority = l.status->GetPriority(), leadPriority = lead->status->GetPriority();
    if (priority > leadPriority || (priority == leadPriority && l.output->serial > lead->output->serial)) lead = &l;
  }
  ProgressStatus combined(lead->status->GetPriority());
  combined.SetSteps(done, total);
  combined.SetText(lead->status->Text());
  if (cancel) combined.RequestCancel();
  shown = combined;
  source = lead->output->description;
}

}  // namespace

void SetStatusBarText(const std::string& text) {
  {
    State& state = TheState();
    IdeUtil::ScopedLock lock(state.mutex);
    state.message = text;
  }
  StatusBarMessageEvent event;
  event.text = text;
  Send(kMessageEvent, event);
}

std::string GetStatusBarText() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.message;
}

void SetCaretPosition(Kf::SrcPos position) {
  State& state = TheState();
  unsigned generation = Kf::Detail::CatalogueGeneration();
  {
    // The same position under the same catalogue gives the same text: the
    // common repeat is answered without formatting anything.
    IdeUtil::ScopedLock lock(state.mutex);
    if (state.caretPosition == position && state.caretGeneration == generation) return;
  }
  std::string text = FormatCaret(position);
  {
    IdeUtil::ScopedLock lock(state.mutex);
    state.caretPosition = position;
    state.caretGeneration = generation;
    if (state.caretText == text) return;
    state.caretText = text;
  }
  StatusBarCaretPositionEvent event;
  event.text = std::move(text);
  event.position = position;
  Send(kPositionEvent, event);
}

void SetCaretPosition(int line, int column) { SetCaretPosition(Kf::SrcPos(line, column)); }

std::string GetCaretPositionText() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.caretText;
}

void SetEncodingName(const std::string& name) {
  {
    State& state = TheState();
    IdeUtil::ScopedLock lock(state.mutex);
    state.encoding = name;
  }
  StatusBarEncodingEvent event;
  event.encoding = name;
  Send(kEncodingEvent, event);
}

std::string GetEncodingName() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.encoding;
}

void UpdateKeyboardModifiers() {
  Kf::HostUtil::KeyboardModifiers modifiers = Kf::HostUtil::GetKeyboardModifiers();
  bool capsChanged, numChanged;
  {
    State& state = TheState();
    IdeUtil::ScopedLock lock(state.mutex);
    capsChanged = state.capsLock != modifiers.capsLock;
    numChanged = state.numLock != modifiers.numLock;
    state.capsLock = modifiers.capsLock;
    state.numLock = modifiers.numLock;
  }
  if (capsChanged) {
    StatusBarCapsLockChangedEvent event;
    event.active = modifiers.capsLock;
    Send(kCapEvent, event);
  }
  if (numChanged) {
    StatusBarNumLockChangedEvent event;
    event.active = modifiers.numLock;
    Send(kNumEvent, event);
  }
}

bool GetCapsLockActive() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.capsLock;
}

bool GetNumLockActive() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.numLock;
}

void SetOverwriteActive(bool active) {
  {
    State& state = TheState();
    IdeUtil::ScopedLock lock(state.mutex);
    state.overwrite = active;
  }
  StatusBarOverwriteChangedEvent event;
  event.active = active;
  Send(kOvrEvent, event);
}

bool GetOverwriteActive() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.overwrite;
}

void UpdateBuildResult() {
  int failures = Kf::Detail::BuildFailureCount();
  std::string text = BuildResultText(failures);
  {
    State& state = TheState();
    IdeUtil::ScopedLock lock(state.mutex);
    state.buildResult = text;
  }
  StatusBarBuildResultEvent event;
  event.text = std::move(text);
  event.failures = failures;
  Send(kBuildEvent, event);
}

std::string GetBuildResultText() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.buildResult;
}

void SetLanguage(std::string code) {
  {
    State& state = TheState();
    IdeUtil::ScopedLock lock(state.mutex);
    state.language = code;
  }
  StatusBarLanguageEvent event;
  event.code = std::move(code);
  Send(kLanguageEvent, event);
}

std::string GetLanguage() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.language;
}

std::string GetLanguageIconString() { return std::string(); }

std::string LanguageToMenuString(std::string code) {
  const auto& table = LanguageMenuStrings();
  auto it = table.find(code);
  return it == table.end() ? std::string() : it->second;
}

std::shared_ptr<volatile ProgressStatus> CreateProgressOutputPtr(ProgressStatus::Priority priority,
                                                                 std::string description) {
  auto status = std::make_shared<ProgressStatus>(priority);
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  state.outputs.push_back({status, std::move(description), state.nextSerial++});
  return status;
}

void UpdateProgressStatus() {
  StatusBarProgressEvent event;
  {
    State& state = TheState();
    IdeUtil::ScopedLock lock(state.mutex);
    ProgressStatus shown;
    std::string source;
    CombineProgress(state, shown, source);
    if (shown == state.progress && source == state.progressSource) return;
    state.progress = shown;
    state.progressSource = source;
    event.status = shown;
    event.description = source;
  }
  Send(kProgressEvent, event);
}

ProgressStatus GetProgressStatus() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.progress;
}

std::string GetProgressSourceDescription() {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  return state.progressSource;
}

void SetProgressBarPriorityLevel(ProgressStatus::Priority minimumShown, ProgressStatus::Priority foreground) {
  State& state = TheState();
  IdeUtil::ScopedLock lock(state.mutex);
  state.minimumShown = minimumShown;
  state.foreground = foreground;
}

void CancelProgress() {
  std::vector<std::shared_ptr<volatile ProgressStatus>> counted;
  {
    State& state = TheState();
    IdeUtil::ScopedLock lock(state.mutex);
    for (const ProgressOutput& output : state.outputs) {
      auto status = output.status.lock();
      if (!status || status->IsFinished() || status->GetPriority() < state.minimumShown) continue;
      counted.push_back(std::move(status));
    }
  }
  for (auto& status : counted) status->RequestCancel();
}

}  // namespace Kf::StatusBar
