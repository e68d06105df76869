#include "orvane/hostutil.h"

#include <atomic>
#include <cassert>

namespace Kf::HostUtil {
namespace {

std::atomic<IHostUtil*> g_host{nullptr};
std::atomic<int> g_autoDismissCount{0};

// Every forwarding function needs a host; see the header for the rule.
IHostUtil* Host() {
  IHostUtil* host = g_host.load(std::memory_order_acquire);
  assert(host && "Kf::HostUtil used before the host registered its IHostUtil");
  return host;
}

}  // namespace

IHostUtil::~IHostUtil() = default;

void IHostUtil::Beep(MsgIcon) {}

IHostUtil::MsgButton IHostUtil::MsgBoxEx(const std::string& text, const std::string& caption,
                                         const std::string& details, MsgIcon icon, MsgKind kind,
                                         MsgButton defaultButton, const std::string& dontAskKey) {
  return MsgBox(details.empty() ? text : text + "\n\n" + details, caption, icon, kind, defaultButton, dontAskKey);
}

void IHostUtil::FileExplorer(const GePath&, bool) {}
void IHostUtil::FileProperties(const GePath&, bool) {}
bool IHostUtil::InvokeDetached(const std::string&) { return false; }
void IHostUtil::SetClipboardText(const std::string&) {}
bool IHostUtil::TextAvailable() { return false; }
std::string IHostUtil::GetClipboardText() { return {}; }
void IHostUtil::SetClipboardData(const unsigned char*, int, const std::string&) {}
unsigned int IHostUtil::GetClipboardData(const std::string&, unsigned char*, int) { return 0; }
Kf::XColor IHostUtil::GetThemeXColor(Kf::DisplayElement) { return Kf::XColor(); }
KeyboardModifiers IHostUtil::GetKeyboardModifiers() { return KeyboardModifiers(); }
bool IHostUtil::GetFolder(FolderKind, std::string&) { return false; }
bool IHostUtil::GetCapability(const std::string&) { return false; }

MsgButton MsgBox(const std::string& text, const std::string& caption, MsgIcon icon, MsgKind kind,
                 MsgButton defaultButton, const std::string& dontAskKey) {
  if (g_autoDismissCount.load(std::memory_order_acquire) > 0) return defaultButton;
  IHostUtil* host = Host();
  return host ? host->MsgBox(text, caption, icon, kind, defaultButton, dontAskKey) : defaultButton;
}

void FileExplorer(const GePath& path, bool select) {
  if (IHostUtil* host = Host()) host->FileExplorer(path, select);
}

void FileProperties(const GePath& path, bool modal) {
  if (IHostUtil* host = Host()) host->FileProperties(path, modal);
}

void Beep(MsgIcon icon) {
  if (IHostUtil* host = Host()) host->Beep(icon);
}

bool InvokeDetached(const std::string& commandLine) {
  IHostUtil* host = Host();
  return host && host->InvokeDetached(commandLine);
}

bool IsSafeUIThread() {
  IHostUtil* host = Host();
  return host && host->IsSafeUIThread();
}

void SetClipboardText(const std::string& text) {
  if (IHostUtil* host = Host()) host->SetClipboardText(text);
}

bool TextAvailable() {
  IHostUtil* host = Host();
  return host && host->TextAvailable();
}

std::string GetClipboardText() {
  IHostUtil* host = Host();
  return host ? host->GetClipboardText() : std::string();
}

void SetClipboardData(const unsigned char* data, int size, const std::string& format) {
  if (IHostUtil* host = Host()) host->SetClipboardData(data, size, format);
}

unsigned int GetClipboardData(const std::string& format, unsigned char* buffer, int size) {
  IHostUtil* host = Host();
  return host ? host->GetClipboardData(format, buffer, size) : 0u;
}

Kf::XColor GetThemeXColor(Kf::DisplayElement element) {
  IHostUtil* host = Host();
  return host ? host->GetThemeXColor(element) : Kf::XColor();
}

KeyboardModifiers GetKeyboardModifiers() {
  IHostUtil* host = Host();
  return host ? host->GetKeyboardModifiers() : KeyboardModifiers();
}

bool GetFolder(FolderKind kind, std::string& out) {
  IHostUtil* host = Host();
  return host && host->GetFolder(kind, out);
}

bool GetCapability(const std::string& name) {
  IHostUtil* host = Host();
  return host && host->GetCapability(name);
}

void RegisterHost(IHostUtil* host) { g_host.store(host, std::memory_order_release); }

void UnregisterHost(IHostUtil*) { g_host.store(nullptr, std::memory_order_release); }

IHostUtil* GetHost() { return g_host.load(std::memory_order_acquire); }

AutoDismissMsgBoxes::AutoDismissMsgBoxes() { g_autoDismissCount.fetch_add(1, std::memory_order_acq_rel); }

AutoDismissMsgBoxes::~AutoDismissMsgBoxes() { g_autoDismissCount.fetch_sub(1, std::memory_order_acq_rel); }

}  // namespace Kf::HostUtil
