// The reference host's IHostUtil: a console stand-in for the IDE's dialogs.
// Message boxes print their caption and text; when standard input is a
// terminal the user types the answer, otherwise the default button is taken.
// The UI thread is the thread that created the object (the main thread).
#pragma once

#include <iosfwd>
#include <string>
#include <thread>

#include "orvane/hostutil.h"

namespace OrvaneHost {

class ConsoleHost : public Kf::HostUtil::IHostUtil {
 public:
  explicit ConsoleHost(std::ostream& out);

  MsgButton MsgBox(const std::string& text, const std::string& caption, MsgIcon icon, MsgKind kind,
                   MsgButton defaultButton, const std::string& dontAskKey) override;
  void Beep(MsgIcon icon) override;
  bool IsSafeUIThread() override;
  void SetClipboardText(const std::string& text) override;
  bool TextAvailable() override;
  std::string GetClipboardText() override;
  bool GetCapability(const std::string& name) override;

 private:
  std::ostream& out_;
  std::thread::id uiThread_;
  std::string clipboard_;  // UI thread only
};

// Human-readable names of the message-box values, for printing.
const char* ButtonName(Kf::HostUtil::MsgButton button);

}  // namespace OrvaneHost
