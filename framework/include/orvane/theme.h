// Colours, fonts, the editor's syntax colouring, themes and the collection of
// themes.
//
// Every coloured part of the user interface is a Kf::DisplayElement; the
// current theme answers its colour:
//
//   Kf::Themes::CreateInstance(hostColors, nullptr);
//   (void)Kf::Themes::Instance()->Load();                       // "QorIde.themes.xml"
//   Kf::XColor c = Kf::LookupXColorFromNativeTheme(Kf::DisplayElement(9));
//   (void)Kf::Themes::Instance()->SetCurrent("Dark mode");      // sends KF_THEME_CHANGED_EVENT
//
// A theme holds one colour per display element, a proportional font for the
// interface, a fixed font for the editor and the editor's syntax colouring
// (Kf::EditorFontInfo). Standard themes are built in code; user themes take
// their display-element colours from the standard theme they derive from.
// Themes are kept in the settings storage and can be exchanged as single
// ".theme.xml" files, which are checked to be settings documents of a
// bounded size before anything is taken from them.
//
// Threads: colours, fonts, EditorFontInfo and Theme objects are values; one
// object belongs to one thread at a time. The theme collection is changed on
// the UI thread; its current theme (and so LookupXColorFromNativeTheme) may be
// read from any thread: the collection's mutex guards its list and current
// pointer, and a reader keeps its own shared pointer to the theme while it
// reads, so a switch on another thread cannot free the theme under it. No
// lock is held while the theme-changed event is delivered.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "orvane/colortypes.h"
#include "orvane/events.h"
#include "orvane/export.h"
#include "orvane/gepath.h"

class KfPersistentStorage;

namespace Kf {

// The host's colours that depend on the operating system: the default text
// colour (first callback) and the default background colour (second). Themes
// use them for colours marked "automatic". An empty callback answers the zero
// (no) colour.
//
//   Kf::IHostColorInfo colors([] { return DesktopTextColor(); }, [] { return DesktopWindowColor(); });
//
// Threads: a value. The callbacks run on the thread that asks (themes ask on
// the UI thread), with no library lock held.
class ORVANE_API IHostColorInfo {
 public:
  IHostColorInfo(std::function<XColor()> defaultTextColor, std::function<XColor()> defaultBackgroundColor);
  XColor DefaultTextColor() const;
  XColor DefaultBackgroundColor() const;

 private:
  std::function<XColor()> textColor_;
  std::function<XColor()> backgroundColor_;
};

// Turns the height of a Windows LOGFONT into a point size; the host knows the
// screen's resolution. Used only to convert settings of earlier versions.
//
// Threads: a value; the callback runs on the caller's thread, no lock held.
class ORVANE_API IHostLogfontSizeConverter {
 public:
  explicit IHostLogfontSizeConverter(std::function<std::uint64_t(int)> heightToPoints);
  std::uint64_t HeightToPoints(int height) const;

 private:
  std::function<std::uint64_t(int)> heightToPoints_;
};

namespace Color {
// The fixed translation of the older colour names into display elements;
// values that the table does not list yield display element 1.
ORVANE_API DisplayElement ColorTypeToDisplayElement(ColorType type);
}  // namespace Color

// The host's colour of the element that `type` translates to.
ORVANE_API XColor LookupXColor(ColorType type);
// The current theme's colour of `element`; the zero colour when no theme
// collection exists.
ORVANE_API XColor LookupXColorFromNativeTheme(DisplayElement element);

// A font: face, size in points, style.
//
// The storage text (ToStorageText) is "<size>;<style>;<face>", e.g.
// "10;Regular;Noto Sans JP": the style by name for the three named ones and
// as a decimal number otherwise ("10;5;Consolas"). It is reversible for every
// value: any size, any style number, and any face, since the face comes last
// and is taken whole (empty, spaces, ";" and non-ASCII included).
//
// Threads: a plain value.
struct ORVANE_API XFont {
  enum Style : std::int32_t {
    Regular = 0,
    Bold = 1,
    Italic = 2,
  };

  std::string face;
  std::uint64_t size = 10;
  Style style = Regular;

