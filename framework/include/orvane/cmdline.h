// The host process's command line, parsed once and asked by every module.
//
// The host hands its arguments over at start-up; afterwards any module can
// ask whether the debugger is to be launched, whether this process is a
// multicore slave, which file (if any) to open, and what the raw arguments
// were.
//
//   int main(int argc, char** argv) {
//     Kf::CmdLine::Instance().Parse(argc, argv);
//     ...
//   }
//   // anywhere later:
//   GePath file;
//   if (Kf::CmdLine::Instance().GetFileToOpen(file)) OpenEditor(file);
//
// The options are "DBG" (launch the debugger) and "MULTICORE_SLAVE" (start as
// a multicore slave). Words are read by the general option parser
// (orvane/optionparser.h): any run of leading '-' is skipped and letter case
// is ignored, so -DBG, --DBG and -dbg are the same flag; "--" ends the
// options; every other word is positional. Argument 0, the executable's
// name, is stored but never parsed. The file to open is the positional word
// when there is exactly one and neither flag was given; otherwise there is
// none.
//
// Beyond the questions above, the parser's full result (positional words,
// readable messages for unknown options) and the option set (for a help
// text) are available, so a host can tell its user what went wrong. Parse
// itself reports and prints nothing.
//
// Threads: Instance() may be called from any thread; the singleton is created
// on first call. Parse is meant to run once, early, on the start-up thread,
// before other threads ask; the queries only read and may then be called from
// any thread. Nothing here locks.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orvane/export.h"
#include "orvane/gepath.h"
#include "orvane/optionparser.h"

namespace Kf {

class ORVANE_API CmdLine {
 public:
  static CmdLine& Instance();

  CmdLine(const CmdLine&) = delete;
  CmdLine& operator=(const CmdLine&) = delete;

  // Replace everything learnt from an earlier call. Narrow arguments are
  // stored unchanged; wide ones are converted to UTF-8 (UTF-16 on Windows,
  // UTF-32 on Linux; invalid units become U+FFFD). With argc below 1 nothing
  // is stored. A null argv, or a null entry, is read as no argument / an
  // empty word.
  void Parse(int argc, const char* const* argv);
  void Parse(int argc, const wchar_t* const* argv);

  // False, `out` untouched, when there is no file to open.
  bool GetFileToOpen(GePath& out) const;
  bool StartAsMulticoreSlave() const;
  bool ShouldStartDebugger() const;
  // Every argument, argument 0 included, as stored by the last Parse.
  std::vector<std::string>& GetAllArgs();

  // The option parser's result for the last Parse: positional words in order
  // and one message per unknown option. Valid until the next Parse.
  const Console::OptionParseResult& GetParseResult() const;
  // The options understood, for a help text (GetOptionSet()->HelpText()).
  // Each Parse builds a fresh set; the pointer keeps the old one alive.
  std::shared_ptr<const Console::OptionSet> GetOptionSet() const;

 private:
  CmdLine();
  ~CmdLine();
  void ParseStoredArgs();

  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// The stored argument list of CmdLine::Instance().
ORVANE_API const std::vector<std::string>& CmdLineArgv();

}  // namespace Kf
