#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "orvane/events.h"

namespace {

using Kf::Event::AppEvent;

// A listener that records its calls in a shared log and runs an optional
// action (which may change the listener list) before answering.
struct Listener : Kf::Event::IAppEventListener {
  Listener(std::vector<std::string>& l, std::string n, bool a = true) : log(l), name(std::move(n)), answer(a) {}
  bool OnAppEvent(const AppEvent& event) override {
    log.push_back(name + ":" + std::to_string(event.kind));
    if (action) action();
    return answer;
  }
  std::vector<std::string>& log;
  std::string name;
  bool answer;
  std::function<void()> action;
};

class AppEvents : public ::testing::Test {
 protected:
  // Unregisters whatever a test left registered.
  void TearDown() override {
    for (Listener* l : registered_) Kf::Event::UnregisterAppEventListener(l);
  }
  void Register(Listener& l) {
    Kf::Event::RegisterAppEventListener(&l);
    registered_.push_back(&l);
  }
  bool Notify(int kind = 1) { return Kf::Event::Notify(AppEvent{kind, nullptr}); }

  std::vector<std::string> log;
  std::vector<Listener*> registered_;
};

TEST_F(AppEvents, ListenersAreCalledInRegistrationOrderUntilOneVetoes) {
  EXPECT_TRUE(Notify()) << "no listeners";
  Listener a(log, "a"), b(log, "b", /*answer=*/false), c(log, "c");
  Register(a);
  Register(b);
  Register(c);
  EXPECT_FALSE(Notify(7));
  EXPECT_EQ(log, (std::vector<std::string>{"a:7", "b:7"}));
  a.answer = false;
  log.clear();
  EXPECT_FALSE(Notify());
  EXPECT_EQ(log, (std::vector<std::string>{"a:1"})) << "the first listener's veto stops everything";
}

TEST_F(AppEvents, DuplicateIsCalledOnceAndStaysRegisteredOnceAfterOneUnregister) {
  Listener a(log, "a"), b(log, "b");
  Kf::Event::RegisterAppEventListener(&a);
  Register(b);
  Register(a);
  EXPECT_TRUE(Notify());
  EXPECT_EQ(log, (std::vector<std::string>{"a:1", "b:1"}));
  Kf::Event::UnregisterAppEventListener(&a);
  log.clear();
  EXPECT_TRUE(Notify());
  EXPECT_EQ(log, (std::vector<std::string>{"b:1", "a:1"}));
}

TEST_F(AppEvents, ListenerRemovingItselfDoesNotSkipOrRepeatOthers) {
  Listener a(log, "a"), self(log, "self"), c(log, "c"), d(log, "d");
  self.action = [&] { Kf::Event::UnregisterAppEventListener(&self); };
  Register(a);
  Kf::Event::RegisterAppEventListener(&self);
  Register(c);
  Register(d);
  EXPECT_TRUE(Notify());
  EXPECT_EQ(log, (std::vector<std::string>{"a:1", "self:1", "c:1", "d:1"}));
  log.clear();
  EXPECT_TRUE(Notify());
  EXPECT_EQ(log, (std::vector<std::string>{"a:1", "c:1", "d:1"}));
}

TEST_F(AppEvents, ListenerAddedDuringNotificationIsReachedAndRemovedOneIsNot) {
  Listener a(log, "a"), b(log, "b"), added(log, "added"), removed(log, "removed");
  a.action = [&] {
    Kf::Event::RegisterAppEventListener(&added);
    registered_.push_back(&added);
    Kf::Event::UnregisterAppEventListener(&removed);
  };
  Register(a);
  Kf::Event::RegisterAppEventListener(&removed);
  Register(b);
  EXPECT_TRUE(Notify());
  EXPECT_EQ(log, (std::vector<std::string>{"a:1", "b:1", "added:1"}));
}

TEST_F(AppEvents, ListenerInsertedBeforeTheCursorIsStillCalled) {
  // Removing the head and re-adding it shifts everyone: the rescan from the
  // head must call only the listeners not yet called, each once.
  Listener a(log, "a"), b(log, "b"), c(log, "c");
  b.action = [&] {
    Kf::Event::UnregisterAppEventListener(&a);
    Kf::Event::RegisterAppEventListener(&a);
  };
  Register(a);
  Register(b);
  Register(c);
  EXPECT_TRUE(Notify());
  EXPECT_EQ(log, (std::vector<std::string>{"a:1", "b:1", "c:1"}));
}

TEST_F(AppEvents, LastListenerLeavingDuringNotificationEndsIt) {
  Listener only(log, "only");
  only.action = [&] { Kf::Event::UnregisterAppEventListener(&only); };
  Kf::Event::RegisterAppEventListener(&only);
  EXPECT_TRUE(Notify());
  EXPECT_TRUE(Notify());
  EXPECT_EQ(log, (std::vector<std::string>{"only:1"}));
}

TEST(Registries, DebuggerSlotsStoreReplaceAndClear) {
  struct Dbg : Kf::Debugger::IDebugger {} first, second;
  struct Drv : Kf::Debugger::ISrcDriver {} driver;
  struct OldDbg : IDebugger {} old;

  EXPECT_EQ(Kf::Debugger::Acquire(), nullptr);
  Kf::Debugger::Register(&first);
  Kf::Debugger::Register(&second);
  EXPECT_EQ(Kf::Debugger::Acquire(), &second);
  Kf::Debugger::Unregister(&first);  // clears whatever is registered
  EXPECT_EQ(Kf::Debugger::Acquire(), nullptr);

  Kf::Debugger::Register(&driver);
  EXPECT_EQ(Kf::Debugger::AcquireSrcDriver(), &driver);
  Kf::Debugger::Unregister(static_cast<Kf::Debugger::ISrcDriver*>(nullptr));
  EXPECT_EQ(Kf::Debugger::AcquireSrcDriver(), nullptr);

  KfComponentRegistry::RegisterDebugger(&old);
  EXPECT_EQ(KfComponentRegistry::LookupDebugger(), &old);
  EXPECT_EQ(Kf::Debugger::Acquire(), nullptr) << "the two debugger slots are independent";
  KfComponentRegistry::UnregisterDebugger();
  EXPECT_EQ(KfComponentRegistry::LookupDebugger(), nullptr);
}

}  // namespace
