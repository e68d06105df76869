// Benchmarks of colour lookups and theme files: the current-theme lookup any
// thread may make, against reading a theme the caller already holds; and
// loading a theme from an untrusted file (checked, read from a private copy)
// against loading it from an open storage.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>

#include "orvane/storage.h"
#include "orvane/theme.h"

namespace {

Kf::IHostColorInfo Colors() {
  return Kf::IHostColorInfo([] { return Kf::XColor{0, 0, 0, 1}; }, [] { return Kf::XColor{255, 255, 255, 1}; });
}

void BM_LookupXColorFromNativeTheme(benchmark::State& state) {
  Kf::Themes::CreateInstance(Colors(), nullptr);
  const int lookups = static_cast<int>(state.range(0));
  for (auto _ : state) {
    for (int i = 0; i < lookups; ++i)
      benchmark::DoNotOptimize(Kf::LookupXColorFromNativeTheme(static_cast<Kf::DisplayElement>(i % 84)));
  }
  state.SetItemsProcessed(state.iterations() * lookups);
  Kf::Themes::DestroyInstance();
}
BENCHMARK(BM_LookupXColorFromNativeTheme)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);

void BM_HeldThemeGetXColor(benchmark::State& state) {
  std::shared_ptr<Kf::Theme> theme = Kf::ThemeFactory::CreateStdTheme(Kf::ThemeDefault, Colors());
  const int lookups = static_cast<int>(state.range(0));
  for (auto _ : state) {
    for (int i = 0; i < lookups; ++i)
      benchmark::DoNotOptimize(theme->GetXColor(static_cast<Kf::DisplayElement>(i % 84)));
  }
  state.SetItemsProcessed(state.iterations() * lookups);
}
BENCHMARK(BM_HeldThemeGetXColor)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);

struct ScratchDir {
  ScratchDir() : path(std::filesystem::temp_directory_path() / "orvane-bench-theme") {
    std::filesystem::create_directories(path);
  }
  ~ScratchDir() {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
  }
  std::filesystem::path path;
};

void BM_ThemeLoadFromUntrustedFile(benchmark::State& state) {
  ScratchDir dir;
  const GePath file = GePath::FromNative(dir.path / "bench.theme.xml");
  if (!Kf::ThemeFactory::CreateStdTheme(Kf::ThemeSolarized, Colors())->Save(file)) state.SkipWithError("save");
  for (auto _ : state) benchmark::DoNotOptimize(Kf::Theme::Load(file, Colors()));
}
BENCHMARK(BM_ThemeLoadFromUntrustedFile);

void BM_ThemeLoadFromOpenStorage(benchmark::State& state) {
  ScratchDir dir;
  KfPersistentStorage storage("BenchThemes", GePath::FromNative(dir.path / "bench.xml"));
  if (!Kf::ThemeFactory::CreateStdTheme(Kf::ThemeSolarized, Colors())->Save(storage, "Theme0"))
    state.SkipWithError("save");
  for (auto _ : state) benchmark::DoNotOptimize(Kf::Theme::Load(storage, "Theme0", Colors()));
}
BENCHMARK(BM_ThemeLoadFromOpenStorage);

}  // namespace
