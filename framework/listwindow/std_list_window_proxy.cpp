// The standard proxy: rows missing from the cache are drawn from the default
// row at once and fetched by the proxy's own worker thread, lowest first, only
// while they are still visible.
#include <exception>

#include "core/diagnostics.h"
#include "core/profile.h"
#include "orvane/listwindow_proxy.h"

namespace Kf::ListWindow {

using u64 = std::uint64_t;
using Message = ListWindowProxyListener::Message;

namespace {

constexpr u64 kStop = ~u64{0};

// Marks a row handed out before it was fetched (or while the model is
// blocked): every format gets the pending flag; a blocked row's text colour is
// greyed so the user sees it will not react.
void MarkPending(std::vector<KfListModel::Format>* formats, bool blocked) {
  for (auto& format : *formats) {
    format.flags |= KfListModel::FormatPending;
    if (blocked) {
      format.flags |= KfListModel::FormatBlocked;
      const Kf::XColor base = format.text.IsValid() ? format.text : Kf::XColor{0, 0, 0, 1};
      format.text = Kf::XColor{static_cast<std::uint8_t>((base.red + 0x80u) / 2),
                               static_cast<std::uint8_t>((base.green + 0x80u) / 2),
                               static_cast<std::uint8_t>((base.blue + 0x80u) / 2), 1};
    }
  }
}

}  // namespace

KfStdListWindowProxy::KfStdListWindowProxy() = default;

KfStdListWindowProxy::~KfStdListWindowProxy() {
  StopWorker();
  WithdrawFromModel();
}

void KfStdListWindowProxy::StopWorker() {
  if (!thread_) return;
  {
    IdeUtil::ScopedLock lock(requestMutex_);
    requests_.clear();
    requests_.insert(kStop);
  }
  requestCondition_.notify_all();
  thread_->Join();
  thread_.reset();
  IdeUtil::ScopedLock lock(requestMutex_);
  requests_.clear();
}

void KfStdListWindowProxy::SetProvider(std::shared_ptr<KfListModel> model) {
  // A worker of an earlier provider ends first; it needs the proxy lock to
  // finish, so it is joined before that lock is taken.
  StopWorker();
  WithdrawFromModel(model);
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  ListWindowProxy::SetProvider(std::move(model));
  universalModel_ = std::dynamic_pointer_cast<KfUniversalListModel>(model_);
  FetchProperties();
  UpdateDefaultRow();
  if (!inputBlocked_ && universalModel_) rowCount_ = universalModel_->NumberOfRows();
  if (model_) model_->SetListener(this);
  thread_ = std::make_unique<GeThread>(*this, "List window proxy");
  if (!thread_->Launch()) {
    Kf::Detail::ReportError("KfStdListWindowProxy::SetProvider", "the worker thread did not start");
    thread_.reset();
  }
  detached_ = false;
}

void KfStdListWindowProxy::Attach() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_) {
    model_->Attach();
    model_->Show(true);
  }
  detached_ = false;
}

void KfStdListWindowProxy::Detach() {
  StopWorker();
  detached_ = true;
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (model_) {
    model_->Show(false);
    model_->Detach();
  }
}

u64 KfStdListWindowProxy::NumberOfRows() { return rowCount_.load(); }

bool KfStdListWindowProxy::Visible(u64* first, u64* last) {
  return listener_ ? listener_->Visible(first, last) : false;
}

void KfStdListWindowProxy::GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats,
                                  TreeInfo* tree, bool* flag) {
  RowData data;
  bool fresh = false;
  bool blocked = false;
  bool request = false;
  {
    // No proxy lock: the worker holds it for a whole fetch, and the GUI thread
    // must not wait for that. Everything read here is either written only by
    // the GUI thread itself (defaultRow_, universalModel_, thread_), atomic,
    // or guarded by the cache's own lock.
    data = defaultRow_;
    fresh = cache_.GetRow(row, &data);
    blocked = inputBlocked_;
    request = !fresh && !blocked && universalModel_ && acknowledgedSerial_ == updateSerial_ && thread_;
  }
  if (request) {
    u64 first = 0;
    u64 last = kStop - 1;
    if (!Visible(&first, &last)) {
      // A list that is not shown still gets the row it asked for.
      first = row;
      last = row;
    }
    PostRequest(row, first, last);
  }
  if (!fresh || blocked) MarkPending(&data.formats, blocked);
  *cells = std::move(data.cells);
  *formats = std::move(data.formats);
  *tree = std::move(data.treeInfo);
  *flag = data.flag;
}

