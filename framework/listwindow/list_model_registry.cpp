// The list-model factory registry and the lookups by name.
#include <map>

#include "orvane/listwindow.h"

namespace Kf::Gui {

namespace {

using Kf::ListWindow::IListModelFactory;
using Kf::ListWindow::KfListModel;

struct Registry {
  IdeUtil::Mutex mutex;
  std::map<std::string, IListModelFactory*> factories;       // guarded by mutex
  std::map<std::string, std::weak_ptr<KfListModel>> models;  // guarded by mutex
};

Registry& TheRegistry() {
  static Registry* registry = new Registry();  // outlives every static that unregisters at exit
  return *registry;
}

}  // namespace

void RegisterListModelFactory(const std::string& name, IListModelFactory* factory) {
  if (!factory) return;
  Registry& registry = TheRegistry();
  IdeUtil::ScopedLock lock(registry.mutex);
  registry.factories[name] = factory;
}

void UnregisterListModelFactory(const std::string& name, IListModelFactory* factory) {
  Registry& registry = TheRegistry();
  IdeUtil::ScopedLock lock(registry.mutex);
  auto it = registry.factories.find(name);
  if (it != registry.factories.end() && it->second == factory) registry.factories.erase(it);
}

IListModelFactory* GetListModelFactory(const std::string& name) {
  Registry& registry = TheRegistry();
  IdeUtil::ScopedLock lock(registry.mutex);
  auto it = registry.factories.find(name);
  return it == registry.factories.end() ? nullptr : it->second;
}

std::shared_ptr<KfListModel> FindListModel(const std::string& name) {
  Registry& registry = TheRegistry();
  IdeUtil::ScopedLock lock(registry.mutex);
  auto it = registry.models.find(name);
  if (it == registry.models.end()) return nullptr;
  std::shared_ptr<KfListModel> model = it->second.lock();
  if (!model) registry.models.erase(it);
  return model;
}

std::shared_ptr<KfListModel> GetListModel(const std::string& name, bool create) {
  if (std::shared_ptr<KfListModel> model = FindListModel(name)) return model;
  if (!create) return nullptr;
  IListModelFactory* factory = GetListModelFactory(name);
  if (!factory) return nullptr;
  std::shared_ptr<KfListModel> made = factory->Create(name);  // called without the registry lock
  if (!made) return nullptr;
  Registry& registry = TheRegistry();
  IdeUtil::ScopedLock lock(registry.mutex);
  // Another thread may have made one meanwhile; the first one stays.
  auto& slot = registry.models[name];
  if (std::shared_ptr<KfListModel> existing = slot.lock()) return existing;
  slot = made;
  return made;
}

}  // namespace Kf::Gui
