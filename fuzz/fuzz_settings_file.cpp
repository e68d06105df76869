// Loads arbitrary bytes as a settings file and reads everything in it: every
// key as text, numbers, bytes and a record; then stores into it and reads the
// saved file back. Damaged input must be kept aside and reported, never crash.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "core/diagnostics.h"
#include "orvane/storage.h"

namespace {

const std::filesystem::path& WorkDir() {
  static const std::filesystem::path dir = [] {
    auto path = std::filesystem::temp_directory_path() / ("orvane-fuzz-settings-" + std::to_string(::getpid()));
    std::filesystem::create_directories(path);
    Kf::Detail::SetErrorSink([](const std::string&, const std::string&) {});  // damaged input is expected
    return path;
  }();
  return dir;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto& dir = WorkDir();
  for (const auto& entry : std::filesystem::directory_iterator(dir)) std::filesystem::remove(entry.path());
  const GePath file = GePath::FromNative(dir / "QorIde.xml");
  std::ofstream(file.Native(), std::ios::binary).write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

  KfPersistentStorage storage("Fuzz", file);
  for (const std::string& section : storage.GetSections()) {
    std::vector<std::string> keys;
    if (!storage.GetKeys(section, keys)) __builtin_trap();  // a listed section must exist
    for (const std::string& key : keys) {
      std::string text;
      std::uint32_t u32 = 0;
      std::int64_t i64 = 0;
      unsigned char bytes[64];
      char chars[64];
      char* buffer = chars;
      (void)storage.Load(section, key, text);
      (void)storage.Load(section, key, u32);
      (void)storage.LoadInt64(section, key, i64);
      (void)storage.Load(section, key, static_cast<void*>(bytes), sizeof bytes);
      (void)storage.Load(section, key, buffer, sizeof chars - 1);
      KfPerIStream record(storage, section, key);
      std::string item;
      while (record >> item) {
      }
    }
  }
  const std::string value(reinterpret_cast<const char*>(data), size > 32 ? 32 : size);
  if (storage.Store("Fuzz", "Written", value)) {
    KfPersistentStorage reader("FuzzReader", file);
    std::string back;
    if (!reader.Load("Fuzz", "Written", back) || back != value) __builtin_trap();  // saved values load again, exactly
  } else if (value.find('\0') == std::string::npos) {
    __builtin_trap();  // only text with a zero character may be refused
  }
  return 0;
}
