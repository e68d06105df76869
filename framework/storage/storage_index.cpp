#include <istream>
#include <ostream>
#include <set>
#include <sstream>

#include <pugixml.hpp>

#include "core/diagnostics.h"
#include "orvane/platform.h"
#include "orvane/storage.h"
#include "storage/settings_file.h"

namespace Kf::Storage {
namespace {

constexpr const char* kIndexRoot = "Index";
constexpr const char* kEntryName = "Installation";
constexpr const char* kInstallDirAttribute = "InstallDir";
constexpr const char* kSettingsDirAttribute = "SettingsDir";

}  // namespace

struct StorageIndex::Impl {
  pugi::xml_document doc;

  PxXmlNode Root() {
    pugi::xml_node root = doc.document_element();
    if (!root) root = doc.append_child(kIndexRoot);
    return PxXmlNode::FromInternal(root.internal_object());
  }
};

StorageIndex::StorageIndex() : impl_(std::make_unique<Impl>()) {
  GePath indexFile;
  if (GetIndexPath(indexFile)) (void)Detail::ReadXmlFile(indexFile, kIndexRoot, impl_->doc);
  impl_->Root();
}

StorageIndex::StorageIndex(std::istream& in) : impl_(std::make_unique<Impl>()), fromStream_(true) {
  std::ostringstream text;
  text << in.rdbuf();
  std::string content = text.str();
  std::string error;
  if (!content.empty() && !Detail::ParseXmlText(content.data(), content.size(), kIndexRoot, impl_->doc, error))
    Kf::Detail::ReportError("storage index", "the index read from a stream is damaged: " + error);
  impl_->Root();
}

StorageIndex::~StorageIndex() {
  if (modified_ && !fromStream_) (void)Save();
}

bool StorageIndex::Save(std::ostream& out) {
  impl_->doc.save(out, "  ", pugi::format_default, pugi::encoding_utf8);
  if (!out) return false;
  modified_ = false;
  return true;
}

bool StorageIndex::Save() {
  GePath indexFile;
  if (!GetIndexPath(indexFile)) return false;
  if (!Detail::SaveXmlFileAtomically(impl_->doc, indexFile)) return false;
  modified_ = false;
  return true;
}

bool StorageIndex::GetStorageRootDir(GePath& out) {
  GePath optionDirectory;
  if (!KfGetOptionStorageDirectory(optionDirectory)) return false;
  out = optionDirectory / "Storage";
  return true;
}

bool StorageIndex::GetIndexPath(GePath& out) {
  GePath root;
  if (!GetStorageRootDir(root)) return false;
  out = root / "Index.xml";
  return true;
}

PxXmlNode StorageIndex::FindInstallDirNode(const GePath& installDir) {
  const std::string wanted = installDir.ToString();
  for (PxXmlNode entry = impl_->Root().FirstChild(); !entry.IsEmpty(); entry = entry.NextSibling())
    if (entry.GetAttribute(kInstallDirAttribute) == wanted) return entry;
  return PxXmlNode();
}

PxXmlNode StorageIndex::FindSettingsDirNode(const GePath& settingsDir) {
  const std::string wanted = settingsDir.ToString();
  for (PxXmlNode entry = impl_->Root().FirstChild(); !entry.IsEmpty(); entry = entry.NextSibling())
    if (entry.GetAttribute(kSettingsDirAttribute) == wanted) return entry;
  return PxXmlNode();
}

GePath StorageIndex::GetFreeInstallSettingsDir(GePath& root) {
  // The names in use, collected once: the same answer as asking
  // FindSettingsDirNode for every candidate, without walking the index
  // kMaxIndex times.
  std::set<std::string> taken;
  for (PxXmlNode entry = impl_->Root().FirstChild(); !entry.IsEmpty(); entry = entry.NextSibling())
    taken.insert(entry.GetAttribute(kSettingsDirAttribute));
  for (std::int32_t i = 0; i < kMaxIndex; ++i) {
    GePath candidate = root / (std::string(kEntryName) + std::to_string(i));
    if (taken.count(candidate.ToString()) == 0) return candidate;
  }
  return GePath();
}

bool StorageIndex::GetInstallSettingsPath(const GePath& installDir, GePath& settingsFile) {
  PxXmlNode existing = FindInstallDirNode(installDir);
  if (!existing.IsEmpty()) {
    settingsFile = GePath(existing.GetAttribute(kSettingsDirAttribute)) / "Settings.xml";
    return true;
  }
  GePath root;
  if (!GetStorageRootDir(root)) return false;
  GePath settingsDir = GetFreeInstallSettingsDir(root);
  if (settingsDir.IsEmpty()) {
    Kf::Detail::ReportError("storage index", "all " + std::to_string(kMaxIndex) +
                                                 " installation settings directories are taken; no settings for " +
                                                 installDir.ToString());
    return false;
  }
  PxXmlNode entry = impl_->Root().AppendChild(kEntryName);
  entry.SetAttribute(kSettingsDirAttribute, settingsDir.ToString());
  entry.SetAttribute(kInstallDirAttribute, installDir.ToString());
  settingsFile = settingsDir / "Settings.xml";
  modified_ = true;
  return true;
}

bool StorageIndex::GetInstallSettingsPath(GePath& settingsFile) {
  GePath installDir;
  if (!Kf::Platform::Current().GetCommonBinDirectory(installDir)) return false;
  return GetInstallSettingsPath(installDir, settingsFile);
}

}  // namespace Kf::Storage
