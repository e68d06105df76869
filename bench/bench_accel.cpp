// Accelerator manager costs: installing a large part into tables that already
// hold many user bindings, and exporting the key-bindings table.
//
// Peers in the same binary: BM_InstallLinearCommandTest installs the same part
// with the one-binding-per-command test done by the linear CommandIsInSet walk
// (through SetDefaultIfMissing), which is what Install costs without its
// per-install command set; BM_ExportRowsLinearFind builds the export rows
// with one FindKeySequence walk per command and table.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "orvane/accel.h"
#include "orvane/stringcommand.h"
#include "support/scoped_settings.h"

namespace {

using Kf::Accel::AccelEntry;
using Kf::Accel::AccelMap;
using Kf::Accel::AccelPart;
using Kf::Accel::KeySequence;
using Kf::Accel::TextFrontEnd;

class BenchManager : public Kf::Accel::AccelManager {
 public:
  void RebuildAccelerators() override {}
  bool Load() { return EnsureLoaded(); }
  void KeySequenceToString(const KeySequence& key, std::string& out) override { out = TextFrontEnd::Format(key); }

  // Install's primary branch with the linear one-binding-per-command test.
  void InstallLinear(const AccelPart& part) {
    (void)EnsureLoaded();
    for (const AccelEntry& entry : part.entries) {
      SetDefaultIfMissing(entry, primary, false);
      primaryDefault[entry.key] = entry.command;
    }
  }
  std::size_t RowsLinear(const std::vector<std::string>& commands) {
    std::size_t found = 0;
    for (const std::string& command : commands) {
      KeySequence key;
      std::string text;
      if (FindKeySequence(command, primary, key)) KeySequenceToString(key, text), ++found;
      KeySequence second;
      if (FindKeySequence(command, secondary, second)) KeySequenceToString(second, text), ++found;
    }
    return found;
  }
};

// Chords "Ctrl+K X" with distinct keys: modifier combination and two strokes
// from the index.
KeySequence KeyFor(unsigned int index, unsigned int salt) {
  TextFrontEnd::Stroke first{TextFrontEnd::Ctrl | salt, TextFrontEnd::F1 + index % 24};
  TextFrontEnd::Stroke second{(index / 24) % 16, 'A' + (index / 384) % 26};
  return TextFrontEnd::FromStrokes({first, second});
}

// The environment every benchmark needs: a private settings root with its
// own "Global" storage and the text front end.
struct Environment {
  Kf::Testing::ScopedGlobalStorage global;
  TextFrontEnd frontEnd;
  Environment() { Kf::Accel::Register(&frontEnd); }
  ~Environment() { Kf::Accel::Unregister(&frontEnd); }
};

AccelMap UserBindings(unsigned int n) {
  AccelMap table;
  for (unsigned int i = 0; i < n; ++i) table[KeyFor(i, TextFrontEnd::Alt)] = "Bench.User" + std::to_string(i);
  return table;
}

AccelPart LargePart(unsigned int n) {
  std::vector<AccelEntry> entries;
  for (unsigned int i = 0; i < n; ++i) entries.emplace_back(KeyFor(i, 0), "Bench.Cmd" + std::to_string(i));
  return AccelPart(AccelPart::Primary, entries);
}

template <bool linear>
void InstallBenchmark(benchmark::State& state) {
  Environment environment;
  const auto n = static_cast<unsigned int>(state.range(0));
  const AccelMap user = UserBindings(n);
  const AccelPart part = LargePart(n);
  for (auto _ : state) {
    state.PauseTiming();
    auto manager = std::make_unique<BenchManager>();
    manager->SetPrimaryAccels(user);
    (void)manager->Load();  // reading the (empty) stored bindings is not what is measured
    state.ResumeTiming();
    if (linear)
      manager->InstallLinear(part);
    else
      manager->Install(part);
    state.PauseTiming();
    manager.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_Install(benchmark::State& state) { InstallBenchmark<false>(state); }
void BM_InstallLinearCommandTest(benchmark::State& state) { InstallBenchmark<true>(state); }
BENCHMARK(BM_Install)->Arg(10)->Arg(100)->Arg(1000)->Arg(2000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_InstallLinearCommandTest)->Arg(10)->Arg(100)->Arg(1000)->Arg(2000)->Unit(benchmark::kMicrosecond);

std::vector<std::string> RegisterCommands(unsigned int n) {
  std::vector<Kf::StringCommand::CommandInfo> infos;
  std::vector<std::string> names;
  for (unsigned int i = 0; i < n; ++i) {
    names.push_back("Bench.Cmd" + std::to_string(i));
    infos.emplace_back(names.back(), "&Command number " + std::to_string(i), "");
  }
  Kf::StringCommand::SetCommandInfo(infos);
  return names;
}

void BM_ExportAccels(benchmark::State& state) {
  Environment environment;
  const auto n = static_cast<unsigned int>(state.range(0));
  RegisterCommands(n);
  BenchManager manager;
  manager.Install(LargePart(n));
  const GePath file = environment.global.Settings().Dir() / "export.txt";
  for (auto _ : state) manager.ExportAccels(file, false);
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_ExportAccels)->Arg(10)->Arg(100)->Arg(1000)->Arg(2000)->Unit(benchmark::kMicrosecond);

void BM_ExportRowsLinearFind(benchmark::State& state) {
  Environment environment;
  const auto n = static_cast<unsigned int>(state.range(0));
  const std::vector<std::string> commands = RegisterCommands(n);
  BenchManager manager;
  manager.Install(LargePart(n));
  for (auto _ : state) benchmark::DoNotOptimize(manager.RowsLinear(commands));
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_ExportRowsLinearFind)->Arg(10)->Arg(100)->Arg(1000)->Arg(2000)->Unit(benchmark::kMicrosecond);

}  // namespace
