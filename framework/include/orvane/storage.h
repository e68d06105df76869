// Persistent settings: named stores of sections and keys kept in XML files,
// the persistent streams that write records into them, and the index of
// per-installation settings directories.
//
//   KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
//   if (global) {
//     std::uint32_t width = 80;                          // the default
//     global->Load("TextEditor", "Width", width);        // unchanged when missing
//     KfPersistentStorageBuffer batch(global);           // one load, one save
//     (void)global->Store("TextEditor", "Width", 120u);
//     (void)global->Store("TextEditor", "Font", std::string("Mono"));
//   }
//
// Files. The base settings directory is $ORVANE_SETTINGS_DIR when that
// variable is set and not empty; otherwise the vendor folder "orvane" below
// the user's configuration directory ($XDG_CONFIG_HOME, or ~/.config). Below
// it, the option storage directory "Global" holds "QorIde.xml" (the "Global"
// storage) and the directory "Storage" with the index "Index.xml" and one
// directory "InstallationN" per installation, each with its "Settings.xml".
//
// Saving. A save writes the whole document to a temporary file beside the
// target and renames it over the target, so a process that dies at any moment
// leaves the old or the new file, complete. A store (or a buffered operation)
// holds an inter-process lock on "<file>.lock" from its load to its save, so
// processes that store different keys into one file lose none of them.
//
// Change detection. Every operation first compares the file's modification
// time, size, device and inode with what it saw last and reads the file again
// when any differs; another process's save is therefore seen at the next call.
//
// Damaged files. A file that is not well-formed XML, or whose root element is
// not "settings", is never overwritten: it is renamed to
// "<file>.corrupt-<stamp>", the storage starts empty, and the problem is
// reported through the library's diagnostics.
//
// Threads: any thread may use a storage; every operation runs under the
// storage's own mutex. The registry of names has its own lock. No callback
// is ever made.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "orvane/export.h"
#include "orvane/gepath.h"
#include "orvane/pxxmlnode.h"

class KfPersistentStorage;

// The operations of a persistent storage as an abstract interface, for code
// that takes "some storage" (a storage converts to it). The slots are those
// of KfPersistentStorage, in the same order.
//
// Threads: as the storage behind it.
class ORVANE_API KfPersistentStorageI {
 public:
  virtual ~KfPersistentStorageI();
  virtual void BeginBufferedOperation() = 0;
  virtual void EndBufferedOperation() = 0;
  virtual bool Store(const std::string& section, const std::string& key, const void* bytes,
                                   std::uint32_t size) = 0;
  virtual bool Store(const std::string& section, const std::string& key, std::uint32_t value) = 0;
  virtual bool StoreUint64(const std::string& section, const std::string& key,
                                         std::uint64_t value) = 0;
  virtual bool StoreInt64(const std::string& section, const std::string& key, std::int64_t value) = 0;
  virtual bool Store(const std::string& section, const std::string& key,
                                   const std::string& value) = 0;
  virtual std::uint32_t Load(const std::string& section, const std::string& key, char*& buffer,
                             std::uint32_t size) = 0;
  virtual std::uint32_t Load(const std::string& section, const std::string& key, void* buffer,
                             std::uint32_t size) = 0;
  virtual bool Load(const std::string& section, const std::string& key, std::uint32_t& value) = 0;
  virtual bool LoadUint64(const std::string& section, const std::string& key, std::uint64_t& value) = 0;
  virtual bool LoadInt64(const std::string& section, const std::string& key, std::int64_t& value) = 0;
  virtual bool Load(const std::string& section, const std::string& key, std::string& value) = 0;
  virtual bool DeleteSection(const std::string& section) = 0;
  virtual bool DeleteKey(const std::string& section, const std::string& key) = 0;
};

