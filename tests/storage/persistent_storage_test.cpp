#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <string>

#include "support/fake_platform.h"
#include "support/files.h"
#include "support/scoped_settings.h"
#include "orvane/storage.h"

namespace {

using Kf::Testing::ScopedGlobalStorage;
using Kf::Testing::ReadFile;
using Kf::Testing::ScopedSettingsDir;

TEST(ElementName, FollowsTheNamingRuleIncludingCollisions) {
  const std::pair<const char*, const char*> names[] = {{"3D view", "A3D_view"}, {"xmlFile", "AxmlFile"},
                                                       {"XmLx", "AXmLx"},       {"", "A"},
                                                       {"_ok-1.2", "_ok-1.2"},  {"a/b c", "a_b_c"},
                                                       {"-x", "A-x"}};
  for (const auto& [name, element] : names) EXPECT_EQ(KfPersistentStorage::ToElementName(name), element) << name;
  // Different names that meet in one element share its value.
  EXPECT_EQ(KfPersistentStorage::ToElementName("a b"), KfPersistentStorage::ToElementName("a/b"));
}

TEST(PersistentStorage, ValuesRoundTripThroughTheFile) {
  ScopedGlobalStorage global;
  const unsigned char bytes[] = {0x00, 0xff, 0x10, 0x7f};
  KfPersistentStorageI& asInterface = *global;  // the adapter writes to the same storage
  ASSERT_TRUE(asInterface.Store("S", "u32", 4000000000u));
  ASSERT_TRUE(global->StoreUint64("S", "u64", 18446744073709551615ull));
  ASSERT_TRUE(global->StoreInt64("S", "i64", -9223372036854775807ll - 1));
  ASSERT_TRUE(global->Store("S", "text", std::string("a < b & \"c\" \xe6\x97\xa5")));
  ASSERT_TRUE(global->Store("S", "bytes", bytes, sizeof bytes));
  ASSERT_TRUE(global->StoreBool("S", "flag", true));

  // A second storage on the same file sees what the first saved.
  KfPersistentStorage other("Other", global.Settings().GlobalFile());
  std::uint32_t u32 = 0;
  std::uint64_t u64 = 0;
  std::int64_t i64 = 0;
  std::string text;
  unsigned char back[8] = {};
  bool flag = false;
  EXPECT_TRUE(other.Load("S", "u32", u32));
  EXPECT_EQ(u32, 4000000000u);
  EXPECT_TRUE(other.LoadUint64("S", "u64", u64));
  EXPECT_EQ(u64, 18446744073709551615ull);
  EXPECT_TRUE(other.LoadInt64("S", "i64", i64));
  EXPECT_EQ(i64, -9223372036854775807ll - 1);
  EXPECT_TRUE(other.Load("S", "text", text));
  EXPECT_EQ(text, "a < b & \"c\" \xe6\x97\xa5");
  EXPECT_EQ(other.Load("S", "bytes", static_cast<void*>(back), sizeof back), 4u);
  EXPECT_EQ(std::memcmp(back, bytes, sizeof bytes), 0);
  EXPECT_TRUE(other.LoadBool("S", "flag", flag));
  EXPECT_TRUE(flag);

  std::string file = ReadFile(global.Settings().GlobalFile());
  EXPECT_NE(file.find("<settings>"), std::string::npos);
  EXPECT_NE(file.find("<u32>4000000000</u32>"), std::string::npos);
}

TEST(PersistentStorage, TextComesBackExactlyIncludingWhitespaceAndLineEnds) {
  ScopedGlobalStorage global;
  const std::string values[] = {" ", "\t x \n", "a\r\nb", "a\rb", "]]> & <", ""};
  for (size_t i = 0; i < std::size(values); ++i) ASSERT_TRUE(global->Store("S", "k" + std::to_string(i), values[i]));
  EXPECT_FALSE(global->Store("S", "zero", std::string("a\0b", 3))) << "refused, not cut";
  { KfPerOStream record(*global, "S", "zeroRecord"); record << std::string("a\0b", 3); EXPECT_FALSE(record.Close()); }
  KfPersistentStorage reader("Reader", global.Settings().GlobalFile());
  for (size_t i = 0; i < std::size(values); ++i) {
    std::string back = "unset";
    EXPECT_TRUE(reader.Load("S", "k" + std::to_string(i), back));
    EXPECT_EQ(back, values[i]) << i;
  }
}

TEST(PersistentStorage, MissingOrUnconvertibleValuesAreNotFoundAndLeaveOutputs) {
  ScopedGlobalStorage global;
  ASSERT_TRUE(global->Store("S", "word", std::string("twelve")));
  ASSERT_TRUE(global->Store("S", "negative", std::string("-1")));
  ASSERT_TRUE(global->Store("S", "huge", std::string("4294967296")));
  ASSERT_TRUE(global->Store("S", "odd", std::string("abc")));

  std::uint32_t u32 = 7;
  for (const char* key : {"word", "negative", "huge", "absent"}) EXPECT_FALSE(global->Load("S", key, u32)) << key;
  EXPECT_FALSE(global->Load("Nowhere", "word", u32));
  EXPECT_EQ(u32, 7u);
  std::int64_t i64 = 5;
  EXPECT_FALSE(global->LoadInt64("S", "word", i64));
  EXPECT_EQ(i64, 5);
  std::string text = "unchanged";
  EXPECT_FALSE(global->Load("S", "absent", text));
  EXPECT_EQ(text, "unchanged");
  bool flag = true;
  EXPECT_FALSE(global->LoadBool("S", "word", flag));
  unsigned char bytes[4] = {1, 2, 3, 4};
  EXPECT_EQ(global->Load("S", "odd", static_cast<void*>(bytes), sizeof bytes), 0u);
  EXPECT_EQ(global->Load("S", "word", static_cast<void*>(bytes), sizeof bytes), 0u);
  EXPECT_EQ(bytes[0], 1);
}

TEST(PersistentStorage, CharacterBufferLoadNeedsRoomForTheText) {
  ScopedGlobalStorage global;
  ASSERT_TRUE(global->Store("S", "k", std::string("hello")));
  char storage[16];
  std::memset(storage, 'x', sizeof storage);
  char* buffer = storage;
  EXPECT_EQ(global->Load("S", "k", buffer, 4), 0u);
  EXPECT_EQ(storage[0], 'x');
  EXPECT_EQ(global->Load("S", "k", buffer, 5), 5u);
  EXPECT_STREQ(storage, "hello");
  EXPECT_EQ(global->Load("S", "missing", buffer, 15), 0u);
}

TEST(PersistentStorage, DeleteKeyAndSectionSave) {
  ScopedGlobalStorage global;
  ASSERT_TRUE(global->Store("A", "one", 1u));
  ASSERT_TRUE(global->Store("A", "two", 2u));
  ASSERT_TRUE(global->Store("B", "three", 3u));
  ASSERT_TRUE(global->DeleteKey("A", "one"));
  ASSERT_TRUE(global->DeleteSection("B"));

  KfPersistentStorage reader("Reader", global.Settings().GlobalFile());
  std::uint32_t value = 0;
  EXPECT_FALSE(reader.Load("A", "one", value));
  EXPECT_TRUE(reader.Load("A", "two", value));
  EXPECT_FALSE(reader.Load("B", "three", value));
  EXPECT_EQ(reader.GetSections(), std::vector<std::string>{"A"});

  // Nothing to delete: not found, and the file is not written.
  const auto written = std::filesystem::last_write_time(global.Settings().GlobalFile().Native());
  std::filesystem::last_write_time(global.Settings().GlobalFile().Native(), written - std::chrono::hours(1));
  EXPECT_FALSE(global->DeleteKey("A", "one"));
  EXPECT_FALSE(global->DeleteKey("Missing", "two"));
  EXPECT_FALSE(global->DeleteSection("B"));
  EXPECT_EQ(std::filesystem::last_write_time(global.Settings().GlobalFile().Native()), written - std::chrono::hours(1));
  EXPECT_TRUE(global->Store("B", "three", 3u)) << "the file lock was released";
}

TEST(PersistentStorage, BufferedStoresSaveOnceWhenTheOutermostGuardEnds) {
  ScopedGlobalStorage global;
  const GePath file = global.Settings().GlobalFile();
  {
    KfPersistentStorageBuffer outer(global.get());
    ASSERT_TRUE(global->Store("S", "a", 1u));
    {
      KfPersistentStorageBuffer inner(global.get());
      ASSERT_TRUE(global->Store("S", "b", 2u));
    }
    EXPECT_FALSE(std::filesystem::exists(file.Native())) << "saved before the outer guard ended";
    std::uint32_t value = 0;
    EXPECT_TRUE(global->Load("S", "b", value));  // visible in memory meanwhile
  }
  std::string text = ReadFile(file);
  EXPECT_NE(text.find("<a>1</a>"), std::string::npos);
  EXPECT_NE(text.find("<b>2</b>"), std::string::npos);
}

TEST(PersistentStorage, RegistryTheLastConstructedNameWins) {
  ScopedGlobalStorage global;
  EXPECT_EQ(KfPersistentStorage::GetStorage("Global"), global.get());
  {
    KfPersistentStorage second("Global", global.Settings().Dir() / "second.xml");
    EXPECT_EQ(KfPersistentStorage::GetStorage("Global"), &second);
  }
  EXPECT_EQ(KfPersistentStorage::GetStorage("NoSuchStorage"), nullptr);
  KfPersistentStorage named("Mine", global.Settings().Dir() / "mine.xml");
  EXPECT_EQ(KfPersistentStorage::GetStorage("Mine"), &named);
}

TEST(PersistentStorage, GlobalIsCreatedInTheRedirectedSettingsDirectory) {
  Kf::Testing::ScopedFakePlatform fake;
  ScopedSettingsDir dir;
  GePath option;
  ASSERT_TRUE(KfGetOptionStorageDirectory(option));
  EXPECT_EQ(option, dir.OptionDir());
  EXPECT_TRUE(std::filesystem::is_directory(option.Native()));

  KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
  ASSERT_NE(global, nullptr);
  EXPECT_EQ(global->GetFile(), dir.GlobalFile());
  EXPECT_EQ(KfPersistentStorage::GetStorage("Global"), global);
}

TEST(PersistentStorage, OptionDirectoryFollowsXdgWithoutTheRedirection) {
  Kf::Testing::ScopedFakePlatform fake;
  ScopedSettingsDir dir;  // a place to put the fake config folder
  (void)fake->UnsetEnv("ORVANE_SETTINGS_DIR");
  fake->folders[Kf::Platform::KnownFolder::UserConfig] = dir.Dir() / "config";
  GePath option;
  ASSERT_TRUE(KfGetOptionStorageDirectory(option));
  EXPECT_EQ(option, dir.Dir() / "config" / "orvane" / "Global");
  fake->folders.clear();
  EXPECT_FALSE(KfGetOptionStorageDirectory(option));
}

TEST(PersistentStream, ReadsBackItemByItemInOrder) {
  ScopedGlobalStorage global;
  {
    KfPerOStream out(*global, "Accelerators", "Prim0");
    out << std::string("Ctrl+C") << "Edit.Copy" << 3u << -4 << std::int64_t{-5} << std::uint64_t{6} << true
        << std::string("");
  }
  KfPersistentStorage reader("Reader", global.Settings().GlobalFile());
  KfPerIStream in(reader, "Accelerators", "Prim0");
  ASSERT_TRUE(in.Exists());
  EXPECT_EQ(in.ItemCount(), 8u);
  std::string key, command, empty = "x";
  std::uint32_t u = 0;
  std::int32_t i = 0;
  std::int64_t i64 = 0;
  std::uint64_t u64 = 0;
  bool flag = false;
  EXPECT_TRUE(in >> key >> command >> u >> i >> i64 >> u64 >> flag >> empty);
  EXPECT_EQ(key, "Ctrl+C");
  EXPECT_EQ(command, "Edit.Copy");
  EXPECT_EQ(u, 3u);
  EXPECT_EQ(i, -4);
  EXPECT_EQ(i64, -5);
  EXPECT_EQ(u64, 6u);
  EXPECT_TRUE(flag);
  EXPECT_EQ(empty, "");
  EXPECT_TRUE(in.AtEnd());
  std::string past = "kept";
  EXPECT_FALSE(in >> past);
  EXPECT_EQ(past, "kept");
}

TEST(PersistentStream, WrongTypeOrMissingRecordFails) {
  ScopedGlobalStorage global;
  {
    KfPerOStream out(*global, "S", "rec");
    out << "text" << 1u;
    ASSERT_TRUE(out.Close());
    out << "ignored after close";
  }
  KfPerIStream in(*global, "S", "rec");
  EXPECT_EQ(in.ItemCount(), 2u);
  std::uint32_t number = 42;
  EXPECT_FALSE(in >> number);
  EXPECT_EQ(number, 42u);
  std::string text;
  EXPECT_FALSE(in >> text) << "a failed stream stays failed";

  KfPerIStream missing(*global, "S", "nothing");
  EXPECT_FALSE(missing.Exists());
  EXPECT_FALSE(missing.Good());
}

TEST(PersistentStream, OtherIntegerTypesGoThroughTheWideFormsWithRangeChecks) {
  ScopedGlobalStorage global;
  { KfPerOStream(*global, "S", "rec") << 5000000000LL << static_cast<unsigned short>(7) << 70000; }
  KfPerIStream in(*global, "S", "rec");
  long long big = 0;
  unsigned short small = 0;
  std::int16_t tooSmall = 1;
  EXPECT_TRUE(in >> big >> small);
  EXPECT_EQ(big, 5000000000LL);
  EXPECT_EQ(small, 7);
  EXPECT_FALSE(in >> tooSmall) << "70000 does not fit 16 bits";
  EXPECT_EQ(tooSmall, 1);
}

TEST(PersistentStream, RewritingARecordReplacesItsItems) {
  ScopedGlobalStorage global;
  { KfPerOStream(*global, "S", "rec") << 1u << 2u << 3u; }
  { KfPerOStream(*global, "S", "rec") << 9u; }
  KfPerIStream in(*global, "S", "rec");
  std::uint32_t value = 0;
  EXPECT_TRUE(in >> value);
  EXPECT_EQ(value, 9u);
  EXPECT_TRUE(in.AtEnd());
}

}  // namespace
