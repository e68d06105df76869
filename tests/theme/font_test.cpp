#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "orvane/storage.h"
#include "theme/theme_fixture.h"

namespace Kf::Testing {
namespace {

TEST(XFontTest, ConstructorsAndExactComparison) {
  XFont plain("Consolas");
  EXPECT_EQ(plain.size, 10u);
  EXPECT_EQ(plain.style, XFont::Regular);
  EXPECT_FALSE(XFont("A") == XFont("a"));
  EXPECT_TRUE(XFont("A") != XFont("a"));
  EXPECT_EQ(XFont("A", 12, XFont::Bold), XFont("A", std::uint64_t{12}, XFont::Bold));
  EXPECT_NE(XFont("A", 12, XFont::Bold), XFont("A", 12, XFont::Italic));
  EXPECT_NE(XFont("A", 12, XFont::Bold), XFont("A", 11, XFont::Bold));
  // A negative int size widens with its sign.
  EXPECT_EQ(XFont("A", -1, XFont::Regular).size, ~std::uint64_t{0});
  EXPECT_EQ(XFont("Verdana", 9, XFont::Bold).Description(), "Verdana 9 pt Bold");
}

TEST(XFontTest, StorageTextRoundTripsEveryValue) {
  using Limits = std::numeric_limits<std::int32_t>;
  const auto style = [](std::int32_t n) { return static_cast<XFont::Style>(n); };
  for (const XFont& font : {XFont("Noto Sans JP", 10, XFont::Regular), XFont("ＭＳ 明朝", 12, XFont::Italic),
                            XFont("Odd;Face; with ;semicolons", 1000, XFont::Bold), XFont(" padded ", 1, XFont::Bold),
                            XFont("", 10, style(0)), XFont("A", std::uint64_t{0}, style(3)),
                            XFont("A", ~std::uint64_t{0}, style(-1)), XFont("7;Bold;x", 5000, style(Limits::max())),
                            XFont("A", 12, style(Limits::min()))}) {
    XFont back;
    ASSERT_TRUE(XFont::FromStorageText(font.ToStorageText(), back)) << font.ToStorageText();
    EXPECT_EQ(back, font) << font.ToStorageText();
  }
  EXPECT_EQ(XFont("Noto Sans JP", 10, XFont::Regular).ToStorageText(), "10;Regular;Noto Sans JP");
  EXPECT_EQ(XFont("Consolas", 9, style(5)).ToStorageText(), "9;5;Consolas");
}

TEST(XFontTest, StorageTextRejectsMalformedValues) {
  XFont out("Unchanged");
  for (const char* text : {"", "10", "10;Regular", "x;Regular;A", ";Regular;A", "-5;Regular;A", "+5;Regular;A",
                           "10;Heavy;A", "10;regular;A", "10;;A", "10;+1;A", "10; 1;A", "10;7x;A", "10;2147483648;A",
                           " 10;Regular;A", "99999999999999999999;Bold;A"})
    EXPECT_FALSE(XFont::FromStorageText(text, out)) << text;
  EXPECT_EQ(out.face, "Unchanged");
}

using EditorFontInfoTest = ThemeTest;

TEST_F(EditorFontInfoTest, DefaultsAndPerCategoryAccess) {
  EditorFontInfo info = colors_;
  EXPECT_EQ(info.FontCount(), 22);
  EXPECT_EQ(info.GetBaseFont(), XFont("Consolas", 10, XFont::Regular));
  EXPECT_TRUE(info.IsBackgroundColorAutomatic());
  info.SetBaseFont(XFont("Mono", 11, XFont::Regular));
  info.SetStyle(Cat(9), XFont::Italic);
  info.SetColor(Cat(9), Hex(0x008000), false);
  EXPECT_EQ(info.LookupFont(Cat(9)), XFont("Mono", 11, XFont::Italic));
  EXPECT_EQ(info.LookupColor(Cat(9)), Hex(0x008000));
  EXPECT_FALSE(info.IsColorAutomatic(Cat(9)));

  EditorFontInfo copy(info);
  EXPECT_EQ(copy, info);
  copy.SetStyle(Cat(9), XFont::Bold);
  EXPECT_NE(copy, info);
  EXPECT_EQ(info.LookupStyle(Cat(9)), XFont::Italic);  // deep copy
  copy = info;
  EXPECT_EQ(copy, info);

  SetLanguage("JPN");
  info.Reset();
  EXPECT_EQ(info.GetBaseFont().face, "MS Mincho");
}

TEST_F(EditorFontInfoTest, HasStylingExceptTwentyAndTwentyOne) {
  EXPECT_TRUE(EditorFontInfo::HasStyling(Cat(0)));
  EXPECT_TRUE(EditorFontInfo::HasStyling(Cat(19)));
  EXPECT_FALSE(EditorFontInfo::HasStyling(Cat(20)));
  EXPECT_FALSE(EditorFontInfo::HasStyling(Cat(21)));
  EXPECT_TRUE(EditorFontInfo::HasStyling(Cat(22)));
}

TEST_F(EditorFontInfoTest, ExternCategoriesStopAtSeventyTwoRecords) {
  EditorFontInfo info(colors_);
  const EditorFontInfo::FontInfo record{XFont::Bold, Hex(0x123456), false};
  for (int expected = 22; expected < 72; ++expected) ASSERT_EQ(info.StoreExternFontInfo(record), expected);
  EXPECT_EQ(info.FontCount(), 72);
  EXPECT_EQ(info.StoreExternFontInfo(record), 22);  // the 73rd
  EXPECT_EQ(info.FontCount(), 72);
  EXPECT_EQ(info.LookupColor(Cat(71)), Hex(0x123456));
  info.RemoveAllExternFontInfos();
  EXPECT_EQ(info.FontCount(), 22);
}

TEST_F(EditorFontInfoTest, AutomaticColoursFollowTheHost) {
  XColor text{1, 1, 1, 1};
  XColor background{2, 2, 2, 1};
  EditorFontInfo info(IHostColorInfo([&] { return text; }, [&] { return background; }));
  info.SetColor(Cat(3), Hex(0x0000FF), false);
  text = XColor{9, 9, 9, 1};
  background = XColor{8, 8, 8, 1};
  info.UpdateAutomaticColor();
  EXPECT_EQ(info.LookupColor(Cat(0)), (XColor{9, 9, 9, 1}));
  EXPECT_EQ(info.LookupColor(Cat(3)), Hex(0x0000FF));
  EXPECT_EQ(info.GetBackgroundColor(), (XColor{8, 8, 8, 1}));
  info.SetBackgroundColor(Hex(0x101010), false);
  background = XColor{7, 7, 7, 1};
  info.UpdateAutomaticColor();
  EXPECT_EQ(info.GetBackgroundColor(), Hex(0x101010));
}

// The automatic colours differ from the host's, so a load that refreshed
// them instead of returning the stored values would not compare equal; the
// styles include numbers beyond the three named ones.
EditorFontInfo Sample(const IHostColorInfo& colors) {
  EditorFontInfo info(colors);
  info.SetBaseFont(XFont("DejaVu Sans Mono", 13, XFont::Regular));
  info.SetBackgroundColor(Hex(0x202020), true);
  for (int c = 0; c < 22; ++c) {
    info.SetColor(Cat(c), XColor{static_cast<std::uint8_t>(c * 10), 100, 200, 1}, c % 3 == 0 && c != 0);
    info.SetStyle(Cat(c), static_cast<XFont::Style>(c % 5 - 1));
  }
  return info;
}

TEST_F(EditorFontInfoTest, SaveAndLoadRoundTripInBothLanguages) {
  for (const char* language : {"ENU", "JPN"}) {
    SetLanguage(language);
    const EditorFontInfo saved = Sample(colors_);
    ASSERT_TRUE(saved.Save(*global_, std::string("Editor") + language));
    EditorFontInfo loaded(colors_);
    ASSERT_TRUE(loaded.Load(*global_, std::string("Editor") + language));
    EXPECT_EQ(loaded, saved) << language;
  }
  // The Japanese save wrote "_JPN" records only for the comment-like categories.
  KfPerIStream jpn(*global_, "EditorJPN", "XFont_9_JPN");
  KfPerIStream plain(*global_, "EditorJPN", "XFont_3");
  KfPerIStream noJpn(*global_, "EditorJPN", "XFont_3_JPN");
  EXPECT_TRUE(jpn.Exists());
  EXPECT_TRUE(plain.Exists());
  EXPECT_FALSE(noJpn.Exists());
}

TEST_F(EditorFontInfoTest, StoredCountAboveTwentyTwoReadsOnlyTheBuiltIns) {
  const EditorFontInfo saved = Sample(colors_);
  ASSERT_TRUE(saved.Save(*global_, "E"));
  {
    KfPerOStream out(*global_, "E", "XFontBase");
    out << saved.GetBaseFont().ToStorageText() << 40u;
  }
  // A record past 21 is never read, even when it is garbage.
  ASSERT_TRUE(global_->Store("E", "XFont_22", std::string("garbage")));
  EditorFontInfo loaded(colors_);
  ASSERT_TRUE(loaded.Load(*global_, "E"));
  EXPECT_EQ(loaded.FontCount(), 22);
  EXPECT_EQ(loaded, saved);
}

TEST_F(EditorFontInfoTest, MissingRecordFallsBackToTheOtherVariant) {
  // Only plain records exist; a Japanese session reads them in its second pass.
  const EditorFontInfo saved = Sample(colors_);
  ASSERT_TRUE(saved.Save(*global_, "E"));
  SetLanguage("JPN");
  EditorFontInfo loaded(colors_);
  ASSERT_TRUE(loaded.Load(*global_, "E"));
  EXPECT_EQ(loaded.LookupColor(Cat(9)), saved.LookupColor(Cat(9)));
  EXPECT_EQ(loaded.GetBaseFont(), saved.GetBaseFont());

  // A Japanese set with one record missing is abandoned whole for the plain one.
  EditorFontInfo japanese = Sample(colors_);
  japanese.SetColor(Cat(9), Hex(0xABCDEF), false);
  ASSERT_TRUE(japanese.Save(*global_, "E"));
  ASSERT_TRUE(global_->DeleteKey("E", "XFont_15_JPN"));
  ASSERT_TRUE(loaded.Load(*global_, "E"));
  EXPECT_EQ(loaded.LookupColor(Cat(9)), saved.LookupColor(Cat(9)));
}

TEST_F(EditorFontInfoTest, LoadFailsAndResetsWhenNeitherVariantIsComplete) {
  EditorFontInfo loaded = Sample(colors_);
  EXPECT_FALSE(loaded.Load(*global_, "Nothing"));
  EXPECT_EQ(loaded, EditorFontInfo(colors_));

  ASSERT_TRUE(Sample(colors_).Save(*global_, "E"));
  ASSERT_TRUE(global_->Store("E", "XFont_4", std::string("not a record")));
  EXPECT_FALSE(loaded.Load(*global_, "E"));
  EXPECT_EQ(loaded, EditorFontInfo(colors_));

  // Values out of range are refused, not wrapped.
  ASSERT_TRUE(Sample(colors_).Save(*global_, "F"));
  {
    KfPerOStream out(*global_, "F", "XFont_2");
    out << std::int32_t{1} << 300u << 0u << 0u << false;
  }
  EXPECT_FALSE(loaded.Load(*global_, "F"));
}

}  // namespace
}  // namespace Kf::Testing
