// orvane-host keys: lists, binds, unbinds, exports and explains the keyboard
// bindings. Changes are saved in the "Global" settings (QorIde.xml below the
// settings directory, which ORVANE_SETTINGS_DIR may redirect) as differences
// from the defaults, and so survive a restart of the host.
#include <fstream>
#include <iostream>
#include <ostream>
#include <string>
#include <vector>

#include "host_accels.h"
#include "host_app.h"
#include "orvane/accel.h"

namespace OrvaneHost {
namespace {

using Kf::Accel::AccelMap;
using Kf::Accel::KeySequence;
using Kf::Accel::TextFrontEnd;

std::string Padded(const std::string& text, std::size_t width) {
  return text.size() >= width ? text + " " : text + std::string(width - text.size(), ' ');
}

bool ParseKeys(const std::string& text, KeySequence& out) {
  std::string error;
  if (TextFrontEnd::Parse(text, out, error)) return true;
  std::cerr << "orvane-host keys: " << error << '\n';
  return false;
}

struct Tables {
  AccelMap primary, secondary, primaryDefault, secondaryDefault;
  explicit Tables(ConsoleAccelManager& manager) {
    manager.GetPrimaryAccels(primary);
    manager.GetSecondaryAccels(secondary);
    manager.GetPrimaryAccelsDefault(primaryDefault);
    manager.GetSecondaryAccelsDefault(secondaryDefault);
  }
};

// "default" when an installed part contributed this very binding (not only
// the last part to name the key), "user" otherwise.
bool IsDefault(ConsoleAccelManager& manager, const KeySequence& key) {
  for (const auto& report : manager.GetBindingReport(key))
    for (const auto& source : report.sources)
      if (source.kind == Kf::Accel::BindingSource::PartDefault && report.bound && source.command == report.command &&
          source.primary == report.boundPrimary)
        return true;
  return false;
}

void PrintTable(ConsoleAccelManager& manager, std::ostream& out, const AccelMap& table, const char* name) {
  for (const auto& [key, command] : table) {
    const bool isDefault = IsDefault(manager, key);
    out << Padded(TextFrontEnd::Format(key), 16) << Padded(command, 22) << Padded(name, 10)
        << (isDefault ? "default" : "user") << '\n';
  }
}

int List(ConsoleAccelManager& manager, std::ostream& out) {
  Tables tables(manager);
  out << Padded("Key", 16) << Padded("Command", 22) << Padded("Table", 10) << "Origin\n";
  PrintTable(manager, out, tables.primary, "primary");
  PrintTable(manager, out, tables.secondary, "secondary");
  return 0;
}

int Bind(ConsoleAccelManager& manager, std::ostream& out, const std::vector<std::string>& args) {
  if (args.size() < 3 || args.size() > 4 || (args.size() == 4 && args[3] != "--secondary")) {
    std::cerr << "usage: orvane-host keys bind KEYS COMMAND [--secondary]\n";
    return 2;
  }
  KeySequence key;
  if (!ParseKeys(args[1], key)) return 2;
  const bool secondary = args.size() == 4;
  Tables tables(manager);
  // A key sequence is bound in one table only.
  tables.primary.erase(key);
  tables.secondary.erase(key);
  (secondary ? tables.secondary : tables.primary)[key] = args[2];
  manager.SetPrimaryAccels(tables.primary);
  manager.SetSecondaryAccels(tables.secondary);
  HostAccels::SaveSettings();
  out << TextFrontEnd::Format(key) << " -> " << args[2] << (secondary ? " (secondary)" : "") << " saved\n";
  return 0;
}

int Unbind(ConsoleAccelManager& manager, std::ostream& out, const std::vector<std::string>& args) {
  if (args.size() != 2) {
    std::cerr << "usage: orvane-host keys unbind KEYS\n";
    return 2;
  }
  KeySequence key;
  if (!ParseKeys(args[1], key)) return 2;
  Tables tables(manager);
  const bool removed = tables.primary.erase(key) + tables.secondary.erase(key) > 0;
  if (!removed) {
    std::cerr << "orvane-host keys: " << TextFrontEnd::Format(key) << " is not bound\n";
    return 1;
  }
  manager.SetPrimaryAccels(tables.primary);
  manager.SetSecondaryAccels(tables.secondary);
  HostAccels::SaveSettings();
  out << TextFrontEnd::Format(key) << " unbound\n";
  if (tables.primaryDefault.count(key) || tables.secondaryDefault.count(key))
    out << "note: " << TextFrontEnd::Format(key)
        << " is a default binding; only changes to keys are stored, so it returns at the next start\n";
  return 0;
}

int Export(ConsoleAccelManager& manager, std::ostream& out, const std::vector<std::string>& args) {
  if (args.size() < 2 || args.size() > 3 || (args.size() == 3 && args[2] != "--defaults")) {
    std::cerr << "usage: orvane-host keys export FILE [--defaults]\n";
    return 2;
  }
  const GePath file(args[1]);
  if (!std::ofstream(file.Native(), std::ios::app)) {  // ExportAccels itself has no result to test
    std::cerr << "orvane-host keys: cannot write " << args[1] << '\n';
    return 1;
  }
  manager.ExportAccels(file, args.size() == 3);
  out << (args.size() == 3 ? "default" : "current") << " key bindings written to " << args[1] << '\n';
  return 0;
}

int Conflicts(ConsoleAccelManager& manager, std::ostream& out, const std::vector<std::string>& args) {
  KeySequence key;
  if (args.size() > 2) {
    std::cerr << "usage: orvane-host keys conflicts [KEYS]\n";
    return 2;
  }
  if (args.size() == 2 && !ParseKeys(args[1], key)) return 2;
  auto reports = manager.GetBindingReport(key);
  if (reports.empty()) out << "no conflicts\n";
  for (const Kf::Accel::BindingReport& report : reports) {
    out << TextFrontEnd::Format(report.key) << ": ";
    if (report.bound)
      out << report.command << " (" << (report.boundPrimary ? "primary" : "secondary") << ")";
    else
      out << "unbound";
    if (!report.reason.empty()) out << " - " << report.reason;
    out << '\n';
    for (const Kf::Accel::BindingSource& source : report.sources) {
      out << "    ";
      if (source.kind == Kf::Accel::BindingSource::User)
        out << "user binding       ";
      else
        out << "default of part " << source.partIndex << "  ";
      out << Padded(source.command, 22) << (source.primary ? "primary" : "secondary") << '\n';
    }
  }
  return 0;
}

int RunKeys(HostApp& app, const std::vector<std::string>& args) {
  if (args.empty()) {
    std::cerr << "usage: orvane-host keys list | bind KEYS COMMAND [--secondary] | unbind KEYS | "
                 "export FILE [--defaults] | conflicts [KEYS]\n";
    return 2;
  }
  HostAccels accels;
  ConsoleAccelManager& manager = accels.Manager();
  std::ostream& out = app.Out();
  const std::string& verb = args[0];
  if (verb == "list") return List(manager, out);
  if (verb == "bind") return Bind(manager, out, args);
  if (verb == "unbind") return Unbind(manager, out, args);
  if (verb == "export") return Export(manager, out, args);
  if (verb == "conflicts") return Conflicts(manager, out, args);
  std::cerr << "orvane-host keys: unknown action \"" << verb << "\"\n";
  return 2;
}

Subcommand keys("keys",
                "keys list | bind KEYS COMMAND [--secondary] | unbind KEYS | export FILE [--defaults] | conflicts [KEYS]",
                RunKeys);

}  // namespace
}  // namespace OrvaneHost
