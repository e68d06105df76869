// Keyboard accelerators: key and key-sequence handles, the front end that
// makes their implementation objects, and the accelerator manager that keeps
// the application's bindings.
//
// The library knows nothing about key codes or key names. AccelKey and
// KeySequence are one-pointer owning handles around objects made by the
// registered IAccelFrontEnd; comparison, cloning and persistence are
// delegated to those objects. A host registers a front end before it builds
// any key from numbers:
//
//   Kf::Accel::Register(&frontEnd);
//   Kf::Accel::KeySequence save(kCtrl, 'S');
//
// Handle rules that callers must keep in mind:
// - Copy construction of an AccelKey clones its object. Copy construction of
//   a KeySequence asks the object for a clone (IKeySequenceImpl::Clone); an
//   object that gives none (the default) is shared instead, and the copies
//   count their holders so that the last one to go deletes it. Either way
//   each copy may be destroyed on its own. (This is also how the manager
//   copies the caller's sequences into its tables.)
// - Copy ASSIGNMENT shares the pointer as it stands and does not release the
//   target's previous object: use it only where the source is then discarded
//   without destruction. Move construction and move assignment exchange
//   pointers and are always safe.
// - The empty KeySequence (null object) equals only another empty one, and
//   `a < empty` is true for every `a` (an empty one included), so an empty
//   sequence must never be used as a table key.
//
// The AccelManager is abstract; the host derives the concrete manager, which
// turns the tables into real accelerators and formats sequences as text.
//
//   class MyAccels : public Kf::Accel::AccelManager {
//     void RebuildAccelerators() override { ... }
//     void KeySequenceToString(const Kf::Accel::KeySequence& k, std::string& out) override { ... }
//   };
//   MyAccels manager;                                  // before any part installs
//   Kf::Accel::AccelPart editorKeys(Kf::Accel::AccelPart::Primary, {{save, "File.Save"}});
//   editorKeys.Install();
//
// Threads: the front-end slot is a plain pointer set during start-up and
// shut-down. Handles are values: one handle must not be used from two threads
// at once, but copies that share an object may live on different threads
// (the count of its holders has its own lock). The AccelManager runs on the UI thread only (installation, idle
// chore, application events) and takes no lock; the command information it
// consults guards itself.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "orvane/export.h"
#include "orvane/gepath.h"
#include "orvane/idle.h"

class KfPerOStream;
class KfPerIStream;

namespace Kf::Accel {

// One key stroke with its modifiers.
class ORVANE_API AccelKey {
 public:
  // Made by the front end; compares only with objects of its own kind.
  class ORVANE_API IAccelKeyImpl {
   public:
    virtual ~IAccelKeyImpl();
    // A new heap copy, owned by the caller.
    virtual IAccelKeyImpl* Clone() = 0;
    virtual bool Equal(const IAccelKeyImpl* other) = 0;
    virtual bool LessThan(const IAccelKeyImpl* other) = 0;
  };

  AccelKey(IAccelKeyImpl* impl);  // NOLINT: adopts the object; implicit by design
  // Front end CreateKey(0, key).
  AccelKey(unsigned int key);  // NOLINT: implicit by design
  AccelKey(unsigned int modifiers, unsigned int key);
  ~AccelKey();
  AccelKey(const AccelKey& other);             // clones
  AccelKey(AccelKey&& other) noexcept;         // takes over
  AccelKey& operator=(const AccelKey& other);  // shares the pointer (see above)
  AccelKey& operator=(AccelKey&& other) noexcept;  // exchanges

  // A new heap handle holding a clone; the caller owns it.
  AccelKey* Copy() const;
  bool Equal(const AccelKey& other) const;
  bool LessThan(const AccelKey& other) const;
  // The front end's object, for the front end itself to read.
  const IAccelKeyImpl* Impl() const { return impl_; }

 private:
  IAccelKeyImpl* impl_;
};

// The key or chord of keys that triggers a command; empty when it holds no
// object.
class ORVANE_API KeySequence {
 public:
  class ORVANE_API IKeySequenceImpl {
   public:
    virtual ~IKeySequenceImpl();
    // Optional: a new heap copy owned by the caller, or null when the object
    // cannot copy itself (the default). Handle copies then share the object
    // (see the handle rules at the top), so an implementation need not
    // provide it.
    virtual IKeySequenceImpl* Clone();
    virtual bool Equal(const IKeySequenceImpl* other) = 0;
    virtual bool LessThan(const IKeySequenceImpl* other) = 0;
    virtual void Write(KfPerOStream& stream) = 0;
    // Replaces this object's contents with what the stream holds.
    virtual void Read(KfPerIStream& stream) = 0;
  };