  XFont() = default;
  XFont(const std::string& face);  // NOLINT: implicit, as in the older interface
  XFont(const std::string& face, int size, Style style);
  XFont(const std::string& face, std::uint64_t size, Style style);

  // Faces compare byte for byte (exact case).
  bool operator==(const XFont& other) const;
  bool operator!=(const XFont& other) const;

  // For display: "Consolas 10 pt", "Verdana 9 pt Bold".
  std::string Description() const;

  std::string ToStorageText() const;
  // Parses ToStorageText's form; false (and `out` unchanged) for anything
  // else: a missing ";", a size that is not a decimal 64-bit number, a style
  // that is neither one of the names nor a decimal 32-bit number.
  static bool FromStorageText(const std::string& text, XFont& out);
  // "Regular", "Bold", "Italic"; numbers outside the three give "Style<n>".
  static std::string StyleName(Style style);
};

// How the source editor draws each syntax category: one base font, and per
// category a style, a colour and whether that colour is automatic (follows
// the host's default text colour); plus the editor background, which can be
// automatic too. Categories 0 to 21 are built in; extern categories may be
// added up to 72 records in all.
//
// Storage: under the given section the records "XFontBase" (base font text,
// record count), "XFontBaseEx" (background red, green, blue, automatic flag)
// and "XFont_<n>" (style, red, green, blue, automatic flag), each with a
// "_JPN" variant used for a Japanese user interface (for category records
// only the comment-like categories 9, 10 and 14 to 17 have one). Save writes
// the variant of the current language.
//
// Threads: a value; one object belongs to one thread at a time.
class ORVANE_API EditorFontInfo {
 public:
  struct FontInfo {
    XFont::Style style = XFont::Regular;
    XColor color;
    bool automatic = false;
  };

  static constexpr int kBuiltInCount = 22;
  static constexpr int kMaxRecords = 72;

  EditorFontInfo(const IHostColorInfo& hostColors);  // NOLINT: implicit, as in the older interface
  EditorFontInfo(const EditorFontInfo& other);
  EditorFontInfo& operator=(const EditorFontInfo& other);
  ~EditorFontInfo();

  // Compares fonts, records and background (not the host callbacks).
  bool operator==(const EditorFontInfo& other) const;
  bool operator!=(const EditorFontInfo& other) const;

  EdSyntaxTokenCategory FontCount() const;
  const XFont& GetBaseFont() const;
  void SetBaseFont(const XFont& font);
  XColor GetBackgroundColor() const;
  bool IsBackgroundColorAutomatic() const;
  void SetBackgroundColor(XColor color, bool automatic);
  XColor LookupColor(EdSyntaxTokenCategory category) const;
  bool IsColorAutomatic(EdSyntaxTokenCategory category) const;
  void SetColor(EdSyntaxTokenCategory category, XColor color, bool automatic);
  XFont::Style LookupStyle(EdSyntaxTokenCategory category) const;
  void SetStyle(EdSyntaxTokenCategory category, XFont::Style style);
  // The base font with the category's style.
  XFont LookupFont(EdSyntaxTokenCategory category) const;
  // False for categories 20 and 21, which are drawn without a font style.
  static bool HasStyling(EdSyntaxTokenCategory category);
  // Appends an extern category and returns its number; with 72 records
  // already, adds nothing and returns 22.
  EdSyntaxTokenCategory StoreExternFontInfo(const FontInfo& info);
  void RemoveAllExternFontInfos();
  // Sets automatic colours from the host's current defaults.
  void UpdateAutomaticColor();
  const IHostColorInfo& GetHostColorInfo() const;

  // Resets, then reads the records of the current language's variant, then
  // (when a category record is missing) of the other; false, and reset, when
  // neither is complete. Colours come back as stored, automatic ones too:
  // call UpdateAutomaticColor to take the host's current defaults.
  bool Load(KfPersistentStorage& storage, const std::string& key);
  bool Save(KfPersistentStorage& storage, const std::string& key) const;

