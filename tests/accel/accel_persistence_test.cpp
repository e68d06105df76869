#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <type_traits>

#include "accel_test_support.h"
#include "orvane/accel.h"
#include "orvane/events.h"
#include "orvane/storage.h"
#include "orvane/stringcommand.h"
#include "support/scoped_settings.h"

namespace Kf::Accel {
namespace {

using Testing::Describe;
using Testing::Keys;
using Testing::TestManager;

const std::vector<AccelEntry> kPrimaryDefaults = {
    {Keys("Ctrl+S"), "Persist.Save"}, {Keys("Ctrl+O"), "Persist.Open"}, {Keys("F5"), "Persist.Go"}};
const std::vector<AccelEntry> kSecondaryDefaults = {{Keys("Shift+Insert"), "Persist.Paste"}};

class AccelPersistenceTest : public ::testing::Test {
 protected:
  void InstallDefaults() {
    AccelPart(AccelPart::Primary, kPrimaryDefaults).Install();
    AccelPart(AccelPart::Secondary, kSecondaryDefaults).Install();
  }
  static void SaveSettings() { EXPECT_TRUE(Kf::Event::Notify(Kf::Event::AppEvent{Kf::Event::AppEvent::kSaveSettings})); }

  Kf::Testing::ScopedGlobalStorage global;
  Testing::ScopedTextFrontEnd frontEnd{"TestAccels"};
};

TEST_F(AccelPersistenceTest, UserChangesSurviveANewManager) {
  Kf::StringCommand::SetCommandInfo({Kf::StringCommand::CommandInfo("Persist.Build", "&Build", "Builds it")});
  std::string primaryBefore, secondaryBefore;
  {
    TestManager manager;
    InstallDefaults();
    AccelMap primary = manager.Primary();
    primary.erase(Keys("F5"));                     // a removed default comes back
    primary[Keys("Ctrl+S")] = "Persist.SaveAll";   // a rebound default
    primary[Keys("Ctrl+K Ctrl+B")] = "Persist.Build";
    manager.SetPrimaryAccels(primary);
    AccelMap secondary = manager.Secondary();
    secondary[Keys("Alt+Insert")] = "Persist.Paste";
    manager.SetSecondaryAccels(secondary);
    SaveSettings();
    primaryBefore = Describe(manager.Primary());
    secondaryBefore = Describe(manager.Secondary());
  }
  std::uint32_t count = 0;
  ASSERT_TRUE(global->Load("TestAccels", "nPrimary", count));
  EXPECT_EQ(count, 2u);
  ASSERT_TRUE(global->Load("TestAccels", "nSecondary", count));
  EXPECT_EQ(count, 1u);
  KfPerIStream record(*global, "TestAccels", "Prim0");
  std::string key, command, text, description;
  EXPECT_TRUE(record >> key >> command >> text >> description);
  EXPECT_EQ(key + "|" + command + "|" + text + "|" + description, "Ctrl+K Ctrl+B|Persist.Build|&Build|Builds it");
  KfPerIStream record1(*global, "TestAccels", "Prim1");
  EXPECT_TRUE(record1 >> key >> command >> text >> description);
  EXPECT_EQ(key + "|" + command + "|" + text + "|" + description, "Ctrl+S|Persist.SaveAll||");

  TestManager reloaded;
  InstallDefaults();
  EXPECT_EQ(Describe(reloaded.Primary()), "Ctrl+K Ctrl+B=Persist.Build, Ctrl+O=Persist.Open, Ctrl+S=Persist.SaveAll, F5=Persist.Go");
  EXPECT_EQ(primaryBefore, "Ctrl+K Ctrl+B=Persist.Build, Ctrl+O=Persist.Open, Ctrl+S=Persist.SaveAll");
  EXPECT_EQ(Describe(reloaded.Secondary()), secondaryBefore);
}

TEST_F(AccelPersistenceTest, BindingsEqualToTheDefaultsStoreNoRecords) {
  {
    TestManager manager;
    InstallDefaults();
    AccelMap primary = manager.Primary();
    primary[Keys("F6")] = "Persist.Extra";
    manager.SetPrimaryAccels(primary);
    SaveSettings();
    primary.erase(Keys("F6"));
    manager.SetPrimaryAccels(primary);
    SaveSettings();
  }
  std::uint32_t count = 99;
  ASSERT_TRUE(global->Load("TestAccels", "nPrimary", count));
  EXPECT_EQ(count, 0u);
  ASSERT_TRUE(global->Load("TestAccels", "nSecondary", count));
  EXPECT_EQ(count, 0u);
  KfPerIStream stale(*global, "TestAccels", "Prim0");
  EXPECT_FALSE(stale.Exists()) << "the record of the earlier, longer list is gone";
}

TEST_F(AccelPersistenceTest, NothingStoredMeansAFailedLoadThatIsNotRetried) {
  TestManager manager;
  EXPECT_FALSE(manager.EnsureLoaded());
  ASSERT_TRUE(global->Store("TestAccels", "nPrimary", 0u));
  EXPECT_FALSE(manager.EnsureLoaded()) << "the first result is kept";
  TestManager fresh;
  EXPECT_TRUE(fresh.EnsureLoaded());
}

void WriteRecord(KfPersistentStorage& storage, const std::string& name, std::vector<std::string> items) {
  KfPerOStream out(storage, "TestAccels", name);
  for (const std::string& item : items) out << item;
  EXPECT_TRUE(out.Close());
}

TEST_F(AccelPersistenceTest, CorruptRecordsLoadWhatCanBeLoaded) {
  ASSERT_TRUE(global->Store("TestAccels", "nPrimary", 1000000000u));  // far more than present
  ASSERT_TRUE(global->Store("TestAccels", "nSecondary", 2u));
  WriteRecord(*global, "Prim0", {"Ctrl+Bogus", "Persist.Bad", "", ""});
  WriteRecord(*global, "Prim1", {"F11", "Persist.Full", "&Full Screen", "Toggles full screen"});
  WriteRecord(*global, "Prim2", {"Ctrl+F2", "", "", ""});  // an empty command is still a binding
  WriteRecord(*global, "Prim3", {"F12"});  // truncated
  WriteRecord(*global, "Prim7", {"Ctrl+F12", "Persist.Later", "", ""});
  WriteRecord(*global, "Sec0", {"", "Persist.NoKey", "", ""});
  WriteRecord(*global, "Sec1", {"Alt+F11", "Persist.Full", "", ""});
  WriteRecord(*global, "Sec2", {"Alt+F12", "Persist.BeyondCount", "", ""});

  TestManager manager;
  EXPECT_TRUE(manager.EnsureLoaded());
  EXPECT_EQ(Describe(manager.Primary()), "Ctrl+F2=, F11=Persist.Full, Ctrl+F12=Persist.Later");
  EXPECT_EQ(Describe(manager.Secondary()), "Alt+F11=Persist.Full");
}

TEST_F(AccelPersistenceTest, UnknownCommandsKeepTheirStoredTexts) {
  ASSERT_TRUE(global->Store("TestAccels", "nPrimary", 2u));
  WriteRecord(*global, "Prim0", {"Ctrl+Alt+U", "Persist.PluginNotLoaded", "&Upload", "Uploads the image"});
  Kf::StringCommand::SetCommandInfo({Kf::StringCommand::CommandInfo("Persist.Known", "&Known", "Registered text")});
  WriteRecord(*global, "Prim1", {"Ctrl+Alt+K", "Persist.Known", "&Stale", "Stale text"});

  TestManager manager;
  ASSERT_TRUE(manager.EnsureLoaded());
  Kf::StringCommand::CommandInfo info;
  ASSERT_TRUE(Kf::StringCommand::GetCommandInfo("Persist.PluginNotLoaded", info));
  EXPECT_EQ(info.text, "&Upload");
  EXPECT_EQ(info.description, "Uploads the image");
  EXPECT_EQ(info.origin, Kf::StringCommand::CommandInfo::kFromSettings);
  EXPECT_FALSE(static_cast<bool>(info.key));
  ASSERT_TRUE(Kf::StringCommand::GetCommandInfo("Persist.Known", info));
  EXPECT_EQ(info.text, "&Known") << "registered information is not replaced by stored texts";
}

std::string ReadFile(const GePath& file) {
  std::ifstream in(file.Native(), std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

const char kBanner[] =
    "############################\n"
    "#                          #\n"
    "# Key Bindings for Qorvant #\n"
    "#                          #\n"
    "############################\n"
    "\n";

TEST_F(AccelPersistenceTest, ExportWithoutSecondaryBindingsHasTwoColumns) {
  using Kf::StringCommand::CommandInfo;
  Kf::StringCommand::SetCommandInfo({CommandInfo("Export2.Build", "&Build Project", ""),
                                     CommandInfo("Export2.Copy", "&Copy", ""),
                                     CommandInfo("Export2.Unbound", "A very long name that is not bound", "")});
  TestManager manager;
  AccelPart(AccelPart::Primary, {{Keys("F7"), "Export2.Build"}, {Keys("Ctrl+C"), "Export2.Copy"}}).Install();
  const GePath file = global.Settings().Dir() / "two.txt";
  manager.ExportAccels(file, false);
  EXPECT_EQ(ReadFile(file), std::string(kBanner) +
                                "Command       # Binding\n"
                                "-------       # -------\n"
                                "Build Project # F7\n"
                                "Copy          # Ctrl+C\n");
}

TEST_F(AccelPersistenceTest, ExportWithSecondaryBindingsHasThreeColumnsAndNoneCells) {
  using Kf::StringCommand::CommandInfo;
  Kf::StringCommand::SetCommandInfo({CommandInfo("Export3.Comment", "Comment &Block", ""),
                                     CommandInfo("Export3.Go", "&Go", ""),
                                     CommandInfo("Export3.Paste", "&Paste", "")});
  TestManager manager;
  AccelPart(AccelPart::Primary, {{Keys("Ctrl+K Ctrl+C"), "Export3.Comment"}, {Keys("F5"), "Export3.Go"}}).Install();
  AccelPart(AccelPart::Secondary, {{Keys("Ctrl+/"), "Export3.Comment"}, {Keys("Shift+Insert"), "Export3.Paste"}})
      .Install();
  AccelMap primary = manager.Primary();
  primary[Keys("Ctrl+F5")] = "Export3.Go";
  primary.erase(Keys("F5"));
  manager.SetPrimaryAccels(primary);

  const GePath inForce = global.Settings().Dir() / "three.txt";
  manager.ExportAccels(inForce, false);
  EXPECT_EQ(ReadFile(inForce), std::string(kBanner) +
                                   "Command       # Primary       # Secondary\n"
                                   "-------       # -------       # ---------\n"
                                   "Comment Block # Ctrl+K Ctrl+C # Ctrl+/\n"
                                   "Go            # Ctrl+F5       # <None>\n"
                                   "Paste         # <None>        # Shift+Insert\n");
  const GePath defaults = global.Settings().Dir() / "defaults.txt";
  manager.ExportAccels(defaults, true);
  EXPECT_NE(ReadFile(defaults).find("Go            # F5            # <None>\n"), std::string::npos);
}

// A front end and key objects written from the interface's signatures alone,
// as a host built elsewhere writes them: nothing is const, and neither
// CreateChord nor the sequence objects' Clone is overridden.
struct PlainKey : AccelKey::IAccelKeyImpl {
  explicit PlainKey(unsigned int c) : code(c) {}
  IAccelKeyImpl* Clone() override { return new PlainKey(code); }
  bool Equal(const IAccelKeyImpl* other) override { return code == static_cast<const PlainKey*>(other)->code; }
  bool LessThan(const IAccelKeyImpl* other) override { return code < static_cast<const PlainKey*>(other)->code; }
  unsigned int code;
};

struct PlainSequence : KeySequence::IKeySequenceImpl {
  explicit PlainSequence(unsigned int c) : code(c) { ++live; }
  ~PlainSequence() override { --live; }
  bool Equal(const IKeySequenceImpl* other) override { return code == static_cast<const PlainSequence*>(other)->code; }
  bool LessThan(const IKeySequenceImpl* other) override {
    return code < static_cast<const PlainSequence*>(other)->code;
  }
  void Write(KfPerOStream& stream) override { stream << code; }
  void Read(KfPerIStream& stream) override { stream >> code; }
  unsigned int code;
  static inline int live = 0;
};

// Nothing gives an outside front end a handle's object; a handle is exactly
// one pointer to it, which is what these read.
unsigned int CodeOf(const AccelKey& key) {
  static_assert(std::is_standard_layout_v<AccelKey> && sizeof(AccelKey) == sizeof(void*));
  return static_cast<const PlainKey*>(*reinterpret_cast<AccelKey::IAccelKeyImpl* const*>(&key))->code;
}
unsigned int CodeOf(const KeySequence& sequence) {
  static_assert(std::is_standard_layout_v<KeySequence> && sizeof(KeySequence) == sizeof(void*));
  return static_cast<const PlainSequence*>(*reinterpret_cast<KeySequence::IKeySequenceImpl* const*>(&sequence))->code;
}

struct PlainFrontEnd : IAccelFrontEnd {
  AccelKey::IAccelKeyImpl* CreateKey(unsigned int modifiers, unsigned int key) override {
    return new PlainKey(modifiers * 1000 + key);
  }
  KeySequence::IKeySequenceImpl* CreateKeySequence(const AccelKey& key) override {
    return new PlainSequence(CodeOf(key));
  }
  void GetStorageKey(std::string& out) override { out = "PlainAccels"; }
};

class PlainManager : public AccelManager {
 public:
  void RebuildAccelerators() override {}
  void KeySequenceToString(const KeySequence& key, std::string& out) override {
    out = "#" + std::to_string(CodeOf(key));
  }
  using AccelManager::FindKeySequence;
};

TEST(AccelOutsideFrontEnd, WorksThroughInstallLookupExportAndStorage) {
  Kf::Testing::ScopedGlobalStorage global;
  PlainFrontEnd frontEnd;
  Register(&frontEnd);
  using Kf::StringCommand::CommandInfo;
  Kf::StringCommand::SetCommandInfo({CommandInfo("Plain.Save", "&Save", ""), CommandInfo("Plain.Open", "&Open", ""),
                                     CommandInfo("Plain.Print", "&Print", "")});
  {
    const std::vector<AccelEntry> defaults = {{AccelKey(1, 'S'), "Plain.Save"}, {AccelKey('O'), "Plain.Open"}};
    {
      PlainManager manager;
      AccelPart(AccelPart::Primary, defaults).Install();
      AccelPart(AccelPart::Secondary, {{KeySequence(2, 'S'), "Plain.Save"}}).Install();
      std::string text;
      EXPECT_TRUE(manager.GetShortcutString("Plain.Save", text));
      EXPECT_EQ(text, "#1083");

      AccelMap primary;
      manager.GetPrimaryAccels(primary);
      KeySequence found;
      ASSERT_TRUE(PlainManager::FindKeySequence("Plain.Open", primary, found));
      EXPECT_EQ(CodeOf(found), static_cast<unsigned int>('O'));
      primary[KeySequence(1, 'P')] = "Plain.Print";
      manager.SetPrimaryAccels(primary);

      const GePath file = global.Settings().Dir() / "plain.txt";
      manager.ExportAccels(file, false);
      EXPECT_EQ(ReadFile(file), std::string(kBanner) +
                                    "Command # Primary # Secondary\n"
                                    "------- # ------- # ---------\n"
                                    "Open    # #79     # <None>\n"
                                    "Print   # #1080   # <None>\n"
                                    "Save    # #1083   # #2083\n");
      EXPECT_TRUE(Kf::Event::Notify(Kf::Event::AppEvent{Kf::Event::AppEvent::kSaveSettings}));
    }
    std::uint32_t count = 0;
    ASSERT_TRUE(global->Load("PlainAccels", "nPrimary", count));
    EXPECT_EQ(count, 1u);

    PlainManager reloaded;
    AccelPart(AccelPart::Primary, defaults).Install();
    AccelMap primary;
    reloaded.GetPrimaryAccels(primary);
    ASSERT_EQ(primary.size(), 3u);
    EXPECT_EQ(primary.at(KeySequence(1, 'P')), "Plain.Print");
  }
  Unregister(&frontEnd);
  EXPECT_EQ(PlainSequence::live, 0) << "every sequence object is deleted once all handles are gone";
}

}  // namespace
}  // namespace Kf::Accel
