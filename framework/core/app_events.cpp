// Application events: a UI-thread listener list with veto.
//
// The delivery rule is "call the first listener, from the head of the list as
// it stands now, that this notification has not called yet". Rescanning from
// the head after every call would make a notification quadratic, so the scan
// resumes where it stopped as long as the list is unchanged, and starts again
// from the head only after a listener changed it. Both give the same calls in
// the same order.
#include <limits>
#include <memory>
#include <stdexcept>
#include <unordered_set>
#include <vector>

#include "orvane/events.h"

namespace Kf::Event {
namespace {

using ListenerList = std::vector<IAppEventListener*>;

// Absent until the first registration and again after the last listener left.
std::unique_ptr<ListenerList> g_listeners;
// Advanced by every change of the list, so a notification can tell whether a
// listener changed it.
std::uint64_t g_listVersion = 0;

}  // namespace

IAppEventListener::~IAppEventListener() = default;

void RegisterAppEventListener(IAppEventListener* listener) {
  if (!g_listeners) g_listeners = std::make_unique<ListenerList>();
  if (g_listeners->size() >= g_listeners->max_size()) throw std::length_error("list too long");
  g_listeners->push_back(listener);
  ++g_listVersion;
}

void UnregisterAppEventListener(IAppEventListener* listener) {
  if (!g_listeners) return;
  for (auto it = g_listeners->begin(); it != g_listeners->end(); ++it) {
    if (*it == listener) {
      g_listeners->erase(it);
      ++g_listVersion;
      break;
    }
  }
  if (g_listeners->empty()) {
    g_listeners.reset();
    ++g_listVersion;
  }
}

bool Notify(const AppEvent& event) {
  std::unordered_set<IAppEventListener*> called;
  size_t next = 0;
  std::uint64_t scannedVersion = g_listVersion;
  for (;;) {
    if (!g_listeners) return true;
    const ListenerList& listeners = *g_listeners;
    if (scannedVersion != g_listVersion) {
      next = 0;
      scannedVersion = g_listVersion;
    }
    if (called.empty()) called.reserve(listeners.size());
    while (next < listeners.size() && called.count(listeners[next])) ++next;
    if (next == listeners.size()) return true;
    IAppEventListener* listener = listeners[next++];
    called.insert(listener);
    if (!listener->OnAppEvent(event)) return false;
  }
}

}  // namespace Kf::Event
