// The common base of list window proxies: the copied list properties, the
// update serials and the forwarding of list-level input to the model.
#include <map>
#include <mutex>

#include "orvane/listwindow_proxy.h"

namespace Kf::ListWindow {

namespace {

// Escalation ranks of the change kinds; built once, on first use.
const std::map<std::int32_t, int>& RankTable() {
  static const std::map<std::int32_t, int> table = {
      {0, 10}, {1, 20}, {2, 30}, {3, 40}, {4, 50}, {5, 10}, {6, 10},
  };
  return table;
}

int RankOf(std::int32_t what) {
  const auto& table = RankTable();
  auto it = table.find(what);
  return it == table.end() ? 0 : it->second;
}

}  // namespace

ListWindowProxyListener::~ListWindowProxyListener() = default;

std::vector<std::string> ListWindowProxyListener::BreakLines(const std::string& text, int,
                                                             const KfListModelTypes::Format&) {
  return {text};
}

ListWindowProxy::ListWindowProxy() = default;
ListWindowProxy::~ListWindowProxy() = default;

void ListWindowProxy::SetProvider(std::shared_ptr<KfListModel> model) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  // The new reference is taken before the old one is released.
  std::shared_ptr<KfListModel> old = std::move(model_);
  model_ = std::move(model);
  old.reset();
  if (!model_) return;
  inputBlocked_ = model_->IsInputBlocked();
  if (!inputBlocked_) modelValue_ = model_->GetModelValue();
}

ListWindowProxy::u64 ListWindowProxy::GetColumnInfo(std::vector<Column>* out) {
  if (out != &columns_) *out = columns_;
  return columns_.size();
}

void ListWindowProxy::GetListSpec(ListSpec* out) { *out = listSpec_; }

ListWindowProxy::SelType ListWindowProxy::SelectionType() const { return selType_; }

bool ListWindowProxy::SpecialContent(std::string* text, Format* format) {
  return model_ ? model_->SpecialContent(text, format) : false;
}

void ListWindowProxy::ColumnClick(int column) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_ && !inputBlocked_) model_->ColumnClick(column);
}

void ListWindowProxy::HandleChar(wchar_t ch, unsigned int flags) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_ && !inputBlocked_) model_->HandleChar(ch, flags);
}

void ListWindowProxy::HandleKeyDown(wchar_t key, unsigned int flags, bool shift, bool control) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_ && !inputBlocked_) model_->HandleKeyDown(key, flags, shift, control);
}

bool ListWindowProxy::GetKeywordHelpTag(std::string* tag) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return model_ ? model_->GetKeywordHelpTag(tag) : false;
}

bool ListWindowProxy::GetHelpTag(std::string* tag) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return model_ ? model_->GetHelpTag(tag) : false;
}

void ListWindowProxy::ColumnWidthChanged(int) {}

bool ListWindowProxy::Idle() { return true; }

bool ListWindowProxy::HostIsUpToDate() {
  if (!Idle()) return false;
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  const u64 latest = updateSerial_;
  return expectedSerial_ != latest && acknowledgedSerial_ == latest && !inputBlocked_;
}

void ListWindowProxy::HostExpectsUpdate(bool expects) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  expectedSerial_ = expects ? updateSerial_.load() : kAllOnes;
}

void ListWindowProxy::Show(bool shown) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_) model_->Show(shown);
}

bool ListWindowProxy::IsVisible() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return model_ ? model_->IsVisible() : false;
}

void ListWindowProxy::Activate(bool active) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_) model_->Activate(active);
}

KfPropertyTree ListWindowProxy::GetStringCmds() { return KfPropertyTree(); }

bool ListWindowProxy::ExecStringCmd(const std::string&, const KfPropertyTree&) { return false; }

void ListWindowProxy::WithdrawFromModel(const std::shared_ptr<KfListModel>& next) {
  std::shared_ptr<KfListModel> current;
  {
    IdeUtil::ScopedRecursiveLock lock(mutex_);
    current = model_;
  }
  if (current && current != next) current->SetListener(nullptr);
}

void ListWindowProxy::SetListener(ListWindowProxyListener* listener) { listener_ = listener; }

ListWindowProxy::What ListWindowProxy::MaybeEscalate(What a, What b) {
  return RankOf(b) > RankOf(a) ? b : a;
}

bool ListWindowProxy::VerifyRowData(const RowData& row) {
  const std::size_t columns = columns_.size();
  return row.cells.size() == columns && (row.formats.size() == columns || row.formats.size() == columns + 1);
}

void ListWindowProxy::Tell(const ListWindowProxyListener::Message& message) {
  if (listener_) listener_->HandleMessage(message);
}

void ListWindowProxy::FetchProperties() {
  if (!model_) return;
  std::vector<Column> columns;
  model_->GetColumnInfo(&columns);
  columns_ = std::move(columns);
  ListSpec spec;
  model_->GetListSpec(&spec);
  listSpec_ = spec;
  selType_ = model_->SelectionType();
}

void ListWindowProxy::UpdateDefaultRow() {
  RowData row;
  for (const Column& column : columns_) {
    row.cells.emplace_back("-");
    row.formats.push_back(column.format);
    row.values.push_back(0);
  }
  defaultRow_ = row;
  cache_.SetDefaultRowData(row);
}

}  // namespace Kf::ListWindow
