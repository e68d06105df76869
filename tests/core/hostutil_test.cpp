#include "orvane/hostutil.h"

#include <gtest/gtest.h>

#include <thread>

#include "support/test_host.h"

namespace {

using Kf::HostUtil::IHostUtil;
using Kf::Testing::ScopedTestHost;
using Kf::Testing::TestHost;

IHostUtil::MsgButton AskQuestion() {
  return Kf::HostUtil::MsgBox("Save?", "Editor", IHostUtil::IconQuestion, IHostUtil::KindYesNo,
                              IHostUtil::BtnNo, "SAVE_KEY");
}

TEST(HostUtil, MsgBoxForwardsEveryArgumentAndReturnsTheHostsAnswer) {
  ScopedTestHost host;
  host->answer = IHostUtil::BtnYes;
  EXPECT_EQ(AskQuestion(), IHostUtil::BtnYes);
  EXPECT_EQ(host->Boxes(), (std::vector<TestHost::Box>{{"Save?", "Editor", IHostUtil::IconQuestion,
                                                        IHostUtil::KindYesNo, IHostUtil::BtnNo, "SAVE_KEY"}}));
}

TEST(HostUtil, AutoDismissAnswersTheDefaultWithoutAskingAndNests) {
  ScopedTestHost host;
  host->answer = IHostUtil::BtnYes;
  {
    Kf::HostUtil::AutoDismissMsgBoxes outer;
    EXPECT_EQ(AskQuestion(), IHostUtil::BtnNo);
    {
      Kf::HostUtil::AutoDismissMsgBoxes inner;
      EXPECT_EQ(AskQuestion(), IHostUtil::BtnNo);
    }
    EXPECT_EQ(AskQuestion(), IHostUtil::BtnNo);  // the outer guard still lives
    EXPECT_TRUE(host->Boxes().empty());
  }
  EXPECT_EQ(AskQuestion(), IHostUtil::BtnYes);
  EXPECT_EQ(host->Boxes().size(), 1u);
}

TEST(HostUtil, UnregisterEmptiesTheSlotWhateverPointerIsGiven) {
  TestHost first, second;
  Kf::HostUtil::RegisterHost(&first);
  Kf::HostUtil::RegisterHost(&second);  // replaces
  EXPECT_EQ(Kf::HostUtil::GetHost(), &second);
  Kf::HostUtil::UnregisterHost(&first);
  EXPECT_EQ(Kf::HostUtil::GetHost(), nullptr);
}

TEST(HostUtil, IsSafeUIThreadIsAnsweredByTheHostOnAnyThread) {
  ScopedTestHost host;
  EXPECT_TRUE(Kf::HostUtil::IsSafeUIThread());
  bool onWorker = true;
  std::thread([&] { onWorker = Kf::HostUtil::IsSafeUIThread(); }).join();
  EXPECT_FALSE(onWorker);
}

TEST(HostUtil, DefaultHostOperationsAnswerNeutrally) {
  ScopedTestHost host;
  std::string folder = "unchanged";
  EXPECT_FALSE(Kf::HostUtil::GetFolder(IHostUtil::FolderDocuments, folder));
  EXPECT_EQ(folder, "unchanged");
  EXPECT_FALSE(Kf::HostUtil::TextAvailable());
  EXPECT_EQ(Kf::HostUtil::GetClipboardData("text", nullptr, 0), 0u);
  EXPECT_FALSE(Kf::HostUtil::GetThemeXColor(Kf::DisplayElement(5)).IsValid());
  // The extended box falls back to the plain one with the details appended.
  host->MsgBoxEx("Failed", "Build", "3 errors", IHostUtil::IconError, IHostUtil::KindOk, IHostUtil::BtnOk, "");
  ASSERT_EQ(host->Boxes().size(), 1u);
  EXPECT_EQ(host->Boxes()[0].text, "Failed\n\n3 errors");
}

}  // namespace
