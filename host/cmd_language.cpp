// orvane-host --lang [ENU|JPN]: shows the session's language, or stores the
// language of the next session.
#include <ostream>

#include "host_app.h"
#include "orvane/language.h"
#include "orvane/statusbar.h"

namespace OrvaneHost {
namespace {

int SetLanguage(HostApp& app, const std::vector<std::string>& args) {
  std::ostream& out = app.Out();
  if (args.empty()) {
    out << "current: " << Kf::GetCurrentLanguage() << ", next session: " << Kf::GetNextSessionLanguage() << '\n';
    return 0;
  }
  const std::string& code = args.front();
  if (args.size() != 1 || (code != "ENU" && code != "JPN")) {
    out << "usage: orvane-host --lang ENU|JPN\n";
    return 2;
  }
  Kf::SetNextSessionLanguage(code);
  out << Kf::StatusBar::LanguageToMenuString(code) << " (next session: " << Kf::GetNextSessionLanguage()
      << ", this session stays " << Kf::GetCurrentLanguage() << ")\n";
  return 0;
}

Subcommand lang("--lang", "--lang [ENU|JPN]           show the language, or set the next session's", SetLanguage);

}  // namespace
}  // namespace OrvaneHost
