// What must never happen to a user's settings: lost stores between
// processes, half-written files after a crash, unseen changes, overwritten
// damaged files.
#include <gtest/gtest.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include <pugixml.hpp>

#include "orvane/storage.h"
#include "support/files.h"
#include "support/scoped_settings.h"

namespace {

using Kf::Testing::ScopedGlobalStorage;
using Kf::Testing::ReadFile;
using Kf::Testing::ScopedSettingsDir;
using Kf::Testing::WriteFile;

// Files in `dir` whose name starts with `prefix`.
std::vector<GePath> FilesStartingWith(const GePath& dir, const std::string& prefix) {
  std::vector<GePath> found;
  for (const auto& entry : std::filesystem::directory_iterator(dir.Native()))
    if (entry.path().filename().string().rfind(prefix, 0) == 0) found.push_back(GePath::FromNative(entry.path()));
  return found;
}

// Runs `body` in a child process and returns its exit code.
template <typename Body>
pid_t StartChild(Body body) {
  pid_t pid = ::fork();
  if (pid == 0) {
    int code = 1;
    try {
      code = body();
    } catch (...) {
    }
    ::_exit(code);
  }
  return pid;
}

int WaitForChild(pid_t pid) {
  int status = 0;
  if (::waitpid(pid, &status, 0) != pid) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + (WIFSIGNALED(status) ? WTERMSIG(status) : 0);
}

TEST(StorageSafety, FourProcessesStoringDistinctKeysLoseNone) {
  ScopedSettingsDir dir;
  const GePath file = dir.GlobalFile();
  constexpr int kProcesses = 4;
  constexpr int kStores = 500;
  std::vector<pid_t> children;
  for (int p = 0; p < kProcesses; ++p) {
    children.push_back(StartChild([&file, p] {
      KfPersistentStorage storage("Shared", file);
      for (int i = 0; i < kStores; ++i)
        if (!storage.Store("P" + std::to_string(p), "k" + std::to_string(i), static_cast<std::uint32_t>(i))) return 2;
      return 0;
    }));
  }
  for (pid_t child : children) ASSERT_EQ(WaitForChild(child), 0);

  KfPersistentStorage reader("Reader", file);
  int present = 0;
  for (int p = 0; p < kProcesses; ++p) {
    for (int i = 0; i < kStores; ++i) {
      std::uint32_t value = 0;
      if (reader.Load("P" + std::to_string(p), "k" + std::to_string(i), value) && value == static_cast<std::uint32_t>(i))
        ++present;
    }
  }
  EXPECT_EQ(present, kProcesses * kStores);
  EXPECT_TRUE(FilesStartingWith(dir.OptionDir(), "QorIde.xml.tmp").empty()) << "temporary files left behind";
}

// A child saves batches forever, each batch writing one generation number into
// every key; it is killed at a random moment. The file must always load, and
// every key must hold the same generation (never a mix, never a torn file).
TEST(StorageSafety, KilledWhileSavingLeavesTheOldOrTheNewFileComplete) {
  ScopedSettingsDir dir;
  const GePath file = dir.GlobalFile();
  constexpr int kKeys = 300;
  std::mt19937 random(12345);
  std::uniform_int_distribution<int> pause(0, 3000);
  for (int round = 0; round < 25; ++round) {
    pid_t child = StartChild([&file] {
      KfPersistentStorage storage("Saver", file);
      std::uint32_t generation = 0;
      (void)storage.Load("Batch", "k0", generation);
      for (;;) {
        ++generation;
        KfPersistentStorageBuffer batch(&storage);
        for (int k = 0; k < kKeys; ++k) (void)storage.Store("Batch", "k" + std::to_string(k), generation);
      }
      return 0;
    });
    ASSERT_GT(child, 0);
    // Wait until the child has saved at least once, then kill it at some
    // point in its stream of saves.
    while (!std::filesystem::exists(file.Native())) std::this_thread::sleep_for(std::chrono::microseconds(200));
    std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
    ::kill(child, SIGKILL);
    ASSERT_EQ(WaitForChild(child), 128 + SIGKILL);

    pugi::xml_document doc;
    std::string text = ReadFile(file);
    ASSERT_TRUE(doc.load_string(text.c_str())) << "round " << round << ": the file does not parse";
    pugi::xml_node batch = doc.child("settings").child("Batch");
    ASSERT_TRUE(batch) << "round " << round;
    std::string generation = batch.child("k0").text().get();
    int keys = 0;
    for (pugi::xml_node key : batch.children()) {
      EXPECT_EQ(generation, key.text().get()) << "round " << round << ": a mixed save";
      ++keys;
    }
    EXPECT_EQ(keys, kKeys) << "round " << round;
  }
  // The settings file is intact.
  KfPersistentStorage reader("Reader", file);
  std::uint32_t value = 0;
  EXPECT_TRUE(reader.Load("Batch", "k0", value));

  // Killed saves leave temporaries. The first save of a process removes the
  // ones older than an hour; a recent one may be a save in flight and stays.
  const GePath stale(file.ToString() + ".tmp-stale");
  const GePath recent(file.ToString() + ".tmp-recent");
  WriteFile(stale, "x");
  WriteFile(recent, "x");
  std::filesystem::last_write_time(stale.Native(),
                                   std::filesystem::file_time_type::clock::now() - std::chrono::hours(2));
  EXPECT_TRUE(reader.Store("Batch", "k0", value + 1));
  EXPECT_FALSE(std::filesystem::exists(stale.Native()));
  EXPECT_TRUE(std::filesystem::exists(recent.Native()));
}

TEST(StorageSafety, ReplacementWithTheSameSizeAndTimeIsSeen) {
  ScopedSettingsDir dir;
  const GePath file = dir.GlobalFile();
  WriteFile(file, "<settings><S><k>1</k></S></settings>");
  KfPersistentStorage storage("Watched", file);
  std::uint32_t value = 0;
  ASSERT_TRUE(storage.Load("S", "k", value));
  ASSERT_EQ(value, 1u);

  // Another process replaces the file by rename: same size, same time stamp,
  // only the inode differs.
  auto stamp = std::filesystem::last_write_time(file.Native());
  auto size = std::filesystem::file_size(file.Native());
  GePath replacement(file.ToString() + ".new");
  WriteFile(replacement, "<settings><S><k>2</k></S></settings>");
  std::filesystem::last_write_time(replacement.Native(), stamp);
  std::filesystem::rename(replacement.Native(), file.Native());
  ASSERT_EQ(std::filesystem::file_size(file.Native()), size);
  ASSERT_EQ(std::filesystem::last_write_time(file.Native()), stamp);

  ASSERT_TRUE(storage.Load("S", "k", value));
  EXPECT_EQ(value, 2u);
}

TEST(StorageSafety, AnotherWritersChangeIsSeenByTheNextLoad) {
  ScopedGlobalStorage global;
  ASSERT_TRUE(global->Store("S", "k", std::string("first")));
  std::string value;
  ASSERT_TRUE(global->Load("S", "k", value));
  pid_t child = StartChild([&global] {
    KfPersistentStorage other("Other", global.Settings().GlobalFile());
    return other.Store("S", "k", std::string("second")) ? 0 : 1;
  });
  ASSERT_EQ(WaitForChild(child), 0);
  ASSERT_TRUE(global->Load("S", "k", value));
  EXPECT_EQ(value, "second");
}

TEST(StorageSafety, DamagedFilesAreKeptAsideReportedAndNeverOverwritten) {
  const std::pair<const char*, const char*> damaged[] = {
      {"<settings><S><k>1</k></S>", "not well-formed"},
      {"<preferences><S><k>1</k></S></preferences>", "the root element is \"preferences\""},
      {"", "not well-formed"},
  };
  for (const auto& [content, reason] : damaged) {
    ScopedSettingsDir dir;
    const GePath file = dir.GlobalFile();
    WriteFile(file, content);
    testing::internal::CaptureStderr();
    KfPersistentStorage storage("Damaged", file);
    std::string report = testing::internal::GetCapturedStderr();
    EXPECT_NE(report.find(reason), std::string::npos) << report;
    EXPECT_NE(report.find("kept as"), std::string::npos) << report;

    std::vector<GePath> kept = FilesStartingWith(dir.OptionDir(), "QorIde.xml.corrupt-");
    ASSERT_EQ(kept.size(), 1u);
    EXPECT_EQ(ReadFile(kept[0]), content);
    std::uint32_t value = 7;
    EXPECT_FALSE(storage.Load("S", "k", value)) << "the storage starts empty";
    ASSERT_TRUE(storage.Store("S", "fresh", 1u));
    EXPECT_EQ(ReadFile(kept[0]), content);
    EXPECT_NE(ReadFile(file).find("<fresh>1</fresh>"), std::string::npos);
  }
}

TEST(StorageSafety, AFileDamagedLaterIsKeptAsideOnTheNextLoad) {
  ScopedGlobalStorage global;
  ASSERT_TRUE(global->Store("S", "k", 1u));
  WriteFile(global.Settings().GlobalFile(), "garbage that is not XML <<<");
  testing::internal::CaptureStderr();
  std::uint32_t value = 0;
  EXPECT_FALSE(global->Load("S", "k", value));
  std::string report = testing::internal::GetCapturedStderr();
  EXPECT_NE(report.find("damaged"), std::string::npos);
  EXPECT_EQ(FilesStartingWith(global.Settings().OptionDir(), "QorIde.xml.corrupt-").size(), 1u);
}

}  // namespace
