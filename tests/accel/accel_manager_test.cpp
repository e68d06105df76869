#include <gtest/gtest.h>

#include "accel_test_support.h"
#include "orvane/accel.h"
#include "orvane/events.h"
#include "orvane/stringcommand.h"
#include "support/scoped_settings.h"

namespace Kf::Accel {
namespace {

using Testing::Describe;
using Testing::Keys;
using Testing::TestManager;

class AccelManagerTest : public ::testing::Test {
 protected:
  Kf::Testing::ScopedGlobalStorage global;
  Testing::ScopedTextFrontEnd frontEnd;
};

AccelPart Part(AccelPart::AccelType type, std::vector<std::pair<const char*, const char*>> bindings) {
  std::vector<AccelEntry> entries;
  for (const auto& [key, command] : bindings) entries.emplace_back(Keys(key), command);
  return AccelPart(type, entries);
}

TEST_F(AccelManagerTest, InstallKeepsBoundKeysButRecordsEveryDefault) {
  TestManager manager;
  AccelMap user;
  user[Keys("Ctrl+S")] = "User.SaveAll";
  manager.SetPrimaryAccels(user);

  Part(AccelPart::Primary, {{"Ctrl+S", "File.Save"}, {"Ctrl+O", "File.Open"}}).Install();
  EXPECT_EQ(Describe(manager.Primary()), "Ctrl+O=File.Open, Ctrl+S=User.SaveAll");
  EXPECT_EQ(Describe(manager.PrimaryDefault()), "Ctrl+O=File.Open, Ctrl+S=File.Save");

  // The first part installed wins a key; a secondary part cannot take a key
  // bound in the primary table either.
  Part(AccelPart::Primary, {{"Ctrl+O", "Other.Open"}}).Install();
  Part(AccelPart::Secondary, {{"Ctrl+O", "Second.Open"}, {"Alt+O", "File.Open"}}).Install();
  EXPECT_EQ(Describe(manager.Primary()), "Ctrl+O=File.Open, Ctrl+S=User.SaveAll");
  EXPECT_EQ(Describe(manager.Secondary()), "Alt+O=File.Open");
  EXPECT_EQ(Describe(manager.PrimaryDefault()), "Ctrl+O=Other.Open, Ctrl+S=File.Save");
  EXPECT_EQ(Describe(manager.SecondaryDefault()), "Ctrl+O=Second.Open, Alt+O=File.Open");
}

TEST_F(AccelManagerTest, OnePrimaryKeyPerCommandButAnyNumberOfSecondaryKeys) {
  TestManager manager;
  Part(AccelPart::Primary, {{"F7", "Build.Make"}}).Install();
  Part(AccelPart::Primary, {{"Ctrl+B", "Build.Make"}}).Install();
  Part(AccelPart::Secondary, {{"Alt+1", "Build.Clean"}}).Install();
  Part(AccelPart::Secondary, {{"Alt+2", "Build.Clean"}}).Install();
  EXPECT_EQ(Describe(manager.Primary()), "F7=Build.Make");
  EXPECT_EQ(Describe(manager.PrimaryDefault()), "Ctrl+B=Build.Make, F7=Build.Make");
  EXPECT_EQ(Describe(manager.Secondary()), "Alt+1=Build.Clean, Alt+2=Build.Clean");
  EXPECT_TRUE(TestManager::CommandIsInSet("Build.Make", manager.Primary()));
  EXPECT_FALSE(TestManager::CommandIsInSet("Build.Mak", manager.Primary()));
  KeySequence found;
  ASSERT_TRUE(TestManager::FindKeySequence("Build.Clean", manager.Secondary(), found));
  EXPECT_EQ(TextFrontEnd::Format(found), "Alt+1");
}

TEST_F(AccelManagerTest, UninstallOnlyTouchesTheDefaults) {
  TestManager manager;
  AccelPart part = Part(AccelPart::Primary, {{"F5", "Debug.Go"}, {"F10", "Debug.Step"}});
  part.Install();
  manager.DoIdleChore();
  part.Uninstall();
  EXPECT_EQ(Describe(manager.Primary()), "F5=Debug.Go, F10=Debug.Step");
  EXPECT_EQ(Describe(manager.PrimaryDefault()), "");
  EXPECT_FALSE(manager.NeedsRebuild());
}

TEST_F(AccelManagerTest, ChangesAreRebuiltOnceAtTheNextIdleMoment) {
  TestManager manager;
  EXPECT_FALSE(manager.DoIdleChore());
  EXPECT_EQ(manager.rebuilds, 0);
  Part(AccelPart::Primary, {{"F5", "Debug.Go"}}).Install();
  EXPECT_TRUE(manager.NeedsRebuild());
  // Through the host's idle pass, as in an application.
  KfIdleChoreImpl::IdleTime(0);
  EXPECT_EQ(manager.rebuilds, 1);
  KfIdleChoreImpl::IdleTime(0);
  EXPECT_EQ(manager.rebuilds, 1);

  // A key taken, with the command already bound: nothing added, no rebuild.
  Part(AccelPart::Primary, {{"F5", "Other.Go"}}).Install();
  EXPECT_FALSE(manager.NeedsRebuild());
  manager.SetDefaultIfMissing(AccelEntry(Keys("Ctrl+F5"), "Debug.Go"), manager.primary, false);
  EXPECT_FALSE(manager.NeedsRebuild()) << "the command is bound and no second binding is allowed";
  manager.SetDefaultIfMissing(AccelEntry(Keys("Ctrl+F5"), "Debug.Go"), manager.primary, true);
  EXPECT_TRUE(manager.NeedsRebuild());
  EXPECT_EQ(Describe(manager.Primary()), "F5=Debug.Go, Ctrl+F5=Debug.Go");
}

TEST_F(AccelManagerTest, ShortcutStringReportsOnlyPrimaryBindings) {
  TestManager manager;
  Part(AccelPart::Primary, {{"Ctrl+K Ctrl+C", "Edit.Comment"}}).Install();
  Part(AccelPart::Secondary, {{"Ctrl+/", "Edit.Uncomment"}}).Install();
  std::string text = "unchanged";
  EXPECT_TRUE(manager.GetShortcutString("Edit.Comment", text));
  EXPECT_EQ(text, "Ctrl+K Ctrl+C");
  text = "unchanged";
  EXPECT_FALSE(manager.GetShortcutString("Edit.Uncomment", text));
  EXPECT_EQ(text, "unchanged");
}

TEST_F(AccelManagerTest, InstanceIsTheLiveManager) {
  auto* manager = new TestManager;
  EXPECT_EQ(&AccelManager::Instance(), manager);
  delete manager;
  TestManager second;
  EXPECT_EQ(&AccelManager::Instance(), &second);
}

TEST_F(AccelManagerTest, EmptyKeysNeverEnterTheTables) {
  TestManager manager;
  AccelPart part(AccelPart::Primary, {AccelEntry(KeySequence(), "Edit.Nothing"), AccelEntry(Keys("F2"), "Edit.Rename")});
  part.Install();
  EXPECT_EQ(Describe(manager.Primary()), "F2=Edit.Rename");
  EXPECT_EQ(manager.PrimaryDefault().size(), 1u);
}

TEST_F(AccelManagerTest, BindingReportExplainsWhatIsInForce) {
  TestManager manager;
  AccelMap user;
  user[Keys("Ctrl+P")] = "User.Print";
  manager.SetPrimaryAccels(user);
  Part(AccelPart::Primary, {{"F5", "Debug.Go"}, {"Ctrl+P", "File.Print"}, {"F9", "Debug.Go"}}).Install();
  Part(AccelPart::Primary, {{"F5", "Run.Start"}, {"F6", "Run.Only"}}).Install();

  auto all = manager.GetBindingReport(KeySequence());
  std::vector<std::string> keys;
  for (const BindingReport& report : all) keys.push_back(TextFrontEnd::Format(report.key));
  EXPECT_EQ(keys, (std::vector<std::string>{"Ctrl+P", "F5", "F9"})) << "F6 has one uncontested default";

  const BindingReport& print = all[0];
  ASSERT_EQ(print.sources.size(), 2u);
  EXPECT_EQ(print.sources[1].kind, BindingSource::User);
  EXPECT_EQ(print.command, "User.Print");
  EXPECT_NE(print.reason.find("user"), std::string::npos);

  const BindingReport& go = all[1];
  ASSERT_EQ(go.sources.size(), 2u);
  EXPECT_EQ(go.sources[0].partIndex, 0);
  EXPECT_EQ(go.sources[1].command, "Run.Start");
  EXPECT_EQ(go.command, "Debug.Go");
  EXPECT_NE(go.reason.find("first part installed wins"), std::string::npos);

  const BindingReport& f9 = all[2];
  EXPECT_FALSE(f9.bound);
  EXPECT_NE(f9.reason.find("one primary key per command"), std::string::npos);

  auto single = manager.GetBindingReport(Keys("F6"));
  ASSERT_EQ(single.size(), 1u);
  EXPECT_EQ(single[0].command, "Run.Only");
  EXPECT_TRUE(manager.GetBindingReport(Keys("Ctrl+Q")).front().sources.empty());
  EXPECT_EQ(Describe(manager.Primary()), "Ctrl+P=User.Print, F5=Debug.Go, F6=Run.Only") << "the report changes nothing";
}

}  // namespace
}  // namespace Kf::Accel
