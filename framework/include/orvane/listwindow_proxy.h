// List window proxies: what a host list control talks to instead of a model.
//
// A proxy keeps the model's column set and list properties, a bounded cache of
// rows, and the update serials that tell the host whether it drew the latest
// state. The host uses one of the concrete proxies:
//
//   SlidingModelProxy      over a KfSlidingListModel (a chunk of a very long list)
//   FlatModelWrapperProxy  over a KfFlatListModel, wrapping long cell texts
//   KfStdListWindowProxy   over a KfUniversalListModel, fetching rows on a worker
//
//   auto proxy = std::make_unique<Kf::ListWindow::KfStdListWindowProxy>();
//   proxy->SetListener(&hostListener);   // before SetProvider
//   proxy->SetProvider(model);
//   proxy->Attach();
//   ... on each message: move it to the GUI thread, AcknowledgeUpdate(serial), redraw
//   proxy->Detach();
//
// Threads: the host calls a proxy from its GUI thread; models may notify from
// any thread. One recursive mutex per proxy guards its fields and every call
// into the model; the row cache has its own recursive mutex, always taken
// after the proxy's. The host listener is called with the proxy mutex held,
// from whichever thread notified (or the standard proxy's worker): it must
// carry messages to the GUI thread and must not wait there for a thread that
// calls into the proxy.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "orvane/export.h"
#include "orvane/listwindow_model.h"
#include "orvane/locks.h"
#include "orvane/propertytree.h"
#include "orvane/thread.h"

namespace Kf::ListWindow {

// Implemented by the host's list control.
class ORVANE_API ListWindowProxyListener {
 public:
  enum MessageKind : std::int32_t {
    MessageRedraw = 0,    // rows or selection changed: redraw
    MessageRelayout = 1,  // list properties changed: relayout (columns, header)
  };
  struct Message {
    std::int32_t kind = MessageRedraw;
    std::uint64_t serial = 0;  // acknowledge it with AcknowledgeUpdate after redrawing
    std::uint64_t value = 0;
    std::string text;
  };

  virtual ~ListWindowProxyListener();
  // A change to show. Called with the proxy's mutex held, on any thread.
  virtual void HandleMessage(const Message& message) = 0;
  // False when the list is not shown; else the first and last visible rows.
  virtual bool Visible(std::uint64_t* first, std::uint64_t* last) = 0;
  // Breaks `text` of `column` into display lines for the current width and
  // font. The default keeps the text as one line.
  virtual std::vector<std::string> BreakLines(const std::string& text, int column,
                                              const KfListModelTypes::Format& format);
};

class ORVANE_API ListWindowProxy : public KfFlatListModelListener {
 public:
  using u64 = std::uint64_t;
  using Column = KfListModel::Column;
  using Format = KfListModel::Format;
  using ListSpec = KfListModel::ListSpec;
  using SelType = KfListModel::SelType;
  using TreeInfo = KfListModel::TreeInfo;
  using TextRange = KfListModel::TextRange;
  using SelRange = KfListModel::SelRange;
  using Target = KfListModel::Target;
  using ScrollOperation = KfListModel::ScrollOperation;
  using KeyNavOperation = KfListModel::KeyNavOperation;
  using What = KfListModelListener::What;

  static constexpr u64 kAllOnes = ~u64{0};

  // One row as the host draws it.
  struct RowData {
    std::vector<std::string> cells;    // one per column
    std::vector<Format> formats;       // one per column, optionally one more for the row
    std::vector<std::uint32_t> values; // one per column, model-defined
    TreeInfo treeInfo;
    bool flag = false;                 // the row's check mark
    friend bool operator==(const RowData&, const RowData&) = default;
  };

  // The row cache: a sliding run of slots from firstRow on, at most 100000
  // after any reshaping. Slots are shared entries so reshaping never copies
  // row data and a reader may keep a row alive.
  // Threads: every operation takes the cache's recursive mutex, except
  // NumberOfRows, which reads an atomic copy of the slot count.
  class ORVANE_API Cache {
   public:
    static constexpr u64 kMaxSlots = 100000;
    static constexpr u64 kMinKeptAbove = 10000;

    struct Entry {
      RowData data;
      bool dirty = false;
    };

