// Internal: the implementation object behind KfPersistentStorage, shared by
// the storage's operations and the persistent streams.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "orvane/locks.h"
#include "orvane/platform.h"
#include "orvane/storage.h"
#include "storage/settings_file.h"

// Remembers the identity of the file as last read or written, so that a
// change by another process (a save renames a new file into place) is seen.
class KfStorageFileWatcher {
 public:
  explicit KfStorageFileWatcher(KfPersistentStorage::Impl& owner) : owner_(owner) {}
  // True when the file exists and differs from what was last seen; `now`
  // receives its identity.
  bool HasChanged(Kf::Platform::FileIdentity& now) const;
  void Remember(const Kf::Platform::FileIdentity& seen) {
    seen_ = seen;
    known_ = true;
  }
  void Forget() { known_ = false; }

 private:
  KfPersistentStorage::Impl& owner_;
  bool known_ = false;
  Kf::Platform::FileIdentity seen_;
};

struct KfPersistentStorage::Impl {
  Impl(KfPersistentStorage& owner, const std::string& name, const GePath& file);

  // The abstract interface a storage converts to; it forwards every call.
  struct Interface final : KfPersistentStorageI {
    explicit Interface(KfPersistentStorage& s) : storage(s) {}
    void BeginBufferedOperation() override { storage.BeginBufferedOperation(); }
    void EndBufferedOperation() override { storage.EndBufferedOperation(); }
    bool Store(const std::string& s, const std::string& k, const void* b, std::uint32_t n) override {
      return storage.Store(s, k, b, n);
    }
    bool Store(const std::string& s, const std::string& k, std::uint32_t v) override { return storage.Store(s, k, v); }
    bool StoreUint64(const std::string& s, const std::string& k, std::uint64_t v) override {
      return storage.StoreUint64(s, k, v);
    }
    bool StoreInt64(const std::string& s, const std::string& k, std::int64_t v) override {
      return storage.StoreInt64(s, k, v);
    }
    bool Store(const std::string& s, const std::string& k, const std::string& v) override {
      return storage.Store(s, k, v);
    }
    std::uint32_t Load(const std::string& s, const std::string& k, char*& b, std::uint32_t n) override {
      return storage.Load(s, k, b, n);
    }
    std::uint32_t Load(const std::string& s, const std::string& k, void* b, std::uint32_t n) override {
      return storage.Load(s, k, b, n);
    }
    bool Load(const std::string& s, const std::string& k, std::uint32_t& v) override { return storage.Load(s, k, v); }
    bool LoadUint64(const std::string& s, const std::string& k, std::uint64_t& v) override {
      return storage.LoadUint64(s, k, v);
    }
    bool LoadInt64(const std::string& s, const std::string& k, std::int64_t& v) override {
      return storage.LoadInt64(s, k, v);
    }
    bool Load(const std::string& s, const std::string& k, std::string& v) override { return storage.Load(s, k, v); }
    bool DeleteSection(const std::string& s) override { return storage.DeleteSection(s); }
    bool DeleteKey(const std::string& s, const std::string& k) override { return storage.DeleteKey(s, k); }

    KfPersistentStorage& storage;
  };

  // Brings the document up to date with the file (step one of every
  // operation). Caller holds `mutex`.
  void Refresh();
  // Starts a load-modify-save: takes the inter-process lock and refreshes,
  // unless a buffered operation already did both. Caller holds `mutex`.
  void BeginChange();
  // Saves (deferred while buffered) and releases the inter-process lock when
  // no buffered operation holds it. Caller holds `mutex`. True when saved or
  // deferred.
  bool EndChange();
  // Ends a change that changed nothing: nothing is saved. Caller holds `mutex`.
  void AbandonChange();
  bool Save();

  pugi::xml_node Root();
  pugi::xml_node FindKey(const std::string& section, const std::string& key);
  pugi::xml_node FindOrAddKey(const std::string& section, const std::string& key);
  bool StoreText(const std::string& section, const std::string& key, const std::string& text);
  bool LoadText(const std::string& section, const std::string& key, std::string& text);

  // Record access for the persistent streams.
  bool WriteRecord(const std::string& section, const std::string& key, const std::vector<std::string>& items);
  bool ReadRecord(const std::string& section, const std::string& key, std::vector<std::string>& items);

  IdeUtil::Mutex mutex;
  std::atomic<std::uint32_t> depth{0};  // written under mutex; read before locking to pick the log task
  std::string name;
  GePath file;
  KfStorageFileWatcher watcher;    // guarded by mutex
  pugi::xml_document doc;          // guarded by mutex
  Kf::Storage::Detail::InterProcessFileLock fileLock;  // guarded by mutex
  Interface asInterface;
};

namespace Kf::Storage::Detail {
// The user's base settings directory: $ORVANE_SETTINGS_DIR, or the vendor
// folder below the user's configuration directory.
bool GetBaseSettingsDirectory(GePath& out);
}  // namespace Kf::Storage::Detail
