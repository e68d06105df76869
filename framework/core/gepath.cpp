#include "orvane/gepath.h"

namespace {

// std::filesystem takes UTF-8 through char8_t; the bytes are the same.
std::filesystem::path FromUtf8(std::string_view utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string PathToUtf8(const std::filesystem::path& path) {
  std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

}  // namespace

GePath::GePath(const std::string& utf8) : path_(FromUtf8(utf8)) {}
GePath::GePath(const char* utf8) : path_(FromUtf8(utf8 ? std::string_view(utf8) : std::string_view())) {}
GePath::GePath(std::string_view utf8) : path_(FromUtf8(utf8)) {}

GePath GePath::FromNative(const std::filesystem::path& native) {
  GePath result;
  result.path_ = native;
  return result;
}

std::string GePath::ToString() const { return PathToUtf8(path_); }

GePath GePath::Join(const GePath& part) const {
  if (path_.empty()) return part;
  if (part.path_.empty()) return *this;
  return FromNative(path_ / part.path_);
}

GePath& GePath::operator/=(const GePath& part) {
  *this = Join(part);
  return *this;
}

GePath GePath::Parent() const {
  // "a/b/" names the directory b; its parent is "a".
  std::filesystem::path trimmed = path_.has_filename() ? path_ : path_.parent_path();
  if (!trimmed.has_relative_path()) return FromNative(trimmed.root_path());
  return FromNative(trimmed.parent_path());
}

std::string GePath::FileName() const { return PathToUtf8(path_.filename()); }
std::string GePath::Stem() const { return PathToUtf8(path_.stem()); }
std::string GePath::Extension() const { return PathToUtf8(path_.extension()); }
