#include "orvane/stringcommand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace Kf::StringCommand {
namespace {

struct RecordingHandler : Handler {
  std::vector<std::string> invoked;
  std::vector<std::string> queried;
  UpdateState state{1, 0};
  bool Invoke(const std::string& name, const KfPropertyTree& args) override {
    invoked.push_back(name + ":" + args.get<std::string>("file", ""));
    return true;
  }
  bool Query(const std::string& name, const KfPropertyTree&, KfPropertyTree* result) override {
    queried.push_back(name);
    result->put("answer", 42);
    return true;
  }
  UpdateState GetUpdateState(const std::string&) override { return state; }
};

struct StateListener : IUpdateStateListener {
  std::vector<std::string> names;
  void OnUpdateStateChanged(const std::string& name) override { names.push_back(name); }
};

struct InfoListener : ICommandInfoListener {
  std::vector<std::vector<std::string>> events;
  std::vector<CommandInfoEvent::Hint> hints;
  bool throws = false;
  void OnCommandInfoChanged(const CommandInfoEvent& event) override {
    events.push_back(event.Commands());
    hints.push_back(event.GetHint());
    if (throws) throw std::runtime_error("listener failed");
  }
};

TEST(StringCommandDispatch, RegisteredHandlerRunsAndUnknownNameFails) {
  RecordingHandler handler;
  RegisterCmds(&handler, {"Dispatch.Open", "Dispatch.Close"});
  KfPropertyTree args;
  args.put("file", "main.c");
  EXPECT_TRUE(Invoke("Dispatch.Open", args, nullptr));
  EXPECT_FALSE(Invoke("Dispatch.open", args, nullptr)) << "names are case-sensitive";
  EXPECT_FALSE(Invoke("Dispatch.Unknown", args, nullptr));
  EXPECT_EQ(handler.invoked, std::vector<std::string>{"Dispatch.Open:main.c"});

  KfPropertyTree result;
  EXPECT_TRUE(Query("Dispatch.Close", args, &result, nullptr));
  EXPECT_EQ(result.get<int>("answer"), 42);
  EXPECT_FALSE(Query("Dispatch.Unknown", args, &result, nullptr));

  UnregisterCmds(&handler, {"Dispatch.Open", "Dispatch.Close"});
  EXPECT_FALSE(Invoke("Dispatch.Open", args, nullptr));
  EXPECT_EQ(handler.invoked.size(), 1u);
}

TEST(StringCommandDispatch, ExplicitHandlerBypassesTheTable) {
  RecordingHandler registered, explicitHandler;
  RegisterCmds(&registered, {"Bypass.Run"});
  EXPECT_TRUE(Invoke("Bypass.Run", KfPropertyTree(), &explicitHandler));
  EXPECT_TRUE(Invoke("Bypass.NeverRegistered", KfPropertyTree(), &explicitHandler));
  KfPropertyTree result;
  EXPECT_TRUE(Query("Bypass.NeverRegistered", KfPropertyTree(), &result, &explicitHandler));
  EXPECT_TRUE(registered.invoked.empty());
  EXPECT_EQ(explicitHandler.invoked.size(), 2u);
  EXPECT_EQ(explicitHandler.queried, std::vector<std::string>{"Bypass.NeverRegistered"});
  UnregisterCmds(&registered, {"Bypass.Run"});
}

TEST(StringCommandDispatch, UnregisterLeavesNamesTakenOverByAnotherHandler) {
  RecordingHandler first, second;
  RegisterCmds(&first, {"Takeover.A", "Takeover.B"});
  RegisterCmds(&second, {"Takeover.B"});
  UnregisterCmds(&first, {"Takeover.A", "Takeover.B"});
  EXPECT_FALSE(Invoke("Takeover.A", KfPropertyTree(), nullptr));
  EXPECT_TRUE(Invoke("Takeover.B", KfPropertyTree(), nullptr));
  EXPECT_EQ(second.invoked.size(), 1u);
  UnregisterCmds(&second, {"Takeover.B"});
}

TEST(StringCommandUpdate, RedundantUpdatesAreFiltered) {
  StateListener listener;
  RegisterUpdateStateListener(&listener);
  SetUpdate("Update.Build", UpdateState{1, 0});
  SetUpdate("Update.Build", UpdateState{1, 0});
  SetUpdate("Update.Build", UpdateState{1, 1});
  SetUpdate("Update.Build", UpdateState{1, 1});
  SetUpdate("Update.Other", UpdateState{0, 0});  // first state for a name is a change too
  UnregisterUpdateStateListener(&listener);
  SetUpdate("Update.Build", UpdateState{0, 0});
  EXPECT_EQ(listener.names, (std::vector<std::string>{"Update.Build", "Update.Build", "Update.Other"}));
  EXPECT_EQ(GetUpdate("Update.Build"), (UpdateState{0, 0}));
}

TEST(StringCommandUpdate, CachedStateThenHandlerThenZero) {
  EXPECT_EQ(GetUpdate("Update.Nobody"), UpdateState());
  RecordingHandler handler;
  handler.state = UpdateState{1, 1};
  RegisterCmds(&handler, {"Update.Handled"});
  EXPECT_EQ(GetUpdate("Update.Handled"), (UpdateState{1, 1}));
  SetUpdate("Update.Handled", UpdateState{0, 1});
  EXPECT_EQ(GetUpdate("Update.Handled"), (UpdateState{0, 1})) << "a pushed state wins over the handler";
  UnregisterCmds(&handler, {"Update.Handled"});
}

TEST(StringCommandUpdate, ListenerRemovedDuringNotificationIsNotCalled) {
  StateListener second;
  struct Remover : IUpdateStateListener {
    IUpdateStateListener* victim = nullptr;
    int calls = 0;
    void OnUpdateStateChanged(const std::string&) override {
      ++calls;
      UnregisterUpdateStateListener(victim);
    }
  } first;
  first.victim = &second;
  RegisterUpdateStateListener(&first);
  RegisterUpdateStateListener(&second);
  SetUpdate("Update.Remove", UpdateState{1, 0});
  UnregisterUpdateStateListener(&first);
  EXPECT_EQ(first.calls, 1);
  EXPECT_TRUE(second.names.empty());
}

TEST(StringCommandInfo, SetGetAndListKeepTextsAndNotify) {
  InfoListener listener;
  RegisterInfoListener(&listener);
  SetCommandInfo({CommandInfo("Info.Build", "&Build", "Builds the project"),
                  CommandInfo("Info.Clean", "&Clean", "Removes build output", CommandInfo::kFromSettings)});
  SetCommandInfo({CommandInfo("Info.Build", "&Build All", "Builds everything")});
  UnregisterInfoListener(&listener);

  CommandInfo info;
  ASSERT_TRUE(GetCommandInfo("Info.Build", info));
  EXPECT_EQ(info.text, "&Build All");
  EXPECT_EQ(info.description, "Builds everything");
  ASSERT_TRUE(GetCommandInfo("Info.Clean", info));
  EXPECT_EQ(info.origin, CommandInfo::kFromSettings);

  CommandInfo untouched("keep", "me", "");
  EXPECT_FALSE(GetCommandInfo("Info.Unknown", untouched));
  EXPECT_EQ(untouched.command, "keep");

  std::vector<std::string> names;
  GetCommandsWithInfo(names);
  EXPECT_NE(std::find(names.begin(), names.end(), "Info.Build"), names.end());
  EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));

  ASSERT_EQ(listener.events.size(), 2u);
  EXPECT_EQ(listener.events[0], (std::vector<std::string>{"Info.Build", "Info.Clean"}));
  EXPECT_EQ(listener.hints[1], CommandInfoEvent::InfoChanged);
}

