// List window models: the vocabulary shared by a feature's list model, the
// proxies in front of it and the host's list control.
//
// A feature that shows a list writes a model (KfUniversalListModel for a
// finite list with random access to its rows, KfSlidingListModel for a list
// too long to count that exposes a movable chunk, KfFlatListModel for a plain
// list whose rows may wrap) and hands it, as a std::shared_ptr<KfListModel>, to
// a proxy (orvane/listwindow_proxy.h). Every model operation has a harmless
// default except the row producer and the column set, so a model implements
// only what its list supports:
//
//   class Registers : public Kf::ListWindow::KfUniversalListModel {
//     std::uint64_t GetColumnInfo(std::vector<Column>* out) override { ... }
//     std::uint64_t NumberOfRows() override { return 32; }
//     bool GetRow(std::uint64_t row, std::vector<std::string>* cells, std::vector<Format>* formats,
//                 TreeInfo* tree, bool* flag) override { ... }
//   };
//
// Threads: a proxy calls every model operation with its own mutex held, so a
// model sees one call at a time per proxy. A model may call its listener
// (KfFlatListModelListener::HandleNotification) from any thread, but never
// while holding a lock that its own operations take, since the proxy's mutex
// is taken inside the notification.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "orvane/colortypes.h"
#include "orvane/export.h"
#include "orvane/locks.h"

// Storage for a list's saved content (column layout, expansion state). Defined
// by the host's persistence layer; models only pass it through.
class KfContentStorage;

namespace Kf::ListWindowUtils {

// One entry of a row's context menu.
struct MenuItem {
  int command = 0;         // handed back to HandleContextMenu when chosen
  std::string text;        // UTF-8 label; empty together with separator
  bool enabled = true;
  bool checked = false;
  bool separator = false;  // a dividing line; command and text are ignored
};

}  // namespace Kf::ListWindowUtils

namespace Kf::ListWindow {

class KfFlatListModelListener;

// The change kinds a model reports. Only the numbers are fixed; see
// ListWindowProxy::MaybeEscalate for how two pending changes are merged.
class KfListModelListener {
 public:
  enum What : std::int32_t {
    Redraw = 0,             // rows or decoration changed; redraw what is shown
    SelectionChanged = 1,   // the selection moved; the standard proxy re-reads it
    RowChanged = 2,         // the row named in the note changed
    AllRowsChanged = 3,     // every row may have changed; refetch all
    PropertiesChanged = 4,  // columns, list spec or selection type changed
    Block = 5,              // the model is busy: stop forwarding input and fetching rows
    Unblock = 6,            // the model is usable again
  };
};

// The types shared by every model interface and every proxy. They are reached
// as KfListModel::Column, KfListModel::Format, ...
struct KfListModelTypes {
  using u64 = std::uint64_t;

  enum FormatFlag : std::uint32_t {
    FormatBold = 1u << 0,
    FormatItalic = 1u << 1,
    FormatUnderline = 1u << 2,
    FormatAlignRight = 1u << 3,
    FormatAlignCenter = 1u << 4,
    FormatMonospace = 1u << 5,
    // The cell shows a placeholder: its row is still being fetched.
    FormatPending = 1u << 6,
    // The model is blocked; the cell's text colour is greyed.
    FormatBlocked = 1u << 7,
  };

  // Formatting of one cell (or, as the extra last format of a row, of the row).
  struct Format {
    Kf::XColor text;        // invalid colour = the control's default
    Kf::XColor background;  // invalid colour = the control's default
    std::uint32_t flags = 0;  // FormatFlag bits
    int indent = 0;           // extra indentation of the cell text, in characters
    friend bool operator==(const Format&, const Format&) = default;
  };

  // One column's description.
  struct Column {
    std::string title;
    Format format;        // used for cells of rows not yet fetched
    std::string tooltip;  // shown when the pointer rests on the header
    int width = 100;      // initial width in pixels; the host may change it
    friend bool operator==(const Column&, const Column&) = default;
  };

