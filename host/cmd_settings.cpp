// orvane-host settings: reads and edits the "Global" settings storage.
#include <iostream>
#include <ostream>

#include "host_app.h"
#include "orvane/storage.h"

namespace OrvaneHost {
namespace {

int Usage(std::ostream& err) {
  err << "usage: orvane-host settings get SECTION KEY | set SECTION KEY VALUE | delete SECTION KEY | list\n";
  return 2;
}

int RunSettings(HostApp& app, const std::vector<std::string>& args) {
  std::ostream& out = app.Out();
  if (args.empty()) return Usage(std::cerr);
  KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
  if (!global) {
    std::cerr << "orvane-host: no settings directory (set ORVANE_SETTINGS_DIR or HOME)\n";
    return 1;
  }
  const std::string& verb = args[0];
  if (verb == "get" && args.size() == 3) {
    std::string value;
    if (!global->Load(args[1], args[2], value)) {
      std::cerr << "orvane-host: " << args[1] << "/" << args[2] << " is not set\n";
      return 1;
    }
    out << value << '\n';
    return 0;
  }
  if (verb == "set" && args.size() == 4) {
    if (!global->Store(args[1], args[2], args[3])) {
      std::cerr << "orvane-host: could not save " << global->GetFile().ToString() << '\n';
      return 1;
    }
    return 0;
  }
  if (verb == "delete" && args.size() == 3) {
    std::string old;
    if (!global->Load(args[1], args[2], old)) {
      std::cerr << "orvane-host: " << args[1] << "/" << args[2] << " is not set\n";
      return 1;
    }
    return global->DeleteKey(args[1], args[2]) ? 0 : 1;
  }
  if (verb == "list" && args.size() == 1) {
    out << "# " << global->GetFile().ToString() << '\n';
    for (const std::string& section : global->GetSections()) {
      out << section << '\n';
      std::vector<std::string> keys;
      if (!global->GetKeys(section, keys)) continue;
      for (const std::string& key : keys) {
        std::string value;
        (void)global->Load(section, key, value);
        out << "  " << key << " = " << value << '\n';
      }
    }
    return 0;
  }
  return Usage(std::cerr);
}

Subcommand settings("settings", "settings get SECTION KEY | set SECTION KEY VALUE | delete SECTION KEY | list",
                    &RunSettings);

}  // namespace
}  // namespace OrvaneHost