    Cache();
    ~Cache();
    Cache(const Cache&) = delete;
    Cache& operator=(const Cache&) = delete;

    // True only for a filled, clean slot; else `out` gets the default row.
    bool GetRow(u64 row, RowData* out);
    void Update(u64 row, const RowData& data);
    // `count` rows were inserted at `row`.
    void ShiftDownRows(u64 row, u64 count);
    // `count` rows were removed at `row`.
    void ShiftUpRows(u64 row, u64 count);
    void SetDirty(u64 row);
    void SetDirty();
    void Clear();
    void SetDefaultRowData(const RowData& data);
    // Reshapes the run so that it covers [row, row + count).
    void EnsureInCache(u64 row, u64 count);
    // The number of slots, filled or not.
    u64 NumberOfRows() const;
    // The row number of the first slot (for diagnostics and tests).
    u64 FirstRow();
    // Whether the slot of `row` holds an entry (fresh or dirty).
    bool IsFilled(u64 row);

   private:
    void Trace(const std::string& what);
    void SyncSize();

    IdeUtil::RecursiveMutex mutex_;
    u64 firstRow_ = 0;                          // guarded by mutex_
    RowData defaultRowData_;                    // guarded by mutex_
    std::vector<std::shared_ptr<Entry>> rows_;  // guarded by mutex_
    std::atomic<u64> size_{0};                  // rows_.size(), readable without the lock
  };

  ListWindowProxy();
  virtual ~ListWindowProxy();
  ListWindowProxy(const ListWindowProxy&) = delete;
  ListWindowProxy& operator=(const ListWindowProxy&) = delete;