  // Whole-list properties. A default value is what a proxy shows before it
  // read the model's.
  struct ListSpec {
    bool isTree = false;            // rows carry tree decoration (TreeInfo)
    bool showHeader = true;         // the column header is visible
    bool resizableColumns = true;   // the user may drag column borders
    bool gridLines = false;
    bool checkMarks = false;        // rows show a check box (the GetRow flag)
    bool sortable = false;          // column clicks sort
    friend bool operator==(const ListSpec&, const ListSpec&) = default;
  };

  enum SelType : std::int32_t {
    SelNone = 0,
    SelSingle = 1,
    SelMultiple = 2,
  };

  // Tree decoration of one row.
  struct TreeInfo {
    u64 depth = 0;          // indentation level, 0 = top
    std::string expander;   // "+" collapsed, "-" expanded, empty = leaf
    friend bool operator==(const TreeInfo&, const TreeInfo&) = default;
  };

  // The editable part of a cell text, as byte offsets [begin, end).
  struct TextRange {
    std::size_t begin = 0;
    std::size_t end = 0;
  };

  // Rows first..last (inclusive) are selected.
  struct SelRange {
    u64 first = 0;
    u64 last = 0;
    friend bool operator==(const SelRange&, const SelRange&) = default;
  };

  enum Target : std::int32_t {
    TargetNone = 0,
    TargetRow = 1,
    TargetCell = 2,
    TargetTreeButton = 3,
    TargetCheckMark = 4,
    TargetAbove = 5,  // a drop lands between this row and the one above
    TargetBelow = 6,
  };

  enum ScrollOperation : std::int32_t {
    ScrollLineUp = 0,
    ScrollLineDown = 1,
    ScrollPageUp = 2,
    ScrollPageDown = 3,
    ScrollTop = 4,
    ScrollBottom = 5,
    ScrollToRow = 6,
  };