void KfStdListWindowProxy::PostRequest(u64 row, u64 first, u64 last) {
  bool wake = false;
  {
    IdeUtil::ScopedLock lock(requestMutex_);
    if (requests_.count(kStop)) return;  // the worker is ending; nothing more is fetched
    requests_.erase(requests_.begin(), requests_.lower_bound(first));
    if (last != kStop) requests_.erase(requests_.upper_bound(last), requests_.end());
    wake = requests_.empty();
    requests_.insert(row);
  }
  if (wake) requestCondition_.notify_one();
}

void KfStdListWindowProxy::DiscardRequests() {
  IdeUtil::ScopedLock lock(requestMutex_);
  if (requests_.count(kStop)) return;
  requests_.clear();
}

void KfStdListWindowProxy::Run() {
  std::string tag;
  {
    IdeUtil::ScopedRecursiveLock lock(mutex_);
    if (model_) model_->GetHelpTag(&tag);
  }
  // The profiler sees the thread as "StdListWindowProxy<tag>" and its run as
  // "WindowProxyRun<tag>"; the platform's thread list keeps the name the
  // thread was started with ("List window proxy").
  const std::string threadName = "StdListWindowProxy" + tag;
  const std::string runName = "WindowProxyRun" + tag;
  Kf::Detail::ProfileTask threadTask(threadName.c_str());
  Kf::Detail::ProfileTask runTask(runName.c_str());
  Kf::Detail::ScopedProfile threadProfile(threadTask);
  Kf::Detail::ScopedProfile runProfile(runTask);
  static Kf::Detail::ProfileTask fetchTask("KfStdListWindowProxyFetch");

  for (;;) {
    {
      IdeUtil::ScopedLock lock(requestMutex_);
      requestCondition_.wait(requestMutex_, [this] { return !requests_.empty(); });
      busy_ = true;
    }
    Kf::Detail::ScopedProfile fetchProfile(fetchTask);
    bool stop = false;
    {
      IdeUtil::ScopedRecursiveLock lock(mutex_);
      bool have = false;
      u64 row = 0;
      {
        IdeUtil::ScopedLock requestLock(requestMutex_);
        if (!requests_.empty()) {
          row = *requests_.begin();
          if (row == kStop) {
            stop = true;
          } else {
            requests_.erase(requests_.begin());
            have = true;
          }
        }
      }
      if (have && acknowledgedSerial_ == updateSerial_ && !inputBlocked_ && universalModel_) {
        RowData data;
        bool delivered = false;
        try {
          delivered = universalModel_->GetRow(row, &data.cells, &data.formats, &data.treeInfo, &data.flag);
        } catch (const std::exception& e) {
          Kf::Detail::ReportError("KfStdListWindowProxy::Run", e.what());
        }
        if (delivered) {
          data.values.assign(columns_.size(), 0);
          cache_.Update(row, data);
          Message message;
          message.kind = ListWindowProxyListener::MessageRedraw;
          message.serial = updateSerial_;
          message.value = kStop;
          Tell(message);
        }
      }
    }
    IdeUtil::ScopedLock lock(requestMutex_);
    busy_ = false;
    if (stop) return;
  }
}

