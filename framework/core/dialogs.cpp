// The two dialog registries: name to host, one map per model kind.
#include <map>

#include "orvane/dialogs.h"

namespace Kf {
namespace {

template <class Host>
std::map<std::string, Host*>& Hosts() {
  static std::map<std::string, Host*> hosts;  // UI thread only
  return hosts;
}

template <class Host, class Model>
Dialog::DlgResult Invoke(const std::string& name, Model& model) {
  auto& hosts = Hosts<Host>();
  auto it = hosts.find(name);
  if (it == hosts.end() || !it->second) return Dialog::DlgNone;
  return it->second->InvokeDialog(name, model);
}

}  // namespace

namespace DialogMgmt {

void RegisterDialogHost(const std::string& name, Dialog::DialogHost* host) { Hosts<Dialog::DialogHost>()[name] = host; }
void RegisterDialogHost(const std::string& name, Dialog::DialogHostEx* host) {
  Hosts<Dialog::DialogHostEx>()[name] = host;
}
void UnregisterDialogHost(const std::string& name, Dialog::DialogHost*) { Hosts<Dialog::DialogHost>().erase(name); }
void UnregisterDialogHost(const std::string& name, Dialog::DialogHostEx*) {
  Hosts<Dialog::DialogHostEx>().erase(name);
}
Dialog::DlgResult InvokeDialog(const std::string& name, Dialog::DialogModel& model) {
  return Invoke<Dialog::DialogHost>(name, model);
}
Dialog::DlgResult InvokeDialog(const std::string& name, Dialog::DialogModelEx& model) {
  return Invoke<Dialog::DialogHostEx>(name, model);
}

}  // namespace DialogMgmt

namespace Dialog {

DialogModel::~DialogModel() = default;
DialogModelEx::~DialogModelEx() = default;
DialogHost::~DialogHost() = default;
DialogHostEx::~DialogHostEx() = default;

void RegisterDialogHost(const std::string& name, DialogHost* host) { DialogMgmt::RegisterDialogHost(name, host); }
void RegisterDialogHost(const std::string& name, DialogHostEx* host) { DialogMgmt::RegisterDialogHost(name, host); }
void UnregisterDialogHost(const std::string& name, DialogHost* host) { DialogMgmt::UnregisterDialogHost(name, host); }
void UnregisterDialogHost(const std::string& name, DialogHostEx* host) {
  DialogMgmt::UnregisterDialogHost(name, host);
}
DlgResult InvokeDialog(const std::string& name, DialogModel& model) { return DialogMgmt::InvokeDialog(name, model); }
DlgResult InvokeDialog(const std::string& name, DialogModelEx& model) {
  return DialogMgmt::InvokeDialog(name, model);
}

}  // namespace Dialog
}  // namespace Kf
