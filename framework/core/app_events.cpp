// Application events: a UI-thread listener list with veto.
//
// The delivery rule is "call the first listener, from the head of the list as
// it stands now, that this notification has not called yet". Rescanning from
// the head after every call would make a notification quadratic, so the scan
// resumes where it stopped as long as the list is unchanged, and starts again
// from the head only after a listener changed it. Both give the same calls in
// the same order.
#include <algorithm>
#include <memory>
#include <stdexcept>
#include <unordered_map>
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
// How many times each listener stands in the list, and how many entries are
// repeats; a notification needs a set of called listeners only when there
// are repeats or the list changes under it.
std::unordered_map<IAppEventListener*, int> g_occurrences;
size_t g_repeatedEntries = 0;

}  // namespace

IAppEventListener::~IAppEventListener() = default;

void RegisterAppEventListener(IAppEventListener* listener) {
  if (!g_listeners) g_listeners = std::make_unique<ListenerList>();
  if (g_listeners->size() >= g_listeners->max_size()) throw std::length_error("list too long");
  g_listeners->push_back(listener);
  if (++g_occurrences[listener] > 1) ++g_repeatedEntries;
  ++g_listVersion;
}

void UnregisterAppEventListener(IAppEventListener* listener) {
  if (!g_listeners) return;
  auto it = std::find(g_listeners->begin(), g_listeners->end(), listener);
  if (it != g_listeners->end()) {
    g_listeners->erase(it);
    auto count = g_occurrences.find(listener);
    if (--count->second > 0)
      --g_repeatedEntries;
    else
      g_occurrences.erase(count);
    ++g_listVersion;
  }
  if (g_listeners->empty()) {
    g_listeners.reset();
    ++g_listVersion;
  }
}

bool Notify(const AppEvent& event) {
  // Listeners called so far, in call order; the set is built only when it is
  // needed to skip listeners (repeats, or a list changed by a listener).
  std::vector<IAppEventListener*> calledInOrder;
  std::unordered_set<IAppEventListener*> called;
  bool useSet = g_repeatedEntries > 0;
  size_t next = 0;
  std::uint64_t scannedVersion = g_listVersion;
  for (;;) {
    if (!g_listeners) return true;
    const ListenerList& listeners = *g_listeners;
    if (scannedVersion != g_listVersion) {
      if (!useSet) called.insert(calledInOrder.begin(), calledInOrder.end());
      useSet = true;
      next = 0;
      scannedVersion = g_listVersion;
    }
    if (useSet) {
      while (next < listeners.size() && called.count(listeners[next])) ++next;
    }
    if (next == listeners.size()) return true;
    IAppEventListener* listener = listeners[next++];
    if (useSet)
      called.insert(listener);
    else
      calledInOrder.push_back(listener);
    if (!listener->OnAppEvent(event)) return false;
  }
}

}  // namespace Kf::Event
