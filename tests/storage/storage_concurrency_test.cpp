#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "orvane/storage.h"
#include "support/scoped_settings.h"

namespace {

TEST(StorageConcurrency, ThreadsStoringAndBatchingIntoOneStorageLoseNothing) {
  Kf::Testing::ScopedGlobalStorage global;
  constexpr int kThreads = 4;
  constexpr int kStores = 100;
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&global, t] {
      for (int i = 0; i < kStores; ++i) {
        // Odd threads batch their stores in groups of ten.
        if (t % 2 == 1 && i % 10 == 0) global->BeginBufferedOperation();
        (void)global->Store("T" + std::to_string(t), "k" + std::to_string(i), static_cast<std::uint32_t>(i));
        std::uint32_t back = 0;
        (void)global->Load("T" + std::to_string(t), "k" + std::to_string(i), back);
        if (t % 2 == 1 && i % 10 == 9) global->EndBufferedOperation();
      }
    });
  }
  for (auto& thread : threads) thread.join();

  KfPersistentStorage reader("Reader", global.Settings().GlobalFile());
  int present = 0;
  for (int t = 0; t < kThreads; ++t)
    for (int i = 0; i < kStores; ++i) {
      std::uint32_t value = 0;
      if (reader.Load("T" + std::to_string(t), "k" + std::to_string(i), value) && value == static_cast<std::uint32_t>(i))
        ++present;
    }
  EXPECT_EQ(present, kThreads * kStores);
}

TEST(StorageConcurrency, GlobalIsCreatedOnceForConcurrentFirstRequests) {
  Kf::Testing::ScopedSettingsDir dir;
  std::vector<KfPersistentStorage*> seen(4, nullptr);
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) threads.emplace_back([&seen, t] { seen[t] = KfPersistentStorage::GetStorage("Global"); });
  for (auto& thread : threads) thread.join();
  ASSERT_NE(seen[0], nullptr);
  for (KfPersistentStorage* storage : seen) EXPECT_EQ(storage, seen[0]);
}

TEST(StorageConcurrency, NamedNodeRegistrationsFromManyThreads) {
  PxXmlNode node = KfPersistentStorage::GetRootNode();
  std::vector<std::thread> threads;
  std::atomic<int> found{0};
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&, t] {
      for (int i = 0; i < 200; ++i) {
        std::string name = "N" + std::to_string(t) + "-" + std::to_string(i);
        Kf::Storage::Storage registration(name.c_str(), node);
        if (Kf::Storage::Storage::GetStorage(name.c_str()) == node) ++found;
      }
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(found.load(), 800);
}

}  // namespace
