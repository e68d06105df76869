#include "orvane/log.h"

#include <optional>
#include <string_view>
#include <utility>

#include "log/build_tally.h"
#include "log/log_bus.h"
#include "log/log_entry_impl.h"
#include "orvane/statusbar.h"

struct KfLogClient::Impl {
  std::string category;
  std::string sender;
  bool isBuild = false;  // the category is "Log_Build"
};

namespace {

bool IsFailure(KfLogClient::Severity severity) {
  return severity == KfLogClient::Error || severity == KfLogClient::Fatal;
}

// Dispatches the entry once per line of its message. The first line keeps the
// file and positions; the others become continuation entries without them.
void DispatchLines(KfLogServer::Entry& entry, const std::string& text) {
  if (text.find('\n') == std::string::npos) {
    Kf::DoLog(entry);
    return;
  }
  std::string_view rest(text);
  for (int index = 0;; ++index) {
    std::size_t newline = rest.find('\n');
    std::string_view line = rest.substr(0, newline);
    bool last = newline == std::string_view::npos;
    if (last && line.empty()) break;  // a trailing newline makes no entry
    if (index == 1) {
      entry.SetPath(GePath());
      entry.SetSrcPos(Kf::SrcPos());
      entry.SetSrcEndPos(Kf::SrcPos());
      entry.SetIsSubEntry(true);
    }
    entry.SetText(std::string(line));
    Kf::DoLog(entry);
    if (last) break;
    rest.remove_prefix(newline + 1);
  }
}

}  // namespace

KfLogClient::KfLogClient(std::string category, std::string sender) : impl_(std::make_unique<Impl>()) {
  impl_->isBuild = category == kKfBuildCategory;
  impl_->category = std::move(category);
  impl_->sender = std::move(sender);
  Kf::RegisterLogCategory(impl_->category);
}

KfLogClient::KfLogClient(KfLogClient&& other) noexcept = default;
KfLogClient& KfLogClient::operator=(KfLogClient&& other) noexcept = default;
KfLogClient::~KfLogClient() = default;

void KfLogClient::StartSession() {
  if (!impl_) return;
  Kf::StartLogSession(impl_->category);
  if (impl_->isBuild) Kf::StatusBar::UpdateBuildResult();
}

void KfLogClient::Log(Severity severity, const std::string& text) {
  Log(severity, FileRef{}, text);
}

void KfLogClient::Log(Severity severity, const FileRef& ref, const std::string& text) {
  LogEntry(severity, ref, text, nullptr);
}

void KfLogClient::Log(Severity severity, const FileRef& ref, const std::string& text, const std::string& extra) {
  LogEntry(severity, ref, text, &extra);
}

void KfLogClient::LogEntry(Severity severity, const FileRef& ref, const std::string& text,
                           const std::string* extra) {
  if (!impl_ || severity < Kf::Detail::MinimumLogSeverity()) return;
  // Each thread refills one entry for its messages, so that a message costs
  // no allocation once the strings have grown. A server that logs from inside
  // its callback gets a fresh entry, leaving the one being delivered alone.
  thread_local KfLogServer::Entry t_entry;
  thread_local int t_depth = 0;
  struct Depth {
    Depth() { ++t_depth; }
    ~Depth() { --t_depth; }
  } depth;
  std::optional<KfLogServer::Entry> fresh;
  if (t_depth > 1) fresh.emplace();
  KfLogServer::Entry& entry = fresh ? *fresh : t_entry;
  KfLogServer::Entry::Impl& fields = *entry.impl_;
  fields.category.assign(impl_->category);
  fields.sender.assign(impl_->sender);
  fields.texts.resize(extra ? 2 : 1);
  fields.texts[0].assign(text);
  if (extra) fields.texts[1].assign(*extra);
  fields.timestamp = 0;
  fields.severity = severity;
  fields.path = ref.file;
  fields.srcPos = ref.start;
  fields.srcEndPos = ref.start;
  fields.entryId = 0;
  fields.isSubEntry = false;
  DispatchLines(entry, text);
  if (impl_->isBuild && IsFailure(severity)) {
    Kf::Detail::CountBuildFailure();
    Kf::StatusBar::UpdateBuildResult();
  }
}

void KfLogClient::UnregisterLogClient() {
  if (impl_) Kf::UnregisterLogCategory(impl_->category);
}