TEST(StringCommandInfo, ThrowingListenerStopsNotificationAndReachesCaller) {
  InfoListener first, thrower, last;
  thrower.throws = true;
  RegisterInfoListener(&first);
  RegisterInfoListener(&thrower);
  RegisterInfoListener(&last);
  EXPECT_THROW(NotifyCommandInfoChanged({"Info.X"}, CommandInfoEvent::ShortcutChanged), std::runtime_error);
  EXPECT_EQ(first.events.size(), 1u);
  EXPECT_EQ(thrower.events.size(), 1u);
  EXPECT_TRUE(last.events.empty());
  EXPECT_EQ(first.hints[0], CommandInfoEvent::ShortcutChanged);

  // The lock was released: information can still be changed and read.
  UnregisterInfoListener(&thrower);
  SetCommandInfo({CommandInfo("Info.AfterThrow", "After", "")});
  CommandInfo info;
  EXPECT_TRUE(GetCommandInfo("Info.AfterThrow", info));
  EXPECT_EQ(last.events.size(), 1u);
  UnregisterInfoListener(&first);
  UnregisterInfoListener(&last);
}

TEST(StringCommandInfo, ListenerMayCallBackIntoInformation) {
  struct Reader : ICommandInfoListener {
    std::string seen;
    void OnCommandInfoChanged(const CommandInfoEvent& event) override {
      CommandInfo info;
      if (GetCommandInfo(event.Commands().front(), info)) seen = info.text;
    }
  } reader;
  RegisterInfoListener(&reader);
  SetCommandInfo({CommandInfo("Info.Reentrant", "&Reentrant", "")});
  UnregisterInfoListener(&reader);
  EXPECT_EQ(reader.seen, "&Reentrant");
}

}  // namespace
}  // namespace Kf::StringCommand
