#include <gtest/gtest.h>

#include "orvane/dialogs.h"
#include "support/recording_log_server.h"
#include "support/scoped_settings.h"
#include "support/test_host.h"

namespace {

using Kf::Dialog::DlgResult;
using Kf::HostUtil::IHostUtil;

struct NameModel : Kf::Dialog::DialogModel {
  std::string name;
};
struct NameModelEx : Kf::Dialog::DialogModelEx {
  int value = 0;
};

struct RenameHost : Kf::Dialog::DialogHost {
  explicit RenameHost(DlgResult r) : result(r) {}
  DlgResult InvokeDialog(const std::string& dialog, Kf::Dialog::DialogModel& model) override {
    static_cast<NameModel&>(model).name = "renamed by " + dialog;
    return result;
  }
  DlgResult result;
};

struct ValueHost : Kf::Dialog::DialogHostEx {
  DlgResult InvokeDialog(const std::string&, Kf::Dialog::DialogModelEx& model) override {
    static_cast<NameModelEx&>(model).value = 42;
    return Kf::Dialog::DlgOk;
  }
};

TEST(Dialogs, InvokedByNameThroughTheRegisteredHost) {
  RenameHost first(Kf::Dialog::DlgOk), second(Kf::Dialog::DlgCancel);
  NameModel model;
  EXPECT_EQ(Kf::DialogMgmt::InvokeDialog("RENAME", model), Kf::Dialog::DlgNone);

  Kf::DialogMgmt::RegisterDialogHost("RENAME", &first);
  EXPECT_EQ(Kf::DialogMgmt::InvokeDialog("RENAME", model), Kf::Dialog::DlgOk);
  EXPECT_EQ(model.name, "renamed by RENAME");
  EXPECT_EQ(Kf::DialogMgmt::InvokeDialog("rename", model), Kf::Dialog::DlgNone);  // exact names

  Kf::Dialog::RegisterDialogHost("RENAME", &second);  // the older namespace forwards
  EXPECT_EQ(Kf::Dialog::InvokeDialog("RENAME", model), Kf::Dialog::DlgCancel);

  Kf::DialogMgmt::UnregisterDialogHost("RENAME", &first);  // the host is not compared
  EXPECT_EQ(Kf::DialogMgmt::InvokeDialog("RENAME", model), Kf::Dialog::DlgNone);
}

TEST(Dialogs, ExtendedHostsLiveInTheirOwnRegistry) {
  ValueHost valueHost;
  RenameHost plainHost(Kf::Dialog::DlgOk);
  Kf::DialogMgmt::RegisterDialogHost("SHARED", &plainHost);
  NameModelEx modelEx;
  EXPECT_EQ(Kf::DialogMgmt::InvokeDialog("SHARED", modelEx), Kf::Dialog::DlgNone);
  Kf::Dialog::RegisterDialogHost("SHARED", &valueHost);
  EXPECT_EQ(Kf::Dialog::InvokeDialog("SHARED", modelEx), Kf::Dialog::DlgOk);
  EXPECT_EQ(modelEx.value, 42);
  Kf::Dialog::UnregisterDialogHost("SHARED", &valueHost);
  NameModel model;
  EXPECT_EQ(Kf::DialogMgmt::InvokeDialog("SHARED", model), Kf::Dialog::DlgOk);
  Kf::DialogMgmt::UnregisterDialogHost("SHARED", &plainHost);
}

class Backend : public Kf::IHelpLauncherBackend {
 public:
  Backend(std::string n, std::vector<std::string>& l, bool accept) : name(std::move(n)), log(l), accepts(accept) {}
  bool KeywordLookup(const std::string& keyword, std::optional<std::string> file) override {
    log.push_back(name + " keyword " + keyword + " " + file.value_or("-"));
    return true;
  }
  bool ContextHelpLookup(const std::string& context, std::optional<std::string>) override {
    log.push_back(name + " context " + context);
    return true;
  }
  bool Search(const std::string& text, std::optional<std::string> file) override {
    log.push_back(name + " search " + text + " " + file.value_or("-"));
    return false;
  }
  void UpdateHelpViewerState() override { log.push_back(name + " update"); }
  bool Accepts(std::optional<std::string> file) override { return accepts && file != "other.chm"; }