  // Host-facing operations, in the order of the table every proxy shares.
  virtual void SetProvider(std::shared_ptr<KfListModel> model);
  virtual void Attach() = 0;
  virtual void Detach() = 0;
  virtual u64 GetColumnInfo(std::vector<Column>* out);
  virtual void GetListSpec(ListSpec* out);
  virtual SelType SelectionType() const;
  virtual u64 NumberOfRows() = 0;
  virtual void GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo* tree,
                      bool* flag) = 0;
  virtual void AcknowledgeUpdate(u64 serial) = 0;
  virtual bool SpecialContent(std::string* text, Format* format);
  virtual int GetEditableString(u64 row, int column, std::string* text, TextRange* range) = 0;
  virtual bool SetValue(u64 row, int column, const std::string& value) = 0;
  virtual void GetSelection(std::vector<SelRange>* out) = 0;
  virtual void ExtendSelection(KeyNavOperation op, int count) = 0;
  virtual void ExtendSelection(u64 row, bool extend) = 0;
  virtual void Click(u64 row, int column, u64 position, unsigned int flags) = 0;
  virtual void DoubleClick(u64 row, int column, u64 position) = 0;
  virtual void ColumnClick(int column);
  virtual void HandleChar(wchar_t ch, unsigned int flags);
  virtual void HandleKeyDown(wchar_t key, unsigned int flags, bool shift, bool control);
  virtual u64 Scroll(ScrollOperation op, u64 top, u64 amount) = 0;
  virtual bool CanExpand(u64 row) = 0;
  virtual bool CanCollapse(u64 row) = 0;
  virtual void ToggleExpansion(u64 row) = 0;
  virtual void ToggleMoreOrLess(u64 row) = 0;
  virtual void ToggleCheckMark(u64 row) = 0;
  virtual bool ToggleExpansionAtDblClick(u64 row, int column) = 0;
  virtual bool GetContextMenu(u64 row, int column, std::vector<Kf::ListWindowUtils::MenuItem>* items) = 0;
  virtual void HandleContextMenu(int command) = 0;
  virtual Target ToolTip(u64 row, int column, int position, std::string* text) = 0;
  virtual Target DropTest(u64 row, int column) = 0;
  virtual bool CanDrop(u64 row, int column, const std::string& data) = 0;
  virtual bool Drop(u64 row, int column, const std::string& data) = 0;
  virtual bool CanDropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) = 0;
  virtual bool DropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) = 0;
  virtual bool GetDrag(u64 row, int column, std::string* data) = 0;
  virtual bool SaveContent(KfContentStorage* storage) = 0;
  virtual bool RestoreContent(KfContentStorage* storage) = 0;
  virtual bool GetKeywordHelpTag(std::string* tag);
  virtual bool GetHelpTag(std::string* tag);
  virtual void ColumnWidthChanged(int column);
  virtual bool Idle();
  virtual bool HostIsUpToDate();
  virtual void HostExpectsUpdate(bool expects);
  virtual void Show(bool shown);
  virtual bool IsVisible();
  virtual void Activate(bool active);
  virtual KfPropertyTree GetStringCmds();
  virtual bool ExecStringCmd(const std::string& command, const KfPropertyTree& args);

  // Stores the host's listener (not owned); set it before SetProvider.
  void SetListener(ListWindowProxyListener* listener);
  // Of two pending changes, the one of strictly higher rank; a tie keeps `a`.
  static What MaybeEscalate(What a, What b);

  // Observers for diagnostics and tests.
  u64 UpdateSerial() const { return updateSerial_.load(); }
  u64 AcknowledgedSerial() const { return acknowledgedSerial_.load(); }
  bool InputBlocked() const { return inputBlocked_.load(); }
  bool Detached() const { return detached_.load(); }

 protected:
  // Whether `row` has one text per column and one format per column (or one more).
  bool VerifyRowData(const RowData& row);
  // Sends `message` to the listener if one is set. Call with mutex_ held.
  void Tell(const ListWindowProxyListener::Message& message);
  // Replaces columns_, listSpec_ and selType_ from the model. Call with mutex_ held.
  void FetchProperties();
  // Rebuilds the default row from the columns ("-" in each). Call with mutex_ held.
  void UpdateDefaultRow();
  // Withdraws this proxy as the current model's listener unless `next` is
  // that model. Call without mutex_ held: the model waits for a delivery in
  // progress, which needs mutex_.
  void WithdrawFromModel(const std::shared_ptr<KfListModel>& next = nullptr);

  IdeUtil::RecursiveMutex mutex_;
  std::shared_ptr<KfListModel> model_;     // guarded by mutex_
  std::vector<Column> columns_;            // written by the GUI thread under mutex_
  ListWindowProxyListener* listener_ = nullptr;
  std::atomic<u64> updateSerial_{0};       // written under mutex_
  std::atomic<u64> acknowledgedSerial_{0};
  std::atomic<u64> expectedSerial_{kAllOnes};
  std::atomic<bool> inputBlocked_{false};  // written under mutex_
  std::atomic<bool> detached_{true};
  ListSpec listSpec_;                      // written by the GUI thread under mutex_
  SelType selType_ = KfListModel::SelNone;
  RowData defaultRow_;                     // guarded by mutex_
  std::string text_;
  std::uint32_t modelValue_ = 0;           // guarded by mutex_
  Cache cache_;
};

// Base of the proxies over a chunk of a long list: adds the chunk operations.
class ORVANE_API SlidingListWindowProxy : public ListWindowProxy {
 public:
  // The model is told it is attached and shown; clears the detached state.
  void Attach() override;
  // The model is told it is hidden and detached.
  void Detach() override;
  // The chunk's row count.
  u64 NumberOfRows() override;

  virtual u64 AddBefore(u64 count, ChunkInfo* out) = 0;
  virtual u64 AddAfter(u64 count, ChunkInfo* out) = 0;
  virtual void NavigateTo(const std::string& text, u64* row, ChunkInfo* out) = 0;
  virtual void NavigateTo(double fraction, u64* row, ChunkInfo* out) = 0;
  virtual u64 GetSel(std::string* text) = 0;
  virtual u64 SetSel(u64 row) = 0;
  virtual int KeyNavigate(KeyNavOperation op, int count, int column, std::string* text) = 0;
  virtual void SetMinChunk(int rows) = 0;
  virtual void GetChunkInfo(ChunkInfo* out) = 0;

 protected:
  // The chunk's row count, kept beside the chunk so NumberOfRows needs no lock.
  std::atomic<u64> chunkRows_{0};
};

