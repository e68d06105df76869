#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "orvane/idle.h"
#include "orvane/statusbar.h"
#include "support/test_host.h"

namespace {

namespace SB = Kf::StatusBar;

// Workers publish progress and move the caret while the UI thread combines
// the outputs; afterwards the queued caret events arrive at the idle pass,
// each a complete caret text.
TEST(StatusBarConcurrency, WorkersReportWhileTheUiThreadCombines) {
  Kf::Testing::ScopedTestHost host;
  std::vector<std::string> caretTexts;
  Kf::Event::FunctionHandler<SB::StatusBarCaretPositionEvent> onCaret(
      [&](const SB::StatusBarCaretPositionEvent& e) { caretTexts.push_back(e.text); });
  Kf::Event::RegisterEvent(SB::kPositionEvent, &onCaret);

  std::atomic<int> running{4};
  std::vector<std::thread> workers;
  for (int t = 0; t < 4; ++t) {
    workers.emplace_back([t, &running] {
      auto output = SB::CreateProgressOutputPtr(t % 2 ? SB::ProgressStatus::High : SB::ProgressStatus::Normal,
                                                "worker " + std::to_string(t));
      for (int i = 0; i < 2000; ++i) {
        output->SetSteps(i, 2000);
        output->SetText("step " + std::to_string(i));
        SB::SetCaretPosition(t, i % 7);
        if (output->CancelRequested()) break;
      }
      running.fetch_sub(1);
    });
  }
  while (running.load() > 0) {
    SB::UpdateProgressStatus();
    SB::ProgressStatus shown = SB::GetProgressStatus();
    EXPECT_LE(shown.StepsDone(), shown.StepsTotal());
  }
  for (std::thread& worker : workers) worker.join();
  SB::UpdateProgressStatus();
  EXPECT_FALSE(SB::GetProgressStatus().IsActive());  // every output was released

  for (long pass = 0; KfIdleChoreImpl::IdleTime(pass); ++pass) {
  }
  ASSERT_FALSE(caretTexts.empty());
  for (const std::string& text : caretTexts) ASSERT_EQ(text.rfind("Ln ", 0), 0u) << text;
  EXPECT_EQ(SB::GetCaretPositionText().rfind("Ln ", 0), 0u);
  Kf::Event::UnregisterEvent(SB::kPositionEvent, &onCaret);
}

}  // namespace
