// The general command-line option parser of the console tool support library.
//
// A tool describes its options once in an OptionSet (a name, a help text,
// and whether the option takes a value) and hands its words to ParseOptions.
// The result holds the options given, their values, the positional words and
// readable error messages; the set can also print an aligned help text.
//
//   Kf::Console::OptionSet options;
//   (void)options.AddFlag("verbose", "Print every step");
//   (void)options.AddValue("out", "Write the result to FILE", "FILE");
//   Kf::Console::OptionParseResult result = Kf::Console::ParseOptions(options, words);
//   if (!result.Ok()) {
//     for (const auto& error : result.Errors()) std::cerr << error.message << '\n';
//     std::cerr << options.HelpText();
//   }
//   std::string out;
//   if (result.GetValue("out", out)) ...;
//
// Rules for the words:
//   - A word that begins with '-' is an option word. Any run of leading '-'
//     is skipped before the name is looked up, so -out, --out and ---out are
//     the same option.
//   - Names match ignoring ASCII letter case (-dbg, -DBG and --Dbg are the
//     same option), the way command lines are typed on Windows; other letters
//     compare exactly. Two names of one set may therefore not differ by case
//     alone.
//   - A valued option takes its value as "-name=value" or as the next word
//     ("-name value"). The next word is not taken when it is "--" or itself
//     names an option of the set; the option is then reported as missing its
//     value. Any other next word is the value, even one that begins with '-'
//     (so "-offset -5" works).
//   - A flag given as "-name=value" is reported: flags take no value.
//   - The word "--" alone ends option parsing: every later word is positional.
//   - The word "-" alone is positional (the usual name for standard input).
//   - Every other word is a positional argument, kept in order.
//   - Giving an option twice is allowed: a flag stays set, a valued option
//     keeps every value in order and GetValue answers the last.
//   - An unknown option is reported and otherwise ignored; parsing goes on.
//
// The parser never throws, never exits and never prints: every problem is an
// entry of Errors(), each with a complete English message.
//
// Threads: an OptionSet is a plain value; build it on one thread, after which
// any number of threads may parse against it concurrently. ParseOptions keeps
// no state of its own.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvane/export.h"

namespace Kf::Console {

// One option of a set.
struct ORVANE_API Option {
  std::string name;       // without dashes ("DBG", "out")
  std::string help;       // one line, or several separated by '\n'
  bool takesValue = false;
  std::string valueName;  // shown in the help text ("FILE"); valued options only
};

// The options a program understands.
// Threads: build on one thread; afterwards concurrent reads (Find, HelpText,
// ParseOptions) are safe.
class ORVANE_API OptionSet {
 public:
  // Adds an option. False (and the set unchanged) when the name is empty,
  // begins with '-', contains '=' or white space, or equals an existing name
  // ignoring ASCII case.
  [[nodiscard]] bool AddFlag(const std::string& name, const std::string& help);
  [[nodiscard]] bool AddValue(const std::string& name, const std::string& help,
                              const std::string& valueName = "VALUE");

  // The option called `name` (dashes already removed, ASCII case ignored), or null.
  const Option* Find(std::string_view name) const;
  const std::vector<Option>& Options() const { return options_; }

  // The options, one per line in the order they were added, each as
  // "  <dashes>name[=VALUE]" padded to a common column followed by its help;
  // the continuation lines of a multi-line help start in the same column. A
  // label too long for the column (over 32 characters) puts its help on the
  // next line. Ends with a newline; empty for an empty set.
  std::string HelpText(std::string_view dashes = "-") const;

 private:
  std::vector<Option> options_;
};

// What went wrong with one word.
struct ORVANE_API OptionError {
  enum class Kind {
    UnknownOption,    // no option of the set has this name
    MissingValue,     // a valued option came last, or before "--" or another option
    UnexpectedValue,  // "-flag=value" for a flag
  };
  Kind kind = Kind::UnknownOption;
  std::string word;     // the word as given ("--colour=red")
  std::string option;   // the name after the dashes and before any '=' ("colour")
  std::string message;  // a complete sentence, e.g. unknown option "--colour"
};

class OptionParseResult;

// Parses words[first..] against `options` with the rules above. Words before
// `first` (a program name, for example) are ignored.
[[nodiscard]] ORVANE_API OptionParseResult ParseOptions(const OptionSet& options,
                                                        const std::vector<std::string>& words,
                                                        std::size_t first = 0);

// The outcome of one parse.
// Threads: a plain value, filled by ParseOptions; concurrent reads are safe.
class ORVANE_API OptionParseResult {
 public:
  // True when no error was found.
  bool Ok() const { return errors_.empty(); }
  // Whether the option was given (ASCII case ignored; a valued option counts
  // only when it received a value).
  bool IsSet(std::string_view name) const;
  // The last value of a valued option. False, `out` unchanged, when it was not given.
  [[nodiscard]] bool GetValue(std::string_view name, std::string& out) const;
  // Every value of a valued option, in order.
  std::vector<std::string> GetValues(std::string_view name) const;

  const std::vector<std::string>& Positionals() const { return positionals_; }
  const std::vector<OptionError>& Errors() const { return errors_; }

 private:
  friend OptionParseResult ParseOptions(const OptionSet&, const std::vector<std::string>&, std::size_t);
  void AddOption(const std::string& canonicalName, const std::string* value);
  void AddPositional(std::string word) { positionals_.push_back(std::move(word)); }
  void AddError(OptionError error) { errors_.push_back(std::move(error)); }

  struct Given {
    std::string name;  // the option's name as declared in the set
    bool hasValue = false;
    std::string value;
  };
  std::vector<Given> given_;
  std::vector<std::string> positionals_;
  std::vector<OptionError> errors_;
};

}  // namespace Kf::Console
