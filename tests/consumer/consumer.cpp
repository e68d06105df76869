// Uses the library the way a host does: entry call, host registration, an
// idle pass and a named event.
#include <cstdio>
#include <string>

#include "orvane/events.h"
#include "orvane/hostutil.h"
#include "orvane/idle.h"

namespace {

struct Host : Kf::HostUtil::IHostUtil {
  MsgButton MsgBox(const std::string&, const std::string&, MsgIcon, MsgKind, MsgButton b,
                   const std::string&) override {
    return b;
  }
  bool IsSafeUIThread() override { return true; }
};

struct Ping : Kf::Event::BaseEvent {
  int value = 0;
};
using PingEvent = Kf::Event::SpecializedEvent<Ping>;

}  // namespace

int main() {
  Kf::InitOrvaneXDll();
  Host host;
  Kf::HostUtil::RegisterHost(&host);
  int seen = 0;
  Kf::Event::FunctionHandler<PingEvent> handler([&](const PingEvent& e) { seen = e.value; });
  Kf::Event::RegisterEvent("CONSUMER_PING", &handler);
  PingEvent ping;
  ping.value = 7;
  Kf::Event::NotifyEvent("CONSUMER_PING", ping);
  KfIdleChoreImpl::IdleTime(0);
  Kf::Event::UnregisterEvent("CONSUMER_PING", &handler);
  Kf::HostUtil::UnregisterHost(&host);
  if (seen != 7) {
    std::fprintf(stderr, "named event not delivered\n");
    return 1;
  }
  std::puts("consumer ok");
  return 0;
}
