// The table of remembered answers.
#include <map>

#include "core/dont_ask_table.h"
#include "orvane/dialogs.h"

namespace Kf {
namespace Detail {

std::map<std::string, HostUtil::MsgButton>& DontAskTable() {
  static std::map<std::string, HostUtil::MsgButton> table;  // UI thread only
  return table;
}

}  // namespace Detail

namespace DontAsk {

bool ShouldAsk(const std::string& key, MsgButton& answer) {
  if (key.empty()) return true;
  const auto& table = Detail::DontAskTable();
  auto it = table.find(key);
  if (it == table.end()) return true;
  answer = it->second;
  return false;
}

void SetDontAsk(const std::string& key, MsgButton answer) { Detail::DontAskTable()[key] = answer; }

void ClearDontAsk(const std::string& key) { Detail::DontAskTable().erase(key); }

void ClearDontAskInformation() { Detail::DontAskTable().clear(); }

}  // namespace DontAsk
}  // namespace Kf

namespace Kf::DontAsk {

void SaveDontAskInformation() { (void)Detail::SaveDontAskTable(Detail::DontAskTable()); }

void RestoreDontAskInformation() {
  std::map<std::string, HostUtil::MsgButton> saved;
  if (!Detail::LoadDontAskTable(saved)) return;
  for (auto& [key, button] : saved) Detail::DontAskTable()[key] = button;
}

}  // namespace Kf::DontAsk
