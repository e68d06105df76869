// The host-facing operations keep one fixed order in every proxy's table of
// virtual operations, since hosts built against one version call by slot.
// Under the Itanium C++ ABI a pointer to a virtual member holds 1 + the
// slot's byte offset, which lets the test read each slot number.
#include <gtest/gtest.h>

#include <cstring>

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
  auto at = [&](long tableSlot) { return base + tableSlot; };
  EXPECT_EQ(Slot(&P::HandleNotification), 0);
  EXPECT_EQ(Slot(&P::Visible), 1);
  EXPECT_EQ(base, 1) << "the destructor follows Visible";
  EXPECT_EQ(Slot(&P::Attach), at(4));
  EXPECT_EQ(Slot(&P::Detach), at(5));
  EXPECT_EQ(Slot(&P::GetColumnInfo), at(6));
  EXPECT_EQ(Slot(&P::GetListSpec), at(7));
  EXPECT_EQ(Slot(&P::SelectionType), at(8));
  EXPECT_EQ(Slot(&P::NumberOfRows), at(9));
  EXPECT_EQ(Slot(&P::GetRow), at(10));
  EXPECT_EQ(Slot(&P::AcknowledgeUpdate), at(11));
  EXPECT_EQ(Slot(&P::SpecialContent), at(12));
  EXPECT_EQ(Slot(&P::GetEditableString), at(13));
  EXPECT_EQ(Slot(&P::SetValue), at(14));
  EXPECT_EQ(Slot(&P::GetSelection), at(15));
  EXPECT_EQ(Slot(static_cast<void (P::*)(P::KeyNavOperation, int)>(&P::ExtendSelection)), at(16));
  EXPECT_EQ(Slot(static_cast<void (P::*)(u64, bool)>(&P::ExtendSelection)), at(17));
  EXPECT_EQ(Slot(&P::Click), at(18));
  EXPECT_EQ(Slot(&P::DoubleClick), at(19));
  EXPECT_EQ(Slot(&P::ColumnClick), at(20));
  EXPECT_EQ(Slot(&P::HandleChar), at(21));
  EXPECT_EQ(Slot(&P::HandleKeyDown), at(22));
  EXPECT_EQ(Slot(&P::Scroll), at(23));
  EXPECT_EQ(Slot(&P::CanExpand), at(24));
  EXPECT_EQ(Slot(&P::CanCollapse), at(25));
  EXPECT_EQ(Slot(&P::ToggleExpansion), at(26));
  EXPECT_EQ(Slot(&P::ToggleMoreOrLess), at(27));
  EXPECT_EQ(Slot(&P::ToggleCheckMark), at(28));
  EXPECT_EQ(Slot(&P::ToggleExpansionAtDblClick), at(29));
  EXPECT_EQ(Slot(&P::GetContextMenu), at(30));
  EXPECT_EQ(Slot(&P::HandleContextMenu), at(31));
  EXPECT_EQ(Slot(&P::ToolTip), at(32));
  EXPECT_EQ(Slot(&P::DropTest), at(33));
  EXPECT_EQ(Slot(&P::CanDrop), at(34));
  EXPECT_EQ(Slot(&P::Drop), at(35));
  EXPECT_EQ(Slot(&P::CanDropLocal), at(36));
  EXPECT_EQ(Slot(&P::DropLocal), at(37));
  EXPECT_EQ(Slot(&P::GetDrag), at(38));
  EXPECT_EQ(Slot(&P::SaveContent), at(39));
  EXPECT_EQ(Slot(&P::RestoreContent), at(40));
  EXPECT_EQ(Slot(&P::GetKeywordHelpTag), at(41));
  EXPECT_EQ(Slot(&P::GetHelpTag), at(42));
  EXPECT_EQ(Slot(&P::ColumnWidthChanged), at(43));
  EXPECT_EQ(Slot(&P::Idle), at(44));
  EXPECT_EQ(Slot(&P::HostIsUpToDate), at(45));
  EXPECT_EQ(Slot(&P::HostExpectsUpdate), at(46));
  EXPECT_EQ(Slot(&P::Show), at(47));
  EXPECT_EQ(Slot(&P::IsVisible), at(48));
  EXPECT_EQ(Slot(&P::Activate), at(49));
  EXPECT_EQ(Slot(&P::GetStringCmds), at(50));
  EXPECT_EQ(Slot(&P::ExecStringCmd), at(51));

  EXPECT_EQ(Slot(&S::AddBefore), at(52));
  EXPECT_EQ(Slot(&S::AddAfter), at(53));
  EXPECT_EQ(Slot(static_cast<void (S::*)(const std::string&, u64*, ChunkInfo*)>(&S::NavigateTo)), at(54));
  EXPECT_EQ(Slot(static_cast<void (S::*)(double, u64*, ChunkInfo*)>(&S::NavigateTo)), at(55));
  EXPECT_EQ(Slot(&S::GetSel), at(56));
  EXPECT_EQ(Slot(&S::SetSel), at(57));
  EXPECT_EQ(Slot(&S::KeyNavigate), at(58));
  EXPECT_EQ(Slot(&S::SetMinChunk), at(59));
  EXPECT_EQ(Slot(&S::GetChunkInfo), at(60));
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
