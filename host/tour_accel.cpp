// Tour steps for string commands and keyboard accelerators. The accelerator
// step keeps its settings in a private, temporary settings root, never in the
// user's own.
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <sstream>

#include "host_accels.h"
#include "host_app.h"
#include "orvane/accel.h"
#include "orvane/platform.h"
#include "orvane/storage.h"
#include "orvane/stringcommand.h"

namespace OrvaneHost {
namespace {

namespace Cmd = Kf::StringCommand;
using Kf::Accel::KeySequence;
using Kf::Accel::TextFrontEnd;

struct BuildCommands : Cmd::Handler {
  explicit BuildCommands(std::ostream& o) : out(o) {}
  bool Invoke(const std::string& name, const KfPropertyTree& args) override {
    out << "  handler runs " << name << " for project " << args.get<std::string>("project", "?") << '\n';
    return true;
  }
  bool Query(const std::string&, const KfPropertyTree&, KfPropertyTree* result) override {
    result->put("configurations", "Debug;Release");
    return true;
  }
  std::ostream& out;
};

struct StateListener : Cmd::IUpdateStateListener {
  explicit StateListener(std::ostream& o) : out(o) {}
  void OnUpdateStateChanged(const std::string& name) override {
    Cmd::UpdateState state = Cmd::GetUpdate(name);
    out << "  update listener: " << name << " is now " << (state.enabled ? "enabled" : "disabled")
        << (state.checked ? ", checked" : "") << '\n';
  }
  std::ostream& out;
};

TourStep stringCommands(400, "String commands", [](HostApp& app) {
  std::ostream& out = app.Out();
  BuildCommands handler(out);
  Cmd::RegisterCmds(&handler, {"Tour.Build", "Tour.Clean"});
  KfPropertyTree args;
  args.put("project", "blinky");
  out << "Invoke(\"Tour.Build\") by name:\n";
  bool ran = Cmd::Invoke("Tour.Build", args, nullptr);
  out << "  -> " << std::boolalpha << ran << "; Invoke of an unregistered name gives "
      << Cmd::Invoke("Tour.Nothing", args, nullptr) << '\n';
  KfPropertyTree result;
  if (Cmd::Query("Tour.Build", args, &result, nullptr))
    out << "Query answered configurations = " << result.get<std::string>("configurations") << '\n';

  StateListener listener(out);
  Cmd::RegisterUpdateStateListener(&listener);
  out << "SetUpdate three times with enabled, enabled (redundant), enabled+checked:\n";
  Cmd::SetUpdate("Tour.Build", Cmd::UpdateState{1, 0});
  Cmd::SetUpdate("Tour.Build", Cmd::UpdateState{1, 0});
  Cmd::SetUpdate("Tour.Build", Cmd::UpdateState{1, 1});
  Cmd::UnregisterUpdateStateListener(&listener);
  Cmd::UnregisterCmds(&handler, {"Tour.Build", "Tour.Clean"});
});

// A throw-away settings root for the step: ORVANE_SETTINGS_DIR points at it
// and a "Global" storage of its own is registered for as long as it lives.
class PrivateSettings {
 public:
  PrivateSettings() {
    auto& platform = Kf::Platform::Current();
    dir_ = std::filesystem::temp_directory_path() / ("orvane-tour-keys-" + std::to_string(platform.GetProcessId()));
    std::filesystem::remove_all(dir_, ec_);
    std::filesystem::create_directories(dir_ / "Global", ec_);
    hadOld_ = platform.GetEnv("ORVANE_SETTINGS_DIR", old_);
    (void)platform.SetEnv("ORVANE_SETTINGS_DIR", dir_.string());
    global_ = std::make_unique<KfPersistentStorage>("Global", GePath::FromNative(dir_ / "Global" / "QorIde.xml"));
  }
  ~PrivateSettings() {
    global_.reset();
    auto& platform = Kf::Platform::Current();
    if (hadOld_)
      (void)platform.SetEnv("ORVANE_SETTINGS_DIR", old_);
    else
      (void)platform.UnsetEnv("ORVANE_SETTINGS_DIR");
    std::filesystem::remove_all(dir_, ec_);
  }
  std::filesystem::path Dir() const { return dir_; }

 private:
  std::filesystem::path dir_;
  std::error_code ec_;
  std::string old_;
  bool hadOld_ = false;
  std::unique_ptr<KfPersistentStorage> global_;
};

TourStep accelerators(410, "Keyboard accelerators", [](HostApp& app) {
  std::ostream& out = app.Out();
  PrivateSettings settings;
  out << "Key text in, key text out:\n";
  for (const char* text : {"ctrl+shift+p", "Ctrl+K  ctrl+c", "Ctrl++", "Ctrl+Hyper+X"}) {
    KeySequence key;
    std::string error;
    if (TextFrontEnd::Parse(text, key, error))
      out << "  \"" << text << "\" -> " << TextFrontEnd::Format(key) << '\n';
    else
      out << "  \"" << text << "\" -> error: " << error << '\n';
  }

  {
    HostAccels accels(&out);
    out << "The host installed its default parts; the next idle moment rebuilds the tables:\n";
    app.RunIdle();
    std::string text;
    if (accels.Manager().GetShortcutString("Edit.CommentBlock", text))
      out << "Shortcut of Edit.CommentBlock: " << text << '\n';
    out << "Binding Ctrl+B to Build.Make and saving (application event of kind 1):\n";
    Kf::Accel::AccelMap primary;
    accels.Manager().GetPrimaryAccels(primary);
    KeySequence key;
    std::string error;
    if (TextFrontEnd::Parse("Ctrl+B", key, error)) primary[key] = "Build.Make";
    accels.Manager().SetPrimaryAccels(primary);
    HostAccels::SaveSettings();
    app.RunIdle();
  }

  out << "After a restart of the accelerators the user binding is read back:\n";
  HostAccels accels;
  std::string text;
  if (accels.Manager().GetShortcutString("Build.Make", text)) out << "  Build.Make is on " << text << '\n';
  out << "F5 is claimed by two parts; the report says who wins:\n";
  KeySequence f5;
  std::string error;
  if (TextFrontEnd::Parse("F5", f5, error))
    for (const auto& report : accels.Manager().GetBindingReport(f5))
      out << "  F5 -> " << report.command << ": " << report.reason << '\n';

  const GePath exported = GePath::FromNative(settings.Dir() / "keys.txt");
  accels.Manager().ExportAccels(exported, false);
  std::ifstream in(exported.Native());
  std::string line;
  out << "The exported key-bindings table begins:\n";
  for (int i = 0; i < 12 && std::getline(in, line); ++i) out << "  | " << line << '\n';
});

}  // namespace
}  // namespace OrvaneHost
