// Library entry, application events, named events, and the process-wide
// registries of the debugger, the source driver and the desktop parameters.
//
// Application events are answered synchronously by listeners on the caller's
// thread; a listener may veto by returning false:
//
//   struct SaveOnExit : Kf::Event::IAppEventListener {
//     bool OnAppEvent(const Kf::Event::AppEvent& e) override { ...; return true; }
//   };
//   Kf::Event::RegisterAppEventListener(&listener);
//   bool allowed = Kf::Event::Notify(Kf::Event::AppEvent{Kf::Event::AppEvent::kSaveSettings});
//
// Named events are delivered by name to handlers:
//
//   struct ThemeChanged : Kf::Event::BaseEvent { std::string themeName; ... };
//   using ThemeChangedEvent = Kf::Event::SpecializedEvent<ThemeChanged>;
//   Kf::Event::FunctionHandler<ThemeChangedEvent> handler(
//       [](const ThemeChangedEvent& e) { Repaint(e.themeName); });
//   Kf::Event::RegisterEvent("KF_THEME_CHANGED_EVENT", &handler);
//   Kf::Event::NotifyEvent("KF_THEME_CHANGED_EVENT", ThemeChangedEvent(...));
//
// An event that must run on the UI thread and is raised on another thread is
// queued (as a copy) and delivered, in order, at the next idle pass of the UI
// thread; KfIdleChoreImpl::Nudge() makes that pass come soon.
//
// Threads:
// - Application events and their listener list are for the UI thread only and
//   take no lock. A listener may register or unregister listeners, itself
//   included, from inside OnAppEvent: each listener is called at most once per
//   notification, a listener added during a notification is called in it, and
//   one removed before its turn is not.
// - Named events are safe on any thread. The name table and the pending queue
//   have one mutex each, never held together, and no library lock is held
//   while a handler runs, so a handler may register, unregister or notify.
//   A handler unregistered on another thread while a delivery is under way is
//   called by that delivery once or not at all; once UnregisterEvent has
//   returned and no delivery holds it any more, it is never called again.
// - The debugger, source-driver and desktop slots are plain values set during
//   start-up and shut-down.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <typeinfo>
#include <utility>

#include "orvane/export.h"
#include "orvane/gepath.h"

namespace Kf {

// The library entry: binds a caller to the library. It does nothing; all
// library state is created on first use.
ORVANE_API void InitOrvaneXDll();

// The directory holding the shared binaries (the library and its data files
// such as the message catalogues). False when it cannot be found.
ORVANE_API bool GetCommonBinPath(GePath& out);

namespace Event {

// An application event. Its first field is the kind, whose values the host
// defines; the library passes the event through untouched.
struct AppEvent {
  // The host sends this kind at its settings-save moment (at the latest
  // before exit); services that keep settings save them when it arrives.
  static constexpr std::int32_t kSaveSettings = 1;

  std::int32_t kind = 0;
  const void* data = nullptr;  // host-defined payload, may be null
};

class ORVANE_API IAppEventListener {
 public:
  virtual ~IAppEventListener();
  // True lets the notification go on; false stops it.
  virtual bool OnAppEvent(const AppEvent& event) = 0;
};

ORVANE_API void RegisterAppEventListener(IAppEventListener* listener);
ORVANE_API void UnregisterAppEventListener(IAppEventListener* listener);
// Calls every listener once in registration order; false as soon as one
// answers false (the rest are not called), true otherwise.
ORVANE_API bool Notify(const AppEvent& event);

// A named event. Handlers see it by const reference; events queued for the UI
// thread travel as Clone()d copies.
class ORVANE_API BaseEvent {
 public:
  virtual ~BaseEvent();
  // A heap copy owned by the caller.
  virtual BaseEvent* Clone() const = 0;
  // True when handlers may only be called on the UI thread.
  virtual bool MustRunOnUIThread() const = 0;
};

// The concrete event type for an event base `T` (a class derived from
// BaseEvent that carries the event's data). UIOnly decides whether handlers
// run on the UI thread only.
template <class T, bool UIOnly = true>
class SpecializedEvent : public T {
 public:
  using T::T;
  SpecializedEvent() = default;
  explicit SpecializedEvent(const T& base) : T(base) {}