// A named settings store in one XML file: the root element "settings", one
// child element per section, one grandchild per key, the value as the key
// element's text (numbers in decimal). Section and key names become element
// names by one fixed rule (see ToElementName), so different names may share
// an element.
//
// Stores return true when the value was stored and the file saved. Loads that
// return bool are true only when the key exists and its text converts to the
// requested type; the output is unchanged otherwise (text where a number is
// expected counts as "not found"). Byte values are stored as lower-case
// hexadecimal text, two digits per byte. Text holding a zero character cannot
// be kept in XML: such a store (or record) is refused and returns false.
//
// Threads: see the top of this header. A buffered operation counts per
// storage, not per thread: while one is open, stores from any thread are kept
// in memory and saved when the outermost buffered operation ends, and the
// process holds the storage's inter-process lock until then (so keep batches
// short, and always end them: KfPersistentStorageBuffer does). The lock orders
// processes; two storage objects on one file inside one process are ordered
// only by their own mutexes, so use one storage per file per process.
class ORVANE_API KfPersistentStorage {
 public:
  // Registers this storage under `name` (replacing an earlier storage of that
  // name in the registry) and reads `file` if it exists; otherwise the
  // storage starts empty and the file is written on the first save.
  KfPersistentStorage(const std::string& name, const GePath& file);
  virtual ~KfPersistentStorage();
  KfPersistentStorage(const KfPersistentStorage&) = delete;
  KfPersistentStorage& operator=(const KfPersistentStorage&) = delete;

  virtual void BeginBufferedOperation();
  virtual void EndBufferedOperation();
  virtual bool Store(const std::string& section, const std::string& key, const void* bytes,
                                   std::uint32_t size);
  virtual bool Store(const std::string& section, const std::string& key, std::uint32_t value);
  virtual bool StoreUint64(const std::string& section, const std::string& key, std::uint64_t value);
  virtual bool StoreInt64(const std::string& section, const std::string& key, std::int64_t value);
  virtual bool Store(const std::string& section, const std::string& key, const std::string& value);
  // Copies the text with its terminating zero when the key exists and `size`
  // is at least the text's length; returns the length, or 0. `size` counts
  // the characters besides the zero, so the buffer holds size + 1 chars.
  virtual std::uint32_t Load(const std::string& section, const std::string& key, char*& buffer,
                             std::uint32_t size);
  // Reads what Store(section, key, bytes, size) wrote; returns the number of
  // bytes delivered (0 when the key is missing, is not byte text, or holds
  // more than `size` bytes).
  virtual std::uint32_t Load(const std::string& section, const std::string& key, void* buffer,
                             std::uint32_t size);
  virtual bool Load(const std::string& section, const std::string& key, std::uint32_t& value);
  virtual bool LoadUint64(const std::string& section, const std::string& key, std::uint64_t& value);
  virtual bool LoadInt64(const std::string& section, const std::string& key, std::int64_t& value);
  virtual bool Load(const std::string& section, const std::string& key, std::string& value);
  // Remove a section with its keys, or one key, and save. False when there
  // was nothing to remove (the file is not written then) or the save failed.
  virtual bool DeleteSection(const std::string& section);
  virtual bool DeleteKey(const std::string& section, const std::string& key);

  // The registered storage of that name. "Global" and "Installation" are
  // created on first request (and kept until the process ends); any other
  // name that no caller has constructed gives null.
  static KfPersistentStorage* GetStorage(const std::string& name);
  // The process-wide root node of the storage subsystem: an in-memory
  // document (root element "root") under which code may keep shared XML
  // data and publish it by name with Kf::Storage::Storage.
  static PxXmlNode GetRootNode();
  // The element name a section or key name is stored under: "A" in front when
  // the name is empty, does not begin with a letter or "_", or begins with
  // "xml" in any case; then every character other than a letter, a digit,
  // "-", "." or "_" becomes "_". ("3D view" -> "A3D_view".)
  static std::string ToElementName(const std::string& name);

  // Flags stored as "1" or "0"; a load also accepts "true" and "false".
  bool StoreBool(const std::string& section, const std::string& key, bool value);
  bool LoadBool(const std::string& section, const std::string& key, bool& value);
  // The element names of the sections, and of the keys of one section, in
  // document order (false when the section does not exist).
  std::vector<std::string> GetSections();
  bool GetKeys(const std::string& section, std::vector<std::string>& keys);

  const std::string& GetName() const;
  const GePath& GetFile() const;

  // The storage as its abstract interface.
  operator KfPersistentStorageI&() const;  // NOLINT: conversion by design

  struct Impl;