// The sliding proxy's shared state and the row-level forwarding, used by both
// SlidingModelProxy and FlatModelWrapperProxy.
class ORVANE_API SlidingProxyBase : public SlidingListWindowProxy {
 public:
  int GetEditableString(u64 row, int column, std::string* text, TextRange* range) override;
  bool SetValue(u64 row, int column, const std::string& value) override;
  void GetSelection(std::vector<SelRange>* out) override;
  void ExtendSelection(KeyNavOperation op, int count) override;
  void ExtendSelection(u64 row, bool extend) override;
  void Click(u64 row, int column, u64 position, unsigned int flags) override;
  void DoubleClick(u64 row, int column, u64 position) override;
  bool CanExpand(u64 row) override;
  bool CanCollapse(u64 row) override;
  void ToggleExpansion(u64 row) override;
  void ToggleMoreOrLess(u64 row) override;
  void ToggleCheckMark(u64 row) override;
  bool ToggleExpansionAtDblClick(u64 row, int column) override;
  bool GetContextMenu(u64 row, int column, std::vector<Kf::ListWindowUtils::MenuItem>* items) override;
  void HandleContextMenu(int command) override;
  Target ToolTip(u64 row, int column, int position, std::string* text) override;
  Target DropTest(u64 row, int column) override;
  bool CanDrop(u64 row, int column, const std::string& data) override;
  bool Drop(u64 row, int column, const std::string& data) override;
  bool CanDropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) override;
  bool DropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) override;
  bool GetDrag(u64 row, int column, std::string* data) override;
  bool SaveContent(KfContentStorage* storage) override;
  bool RestoreContent(KfContentStorage* storage) override;
  bool Visible(u64* first, u64* last) override;
  u64 GetSel(std::string* text) override;
  void SetMinChunk(int rows) override;
  void GetChunkInfo(ChunkInfo* out) override;

  u64 MinChunk() const { return minChunk_.load(); }
  int PendingChange();

 protected:
  // The row of the model that a row-level operation on window row `row`
  // addresses. The sliding proxy passes rows through; the flat wrapper maps.
  virtual u64 ModelRow(u64 row);
  // Re-reads selectedRow_ and selectionText_ from the model. Call with mutex_ held.
  virtual void UpdateSelection() = 0;
  void SetChunk(const ChunkInfo& chunk);
  // Takes in a model notification: records its version and blocking, folds
  // it into pendingChange_, advances the update serial and returns the
  // message for the host (its value and text left for the caller). Sets
  // `allRowsChanged` when every row must be fetched again. Call with mutex_ held.
  ListWindowProxyListener::Message FoldNotification(const Note& note, bool* allRowsChanged);
  // The first steps of an acknowledgement: records `serial`; if it is the
  // latest, passes a changed model version back to the model and re-reads
  // the properties after a property change. False when the acknowledgement
  // ends there (an older serial, or no model). Call with mutex_ held.
  bool BeginAcknowledgement(u64 serial);

  u64 modelVersion_ = 0;               // guarded by mutex_
  u64 acknowledgedModelVersion_ = 0;   // guarded by mutex_
  std::int32_t pendingChange_ = 0;     // guarded by mutex_
  u64 selectedRow_ = kAllOnes;         // guarded by mutex_
  ChunkInfo chunk_;                    // guarded by mutex_
  std::string selectionText_;          // guarded by mutex_
  std::atomic<u64> minChunk_{100};
};

// The proxy over a KfSlidingListModel. It holds no rows until the host's
// first acknowledgement reads the model's chunk: the model announces its
// contents with a notification (the host acknowledges the serial it carries),
// and row operations such as AddAfter or NavigateTo also fetch the chunk.
// Selection changes made by the model (a key press, say) reach GetSel at the
// next acknowledgement or chunk operation.
class ORVANE_API SlidingModelProxy : public SlidingProxyBase {
 public:
  SlidingModelProxy();
  ~SlidingModelProxy() override;

  void HandleNotification(const Note& note) override;
  void SetProvider(std::shared_ptr<KfListModel> model) override;
  void GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo* tree,
              bool* flag) override;
  void AcknowledgeUpdate(u64 serial) override;
  u64 Scroll(ScrollOperation op, u64 top, u64 amount) override;
  u64 AddBefore(u64 count, ChunkInfo* out) override;
  u64 AddAfter(u64 count, ChunkInfo* out) override;
  void NavigateTo(const std::string& text, u64* row, ChunkInfo* out) override;
  void NavigateTo(double fraction, u64* row, ChunkInfo* out) override;
  u64 SetSel(u64 row) override;
  int KeyNavigate(KeyNavOperation op, int count, int column, std::string* text) override;

 protected:
  void UpdateSelection() override;

 private:
  void ResetCacheToChunk();
  // Grows the chunk at one end through `grow` (the model's AddBefore or
  // AddAfter), letting the model drop rows beyond the minimum chunk size.
  u64 GrowChunk(u64 count, ChunkInfo* out, u64 (KfSlidingListModel::*grow)(u64, u64, ChunkInfo*));

  std::shared_ptr<KfSlidingListModel> slidingModel_;  // guarded by mutex_
};

