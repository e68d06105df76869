// libFuzzer target: Theme::Load of a ".theme.xml" file with arbitrary bytes.
// A file is either refused with an error text or read as a whole theme; it
// never crashes, hangs or leaks.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <unistd.h>

#include "orvane/theme.h"

namespace {

// A scratch directory for the input file, removed when the fuzzer exits.
struct ScratchDir {
  ScratchDir()
      : path(std::filesystem::temp_directory_path() / ("orvane-fuzz-theme-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(path);
  }
  ~ScratchDir() {
    std::error_code ec;
    std::filesystem::remove_all(path, ec);
  }
  std::filesystem::path path;
};

const std::filesystem::path& Scratch() {
  static ScratchDir dir;
  return dir.path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Kf::IHostColorInfo colors([] { return Kf::XColor{0, 0, 0, 1}; },
                                         [] { return Kf::XColor{255, 255, 255, 1}; });
  const std::filesystem::path file = Scratch() / "input.theme.xml";
  {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  }
  std::string error;
  std::shared_ptr<Kf::Theme> theme = Kf::Theme::Load(GePath::FromNative(file), colors, &error);
  if (!theme && error.empty()) std::abort();  // a refusal always says why
  if (theme && theme->GetEditorFontInfoCRef().FontCount() != 22) std::abort();
  return 0;
}