  // Back to the defaults: the fixed font of the language, every category
  // automatic and regular, the background automatic, no extern categories.
  void Reset();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
static_assert(sizeof(EditorFontInfo::FontInfo) == 12, "FontInfo is 12 bytes");

enum ThemeType : std::int32_t {
  ThemeDefault = 0,
  ThemeClassic = 1,
  ThemeDarkMode = 2,
  ThemeHighContrast = 3,
  ThemeSolarized = 4,
  ThemeDarkSolarized = 5,
  ThemeColorVisionDeficiency = 6,
  ThemeUser = 7,
};

// A named set of display-element colours, two fonts and the editor's syntax
// colouring. Shared through std::shared_ptr; Clone() copies the concrete class.
//
//   auto theme = Kf::ThemeFactory::CreateStdTheme(Kf::ThemeSolarized, hostColors);
//   if (!theme->Save(GePath("mine.theme.xml"))) ...
//   auto back = Kf::Theme::Load(GePath("mine.theme.xml"), hostColors, &error);
//
// Storage (under the given section): "Name", "PropFont", "FixedFont", "Type",
// "BaseType", "Modified", then the editor font records. Display-element
// colours are not stored: they come from the (base) standard theme.
//
// Threads: a value; one object belongs to one thread at a time. Themes in the
// collection are replaced, never changed in place, once others may see them.
class ORVANE_API Theme {
 public:
  Theme(const std::string& name, ThemeType type, const IHostColorInfo& hostColors);
  Theme(const std::string& name, const std::string& type, const std::string& baseType,
        const IHostColorInfo& hostColors);
  virtual std::shared_ptr<Theme> Clone() const = 0;
  virtual ~Theme();
  virtual ThemeType GetType() const;

  const std::string& GetName() const;
  void SetName(const std::string& name);  // an empty name is ignored
  ThemeType GetBaseType() const;
  bool GetIsStandard() const;
  bool GetIsModified() const;
  void SetIsModified(bool modified);
  XColor GetXColor(DisplayElement element) const;
  void SetXColor(DisplayElement element, const XColor& color);  // ignored for 84 and above
  XFont GetFixedFont() const;
  void SetFixedFont(const XFont& font);
  XFont GetProportionalFont() const;
  void SetProportionalFont(const XFont& font);
  EditorFontInfo GetEditorFontInfo() const;
  const EditorFontInfo& GetEditorFontInfoCRef() const;
  EditorFontInfo& GetEditorFontInfoRef();
  void SetEditorFontInfo(const EditorFontInfo& info);
  const IHostColorInfo& GetHostColorInfo() const;

  bool operator==(const Theme& other) const;
  bool operator!=(const Theme& other) const;

  static std::string ThemeEnding();
  // The type string of one of the eight types; "" for any other value.
  static std::string TypeToTypeString(ThemeType type);

  // The theme stored under `key`, or null when a value is missing or wrong.
  static std::shared_ptr<Theme> Load(KfPersistentStorage& storage, const std::string& key,
                                     const IHostColorInfo& hostColors);
  // The theme of a ".theme.xml" file, read as from a storage, or null. Files
  // may come from other people: one that is larger than kMaxFileBytes, not
  // well-formed, not a settings document with a "Theme" section, or whose
  // values are missing or cannot be read is refused. Every file that
  // Save(file) wrote loads back.
  static std::shared_ptr<Theme> Load(const GePath& file, const IHostColorInfo& hostColors);
  // As above; when the file is refused, `error` (unless null) says why.
  static std::shared_ptr<Theme> Load(const GePath& file, const IHostColorInfo& hostColors, std::string* error);
  bool Save(KfPersistentStorage& storage, const std::string& key) const;
  // Writes the theme as a ".theme.xml" file (replacing the file).
  bool Save(const GePath& file) const;

  // The section a theme file keeps its theme under.
  static constexpr const char* kFileSection = "Theme";
  // The largest theme file Load accepts.
  static constexpr std::uintmax_t kMaxFileBytes = 256 * 1024;

 protected:
  Theme(const Theme& other);
  Theme& operator=(const Theme& other);
  static ThemeType TypeStringToType(const std::string& type);
  static bool CurrentLangIsJPN();
  // Used by user themes: the theme's own and base type strings.
  void SetTypeStrings(const std::string& type, const std::string& baseType);