void KfStdListWindowProxy::HandleNotification(const Note& note) {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  modelVersion_ = note.version;
  if (note.what == KfListModelListener::Block) inputBlocked_ = true;
  if (note.what == KfListModelListener::Unblock) inputBlocked_ = false;
  Message message;
  message.kind = ListWindowProxyListener::MessageRedraw;
  message.serial = ++updateSerial_;
  message.value = note.value;
  const What escalated = MaybeEscalate(static_cast<What>(pendingChange_), note.what);
  pendingChange_ = escalated;
  if (note.what == KfListModelListener::RowChanged) changedRows_.insert(note.row);
  if (note.what == KfListModelListener::PropertiesChanged && !inputBlocked_)
    message.kind = ListWindowProxyListener::MessageRelayout;
  if (note.what == KfListModelListener::Unblock && escalated == KfListModelListener::PropertiesChanged)
    message.kind = ListWindowProxyListener::MessageRelayout;
  Tell(message);
}

void KfStdListWindowProxy::RefreshRowsAndSelection() {
  if (inputBlocked_ || !universalModel_) return;
  rowCount_ = universalModel_->NumberOfRows();
  modelValue_ = universalModel_->GetModelValue();
  universalModel_->GetCurrentSelection(&selection_);
}

void KfStdListWindowProxy::AcknowledgeUpdate(u64 serial) {
  acknowledgedSerial_ = serial;
  if (serial != updateSerial_) return;
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  if (!model_) return;
  if (modelVersion_ != acknowledgedModelVersion_ && !inputBlocked_) {
    model_->AcknowledgeUpdate(modelVersion_);
    acknowledgedModelVersion_ = modelVersion_;
  }
  switch (pendingChange_) {
    case KfListModelListener::SelectionChanged:
      if (!inputBlocked_ && universalModel_) universalModel_->GetCurrentSelection(&selection_);
      break;
    case KfListModelListener::RowChanged:
      RefreshRowsAndSelection();
      for (u64 row : changedRows_) cache_.SetDirty(row);
      break;
    case KfListModelListener::AllRowsChanged:
      RefreshRowsAndSelection();
      cache_.SetDirty();
      break;
    case KfListModelListener::PropertiesChanged:
      if (!inputBlocked_) {
        FetchProperties();
        UpdateDefaultRow();
        RefreshRowsAndSelection();
      }
      cache_.Clear();
      break;
    default:
      break;
  }
  if (pendingChange_ >= KfListModelListener::RowChanged && pendingChange_ <= KfListModelListener::PropertiesChanged)
    DiscardRequests();
  pendingChange_ = 0;
  changedRows_.clear();
}

#define ORVANE_FORWARD_STD(neutral, call)      \
  IdeUtil::ScopedRecursiveLock lock(mutex_);   \
  if (!universalModel_) return neutral;        \
  return universalModel_->call

