// Tour steps for language selection and translations, the log bus, and the
// status bar with progress (a simulated build).
#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <thread>

#include "console_log_server.h"
#include "host_app.h"
#include "orvane/dialogs.h"
#include "orvane/idle.h"
#include "orvane/language.h"
#include "orvane/log.h"
#include "orvane/statusbar.h"
#include "orvane/storage.h"
#include "status_line.h"

namespace OrvaneHost {
namespace {

using namespace std::chrono_literals;
namespace SB = Kf::StatusBar;

TourStep language(300, "Language and translations", [](HostApp& app) {
  std::ostream& out = app.Out();
  std::vector<Kf::LangStrings> installed;
  unsigned int count = Kf::GetInstalledLanguages(&installed);
  out << "Session language: " << Kf::GetCurrentLanguage() << " (" << count
      << " language packs installed), next session: " << Kf::GetNextSessionLanguage() << '\n';
  for (const char* code : {"JPN", "ENU"}) {
    Kf::Localize::InitIde(code);
    SB::SetCaretPosition(41, 6);
    out << "After InitIde(\"" << code << "\"):\n"
        << "  HelloWorld_shared()     -> " << Kf::Localize::HelloWorld_shared() << '\n'
        << "  caret text at (41, 6)   -> " << SB::GetCaretPositionText() << '\n'
        << "  language menu entry     -> " << SB::LanguageToMenuString(code) << '\n';
  }
  out << "With no help back-end registered, context help tells the user (in Japanese here):\n";
  Kf::Localize::InitIde("JPN");
  Kf::DontAsk::ClearDontAsk("NO_CONTEXT_HELP_LAUNCHER");
  bool shown = Kf::HelpLauncher::Instance().ContextHelpLookup("IDD_BUILD_OPTIONS", std::nullopt);
  out << "  ContextHelpLookup -> " << std::boolalpha << shown << '\n';
  Kf::Localize::InitIde(Kf::GetCurrentLanguage());
});

TourStep logBus(310, "Log bus", [](HostApp& app) {
  std::ostream& out = app.Out();
  KfLogClient tool(kKfToolOutputCategory, "flash-writer");
  out << "A console log server registers; the categories known so far are replayed to it:\n";
  ConsoleLogServer console(out);
  console.RegisterLogServer();
  console.showCategories = false;
  tool.StartSession();
  out << "A two-line message with a file reference becomes an entry and a continuation:\n";
  tool.Log(KfLogClient::Warning, {GePath("board/startup.s"), {11, 0}, {11, 8}}, "vector table misaligned\n  fixed up at load");

  out << "The library's own diagnostics arrive in " << kKfFrameworkLogCategory
      << " (here: a damaged settings file is set aside):\n";
  auto damaged = std::filesystem::temp_directory_path() / "orvane-tour-damaged.xml";
  std::ofstream(damaged) << "<settings><unclosed>";
  {
    KfPersistentStorage storage("TourDamaged", GePath::FromNative(damaged));
    std::string value;
    (void)storage.Load("Any", "Key", value);
  }
  for (const auto& entry : std::filesystem::directory_iterator(damaged.parent_path())) {
    if (entry.path().filename().string().rfind("orvane-tour-damaged.xml", 0) == 0) std::filesystem::remove(entry.path());
  }
  console.UnregisterLogServer();
  tool.Log(KfLogClient::Info, "nobody hears this one");
  out << "After UnregisterLogServer nothing more is printed.\n";
});

TourStep statusBar(320, "Status bar and a simulated build", [](HostApp& app) {
  std::ostream& out = app.Out();
  StatusLine line(out);
  ConsoleLogServer console(out);
  console.showCategories = false;
  console.RegisterLogServer();

  SB::SetStatusBarText("Ready");
  SB::SetEncodingName("UTF-8");
  SB::SetLanguage(Kf::GetCurrentLanguage());
  SB::SetCaretPosition(0, 0);
  SB::SetCaretPosition(0, 0);  // the same text: no event, no line
  SB::SetOverwriteActive(true);
  SB::SetOverwriteActive(false);

  out << "A worker thread builds three files, logging to " << kKfBuildCategory
      << " and reporting progress; its status-bar events reach the UI thread at idle passes:\n";
  std::atomic<bool> done{false};
  std::thread worker([&done] {
    KfLogClient build(kKfBuildCategory, "make");
    build.StartSession();
    auto progress = SB::CreateProgressOutputPtr(SB::ProgressStatus::High, "Build");
    const char* files[] = {"main.c", "uart.c", "timer.c"};
    for (int i = 0; i < 3; ++i) {
      progress->SetText(std::string("compiling ") + files[i]);
      progress->SetSteps(i, 3);
      SB::UpdateProgressStatus();
      build.Log(KfLogClient::Info, std::string("cc -c ") + files[i]);
      if (i == 1) {
        build.Log(KfLogClient::Warning, {GePath("src/uart.c"), {20, 4}, {20, 9}}, "unused variable 'baud'");
        build.Log(KfLogClient::Error, {GePath("src/uart.c"), {57, 2}, {57, 2}},
                  "'UART0_DR' undeclared\n  did you mean 'UART_DR'?");
      }
      if (i == 2) build.Log(KfLogClient::Error, {GePath("src/timer.c"), {8, 0}, {8, 0}}, "expected ';'");
      KfIdleChoreImpl::Nudge();
    }
    progress->SetSteps(3, 3);
    SB::UpdateProgressStatus();
    progress.reset();
    SB::UpdateProgressStatus();
    SB::SetStatusBarText("Build finished");
    KfIdleChoreImpl::Nudge();
    done = true;
  });
  worker.join();
  app.RunUntil([&] { return done.load(); }, 2s);
  app.RunIdle();
  out << "Final status line: " << line.Text() << '\n';
});

}  // namespace
}  // namespace OrvaneHost
