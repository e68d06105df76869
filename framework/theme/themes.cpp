// The process's collection of themes and its current theme.
#include <boost/format.hpp>

#include "core/diagnostics.h"
#include "orvane/locks.h"
#include "orvane/storage.h"
#include "orvane/theme.h"
#include "theme/contrast.h"

namespace Kf {
namespace {

constexpr const char* kThemesFileName = "QorIde.themes.xml";
// More stored themes than this is a damaged file, not a user's collection.
constexpr std::uint32_t kMaxStoredThemes = 1000;

struct InstanceSlot {
  IdeUtil::Mutex mutex;
  std::unique_ptr<Themes> themes;  // guarded by mutex
};

// Never destroyed, so lookups during process exit stay safe.
InstanceSlot& Slot() {
  static InstanceSlot* slot = new InstanceSlot();
  return *slot;
}

std::string ThemeKey(std::size_t index) { return (boost::format("Theme%1%") % index).str(); }

bool NameTaken(const std::vector<std::shared_ptr<Theme>>& themes, const std::string& name) {
  for (const auto& theme : themes) {
    if (theme && theme->GetName() == name) return true;
  }
  return false;
}

std::string CopyName(const std::vector<std::shared_ptr<Theme>>& themes, const std::string& name) {
  for (unsigned n = 1;; ++n) {
    std::string candidate = (boost::format("%1% - Copy %2%") % name % n).str();
    if (!NameTaken(themes, candidate)) return candidate;
  }
}

}  // namespace

struct Themes::Impl {
  Impl(const IHostColorInfo& colors, IHostLogfontSizeConverter* sizeConverter)
      : hostColors(colors), converter(sizeConverter), themes(ThemeFactory::CreateStdThemes(colors)) {}

  std::size_t IndexOf(const std::string& name) const {
    for (std::size_t i = 0; i < themes.size(); ++i) {
      if (themes[i]->GetName() == name) return i;
    }
    return themes.size();
  }

