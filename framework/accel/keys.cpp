// The key and key-sequence handles and the front-end slot. Everything about
// the keys themselves is delegated to the front end's objects.
#include "orvane/accel.h"

#include <atomic>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "accel/sequence_objects.h"
#include "orvane/locks.h"

namespace Kf::Accel {
namespace {

IAccelFrontEnd* gFrontEnd = nullptr;

using SequenceObject = KeySequence::IKeySequenceImpl;

// Sequence objects that could not clone themselves and are therefore shared by
// handle copies: for each, the number of holders beyond the one that will
// delete it. Handles sharing an object may live on different threads, hence
// the lock. Never destroyed, because handles in static objects may be
// destroyed after it would be.
class SharedSequences {
 public:
  static SharedSequences& Get() {
    static auto* shared = new SharedSequences;
    return *shared;
  }

  void AddHolder(const SequenceObject* object) {
    IdeUtil::ScopedLock lock(mutex_);
    ++extraHolders_[object];
    size_.store(extraHolders_.size(), std::memory_order_release);
  }

  // True when another holder remains, so the caller must not delete it.
  bool DropHolder(const SequenceObject* object) {
    // Every handle destructor passes here; most objects are never shared.
    if (size_.load(std::memory_order_acquire) == 0) return false;
    IdeUtil::ScopedLock lock(mutex_);
    auto found = extraHolders_.find(object);
    if (found == extraHolders_.end()) return false;
    if (--found->second == 0) extraHolders_.erase(found);
    size_.store(extraHolders_.size(), std::memory_order_release);
    return true;
  }

 private:
  IdeUtil::Mutex mutex_;
  std::unordered_map<const SequenceObject*, std::size_t> extraHolders_;  // guarded by mutex_
  std::atomic<std::size_t> size_{0};  // extraHolders_.size(), read without the lock
};

// A copy of the object for a new handle: its clone, or the object itself
// with one more holder recorded.
SequenceObject* CopyOf(SequenceObject* object) {
  if (!object) return nullptr;
  if (SequenceObject* clone = object->Clone()) return clone;
  SharedSequences::Get().AddHolder(object);
  return object;
}

}  // namespace

namespace Detail {

void ReleaseSequenceObject(KeySequence::IKeySequenceImpl* object) {
  if (object && !SharedSequences::Get().DropHolder(object)) delete object;
}

// Only a shared object has a claim to drop; an unshared one is left alone.
void ForgetSequenceObject(const KeySequence::IKeySequenceImpl* object) {
  if (object) (void)SharedSequences::Get().DropHolder(object);
}

}  // namespace Detail

void Register(IAccelFrontEnd* frontEnd) { gFrontEnd = frontEnd; }

void Unregister(IAccelFrontEnd*) { gFrontEnd = nullptr; }

IAccelFrontEnd* AccelFrontEnd() { return gFrontEnd; }

IAccelFrontEnd::~IAccelFrontEnd() = default;
AccelKey::IAccelKeyImpl::~IAccelKeyImpl() = default;
KeySequence::IKeySequenceImpl::~IKeySequenceImpl() = default;
KeySequence::IKeySequenceImpl* KeySequence::IKeySequenceImpl::Clone() { return nullptr; }

KeySequence::IKeySequenceImpl* IAccelFrontEnd::CreateChord(const AccelKey&, const AccelKey&) { return nullptr; }

AccelKey::AccelKey(IAccelKeyImpl* impl) : impl_(impl) {}

AccelKey::AccelKey(unsigned int key) : impl_(gFrontEnd->CreateKey(0, key)) {}

AccelKey::AccelKey(unsigned int modifiers, unsigned int key) : impl_(gFrontEnd->CreateKey(modifiers, key)) {}

AccelKey::~AccelKey() { delete impl_; }

AccelKey::AccelKey(const AccelKey& other) : impl_(other.impl_ ? other.impl_->Clone() : nullptr) {}

AccelKey::AccelKey(AccelKey&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}

AccelKey& AccelKey::operator=(const AccelKey& other) {
  // Shares on purpose: see the header.
  impl_ = other.impl_;
  return *this;
}

AccelKey& AccelKey::operator=(AccelKey&& other) noexcept {
  std::swap(impl_, other.impl_);
  return *this;
}

AccelKey* AccelKey::Copy() const { return new AccelKey(impl_->Clone()); }

bool AccelKey::Equal(const AccelKey& other) const { return impl_->Equal(other.impl_); }

bool AccelKey::LessThan(const AccelKey& other) const { return impl_->LessThan(other.impl_); }

KeySequence::KeySequence(const AccelKey& key) : impl_(gFrontEnd->CreateKeySequence(key)) {}

KeySequence::KeySequence(IKeySequenceImpl* impl) : impl_(impl) {}

KeySequence::KeySequence(unsigned int modifiers, unsigned int key) : impl_(nullptr) {
  // The temporary key's object is released when `temporary` goes out of scope,
  // after the sequence object has been made from it.
  AccelKey temporary(gFrontEnd->CreateKey(modifiers, key));
  impl_ = gFrontEnd->CreateKeySequence(temporary);
}

KeySequence::~KeySequence() { Detail::ReleaseSequenceObject(impl_); }

KeySequence::KeySequence(const KeySequence& other) : impl_(CopyOf(other.impl_)) {}

KeySequence::KeySequence(KeySequence&& other) noexcept : impl_(std::exchange(other.impl_, nullptr)) {}

KeySequence& KeySequence::operator=(const KeySequence& other) {
  // Shares on purpose: see the header.
  impl_ = other.impl_;
  return *this;
}

KeySequence& KeySequence::operator=(KeySequence&& other) noexcept {
  std::swap(impl_, other.impl_);
  return *this;
}

bool KeySequence::Equal(const KeySequence& other) const {
  if (!impl_ && !other.impl_) return true;
  if (!impl_ || !other.impl_) return false;
  return impl_->Equal(other.impl_);
}

bool KeySequence::LessThan(const KeySequence& other) const {
  if (!other.impl_) return true;
  if (!impl_) return false;
  return impl_->LessThan(other.impl_);
}

bool operator==(const KeySequence& a, const KeySequence& b) { return a.Equal(b); }

bool operator<(const KeySequence& a, const KeySequence& b) { return a.LessThan(b); }

bool operator==(const AccelEntry& a, const AccelEntry& b) { return a.command == b.command && a.key == b.key; }

bool operator<(const AccelEntry& a, const AccelEntry& b) {
  int byCommand = a.command.compare(b.command);
  if (byCommand != 0) return byCommand < 0;
  return a.key < b.key;
}

}  // namespace Kf::Accel
