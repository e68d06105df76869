// Default answers of the model interfaces: a model overrides only what its
// list supports; everything else does nothing and answers "no".
#include "orvane/listwindow_model.h"

namespace Kf::ListWindow {

KfListModelProperties::~KfListModelProperties() = default;
void KfListModelProperties::GetListSpec(ListSpec* out) { *out = ListSpec(); }
KfListModelTypes::SelType KfListModelProperties::SelectionType() const { return SelNone; }
bool KfListModelProperties::SpecialContent(std::string*, Format*) { return false; }
bool KfListModelProperties::IsInputBlocked() { return false; }
std::uint32_t KfListModelProperties::GetModelValue() { return 0; }
bool KfListModelProperties::GetKeywordHelpTag(std::string*) { return false; }
bool KfListModelProperties::GetHelpTag(std::string*) { return false; }

KfListModelLifecycle::~KfListModelLifecycle() = default;
void KfListModelLifecycle::Attach() {}
void KfListModelLifecycle::Detach() {}
void KfListModelLifecycle::Show(bool) {}
bool KfListModelLifecycle::IsVisible() { return false; }
void KfListModelLifecycle::Activate(bool) {}
void KfListModelLifecycle::SetListener(KfFlatListModelListener*) {}
void KfListModelLifecycle::AcknowledgeUpdate(u64) {}

KfListModelInput::~KfListModelInput() = default;
void KfListModelInput::ColumnClick(int) {}
void KfListModelInput::HandleChar(wchar_t, unsigned int) {}
void KfListModelInput::HandleKeyDown(wchar_t, unsigned int, bool, bool) {}
int KfListModelInput::GetEditableString(u64, int, std::string*, TextRange*) { return -1; }
bool KfListModelInput::SetValue(u64, int, const std::string&) { return false; }
void KfListModelInput::GetSelection(std::vector<SelRange>* out) { out->clear(); }
void KfListModelInput::ExtendSelection(KeyNavOperation, int) {}
void KfListModelInput::ExtendSelection(u64, bool) {}
void KfListModelInput::Click(u64, int, u64, unsigned int) {}
void KfListModelInput::DoubleClick(u64, int, u64) {}
KfListModelTypes::u64 KfListModelInput::Scroll(ScrollOperation, u64 top, u64) { return top; }
bool KfListModelInput::CanExpand(u64) { return false; }
bool KfListModelInput::CanCollapse(u64) { return false; }
void KfListModelInput::ToggleExpansion(u64) {}
void KfListModelInput::ToggleMoreOrLess(u64) {}
void KfListModelInput::ToggleCheckMark(u64) {}
bool KfListModelInput::ToggleExpansionAtDblClick(u64, int) { return false; }
bool KfListModelInput::GetContextMenu(u64, int, std::vector<Kf::ListWindowUtils::MenuItem>*) { return false; }
void KfListModelInput::HandleContextMenu(int) {}
KfListModelTypes::Target KfListModelInput::ToolTip(u64, int, int, std::string*) { return TargetNone; }
KfListModelTypes::Target KfListModelInput::DropTest(u64, int) { return TargetNone; }
bool KfListModelInput::CanDrop(u64, int, const std::string&) { return false; }
bool KfListModelInput::Drop(u64, int, const std::string&) { return false; }
bool KfListModelInput::CanDropLocal(u64, int, const std::string&, u64, int) { return false; }
bool KfListModelInput::DropLocal(u64, int, const std::string&, u64, int) { return false; }
bool KfListModelInput::GetDrag(u64, int, std::string*) { return false; }
bool KfListModelInput::SaveContent(KfContentStorage*) { return false; }
bool KfListModelInput::RestoreContent(KfContentStorage*) { return false; }

KfListModel::~KfListModel() = default;

KfUniversalListModel::~KfUniversalListModel() = default;
void KfUniversalListModel::GetCurrentSelection(Selection* out) { *out = Selection(); }
int KfUniversalListModel::KeyNavigate(KeyNavOperation, int, unsigned int, int) { return -1; }

KfSlidingListModel::~KfSlidingListModel() = default;
KfListModelTypes::u64 KfSlidingListModel::GetSel(std::string* text) {
  text->clear();
  return ~u64{0};
}
KfListModelTypes::u64 KfSlidingListModel::SelectRow(u64 row, std::string* text) {
  text->clear();
  return row;
}
int KfSlidingListModel::KeyNavigate(KeyNavOperation, int, int, std::string*) { return -1; }

KfFlatListModel::~KfFlatListModel() = default;
int KfFlatListModel::LineBreakColumn() { return -1; }

IListModelFactory::~IListModelFactory() = default;

}  // namespace Kf::ListWindow

namespace Kf::ListWindow {

void KfModelListenerSlot::Set(KfFlatListModelListener* listener) {
  IdeUtil::ScopedLock lock(mutex_);
  if (listener_ != listener) idle_.wait(mutex_, [this] { return deliveries_ == 0; });
  listener_ = listener;
}

bool KfModelListenerSlot::Notify(const KfFlatListModelListener::Note& note) {
  KfFlatListModelListener* listener = nullptr;
  {
    IdeUtil::ScopedLock lock(mutex_);
    listener = listener_;
    if (!listener) return false;
    ++deliveries_;
  }
  struct EndDelivery {
    KfModelListenerSlot& slot;
    ~EndDelivery() {
      IdeUtil::ScopedLock lock(slot.mutex_);
      if (--slot.deliveries_ == 0) slot.idle_.notify_all();
    }
  } end{*this};
  listener->HandleNotification(note);
  return true;
}

KfFlatListModelListener* KfModelListenerSlot::Get() {
  IdeUtil::ScopedLock lock(mutex_);
  return listener_;
}

}  // namespace Kf::ListWindow
