// orvane-host: the reference host program.
//
//   orvane-host [tour]          the guided tour of the library's services
//   orvane-host help            lists the subcommands
//   orvane-host COMMAND ARGS... runs a subcommand
#include <iostream>
#include <string>
#include <vector>

#include "host_app.h"
#include "orvane/logtask.h"
#include "orvane/events.h"

namespace {

int PrintHelp(std::ostream& out) {
  out << "usage: orvane-host [COMMAND [ARGS...]]\n\ncommands:\n";
  for (OrvaneHost::Subcommand* command : OrvaneHost::Subcommand::All())
    out << "  " << command->usage << '\n';
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Kf::InitOrvaneXDll();
  KfSetUsingMode(KfUsingMode::kIde);  // this host plays the IDE: its traced events are written
  std::vector<std::string> words(argv + 1, argv + argc);
  OrvaneHost::HostApp app(std::cout);

  std::string command = words.empty() ? "tour" : words.front();
  if (!words.empty()) words.erase(words.begin());
  if (command == "help" || command == "--help" || command == "-h") return PrintHelp(std::cout);
  OrvaneHost::Subcommand* subcommand = OrvaneHost::Subcommand::Find(command);
  if (!subcommand) {
    std::cerr << "orvane-host: unknown command \"" << command << "\"\n\n";
    PrintHelp(std::cerr);
    return 2;
  }
  return subcommand->run(app, words);
}
