// Tour steps for the command line, argument variables and path parts.
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "host_app.h"
#include "orvane/argvars.h"
#include "orvane/cmdline.h"
#include "orvane/optionparser.h"
#include "orvane/platform.h"

namespace OrvaneHost {
namespace {

std::string Quoted(const std::vector<std::string>& words) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "\"" : " \"") + word + "\"";
  return text.empty() ? "(none)" : text;
}

TourStep commandLine(100, "Command line", [](HostApp& app) {
  std::ostream& out = app.Out();
  Kf::CmdLine& cmdLine = Kf::CmdLine::Instance();
  out << "main() handed its arguments to Kf::CmdLine; every module can now ask:\n"
      << "  all arguments:         " << Quoted(Kf::CmdLineArgv()) << '\n'
      << "  positional words:      " << Quoted(cmdLine.GetParseResult().Positionals()) << '\n'
      << "  ShouldStartDebugger:   " << std::boolalpha << cmdLine.ShouldStartDebugger() << '\n'
      << "  StartAsMulticoreSlave: " << cmdLine.StartAsMulticoreSlave() << '\n';
  GePath file;
  out << "  file to open:          " << (cmdLine.GetFileToOpen(file) ? file.ToString() : "(none)");
  if (!file.IsEmpty() && Subcommand::Find(file.ToString()))
    out << " (the host ran the subcommand of that name instead; ./" << file.ToString() << " would open the file)";
  out << '\n';

  out << "\nThe same option parser serves console tools. A tool with -verbose and -out=FILE\n"
      << "parses  -VERBOSE main.c --out=main.o util.c --colour --out\n";
  Kf::Console::OptionSet options;
  if (!options.AddFlag("verbose", "Print every step") || !options.AddValue("out", "Write the object to FILE", "FILE"))
    return;
  Kf::Console::OptionParseResult result =
      Kf::Console::ParseOptions(options, {"-VERBOSE", "main.c", "--out=main.o", "util.c", "--colour", "--out"});
  std::string object;
  out << "  verbose: " << result.IsSet("verbose") << ", out: " << (result.GetValue("out", object) ? object : "-")
      << ", positional: " << Quoted(result.Positionals()) << '\n';
  for (const auto& error : result.Errors()) out << "  error: " << error.message << '\n';
  out << "and its help text is\n" << options.HelpText();
});

// A host's expander for two of the path variables the library leaves to it.
class TourProjectVars : public Kf::ArgVarExpander {
 public:
  bool Expand(std::string& text) override {
    if (text == "$PROJ_DIR$") text = "  /home/dev/blinky  ";  // padded: ExpandSingleVar trims
    else if (text == "$TOOLKIT_DIR$") text = "/opt/toolkit/arm";
    else if (text == "$USER_NAME$") text = "not me: the library's expander answers first";
    else return false;
    return true;
  }
  void AddToIndex(const std::string& key, std::set<std::string>& out) override {
    if (key == "directories") out.insert({"$PROJ_DIR$", "$TOOLKIT_DIR$"});
  }
};

TourStep argumentVariables(110, "Argument variables", [](HostApp& app) {
  std::ostream& out = app.Out();
  TourProjectVars projectVars;
  Kf::RegisterArgVarExpander(&projectVars, "TourProjectVars");
  out << "The library's StandardArgVarExpander comes first; the host registered TourProjectVars,\n"
      << "which also tries to answer $USER_NAME$ but is never asked for it.\n";
  for (const char* variable :
       {"$QV_DIR$", "$USER_NAME$", "$DATE$", "$CUR_DIR$", "$PROJ_DIR$", "$TOOLKIT_DIR$", "$cur_dir$", "$OBJ_DIR$"}) {
    std::string text = variable;
    bool expanded = Kf::ExpandSingleVar(&text);
    out << "  " << variable << std::string(16 - std::string(variable).size(), ' ')
        << (expanded ? "-> \"" + text + "\"" : std::string("not expanded (no expander knows it)")) << '\n';
  }
  std::set<std::string> index;
  Kf::GetIndex("directories", index);
  out << "GetIndex(\"directories\") lists:";
  for (const auto& name : index) out << ' ' << name;
  out << '\n';
  Kf::UnregisterArgVarExpander(&projectVars);
});

// The first entries of PATH, enough to see what changed at its front.
std::string PathHead() {
  std::string path;
  if (!Kf::Platform::Current().GetEnv("PATH", path)) return "(unset)";
  const char separator = Kf::Platform::Current().PathListSeparator();
  std::size_t end = 0;
  for (int entries = 0; entries < 3 && end != std::string::npos; ++entries) end = path.find(separator, end + 1);
  return end == std::string::npos ? path : path.substr(0, end + 1) + "...";
}

TourStep pathParts(120, "Path parts", [](HostApp& app) {
  std::ostream& out = app.Out();
  Kf::PathVariablePart part;
  out << "PATH starts as          " << PathHead() << '\n';
  Kf::InstallPathPart(&part, {GePath("/opt/toolkit/arm/bin"), GePath("/opt/toolkit/common/bin")});
  out << "with a part installed:  " << PathHead() << '\n';
  Kf::InstallPathPart(&part, {GePath("/opt/toolkit/rx/bin")});
  out << "the part re-installed:  " << PathHead() << '\n';
  Kf::UninstallPathPart(&part);
  out << "the part uninstalled:   " << PathHead() << '\n';
});

}  // namespace
}  // namespace OrvaneHost
