// The don't-ask table in the "Global" storage: one record under the key
// "answers" (section "DontAsk") holding the number of entries, then each key
// followed by its button, in ascending key order.
#include <cstdint>

#include "core/diagnostics.h"
#include "core/dont_ask_table.h"
#include "orvane/storage.h"

namespace Kf::Detail {
namespace {

constexpr const char* kSection = "DontAsk";
constexpr const char* kKey = "answers";

}  // namespace

bool SaveDontAskTable(const std::map<std::string, HostUtil::MsgButton>& table) {
  KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
  if (!global) {
    ReportError("SaveDontAskInformation", "the Global settings storage is not available");
    return false;
  }
  KfPerOStream out(*global, kSection, kKey);
  out << static_cast<std::int32_t>(table.size());
  for (const auto& [key, button] : table) out << key << static_cast<std::int32_t>(button);
  if (out.Close()) return true;
  ReportError("SaveDontAskInformation", "could not save the remembered answers");
  return false;
}

bool LoadDontAskTable(std::map<std::string, HostUtil::MsgButton>& out) {
  KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
  if (!global) return false;
  KfPerIStream in(*global, kSection, kKey);
  if (!in.Exists()) return false;
  std::int32_t count = -1;
  in >> count;
  if (!in || count < 0 || in.ItemCount() != 1 + 2 * static_cast<std::size_t>(count)) {
    ReportError("RestoreDontAskInformation", "the saved answers are damaged; none were restored");
    return false;
  }
  std::map<std::string, HostUtil::MsgButton> read;
  for (std::int32_t i = 0; i < count; ++i) {
    std::string key;
    std::int32_t button = 0;
    if (!(in >> key >> button)) {
      ReportError("RestoreDontAskInformation", "the saved answers are damaged; none were restored");
      return false;
    }
    read[key] = static_cast<HostUtil::MsgButton>(button);
  }
  out = std::move(read);
  return true;
}

}  // namespace Kf::Detail