  IHostColorInfo hostColors;
  IHostLogfontSizeConverter* converter;
  mutable IdeUtil::Mutex mutex;
  std::vector<std::shared_ptr<Theme>> themes;  // guarded by mutex
  std::size_t current = 0;                     // guarded by mutex
  bool addUserConvertedTheme = true;           // guarded by mutex
};

Themes::Themes(const IHostColorInfo& hostColors, IHostLogfontSizeConverter* converter)
    : impl_(std::make_unique<Impl>(hostColors, converter)) {}

Themes::~Themes() = default;

Themes* Themes::CreateInstance(const IHostColorInfo& hostColors, IHostLogfontSizeConverter* converter) {
  InstanceSlot& slot = Slot();
  IdeUtil::ScopedLock lock(slot.mutex);
  if (!slot.themes) slot.themes.reset(new Themes(hostColors, converter));
  return slot.themes.get();
}

Themes* Themes::Instance() {
  InstanceSlot& slot = Slot();
  IdeUtil::ScopedLock lock(slot.mutex);
  return slot.themes.get();
}

void Themes::DestroyInstance() {
  std::unique_ptr<Themes> old;
  {
    InstanceSlot& slot = Slot();
    IdeUtil::ScopedLock lock(slot.mutex);
    old = std::move(slot.themes);
  }
}

std::shared_ptr<Theme> Themes::CurrentOfInstance() {
  InstanceSlot& slot = Slot();
  IdeUtil::ScopedLock lock(slot.mutex);
  return slot.themes ? slot.themes->GetCurrent() : nullptr;
}

bool Themes::GetThemesFile(GePath& out) {
  GePath dir;
  if (!KfGetOptionStorageDirectory(dir)) return false;
  out = dir / kThemesFileName;
  return true;
}

bool Themes::Load() {
  GePath file;
  if (!GetThemesFile(file)) {
    Detail::ReportError("Themes::Load", "no option storage directory");
    return false;
  }
  KfPersistentStorage storage("Themes", file);
  std::int64_t storedIndex = -1;
  if (!storage.LoadInt64(kSection, "CurrentThemeIndex", storedIndex)) storedIndex = -1;
  std::string currentName;
  const bool hasCurrentName = storage.Load(kSection, "CurrentTheme", currentName);
  bool addConverted = true;
  if (!storage.LoadBool(kSection, "AddUserConvertedTheme", addConverted)) addConverted = true;
  std::uint32_t count = 0;
  if (!storage.Load(kSection, "NumberOfThemes", count)) count = 0;
  if (count > kMaxStoredThemes) {
    Detail::ReportError("Themes::Load", file.ToString() + ": " + std::to_string(count) + " themes is not plausible");
    count = 0;
  }

  // Standard themes first, in type order; a stored one replaces its
  // built-in twin only when the user changed it, so unmodified standard
  // themes pick up the colours of this version.
  std::vector<std::shared_ptr<Theme>> merged = ThemeFactory::CreateStdThemes(impl_->hostColors);
  std::vector<std::size_t> mergedIndexOfStored(count, merged.size());
  for (std::uint32_t i = 0; i < count; ++i) {
    std::shared_ptr<Theme> theme = Theme::Load(storage, ThemeKey(i), impl_->hostColors);
    if (!theme) {
      Detail::ReportError("Themes::Load", file.ToString() + ": the theme " + ThemeKey(i) + " cannot be read");
      continue;
    }
    if (theme->GetIsStandard()) {
      const auto slot = static_cast<std::size_t>(theme->GetType());
      if (theme->GetIsModified()) merged[slot] = theme;
      mergedIndexOfStored[i] = slot;
      continue;
    }
    if (NameTaken(merged, theme->GetName())) theme->SetName(CopyName(merged, theme->GetName()));
    merged.push_back(theme);
    mergedIndexOfStored[i] = merged.size() - 1;
  }

  std::size_t current = merged.size();
  if (hasCurrentName) {
    for (std::size_t i = 0; i < merged.size() && current == merged.size(); ++i)
      if (merged[i]->GetName() == currentName) current = i;
  }
  if (current == merged.size() && storedIndex >= 0 && storedIndex < static_cast<std::int64_t>(count))
    current = mergedIndexOfStored[static_cast<std::size_t>(storedIndex)];

  if (addConverted) {
    std::shared_ptr<Theme> converted = ThemeFactory::LoadOldCompatibleTheme(impl_->hostColors, impl_->converter);
    if (converted) {
      const bool chosen = current < merged.size();
      if (NameTaken(merged, converted->GetName())) converted->SetName(CopyName(merged, converted->GetName()));
      merged.push_back(converted);
      // Someone upgrading keeps the look they had, unless a theme was chosen.
      if (!chosen) current = merged.size() - 1;
    }
  }
  if (current >= merged.size()) current = 0;

  {
    IdeUtil::ScopedLock lock(impl_->mutex);
    impl_->themes = std::move(merged);
    impl_->current = current;
    impl_->addUserConvertedTheme = false;
  }
  NotifyChanged();
  return true;
}

bool Themes::Save() const {
  GePath file;
  if (!GetThemesFile(file)) return false;
  std::vector<std::shared_ptr<Theme>> themes;
  std::size_t current = 0;
  bool addConverted = false;
  {
    IdeUtil::ScopedLock lock(impl_->mutex);
    themes = impl_->themes;
    current = impl_->current;
    addConverted = impl_->addUserConvertedTheme;
  }
  KfPersistentStorage storage("Themes", file);
  bool ok = true;
  {
    KfPersistentStorageBuffer batch(&storage);
    // Sections of themes that no longer exist must not come back on Load.
    for (const std::string& section : storage.GetSections()) {
      if (section.rfind("Theme", 0) == 0) ok = storage.DeleteSection(section) && ok;
    }
    ok = storage.StoreInt64(kSection, "CurrentThemeIndex", static_cast<std::int64_t>(current)) && ok;
    ok = storage.Store(kSection, "CurrentTheme", themes[current]->GetName()) && ok;
    ok = storage.StoreBool(kSection, "AddUserConvertedTheme", addConverted) && ok;
    for (std::size_t i = 0; i < themes.size(); ++i) ok = themes[i]->Save(storage, ThemeKey(i)) && ok;
  }
  // Written last and outside the buffer: this store saves the file, and its
  // result says whether that worked.
  return storage.Store(kSection, "NumberOfThemes", static_cast<std::uint32_t>(themes.size())) && ok;
}

std::shared_ptr<Theme> Themes::GetCurrent() const {
  IdeUtil::ScopedLock lock(impl_->mutex);
  return impl_->themes[impl_->current];
}

std::size_t Themes::GetCurrentIndex() const {
  IdeUtil::ScopedLock lock(impl_->mutex);
  return impl_->current;
}

std::vector<std::shared_ptr<Theme>> Themes::GetThemes() const {
  IdeUtil::ScopedLock lock(impl_->mutex);
  return impl_->themes;
}

std::vector<std::shared_ptr<Theme>> Themes::GetCloneOfThemes() const {
  std::vector<std::shared_ptr<Theme>> themes = GetThemes();
  for (auto& theme : themes) theme = theme->Clone();
  return themes;
}

std::shared_ptr<Theme> Themes::Find(const std::string& name) const {
  IdeUtil::ScopedLock lock(impl_->mutex);
  const std::size_t index = impl_->IndexOf(name);
  return index < impl_->themes.size() ? impl_->themes[index] : nullptr;
}

bool Themes::SetAll(const std::vector<std::shared_ptr<Theme>>& themes, std::size_t currentIndex) {
  if (themes.empty() || currentIndex >= themes.size()) return false;
  std::vector<bool> standardSeen(ThemeUser, false);
  for (std::size_t i = 0; i < themes.size(); ++i) {
    if (!themes[i]) return false;
    for (std::size_t j = 0; j < i; ++j)
      if (themes[j]->GetName() == themes[i]->GetName()) return false;
    if (themes[i]->GetIsStandard()) standardSeen[static_cast<std::size_t>(themes[i]->GetType())] = true;
  }
  for (bool seen : standardSeen)
    if (!seen) return false;
  {
    IdeUtil::ScopedLock lock(impl_->mutex);
    impl_->themes = themes;
    impl_->current = currentIndex;
  }
  NotifyChanged();
  return true;
}

bool Themes::SetCurrent(std::size_t index) {
  {
    IdeUtil::ScopedLock lock(impl_->mutex);
    if (index >= impl_->themes.size()) return false;
    if (index == impl_->current) return true;  // no change, no event
    impl_->current = index;
  }
  NotifyChanged();
  return true;
}

bool Themes::SetCurrent(const std::string& name) {
  std::size_t index = 0;
  {
    IdeUtil::ScopedLock lock(impl_->mutex);
    index = impl_->IndexOf(name);
  }
  return SetCurrent(index);
}

std::string Themes::Add(std::shared_ptr<Theme> theme) {
  if (!theme || theme->GetIsStandard()) return std::string();
  std::string name;
  {
    IdeUtil::ScopedLock lock(impl_->mutex);
    if (NameTaken(impl_->themes, theme->GetName())) theme->SetName(CopyName(impl_->themes, theme->GetName()));
    name = theme->GetName();
    impl_->themes.push_back(std::move(theme));
  }
  NotifyChanged();
  return name;
}

std::string Themes::Import(const GePath& file, std::string* error) {
  std::shared_ptr<Theme> theme = Theme::Load(file, impl_->hostColors, error);
  if (!theme) return std::string();
  // An imported theme is the user's own, even when it was a standard one.
  if (theme->GetIsStandard()) theme = ThemeFactory::CloneIntoUserTheme(*theme);
  return Add(theme);
}

std::shared_ptr<Theme> Themes::AddCopy(const std::string& name) {
  std::shared_ptr<Theme> original = Find(name);
  if (!original) return nullptr;
  std::shared_ptr<Theme> copy = ThemeFactory::CloneIntoUserTheme(*original);
  copy->SetName(FindValidCopyName(name));
  copy->SetIsModified(false);
  return Add(copy).empty() ? nullptr : copy;
}

bool Themes::Remove(const std::string& name) {
  {
    IdeUtil::ScopedLock lock(impl_->mutex);
    const std::size_t index = impl_->IndexOf(name);
    if (index >= impl_->themes.size() || impl_->themes[index]->GetIsStandard()) return false;
    impl_->themes.erase(impl_->themes.begin() + static_cast<std::ptrdiff_t>(index));
    if (impl_->current == index)
      impl_->current = 0;
    else if (impl_->current > index)
      --impl_->current;
  }
  NotifyChanged();
  return true;
}

std::string Themes::FindValidCopyName(const std::string& name) const {
  IdeUtil::ScopedLock lock(impl_->mutex);
  return CopyName(impl_->themes, name);
}

bool Themes::UseBrightIcons(DisplayElement element) const {
  std::shared_ptr<Theme> current = GetCurrent();
  XColor color;
  if (element >= 0 && element < kDisplayElementCount) color = current->GetXColor(element);
  if (!color.IsValid()) color = impl_->hostColors.DefaultBackgroundColor();
  if (!color.IsValid()) return false;
  // Bright icons where white stands out more than black does.
  return Detail::ContrastRatio(color, XColor{255, 255, 255, 1}) > Detail::ContrastRatio(color, XColor{0, 0, 0, 1});
}

const IHostColorInfo& Themes::GetHostColorInfo() const { return impl_->hostColors; }

void Themes::NotifyChanged() const {
  ThemeChangedEvent event;
  event.currentThemeName = GetCurrent()->GetName();
  Event::NotifyEvent(kThemeChangedEventName, event);
}

Themes* ThemesSingleton::Instance() { return Themes::Instance(); }

}  // namespace Kf
