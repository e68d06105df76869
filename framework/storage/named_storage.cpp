#include <map>

#include <pugixml.hpp>

#include "orvane/locks.h"
#include "orvane/storage.h"

namespace Kf::Storage {
namespace {

struct NamedNodes {
  IdeUtil::Mutex mutex;
  std::map<std::string, PxXmlNode> byName;  // guarded by mutex
};

// Never destroyed, so static Storage objects may unregister at any time.
NamedNodes& TheNamedNodes() {
  static NamedNodes* nodes = new NamedNodes();
  return *nodes;
}

}  // namespace

Storage::Storage(const char* name, PxXmlNode node) : name_(name ? name : ""), node_(node) {
  NamedNodes& nodes = TheNamedNodes();
  IdeUtil::ScopedLock lock(nodes.mutex);
  nodes.byName[name_] = node_;
}

Storage::~Storage() {
  NamedNodes& nodes = TheNamedNodes();
  IdeUtil::ScopedLock lock(nodes.mutex);
  nodes.byName.erase(name_);
}

PxXmlNode Storage::GetStorage(const char* name) {
  NamedNodes& nodes = TheNamedNodes();
  IdeUtil::ScopedLock lock(nodes.mutex);
  auto it = nodes.byName.find(name ? name : "");
  return it == nodes.byName.end() ? PxXmlNode() : it->second;
}

}  // namespace Kf::Storage

PxXmlNode KfPersistentStorage::GetRootNode() {
  // The subsystem's in-memory document; it lives until the process ends.
  static pugi::xml_document* document = [] {
    auto* doc = new pugi::xml_document();
    doc->append_child("root");
    return doc;
  }();
  return PxXmlNode::FromInternal(document->document_element().internal_object());
}
