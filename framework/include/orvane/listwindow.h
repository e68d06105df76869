// List window models and proxies: the family header.
//
// Includes the model interfaces (orvane/listwindow_model.h), the proxies
// (orvane/listwindow_proxy.h), the ready-made models
// (orvane/listwindow_models.h) and the list-model lookups of the GUI host
// interfaces, declared here:
//
//   static MyModelFactory factory;
//   Kf::Gui::RegisterListModelFactory("Registers", &factory);
//   std::shared_ptr<Kf::ListWindow::KfListModel> model = Kf::Gui::GetListModel("Registers", true);
//   ...
//   Kf::Gui::UnregisterListModelFactory("Registers", &factory);
//
// Threads: the lookups and registrations may be called from any thread; one
// mutex guards the registry, and a factory is called without it held.
#pragma once

#include <memory>
#include <string>

#include "orvane/export.h"
#include "orvane/listwindow_model.h"
#include "orvane/listwindow_models.h"
#include "orvane/listwindow_proxy.h"

namespace Kf::Gui {

// Publishes `factory` (not owned) for models named `name`; a second
// registration under the same name replaces the first.
ORVANE_API void RegisterListModelFactory(const std::string& name, Kf::ListWindow::IListModelFactory* factory);
// Withdraws `factory` from `name` if it is the one registered there.
ORVANE_API void UnregisterListModelFactory(const std::string& name, Kf::ListWindow::IListModelFactory* factory);
// The factory registered for `name`, or null.
ORVANE_API Kf::ListWindow::IListModelFactory* GetListModelFactory(const std::string& name);
// The live model named `name`; when none is alive and `create` is true, the
// one made by the factory of that name (null without a factory). A model made
// here stays findable as long as someone holds it.
ORVANE_API std::shared_ptr<Kf::ListWindow::KfListModel> GetListModel(const std::string& name, bool create);
// The live model named `name`, or null; never creates one.
ORVANE_API std::shared_ptr<Kf::ListWindow::KfListModel> FindListModel(const std::string& name);

}  // namespace Kf::Gui
