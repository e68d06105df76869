// GePath: a file-system path value.
//
// Every interface of the library that names a file or a directory takes or
// returns a GePath. It is built from and gives back UTF-8 text, so callers
// never deal with the platform's native encoding; Native() hands the path to
// standard library file operations.
//
//   GePath settings = GePath("/home/me/.config") / "orvane" / "QorIde.xml";
//   settings.FileName();    // "QorIde.xml"
//   settings.Parent();      // "/home/me/.config/orvane"
//
// An empty GePath means "no path"; IsEmpty() tests for it.
// Equality compares the texts exactly (no normalisation, no case folding).
//
// Threads: a plain value; concurrent reads of one instance are safe.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "orvane/export.h"

class ORVANE_API GePath {
 public:
  GePath() = default;
  GePath(const std::string& utf8);      // NOLINT: implicit by design, paths come as text
  GePath(const char* utf8);             // NOLINT
  GePath(std::string_view utf8);        // NOLINT
  static GePath FromNative(const std::filesystem::path& native);

  // The path as UTF-8 text, with the platform's separators.
  std::string ToString() const;
  std::string ToUtf8() const { return ToString(); }
  // The path in the form the standard library's file operations take.
  const std::filesystem::path& Native() const { return path_; }

  bool IsEmpty() const { return path_.empty(); }
  bool IsAbsolute() const { return path_.is_absolute(); }

  // Joins a relative part below this path; an absolute part replaces it.
  GePath Join(const GePath& part) const;
  GePath operator/(const GePath& part) const { return Join(part); }
  GePath& operator/=(const GePath& part);

  // The containing directory; empty for a path of one component.
  GePath Parent() const;
  // The last component ("QorIde.xml"), as UTF-8.
  std::string FileName() const;
  // The last component without its final extension ("QorIde").
  std::string Stem() const;
  // The final extension with its dot (".xml"), or empty.
  std::string Extension() const;

  friend bool operator==(const GePath& a, const GePath& b) { return a.path_ == b.path_; }
  friend bool operator<(const GePath& a, const GePath& b) { return a.path_ < b.path_; }

 private:
  std::filesystem::path path_;
};
