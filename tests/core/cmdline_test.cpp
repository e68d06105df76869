#include "orvane/cmdline.h"

#include <gtest/gtest.h>

#include "core/wide_text.h"

namespace {

using Strings = std::vector<std::string>;

Kf::CmdLine& ParseWords(const Strings& words) {
  std::vector<const char*> argv;
  for (const auto& word : words) argv.push_back(word.c_str());
  Kf::CmdLine& cmdLine = Kf::CmdLine::Instance();
  cmdLine.Parse(static_cast<int>(argv.size()), argv.data());
  return cmdLine;
}

std::string FileToOpen(const Kf::CmdLine& cmdLine) {
  GePath file("unchanged");
  return cmdLine.GetFileToOpen(file) ? file.ToString() : "none:" + file.ToString();
}

TEST(CmdLine, FileToOpenOnlyForOnePositionalWithoutFlags) {
  EXPECT_EQ(FileToOpen(ParseWords({"ide", "main.c"})), "main.c");
  EXPECT_EQ(FileToOpen(ParseWords({"ide", "a.c", "b.c"})), "none:unchanged");

  Kf::CmdLine& withDebugger = ParseWords({"ide", "-DBG", "main.c"});
  EXPECT_TRUE(withDebugger.ShouldStartDebugger());
  EXPECT_FALSE(withDebugger.StartAsMulticoreSlave());
  EXPECT_EQ(FileToOpen(withDebugger), "none:unchanged");

  Kf::CmdLine& slave = ParseWords({"ide", "--multicore_slave"});
  EXPECT_TRUE(slave.StartAsMulticoreSlave());
  EXPECT_FALSE(slave.ShouldStartDebugger());
  EXPECT_EQ(FileToOpen(slave), "none:unchanged");

  // Unknown options do not count as flags; "--" lets a file name start with '-'.
  Kf::CmdLine& unknown = ParseWords({"ide", "-nosplash", "--", "-odd.c"});
  EXPECT_EQ(FileToOpen(unknown), "-odd.c");
  ASSERT_EQ(unknown.GetParseResult().Errors().size(), 1u);
  EXPECT_EQ(unknown.GetParseResult().Errors()[0].message, "unknown option \"-nosplash\"");
}

TEST(CmdLine, ExecutableNameIsStoredButNeverParsed) {
  Kf::CmdLine& cmdLine = ParseWords({"-DBG"});
  EXPECT_FALSE(cmdLine.ShouldStartDebugger());
  EXPECT_EQ(FileToOpen(cmdLine), "none:unchanged");
  EXPECT_EQ(cmdLine.GetAllArgs(), Strings{"-DBG"});
  EXPECT_EQ(&Kf::CmdLineArgv(), &cmdLine.GetAllArgs());

  cmdLine.Parse(0, static_cast<const char* const*>(nullptr));
  EXPECT_TRUE(cmdLine.GetAllArgs().empty());
  const char* withNull[] = {"ide", nullptr};
  cmdLine.Parse(2, withNull);
  EXPECT_EQ(cmdLine.GetAllArgs(), (Strings{"ide", ""}));
  EXPECT_EQ(FileToOpen(cmdLine), "none:unchanged");
}

TEST(CmdLine, SecondParseForgetsTheFirst) {
  Kf::CmdLine& cmdLine = ParseWords({"ide", "-DBG", "-MULTICORE_SLAVE", "x", "-bogus"});
  std::shared_ptr<const Kf::Console::OptionSet> firstSet = cmdLine.GetOptionSet();
  ParseWords({"ide"});
  EXPECT_FALSE(cmdLine.ShouldStartDebugger());
  EXPECT_FALSE(cmdLine.StartAsMulticoreSlave());
  EXPECT_TRUE(cmdLine.GetParseResult().Ok());
  EXPECT_TRUE(cmdLine.GetParseResult().Positionals().empty());
  EXPECT_EQ(cmdLine.GetAllArgs(), Strings{"ide"});
  ParseWords({"ide", "main.c"});
  ParseWords({"ide"});
  EXPECT_EQ(FileToOpen(cmdLine), "none:unchanged");
  // The old set is still usable by whoever holds it.
  EXPECT_EQ(firstSet->HelpText(), cmdLine.GetOptionSet()->HelpText());
  EXPECT_EQ(cmdLine.GetOptionSet()->HelpText(),
            "  -DBG              Launch the debugger\n"
            "  -MULTICORE_SLAVE  Start as a multicore slave\n");
}

// "Grüße-😀.c": two-byte, and four-byte (outside the Basic Multilingual Plane) sequences.
const std::string kUtf8Name = "Gr\xC3\xBC\xC3\x9F" "e-\xF0\x9F\x98\x80.c";

TEST(CmdLine, NonAsciiArgumentsThroughBothOverloads) {
  Kf::CmdLine& cmdLine = ParseWords({"ide", kUtf8Name});
  EXPECT_EQ(cmdLine.GetAllArgs()[1], kUtf8Name);
  EXPECT_EQ(FileToOpen(cmdLine), kUtf8Name);

  const wchar_t* wide[] = {L"ide\u00e9", L"Gr\u00fc\u00dfe-\U0001F600.c", L"-dbg"};
  cmdLine.Parse(3, wide);
  EXPECT_EQ(cmdLine.GetAllArgs(), (Strings{"ide\xC3\xA9", kUtf8Name, "-dbg"}));
  EXPECT_TRUE(cmdLine.ShouldStartDebugger());

  const wchar_t* one[] = {L"ide", L"Gr\u00fc\u00dfe-\U0001F600.c"};
  cmdLine.Parse(2, one);
  EXPECT_EQ(FileToOpen(cmdLine), kUtf8Name);
}

TEST(WideText, Utf16SurrogatesPairOrBecomeReplacementCharacters) {
  using Kf::Detail::Utf16ToUtf8;
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(Utf16ToUtf8(u"a\xD83D\xDE00z"), "a\xF0\x9F\x98\x80z");
  EXPECT_EQ(Utf16ToUtf8(u"\U0010FFFF"), "\xF4\x8F\xBF\xBF");
  EXPECT_EQ(Utf16ToUtf8(std::u16string(1, char16_t(0xD83D))), replacement);                    // high at end
  EXPECT_EQ(Utf16ToUtf8(std::u16string{char16_t(0xDE00), u'x'}), replacement + "x");           // low alone
  EXPECT_EQ(Utf16ToUtf8(std::u16string{char16_t(0xD83D), u'x'}), replacement + "x");           // high, no low
  EXPECT_EQ(Utf16ToUtf8(std::u16string{char16_t(0xD83D), char16_t(0xD83D), char16_t(0xDE00)}),  // high, pair
            replacement + "\xF0\x9F\x98\x80");
  EXPECT_EQ(Utf16ToUtf8(u"\u07FF\u0800"), "\xDF\xBF\xE0\xA0\x80");
}

TEST(WideText, Utf32InvalidValuesBecomeReplacementCharactersAndPairsJoin) {
  using Kf::Detail::Utf32ToUtf8;
  const std::string replacement = "\xEF\xBF\xBD";
  EXPECT_EQ(Utf32ToUtf8(std::u32string{char32_t(0xD800), char32_t(0x110000), char32_t(0x7F)}),
            replacement + replacement + "\x7F");
  // UTF-16 widened unit by unit: the pair is still one character.
  EXPECT_EQ(Utf32ToUtf8(std::u32string{char32_t(0xD83D), char32_t(0xDE00)}), "\xF0\x9F\x98\x80");
  if constexpr (sizeof(wchar_t) == 4)
    EXPECT_EQ(Kf::Detail::WideToUtf8(std::wstring{static_cast<wchar_t>(-1), L'a'}), replacement + "a");
}

}  // namespace