  BaseEvent* Clone() const override { return new SpecializedEvent(*this); }
  bool MustRunOnUIThread() const override { return UIOnly; }
};

// The handler interface of named events.
class ORVANE_API BaseHandler {
 public:
  virtual ~BaseHandler();
  virtual void operator()(const BaseEvent& event) = 0;
};

// A handler for one event type; events of other types are ignored.
template <class EventT>
class Handler : public BaseHandler {
 public:
  void operator()(const BaseEvent& event) final {
    // The exact type is the common case and much cheaper to test than a cast
    // through the hierarchy.
    if (typeid(event) == typeid(EventT))
      OnEvent(static_cast<const EventT&>(event));
    else if (auto* typed = dynamic_cast<const EventT*>(&event))
      OnEvent(*typed);
  }
  virtual void OnEvent(const EventT& event) = 0;
};

// A handler that calls a function for one event type.
template <class EventT>
class FunctionHandler : public Handler<EventT> {
 public:
  explicit FunctionHandler(std::function<void(const EventT&)> function) : function_(std::move(function)) {}
  void OnEvent(const EventT& event) override { function_(event); }

 private:
  std::function<void(const EventT&)> function_;
};

// Adds `handler` for events named `name` (exact, case-sensitive). No
// duplicate check: a handler registered twice is called twice.
ORVANE_API void RegisterEvent(const std::string& name, BaseHandler* handler);
// Removes every registration of `handler` for `name`.
ORVANE_API void UnregisterEvent(const std::string& name, BaseHandler* handler);
// Delivers `event` to the handlers of `name`: now, on the caller's thread, or
// (a UI-only event raised off the UI thread) at the next idle pass.
ORVANE_API void NotifyEvent(const std::string& name, const BaseEvent& event);

}  // namespace Event

namespace Debugger {

class ORVANE_API IDebugger {
 public:
  virtual ~IDebugger();
};

class ORVANE_API ISrcDriver {
 public:
  virtual ~ISrcDriver();
};

ORVANE_API void Register(IDebugger* debugger);
// Clears the slot whatever pointer is given.
ORVANE_API void Unregister(IDebugger* debugger);
ORVANE_API IDebugger* Acquire();
ORVANE_API void Register(ISrcDriver* driver);
ORVANE_API void Unregister(ISrcDriver* driver);
ORVANE_API ISrcDriver* AcquireSrcDriver();

}  // namespace Debugger

namespace DesktopPath {

// Process-wide desktop parameters. The library only stores them; the host
// sets them at start-up and modules read them.
enum Platform : std::int32_t {
  PlatformUnset = 0,
  PlatformWindows = 1,
  PlatformLinux = 2,
};

enum Slavery : std::int32_t {
  SlaveryUnset = 0,
  SlaveryMaster = 1,          // an ordinary IDE process
  SlaveryMulticoreSlave = 2,  // a slave started with -MULTICORE_SLAVE
};

ORVANE_API void SetDesktopPathParameters(Platform platform, Slavery slavery);
ORVANE_API Platform GetDesktopPathPlatform();
ORVANE_API Slavery GetDesktopPathSlavery();

}  // namespace DesktopPath
}  // namespace Kf

// The older, global-scope debugger interface and its registry.
class ORVANE_API IDebugger {
 public:
  virtual ~IDebugger();
};

class ORVANE_API KfComponentRegistry {
 public:
  static void RegisterDebugger(IDebugger* debugger);
  static void UnregisterDebugger();
  static IDebugger* LookupDebugger();
};
