// Internal: reading and writing the XML files of the settings storage and the
// storage index, with the guarantees both need:
//   - a save never leaves a half-written file (temporary file + rename);
//   - a damaged file is never overwritten: it is kept aside and reported;
//   - processes that load, change and save one file take turns (file lock).
#pragma once

#include <memory>
#include <string>

#include <pugixml.hpp>

#include "orvane/gepath.h"

namespace Kf::Storage::Detail {

enum class ReadResult {
  kLoaded,   // `doc` holds the file
  kMissing,  // no file; `doc` unchanged
  kDamaged,  // not well-formed, or the wrong root: kept aside and reported
};

// Reads `file` into `doc`. A file that does not parse or whose root element
// is not `rootName` is renamed to "<file>.corrupt-<stamp>" and reported; the
// caller then starts with an empty document.
ReadResult ReadXmlFile(const GePath& file, const char* rootName, pugi::xml_document& doc);

// Parses `text` (a file's content) the same way, without touching any file.
// False with `error` set when it is damaged.
bool ParseXmlText(const char* text, size_t size, const char* rootName, pugi::xml_document& doc,
                  std::string& error);

// Writes `doc` to a temporary file beside `file` and renames it over `file`,
// creating the parent directory when missing. On failure `file` is untouched,
// the temporary file is removed and the reason reported. The first save of a
// file in a process also removes temporaries that a killed save left beside
// it more than an hour ago.
bool SaveXmlFileAtomically(const pugi::xml_document& doc, const GePath& file);

// The one place where damaged settings files are reported. The log bus hooks
// in through Kf::Detail::SetErrorSink.
void ReportDamagedFile(const GePath& file, const GePath& keptAs, const std::string& reason);

// An advisory lock between processes on "<file>.lock", held from Lock() to
// Unlock(). Within one process the callers serialise among themselves (the
// storage's mutex); the lock only orders processes.
class InterProcessFileLock {
 public:
  explicit InterProcessFileLock(const GePath& file);
  ~InterProcessFileLock();
  InterProcessFileLock(const InterProcessFileLock&) = delete;
  InterProcessFileLock& operator=(const InterProcessFileLock&) = delete;

  // False when the lock file cannot be created (for example a read-only
  // directory); the caller then goes on unlocked, as a lone process would.
  bool Lock();
  void Unlock();

 private:
  struct Impl;
  GePath lockFile_;
  std::unique_ptr<Impl> impl_;
  bool locked_ = false;
};

}  // namespace Kf::Storage::Detail
