#include "orvane/storage.h"

#include <charconv>
#include <cstring>
#include <map>
#include <memory>
#include <system_error>

#include "core/profile.h"
#include "storage/storage_impl.h"

namespace {

using Kf::Detail::ProfileTask;
using Kf::Detail::ScopedProfile;

ProfileTask g_loadTask("KfPersistentStorageLoad");
ProfileTask g_storeTask("KfPersistentStorageStore");
ProfileTask g_saveTask("KfPersistentStorageSave");

constexpr const char* kRootName = "settings";

// The registry of storages by name. Never destroyed: storages that outlive
// static destruction (a host's own static storage) can still unregister.
struct Registry {
  IdeUtil::Mutex mutex;
  std::map<std::string, KfPersistentStorage*> byName;  // guarded by mutex
  // Serialises the lazy creation of "Global" and "Installation" (held while
  // constructing, which itself takes `mutex`).
  IdeUtil::Mutex creationMutex;
  std::vector<std::unique_ptr<KfPersistentStorage>> created;  // guarded by creationMutex
};

Registry& TheRegistry() {
  static Registry* registry = new Registry();
  return *registry;
}

KfPersistentStorage* FindRegistered(const std::string& name) {
  Registry& registry = TheRegistry();
  IdeUtil::ScopedLock lock(registry.mutex);
  auto it = registry.byName.find(name);
  return it == registry.byName.end() ? nullptr : it->second;
}

// The storage of the running installation is found once per process.
bool InstallationSettingsFile(GePath& out) {
  static IdeUtil::Mutex mutex;
  static GePath file;  // guarded by mutex
  IdeUtil::ScopedLock lock(mutex);
  if (file.IsEmpty()) {
    Kf::Storage::StorageIndex index;
    GePath found;
    if (!index.GetInstallSettingsPath(found)) return false;
    file = found;
  }
  out = file;
  return true;
}

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }

template <typename T>
bool ParseNumber(const std::string& text, T& value) {
  if (text.empty()) return false;
  T parsed{};
  const char* end = text.data() + text.size();
  auto [ptr, ec] = std::from_chars(text.data(), end, parsed);
  if (ec != std::errc() || ptr != end) return false;
  value = parsed;
  return true;
}

constexpr char kHexDigits[] = "0123456789abcdef";

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

bool NeedsPrefix(const std::string& name) {
  bool startsWithXml = name.size() >= 3 && (name[0] == 'x' || name[0] == 'X') && (name[1] == 'm' || name[1] == 'M') &&
                       (name[2] == 'l' || name[2] == 'L');
  return name.empty() || !(IsAsciiLetter(name[0]) || name[0] == '_') || startsWithXml;
}

bool IsNameCharacter(char c) { return IsAsciiLetter(c) || IsAsciiDigit(c) || c == '-' || c == '.' || c == '_'; }

// The element name of `name` without a copy when the name is already one
// (the common case); otherwise the mapped name is built in `scratch`.
const char* ElementName(const std::string& name, std::string& scratch) {
  if (!NeedsPrefix(name)) {
    bool clean = true;
    for (char c : name) clean = clean && IsNameCharacter(c);
    if (clean) return name.c_str();
  }
  scratch = KfPersistentStorage::ToElementName(name);
  return scratch.c_str();
}

// Sets a key element's text, dropping any record items it held before.
void SetKeyText(pugi::xml_node keyNode, const char* text) {
  pugi::xml_node first = keyNode.first_child();
  if (first && (first.type() != pugi::node_pcdata || first.next_sibling())) keyNode.remove_children();
  keyNode.text().set(text);
}

}  // namespace

bool KfStorageFileWatcher::HasChanged(Kf::Platform::FileIdentity& now) const {
  if (!Kf::Platform::Current().GetFileIdentity(owner_.file, now)) return false;
  return !known_ || !(now == seen_);
}

KfPersistentStorage::Impl::Impl(KfPersistentStorage& owner, const std::string& storageName, const GePath& storageFile)
    : name(storageName), file(storageFile), watcher(*this), fileLock(storageFile), asInterface(owner) {}

pugi::xml_node KfPersistentStorage::Impl::Root() {
  pugi::xml_node root = doc.document_element();
  if (!root) root = doc.append_child(kRootName);
  return root;
}

void KfPersistentStorage::Impl::Refresh() {
  Kf::Platform::FileIdentity now;
  if (!watcher.HasChanged(now)) return;
  pugi::xml_document loaded;
  switch (Kf::Storage::Detail::ReadXmlFile(file, kRootName, loaded)) {
    case Kf::Storage::Detail::ReadResult::kLoaded:
      doc.reset(loaded);
      watcher.Remember(now);
      break;
    case Kf::Storage::Detail::ReadResult::kDamaged:
      doc.reset();
      watcher.Forget();
      break;
    case Kf::Storage::Detail::ReadResult::kMissing:  // vanished between the check and the read
      break;
  }
}

