// The key-bindings export: a banner, then one row per bound command with its
// first primary and secondary key, in aligned columns.
#include <algorithm>
#include <fstream>
#include <map>

#include "core/diagnostics.h"
#include "orvane/accel.h"
#include "orvane/stringcommand.h"

namespace Kf::Accel {
namespace {

constexpr char kTitle[] = "Key Bindings for Qorvant";
constexpr char kNone[] = "<None>";

struct Row {
  std::string name;
  bool hasPrimary = false;
  bool hasSecondary = false;
  std::string primary;
  std::string secondary;
};

std::string Padded(const std::string& text, std::size_t width) {
  return text.size() >= width ? text : text + std::string(width - text.size(), ' ');
}

// The first key of each command in key order: what FindKeySequence would
// find, gathered in one walk instead of one walk per command.
std::map<std::string, const KeySequence*> FirstKeys(const AccelMap& table) {
  std::map<std::string, const KeySequence*> first;
  for (const auto& [key, command] : table) first.try_emplace(command, &key);
  return first;
}

}  // namespace

void AccelManager::ExportAccels(const GePath& file, bool defaults) {
  const auto primaryKeys = FirstKeys(defaults ? primaryDefault : primary);
  const auto secondaryKeys = FirstKeys(defaults ? secondaryDefault : secondary);

  std::vector<std::string> commands;
  Kf::StringCommand::GetCommandsWithInfo(commands);
  std::vector<Row> rows;
  rows.reserve(commands.size());
  for (const std::string& command : commands) {
    Row row;
    Kf::StringCommand::CommandInfo info;
    if (Kf::StringCommand::GetCommandInfo(command, info))
      for (char c : info.text)
        if (c != '&') row.name += c;
    if (auto found = primaryKeys.find(command); found != primaryKeys.end()) {
      row.hasPrimary = true;
      KeySequenceToString(*found->second, row.primary);
    }
    if (auto found = secondaryKeys.find(command); found != secondaryKeys.end()) {
      row.hasSecondary = true;
      KeySequenceToString(*found->second, row.secondary);
    }
    rows.push_back(std::move(row));
  }

  std::size_t nameWidth = 7;
  std::size_t primaryWidth = 7;
  bool showSecondary = false;
  for (const Row& row : rows) {
    if (!row.hasPrimary && !row.hasSecondary) continue;
    nameWidth = std::max(nameWidth, row.name.size());
    primaryWidth = std::max(primaryWidth, row.hasPrimary ? row.primary.size() : std::size_t{0});
    showSecondary = showSecondary || row.hasSecondary;
  }

  std::string text;
  const std::size_t n = sizeof(kTitle) - 1;
  const std::string hashes(n + 4, '#');
  const std::string blankLine = "#" + std::string(n + 2, ' ') + "#\n";
  text += hashes + "\n" + blankLine + "# " + kTitle + " #\n" + blankLine + hashes + "\n\n";

  text += Padded("Command", nameWidth) + " # ";
  text += showSecondary ? Padded("Primary", primaryWidth) + " # Secondary\n" : "Binding\n";
  text += Padded("-------", nameWidth) + " # ";
  text += showSecondary ? Padded("-------", primaryWidth) + " # ---------\n" : "-------\n";
  for (const Row& row : rows) {
    if (!row.hasPrimary && !row.hasSecondary) continue;
    const std::string primaryCell = row.hasPrimary ? row.primary : kNone;
    text += Padded(row.name, nameWidth) + " # ";
    if (showSecondary)
      text += Padded(primaryCell, primaryWidth) + " # " + (row.hasSecondary ? row.secondary : kNone);
    else
      text += primaryCell;
    text += '\n';
  }

  std::ofstream out(file.Native(), std::ios::binary | std::ios::trunc);
  out << text;
  out.close();
  if (!out) Kf::Detail::ReportError("AccelManager::ExportAccels", "cannot write \"" + file.ToString() + "\"");
}

}  // namespace Kf::Accel
