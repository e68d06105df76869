// orvane-host: the reference host program.
//
//   orvane-host [OPTIONS] [tour]          the guided tour of the library's services
//   orvane-host [OPTIONS] help            lists the options and subcommands
//   orvane-host [OPTIONS] COMMAND ARGS... runs a subcommand
//   orvane-host [OPTIONS] FILE            opens one file, as an IDE opens its argument
//
// The command line is parsed by Kf::CmdLine, as an IDE host does: the
// options -DBG and -MULTICORE_SLAVE may stand anywhere (any run of leading
// dashes, any letter case). Of the remaining (positional) words, the first
// names a subcommand if there is one of that name, and the rest are its
// arguments; otherwise a single word is the file to open (CmdLine's rule:
// only without either option). No word at all runs the tour. A file named
// like a subcommand is opened as ./NAME; subcommand arguments that begin with
// '-' follow a "--". An unknown option prints the parser's message and the help.
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "host_app.h"
#include "orvane/cmdline.h"
#include "orvane/events.h"
#include "orvane/logtask.h"

namespace {

int PrintHelp(std::ostream& out) {
  out << "usage: orvane-host [OPTIONS] [COMMAND [ARGS...] | FILE]\n\noptions:\n"
      << Kf::CmdLine::Instance().GetOptionSet()->HelpText() << "\ncommands:\n";
  for (OrvaneHost::Subcommand* command : OrvaneHost::Subcommand::All())
    out << "  " << command->usage << '\n';
  return 0;
}

// The reference host has no editor: it tells what an IDE would open.
int OpenFile(std::ostream& out, const GePath& file) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file.Native(), error)) {
    std::cerr << "orvane-host: cannot open \"" << file.ToString() << "\": no such file\n";
    return 1;
  }
  out << "Opening " << file.ToString() << " (" << std::filesystem::file_size(file.Native(), error) << " bytes)\n";
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Kf::InitOrvaneXDll();
  Kf::CmdLine& cmdLine = Kf::CmdLine::Instance();
  cmdLine.Parse(argc, argv);
  for (const Kf::Console::OptionError& error : cmdLine.GetParseResult().Errors()) {
    if (error.option == "help" || error.option == "h") return PrintHelp(std::cout);
    std::cerr << "orvane-host: " << error.message << "\n\n";
    PrintHelp(std::cerr);
    return 2;
  }
  if (cmdLine.ShouldStartDebugger()) std::cerr << "orvane-host: -DBG: a real IDE would launch its debugger now\n";
  if (cmdLine.StartAsMulticoreSlave()) std::cerr << "orvane-host: running as a multicore slave\n";
  // The using mode decides, among others, whether traced events are written.
  KfSetUsingMode(cmdLine.StartAsMulticoreSlave() ? KfUsingMode::kBuildSlave : KfUsingMode::kIde);
  std::vector<std::string> words = cmdLine.GetParseResult().Positionals();
  OrvaneHost::HostApp app(std::cout);

  std::string command = words.empty() ? "tour" : words.front();
  if (!words.empty()) words.erase(words.begin());
  if (command == "help") return PrintHelp(std::cout);
  OrvaneHost::Subcommand* subcommand = OrvaneHost::Subcommand::Find(command);
  GePath file;
  if (!subcommand && cmdLine.GetFileToOpen(file)) return OpenFile(app.Out(), file);
  if (!subcommand) {
    std::cerr << "orvane-host: unknown command \"" << command << "\""
              << (words.empty() && (cmdLine.ShouldStartDebugger() || cmdLine.StartAsMulticoreSlave())
                      ? " (a file to open is taken only without -DBG or -MULTICORE_SLAVE)"
                      : "")
              << "\n\n";
    PrintHelp(std::cerr);
    return 2;
  }
  return subcommand->run(app, words);
}