  KeySequence() : impl_(nullptr) {}
  // Front end CreateKeySequence(key): a one-key sequence.
  KeySequence(const AccelKey& key);  // NOLINT: implicit by design
  // Adopts the object; null gives the empty sequence.
  KeySequence(IKeySequenceImpl* impl);  // NOLINT: implicit by design
  KeySequence(unsigned int modifiers, unsigned int key);
  ~KeySequence();
  KeySequence(const KeySequence& other);                 // clones or shares (see above)
  KeySequence(KeySequence&& other) noexcept;             // takes over
  KeySequence& operator=(const KeySequence& other);      // shares the pointer (see above)
  KeySequence& operator=(KeySequence&& other) noexcept;  // exchanges

  explicit operator bool() const { return impl_ != nullptr; }
  bool Equal(const KeySequence& other) const;
  bool LessThan(const KeySequence& other) const;
  const IKeySequenceImpl* Impl() const { return impl_; }

 private:
  friend ORVANE_API KfPerOStream& operator<<(KfPerOStream& stream, const KeySequence& sequence);
  friend ORVANE_API KfPerIStream& operator>>(KfPerIStream& stream, KeySequence& sequence);
  IKeySequenceImpl* impl_;
};

ORVANE_API bool operator==(const KeySequence& a, const KeySequence& b);
ORVANE_API bool operator<(const KeySequence& a, const KeySequence& b);
// Hands the stream to the sequence's object; the sequence must not be empty.
ORVANE_API KfPerOStream& operator<<(KfPerOStream& stream, const KeySequence& sequence);
// Replaces `sequence` with a new object read from the stream. The previous
// object of `sequence` is not released: read into an empty sequence. When the
// front end makes no sequence object, `sequence` is left empty.
ORVANE_API KfPerIStream& operator>>(KfPerIStream& stream, KeySequence& sequence);

// Implemented by the host: makes the key and sequence objects.
class ORVANE_API IAccelFrontEnd {
 public:
  virtual ~IAccelFrontEnd();
  // A new heap object owned by the caller.
  virtual AccelKey::IAccelKeyImpl* CreateKey(unsigned int modifiers, unsigned int key) = 0;
  // Optional: a two-key chord (first, then second) for the host's own use, or
  // null (the default). The library never calls it.
  virtual KeySequence::IKeySequenceImpl* CreateChord(const AccelKey& first, const AccelKey& second);
  // A one-key sequence; a new heap object owned by the caller.
  virtual KeySequence::IKeySequenceImpl* CreateKeySequence(const AccelKey& key) = 0;
  // The name of the settings node under which the bindings are stored.
  virtual void GetStorageKey(std::string& out) = 0;
};

// Stores the front end, replacing any previous one; the library never owns it.
ORVANE_API void Register(IAccelFrontEnd* frontEnd);
// Clears the slot whatever pointer is given.
ORVANE_API void Unregister(IAccelFrontEnd* frontEnd);
// The registered front end, or null.
ORVANE_API IAccelFrontEnd* AccelFrontEnd();

// One binding: a key sequence and the command string it invokes.
struct AccelEntry {
  KeySequence key;
  std::string command;

  AccelEntry() = default;
  AccelEntry(KeySequence k, std::string c) : key(std::move(k)), command(std::move(c)) {}
  AccelEntry(const AccelEntry& other) = default;
  AccelEntry(AccelEntry&& other) noexcept = default;
  // Builds a fresh key (KeySequence copy assignment would share it).
  AccelEntry& operator=(const AccelEntry& other) {
    if (this != &other) {
      KeySequence copy(other.key);
      key = std::move(copy);
      command = other.command;
    }
    return *this;
  }
  AccelEntry& operator=(AccelEntry&& other) noexcept = default;
};

// Same command bytes and equal keys.
ORVANE_API bool operator==(const AccelEntry& a, const AccelEntry& b);
// By command (byte-wise), then by key.
ORVANE_API bool operator<(const AccelEntry& a, const AccelEntry& b);

// A binding table, ordered by key sequence.
using AccelMap = std::map<KeySequence, std::string>;

// The default bindings one part of the application contributes.
class ORVANE_API AccelPart {
 public:
  // Type 1 marks primary bindings; every other value secondary ones.
  enum AccelType : std::int32_t { Secondary = 0, Primary = 1 };

