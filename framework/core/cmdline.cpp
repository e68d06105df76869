#include "orvane/cmdline.h"

#include <cassert>

#include "core/wide_text.h"

namespace Kf {

namespace {

constexpr const char* kDebuggerOption = "DBG";
constexpr const char* kMulticoreSlaveOption = "MULTICORE_SLAVE";

std::shared_ptr<Console::OptionSet> MakeOptionSet() {
  auto options = std::make_shared<Console::OptionSet>();
  [[maybe_unused]] bool added = options->AddFlag(kDebuggerOption, "Launch the debugger");
  assert(added);
  added = options->AddFlag(kMulticoreSlaveOption, "Start as a multicore slave");
  assert(added);
  return options;
}

}  // namespace

struct CmdLine::Impl {
  std::vector<std::string> args;
  std::shared_ptr<const Console::OptionSet> options = MakeOptionSet();
  GePath fileToOpen;
  Console::OptionParseResult parsed;
};

CmdLine::CmdLine() : impl_(std::make_unique<Impl>()) {}
CmdLine::~CmdLine() = default;

CmdLine& CmdLine::Instance() {
  static CmdLine instance;
  return instance;
}

void CmdLine::Parse(int argc, const char* const* argv) {
  impl_->args.clear();
  for (int i = 0; argv && i < argc; ++i) impl_->args.emplace_back(argv[i] ? argv[i] : "");
  ParseStoredArgs();
}

void CmdLine::Parse(int argc, const wchar_t* const* argv) {
  impl_->args.clear();
  for (int i = 0; argv && i < argc; ++i)
    impl_->args.push_back(argv[i] ? Detail::WideToUtf8(argv[i]) : std::string());
  ParseStoredArgs();
}

void CmdLine::ParseStoredArgs() {
  impl_->fileToOpen = GePath();
  impl_->options = MakeOptionSet();
  // Argument 0 is the executable's name: never an option, never the file.
  impl_->parsed = Console::ParseOptions(*impl_->options, impl_->args, 1);
  const auto& positionals = impl_->parsed.Positionals();
  if (!ShouldStartDebugger() && !StartAsMulticoreSlave() && positionals.size() == 1)
    impl_->fileToOpen = GePath(positionals.front());
}

bool CmdLine::GetFileToOpen(GePath& out) const {
  if (impl_->fileToOpen.IsEmpty()) return false;
  out = impl_->fileToOpen;
  return true;
}

bool CmdLine::StartAsMulticoreSlave() const { return impl_->parsed.IsSet(kMulticoreSlaveOption); }
bool CmdLine::ShouldStartDebugger() const { return impl_->parsed.IsSet(kDebuggerOption); }
std::vector<std::string>& CmdLine::GetAllArgs() { return impl_->args; }
const Console::OptionParseResult& CmdLine::GetParseResult() const { return impl_->parsed; }
std::shared_ptr<const Console::OptionSet> CmdLine::GetOptionSet() const { return impl_->options; }

const std::vector<std::string>& CmdLineArgv() { return CmdLine::Instance().GetAllArgs(); }

}  // namespace Kf
