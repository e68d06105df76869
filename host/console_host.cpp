#include "console_host.h"

#include <unistd.h>

#include <cctype>
#include <iostream>
#include <vector>

namespace OrvaneHost {
namespace {

using Host = Kf::HostUtil::IHostUtil;

std::vector<Host::MsgButton> ButtonsOf(Host::MsgKind kind) {
  switch (kind) {
    case Host::KindOk: return {Host::BtnOk};
    case Host::KindOkCancel: return {Host::BtnOk, Host::BtnCancel};
    case Host::KindAbortRetryIgnore: return {Host::BtnAbort, Host::BtnRetry, Host::BtnIgnore};
    case Host::KindYesNoCancel: return {Host::BtnYes, Host::BtnNo, Host::BtnCancel};
    case Host::KindYesNo: return {Host::BtnYes, Host::BtnNo};
    case Host::KindRetryCancel: return {Host::BtnRetry, Host::BtnCancel};
  }
  return {Host::BtnOk};
}

const char* IconName(Host::MsgIcon icon) {
  switch (icon) {
    case Host::IconError: return "error";
    case Host::IconWarning: return "warning";
    case Host::IconInformation: return "information";
    case Host::IconQuestion: return "question";
    default: return "message";
  }
}

}  // namespace

const char* ButtonName(Kf::HostUtil::MsgButton button) {
  switch (button) {
    case Host::BtnOk: return "OK";
    case Host::BtnCancel: return "Cancel";
    case Host::BtnAbort: return "Abort";
    case Host::BtnRetry: return "Retry";
    case Host::BtnIgnore: return "Ignore";
    case Host::BtnYes: return "Yes";
    case Host::BtnNo: return "No";
    default: return "None";
  }
}

ConsoleHost::ConsoleHost(std::ostream& out) : out_(out), uiThread_(std::this_thread::get_id()) {}

Host::MsgButton ConsoleHost::MsgBox(const std::string& text, const std::string& caption, MsgIcon icon,
                                    MsgKind kind, MsgButton defaultButton, const std::string&) {
  std::vector<MsgButton> buttons = ButtonsOf(kind);
  out_ << "  +-- [" << IconName(icon) << "] " << caption << "\n  | " << text << "\n  +-- buttons:";
  for (MsgButton b : buttons) out_ << ' ' << ButtonName(b) << (b == defaultButton ? "*" : "");
  out_ << '\n';
  if (!::isatty(STDIN_FILENO)) {
    out_ << "  (no terminal: answering " << ButtonName(defaultButton) << ")\n";
    return defaultButton;
  }
  out_ << "  answer (first letter, Enter for the default): " << std::flush;
  std::string line;
  if (!std::getline(std::cin, line) || line.empty()) return defaultButton;
  char wanted = static_cast<char>(std::tolower(static_cast<unsigned char>(line[0])));
  for (MsgButton b : buttons) {
    if (std::tolower(static_cast<unsigned char>(ButtonName(b)[0])) == wanted) return b;
  }
  return defaultButton;
}

void ConsoleHost::Beep(MsgIcon) { out_ << '\a' << std::flush; }

bool ConsoleHost::IsSafeUIThread() { return std::this_thread::get_id() == uiThread_; }

void ConsoleHost::SetClipboardText(const std::string& text) { clipboard_ = text; }

bool ConsoleHost::TextAvailable() { return !clipboard_.empty(); }

std::string ConsoleHost::GetClipboardText() { return clipboard_; }

bool ConsoleHost::GetCapability(const std::string& name) { return name == "console"; }

}  // namespace OrvaneHost
