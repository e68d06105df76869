#include "orvane/log.h"

#include <utility>

#include "log/log_entry_impl.h"

namespace {

const std::string& EmptyText() {
  static const std::string empty;
  return empty;
}

}  // namespace

KfLogServer::Entry::Entry() : impl_(std::make_unique<Impl>()) {}

KfLogServer::Entry::Entry(const std::string& category, const std::string& sender, const std::string& text,
                          int severity, GePath path, const Kf::SrcPos& pos, std::int64_t timeStamp,
                          std::uint64_t entryId)
    : impl_(std::make_unique<Impl>()) {
  impl_->category = category;
  impl_->sender = sender;
  impl_->texts.push_back(text);
  impl_->timestamp = timeStamp;
  impl_->severity = severity;
  impl_->path = std::move(path);
  impl_->srcPos = pos;
  impl_->srcEndPos = pos;
  impl_->entryId = entryId;
}

KfLogServer::Entry::Entry(const std::string& category, const std::string& sender, const std::string& text,
                          int severity, GePath path, const Kf::SrcPos& pos, const Kf::SrcPos& /*endPos*/,
                          std::int64_t timeStamp, std::uint64_t entryId)
    : Entry(category, sender, text, severity, std::move(path), pos, timeStamp, entryId) {}

KfLogServer::Entry::Entry(const Entry& other) : impl_(std::make_unique<Impl>(*other.impl_)) {}

KfLogServer::Entry& KfLogServer::Entry::operator=(const Entry& other) {
  if (this != &other) impl_ = std::make_unique<Impl>(*other.impl_);
  return *this;
}

KfLogServer::Entry::~Entry() = default;

const std::string& KfLogServer::Entry::Category() const { return impl_->category; }
const std::string& KfLogServer::Entry::Sender() const { return impl_->sender; }
const std::string& KfLogServer::Entry::Text() const { return Text(0); }

const std::string& KfLogServer::Entry::Text(unsigned int n) const {
  return n < impl_->texts.size() ? impl_->texts[n] : EmptyText();
}

unsigned int KfLogServer::Entry::NumberOfTexts() const { return static_cast<unsigned int>(impl_->texts.size()); }
std::int64_t KfLogServer::Entry::TimeStamp() const { return impl_->timestamp; }
int KfLogServer::Entry::Severity() const { return impl_->severity; }
const GePath& KfLogServer::Entry::Path() const { return impl_->path; }
const Kf::SrcPos& KfLogServer::Entry::SrcPos() const { return impl_->srcPos; }
const Kf::SrcPos& KfLogServer::Entry::SrcEndPos() const { return impl_->srcEndPos; }
std::uint64_t KfLogServer::Entry::EntryId() const { return impl_->entryId; }
bool KfLogServer::Entry::IsSubEntry() const { return impl_->isSubEntry; }

void KfLogServer::Entry::TimeStamp(std::int64_t seconds) { impl_->timestamp = seconds; }
void KfLogServer::Entry::EntryId(std::uint64_t id) { impl_->entryId = id; }
void KfLogServer::Entry::SetPath(const GePath& path) { impl_->path = path; }
void KfLogServer::Entry::SetSrcPos(const Kf::SrcPos& pos) { impl_->srcPos = pos; }
void KfLogServer::Entry::SetSrcEndPos(const Kf::SrcPos& pos) { impl_->srcEndPos = pos; }
void KfLogServer::Entry::SetCategory(const std::string& category) { impl_->category = category; }
void KfLogServer::Entry::SetIsSubEntry(bool isSubEntry) { impl_->isSubEntry = isSubEntry; }
void KfLogServer::Entry::SetText(const std::string& text) { SetText(text, 0); }

void KfLogServer::Entry::SetText(const std::string& text, unsigned int n) {
  if (impl_->texts.size() < static_cast<std::size_t>(n) + 1) impl_->texts.resize(static_cast<std::size_t>(n) + 1);
  impl_->texts[n] = text;
}
