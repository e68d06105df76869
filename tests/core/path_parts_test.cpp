#include "core/path_parts.h"

#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace {

class PathParts : public ::testing::Test {
 protected:
  std::string Path() {
    std::string value;
    return platform_->GetEnv("PATH", value) ? value : "<unset>";
  }
  Kf::Testing::ScopedFakePlatform platform_;
};

TEST_F(PathParts, InstallReplacesAndUninstallRestores) {
  platform_->separator = ';';
  ASSERT_TRUE(platform_->SetEnv("PATH", "P"));
  Kf::Detail::PathPartManager manager;
  Kf::PathVariablePart part;
  manager.Install(&part, {GePath("d1"), GePath("d2")});
  EXPECT_EQ(Path(), "d1;d2;P");
  manager.Install(&part, {GePath("d3")});
  EXPECT_EQ(Path(), "d3;P");
  manager.Uninstall(&part);
  EXPECT_EQ(Path(), "P");
  manager.Uninstall(&part);  // not installed: PATH is simply rewritten
  EXPECT_EQ(Path(), "P");
}

TEST_F(PathParts, HighestPartAddressStandsFirstAndInitialValueIsReadOnce) {
  ASSERT_TRUE(platform_->SetEnv("PATH", "/usr/bin:/bin"));
  Kf::Detail::PathPartManager manager;
  Kf::PathVariablePart parts[2];
  manager.Install(&parts[1], {GePath("/high")});
  ASSERT_TRUE(platform_->SetEnv("PATH", "/changed/by/someone"));
  manager.Install(&parts[0], {GePath("/low"), GePath("/low2")});
  EXPECT_EQ(Path(), "/high:/low:/low2:/usr/bin:/bin");
  manager.Uninstall(&parts[1]);
  EXPECT_EQ(Path(), "/low:/low2:/usr/bin:/bin");
}

TEST_F(PathParts, UnsetInitialPathLeavesNoEmptyEntryAndIsRestored) {
  Kf::Detail::PathPartManager manager;
  Kf::PathVariablePart part;
  manager.Install(&part, {GePath("/tools"), GePath(), GePath("/has:colon"), GePath("/bin2")});
  EXPECT_EQ(Path(), "/tools:/bin2");
  manager.Install(&part, {});
  EXPECT_EQ(Path(), "<unset>");
  manager.Install(&part, {GePath("/x")});
  EXPECT_TRUE(manager.UninstallIfInstalled(&part));
  EXPECT_EQ(Path(), "<unset>");
  EXPECT_FALSE(manager.UninstallIfInstalled(&part));
}

TEST_F(PathParts, PublicFunctionsAndDestroyedPartsLeavePath) {
  ASSERT_TRUE(platform_->SetEnv("PATH", "/usr/bin"));
  {
    Kf::PathVariablePart part;
    Kf::InstallPathPart(&part, {GePath("/opt/tool/bin")});
    EXPECT_EQ(Path().rfind("/opt/tool/bin:", 0), 0u) << Path();
  }
  EXPECT_EQ(Path().find("/opt/tool/bin"), std::string::npos) << Path();
  Kf::PathVariablePart other;
  Kf::InstallPathPart(&other, {GePath("/a")});
  Kf::UninstallPathPart(&other);
  EXPECT_EQ(Path().find("/a"), std::string::npos) << Path();
}

}  // namespace