  explicit AccelPart(AccelType type);
  AccelPart(AccelType type, const std::vector<AccelEntry>& entries);
  AccelPart(const AccelPart& other) = default;
  AccelPart(AccelPart&& other) noexcept = default;
  AccelPart& operator=(const AccelPart& other) = default;
  AccelPart& operator=(AccelPart&& other) noexcept = default;

  // AccelManager::Instance().Install(*this) / Uninstall(*this).
  void Install();
  void Uninstall();

  AccelType type;
  std::vector<AccelEntry> entries;
};

// One contribution to a key's binding, for the conflict report.
struct BindingSource {
  enum Kind : std::int32_t {
    PartDefault = 0,  // an installed part's default
    User = 1,         // the user's binding (stored settings or set by the host)
  };
  Kind kind = PartDefault;
  int partIndex = -1;    // for PartDefault: 0 for the first part still installed, in install order
  bool primary = true;   // the table it belongs to
  std::string command;
};

// Everything contributed for one key sequence and what is in force.
struct BindingReport {
  KeySequence key;
  std::vector<BindingSource> sources;  // parts in install order, then the user's binding
  bool bound = false;                  // a binding is in force
  bool boundPrimary = false;           // ... in the primary table
  std::string command;                 // the command in force when bound
  std::string reason;                  // why, in one English sentence

  BindingReport() = default;
  BindingReport(const BindingReport& other) = default;
  BindingReport(BindingReport&& other) noexcept = default;
  BindingReport& operator=(const BindingReport& other) {  // a fresh key, as for AccelEntry
    if (this != &other) {
      BindingReport copy(other);
      *this = std::move(copy);
    }
    return *this;
  }
  BindingReport& operator=(BindingReport&& other) noexcept = default;
};

// The application's keyboard bindings: primary and secondary tables in force,
// the defaults installed parts contributed, persistence of the user's
// differences in the "Global" storage, and the key-bindings export.
//
// Threads: UI thread only; no lock. RebuildAccelerators and
// KeySequenceToString are called on the UI thread with no library lock held.
class ORVANE_API AccelManager : public KfIdleChoreImpl {
 public:
  ~AccelManager() override;
  AccelManager(const AccelManager&) = delete;
  AccelManager& operator=(const AccelManager&) = delete;

  // The one manager; the host must have created it.
  static AccelManager& Instance();

  void Install(const AccelPart& part);
  void Uninstall(const AccelPart& part);

  void GetPrimaryAccels(AccelMap& out);
  void GetSecondaryAccels(AccelMap& out);
  void GetPrimaryAccelsDefault(AccelMap& out);
  void GetSecondaryAccelsDefault(AccelMap& out);
  void SetPrimaryAccels(const AccelMap& table);
  void SetSecondaryAccels(const AccelMap& table);
  void SetAcceleratorsNeedsReBuild();

  // Writes the key-bindings report; `defaults` reports the installed
  // defaults instead of the bindings in force. A file that cannot be written
  // is reported through the library's diagnostics.
  void ExportAccels(const GePath& file, bool defaults);

  // The conflict report: for `key`, or (when `key` is empty) for every key
  // sequence that has two or more contributions or whose binding in force is
  // not the first default contributed for it. Changes nothing.
  std::vector<BindingReport> GetBindingReport(const KeySequence& key);

  // The virtual functions that follow the destructor and DoIdleChore are
  // declared in their table order: RebuildAccelerators, KeySequenceToString,
  // GetShortcutString. A host's manager built separately relies on it.
 protected:
  bool DoIdleChore() override;

 public:
  // The host rebuilds its accelerators from `primary` and `secondary`.
  virtual void RebuildAccelerators() = 0;
  // The host writes the display text of a sequence.
  virtual void KeySequenceToString(const KeySequence& key, std::string& out) = 0;
  // The display text of the command's first primary key; false when it has
  // none (secondary bindings are not reported).
  virtual bool GetShortcutString(const std::string& command, std::string& out);

 protected:
  AccelManager();

  // Saves the differences from the defaults in the "Global" storage; runs on
  // the application event of kind 1.
  void WriteToPersistentStorage();
  bool EnsureLoaded();
  bool LoadFromPersistentStorage();

  bool KeySequenceIsUsed(const KeySequence& key);
  static bool CommandIsInSet(const std::string& command, const AccelMap& table);
  static bool FindKeySequence(const std::string& command, const AccelMap& table, KeySequence& out);
  void SetDefaultIfMissing(const AccelEntry& entry, AccelMap& target, bool allowSecondBinding);

