// The library entry, the debugger and source-driver slots and the desktop
// parameters: plain process-wide values set during start-up and shut-down.
#include "orvane/events.h"
#include "orvane/platform.h"

namespace {

IDebugger* g_componentDebugger = nullptr;
Kf::Debugger::IDebugger* g_debugger = nullptr;
Kf::Debugger::ISrcDriver* g_srcDriver = nullptr;
Kf::DesktopPath::Platform g_platform = Kf::DesktopPath::PlatformUnset;
Kf::DesktopPath::Slavery g_slavery = Kf::DesktopPath::SlaveryUnset;

}  // namespace

namespace Kf {

void InitOrvaneXDll() {}

bool GetCommonBinPath(GePath& out) {
  GePath dir;
  if (!Platform::Current().GetCommonBinDirectory(dir) || dir.IsEmpty()) return false;
  out = dir;
  return true;
}

namespace Debugger {

IDebugger::~IDebugger() = default;
ISrcDriver::~ISrcDriver() = default;

void Register(IDebugger* debugger) { g_debugger = debugger; }
void Unregister(IDebugger*) { g_debugger = nullptr; }
IDebugger* Acquire() { return g_debugger; }
void Register(ISrcDriver* driver) { g_srcDriver = driver; }
void Unregister(ISrcDriver*) { g_srcDriver = nullptr; }
ISrcDriver* AcquireSrcDriver() { return g_srcDriver; }

}  // namespace Debugger

namespace DesktopPath {

void SetDesktopPathParameters(Platform platform, Slavery slavery) {
  g_platform = platform;
  g_slavery = slavery;
}
Platform GetDesktopPathPlatform() { return g_platform; }
Slavery GetDesktopPathSlavery() { return g_slavery; }

}  // namespace DesktopPath
}  // namespace Kf

IDebugger::~IDebugger() = default;

void KfComponentRegistry::RegisterDebugger(IDebugger* debugger) { g_componentDebugger = debugger; }
void KfComponentRegistry::UnregisterDebugger() { g_componentDebugger = nullptr; }
IDebugger* KfComponentRegistry::LookupDebugger() { return g_componentDebugger; }
