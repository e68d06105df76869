// Themes in a storage and in ".theme.xml" files. A theme file is read the
// way a storage is, so every file this library writes loads back; since a
// file may come from other people, its size and its form as a settings
// document are checked first, and it is read from a private copy: the
// settings storage would set a damaged file aside by renaming it, which is
// not ours to do to a file the user only wants to import.
#include "theme/theme_storage.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <system_error>

#include <pugixml.hpp>

#include "core/diagnostics.h"
#include "core/temp_names.h"
#include "orvane/platform.h"
#include "orvane/storage.h"

namespace Kf::Detail {
namespace {

void SetError(std::string* error, const std::string& text) {
  if (error) *error = text;
}

ThemeType TypeOf(const std::string& type) {
  for (int t = ThemeDefault; t <= ThemeUser; ++t) {
    if (type == Theme::TypeToTypeString(static_cast<ThemeType>(t))) return static_cast<ThemeType>(t);
  }
  return ThemeUser;
}

bool LoadFont(KfPersistentStorage& storage, const std::string& key, const char* name, XFont& out,
              std::string* error) {
  std::string text;
  if (!storage.Load(key, name, text)) {
    SetError(error, std::string("the value \"") + name + "\" is missing");
    return false;
  }
  XFont font;
  if (!XFont::FromStorageText(text, font)) {
    SetError(error, std::string("the value \"") + name + "\" is not a font (size;style;face): \"" + text + "\"");
    return false;
  }
  out = font;
  return true;
}

GePath TempFolder() {
  GePath temp;
  if (!Platform::Current().GetKnownFolder(Platform::KnownFolder::Temp, temp)) return GePath("/tmp");
  return temp;
}

GePath UniqueTempFile(const GePath& folder, const char* what) {
  return folder / ("orvane-" + std::string(what) + "-" + UniqueFileTag() + ".xml");
}

void RemoveStorageFiles(const GePath& file) {
  std::error_code ec;
  std::filesystem::remove(file.Native(), ec);
  std::filesystem::path lock = file.Native();
  lock += ".lock";
  std::filesystem::remove(lock, ec);
}

std::string StorageName(const char* what) {
  static std::atomic<unsigned> counter{0};
  return std::string("ThemeFile-") + what + "-" + std::to_string(counter.fetch_add(1));
}

}  // namespace

std::shared_ptr<Theme> LoadThemeFromStorage(KfPersistentStorage& storage, const std::string& key,
                                            const IHostColorInfo& hostColors, std::string* error) {
  EditorFontInfo editor(hostColors);
  if (!editor.Load(storage, key)) {
    SetError(error, "the editor font records are missing or hold wrong values");
    return nullptr;
  }
  std::string name;
  if (!storage.Load(key, "Name", name)) {
    SetError(error, "the value \"Name\" is missing");
    return nullptr;
  }
  XFont proportional;
  XFont fixed;
  if (!LoadFont(storage, key, "PropFont", proportional, error) || !LoadFont(storage, key, "FixedFont", fixed, error))
    return nullptr;
  std::string type;
  if (!storage.Load(key, "Type", type)) {
    SetError(error, "the value \"Type\" is missing");
    return nullptr;
  }
  std::string baseType;
  if (!storage.Load(key, "BaseType", baseType)) baseType = Theme::TypeToTypeString(ThemeDefault);
  bool modified = false;
  if (!storage.LoadBool(key, "Modified", modified)) {
    SetError(error, "the value \"Modified\" is missing or not a flag");
    return nullptr;
  }

  const ThemeType themeType = TypeOf(type);
  std::shared_ptr<Theme> theme = themeType != ThemeUser
                                     ? ThemeFactory::CreateStdTheme(themeType, hostColors)
                                     : ThemeFactory::CreateUserTheme(TypeOf(baseType), hostColors);
  if (!theme) {
    SetError(error, "no theme of type \"" + type + "\" can be made");
    return nullptr;
  }
  theme->SetName(name);
  theme->SetProportionalFont(proportional);
  theme->SetFixedFont(fixed);
  theme->SetEditorFontInfo(editor);
  theme->SetIsModified(modified);
  return theme;
}

std::shared_ptr<Theme> LoadThemeFile(const GePath& file, const IHostColorInfo& hostColors, std::string* error) {
  const std::string where = file.ToString() + ": ";
  std::error_code ec;
  const std::filesystem::path native = file.Native();
  if (!std::filesystem::is_regular_file(native, ec)) {
    SetError(error, where + "no such file");
    return nullptr;
  }
  const std::uintmax_t bytes = std::filesystem::file_size(native, ec);
  if (ec || bytes > Theme::kMaxFileBytes) {
    SetError(error, where + "the file is larger than " + std::to_string(Theme::kMaxFileBytes) + " bytes");
    return nullptr;
  }
  std::string content;
  {
    // Read at most one byte past the limit: the file may have grown since
    // its size was asked.
    std::ifstream in(native, std::ios::binary);
    content.resize(static_cast<std::size_t>(Theme::kMaxFileBytes) + 1);
    in.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (in.bad() || !in.is_open()) {
      SetError(error, where + "the file cannot be read");
      return nullptr;
    }
    content.resize(static_cast<std::size_t>(in.gcount()));
    if (content.size() > Theme::kMaxFileBytes) {
      SetError(error, where + "the file is larger than " + std::to_string(Theme::kMaxFileBytes) + " bytes");
      return nullptr;
    }
  }
  pugi::xml_document doc;
  pugi::xml_parse_result parsed = doc.load_buffer(content.data(), content.size());
  if (!parsed) {
    SetError(error, where + "not well-formed XML at byte " + std::to_string(parsed.offset) + ": " +
                        parsed.description());
    return nullptr;
  }
  if (std::string(doc.document_element().name()) != "settings") {
    SetError(error, where + "not a theme file (the root element is not \"settings\")");
    return nullptr;
  }
  if (!doc.document_element().child(Theme::kFileSection)) {
    SetError(error, where + "not a theme file (no \"" + std::string(Theme::kFileSection) + "\" section)");
    return nullptr;
  }

  const GePath copy = UniqueTempFile(TempFolder(), "theme-import");
  {
    std::ofstream out(copy.Native(), std::ios::binary | std::ios::trunc);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!out) {
      RemoveStorageFiles(copy);
      SetError(error, where + "cannot make a private copy in " + copy.Parent().ToString());
      return nullptr;
    }
  }
  std::shared_ptr<Theme> theme;
  std::string reason;
  {
    KfPersistentStorage storage(StorageName("import"), copy);
    theme = LoadThemeFromStorage(storage, Theme::kFileSection, hostColors, &reason);
  }
  RemoveStorageFiles(copy);
  if (!theme) SetError(error, where + reason);
  return theme;
}

bool SaveThemeFile(const Theme& theme, const GePath& file) {
  // Written beside the target and renamed over it, so an existing file is
  // replaced whole and a failure leaves it untouched.
  const GePath temp = UniqueTempFile(file.Parent().IsEmpty() ? GePath(".") : file.Parent(), "theme-export");
  RemoveStorageFiles(temp);
  bool saved = false;
  {
    KfPersistentStorage storage(StorageName("export"), temp);
    saved = theme.Save(storage, Theme::kFileSection);
  }
  std::error_code ec;
  if (saved) std::filesystem::rename(temp.Native(), file.Native(), ec);
  RemoveStorageFiles(temp);
  if (!saved || ec) {
    ReportError("Theme::Save", "cannot write " + file.ToString() + (ec ? ": " + ec.message() : std::string()));
    return false;
  }
  return true;
}

}  // namespace Kf::Detail