void KfPersistentStorage::Impl::BeginChange() {
  if (depth.load(std::memory_order_relaxed) > 0) return;  // the buffered operation holds the lock
  fileLock.Lock();
  // The caller's store task is already open, so tracing has been decided and
  // this nested task cannot make the trace read the storage we hold.
  ScopedProfile profile(g_loadTask);
  Refresh();
}

void KfPersistentStorage::Impl::AbandonChange() {
  if (depth.load(std::memory_order_relaxed) > 0) return;
  fileLock.Unlock();
}

bool KfPersistentStorage::Impl::EndChange() {
  if (depth.load(std::memory_order_relaxed) > 0) return true;  // saved when the buffered operation ends
  bool saved = Save();
  fileLock.Unlock();
  return saved;
}

bool KfPersistentStorage::Impl::Save() {
  ScopedProfile profile(g_saveTask);
  Root();  // an empty storage still saves as <settings/>
  if (!Kf::Storage::Detail::SaveXmlFileAtomically(doc, file)) return false;
  Kf::Platform::FileIdentity written;
  if (Kf::Platform::Current().GetFileIdentity(file, written)) watcher.Remember(written);
  return true;
}

pugi::xml_node KfPersistentStorage::Impl::FindKey(const std::string& section, const std::string& key) {
  std::string sectionScratch, keyScratch;
  pugi::xml_node sectionNode = doc.document_element().child(ElementName(section, sectionScratch));
  return sectionNode.child(ElementName(key, keyScratch));
}

pugi::xml_node KfPersistentStorage::Impl::FindOrAddKey(const std::string& section, const std::string& key) {
  std::string sectionScratch, keyScratch;
  const char* sectionName = ElementName(section, sectionScratch);
  const char* keyName = ElementName(key, keyScratch);
  pugi::xml_node root = Root();
  pugi::xml_node sectionNode = root.child(sectionName);
  if (!sectionNode) sectionNode = root.append_child(sectionName);
  pugi::xml_node keyNode = sectionNode.child(keyName);
  if (!keyNode) keyNode = sectionNode.append_child(keyName);
  return keyNode;
}

bool KfPersistentStorage::Impl::StoreText(const std::string& section, const std::string& key,
                                          const std::string& text) {
  // XML text cannot hold a zero character; refuse rather than cut the value.
  if (text.find('\0') != std::string::npos) return false;
  ScopedProfile profile(g_storeTask);
  IdeUtil::ScopedLock lock(mutex);
  BeginChange();
  SetKeyText(FindOrAddKey(section, key), text.c_str());
  return EndChange();
}

bool KfPersistentStorage::Impl::LoadText(const std::string& section, const std::string& key, std::string& text) {
  // The profiling scope starts before the lock: the trace file may read the
  // "Global" storage on its first event.
  std::unique_ptr<ScopedProfile> profile;
  if (depth.load(std::memory_order_relaxed) == 0) profile = std::make_unique<ScopedProfile>(g_loadTask);
  IdeUtil::ScopedLock lock(mutex);
  if (depth.load(std::memory_order_relaxed) == 0) Refresh();
  pugi::xml_node keyNode = FindKey(section, key);
  if (!keyNode) return false;
  text = keyNode.text().get();
  return true;
}

bool KfPersistentStorage::Impl::WriteRecord(const std::string& section, const std::string& key,
                                            const std::vector<std::string>& items) {
  for (const std::string& item : items)
    if (item.find('\0') != std::string::npos) return false;
  ScopedProfile profile(g_storeTask);
  IdeUtil::ScopedLock lock(mutex);
  BeginChange();
  pugi::xml_node keyNode = FindOrAddKey(section, key);
  keyNode.remove_children();
  for (const std::string& item : items) keyNode.append_child("i").text().set(item.c_str());
  return EndChange();
}

bool KfPersistentStorage::Impl::ReadRecord(const std::string& section, const std::string& key,
                                           std::vector<std::string>& items) {
  std::unique_ptr<ScopedProfile> profile;
  if (depth.load(std::memory_order_relaxed) == 0) profile = std::make_unique<ScopedProfile>(g_loadTask);
  IdeUtil::ScopedLock lock(mutex);
  if (depth.load(std::memory_order_relaxed) == 0) Refresh();
  pugi::xml_node keyNode = FindKey(section, key);
  if (!keyNode) return false;
  items.clear();
  for (pugi::xml_node item = keyNode.child("i"); item; item = item.next_sibling("i")) items.push_back(item.text().get());
  return true;
}

