// The key and key-sequence handles and the front-end slot. Everything about
// the keys themselves is delegated to the front end's objects.
#include <utility>

#include "orvane/accel.h"

namespace Kf::Accel {
namespace {

IAccelFrontEnd* gFrontEnd = nullptr;

}  // namespace

void Register(IAccelFrontEnd* frontEnd) { gFrontEnd = frontEnd; }

void Unregister(IAccelFrontEnd*) { gFrontEnd = nullptr; }

IAccelFrontEnd* AccelFrontEnd() { return gFrontEnd; }

IAccelFrontEnd::~IAccelFrontEnd() = default;
AccelKey::IAccelKeyImpl::~IAccelKeyImpl() = default;
KeySequence::IKeySequenceImpl::~IKeySequenceImpl() = default;

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

KeySequence::~KeySequence() { delete impl_; }

KeySequence::KeySequence(const KeySequence& other) : impl_(other.impl_ ? other.impl_->Clone() : nullptr) {}

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
