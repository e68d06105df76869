// Tour steps for the library spine: host utilities, idle chores, application
// events, named events, interruption and the process-wide registries.
#include <chrono>
#include <ostream>
#include <thread>

#include "host_app.h"
#include "orvane/events.h"
#include "orvane/idle.h"
#include "orvane/platform.h"

namespace OrvaneHost {
namespace {

using namespace std::chrono_literals;
using Kf::HostUtil::IHostUtil;

TourStep hostUtilities(10, "Host utilities", [](HostApp& app) {
  std::ostream& out = app.Out();
  out << "The host registered its console IHostUtil; library message boxes reach it:\n";
  auto answer = Kf::HostUtil::MsgBox("Save changes to main.c?", "Orvane tour", IHostUtil::IconQuestion,
                                     IHostUtil::KindYesNoCancel, IHostUtil::BtnYes);
  out << "MsgBox answered " << ButtonName(answer) << ".\n";
  {
    Kf::HostUtil::AutoDismissMsgBoxes dismiss;
    answer = Kf::HostUtil::MsgBox("You will not see this.", "Orvane tour", IHostUtil::IconWarning,
                                  IHostUtil::KindOkCancel, IHostUtil::BtnCancel);
    out << "Inside an AutoDismissMsgBoxes scope the box is skipped and answers " << ButtonName(answer) << ".\n";
  }
  out << "IsSafeUIThread() on the main thread: " << std::boolalpha << Kf::HostUtil::IsSafeUIThread() << '\n';
});

class CountdownChore : public KfIdleChoreImpl {
 public:
  CountdownChore(std::ostream& out, int work) : KfIdleChoreImpl("CountdownChore", false), out_(out), left_(work) {}
  ~CountdownChore() override { Withdraw(); }
  bool DoIdleChore() override {
    out_ << "  chore: one piece of work done, " << --left_ << " left\n";
    return left_ > 0;
  }

 private:
  std::ostream& out_;
  int left_;
};

TourStep idleChores(20, "Idle chores", [](HostApp& app) {
  std::ostream& out = app.Out();
  out << "A chore with three pieces of work asks for more idle time until it is done:\n";
  CountdownChore chore(out, 3);
  int passes = app.RunIdle();
  out << "The idle period took " << passes << " passes; the loop then stops idling.\n";
});

struct TourListener : Kf::Event::IAppEventListener {
  TourListener(std::ostream& o, const char* n, bool v) : out(o), name(n), veto(v) {}
  bool OnAppEvent(const Kf::Event::AppEvent& event) override {
    out << "  " << name << " got application event of kind " << event.kind << (veto ? " and vetoes it\n" : "\n");
    return !veto;
  }
  std::ostream& out;
  const char* name;
  bool veto;
};

TourStep appEvents(30, "Application events", [](HostApp& app) {
  std::ostream& out = app.Out();
  TourListener editor(out, "editor", false), project(out, "project", true), late(out, "debugger", false);
  Kf::Event::RegisterAppEventListener(&editor);
  Kf::Event::RegisterAppEventListener(&project);
  Kf::Event::RegisterAppEventListener(&late);
  bool allowed = Kf::Event::Notify(Kf::Event::AppEvent{Kf::Event::AppEvent::kSaveSettings, nullptr});
  out << "Notify returned " << std::boolalpha << allowed << ": the veto stopped delivery before \"debugger\".\n";
  Kf::Event::UnregisterAppEventListener(&project);
  allowed = Kf::Event::Notify(Kf::Event::AppEvent{2, nullptr});
  out << "Without the vetoing listener Notify returned " << allowed << ".\n";
  Kf::Event::UnregisterAppEventListener(&late);
  Kf::Event::UnregisterAppEventListener(&editor);
});

struct BuildFinished : Kf::Event::BaseEvent {
  int errors = 0;
};
using BuildFinishedEvent = Kf::Event::SpecializedEvent<BuildFinished>;

TourStep namedEvents(40, "Named events", [](HostApp& app) {
  std::ostream& out = app.Out();
  int delivered = 0;
  Kf::Event::FunctionHandler<BuildFinishedEvent> handler([&](const BuildFinishedEvent& e) {
    ++delivered;
    out << "  handler on the " << (Kf::HostUtil::IsSafeUIThread() ? "UI" : "worker")
        << " thread: build finished with " << e.errors << " errors\n";
  });
  Kf::Event::RegisterEvent("TOUR_BUILD_FINISHED", &handler);

  BuildFinishedEvent now;
  now.errors = 0;
  out << "Raised on the UI thread, the event is delivered at once:\n";
  Kf::Event::NotifyEvent("TOUR_BUILD_FINISHED", now);

  out << "Raised on a worker thread, it waits for the UI thread's next idle pass:\n";
  std::thread worker([] {
    BuildFinishedEvent later;
    later.errors = 2;
    Kf::Event::NotifyEvent("TOUR_BUILD_FINISHED", later);
    KfIdleChoreImpl::Nudge();  // wakes the host loop
  });
  worker.join();
  out << "  (worker done; delivered so far: " << delivered << ")\n";
  app.RunUntil([&] { return delivered == 2; }, 2s);
  Kf::Event::UnregisterEvent("TOUR_BUILD_FINISHED", &handler);
});

TourStep interruption(50, "Interruption check", [](HostApp& app) {
  std::ostream& out = app.Out();
  KfActivateInterruptionCheck(true);
  out << "The keyboard poller runs; the host reports Ctrl+Shift+period being held:\n";
  using Kf::Platform::Key;
  for (Key key : {Key::Shift, Key::Control, Key::Period}) Kf::Platform::FeedKeyState(key, true);
  bool seen = false;
  for (int i = 0; i < 30 && !seen; ++i) {
    std::this_thread::sleep_for(20ms);
    seen = KfCheckInterruption();
  }
  for (Key key : {Key::Shift, Key::Control, Key::Period}) Kf::Platform::FeedKeyState(key, false);
  KfActivateInterruptionCheck(false);
  KfClearInterruption();
  out << "  KfCheckInterruption() -> " << std::boolalpha << seen << ", and again -> " << KfCheckInterruption()
      << '\n';
});

TourStep registries(60, "Process-wide registries", [](HostApp& app) {
  std::ostream& out = app.Out();
  Kf::DesktopPath::SetDesktopPathParameters(Kf::DesktopPath::PlatformLinux, Kf::DesktopPath::SlaveryMaster);
  out << "Desktop parameters: platform " << Kf::DesktopPath::GetDesktopPathPlatform() << ", slavery "
      << Kf::DesktopPath::GetDesktopPathSlavery() << '\n';
  GePath bin;
  if (Kf::GetCommonBinPath(bin))
    out << "Common binaries directory: " << bin.ToString() << '\n';
  else
    out << "Common binaries directory: not found\n";
  out << "Debugger registered: " << std::boolalpha << (Kf::Debugger::Acquire() != nullptr) << '\n';
});

}  // namespace
}  // namespace OrvaneHost