KfPersistentStorageI::~KfPersistentStorageI() = default;

KfPersistentStorage::KfPersistentStorage(const std::string& name, const GePath& file)
    : impl_(std::make_unique<Impl>(*this, name, file)) {
  {
    IdeUtil::ScopedLock lock(impl_->mutex);
    impl_->Refresh();
    impl_->Root();
  }
  Registry& registry = TheRegistry();
  IdeUtil::ScopedLock lock(registry.mutex);
  registry.byName[name] = this;
}

KfPersistentStorage::~KfPersistentStorage() {
  Registry& registry = TheRegistry();
  IdeUtil::ScopedLock lock(registry.mutex);
  auto it = registry.byName.find(impl_->name);
  if (it != registry.byName.end() && it->second == this) registry.byName.erase(it);
}

void KfPersistentStorage::BeginBufferedOperation() {
  std::unique_ptr<ScopedProfile> profile;
  if (impl_->depth.load(std::memory_order_relaxed) == 0) profile = std::make_unique<ScopedProfile>(g_loadTask);
  IdeUtil::ScopedLock lock(impl_->mutex);
  if (impl_->depth.load(std::memory_order_relaxed) == 0) {
    impl_->fileLock.Lock();
    impl_->Refresh();
  }
  impl_->depth.fetch_add(1, std::memory_order_relaxed);
}

void KfPersistentStorage::EndBufferedOperation() {
  IdeUtil::ScopedLock lock(impl_->mutex);
  std::uint32_t depth = impl_->depth.load(std::memory_order_relaxed);
  if (depth == 0) return;  // unbalanced End: nothing is open
  impl_->depth.store(depth - 1, std::memory_order_relaxed);
  if (depth == 1) {
    (void)impl_->Save();  // a failure is reported by the save itself
    impl_->fileLock.Unlock();
  }
}

bool KfPersistentStorage::Store(const std::string& section, const std::string& key, const void* bytes,
                                std::uint32_t size) {
  if (bytes == nullptr && size > 0) return false;
  std::string text;
  text.reserve(size * 2);
  const auto* data = static_cast<const unsigned char*>(bytes);
  for (std::uint32_t i = 0; i < size; ++i) {
    text.push_back(kHexDigits[data[i] >> 4]);
    text.push_back(kHexDigits[data[i] & 0xf]);
  }
  return impl_->StoreText(section, key, text);
}

bool KfPersistentStorage::Store(const std::string& section, const std::string& key, std::uint32_t value) {
  return impl_->StoreText(section, key, std::to_string(value));
}

bool KfPersistentStorage::StoreUint64(const std::string& section, const std::string& key, std::uint64_t value) {
  return impl_->StoreText(section, key, std::to_string(value));
}

bool KfPersistentStorage::StoreInt64(const std::string& section, const std::string& key, std::int64_t value) {
  return impl_->StoreText(section, key, std::to_string(value));
}

bool KfPersistentStorage::Store(const std::string& section, const std::string& key, const std::string& value) {
  return impl_->StoreText(section, key, value);
}

std::uint32_t KfPersistentStorage::Load(const std::string& section, const std::string& key, char*& buffer,
                                        std::uint32_t size) {
  std::string text;
  if (buffer == nullptr || !impl_->LoadText(section, key, text)) return 0;
  if (text.size() > size) return 0;
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return static_cast<std::uint32_t>(text.size());
}

std::uint32_t KfPersistentStorage::Load(const std::string& section, const std::string& key, void* buffer,
                                        std::uint32_t size) {
  std::string text;
  if (!impl_->LoadText(section, key, text)) return 0;
  if (text.size() % 2 != 0 || text.size() / 2 > size) return 0;
  std::vector<unsigned char> bytes(text.size() / 2);
  for (size_t i = 0; i < bytes.size(); ++i) {
    int high = HexValue(text[2 * i]);
    int low = HexValue(text[2 * i + 1]);
    if (high < 0 || low < 0) return 0;
    bytes[i] = static_cast<unsigned char>(high * 16 + low);
  }
  if (!bytes.empty()) {
    if (buffer == nullptr) return 0;
    std::memcpy(buffer, bytes.data(), bytes.size());
  }
  return static_cast<std::uint32_t>(bytes.size());
}

bool KfPersistentStorage::Load(const std::string& section, const std::string& key, std::uint32_t& value) {
  std::string text;
  return impl_->LoadText(section, key, text) && ParseNumber(text, value);
}