// Shows a KfFlatListModel whose rows may wrap: each model row becomes one
// window row per line of its line-break column. The proxy builds the chunk of
// window rows itself and puts them into the cache as it builds it.
//
// Growing the chunk (PrependToChunk, AppendToChunk) takes whole model rows
// only: it stops at the list's ends, and it stops as soon as the window rows
// added reach `count`, so a model row that breaks into more lines than are
// still wanted is taken whole and the chunk may overshoot by at most that
// row's lines less one. A count of 0 adds nothing.
class ORVANE_API FlatModelWrapperProxy : public SlidingProxyBase {
 public:
  FlatModelWrapperProxy();
  ~FlatModelWrapperProxy() override;

  void HandleNotification(const Note& note) override;
  void SetProvider(std::shared_ptr<KfListModel> model) override;
  void GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo* tree,
              bool* flag) override;
  void AcknowledgeUpdate(u64 serial) override;
  u64 Scroll(ScrollOperation op, u64 top, u64 amount) override;
  void ColumnWidthChanged(int column) override;
  u64 AddBefore(u64 count, ChunkInfo* out) override;
  u64 AddAfter(u64 count, ChunkInfo* out) override;
  void NavigateTo(const std::string& text, u64* row, ChunkInfo* out) override;
  void NavigateTo(double fraction, u64* row, ChunkInfo* out) override;
  u64 SetSel(u64 row) override;
  int KeyNavigate(KeyNavOperation op, int count, int column, std::string* text) override;
  void SetMinChunk(int rows) override;

  // Fills the chunk description from the window rows and the model's row count; `out` may be null.
  void UpdateChunkInfo(ChunkInfo* out);
  // Moves to model row `modelRow`; `*windowRow` passes in how many window rows
  // the caller wants above it and returns its window row. The text and
  // fraction forms pass the caller's `*windowRow` on in the same way. The text
  // form reads any text but "BEGIN", "END" and "" as a decimal model row with
  // std::stoull and lets its std::invalid_argument or std::out_of_range through.
  void NavigateTo(u64 modelRow, u64* windowRow, ChunkInfo* out);

  // The model row of each window row of the chunk (for tests and the host).
  std::vector<u64> ChunkModelRows();

 protected:
  u64 ModelRow(u64 row) override;
  void UpdateSelection() override;

 private:
  // The chunk's window rows: the model row each came from (ascending), and
  // in step with it, the line of that model row it shows.
  struct WindowRows {
    std::vector<u64> modelRows;
    std::vector<u64> lineIndex;
  };

  u64 PrependToChunk(u64 modelRow, u64 count);
  u64 AppendToChunk(u64 modelRow, u64 count);
  void LineBreakRow(u64 modelRow, const RowData& row, std::vector<RowData>& out, std::vector<u64>& modelRows);
  bool GetWindowRowsForModelRow(u64 modelRow, std::vector<RowData>& out, std::vector<u64>& modelRows);

  std::unique_ptr<WindowRows> windowRows_;  // guarded by mutex_
  bool rebuild_ = false;                    // guarded by mutex_
  std::shared_ptr<KfFlatListModel> flatModel_;  // guarded by mutex_
};

