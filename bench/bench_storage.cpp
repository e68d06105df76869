// Settings storage against its physical floors: one stat of the file for a
// load from an unchanged storage, and pugixml saving the same document
// directly for stores.
#include <benchmark/benchmark.h>

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include <pugixml.hpp>

#include "orvane/storage.h"
#include "support/scoped_settings.h"

namespace {

namespace fs = std::filesystem;

// A storage file of `keys` keys spread over sections of 100 keys each.
void FillStorage(KfPersistentStorage& storage, int keys, const std::string& value) {
  KfPersistentStorageBuffer batch(&storage);
  for (int i = 0; i < keys; ++i)
    (void)storage.Store("Section" + std::to_string(i / 100), "Key" + std::to_string(i % 100), value);
}

void BM_StorageLoadOneKeyUnchanged(benchmark::State& state) {
  Kf::Testing::ScopedSettingsDir dir;
  KfPersistentStorage storage("BenchLoad", dir.Dir() / "load.xml");
  FillStorage(storage, static_cast<int>(state.range(0)), "value");
  std::string value;
  for (auto _ : state) {
    benchmark::DoNotOptimize(storage.Load("Section0", "Key7", value));
  }
}
BENCHMARK(BM_StorageLoadOneKeyUnchanged)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);

void BM_StatOfTheFile(benchmark::State& state) {
  Kf::Testing::ScopedSettingsDir dir;
  KfPersistentStorage storage("BenchStat", dir.Dir() / "stat.xml");
  FillStorage(storage, 100, "value");
  const std::string path = storage.GetFile().ToString();
  struct stat info;
  for (auto _ : state) {
    benchmark::DoNotOptimize(::stat(path.c_str(), &info));
  }
}
BENCHMARK(BM_StatOfTheFile);

// About 1 MB of settings: 20000 keys with 30-character values.
constexpr int kMegabyteKeys = 20000;
const std::string kValue(30, 'v');

void BM_StoreOneKeyInto1MBFile(benchmark::State& state) {
  Kf::Testing::ScopedSettingsDir dir;
  KfPersistentStorage storage("BenchStore", dir.Dir() / "big.xml");
  FillStorage(storage, kMegabyteKeys, kValue);
  state.counters["file_bytes"] = static_cast<double>(fs::file_size(storage.GetFile().Native()));
  std::uint32_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(storage.Store("Section7", "Key7", ++i));
  }
}
BENCHMARK(BM_StoreOneKeyInto1MBFile)->Unit(benchmark::kMicrosecond);

void BM_PugixmlSave1MBFile(benchmark::State& state) {
  Kf::Testing::ScopedSettingsDir dir;
  pugi::xml_document doc;
  pugi::xml_node root = doc.append_child("settings");
  for (int s = 0; s < kMegabyteKeys / 100; ++s) {
    pugi::xml_node section = root.append_child(("Section" + std::to_string(s)).c_str());
    for (int k = 0; k < 100; ++k) section.append_child(("Key" + std::to_string(k)).c_str()).text().set(kValue.c_str());
  }
  const std::string path = (dir.Dir() / "big.xml").ToString();
  std::uint32_t i = 0;
  for (auto _ : state) {
    root.child("Section7").child("Key7").text().set(++i);
    benchmark::DoNotOptimize(doc.save_file(path.c_str(), "  "));
  }
}
BENCHMARK(BM_PugixmlSave1MBFile)->Unit(benchmark::kMicrosecond);

constexpr int kBatchStores = 10000;

void BM_BufferedStores10000(benchmark::State& state) {
  Kf::Testing::ScopedSettingsDir dir;
  const GePath file = dir.Dir() / "batch.xml";
  int round = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::error_code ec;
    fs::remove(file.Native(), ec);
    auto storage = std::make_unique<KfPersistentStorage>("BenchBatch" + std::to_string(round++), file);
    state.ResumeTiming();
    {
      KfPersistentStorageBuffer batch(storage.get());
      for (int i = 0; i < kBatchStores; ++i)
        (void)storage->Store("Section" + std::to_string(i / 100), "Key" + std::to_string(i % 100),
                             static_cast<std::uint32_t>(i));
    }
    state.PauseTiming();
    storage.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(BM_BufferedStores10000)->Unit(benchmark::kMillisecond);

// The same document built with pugixml (find-or-create, as a store does) and
// saved once.
void BM_PugixmlBuild10000AndSave(benchmark::State& state) {
  Kf::Testing::ScopedSettingsDir dir;
  const std::string path = (dir.Dir() / "batch.xml").ToString();
  for (auto _ : state) {
    pugi::xml_document doc;
    pugi::xml_node root = doc.append_child("settings");
    for (int i = 0; i < kBatchStores; ++i) {
      std::string sectionName = "Section" + std::to_string(i / 100);
      std::string keyName = "Key" + std::to_string(i % 100);
      pugi::xml_node section = root.child(sectionName.c_str());
      if (!section) section = root.append_child(sectionName.c_str());
      pugi::xml_node key = section.child(keyName.c_str());
      if (!key) key = section.append_child(keyName.c_str());
      key.text().set(std::to_string(i).c_str());
    }
    benchmark::DoNotOptimize(doc.save_file(path.c_str(), "  "));
  }
}
BENCHMARK(BM_PugixmlBuild10000AndSave)->Unit(benchmark::kMillisecond);

}  // namespace