bool KfPersistentStorage::LoadUint64(const std::string& section, const std::string& key, std::uint64_t& value) {
  std::string text;
  return impl_->LoadText(section, key, text) && ParseNumber(text, value);
}

bool KfPersistentStorage::LoadInt64(const std::string& section, const std::string& key, std::int64_t& value) {
  std::string text;
  return impl_->LoadText(section, key, text) && ParseNumber(text, value);
}

bool KfPersistentStorage::Load(const std::string& section, const std::string& key, std::string& value) {
  return impl_->LoadText(section, key, value);
}

bool KfPersistentStorage::DeleteSection(const std::string& section) {
  ScopedProfile profile(g_storeTask);
  IdeUtil::ScopedLock lock(impl_->mutex);
  impl_->BeginChange();
  if (!impl_->Root().remove_child(ToElementName(section).c_str())) {
    impl_->AbandonChange();
    return false;
  }
  return impl_->EndChange();
}

bool KfPersistentStorage::DeleteKey(const std::string& section, const std::string& key) {
  ScopedProfile profile(g_storeTask);
  IdeUtil::ScopedLock lock(impl_->mutex);
  impl_->BeginChange();
  if (!impl_->Root().child(ToElementName(section).c_str()).remove_child(ToElementName(key).c_str())) {
    impl_->AbandonChange();
    return false;
  }
  return impl_->EndChange();
}

KfPersistentStorage* KfPersistentStorage::GetStorage(const std::string& name) {
  if (KfPersistentStorage* found = FindRegistered(name)) return found;
  if (name != "Global" && name != "Installation") return nullptr;
  Registry& registry = TheRegistry();
  IdeUtil::ScopedLock creation(registry.creationMutex);
  if (KfPersistentStorage* found = FindRegistered(name)) return found;  // another thread made it meanwhile
  GePath file;
  if (name == "Global") {
    GePath directory;
    if (!KfGetOptionStorageDirectory(directory)) return nullptr;
    file = directory / "QorIde.xml";
  } else if (!InstallationSettingsFile(file)) {
    return nullptr;
  }
  registry.created.push_back(std::make_unique<KfPersistentStorage>(name, file));
  return registry.created.back().get();
}

std::string KfPersistentStorage::ToElementName(const std::string& name) {
  std::string result;
  result.reserve(name.size() + 1);
  if (NeedsPrefix(name)) result.push_back('A');
  for (char c : name) result.push_back(IsNameCharacter(c) ? c : '_');
  return result;
}

bool KfPersistentStorage::StoreBool(const std::string& section, const std::string& key, bool value) {
  return impl_->StoreText(section, key, value ? "1" : "0");
}

bool KfPersistentStorage::LoadBool(const std::string& section, const std::string& key, bool& value) {
  std::string text;
  if (!impl_->LoadText(section, key, text)) return false;
  if (text == "1" || text == "true") {
    value = true;
  } else if (text == "0" || text == "false") {
    value = false;
  } else {
    return false;
  }
  return true;
}

std::vector<std::string> KfPersistentStorage::GetSections() {
  ScopedProfile profile(g_loadTask);
  IdeUtil::ScopedLock lock(impl_->mutex);
  if (impl_->depth.load(std::memory_order_relaxed) == 0) impl_->Refresh();
  std::vector<std::string> sections;
  for (pugi::xml_node section : impl_->Root().children())
    if (section.type() == pugi::node_element) sections.emplace_back(section.name());
  return sections;
}

bool KfPersistentStorage::GetKeys(const std::string& section, std::vector<std::string>& keys) {
  ScopedProfile profile(g_loadTask);
  IdeUtil::ScopedLock lock(impl_->mutex);
  if (impl_->depth.load(std::memory_order_relaxed) == 0) impl_->Refresh();
  pugi::xml_node sectionNode = impl_->Root().child(ToElementName(section).c_str());
  if (!sectionNode) return false;
  keys.clear();
  for (pugi::xml_node key : sectionNode.children())
    if (key.type() == pugi::node_element) keys.emplace_back(key.name());
  return true;
}

const std::string& KfPersistentStorage::GetName() const { return impl_->name; }

const GePath& KfPersistentStorage::GetFile() const { return impl_->file; }

KfPersistentStorage::operator KfPersistentStorageI&() const { return impl_->asInterface; }

KfPersistentStorageBuffer::KfPersistentStorageBuffer(KfPersistentStorage* storage) : storage_(storage) {
  if (storage_) storage_->BeginBufferedOperation();
}

KfPersistentStorageBuffer::~KfPersistentStorageBuffer() {
  if (storage_) storage_->EndBufferedOperation();
}
