#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

#include "orvane/colortypes.h"
#include "orvane/gepath.h"
#include "orvane/locks.h"
#include "orvane/srcpos.h"
#include "orvane/thread.h"
#include "support/fake_platform.h"

namespace {

TEST(GePath, RoundTripsUtf8AndJoins) {
  GePath dir("/home/用户/プロジェクト");
  EXPECT_EQ(dir.ToString(), "/home/用户/プロジェクト");
  GePath file = dir / "main file.c";
  EXPECT_EQ(file.ToString(), "/home/用户/プロジェクト/main file.c");
  EXPECT_EQ(file.FileName(), "main file.c");
  EXPECT_EQ(file.Stem(), "main file");
  EXPECT_EQ(file.Extension(), ".c");
  EXPECT_EQ(file.Parent(), dir);
  EXPECT_TRUE(file.IsAbsolute());
  EXPECT_EQ(dir / "/etc", GePath("/etc")) << "an absolute part replaces the base";
}

TEST(GePath, EmptyPathsAndParents) {
  GePath empty;
  EXPECT_TRUE(empty.IsEmpty());
  EXPECT_EQ(empty.ToString(), "");
  EXPECT_EQ(empty / "a", GePath("a"));
  EXPECT_EQ(GePath("a") / empty, GePath("a"));
  EXPECT_TRUE(GePath("name").Parent().IsEmpty());
  EXPECT_EQ(GePath("/a/b/").Parent(), GePath("/a"));
  EXPECT_EQ(GePath("/").Parent(), GePath("/"));
  EXPECT_FALSE(GePath("a") == GePath("A")) << "comparison is exact";
  EXPECT_TRUE(GePath("a") < GePath("b"));
}

TEST(SrcPos, DefaultIsStartOfFileAndComparesByLineThenColumn) {
  Kf::SrcPos start;
  EXPECT_TRUE(start.IsDefault());
  EXPECT_EQ(start, Kf::SrcPos(0, 0));
  EXPECT_LT(Kf::SrcPos(1, 9), Kf::SrcPos(2, 0));
  EXPECT_LT(Kf::SrcPos(2, 0), Kf::SrcPos(2, 1));
}

TEST(XColor, ByteOrderAndValidity) {
  Kf::XColor blue = Kf::XColor::FromUInt32(0x01FF0000);
  EXPECT_EQ(blue.blue, 0xFF);
  EXPECT_EQ(blue.red, 0);
  EXPECT_TRUE(blue.IsValid());
  EXPECT_EQ((Kf::XColor{0xFF, 0, 0, 1}.ToUInt32()), 0x010000FFu);
  EXPECT_FALSE(Kf::XColor().IsValid());
  EXPECT_EQ(Kf::XColor().ToUInt32(), 0u);
}

TEST(Locks, TryLockFailsWhileHeldAndGuardsRelease) {
  IdeUtil::Mutex mutex;
  {
    IdeUtil::ScopedLock held(mutex);
    bool acquired = true;
    std::thread([&] {
      IdeUtil::ScopedTryLock attempt(mutex);
      acquired = attempt.IsLocked();
    }).join();
    EXPECT_FALSE(acquired);
  }
  IdeUtil::ScopedTryLock free(mutex);
  EXPECT_TRUE(free);

  IdeUtil::RecursiveMutex recursive;
  IdeUtil::ScopedRecursiveLock once(recursive);
  IdeUtil::ScopedRecursiveLock twice(recursive);  // same thread: no deadlock
}

struct Work : GeThread::Start {
  void Run() override {
    name = Kf::Platform::Current().GetCurrentThreadName();
    ran.store(true);
    if (fail) throw std::runtime_error("boom");
  }
  std::atomic<bool> ran{false};
  std::string name;
  bool fail = false;
};

TEST(GeThread, RunsNamedAndContainsEscapingExceptions) {
  Kf::Testing::ScopedFakePlatform platform;
  Work work;
  work.fail = true;
  GeThread thread(work, "Orvane test worker");
  EXPECT_TRUE(thread.Launch());
  EXPECT_FALSE(thread.Launch()) << "a launched thread cannot be launched again";
  thread.Join();
  EXPECT_TRUE(work.ran.load());
  EXPECT_FALSE(thread.IsRunning());
  EXPECT_EQ(work.name, "Orvane test worker");
  EXPECT_EQ(thread.Name(), "Orvane test worker");
}

}  // namespace