 private:
  friend class KfPerOStream;
  friend class KfPerIStream;
  std::unique_ptr<Impl> impl_;
};

// Holds one buffered operation on a storage for its lifetime: every store in
// the scope lands in memory and the file is saved once, at the end.
//
//   { KfPersistentStorageBuffer batch(storage); ...many stores... }   // one save
//
// Threads: as the storage. A null storage makes the guard do nothing.
class ORVANE_API KfPersistentStorageBuffer {
 public:
  explicit KfPersistentStorageBuffer(KfPersistentStorage* storage);
  ~KfPersistentStorageBuffer();
  KfPersistentStorageBuffer(const KfPersistentStorageBuffer&) = delete;
  KfPersistentStorageBuffer& operator=(const KfPersistentStorageBuffer&) = delete;

 private:
  KfPersistentStorage* storage_;
};

// Computes the option storage directory (the base settings directory with
// "Global" below it; see the top of this header), creates it and its parents
// when missing, and returns false when it cannot be had.
ORVANE_API bool KfGetOptionStorageDirectory(GePath& out);

// Writes one record (a sequence of items) under a section and key of a
// storage. Each item becomes one child element <i> of the key element, holding
// the item as text (numbers in decimal, flags as 1 or 0), so a record stays
// readable in the file. The record replaces whatever the key held when the
// stream is closed: by Close() or by the destructor.
//
//   {
//     KfPerOStream out(*global, "Accelerators", "Prim0");
//     out << keySequenceText << std::string("Edit.Copy") << 3u;
//   }   // written and saved here
//
// Threads: one stream belongs to one thread; the storage it writes into may be
// shared (the write happens under the storage's mutex).
class ORVANE_API KfPerOStream {
 public:
  KfPerOStream(KfPersistentStorage& storage, const std::string& section, const std::string& key);
  ~KfPerOStream();
  KfPerOStream(const KfPerOStream&) = delete;
  KfPerOStream& operator=(const KfPerOStream&) = delete;

  KfPerOStream& operator<<(const std::string& text);
  KfPerOStream& operator<<(const char* text);
  KfPerOStream& operator<<(bool value);
  KfPerOStream& operator<<(std::int32_t value);
  KfPerOStream& operator<<(std::uint32_t value);
  KfPerOStream& operator<<(std::int64_t value);
  KfPerOStream& operator<<(std::uint64_t value);
  // Any other integer type (long long, short, char, ...) is written as a
  // 64-bit number of its signedness.
  template <typename T>
    requires std::is_integral_v<T>
  KfPerOStream& operator<<(T value) {
    if constexpr (std::is_signed_v<T>) {
      return *this << static_cast<std::int64_t>(value);
    } else {
      return *this << static_cast<std::uint64_t>(value);
    }
  }

  // Writes the record into the storage and saves it; the stream takes no more
  // items afterwards. True when saved (a second call returns the first result).
  bool Close();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// Reads back, item by item and in order, a record that KfPerOStream wrote.
// The record is read from the storage when the stream is constructed. A read
// past the last item, or of an item whose text does not convert to the
// requested type, leaves the target unchanged and puts the stream in the
// failed state; every later read then fails too.
//
//   KfPerIStream in(*global, "Accelerators", "Prim0");
//   std::string command;
//   std::uint32_t flags = 0;
//   if (in >> sequenceText >> command >> flags) { ...all three were read... }
//
// Threads: one stream belongs to one thread.
class ORVANE_API KfPerIStream {
 public:
  KfPerIStream(KfPersistentStorage& storage, const std::string& section, const std::string& key);
  ~KfPerIStream();
  KfPerIStream(const KfPerIStream&) = delete;
  KfPerIStream& operator=(const KfPerIStream&) = delete;

  KfPerIStream& operator>>(std::string& text);
  KfPerIStream& operator>>(bool& value);
  KfPerIStream& operator>>(std::int32_t& value);
  KfPerIStream& operator>>(std::uint32_t& value);
  KfPerIStream& operator>>(std::int64_t& value);
  KfPerIStream& operator>>(std::uint64_t& value);
  // Any other integer type; a value outside the type's range fails the read.
  template <typename T>
    requires std::is_integral_v<T>
  KfPerIStream& operator>>(T& value) {
    using Wide = std::conditional_t<std::is_signed_v<T>, std::int64_t, std::uint64_t>;
    Wide wide = 0;
    if (!(*this >> wide)) return *this;
    if (wide < static_cast<Wide>(std::numeric_limits<T>::min()) ||
        wide > static_cast<Wide>(std::numeric_limits<T>::max())) {
      Fail();
    } else {
      value = static_cast<T>(wide);
    }
    return *this;
  }

