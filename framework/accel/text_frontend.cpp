// TextFrontEnd: key numbers, key text parsing and formatting, and the key and
// sequence objects it makes.
#include <algorithm>
#include <cctype>
#include <typeinfo>
#include <utility>

#include "accel/text_keys.h"
#include "orvane/accel.h"

namespace Kf::Accel {
namespace {

using Detail::Stroke;
using Detail::TextKey;
using Detail::TextSequence;

struct Name {
  const char* text;
  unsigned int value;
};

// The first name of a value is the one written; the others are accepted.
constexpr Name kModifierNames[] = {
    {"Ctrl", TextFrontEnd::Ctrl},   {"Control", TextFrontEnd::Ctrl}, {"Alt", TextFrontEnd::Alt},
    {"Shift", TextFrontEnd::Shift}, {"Meta", TextFrontEnd::Meta},    {"Win", TextFrontEnd::Meta},
    {"Cmd", TextFrontEnd::Meta},    {"Super", TextFrontEnd::Meta},
};
constexpr unsigned int kModifierOrder[] = {TextFrontEnd::Ctrl, TextFrontEnd::Alt, TextFrontEnd::Shift,
                                           TextFrontEnd::Meta};

constexpr Name kKeyNames[] = {
    {"Enter", TextFrontEnd::Enter},       {"Return", TextFrontEnd::Enter},     {"Esc", TextFrontEnd::Escape},
    {"Escape", TextFrontEnd::Escape},     {"Tab", TextFrontEnd::Tab},          {"Backspace", TextFrontEnd::Backspace},
    {"Insert", TextFrontEnd::Insert},     {"Ins", TextFrontEnd::Insert},       {"Delete", TextFrontEnd::Delete},
    {"Del", TextFrontEnd::Delete},        {"Home", TextFrontEnd::Home},        {"End", TextFrontEnd::End},
    {"PageUp", TextFrontEnd::PageUp},     {"PgUp", TextFrontEnd::PageUp},      {"PageDown", TextFrontEnd::PageDown},
    {"PgDn", TextFrontEnd::PageDown},     {"Left", TextFrontEnd::Left},        {"Up", TextFrontEnd::Up},
    {"Right", TextFrontEnd::Right},       {"Down", TextFrontEnd::Down},        {"Pause", TextFrontEnd::Pause},
    {"Space", TextFrontEnd::Space},       {"Plus", '+'},
};
constexpr unsigned int kFunctionKeys = 24;

bool SameWord(const std::string& a, const char* b) {
  std::size_t i = 0;
  for (; i < a.size() && b[i]; ++i)
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
  return i == a.size() && !b[i];
}

bool LookUp(const Name* begin, const Name* end, const std::string& word, unsigned int& value) {
  for (const Name* name = begin; name != end; ++name)
    if (SameWord(word, name->text)) {
      value = name->value;
      return true;
    }
  return false;
}

bool ParseKeyName(const std::string& word, unsigned int& key) {
  if (word.size() == 1) {
    auto c = static_cast<unsigned char>(word[0]);
    if (c <= 0x20 || c >= 0x7f) return false;
    key = static_cast<unsigned int>(std::toupper(c));
    return true;
  }
  if (LookUp(std::begin(kKeyNames), std::end(kKeyNames), word, key)) return true;
  if ((word[0] == 'F' || word[0] == 'f') && word.size() <= 3 && std::isdigit(static_cast<unsigned char>(word[1])) &&
      word[1] != '0' && std::all_of(word.begin() + 1, word.end(), [](char c) { return std::isdigit(static_cast<unsigned char>(c)); })) {
    unsigned int n = static_cast<unsigned int>(std::stoul(word.substr(1)));
    if (n >= 1 && n <= kFunctionKeys) {
      key = TextFrontEnd::F1 + n - 1;
      return true;
    }
  }
  return false;
}

std::string KeyName(unsigned int key) {
  if (key > 0x20 && key < 0x7f && key != '+' && !(key >= 'a' && key <= 'z')) return std::string(1, static_cast<char>(key));
  for (const Name& name : kKeyNames)
    if (name.value == key) return name.text;
  if (key >= TextFrontEnd::F1 && key < TextFrontEnd::F1 + kFunctionKeys) return "F" + std::to_string(key - TextFrontEnd::F1 + 1);
  return std::string();
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

const TextSequence* AsText(const KeySequence& sequence) {
  return dynamic_cast<const TextSequence*>(sequence.Impl());
}

Stroke StrokeOf(const AccelKey& key) {
  auto* text = dynamic_cast<const TextKey*>(key.Impl());
  return text ? text->Get() : Stroke();
}

}  // namespace

namespace Detail {

bool StrokeLess(const Stroke& a, const Stroke& b) {
  if (a.key != b.key) return a.key < b.key;
  return a.modifiers < b.modifiers;
}

bool TextKey::Equal(const IAccelKeyImpl* other) {
  auto* text = dynamic_cast<const TextKey*>(other);
  return text && StrokeEqual(stroke_, text->stroke_);
}

bool TextKey::LessThan(const IAccelKeyImpl* other) {
  auto* text = dynamic_cast<const TextKey*>(other);
  // Objects of another front end order by type, so a mixed table still has a strict order.
  if (!text) return typeid(*this).before(typeid(*other));
  return StrokeLess(stroke_, text->stroke_);
}

bool TextSequence::Equal(const IKeySequenceImpl* other) {
  auto* text = dynamic_cast<const TextSequence*>(other);
  return text && std::equal(strokes_.begin(), strokes_.end(), text->strokes_.begin(), text->strokes_.end(), StrokeEqual);
}

bool TextSequence::LessThan(const IKeySequenceImpl* other) {
  auto* text = dynamic_cast<const TextSequence*>(other);
  if (!text) return typeid(*this).before(typeid(*other));
  return std::lexicographical_compare(strokes_.begin(), strokes_.end(), text->strokes_.begin(), text->strokes_.end(),
                                      StrokeLess);
}

std::string FormatStrokes(const std::vector<Stroke>& strokes) {
  std::string text;
  for (const Stroke& stroke : strokes) {
    if (!text.empty()) text += ' ';
    text += TextFrontEnd::FormatStroke(stroke);
  }
  return text;
}

}  // namespace Detail

TextFrontEnd::TextFrontEnd(std::string storageKey) : storageKey_(std::move(storageKey)) {}

AccelKey::IAccelKeyImpl* TextFrontEnd::CreateKey(unsigned int modifiers, unsigned int key) {
  return new TextKey(Stroke{modifiers, key});
}

KeySequence::IKeySequenceImpl* TextFrontEnd::CreateChord(const AccelKey& first, const AccelKey& second) {
  return new TextSequence({StrokeOf(first), StrokeOf(second)});
}

KeySequence::IKeySequenceImpl* TextFrontEnd::CreateKeySequence(const AccelKey& key) {
  return new TextSequence({StrokeOf(key)});
}

void TextFrontEnd::GetStorageKey(std::string& out) { out = storageKey_; }

bool TextFrontEnd::ParseStroke(const std::string& text, Stroke& out, std::string& error) {
  if (text.empty()) {
    error = "empty key stroke";
    return false;
  }
  // "+" alone and a trailing "++" name the plus key itself.
  std::string modifierPart;
  std::string keyWord;
  if (text == "+") {
    keyWord = "+";
  } else if (text.size() >= 2 && text.compare(text.size() - 2, 2, "++") == 0) {
    modifierPart = text.substr(0, text.size() - 2);
    keyWord = "+";
    if (modifierPart.empty()) {
      error = "unexpected '+' in " + Quoted(text);
      return false;
    }
  } else {
    std::size_t lastPlus = text.rfind('+');
    if (lastPlus == std::string::npos) {
      keyWord = text;
    } else {
      modifierPart = text.substr(0, lastPlus);
      keyWord = text.substr(lastPlus + 1);
      if (keyWord.empty() || modifierPart.empty()) {
        error = "a key is missing around '+' in " + Quoted(text);
        return false;
      }
    }
  }

  Stroke stroke;
  std::size_t start = 0;
  while (!modifierPart.empty() && start <= modifierPart.size()) {
    std::size_t plus = modifierPart.find('+', start);
    std::string word = modifierPart.substr(start, plus == std::string::npos ? std::string::npos : plus - start);
    unsigned int bit = 0;
    if (word.empty()) {
      error = "empty modifier in " + Quoted(text);
      return false;
    }
    if (!LookUp(std::begin(kModifierNames), std::end(kModifierNames), word, bit)) {
      error = "unknown modifier " + Quoted(word) + " in " + Quoted(text) + " (use Ctrl, Alt, Shift or Meta)";
      return false;
    }
    if (stroke.modifiers & bit) {
      error = "modifier " + Quoted(word) + " given twice in " + Quoted(text);
      return false;
    }
    stroke.modifiers |= bit;
    if (plus == std::string::npos) break;
    start = plus + 1;
  }

  unsigned int ignored = 0;
  if (LookUp(std::begin(kModifierNames), std::end(kModifierNames), keyWord, ignored)) {
    error = Quoted(text) + " has modifiers but no key";
    return false;
  }
  if (!ParseKeyName(keyWord, stroke.key)) {
    error = "unknown key " + Quoted(keyWord) + " in " + Quoted(text);
    return false;
  }
  out = stroke;
  return true;
}

bool TextFrontEnd::Parse(const std::string& text, KeySequence& out, std::string& error) {
  std::vector<Stroke> strokes;
  std::size_t pos = 0;
  while (true) {
    pos = text.find_first_not_of(" \t", pos);
    if (pos == std::string::npos) break;
    std::size_t end = text.find_first_of(" \t", pos);
    std::string word = text.substr(pos, end == std::string::npos ? std::string::npos : end - pos);
    if (strokes.size() == kMaxStrokes) {
      error = "more than " + std::to_string(kMaxStrokes) + " strokes in " + Quoted(text);
      return false;
    }
    Stroke stroke;
    if (!ParseStroke(word, stroke, error)) return false;
    strokes.push_back(stroke);
    if (end == std::string::npos) break;
    pos = end;
  }
  if (strokes.empty()) {
    error = "empty key text";
    return false;
  }
  out = KeySequence(new TextSequence(std::move(strokes)));
  return true;
}

std::string TextFrontEnd::FormatStroke(const Stroke& stroke) {
  std::string key = KeyName(stroke.key);
  if (key.empty()) return key;
  std::string text;
  for (unsigned int bit : kModifierOrder) {
    if (stroke.modifiers & bit) {
      for (const Name& name : kModifierNames)
        if (name.value == bit) {
          text += name.text;
          break;
        }
      text += '+';
    }
  }
  return text + key;
}

std::string TextFrontEnd::Format(const KeySequence& sequence) {
  const TextSequence* text = AsText(sequence);
  return text ? Detail::FormatStrokes(text->Get()) : std::string();
}

std::vector<TextFrontEnd::Stroke> TextFrontEnd::Strokes(const KeySequence& sequence) {
  const TextSequence* text = AsText(sequence);
  return text ? text->Get() : std::vector<Stroke>();
}

KeySequence TextFrontEnd::FromStrokes(const std::vector<Stroke>& strokes) {
  if (strokes.empty() || strokes.size() > kMaxStrokes) return KeySequence();
  return KeySequence(new TextSequence(strokes));
}

}  // namespace Kf::Accel
