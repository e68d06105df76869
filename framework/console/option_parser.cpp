#include "orvane/optionparser.h"

#include "console/ascii_case.h"

namespace Kf::Console {

namespace {

// An option word split into its name and, for "-name=value", its value.
struct OptionWord {
  std::string_view name;
  bool hasValue = false;
  std::string_view value;
};

bool IsOptionWord(std::string_view word) { return word.size() > 1 && word.front() == '-' && word != "--"; }

OptionWord SplitOptionWord(std::string_view word) {
  OptionWord result;
  std::size_t nameStart = word.find_first_not_of('-');
  std::string_view rest = nameStart == std::string_view::npos ? std::string_view() : word.substr(nameStart);
  std::size_t equals = rest.find('=');
  result.name = rest.substr(0, equals);
  if (equals != std::string_view::npos) {
    result.hasValue = true;
    result.value = rest.substr(equals + 1);
  }
  return result;
}

OptionError MakeError(OptionError::Kind kind, const std::string& word, std::string_view option) {
  OptionError error;
  error.kind = kind;
  error.word = word;
  error.option = std::string(option);
  switch (kind) {
    case OptionError::Kind::UnknownOption:
      error.message = "unknown option \"" + word + "\"";
      break;
    case OptionError::Kind::MissingValue:
      error.message = "option \"" + word + "\" needs a value";
      break;
    case OptionError::Kind::UnexpectedValue:
      error.message = "option \"" + word.substr(0, word.find('=')) + "\" takes no value (given \"" + word + "\")";
      break;
  }
  return error;
}

}  // namespace

void OptionParseResult::AddOption(const std::string& canonicalName, const std::string* value) {
  Given given;
  given.name = canonicalName;
  if (value) {
    given.hasValue = true;
    given.value = *value;
  }
  given_.push_back(std::move(given));
}

bool OptionParseResult::IsSet(std::string_view name) const {
  for (const Given& given : given_)
    if (Detail::EqualsIgnoringAsciiCase(given.name, name)) return true;
  return false;
}

bool OptionParseResult::GetValue(std::string_view name, std::string& out) const {
  for (auto it = given_.rbegin(); it != given_.rend(); ++it) {
    if (it->hasValue && Detail::EqualsIgnoringAsciiCase(it->name, name)) {
      out = it->value;
      return true;
    }
  }
  return false;
}

std::vector<std::string> OptionParseResult::GetValues(std::string_view name) const {
  std::vector<std::string> values;
  for (const Given& given : given_)
    if (given.hasValue && Detail::EqualsIgnoringAsciiCase(given.name, name)) values.push_back(given.value);
  return values;
}

OptionParseResult ParseOptions(const OptionSet& options, const std::vector<std::string>& words, std::size_t first) {
  OptionParseResult result;
  bool optionsEnded = false;
  for (std::size_t i = first; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (optionsEnded || !IsOptionWord(word)) {
      if (!optionsEnded && word == "--") {
        optionsEnded = true;
        continue;
      }
      result.AddPositional(word);
      continue;
    }

    OptionWord split = SplitOptionWord(word);
    const Option* option = split.name.empty() ? nullptr : options.Find(split.name);
    if (!option) {
      result.AddError(MakeError(OptionError::Kind::UnknownOption, word, split.name));
      continue;
    }
    if (!option->takesValue) {
      if (split.hasValue)
        result.AddError(MakeError(OptionError::Kind::UnexpectedValue, word, option->name));
      else
        result.AddOption(option->name, nullptr);
      continue;
    }
    if (split.hasValue) {
      std::string value(split.value);
      result.AddOption(option->name, &value);
      continue;
    }
    // "-name value": the next word, unless it ends the options or is itself
    // one of the set's options.
    bool nextIsValue = i + 1 < words.size() && words[i + 1] != "--" &&
                       !(IsOptionWord(words[i + 1]) && options.Find(SplitOptionWord(words[i + 1]).name));
    if (!nextIsValue) {
      result.AddError(MakeError(OptionError::Kind::MissingValue, word, option->name));
      continue;
    }
    result.AddOption(option->name, &words[++i]);
  }
  return result;
}

}  // namespace Kf::Console
