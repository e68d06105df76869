// Dialogs invoked by name, context help routed to help back-ends, and the
// answers the user asked not to be asked for again.
//
// Dialogs: the host registers one host per dialog name; modules invoke the
// dialog by name with a model that carries its data in and out.
//
//   struct FindModel : Kf::Dialog::DialogModel { std::string pattern; };
//   class FindDialogHost : public Kf::Dialog::DialogHost { ... };
//   Kf::DialogMgmt::RegisterDialogHost("FIND", &findHost);
//   FindModel model;
//   if (Kf::DialogMgmt::InvokeDialog("FIND", model) == Kf::Dialog::DlgOk) Search(model.pattern);
//
// Help: back-ends are asked newest first whether they accept the help file;
// the first that does answers the lookup. With none accepting, the user is
// told "No registered help launchers." (once per attempt, unless remembered
// through the don't-ask key "NO_CONTEXT_HELP_LAUNCHER") and the lookup fails.
//
// Don't-ask: a question with a key is asked only while no answer is
// remembered for it:
//
//   Kf::HostUtil::MsgButton answer;
//   if (Kf::DontAsk::ShouldAsk("OVERWRITE_FILE", answer)) answer = AskTheUser();
//
// Threads: the dialog registries, the help back-ends and the don't-ask table
// are for the UI thread and take no locks (creating the HelpLauncher instance
// is safe from any thread). A help back-end may register or unregister
// back-ends, itself included, while it is being called: the call in progress
// finishes with the list as it was when the lookup began.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "orvane/export.h"
#include "orvane/hostutil.h"

namespace Kf {
namespace Dialog {

// The result of a dialog. 0 means that no dialog was shown.
enum DlgResult : int {
  DlgNone = 0,
  DlgOk = 1,
  DlgCancel = 2,
  DlgYes = 3,
  DlgNo = 4,
};

// The data a dialog shows and edits; dialogs derive their own models.
class ORVANE_API DialogModel {
 public:
  virtual ~DialogModel();
};

// The model of the extended dialog hosts.
class ORVANE_API DialogModelEx {
 public:
  virtual ~DialogModelEx();
};

// Shows the dialog named `name` modally and answers how it was closed.
class ORVANE_API DialogHost {
 public:
  virtual ~DialogHost();
  virtual DlgResult InvokeDialog(const std::string& name, DialogModel& model) = 0;
};

class ORVANE_API DialogHostEx {
 public:
  virtual ~DialogHostEx();
  virtual DlgResult InvokeDialog(const std::string& name, DialogModelEx& model) = 0;
};

// The same operations as Kf::DialogMgmt, under the older namespace.
ORVANE_API void RegisterDialogHost(const std::string& name, DialogHost* host);
ORVANE_API void RegisterDialogHost(const std::string& name, DialogHostEx* host);
ORVANE_API void UnregisterDialogHost(const std::string& name, DialogHost* host);
ORVANE_API void UnregisterDialogHost(const std::string& name, DialogHostEx* host);
ORVANE_API DlgResult InvokeDialog(const std::string& name, DialogModel& model);
ORVANE_API DlgResult InvokeDialog(const std::string& name, DialogModelEx& model);

}  // namespace Dialog

namespace DialogMgmt {

// Sets the host for `name`, replacing an earlier one.
ORVANE_API void RegisterDialogHost(const std::string& name, Dialog::DialogHost* host);
ORVANE_API void RegisterDialogHost(const std::string& name, Dialog::DialogHostEx* host);
// Removes the host for `name` (whatever host is given).
ORVANE_API void UnregisterDialogHost(const std::string& name, Dialog::DialogHost* host);
ORVANE_API void UnregisterDialogHost(const std::string& name, Dialog::DialogHostEx* host);
// The registered host's result, or DlgNone (0) when no host has the name.
ORVANE_API Dialog::DlgResult InvokeDialog(const std::string& name, Dialog::DialogModel& model);
ORVANE_API Dialog::DlgResult InvokeDialog(const std::string& name, Dialog::DialogModelEx& model);

}  // namespace DialogMgmt

// A help viewer the host plugs in.
class ORVANE_API IHelpLauncherBackend {
 public:
  virtual ~IHelpLauncherBackend();
  // Shows the help for a keyword; false when it found nothing.
  virtual bool KeywordLookup(const std::string& keyword, std::optional<std::string> helpFile) = 0;
  // Shows the help for a context identifier.
  virtual bool ContextHelpLookup(const std::string& context, std::optional<std::string> helpFile) = 0;
  // Full-text search.
  virtual bool Search(const std::string& text, std::optional<std::string> helpFile) = 0;
  // Brings the viewer up to date (language, theme, open windows).
  virtual void UpdateHelpViewerState() = 0;
  // Whether this back-end can show `helpFile` (no file: the IDE's own help).
  virtual bool Accepts(std::optional<std::string> helpFile) = 0;
};

// Routes help requests to the registered back-ends, newest first.
class ORVANE_API HelpLauncher {
 public:
  static HelpLauncher& Instance();
  // Destroys the instance; the next Instance() makes a new, empty one.
  static void Uninitialize();

  // Adds at the front: the newest back-end is asked first.
  void RegisterLauncherBackend(IHelpLauncherBackend* backend);
  // Removes every registration of `backend`.
  void UnregisterLauncherBackend(IHelpLauncherBackend* backend);

  bool KeywordLookup(const std::string& keyword, std::optional<std::string> helpFile);
  bool ContextHelpLookup(const std::string& context, std::optional<std::string> helpFile);
  bool Search(const std::string& text, const std::string& helpFile);
  // Calls every back-end's UpdateHelpViewerState, newest first.
  void UpdateHelpViewerState();

  HelpLauncher(const HelpLauncher&) = delete;
  HelpLauncher& operator=(const HelpLauncher&) = delete;
  ~HelpLauncher();

 private:
  HelpLauncher();
  // The first back-end that accepts `helpFile`; when none does, tells the user
  // and answers null.
  IHelpLauncherBackend* Choose(const std::optional<std::string>& helpFile);

  std::vector<IHelpLauncherBackend*> backends_;  // newest first; UI thread only
};

// Answers remembered for questions the user asked not to be asked again.
namespace DontAsk {

using MsgButton = Kf::HostUtil::MsgButton;

// True (ask the user) when `key` is empty or has no remembered answer;
// otherwise sets `answer` to the remembered button and returns false.
ORVANE_API bool ShouldAsk(const std::string& key, MsgButton& answer);
// Remembers (or replaces) the answer for `key`.
ORVANE_API void SetDontAsk(const std::string& key, MsgButton answer);
ORVANE_API void ClearDontAsk(const std::string& key);
ORVANE_API void ClearDontAskInformation();
// Writes the table to the "Global" settings under the key "answers": the
// number of entries (32-bit), then per entry in ascending key order the key
// and the button (32-bit).
ORVANE_API void SaveDontAskInformation();
// Adds the saved entries to the table. A missing or damaged record adds
// nothing (damage is reported to the library's log).
ORVANE_API void RestoreDontAskInformation();

}  // namespace DontAsk
}  // namespace Kf