  bool needsRebuild;
  bool loaded;
  AccelMap primary;
  AccelMap secondary;
  AccelMap primaryDefault;
  AccelMap secondaryDefault;

 private:
  class SaveListener;
  SaveListener* listener_;
  std::vector<AccelPart> installedParts_;  // for the conflict report, in install order

  static AccelManager* msTheAccelManager;
  static bool msLoadResult;  // the result of the first load
};

// A ready front end that needs no GUI toolkit: key and modifier numbers of its
// own and a key text that people know. A host may register it as it is.
//
//   Kf::Accel::TextFrontEnd frontEnd;             // stores under the node "Accelerators"
//   Kf::Accel::Register(&frontEnd);
//   Kf::Accel::KeySequence comment;
//   std::string error;
//   if (!Kf::Accel::TextFrontEnd::Parse("Ctrl+K Ctrl+C", comment, error)) Report(error);
//   Kf::Accel::TextFrontEnd::Format(comment);      // "Ctrl+K Ctrl+C"
//
// Key text: strokes separated by blanks (a chord of up to kMaxStrokes keys);
// in a stroke, modifier words then the key, joined by '+'. Words are
// case-insensitive on input. Modifiers: Ctrl (or Control), Alt, Shift, Meta
// (or Win, Cmd, Super); written in the order Ctrl, Alt, Shift, Meta. Keys: a
// letter (written upper-case), a digit, a printable ASCII punctuation
// character, F1 to F24, Enter (Return), Esc (Escape), Tab, Backspace, Insert
// (Ins), Delete (Del), Home, End, PageUp (PgUp), PageDown (PgDn), Left, Up,
// Right, Down, Pause, Space, Plus (also written "Ctrl++"). Text that does not
// parse is an error with a message saying what is wrong, never a crash.
//
// Numbers: modifiers are the bits of Modifier; a key is its upper-case ASCII
// code for printable keys (Space is 0x20), or a Key value for named keys; key
// 0 means "no key" (the placeholder a stream read starts from).
//
// Order of sequences: stroke by stroke, each by key number then modifier
// bits; a chord that begins with a shorter one sorts after it.
//
// Stream form: one text item holding the key text. A stored text that does
// not parse is reported through the library's diagnostics, leaves the read
// sequence as the placeholder (one stroke, no key) and fails the stream, so a
// reader of the record sees it as incomplete.
//
// Threads: the static functions may run on any thread; the front end object
// holds only its storage key, fixed at construction.
class ORVANE_API TextFrontEnd : public IAccelFrontEnd {
 public:
  enum Modifier : unsigned int { Ctrl = 0x1, Shift = 0x2, Alt = 0x4, Meta = 0x8 };
  enum Key : unsigned int {
    NoKey = 0,
    Space = 0x20,
    Enter = 0x100,
    Escape,
    Tab,
    Backspace,
    Insert,
    Delete,
    Home,
    End,
    PageUp,
    PageDown,
    Left,
    Up,
    Right,
    Down,
    Pause,
    F1 = 0x201,  // F1 + n - 1 is Fn, up to F24
  };
  static constexpr unsigned int kMaxStrokes = 4;

  struct Stroke {
    unsigned int modifiers = 0;
    unsigned int key = NoKey;
  };

  explicit TextFrontEnd(std::string storageKey = "Accelerators");

  AccelKey::IAccelKeyImpl* CreateKey(unsigned int modifiers, unsigned int key) override;
  KeySequence::IKeySequenceImpl* CreateChord(const AccelKey& first, const AccelKey& second) override;
  KeySequence::IKeySequenceImpl* CreateKeySequence(const AccelKey& key) override;
  void GetStorageKey(std::string& out) override;

  // Parses key text into `out`; false with a message in `error` (and `out`
  // unchanged) when the text is not valid.
  static bool Parse(const std::string& text, KeySequence& out, std::string& error);
  static bool ParseStroke(const std::string& text, Stroke& out, std::string& error);
  // The key text; empty for the empty sequence or one made by another front end.
  static std::string Format(const KeySequence& sequence);
  // The text of one stroke; empty when its key is unknown or NoKey.
  static std::string FormatStroke(const Stroke& stroke);
  // The strokes of a sequence made by this front end; empty otherwise.
  static std::vector<Stroke> Strokes(const KeySequence& sequence);
  // A sequence of these strokes (1 to kMaxStrokes of them), or an empty one.
  static KeySequence FromStrokes(const std::vector<Stroke>& strokes);

 private:
  std::string storageKey_;
};

}  // namespace Kf::Accel
