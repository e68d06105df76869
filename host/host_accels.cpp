#include "host_accels.h"

#include <ostream>
#include <utility>
#include <vector>

#include "orvane/events.h"
#include "orvane/stringcommand.h"

namespace OrvaneHost {
namespace {

using Kf::Accel::AccelEntry;
using Kf::Accel::AccelPart;
using Kf::Accel::KeySequence;
using Kf::Accel::TextFrontEnd;

struct Binding {
  const char* key;
  const char* command;
};

AccelPart MakePart(AccelPart::AccelType type, const std::vector<Binding>& bindings) {
  std::vector<AccelEntry> entries;
  for (const Binding& binding : bindings) {
    KeySequence key;
    std::string error;
    if (TextFrontEnd::Parse(binding.key, key, error)) entries.emplace_back(std::move(key), binding.command);
  }
  return AccelPart(type, entries);
}

void RegisterCommandTexts() {
  using Kf::StringCommand::CommandInfo;
  Kf::StringCommand::SetCommandInfo({
      CommandInfo("File.New", "&New File", "Creates a new source file"),
      CommandInfo("File.Open", "&Open...", "Opens a file"),
      CommandInfo("File.Save", "&Save", "Saves the active file"),
      CommandInfo("File.SaveAll", "Save A&ll", "Saves every modified file"),
      CommandInfo("Edit.Copy", "&Copy", "Copies the selection"),
      CommandInfo("Edit.Paste", "&Paste", "Pastes from the clipboard"),
      CommandInfo("Edit.Cut", "Cu&t", "Cuts the selection"),
      CommandInfo("Edit.CommentBlock", "Comment &Block", "Comments out the selected lines"),
      CommandInfo("Edit.UncommentBlock", "&Uncomment Block", "Removes line comments from the selection"),
      CommandInfo("Build.Make", "&Make", "Builds the active project"),
      CommandInfo("Debug.Go", "&Go", "Starts or continues execution"),
      CommandInfo("Debug.Stop", "&Stop Debugging", "Ends the debug session"),
      CommandInfo("Debug.StepOver", "Step &Over", "Steps over the next statement"),
      CommandInfo("Debug.StepInto", "Step &Into", "Steps into the next call"),
      CommandInfo("Debug.Restart", "&Restart", "Resets the target and runs again"),
      CommandInfo("View.CommandPalette", "Command &Palette", "Lists every command"),
  });
}

}  // namespace

void ConsoleAccelManager::RebuildAccelerators() {
  ++rebuilds_;
  if (log_)
    *log_ << "  [accelerators rebuilt: " << primary.size() << " primary, " << secondary.size()
          << " secondary bindings]\n";
}

void ConsoleAccelManager::KeySequenceToString(const KeySequence& key, std::string& out) {
  out = TextFrontEnd::Format(key);
}

HostAccels::HostAccels(std::ostream* log) : frontEnd_("Accelerators") {
  Kf::Accel::Register(&frontEnd_);
  RegisterCommandTexts();
  manager_ = std::make_unique<ConsoleAccelManager>(log);
  core_ = std::make_unique<AccelPart>(MakePart(AccelPart::Primary, {
                                                                        {"Ctrl+N", "File.New"},
                                                                        {"Ctrl+O", "File.Open"},
                                                                        {"Ctrl+S", "File.Save"},
                                                                        {"Ctrl+Shift+S", "File.SaveAll"},
                                                                        {"Ctrl+C", "Edit.Copy"},
                                                                        {"Ctrl+V", "Edit.Paste"},
                                                                        {"Ctrl+X", "Edit.Cut"},
                                                                        {"Ctrl+K Ctrl+C", "Edit.CommentBlock"},
                                                                        {"Ctrl+K Ctrl+U", "Edit.UncommentBlock"},
                                                                        {"F7", "Build.Make"},
                                                                        {"F5", "Debug.Go"},
                                                                        {"Shift+F5", "Debug.Stop"},
                                                                        {"F10", "Debug.StepOver"},
                                                                        {"F11", "Debug.StepInto"},
                                                                        {"Ctrl+Shift+P", "View.CommandPalette"},
                                                                    }));
  coreSecondary_ = std::make_unique<AccelPart>(MakePart(
      AccelPart::Secondary, {{"Ctrl+Insert", "Edit.Copy"}, {"Shift+Insert", "Edit.Paste"}, {"Shift+Delete", "Edit.Cut"}}));
  // A plug-in installed later that wants F5 for itself: the core keeps it.
  debuggerPlugin_ = std::make_unique<AccelPart>(
      MakePart(AccelPart::Primary, {{"F5", "Debug.Restart"}, {"Ctrl+Shift+F5", "Debug.Restart"}}));
  core_->Install();
  coreSecondary_->Install();
  debuggerPlugin_->Install();
}

HostAccels::~HostAccels() {
  debuggerPlugin_->Uninstall();
  coreSecondary_->Uninstall();
  core_->Uninstall();
  manager_.reset();
  Kf::Accel::Unregister(&frontEnd_);
}

void HostAccels::SaveSettings() {
  (void)Kf::Event::Notify(Kf::Event::AppEvent{Kf::Event::AppEvent::kSaveSettings});
}

}  // namespace OrvaneHost
