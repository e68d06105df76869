#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "accel_test_support.h"
#include "orvane/accel.h"

namespace Kf::Accel {
namespace {

using Testing::Keys;

TEST(TextFrontEnd, ParsesAndWritesKnownKeyTexts) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"Ctrl+Shift+P", "Ctrl+Shift+P"},   {"ctrl+shift+p", "Ctrl+Shift+P"}, {"Shift+Control+p", "Ctrl+Shift+P"},
      {"Ctrl+K Ctrl+C", "Ctrl+K Ctrl+C"}, {"  Ctrl+K   c ", "Ctrl+K C"},    {"F5", "F5"},
      {"alt+f24", "Alt+F24"},             {"Ctrl++", "Ctrl+Plus"},          {"+", "Plus"},
      {"Ctrl+Alt+Del", "Ctrl+Alt+Delete"}, {"Escape", "Esc"},              {"Ctrl+/", "Ctrl+/"},
      {"Win+E", "Meta+E"},                {"Shift+Alt+Meta+Ctrl+Space", "Ctrl+Alt+Shift+Meta+Space"},
      {"PgDn", "PageDown"},               {"Ctrl+Return", "Ctrl+Enter"},
  };
  for (const auto& [input, written] : cases) {
    KeySequence sequence;
    std::string error;
    ASSERT_TRUE(TextFrontEnd::Parse(input, sequence, error)) << input << ": " << error;
    EXPECT_EQ(TextFrontEnd::Format(sequence), written) << input;
    KeySequence again;
    ASSERT_TRUE(TextFrontEnd::Parse(written, again, error)) << written;
    EXPECT_TRUE(again == sequence) << written << " reads back as the same sequence";
  }
}

TEST(TextFrontEnd, BadTextIsAClearErrorAndLeavesTheOutputAlone) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "empty"},
      {"   ", "empty"},
      {"Ctrl+", "missing"},
      {"+P", "missing"},
      {"Ctrl+Shift", "no key"},
      {"Ctrl+Ctrl+A", "twice"},
      {"Hyper+A", "unknown modifier"},
      {"Ctrl+Foo", "unknown key"},
      {"F25", "unknown key"},
      {"F0", "unknown key"},
      {"F01", "unknown key"},
      {"Ctrl+\xC3\xA9", "unknown key"},
      {"A B C D E", "more than 4"},
      {"Ctrl++A", "empty modifier"},
  };
  for (const auto& [input, expected] : cases) {
    KeySequence sequence = Testing::Keys("F1");
    std::string error;
    EXPECT_FALSE(TextFrontEnd::Parse(input, sequence, error)) << input;
    EXPECT_NE(error.find(expected), std::string::npos) << input << " gave: " << error;
    EXPECT_EQ(TextFrontEnd::Format(sequence), "F1") << input;
  }
}

TEST(TextFrontEnd, NumbersMatchTheDocumentedEncoding) {
  Testing::ScopedTextFrontEnd frontEnd;  // numeric construction goes through the registered front end
  auto strokes = TextFrontEnd::Strokes(Keys("Ctrl+Shift+P F7"));
  ASSERT_EQ(strokes.size(), 2u);
  EXPECT_EQ(strokes[0].modifiers, TextFrontEnd::Ctrl | TextFrontEnd::Shift);
  EXPECT_EQ(strokes[0].key, static_cast<unsigned int>('P'));
  EXPECT_EQ(strokes[1].modifiers, 0u);
  EXPECT_EQ(strokes[1].key, TextFrontEnd::F1 + 6);

  EXPECT_EQ(TextFrontEnd::Format(KeySequence(TextFrontEnd::Ctrl, 'S')), "Ctrl+S");
  EXPECT_EQ(TextFrontEnd::Format(KeySequence(TextFrontEnd::Alt, TextFrontEnd::Left)), "Alt+Left");
  EXPECT_EQ(TextFrontEnd::Format(KeySequence(AccelKey(TextFrontEnd::Escape))), "Esc");
  std::unique_ptr<KeySequence::IKeySequenceImpl> chord(
      AccelFrontEnd()->CreateChord(AccelKey(TextFrontEnd::Ctrl, 'K'), AccelKey(TextFrontEnd::Ctrl, 'C')));
  EXPECT_EQ(TextFrontEnd::Format(KeySequence(chord.release())), "Ctrl+K Ctrl+C");
  EXPECT_EQ(TextFrontEnd::Format(KeySequence()), "");
  EXPECT_EQ(TextFrontEnd::FormatStroke({0, 0}), "") << "key 0 is no key";
  EXPECT_FALSE(static_cast<bool>(TextFrontEnd::FromStrokes({})));
}

TEST(TextFrontEnd, SequencesFormAStrictOrder) {
  std::map<KeySequence, std::string> table;
  for (const char* text : {"Ctrl+K Ctrl+C", "F5", "Ctrl+F5", "Ctrl+K", "A", "Shift+F5", "Ctrl+K Ctrl+U"})
    table[Keys(text)] = text;
  EXPECT_EQ(table.size(), 7u);
  std::vector<std::string> order;
  for (const auto& [key, text] : table) order.push_back(text);
  EXPECT_EQ(order, (std::vector<std::string>{"A", "Ctrl+K", "Ctrl+K Ctrl+C", "Ctrl+K Ctrl+U", "F5", "Ctrl+F5",
                                             "Shift+F5"}));
  EXPECT_FALSE(Keys("F5") < Keys("F5"));
  EXPECT_TRUE(Keys("ctrl+k") == Keys("Control+K"));
  EXPECT_FALSE(Keys("Ctrl+K") == Keys("Ctrl+K Ctrl+C"));
}

}  // namespace
}  // namespace Kf::Accel
