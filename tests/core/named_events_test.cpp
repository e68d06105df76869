#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "orvane/events.h"
#include "orvane/idle.h"
#include "support/test_host.h"

namespace {

struct Message : Kf::Event::BaseEvent {
  std::string text;
  const Message* original = nullptr;  // lets a handler tell a copy from the original
};
using UiMessage = Kf::Event::SpecializedEvent<Message>;
using AnyThreadMessage = Kf::Event::SpecializedEvent<Message, false>;

UiMessage MakeUi(const std::string& text) {
  UiMessage m;
  m.text = text;
  m.original = &m;
  return m;
}

// Records what it receives and on which thread.
template <class EventT>
struct Recorder : Kf::Event::Handler<EventT> {
  void OnEvent(const EventT& e) override {
    texts.push_back(e.text);
    sawCopy.push_back(e.original != &e);
    threads.push_back(std::this_thread::get_id());
  }
  std::vector<std::string> texts;
  std::vector<bool> sawCopy;
  std::vector<std::thread::id> threads;
};

class NamedEvents : public ::testing::Test {
 protected:
  void SetUp() override { KfIdleChoreImpl::IdleTime(0); }  // drain anything earlier tests queued
  Kf::Testing::ScopedTestHost host;
};

TEST_F(NamedEvents, UiThreadDeliveryIsImmediateInRegistrationOrderAndByExactName) {
  std::vector<int> order;
  Kf::Event::FunctionHandler<UiMessage> first([&](const UiMessage&) { order.push_back(1); });
  Kf::Event::FunctionHandler<UiMessage> second([&](const UiMessage&) { order.push_back(2); });
  Kf::Event::RegisterEvent("TEST_ORDER", &first);
  Kf::Event::RegisterEvent("TEST_ORDER", &second);
  Kf::Event::NotifyEvent("TEST_ORDER", MakeUi("x"));
  Kf::Event::NotifyEvent("test_order", MakeUi("x"));  // names are case-sensitive
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
  Kf::Event::UnregisterEvent("TEST_ORDER", &first);
  Kf::Event::UnregisterEvent("TEST_ORDER", &second);
}

TEST_F(NamedEvents, UnregisterRemovesEveryDuplicateAndUnknownNamesAreHarmless) {
  Recorder<UiMessage> handler;
  Kf::Event::RegisterEvent("TEST_DUP", &handler);
  Kf::Event::RegisterEvent("TEST_DUP", &handler);
  Kf::Event::NotifyEvent("TEST_DUP", MakeUi("twice"));
  EXPECT_EQ(handler.texts.size(), 2u);
  Kf::Event::UnregisterEvent("TEST_DUP", &handler);
  Kf::Event::NotifyEvent("TEST_DUP", MakeUi("none"));
  EXPECT_EQ(handler.texts.size(), 2u);
  Kf::Event::UnregisterEvent("TEST_NEVER_REGISTERED", &handler);
  Kf::Event::NotifyEvent("TEST_NEVER_REGISTERED", MakeUi("nobody"));
}

TEST_F(NamedEvents, HandlerOfAnotherTypeIgnoresTheEvent) {
  Recorder<AnyThreadMessage> other;
  Kf::Event::RegisterEvent("TEST_TYPED", &other);
  Kf::Event::NotifyEvent("TEST_TYPED", MakeUi("ui"));
  EXPECT_TRUE(other.texts.empty());
  Kf::Event::UnregisterEvent("TEST_TYPED", &other);
}

TEST_F(NamedEvents, UiOnlyEventsFromAWorkerWaitForTheIdlePassAndArriveInOrderAsCopies) {
  Recorder<UiMessage> handler;
  Kf::Event::RegisterEvent("TEST_QUEUED", &handler);
  std::thread worker([] {
    for (const char* text : {"one", "two", "three"}) Kf::Event::NotifyEvent("TEST_QUEUED", MakeUi(text));
  });
  worker.join();
  EXPECT_TRUE(handler.texts.empty()) << "no handler may run before the idle pass";

  KfIdleChoreImpl::IdleTime(0);
  EXPECT_EQ(handler.texts, (std::vector<std::string>{"one", "two", "three"}));
  for (size_t i = 0; i < handler.texts.size(); ++i) {
    EXPECT_TRUE(handler.sawCopy[i]);
    EXPECT_EQ(handler.threads[i], std::this_thread::get_id());
  }
  Kf::Event::UnregisterEvent("TEST_QUEUED", &handler);
}

TEST_F(NamedEvents, AnyThreadEventsRunOnTheCallersThread) {
  Recorder<AnyThreadMessage> handler;
  Kf::Event::RegisterEvent("TEST_DIRECT", &handler);
  std::thread::id workerId;
  std::thread worker([&] {
    workerId = std::this_thread::get_id();
    AnyThreadMessage m;
    m.text = "now";
    Kf::Event::NotifyEvent("TEST_DIRECT", m);
  });
  worker.join();
  ASSERT_EQ(handler.texts.size(), 1u);
  EXPECT_EQ(handler.threads[0], workerId);
  Kf::Event::UnregisterEvent("TEST_DIRECT", &handler);
}

TEST_F(NamedEvents, HandlerMayUnregisterItselfAndNotifyFromInsideDelivery) {
  int outer = 0, inner = 0;
  Kf::Event::FunctionHandler<UiMessage> innerHandler([&](const UiMessage&) { ++inner; });
  Kf::Event::FunctionHandler<UiMessage>* self = nullptr;
  Kf::Event::FunctionHandler<UiMessage> outerHandler([&](const UiMessage&) {
    ++outer;
    Kf::Event::UnregisterEvent("TEST_REENTER", self);
    Kf::Event::NotifyEvent("TEST_REENTER_INNER", MakeUi("inner"));
  });
  self = &outerHandler;
  Kf::Event::RegisterEvent("TEST_REENTER", &outerHandler);
  Kf::Event::RegisterEvent("TEST_REENTER_INNER", &innerHandler);
  Kf::Event::NotifyEvent("TEST_REENTER", MakeUi("outer"));
  Kf::Event::NotifyEvent("TEST_REENTER", MakeUi("outer"));
  EXPECT_EQ(outer, 1);
  EXPECT_EQ(inner, 1);
  Kf::Event::UnregisterEvent("TEST_REENTER_INNER", &innerHandler);
}

TEST_F(NamedEvents, HandlerUnregisteredBeforeItsTurnIsSkipped) {
  int second = 0;
  Kf::Event::FunctionHandler<UiMessage> secondHandler([&](const UiMessage&) { ++second; });
  Kf::Event::FunctionHandler<UiMessage> firstHandler(
      [&](const UiMessage&) { Kf::Event::UnregisterEvent("TEST_SKIP", &secondHandler); });
  Kf::Event::RegisterEvent("TEST_SKIP", &firstHandler);
  Kf::Event::RegisterEvent("TEST_SKIP", &secondHandler);
  Kf::Event::NotifyEvent("TEST_SKIP", MakeUi("x"));
  EXPECT_EQ(second, 0);
  Kf::Event::UnregisterEvent("TEST_SKIP", &firstHandler);
}

TEST_F(NamedEvents, ChangesMadeOnAnyThreadAreSeenByTheNextDelivery) {
  // Repeated deliveries of one name must still notice every registration
  // change, whether a handler makes it or another thread does.
  int first = 0, added = 0, remote = 0;
  Kf::Event::FunctionHandler<UiMessage> addedHandler([&](const UiMessage&) { ++added; });
  Kf::Event::FunctionHandler<UiMessage> remoteHandler([&](const UiMessage&) { ++remote; });
  Kf::Event::FunctionHandler<UiMessage> firstHandler([&](const UiMessage&) {
    if (++first == 1) Kf::Event::RegisterEvent("TEST_CHANGES", &addedHandler);
  });
  Kf::Event::RegisterEvent("TEST_CHANGES", &firstHandler);
  Kf::Event::NotifyEvent("TEST_CHANGES", MakeUi("1"));
  EXPECT_EQ(added, 0) << "registered during the delivery: not part of it";
  Kf::Event::NotifyEvent("TEST_CHANGES", MakeUi("2"));
  EXPECT_EQ(added, 1);

  std::thread([&] { Kf::Event::RegisterEvent("TEST_CHANGES", &remoteHandler); }).join();
  Kf::Event::NotifyEvent("TEST_CHANGES", MakeUi("3"));
  EXPECT_EQ(remote, 1);
  std::thread([&] { Kf::Event::UnregisterEvent("TEST_CHANGES", &remoteHandler); }).join();
  Kf::Event::NotifyEvent("TEST_CHANGES", MakeUi("4"));
  EXPECT_EQ(remote, 1);
  EXPECT_EQ(first, 4);
  Kf::Event::UnregisterEvent("TEST_CHANGES", &firstHandler);
  Kf::Event::UnregisterEvent("TEST_CHANGES", &addedHandler);
}

}  // namespace