  // True when the record exists in the storage.
  bool Exists() const;
  // False after a failed read (or when the record does not exist).
  bool Good() const;
  explicit operator bool() const { return Good(); }
  // True when every item has been read.
  bool AtEnd() const;
  // The number of items the record holds.
  std::size_t ItemCount() const;

 private:
  void Fail();

  struct Impl;
  std::unique_ptr<Impl> impl_;
};

namespace Kf::Storage {

// The index of per-installation settings directories: which settings
// directory ("<option storage>/Storage/InstallationN") belongs to which
// installation directory. Kept in "<option storage>/Storage/Index.xml" as
// <Index><Installation InstallDir="..." SettingsDir="..."/>...</Index>.
//
//   Kf::Storage::StorageIndex index;
//   GePath settingsFile;
//   if (index.GetInstallSettingsPath("/opt/ide", settingsFile)) ...   // .../Installation0/Settings.xml
//   // the index is written to its file when `index` is destroyed
//
// When all kMaxIndex names (Installation0 to Installation999) are taken, no
// new entry is made and GetInstallSettingsPath returns false. A directory that
// exists on disk but is not named in the index counts as free. The running
// installation is the directory of the library file (the installation's
// shared binaries directory).
//
// Threads: one index object belongs to one thread. Two processes that create
// entries at the same moment may both write the file; the later write wins.
class ORVANE_API StorageIndex {
 public:
  static constexpr std::int32_t kMaxIndex = 1000;

  // Reads the index file, or starts an empty index when there is none (or it
  // is damaged: the damaged file is kept aside and reported).
  StorageIndex();
  // Reads the index from a stream; such an index is never written to the file.
  explicit StorageIndex(std::istream& in);
  ~StorageIndex();
  StorageIndex(const StorageIndex&) = delete;
  StorageIndex& operator=(const StorageIndex&) = delete;

  // Writes the index document to the stream and clears the modified flag.
  bool Save(std::ostream& out);
  bool IsModified() const { return modified_; }

  // The settings file of the installation in `installDir`, creating an index
  // entry (and choosing a free settings directory) when there is none.
  bool GetInstallSettingsPath(const GePath& installDir, GePath& settingsFile);
  // The same for the running installation.
  bool GetInstallSettingsPath(GePath& settingsFile);

 private:
  bool Save();
  bool GetStorageRootDir(GePath& out);
  bool GetIndexPath(GePath& out);
  PxXmlNode FindInstallDirNode(const GePath& installDir);
  PxXmlNode FindSettingsDirNode(const GePath& settingsDir);
  // A settings directory below `root` that no entry names; empty when all
  // kMaxIndex names are taken.
  GePath GetFreeInstallSettingsDir(GePath& root);

  struct Impl;
  std::unique_ptr<Impl> impl_;  // the index document
  bool modified_ = false;
  bool fromStream_ = false;
};

// A named registration of an XML node, so that other code can reach the node
// by name. The object owns its entry: its destructor removes it.
//
//   static Kf::Storage::Storage shared("SharedData", KfPersistentStorage::GetRootNode().GetOrAppendChild("Shared"));
//   PxXmlNode node = Kf::Storage::Storage::GetStorage("SharedData");
//
// Threads: any; the map has its own lock. A later registration of the same
// name replaces the earlier one; destroying either object removes the entry
// of that name.
class ORVANE_API Storage {
 public:
  Storage(const char* name, PxXmlNode node);
  ~Storage();
  Storage(const Storage&) = delete;
  Storage& operator=(const Storage&) = delete;

  // The node registered under `name`, or an empty node.
  static PxXmlNode GetStorage(const char* name);

 private:
  std::string name_;
  PxXmlNode node_;
};

}  // namespace Kf::Storage
