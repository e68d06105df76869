// Command-line parsing and argument-variable expansion, each against a
// hand-written peer that does the same job with plain standard-library code.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orvane/argvars.h"
#include "orvane/cmdline.h"
#include "orvane/optionparser.h"

namespace {

// A command line of `count` words after the program name: mostly file names,
// with the two host flags (in varying dash counts and case) and an unknown
// option mixed in, as a long IDE or build-tool command line looks.
std::vector<std::string> MakeWords(int count) {
  std::vector<std::string> words{"orvane-host"};
  for (int i = 0; i < count; ++i) {
    switch (i % 8) {
      case 3: words.push_back("-DBG"); break;
      case 5: words.push_back("--multicore_slave"); break;
      case 7: words.push_back("-unknown" + std::to_string(i)); break;
      default: words.push_back("src/module" + std::to_string(i) + "/file.c"); break;
    }
  }
  return words;
}

std::vector<const char*> Pointers(const std::vector<std::string>& words) {
  std::vector<const char*> argv;
  for (const auto& word : words) argv.push_back(word.c_str());
  return argv;
}

// The whole of Kf::CmdLine::Parse: storing the arguments, parsing, the file rule.
void BM_CmdLineParse(benchmark::State& state) {
  std::vector<std::string> words = MakeWords(static_cast<int>(state.range(0)));
  std::vector<const char*> argv = Pointers(words);
  Kf::CmdLine& cmdLine = Kf::CmdLine::Instance();
  for (auto _ : state) {
    cmdLine.Parse(static_cast<int>(argv.size()), argv.data());
    benchmark::DoNotOptimize(cmdLine.ShouldStartDebugger());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_CmdLineParse)->Arg(10)->Arg(200)->Arg(1000);

// The general parser alone, over words already stored.
void BM_ParseOptions(benchmark::State& state) {
  std::vector<std::string> words = MakeWords(static_cast<int>(state.range(0)));
  Kf::Console::OptionSet options;
  if (!options.AddFlag("DBG", "Launch the debugger") || !options.AddFlag("MULTICORE_SLAVE", "Slave")) return;
  for (auto _ : state) {
    Kf::Console::OptionParseResult result = Kf::Console::ParseOptions(options, words, 1);
    benchmark::DoNotOptimize(result.Positionals().data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ParseOptions)->Arg(10)->Arg(200)->Arg(1000);

// Peer: a hand-written loop over argv with std::string_view that produces the
// same answers (two flags, positional words as strings, one message per
// unknown option) and nothing more: no option table, no values, no "--".
bool PeerEqualsNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    char x = a[i], y = b[i];
    if (x >= 'A' && x <= 'Z') x = static_cast<char>(x - 'A' + 'a');
    if (y >= 'A' && y <= 'Z') y = static_cast<char>(y - 'A' + 'a');
    if (x != y) return false;
  }
  return true;
}

void BM_PeerStringViewSplit(benchmark::State& state) {
  std::vector<std::string> words = MakeWords(static_cast<int>(state.range(0)));
  std::vector<const char*> argv = Pointers(words);
  for (auto _ : state) {
    bool debugger = false, slave = false;
    std::vector<std::string> positionals;
    std::vector<std::string> errors;
    for (std::size_t i = 1; i < argv.size(); ++i) {
      std::string_view word(argv[i]);
      if (word.size() < 2 || word.front() != '-') {
        positionals.emplace_back(word);
        continue;
      }
      std::size_t nameStart = word.find_first_not_of('-');
      std::string_view name = nameStart == std::string_view::npos ? std::string_view() : word.substr(nameStart);
      if (PeerEqualsNoCase(name, "dbg")) debugger = true;
      else if (PeerEqualsNoCase(name, "multicore_slave")) slave = true;
      else errors.push_back("unknown option \"" + std::string(word) + "\"");
    }
    benchmark::DoNotOptimize(debugger);
    benchmark::DoNotOptimize(slave);
    benchmark::DoNotOptimize(positionals.data());
    benchmark::DoNotOptimize(errors.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PeerStringViewSplit)->Arg(10)->Arg(200)->Arg(1000);

// An expander that knows one variable.
class OneVarExpander : public Kf::ArgVarExpander {
 public:
  OneVarExpander(std::string variable, std::string value) : variable_(std::move(variable)), value_(std::move(value)) {}
  bool Expand(std::string& text) override {
    if (text != variable_) return false;
    text = value_;
    return true;
  }

 private:
  std::string variable_;
  std::string value_;
};

std::string VarName(int k) { return "$HOST_VAR_" + std::to_string(k) + "$"; }
std::string VarValue(int k) { return "/opt/toolkit/component" + std::to_string(k) + "/bin"; }

// ExpandSingleVar with `count` host expanders behind the standard one; the
// variable is known to the last, so every expander is asked.
void BM_ExpandSingleVar(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  std::vector<std::unique_ptr<OneVarExpander>> expanders;
  for (int k = 0; k < count; ++k) {
    expanders.push_back(std::make_unique<OneVarExpander>(VarName(k), VarValue(k)));
    Kf::RegisterArgVarExpander(expanders.back().get(), "bench");
  }
  const std::string variable = VarName(count - 1);
  for (auto _ : state) {
    std::string text = variable;
    bool expanded = Kf::ExpandSingleVar(&text);
    benchmark::DoNotOptimize(expanded);
    benchmark::DoNotOptimize(text.data());
  }
  for (auto& expander : expanders) Kf::UnregisterArgVarExpander(expander.get());
}
BENCHMARK(BM_ExpandSingleVar)->Arg(1)->Arg(10)->Arg(100);

// Peer: a plain find/replace loop over (variable, value) pairs, no lock, no
// virtual calls, no trimming.
void BM_PeerFindReplace(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  std::vector<std::pair<std::string, std::string>> table;
  for (int k = 0; k < count; ++k) table.emplace_back(VarName(k), VarValue(k));
  const std::string variable = VarName(count - 1);
  for (auto _ : state) {
    std::string text = variable;
    for (const auto& [name, value] : table) {
      std::size_t pos = text.find(name);
      if (pos != std::string::npos) text.replace(pos, name.size(), value);
    }
    benchmark::DoNotOptimize(text.data());
  }
}
BENCHMARK(BM_PeerFindReplace)->Arg(1)->Arg(10)->Arg(100);

}  // namespace
