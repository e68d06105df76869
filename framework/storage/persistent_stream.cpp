#include <charconv>
#include <system_error>

#include "orvane/storage.h"
#include "storage/storage_impl.h"

namespace {

template <typename T>
bool ParseItem(const std::string& text, T& value) {
  if (text.empty()) return false;
  T parsed{};
  const char* end = text.data() + text.size();
  auto [ptr, ec] = std::from_chars(text.data(), end, parsed);
  if (ec != std::errc() || ptr != end) return false;
  value = parsed;
  return true;
}

}  // namespace

struct KfPerOStream::Impl {
  KfPersistentStorage& storage;
  std::string section;
  std::string key;
  std::vector<std::string> items;
  bool closed = false;
  bool saved = false;
};

KfPerOStream::KfPerOStream(KfPersistentStorage& storage, const std::string& section, const std::string& key)
    : impl_(std::make_unique<Impl>(Impl{storage, section, key, {}})) {}

KfPerOStream::~KfPerOStream() { (void)Close(); }

bool KfPerOStream::Close() {
  if (!impl_->closed) {
    impl_->closed = true;
    impl_->saved = impl_->storage.impl_->WriteRecord(impl_->section, impl_->key, impl_->items);
  }
  return impl_->saved;
}

KfPerOStream& KfPerOStream::operator<<(const std::string& text) {
  if (!impl_->closed) impl_->items.push_back(text);
  return *this;
}

KfPerOStream& KfPerOStream::operator<<(const char* text) { return *this << std::string(text ? text : ""); }
KfPerOStream& KfPerOStream::operator<<(bool value) { return *this << std::string(value ? "1" : "0"); }
KfPerOStream& KfPerOStream::operator<<(std::int32_t value) { return *this << std::to_string(value); }
KfPerOStream& KfPerOStream::operator<<(std::uint32_t value) { return *this << std::to_string(value); }
KfPerOStream& KfPerOStream::operator<<(std::int64_t value) { return *this << std::to_string(value); }
KfPerOStream& KfPerOStream::operator<<(std::uint64_t value) { return *this << std::to_string(value); }

struct KfPerIStream::Impl {
  std::vector<std::string> items;
  size_t next = 0;
  bool exists = false;
  bool good = false;

  // The next item's text, or null (and the stream failed) when there is none.
  const std::string* Next() {
    if (!good || next >= items.size()) {
      good = false;
      return nullptr;
    }
    return &items[next];
  }
  template <typename T>
  void ReadNumber(T& value) {
    const std::string* text = Next();
    if (!text) return;
    if (ParseItem(*text, value)) {
      ++next;
    } else {
      good = false;
    }
  }
};

KfPerIStream::KfPerIStream(KfPersistentStorage& storage, const std::string& section, const std::string& key)
    : impl_(std::make_unique<Impl>()) {
  impl_->exists = storage.impl_->ReadRecord(section, key, impl_->items);
  impl_->good = impl_->exists;
}

KfPerIStream::~KfPerIStream() = default;

KfPerIStream& KfPerIStream::operator>>(std::string& text) {
  if (const std::string* item = impl_->Next()) {
    text = *item;
    ++impl_->next;
  }
  return *this;
}

KfPerIStream& KfPerIStream::operator>>(bool& value) {
  const std::string* item = impl_->Next();
  if (!item) return *this;
  if (*item == "1" || *item == "0") {
    value = *item == "1";
    ++impl_->next;
  } else {
    impl_->good = false;
  }
  return *this;
}

KfPerIStream& KfPerIStream::operator>>(std::int32_t& value) {
  impl_->ReadNumber(value);
  return *this;
}
KfPerIStream& KfPerIStream::operator>>(std::uint32_t& value) {
  impl_->ReadNumber(value);
  return *this;
}
KfPerIStream& KfPerIStream::operator>>(std::int64_t& value) {
  impl_->ReadNumber(value);
  return *this;
}
KfPerIStream& KfPerIStream::operator>>(std::uint64_t& value) {
  impl_->ReadNumber(value);
  return *this;
}

void KfPerIStream::Fail() { impl_->good = false; }

bool KfPerIStream::Exists() const { return impl_->exists; }
bool KfPerIStream::Good() const { return impl_->good; }
bool KfPerIStream::AtEnd() const { return impl_->next >= impl_->items.size(); }
std::size_t KfPerIStream::ItemCount() const { return impl_->items.size(); }
