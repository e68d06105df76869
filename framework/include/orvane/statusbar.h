// The status bar: what the IDE's status bar shows, kept in one process-wide
// state and announced as named events that the host's status-bar window
// handles.
//
//   Kf::Event::FunctionHandler<Kf::StatusBar::StatusBarCaretPositionEvent> onCaret(
//       [](const auto& e) { caretLabel.SetText(e.text); });
//   Kf::Event::RegisterEvent(Kf::StatusBar::kPositionEvent, &onCaret);
//   Kf::StatusBar::SetCaretPosition(0, 0);     // "Ln 1, Col 1" (translated)
//
// Long operations publish progress through an output they own:
//
//   auto progress = Kf::StatusBar::CreateProgressOutputPtr(
//       Kf::StatusBar::ProgressStatus::Normal, "Indexing sources");
//   for (int i = 0; i < n && !progress->CancelRequested(); ++i) {
//     ...;
//     progress->SetSteps(i + 1, n);
//     Kf::StatusBar::UpdateProgressStatus();
//   }
//   progress.reset();                          // the output stops counting
//   Kf::StatusBar::UpdateProgressStatus();
//
// How several outputs combine into the one progress shown:
//   1. Outputs that were released or marked finished no longer count.
//   2. Outputs below the first level given to SetProgressBarPriorityLevel
//      (the minimum shown; default Low) are ignored.
//   3. When an output at or above the second level (the foreground level;
//      default High) is live, every output below that level is hidden.
//   4. The remaining outputs are summed: the fraction is the sum of steps
//      done over the sum of total steps (outputs without a known total count
//      as 0 of 0); the text and description come from the newest output of
//      the highest priority among them; a cancel request is seen when any of
//      them has one. CancelProgress() asks all of them to stop.
//
// Which setters announce what: the caret event goes out only when the caret
// text changes; the caps-lock and num-lock events only when the state read
// by UpdateKeyboardModifiers changed; the progress event only when the shown
// progress changed; every other setter announces each call. The events must
// run on the UI thread: raised on another thread they are delivered at the
// UI thread's next idle pass.
//
// Threads: every function may be called from any thread. One mutex guards the
// state; no lock is held while the events are sent. A ProgressStatus guards
// its own fields, so the owning operation may write it while the UI thread
// reads it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "orvane/events.h"
#include "orvane/export.h"
#include "orvane/locks.h"
#include "orvane/srcpos.h"

namespace Kf::StatusBar {

// Event names.
inline constexpr const char* kMessageEvent = "KF_STATUSBAR_MESSAGE_EVENT";
inline constexpr const char* kBuildEvent = "KF_STATUSBAR_BUILD_EVENT";
inline constexpr const char* kPositionEvent = "KF_STATUSBAR_POSITION_EVENT";
inline constexpr const char* kEncodingEvent = "KF_STATUSBAR_ENCODING_EVENT";
inline constexpr const char* kCapEvent = "KF_STATUSBAR_CAP_EVENT";
inline constexpr const char* kNumEvent = "KF_STATUSBAR_NUM_EVENT";
inline constexpr const char* kOvrEvent = "KF_STATUSBAR_OVR_EVENT";
inline constexpr const char* kLanguageEvent = "KF_STATUSBAR_LANGUAGE_EVENT";
inline constexpr const char* kProgressEvent = "KF_STATUSBAR_PROGRESS_EVENT";

// The progress of one long operation. Its setters and getters are volatile-
// qualified because outputs are handed out as pointers to volatile; each call
// takes the object's own lock.
class ORVANE_API ProgressStatus {
 public:
  enum Priority : std::int32_t {
    Low = 0,     // background work (indexing)
    Normal = 1,  // ordinary long operations
    High = 2,    // work the user waits for (a build, a download)
  };

  ProgressStatus();
  explicit ProgressStatus(Priority priority);
  ProgressStatus(const ProgressStatus& other);
  ProgressStatus& operator=(const ProgressStatus& other);

  // `total` 0 means the amount of work is not known yet.
  void SetSteps(std::int64_t done, std::int64_t total) volatile;
  // A fraction in [0, 1] (clamped), kept as steps out of 10000.
  void SetFraction(double fraction) volatile;
  void SetText(const std::string& text) volatile;
  // The operation is over; the output stops counting even if still owned.
  void Finish() volatile;
  void RequestCancel() volatile;

  std::int64_t StepsDone() const volatile;
  std::int64_t StepsTotal() const volatile;
  // Done over total, 0 when the total is not known.
  double Fraction() const volatile;
  std::string Text() const volatile;
  bool IsFinished() const volatile;
  bool CancelRequested() const volatile;
  Priority GetPriority() const volatile;
  // True when there is an operation to show (a default status shows none).
  bool IsActive() const volatile;

  friend ORVANE_API bool operator==(const ProgressStatus& a, const ProgressStatus& b);

 private:
  ProgressStatus& Self() const volatile { return const_cast<ProgressStatus&>(*this); }

