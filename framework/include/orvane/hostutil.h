// Host utilities: the user-interface services the host lends to the library.
//
// Modules that need a message box, the clipboard, an explorer window, the
// keyboard modifiers or to know whether they run on the UI thread call the
// free functions below; each forwards to the one IHostUtil object the host
// registered:
//
//   class ConsoleHost : public Kf::HostUtil::IHostUtil { ... };
//   ConsoleHost host;
//   Kf::HostUtil::RegisterHost(&host);
//   ...
//   Kf::HostUtil::UnregisterHost(&host);
//
// The library never owns or deletes the host object. The host registers before
// any module uses these functions; calling one with no host registered is a
// programming error (an assert in debug builds; release builds return the
// neutral answer: the default button, false, empty).
//
// While an AutoDismissMsgBoxes guard lives, MsgBox does not reach the host and
// answers its default button at once (guards nest).
//
// Threads: the forwarding functions are for the UI thread, except
// IsSafeUIThread, which any thread may ask. The host slot and the dismiss
// counter are atomics; no lock is taken.
#pragma once

#include <string>

#include "orvane/colortypes.h"
#include "orvane/export.h"
#include "orvane/gepath.h"

namespace Kf::HostUtil {

struct KeyboardModifiers {
  bool shift = false;
  bool control = false;
  bool alt = false;
  bool capsLock = false;
  bool numLock = false;
  bool scrollLock = false;
  bool overwrite = false;  // the insert key's overwrite mode

  friend bool operator==(const KeyboardModifiers&, const KeyboardModifiers&) = default;
};

class ORVANE_API IHostUtil {
 public:
  // The buttons a message box may show, numbered as the platform's dialog
  // results (1 = OK).
  enum MsgButton : int {
    BtnNone = 0,
    BtnOk = 1,
    BtnCancel = 2,
    BtnAbort = 3,
    BtnRetry = 4,
    BtnIgnore = 5,
    BtnYes = 6,
    BtnNo = 7,
  };
  enum MsgIcon : int {
    IconNone = 0,
    IconError = 1,
    IconWarning = 2,
    IconInformation = 3,
    IconQuestion = 4,
  };
  // Which buttons a message box offers.
  enum MsgKind : int {
    KindOk = 0,
    KindOkCancel = 1,
    KindAbortRetryIgnore = 2,
    KindYesNoCancel = 3,
    KindYesNo = 4,
    KindRetryCancel = 5,
  };
  enum FolderKind : int {
    FolderDocuments = 0,
    FolderAppData = 1,
    FolderLocalAppData = 2,
    FolderTemp = 3,
    FolderDesktop = 4,
    FolderInstallation = 5,
  };

  virtual ~IHostUtil();
  // Shows a message box and returns the button the user chose. A non-empty
  // `dontAskKey` lets the host offer "don't ask again" for this question.
  virtual MsgButton MsgBox(const std::string& text, const std::string& caption, MsgIcon icon, MsgKind kind,
                           MsgButton defaultButton, const std::string& dontAskKey) = 0;
  virtual void Beep(MsgIcon icon);
  // A message box with an expandable details text. The default shows the
  // plain message box with the details appended to the text.
  virtual MsgButton MsgBoxEx(const std::string& text, const std::string& caption, const std::string& details,
                             MsgIcon icon, MsgKind kind, MsgButton defaultButton, const std::string& dontAskKey);
  // Shows the file (selected) or folder in the desktop's file manager.
  virtual void FileExplorer(const GePath& path, bool select);
  virtual void FileProperties(const GePath& path, bool modal);
  // Starts a command line as a detached process; false when it could not start.
  virtual bool InvokeDetached(const std::string& commandLine);
  virtual bool IsSafeUIThread() = 0;
  virtual void SetClipboardText(const std::string& text);
  virtual bool TextAvailable();
  virtual std::string GetClipboardText();
  virtual void SetClipboardData(const unsigned char* data, int size, const std::string& format);
  // Copies at most `size` bytes of clipboard data of `format` into `buffer`;
  // with a null buffer, answers the size needed.
  virtual unsigned int GetClipboardData(const std::string& format, unsigned char* buffer, int size);
  virtual Kf::XColor GetThemeXColor(Kf::DisplayElement element);
  virtual KeyboardModifiers GetKeyboardModifiers();
  virtual bool GetFolder(FolderKind kind, std::string& out);
  // Whether the host offers an optional feature, named by text.
  virtual bool GetCapability(const std::string& name);
};

using MsgButton = IHostUtil::MsgButton;
using MsgIcon = IHostUtil::MsgIcon;
using MsgKind = IHostUtil::MsgKind;
using FolderKind = IHostUtil::FolderKind;

ORVANE_API MsgButton MsgBox(const std::string& text, const std::string& caption, MsgIcon icon, MsgKind kind,
                            MsgButton defaultButton, const std::string& dontAskKey = std::string());
ORVANE_API void FileExplorer(const GePath& path, bool select);
ORVANE_API void FileProperties(const GePath& path, bool modal);
ORVANE_API void Beep(MsgIcon icon);
ORVANE_API bool InvokeDetached(const std::string& commandLine);
ORVANE_API bool IsSafeUIThread();
ORVANE_API void SetClipboardText(const std::string& text);
ORVANE_API bool TextAvailable();
ORVANE_API std::string GetClipboardText();
ORVANE_API void SetClipboardData(const unsigned char* data, int size, const std::string& format);
ORVANE_API unsigned int GetClipboardData(const std::string& format, unsigned char* buffer, int size);
ORVANE_API Kf::XColor GetThemeXColor(Kf::DisplayElement element);
ORVANE_API KeyboardModifiers GetKeyboardModifiers();
ORVANE_API bool GetFolder(FolderKind kind, std::string& out);
ORVANE_API bool GetCapability(const std::string& name);

// Publishes the host object (replacing any earlier one).
ORVANE_API void RegisterHost(IHostUtil* host);
// Empties the host slot, whatever pointer is given.
ORVANE_API void UnregisterHost(IHostUtil* host);
// The registered host, or null.
ORVANE_API IHostUtil* GetHost();

// While at least one guard lives, MsgBox answers its default button without
// asking the host. Used by automated runs and tests.
class ORVANE_API AutoDismissMsgBoxes {
 public:
  AutoDismissMsgBoxes();
  ~AutoDismissMsgBoxes();
  AutoDismissMsgBoxes(const AutoDismissMsgBoxes&) = delete;
  AutoDismissMsgBoxes& operator=(const AutoDismissMsgBoxes&) = delete;
};

}  // namespace Kf::HostUtil