 private:
  std::string name_;
  std::string type_;
  std::string baseType_;
  XFont proportionalFont_;
  XFont fixedFont_;
  EditorFontInfo editorFontInfo_;
  std::vector<XColor> colors_;
  bool modified_ = false;
};

// The standard themes. Each only sets its values in its constructor.
// Threads: as Theme.
#define ORVANE_STANDARD_THEME(ClassName)                                         \
  class ORVANE_API ClassName : public Theme {                                    \
   public:                                                                       \
    explicit ClassName(const IHostColorInfo& hostColors);                        \
    std::shared_ptr<Theme> Clone() const override;                               \
                                                                                 \
   protected:                                                                    \
    ClassName(const ClassName& other) = default;                                 \
  }

// "Default": a light theme tuned for readability on the host's default colours.
ORVANE_STANDARD_THEME(DefaultTheme);
// "Classic": the colours of earlier versions.
ORVANE_STANDARD_THEME(ClassicTheme);
// "Dark mode": light text on a near-black background.
ORVANE_STANDARD_THEME(DarkModeTheme);
// "High contrast": at least 7:1 for every syntax colour, on black.
ORVANE_STANDARD_THEME(HighContrastTheme);
// "Solarized" and "Dark Solarized": the Solarized palette, light and dark.
ORVANE_STANDARD_THEME(SolarizedTheme);
ORVANE_STANDARD_THEME(DarkSolarizedTheme);
// "Color Accessibility": a palette that stays distinguishable with colour-
// vision deficiencies.
ORVANE_STANDARD_THEME(ColorVisionDeficiencyTheme);

#undef ORVANE_STANDARD_THEME

// A user theme: the display-element colours of the standard class `Base`,
// type "User", base type that of `Base`.
//
//   auto mine = std::make_shared<Kf::UserTheme<Kf::SolarizedTheme>>(hostColors);
//
// Threads: as Theme.
template <class Base>
class UserTheme : public Base {
 public:
  explicit UserTheme(const IHostColorInfo& hostColors) : Base(hostColors) {
    // Until this line the type string is still the base class's own.
    this->SetTypeStrings(Theme::TypeToTypeString(ThemeUser), Theme::TypeToTypeString(this->Base::GetType()));
  }
  UserTheme(const UserTheme& other) : Base(other) {}
  std::shared_ptr<Theme> Clone() const override { return std::make_shared<UserTheme>(*this); }
};

// Makes themes. Threads: any thread; the functions share no state (the old
// settings are read from the "Global" storage under its own lock).
class ORVANE_API ThemeFactory {
 public:
  // One of each standard theme, in the order of the type numbers.
  static std::vector<std::shared_ptr<Theme>> CreateStdThemes(const IHostColorInfo& hostColors);
  // The standard theme of `type`; null for "User" or an unknown value.
  static std::shared_ptr<Theme> CreateStdTheme(ThemeType type, const IHostColorInfo& hostColors);
  // A user theme based on the standard theme `baseType` ("Default" when that
  // is not a standard type).
  static std::shared_ptr<Theme> CreateUserTheme(ThemeType baseType, const IHostColorInfo& hostColors);
  // A user theme with the values of `theme` (its base type being the
  // theme's own type, or its base type for a user theme).
  static std::shared_ptr<Theme> CloneIntoUserTheme(const Theme& theme);
  // A user theme named "User settings theme" from the font settings of
  // earlier versions in the "Global" storage, or null when there are none.
  static std::shared_ptr<Theme> LoadOldCompatibleTheme(const IHostColorInfo& hostColors,
                                                       IHostLogfontSizeConverter* converter);
};

// The event sent as "KF_THEME_CHANGED_EVENT" after every change of the theme
// collection; it names the current theme.
//
//   Kf::Event::FunctionHandler<Kf::ThemeChangedEvent> repaint([](const Kf::ThemeChangedEvent& e) { ... });
//   Kf::Event::RegisterEvent(Kf::kThemeChangedEventName, &repaint);
//
// Threads: delivered on the UI thread (queued to its next idle pass when the
// change happened on another thread); a handler may read the collection.
struct ThemeChanged : Event::BaseEvent {
  std::string currentThemeName;
};
using ThemeChangedEvent = Event::SpecializedEvent<ThemeChanged>;
inline constexpr const char* kThemeChangedEventName = "KF_THEME_CHANGED_EVENT";

// The collection of themes and the current theme, kept in the file
// "QorIde.themes.xml" of the option storage directory.
//
// Load merges the stored themes with the standard ones: every standard theme
// appears once, in type order; a stored standard theme replaces the built-in
// one only when the user modified it; user themes follow in stored order, a
// name that collides being changed with FindValidCopyName. The current theme
// is the one named by "CurrentTheme"; failing that, the stored theme at
// "CurrentThemeIndex"; failing that, the first.
//
// Every change (Load, SetAll, SetCurrent, Add, Remove) sends
// "KF_THEME_CHANGED_EVENT" once, after the collection's lock is released.
//
// Threads: change the collection on the UI thread; GetCurrent, GetThemes,
// GetCloneOfThemes and Find may be called from any thread (mutex_ guards the
// list and the current index).
class ORVANE_API Themes {
 public:
  // Creates the process's collection (once; later calls return the first).
  // It starts with the standard themes, "Default" current, until Load.
  static Themes* CreateInstance(const IHostColorInfo& hostColors, IHostLogfontSizeConverter* converter);
  // The collection, or null before CreateInstance.
  static Themes* Instance();
  // Destroys the collection (at shut-down, and between tests).
  static void DestroyInstance();
  // The current theme of the collection, or null when none exists: what
  // LookupXColorFromNativeTheme reads.
  static std::shared_ptr<Theme> CurrentOfInstance();