  std::string name;
  std::vector<std::string>& log;
  bool accepts;
};

class Help : public ::testing::Test {
 protected:
  void SetUp() override {
    Kf::HelpLauncher::Uninitialize();
    Kf::DontAsk::ClearDontAskInformation();
  }
  void TearDown() override { Kf::HelpLauncher::Uninitialize(); }
  Kf::Testing::ScopedTestHost host;
  std::vector<std::string> log;
};

TEST_F(Help, TheNewestAcceptingBackendAnswers) {
  Backend older("older", log, true), newer("newer", log, true), picky("picky", log, false);
  auto& launcher = Kf::HelpLauncher::Instance();
  launcher.RegisterLauncherBackend(&older);
  launcher.RegisterLauncherBackend(&newer);
  EXPECT_TRUE(launcher.KeywordLookup("printf", std::string("ide.chm")));
  EXPECT_TRUE(launcher.ContextHelpLookup("IDD_BUILD", std::nullopt));
  EXPECT_FALSE(launcher.Search("volatile", "lib.chm"));  // the back-end's own answer
  launcher.RegisterLauncherBackend(&picky);                // newest, but declines
  EXPECT_TRUE(launcher.KeywordLookup("malloc", std::nullopt));
  launcher.UpdateHelpViewerState();
  EXPECT_EQ(log, (std::vector<std::string>{"newer keyword printf ide.chm", "newer context IDD_BUILD",
                                           "newer search volatile lib.chm", "newer keyword malloc -",
                                           "picky update", "newer update", "older update"}));
  EXPECT_TRUE(host->Boxes().empty());

  launcher.UnregisterLauncherBackend(&newer);
  log.clear();
  EXPECT_TRUE(launcher.KeywordLookup("free", std::nullopt));
  EXPECT_EQ(log, (std::vector<std::string>{"older keyword free -"}));
}

TEST_F(Help, NoAcceptingBackendTellsTheUserOncePerAttempt) {
  Backend older("older", log, true);
  auto& launcher = Kf::HelpLauncher::Instance();
  launcher.RegisterLauncherBackend(&older);
  EXPECT_FALSE(launcher.KeywordLookup("x", std::string("other.chm")));
  EXPECT_FALSE(launcher.Search("x", "other.chm"));
  ASSERT_EQ(host->Boxes().size(), 2u);
  EXPECT_EQ(host->Boxes()[0],
            (Kf::Testing::TestHost::Box{"No registered help launchers.", "Context Sensitive Help",
                                        IHostUtil::IconInformation, IHostUtil::KindOk, IHostUtil::BtnOk,
                                        "NO_CONTEXT_HELP_LAUNCHER"}));
  EXPECT_TRUE(log.empty());

  // A remembered answer for the key silences the message.
  Kf::DontAsk::SetDontAsk("NO_CONTEXT_HELP_LAUNCHER", IHostUtil::BtnOk);
  EXPECT_FALSE(launcher.ContextHelpLookup("x", std::string("other.chm")));
  EXPECT_EQ(host->Boxes().size(), 2u);
}

TEST_F(Help, UninitializeForgetsTheBackends) {
  Backend only("only", log, true);
  Kf::HelpLauncher::Instance().RegisterLauncherBackend(&only);
  Kf::HelpLauncher::Uninitialize();
  EXPECT_FALSE(Kf::HelpLauncher::Instance().KeywordLookup("x", std::nullopt));
  EXPECT_TRUE(log.empty());
}

TEST(DontAsk, RemembersAnswersPerKeyButNeverForTheEmptyKey) {
  Kf::DontAsk::ClearDontAskInformation();
  IHostUtil::MsgButton answer = IHostUtil::BtnNone;
  EXPECT_TRUE(Kf::DontAsk::ShouldAsk("OVERWRITE", answer));
  Kf::DontAsk::SetDontAsk("OVERWRITE", IHostUtil::BtnYes);
  Kf::DontAsk::SetDontAsk("OVERWRITE", IHostUtil::BtnNo);
  Kf::DontAsk::SetDontAsk("", IHostUtil::BtnYes);
  EXPECT_FALSE(Kf::DontAsk::ShouldAsk("OVERWRITE", answer));
  EXPECT_EQ(answer, IHostUtil::BtnNo);
  answer = IHostUtil::BtnNone;
  EXPECT_TRUE(Kf::DontAsk::ShouldAsk("", answer));
  EXPECT_EQ(answer, IHostUtil::BtnNone);
  Kf::DontAsk::ClearDontAsk("OVERWRITE");
  EXPECT_TRUE(Kf::DontAsk::ShouldAsk("OVERWRITE", answer));
}

class DontAskStorage : public ::testing::Test {
 protected:
  void SetUp() override { Kf::DontAsk::ClearDontAskInformation(); }
  void TearDown() override { Kf::DontAsk::ClearDontAskInformation(); }
  Kf::Testing::ScopedGlobalStorage global;
};

TEST_F(DontAskStorage, SaveClearRestoreGivesEveryAnswerBack) {
  Kf::DontAsk::SetDontAsk("b.delete", IHostUtil::BtnYes);
  Kf::DontAsk::SetDontAsk("a.overwrite", IHostUtil::BtnNo);
  Kf::DontAsk::SetDontAsk("c.reload", IHostUtil::BtnCancel);
  Kf::DontAsk::SaveDontAskInformation();
  Kf::DontAsk::ClearDontAskInformation();
  IHostUtil::MsgButton answer = IHostUtil::BtnNone;
  EXPECT_TRUE(Kf::DontAsk::ShouldAsk("a.overwrite", answer));

  Kf::DontAsk::SetDontAsk("d.kept", IHostUtil::BtnOk);  // restoring adds, it does not replace
  Kf::DontAsk::RestoreDontAskInformation();
  std::vector<std::pair<std::string, IHostUtil::MsgButton>> expected{{"a.overwrite", IHostUtil::BtnNo},
                                                                      {"b.delete", IHostUtil::BtnYes},
                                                                      {"c.reload", IHostUtil::BtnCancel},
                                                                      {"d.kept", IHostUtil::BtnOk}};
  for (const auto& [key, button] : expected) {
    ASSERT_FALSE(Kf::DontAsk::ShouldAsk(key, answer)) << key;
    EXPECT_EQ(answer, button) << key;
  }
}

TEST_F(DontAskStorage, TheRecordIsTheCountThenKeysAndButtonsInKeyOrder) {
  Kf::DontAsk::SetDontAsk("zeta", IHostUtil::BtnRetry);
  Kf::DontAsk::SetDontAsk("alpha", IHostUtil::BtnIgnore);
  Kf::DontAsk::SaveDontAskInformation();
  KfPerIStream in(*global, "DontAsk", "answers");
  std::int32_t count = 0, first = 0, second = 0;
  std::string firstKey, secondKey;
  ASSERT_TRUE(in >> count >> firstKey >> first >> secondKey >> second);
  EXPECT_TRUE(in.AtEnd());
  EXPECT_EQ(count, 2);
  EXPECT_EQ(firstKey, "alpha");
  EXPECT_EQ(first, IHostUtil::BtnIgnore);
  EXPECT_EQ(secondKey, "zeta");
  EXPECT_EQ(second, IHostUtil::BtnRetry);
}

TEST_F(DontAskStorage, ADamagedRecordRestoresNothingAndIsReported) {
  Kf::Testing::RecordingServer server;
  server.RegisterLogServer();
  {
    KfPerOStream out(*global, "DontAsk", "answers");
    out << std::int32_t{2} << std::string("only.one") << std::int32_t{IHostUtil::BtnYes};
  }
  Kf::DontAsk::RestoreDontAskInformation();
  IHostUtil::MsgButton answer = IHostUtil::BtnNone;
  EXPECT_TRUE(Kf::DontAsk::ShouldAsk("only.one", answer));
  ASSERT_FALSE(server.EntriesOf(kKfFrameworkLogCategory).empty());
  EXPECT_NE(server.EntriesOf(kKfFrameworkLogCategory).back().Text().find("damaged"), std::string::npos);

  Kf::DontAsk::ClearDontAskInformation();  // nothing saved at all: nothing happens
  EXPECT_TRUE(global->DeleteSection("DontAsk"));
  Kf::DontAsk::RestoreDontAskInformation();
  EXPECT_TRUE(Kf::DontAsk::ShouldAsk("only.one", answer));
}

}  // namespace