// The proxy over a KfUniversalListModel. The GUI thread never waits for the
// model's row producer: a row not in the cache is drawn from the default row
// (marked FormatPending) and queued for the proxy's worker thread, named
// "List window proxy", which fetches queued rows lowest first, stores them in
// the cache and tells the host to redraw. Queued rows that scrolled out of
// view are dropped at every new request.
//
// SetProvider starts the worker and Detach stops it; Attach does not restart
// it, so a proxy that was detached is given its model again with SetProvider.
// While no worker runs, missing rows stay pending and nothing is queued.
//
// Threads: locks are taken in the order proxy mutex, request mutex, cache
// mutex. The worker holds the proxy mutex while it fetches one row and tells
// the host. GetRow takes no proxy lock (only the cache's and the request
// mutex), so drawing never waits for a fetch; it and every other host-facing
// operation must be called on the one GUI thread that also calls SetProvider,
// AcknowledgeUpdate and Detach. Detach (and the destructor) wait for the worker to end, so they
// must not be called from inside a listener or model callback.
class ORVANE_API KfStdListWindowProxy : public ListWindowProxy, public GeThread::Start {
 public:
  KfStdListWindowProxy();
  ~KfStdListWindowProxy() override;

  void HandleNotification(const Note& note) override;
  bool Visible(u64* first, u64* last) override;
  void SetProvider(std::shared_ptr<KfListModel> model) override;
  void Attach() override;
  void Detach() override;
  u64 NumberOfRows() override;
  void GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats, TreeInfo* tree,
              bool* flag) override;
  void AcknowledgeUpdate(u64 serial) override;
  int GetEditableString(u64 row, int column, std::string* text, TextRange* range) override;
  bool SetValue(u64 row, int column, const std::string& value) override;
  void GetSelection(std::vector<SelRange>* out) override;
  void ExtendSelection(KeyNavOperation op, int count) override;
  void ExtendSelection(u64 row, bool extend) override;
  void Click(u64 row, int column, u64 position, unsigned int flags) override;
  void DoubleClick(u64 row, int column, u64 position) override;
  u64 Scroll(ScrollOperation op, u64 top, u64 amount) override;
  bool CanExpand(u64 row) override;
  bool CanCollapse(u64 row) override;
  void ToggleExpansion(u64 row) override;
  void ToggleMoreOrLess(u64 row) override;
  void ToggleCheckMark(u64 row) override;
  bool ToggleExpansionAtDblClick(u64 row, int column) override;
  bool GetContextMenu(u64 row, int column, std::vector<Kf::ListWindowUtils::MenuItem>* items) override;
  void HandleContextMenu(int command) override;
  Target ToolTip(u64 row, int column, int position, std::string* text) override;
  Target DropTest(u64 row, int column) override;
  bool CanDrop(u64 row, int column, const std::string& data) override;
  bool Drop(u64 row, int column, const std::string& data) override;
  bool CanDropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) override;
  bool DropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn) override;
  bool GetDrag(u64 row, int column, std::string* data) override;
  bool SaveContent(KfContentStorage* storage) override;
  bool RestoreContent(KfContentStorage* storage) override;
  bool GetKeywordHelpTag(std::string* tag) override;
  bool GetHelpTag(std::string* tag) override;
  // True only when the worker is not fetching and no request is queued.
  bool Idle() override;

  int KeyNavigate(KeyNavOperation op, int count, unsigned int flags, int column);

  // The worker loop; runs on the proxy's own thread.
  void Run() override;

  // Observers for diagnostics and tests.
  std::vector<u64> QueuedRequests();
  bool WorkerRunning() const;
  KfUniversalListModel::Selection CurrentSelection();
  int PendingChange();

 private:
  void PostRequest(u64 row, u64 first, u64 last);
  void DiscardRequests();
  void StopWorker();
  void RefreshRowsAndSelection();

  u64 modelVersion_ = 0;              // guarded by mutex_
  u64 acknowledgedModelVersion_ = 0;  // guarded by mutex_
  std::int32_t pendingChange_ = 0;    // guarded by mutex_
  std::shared_ptr<KfUniversalListModel> universalModel_;  // guarded by mutex_
  std::set<u64> changedRows_;         // guarded by mutex_
  IdeUtil::Mutex requestMutex_;
  std::condition_variable_any requestCondition_;
  std::set<u64> requests_;            // guarded by requestMutex_
  std::atomic<u64> rowCount_{0};      // written under mutex_
  KfUniversalListModel::Selection selection_;  // guarded by mutex_
  std::unique_ptr<GeThread> thread_;  // owned by the controlling (GUI) thread
  bool busy_ = false;                 // guarded by requestMutex_
};

}  // namespace Kf::ListWindow