int KfStdListWindowProxy::GetEditableString(u64 row, int column, std::string* text, TextRange* range) {
  ORVANE_FORWARD_STD(-1, GetEditableString(row, column, text, range));
}
bool KfStdListWindowProxy::SetValue(u64 row, int column, const std::string& value) {
  ORVANE_FORWARD_STD(false, SetValue(row, column, value));
}
void KfStdListWindowProxy::GetSelection(std::vector<SelRange>* out) { ORVANE_FORWARD_STD(void(), GetSelection(out)); }
void KfStdListWindowProxy::ExtendSelection(KeyNavOperation op, int count) {
  ORVANE_FORWARD_STD(void(), ExtendSelection(op, count));
}
void KfStdListWindowProxy::ExtendSelection(u64 row, bool extend) {
  ORVANE_FORWARD_STD(void(), ExtendSelection(row, extend));
}
void KfStdListWindowProxy::Click(u64 row, int column, u64 position, unsigned int flags) {
  ORVANE_FORWARD_STD(void(), Click(row, column, position, flags));
}
void KfStdListWindowProxy::DoubleClick(u64 row, int column, u64 position) {
  ORVANE_FORWARD_STD(void(), DoubleClick(row, column, position));
}
u64 KfStdListWindowProxy::Scroll(ScrollOperation op, u64 top, u64 amount) {
  ORVANE_FORWARD_STD(top, Scroll(op, top, amount));
}
bool KfStdListWindowProxy::CanExpand(u64 row) { ORVANE_FORWARD_STD(false, CanExpand(row)); }
bool KfStdListWindowProxy::CanCollapse(u64 row) { ORVANE_FORWARD_STD(false, CanCollapse(row)); }
void KfStdListWindowProxy::ToggleExpansion(u64 row) { ORVANE_FORWARD_STD(void(), ToggleExpansion(row)); }
void KfStdListWindowProxy::ToggleMoreOrLess(u64 row) { ORVANE_FORWARD_STD(void(), ToggleMoreOrLess(row)); }
void KfStdListWindowProxy::ToggleCheckMark(u64 row) { ORVANE_FORWARD_STD(void(), ToggleCheckMark(row)); }
bool KfStdListWindowProxy::ToggleExpansionAtDblClick(u64 row, int column) {
  ORVANE_FORWARD_STD(false, ToggleExpansionAtDblClick(row, column));
}
bool KfStdListWindowProxy::GetContextMenu(u64 row, int column, std::vector<Kf::ListWindowUtils::MenuItem>* items) {
  ORVANE_FORWARD_STD(false, GetContextMenu(row, column, items));
}
void KfStdListWindowProxy::HandleContextMenu(int command) { ORVANE_FORWARD_STD(void(), HandleContextMenu(command)); }
ListWindowProxy::Target KfStdListWindowProxy::ToolTip(u64 row, int column, int position, std::string* text) {
  ORVANE_FORWARD_STD(KfListModel::TargetNone, ToolTip(row, column, position, text));
}
ListWindowProxy::Target KfStdListWindowProxy::DropTest(u64 row, int column) {
  ORVANE_FORWARD_STD(KfListModel::TargetNone, DropTest(row, column));
}
bool KfStdListWindowProxy::CanDrop(u64 row, int column, const std::string& data) {
  ORVANE_FORWARD_STD(false, CanDrop(row, column, data));
}
bool KfStdListWindowProxy::Drop(u64 row, int column, const std::string& data) {
  ORVANE_FORWARD_STD(false, Drop(row, column, data));
}
bool KfStdListWindowProxy::CanDropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) {
  ORVANE_FORWARD_STD(false, CanDropLocal(row, column, data, fromRow, fromColumn));
}
bool KfStdListWindowProxy::DropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) {
  ORVANE_FORWARD_STD(false, DropLocal(row, column, data, fromRow, fromColumn));
}
bool KfStdListWindowProxy::GetDrag(u64 row, int column, std::string* data) {
  ORVANE_FORWARD_STD(false, GetDrag(row, column, data));
}
bool KfStdListWindowProxy::SaveContent(KfContentStorage* storage) { ORVANE_FORWARD_STD(false, SaveContent(storage)); }
bool KfStdListWindowProxy::RestoreContent(KfContentStorage* storage) {
  ORVANE_FORWARD_STD(false, RestoreContent(storage));
}
bool KfStdListWindowProxy::GetKeywordHelpTag(std::string* tag) { ORVANE_FORWARD_STD(false, GetKeywordHelpTag(tag)); }
bool KfStdListWindowProxy::GetHelpTag(std::string* tag) { ORVANE_FORWARD_STD(false, GetHelpTag(tag)); }
int KfStdListWindowProxy::KeyNavigate(KeyNavOperation op, int count, unsigned int flags, int column) {
  ORVANE_FORWARD_STD(-1, KeyNavigate(op, count, flags, column));
}

#undef ORVANE_FORWARD_STD

bool KfStdListWindowProxy::Idle() {
  IdeUtil::ScopedLock lock(requestMutex_);
  return !busy_ && requests_.empty();
}

std::vector<u64> KfStdListWindowProxy::QueuedRequests() {
  IdeUtil::ScopedLock lock(requestMutex_);
  return {requests_.begin(), requests_.end()};
}

bool KfStdListWindowProxy::WorkerRunning() const { return thread_ && thread_->IsRunning(); }

KfUniversalListModel::Selection KfStdListWindowProxy::CurrentSelection() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return selection_;
}

int KfStdListWindowProxy::PendingChange() {
  IdeUtil::ScopedRecursiveLock lock(mutex_);
  return pendingChange_;
}

}  // namespace Kf::ListWindow
