#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "orvane/storage.h"
#include "support/fake_platform.h"
#include "support/scoped_settings.h"

namespace {

using Kf::Storage::StorageIndex;
using Kf::Testing::ScopedFakePlatform;
using Kf::Testing::ScopedSettingsDir;

class StorageIndexTest : public ::testing::Test {
 protected:
  GePath StorageRoot() const { return settings_.OptionDir() / "Storage"; }
  GePath IndexFile() const { return StorageRoot() / "Index.xml"; }
  // An index read from a stream holding entries for the given settings dirs.
  std::string IndexText(const std::vector<std::string>& settingsDirs) const {
    std::string text = "<Index>";
    for (size_t i = 0; i < settingsDirs.size(); ++i)
      text += "<Installation InstallDir=\"/opt/ide" + std::to_string(i) + "\" SettingsDir=\"" +
              (StorageRoot() / settingsDirs[i]).ToString() + "\"/>";
    return text + "</Index>";
  }

  ScopedFakePlatform fake_;
  ScopedSettingsDir settings_;
  std::istringstream noIndex_;  // an index stream with nothing in it
};

TEST_F(StorageIndexTest, FirstLookupCreatesInstallation0AndTheSecondFindsIt) {
  StorageIndex index(noIndex_);
  EXPECT_FALSE(index.IsModified());
  GePath first;
  ASSERT_TRUE(index.GetInstallSettingsPath("/opt/ide", first));
  EXPECT_EQ(first, StorageRoot() / "Installation0" / "Settings.xml");
  EXPECT_TRUE(index.IsModified());

  std::ostringstream out;
  ASSERT_TRUE(index.Save(out));
  EXPECT_FALSE(index.IsModified());
  EXPECT_NE(out.str().find("<Installation SettingsDir=\"" + (StorageRoot() / "Installation0").ToString() +
                           "\" InstallDir=\"/opt/ide\""),
            std::string::npos)
      << out.str();

  GePath again;
  ASSERT_TRUE(index.GetInstallSettingsPath("/opt/ide", again));
  EXPECT_EQ(again, first);
  EXPECT_FALSE(index.IsModified()) << "a found entry changes nothing";
}

TEST_F(StorageIndexTest, DirectoriesDifferingInCaseGetTheirOwnEntries) {
  StorageIndex index(noIndex_);
  GePath lower, upper;
  ASSERT_TRUE(index.GetInstallSettingsPath("/opt/ide", lower));
  ASSERT_TRUE(index.GetInstallSettingsPath("/opt/IDE", upper));
  EXPECT_EQ(upper, StorageRoot() / "Installation1" / "Settings.xml");
  EXPECT_NE(lower, upper);
}

TEST_F(StorageIndexTest, TheFirstUnnamedDirectoryIsChosen) {
  std::istringstream in(IndexText({"Installation0", "Installation2"}));
  StorageIndex index(in);
  GePath path;
  ASSERT_TRUE(index.GetInstallSettingsPath("/new/install", path));
  EXPECT_EQ(path, StorageRoot() / "Installation1" / "Settings.xml");
  ASSERT_TRUE(index.GetInstallSettingsPath("/another", path));
  EXPECT_EQ(path, StorageRoot() / "Installation3" / "Settings.xml");
}

TEST_F(StorageIndexTest, AllNamesTakenGivesFalseAndNoEntry) {
  std::vector<std::string> all;
  for (int i = 0; i < StorageIndex::kMaxIndex; ++i) all.push_back("Installation" + std::to_string(i));
  std::istringstream in(IndexText(all));
  StorageIndex index(in);
  GePath path("unchanged");
  EXPECT_FALSE(index.GetInstallSettingsPath("/one/too/many", path));
  EXPECT_EQ(path, GePath("unchanged"));
  EXPECT_FALSE(index.IsModified());
  // Existing installations are still found.
  ASSERT_TRUE(index.GetInstallSettingsPath("/opt/ide999", path));
  EXPECT_EQ(path, StorageRoot() / "Installation999" / "Settings.xml");
}

TEST_F(StorageIndexTest, OnlyAFileIndexWritesItselfWhenModified) {
  {
    StorageIndex fromStream(noIndex_);
    GePath path;
    ASSERT_TRUE(fromStream.GetInstallSettingsPath("/opt/ide", path));
  }
  EXPECT_FALSE(std::filesystem::exists(IndexFile().Native()));
  {
    StorageIndex fromFile;
    GePath path;
    ASSERT_TRUE(fromFile.GetInstallSettingsPath("/opt/ide", path));
  }
  ASSERT_TRUE(std::filesystem::exists(IndexFile().Native()));
  StorageIndex reread;
  GePath path;
  ASSERT_TRUE(reread.GetInstallSettingsPath("/opt/ide", path));
  EXPECT_FALSE(reread.IsModified());
  EXPECT_EQ(path, StorageRoot() / "Installation0" / "Settings.xml");
}

TEST_F(StorageIndexTest, NoOptionDirectoryGivesFalse) {
  (void)fake_->UnsetEnv("ORVANE_SETTINGS_DIR");
  fake_->folders.clear();
  StorageIndex index(noIndex_);
  GePath path("unchanged");
  EXPECT_FALSE(index.GetInstallSettingsPath("/opt/ide", path));
  EXPECT_EQ(path, GePath("unchanged"));
}

TEST_F(StorageIndexTest, InstallationStorageUsesTheRunningInstallationsEntry) {
  fake_->commonBinDirectory = GePath("/opt/orvane/bin");
  KfPersistentStorage* installation = KfPersistentStorage::GetStorage("Installation");
  ASSERT_NE(installation, nullptr);
  EXPECT_EQ(installation->GetFile(), StorageRoot() / "Installation0" / "Settings.xml");
  StorageIndex index;
  GePath path;
  ASSERT_TRUE(index.GetInstallSettingsPath("/opt/orvane/bin", path));
  EXPECT_FALSE(index.IsModified()) << "the entry was written when the storage was created";
}

TEST(NamedStorage, RegistersANodeByNameUntilDestroyed) {
  PxXmlNode root = KfPersistentStorage::GetRootNode();
  ASSERT_FALSE(root.IsEmpty());
  EXPECT_EQ(root.GetName(), "root");
  PxXmlNode shared = root.GetOrAppendChild("Shared");
  EXPECT_EQ(root.GetOrAppendChild("Shared"), shared);
  {
    Kf::Storage::Storage registration("SharedData", shared);
    EXPECT_EQ(Kf::Storage::Storage::GetStorage("SharedData"), shared);
    EXPECT_TRUE(Kf::Storage::Storage::GetStorage("shareddata").IsEmpty()) << "names are exact";
  }
  EXPECT_TRUE(Kf::Storage::Storage::GetStorage("SharedData").IsEmpty());
  EXPECT_TRUE(root.RemoveChild(shared));
}

TEST(PxXmlNodeTest, EditsAndWalksElements) {
  PxXmlNode parent = KfPersistentStorage::GetRootNode().AppendChild("Walk");
  PxXmlNode a = parent.AppendChild("a");
  PxXmlNode b = parent.AppendChild("b");
  EXPECT_TRUE(a.SetText("one & two"));
  EXPECT_TRUE(b.SetAttribute("id", "7"));
  EXPECT_EQ(parent.FirstChild(), a);
  EXPECT_EQ(a.NextSibling(), b);
  EXPECT_TRUE(b.NextSibling().IsEmpty());
  EXPECT_EQ(b.GetParent(), parent);
  EXPECT_EQ(a.GetText(), "one & two");
  EXPECT_EQ(b.GetAttribute("id"), "7");
  EXPECT_FALSE(b.HasAttribute("other"));
  EXPECT_EQ(parent.GetChildren().size(), 2u);
  EXPECT_FALSE(a.RemoveChild(b)) << "not a child of a";
  EXPECT_TRUE(parent.RemoveChild(a));
  EXPECT_EQ(parent.GetChildren().size(), 1u);

  PxXmlNode empty;
  EXPECT_TRUE(empty.GetChild("x").IsEmpty());
  EXPECT_TRUE(empty.AppendChild("x").IsEmpty());
  EXPECT_FALSE(empty.SetText("t"));
  EXPECT_EQ(empty.GetName(), "");
  EXPECT_TRUE(KfPersistentStorage::GetRootNode().RemoveChild(parent));
}

}  // namespace
