// The editor's per-category fonts and colours, and their storage records.
#include <boost/format.hpp>

#include "orvane/storage.h"
#include "orvane/theme.h"
#include "theme/theme_language.h"

namespace Kf {

struct EditorFontInfo::Impl {
  explicit Impl(const IHostColorInfo& colors) : hostColors(colors) {}

  IHostColorInfo hostColors;
  XFont baseFont;
  std::vector<FontInfo> infos;
  bool backgroundAutomatic = true;
  XColor background;
};

namespace {

// Only the comment-like categories have records of their own for a Japanese
// user interface.
bool HasJapaneseRecord(int category) { return category == 9 || category == 10 || (category >= 14 && category <= 17); }

std::string Suffix(bool japanese) { return japanese ? "_JPN" : ""; }

std::string CategoryRecordName(int category, bool japanese) {
  std::string name = (boost::format("XFont_%1%") % category).str();
  if (japanese && HasJapaneseRecord(category)) name += "_JPN";
  return name;
}

bool ReadColor(KfPerIStream& in, XColor& out) {
  std::uint32_t red = 0;
  std::uint32_t green = 0;
  std::uint32_t blue = 0;
  if (!(in >> red >> green >> blue) || red > 255 || green > 255 || blue > 255) return false;
  out = XColor{static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green), static_cast<std::uint8_t>(blue), 1};
  return true;
}

}  // namespace

EditorFontInfo::EditorFontInfo(const IHostColorInfo& hostColors) : impl_(std::make_unique<Impl>(hostColors)) {
  Reset();
}

EditorFontInfo::EditorFontInfo(const EditorFontInfo& other) : impl_(std::make_unique<Impl>(*other.impl_)) {}

EditorFontInfo& EditorFontInfo::operator=(const EditorFontInfo& other) {
  if (this != &other) *impl_ = *other.impl_;
  return *this;
}

EditorFontInfo::~EditorFontInfo() = default;

bool EditorFontInfo::operator==(const EditorFontInfo& other) const {
  const Impl& a = *impl_;
  const Impl& b = *other.impl_;
  if (a.baseFont != b.baseFont || a.backgroundAutomatic != b.backgroundAutomatic || a.background != b.background ||
      a.infos.size() != b.infos.size())
    return false;
  for (std::size_t i = 0; i < a.infos.size(); ++i) {
    if (a.infos[i].style != b.infos[i].style || a.infos[i].color != b.infos[i].color ||
        a.infos[i].automatic != b.infos[i].automatic)
      return false;
  }
  return true;
}

bool EditorFontInfo::operator!=(const EditorFontInfo& other) const { return !(*this == other); }

void EditorFontInfo::Reset() {
  Impl& d = *impl_;
  d.baseFont = XFont(Detail::DefaultFixedFace(Detail::ThemeLanguageIsJapanese()), std::uint64_t{10}, XFont::Regular);
  d.infos.assign(kBuiltInCount, FontInfo{XFont::Regular, d.hostColors.DefaultTextColor(), true});
  d.backgroundAutomatic = true;
  d.background = d.hostColors.DefaultBackgroundColor();
}

EdSyntaxTokenCategory EditorFontInfo::FontCount() const {
  return static_cast<EdSyntaxTokenCategory>(impl_->infos.size());
}

const XFont& EditorFontInfo::GetBaseFont() const { return impl_->baseFont; }
void EditorFontInfo::SetBaseFont(const XFont& font) { impl_->baseFont = font; }
XColor EditorFontInfo::GetBackgroundColor() const { return impl_->background; }
bool EditorFontInfo::IsBackgroundColorAutomatic() const { return impl_->backgroundAutomatic; }

void EditorFontInfo::SetBackgroundColor(XColor color, bool automatic) {
  impl_->background = color;
  impl_->backgroundAutomatic = automatic;
}

XColor EditorFontInfo::LookupColor(EdSyntaxTokenCategory category) const { return impl_->infos[category].color; }
bool EditorFontInfo::IsColorAutomatic(EdSyntaxTokenCategory category) const {
  return impl_->infos[category].automatic;
}

void EditorFontInfo::SetColor(EdSyntaxTokenCategory category, XColor color, bool automatic) {
  impl_->infos[category].color = color;
  impl_->infos[category].automatic = automatic;
}

XFont::Style EditorFontInfo::LookupStyle(EdSyntaxTokenCategory category) const { return impl_->infos[category].style; }
void EditorFontInfo::SetStyle(EdSyntaxTokenCategory category, XFont::Style style) {
  impl_->infos[category].style = style;
}

XFont EditorFontInfo::LookupFont(EdSyntaxTokenCategory category) const {
  XFont font = impl_->baseFont;
  font.style = impl_->infos[category].style;
  return font;
}

