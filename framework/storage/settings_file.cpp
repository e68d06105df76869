#include "storage/settings_file.h"

#include <chrono>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <system_error>

#include <boost/interprocess/sync/file_lock.hpp>

#include "core/diagnostics.h"
#include "core/temp_names.h"

namespace Kf::Storage::Detail {
namespace {

namespace fs = std::filesystem;

std::string LocalStamp() {
  static std::mutex mutex;  // std::localtime shares one buffer
  std::time_t now = std::time(nullptr);
  char text[32] = {};
  std::lock_guard<std::mutex> lock(mutex);
  if (const std::tm* local = std::localtime(&now)) std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", local);
  return text;
}

// "<file>.corrupt-<stamp>", with a counter when that name is taken.
GePath KeepAside(const GePath& file) {
  std::string base = file.ToString() + ".corrupt-" + LocalStamp();
  std::string candidate = base;
  std::error_code ec;
  for (int i = 1; fs::exists(candidate, ec) && i < 1000; ++i) candidate = base + "-" + std::to_string(i);
  fs::rename(file.Native(), GePath(candidate).Native(), ec);
  return ec ? GePath() : GePath(candidate);
}

// Temporary files older than this were left by a save that never finished
// (the process was killed between writing and renaming). A save in flight
// lives for milliseconds, so a file this old belongs to nobody.
constexpr auto kStaleTemporaryAge = std::chrono::hours(1);

// Removes the stale "<file>.tmp-*" beside `file`, once per file and process:
// the folder is listed on the first save only, not on every save.
void RemoveStaleTemporaries(const GePath& file) {
  static std::mutex mutex;
  static std::set<std::string> cleaned;  // guarded by mutex
  {
    std::lock_guard<std::mutex> lock(mutex);
    if (!cleaned.insert(file.ToString()).second) return;
  }
  const fs::path target = file.Native();
  const std::string prefix = target.filename().string() + ".tmp-";
  const auto now = fs::file_time_type::clock::now();
  std::error_code ec;
  for (fs::directory_iterator it(target.parent_path().empty() ? fs::path(".") : target.parent_path(), ec), end;
       !ec && it != end; it.increment(ec)) {
    if (it->path().filename().string().rfind(prefix, 0) != 0) continue;
    std::error_code entryError;
    const auto written = fs::last_write_time(it->path(), entryError);
    if (!entryError && now - written > kStaleTemporaryAge) fs::remove(it->path(), entryError);
  }
}

std::string DescribeParseError(const pugi::xml_parse_result& result) {
  return std::string(result.description()) + " at byte " + std::to_string(result.offset);
}

}  // namespace

bool ParseXmlText(const char* text, size_t size, const char* rootName, pugi::xml_document& doc,
                  std::string& error) {
  pugi::xml_document parsed;
  // Values must come back exactly as stored: keep a whitespace-only value
  // (the only child of its key) and do not turn "\r\n" into "\n".
  const unsigned options = (pugi::parse_default | pugi::parse_ws_pcdata_single) & ~pugi::parse_eol;
  pugi::xml_parse_result result = parsed.load_buffer(text, size, options, pugi::encoding_auto);
  if (!result) {
    error = "not well-formed XML (" + DescribeParseError(result) + ")";
    return false;
  }
  if (std::strcmp(parsed.document_element().name(), rootName) != 0) {
    error = std::string("the root element is \"") + parsed.document_element().name() + "\", not \"" + rootName + "\"";
    return false;
  }
  doc.reset(parsed);
  return true;
}

ReadResult ReadXmlFile(const GePath& file, const char* rootName, pugi::xml_document& doc) {
  std::ifstream in(file.Native(), std::ios::binary);
  if (!in) return ReadResult::kMissing;
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (in.bad()) {
    Kf::Detail::ReportError("settings", "cannot read " + file.ToString());
    return ReadResult::kMissing;
  }
  std::string error;
  if (ParseXmlText(text.data(), text.size(), rootName, doc, error)) return ReadResult::kLoaded;
  ReportDamagedFile(file, KeepAside(file), error);
  return ReadResult::kDamaged;
}

bool SaveXmlFileAtomically(const pugi::xml_document& doc, const GePath& file) {
  std::error_code ec;
  GePath parent = file.Parent();
  if (!parent.IsEmpty()) fs::create_directories(parent.Native(), ec);
  // Unique per save, so concurrent savers never share a temporary file.
  GePath temp(file.ToString() + ".tmp-" + Kf::Detail::UniqueFileTag());
  bool written = doc.save_file(temp.Native().c_str(), "  ", pugi::format_default, pugi::encoding_utf8);
  if (written) {
    fs::rename(temp.Native(), file.Native(), ec);
    if (!ec) {
      RemoveStaleTemporaries(file);
      return true;
    }
  }
  fs::remove(temp.Native(), ec);
  Kf::Detail::ReportError("settings", "cannot save " + file.ToString() + (written ? ": rename failed" : ": write failed"));
  return false;
}

void ReportDamagedFile(const GePath& file, const GePath& keptAs, const std::string& reason) {
  std::string what = "the settings file " + file.ToString() + " is damaged: " + reason + "; ";
  what += keptAs.IsEmpty() ? "it could not be moved aside and is left as it is"
                           : "it was kept as " + keptAs.ToString();
  what += "; starting with empty settings";
  Kf::Detail::ReportError("settings", what);
}

struct InterProcessFileLock::Impl {
  boost::interprocess::file_lock lock;
};

InterProcessFileLock::InterProcessFileLock(const GePath& file) : lockFile_(file.ToString() + ".lock") {}

InterProcessFileLock::~InterProcessFileLock() { Unlock(); }

bool InterProcessFileLock::Lock() {
  if (locked_) return true;
  try {
    if (!impl_) {
      std::error_code ec;
      GePath parent = lockFile_.Parent();
      if (!parent.IsEmpty()) fs::create_directories(parent.Native(), ec);
      { std::ofstream create(lockFile_.Native(), std::ios::app); }
      impl_ = std::make_unique<Impl>(Impl{boost::interprocess::file_lock(lockFile_.Native().c_str())});
    }
    impl_->lock.lock();
    locked_ = true;
  } catch (const std::exception& e) {
    impl_.reset();
    Kf::Detail::ReportError("settings", "cannot lock " + lockFile_.ToString() + ": " + e.what());
  }
  return locked_;
}

void InterProcessFileLock::Unlock() {
  if (!locked_) return;
  locked_ = false;
  try {
    impl_->lock.unlock();
  } catch (const std::exception& e) {
    Kf::Detail::ReportError("settings", "cannot unlock " + lockFile_.ToString() + ": " + e.what());
  }
}

}  // namespace Kf::Storage::Detail
