#include <algorithm>
#include <memory>

#include "core/translate.h"
#include "orvane/dialogs.h"
#include "orvane/locks.h"

namespace Kf {
namespace {

constexpr const char* kNoLauncherKey = "NO_CONTEXT_HELP_LAUNCHER";

IdeUtil::Mutex g_instanceMutex;
std::unique_ptr<HelpLauncher> g_instance;  // guarded by g_instanceMutex

}  // namespace

IHelpLauncherBackend::~IHelpLauncherBackend() = default;

HelpLauncher::HelpLauncher() = default;
HelpLauncher::~HelpLauncher() = default;

HelpLauncher& HelpLauncher::Instance() {
  IdeUtil::ScopedLock lock(g_instanceMutex);
  if (!g_instance) g_instance.reset(new HelpLauncher);
  return *g_instance;
}

void HelpLauncher::Uninitialize() {
  std::unique_ptr<HelpLauncher> old;
  IdeUtil::ScopedLock lock(g_instanceMutex);
  old = std::move(g_instance);
}

void HelpLauncher::RegisterLauncherBackend(IHelpLauncherBackend* backend) {
  if (backend) backends_.insert(backends_.begin(), backend);
}

void HelpLauncher::UnregisterLauncherBackend(IHelpLauncherBackend* backend) { std::erase(backends_, backend); }

IHelpLauncherBackend* HelpLauncher::Choose(const std::optional<std::string>& helpFile) {
  // A copy: a back-end may change the list while it is asked.
  std::vector<IHelpLauncherBackend*> backends = backends_;
  for (IHelpLauncherBackend* backend : backends) {
    if (backend->Accepts(helpFile)) return backend;
  }
  HostUtil::MsgButton remembered;
  if (DontAsk::ShouldAsk(kNoLauncherKey, remembered)) {
    HostUtil::MsgBox(Detail::Tr("No registered help launchers."), Detail::Tr("Context Sensitive Help"),
                     HostUtil::IHostUtil::IconInformation, HostUtil::IHostUtil::KindOk, HostUtil::IHostUtil::BtnOk,
                     kNoLauncherKey);
  }
  return nullptr;
}

bool HelpLauncher::KeywordLookup(const std::string& keyword, std::optional<std::string> helpFile) {
  IHelpLauncherBackend* backend = Choose(helpFile);
  return backend && backend->KeywordLookup(keyword, std::move(helpFile));
}

bool HelpLauncher::ContextHelpLookup(const std::string& context, std::optional<std::string> helpFile) {
  IHelpLauncherBackend* backend = Choose(helpFile);
  return backend && backend->ContextHelpLookup(context, std::move(helpFile));
}

bool HelpLauncher::Search(const std::string& text, const std::string& helpFile) {
  std::optional<std::string> file(helpFile);
  IHelpLauncherBackend* backend = Choose(file);
  return backend && backend->Search(text, std::move(file));
}

void HelpLauncher::UpdateHelpViewerState() {
  std::vector<IHelpLauncherBackend*> backends = backends_;
  for (IHelpLauncherBackend* backend : backends) backend->UpdateHelpViewerState();
}

}  // namespace Kf