  enum KeyNavOperation : std::int32_t {
    KeyNavUp = 0,
    KeyNavDown = 1,
    KeyNavPageUp = 2,
    KeyNavPageDown = 3,
    KeyNavHome = 4,
    KeyNavEnd = 5,
    KeyNavLeft = 6,
    KeyNavRight = 7,
  };
};

// Describes the stretch (chunk) of a long list that a sliding proxy holds.
struct ChunkInfo {
  std::uint64_t rows = 0;       // rows in the chunk
  double fractionBefore = 0.0;  // part of the whole list before the chunk
  double fractionAfter = 0.0;   // part of the whole list after the chunk
  bool atStart = true;
  bool atEnd = true;
  friend bool operator==(const ChunkInfo&, const ChunkInfo&) = default;
};

// List-level properties and help: what a proxy copies when it is given the model.
class ORVANE_API KfListModelProperties : public virtual KfListModelTypes {
 public:
  virtual ~KfListModelProperties();
  // Fills the column set; returns the column count.
  virtual u64 GetColumnInfo(std::vector<Column>* out) = 0;
  virtual void GetListSpec(ListSpec* out);
  virtual SelType SelectionType() const;
  // Content shown instead of rows (for example "No target connected"); false when none.
  virtual bool SpecialContent(std::string* text, Format* format);
  // True while the model is busy and wants no input and no row requests.
  virtual bool IsInputBlocked();
  // A model-defined value that the proxy keeps (for example a view kind).
  virtual std::uint32_t GetModelValue();
  virtual bool GetKeywordHelpTag(std::string* tag);
  virtual bool GetHelpTag(std::string* tag);
};

// The model's life with a window: attachment, visibility, its listener and
// the version handshake.
class ORVANE_API KfListModelLifecycle : public virtual KfListModelTypes {
 public:
  virtual ~KfListModelLifecycle();
  virtual void Attach();
  virtual void Detach();
  virtual void Show(bool shown);
  virtual bool IsVisible();
  virtual void Activate(bool active);
  // The proxy registers itself here; null withdraws it. The model must not
  // call a listener after it was withdrawn.
  virtual void SetListener(KfFlatListModelListener* listener);
  // The host has drawn the state of `version` (the version of the latest note).
  virtual void AcknowledgeUpdate(u64 version);
};

// User actions on rows and cells; a proxy forwards them unchanged.
class ORVANE_API KfListModelInput : public virtual KfListModelTypes {
 public:
  virtual ~KfListModelInput();
  virtual void ColumnClick(int column);
  virtual void HandleChar(wchar_t ch, unsigned int flags);
  virtual void HandleKeyDown(wchar_t key, unsigned int flags, bool shift, bool control);
  // Returns the column that is edited, or -1 when the cell is not editable.
  virtual int GetEditableString(u64 row, int column, std::string* text, TextRange* range);
  virtual bool SetValue(u64 row, int column, const std::string& value);
  virtual void GetSelection(std::vector<SelRange>* out);
  virtual void ExtendSelection(KeyNavOperation op, int count);
  virtual void ExtendSelection(u64 row, bool extend);
  virtual void Click(u64 row, int column, u64 position, unsigned int flags);
  virtual void DoubleClick(u64 row, int column, u64 position);
  // Returns the new top row.
  virtual u64 Scroll(ScrollOperation op, u64 top, u64 amount);
  virtual bool CanExpand(u64 row);
  virtual bool CanCollapse(u64 row);
  virtual void ToggleExpansion(u64 row);
  virtual void ToggleMoreOrLess(u64 row);
  virtual void ToggleCheckMark(u64 row);
  virtual bool ToggleExpansionAtDblClick(u64 row, int column);
  virtual bool GetContextMenu(u64 row, int column, std::vector<Kf::ListWindowUtils::MenuItem>* items);
  virtual void HandleContextMenu(int command);
  virtual Target ToolTip(u64 row, int column, int position, std::string* text);
  virtual Target DropTest(u64 row, int column);
  virtual bool CanDrop(u64 row, int column, const std::string& data);
  virtual bool Drop(u64 row, int column, const std::string& data);
  virtual bool CanDropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn);
  virtual bool DropLocal(u64 row, int column, const std::string& data, u64 fromRow, int fromColumn);
  virtual bool GetDrag(u64 row, int column, std::string* data);
  virtual bool SaveContent(KfContentStorage* storage);
  virtual bool RestoreContent(KfContentStorage* storage);
};

// A list model: the three interfaces joined, plus the row producer. Always
// held by std::shared_ptr<KfListModel>.
class ORVANE_API KfListModel : public virtual KfListModelProperties,
                               public virtual KfListModelLifecycle,
                               public virtual KfListModelInput {
 public:
  ~KfListModel() override;
  // Produces one row: one text per column, one format per column (optionally
  // one more for the whole row), its tree decoration and its check flag.
  // False when the row cannot be produced now; the proxy asks again later.
  virtual bool GetRow(u64 row, std::vector<std::string>* cells, std::vector<Format>* formats,
                                    TreeInfo* tree, bool* flag) = 0;
};

// A finite list; rows are numbered 0 to NumberOfRows() - 1 and produced in any order.
class ORVANE_API KfUniversalListModel : public KfListModel {
 public:
  // The selection as the standard proxy keeps it.
  struct Selection {
    std::vector<SelRange> ranges;
    u64 caretRow = ~u64{0};  // all ones = no caret
    friend bool operator==(const Selection&, const Selection&) = default;
  };
  ~KfUniversalListModel() override;
  virtual u64 NumberOfRows() = 0;
  virtual void GetCurrentSelection(Selection* out);
  // Moves the caret; returns the new caret row as int, or -1.
  virtual int KeyNavigate(KeyNavOperation op, int count, unsigned int flags, int column);
};

