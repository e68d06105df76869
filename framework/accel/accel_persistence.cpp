// Loading and saving the user's bindings: the differences from the installed
// defaults, kept in the "Global" storage under the front end's node.
//
// Under the node: "nPrimary" and "nSecondary" (record counts), and records
// "Prim0", "Prim1", ... and "Sec0", ... each holding the key sequence, the
// command, and the command's display and descriptive texts.
#include <algorithm>
#include <cstdint>
#include <unordered_set>

#include "core/diagnostics.h"
#include "core/profile.h"
#include "orvane/accel.h"
#include "orvane/storage.h"
#include "orvane/stringcommand.h"

namespace Kf::Accel {
namespace {

constexpr char kPrimaryCount[] = "nPrimary";
constexpr char kSecondaryCount[] = "nSecondary";
constexpr char kPrimaryPrefix[] = "Prim";
constexpr char kSecondaryPrefix[] = "Sec";

std::string StorageNode() {
  std::string node;
  AccelFrontEnd()->GetStorageKey(node);
  return node;
}

// The indices of the records "<prefix>N" that exist with N < count, in
// ascending order. Reading only these (instead of trying every N below a
// stored count) keeps a corrupt, huge count from costing a lookup per number.
std::vector<std::uint32_t> StoredIndices(KfPersistentStorage& storage, const std::string& node,
                                         const std::string& prefix, std::uint32_t count) {
  std::vector<std::uint32_t> indices;
  std::vector<std::string> keys;
  if (!storage.GetKeys(node, keys)) return indices;
  for (const std::string& key : keys) {
    if (key.size() <= prefix.size() || key.compare(0, prefix.size(), prefix) != 0) continue;
    const std::string digits = key.substr(prefix.size());
    if (digits.size() > 10 || !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
      continue;
    if (digits.size() > 1 && digits[0] == '0') continue;  // "Prim01" is not a record name
    const std::uint64_t index = std::stoull(digits);
    if (index < count) indices.push_back(static_cast<std::uint32_t>(index));
  }
  std::sort(indices.begin(), indices.end());
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  return indices;
}

struct Record {
  KeySequence key;
  std::string command;
  std::string text;
  std::string description;
};

// False when the record cannot be used: a read failed (the record is
// truncated, or the front end's object failed the stream on a key it could
// not read), or the front end made no sequence object, which would leave an
// empty key that must never enter a table.
bool ReadRecord(KfPersistentStorage& storage, const std::string& node, const std::string& name, Record& out) {
  KfPerIStream in(storage, node, name);
  if (!in.Exists()) return false;
  in >> out.key;
  in >> out.command >> out.text >> out.description;
  if (!in) {
    Kf::Detail::ReportError("AccelManager", "stored binding " + name + " is incomplete; skipped");
    return false;
  }
  if (!out.key) {
    Kf::Detail::ReportError("AccelManager", "stored binding " + name + " has no key; skipped");
    return false;
  }
  return true;
}

// The elements of `bound` whose key is missing from `defaults` or bound
// there to another command, in key order.
std::vector<const AccelMap::value_type*> Differences(const AccelMap& bound, const AccelMap& defaults) {
  std::vector<const AccelMap::value_type*> changed;
  for (const auto& element : bound) {
    if (!element.first) {  // a host table may hold one; it has nothing to write
      Kf::Detail::ReportError("AccelManager", "binding of \"" + element.second + "\" without a key not saved");
      continue;
    }
    auto found = defaults.find(element.first);
    if (found == defaults.end() || found->second != element.second) changed.push_back(&element);
  }
  return changed;
}

void WriteTable(KfPersistentStorage& storage, const std::string& node, const AccelMap& bound,
                const AccelMap& defaults, const std::string& prefix, const std::string& countKey) {
  std::uint32_t previous = 0;
  const bool hadCount = storage.Load(node, countKey, previous);
  const auto changed = Differences(bound, defaults);
  const auto count = static_cast<std::uint32_t>(changed.size());
  if (!storage.Store(node, countKey, count))
    Kf::Detail::ReportError("AccelManager", "cannot store " + countKey + " in the Global storage");
  for (std::uint32_t i = 0; i < count; ++i) {
    const auto& [key, command] = *changed[i];
    Kf::StringCommand::CommandInfo info;
    const bool hasInfo = Kf::StringCommand::GetCommandInfo(command, info);
    KfPerOStream out(storage, node, prefix + std::to_string(i));
    out << key << command << (hasInfo ? info.text : std::string()) << (hasInfo ? info.description : std::string());
    if (!out.Close()) Kf::Detail::ReportError("AccelManager", "cannot store " + prefix + std::to_string(i));
  }
  // Records of an earlier, longer list would otherwise linger in the file.
  if (hadCount)
    for (std::uint32_t i = count; i < previous && i < count + 100000; ++i)
      (void)storage.DeleteKey(node, prefix + std::to_string(i));
}

}  // namespace

bool AccelManager::LoadFromPersistentStorage() {
  static Kf::Detail::ProfileTask task("GetPersistentAccelerators");
  Kf::Detail::ScopedProfile profile(task);

  KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
  if (!global) return false;
  const std::string node = StorageNode();
  KfPersistentStorageBuffer buffer(global);

  std::uint32_t primaryCount = 0;
  if (!global->Load(node, kPrimaryCount, primaryCount)) return false;
  std::uint32_t secondaryCount = 0;
  if (!global->Load(node, kSecondaryCount, secondaryCount)) secondaryCount = 0;

  std::vector<Kf::StringCommand::CommandInfo> remembered;
  auto rememberTexts = [&remembered](const Record& record) {
    Kf::StringCommand::CommandInfo known;
    if (!Kf::StringCommand::GetCommandInfo(record.command, known))
      remembered.emplace_back(record.command, record.text, record.description,
                              Kf::StringCommand::CommandInfo::kFromSettings);
  };

  std::unordered_set<std::string> boundInPrimary;
  for (const auto& [key, command] : primary) boundInPrimary.insert(command);
  for (std::uint32_t i : StoredIndices(*global, node, kPrimaryPrefix, primaryCount)) {
    Record record;
    if (!ReadRecord(*global, node, kPrimaryPrefix + std::to_string(i), record)) continue;
    rememberTexts(record);
    if (!KeySequenceIsUsed(record.key) && boundInPrimary.insert(record.command).second)
      primary[record.key] = record.command;
  }
  for (std::uint32_t i : StoredIndices(*global, node, kSecondaryPrefix, secondaryCount)) {
    Record record;
    if (!ReadRecord(*global, node, kSecondaryPrefix + std::to_string(i), record)) continue;
    rememberTexts(record);
    if (!KeySequenceIsUsed(record.key)) secondary[record.key] = record.command;
  }
  if (!remembered.empty()) Kf::StringCommand::SetCommandInfo(remembered);
  return true;
}

void AccelManager::WriteToPersistentStorage() {
  static Kf::Detail::ProfileTask task("WriteToPersistentStorage");
  Kf::Detail::ScopedProfile profile(task);

  KfPersistentStorage* global = KfPersistentStorage::GetStorage("Global");
  if (!global) {
    Kf::Detail::ReportError("AccelManager", "no Global storage; key bindings not saved");
    return;
  }
  const std::string node = StorageNode();
  KfPersistentStorageBuffer buffer(global);
  WriteTable(*global, node, primary, primaryDefault, kPrimaryPrefix, kPrimaryCount);
  WriteTable(*global, node, secondary, secondaryDefault, kSecondaryPrefix, kSecondaryCount);
}

}  // namespace Kf::Accel
