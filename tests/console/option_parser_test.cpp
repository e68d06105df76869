#include "orvane/optionparser.h"

#include <gtest/gtest.h>

namespace {

using Kf::Console::OptionError;
using Kf::Console::OptionSet;
using Kf::Console::ParseOptions;
using Strings = std::vector<std::string>;

OptionSet MakeSet() {
  OptionSet set;
  EXPECT_TRUE(set.AddFlag("DBG", "Launch the debugger"));
  EXPECT_TRUE(set.AddFlag("v", "Verbose"));
  EXPECT_TRUE(set.AddValue("out", "Output file", "FILE"));
  return set;
}

std::vector<OptionError::Kind> Kinds(const Kf::Console::OptionParseResult& result) {
  std::vector<OptionError::Kind> kinds;
  for (const auto& error : result.Errors()) kinds.push_back(error.kind);
  return kinds;
}

TEST(OptionParser, MixesOptionsAndPositionalsIgnoringDashCountAndCase) {
  auto result = ParseOptions(MakeSet(), {"a.c", "-DBG", "b.c", "---dbg", "--out=x.o", "-OUT", "y.o", "c.c", "-"});
  EXPECT_TRUE(result.Ok());
  EXPECT_TRUE(result.IsSet("dbg"));
  EXPECT_FALSE(result.IsSet("v"));
  EXPECT_EQ(result.Positionals(), (Strings{"a.c", "b.c", "c.c", "-"}));
  EXPECT_EQ(result.GetValues("out"), (Strings{"x.o", "y.o"}));
  std::string out = "untouched";
  EXPECT_TRUE(result.GetValue("Out", out));
  EXPECT_EQ(out, "y.o");
  EXPECT_FALSE(result.GetValue("v", out));
  EXPECT_EQ(out, "y.o");
}

TEST(OptionParser, DoubleDashEndsOptionsOnce) {
  auto result = ParseOptions(MakeSet(), {"-v", "--", "-DBG", "--", "--out", "x"});
  EXPECT_TRUE(result.Ok());
  EXPECT_TRUE(result.IsSet("v"));
  EXPECT_FALSE(result.IsSet("DBG"));
  EXPECT_EQ(result.Positionals(), (Strings{"-DBG", "--", "--out", "x"}));
}

TEST(OptionParser, ValuedOptionWithoutValueIsReported) {
  auto atEnd = ParseOptions(MakeSet(), {"main.c", "--out"});
  ASSERT_EQ(Kinds(atEnd), (std::vector{OptionError::Kind::MissingValue}));
  EXPECT_EQ(atEnd.Errors()[0].word, "--out");
  EXPECT_EQ(atEnd.Errors()[0].option, "out");
  EXPECT_NE(atEnd.Errors()[0].message.find("\"--out\" needs a value"), std::string::npos);
  EXPECT_FALSE(atEnd.IsSet("out"));
  EXPECT_EQ(atEnd.Positionals(), Strings{"main.c"});

  // A known option or "--" is not swallowed as the value; anything else is.
  auto beforeOption = ParseOptions(MakeSet(), {"-out", "-v", "-out", "--", "x"});
  EXPECT_EQ(Kinds(beforeOption), (std::vector{OptionError::Kind::MissingValue, OptionError::Kind::MissingValue}));
  EXPECT_TRUE(beforeOption.IsSet("v"));
  EXPECT_EQ(beforeOption.Positionals(), Strings{"x"});

  auto dashValue = ParseOptions(MakeSet(), {"-out", "-5", "-out="});
  EXPECT_TRUE(dashValue.Ok());
  EXPECT_EQ(dashValue.GetValues("out"), (Strings{"-5", ""}));
}

TEST(OptionParser, UnknownOptionsAndFlagValuesAreReportedAndParsingGoesOn) {
  auto result = ParseOptions(MakeSet(), {"--colour=red", "---", "-DBG=1", "-v", "file"});
  EXPECT_EQ(Kinds(result), (std::vector{OptionError::Kind::UnknownOption, OptionError::Kind::UnknownOption,
                                        OptionError::Kind::UnexpectedValue}));
  EXPECT_EQ(result.Errors()[0].option, "colour");
  EXPECT_EQ(result.Errors()[0].message, "unknown option \"--colour=red\"");
  EXPECT_EQ(result.Errors()[2].message, "option \"-DBG\" takes no value (given \"-DBG=1\")");
  EXPECT_FALSE(result.IsSet("DBG"));
  EXPECT_TRUE(result.IsSet("v"));
  EXPECT_EQ(result.Positionals(), Strings{"file"});
}

TEST(OptionParser, WordsBeforeFirstAreIgnored) {
  auto result = ParseOptions(MakeSet(), {"-DBG", "x"}, 1);
  EXPECT_FALSE(result.IsSet("DBG"));
  EXPECT_EQ(result.Positionals(), Strings{"x"});
  EXPECT_TRUE(ParseOptions(MakeSet(), {"-DBG"}, 5).Positionals().empty());
}

TEST(OptionSet, RejectsNamesItCouldNotMatch) {
  OptionSet set = MakeSet();
  EXPECT_FALSE(set.AddFlag("dbg", "same name in another case"));
  EXPECT_FALSE(set.AddValue("OUT", "again"));
  for (const char* bad : {"", "-x", "a=b", "a b"}) EXPECT_FALSE(set.AddFlag(bad, "bad")) << bad;
  EXPECT_EQ(set.Options().size(), 3u);
  EXPECT_EQ(set.Find("Dbg"), &set.Options()[0]);
  EXPECT_EQ(set.Find("nope"), nullptr);
}

TEST(OptionSet, HelpTextAlignsHelpInOneColumn) {
  OptionSet set = MakeSet();
  ASSERT_TRUE(set.AddFlag("größe", "Non-ASCII name\nsecond line"));
  ASSERT_TRUE(set.AddFlag("an-option-name-much-longer-than-the-column", "Long"));
  ASSERT_TRUE(set.AddFlag("quiet", ""));
  EXPECT_EQ(set.HelpText("--"),
            "  --DBG       Launch the debugger\n"
            "  --v         Verbose\n"
            "  --out=FILE  Output file\n"
            "  --größe     Non-ASCII name\n"
            "              second line\n"
            "  --an-option-name-much-longer-than-the-column\n"
            "              Long\n"
            "  --quiet\n");
  EXPECT_EQ(OptionSet().HelpText(), "");
}

}  // namespace
