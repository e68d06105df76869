// The theme base class: values, type strings and the storage form.
#include <array>

#include "orvane/storage.h"
#include "orvane/theme.h"
#include "theme/theme_language.h"
#include "theme/theme_storage.h"

namespace Kf {
namespace {

constexpr std::array<const char*, 8> kTypeStrings = {
    "Default", "Classic", "DarkMode", "HighContrast", "Solarized", "DarkSolarized", "ColorVisionDeficiency", "User",
};

}  // namespace

Theme::Theme(const std::string& name, ThemeType type, const IHostColorInfo& hostColors)
    : Theme(name, TypeToTypeString(type), TypeToTypeString(type), hostColors) {}

Theme::Theme(const std::string& name, const std::string& type, const std::string& baseType,
             const IHostColorInfo& hostColors)
    : name_(name),
      type_(type),
      baseType_(baseType),
      proportionalFont_(CurrentLangIsJPN() ? "Noto Sans JP" : "Verdana", 10, XFont::Regular),
      fixedFont_("Consolas", 10, XFont::Regular),
      editorFontInfo_(hostColors),
      colors_(kDisplayElementCount) {
  editorFontInfo_.SetBaseFont(fixedFont_);
}

Theme::Theme(const Theme& other) = default;
Theme& Theme::operator=(const Theme& other) = default;
Theme::~Theme() = default;

ThemeType Theme::GetType() const { return TypeStringToType(type_); }
const std::string& Theme::GetName() const { return name_; }

void Theme::SetName(const std::string& name) {
  if (!name.empty()) name_ = name;
}

ThemeType Theme::GetBaseType() const { return TypeStringToType(baseType_); }
bool Theme::GetIsStandard() const { return GetType() != ThemeUser; }
bool Theme::GetIsModified() const { return modified_; }
void Theme::SetIsModified(bool modified) { modified_ = modified; }
XColor Theme::GetXColor(DisplayElement element) const { return colors_[static_cast<std::size_t>(element)]; }

void Theme::SetXColor(DisplayElement element, const XColor& color) {
  if (element < 0 || element >= kDisplayElementCount) return;
  colors_[static_cast<std::size_t>(element)] = color;
}

XFont Theme::GetFixedFont() const { return fixedFont_; }
void Theme::SetFixedFont(const XFont& font) { fixedFont_ = font; }
XFont Theme::GetProportionalFont() const { return proportionalFont_; }
void Theme::SetProportionalFont(const XFont& font) { proportionalFont_ = font; }
EditorFontInfo Theme::GetEditorFontInfo() const { return editorFontInfo_; }
const EditorFontInfo& Theme::GetEditorFontInfoCRef() const { return editorFontInfo_; }
EditorFontInfo& Theme::GetEditorFontInfoRef() { return editorFontInfo_; }
void Theme::SetEditorFontInfo(const EditorFontInfo& info) { editorFontInfo_ = info; }
const IHostColorInfo& Theme::GetHostColorInfo() const { return editorFontInfo_.GetHostColorInfo(); }

bool Theme::operator==(const Theme& other) const {
  return name_ == other.name_ && type_ == other.type_ && baseType_ == other.baseType_ &&
         proportionalFont_ == other.proportionalFont_ && fixedFont_ == other.fixedFont_ &&
         editorFontInfo_ == other.editorFontInfo_ && colors_ == other.colors_ && modified_ == other.modified_;
}

bool Theme::operator!=(const Theme& other) const { return !(*this == other); }

std::string Theme::ThemeEnding() { return ".theme.xml"; }

std::string Theme::TypeToTypeString(ThemeType type) {
  if (type < ThemeDefault || type > ThemeUser) return std::string();
  return kTypeStrings[static_cast<std::size_t>(type)];
}

ThemeType Theme::TypeStringToType(const std::string& type) {
  for (std::size_t i = 0; i < kTypeStrings.size(); ++i) {
    if (type == kTypeStrings[i]) return static_cast<ThemeType>(i);
  }
  return ThemeUser;
}

bool Theme::CurrentLangIsJPN() { return Detail::ThemeLanguageIsJapanese(); }

void Theme::SetTypeStrings(const std::string& type, const std::string& baseType) {
  type_ = type;
  baseType_ = baseType;
}

bool Theme::Save(KfPersistentStorage& storage, const std::string& key) const {
  bool ok = true;
  {
    // The values land in the document in this order, in one buffered
    // operation; inside it a store cannot tell whether the file was written.
    KfPersistentStorageBuffer batch(&storage);
    ok = storage.Store(key, "Name", name_) && ok;
    ok = storage.Store(key, "PropFont", proportionalFont_.ToStorageText()) && ok;
    ok = storage.Store(key, "FixedFont", fixedFont_.ToStorageText()) && ok;
    ok = storage.Store(key, "Type", TypeToTypeString(GetType())) && ok;
    ok = storage.Store(key, "BaseType", baseType_) && ok;
    ok = storage.StoreBool(key, "Modified", modified_) && ok;
    ok = editorFontInfo_.Save(storage, key) && ok;
  }
  // Storing a value again keeps its place and writes the file once more, so
  // the answer includes whether the theme reached the disk.
  return storage.StoreBool(key, "Modified", modified_) && ok;
}

std::shared_ptr<Theme> Theme::Load(KfPersistentStorage& storage, const std::string& key,
                                   const IHostColorInfo& hostColors) {
  return Detail::LoadThemeFromStorage(storage, key, hostColors, nullptr);
}

std::shared_ptr<Theme> Theme::Load(const GePath& file, const IHostColorInfo& hostColors) {
  return Detail::LoadThemeFile(file, hostColors, nullptr);
}

std::shared_ptr<Theme> Theme::Load(const GePath& file, const IHostColorInfo& hostColors, std::string* error) {
  return Detail::LoadThemeFile(file, hostColors, error);
}

bool Theme::Save(const GePath& file) const { return Detail::SaveThemeFile(*this, file); }

}  // namespace Kf