// A list too long to count: the model holds a chunk of it and slides it on
// request. Rows given to GetRow are numbered from the chunk's first row.
class ORVANE_API KfSlidingListModel : public KfListModel {
 public:
  ~KfSlidingListModel() override;
  // Describes the current chunk.
  virtual void GetChunk(ChunkInfo* out) = 0;
  // The selected row (in the chunk) and its text; all ones when none.
  virtual u64 GetSel(std::string* text);
  // Selects `row`; returns the row actually selected and fills `text`.
  virtual u64 SelectRow(u64 row, std::string* text);
  // Adds up to `count` rows before (after) the chunk and may drop up to
  // `maxDrop` rows at the other end. Returns how many rows were added; the
  // chunk's new description goes to `out`.
  virtual u64 AddBefore(u64 count, u64 maxDrop, ChunkInfo* out) = 0;
  virtual u64 AddAfter(u64 count, u64 maxDrop, ChunkInfo* out) = 0;
  // Moves the chunk to the place named by `text` ("BEGIN", "END" or a
  // model-defined position) holding at least `minChunk` rows where the list
  // has them; `*row` becomes the chunk row to show.
  virtual void NavigateTo(const std::string& text, u64 minChunk, u64* row, ChunkInfo* out) = 0;
  // Moves the chunk to `fraction` (0.0 to 1.0) of the whole list.
  virtual void NavigateTo(double fraction, u64* row, ChunkInfo* out) = 0;
  virtual int KeyNavigate(KeyNavOperation op, int count, int column, std::string* text);
};

// A plain finite list whose rows the flat wrapper may break into several
// window rows at the text of one column.
class ORVANE_API KfFlatListModel : public KfListModel {
 public:
  ~KfFlatListModel() override;
  virtual u64 NumberOfRows() = 0;
  // The column whose text is broken into lines; -1 for none.
  virtual int LineBreakColumn();
};

// What a model calls when it changes; implemented by every proxy. Its two
// operations come first in every proxy's table of virtual operations.
class ORVANE_API KfFlatListModelListener {
 public:
  struct Note {
    KfListModelListener::What what = KfListModelListener::Redraw;
    std::uint64_t version = 0;           // the model's version after the change
    std::uint64_t value = ~std::uint64_t{0};  // passed on to the host
    std::uint64_t row = 0;               // the changed row, for RowChanged
    std::string text;
  };
  virtual void HandleNotification(const Note& note) = 0;
  // False when the list is not shown; else the first and last visible rows.
  virtual bool Visible(std::uint64_t* first, std::uint64_t* last) = 0;

 protected:
  // Proxies are destroyed through ListWindowProxy, never through this interface.
  ~KfFlatListModelListener() = default;
};

// Holds a model's listener and delivers notes to it. A note is delivered
// without the slot's lock held (the proxy takes its own lock inside), and
// replacing or withdrawing the listener waits until a delivery in progress
// has ended, so a proxy that withdrew is never called again.
//
// Threads: any. Set must not be called from inside a delivery on the same
// slot, nor by a thread that holds a lock a delivery needs (proxies withdraw
// before taking their own lock).
class ORVANE_API KfModelListenerSlot {
 public:
  void Set(KfFlatListModelListener* listener);
  // Delivers `note` if a listener is set; returns whether one was.
  bool Notify(const KfFlatListModelListener::Note& note);
  KfFlatListModelListener* Get();

 private:
  IdeUtil::Mutex mutex_;
  std::condition_variable_any idle_;
  KfFlatListModelListener* listener_ = nullptr;  // guarded by mutex_
  int deliveries_ = 0;                           // guarded by mutex_
};

class ORVANE_API IListModelFactory {
 public:
  virtual ~IListModelFactory();
  // Makes (or returns the shared) model of this factory's kind for `name`.
  virtual std::shared_ptr<KfListModel> Create(const std::string& name) = 0;
};

}  // namespace Kf::ListWindow
