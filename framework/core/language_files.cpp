// The mapping between language-neutral and language-specific file names.
#include <filesystem>

#include "orvane/language.h"

namespace Kf {
namespace {

constexpr const char* kSuffixes[] = {"_ENU", "_JPN"};

// Splits "Manual.pdf" into "Manual" and ".pdf"; a leading dot alone (".rc")
// is part of the stem.
void SplitExtension(const std::string& name, std::string& stem, std::string& extension) {
  std::size_t dot = name.rfind('.');
  if (dot == std::string::npos || dot == 0) {
    stem = name;
    extension.clear();
  } else {
    stem = name.substr(0, dot);
    extension = name.substr(dot);
  }
}

std::string WithoutSuffix(const std::string& stem) {
  for (const char* suffix : kSuffixes) {
    std::string s(suffix);
    if (stem.size() > s.size() && stem.compare(stem.size() - s.size(), s.size(), s) == 0)
      return stem.substr(0, stem.size() - s.size());
  }
  return stem;
}

}  // namespace

std::string LanguageNeutralFileName(const std::string& fileName) {
  std::string stem, extension;
  SplitExtension(fileName, stem, extension);
  return WithoutSuffix(stem) + extension;
}

std::string LanguageSpecificFileName(const std::string& fileName) {
  std::string stem, extension;
  SplitExtension(fileName, stem, extension);
  stem = WithoutSuffix(stem);
  std::string language = GetCurrentLanguage();
  if (language == "ENU" || stem.empty()) return stem + extension;
  return stem + "_" + language + extension;
}

GePath LanguageSpecificPath(const GePath& path) {
  if (path.IsEmpty()) return path;
  std::string name = path.FileName();
  std::string specific = LanguageSpecificFileName(name);
  if (specific == name) return path;
  GePath candidate = path.Parent() / specific;
  std::error_code error;
  return std::filesystem::exists(candidate.Native(), error) ? candidate : path;
}

}  // namespace Kf