bool EditorFontInfo::HasStyling(EdSyntaxTokenCategory category) { return category != 20 && category != 21; }

EdSyntaxTokenCategory EditorFontInfo::StoreExternFontInfo(const FontInfo& info) {
  // A full table answers the first extern number without adding: callers of
  // earlier versions relied on this fixed answer.
  if (impl_->infos.size() >= static_cast<std::size_t>(kMaxRecords))
    return static_cast<EdSyntaxTokenCategory>(kBuiltInCount);
  impl_->infos.push_back(info);
  return static_cast<EdSyntaxTokenCategory>(impl_->infos.size() - 1);
}

void EditorFontInfo::RemoveAllExternFontInfos() {
  if (impl_->infos.size() > static_cast<std::size_t>(kBuiltInCount)) impl_->infos.resize(kBuiltInCount);
}

void EditorFontInfo::UpdateAutomaticColor() {
  Impl& d = *impl_;
  const XColor text = d.hostColors.DefaultTextColor();
  for (FontInfo& info : d.infos) {
    if (info.automatic) info.color = text;
  }
  if (d.backgroundAutomatic) d.background = d.hostColors.DefaultBackgroundColor();
}

const IHostColorInfo& EditorFontInfo::GetHostColorInfo() const { return impl_->hostColors; }

namespace {

// One pass over one variant of the records; false as soon as a record is
// missing or holds a value of the wrong type or range.
bool LoadPass(KfPersistentStorage& storage, const std::string& key, bool japanese, EditorFontInfo& info) {
  const std::string suffix = Suffix(japanese);
  KfPerIStream base(storage, key, "XFontBase" + suffix);
  std::string fontText;
  std::uint32_t count = 0;
  XFont font;
  if (!(base >> fontText >> count) || !XFont::FromStorageText(fontText, font)) return false;

  KfPerIStream extra(storage, key, "XFontBaseEx" + suffix);
  XColor background;
  bool backgroundAutomatic = false;
  if (!ReadColor(extra, background) || !(extra >> backgroundAutomatic)) return false;

  info.SetBaseFont(font);
  info.SetBackgroundColor(background, backgroundAutomatic);
  if (count > static_cast<std::uint32_t>(EditorFontInfo::kBuiltInCount)) count = EditorFontInfo::kBuiltInCount;
  for (std::uint32_t i = 0; i < count; ++i) {
    const auto category = static_cast<EdSyntaxTokenCategory>(i);
    KfPerIStream in(storage, key, CategoryRecordName(static_cast<int>(i), japanese));
    std::int32_t style = 0;
    XColor color;
    bool automatic = false;
    if (!(in >> style) || !ReadColor(in, color) || !(in >> automatic)) return false;
    info.SetStyle(category, static_cast<XFont::Style>(style));
    info.SetColor(category, color, automatic);
  }
  return true;
}

}  // namespace

bool EditorFontInfo::Load(KfPersistentStorage& storage, const std::string& key) {
  const bool japanese = Detail::ThemeLanguageIsJapanese();
  for (bool variant : {japanese, !japanese}) {
    Reset();
    // The stored automatic colours come back as they were saved; callers
    // that draw refresh them with UpdateAutomaticColor.
    if (LoadPass(storage, key, variant, *this)) return true;
  }
  Reset();
  return false;
}

bool EditorFontInfo::Save(KfPersistentStorage& storage, const std::string& key) const {
  const Impl& d = *impl_;
  const bool japanese = Detail::ThemeLanguageIsJapanese();
  const std::string suffix = Suffix(japanese);
  bool ok = true;
  {
    // One file save for all records: the buffered stores report success at
    // once, and the base record below, written after the buffer closes,
    // saves the document and tells whether that worked.
    KfPersistentStorageBuffer batch(&storage);
    KfPerOStream extra(storage, key, "XFontBaseEx" + suffix);
    extra << std::uint32_t{d.background.red} << std::uint32_t{d.background.green}
          << std::uint32_t{d.background.blue} << d.backgroundAutomatic;
    ok = extra.Close() && ok;
    for (int i = 0; i < kBuiltInCount; ++i) {
      const FontInfo& info = d.infos[static_cast<std::size_t>(i)];
      KfPerOStream out(storage, key, CategoryRecordName(i, japanese));
      out << static_cast<std::int32_t>(info.style) << std::uint32_t{info.color.red}
          << std::uint32_t{info.color.green} << std::uint32_t{info.color.blue} << info.automatic;
      ok = out.Close() && ok;
    }
  }
  KfPerOStream base(storage, key, "XFontBase" + suffix);
  base << d.baseFont.ToStorageText() << static_cast<std::uint32_t>(kBuiltInCount);
  return base.Close() && ok;
}

}  // namespace Kf
