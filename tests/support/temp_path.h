// Scratch paths for tests. ctest runs test processes side by side (and the
// sanitizer builds may run beside the default one), so a name must differ
// between processes as well as within one.
#pragma once

#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <string>

namespace Kf::Testing {

// "<temp>/<prefix>-<pid>-<n>": nothing is created.
inline std::filesystem::path UniqueTempPath(const std::string& prefix) {
  static std::atomic<int> counter{0};
  return std::filesystem::temp_directory_path() /
         (prefix + "-" + std::to_string(::getpid()) + "-" + std::to_string(counter.fetch_add(1)));
}

}  // namespace Kf::Testing
