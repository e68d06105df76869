// Round trip of the persistent streams: the input is split into items (text,
// and numbers from its bytes); what KfPerOStream writes, KfPerIStream must read
// back item by item, exactly.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "core/diagnostics.h"
#include "orvane/storage.h"

namespace {

KfPersistentStorage& Storage() {
  static KfPersistentStorage* storage = [] {
    auto dir = std::filesystem::temp_directory_path() / ("orvane-fuzz-stream-" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    Kf::Detail::SetErrorSink([](const std::string&, const std::string&) {});
    return new KfPersistentStorage("FuzzStream", GePath::FromNative(dir / "stream.xml"));
  }();
  return *storage;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // Items are separated by zero bytes (XML text cannot hold them); the first
  // byte of each item picks its type.
  std::vector<std::string> texts;
  std::string current;
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == 0) {
      texts.push_back(current);
      current.clear();
    } else {
      current.push_back(static_cast<char>(data[i]));
    }
  }
  texts.push_back(current);

  KfPersistentStorage& storage = Storage();
  {
    KfPerOStream out(storage, "Fuzz", "Record");
    for (const std::string& text : texts) {
      std::uint64_t number = 0;
      std::memcpy(&number, text.data(), text.size() < 8 ? text.size() : 8);
      switch (text.empty() ? 0 : text[0] % 4) {
        case 0: out << text; break;
        case 1: out << static_cast<std::int64_t>(number); break;
        case 2: out << static_cast<std::uint32_t>(number); break;
        default: out << (number % 2 == 1); break;
      }
    }
    if (!out.Close()) return 0;  // a full disk is not the stream's fault
  }
  KfPerIStream in(storage, "Fuzz", "Record");
  if (in.ItemCount() != texts.size()) __builtin_trap();
  for (const std::string& text : texts) {
    std::uint64_t number = 0;
    std::memcpy(&number, text.data(), text.size() < 8 ? text.size() : 8);
    switch (text.empty() ? 0 : text[0] % 4) {
      case 0: {
        std::string back;
        if (!(in >> back) || back != text) __builtin_trap();
        break;
      }
      case 1: {
        std::int64_t back = 0;
        if (!(in >> back) || back != static_cast<std::int64_t>(number)) __builtin_trap();
        break;
      }
      case 2: {
        std::uint32_t back = 0;
        if (!(in >> back) || back != static_cast<std::uint32_t>(number)) __builtin_trap();
        break;
      }
      default: {
        bool back = false;
        if (!(in >> back) || back != (number % 2 == 1)) __builtin_trap();
        break;
      }
    }
  }
  if (!in.AtEnd()) __builtin_trap();
  return 0;
}
