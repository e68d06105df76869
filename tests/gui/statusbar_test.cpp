#include <gtest/gtest.h>

#include <thread>

#include "orvane/idle.h"
#include "orvane/statusbar.h"
#include "support/test_host.h"

namespace {

namespace SB = Kf::StatusBar;
using Priority = SB::ProgressStatus::Priority;

// Records the events of one type.
template <class EventT>
class Recorder : public Kf::Event::Handler<EventT> {
 public:
  explicit Recorder(const char* name) : name_(name) { Kf::Event::RegisterEvent(name_, this); }
  ~Recorder() override { Kf::Event::UnregisterEvent(name_, this); }
  void OnEvent(const EventT& event) override { events.push_back(event); }
  std::vector<EventT> events;

 private:
  const char* name_;
};

class KeyboardHost : public Kf::Testing::TestHost {
 public:
  Kf::HostUtil::KeyboardModifiers GetKeyboardModifiers() override { return modifiers; }
  Kf::HostUtil::KeyboardModifiers modifiers;
};

class StatusBar : public ::testing::Test {
 protected:
  StatusBar() { Kf::HostUtil::RegisterHost(&host); }
  ~StatusBar() override {
    SB::SetProgressBarPriorityLevel(SB::ProgressStatus::Low, SB::ProgressStatus::High);
    SB::UpdateProgressStatus();
    Kf::HostUtil::UnregisterHost(&host);
  }
  KeyboardHost host;
};

TEST_F(StatusBar, CaretTextIsOneBasedAndRepeatsAreFiltered) {
  Recorder<SB::StatusBarCaretPositionEvent> caret(SB::kPositionEvent);
  SB::SetCaretPosition(0, 0);
  EXPECT_EQ(SB::GetCaretPositionText(), "Ln 1, Col 1");
  SB::SetCaretPosition(Kf::SrcPos(0, 0));
  ASSERT_EQ(caret.events.size(), 1u);
  EXPECT_EQ(caret.events[0].text, "Ln 1, Col 1");
  SB::SetCaretPosition(9, 99);
  SB::SetCaretPosition(9, 99);
  ASSERT_EQ(caret.events.size(), 2u);
  EXPECT_EQ(caret.events[1].text, "Ln 10, Col 100");
  EXPECT_EQ(caret.events[1].position, Kf::SrcPos(9, 99));
}

TEST_F(StatusBar, EventsRaisedOnAWorkerWaitForTheIdlePass) {
  Recorder<SB::StatusBarMessageEvent> messages(SB::kMessageEvent);
  std::thread([] {
    SB::SetStatusBarText("first");
    SB::SetStatusBarText("second");
  }).join();
  EXPECT_TRUE(messages.events.empty());
  EXPECT_EQ(SB::GetStatusBarText(), "second");
  for (long pass = 0; KfIdleChoreImpl::IdleTime(pass); ++pass) {
  }
  ASSERT_EQ(messages.events.size(), 2u);
  EXPECT_EQ(messages.events[0].text, "first");
  EXPECT_EQ(messages.events[1].text, "second");
}

TEST_F(StatusBar, SettersStoreAndAnnounceTheirFields) {
  Recorder<SB::StatusBarEncodingEvent> encoding(SB::kEncodingEvent);
  Recorder<SB::StatusBarOverwriteChangedEvent> overwrite(SB::kOvrEvent);
  Recorder<SB::StatusBarLanguageEvent> language(SB::kLanguageEvent);
  SB::SetEncodingName("UTF-8");
  SB::SetOverwriteActive(true);
  SB::SetOverwriteActive(true);
  SB::SetLanguage("JPN");
  EXPECT_EQ(SB::GetEncodingName(), "UTF-8");
  EXPECT_TRUE(SB::GetOverwriteActive());
  EXPECT_EQ(SB::GetLanguage(), "JPN");
  ASSERT_EQ(encoding.events.size(), 1u);
  EXPECT_EQ(encoding.events[0].encoding, "UTF-8");
  ASSERT_EQ(overwrite.events.size(), 2u);
  EXPECT_TRUE(overwrite.events[1].active);
  ASSERT_EQ(language.events.size(), 1u);
  EXPECT_EQ(language.events[0].code, "JPN");
  EXPECT_EQ(SB::GetLanguageIconString(), "");
}

TEST_F(StatusBar, LockStatesAnnounceOnlyChanges) {
  Recorder<SB::StatusBarCapsLockChangedEvent> caps(SB::kCapEvent);
  Recorder<SB::StatusBarNumLockChangedEvent> num(SB::kNumEvent);
  host.modifiers = {};
  SB::UpdateKeyboardModifiers();
  caps.events.clear();
  num.events.clear();

  host.modifiers.capsLock = true;
  SB::UpdateKeyboardModifiers();
  SB::UpdateKeyboardModifiers();
  EXPECT_TRUE(SB::GetCapsLockActive());
  EXPECT_FALSE(SB::GetNumLockActive());
  ASSERT_EQ(caps.events.size(), 1u);
  EXPECT_TRUE(caps.events[0].active);
  EXPECT_TRUE(num.events.empty());
  host.modifiers.numLock = true;
  host.modifiers.capsLock = false;
  SB::UpdateKeyboardModifiers();
  EXPECT_EQ(caps.events.size(), 2u);
  ASSERT_EQ(num.events.size(), 1u);
  EXPECT_TRUE(SB::GetNumLockActive());
}

TEST_F(StatusBar, LanguageMenuStrings) {
  EXPECT_EQ(SB::LanguageToMenuString("ENU"), "Next session in English");
  EXPECT_EQ(SB::LanguageToMenuString("JPN"), "次回起動から日本語に切替え");
  EXPECT_EQ(SB::LanguageToMenuString("jpn"), "");
}

TEST_F(StatusBar, AHigherPriorityOutputHidesLowerOnesUntilReleased) {
  Recorder<SB::StatusBarProgressEvent> progress(SB::kProgressEvent);
  auto indexing = SB::CreateProgressOutputPtr(SB::ProgressStatus::Normal, "Indexing");
  indexing->SetSteps(1, 4);
  indexing->SetText("main.c");
  SB::UpdateProgressStatus();
  EXPECT_EQ(SB::GetProgressSourceDescription(), "Indexing");
  EXPECT_DOUBLE_EQ(SB::GetProgressStatus().Fraction(), 0.25);

  auto build = SB::CreateProgressOutputPtr(SB::ProgressStatus::High, "Build");
  build->SetSteps(3, 10);
  build->SetText("linking");
  SB::UpdateProgressStatus();
  EXPECT_EQ(SB::GetProgressSourceDescription(), "Build");
  EXPECT_EQ(SB::GetProgressStatus().Text(), "linking");
  EXPECT_DOUBLE_EQ(SB::GetProgressStatus().Fraction(), 0.3);
  EXPECT_EQ(SB::GetProgressStatus().GetPriority(), SB::ProgressStatus::High);

  SB::UpdateProgressStatus();  // nothing changed: no event
  ASSERT_EQ(progress.events.size(), 2u);
  EXPECT_EQ(progress.events[1].description, "Build");

  build.reset();  // the owner let go: it stops counting
  SB::UpdateProgressStatus();
  EXPECT_EQ(SB::GetProgressSourceDescription(), "Indexing");
  EXPECT_EQ(SB::GetProgressStatus().Text(), "main.c");

  indexing->Finish();
  SB::UpdateProgressStatus();
  EXPECT_FALSE(SB::GetProgressStatus().IsActive());
  EXPECT_EQ(SB::GetProgressSourceDescription(), "");
  EXPECT_EQ(progress.events.size(), 4u);
}

TEST_F(StatusBar, OutputsOfOneLevelAreSummedAndLevelsAreConfigurable) {
  auto a = SB::CreateProgressOutputPtr(SB::ProgressStatus::Normal, "A");
  auto b = SB::CreateProgressOutputPtr(SB::ProgressStatus::Normal, "B");
  auto low = SB::CreateProgressOutputPtr(SB::ProgressStatus::Low, "Background");
  a->SetSteps(1, 2);
  b->SetFraction(1.5);  // clamped to 1
  low->SetSteps(0, 100);
  SB::UpdateProgressStatus();
  // Normal is below the default foreground level High: all three count.
  EXPECT_EQ(SB::GetProgressStatus().StepsTotal(), 2 + 10000 + 100);
  EXPECT_EQ(SB::GetProgressStatus().StepsDone(), 1 + 10000);
  EXPECT_EQ(SB::GetProgressSourceDescription(), "B");  // newest of the highest priority

  SB::SetProgressBarPriorityLevel(SB::ProgressStatus::Normal, SB::ProgressStatus::Normal);
  SB::UpdateProgressStatus();
  EXPECT_EQ(SB::GetProgressStatus().StepsTotal(), 2 + 10000);

  SB::SetProgressBarPriorityLevel(SB::ProgressStatus::High, SB::ProgressStatus::High);
  SB::UpdateProgressStatus();
  EXPECT_FALSE(SB::GetProgressStatus().IsActive());
}

TEST_F(StatusBar, CancelReachesTheOperationThroughItsOutput) {
  auto work = SB::CreateProgressOutputPtr(SB::ProgressStatus::Normal, "Search");
  EXPECT_FALSE(work->CancelRequested());
  std::thread worker([work] {
    for (int i = 0; i < 100 && !work->CancelRequested(); ++i) work->SetSteps(i, 100);
  });
  SB::CancelProgress();
  worker.join();
  EXPECT_TRUE(work->CancelRequested());
  SB::UpdateProgressStatus();
  EXPECT_TRUE(SB::GetProgressStatus().CancelRequested());
}

}  // namespace
