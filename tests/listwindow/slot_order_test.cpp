// The host-facing operations keep one fixed order in every proxy's table of
// virtual operations, since hosts built against one version call by slot.
// Under the Itanium C++ ABI a pointer to a virtual member holds 1 + the
// slot's byte offset, which lets the test read each slot number.
#include <gtest/gtest.h>

#include <cstring>
#include <iterator>

#include "orvane/listwindow.h"

#if defined(__GNUC__) && !defined(_WIN32)

namespace {

using namespace Kf::ListWindow;
using u64 = std::uint64_t;
using P = ListWindowProxy;
using S = SlidingListWindowProxy;

template <typename Pmf>
long Slot(Pmf pmf) {
  struct Repr {
    std::uintptr_t ptr;
    std::ptrdiff_t adj;
  } repr;
  static_assert(sizeof(Pmf) == sizeof(Repr));
  std::memcpy(&repr, &pmf, sizeof repr);
  EXPECT_EQ(repr.ptr & 1u, 1u) << "not a virtual operation";
  return static_cast<long>((repr.ptr - 1) / sizeof(void*));
}

TEST(ListWindowSlots, HostFacingOperationsKeepTheTableOrder) {
  // The destructor occupies two entries here (complete and deleting), one in the table.
  const long base = Slot(&P::SetProvider) - 3;
  EXPECT_EQ(Slot(&P::HandleNotification), 0);
  EXPECT_EQ(Slot(&P::Visible), 1);
  EXPECT_EQ(base, 1) << "the destructor follows Visible";
  // From Attach (table slot 4) on, every operation takes the next slot.
  const long slots[] = {
      Slot(&P::Attach), Slot(&P::Detach), Slot(&P::GetColumnInfo), Slot(&P::GetListSpec),
      Slot(&P::SelectionType), Slot(&P::NumberOfRows), Slot(&P::GetRow), Slot(&P::AcknowledgeUpdate),
      Slot(&P::SpecialContent), Slot(&P::GetEditableString), Slot(&P::SetValue), Slot(&P::GetSelection),
      Slot(static_cast<void (P::*)(P::KeyNavOperation, int)>(&P::ExtendSelection)),
      Slot(static_cast<void (P::*)(u64, bool)>(&P::ExtendSelection)), Slot(&P::Click), Slot(&P::DoubleClick),
      Slot(&P::ColumnClick), Slot(&P::HandleChar), Slot(&P::HandleKeyDown), Slot(&P::Scroll),
      Slot(&P::CanExpand), Slot(&P::CanCollapse), Slot(&P::ToggleExpansion), Slot(&P::ToggleMoreOrLess),
      Slot(&P::ToggleCheckMark), Slot(&P::ToggleExpansionAtDblClick), Slot(&P::GetContextMenu),
      Slot(&P::HandleContextMenu), Slot(&P::ToolTip), Slot(&P::DropTest), Slot(&P::CanDrop), Slot(&P::Drop),
      Slot(&P::CanDropLocal), Slot(&P::DropLocal), Slot(&P::GetDrag), Slot(&P::SaveContent),
      Slot(&P::RestoreContent), Slot(&P::GetKeywordHelpTag), Slot(&P::GetHelpTag), Slot(&P::ColumnWidthChanged),
      Slot(&P::Idle), Slot(&P::HostIsUpToDate), Slot(&P::HostExpectsUpdate), Slot(&P::Show), Slot(&P::IsVisible),
      Slot(&P::Activate), Slot(&P::GetStringCmds), Slot(&P::ExecStringCmd), Slot(&S::AddBefore),
      Slot(&S::AddAfter), Slot(static_cast<void (S::*)(const std::string&, u64*, ChunkInfo*)>(&S::NavigateTo)),
      Slot(static_cast<void (S::*)(double, u64*, ChunkInfo*)>(&S::NavigateTo)), Slot(&S::GetSel),
      Slot(&S::SetSel), Slot(&S::KeyNavigate), Slot(&S::SetMinChunk), Slot(&S::GetChunkInfo)};
  for (long i = 0; i < static_cast<long>(std::size(slots)); ++i)
    EXPECT_EQ(slots[i], base + 4 + i) << "table slot " << 4 + i;
}

TEST(ListWindowSlots, HostListenerOperationsFollowItsDestructor) {
  using L = ListWindowProxyListener;
  const long destructorEntries = 2;
  EXPECT_EQ(Slot(&L::HandleMessage), destructorEntries + 0);
  EXPECT_EQ(Slot(&L::Visible), destructorEntries + 1);
  EXPECT_EQ(Slot(&L::BreakLines), destructorEntries + 2);
}

}  // namespace

#endif