  mutable IdeUtil::Mutex mutex_;
  Priority priority_ = Normal;  // fixed at creation
  std::int64_t done_ = 0;       // guarded by mutex_
  std::int64_t total_ = 0;      // guarded by mutex_
  std::string text_;            // guarded by mutex_
  bool finished_ = false;       // guarded by mutex_
  bool cancel_ = false;         // guarded by mutex_
  bool active_ = false;         // guarded by mutex_; true for real outputs
};

// Event bases; handlers are written against the Specialized types below.
struct ORVANE_API StatusBarMessageEventBase : Kf::Event::BaseEvent {
  std::string text;
};
struct ORVANE_API StatusBarBuildResultEventBase : Kf::Event::BaseEvent {
  std::string text;  // the translated build result
  int failures = 0;  // failures in the current build session
};
struct ORVANE_API StatusBarCaretPositionEventBase : Kf::Event::BaseEvent {
  std::string text;  // "Ln 3, Col 7", translated
  Kf::SrcPos position;
};
struct ORVANE_API StatusBarEncodingEventBase : Kf::Event::BaseEvent {
  std::string encoding;
};
struct ORVANE_API StatusBarCapsLockChangedEventBase : Kf::Event::BaseEvent {
  bool active = false;
};
struct ORVANE_API StatusBarNumLockChangedEventBase : Kf::Event::BaseEvent {
  bool active = false;
};
struct ORVANE_API StatusBarOverwriteChangedEventBase : Kf::Event::BaseEvent {
  bool active = false;
};
struct ORVANE_API StatusBarLanguageEventBase : Kf::Event::BaseEvent {
  std::string code;  // "ENU" or "JPN"
};
struct ORVANE_API StatusBarProgressEventBase : Kf::Event::BaseEvent {
  ProgressStatus status;    // the combined progress shown
  std::string description;  // the description of the output it comes from
};

using StatusBarMessageEvent = Kf::Event::SpecializedEvent<StatusBarMessageEventBase>;
using StatusBarBuildResultEvent = Kf::Event::SpecializedEvent<StatusBarBuildResultEventBase>;
using StatusBarCaretPositionEvent = Kf::Event::SpecializedEvent<StatusBarCaretPositionEventBase>;
using StatusBarEncodingEvent = Kf::Event::SpecializedEvent<StatusBarEncodingEventBase>;
using StatusBarCapsLockChangedEvent = Kf::Event::SpecializedEvent<StatusBarCapsLockChangedEventBase>;
using StatusBarNumLockChangedEvent = Kf::Event::SpecializedEvent<StatusBarNumLockChangedEventBase>;
using StatusBarOverwriteChangedEvent = Kf::Event::SpecializedEvent<StatusBarOverwriteChangedEventBase>;
using StatusBarLanguageEvent = Kf::Event::SpecializedEvent<StatusBarLanguageEventBase>;
using StatusBarProgressEvent = Kf::Event::SpecializedEvent<StatusBarProgressEventBase>;

ORVANE_API void SetStatusBarText(const std::string& text);
ORVANE_API std::string GetStatusBarText();

// Zero-based positions; the text is one-based ("Ln %1%, Col %2%").
ORVANE_API void SetCaretPosition(Kf::SrcPos position);
ORVANE_API void SetCaretPosition(int line, int column);
ORVANE_API std::string GetCaretPositionText();

ORVANE_API void SetEncodingName(const std::string& name);
ORVANE_API std::string GetEncodingName();

// Reads caps lock and num lock through the host utilities.
ORVANE_API void UpdateKeyboardModifiers();
ORVANE_API bool GetCapsLockActive();
ORVANE_API bool GetNumLockActive();

ORVANE_API void SetOverwriteActive(bool active);
ORVANE_API bool GetOverwriteActive();

// Recomputes the build result from the failures (severities 3 and 4) logged
// in the "Log_Build" category since its last session start: "No build
// errors", "1 build error", "N build errors" (translated).
ORVANE_API void UpdateBuildResult();
ORVANE_API std::string GetBuildResultText();

ORVANE_API void SetLanguage(std::string code);
ORVANE_API std::string GetLanguage();
// Always empty: the host draws the language indicator itself.
ORVANE_API std::string GetLanguageIconString();
// The language menu's text for switching the next session to `code`; empty
// for unknown codes.
ORVANE_API std::string LanguageToMenuString(std::string code);

ORVANE_API std::shared_ptr<volatile ProgressStatus> CreateProgressOutputPtr(ProgressStatus::Priority priority,
                                                                            std::string description);
ORVANE_API void UpdateProgressStatus();
ORVANE_API ProgressStatus GetProgressStatus();
ORVANE_API std::string GetProgressSourceDescription();
// The minimum level shown and the foreground level (see the file comment).
ORVANE_API void SetProgressBarPriorityLevel(ProgressStatus::Priority minimumShown,
                                            ProgressStatus::Priority foreground);
// Asks every live output at or above the minimum level shown to stop (the
// host's cancel button: outputs hidden by the foreground rule stop too).
ORVANE_API void CancelProgress();

}  // namespace Kf::StatusBar
