#include "orvane/optionparser.h"

#include <algorithm>

#include "console/ascii_case.h"

namespace Kf::Console {

namespace {

// Labels longer than this do not widen the help column; their help text
// starts on the next line instead.
constexpr std::size_t kMaxLabelWidth = 32;

bool IsValidName(const std::string& name) {
  if (name.empty() || name.front() == '-') return false;
  return std::none_of(name.begin(), name.end(), [](char c) {
    return c == '=' || c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
  });
}

// Display width in characters: UTF-8 continuation bytes take no column.
std::size_t DisplayWidth(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

}  // namespace

bool OptionSet::AddFlag(const std::string& name, const std::string& help) {
  if (!IsValidName(name) || Find(name)) return false;
  options_.push_back(Option{name, help, false, {}});
  return true;
}

bool OptionSet::AddValue(const std::string& name, const std::string& help, const std::string& valueName) {
  if (!IsValidName(name) || Find(name)) return false;
  options_.push_back(Option{name, help, true, valueName.empty() ? std::string("VALUE") : valueName});
  return true;
}

const Option* OptionSet::Find(std::string_view name) const {
  for (const Option& option : options_)
    if (Detail::EqualsIgnoringAsciiCase(option.name, name)) return &option;
  return nullptr;
}

std::string OptionSet::HelpText(std::string_view dashes) const {
  std::vector<std::string> labels;
  std::size_t column = 0;
  for (const Option& option : options_) {
    std::string label = "  " + std::string(dashes) + option.name;
    if (option.takesValue) label += "=" + option.valueName;
    std::size_t width = DisplayWidth(label);
    if (width <= kMaxLabelWidth) column = std::max(column, width);
    labels.push_back(std::move(label));
  }
  column += 2;  // the gap between label and help

  std::string text;
  for (std::size_t i = 0; i < options_.size(); ++i) {
    const std::string& label = labels[i];
    const std::string& help = options_[i].help;
    text += label;
    if (help.empty()) {
      text += '\n';
      continue;
    }
    std::size_t width = DisplayWidth(label);
    if (width + 2 > column) {
      text += '\n';
      width = 0;
    }
    text.append(column - width, ' ');
    for (std::size_t start = 0;;) {
      std::size_t end = help.find('\n', start);
      text.append(help, start, end == std::string::npos ? std::string::npos : end - start);
      text += '\n';
      if (end == std::string::npos) break;
      start = end + 1;
      text.append(column, ' ');
    }
  }
  return text;
}

}  // namespace Kf::Console
