// Whole-file reads and writes for tests that look at what reached the disk.
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "orvane/gepath.h"

namespace Kf::Testing {

inline std::string ReadFile(const GePath& file) {
  std::ifstream in(file.Native(), std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

inline std::vector<std::string> ReadLines(const GePath& file) {
  std::ifstream in(file.Native());
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Creates the parent directories; replaces the file unless `append` is set.
inline void WriteFile(const GePath& file, const std::string& text, bool append = false) {
  std::filesystem::create_directories(file.Parent().Native());
  std::ofstream(file.Native(), std::ios::binary | (append ? std::ios::app : std::ios::trunc)) << text;
}

}  // namespace Kf::Testing