  ~Themes();
  Themes(const Themes&) = delete;
  Themes& operator=(const Themes&) = delete;

  // Reads "QorIde.themes.xml" (see above). False when the file could not be
  // read; the collection then holds the standard themes.
  bool Load();
  bool Save() const;

  std::shared_ptr<Theme> GetCurrent() const;
  std::size_t GetCurrentIndex() const;
  // The themes themselves (shared) and independent copies of them.
  std::vector<std::shared_ptr<Theme>> GetThemes() const;
  std::vector<std::shared_ptr<Theme>> GetCloneOfThemes() const;
  std::shared_ptr<Theme> Find(const std::string& name) const;

  // Replaces all themes (as an options dialog does with its edited clones).
  // Refused (false) when the list is empty, lacks a standard theme, holds a
  // null or two themes of one name, or the index is out of range.
  bool SetAll(const std::vector<std::shared_ptr<Theme>>& themes, std::size_t currentIndex);
  bool SetCurrent(std::size_t index);
  bool SetCurrent(const std::string& name);
  // Adds a user theme (renamed with FindValidCopyName when its name is
  // taken); returns the name it got, or "" when refused (null or standard).
  std::string Add(std::shared_ptr<Theme> theme);
  // Adds the theme of a ".theme.xml" file as a user theme (a standard one
  // becomes a user theme on its base) and returns the name it got. A file
  // that Theme::Load refuses changes nothing: "" and `error` says why.
  std::string Import(const GePath& file, std::string* error = nullptr);
  // Copies the named theme into a new user theme "<name> - Copy <n>".
  std::shared_ptr<Theme> AddCopy(const std::string& name);
  // Removes a user theme; standard themes stay. The current theme falls back
  // to "Default" when it was removed.
  bool Remove(const std::string& name);

  // A name built from "%1% - Copy %2%" (the name, then 1, 2, ...) that no
  // theme of the collection has.
  std::string FindValidCopyName(const std::string& name) const;
  // True when the current theme's colour of `element` is dark, so icons
  // drawn on it should be the bright variants.
  bool UseBrightIcons(DisplayElement element) const;

  const IHostColorInfo& GetHostColorInfo() const;
  // The collection's file.
  static bool GetThemesFile(GePath& out);

  static constexpr const char* kSection = "Themes";
  static constexpr const char* kUserSettingsThemeName = "User settings theme";

 private:
  Themes(const IHostColorInfo& hostColors, IHostLogfontSizeConverter* converter);
  void NotifyChanged() const;
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// The older way to reach the collection. Threads: as Themes::Instance.
class ORVANE_API ThemesSingleton {
 public:
  static Themes* Instance();
};

}  // namespace Kf
